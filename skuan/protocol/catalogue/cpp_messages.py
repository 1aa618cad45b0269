"""Replies and reports as C++: their operations, and which tags each reads."""

from layout import call, doc, fills, function


def value_type(item, scope=""):
    """The type by the name of its tag, which tells what is meant."""
    value = scope + item.tag.name
    return f"AOption<{value}>" if item.optional else value


def values(message):
    """The parameters of a reply's or report's operation."""
    return [f"{value_type(item)} {item.name}" for item in message.items]


def signal_values(message):
    """The same parameters as signals declare them: receivers connect to them by text."""
    return [f"{value_type(item, 'KVRP3::')} {item.name}" for item in message.items]


def moved(message):
    """The same parameters on their way to the next function; a plain value is as cheap to copy."""
    return [
        f"std::move({item.name})" if item.optional or not item.tag.is_plain else item.name
        for item in message.items
    ]


def reader(item):
    return f"{'IfReadable' if item.optional else 'Needed'}<tag::{item.tag.name}>"


def reply_values(reply):
    return ["const AString& xid"] + values(reply)


def declared(table, head, parameters, tail=";", documented=True):
    """A declaration for each message, its name behind `head`."""
    for message in table.values():
        if documented:
            yield doc(message.meaning)
        yield from call(head + message.name, parameters(message), tail)


@fills
def reply_operations(catalogue):
    yield from declared(catalogue.replies, "virtual void reply_", reply_values)


@fills
def reply_overrides(catalogue):
    yield from declared(catalogue.replies, "void reply_", reply_values, " override;", documented=False)


@fills
def report_operations(catalogue):
    yield from declared(catalogue.reports, "virtual void report_", values)


@fills
def report_overrides(catalogue):
    yield from declared(catalogue.reports, "void report_", values, " override;", documented=False)


@fills
def do_report_operations(catalogue):
    """The declarations of APIQt::do_report_x."""
    yield from declared(catalogue.reports, "virtual void do_report_", values, documented=False)


@fills
def report_signals(catalogue):
    yield from declared(catalogue.reports, "void report_", signal_values)


@fills
def empty_operations(catalogue):
    """The bodies of APIParser's operations: whoever is interested overrides them."""
    for prefix, table, first in (("reply", catalogue.replies, ["const AString&"]), ("report", catalogue.reports, [])):
        for message in table.values():
            types = first + [value_type(item) for item in message.items]
            yield from call(f"void APIParser::{prefix}_{message.name}", types, " {}")


def number_rows(table):
    return [f'{{{message.number}, "{message.name}"}},' for message in table.values()]


@fills
def reply_rows(catalogue):
    return number_rows(catalogue.replies)


@fills
def report_rows(catalogue):
    return number_rows(catalogue.reports)


@fills
def dispatch_cases(catalogue):
    for prefix, table, first in (("reply", catalogue.replies, ["xid"]), ("report", catalogue.reports, [])):
        for message in table.values():
            tags = ", ".join(reader(item) for item in message.items)
            yield f"case {message.number}:"
            operation = f"&APIParser::{prefix}_{message.name}"
            yield from ("    " + line for line in call(f"return deliver<{tags}>", first + ["body", operation], ";"))


def callback(reply):
    arity = len(reply.items)
    types = ", ".join(map(value_type, reply.items))
    return f"AFunction{arity}<{types}>" if arity else "AFunction"


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
            reply_values(reply),
            call(f"pending_->fire<&ReplySlots::{reply.name}>", ["xid", ends] + moved(reply), ";"),
        )


def handed_on(reports, head, target):
    """The definition of each `head` + name: a call of `target` + name with the same values."""
    for report in reports.values():
        body = call(target + report.name, moved(report), ";")
        yield from function(head + report.name, values(report), body)


@fills
def do_report_definitions(catalogue):
    yield from handed_on(catalogue.reports, "void APIQt::do_report_", "Q_EMIT report_")


@fills
def report_override_definitions(catalogue):
    """APIQtImpl hands each report to its APIQt, `owner_`."""
    yield from handed_on(catalogue.reports, "void APIQtImpl::report_", "owner_->do_report_")
