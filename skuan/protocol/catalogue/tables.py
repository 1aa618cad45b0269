"""Reads the tables in this folder and resolves every name in them."""

import re
from dataclasses import dataclass
from pathlib import Path

FOLDER = Path(__file__).resolve().parent

# The protocol as it is spoken: a table with a row too many or too few is not it.
COUNTS = {"commands": 128, "replies": 25, "reports": 47, "groups": 23}

# The kinds of a single value, and the C++ type of each.
SCALARS = {
    "string": "AString",
    "bool": "bool",
    "flag": "bool",  # true by presence alone
    "u8": "unsigned char",
    "u16": "unsigned short",
    "u32": "unsigned",
    "u64": "std::uint64_t",
    "int": "int",
    "speed": "int",
}


@dataclass
class Row:
    """One line of a table, cut at its bars; `section` is the last `= Heading` before it."""

    place: str
    section: str
    cells: list


@dataclass
class Tag:
    """What may stand in a message: `kind` is one of SCALARS, "enum", "record", or a container's shape."""

    name: str
    kind: str
    of: str  # the enumeration, record or container that it holds; empty for a scalar
    meaning: str

    @property
    def variable(self):
        """`ClipID` as a name for a parameter: `clip_id`."""
        return re.sub(r"(?<=[a-z0-9])(?=[A-Z])|(?<=[A-Z])(?=[A-Z][a-z])", "_", self.name).lower()

    @property
    def is_plain(self):
        """Whether its value is of one of C++'s own types: cheap to copy, and without a default."""
        return self.kind == "enum" or self.kind in SCALARS and self.kind != "string"


@dataclass
class Enumeration:
    name: str
    names: list
    meaning: str


@dataclass
class Item:
    """A tag in the place where a message or record has it."""

    tag: Tag
    optional: bool
    name: str  # of the parameter or field
    meaning: str


@dataclass
class Record:
    name: str
    fields: list
    meaning: str


@dataclass
class Container:
    name: str
    shape: str  # "set", "vector" or "list"
    member: Tag
    capacity: int  # 0 for a list, which has none
    meaning: str


@dataclass
class Message:
    """A reply or a report."""

    number: int
    name: str
    items: list
    meaning: str
    ends: bool = True  # of a reply: the command that it answers
    on: str = ""  # of a report: what turns it on


@dataclass
class Group:
    """The replies that commands of one sort get; `error` is the last of them."""

    number: int
    replies: list
    meaning: str

    @property
    def without_error(self):
        return self.replies[:-1]


@dataclass
class Command:
    section: str
    name: str
    items: list
    group: Group
    meaning: str

    @property
    def required(self):
        return [item for item in self.items if not item.optional]

    @property
    def optional(self):
        return [item for item in self.items if item.optional]


class Fault(Exception):
    """A table that cannot be used; the text is for whoever edits it."""


def rows(name, columns, least=None):
    """The rows of a table. Blank lines and lines that begin with `#` are for the reader. A row may end
    early where `least` is given: behind so many cells the others are empty."""
    section = ""
    for number, line in enumerate((FOLDER / name).read_text().splitlines(), 1):
        if not line.strip() or line.startswith("#"):
            continue
        if line.startswith("= "):
            section = line[2:].strip()
            continue
        cells = [cell.strip() for cell in line.split("|")]
        place = f"{FOLDER / name}:{number}"
        if not (least or columns) <= len(cells) <= columns:
            raise Fault(f"{place}: {len(cells)} columns where {columns} are wanted")
        if not least and not cells[-1]:
            raise Fault(f"{place}: a row without its meaning")
        yield Row(place, section, cells + [""] * (columns - len(cells)))


def words(cell):
    return [word.strip() for word in cell.split(",") if word.strip()]


def add(table, row, key, entry):
    if key in table:
        raise Fault(f"{row.place}: '{key}' stands here twice")
    table[key] = entry


