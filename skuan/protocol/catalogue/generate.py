#!/usr/bin/env python3
"""Writes the repetitive part of the protocol from the tables in this folder.

    generate.py OUTPUT_FOLDER TEMPLATE...

A template `name.h.in` is an ordinary source file in which a line `@what@` stands for the rows that the
function `what` marked with `@fills` gives, at the indentation of that line. It becomes
OUTPUT_FOLDER/name.h. A file is written only when its content changes, so that nothing is compiled for
nothing.

A row that names something unknown ends the run with its file and line.
"""

import re
import sys
from pathlib import Path

import cpp_commands, cpp_messages, cpp_values, data, lua, page  # noqa: these fill templates
from layout import FILLERS
from tables import Catalogue, Fault


def fill(template, catalogue):
    lines = []
    for number, line in enumerate(template.read_text().splitlines(), 1):
        place = re.fullmatch(r"( *)@(\w+)@", line)
        if not place:
            lines.append(line)
            continue
        indent, what = place.groups()
        if what not in FILLERS:
            raise Fault(f"{template}:{number}: nothing fills '{what}'")
        rendered = list(FILLERS[what](catalogue))
        while rendered and not rendered[-1]:
            rendered.pop()
        lines += [indent + text if text else "" for text in rendered]
    return "\n".join(lines) + "\n"


def write_if_changed(path, text):
    if not path.exists() or path.read_text() != text:
        path.write_text(text)


def main(output, *templates):
    catalogue = Catalogue()
    folder = Path(output)
    folder.mkdir(parents=True, exist_ok=True)
    for template in map(Path, templates):
        write_if_changed(folder / template.name.removesuffix(".in"), fill(template, catalogue))


if __name__ == "__main__":
    try:
        main(*sys.argv[1:])
    except (Fault, OSError, ValueError) as fault:
        sys.exit(f"generate.py: {fault}")
