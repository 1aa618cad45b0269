#!/usr/bin/env python3
"""Holds the Wireshark dissector to what was really sent and received.

    dissector_test.py DISSECTOR CATALOGUE PROGRAMS_FOLDER [TEST...]

What tshark shows of a conversation must be what Python's own parser reads from the same bytes: each message
with its xid, name and values, in the frame where it ends, each reply tied to its command.
"""

import json
import os
import random
import shutil
import socket
import subprocess
import sys
import tempfile
import threading
import time
import unittest
from pathlib import Path

import views
from capture import CLIENT, SERVER, Capture, Chunk, cut, glued

DISSECTOR, CATALOGUE, PROGRAMS = sys.argv[1:4]
TSHARK = shutil.which("tshark")
NO_TSHARK = 77  # tells ctest that the test was skipped


def own_address():
    """Of this process alone, so that programs side by side never meet on one port."""
    host = os.getpid() * 4 % (60 << 16)
    return f"127.{192 + (host >> 16)}.{host >> 8 & 255}.{host & 255 | 1}"


class Recorder:
    """Stands between a client and a server, and notes the bytes that pass with their times."""

    def __init__(self, address, server):
        self.connections = []
        self.sockets = []
        self.server = server
        self.began = time.monotonic()
        self.listener = socket.create_server((address, CATALOGUE["port"]))
        self.threads = [threading.Thread(target=self.accept)]
        self.threads[0].start()

    def accept(self):
        while True:
            client, _ = self.listener.accept()
            if not self.server:
                client.close()
                return
            server = socket.create_connection((self.server, CATALOGUE["port"]))
            self.sockets += [client, server]
            chunks = []
            self.connections.append(chunks)
            for source, target, sender in (client, server, CLIENT), (server, client, SERVER):
                thread = threading.Thread(target=self.carry, args=(source, target, sender, chunks))
                self.threads.append(thread)
                thread.start()

    def carry(self, source, target, sender, chunks):
        try:
            while data := source.recv(65536):
                chunks.append(Chunk(sender, time.monotonic() - self.began, data))
                target.sendall(data)
            target.shutdown(socket.SHUT_WR)
        except OSError:
            pass  # one side has gone, and what it did get is noted

    def finish(self):
        """All that was said, by connection; ends when every client has gone."""
        self.server = None
        socket.create_connection(self.listener.getsockname()).close()
        for thread in self.threads:
            thread.join()
        for each in [self.listener, *self.sockets]:
            each.close()
        return self.connections


class SampleMessages:
    """Every message that the catalogue has, with every tag that it may hold or only with those that it must."""

    def __init__(self, full):
        self.full = full
        self.names = {entry["name"]: entry["names"] for entry in CATALOGUE["enumerations"]}
        self.records = {entry["name"]: entry["fields"] for entry in CATALOGUE["records"]}
        self.containers = {entry["name"]: entry for entry in CATALOGUE["containers"]}
        self.tags = {entry["name"]: entry for entry in CATALOGUE["tags"]}
        self.random = random.Random(1)

    def value(self, tag):
        kind, of = self.tags[tag]["kind"], self.tags[tag].get("type")
        largest = {"u8": 255, "u16": 65535, "u32": 4294967295, "u64": 18446744073709551615}
        if kind in largest:
            return str(self.random.choice([0, largest[kind]]))
        if kind == "enum":
            return self.random.choice(self.names[of])
        if kind == "record":
            return self.elements(self.records[of])
        if kind in ("set", "vector", "list"):
            return self.element(self.containers[of]["member"]) * self.random.randint(1, 3)
        texts = {
            "string": [" a &lt;b&gt; &amp;amp; ", "é 日本", ""],
            "bool": ["true", "false"],
            "flag": [""],
            "int": ["-2147483648", "2147483647"],
            "speed": ["1", "-0.5", "32.25"],
        }
        return self.random.choice(texts[kind])

    def element(self, tag, content=None):
        content = self.value(tag) if content is None else content
        return f"<{tag}>{content}</{tag}>" if content else f"<{tag} />"

    def elements(self, items):
        must = (not item["optional"] and self.tags[item["tag"]]["kind"] != "flag" for item in items)
        return "".join(self.element(item["tag"]) for item, needed in zip(items, must) if self.full or needed)

    def message(self, root, entry, items, xid=None):
        body = self.element(entry["name"], self.elements(items))
        return f"<{root}>\r\n{self.element('xid', xid) if xid else ''}{body}</{root}>".encode()

    def commands(self):
        """Each with its bytes and its xid, of which some say that no reply is waited for."""
        for number, command in enumerate(CATALOGUE["commands"], 1):
            xid = str(number) if number % 5 else f"none{number}"
            yield command, xid, self.message("cmd", command, command["arguments"], xid)

    def conversation(self):
        """The commands with all the replies that they may get, and all reports."""
        replies = {entry["name"]: entry for entry in CATALOGUE["replies"]}
        now, chunks = 0.0, []

        def say(sender, data):
            nonlocal now
            now += 0.001
            chunks.append(Chunk(sender, now, data))

        for number, (command, xid, data) in enumerate(self.commands(), 1):
            say(CLIENT, data)
            streamed = [name for name in command["replies"] if not replies[name]["ends"]] * 2
            endings = [name for name in command["replies"] if replies[name]["ends"]]
            for name in streamed + (["error"] if number % 7 == 0 and endings == ["ok"] else endings):
                say(SERVER, self.message("reply", replies[name], replies[name]["tags"], xid))
        for report in CATALOGUE["reports"]:
            say(SERVER, self.message("report", report, report["tags"]))
        return chunks


