"""What users pass, as the extension takes it. Something of a wrong type is a TypeError of one line."""

from __future__ import annotations

import os
from typing import Iterable, List, Union

from . import _result_tables

PathLike = Union[str, "os.PathLike[str]"]
Names = Union[str, Iterable[str], None]


def path_of(what: str, path: Union[PathLike, None]) -> bytes:
    """The name of a file; none is empty. What stands for standard input elsewhere is a file here."""
    if path is None:
        return b""
    if not isinstance(path, (str, os.PathLike)):
        raise TypeError(f"{what}: expected a path, found {type(path).__name__}")
    name = os.fsencode(path)
    return b"./-" if name == b"-" else name


def names_of(what: str, names: Names) -> List[str]:
    """A name or several; None is all, which is no name at all."""
    if names is None:
        return []
    if isinstance(names, str):
        return [names]
    if not isinstance(names, Iterable):
        raise TypeError(f"{what}: expected a name or several, found {type(names).__name__}")
    listed = list(names)
    for name in listed:
        if not isinstance(name, str):
            raise TypeError(f"{what}: expected names, found {type(name).__name__}")
    return listed


def text_of(what: str, text: str) -> str:
    """A text and nothing else."""
    if not isinstance(text, str):
        raise TypeError(f"{what}: expected a text, found {type(text).__name__}")
    return text


def selection_of(units: Names, families: Names, teaching: bool) -> _result_tables.Selection:
    """What of the results is meant."""
    return _result_tables.Selection(names_of("units", units), names_of("families", families), bool(teaching))