class Catalogue:
    """All tables, with every name resolved; each a dictionary in the order of its rows."""

    def __init__(self):
        self.enumerations = {}
        self.records = {}
        self.containers = {}
        self.tags = {}
        self.replies = {}
        self.reports = {}
        self.groups = {}
        self.commands = {}
        self.read_enumerations()
        self.read_tags()
        self.read_records()
        self.read_containers()
        self.read_replies()
        self.read_reports()
        self.read_groups()
        self.read_commands()
        for what, count in COUNTS.items():
            if len(getattr(self, what)) != count:
                raise Fault(f"{FOLDER}: {len(getattr(self, what))} {what} where the protocol has {count}")

    def read_enumerations(self):
        for row in rows("enumerations.txt", 3):
            name, names, meaning = row.cells
            add(self.enumerations, row, name, Enumeration(name, names.split(), meaning))
            add(self.tags, row, name, Tag(name, "enum", name, meaning))

    def read_tags(self):
        """Also those of records and containers: their own names."""
        for row in rows("records.txt", 3, least=1):
            name, _, meaning = row.section.partition(": ")
            if not meaning:
                raise Fault(f"{row.place}: stands under no '= Record: meaning'")
            self.tags.setdefault(name, Tag(name, "record", name, meaning))
        for row in rows("containers.txt", 5):
            name, shape, _, _, meaning = row.cells
            add(self.tags, row, name, Tag(name, shape, name, meaning))
        for row in rows("tags.txt", 3):
            name, kind, meaning = row.cells
            if kind in SCALARS:
                tag = Tag(name, kind, "", meaning)
            elif kind in self.tags and self.tags[kind].kind in ("enum", "record"):
                tag = Tag(name, self.tags[kind].kind, kind, meaning)
            else:
                raise Fault(f"{row.place}: unknown kind '{kind}'")
            add(self.tags, row, name, tag)

    def read_records(self):
        for row in rows("records.txt", 3, least=1):
            record, _, meaning = row.section.partition(": ")
            tag, name, meaning_here = row.cells
            field = self.item(row, tag)
            if record not in self.records:
                self.records[record] = Record(record, [], meaning)
            fields = self.records[record].fields
            if not field.optional and fields and fields[-1].optional:
                raise Fault(f"{row.place}: optional fields come last")
            if field.tag.name in [record] + [earlier.tag.name for earlier in fields]:
                raise Fault(f"{row.place}: '{field.tag.name}' cannot stand here")
            fields.append(Item(field.tag, field.optional, name or field.name, meaning_here or field.meaning))

    def read_containers(self):
        for row in rows("containers.txt", 5):
            name, shape, member, capacity, meaning = row.cells
            if shape not in ("set", "vector", "list") or (shape == "list") != (capacity == ""):
                raise Fault(f"{row.place}: a set or vector has a capacity, and a list has none")
            container = Container(name, shape, self.tag(row, member), int(capacity or 0), meaning)
            if shape == "set" and len(self.enumerations[member].names) != container.capacity:
                raise Fault(f"{row.place}: a set has room for each name of its enumeration, and no more")
            add(self.containers, row, name, container)

    def read_replies(self):
        for row in rows("replies.txt", 5):
            number, name, tags, command, meaning = row.cells
            if command not in ("ends", "goes on"):
                raise Fault(f"{row.place}: a reply either 'ends' the command or 'goes on', not '{command}'")
            self.in_order(row, number, len(self.replies))
            reply = Message(int(number), name, self.items(row, tags), meaning, ends=command == "ends")
            add(self.replies, row, name, reply)

    def read_reports(self):
        classes = set(self.enumerations["ReportType"].names)
        classes |= {f"channel {name}" for name in self.enumerations["ChannelReportType"].names}
        commands = {row.cells[0] for row in rows("commands.txt", 4)}
        for row in rows("reports.txt", 5):
            number, name, tags, on, meaning = row.cells
            if on not in classes | commands:
                raise Fault(f"{row.place}: '{on}' is no class of reports and no command")
            self.in_order(row, number, len(self.replies) + len(self.reports))
            add(self.reports, row, name, Message(int(number), name, self.items(row, tags), meaning, on=on))

    def read_groups(self):
        for row in rows("groups.txt", 3):
            number, replies, meaning = row.cells
            self.in_order(row, number, len(self.groups) + 1)
            add(self.groups, row, int(number), Group(int(number), self.expected(row, replies), meaning))

    def read_commands(self):
        groups = {tuple(reply.name for reply in group.replies): group for group in self.groups.values()}
        for row in rows("commands.txt", 4):
            name, tags, replies, meaning = row.cells
            items = self.items(row, tags)
            if items != sorted(items, key=lambda item: item.optional):
                raise Fault(f"{row.place}: optional arguments come last")
            group = groups.get(tuple(reply.name for reply in self.expected(row, replies)))
            if not group:
                raise Fault(f"{row.place}: no group has these replies")
            add(self.commands, row, name, Command(row.section, name, items, group, meaning))
        for group in self.groups.values():
            if not any(command.group is group for command in self.commands.values()):
                raise Fault(f"{FOLDER}: no command has the replies of group {group.number}")

    @staticmethod
    def in_order(row, text, number):
        if int(text) != number:
            raise Fault(f"{row.place}: the number here is {number}, as those of replies, then reports, rise by one")

    def tag(self, row, name):
        if name not in self.tags:
            raise Fault(f"{row.place}: unknown tag '{name}'")
        return self.tags[name]

    def item(self, row, word):
        """`Tag`, or `[Tag]` for one that may be missing."""
        optional = word.startswith("[") and word.endswith("]")
        tag = self.tag(row, word[1:-1].strip() if optional else word)
        return Item(tag, optional, tag.variable, tag.meaning)

    def items(self, row, cell):
        return [self.item(row, word) for word in words(cell)]

    def expected(self, row, cell):
        """The replies of a command in the order of its callbacks: `ok`, the values, `error`."""
        replies = []
        for word in words(cell):
            name = word.removeprefix("each ")
            if name not in self.replies:
                raise Fault(f"{row.place}: unknown reply '{name}'")
            reply = self.replies[name]
            if reply.ends == word.startswith("each "):
                raise Fault(f"{row.place}: 'each' stands before the replies that go on, and no other")
            replies.append(reply)
        replies.sort(key=lambda reply: reply.name != "ok")
        return replies + [self.replies["error"]]
