"""Reads the tables in this folder and resolves every name in them."""

import re
from dataclasses import dataclass, field
from pathlib import Path

FOLDER = Path(__file__).resolve().parent

# How the text of a tag becomes a value: the kind's C++ type, and its reader and writer in kvrp3_tree_p.h.
# Every enumeration joins as a kind of its own name.
KINDS = {
    "string": ("AString", "kind::String"),
}


@dataclass
class Row:
    """One line of a table, cut at its bars; `section` is the last `= Heading` before it."""

    place: str
    section: str
    cells: list


@dataclass
class Enumeration:
    name: str
    names: list
    meaning: str


@dataclass
class Tag:
    name: str
    type: str  # of its value
    kind: str  # which reads and writes it
    meaning: str

    @property
    def is_number(self):
        return self.kind.startswith("kind::Enum")

    @property
    def variable(self):
        """`ClipID` as a name for a parameter: `clip_id`."""
        return re.sub(r"(?<=[a-z0-9])(?=[A-Z])|(?<=[A-Z])(?=[A-Z][a-z])", "_", self.name).lower()


@dataclass
class Item:
    """A tag in the place where a message has it."""

    tag: Tag
    optional: bool

    @property
    def option(self):
        """The C++ type of a value that may be absent."""
        return f"AOption<{self.tag.type}>" if self.optional else self.tag.type

    @property
    def signal_type(self):
        """The type as signals name it: by its tag."""
        return f"AOption<KVRP3::{self.tag.name}>" if self.optional else f"KVRP3::{self.tag.name}"

    @property
    def reader(self):
        return f"Optional<tag::{self.tag.name}>" if self.optional else f"tag::{self.tag.name}"


@dataclass
class Message:
    """A reply or a report."""

    number: int
    name: str
    items: list
    meaning: str
    ends: bool = True


@dataclass
class Command:
    section: str
    name: str
    items: list
    replies: list
    meaning: str
    required: list = field(init=False)
    optional: list = field(init=False)

    def __post_init__(self):
        self.required = [i.tag for i in self.items if not i.optional]
        self.optional = [i.tag for i in self.items if i.optional]


class Fault(Exception):
    """A table that cannot be used; the text is for whoever edits it."""


def rows(name, columns):
    """The rows of a table. Blank lines and lines that begin with `#` are for the reader."""
    section = ""
    for number, line in enumerate((FOLDER / name).read_text().splitlines(), 1):
        if not line.strip() or line.startswith("#"):
            continue
        if line.startswith("= "):
            section = line[2:].strip()
            continue
        cells = [cell.strip() for cell in line.split("|")]
        place = f"{FOLDER / name}:{number}"
        if len(cells) != columns:
            raise Fault(f"{place}: {len(cells)} columns where {columns} are wanted")
        if not cells[-1]:
            raise Fault(f"{place}: a row without its meaning")
        yield Row(place, section, cells)


def words(cell):
    return [word.strip() for word in cell.split(",") if word.strip()]


class Catalogue:
    """All tables, with every name resolved."""

    def __init__(self):
        self.enumerations = {}
        self.tags = {}
        self.replies = {}
        self.reports = {}
        self.commands = {}
        for row in rows("enumerations.txt", 3):
            name, names, meaning = row.cells
            self.add(self.enumerations, row, Enumeration(name, names.split(), meaning))
            KINDS[name] = (name, f"kind::Enum<{name}_to_string, string_to_{name}>")
            self.add(self.tags, row, Tag(name, *KINDS[name], meaning))
        for row in rows("tags.txt", 3):
            name, kind, meaning = row.cells
            if kind not in KINDS:
                raise Fault(f"{row.place}: unknown kind '{kind}'")
            self.add(self.tags, row, Tag(name, *KINDS[kind], meaning))
        numbers = set()
        for row in rows("replies.txt", 5):
            number, name, tags, command, meaning = row.cells
            if command not in ("ends", "goes on"):
                raise Fault(f"{row.place}: a reply either 'ends' the command or 'goes on', not '{command}'")
            number = self.number(row, numbers, number)
            self.add(self.replies, row, Message(number, name, self.items(row, tags), meaning, command == "ends"))
        for row in rows("reports.txt", 4):
            number, name, tags, meaning = row.cells
            number = self.number(row, numbers, number)
            self.add(self.reports, row, Message(number, name, self.items(row, tags), meaning))
        for row in rows("commands.txt", 4):
            name, tags, replies, meaning = row.cells
            command = Command(row.section, name, self.items(row, tags), self.expected(row, replies), meaning)
            if command.items != sorted(command.items, key=lambda item: item.optional):
                raise Fault(f"{row.place}: optional arguments come last")
            self.add(self.commands, row, command)

    @staticmethod
    def add(table, row, entry):
        if entry.name in table:
            raise Fault(f"{row.place}: '{entry.name}' stands here twice")
        table[entry.name] = entry

    @staticmethod
    def number(row, taken, text):
        number = int(text)
        if taken and number <= max(taken):
            raise Fault(f"{row.place}: the numbers of replies, then reports, rise from row to row")
        taken.add(number)
        return number

    def items(self, row, cell):
        items = []
        for word in words(cell):
            optional = word.startswith("[") and word.endswith("]")
            name = word[1:-1].strip() if optional else word
            if name not in self.tags:
                raise Fault(f"{row.place}: unknown tag '{name}'")
            items.append(Item(self.tags[name], optional))
        return items

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
