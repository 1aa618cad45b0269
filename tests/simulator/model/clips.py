"""Clips and directories in the model of the simulator."""

import copy
import re

from model.stage import Stage, kept
from model.wire import GENERAL, NO_CLIP, OK, X, error, reply, x


def parent(name):
    return name.rpartition("/")[0]


def listed(name):
    """Clips are listed by directory, then by name."""
    return parent(name), name


def is_name(name):
    return 0 < len(name) <= 1000 and all(name.split("/"))


class Clip(dict):
    """Its information: each field whole, by its tag."""

    ORDER = """ClipID VideoStandard TrackInfoVector Title Creator Project Playback Interp Loop LoopOut LoopIn
        ClipLength TimecodeSource StripeTimecode ReadOnly ID8 MetadataList SpecialClipType CompressionBitrate
        Frame0Timecode TrimStart TrimEnd ClipLengthUntrimmed CompressionType ClipUUID ParentUUID Angle
        ClipFileType""".split()
    metadata = None  # none was ever set

    def set(self, tag, *content):
        self[tag] = x(tag, *content)

    def number(self, tag):
        return int(re.sub(r"<.*?>", "", self[tag]))

    def text(self, name):
        played = self.number("ClipLengthUntrimmed") - self.number("TrimStart") - self.number("TrimEnd")
        shown = {**self, "ClipID": x("ClipID", name), "ClipLength": x("ClipLength", played)}
        shown.setdefault("LoopOut", x("LoopOut", played))
        if self.metadata is not None:
            entries = (x("Metadata", Key=key, Value=value) for key, value in self.metadata.items())
            shown["MetadataList"] = x("MetadataList", *entries)
        return x("ClipInfo", *(shown[tag] for tag in self.ORDER if tag in shown))


