"""Replies and reports as C++: their operations, and which tags each reads."""

from cpp_values import type_of
from layout import call, doc, fills, function


def option_type(item, catalogue):
    """The C++ type of a value that may be absent."""
    value = type_of(item.tag, catalogue)
    return f"AOption<{value}>" if item.optional else value


def signal_type(item):
    """The type as signals name it: by its tag."""
    return f"AOption<KVRP3::{item.tag.name}>" if item.optional else f"KVRP3::{item.tag.name}"


def values(message, catalogue):
    """The parameters of a reply's or report's operation."""
    return [f"{option_type(item, catalogue)} {item.name}" for item in message.items]


def signal_values(message):
    """The same parameters as signals declare them."""
    return [f"{signal_type(item)} {item.name}" for item in message.items]


def moved(message):
    """The same parameters on their way to the next function; a plain number is as cheap to copy."""
    return [
        f"std::move({item.name})" if item.optional or item.tag.of and item.tag.kind != "enum" or item.tag.kind == "string"
        else item.name
        for item in message.items
    ]


def reader(item):
    return f"{'IfReadable' if item.optional else 'Needed'}<tag::{item.tag.name}>"


@fills
def reply_operations(catalogue):
    for reply in catalogue.replies.values():
        yield doc(reply.meaning)
        yield from call(f"virtual void reply_{reply.name}", ["const AString& xid"] + values(reply, catalogue), ";")


@fills
def reply_overrides(catalogue):
    for reply in catalogue.replies.values():
        yield from call(f"void reply_{reply.name}", ["const AString& xid"] + values(reply, catalogue), " override;")


@fills
def report_operations(catalogue):
    for report in catalogue.reports.values():
        yield doc(report.meaning)
        yield from call(f"virtual void report_{report.name}", values(report, catalogue), ";")


@fills
def report_overrides(catalogue):
    for report in catalogue.reports.values():
        yield from call(f"void report_{report.name}", values(report, catalogue), " override;")


@fills
def empty_operations(catalogue):
    """The bodies of APIParser's operations: whoever is interested overrides them."""
    for prefix, table, first in (("reply", catalogue.replies, ["const AString&"]), ("report", catalogue.reports, [])):
        for message in table.values():
            types = first + [option_type(item, catalogue) for item in message.items]
            yield from call(f"void APIParser::{prefix}_{message.name}", types, " {}")


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
            tags = ", ".join(reader(item) for item in message.items)
            yield f"case {message.number}:"
            operation = f"&APIParser::{prefix}_{message.name}"
            yield from ("    " + line for line in call(f"return deliver<{tags}>", first + ["body", operation], ";"))


def callback(reply, catalogue):
    arity = len(reply.items)
    types = ", ".join(type_of(item.tag, catalogue) for item in reply.items)
    return f"AFunction{arity}<{types}>" if arity else "AFunction"


@fills
def reply_slots(catalogue):
    for reply in catalogue.replies.values():
        yield f"{callback(reply, catalogue)} {reply.name};"


@fills
def reply_matching(catalogue):
    for reply in catalogue.replies.values():
        ends = "PendingTable::ends" if reply.ends else "PendingTable::goes_on"
        yield from function(
            f"void API::reply_{reply.name}",
            ["const AString& xid"] + values(reply, catalogue),
            call(f"pending_->fire<&ReplySlots::{reply.name}>", ["xid", ends] + moved(reply), ";"),
        )


@fills
def do_report_operations(catalogue):
    """The declarations of APIQt::do_report_x."""
    for report in catalogue.reports.values():
        yield from call(f"virtual void do_report_{report.name}", values(report, catalogue), ";")


@fills
def report_signals(catalogue):
    """The signals name their arguments by tag, as receivers connect to them by text."""
    for report in catalogue.reports.values():
        yield doc(report.meaning)
        yield from call(f"void report_{report.name}", signal_values(report), ";")


@fills
def do_report_definitions(catalogue):
    for report in catalogue.reports.values():
        emission = call(f"Q_EMIT report_{report.name}", moved(report), ";")
        yield from function(f"void APIQt::do_report_{report.name}", values(report, catalogue), emission)


@fills
def report_override_definitions(catalogue):
    """APIQtImpl hands each report to its APIQt, `owner_`."""
    for report in catalogue.reports.values():
        handing = call(f"owner_->do_report_{report.name}", moved(report), ";")
        yield from function(f"void APIQtImpl::report_{report.name}", values(report, catalogue), handing)
