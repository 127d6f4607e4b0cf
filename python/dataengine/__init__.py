"""Packed frames, records and names of a data engine.

    >>> import dataengine as de

A writer packs the values of one unit into a frame:

    >>> writer = de.FrameWriter("inventory/interfaces")
    >>> writer.add_leaf("hostname", 1, "acc-sw-17")
    >>> table = writer.add_table("ifTable")
    >>> table.add_column("ifName", 1, ["Gi0/1", "Gi0/2"])
    >>> table.add_column("speed", 3, [1000, None])
    >>> data = writer.frame()

A reader decodes frames, whole or in part:

    >>> frame = de.FrameReader().open(data)
    >>> frame.decode()
    {'hostname': 'acc-sw-17', 'ifTable': {'ifName': ['Gi0/1', 'Gi0/2'], 'speed': [1000, None]}}
    >>> frame.table("ifTable").columns["ifName"]
    array(['Gi0/1', 'Gi0/2'], dtype=object)

`Record` is a unit of device data on its way into the store, `bson` reads and writes the documents
of the store, `names` has its vocabulary, and `dataengine.dask` reads many frames on a cluster.

Strings are bytes in the library. Bytes that are not UTF-8 become surrogate escapes in a str, and
become the same bytes again on the way back.
"""

from . import bson, names
from ._core import version as __version__
from ._errors import FrameError
from ._frames import Frame, FrameReader, Table
from ._record import Record
from ._writer import FrameWriter, TableWriter

__all__ = ["Frame", "FrameError", "FrameReader", "FrameWriter", "Record", "Table", "TableWriter",
           "bson", "names", "__version__"]
