"""Reading frames: values, names, errors."""

import array
import math
import mmap
import pickle
import random
import struct
import subprocess
import sys
import threading

import msgpack
import numpy as np
import pandas
import pytest

import dataengine as de
from conftest import write


def test_decodes_by_name(interfaces):
    frame = de.FrameReader().open(interfaces.frame())
    assert (frame.name, frame.header_length) == ("inventory/interfaces", interfaces.header_length)
    assert [item["name"] for item in frame.schema] == ["hostname", "ifTable"]
    wanted = {"hostname": "acc-sw-17",
              "ifTable": {"ifName": ["Gi0/1", "Gi0/2"], "speed": [1000, None], "vrf": "blue"}}
    assert frame.decode() == frame.decode(interfaces.offsets()) == wanted
    assert frame.find_offsets() == interfaces.offsets()
    assert frame.document()[1] == {
        "type": 11, "name": "ifTable",
        "column": [{"type": 1, "name": "ifName", "value": ["Gi0/1", "Gi0/2"]},
                   {"type": 1, "name": "speed", "value": [1000, None]}],
        "hashSort": True, "hashColumns": '["ifName"]',
        "attributes": [{"type": 1, "name": "vrf", "value": "blue"}]}


@pytest.mark.parametrize("select, wanted", [
    (["hostname"], {"hostname": "acc-sw-17"}),
    (["none", "$hostname"], {"hostname": "acc-sw-17"}),
    (["ifTable"], {"ifTable": {"ifName": ["Gi0/1", "Gi0/2"], "speed": [1000, None], "vrf": "blue"}}),
    ([{"table": "ifTable", "column": ("speed",), "attributes": []}], {"ifTable": {"speed": [1000, None]}}),
    ((), {}),
])
def test_selects(interfaces, select, wanted):
    frame = de.FrameReader(select=select).open(interfaces.frame())
    assert frame.decode() == wanted
    for name in ("ifTable", "hostname", "none"):
        if isinstance(wanted.get(name), dict):
            table = frame.table(name)
            columns = {column: values.tolist() for column, values in table.columns.items()}
            assert {**columns, **table.attributes} == wanted[name]
        else:
            with pytest.raises(KeyError):
                frame.table(name)


@pytest.mark.parametrize("mapping, parser, wanted", [
    ({"device": "hostname"}, None, {"device", "ifTable.ifName", "ifTable.speed"}),
    ({"If.name": "ifTable.ifName"}, None, {"hostname", "If.name", "If.speed"}),
    ({"a": "hostname", "b": "hostname"}, None, {"b", "ifTable.ifName", "ifTable.speed"}),
    ({"nodot": "ifTable.ifName"}, None, {"hostname", "ifTable.ifName", "ifTable.speed"}),
    ({"a": ("inventory/interfaces", "hostname")}, None, {"a", "ifTable.ifName", "ifTable.speed"}),
    ({"a": ("other", "hostname")}, None, {"hostname", "ifTable.ifName", "ifTable.speed"}),
    ({"a": ("other", "hostname")}, "other", {"a", "ifTable.ifName", "ifTable.speed"}),
])
def test_maps_names(interfaces, mapping, parser, wanted):
    reader = de.FrameReader(select=["hostname", {"table": "ifTable", "attributes": []}],
                            mapping=mapping, parser=parser)
    for _ in range(2):  # the second frame uses the names of the first
        frame = reader.open(interfaces.frame())
        names = set()
        for name, value in frame.decode().items():
            names |= {f"{name}.{column}" for column in value} if isinstance(value, dict) else {name}
        assert names == wanted
    other = reader.open(write("inventory/interfaces", uptime=1).frame())
    assert other.decode() == {}
    assert frame.document()[0]["name"] == "hostname"


def test_a_reader_keeps_nothing_of_another_frame():
    reader = de.FrameReader(mapping={"wanted": "a"})
    frame = reader.open(write(a=1).frame())
    assert frame.decode() == {"wanted": 1}
    with pytest.raises(de.FrameError):
        reader.open(b"\x02")
    assert frame.decode() == {"wanted": 1}
    assert reader.open(write(b=2).frame()).decode() == {"b": 2}


