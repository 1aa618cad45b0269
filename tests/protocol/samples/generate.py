#!/usr/bin/env python3
"""Writes everything that the catalogue has as samples for tests, C++ headers into a folder:

    generate.py OUTPUT_FOLDER

Nothing but the reading of the tables is shared with what makes the library: a fault there has to show.
"""

import sys
from pathlib import Path

from messages import Faults, understood
from values import CATALOGUE, KINDS, Node, base, variants

MESSAGES = [*CATALOGUE.replies.values(), *CATALOGUE.reports.values()]


def literal(text):
    return f'R"~({text})~"'


def quoted(name):
    return f'"{name}"'


def signal_type(item):
    return f"AOption<KVRP3::{item.tag.name}>" if item.optional else f"KVRP3::{item.tag.name}"


def parameters(message):
    return [f"{signal_type(item)} v{place}" for place, item in enumerate(message.items)]


def printers():
    """How the value of each tag prints as an element: `print_ClipID`."""
    for enumeration in CATALOGUE.enumerations.values():
        names = ", ".join(map(quoted, enumeration.names))
        yield f"inline const std::vector<const char*> names_of_{enumeration.name} = {{{names}}};"
        for value, name in enumerate(enumeration.names):
            yield f"static_assert(KVRP3::{enumeration.name}_{name} == {value});"
    tags = CATALOGUE.tags.values()
    for tag in tags:
        yield f"std::string print_{tag.name}(const KVRP3::{tag.name}& v);"
    for record in CATALOGUE.records.values():
        parts = [f"print_{field.tag.name}(v.{field.name})" for field in record.fields]
        for place, field in enumerate(record.fields):
            if field.optional:
                parts[place] = f'(v.has_{field.name} ? {parts[place]} : "")'
        yield f"inline std::string body(const KVRP3::{record.name}& v) {{ return {' + '.join(parts)}; }}"
    for tag in tags:
        value = {"record": "body(v)", "enum": f"plain(KVRP3::{tag.of}_to_string(v))", "speed": "speed(v)"}
        result = f'element("{tag.name}", {value.get(tag.kind, "plain(v)")})'
        if tag.name in CATALOGUE.containers:
            member = f"print_{CATALOGUE.containers[tag.name].member.name}(m)"
            everything = f"[&] {{ std::string s; for (const auto& m : v) s += {member}; return s; }}()"
            result = f'element("{tag.name}", {everything})'
        elif tag.kind == "flag":
            result = f'v ? element("{tag.name}", "") : ""'
        yield f"inline std::string print_{tag.name}(const KVRP3::{tag.name}& v) {{ return {result}; }}"


def log():
    """A class with a function for each reply and report; a client, callbacks and signals that call it."""
    yield "struct Log : QObject { std::vector<std::string> seen; // as elements"
    for message in MESSAGES:
        values = [f"print_{item.tag.name}(v{place})" for place, item in enumerate(message.items)]
        for place, item in enumerate(message.items):
            if item.optional:
                values[place] = f'(v{place} ? print_{item.tag.name}(v{place}.value()) : "")'
        content = " + ".join(["std::string()", *values])
        yield f"void {message.name}({', '.join(parameters(message))})"
        yield f'{{ seen.push_back(element("{message.name}", {content})); }}'
    yield "};"
    yield "template <typename Client> struct Logging : Client { Log log; AString xid;"
    for message in MESSAGES:
        passed = [f"v{place}" for place in range(len(message.items))]
        logged = f"log.{message.name}({', '.join(passed)});"
        if message.name in CATALOGUE.reports:
            yield f"void report_{message.name}({', '.join(parameters(message))}) override {{ {logged} }}"
        else:
            yield f"void reply_{message.name}({', '.join(['const AString& of', *parameters(message)])}) override"
            yield f"{{ xid = of; {logged} Client::reply_{message.name}({', '.join(['of', *passed])}); }}"
    yield "};"
    for group in CATALOGUE.groups.values():
        callbacks = []
        for reply in group.replies:
            types = ", ".join(signal_type(item) for item in reply.items)
            function = f"AFunction{len(reply.items)}<{types}>" if types else "AFunction"
            callbacks.append(f"{function}::member<&Log::{reply.name}>(&log)")
        number = f"std::integral_constant<int, {group.number}>"
        yield f"inline auto callbacks({number}, Log& log) {{ return std::make_tuple({', '.join(callbacks)}); }}"
        yield f"inline KVRP3::CallbackGroup_set{group.number} new_group({number}) {{ return {{}}; }}"
    senders = {f"CallbackGroup_set{group.number}": ("sig_", group.replies) for group in CATALOGUE.groups.values()}
    for sender, (prefix, messages) in (senders | {"APIQt": ("report_", CATALOGUE.reports.values())}).items():
        yield "/// Queued, so that their values are copied as for another thread."
        yield f"template <typename To> void watch(const KVRP3::{sender}& sender, To& log) {{"
        for message in messages:
            signal = f"&KVRP3::{sender}::{prefix}{message.name}"
            yield f"QObject::connect(&sender, {signal}, &log, &To::{message.name}, Qt::QueuedConnection);"
        yield "}"
    yield "/// The good answers to a command of a group; the last one ends it."
    yield "inline const std::vector<std::string> answers[] = { {},"
    for group in CATALOGUE.groups.values():
        names = sorted((reply.name for reply in group.without_error), key="ok".__eq__)
        yield f"{{{', '.join(map(quoted, names))}}},"
    yield "};"


