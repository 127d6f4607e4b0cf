"""A program whose types mypy checks; it does not run."""

from datetime import datetime

import numpy as np

import dataengine as de

reader: de.FrameReader = de.FrameReader(select=["hostname", {"table": "ifTable", "column": ["speed"]}],
                                        mapping={"Interfaces.name": ("parser", "ifTable.ifName")})
frame = reader.open(memoryview(b""))
name: str = frame.name
values: dict[str, object] = frame.decode(offsets=[0, [3]])
table: de.Table = frame.table("ifTable")
column: "np.ndarray[object, object]" = table.columns["speed"]  # type: ignore[type-var]
rows: int = len(table)
time: datetime = de.Record("N:router:r1", "cmd", "show version", b"").time
text: str = de.names.store.TopoLink.localIntfId
packed: bytes = de.bson.encode({"time": time})
reader.open(1).decode(b"")  # type: ignore[arg-type]
de.FrameWriter(1)  # type: ignore[arg-type]
