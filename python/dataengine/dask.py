"""Many frames on one machine or a cluster, by means of Dask.

    >>> import dataengine as de
    >>> import dask
    >>> import dataengine.dask
    >>> writer = de.FrameWriter("inventory/interfaces")
    >>> writer.add_leaf("hostname", 1, "acc-sw-17")
    >>> writer.add_table("ifTable").add_column("ifName", 1, ["Gi0/1", "Gi0/2"])
    >>> frames = dask.bag.from_sequence([writer.frame(), b"broken"], npartitions=1)
    >>> with dask.config.set(scheduler="synchronous"):
    ...     de.dask.read_frames(frames, select=["hostname"]).compute()
    ...     de.dask.read_tables(frames, table="ifTable")[["file", "row", "ifName"]].compute()
    [{'hostname': 'acc-sw-17'}, BrokenFrame(file='0:1', error=FrameError('...'))]
      file   row ifName
    0  0:0     0  Gi0/1
    1  0:0     1  Gi0/2
    2  0:1  <NA>   <NA>

With a `distributed.Client`, the same calls run on its cluster, whose workers need this package and
access to the files.
"""

from __future__ import annotations

from collections.abc import Callable, Iterable, Iterator, Mapping
from dataclasses import dataclass
from os import PathLike, fspath
from typing import Any, Optional, Union

import dask.bag
import dask.dataframe
import fsspec  # type: ignore[import]
import numpy as np
import pandas  # type: ignore[import]
from dask.base import tokenize
from dask.bag.core import reify
from dask.highlevelgraph import HighLevelGraph
from dask.utils import parse_bytes
from fsspec.implementations.local import LocalFileSystem  # type: ignore[import]

from ._errors import FrameError
from ._frames import Array, Frame, FrameReader, Selection, Table, Variable
from ._pandas import to_series

__all__ = ["BrokenFrame", "read_frames", "read_tables"]

PARTITION = "64 MiB"
DEPTH = 100  # of values: those that nest much deeper cannot be sent between processes
# These have no types, or not in all versions.
_bags: Any = dask.bag
_dataframes: Any = dask.dataframe
_from_collections: Any = getattr(HighLevelGraph, "from_collections")
_masked: Any = np.ma
_tokenize: Any = tokenize

Source = Union[str, "PathLike[str]", Iterable[Union[str, "PathLike[str]"]], Any]
Offsets = Union[None, list[Any], Callable[[str], Optional[list[Any]]]]
_Named = tuple[str, bytes]


@dataclass(frozen=True)
class BrokenFrame:
    """Stands for a frame that could not be read.

    Attributes:
        file: The file, or "partition:position" of a frame from a bag.
        error: Why: a FrameError, or an OSError of the file.
    """

    file: str
    error: Exception


@dataclass(frozen=True)
class _Task:
    """How a task reads the frames of its partition. It goes to the workers."""

    select: Selection
    mapping: Mapping[str, Variable] | None
    parser: str | None
    offsets: Offsets
    errors: str

    def __post_init__(self) -> None:
        if self.errors not in ("collect", "raise"):
            raise ValueError(f'errors is "collect" or "raise", not {self.errors!r}')
        FrameReader(self.select, self.mapping, self.parser)  # rejects bad options at once

    def read(self, frames: Iterable[tuple[str, bytes | OSError]],
             take: Callable[[Frame, Any], Any]) -> Iterator[tuple[str, Any]]:
        """Yields the name of each frame and what `take` makes of it, or a BrokenFrame."""
        reader = FrameReader(self.select, self.mapping, self.parser)
        reader._core.set_depth(DEPTH)
        for name, data in frames:
            try:
                if isinstance(data, OSError):
                    raise data
                offsets = self.offsets(name) if callable(self.offsets) else self.offsets
                yield name, take(reader.open(data), offsets)
            except (FrameError, OSError) as error:
                if self.errors == "raise":
                    raise
                yield name, BrokenFrame(name, error)


def read_frames(source: Source, *, select: Selection = None,
                mapping: Mapping[str, Variable] | None = None, parser: str | None = None,
                offsets: Offsets = None, errors: str = "collect",
                partition: int | str = PARTITION) -> Any:
    """Returns a dask.bag of the decoded frames, in the order of the source.

    A frame whose values nest deeper than 100 levels cannot be read: they could not be sent between
    processes.

    Args:
        source: A path or URL, of a file, of a folder or with wildcards, a list of these, or a
            dask.bag of bytes. A file holds one frame.
        select, mapping, parser: As of `FrameReader`. Each task has one reader.
        offsets: As of `Frame.decode`, for all frames, or a function that returns the offsets for
            the name of a file.
        errors: "collect" yields a `BrokenFrame` in place of a frame that cannot be read, "raise"
            lets the job fail.
        partition: The bytes of the files of one task. The tasks of a bag are its partitions.
    """
    task = _Task(_listed(select), mapping, parser, offsets, errors)
    parts, bags = _partitions(source, partition)
    name = "read-frames-" + _tokenize(parts, task)
    graph = {(name, i): (reify, (_frames_of, task, i, part)) for i, part in enumerate(parts)}
    return _bags.Bag(_from_collections(name, graph, bags), name, len(parts))