def table(comment, name, rows):
    yield f"/// {comment}"
    yield f"inline constexpr std::pair<const char*, const char*> {name}[] = {{"
    yield from (f"{{{literal(one)}, {literal(other)}}}," for one, other in rows)
    yield "};"


def message_tables():
    faults = Faults()
    for message in MESSAGES:
        faults.message(message)
    pairs = faults.accepted + [pair for message in MESSAGES for pair in understood(message)]
    meanings = ((given.xml(), meant.xml()) for given, meant in pairs)
    errors = ((given.xml(), error) for given, error in faults.refused)
    yield from table("Elements, and what their values print as.", "understood", meanings)
    yield from table("Elements, and why they are refused.", "refused", errors)
    for messages in ("replies", "reports"):
        yield f"inline const std::map<std::string, std::string> {messages} = {{"
        for message in getattr(CATALOGUE, messages).values():
            sample = Node(message.name, [base(item.tag) for item in message.items]).xml()
            yield f'{{"{message.name}", {literal(sample)}}},'
        yield "};"


def group_table():
    """Calls a function for each group, with a command that takes it."""
    yield "template <typename F> void for_each_group(F f) {"
    for group in CATALOGUE.groups.values():
        command = next(command for command in CATALOGUE.commands.values() if command.group is group)
        type_name = f"KVRP3::CallbackGroup_set{group.number}"
        arguments = ", ".join([base(item.tag).cpp for item in command.required] + ["group"])
        call = f"[](KVRP3::APIQt& to, const {type_name}& group) {{ to.cmd_{command.name}({arguments}); }}"
        yield f"f.template operator()<{type_name}>(answers[{group.number}], {call});"
    yield "}"


def commands():
    """Each command in every form that a call can have: as calls, and as text."""
    known, texts = set(), []
    for command in CATALOGUE.commands.values():
        yield f"template <typename Ways> void call_{command.name}(Ways& ways) {{"
        yield f"const auto send = [](auto& to, const auto&... a) {{ return to.cmd_{command.name}(a...); }};"
        for nodes, arguments in calls(command, known):
            texts.append(literal(Node(command.name, nodes).lines()))
            yield f"ways.template all<{command.group.number}>({', '.join(['send', texts[-1], *arguments])});"
        yield "}"
    yield "template <typename Ways> void call_all(Ways& ways) {"
    yield from (f"call_{command.name}(ways);" for command in CATALOGUE.commands.values())
    yield "}"
    yield f"inline constexpr const char* command_texts[] = {{ {', '.join(texts)} }};"


def calls(command, known):
    """Pairs: the elements that go out, and the arguments of the call."""
    needed = [base(item.tag) for item in command.required]
    given = [base(item.tag) for item in command.optional]
    start = [node.cpp for node in needed]
    for number in range(len(given) + 1):
        yield needed + given[:number], start + [node.cpp for node in given[:number]]
    masks = {tuple(place in places for place in range(len(given)))
             for places in [(), range(len(given)), *((place,) for place in range(len(given)))]}
    for mask in sorted(masks) if given else ():
        flagged = [text for present, node in zip(mask, given) for text in (str(present).lower(), node.cpp)]
        yield needed + [node for present, node in zip(mask, given) if present], start + flagged
    if given and command.optional[-1].tag.kind == "flag":
        yield needed + given[:-1], start + [node.cpp for node in given[:-1]] + ["false"]
    for place, item in enumerate(command.items):
        if item.tag.of in known or item.tag.kind in KINDS or item.tag.kind in ("flag", "enum"):
            continue
        known.add(item.tag.of)
        everything = needed + given
        for variant in variants(item.tag):
            nodes = everything[:place] + [variant] + everything[place + 1 :]
            yield nodes, [node.cpp for node in nodes]


def enumeration_table():
    """Calls a function with the names of each enumeration, and with its converters."""
    yield "template <typename F> void for_each_enumeration(F f) {"
    for name in CATALOGUE.enumerations:
        yield f"f(names_of_{name}, KVRP3::{name}_to_string, KVRP3::string_to_{name}, KVRP3::valid_{name});"
    yield "}"


HEADERS = {
    "message_values.h": [printers, log],
    "message_samples.h": [message_tables, group_table, enumeration_table],
    "command_samples.h": [commands],
}


def main(output):
    folder = Path(output)
    folder.mkdir(parents=True, exist_ok=True)
    for name, parts in HEADERS.items():
        lines = ["#pragma once", "#include <protocol/samples/prelude.h>"]
        if name == "message_samples.h":
            lines.append("#include <generated_tests/message_values.h>")
        lines.append("namespace samples {")
        for part in parts:
            lines += part()
        text = "\n".join([*lines, "} // namespace samples", ""])
        if not (folder / name).exists() or (folder / name).read_text() != text:
            (folder / name).write_text(text)


if __name__ == "__main__":
    main(*sys.argv[1:])
