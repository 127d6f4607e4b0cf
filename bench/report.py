#!/usr/bin/env python3
"""Turns the JSON output of the benchmarks into results.md and results.svg.

Usage: report.py FOLDER RESULTS.json [CATALOGUE.md], as in scripts/bench. Every ratio compares
medians of the same run. The table in CATALOGUE.md is appended unchanged.
"""

import json
import math
import pathlib
import sys
from collections import namedtuple

DECODINGS = {
    "leaves": "100 scalar leaves",
    "interfaces": "interface table, 20 columns by 200 rows",
    "routes": "route table of 50,000 maps",
    "integers": "1,000,000 integers of random width",
    "floats": "300,000 floats",
    "three_decimals": "300,000 floats of three decimals",
    "integers32": "1,000,000 integers of 32 bits",
    "configuration": "one string of 200 KB",
}
FIRST_FIVE = list(DECODINGS)[:5]
PEERS = {
    "text": "text route",
    "nlohmann": "nlohmann from_msgpack",
    "unpack": "msgpack::unpack",
    "floor": "memory floor",
}
UNPACK_GOALS = {"leaves": 1.1, "interfaces": 1.6, "routes": 2.2, "integers": 2, "floats": 1.5,
                "three_decimals": 1.5,
                "integers32": 4}
READER_ROWS = (
    ("frame", "plain", "whole frame", "plain way", 25),
    ("frame", "library", "whole frame", "the helper", 2.8),
    ("frame", "unpack", "whole frame", "bare msgpack::unpack of the values", 1.8),
    ("decode_leaves", "unpack", "100 scalar leaves", "bare msgpack::unpack", 5),
    ("column", "unpack", "one column of 48 rows out of the frame",
     "bare msgpack::unpack of the column", 1.2),
    ("new_headers", "library", "whole frames with ever new headers", "the helper", 0.87),
)
JSON_GOALS = {"parse": 3.5, "print": 2.2, "copy": 3, "lookup": 5}

# `wanted` is the least accepted ratio if more_is_better, otherwise the greatest.
Row = namedtuple("Row", "case against wanted measured more_is_better")


class Run:
    """The medians of one run, by case and contender."""

    def __init__(self, results):
        self.medians = {}
        self.repetitions = 0
        self.compiler = results["context"]["compiler"]
        self.cores = results["context"]["num_cpus"]
        for entry in results["benchmarks"]:
            if entry.get("aggregate_name") != "median":
                continue
            name = entry["run_name"].removesuffix("/manual_time")
            self.repetitions = entry["repetitions"]
            self.medians[name] = entry

    def time(self, name):
        """Returns seconds per round: processor time, or the time that the case measures itself."""
        entry = self.medians[name]
        key = "real_time" if entry["run_name"].endswith("/manual_time") else "cpu_time"
        return entry[key] * {"ns": 1e-9, "us": 1e-6, "ms": 1e-3, "s": 1}[entry["time_unit"]]

    def rate(self, name):
        return self.medians[name]["items_per_second"]

    def speedup(self, case, peer):
        return self.time(f"{case}/{peer}") / self.time(f"{case}/library")


def geometric_mean(values):
    values = list(values)
    return math.exp(sum(map(math.log, values)) / len(values))


