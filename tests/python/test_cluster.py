"""Reading a hundred thousand frames with a scheduler and two worker processes."""

import os
import pathlib
import random
import shutil
import signal
import tempfile
import threading
import time

import pytest

import dataengine as de
from conftest import write

pytestmark = pytest.mark.cluster
distributed = pytest.importorskip("distributed")
import dask  # noqa: E402
import dataengine.dask  # noqa: E402

FRAMES = 100_000
BROKEN = {7, 4_321, 99_999}
MIB = 2**20


@pytest.fixture(scope="module")
def store():
    """Writes the frames into two folders: a fifth of them, and all others.

    They are in memory where that is possible, and are removed at once: a disk may take minutes to
    remove so many files, for which a later run of pytest would wait at its end.
    """
    memory = "/dev/shm"
    if not os.path.isdir(memory) or shutil.disk_usage(memory).free < 1024 * MIB:
        memory = None
    with tempfile.TemporaryDirectory(dir=memory) as name:
        write_store(pathlib.Path(name))
        yield pathlib.Path(name)


def write_store(root):
    draw = random.Random(5)
    for part in ("first", "rest"):
        (root / part).mkdir()
    speeds = [draw.choice([None, 100, 1000, 10000]) for _ in range(1000)]
    for i in range(FRAMES):
        first = draw.randrange(900)
        data = b"broken" if i in BROKEN else write(
            n=i, ifTable={"ifName": [f"Gi0/{port}" for port in range(24)],
                          "speed": speeds[first:first + 24]}).frame()
        with open(root / ("first" if i < FRAMES // 5 else "rest") / f"{i:06}", "wb") as file:
            file.write(data)


@pytest.fixture
def client(tmp_path):
    with distributed.LocalCluster(n_workers=2, threads_per_worker=1, processes=True,
                                  dashboard_address=None, local_directory=tmp_path) as cluster:
        with distributed.Client(cluster) as client:
            yield client


def short(frame):
    """Returns what identifies a frame."""
    if isinstance(frame, de.dask.BrokenFrame):
        return os.path.basename(frame.file), str(frame.error)
    return frame["n"], sum(speed or 0 for speed in frame["ifTable"]["speed"])


def summaries(store, **options):
    return de.dask.read_frames([store / "first", store / "rest"], partition="2 MiB",
                               **options).map(short)


@pytest.fixture(scope="module")
def expected(store):
    with dask.config.set(scheduler="synchronous"):
        return summaries(store).compute()


def test_results_equal_one_process(client, store, expected):
    assert len(expected) == FRAMES
    assert [i for i, result in enumerate(expected) if isinstance(result[0], str)] == sorted(BROKEN)
    assert summaries(store).compute() == expected
    rows = de.dask.read_tables(store / "first", table="ifTable", partition="2 MiB")
    speeds = [speed for name, speed in expected[:FRAMES // 5] if isinstance(name, int)]
    assert int(rows["speed"].sum().compute()) == sum(speeds)
    assert rows["error"].dropna().compute().shape == (2,)
    with pytest.raises(de.FrameError):
        summaries(store, errors="raise").compute()


def test_a_killed_worker_loses_nothing(client, store, expected):
    pids = list(client.run(os.getpid).values())
    killed = []

    def kill():
        while True:  # until some tasks are done and others are not
            done = sum(len(state) for state in client.has_what().values())
            if done > 3:
                break
            time.sleep(0.01)
        os.kill(pids[0], signal.SIGKILL)
        killed.append(done)

    frames = summaries(store).persist()
    killer = threading.Thread(target=kill)
    killer.start()
    assert frames.compute() == expected
    killer.join()
    assert killed[0] < frames.npartitions
    assert pids[0] not in client.run(os.getpid).values()


def test_memory_is_bounded_by_the_partition(client, store):
    def peaks():
        return max(client.run(lambda: __import__("resource").getrusage(
            __import__("resource").RUSAGE_SELF).ru_maxrss * 1024).values())

    de.dask.read_frames(store / "first", partition="2 MiB").count().compute()
    one_fifth = peaks()
    de.dask.read_frames([store / "first", store / "rest"], partition="2 MiB").count().compute()
    assert peaks() < one_fifth + 40 * MIB
