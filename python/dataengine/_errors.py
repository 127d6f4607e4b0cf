"""The error of frames that cannot be read."""

from __future__ import annotations

import re

_PLACE = re.compile(r"(?:(?P<item>.*): )?byte (?P<byte>\d+): ", re.DOTALL)


class FrameError(ValueError):
    """A frame is damaged, of another version, or does not fit its offsets.

    >>> import dataengine as de
    >>> try:
    ...     de.FrameReader().open(b"")
    ... except de.FrameError as error:
    ...     error.byte
    0

    Attributes:
        item: The name of the item, "table.column" for a column, or None.
        byte: The position of the error, counted from the start of the frame, or None.
    """

    item: str | None
    byte: int | None

    def __init__(self, message: str) -> None:
        super().__init__(message)
        place = _PLACE.match(message)
        self.item = place["item"] if place else None
        self.byte = int(place["byte"]) if place else None