def test_names_a_table_as_it_was_asked_for(interfaces):
    reader = de.FrameReader(mapping={"If.name": "ifTable.ifName"})
    frame = reader.open(interfaces.frame())
    assert list(frame.table("ifTable").columns) == ["ifName", "speed"]
    assert list(frame.table("If").columns) == ["name", "speed"]


def test_a_header_that_changes_after_its_frame_was_opened():
    two = write("u", t={"a": [1], "b": [2]})
    less = two.header_length - write("u", t={"a": [1]}).header_length
    one = write("u" + "x" * less, t={"a": [1]})
    assert one.header_length == two.header_length
    reader = de.FrameReader(mapping={"wanted": "absent"})
    assert reader.open(one.frame()).decode() == {"t": {"a": [1]}}
    data = bytearray(two.frame())
    frame = reader.open(data)
    data[:one.header_length] = one.frame()[:one.header_length]
    assert frame.decode() == {"t": {"a": [1], "b": [2]}}


def test_renames_tables_of_other_shapes():
    writer = de.FrameWriter("u")
    writer.add_items([{"type": 11, "name": "t", "hashSort": False, "hashColumns": "[]",
                       "column": [{"type": 11, "name": "nested"}, {"type": 1, "name": "a", "value": [1]},
                                  {"type": 1, "name": "b", "value": [2]}], "attributes": []}])
    mapping = {"w.x": "t.nested", "w.y": "t.a", "w.z": "t.b"}
    for select, names in [(None, ["y", "z"]),
                          ([{"table": "t", "column": ["b"]}, {"table": "t"}], ["z"])]:
        frame = de.FrameReader(select=select, mapping=mapping).open(writer.frame())
        assert list(frame.table("w").columns) == names


COLUMNS = [
    ([1, -2], "int64", "int64"),
    ([2**63, 1], "uint64", "uint64"),
    ([2**63, -1], "object", "object"),
    ([1, None], "int64", "Int64"),
    ([2**64 - 1, None], "uint64", "UInt64"),
    ([1.005, 2.5, 1e21, -0.001], "float64", "float64"),
    ([0.125, None], "float64", "float64"),
    ([True, False], "bool", "boolean"),
    ([None, True], "bool", "boolean"),
    (["up", "", "\u00e9\udcff", "a\0b"], "object", "string"),
    (["up", None], "object", "string"),
    ([1, 2.5], "object", "float64"),
    ([2**60 + 1, 2.5], "object", "object"),
    (["a", 1, [None, {"b": [1]}]], "object", "object"),
    ([None, None], "object", "object"),
    ([], "object", "object"),
    ([b"ab", "c"], "object", "string"),
    ([b"a\\n", "c"], "object", "string"),
]


@pytest.mark.parametrize("values, dtype, pandas_dtype", COLUMNS)
def test_columns_are_arrays(values, dtype, pandas_dtype):
    frame = de.FrameReader().open(write(t={"c": values}).frame())
    decoded = frame.document()[0]["column"][0]["value"]
    column = frame.table("t").columns["c"]
    assert column.dtype == dtype
    assert column.tolist() == decoded
    assert [math.copysign(1, x) for x in column.tolist() if isinstance(x, float)] == [
        math.copysign(1, x) for x in decoded if isinstance(x, float)]
    assert isinstance(column, np.ma.MaskedArray) == (None in values)
    table = frame.table("t")
    series = table.to_pandas()["c"]
    assert series.dtype == pandas_dtype
    assert series.astype(object).where(series.notna(), None).tolist() == decoded
    if dtype == "object":
        assert np.ma.getdata(table.columns["c"]).tolist() == decoded  # pandas has not changed it
    if values:
        column = table.columns["c"] = np.ma.MaskedArray(table.columns["c"])
        column[0] = np.ma.masked
        assert pandas.isna(table.to_pandas()["c"][0])


@pytest.mark.parametrize("short, dtype", [
    ([2**60 + 1], "Int64"), ([2**63 + 1], "UInt64"), ([None, 1], "Int64"), ([0.5], "float64"),
    ([True], "boolean"), (["x"], "string"), ([[1]], "object"), ([1, 0.5], "float64"), ([], "object"),
])
def test_short_columns_end_in_missing_values(short, dtype):
    frame = de.FrameReader().open(write(t={"long": [1, 2, 3], "short": short}).frame())
    rows = frame.table("t").to_pandas()
    assert rows["long"].dtype == "int64" and rows["short"].dtype == dtype
    assert [None if pandas.api.types.is_scalar(value) and pandas.isna(value) else value
            for value in rows["short"]] == short + [None] * (3 - len(short))


