"""How generated source is laid out, and the list of what templates may ask for."""

WIDTH = 106  # of a line, before the indentation of the template

FILLERS = {}


def fills(render):
    """Lets templates ask for the lines that `render(catalogue)` gives, by the function's name."""
    FILLERS[render.__name__] = render
    return render


def call(head, arguments, tail):
    """`head(arguments)tail`, broken between arguments where a line would be too long, and before the
    first where the head is long itself."""
    head += "("
    pieces = [argument + "," for argument in arguments[:-1]] + [argument + ")" + tail for argument in arguments[-1:]]
    if not pieces:
        return [head + ")" + tail]
    own_line = len(head) > WIDTH // 2 and len(head) + len(" ".join(pieces)) > WIDTH
    margin = " " * (4 if own_line else len(head))
    lines = [head] if own_line else []
    line = margin if own_line else head
    fresh = True
    for piece in pieces:
        if not fresh and len(line) + 1 + len(piece) > WIDTH:
            lines.append(line)
            line, fresh = margin, True
        line += piece if fresh else " " + piece
        fresh = False
    return lines + [line]


def wrapped(left, right):
    """`left right`, on two lines where one would be too long."""
    whole = f"{left} {right}"
    return [whole] if len(whole) <= WIDTH else [left, "    " + right]


def function(head, parameters, body, qualifier=""):
    """A definition with its lines of body, and a blank line behind it."""
    return call(head, parameters, qualifier) + ["{"] + ["    " + line for line in body] + ["}", ""]


def filled_lines(words):
    """The words, as many to a line as fit."""
    lines = [""]
    for word in words:
        if lines[-1] and len(lines[-1]) + 1 + len(word) > WIDTH - 8:
            lines.append("")
        lines[-1] += word if not lines[-1] else " " + word
    return lines


def doc(meaning):
    return f"/// {meaning}"


def by_section(commands, render):
    """The rendered commands, with a heading before each section."""
    section = None
    for command in commands:
        if command.section != section:
            section = command.section
            yield from [f"// {section}", ""]
        yield from render(command)
