"""The catalogue as data: what kvrp3.json holds, and what pages and tools are made from."""

import json

from layout import fills

PORT = 8913


def items(message_items):
    return [{"tag": item.tag.name, "optional": item.optional} for item in message_items]


def tag(entry):
    row = {"name": entry.name, "kind": entry.kind}
    if entry.of:
        row["type"] = entry.of
    return row | {"meaning": entry.meaning}


def container(entry):
    row = {"name": entry.name, "shape": entry.shape, "member": entry.member.name}
    if entry.capacity:
        row["capacity"] = entry.capacity
    return row | {"meaning": entry.meaning}


def field(entry):
    return {"tag": entry.tag.name, "optional": entry.optional, "name": entry.name, "meaning": entry.meaning}


def as_data(catalogue):
    return {
        "protocol": "KVRP3",
        "port": PORT,
        "enumerations": [
            {"name": e.name, "names": e.names, "meaning": e.meaning} for e in catalogue.enumerations.values()
        ],
        "tags": [tag(entry) for entry in catalogue.tags.values()],
        "records": [
            {"name": r.name, "meaning": r.meaning, "fields": [field(entry) for entry in r.fields]}
            for r in catalogue.records.values()
        ],
        "containers": [container(entry) for entry in catalogue.containers.values()],
        "replies": [
            {"name": r.name, "number": r.number, "ends": r.ends, "tags": items(r.items), "meaning": r.meaning}
            for r in catalogue.replies.values()
        ],
        "reports": [
            {"name": r.name, "number": r.number, "on": r.on, "tags": items(r.items), "meaning": r.meaning}
            for r in catalogue.reports.values()
        ],
        "commands": [
            {
                "name": c.name,
                "section": c.section,
                "arguments": items(c.items),
                "replies": [reply.name for reply in c.group.without_error],
                "group": c.group.number,
                "meaning": c.meaning,
            }
            for c in catalogue.commands.values()
        ],
        "groups": [
            {"number": g.number, "replies": [reply.name for reply in g.replies], "meaning": g.meaning}
            for g in catalogue.groups.values()
        ],
    }


@fills
def server_port(_):
    yield f"inline constexpr std::uint16_t server_port = {PORT};"


@fills
def json_data(catalogue):
    """One row to a line, so that it can be read and compared."""
    data = as_data(catalogue)
    yield "{"
    for number, (key, value) in enumerate(data.items()):
        end = "," if number < len(data) - 1 else ""
        if isinstance(value, list):
            yield f' "{key}": ['
            for place, row in enumerate(value):
                yield "  " + json.dumps(row, ensure_ascii=False) + ("," if place < len(value) - 1 else "")
            yield f" ]{end}"
        else:
            yield f' "{key}": {json.dumps(value)}{end}'
    yield "}"