def read_tables(source: Source, *, table: str, select: Selection = None,
                mapping: Mapping[str, Variable] | None = None, parser: str | None = None,
                offsets: Offsets = None, errors: str = "collect",
                partition: int | str = PARTITION, meta: pandas.DataFrame | None = None) -> Any:
    """Returns a dask.dataframe of one table of all frames.

    The rows have the columns "file" and "row", those of the table, and "error". A frame that cannot
    be read, or has no such table, is one row with its "error" and without a "row" number. Integers
    are Int64 or UInt64, the others float64, boolean, string or object.

    Args:
        table: The table, by its name in the frame or by the one of the mapping.
        meta: An empty DataFrame with the columns of the table and their dtypes, by default those of
            the first frame that can be read. Further columns are left out, and a frame with values
            that do not fit cannot be read.
        source, select, mapping, parser, offsets, errors, partition: As of `read_frames`.
    """
    task = _Task(_listed(select), mapping, parser, offsets, errors)
    parts, bags = _partitions(source, partition)
    if meta is None:
        meta = _first_table(task, parts, bags, table)
    dtypes = {str(name): str(dtype) for name, dtype in meta.dtypes.items()}
    if clash := dtypes.keys() & {"file", "row", "error"}:
        raise ValueError(f"the table has a column {min(clash)!r}: map it to another name")
    name = "read-tables-" + _tokenize(parts, task, table, dtypes)
    graph = {(name, i): (_tables_of, task, i, part, table, dtypes) for i, part in enumerate(parts)}
    return _dataframes.DataFrame(_from_collections(name, graph, bags), name,
                                    _Rows(dtypes).frame(), [None] * (len(parts) + 1))


def _listed(select: Selection) -> Selection:
    return select if select is None or isinstance(select, str) else list(select)


@dataclass
class _Files:
    """The files of one partition."""

    system: Any
    paths: list[str]
    size: int

    def read(self) -> Iterator[tuple[str, bytes | OSError]]:
        """Yields the name and the content of each file, or the error in its place."""
        for path in self.paths:
            try:
                if isinstance(self.system, LocalFileSystem):
                    with open(path, "rb") as file:
                        data = file.read()
                else:
                    data = self.system.cat_file(path)
            except OSError as error:
                yield path, error
            else:
                yield path, data


def _partitions(source: Source, partition: int | str) -> tuple[list[Any], list[Any]]:
    """Returns the files, or the key of the bag's frames, for each task, and the bag in a list."""
    if isinstance(source, _bags.Bag):
        return list(source.__dask_keys__()), [source]
    limit = parse_bytes(partition)
    parts: list[Any] = []
    for location in [source] if isinstance(source, (str, PathLike)) else source:
        system, path = fsspec.core.url_to_fs(fspath(location))
        for name, size in _sizes(system, path):
            if not parts or parts[-1].system != system or parts[-1].size + size > limit:
                parts.append(_Files(system, [], 0))
            parts[-1].paths.append(name)
            parts[-1].size += size
    return parts or [_Files(None, [], 0)], []


def _sizes(system: Any, path: str) -> list[tuple[str, int]]:
    """Returns the files that a path, a folder or a path with wildcards denotes, with their sizes."""
    if any(mark in path for mark in "*?["):
        found = list(system.glob(path, detail=True).values())
    elif system.isdir(path):
        found = [entry for entry in system.ls(path, detail=True)
                 if not entry["name"].rsplit("/", 1)[-1].startswith(".")]
    else:
        found = [system.info(path)]
    return sorted((entry["name"], entry["size"] or 0) for entry in found
                  if entry["type"] != "directory")


def _named(index: int, part: Any) -> Iterator[tuple[str, bytes | OSError]]:
    """Returns the frames of a partition with their names."""
    if isinstance(part, _Files):
        return part.read()
    return ((f"{index}:{position}", data) for position, data in enumerate(part))


def _frames_of(task: _Task, index: int, part: Any) -> Iterator[Any]:
    for _, frame in task.read(_named(index, part), Frame.decode):
        yield frame


