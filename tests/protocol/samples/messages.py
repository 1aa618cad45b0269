"""Replies and reports as text: what is understood, and as what; what is not, and why."""

from values import CATALOGUE, Node, base, fields, is_loose, kind, required, variants


def noisy(node):
    """The same with blanks around values and with elements that nobody knows."""
    new = Node("New", [Node("ClipID", "x")])
    if isinstance(node.content, str):
        return Node(node.name, node.content)
    return Node(node.name, [new, *(noisy(child) for child in node.content), new])


def understood(message):
    """Pairs of an element, and what its values say."""
    everything = {item.tag.name: base(item.tag) for item in message.items}

    def whole(children):
        return Node(message.name, list(children.values()))

    yield noisy(whole(everything)), whole(everything)
    for item in message.items:
        if item.optional:
            rest = {name: node for name, node in everything.items() if name != item.tag.name}
            yield whole(rest), whole(rest)
        for variant in variants(item.tag):
            node = whole(everything | {item.tag.name: variant})
            yield node, node


def not_found(item, within):
    return f"Tag '{item.tag.name}' not found within '{within}'"


def found_twice(item, within):
    return f"More than one tag '{item.tag.name}' found within '{within}'"


class Faults:
    """Everything that can be wrong with messages: each record where it comes first, and there each of its
    fields; each tag's texts where it comes first."""

    def __init__(self):
        self.seen = set()
        self.refused = []  # element and error
        self.accepted = []  # element, and what its values say

    def message(self, message):
        self.element(message.name, message.items, lambda node: node, lenient=True)

    def element(self, name, items, around, lenient=False):
        """`around` puts the element into its message. What is optional fails a record all the same, but
        not a message."""

        def whole(children):
            return around(Node(name, children))

        needed = [item for item in items if not is_loose(item)]
        nodes = [base(item.tag) for item in items]
        if needed:
            self.refuse(whole([]), not_found(needed[0], name))
        if needed and len(items) > 1:
            self.refuse(whole(nodes[::-1] * 2), found_twice(needed[0], name))
        for item in items:
            rest = required(items)
            node = rest.pop(item.tag.name, None) or base(item.tag)

            def with_value(node, item=item, rest=rest):
                children = rest | {item.tag.name: node}
                return whole([children[other.tag.name] for other in items if other.tag.name in children])

            without, twice = whole(list(rest.values())), whole([*rest.values(), node, node])
            if item.optional and lenient:
                inner = Faults()
                inner.value(item.tag, node, with_value)
                self.accepted += [(wrong, without) for wrong in [twice, *(wrong for wrong, _ in inner.refused)]]
                continue
            if item.tag.kind == "flag":
                self.accepted.append((with_value(Node(item.tag.name, "false")), with_value(node)))
                self.accepted.append((twice, with_value(node)))
                continue
            if not item.optional:
                self.refuse(without, not_found(item, name))
            self.refuse(twice, found_twice(item, name))
            self.value(item.tag, node, with_value)

    def value(self, tag, good, around):
        container = CATALOGUE.containers.get(tag.name)
        if container:
            member = good.content[0]
            if container.capacity:
                many = container.capacity + 1
                text = f"Tag {tag.name} contains {many} subelements. The maximum is {container.capacity}."
                self.refuse(around(Node(tag.name, [member] * many)), text)
            self.value(container.member, member, lambda node: around(Node(tag.name, [member, node])))
        elif tag.kind == "record":
            if tag.of not in self.seen:
                self.seen.add(tag.of)
                self.element(tag.name, fields(tag), around)
        elif tag.kind != "flag" and tag.name not in self.seen:
            self.seen.add(tag.name)
            _, accepted, refused = kind(tag)
            for text, meaning in accepted.items():
                self.accepted.append((around(Node(tag.name, text)), around(Node(tag.name, meaning))))
            for text in refused:
                what = "boolean " if tag.kind == "bool" else ""
                error = f"Tag {tag.name} contains invalid {what}value '{text.strip()}'"
                self.refuse(around(Node(tag.name, f" {text} ")), error)

    def refuse(self, node, error):
        self.refused.append((node, error))
