"""Many frames: bags and dataframes, without a cluster."""

import pickle

import pandas
import pytest

import dataengine as de
from conftest import write

dask = pytest.importorskip("dask")
import dask.bag  # noqa: E402
import dataengine.dask  # noqa: E402


@pytest.fixture(autouse=True)
def one_thread():
    with dask.config.set(scheduler="synchronous"):
        yield


@pytest.fixture
def folder(tmp_path):
    """Writes 10 frames; the fifth is broken, and the seventh has no table."""
    for i in range(10):
        table = {} if i == 6 else {"t": {"n": list(range(i)), "s": ["x"] * i}}
        (tmp_path / f"{i}.frame").write_bytes(write(leaf=i, **table).frame())
    (tmp_path / "4.frame").write_bytes(b"\x01broken")
    (tmp_path / ".hidden").write_bytes(b"")
    (tmp_path / "folder").mkdir()
    return tmp_path


@pytest.mark.parametrize("partition, count", [("64 MiB", 1), (1, 10)])
@pytest.mark.parametrize("source", [
    lambda folder: folder, lambda folder: str(folder / "*.frame"),
    lambda folder: [folder / f"{i}.frame" for i in range(10)],
    lambda folder: f"file://{folder}",
])
def test_reads_files(folder, source, partition, count):
    bag = de.dask.read_frames(source(folder), select=["leaf"], partition=partition)
    assert bag.npartitions == count
    frames = bag.compute()
    broken = frames.pop(4)
    assert frames == [{"leaf": i} for i in range(10) if i != 4]
    assert broken.file == str(folder / "4.frame")
    assert type(broken.error) is de.FrameError and broken.error.byte > 0


@pytest.mark.parametrize("partition, count", [(299, 2), (300, 1), (100, 3), (99, 3), ("1 B", 3)])
def test_partitions_by_bytes(tmp_path, partition, count):
    for i in range(3):
        (tmp_path / str(i)).write_bytes(b"x" * 100)
    assert de.dask.read_frames(tmp_path, partition=partition).npartitions == count


def test_reads_bags():
    frames = [write(leaf=i, t={"c": [i]}).frame() for i in range(5)] + [b""]
    bag = dask.bag.from_sequence(frames, npartitions=3)
    read = de.dask.read_frames(bag, mapping={"n": "leaf"}, select=["leaf"])
    assert read.npartitions == bag.npartitions
    *good, broken = read.compute()
    assert good == [{"n": i} for i in range(5)] and broken.file == "2:1"
    rows = de.dask.read_tables(bag, table="t").compute()
    assert rows["file"].tolist() == ["0:0", "0:1", "1:0", "1:1", "2:0", "2:1"]
    assert rows["c"].tolist()[:5] == list(range(5))


def test_uses_offsets(tmp_path):
    writers = {str(tmp_path / str(i)): write(a=i, b=-i) for i in range(3)}
    for path, writer in writers.items():
        open(path, "wb").write(writer.frame())
    swapped = {path: writer.offsets()[::-1] for path, writer in writers.items()}
    assert de.dask.read_frames(tmp_path, offsets=swapped.get).compute() == [
        {"a": -i, "b": i} for i in range(3)]
    assert de.dask.read_frames(tmp_path, offsets=[0, 0]).compute()[2] == {"a": 2, "b": 2}


@pytest.mark.parametrize("items, rows", [
    (lambda deep: {"leaf": deep, "t": {}}, [False, False, False]),
    (lambda deep: {"t": {"column": deep}}, [False, False, True]),  # its values are one level less
    (lambda deep: {"t": {"attribute": tuple(deep)}}, [False, True, True]),
])
def test_values_that_nest_too_deep_to_be_sent_break_their_frame(items, rows):
    frames = []
    for levels in (100, 101, 100_000):
        deep = []
        for _ in range(levels - 1):
            deep = [deep]
        frames.append(write(**items(deep)).frame())
    bag = dask.bag.from_sequence(frames)
    read = de.dask.read_frames(bag).compute()
    assert [isinstance(frame, de.dask.BrokenFrame) for frame in read] == [False, True, True]
    assert "deeper than 100 levels" in str(read[2].error)
    errors = de.dask.read_tables(bag, table="t").compute().groupby("file")["error"].first()
    assert errors.reindex([f"{i}:0" for i in range(3)]).notna().tolist() == rows


