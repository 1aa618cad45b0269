#!/usr/bin/env python3
"""Holds the simulator to a small model of clips, lists, metadata and the user dictionary.

    model_test.py SKUAN_SIM...

Several clients give random commands, good and bad. After each, server and model must agree on the answer, on
every report that somebody is owed, and on what the command touched; now and then, and after each restart, on
everything. The seed is printed: SKUAN_SEED repeats a walk, and SKUAN_ROUNDS makes it longer.
"""

import copy
import os
import random
import re
import sys
import tempfile
import time
from xml.sax.saxutils import unescape

from model.clips import Clip, Clips, listed, parent
from model.lists import KINDS, Lists
from model.server import Server
from model.stage import Refused, Watcher
from model.texts import KeyedTexts
from model.wire import GENERAL, OK, Client, X, error, reply, x

ASKER, CLIENTS = (0,), (1, 2, 3)
STEPS = 600  # in a round, against a fresh server


class World(Clips, Lists, KeyedTexts):
    plan = ()

    def next_client(self):
        """Who gives the next command: the same client until its plan is carried out."""
        if not self.plan:
            self.who = self.one(*CLIENTS)
            self.choose()
            self.plan = list(self.one(*[[]] * 15, *self.PLANS))
        return self.who

    def step(self):
        """Gives a random command, and questions about what it touched with their answers."""
        self.heard, self.probes = dict.fromkeys(CLIENTS, ""), []
        spoiled = self.chance(0.05)
        kept = copy.deepcopy({**self.__dict__, "dice": None}) if spoiled else None
        interrupted = not self.plan or self.chance(0.1)
        try:
            (self.one(*self.COMMANDS) if interrupted else self.plan.pop(0))(self)
            answer = OK
        except Refused as refused:
            answer = error(*refused.args)
        double = re.match(r"(<\w+>)(<(\w+)>[^<]*</\3>)", self.command)
        if spoiled and double:  # its first argument stands there twice
            command = X(self.command.replace(double[0], double[0] + double[2], 1))
            self.__dict__.update(kept, dice=self.dice, probes=self.probes, command=command)
            answer = error(GENERAL)
        self.heard[self.who] += answer
        return self.command, [about(*what) for about, *what in self.probes]

    def leave(self, who):
        self.heard = dict.fromkeys(CLIENTS, "")
        owned, self.watchers[who] = self.watchers[who].owned, Watcher()
        for key in sorted(owned):
            self.set_key(key, owned[key])

    def restart(self):
        """What is on channels does not outlive the server."""
        self.heard = dict.fromkeys(CLIENTS, "")
        self.loaded, self.used = ({}, {}), {}

    def everything(self):
        yield x("download_clipids"), "".join(
            reply(x("clipid", ClipID=name)) for name in sorted(self.clips, key=listed)) + OK
        yield x("download_directory_names"), "".join(
            reply(x("directory_name", DirectoryName=name)) for name in sorted(self.directories)) + OK
        yield from map(self.about_clip, self.clips)
        for kind, (word, tag, _) in enumerate(KINDS):
            yield x(f"download_{word}ids"), "".join(
                reply(x(word + "id", **{tag + "ID": name})) for name in sorted(self.lists[kind])) + OK
            yield from (self.about_list(kind, name) for name in self.lists[kind])
            yield from (self.about_loaded(kind, channel) for channel in "AB")
        yield from map(self.about_metadata, self.metadata)
        yield from map(self.about_key, self.dictionary)

    def register(self):
        """Registers, or ends a registration; whoever registers for a channel's list is told of it at once."""
        classes, on = self.watchers[self.who].classes, self.one(True, True, False)
        verb, change = ("register", classes.add) if on else ("unregister", classes.discard)
        if self.one(True, False):
            name = self.one("clip_change", "directory_change", "playlist_change", "chaselist_change")
            change(name)
            self.command = x("report_" + verb, ReportType=name)
        else:
            change(f"{self.channel} {self.word}play")
            self.command = x("channel_report_" + verb, Channel=self.channel, ChannelReportType=self.word + "play")
            if on:
                self.heard[self.who] += self.about_loaded(self.kind, self.channel)[1][:-len(OK)]

    COMMANDS = [
        Clips.create_clip, Clips.create_child, Clips.delete_clip, Clips.rename_clip, Clips.rename_clip,
        Clips.modify_clip, Clips.modify_clip, Clips.create_directory, Clips.rename_dir, Clips.rename_dir,
        Clips.use_clip, Lists.save_start, Lists.save_element, Lists.save_end, Lists.rename_list, Lists.delete_list,
        Lists.load_list, Lists.unload_list, Lists.insert, Lists.remove, Lists.modify_item, Lists.clear_modified,
        Lists.reorder_start, Lists.reorder_item, Lists.reorder_finish, *[KeyedTexts.metadata_set] * 2,
        *[KeyedTexts.metadata_erase] * 3, *[KeyedTexts.watch_metadata] * 4, *[KeyedTexts.userdict] * 6,
        *[register] * 2,
    ]
    # What makes sense only in a row.
    PLANS = [
        [Lists.save_start, *[Lists.save_element] * 4, Lists.save_end, Lists.load_list, register],
        [Lists.load_list, *[Lists.insert] * 3, Lists.modify_item, Lists.clear_modified, Lists.remove],
        [Lists.reorder_start, Lists.reorder_item, Lists.reorder_item, Lists.reorder_finish],
    ]

    def begin_with(self, client):
        """Takes the clips that a fresh server has for granted; what is done to them is the model's business."""
        for name in re.findall("<ClipID>(.*?)<", client.hear("<download_clipids/>")):
            info = client.hear(f"<get_clip_info><ClipID>{name}</ClipID></get_clip_info>")
            fields = re.findall(r"(<(\w+)(?:/>|>.*?</\2>))", re.search("<ClipInfo>(.*)</ClipInfo>", info)[1])
            clip = self.clips[unescape(name, {"&quot;": '"'})] = Clip((tag, X(whole)) for whole, tag in fields)
            del clip["LoopOut"]
        self.directories = {d for name in self.clips for d in (parent(name), parent(parent(name))) if d}
        self.fresh_clip = Clip(self.clips["station_ident_25s"])
        for tag in ("Title", "Creator", "Project"):
            self.fresh_clip.set(tag, "")


