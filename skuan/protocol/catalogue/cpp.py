"""Writes rows of the catalogue as C++: each function under `@fills` is what a template may ask for."""

WIDTH = 110


def call(head, arguments, tail):
    """`head(arguments)tail`, broken between arguments where a line would be too long."""
    lines, line, margin = [], head + "(", " " * (len(head) + 1)
    for number, argument in enumerate(arguments):
        last = number == len(arguments) - 1
        piece = argument + (")" + tail if last else ",")
        if line.strip() and not line.endswith("(") and len(line) + 1 + len(piece) > WIDTH - 4:
            lines.append(line)
            line = margin + piece
        else:
            line += piece if line.endswith("(") else " " + piece
    return lines + [line if arguments else line + ")" + tail]


def wrapped(left, right):
    """An assignment, on a second line where one would be too long."""
    whole = f"{left} {right}"
    return [whole] if len(whole) <= WIDTH - 4 else [left, "    " + right]


def function(head, parameters, body):
    """A definition with its lines of body, and a blank line behind it."""
    return call(head, parameters, "") + ["{"] + ["    " + line for line in body] + ["}", ""]


def doc(meaning):
    return f"/// {meaning}"


def constant(tag):
    return f"const {tag.type}& {tag.variable}"


def flag(tag):
    return f"has_{tag.variable}"


def callback(reply):
    arity = len(reply.items)
    types = ", ".join(item.option for item in reply.items)
    return f"AFunction{arity}<{types}>" if arity else "AFunction"


def callbacks(command):
    return [f"{callback(reply)} on_{reply.name}" for reply in command.replies]


def callback_names(command):
    return [f"on_{reply.name}" for reply in command.replies]


def values(message):
    """The parameters of a reply's or report's operation."""
    return [f"{item.option} {item.tag.variable}" for item in message.items]


def moved(message):
    """The same parameters on their way to the next function; only a plain number is cheaper to copy."""
    return [
        item.tag.variable if item.tag.is_number and not item.optional else f"std::move({item.tag.variable})"
        for item in message.items
    ]


def overloads(command):
    """Each set of arguments that a command can be called with, the complete one first, as a pair:
    parameters, and what a call of the complete one passes for them."""
    required = [constant(tag) for tag in command.required]
    passed = [tag.variable for tag in command.required]
    flagged = [text for tag in command.optional for text in (f"bool {flag(tag)}", constant(tag))]
    flagged_names = [text for tag in command.optional for text in (flag(tag), tag.variable)]
    yield required + flagged, passed + flagged_names
    for count in range(len(command.optional) + 1) if command.optional else ():
        given = [constant(tag) for tag in command.optional[:count]]
        flags = [
            text
            for place, tag in enumerate(command.optional)
            for text in (("true", tag.variable) if place < count else ("false", f"{tag.type}()"))
        ]
        yield required + given, passed + flags


def by_section(commands, render):
    """The rendered commands, with a heading before each section."""
    section = None
    for command in commands:
        if command.section != section:
            section = command.section
            yield from [f"// {section}", ""]
        yield from render(command)


FILLERS = {}


def fills(render):
    """Lets templates ask for these rows by the function's name."""
    FILLERS[render.__name__] = render
    return render



@fills
def enumerations(catalogue):
    for enumeration in catalogue.enumerations.values():
        name = enumeration.name
        yield doc(enumeration.meaning)
        yield f"enum {name} : int {{"
        for value, text in enumerate(enumeration.names):
            yield f"    {name}_{text} = {value},"
        yield "};"
        yield "/// The name on the wire; the empty string for a value outside the enumeration."
        yield f"SKUAN_EXPORT AString {name}_to_string({name} value);"
        yield "/// False for an unknown name; `*out` is set only on success, and `out` may be null."
        yield f"SKUAN_EXPORT bool string_to_{name}(const AString& name, {name}* out);"
        yield f"SKUAN_EXPORT bool valid_{name}(int value);"
        yield ""