class Dissector(unittest.TestCase):
    maxDiff = 4000

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.tshark = views.Tshark(TSHARK, DISSECTOR, self.folder)

    def capture(self, *connections, port=None):
        capture = Capture(self.folder / "capture.pcap", port or CATALOGUE["port"])
        with capture:
            for chunks in connections:
                capture.add_connection(chunks)
        return capture

    def check(self, *connections):
        """The two views of a capture agree, and nothing in it is called wrong."""
        capture = self.capture(*connections)
        wanted = views.expected(capture, CATALOGUE)
        seen = self.tshark.see(capture.path, CATALOGUE)
        self.assertEqual(len(seen.messages), len(wanted))
        for got, want in zip(seen.messages, wanted):
            self.assertAlmostEqual(got.after, want.after, delta=2e-6)
            got.after = want.after
            self.assertEqual(got, want)
        self.assertEqual([note for note in seen.notes if note[1] != "kvrp3.error"], [])
        return wanted

    def test_every_message_of_the_catalogue(self):
        connections = [SampleMessages(full=True).conversation(), SampleMessages(full=False).conversation()]
        for how, shape in (
            ("one message to a segment", list),
            ("many to a segment", glued),
            ("cut anywhere", lambda chunks: cut(glued(chunks), [1, 2, 3, 5, 8, 13, 700])),
        ):
            with self.subTest(how):
                wanted = self.check(*map(shape, connections))
                for kind, table in ("command", "commands"), ("reply", "replies"), ("report", "reports"):
                    shown = {message.name for message in wanted if message.kind == kind}
                    self.assertEqual(shown, {entry["name"] for entry in CATALOGUE[table]})

    def test_a_recorded_conversation(self):
        server, recorder = own_address(), None
        client_side = server.rsplit(".", 1)[0] + f".{int(server.rsplit('.', 1)[1]) + 1}"
        simulator = subprocess.Popen(
            [f"{PROGRAMS}/skuan-sim", "--address", server, "--flood", "20", "--flood-count", "3", "--split", "23"],
            stdout=subprocess.PIPE,
        )
        try:
            self.assertIn(b"listening", simulator.stdout.readline())
            recorder = Recorder(client_side, server)
            everything = b"".join(data for _, _, data in SampleMessages(full=True).commands())
            twice = "<cmd><xid>7</xid><get_version_info/></cmd>" * 2
            for arguments, data in (
                (["info"], b""),
                (["clip", "list"], b""),
                (["--count", "3", "raw"], everything),
                (["raw"], twice.encode()),
            ):
                command = [f"{PROGRAMS}/skuanctl", "--host", client_side, *arguments]
                subprocess.run(command, input=data, stdout=subprocess.DEVNULL)
            connections = recorder.finish()
        finally:
            simulator.terminate()
            simulator.communicate()
        for how, pieces in (
            ("as recorded", connections),
            ("glued", map(glued, connections)),
            ("byte by byte", (cut(chunks, [1]) for chunks in connections[:1])),
        ):
            with self.subTest(how):
                wanted = self.check(*pieces)
                self.assertTrue(all(message.ended_in for message in wanted if message.kind == "command"))

    def test_bytes_that_are_no_messages(self):
        good = b"<cmd><xid>5</xid><delete_clip><ClipID>after</ClipID></delete_clip></cmd>"
        unknown = b"<cmd><xid>1</xid><zap><Zip>1</Zip></zap></cmd>"
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
            ("wrong", unknown, "There is no command 'zap'"),
            ("wrong", b"<cmd></cmd>", "An empty message"),
            ("wrong", b"<cmd><sync/></cmd>", "Tag 'xid' not found within 'cmd'"),
            ("wrong", b"<cmd><xid>1</xid><sync/><sync/></cmd>", "One <cmd> holds one"),
            ("wrong", good.replace(b"ClipID", b"ListID"), "Tag 'ClipID' not found within 'delete_clip'"),
            ("wrong", good.replace(b"</delete_clip>", b"<ClipID/></delete_clip>"), "More than one tag 'ClipID'"),
            ("wrong", b"<report><channel_speed><Channel>Z</Channel><Speed>1</Speed></channel_speed></report>",
             "Tag Channel contains an invalid value"),
            ("wrong", b"<report><disk_space_changed><DiskSpaceChange><TotalDiskSpace>-1</TotalDiskSpace>"
             b"<AvailableDiskSpace>0</AvailableDiskSpace></DiskSpaceChange></disk_space_changed></report>",
             "Tag TotalDiskSpace contains an invalid value"),
            ("wrong", b"<cmd><xid>1</xid><gang_stop><ChannelSet>" + b"<Channel>A</Channel>" * 13 +
             b"</ChannelSet></gang_stop></cmd>", "ChannelSet holds at most 12"),
            ("unasked", b"<reply><xid>77</xid><ok/></reply>", "No command waits"),
        )
        for lengths in ([65000], [1460, 1, 7]):
            captured = self.capture(*(cut([Chunk(CLIENT, 0, bad), Chunk(CLIENT, 0, good)], lengths) for _, bad, _ in rows))
            seen = self.tshark.see(captured.path, CATALOGUE)
            for (kind, bad, words), segments in zip(rows, captured.connections):
                with self.subTest(bad[:60], lengths=lengths):
                    frames = range(segments[0].frame, segments[-1].frame + 1)
                    notes = [note for note in seen.notes if note[0] in frames]
                    self.assertTrue(any(name == f"kvrp3.{kind}" and words in text for _, name, text in notes), notes)
                    messages = [message for message in seen.messages if message.frame in frames]
                    self.assertEqual(messages[-1].values, [("ClipID", "after")])

    def test_a_message_of_which_a_segment_is_lost(self):
        start, whole = b"<cmd><xid>1</xid><sync", b"<cmd><xid>3</xid><delete_clip><ClipID>a</ClipID></delete_clip></cmd>"
        chunks = [Chunk(CLIENT, 0, start), Chunk(CLIENT, 0, b"/></cmd>", lost=True), Chunk(CLIENT, 0, whole)]
        seen = self.tshark.see(self.capture(chunks).path, CATALOGUE, passes=1)
        self.assertEqual([message.xid for message in seen.messages], ["3"])

    def test_the_list_of_packets_and_the_port(self):
        data = (b"<cmd><xid>14</xid><cue_clip><Channel>A</Channel><ClipID>news_0042</ClipID><BlackOnCue/></cue_clip></cmd>"
                b"<cmd><xid>none15</xid><gang_stop><ChannelSet><Channel>A</Channel><Channel>C</Channel></ChannelSet>"
                b"</gang_stop></cmd>")
        capture = self.capture([Chunk(CLIENT, 0, data)], port=9000)
        self.assertEqual(self.tshark.see(capture.path, CATALOGUE).messages, [])
        shown = self.tshark.run(
            capture.path, "-o", "kvrp3.ports:9000", "-Y", 'kvrp3.Channel == "C" && kvrp3.name contains "gang"',
            "-T", "fields", "-e", "_ws.col.Protocol", "-e", "_ws.col.Info")
        self.assertEqual(shown, "KVRP3\tcue_clip Channel=A ClipID=news_0042 BlackOnCue (xid 14); "
                                "gang_stop ChannelSet=A,C (xid none15)\n")


if __name__ == "__main__":
    if not TSHARK:
        print("SKIPPED: tshark is not installed, so nothing holds the dissector to the truth here (./dev setup all)")
        sys.exit(NO_TSHARK)
    CATALOGUE = json.loads(Path(CATALOGUE).read_text())
    unittest.main(argv=sys.argv[:1] + sys.argv[4:], verbosity=2)
