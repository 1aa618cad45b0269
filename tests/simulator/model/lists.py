"""Play lists and chase lists in the model of the simulator: the same rules under different names."""

from model.stage import Stage, kept
from model.wire import GENERAL, OK, X, error, reply, x

KINDS = (("list", "List", "playlist"), ("chase", "Chase", "chaselist"))  # in commands, in tags, saved


class Lists(Stage):
    def __init__(self, *stage):
        super().__init__(*stage)
        self.lists, self.loaded = ({}, {}), ({}, {})  # of each kind; the loaded ones by channel

    def choose(self):
        """The kind and the channel that the next commands are about."""
        self.kind, self.channel = self.dice.randrange(2), self.one("A", "B")
        self.word, self.tag, self.saved = KINDS[self.kind]

    ELEMENT = {
        "ContentID": [kept(x("ContentID", ClipID="a b")), kept(x("ContentID", VClipID="")), (X(""), None)],
        "GotoPosition": [(x("GotoPosition", "007"), x("GotoPosition", 7)), (x("GotoPosition", 1 << 32), None)],
        "Speed": [(x("Speed", "1X"), x("Speed", 1)), (x("Speed", "-.50"), x("Speed", -0.5)),
                  (x("Speed", "fast"), None)],
        "Angle": [kept(x("Angle", 255)), (x("Angle", 256), None), (X(x("Angle", 1) * 2), None)],
    }
    CHANGE = ({"ListElementAtStart": [kept(x("ListElementAtStart", "pause"))],
               "ListElementAtEnd": [kept(x("ListElementAtEnd", "loop")), (x("ListElementAtEnd", "black"), None)],
               "Transition": [(x("Transition", TransitionDuration=9, TransitionType="dissolve"),
                               x("Transition", TransitionType="dissolve", TransitionDuration=9))]},
              {"ChaseElementAtEnd": [kept(x("ChaseElementAtEnd", "black"))],
               "ClipStartOffset": [kept(x("ClipStartOffset", 3))],
               "TcStartTrigger": [kept(x("TcStartTrigger", 90000))]})

    def any_element(self):
        return self.any_record(self.tag + "Element", {**self.ELEMENT, **self.CHANGE[self.kind]}, ["ContentID"])

    def any_index(self):
        size = len(self.list()["elements"]) if self.list() else 1
        return 65535 if self.chance(0.05) else self.dice.randrange(size + 1)

    def any_id(self):
        return self.one("morning", "evening", "é & co", "", *sorted(self.lists[self.kind]) * 3)

    def list(self):
        return self.loaded[self.kind].get(self.channel)

    def element(self, kind, element):
        order = {**self.ELEMENT, **self.CHANGE[kind]}
        return x(KINDS[kind][1] + "Element", *(element[field] for field in order if field in element))

    def about_list(self, kind, name):
        word, tag, _ = KINDS[kind]
        elements = self.lists[kind].get(name)
        return x("download_" + word, x(tag + "ID", name)), error(GENERAL) if elements is None else "".join(
            reply(x(word + "_element", self.element(kind, element))) for element in elements) + OK

    def described(self, kind, channel):
        """What the reports of a channel's list say when they tell all of it."""
        word, tag, _ = KINDS[kind]
        loaded = self.loaded[kind].get(channel)

        def report(what, *fields):
            return x(f"channel_{word}play_{what}", x("Channel", channel), *fields)
        if not loaded:
            return [report("unloaded")]
        mode, play_only = [], []
        if kind == 0:
            mode = [x("ListPlayMode", "single_channel")]
            play_only = [report("air_lock", x("ListPlaybackIndex")), report("air_next", self.first_of(loaded)),
                         report("loop", x("Loop", "off"))]
        elements = [self.element(kind, element) for element in loaded["elements"]]
        return [report(word, x(tag + "ID", loaded["id"]), *mode),
                *(report("item_exists", x(tag + "Index", i), element) for i, element in enumerate(elements)),
                report("air_now", x(tag + "PlaybackIndex")), *play_only,
                report("modified", x("ModifiedFlag", loaded["modified"]))]

    def about_loaded(self, kind, channel):
        return (x("channel_report_register", Channel=channel, ChannelReportType=KINDS[kind][0] + "play"),
                "".join(x("report", report) for report in self.described(kind, channel)) + OK)

    def tell_list(self, what, *fields):
        self.tell_of_list(x(f"channel_{self.word}play_{what}", x("Channel", self.channel), *fields))

    def tell_of_list(self, *reports):
        self.tell(f"{self.channel} {self.word}play", *reports)

    @staticmethod
    def first_of(loaded):
        """Which is the next one of a play list that is not on the air."""
        return x("ListPlaybackIndex", ListIndex=0 if loaded["elements"] else None)

    def tell_modified(self, flag="modified"):
        if self.list()["modified"] != flag:
            self.list()["modified"] = flag
            self.tell_list("modified", x("ModifiedFlag", flag))

    def tell_saved(self, what, name):
        self.tell(self.saved + "_change", x(f"{self.saved}_{what}", x(self.tag + "ID", name)))

    def edit(self, what, *fields):
        """A command about the list on the channel, which is looked at afterwards."""
        self.probes.append((self.about_loaded, self.kind, self.channel))
        self.command = x(self.word + what, x("Channel", self.channel), *fields)

    def save_start(self):
        name = self.any_id()
        self.command = x(self.word + "_save_start", x(self.tag + "ID", name))
        self.need(name)
        self.watchers[self.who].drafts[self.kind] = (name, [])

    def save_element(self):
        sent, element = self.any_element()
        draft = self.watchers[self.who].drafts[self.kind]
        self.command = x(self.word + "_save_element", sent)
        self.need(draft and element)
        draft[1].append(element)

    def save_end(self):
        drafts = self.watchers[self.who].drafts
        draft, drafts[self.kind] = drafts[self.kind], None
        self.command = x(self.word + "_save_end")
        self.need(draft)
        name, elements = draft
        self.tell_saved("changed" if name in self.lists[self.kind] else "created", name)
        self.lists[self.kind][name] = elements
        self.probes.append((self.about_list, self.kind, name))

    def rename_list(self):
        name, to, lists = self.any_id(), self.one("night", self.any_id()), self.lists[self.kind]
        self.command = x(self.word + "_rename", x(self.tag + "FromID", name), x(self.tag + "ToID", to))
        self.need(name in lists and to and to not in lists)
        lists[to] = lists.pop(name)
        self.tell_saved("deleted", name)
        self.tell_saved("created", to)

    def delete_list(self):
        name = self.any_id()
        self.command = x(self.word + "_delete", x(self.tag + "ID", name))
        self.need(name in self.lists[self.kind])
        del self.lists[self.kind][name]
        self.tell_saved("deleted", name)

    def load_list(self):
        name = self.any_id()
        self.edit("_load", x(self.tag + "ID", name))
        self.need(name in self.lists[self.kind])
        if self.list():
            self.tell_list("clear_all")
        elements = list(self.lists[self.kind][name])
        self.loaded[self.kind][self.channel] = {"id": name, "modified": "unmodified", "elements": elements}
        self.tell_of_list(*self.described(self.kind, self.channel))

    def unload_list(self):
        self.edit("_unload")
        self.need(self.list())
        del self.loaded[self.kind][self.channel]
        self.tell_list("unloaded")

    def edit_item(self, verb, report, taken, sent="", change=()):
        """So many elements make room for one, which is the old one with a change; for none if nothing is sent."""
        at, loaded = self.any_index(), self.list()
        self.edit(verb, x(self.tag + "Index", at), sent)
        self.need(change is not None and loaded and at + taken <= len(loaded["elements"]))
        first, old = self.first_of(loaded), loaded["elements"][at:at + taken]
        loaded["elements"][at:at + taken] = new = [dict(*old, **change)] if sent else []
        self.tell_list(report, x(self.tag + "Index", at), *(self.element(self.kind, element) for element in new))
        if self.kind == 0 and first != self.first_of(loaded):
            self.tell_list("air_next", self.first_of(loaded))
        self.tell_modified()

    def insert(self):
        self.edit_item("_insert", "item_insert", 0, *self.any_element())

    def remove(self):
        self.edit_item("_remove_item", "item_remove", 1)

    def modify_item(self):
        change = self.any_record(self.tag + "ElementChange", self.CHANGE[self.kind])
        self.edit_item("_play_modify_item", "item_exists", 1, *change)

    def clear_modified(self):
        self.edit("_play_clear_modified")
        self.need(self.list())
        self.tell_modified("unmodified")

    def reorder_start(self):
        self.edit("_play_reorder_start")
        self.need(self.list())
        self.watchers[self.who].reorderings[self.kind] = (self.channel, set())

    def reorder_item(self):
        at, reordering = self.any_index(), self.watchers[self.who].reorderings[self.kind]
        self.command = x(self.word + "_play_reorder_item", x(self.tag + "Index", at))
        self.need(reordering)
        reordering[1].add(at)

    def reorder_finish(self):
        """What was picked moves, in the order it stands in, before the element that the finish names."""
        reorderings = self.watchers[self.who].reorderings
        (channel, picked), reorderings[self.kind] = reorderings[self.kind] or (None, None), None
        self.channel = channel or self.channel
        at, loaded = self.any_index(), self.list()
        self.probes.append((self.about_loaded, self.kind, self.channel))
        self.command = x(self.word + "_play_reorder_finish", x(self.tag + "Index", at))
        self.need(channel and loaded and max(picked | {at - 1}) < len(loaded["elements"]))
        rank = {i: (1 if i in picked else 0 if i < at else 2, i) for i in range(len(loaded["elements"]))}
        loaded["elements"] = [loaded["elements"][i] for i in sorted(rank, key=rank.get)]
        loaded["modified"] = "modified"
        self.tell_list("clear_all")
        self.tell_of_list(*self.described(self.kind, channel))
