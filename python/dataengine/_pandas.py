"""Columns as Series of pandas."""

from __future__ import annotations

from typing import Any

import numpy as np
import pandas  # type: ignore[import]
from pandas.api.types import infer_dtype  # type: ignore[import]

Array = np.ndarray[Any, Any]
_masked: Any = np.ma  # which has no types

_NULLABLE = {"i": pandas.arrays.IntegerArray, "u": pandas.arrays.IntegerArray,
             "b": pandas.arrays.BooleanArray}


def to_series(column: Array, rows: int) -> Any:
    """Returns a Series of the dtype that fits. A shorter column ends in missing values."""
    values, mask = _masked.getdata(column), _masked.getmaskarray(column)
    kind = values.dtype.kind
    if missing := rows - len(values):
        values = np.append(values, np.full(missing, None if kind == "O" else 0, values.dtype))
        mask = np.append(mask, np.ones(missing, dtype=bool))
    if kind == "O":
        return _from_objects(values, mask)
    if kind == "b" or (kind in "iu" and mask.any()):
        return pandas.Series(_NULLABLE[kind](values, mask.copy()), copy=False)
    if kind == "f" and mask.any():
        values = np.where(mask, np.nan, values)
    return pandas.Series(values, copy=False)


def _from_objects(values: Array, mask: Array) -> Any:
    """Returns strings as "string", and integers mixed with floats as float64 if that is exact."""
    if mask.any():
        values = values.copy()
        values[mask] = None
    if not mask.all():
        try:
            return pandas.Series(pandas.arrays.StringArray(values), copy=False)
        except ValueError:
            pass  # not only strings
    if infer_dtype(values, skipna=True) == "mixed-integer-float":
        floats = np.where(mask, np.nan, values).astype(float)
        if all(exact == given for exact, given in zip(floats[~mask].tolist(), values[~mask])):
            return pandas.Series(floats, copy=False)
    return pandas.Series(values, copy=False)
