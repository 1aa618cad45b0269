"""Commands and callback groups as C++."""

from cpp_messages import callback, moved, signal_values
from layout import by_section, call, doc, fills, function, wrapped


def constant(item):
    """A parameter, its type by the name of its tag."""
    return f"const {item.tag.name}& {item.name}"


def callbacks(command):
    return [f"{callback(reply)} on_{reply.name}" for reply in command.group.replies]


def callback_names(command):
    return [f"on_{reply.name}" for reply in command.group.replies]


def slots(group):
    return ", ".join(f"&ReplySlots::{reply.name}" for reply in group.replies)


def overloads(command):
    """Each set of arguments that a command can be called with, the complete one first, as a pair:
    parameters, and what a call of the complete one passes for them."""
    required = [constant(item) for item in command.required]
    passed = [item.name for item in command.required]
    optional = command.optional
    flagged = [text for item in optional for text in (f"bool has_{item.name}", constant(item))]
    flagged_names = [text for item in optional for text in (f"has_{item.name}", item.name)]
    yield required + flagged, passed + flagged_names
    for count in range(len(optional) + 1) if optional else ():
        given = [constant(item) for item in optional[:count]]
        absent = [f"{item.tag.name}()" for item in optional]
        flags = [
            text
            for place, item in enumerate(optional)
            for text in (("true", item.name) if place < count else ("false", absent[place]))
        ]
        yield required + given, passed + flags


def names(parameters):
    return [parameter.split()[-1] for parameter in parameters]


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
        for item in command.required:
            body.append(f"command.add<tag::{item.tag.name}>({item.name});")
        for item in command.optional:
            body.append(f"command.add_if<tag::{item.tag.name}>(has_{item.name}, {item.name});")
        body.append("send(std::move(command).with_xid(xid));")
        (master, _), *shorter = overloads(command)
        yield from function(head, ["const AString& xid"] + master, body)
        for parameters, passed in shorter:
            short = call(f"cmd_{command.name}", ["xid"] + passed, ";")
            yield from function(head, ["const AString& xid"] + parameters, short)


def command_declarations(catalogue, with_group):
    def render(command):
        yield doc(command.meaning)
        for parameters, _ in overloads(command):
            yield from call(f"AString cmd_{command.name}", parameters + callbacks(command), ";")
        for parameters, _ in overloads(command):
            yield from call(f"void cmd_{command.name}", parameters, ";")
        for parameters, _ in overloads(command) if with_group else ():
            group = f"const CallbackGroup_set{command.group.number}& group"
            yield from call(f"void cmd_{command.name}", parameters + [group], ";")
        yield ""

    yield from by_section(catalogue.commands.values(), render)


@fills
def commands(catalogue):
    """The declarations of API::cmd_x: with callbacks, and fire-and-forget."""
    yield from command_declarations(catalogue, with_group=False)


@fills
def qt_commands(catalogue):
    """The declarations of APIQt::cmd_x: the same, and with a callback group."""
    yield from command_declarations(catalogue, with_group=True)


@fills
def command_definitions(catalogue):
    for command in catalogue.commands.values():
        name = f"cmd_{command.name}"
        (master, passed), *shorter = overloads(command)
        entering = f"pending_->enter<{slots(command.group)}>({', '.join(callback_names(command))});"
        yield from function(
            f"AString API::{name}",
            master + callbacks(command),
            wrapped("const AString xid =", entering)
            + call(f"APICommand::{name}", ["xid"] + passed, ";")
            + ["return xid;"],
        )
        for parameters, arguments in shorter:
            yield from function(
                f"AString API::{name}",
                parameters + callbacks(command),
                call(f"return {name}", arguments + callback_names(command), ";"),
            )
        nothing = [f"{callback(reply)}()" for reply in command.group.replies]
        for parameters, arguments in overloads(command):
            yield from function(f"void API::{name}", parameters, call(name, arguments + nothing, ";"))


@fills
def qt_command_definitions(catalogue):
    """APIQt forwards each command to its APIQtImpl, `impl_`."""
    for command in catalogue.commands.values():
        name = f"cmd_{command.name}"
        group = f"const CallbackGroup_set{command.group.number}& group"
        for parameters, passed in overloads(command):
            arguments = names(parameters)
            with_callbacks = call(f"return impl_->{name}", arguments + callback_names(command), ";")
            yield from function(f"AString APIQt::{name}", parameters + callbacks(command), with_callbacks)
            yield from function(f"void APIQt::{name}", parameters, call(f"impl_->{name}", arguments, ";"))
            with_group = call(f"impl_->APICommand::{name}", ["impl_->enter(group)"] + arguments, ";")
            yield from function(f"void APIQt::{name}", parameters + [group], with_group)


@fills
def group_names(catalogue):
    for group in catalogue.groups.values():
        yield f"class CallbackGroup_set{group.number};"


def group_functions(group, prefix):
    for reply in group.replies:
        yield from ("    " + line for line in call(f"void {prefix}{reply.name}", signal_values(reply), ";"))


@fills
def groups(catalogue):
    for group in catalogue.groups.values():
        name = f"CallbackGroup_set{group.number}"
        yield doc(group.meaning)
        yield f"class SKUAN_EXPORT {name} : public QObject"
        yield "{"
        yield "    Q_OBJECT"
        yield ""
        yield "public:"
        yield f"    {name}();"
        yield f"    ~{name}() override;"
        yield "    void addref() const;"
        yield ""
        yield "Q_SIGNALS:"
        yield from group_functions(group, "sig_")
        yield ""
        yield "private:"
        yield "    friend class APIQtImpl;"
        yield "    AString enter(PendingTable& pending) const;"
        yield from group_functions(group, "send_")
        yield ""
        yield "    AReference<CallbackGuard> guard_;"
        yield "};"
        yield ""


@fills
def group_definitions(catalogue):
    for group in catalogue.groups.values():
        name = f"CallbackGroup_set{group.number}"
        yield f"{name}::{name}() : guard_(new CallbackGuard(this)) {{}}"
        yield from function(f"{name}::~{name}", [], ["guard_->detach();"])
        yield from function(f"void {name}::addref", [], ["guard_->add_reference();"], " const")
        head = f"return pending.enter_guarded<{slots(group)}>"
        senders = [f"guard_->callback<&{name}::send_{reply.name}>()" for reply in group.replies]
        entering = call(head, ["guard_"] + senders, ";")
        yield from function(f"AString {name}::enter", ["PendingTable& pending"], entering, " const")
        for reply in group.replies:
            emission = call(f"Q_EMIT sig_{reply.name}", moved(reply), ";")
            yield from function(f"void {name}::send_{reply.name}", signal_values(reply), emission)
