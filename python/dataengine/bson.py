"""Documents of the store as BSON.

    >>> from dataengine import bson
    >>> bson.decode(bson.encode({"name": "edge-r1", "data": b"\\x00"}))
    {'data': b'\\x00', 'name': 'edge-r1'}
"""

from __future__ import annotations

from typing import Any

from . import _core

__all__ = ["decode", "encode"]


def encode(document: dict[str, Any]) -> bytes:
    """Returns a dict as one BSON document: bytes as binary, aware datetimes as times.

    Members are written in the order of their keys.

    Raises:
        ValueError: The document nests too deep, is too large, or holds a string that is not UTF-8
            or an integer above 2^63-1.
    """
    return _core.bson_encode(document)


def decode(data: Any) -> dict[str, Any]:
    """Returns the dict of the one BSON document in a bytes-like object.

    Raises:
        ValueError: The bytes are not exactly one valid document.
        OverflowError: A time is outside the years 1 to 9999.
    """
    return _core.bson_decode(data)
