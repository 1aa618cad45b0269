"""Two independent views of the same capture: the messages as Python's own parser reads them, and as tshark
shows them through the dissector."""

import os
import subprocess
import xml.etree.ElementTree as ElementTree
import xml.parsers.expat
from dataclasses import dataclass, field

from capture import CLIENT, SERVER

KINDS = {"cmd": "command", "reply": "reply", "report": "report"}


@dataclass
class Message:
    frame: int  # where it ends
    kind: str
    xid: str
    name: str
    values: list  # (tag, text or nested values)
    ended_in: int = 0  # of a command: the frame of the reply that ends it
    command: str = ""  # of a reply: what it answers, ...
    asked_in: int = 0  # ... in which frame, ...
    place: int = 0  # ... as which of the replies, ...
    after: float = 0.0  # ... and how long after it


def expected(capture, catalogue):
    """What a capture of flawless messages holds, in the order in which messages end."""
    endings = {reply["name"] for reply in catalogue["replies"] if reply["ends"]}
    result = []
    for segments in capture.connections:
        streams = {sender: Stream() for sender in (CLIENT, SERVER)}
        waiting = {}
        for segment in segments:
            for root in streams[segment.sender].messages(segment.data):
                message = as_message(root, segment.frame)
                result.append(message)
                match(message, segment.time, waiting, endings)
    return result


class Stream:
    """One side's bytes, as the content of one endless element."""

    def __init__(self):
        self.open = []
        self.done = []
        self.parser = xml.parsers.expat.ParserCreate("UTF-8")
        self.parser.StartElementHandler = lambda tag, _: self.open.append(ElementTree.Element(tag))
        self.parser.CharacterDataHandler = self.text
        self.parser.EndElementHandler = self.end
        self.parser.Parse(b"<stream>")

    def text(self, data):
        self.open[-1].text = (self.open[-1].text or "") + data

    def end(self, _):
        element = self.open.pop()
        if len(self.open) == 1:
            self.done.append(element)
        else:
            self.open[-1].append(element)

    def messages(self, data):
        self.parser.Parse(data)
        done, self.done = self.done, []
        return done


def as_message(root, frame):
    [body] = [child for child in root if child.tag != "xid"]
    return Message(frame, KINDS[root.tag], root.findtext("xid", ""), body.tag, values(body))


def values(element):
    return [(child.tag, values(child) if len(child) else child.text or "") for child in element]


def match(message, time, waiting, endings):
    """Ties a reply to the oldest command with its xid that no reply has ended."""
    queue = waiting.setdefault(message.xid, [])
    if message.kind == "command":
        queue.append([message, time, 0])
    elif message.kind == "reply" and queue:
        queue[0][2] += 1
        command, asked, message.place = queue[0]
        message.command, message.asked_in, message.after = command.name, command.frame, time - asked
        if message.name in endings:
            command.ended_in = message.frame
            queue.pop(0)


@dataclass
class Seen:
    """What tshark shows of a capture."""

    messages: list = field(default_factory=list)
    notes: list = field(default_factory=list)  # (frame, field of the note, its text)


class Tshark:
    def __init__(self, program, dissector, settings_folder):
        self.command = [program, "-X", f"lua_script:{dissector}"]
        self.settings_folder = settings_folder  # nobody's own settings

    def run(self, path, *arguments):
        done = subprocess.run(
            self.command + ["-r", str(path), *arguments],
            env=os.environ | {"WIRESHARK_CONFIG_DIR": str(self.settings_folder), "LC_ALL": "C.UTF-8"},
            capture_output=True,
            timeout=800,
        )
        complaint = done.stderr.decode()
        if done.returncode or "lua" in complaint.lower():
            raise AssertionError(f"tshark gives {done.returncode}: {complaint}")
        return done.stdout.decode()

    def see(self, path, catalogue, passes=2):
        """With a second pass, a command can tell of what comes after it."""
        kinds = {tag["name"]: tag["kind"] for tag in catalogue["tags"]}
        seen = Seen()
        pages = ElementTree.fromstring(self.run(path, *["-2"] * (passes - 1), "-T", "pdml"))
        for packet in pages.iter("packet"):
            frame = int(packet.find("proto[@name='geninfo']/field[@name='num']").get("show"))
            for proto in packet.iter("proto"):
                if proto.get("name") == "kvrp3":
                    if proto.find("field[@name='kvrp3.kind']") is not None:
                        seen.messages.append(shown(proto, frame, kinds))
                    for note in proto.iter("field"):
                        if note.get("name") == "_ws.expert":
                            seen.notes += [(frame, *note_of(note))]
        return seen


def note_of(note):
    names = [part.get("name") for part in note if part.get("name", "").startswith("kvrp3.")]
    [text] = [part.get("show") for part in note if part.get("name") == "_ws.expert.message"]
    return names[0], text


def shown(proto, frame, kinds):
    def get(name):
        part = proto.find(f"field[@name='kvrp3.{name}']")
        return "" if part is None else part.get("show")

    body = proto.find("field[@name='kvrp3.name']")
    return Message(
        frame,
        get("kind"),
        get("xid"),
        get("name"),
        [] if body is None else shown_values(body, kinds),
        ended_in=int(get("response_in") or 0),
        command=get("command"),
        asked_in=int(get("request_in") or 0),
        place=int(get("place") or 0),
        after=float(get("time") or 0),
    )


def shown_values(item, kinds):
    found = []
    for part in item:
        name = part.get("name", "")
        if name.startswith("kvrp3."):
            tag = name.removeprefix("kvrp3.")
            kind = kinds.get(tag)
            nested = kind in ("record", "set", "vector", "list")
            found.append((tag, nested and shown_values(part, kinds) or as_written(part.get("show"), kind)))
    return found


def as_written(show, kind):
    """A shown value in the form it has on the wire."""
    if kind == "bool":
        return {"1": "true", "0": "false"}[show]
    if kind == "flag":
        return {"1": ""}[show]
    if kind == "speed":
        return f"{float(show):g}"
    return show