def test_columns_of_other_shapes():
    frame = de.FrameReader().open(write(t={"a": [1, 2, 3], "none": None, "short": ["x"]}).frame())
    table = frame.table("t")
    assert len(table) == 3
    assert table.columns["none"].mask.tolist() == [True] * 3
    assert len(de.FrameReader().open(write(t={}).frame()).table("t").to_pandas()) == 0
    twice = de.FrameWriter("u")
    packed = twice.add_table("t")
    packed.add_column("a", 1, [1])
    packed.add_column("a", 1, [2, 3])
    frame = de.FrameReader().open(twice.frame())
    assert frame.decode() == {"t": {"a": [1]}}
    assert frame.table("t").columns["a"].tolist() == [1]
    scalar = de.FrameWriter("u")
    scalar.add_items([{"type": 11, "name": "t", "hashSort": False, "hashColumns": "[]",
                       "column": [{"type": 1, "name": "a", "value": [1, 2]},
                                  {"type": 1, "name": "b", "value": {"x": 1}},
                                  {"type": 11, "name": "nested"}], "attributes": []}])
    table = de.FrameReader().open(scalar.frame()).table("t")
    assert list(table.columns) == ["a", "b"]
    assert table.columns["b"].tolist() == [{"x": 1}] * 2


def random_value(draw, depth=0):
    kind = draw.randrange(9 if depth < 3 else 7)
    if kind < 7:
        return [None, True, draw.randrange(-2**63, 2**64), draw.randrange(-9, 9),
                draw.choice([draw.uniform(-9, 9), draw.randrange(-999, 999) / 200, 1e17]),
                draw.choice(["", "x" * 40, "\"\\\n\x7f"]), draw.randbytes(draw.randrange(4))][kind]
    values = [random_value(draw, depth + 1) for _ in range(draw.randrange(4))]
    return values if kind == 7 else {str(i): value for i, value in enumerate(values)}


def test_columns_equal_the_document():
    draw = random.Random(20)
    reader = de.FrameReader()
    for _ in range(300):
        kinds = [random_value(draw) for _ in range(draw.randrange(1, 3))]
        table = {str(i): [draw.choice([*kinds, None]) for _ in range(draw.randrange(5))]
                 for i in range(4)}
        frame = reader.open(write(t=table).frame())
        for column in frame.document()[0]["column"]:
            values = frame.table("t").columns[column["name"]].tolist()
            wanted = column["value"]  # null as a whole if a bin makes its text invalid
            assert values == (wanted if wanted is not None else [None] * len(values)), table


def test_equals_a_plain_reader():
    draw = random.Random(1)
    values = [draw.uniform(-1e6, 1e6) for _ in range(2000)] + [n / 8 for n in range(-99, 99)]
    frame = write(leaf="x", t={"c": values})
    unpacker = msgpack.Unpacker()
    unpacker.feed(frame.frame())
    _, _, _, leaf, column = unpacker
    assert de.FrameReader().open(frame.frame()).decode() == {
        "leaf": leaf, "t": {"c": [float(f"{value:.2f}") for value in column]}}


BROKEN = [
    (lambda data: b"", "version", 0),
    (lambda data: b"\x02" + data[1:], "version", 0),
    (lambda data: b"\xc0" + data[1:], "version", 0),
    (lambda data: data[:30], "schema", 29),
    (lambda data: data[:-3], "ifTable.vrf", None),
    (lambda data: data[:data.index(b"Gi0/1") - 1] + b"\xc1" + data[data.index(b"Gi0/1"):],
     "ifTable.ifName", None),
]


@pytest.mark.parametrize("damage, item, byte", BROKEN)
def test_errors_name_item_and_byte(interfaces, damage, item, byte):
    data = damage(interfaces.frame())
    for read in (lambda frame: frame.decode(), lambda frame: frame.table("ifTable")):
        with pytest.raises(ValueError) as info:
            read(de.FrameReader().open(data))
        assert type(info.value) is de.FrameError
        assert info.value.item == item
        assert isinstance(info.value.byte, int)
        assert byte is None or info.value.byte == byte


