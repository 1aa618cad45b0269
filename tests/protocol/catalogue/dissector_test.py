#!/usr/bin/env python3
"""Holds the Wireshark dissector to what was sent: dissector_test.py DISSECTOR [TEST...]"""

import os
import shutil
import struct
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree as ElementTree
from collections import defaultdict
from itertools import cycle, groupby
from pathlib import Path
from xml.sax.saxutils import unescape

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "samples"))
from messages import Faults, noisy  # noqa: E402
from values import CATALOGUE, Node, base, is_loose, variants  # noqa: E402

TSHARK = shutil.which("tshark")
NO_TSHARK = 77  # tells ctest that the test was skipped
PORT = 8913
CLIENT, SERVER = 0, 1  # who sends
NESTED = ["record", "set", "vector", "list"]
KINDS = {"cmd": "command", "reply": "reply", "report": "report"}


class Message:
    """One of the kind `root`, as it is sent on one of several connections, and what is to be shown of it."""

    def __init__(self, connection, root, entry, xid=""):
        self.line = connection, CLIENT if root == "cmd" else SERVER
        if connection == 0:
            body = Node(entry.name, [base(item.tag) for item in entry.items])
        else:
            body = Node(entry.name, [next(variants(item.tag)) for item in entry.items if not is_loose(item)])
        head = [Node("xid", xid)] if xid else []
        sent = Node(root, [*head, body if connection else noisy(body)])
        self.data = sent.lines().replace("\n", "\r\n").encode()
        self.fields = dict(values(Node(root, head)), kind=KINDS[root], name=entry.name, values=values(body))
        self.frames = {}  # which of its fields tell where another message ends

    def answer(self, command, place, ends):
        self.fields |= {"command": command.fields["name"], "place": str(place)}
        self.frames["request_in"] = command
        if ends:
            command.frames["response_in"] = self


def values(node):
    """The text of an element, or pairs of the tags and values in it."""
    if isinstance(node.content, str):
        return unescape(node.content, {"&quot;": '"', "&apos;": "'"})
    return [(each.name, values(each)) for each in node.content]


def shown_values(body):
    """The same as a body's fields show them, without what the catalogue does not have."""
    as_sent = {
        "bool": lambda part: {"1": "true", "0": "false"}[part.get("show")],
        "flag": lambda part: {"1": ""}[part.get("show")],
        "speed": lambda part: str(float(part.get("show"))).removesuffix(".0"),
    } | dict.fromkeys(NESTED, shown_values)
    fields = ((part.get("name", "").removeprefix("kvrp3."), part) for part in body)
    known = ((CATALOGUE.tags[tag], part) for tag, part in fields if tag in CATALOGUE.tags)
    return [(tag.name, as_sent.get(tag.kind, lambda part: part.get("show"))(part)) for tag, part in known]


def conversation(connection):
    """All commands, all the replies that they may get, and all reports: on connection 0 with everything that they
    may hold and with what nobody knows, on others with no more than they must."""
    commands = []
    for number, command in enumerate(CATALOGUE.commands.values()):
        xid = str(number % 100) if number % 5 else f"none{number}"  # some are there twice
        commands.append(Message(connection, "cmd", command, xid))
    yield from commands
    for number, (asked, command) in enumerate(zip(commands, CATALOGUE.commands.values())):
        streamed = [reply for reply in command.group.replies if not reply.ends] * 2
        ending = next(reply for reply in command.group.replies if reply.ends)
        if number % 7 == 0 and ending.name == "ok":
            ending = CATALOGUE.replies["error"]
        for place, reply in enumerate([*streamed, ending], 1):
            message = Message(connection, "reply", reply, asked.fields["xid"])
            message.answer(asked, place, reply is ending)
            yield message
    for report in CATALOGUE.reports.values():
        yield Message(connection, "report", report)


def cut(pieces, lengths):
    """The same bytes, in pieces of these lengths over and over."""
    length = cycle(lengths)
    for line, run in groupby(pieces, key=lambda piece: piece[0]):
        data = b"".join(bytes for _, bytes in run)
        while data:
            n = next(length)
            yield line, data[:n]
            data = data[n:]


def write_capture(path, pieces, port=PORT, lost=()):
    """Each piece is a frame of its own, and frame n goes out after n milliseconds; the lost ones are left out."""
    with open(path, "wb") as file:
        file.write(struct.pack("=IHHiIII", 0xA1B2C3D4, 2, 4, 0, 0, 1 << 18, 101))  # raw IP
        passed = defaultdict(lambda: 1)
        for frame, (line, data) in enumerate(pieces, 1):
            connection, sender = line
            way = slice(None, None, -1 if sender == SERVER else 1)
            ports = (50000 + connection, port)[way]
            back = passed[connection, 1 - sender]
            tcp = struct.pack("!HHIIBBHHH", *ports, passed[line], back, 5 << 4, 24, 65535, 0, 0) + data
            hosts = b"".join((bytes([127, 0, 0, 1]), bytes([127, 0, 0, 2]))[way])
            packet = struct.pack("!BBHHHBBH", 0x45, 0, 20 + len(tcp), 0, 0, 64, 6, 0) + hosts + tcp
            passed[line] += len(data)
            if frame not in lost:
                file.write(struct.pack("=IIII", *divmod(frame * 1000, 1000000), len(packet), len(packet)) + packet)


