"""Reading packed frames."""

from __future__ import annotations

from collections.abc import Iterable, Mapping
from typing import TYPE_CHECKING, Any, Optional, Union

import numpy as np

from . import _core

if TYPE_CHECKING:
    import pandas  # type: ignore[import]

_masked: Any = np.ma  # which has no types
Array = np.ndarray[Any, Any]
Offsets = Optional[list[Any]]
Selection = Optional[Iterable[Union[str, Mapping[str, Any]]]]
Variable = Union[str, tuple[str, str]]


class FrameReader:
    """Reads packed frames.

    A reader remembers the last header, so that frames which one parser wrote cost little more than
    their values. Keep it for all frames, one for each thread: threads that share a reader wait for
    each other.

    >>> import dataengine as de
    >>> writer = de.FrameWriter("inventory/interfaces")
    >>> writer.add_leaf("hostname", 1, "acc-sw-17")
    >>> table = writer.add_table("ifTable")
    >>> table.add_column("ifName", 1, ["Gi0/1"])
    >>> table.add_column("speed", 3, [1000])
    >>> reader = de.FrameReader(select=["ifTable"], mapping={"Interfaces.name": "ifTable.ifName"})
    >>> reader.open(writer.frame()).decode()
    {'Interfaces': {'name': ['Gi0/1'], 'speed': [1000]}}
    """

    def __init__(self, select: Selection = None, mapping: Mapping[str, Variable] | None = None,
                 parser: str | None = None) -> None:
        """Makes a reader.

        Args:
            select: The items to decode, in this order; None decodes all. An item is its name, or
                for a part of a table ``{"table": name, "column": names, "attributes": names}``,
                where absent names mean all.
            mapping: The wanted names and their variables: the name of a leaf, or "table.column". A
                variable may be a pair of a parser and a name.
            parser: The parser whose variables are renamed, by default the name of the frame. A
                variable without a parser belongs to it.
        """
        if isinstance(select, (str, bytes, Mapping)):
            raise TypeError("select is a list of items, not one of them")
        self._select = None if select is None else [
            item if isinstance(item, str) else dict(item) for item in select]
        self._mapping = dict(mapping or {})
        self._parser = parser
        self._core = _core.new_reader(self._select, self._mapping, parser)

    def open(self, data: Any) -> Frame:
        """Opens a frame in a bytes-like object: bytes, bytearray, memoryview, mmap.

        The bytes are not copied. They stay in use as long as the frame: a bytearray cannot be
        resized and an mmap not be closed meanwhile.

        Raises:
            FrameError: The header is damaged, or the frame is of another version.
        """
        return Frame(self._core.open(data))

    def __repr__(self) -> str:
        options = {"select": self._select, "mapping": self._mapping or None, "parser": self._parser}
        given = ", ".join(f"{name}={value!r}" for name, value in options.items() if value is not None)
        return f"FrameReader({given})"

    def __reduce__(self) -> tuple[Any, ...]:
        return FrameReader, (self._select, self._mapping, self._parser)