@pytest.mark.parametrize("offsets, error", [
    ([0, [10**6, 0, 0]], de.FrameError), ([-1, [-1, 0, 0]], de.FrameError), (7, TypeError),
    ("x", TypeError), ([0, ["x", 0, 0]], de.FrameError), ([10**30], OverflowError),
    ([object()], TypeError),
])
def test_rejects_offsets(interfaces, offsets, error):
    frame = de.FrameReader().open(interfaces.frame())
    for read in (frame.decode, frame.document, frame.check):
        with pytest.raises(error):
            read(offsets)
    with pytest.raises(error):
        frame.table("ifTable", offsets)
    assert frame.decode()["hostname"] == "acc-sw-17"


def test_a_mutated_frame_is_an_error_or_a_document(interfaces):
    draw = random.Random(7)
    data = interfaces.frame()
    for _ in range(3000):
        changed = bytearray(data)
        for _ in range(draw.randrange(1, 4)):
            changed[draw.randrange(len(changed))] = draw.randrange(256)
        try:
            frame = de.FrameReader().open(changed[:draw.randrange(len(changed)) or None])
            frame.decode()
            frame.table("ifTable").to_pandas()
        except (de.FrameError, KeyError):
            pass


def test_reads_any_buffer_in_place(interfaces, tmp_path):
    data = interfaces.frame()
    path = tmp_path / "frame"
    path.write_bytes(data)
    with open(path, "rb") as file:
        mapped = mmap.mmap(file.fileno(), 0, access=mmap.ACCESS_READ)
    changing = bytearray(data)
    for buffer in (data, changing, memoryview(data), mapped, array.array("B", data),
                   np.frombuffer(data, np.uint8)):
        frame = de.FrameReader().open(buffer)
        assert frame.decode()["hostname"] == "acc-sw-17"
        if isinstance(buffer, (bytearray, mmap.mmap)):
            with pytest.raises(BufferError):
                buffer.close() if isinstance(buffer, mmap.mmap) else buffer.clear()
    changing[-4:] = b"pink"
    table = de.FrameReader().open(changing).table("ifTable")
    assert table.attributes == {"vrf": "pink"}
    del frame
    mapped.close()


def test_rejects_other_buffers(interfaces):
    released = memoryview(interfaces.frame())
    released.release()
    closed = mmap.mmap(-1, 10)
    closed.close()
    for data, error in [("text", TypeError), (None, TypeError), (1, TypeError), (released, ValueError),
                        (closed, ValueError), (memoryview(b"abcd")[::2], BufferError)]:
        with pytest.raises(error):
            de.FrameReader().open(data)


def test_a_view_cannot_be_released_under_a_frame(interfaces):
    view = memoryview(interfaces.frame())
    frame = de.FrameReader().open(view)
    with pytest.raises(BufferError):
        view.release()
    assert frame.decode()["hostname"] == "acc-sw-17"


def test_columns_outlive_the_frame(interfaces):
    columns = de.FrameReader().open(interfaces.frame()).table("ifTable").columns
    assert {name: values.tolist() for name, values in columns.items()} == {
        "ifName": ["Gi0/1", "Gi0/2"], "speed": [1000, None]}


def test_one_reader_for_many_frames_and_threads():
    frames = [write(f"unit{i % 3}", n=i, t={"c": list(range(i))}).frame() for i in range(60)]
    reader = de.FrameReader()
    opened = [reader.open(frame) for frame in frames]
    wrong = []

    def read(order):
        for i in order:
            if opened[i].decode() != {"n": i, "t": {"c": list(range(i))}}:
                wrong.append(i)
            if opened[i].table("t").columns["c"].tolist() != list(range(i)):
                wrong.append(i)

    orders = [random.Random(seed).sample(range(60), 60) for seed in range(4)]
    threads = [threading.Thread(target=read, args=(order,)) for order in orders]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert wrong == []


def test_the_gil_is_released():
    writer = write(leaf="x" * 10_000_000)
    frame = de.FrameReader().open(writer.frame())
    document = {"leaf": "x" * 10_000_000}
    data = de.bson.encode(document)
    interval = sys.getswitchinterval()
    sys.setswitchinterval(1000)  # nobody but the call itself lets this thread run
    try:
        for call in (frame.decode, writer.frame, lambda: de.bson.encode(document),
                     lambda: de.bson.decode(data)):
            assert any(runs_meanwhile(call) for _ in range(100)), call
    finally:
        sys.setswitchinterval(interval)