class Dissector(unittest.TestCase):
    maxDiff = 4000

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.settings = folder.name  # nobody's own
        self.path = f"{folder.name}/capture.pcap"

    def tshark(self, *arguments):
        done = subprocess.run(
            [TSHARK, "-X", f"lua_script:{DISSECTOR}", "-r", self.path, *arguments],
            env=os.environ | {"WIRESHARK_CONFIG_DIR": self.settings, "LC_ALL": "C.UTF-8"},
            capture_output=True,
            timeout=800,
        )
        complaint = done.stderr.decode()
        self.assertFalse(done.returncode or "lua" in complaint.lower(), complaint)
        return done.stdout.decode()

    def see(self, *arguments):
        """Messages, each with its frame, and notes: frame, field and text."""
        messages, notes = [], []
        for packet in ElementTree.fromstring(self.tshark(*arguments, "-T", "pdml")).iter("packet"):
            frame = int(packet.find("proto[@name='geninfo']/field[@name='num']").get("show"))
            for proto in packet.iterfind("proto[@name='kvrp3']"):
                fields = {part.get("name").removeprefix("kvrp3."): part.get("show") for part in proto}
                if "kind" in fields:
                    body = proto.find("field[@name='kvrp3.name']")
                    messages.append((frame, fields | {"values": shown_values(body or ())}))
                for note in proto.iterfind(".//field[@name='_ws.expert']"):
                    text = note.find("field[@name='_ws.expert.message']").get("show")
                    notes += [(frame, part.get("name"), text) for part in note if part.get("name", "")[:5] == "kvrp3"]
        return messages, notes

    def test_every_message_of_the_catalogue(self):
        sent = [message for connection in (0, 1) for message in conversation(connection)]
        pieces = [(message.line, message.data) for message in sent]
        for how, shape in (
            ("one message to a frame", pieces),
            ("many to a frame", list(cut(pieces, [60000]))),
            ("cut anywhere", list(cut(pieces, [1, 2, 3, 5, 8, 13, 700]))),
        ):
            with self.subTest(how):
                write_capture(self.path, shape)
                frames = defaultdict(list)  # of each byte, by line
                for frame, (line, data) in enumerate(shape, 1):
                    frames[line] += [frame] * len(data)
                for message in sent:
                    message.frame = frames[message.line][len(message.data) - 1]
                    del frames[message.line][: len(message.data)]
                shown, notes = self.see("-2")  # with a second pass, a command can tell what comes after it
                self.assertEqual(len(shown), len(sent))
                for message, (frame, fields) in zip(sent, shown):
                    wanted = message.fields | {name: str(other.frame) for name, other in message.frames.items()}
                    self.assertEqual((frame, {name: fields.get(name) for name in wanted}), (message.frame, wanted))
                    if asked := message.frames.get("request_in"):
                        self.assertAlmostEqual(float(fields["time"]), (frame - asked.frame) / 1000, delta=2e-6)
                self.assertEqual({name for _, name, _ in notes}, {"kvrp3.error"})

    def test_every_form_of_a_value(self):
        forms = Faults()
        for tag in CATALOGUE.tags.values():
            if tag.kind not in NESTED and tag.name != "xid":
                forms.value(tag, base(tag), lambda value: Node("sync", [value]))
        given = [node for node, _ in forms.accepted + forms.refused]
        pieces = [((0, CLIENT), f"<cmd><xid>1</xid>{node.xml()}</cmd>".encode()) for node in given]
        write_capture(self.path, pieces)
        shown, notes = self.see()
        count = len(forms.accepted)
        meant = [values(node) for _, node in forms.accepted]
        self.assertEqual([fields["values"] for _, fields in shown[:count]], meant)
        self.assertEqual([frame for frame, _, _ in notes], list(range(count + 1, len(given) + 1)))

    def test_bytes_that_are_no_messages(self):
        good = b"<cmd><xid>5</xid><delete_clip><ClipID>after</ClipID></delete_clip></cmd>"
        rows = (
            ("malformed", b"GET / HTTP/1.1\r\n\r\n", "begins none"),
            ("malformed", bytes(range(256)) * 20, "begins none"),
            ("malformed", b"<cmd a='1'><xid>1</xid><sync/></cmd>", "begins none"),
            ("malformed", b"<\bcmd><xid>1</xid><sync/></cmd>", "a tag that is none"),
            ("malformed", b"<" + b" " * 5000 + b"cmd><xid>1</xid><sync/></cmd>", "begins none"),
            ("malformed", b"<cmd><xid>1</xid><sync></cmd>", "closes another"),
            ("malformed", b"<cmd><xid>1</xid><sync/>", "has no end"),
            ("malformed", b"<cmd><xid>1 > 0</xid><sync/></cmd>", "a > in a text"),
            ("malformed", b"<cmd><xid>1</xid><!-- a --><sync/></cmd>", "a tag that is none"),
            ("malformed", b"<cmd>text<sync/></cmd>", "a text beside elements"),
            ("malformed", b"<cmd><" + b"a" * 5000 + b"/></cmd>", "a tag that does not end"),
            ("malformed", b"<cmd>" + b"<a>" * 20000, "too many elements"),
            ("malformed", b"<cmd><xid>" + b"a" * 1_200_000, "it does not end"),
            ("wrong", b"<cmd><xid>1</xid><zap><Zip>1</Zip></zap></cmd>", "There is no command 'zap'"),
            ("wrong", b"<cmd></cmd>", "An empty message"),
            ("wrong", b"<cmd><sync/></cmd>", "Tag 'xid' not found within 'cmd'"),
            ("wrong", b"<cmd><xid>1</xid><sync/><sync/></cmd>", "One <cmd> holds one"),
            ("wrong", good.replace(b"ClipID", b"ListID"), "Tag 'ClipID' not found within 'delete_clip'"),
            ("wrong", good.replace(b"</delete_clip>", b"<ClipID/></delete_clip>"), "More than one tag 'ClipID'"),
            ("wrong", b"<report><channel_speed><Channel>Z</Channel><Speed>1</Speed></channel_speed></report>",
             "Tag Channel contains an invalid value"),
            ("wrong", b"<cmd><xid>1</xid><gang_stop><ChannelSet>" + b"<Channel>A</Channel>" * 13 +
             b"</ChannelSet></gang_stop></cmd>", "ChannelSet holds at most 12"),
            ("unasked", b"<reply><xid>77</xid><ok/></reply>", "No command waits"),
        )
        for lengths in ([60000], [1460, 1, 7]):
            pieces, ranges = [], []
            for connection, (_, bad, _) in enumerate(rows):
                first = len(pieces) + 1
                pieces += cut([((connection, CLIENT), bad + good)], lengths)
                ranges.append(range(first, len(pieces) + 1))
            write_capture(self.path, pieces)
            shown, notes = self.see()
            for (kind, bad, words), frames in zip(rows, ranges):
                with self.subTest(bad[:60], lengths=lengths):
                    said = [note[1:] for note in notes if note[0] in frames]
                    self.assertTrue(any(name == f"kvrp3.{kind}" and words in text for name, text in said), said)
                    messages = [fields["values"] for frame, fields in shown if frame in frames]
                    self.assertEqual(messages[-1], [("ClipID", "after")])

    def test_a_message_of_which_a_segment_is_lost(self):
        parts = b"<cmd><xid>1</xid><sync", b"/></cmd>", b"<cmd><xid>3</xid><stop_all/></cmd>"
        write_capture(self.path, [((0, CLIENT), part) for part in parts], lost=[2])
        self.assertEqual([fields["xid"] for _, fields in self.see()[0]], ["3"])

    def test_the_list_of_packets_and_the_port(self):
        data = (b"<cmd><xid>14</xid><cue_clip><Channel>A</Channel><ClipID>news_0042</ClipID><BlackOnCue/></cue_clip>"
                b"</cmd>"
                b"<cmd><xid>none15</xid><gang_stop><ChannelSet><Channel>A</Channel><Channel>C</Channel></ChannelSet>"
                b"</gang_stop></cmd>")
        write_capture(self.path, [((0, CLIENT), data)], port=9000)
        self.assertEqual(self.see()[0], [])
        shown = self.tshark(
            "-o", "kvrp3.ports:9000", "-Y", 'kvrp3.Channel == "C" && kvrp3.name contains "gang"',
            "-T", "fields", "-e", "_ws.col.Protocol", "-e", "_ws.col.Info")
        self.assertEqual(shown, "KVRP3\tcue_clip Channel=A ClipID=news_0042 BlackOnCue (xid 14); "
                                "gang_stop ChannelSet=A,C (xid none15)\n")


if __name__ == "__main__":
    if not TSHARK:
        print("SKIPPED: tshark is not installed, so nothing holds the dissector to the truth here (./dev setup all)")
        sys.exit(NO_TSHARK)
    DISSECTOR = sys.argv.pop(1)
    unittest.main(verbosity=2)