class Names(dict):
    """Of UUIDs, by the order in which they come: each side has its own, and what counts is which are the same."""

    def put_into(self, text):
        return re.sub("(?<=UUID>)[^<]+", lambda uuid: self.setdefault(uuid[0], str(len(self))), text)


def walk(seed, server):
    world = World(random.Random(seed), CLIENTS)
    clients = {who: Client(server.address) for who in ASKER + CLIENTS}
    world.begin_with(clients[0])
    names = Names(), Names()

    def same(what, got, wanted):
        got, wanted = names[0].put_into(got), names[1].put_into(wanted)
        assert got == wanted, f"step {step}: {command}\n{what}\n  got\n    {got}\n  and not\n    {wanted}"

    def agree(heard, probes):
        for who in CLIENTS:
            same(f"client {who}", heard.get(who, "") + clients[who].hear(), world.heard[who])
        for question, answer in probes:
            got = clients[0].hear(question)
            clients[0].hear(question.replace("_register", "_unregister").replace("_watch", "_unwatch"))
            same(question, got, answer)

    def leave(who):
        clients[who].leave()
        if who in CLIENTS:
            world.leave(who)

    for step in range(STEPS):
        who = world.next_client()
        if world.chance(0.02):
            command = f"client {who} leaves"
            leave(who)
            clients[who] = Client(server.address)
            agree({}, world.everything())
        elif world.chance(0.005):
            command = "restart"
            for who in ASKER + CLIENTS:
                leave(who)
            server.restart()
            world.restart()
            clients = {who: Client(server.address) for who in ASKER + CLIENTS}
            agree({}, world.everything())
        else:
            command, probes = world.step()
            heard = clients[who].hear(command)
            agree({who: heard}, world.everything() if step % 50 == 49 else probes)


def main():
    seed = int(os.environ.get("SKUAN_SEED", time.time() % 1e6))
    print(f"SKUAN_SEED={seed}", flush=True)
    for turn in range(int(os.environ.get("SKUAN_ROUNDS", 6))):
        with tempfile.TemporaryDirectory(dir=os.curdir) as folder:
            server = Server([*sys.argv[1:], "--pace", "0", "--state", os.path.join(folder, "state")])
            try:
                walk(seed + turn, server)
                server.stop()
            finally:
                server.kill()


if __name__ == "__main__":
    main()
