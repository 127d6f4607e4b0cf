#!/usr/bin/env python3
"""Measures reading many frames with Dask, and the load that a scheduler bears.

Usage: cluster.py [FRAMES] (20000). Prints the figures of docs/scale.md as a table.
"""

import importlib.util
import pathlib
import sys
import tempfile
import time

import dask
from distributed import Client, LocalCluster

import dataengine as de
import dataengine.dask

PARTITION = 64 * 2**20


def load_frames():
    """Returns the module that writes the frames of the other benchmark."""
    path = pathlib.Path(__file__).with_name("python.py")
    spec = importlib.util.spec_from_file_location("frames", path)
    module = importlib.util.module_from_spec(spec)
    spec.loader.exec_module(module)
    return module


def write_store(folder, count):
    data = load_frames().write(48).frame()
    for i in range(count):
        (folder / f"{i:08}").write_bytes(data)
    return len(data)


def clock(function, now=time.perf_counter):
    start = now()
    function()
    return now() - start


def start(workers, threads=1):
    return LocalCluster(n_workers=workers, threads_per_worker=threads, processes=True,
                        dashboard_address=None, memory_limit=0)


def decode_rates(folder, count, size):
    """Prints frames a second on one core and with one and two workers, and returns the first."""
    def bag(parts):
        return de.dask.read_frames(str(folder), partition=size * count // parts + size).count()

    with dask.config.set(scheduler="synchronous"):
        rate = count / min(clock(bag(1).compute, time.process_time) for _ in range(3))
    print(f"| decoded in a second of processor time, files in the page cache | {rate:,.0f} frames |")
    times = {}
    for workers in (1, 2):
        with start(workers) as cluster, Client(cluster) as client:
            client.run(lambda: __import__("dataengine.dask"))
            bag(4).compute()
            times[workers] = min(clock(bag(16).compute) for _ in range(3))
    print(f"| two workers against one | {times[1] / times[2]:.2f} times |")
    return rate


def scheduler_rate(tasks=20_000):
    """Prints the tasks that one scheduler hands out a second if they take no time."""
    with start(2, 4) as cluster, Client(cluster) as client:
        client.gather(client.map(int, range(1000), pure=False))
        seconds = clock(lambda: client.gather(client.map(int, range(tasks), pure=False)))
    print(f"| tasks of no length through one scheduler | {tasks / seconds:,.0f} tasks/s |")
    return tasks / seconds


def simulate(length, cores, rounds=4):
    """Prints how busy one scheduler keeps many cores, whose tasks sleep for `length` seconds."""
    workers = 4
    with start(workers, cores // workers) as cluster, Client(cluster) as client:
        client.gather(client.map(time.sleep, [0.01] * cores, pure=False))
        seconds = clock(lambda: client.gather(
            client.map(time.sleep, [length] * (cores * rounds), pure=False)))
    print(f"| {cores} cores with tasks of {length:.2f} s, time at work | "
          f"{rounds * length / seconds:.0%} |")


def main():
    count = int(sys.argv[1]) if len(sys.argv) > 1 else 20_000
    print("| measured | |\n|---|---|")
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        size = write_store(folder, count)
        print(f"| frame of 12 leaves and a table of 11 x 48 | {size:,} bytes |")
        rate = decode_rates(folder, count, size)
    length = PARTITION / size / rate
    print(f"| task of {PARTITION // 2**20} MiB | {length:.2f} s |")
    scheduler_rate()
    for cores in (64, 256, 1024):
        simulate(length, cores)


if __name__ == "__main__":
    main()