def wanted_rows(run):
    def decodings(peer, names):
        return {name: run.speedup(f"decode_{name}", peer) for name in names}

    yield Row("decode, geometric mean of the first five", "text route", 25,
              geometric_mean(decodings("text", FIRST_FIVE).values()), True)
    for name, ratio in decodings("unpack", UNPACK_GOALS).items():
        yield Row(f"decode, {DECODINGS[name]}", "bare msgpack::unpack", UNPACK_GOALS[name], ratio,
                  True)
    yield Row("decode, geometric mean of the first five", "nlohmann from_msgpack", 11,
              geometric_mean(decodings("nlohmann", FIRST_FIVE).values()), True)
    yield Row("header with a schema of 40 items", "plain way", 4, run.speedup("header", "plain"),
              True)
    yield Row("whole frame, header included", "plain way", 12, run.speedup("frame", "plain"), True)
    for case, peer, name, against, wanted in READER_ROWS:
        yield Row(f"reader, {name}", against, wanted,
                  run.time(f"{case}/{peer}") / run.time(f"{case}/reader"), True)
    yield Row("reader on two threads", "on one", 1.9,
              run.rate("read_threads/real_time/threads:2")
              / run.rate("read_threads/real_time/threads:1"), True)
    yield Row("time to select the first leaf of 10,000", "the same of 10", 1.5,
              run.time("select_first/of10000") / run.time("select_first/of10"), False)
    yield Row("time to select the last leaf of 10,000", "a plain walk over the names", 1.5,
              run.time("select_last/of10000") / run.time("select_last/walk10000"), False)
    yield Row("time per leaf to select all of 100,000", "the same of 1,000", 1.5,
              run.time("select_all/of100000") / run.time("select_all/of1000") / 100, False)
    yield Row("renaming 1,000 columns by 10,000 entries", "plain way", 5,
              run.speedup("rename", "plain"), True)
    yield Row("time to pack the interface table as a document", "msgpack::packer by hand", 2,
              run.time("pack_interfaces/library") / run.time("pack_interfaces/packer"), False)
    yield Row("interface table from JSON values, packed", "msgpack::packer by hand", 0.6,
              run.speedup("pack_values", "packer"), True)
    for operation, ratio in JSON_GOALS.items():
        yield Row(f"JSON value, {operation} of 1 MB", "nlohmann", ratio,
                  run.speedup(f"json_{operation}", "nlohmann"), True)
    yield Row("time to print 1 MiB of binary", "a string as long as its text", 1.2,
              run.time("json_binary/library") / run.time("json_binary/string"), False)
    for size, name, wanted in (("1k", "1 KiB", 10), ("1m", "1 MiB", 50)):
        yield Row(f"record of {name} to BSON", "toString and libbson's JSON reader", wanted,
                  run.speedup(f"bson_{size}", "text"), True)
    yield Row("time of a record of 1 MiB to BSON", "its fields appended by hand", 3,
              run.time("bson_1m/library") / run.time("bson_1m/by_hand"), False)
    yield Row("decoding on two threads", "on one", 1.9,
              run.rate("decode_threads/real_time/threads:2")
              / run.rate("decode_threads/real_time/threads:1"), True)


def wanted_text(row):
    sign = "at least" if row.more_is_better else "at most"
    return f"{sign} {row.wanted:g}"


def is_met(row):
    return row.measured >= row.wanted if row.more_is_better else row.measured <= row.wanted


def duration(seconds):
    for unit, factor in (("ns", 1e9), ("µs", 1e6), ("ms", 1e3)):
        if seconds * factor < 1000:
            return f"{seconds * factor:.3g} {unit}"
    return f"{seconds:.3g} s"


def machine_kind():
    flags = pathlib.Path("/proc/cpuinfo").read_text()
    return "virtual machine" if " hypervisor" in flags else "machine"


def table(header, rows):
    lines = ["| " + " | ".join(header) + " |", "|---" * len(header) + "|"]
    lines += ["| " + " | ".join(row) + " |" for row in rows]
    return "\n".join(lines) + "\n"


def markdown(run):
    ratios = table(["case", "against", "wanted", "measured", ""],
                   [[row.case, row.against, wanted_text(row), f"{row.measured:.2f}",
                     "" if is_met(row) else "missed"] for row in wanted_rows(run)])
    decodings = table(["unit", "this library"] + list(PEERS.values()) + ["multiple of the floor"],
                      [[text] + [duration(run.time(f"decode_{name}/{contender}"))
                                 for contender in ["library"] + list(PEERS)]
                       + [f"{1 / run.speedup(f'decode_{name}', 'floor'):.1f}"]
                       for name, text in DECODINGS.items()])
    others = table(["case", "time"],
                   [[name, duration(run.time(name))] for name in sorted(run.medians)
                    if not name.startswith("decode_")])
    return f"""# Benchmark results

{run.cores}-core {machine_kind()}, {run.compiler}, Release. Medians of {run.repetitions} repetitions in random order within one
run of `scripts/bench`; the data is generated from fixed seeds.

![Time to decode, as a multiple of this library's](results.svg)

## Ratios

A ratio is the speed of this library divided by that of the other; for cases that name a time, it
is the time of this library divided by the other.

{ratios}
- Text route: unpacks, prints and parses each value, as the documents are defined.
- Memory floor: reads the packed bytes once, and writes as many bytes into fresh memory as the
  decoded document takes.
- Plain way: for the header, three calls of unpack, then the schema is printed to and parsed from
  streams; for a whole frame, of 12 variables and a table of 11 columns by 48 rows, the same and the
  text route for each value; for renaming, an ordered map of copied keys.

## Times of decoding

Each contender builds its result and destroys it.

{decodings}
## Other times

{others}"""


