"""Records, BSON and names."""

import datetime as dt
import math
import struct

import pytest

import dataengine as de

TIME = dt.datetime(2024, 5, 17, 12, 30, 0, 123999, tzinfo=dt.timezone(dt.timedelta(hours=2)))
STORED = dt.datetime(2024, 5, 17, 10, 30, 0, 123000, tzinfo=dt.timezone.utc)


def test_a_record_as_the_store_receives_it():
    record = de.Record("N:router:edge-r1", "cmd", "show version", b"a\0b", time=TIME,
                       param={"vrf": "x"}, flag=3, error_log="late")
    assert record.document() == {
        "devId": "edge-r1", "name": "show version", "type": "cmd", "time": STORED, "flag": 3,
        "errorLog": "late", "data": b"a\0b", "md5": record.data_key, "param": {"vrf": "x"}}
    assert record.status() == {"devId": "edge-r1", "type": "cmd", "name": "show version",
                               "param": {"vrf": "x"}}
    assert record.device_document()["length"] == 3
    assert de.bson.decode(record.to_bson()) == record.document()
    assert (record.device, record.type, record.name, record.time) == (
        "edge-r1", "cmd", "show version", STORED)


def test_keys_tell_what_they_should():
    def keys(*arguments, **options):
        record = de.Record(*arguments, time=TIME, **options)
        return record.meta_key, record.data_key

    command = keys("N:router:a", "cmd", "show", "x")
    assert command == keys("N:router:b", "cmd", "show", b"x", param=1)  # nodes share the key
    parser = keys("N:router:a", "parser", "show", "x")
    assert parser != keys("N:router:b", "parser", "show", "x")
    assert parser != keys("N:router:a", "parser", "show", "x", param=1)
    assert {key for _, key in (command, parser, keys("h", "config", "", "x"),
                               keys("h", "sysTable", "arp", "x"))} == {command[1]}


@pytest.mark.parametrize("arguments, options, error", [
    (("h", "other", "", ""), {}, ValueError),
    (("h", "config", "name", ""), {}, ValueError),
    (("h", "cmd", "", ""), {"time": dt.datetime(2024, 1, 1)}, ValueError),
    (("h", "cmd", "", ""), {"time": 1}, TypeError),
    ((1, "cmd", "", ""), {}, TypeError),
    (("h", "cmd", "", 1), {}, TypeError),
    (("h", "cmd", "", ""), {"flag": 2**31}, TypeError),
    (("h", "cmd", "", ""), {"param": object()}, TypeError),
])
def test_rejects_records(arguments, options, error):
    with pytest.raises(error):
        de.Record(*arguments, **options)


def test_the_time_is_now_by_default():
    before = dt.datetime.now(dt.timezone.utc) - dt.timedelta(milliseconds=1)
    assert before <= de.Record("h", "cmd", "", "").time <= dt.datetime.now(dt.timezone.utc)


def test_bson_round_trip():
    document = {"": None, "b": b"\0\xff", "d": -0.5, "i": -2**63, "l": [True, {"x": "\u00e9"}],
                "t": dt.datetime(1, 1, 1, tzinfo=dt.timezone.utc),
                "u": dt.datetime(9999, 12, 31, 23, 59, 59, 999000, tzinfo=dt.timezone.utc)}
    assert de.bson.decode(de.bson.encode(document)) == document
    nan = de.bson.decode(memoryview(de.bson.encode({"n": math.nan})))["n"]
    assert math.isnan(nan)


@pytest.mark.parametrize("document, error", [
    ({"a": 2**63}, ValueError), ({"a": "\udc80"}, ValueError), ({"a\0": 1}, ValueError),
    ([], TypeError), (1, TypeError), ({1: 2}, TypeError), ({"a": {2}}, TypeError),
])
def test_bson_rejects_documents(document, error):
    with pytest.raises(error):
        de.bson.encode(document)


def test_bson_rejects_bytes():
    for data in (b"", b"\x05\0\0\0", b"\x06\0\0\0\0\0", bytearray(100)):
        with pytest.raises(ValueError):
            de.bson.decode(data)
    with pytest.raises(TypeError):
        de.bson.decode("text")
    time = struct.pack("<i", 16) + b"\x09t\0" + struct.pack("<q", 2**62) + b"\0"
    with pytest.raises(OverflowError):
        de.bson.decode(time)


def test_names():
    assert de.names.store.TopoLink.localIntfId == "localIntfId"
    assert de.names.store.Operator.gt == "$gt"
    assert de.names.store.Operator.in_ == "$in"
    assert ("store.DeviceData.def_", "def") in de.names.find("def_")
    assert de.names.variable_mapping.order_2 == "order"
    assert len(de.names.find("")) == len({name.path for name in de.names.find("")}) > 1700
    assert ("store.TopoLink.localIntfId", "localIntfId") in de.names.find("LOCALINTF")
    assert [name.text for name in de.names.find("DEFAULT zone")] == ["Default Zone"]
    for name in de.names.find(""):
        value = de.names
        for part in name.path.split("."):
            value = getattr(value, part)
        assert value == name.text
    with pytest.raises(AttributeError, match="store.TopoLink has no name 'none'"):
        de.names.store.TopoLink.none
    with pytest.raises(AttributeError, match="no block"):
        de.names.store.None_
