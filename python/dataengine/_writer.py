"""Writing packed frames."""

from __future__ import annotations

from collections.abc import Iterable
from typing import Any

import numpy as np

from . import _core


class FrameWriter:
    """Writes a packed frame.

    >>> import dataengine as de
    >>> writer = de.FrameWriter("inventory/interfaces")
    >>> writer.add_leaf("hostname", 1, "acc-sw-17")
    >>> table = writer.add_table("ifTable", hash_sort=True, hash_columns=["ifName"])
    >>> table.add_column("ifName", 1, ["Gi0/1", "Gi0/2"])
    >>> table.add_attribute("vrf", 1, "blue")
    >>> writer
    <FrameWriter 'inventory/interfaces'>
    >>> writer.offsets()
    [0, [10, 23]]

    The frame does not contain the offsets. A reader needs them only to read a part of a frame
    without walking over the rest.
    """

    def __init__(self, name: str) -> None:
        """Starts an empty frame of the unit `name`."""
        self._name = name
        self._core = _core.new_writer(name)

    def add_leaf(self, name: str, type: int, value: Any) -> None:
        """Adds a leaf: None, bool, int, float, str, bytes, or a list or dict of these.

        Raises:
            ValueError: `type` is 11, which marks a table, or the value holds a datetime.
        """
        self._core.add_leaf(name, type, plain(value))

    def add_table(self, name: str, hash_sort: bool = False,
                  hash_columns: Iterable[str] = ()) -> TableWriter:
        """Adds a table, and returns it for its columns and attributes to be added, until the next
        item is.
        """
        if isinstance(hash_columns, str):
            raise TypeError("hash_columns is a list of names, not one of them")
        return TableWriter(name, self._core.add_table(name, hash_sort, list(hash_columns)))

    def add_items(self, items: list[Any]) -> None:
        """Adds all items of a document as `Frame.document` returns it.

        Raises:
            ValueError: An item has other members than a decoded one.
        """
        self._core.add_items(items)

    def frame(self) -> bytes:
        """Returns the frame."""
        return self._core.frame()

    def offsets(self) -> list[Any]:
        """Returns the offsets of the values, counted from the end of the header: a number for a
        leaf, a list for a table.
        """
        return self._core.offsets()

    @property
    def header_length(self) -> int:
        """The number of bytes before the values."""
        return self._core.header_length()

    def __repr__(self) -> str:
        return f"<FrameWriter {self._name!r}>"


class TableWriter:
    """A table that `FrameWriter.add_table` has added."""

    def __init__(self, name: str, core: _core.TableWriter) -> None:
        self._name = name
        self._core = core

    def add_column(self, name: str, type: int, values: Any) -> None:
        """Adds a column: a list, tuple, array or Series with a value for each row, or None.

        Raises:
            ValueError: Another item has been added meanwhile, or `add_leaf` rejects the value.
        """
        self._core.add_column(name, type, plain(values))

    def add_attribute(self, name: str, type: int, value: Any) -> None:
        """Adds an attribute, a value as of `FrameWriter.add_leaf`.

        Raises:
            ValueError: Another item has been added meanwhile, or `add_leaf` rejects the value.
        """
        self._core.add_attribute(name, type, plain(value))

    def __repr__(self) -> str:
        return f"<TableWriter {self._name!r}>"


def plain(values: Any) -> Any:
    """Returns the list of an array or Series, with None where a value is missing."""
    if hasattr(values, "isna") and values.ndim == 1:
        missing = np.asarray(values.isna())
        values = np.array(values, dtype=object)
        values[missing] = None
    if hasattr(values, "tolist") and not isinstance(values, memoryview):
        if getattr(values, "dtype", None) is not None and values.dtype.kind in "mM":
            raise TypeError(f"values of type {values.dtype} have no counterpart")
        return values.tolist()
    return values
