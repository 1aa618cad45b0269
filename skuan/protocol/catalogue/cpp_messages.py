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
    for prefix, table, first in (("reply", catalogue.replies, ["const AString&"]), ("report", catalogue.reports, [])):
        for message in table.values():
            types = first + [value_type(item) for item in message.items]
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
            ["const AString& xid"] + values(reply),
            call(f"pending_->fire<&ReplySlots::{reply.name}>", ["xid", ends] + moved(reply), ";"),
        )


@fills
def do_report_operations(catalogue):
    """The declarations of APIQt::do_report_x."""
    for report in catalogue.reports.values():
        yield from call(f"virtual void do_report_{report.name}", values(report), ";")


@fills
def report_signals(catalogue):
    for report in catalogue.reports.values():
        yield doc(report.meaning)
        yield from call(f"void report_{report.name}", signal_values(report), ";")


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
