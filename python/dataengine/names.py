"""The vocabulary of the store: collections, fields, operators and fixed values.

    >>> from dataengine import names
    >>> names.store.TopoLink.localIntfId
    'localIntfId'
    >>> names.data_engine.MetaRecord.devId
    'devId'
    >>> names.variable_mapping.gvPath
    'gvPath'
    >>> [name.path for name in names.find("localintfn")]
    ['store.TopoLink.localIntfName']

An identifier that is a keyword of Python ends in an underscore: `names.store.Operator.in_`.
"""

from __future__ import annotations

import keyword
from typing import NamedTuple

from . import _core

__all__ = ["Block", "Group", "Name", "data_engine", "find", "store", "variable_mapping"]


class Name(NamedTuple):
    """A name of the vocabulary: where it is, and its text."""

    path: str
    text: str


class Block:
    """The names of one record: each attribute is a text."""

    def __init__(self, path: str) -> None:
        self._path = path

    def __getattr__(self, name: str) -> str:
        raise AttributeError(f"{self._path} has no name {name!r}")

    def __repr__(self) -> str:
        return f"<names of {self._path}: {len(vars(self)) - 1}>"


class Group:
    """A group of the vocabulary: each attribute is the block of one record."""

    def __init__(self, path: str) -> None:
        self._path = path

    def __getattr__(self, name: str) -> Block:
        raise AttributeError(f"{self._path} has no block {name!r}")

    def __repr__(self) -> str:
        return f"<names of {self._path}: {len(vars(self)) - 1} blocks>"


variable_mapping = Block("variable_mapping")
data_engine = Group("data_engine")
store = Group("store")


def _load() -> list[Name]:
    """Fills the groups, and returns all names in the order of their definition."""
    found = []
    groups = {"data_engine": data_engine, "store": store}
    for group, block, identifier, text in _core.names():
        if keyword.iskeyword(identifier):
            identifier += "_"
        path = ".".join(part for part in (group, block, identifier) if part)
        found.append(Name(path, text))
        if not block:
            setattr(variable_mapping, identifier, text)
            continue
        if block not in vars(groups[group]):
            setattr(groups[group], block, Block(f"{group}.{block}"))
        setattr(getattr(groups[group], block), identifier, text)
    return found


_ALL = _load()


def find(text: str) -> list[Name]:
    """Returns the names whose path or text contains `text`, in any case."""
    wanted = text.casefold()
    return [name for name in _ALL
            if wanted in name.path.casefold() or wanted in name.text.casefold()]