@fills
def enumeration_definitions(catalogue):
    for enumeration in catalogue.enumerations.values():
        name = enumeration.name
        table = f"names_of_{name}"
        yield f"static const EnumString& {table}()"
        yield "{"
        yield "    static constexpr EnumString::ByLatin1 rows[] = {"
        for text in enumeration.names:
            yield f'        {{{name}_{text}, "{text}"}},'
        yield "    };"
        yield "    static const EnumString table(rows, std::size(rows), -1, AString());"
        yield "    return table;"
        yield "}"
        yield ""
        yield from function(f"AString {name}_to_string", [f"{name} value"], [f"return {table}().to_name(value);"])
        yield from function(
            f"bool string_to_{name}",
            ["const AString& name", f"{name}* out"],
            [f"return value_of_name({table}(), name, out);"],
        )
        yield from function(
            f"bool valid_{name}", ["int value"], [f"return {table}().valid_value(value, nullptr);"]
        )


@fills
def tag_types(catalogue):
    for tag in catalogue.tags.values():
        if tag.name not in catalogue.enumerations:
            yield doc(tag.meaning)
            yield f"typedef {tag.type} {tag.name};"


@fills
def tag_list(catalogue):
    for tag in catalogue.tags.values():
        yield from wrapped(f'using {tag.name} =', f'Tag<"{tag.name}", {tag.kind}>;')


@fills
def reply_operations(catalogue):
    for reply in catalogue.replies.values():
        yield doc(reply.meaning)
        yield from call(f"virtual void reply_{reply.name}", ["const AString& xid"] + values(reply), ";")


@fills
def reply_overrides(catalogue):
    for reply in catalogue.replies.values():
        yield from call(f"void reply_{reply.name}", ["const AString& xid"] + values(reply), " override;")


@fills
def report_operations(catalogue):
    for report in catalogue.reports.values():
        yield doc(report.meaning)
        yield from call(f"virtual void report_{report.name}", values(report), ";")


@fills
def report_overrides(catalogue):
    for report in catalogue.reports.values():
        yield from call(f"void report_{report.name}", values(report), " override;")


@fills
def empty_operations(catalogue):
    """The bodies of APIParser's operations: whoever is interested overrides them."""
    for reply in catalogue.replies.values():
        types = ["const AString&"] + [item.option for item in reply.items]
        yield from call(f"void APIParser::reply_{reply.name}", types, " {}")
    for report in catalogue.reports.values():
        yield from call(f"void APIParser::report_{report.name}", [item.option for item in report.items], " {}")


@fills
def reply_rows(catalogue):
    for reply in catalogue.replies.values():
        yield f'{{{reply.number}, "{reply.name}"}},'


@fills
def report_rows(catalogue):
    for report in catalogue.reports.values():
        yield f'{{{report.number}, "{report.name}"}},'


@fills
def dispatch_cases(catalogue):
    for prefix, table, first in (("reply", catalogue.replies, ["xid"]), ("report", catalogue.reports, [])):
        for message in table.values():
            tags = ", ".join(item.reader for item in message.items)
            yield f"case {message.number}:"
            operation = f"&APIParser::{prefix}_{message.name}"
            yield from ("    " + line for line in call(f"return deliver<{tags}>", first + ["body", operation], ";"))


@fills
def reply_slots(catalogue):
    for reply in catalogue.replies.values():
        yield f"{callback(reply)} {reply.name};"


@fills
def reply_matching(catalogue):
    for reply in catalogue.replies.values():
        ends = "PendingTable::ends" if reply.ends else "PendingTable::goes_on"
        yield from function(
            f"void API::reply_{reply.name}",
            ["const AString& xid"] + values(reply),
            call(f"pending_->fire<&ReplySlots::{reply.name}>", ["xid", ends] + moved(reply), ";"),
        )


@fills
def builders(catalogue):
    """The declarations of APICommand::cmd_x."""

    def render(command):
        yield doc(command.meaning)
        for parameters, _ in overloads(command):
            yield from call(f"void cmd_{command.name}", ["const AString& xid"] + parameters, ";")
        yield ""

    yield from by_section(catalogue.commands.values(), render)


@fills
def builder_definitions(catalogue):
    for command in catalogue.commands.values():
        head = f"void APICommand::cmd_{command.name}"
        body = [f'CommandMessage command(name<"{command.name}">());']
        for tag in command.required:
            body.append(f"command.add<tag::{tag.name}>({tag.variable});")
        for tag in command.optional:
            body.append(f"command.add_if<tag::{tag.name}>({flag(tag)}, {tag.variable});")
        body.append("send(std::move(command).with_xid(xid));")
        (master, _), *shorter = overloads(command)
        yield from function(head, ["const AString& xid"] + master, body)
        for parameters, passed in shorter:
            yield from function(
                head, ["const AString& xid"] + parameters, call(f"cmd_{command.name}", ["xid"] + passed, ";")
            )


