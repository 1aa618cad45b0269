#!/usr/bin/env python3
"""Kills the simulator in the middle of a save: what it loads then is the old state or the new one, and whole.

    kill_test.py SKUAN_SIM...

Everything that is changed between two saves carries the number of its generation.
"""

import os
import random
import re
import sys
import tempfile
import time

from model.server import Server
from model.wire import OK, Client, x

KEYS = 300
CLIPS = 5000  # so that a save takes its time
ROUNDS = int(os.environ.get("SKUAN_ROUNDS", 8))


def change(client, generation):
    pairs = [x("Metadata", Key=key, Value=generation) for key in range(KEYS)]
    done = client.hear(x("metadata_set", MetadataDatabase="d", MetadataList=pairs),
                       x("userdict_set", Key="k", Value=generation),
                       x("list_save_start", ListID="l"),
                       *[x("list_save_element", x("ListElement", ContentID=[], GotoPosition=generation))] * KEYS,
                       x("list_save_end"))
    assert done.count(OK) == KEYS + 4, done[:1000]


def generations(client):
    """Of all that was changed; nothing may be missing."""
    told = client.hear(x("download_metadata", MetadataDatabase="d"), x("userdict_watch", Key="k"),
                       x("download_list", ListID="l"), x("download_clipids"))
    found = re.findall(r"<(?:Value|GotoPosition)>(\d+)<", told)
    assert len(found) == 2 * KEYS + 1 and told.count("<clipid>") == CLIPS, told[:1000]
    return set(map(int, found))


def main():
    seed = int(os.environ.get("SKUAN_SEED", time.time() % 1e6))
    print(f"SKUAN_SEED={seed}", flush=True)
    dice, kept = random.Random(seed), 0
    with tempfile.TemporaryDirectory(dir=os.curdir) as folder:
        words = [*sys.argv[1:], "--clip-count", str(CLIPS), "--state", os.path.join(folder, "state")]
        for generation in range(1, ROUNDS + 2):
            server = Server(words)
            try:
                client = Client(server.address)
                if generation > 1:
                    found = generations(client)
                    assert found in ({generation - 1}, {kept}), f"{found}, not {kept} or {generation - 1}"
                    kept = found.pop()
                change(client, generation)
                if generation == 1:  # undisturbed: so long it takes
                    began = time.monotonic()
                    server.stop()
                    kept, whole = generation, time.monotonic() - began
                else:
                    server.ask_to_end()
                    time.sleep(whole * dice.random())
            finally:
                print(f"generation {generation} was {'cut off' if server.kill() else 'saved'} after {kept}")


if __name__ == "__main__":
    main()