STYLE = """
    text { font: 13px sans-serif; fill: #24292f; }
    .title { font-size: 15px; font-weight: bold; }
    .grid { stroke: #d0d7de; } .one { stroke: #24292f; }
    .text { fill: #cf222e; } .nlohmann { fill: #bf8700; }
    .unpack { fill: #0969da; } .floor { fill: #8c959f; }
    @media (prefers-color-scheme: dark) {
      text { fill: #e6edf3; }
      .grid { stroke: #30363d; } .one { stroke: #e6edf3; }
      .text { fill: #f85149; } .nlohmann { fill: #d29922; }
      .unpack { fill: #58a6ff; } .floor { fill: #8b949e; }
    }
"""


def plot(run):
    """Draws a bar per contender on a log scale, to the right of this library's line if slower."""
    left, top, bar, gap, width = 290, 84, 15, 16, 820
    ratios = {name: {peer: run.speedup(f"decode_{name}", peer) for peer in PEERS}
              for name in DECODINGS}
    every = [math.log10(ratio) for row in ratios.values() for ratio in row.values()]
    lowest, highest = math.floor(min(every)), max(every)
    scale = (width - left - 60) / (highest - lowest)
    height = top + len(ratios) * (bar * len(PEERS) + gap)

    def place(ratio):
        return left + (math.log10(ratio) - lowest) * scale

    parts = ['<text class="title" x="16" y="24">Time to decode, as a multiple of this '
             "library's</text>"]
    x = 16
    for peer, text in PEERS.items():
        parts.append(f'<rect class="{peer}" x="{x:g}" y="38" width="12" height="12"/>'
                     f'<text x="{x + 18:g}" y="49">{text}</text>')
        x += 50 + 7.2 * len(text)
    for power in range(lowest, math.floor(highest) + 1):
        at = place(10**power)
        parts.append(f'<line class="{"grid" if power else "one"}" x1="{at:.1f}" y1="{top - 8}" '
                     f'x2="{at:.1f}" y2="{height - gap}"/>'
                     f'<text x="{at:.1f}" y="{top - 12}" text-anchor="middle">{10**power:g}</text>')
    y = top
    for name, row in ratios.items():
        parts.append(f'<text x="{left - 12}" y="{y + bar * len(row) / 2 + 4:g}" '
                     f'text-anchor="end">{DECODINGS[name]}</text>')
        for peer, ratio in row.items():
            begin, end = sorted((place(1), place(ratio)))
            label = f"{ratio:.0f}" if ratio >= 10 else f"{ratio:.2g}"
            parts.append(f'<rect class="{peer}" x="{begin:.1f}" y="{y}" '
                         f'width="{end - begin:.1f}" height="{bar - 2}"/>'
                         f'<text x="{end + 6:.1f}" y="{y + bar - 3}">{label}</text>')
            y += bar
        y += gap
    body = "\n  ".join(parts)
    return (f'<svg xmlns="http://www.w3.org/2000/svg" width="{width}" height="{height}" '
            f'viewBox="0 0 {width} {height}" role="img">\n  <style>{STYLE}  </style>\n'
            f"  {body}\n</svg>\n")


def main():
    folder, results, *catalogue = map(pathlib.Path, sys.argv[1:])
    run = Run(json.loads(results.read_text()))
    text = markdown(run)
    for path in catalogue:
        text += f"\n## Catalogue\n\n{path.read_text()}"
    (folder / "results.md").write_text(text)
    (folder / "results.svg").write_text(plot(run))
    for row in wanted_rows(run):
        mark = " " if is_met(row) else "-"
        print(f"{mark} {row.measured:8.2f}  {wanted_text(row):14}{row.case}, against {row.against}")


if __name__ == "__main__":
    main()