class Clips(Stage):
    def __init__(self, *stage):
        super().__init__(*stage)
        self.clips, self.directories, self.used = {}, set(), {}  # used: by channel
        self.last_uuid = 0

    def any_name(self):
        if self.chance(0.04):
            return self.one("", "/a", "a/", "a//b", "n" * 1000, "n" * 1001, "d" * 990 + "/n")
        directories = self.dice.choices(["a", "b", "é & <co>"], k=self.dice.randrange(4))
        return "/".join([*directories, self.one("1", "2", "a")])

    def any_clip(self):
        return self.any_name() if self.chance(0.15) else self.one(*sorted(self.clips))

    def about_clip(self, name):
        clip = self.clips.get(name)
        return x("get_clip_info", ClipID=name), reply(x("clipinfo", clip.text(name))) if clip else error(NO_CLIP)

    def about_directory(self, name):
        inside = sorted(clip for clip in self.clips if parent(clip) == name)
        there = "".join(reply(x("clipid", ClipID=clip)) for clip in inside) + OK
        return (x("download_clipids", x("DirectoryName", name)),
                there if name == "" or name in self.directories else error(GENERAL))

    def touch(self, *names):
        for name in names:
            self.probes += (self.about_clip, name), (self.about_directory, parent(name))

    def make_directories(self, name):
        if name and name not in self.directories:
            self.make_directories(parent(name))
            self.directories.add(name)
            self.tell("directory_change", x("directory_created", DirectoryName=name))

    def need_changeable(self, name):
        self.need(name in self.clips, NO_CLIP)
        self.need("true" not in self.clips[name]["ReadOnly"])

    def need_movable(self, name):
        self.need_changeable(name)
        self.need(name not in self.used.values())

    def need_free(self, name):
        self.need(is_name(name) and name not in self.clips)

    def add(self, name, clip):
        self.touch(name)
        self.need_free(name)
        self.make_directories(parent(name))
        self.last_uuid += 1
        clip.set("ClipUUID", f"new {self.last_uuid}")
        self.clips[name] = clip
        self.tell("clip_change", x("clip_created", ClipID=name))

    def move(self, names):
        self.tell("clip_change", *(x("clip_deleted", ClipID=name) for name in names))
        for name, to in names.items():
            self.clips[to] = self.clips.pop(name)
            self.tell("clip_change", x("clip_created", ClipID=to))

    def create_clip(self):
        name, length = self.any_name(), self.one(None, 1, 100, 1500)
        types = [t for t in ("video", "key", "audio", "timecode") if self.chance(0.5)]
        self.command = x("create_clip", ClipID=name, TrackSet=[x("TrackType", t) for t in types], ClipLength=length)
        clip = Clip(self.fresh_clip)
        clip.set("ClipLengthUntrimmed", length or 0)
        tracks = sum(([x("TrackInfo", TrackType=t)] * (8 if t == "audio" else 1) for t in types), [])
        clip.set("TrackInfoVector", *tracks)
        self.add(name, clip)

    def create_child(self):
        name, of, angle = self.any_name(), self.any_clip(), self.one(None, 2)
        self.command = x("create_child_clip", ClipID=name, ParentClipID=of, Angle=angle)
        self.need(of in self.clips, NO_CLIP)
        clip = copy.deepcopy(self.clips[of])
        clip["ParentUUID"] = X(clip["ClipUUID"].replace("ClipUUID", "ParentUUID"))
        clip.set("ReadOnly", "false")
        if angle:
            clip.set("Angle", angle)
        self.add(name, clip)

    def delete_clip(self):
        name = self.any_clip()
        self.command = x("delete_clip", ClipID=name)
        self.touch(name)
        self.need_movable(name)
        del self.clips[name]
        self.tell("clip_change", x("clip_deleted", ClipID=name))

    def rename_clip(self):
        name, to = self.any_clip(), self.any_name()
        self.command = x("rename_clip", FromID=name, ToID=to)
        self.touch(name, to)
        self.need_movable(name)
        self.need_free(to)
        self.make_directories(parent(to))
        self.move({name: to})

    ATTRIBUTES = {
        "Title": [kept(x("Title", 'A & "B"')), kept(x("Title"))],
        "Playback": [kept(x("Playback", "f12")), (x("Playback", "f21"), None)],
        "LoopOut": [(x("LoopOut", "0090"), x("LoopOut", 90))],
        "StripeTimecode": [(x("StripeTimecode", Odd=1, FieldNumber="+5", Valid=7),
                            x("StripeTimecode", Valid="true", FieldNumber=5)),
                           (x("StripeTimecode", FieldNumber=1), None)],
        "ID8": [kept(x("ID8", "short")), kept(x("ID8"))],
        "TrimStart": [kept(x("TrimStart", 10)), kept(x("TrimStart", 0))],
        "TrimEnd": [kept(x("TrimEnd", 1)), kept(x("TrimEnd", 95)), (x("TrimEnd", "1.0"), None)],
    }

    def modify_clip(self):
        name = self.any_clip()
        pairs = [(self.one("k", "l", ""), self.one("1", "two words", "")) for _ in range(self.dice.randrange(4))]
        keys = self.dice.sample(["k", "l", "none"], self.dice.randrange(3))
        lists = {"KeyList": [kept(x("KeyList", *(x("Key", key) for key in keys)))],
                 "MetadataList": [kept(x("MetadataList", *(x("Metadata", Value=v, Key=k) for k, v in pairs)))]}
        if not pairs and not keys:
            lists = {}
        sent, change = self.any_record("ClipAttrChange", {**self.ATTRIBUTES, **lists}, lists)
        self.command = x("modify_clip_attributes", x("ClipID", name), sent)
        self.touch(name)
        self.need(change is not None)
        self.need_changeable(name)
        clip = copy.deepcopy(self.clips[name])
        clip.update(change)
        if pairs or keys:
            clip.metadata = dict(clip.metadata or {})
        for key, value in pairs:  # what is set anew comes last
            clip.metadata.pop(key, None)
            clip.metadata[key] = value
        for key in keys:  # even if the same command sets it
            clip.metadata.pop(key, None)
        self.need(clip.number("TrimStart") + clip.number("TrimEnd") <= clip.number("ClipLengthUntrimmed"))
        self.clips[name] = clip
        self.tell("clip_change", x("clip_changed", ClipID=name))

    def create_directory(self):
        name = parent(self.any_name())
        self.command = x("create_directory", x("DirectoryName", name))
        self.probes.append((self.about_directory, name))
        self.need(is_name(name) and name not in self.directories)
        self.make_directories(name)

    def rename_dir(self):
        name, to = parent(self.any_clip()), parent(self.any_name())
        self.command = x("rename_dir", FromDir=name, ToDir=to)
        self.probes += (self.about_directory, name), (self.about_directory, to)
        named = (clip for clip in sorted(self.clips, key=listed) if clip.startswith(name + "/"))
        clips = {clip: to + clip[len(name):] for clip in named}
        nested = [name] + sorted(d for d in self.directories if d.startswith(name + "/"))
        self.need(name in self.directories and is_name(to) and to not in self.directories
                  and not to.startswith(name + "/") and all(map(is_name, clips.values())))
        for clip in clips:
            self.need_movable(clip)
        self.directories -= set(nested)
        self.tell("directory_change", *(x("directory_deleted", DirectoryName=d) for d in nested))
        self.make_directories(parent(to))
        for directory in nested:
            self.make_directories(to + directory[len(name):])
        self.move(clips)

    def use_clip(self):
        """A clip on a channel can neither go nor get another name."""
        channel, name = self.one("K", "L"), self.any_clip()
        if self.one(True, False):
            self.command = x("unload", Channel=channel)
            self.used.pop(channel, None)
        else:
            self.command = x("cue_clip", Channel=channel, ClipID=name)
            self.need(name in self.clips, NO_CLIP)
            self.used[channel] = name