def test_raises_if_asked_to(folder):
    for read in (de.dask.read_frames(folder, errors="raise"),
                 de.dask.read_tables(folder, table="t", errors="raise")):
        with pytest.raises(de.FrameError):
            read.compute()
    with pytest.raises(ValueError):
        de.dask.read_frames(folder, errors="other")
    with pytest.raises(TypeError):
        de.dask.read_frames(folder, select="leaf")


def test_collects_files_that_vanish(folder):
    bag = de.dask.read_frames(folder)
    (folder / "2.frame").unlink()
    assert isinstance(bag.compute()[2].error, FileNotFoundError)


@pytest.mark.parametrize("partition", ["64 MiB", 1])
def test_reads_tables(folder, partition):
    frame = de.dask.read_tables(folder, table="t", partition=partition)
    rows = frame.compute()
    pandas.testing.assert_series_equal(frame.dtypes, rows.dtypes)
    assert list(rows) == ["file", "row", "n", "s", "error"]
    good = rows[rows["error"].isna()]
    assert good["row"].tolist() == good["n"].tolist() == [
        n for i in range(10) for n in range(i) if i not in (4, 6)]
    broken = rows[rows["error"].notna()]
    assert [path[-7:] for path in broken["file"]] == ["4.frame", "6.frame"]
    assert broken["row"].isna().all() and broken["n"].isna().all()
    assert "FileNotFoundError" not in "".join(broken["error"])
    assert "no such table" in broken["error"].tolist()[1]


TYPES = [([1], "Int64"), ([2**63], "UInt64"), ([0.5], "float64"), ([True], "boolean"),
         (["x"], "string"), ([[1]], "object"), ([1, 0.5], "float64"), ([], "object")]


@pytest.mark.parametrize("first, dtype", TYPES)
def test_values_must_fit(first, dtype):
    given = [[2**63, None], [2.5], [-1], [True], ["y"], [None], [1, 0.25], [3.0], [{"a": 1}],
             [2**63, -1], [1e20, 1]]
    fits = {"Int64": [[-1], [3.0]], "UInt64": [[2**63, None], [3.0]],
            "float64": [[2**63, None], [2.5], [-1], [1, 0.25], [3.0], [2**63, -1], [1e20, 1]],
            "boolean": [[True]], "string": [["y"]], "object": given}[dtype]
    for values in given:
        bag = dask.bag.from_sequence([write(t={"c": first}).frame(), write(t={"c": values}).frame()])
        rows = de.dask.read_tables(bag, table="t").compute()
        assert rows["c"].dtype == dtype
        if values in fits or values == [None]:
            read = rows["c"][len(first) if first else 0:]
            assert read.astype(object).where(read.notna(), None).tolist()[-len(values):] == values
        else:
            assert "t.c: the values are not of type" in rows["error"].iloc[-1]


def test_dtypes_may_be_given(folder):
    meta = pandas.DataFrame({"n": pandas.Series(dtype="float64"), "new": pandas.Series(dtype="string")})
    rows = de.dask.read_tables(folder, table="t", meta=meta).compute()
    assert rows["n"].dtype == "float64" and rows["new"].isna().all()


def test_a_column_may_not_take_the_name_of_a_place():
    bag = dask.bag.from_sequence([write(t={"row": [1]}).frame()])
    with pytest.raises(ValueError, match="row"):
        de.dask.read_tables(bag, table="t")
    assert de.dask.read_tables(bag, table="u", mapping={"u.port": "t.row"}).compute().shape == (1, 4)


def test_an_empty_folder(tmp_path):
    assert de.dask.read_frames(tmp_path).compute() == []
    assert len(de.dask.read_tables(tmp_path, table="t").compute()) == 0


def test_errors_travel_between_processes():
    error = pickle.loads(pickle.dumps(de.FrameError("t.c: byte 12: ends")))
    assert (str(error), error.item, error.byte) == ("t.c: byte 12: ends", "t.c", 12)
    assert de.FrameError("a: byte 1: b: byte 22: ends").item == "a: byte 1: b"
    reader = pickle.loads(pickle.dumps(de.FrameReader(select=["leaf"])))
    assert reader.open(write(leaf=1, other=2).frame()).decode() == {"leaf": 1}
