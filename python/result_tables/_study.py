"""Studies: the extremes of many runs in a database."""

from __future__ import annotations

from types import TracebackType
from typing import TYPE_CHECKING, List, Mapping, Optional, Type

from . import _result_tables
from ._arguments import Names, PathLike, names_of, path_of, selection_of, text_of
from ._frames import frame, section_frame

if TYPE_CHECKING:
    import pandas


class Study:
    """The extremes of many runs with their limits and verdicts, in a file or at `postgresql://…`.

    With `create` a study that is not there is made; without, it is an `Error`. Closes at the end of a `with` block. Any number of
    processes use a study at the same time; threads that share an object wait for each other.
    """

    def __init__(self, name: PathLike, create: bool = False) -> None:
        self._study = _result_tables.Study(path_of("name", name), bool(create))

    def __enter__(self) -> Study:
        return self

    def __exit__(
        self, kind: Optional[Type[BaseException]], error: Optional[BaseException], trace: Optional[TracebackType]
    ) -> None:
        self.close()

    def __repr__(self) -> str:
        return f"<Study {self.name!r}>"

    @property
    def name(self) -> str:
        """The file or the address, as it was given."""
        return self._study.name

    def close(self) -> None:
        """Gives the database up; the study is of no use afterwards."""
        self._study.close()

    def add(
        self,
        path: PathLike,
        run: Optional[str] = None,
        labels: Optional[Mapping[str, str]] = None,
        units: Names = None,
        families: Names = None,
        teaching: bool = False,
        limits: Optional[PathLike] = None,
    ) -> str:
        """Adds the tables of a results file as a run, which is named after the file without its suffix unless `run` says
        otherwise.

        Returns `added`, `replaced` (the run had other content), `labels` (only these have changed) or `unchanged`.
        """
        given = {text_of("labels", key): text_of("labels", value) for key, value in (labels or {}).items()}
        name = "" if run is None else text_of("run", run)
        selection = selection_of(units, families, teaching)
        return self._study.add(path_of("path", path), name, given, selection, path_of("limits", limits))

    def remove(self, runs: Names) -> None:
        """Removes runs by name: all of them or, with an `Error`, none."""
        self._study.remove(names_of("runs", runs))

    def runs(self) -> pandas.DataFrame:
        """A row for each run, in the order of adding, with its counts and, as `label/NAME`, its labels."""
        return frame(self._study.runs(), {})

    def worst(
        self, top: int = 20, units: Names = None, families: Names = None, teaching: bool = False
    ) -> pandas.DataFrame:
        """The values of all runs that take the most of their limits."""
        if not isinstance(top, int) or top < 1:
            raise TypeError(f"top: expected a number from 1, found {top!r}")
        return frame(self._study.worst(selection_of(units, families, teaching), top), {})

    def trend(self, unit: str, family: str, item: str, key: str, by: Optional[str] = None) -> pandas.DataFrame:
        """A value through the runs: in the order of adding, or by the number that they have under the label `by`.

        `attrs` says how many runs are `leftOut`, as they have no number there.
        """
        found, left_out = self._study.trend(
            text_of("unit", unit),
            text_of("family", family),
            text_of("item", item),
            text_of("key", key),
            "" if by is None else text_of("by", by),
        )
        return frame(found, {"leftOut": left_out})

    def values(
        self, runs: Names = None, units: Names = None, families: Names = None, teaching: bool = False
    ) -> pandas.DataFrame:
        """A row for each value of each run, with the columns of `result-tables study export --long`."""
        chosen = list(self._study.runs()["run"]) if runs is None else names_of("runs", runs)
        return frame(self._study.values(chosen, selection_of(units, families, teaching)), {})

    def tables(
        self, run: str, units: Names = None, families: Names = None, teaching: bool = False
    ) -> List[pandas.DataFrame]:
        """The tables of a run as they were when it was added, as `Results.tables` gives them."""
        sections = self._study.sections(text_of("run", run), selection_of(units, families, teaching))
        return [section_frame(section) for section in sections]

    def differences(
        self,
        before: str,
        after: str,
        units: Names = None,
        families: Names = None,
        teaching: bool = False,
        abs: float = 0.0,
        rel: float = 0.0,
    ) -> pandas.DataFrame:
        """What differs between two runs, as `Results.differences` gives it."""
        names = text_of("before", before), text_of("after", after)
        found, compared = self._study.differences(*names, selection_of(units, families, teaching), float(abs), float(rel))
        return frame(found, {"compared": compared})