class Frame:
    """A packed frame that `FrameReader.open` has opened.

    Offsets are stored beside a frame: `FrameWriter.offsets` returns them. Without them, the values
    are taken to be consecutive, as a writer writes them.
    """

    def __init__(self, core: _core.Frame) -> None:
        self._core = core

    @property
    def name(self) -> str:
        """The name of the unit."""
        return self._core.name()

    @property
    def schema(self) -> Any:
        """The items of the unit: a list of dicts."""
        return self._core.schema()

    @property
    def header_length(self) -> int:
        """The number of bytes before the values."""
        return self._core.header_length()

    def decode(self, offsets: Offsets = None) -> dict[str, Any]:
        """Returns the selected items by name, as the mapping wants them: the value of a leaf, and
        for a table a dict of its columns and then its attributes.

        Floats have two decimals. A value that JSON cannot express is None as a whole. Of equal
        names the first is kept; `document` has all.

        Raises:
            FrameError: A value is damaged, or outside the frame.
        """
        return self._core.decode(offsets)

    def document(self, offsets: Offsets = None) -> list[dict[str, Any]]:
        """Returns the selected items as a list of dicts, under the names that they have in the
        frame. A leaf has "type", "name" and "value", a table "type", "name", "column", "hashSort",
        "hashColumns" and "attributes".

        Raises:
            FrameError: A value is damaged, or outside the frame.
        """
        return self._core.document(offsets)

    def table(self, name: str, offsets: Offsets = None) -> Table:
        """Returns the selected columns and attributes of a table, straight from the packed bytes.

        The name is that of the frame or the one that the mapping gives to the table; the columns
        are named in the same way.

        Raises:
            KeyError: No such table is selected.
            FrameError: A value is damaged, or outside the frame.
        """
        parts = self._core.table(name, offsets)
        if parts is None:
            raise KeyError(name)
        return Table(name, *parts)

    def check(self, offsets: Offsets = None) -> None:
        """Decodes the selected items and drops them.

        Raises:
            FrameError: A value is damaged, or outside the frame.
        """
        self._core.check(offsets)

    def find_offsets(self) -> list[Any]:
        """Returns the offsets of values that are consecutive."""
        return self._core.find_offsets()

    def __repr__(self) -> str:
        return (f"<Frame {self.name!r}: {self._core.size()} bytes, "
                f"{self.header_length} of them header>")


class Table:
    """The columns and attributes of a table.

    >>> import dataengine as de
    >>> writer = de.FrameWriter("inventory/interfaces")
    >>> packed = writer.add_table("ifTable")
    >>> packed.add_column("ifName", 1, ["Gi0/1", "Gi0/2"])
    >>> packed.add_column("speed", 3, [1000, None])
    >>> packed.add_attribute("vrf", 1, "blue")
    >>> table = de.FrameReader().open(writer.frame()).table("ifTable")
    >>> table
    <Table 'ifTable': 2 rows; ifName: object, speed: int64; vrf='blue'>
    >>> table.columns["speed"]
    masked_array(data=[1000, --],
                 mask=[False,  True],
           fill_value=999999)
    >>> table.to_pandas()
      ifName  speed
    0  Gi0/1   1000
    1  Gi0/2   <NA>

    Attributes:
        name: The name by which the table was asked for.
        columns: The columns by name: arrays of int64, uint64, float64 or bool, or of objects for
            strings and anything mixed. A column with missing values is a masked array. A column
            that is not an array holds its value in each row.
        attributes: The attributes by name.
    """

    name: str
    columns: dict[str, Array]
    attributes: dict[str, Any]

    def __init__(self, name: str, columns: list[tuple[str, Any, Array | None]],
                 attributes: dict[str, Any]) -> None:
        self.name = name
        self.attributes = attributes
        self._length = max((len(values) for _, values, _ in columns
                            if isinstance(values, np.ndarray)), default=0)
        self.columns = {}
        for column, values, mask in columns:
            if not isinstance(values, np.ndarray):
                values, mask = self._repeated(values)
            if mask is not None:
                values = _masked.MaskedArray(values, mask=mask)
            self.columns.setdefault(column, values)

    def _repeated(self, value: Any) -> tuple[Array, Array | None]:
        values = np.empty(self._length, dtype=object)
        for row in range(self._length):
            values[row] = value
        return values, np.ones(self._length, dtype=bool) if value is None else None

    def __len__(self) -> int:
        """Returns the number of rows: the length of the longest column."""
        return self._length

    def to_pandas(self) -> pandas.DataFrame:
        """Returns a DataFrame: int64 and uint64, with missing values Int64 and UInt64; float64,
        boolean, string, and object for anything mixed. Shorter columns end in missing values.
        """
        from ._pandas import to_series
        import pandas

        series = {name: to_series(column, len(self)) for name, column in self.columns.items()}
        return pandas.DataFrame(series, index=pandas.RangeIndex(len(self)))

    def __repr__(self) -> str:
        columns = ", ".join(f"{name}: {column.dtype}" for name, column in self.columns.items())
        attributes = ", ".join(f"{name}={value!r}" for name, value in self.attributes.items())
        parts = [f"<Table {self.name!r}: {len(self)} rows", columns, attributes]
        return "; ".join(part for part in parts if part) + ">"
