"""The tables of the protocol's reference page: what protocol.md.in leaves to the catalogue."""

from layout import fills

# Entries of different tables may have one name, so a link says which table it leads to.


def anchor(table, name):
    return f'<a id="{table}-{name}"></a>`{name}`'


def link(table, name):
    return f"[{name}](#{table}-{name})"


def row(*cells):
    return "| " + " | ".join(cells) + " |"


def head(*titles):
    yield row(*titles)
    yield row(*("---" for _ in titles))


def tags(items):
    """Links to the tags, in brackets where they may be missing."""
    links = (link("tag", item.tag.name) for item in items)
    return ", ".join(f"\\[{text}\\]" if item.optional else text for item, text in zip(items, links))


def in_order(group):
    """What a command may get beside `error`, in the order in which it comes."""
    return sorted(group.without_error, key=lambda reply: reply.ends)


def own_meanings(record):
    """What a tag means in this record, where that is not what it means elsewhere."""
    return "".join(
        f" `{field.tag.name}`: {field.meaning}" for field in record.fields if field.meaning != field.tag.meaning
    )


@fills
def page_enumerations(catalogue):
    yield from head("Enumeration", "Names", "Meaning")
    for entry in catalogue.enumerations.values():
        names = " ".join(f"`{name}`" for name in entry.names)
        yield row(anchor("tag", entry.name), names, entry.meaning)


@fills
def page_tags(catalogue):
    """Tags that are named after what they hold stand in the tables of that."""
    yield from head("Tag", "Kind", "Meaning")
    for tag in catalogue.tags.values():
        if tag.name != tag.of:
            yield row(anchor("tag", tag.name), link("tag", tag.of) if tag.of else tag.kind, tag.meaning)


@fills
def page_records(catalogue):
    yield from head("Record", "Tags within", "Meaning")
    for record in catalogue.records.values():
        yield row(anchor("tag", record.name), tags(record.fields), record.meaning + own_meanings(record))


@fills
def page_containers(catalogue):
    yield from head("Container", "Shape", "Member", "At most", "Meaning")
    for entry in catalogue.containers.values():
        capacity = str(entry.capacity or "")
        yield row(anchor("tag", entry.name), entry.shape, link("tag", entry.member.name), capacity, entry.meaning)


def short_replies(group):
    """Their names alone, with the group's number to find the rest by."""
    names = ", ".join(f"`{reply.name}`" + ("" if reply.ends else "…") for reply in in_order(group))
    return f"{names} ([{group.number}](#group-{group.number}))"


@fills
def page_commands(catalogue):
    section = None
    for command in catalogue.commands.values():
        if command.section != section:
            section = command.section
            yield from ["", f"### {section}", ""]
            yield from head("Command", "Arguments", "Replies (group)", "Meaning")
        yield row(
            anchor("command", command.name),
            tags(command.items),
            short_replies(command.group),
            command.meaning,
        )


@fills
def page_replies(catalogue):
    yield from head("No.", "Reply", "Tags within", "Command", "Meaning")
    for reply in catalogue.replies.values():
        ends = "ends" if reply.ends else "goes on"
        yield row(str(reply.number), anchor("reply", reply.name), tags(reply.items), ends, reply.meaning)


@fills
def page_reports(catalogue):
    yield from head("No.", "Report", "Tags within", "Turned on by", "Meaning")
    for report in catalogue.reports.values():
        number, name = str(report.number), anchor("report", report.name)
        yield row(number, name, tags(report.items), turned_on(catalogue, report), report.meaning)


def turned_on(catalogue, report):
    if report.on in catalogue.commands:
        return link("command", report.on)
    of_channel, _, name = report.on.rpartition(" ")
    return f"{of_channel} [{name}](#tag-{'ChannelReportType' if of_channel else 'ReportType'})".strip()


@fills
def page_groups(catalogue):
    yield from head("Group", "Replies", "Commands", "What for")
    for group in catalogue.groups.values():
        commands = [command.name for command in catalogue.commands.values() if command.group is group]
        names = f"{len(commands)} of them" if len(commands) > 3 else ", ".join(link("command", name) for name in commands)
        replies = ", ".join(link("reply", reply.name) for reply in in_order(group))
        yield row(f'<a id="group-{group.number}"></a>{group.number}', replies, names, group.meaning)