def runs_meanwhile(call):
    begun, ended = threading.Event(), threading.Event()
    thread = threading.Thread(target=lambda: (begun.set(), call(), ended.set()))
    thread.start()
    begun.wait()
    meanwhile = not ended.is_set()
    thread.join()
    return meanwhile


def test_the_interpreter_ends_while_daemon_threads_decode():
    program = """
import threading, time
import dataengine as de
writer = de.FrameWriter("u")
writer.add_leaf("leaf", 1, ["text"] * 100_000)
frame = de.FrameReader().open(writer.frame())
def decode():
    while True:
        frame.check()
for _ in range(2):
    threading.Thread(target=decode, daemon=True).start()
time.sleep(0.1)
"""
    ended = subprocess.run([sys.executable, "-c", program], capture_output=True, timeout=60)
    assert (ended.returncode, ended.stderr) == (0, b"")


def test_deep_values_do_not_overflow_the_stack():
    depth = 200_000
    header = b"\x01\xa1u" + msgpack.packb([{"name": "deep", "type": 1, "index": 0}])
    value = de.FrameReader().open(header + b"\x91" * depth + b"\x07").decode()["deep"]
    for _ in range(depth):
        value, = value
    assert value == 7
    with pytest.raises(de.FrameError):
        de.FrameReader().open(header + b"\x91" * depth).decode()


def test_huge_counts_are_checked_first():
    header = b"\x01\xa1u" + msgpack.packb(
        [{"name": "t", "type": 11, "index": 0, "column": [{"name": "c", "type": 1, "index": 0}]}])
    for kind in (b"\xdd", b"\xdf", b"\xdb", b"\xc6"):
        frame = de.FrameReader().open(header + kind + struct.pack(">I", 2**32 - 1) + b"\x01" * 9)
        for read in (frame.decode, lambda: frame.table("t")):
            with pytest.raises(de.FrameError):
                read()


def test_objects_show_something(interfaces):
    reader = de.FrameReader(select=["ifTable"], mapping={"a": "b"}, parser="p")
    frame = reader.open(interfaces.frame())
    assert eval(repr(reader), {"FrameReader": de.FrameReader}).__reduce__() == reader.__reduce__()
    assert repr(frame).startswith("<Frame 'inventory/interfaces': ")
    assert repr(frame.table("ifTable")) == (
        "<Table 'ifTable': 2 rows; ifName: object, speed: int64; vrf='blue'>")


def test_internal_objects_cannot_be_made_empty():
    for part in (reader := de.FrameReader())._core, reader.open(write(a=1).frame())._core:
        for make in (lambda: type(part)(), lambda: type(part).__new__(type(part)),
                     lambda: object.__new__(type(part)), lambda: type("Sub", (type(part),), {})):
            with pytest.raises(TypeError):
                make()


def test_objects_that_cannot_be_pickled_say_so():
    writer = write(t={"a": [1]})
    frame = de.FrameReader().open(writer.frame())
    record = de.Record("h", "cmd", "", "")
    for part in (frame, writer, writer.add_table("u"), record, record._core):
        for protocol in range(pickle.HIGHEST_PROTOCOL + 1):
            with pytest.raises(TypeError):
                pickle.dumps(part, protocol)
        with pytest.raises(TypeError):
            part._core.__reduce__() if hasattr(part, "_core") else part.__reduce__()
    table = pickle.loads(pickle.dumps(frame.table("t")))
    assert table.columns["a"].tolist() == [1]


@pytest.mark.parametrize("options", [
    {"select": "ifTable"}, {"select": {"table": "ifTable"}}, {"select": 1}, {"select": [1]}, {"select": [{1: 2}]},
    {"mapping": {"a": 1}}, {"mapping": {1: "a"}}, {"mapping": {"a": ("p", 1)}}, {"parser": 1},
])
def test_rejects_options(options):
    with pytest.raises(TypeError):
        de.FrameReader(**options)


def test_pandas_shows_types(interfaces):
    frame = de.FrameReader().open(interfaces.frame())
    wanted = pandas.DataFrame({"ifName": pandas.array(["Gi0/1", "Gi0/2"], dtype="string"),
                               "speed": pandas.array([1000, None], dtype="Int64")})
    pandas.testing.assert_frame_equal(frame.table("ifTable").to_pandas(), wanted)
