#!/usr/bin/env python3
"""Measures reading many frames with Dask, and the load that a scheduler bears.

Usage: cluster.py [--write] [FRAMES] (100000). Prints the tables of docs/scale.md, and with --write
puts them there in place of the old ones. Takes a few minutes on a machine that should be idle.
"""

import importlib.util
import pathlib
import re
import shutil
import sys
import tempfile
import time

import dask
from distributed import Client, LocalCluster

import dataengine as de
import dataengine.dask

ROOT = pathlib.Path(__file__).resolve().parent.parent
PARTITION = 64 * 2**20
TASKS = 16
BILLION = 10**9


def write_store(folder, count):
    """Writes frames of bench/python.py, and returns the size of one."""
    spec = importlib.util.spec_from_file_location("frames", ROOT / "bench/python.py")
    frames = importlib.util.module_from_spec(spec)
    spec.loader.exec_module(frames)
    data = frames.write(frames.ROWS).frame()
    for i in range(count):
        with open(f"{folder}/{i:08}", "wb") as file:
            file.write(data)
    return len(data)


def clock(function, now=time.perf_counter):
    start = now()
    function()
    return now() - start


def clock_once_more(client, frames):
    """Times a job, whose results the scheduler may still hold from the last run."""
    while client.run_on_scheduler(lambda dask_scheduler: len(dask_scheduler.tasks)):
        time.sleep(0.01)
    return clock(frames.compute)


def start(workers, threads=1):
    return LocalCluster(n_workers=workers, threads_per_worker=threads, processes=True,
                        dashboard_address=None, memory_limit=0)


def decode(count):
    """Returns the bytes of a frame, the frames that are listed and those that are decoded in a
    second, and how much faster two workers are than one.
    """
    memory = "/dev/shm"  # a disk may take minutes to remove the files
    if not pathlib.Path(memory).is_dir() or shutil.disk_usage(memory).free < count * 2**14:
        memory = None
    with tempfile.TemporaryDirectory(dir=memory) as folder:
        size = write_store(folder, count)

        def bag():
            return de.dask.read_frames(folder, partition=size * count // TASKS + size).count()

        listed = count / min(clock(bag) for _ in range(3))
        frames = bag()
        with dask.config.set(scheduler="synchronous"):
            decoded = count / min(clock(frames.compute, time.process_time) for _ in range(3))
        seconds = []
        for workers in (1, 2):
            with start(workers) as cluster, Client(cluster) as client:
                client.run(lambda: __import__("dataengine.dask"))
                seconds.append(min(clock_once_more(client, frames) for _ in range(4)))
    return size, listed, decoded, seconds[0] / seconds[1]


def scheduler_rate(tasks=20_000):
    """Returns the tasks that one scheduler hands out in a second if they take no time."""
    with start(2, 4) as cluster, Client(cluster) as client:
        client.gather(client.map(int, range(1000), pure=False))
        return tasks / clock(lambda: client.gather(client.map(int, range(tasks), pure=False)))


def time_at_work(length, cores, rounds=4):
    """Returns how busy one scheduler keeps many cores, whose tasks sleep for `length` seconds."""
    workers = 4
    with start(workers, cores // workers) as cluster, Client(cluster) as client:
        client.gather(client.map(time.sleep, [0.01] * cores, pure=False))
        lengths = [length] * (cores * rounds)
        return rounds * length / clock(
            lambda: client.gather(client.map(time.sleep, lengths, pure=False)))


def table(*rows):
    rows = [rows[0], ["---"] * len(rows[0]), *rows[1:]]
    return "".join(f"| {' | '.join(row)} |\n" for row in rows)


def measure(count):
    """Yields the tables."""
    size, listed, decoded, factor = decode(count)
    tasks = scheduler_rate()
    length = PARTITION / size / decoded
    bits = decoded * size * 8 / 1e9
    yield table(
        ["measured on two cores", ""],
        ["frame of 12 leaves and a table of 11 x 48", f"{size:,} bytes"],
        ["files read and decoded to dicts in a second of processor time, from memory", f"{decoded:,.0f}"],
        [f"two workers against one, {count:,} frames in {TASKS} tasks", f"{factor:.2f} times"],
        ["files listed in a second, which the client does", f"{listed:,.0f}"],
        ["tasks of no length through one scheduler in a second", f"{tasks:,.0f}"],
        ["**follows from these**", ""],
        ["task of 64 MiB, the default partition", f"{length:.2f} s"],
        ["processor time of a billion frames", f"{BILLION / decoded / 3600:.1f} h"],
        ["bytes of a billion frames", f"{BILLION * size / 1e12:.1f} TB"],
        ["network that keeps one core busy", f"{bits:.1f} Gbit/s"],
        ["cores that a network of 10 Gbit/s keeps busy", f"{10 / bits:.0f}"],
        ["cores that one scheduler keeps busy with tasks of 64 MiB", f"{tasks * length:.0f}"],
        ["cores that one scheduler keeps busy with tasks of 512 MiB", f"{tasks * length * 8:.0f}"])
    yield table(["cores", "decoding a billion frames", "network that keeps them busy"],
                *([str(cores), f"{BILLION / decoded / cores / 60:,.1f} min", f"{bits * cores:.0f} Gbit/s"]
                  for cores in (4, 16, 64, 256)))
    lengths = length, 8 * length
    yield table(["cores", *(f"tasks of {seconds:.2f} s" for seconds in lengths)],
                *([str(cores), *(f"{time_at_work(seconds, cores):.0%}" for seconds in lengths)]
                  for cores in (64, 256, 1024)))


def main():
    options = sys.argv[1:]
    write = "--write" in options
    counts = [int(option) for option in options if option != "--write"] or [100_000]
    tables = []
    for found in measure(*counts):
        print(found, flush=True)
        tables.append(found)
    if write:
        page = ROOT / "docs/scale.md"
        page.write_text(re.sub(r"(?:^\|.*\n)+", lambda _: tables.pop(0), page.read_text(), flags=re.M))


if __name__ == "__main__":
    main()
