"""Metadata databases and the user dictionary in the model of the simulator: texts by key, and who watches them."""

from model.stage import Stage
from model.wire import OK, reply, x


class KeyedTexts(Stage):
    def __init__(self, *stage):
        super().__init__(*stage)
        self.metadata, self.dictionary = {"d": {}, "é e": {}}, {}

    def any_key(self):
        return self.one("a", "a.1", "a.2", "b", "zz", "", "two words")

    def any_value(self):
        return self.one("", "1", "x & y")

    def any_place(self):
        database, prefix = self.one(*self.metadata), self.one("", "", "a", "a.", "zz")
        self.probes += (self.about_metadata, database), (self.about_metadata, database, prefix)
        return database, prefix, {"MetadataDatabase": database, "MetadataPrefix": prefix or self.one(None, "")}

    def about_metadata(self, database, prefix=""):
        place = {"MetadataDatabase": database, "MetadataPrefix": prefix}
        pairs = [x("Metadata", Key=key[len(prefix):], Value=value)
                 for key, value in sorted(self.metadata[database].items()) if key.startswith(prefix)]
        parts = [reply(x("metadata", **place, MetadataList=pairs[i:i + 50])) for i in range(0, len(pairs), 50)]
        return x("download_metadata", **place), "".join(parts) + OK

    def about_key(self, key):
        value = self.dictionary.get(key)
        told = "" if value is None else x("report", x("userdict_change", Key=key, Value=value))
        return x("userdict_watch", Key=key), told + OK

    def tell_metadata(self, report, tag, database, changes):
        """Each client is told of what begins with a prefix that it watches, without that."""
        watched = set().union(*(watcher.prefixes for watcher in self.watchers.values()))
        for prefix in sorted(p for d, p in watched if d == database):
            covered = [change(key[len(prefix):]) for key, change in changes if key.startswith(prefix)]
            self.tell_where(lambda watcher: covered and (database, prefix) in watcher.prefixes,
                            x(report, MetadataDatabase=database, MetadataPrefix=prefix, **{tag: covered}))

    def metadata_set(self):
        database, prefix, place = self.any_place()
        many = self.chance(0.1)  # more than fit into one reply
        pairs = [(f"many{i}" if many else self.any_key(), self.any_value()) for i in range(60 if many else 3)]
        self.command = x("metadata_set", **place, MetadataList=[x("Metadata", Value=v, Key=k) for k, v in pairs])
        self.metadata[database].update((prefix + key, value) for key, value in pairs)
        self.tell_metadata("metadata_change", "MetadataList", database, [
            (prefix + key, lambda rest, v=value: x("Metadata", Key=rest, Value=v)) for key, value in pairs])

    def metadata_erase(self):
        database, prefix, place = self.any_place()
        present = [key[len(prefix):] for key in sorted(self.metadata[database]) if key.startswith(prefix)]
        keys = [self.one(self.any_key(), *present) for _ in range(3)]
        self.command = x("metadata_erase", **place, KeyList=[x("Key", key) for key in keys])
        gone = [key for key in keys if self.metadata[database].pop(prefix + key, None) is not None]
        self.tell_metadata("metadata_remove", "KeyList", database, [
            (prefix + key, lambda rest: x("Key", rest)) for key in gone])

    def watch_metadata(self):
        database, prefix, place = self.any_place()
        watched = self.watchers[self.who].prefixes
        if self.one(True, False):
            self.command = x("unwatch_metadata_database", MetadataDatabase=database)
            watched -= {(d, p) for d, p in watched if d == database}
        else:
            self.command = x("watch_metadata_database", **place)
            watched.add((database, prefix))

    def set_key(self, key, value):
        self.dictionary[key] = value
        self.tell_key(key, value)

    def tell_key(self, key, value):
        self.tell_where(lambda watcher: key in watcher.keys, x("userdict_change", Key=key, Value=value))

    def userdict(self):
        key, value, watcher = self.one("a", "", "two words"), self.any_value(), self.watchers[self.who]
        what = self.one("set", "set", "own", "erase", "watch", "watch", "unwatch")
        self.command = x("userdict_" + what, Key=key, Value=value if what in ("set", "own") else None)
        self.probes.append((self.about_key, key))
        if what == "set":
            self.set_key(key, value)
        elif what == "own":  # is set when the client goes
            watcher.owned[key] = value
        elif what == "erase" and self.dictionary.pop(key, None) is not None:
            self.tell_key(key, "")
        elif what == "watch":
            watcher.keys.add(key)
            self.heard[self.who] += self.about_key(key)[1][:-len(OK)]
        elif what == "unwatch":
            watcher.keys.discard(key)
