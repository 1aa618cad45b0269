"""The tables of the Wireshark dissector: what kvrp3.lua.in leaves to the catalogue."""

from data import PORT
from layout import fills


def quoted(text):
    return '"' + text.replace("\\", "\\\\").replace('"', '\\"') + '"'


def row(*cells):
    return "{ " + ", ".join(cells) + " },"


def items(message_items):
    """`"Channel [Loop]"`"""
    return quoted(" ".join(f"[{item.tag.name}]" if item.optional else item.tag.name for item in message_items))


def messages(entries):
    for entry in entries.values():
        yield row(quoted(entry.name), items(entry.items), quoted(entry.meaning))


@fills
def lua_port(_):
    yield f'local ports = "{PORT}"'


@fills
def lua_enumerations(catalogue):
    for entry in catalogue.enumerations.values():
        yield row(quoted(entry.name), quoted(" ".join(entry.names)))


@fills
def lua_tags(catalogue):
    for entry in catalogue.tags.values():
        yield row(*map(quoted, (entry.name, entry.kind, entry.of, entry.meaning)))


@fills
def lua_records(catalogue):
    for entry in catalogue.records.values():
        yield row(quoted(entry.name), items(entry.fields))


@fills
def lua_containers(catalogue):
    for entry in catalogue.containers.values():
        yield row(quoted(entry.name), quoted(entry.member.name), str(entry.capacity))


@fills
def lua_commands(catalogue):
    yield from messages(catalogue.commands)


@fills
def lua_replies(catalogue):
    yield from messages(catalogue.replies)


@fills
def lua_reports(catalogue):
    yield from messages(catalogue.reports)


@fills
def lua_ending_replies(catalogue):
    """The replies that are the last of their command."""
    names = [reply.name for reply in catalogue.replies.values() if reply.ends]
    yield " ".join(f"{name} = true," for name in names)
