#!/usr/bin/env python3
"""Measures the Python package against a plain reader in Python, in one process: scripts/bench python.

The plain reader unpacks a frame with msgpack and rounds its floats. Prints a table of ratios; each
compares medians of rounds that alternate between the two.
"""

import random
import statistics
import sys
import time

import msgpack
import numpy as np

import dataengine as de

LEAVES = 12
ROWS = 48


def rounded(value):
    if isinstance(value, float):
        return round(value, 2)
    if isinstance(value, list):
        return [rounded(element) for element in value]
    if isinstance(value, dict):
        return {key: rounded(element) for key, element in value.items()}
    return value


class PlainReader:
    """Reads frames whose values are consecutive in the order of the schema."""

    def _open(self, frame):
        unpacker = msgpack.Unpacker(unicode_errors="surrogateescape", max_buffer_size=0)
        unpacker.feed(frame)
        unpacker.unpack()
        unpacker.unpack()
        return unpacker, unpacker.unpack()

    def decode(self, frame):
        unpacker, schema = self._open(frame)
        result = {}
        for item in schema:
            if item["type"] != 11:
                result[item["name"]] = rounded(unpacker.unpack())
                continue
            table = result[item["name"]] = {}
            for child in item["column"] + item["attributes"]:
                table[child["name"]] = rounded(unpacker.unpack())
        return result

    def table(self, frame):
        unpacker, schema = self._open(frame)
        for item in schema:
            if item["type"] != 11:
                unpacker.skip()
                continue
            return {column["name"]: np.array(rounded(unpacker.unpack())) for column in item["column"]}

    def first_leaf(self, frame):
        unpacker, schema = self._open(frame)
        return {schema[0]["name"]: rounded(unpacker.unpack())}


def columns(draw, rows):
    """Returns the columns of an interface table."""
    return {
        "ifName": [f"GigabitEthernet{i // 48}/{i % 48}" for i in range(rows)],
        "descr": [f"to customer {draw.randrange(10**6)}" for _ in range(rows)],
        "adminStatus": [draw.choice(["up", "down"]) for _ in range(rows)],
        "operStatus": [draw.choice(["up", "down"]) for _ in range(rows)],
        "speed": [draw.choice([100, 1000, 10000]) for _ in range(rows)],
        "mtu": [1500] * rows,
        "inOctets": [draw.randrange(2**40) for _ in range(rows)],
        "outOctets": [draw.randrange(2**40) for _ in range(rows)],
        "inLoad": [draw.random() * 100 for _ in range(rows)],
        "outLoad": [draw.random() * 100 for _ in range(rows)],
        "isTrunk": [draw.random() < 0.2 for _ in range(rows)],
    }


def write(rows):
    draw = random.Random(20)
    writer = de.FrameWriter("inventory/interfaces")
    for i in range(LEAVES):
        writer.add_leaf(f"leaf{i}", 1, draw.choice(["acc-sw-17", i * 1000, i / 7]))
    table = writer.add_table("ifTable", True, ["ifName"])
    for name, values in columns(draw, rows).items():
        table.add_column(name, 1, values)
    return writer


def compare(ours, theirs, rounds=30, seconds=0.01):
    """Returns the median time of a call of each."""
    times = ([], [])
    counts = []
    for function in (ours, theirs):
        start = time.perf_counter()
        function()
        counts.append(max(1, int(seconds / (time.perf_counter() - start))))
    for _ in range(rounds):
        for function, count, found in zip((ours, theirs), counts, times):
            start = time.perf_counter()
            for _ in range(count):
                function()
            found.append((time.perf_counter() - start) / count)
    return statistics.median(times[0]), statistics.median(times[1])


def cases():
    """Yields a title, the goal, and the two functions to compare."""
    writer = write(ROWS)
    frame, offsets = writer.frame(), writer.offsets()
    plain, whole, leaf = PlainReader(), de.FrameReader(), de.FrameReader(select=["leaf0"])
    assert whole.open(frame).decode() == plain.decode(frame)
    yield ("whole frame to dicts and lists / the same in plain Python", 0.4,
           lambda: whole.open(frame).decode(offsets), lambda: plain.decode(frame))
    yield ("the same without offsets", 0.4, lambda: whole.open(frame).decode(),
           lambda: plain.decode(frame))
    yield ("table as NumPy columns / the same in plain Python", 0.12,
           lambda: whole.open(frame).table("ifTable", offsets), lambda: plain.table(frame))
    yield ("one leaf / whole frame in plain Python", 0.05,
           lambda: leaf.open(frame).decode(offsets), lambda: plain.decode(frame))
    yield ("one leaf / the same in plain Python, which reads the header each time", None,
           lambda: leaf.open(frame).decode(offsets), lambda: plain.first_leaf(frame))
    large = whole.open(write(1_000_000).frame())
    large_offsets = large.find_offsets()
    yield ("one million rows to pandas / the document in C++", 3,
           lambda: large.table("ifTable", large_offsets).to_pandas(),
           lambda: large.check(large_offsets))


def main():
    print(f"Python {sys.version.split()[0]}, NumPy {np.__version__}; frames of {LEAVES} leaves and a "
          f"table of 11 x {ROWS}\n")
    print("| case | goal | measured | time |\n|---|---|---|---|")
    for title, goal, ours, theirs in cases():
        mine, other = compare(ours, theirs, rounds=5 if "million" in title else 30)
        print(f"| {title} | {'' if goal is None else f'at most {goal}'} | {mine / other:.3f} | "
              f"{mine * 1e6:,.1f} µs |")


if __name__ == "__main__":
    main()