@fills
def commands(catalogue):
    """The declarations of API::cmd_x and of APIQt::cmd_x: with callbacks, and fire-and-forget."""

    def render(command):
        yield doc(command.meaning)
        for parameters, _ in overloads(command):
            yield from call(f"AString cmd_{command.name}", parameters + callbacks(command), ";")
        for parameters, _ in overloads(command):
            yield from call(f"void cmd_{command.name}", parameters, ";")
        yield ""

    yield from by_section(catalogue.commands.values(), render)


@fills
def command_definitions(catalogue):
    for command in catalogue.commands.values():
        name = f"cmd_{command.name}"
        slots = ", ".join(f"&ReplySlots::{reply.name}" for reply in command.replies)
        (master, passed), *shorter = overloads(command)
        yield from function(
            f"AString API::{name}",
            master + callbacks(command),
            wrapped("const AString xid =", f"pending_->enter<{slots}>({', '.join(callback_names(command))});")
            + call(f"APICommand::{name}", ["xid"] + passed, ";")
            + ["return xid;"],
        )
        for parameters, arguments in shorter:
            yield from function(
                f"AString API::{name}",
                parameters + callbacks(command),
                call(f"return {name}", arguments + callback_names(command), ";"),
            )
        nothing = [f"{callback(reply)}()" for reply in command.replies]
        for parameters, arguments in overloads(command):
            yield from function(f"void API::{name}", parameters, call(name, arguments + nothing, ";"))


@fills
def do_report_operations(catalogue):
    """The declarations of APIQt::do_report_x."""
    for report in catalogue.reports.values():
        yield doc(report.meaning)
        yield from call(f"virtual void do_report_{report.name}", values(report), ";")


@fills
def report_signals(catalogue):
    """The signals name their arguments by tag, as receivers connect to them by text."""
    for report in catalogue.reports.values():
        yield doc(report.meaning)
        parameters = [f"{item.signal_type} {item.tag.variable}" for item in report.items]
        yield from call(f"void report_{report.name}", parameters, ";")


@fills
def do_report_definitions(catalogue):
    for report in catalogue.reports.values():
        emission = call(f"Q_EMIT report_{report.name}", moved(report), ";")
        yield from function(f"void APIQt::do_report_{report.name}", values(report), emission)


@fills
def report_override_definitions(catalogue):
    """APIQtImpl hands each report to its APIQt, `owner_`."""
    for report in catalogue.reports.values():
        handing = call(f"owner_->do_report_{report.name}", moved(report), ";")
        yield from function(f"void APIQtImpl::report_{report.name}", values(report), handing)


@fills
def qt_command_definitions(catalogue):
    """APIQt forwards each command to its APIQtImpl, `impl_`."""
    for command in catalogue.commands.values():
        name = f"cmd_{command.name}"
        for parameters, _ in overloads(command):
            arguments = [parameter.split()[-1] for parameter in parameters]
            with_callbacks = call(f"return impl_->{name}", arguments + callback_names(command), ";")
            yield from function(f"AString APIQt::{name}", parameters + callbacks(command), with_callbacks)
            yield from function(f"void APIQt::{name}", parameters, call(f"impl_->{name}", arguments, ";"))


def signal_items(catalogue):
    return [item for report in catalogue.reports.values() for item in report.items]


@fills
def meta_type_declarations(catalogue):
    """Each type once, under the name of the first tag that has it; Qt knows the numbers already."""
    first = {}
    for item in signal_items(catalogue):
        first.setdefault(item.option, item.signal_type)
    known_to_qt = ("bool", "int", "unsigned", "short", "unsigned short", "std::int64_t", "std::uint64_t")
    for option, name in first.items():
        if option not in known_to_qt:
            yield f"Q_DECLARE_METATYPE({name})"


@fills
def meta_type_registrations(catalogue):
    for name in dict.fromkeys(item.signal_type for item in signal_items(catalogue)):
        yield f'qRegisterMetaType<{name}>("{name}");'
