"""Sample values of every tag: as the text of an element, and as the C++ that makes the same."""

import sys
from dataclasses import dataclass
from fractions import Fraction
from itertools import count
from pathlib import Path
from xml.sax.saxutils import escape

sys.path.insert(0, str(Path(__file__).resolve().parents[3] / "skuan/protocol/catalogue"))
from tables import Catalogue  # noqa: E402

CATALOGUE = Catalogue()
NUMBERS = count(1)  # values come from their number, so that no two neighbours have the same


@dataclass
class Node:
    """An element with text or children, and its value as a C++ expression."""

    name: str
    content: object
    cpp: str = ""

    def body(self):
        return self.content if isinstance(self.content, str) else "".join(child.xml() for child in self.content)

    def xml(self):
        return f"<{self.name}>{self.body()}</{self.name}>" if self.body() else f"<{self.name} />"

    def lines(self):
        """As commands are written."""
        if isinstance(self.content, str) or not self.content:
            return self.xml()
        return "\n".join([f"<{self.name}>", *(child.lines() for child in self.content), f"</{self.name}>"])


def unsigned(bits):
    top = 2**bits

    def make(number):
        value = (top - number) % top
        return f"{value}ull", str(value)

    return make, {"0": "0", f" {top - 1}\t": str(top - 1)}, [str(top), "-1", "", "x", "1 2"]


def text(number):
    value = f" {number}<\"é'&> "
    return f'text(R"({value})")', escape(value, {'"': "&quot;", "'": "&apos;"})


def boolean(number):
    value = "true" if number % 2 else "false"
    return value, value


def speed(number):
    value = Fraction(-number, 4)
    return str(int(value * 65536)), str(float(value)).removesuffix(".0")


# How a value is made from a number, which texts are understood beside the one that is written, and as
# what, and which are refused.
KINDS = {
    "string": (text, {"": "", "  ": "  "}, []),
    "bool": (
        boolean,
        {" true ": "true", "1": "true", "\t0 ": "false", "-7": "true", str(2**64 - 1): "true"},
        ["maybe", "", "True", "1 0"],
    ),
    "u8": unsigned(8),
    "u16": unsigned(16),
    "u32": unsigned(32),
    "u64": unsigned(64),
    "int": (
        lambda number: (str(number - 2**31 + 1), str(number - 2**31 + 1)),
        {" 0 ": "0", str(2**31 - 1): str(2**31 - 1), str(-(2**31)): str(-(2**31))},
        [str(2**31), str(-(2**31) - 1), "", "x"],
    ),
    "speed": (
        speed,
        {" 1 ": "1", "0.5X": "0.5", "-32768": "-32768", "32767": "32767", "65536": "1", "32768": "0.5"},
        ["", "fast", "1 2"],
    ),
}


def kind(tag):
    if tag.kind != "enum":
        return KINDS[tag.kind]
    names = CATALOGUE.enumerations[tag.of].names

    def make(number):
        name = names[number % len(names)]
        return f"KVRP3::{tag.of}_{name}", name

    return make, {name: name for name in names} | {f"\t{names[0]} ": names[0]}, ["", names[0] + "x", "1 2"]


def scalar(tag, number=None):
    if tag.kind == "flag":
        return Node(tag.name, "", "true")
    cpp, written = kind(tag)[0](number or next(NUMBERS))
    return Node(tag.name, written, cpp)


def fields(tag):
    return CATALOGUE.records[tag.of].fields


def is_loose(item):
    return item.optional or item.tag.kind == "flag"


def record(tag, children):
    """The record with the fields that `children` has, a dictionary by tag."""
    name = tag.variable  # each its own, as records hold records
    cpp = [f"APART {{ KVRP3::{tag.name} {name};"]
    for item in fields(tag):
        if item.tag.name in children:
            value = children[item.tag.name].cpp
            cpp.append(f"{name}.set_{item.name}({value});" if item.optional else f"{name}.{item.name} = {value};")
    return Node(tag.name, list(children.values()), " ".join(cpp) + f" return {name}; }}()")


def row(tag, members):
    member = CATALOGUE.containers[tag.of].member
    values = ", ".join(node.cpp for node in members)
    return Node(tag.name, members, f"row<KVRP3::{tag.name}, KVRP3::{member.name}>({{{values}}})")


def base(tag):
    """A value with everything in it."""
    if tag.kind == "record":
        return record(tag, {item.tag.name: base(item.tag) for item in fields(tag)})
    if tag.name in CATALOGUE.containers:
        return row(tag, [base(CATALOGUE.containers[tag.of].member) for _ in range(2)])
    return scalar(tag)


def required(items):
    return {item.tag.name: base(item.tag) for item in items if not is_loose(item)}


def variants(tag):
    """With none of the optional fields, each alone, and all; empty and full; and so on further down."""
    if tag.kind == "record":
        everything = {item.tag.name: base(item.tag) for item in fields(tag)}
        yield record(tag, required(fields(tag)))
        for item in fields(tag):
            alone = required(fields(tag)) | {item.tag.name: everything[item.tag.name]}
            if is_loose(item):
                yield record(tag, {name: alone[name] for name in everything if name in alone})
            for variant in list(variants(item.tag))[:-1]:
                yield record(tag, everything | {item.tag.name: variant})
        yield record(tag, everything)
    elif tag.name in CATALOGUE.containers:
        container = CATALOGUE.containers[tag.of]
        yield row(tag, [])
        for variant in variants(container.member):
            yield row(tag, [variant])
        yield row(tag, [base(container.member) for _ in range(container.capacity or 3)])
    else:
        yield scalar(tag)
