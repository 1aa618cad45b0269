#!/usr/bin/env python3
"""Prints what each benchmark cost us, what it cost each peer, and the ratio: above 1 we are faster.

usage: bench/ratios.py RESULTS.json...     as written by --benchmark_out_format=json

A benchmark is named "Subject/side" or "Subject/side/argument"; our side is "ours".
"""
import json
import re
import sys

TO_NS = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}
# What Google Benchmark itself adds to a name.
ADDED = re.compile(r"/(real_time|process_time|manual_time|(iterations|repeats|min_time|threads):[\d.]+)")


def medians(paths):
    """{(subject, argument): {side: (nanoseconds, counters)}} from the medians, or from single runs."""
    found = {}
    for path in paths:
        with open(path, encoding="utf-8") as file:
            text = file.read()
        rows = json.loads(text)["benchmarks"] if text else []  # empty: the filter left nothing to run
        aggregated = any(row["run_type"] == "aggregate" for row in rows)
        for row in rows:
            if row.get("error_occurred") or (aggregated and row.get("aggregate_name") != "median"):
                continue
            subject, side, *argument = ADDED.sub("", row["run_name"]).split("/") + [""]
            counters = {name: row[name] for name in ("items_per_second", "peak_MB") if name in row}
            # The clock that the benchmark itself chose: its thread's, or the one on the wall.
            clock = "real_time" if re.search("/(real|manual)_time", row["run_name"]) else "cpu_time"
            time = row[clock] * TO_NS[row["time_unit"]]
            found.setdefault((subject, "/".join(filter(None, argument))), {})[side] = (time, counters)
    return found


def shown(nanoseconds):
    for unit in ("s", "ms", "us"):
        if nanoseconds >= TO_NS[unit]:
            return f"{nanoseconds / TO_NS[unit]:.2f} {unit}"
    return f"{nanoseconds:.1f} ns"


def main():
    print(f"{'subject':<40} {'side':<24} {'median':>10} {'ratio':>7}")
    for (subject, argument), sides in medians(sys.argv[1:]).items():
        ours = sides.get("ours")
        for side, (time, counters) in sorted(sides.items(), key=lambda item: (item[0] != "ours", item[0])):
            ratio = f"{time / ours[0]:.2f}" if ours and side != "ours" else ""
            extra = "".join(f"  {name} {value:,.1f}" for name, value in counters.items())
            print(f"{' '.join(filter(None, (subject, argument))):<40} {side:<24} {shown(time):>10} {ratio:>7}{extra}")


if __name__ == "__main__":
    main()