class _Rows:
    """The rows of one partition: parts of its columns, which are concatenated in the end."""

    def __init__(self, dtypes: dict[str, str]) -> None:
        self._dtypes = dtypes
        self._files: list[tuple[str, int, str | None]] = []  # with a number of rows
        self._columns: dict[str, list[tuple[Array, Array]]] = {name: [] for name in dtypes}

    def take(self, table: str) -> Callable[[Frame, Any], Any]:
        """Returns the function that reads the columns of one frame."""

        def take(frame: Frame, offsets: Any) -> Any:
            try:
                read = frame.table(table, offsets)
            except KeyError:
                raise FrameError(f"{table}: the frame has no such table") from None
            return len(read), [_fit(read, name, dtype) for name, dtype in self._dtypes.items()]

        return take

    def add(self, name: str, read: Any) -> None:
        """Adds what `take` returned for a frame, or a row for a broken one."""
        if isinstance(read, BrokenFrame):
            self._files.append((name, 1, f"{type(read.error).__name__}: {read.error}"))
            parts = [_missing(1, dtype) for dtype in self._dtypes.values()]
        else:
            self._files.append((name, read[0], None))
            parts = read[1]
        for column, part in zip(self._columns.values(), parts):
            column.append(part)

    def frame(self) -> pandas.DataFrame:
        """Returns the rows."""
        counts = [count for _, count, _ in self._files]
        names = np.array([name for name, _, _ in self._files], dtype=object)
        errors = np.array([error for _, _, error in self._files], dtype=object)
        broken = np.array([error is not None for error in errors], dtype=bool)
        numbers = np.concatenate([np.arange(0), *(np.arange(count) for count in counts)])
        return pandas.DataFrame({
            "file": pandas.arrays.StringArray(names.repeat(counts)),
            "row": pandas.arrays.IntegerArray(numbers, broken.repeat(counts)),
            **{name: _joined(parts, self._dtypes[name]) for name, parts in self._columns.items()},
            "error": pandas.arrays.StringArray(errors.repeat(counts))})


def _tables_of(task: _Task, index: int, part: Any, table: str, dtypes: dict[str, str]) -> Any:
    rows = _Rows(dtypes)
    for name, read in task.read(_named(index, part), rows.take(table)):
        rows.add(name, read)
    return rows.frame()


def _first_table(task: _Task, parts: list[Any], bags: list[Any], table: str) -> pandas.DataFrame:
    """Returns the columns of the first frame that has the table."""
    reading = _Task(task.select, task.mapping, task.parser, task.offsets, "collect")
    loaded = (part.compute() for part in bags[0].to_delayed()) if bags else iter(parts)
    for index, part in enumerate(loaded):
        for _, found in reading.read(_named(index, part), lambda frame, offsets: (frame, offsets)):
            try:
                columns = found[0].table(table, found[1]).columns
            except (KeyError, TypeError, FrameError):
                continue
            series = {name: to_series(column, len(column)).iloc[:0]
                      for name, column in columns.items()}
            return pandas.DataFrame({name: column.astype(_NULLABLE.get(str(column.dtype), column.dtype))
                                     for name, column in series.items()})
    return pandas.DataFrame()


_NULLABLE = {"int64": "Int64", "uint64": "UInt64"}
_NUMPY = {"Int64": np.int64, "UInt64": np.uint64, "float64": np.float64, "boolean": np.bool_}


def _missing(count: int, dtype: str) -> tuple[Array, Array]:
    return np.zeros(count, dtype=_NUMPY.get(dtype, object)), np.ones(count, dtype=bool)


def _fit(table: Table, name: str, dtype: str) -> tuple[Array, Array]:
    """Returns the values and mask of a column in the NumPy type of `dtype`."""
    values, mask = _missing(len(table), dtype)
    column = table.columns.get(name)
    if column is None:
        return values, mask
    rows = slice(len(column))
    mask[rows] = _masked.getmaskarray(column)
    given = _masked.getdata(column)
    present = given[~mask[rows]]
    if given.dtype == values.dtype != object or not len(present):
        fits = True
    elif dtype == "string":
        fits = all(isinstance(value, str) for value in present)
    else:
        fits = dtype == "object" or _fits_exactly(present, values.dtype)
    if not fits:
        raise FrameError(f"{table.name}.{name}: the values are not of type {dtype}")
    values[rows][~mask[rows]] = present
    return values, mask


def _fits_exactly(values: Array, dtype: Any) -> bool:
    """Returns whether numbers keep their values in another NumPy type."""
    if any(isinstance(value, bool) or not isinstance(value, (int, float)) for value in values.tolist()):
        return False
    try:
        with np.errstate(all="ignore"):
            return bool(values.astype(dtype).tolist() == values.tolist())
    except OverflowError:
        return False


def _joined(parts: list[tuple[Array, Array]], dtype: str) -> Any:
    """Returns the pandas array of the parts of a column."""
    start = _missing(0, dtype)
    values = np.concatenate([start[0], *(part for part, _ in parts)])
    mask = np.concatenate([start[1], *(part for _, part in parts)])
    if dtype in ("Int64", "UInt64"):
        return pandas.arrays.IntegerArray(values, mask)
    if dtype == "boolean":
        return pandas.arrays.BooleanArray(values, mask)
    if dtype == "float64":
        values[mask] = np.nan
        return values
    values[mask] = None
    return pandas.arrays.StringArray(values) if dtype == "string" else values
