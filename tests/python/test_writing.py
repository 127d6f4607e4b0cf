"""Writing frames, and the conversion of values."""

import decimal
from collections import OrderedDict
from datetime import datetime, timezone

import numpy as np
import pandas
import pytest

import dataengine as de
from conftest import write


def decoded(value):
    return de.FrameReader().open(write(v={"c": value} if isinstance(value, list) else value)
                                 .frame()).decode()["v"]


@pytest.mark.parametrize("given, wanted", [
    (None, None), (True, True), (np.True_, True), (0, 0), (-2**63, -2**63), (2**64 - 1, 2**64 - 1),
    (np.uint8(7), 7), (np.int64(-7), -7), (np.float32(0.5), 0.5), (np.str_("x"), "x"), (2.0, 2.0),
    (float("nan"), None), (b"ab", "ab"), (bytearray(b"ab"), "ab"), (memoryview(b"ab"), "ab"),
    ("\u00e9\U0001f600", "\u00e9\U0001f600"), ("\udc80", "\udc80"), ((1, (2,)), [1, [2]]),
    ({"a": {"": []}}, {"a": {"": []}}), (OrderedDict(a=1), {"a": 1}),
])
def test_converts_values(given, wanted):
    result = de.FrameReader().open(write(v=(given,)).frame()).decode()["v"]
    assert result == [wanted] and type(result[0]) is type(wanted)


CIRCLE = [1]
CIRCLE.append({"again": CIRCLE})


@pytest.mark.parametrize("value, error", [
    (2**64, OverflowError), (-2**63 - 1, OverflowError), (10**4000, OverflowError),
    (object(), TypeError), ({1: 2}, TypeError), ({b"a": 2}, TypeError), ([{"a": {None: 1}}], TypeError),
    (1j, TypeError), (decimal.Decimal(1), TypeError), (np.datetime64("2024-01-01"), TypeError),
    (np.timedelta64(1, "ns"), TypeError), (np.longdouble(1), TypeError), ("\ud800", ValueError),
    (CIRCLE, ValueError), (datetime.now(timezone.utc), ValueError), (datetime(2024, 1, 1), ValueError),
    (pandas.NA, TypeError), (range(3), TypeError), ({1, 2}, TypeError), (type, TypeError),
])
def test_rejects_values(value, error):
    writer = write(a=1)
    before = writer.frame()
    with pytest.raises(error):
        writer.add_leaf("v", 1, value)
    assert writer.frame() == before


def test_takes_columns_of_any_kind():
    for values, wanted in [
        ((1, 2), [1, 2]),
        (np.arange(2, dtype=np.uint16), [0, 1]),
        (np.array([1.5, np.nan]), [1.5, None]),
        (np.array(["a", "b"]), ["a", "b"]),
        (np.array([True, False]), [True, False]),
        (np.ma.MaskedArray([1, 2], mask=[False, True]), [1, None]),
        (np.array(["a", None, 3], dtype=object), ["a", None, 3]),
        (pandas.Series([1, None], dtype="Int64"), [1, None]),
        (pandas.Series(["a", None], dtype="string"), ["a", None]),
        (pandas.Series([True, None], dtype="boolean"), [True, None]),
        (pandas.Series([1, 2], index=[5, 6]), [1, 2]),
        (pandas.Series(["x", "y", "x"], dtype="category"), ["x", "y", "x"]),
        (pandas.array([1, None]), [1, None]),
        (pandas.Index(["a", None]), ["a", None]),
        (pandas.Series([pandas.NA, 1], dtype=object), [None, 1]),
        (None, None),
    ]:
        writer = de.FrameWriter("u")
        writer.add_table("t").add_column("c", 1, values)
        assert de.FrameReader().open(writer.frame()).decode() == {"t": {"c": wanted}}
    table = de.FrameWriter("u").add_table("t")
    for values in (np.array(["2024-01-01"], "M8[ns]"), pandas.Series(pandas.to_datetime(["2024"])),
                   pandas.DataFrame({"a": [1]}), 1, "text", {"a": 1}):
        with pytest.raises((TypeError, ValueError)):
            table.add_column("c", 1, values)


def test_a_table_ends_with_the_next_item():
    writer = de.FrameWriter("u")
    table = writer.add_table("t")
    writer.add_leaf("l", 1, 1)
    for add in (table.add_column, table.add_attribute):
        with pytest.raises(ValueError, match="c"):
            add("c", 1, [])
    del writer
    with pytest.raises(ValueError):
        table.add_column("c", 1, [])


def test_adds_documents():
    frame = write(a={"x": 1}, t={"c": [1.5, None], "d": "x"}).frame()
    document = de.FrameReader().open(frame).document()
    again = de.FrameWriter("inventory/interfaces")
    again.add_items(document)
    assert again.frame() == frame
    for items in (1, [1], [{}], [{"type": 1, "name": "a", "value": b""}], None):
        with pytest.raises((TypeError, ValueError)):
            again.add_items(items)


def test_rejects_names_and_types():
    writer = de.FrameWriter("u")
    for call in (lambda: de.FrameWriter(b"u"), lambda: writer.add_leaf(1, 1, 1),
                 lambda: writer.add_leaf("a", "1", 1), lambda: writer.add_leaf("a", 2**40, 1),
                 lambda: writer.add_table("t", True, [1]), lambda: writer.add_table("t", True, 1),
                 lambda: writer.add_table("t", True, "name")):
        with pytest.raises(TypeError):
            call()
    with pytest.raises(ValueError, match="11"):
        writer.add_leaf("a", 11, 1)


def test_a_list_that_shrinks_while_it_is_read():
    class Number(np.int64):
        def item(self):
            values.clear()
            return 1

    values = [Number(1), Number(2), Number(3)]
    assert decoded(values) == {"c": [1]}


def test_deep_values():
    value = []
    for _ in range(100_000):
        value = [value]
    assert len(write(v=(value,)).frame()) > 100_000
