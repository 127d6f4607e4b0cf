"""Records on their way into the store."""

from __future__ import annotations

from datetime import datetime, timezone
from typing import Any

from . import _core


class Record:
    """A unit of device data on its way into the store.

    >>> import dataengine as de
    >>> from datetime import datetime, timezone
    >>> record = de.Record("N:router:edge-r1", "cmd", "show version", b"Version 15.2",
    ...                    time=datetime(2024, 5, 17, tzinfo=timezone.utc))
    >>> record
    <Record cmd 'show version' of edge-r1: 12 bytes>
    >>> record.data_key
    '3df8dd11bd45ada43abdef576303fcc5'
    >>> record.status()
    {'devId': 'edge-r1', 'name': 'show version', 'param': None, 'type': 'cmd'}
    """

    def __init__(self, device: str, type: str, name: str, data: Any, *,
                 time: datetime | None = None, param: Any = None, props: Any = None, flag: int = 0,
                 error_log: str = "") -> None:
        """Makes a record.

        Args:
            device: The GUID of a device, its host name, or "N:type:id" for a node without a GUID.
            type: "config", "cmd", "sysTable", "nctTable", "parser", "pingtrace", "raw" or "none".
            name: The command, or the location of a structured record; "" for a configuration.
            data: The payload: bytes, or a str.
            time: When it was collected, with a time zone; now by default.
            param, props: Parameters and properties, as JSON values.
            flag: The flag word of the caller.
            error_log: The error text.

        Raises:
            ValueError: The type is unknown, a configuration has a name, or a time has no zone.
        """
        self._core = _core.new_record(device, type, name, data,
                                      datetime.now(timezone.utc) if time is None else time,
                                      flag, error_log, param, props)

    @property
    def device(self) -> str:
        """The identifier of the device: its GUID, or the id of the node."""
        return self._core.device()

    @property
    def type(self) -> str:
        """The type of the record."""
        return self._core.type()

    @property
    def name(self) -> str:
        """The command or location."""
        return self._core.name()

    @property
    def time(self) -> datetime:
        """When the data was collected, in UTC, in whole milliseconds."""
        return self._core.time()

    @property
    def meta_key(self) -> str:
        """The key of the record: a checksum of its device, type and name."""
        return self._core.meta_key()

    @property
    def data_key(self) -> str:
        """The key of its content: a checksum of the data."""
        return self._core.data_key()

    def document(self) -> dict[str, Any]:
        """Returns the document that the store receives."""
        return self._core.document()

    def status(self) -> dict[str, Any]:
        """Returns the status document: device, type, name, parameters and properties."""
        return self._core.status()

    def device_document(self) -> dict[str, Any]:
        """Returns the device data document."""
        return self._core.device_document()

    def to_bson(self) -> bytes:
        """Returns `document` as BSON.

        Raises:
            ValueError: A document of the store cannot hold it, above all for its size.
        """
        return self._core.to_bson()

    def __repr__(self) -> str:
        return (f"<Record {self.type} {self.name!r} of {self.device}: {self._core.size()} bytes>")
