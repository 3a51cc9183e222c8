"""Results with their limits: reading them, and what their tables say."""

from __future__ import annotations

import warnings
from types import MappingProxyType
from typing import TYPE_CHECKING, Any, List, Mapping, NamedTuple, Optional, Tuple, Union

from . import _result_tables
from ._arguments import Names, PathLike, names_of, path_of, selection_of, text_of
from ._frames import frame, section_frame, series_frame

if TYPE_CHECKING:
    import numpy
    import pandas

    Array = numpy.ndarray[Any, numpy.dtype[numpy.float64]]

LimitKey = Union[str, Tuple[str, str]]
"""What has a limit: a kind of limit by its name, or a column that has no kind by its family and key."""


class Unit(NamedTuple):
    """A simulation unit of some results."""

    id: str
    """The UUID in lower case."""
    name: str
    """The name, which several units may have."""


class Tool(NamedTuple):
    """A tool of a unit with the series that the solver stored for it.

    The arrays are the numbers as they were read, not a copy. They cannot be written to and stay when the results are gone.
    Plain values have the shape (n,), pairs of a value and its time (n, 2).
    """

    unit: str
    """The name of its unit."""
    unitId: str
    """The id of its unit."""
    id: str
    """The identifier, which is unique in the unit."""
    kind: str
    """`pilot`, `clamp`, `tool`, `spotWeld`, `joiningTong`, `suctionZone` or `bolt`."""
    series: Mapping[str, "Array"]
    """By quantity; of several series of a quantity the last, which is the one that tables show."""
    tangentialForce: Optional["Array"]
    """Of a spot weld, where it is stored."""


class Results:
    """The units of a results file with the limits that their values are compared with.

    Made by `read_results`, `read_print`, `sample` and `Draft.results`. Results never change, but for their limits. They may be
    used on several threads at once; Python's lock is released while they are at work.

    Every `units` is an id or a name, or several; every `families` likewise; None stands for all. `teaching` adds the section of
    teaching offsets to clamps and bolts. In frames a value is missing (`<NA>`) where there is no data, and NaN where the data
    holds no number.
    """

    def __init__(self, results: _result_tables.Results) -> None:
        self._results = results

    def __repr__(self) -> str:
        units = self.units
        return f"<Results {self.name!r}: {len(units)} unit{'' if len(units) == 1 else 's'}>"

    @property
    def name(self) -> str:
        """What frames and messages call the results: the path as it was given."""
        return self._results.name

    @property
    def units(self) -> List[Unit]:
        """The units in the order of the file."""
        return [Unit(*unit) for unit in self._results.units()]

    def tables(self, units: Names = None, families: Names = None, teaching: bool = False) -> List[pandas.DataFrame]:
        """A frame for each section of each table, in the order of `result-tables show`.

        Rows are elements, by name (within their sub-groups, where these have names); columns are quantities, by key. `attrs` says
        `file`, `unit`, `unitId`, `family`, `title`, `group` (the section), whether it is `teaching`, and by key the headings
        (`columns`), the units of measurement (`units`) and those limits that there are (`limits`); `invalid` lists the elements
        whose values cannot be trusted.
        """
        return [section_frame(section) for section in self._results.sections(selection_of(units, families, teaching))]

    def values(self, units: Names = None, families: Names = None, teaching: bool = False) -> pandas.DataFrame:
        """A row for each value, with the columns of `result-tables show --format csv`."""
        return frame(self._results.values(selection_of(units, families, teaching)), {})

    def findings(self, units: Names = None, families: Names = None, teaching: bool = False) -> pandas.DataFrame:
        """What `result-tables check` finds: values beyond their limits, NaN beside values that have one, failed joins.

        `attrs` says how many values were `compared` with a limit and how many that have one are `withoutData`. No findings among
        0 compared values say nothing.
        """
        found, compared, without_data = self._results.findings(selection_of(units, families, teaching))
        return frame(found, {"compared": compared, "withoutData": without_data})

    def differences(
        self,
        after: Results,
        units: Names = None,
        families: Names = None,
        teaching: bool = False,
        abs: float = 0.0,
        rel: float = 0.0,
    ) -> pandas.DataFrame:
        """What differs between these results and those `after` them, as `result-tables diff` says it.

        Numbers are the same up to `abs` + `rel` * |before|. `attrs` says how many values were `compared`.
        """
        if not isinstance(after, Results):
            raise TypeError(f"after: expected Results, found {type(after).__name__}")
        selection = selection_of(units, families, teaching)
        found, compared = self._results.differences(after._results, selection, float(abs), float(rel))
        return frame(found, {"compared": compared})

    def series(
        self,
        units: Names = None,
        families: Names = None,
        teaching: bool = False,
        items: Names = None,
        keys: Names = None,
    ) -> List[pandas.DataFrame]:
        """A frame for each series that a value of the tables comes from, for the elements and columns that are named.

        The index is the step; the columns are `value`, `time` where the series holds times, and of line joins `minimum` and
        `maximum`. `attrs` says what the series belongs to, its `limit`, and `step` and `time` of the value that the table has.
        """
        selection = selection_of(units, families, teaching)
        found = self._results.series(selection, names_of("items", items), names_of("keys", keys))
        return [series_frame(one) for one in found]

    def tools(self, units: Names = None) -> List[Tool]:
        """The tools with the series that the solver stored, as arrays without a copy; by unit and kind, in the file's order."""
        found = self._results.tools(names_of("units", units))
        return [
            Tool(unit, unit_id, id, kind, MappingProxyType(series), force)
            for unit, unit_id, id, kind, series, force in found
        ]

    @property
    def limits(self) -> Mapping[str, Mapping[LimitKey, float]]:
        """By unit id the limits by kind, and by `(family, key)` those of columns without a kind. A copy; see `set_limits`."""
        return MappingProxyType(
            {
                unit: MappingProxyType({**dict(kinds), **{(family, key): value for family, key, value in columns}})
                for unit, kinds, columns in self._results.limits()
            }
        )

    def set_limits(self, limits: Mapping[LimitKey, float], units: Names = None) -> None:
        """Sets limits of the units by kind, `{"BoltNormalForce": 45.5}`, or by family and key,
        `{("Clamps", "ClampClosingForce"): 900}`. All of them or, with an `Error`, none."""
        kinds: List[Tuple[str, float]] = []
        columns: List[Tuple[str, str, float]] = []
        for key, value in limits.items():
            if isinstance(key, str):
                kinds.append((key, float(value)))
            elif isinstance(key, tuple) and len(key) == 2:
                columns.append((text_of("limits", key[0]), text_of("limits", key[1]), float(value)))
            else:
                raise TypeError(f"limits: expected a kind or a family and a key, found {key!r}")
        self._results.set_limits(kinds, columns, names_of("units", units))

    def reset_limits(self, units: Names = None) -> None:
        """Puts the limits of the units back to their defaults."""
        self._results.reset_limits(names_of("units", units))

    def read_limits(self, path: PathLike) -> None:
        """Takes the limits of a limits document or a text of limits in place of the present ones."""
        self._results.read_limits(path_of("path", path))

    def save_limits(self, path: PathLike) -> None:
        """Writes the limits as a limits document, whole or not at all and under its lock. Documents hold no limits of columns."""
        self._results.save_limits(path_of("path", path))

    def limits_text(self, units: Names = None) -> str:
        """The limits as a text of limits, which people review and `read_limits` and `--limits` take."""
        return self._results.limits_text(names_of("units", units))


def read_results(
    source: Union[PathLike, bytes, bytearray, memoryview], *, name: str = "memory", limits: Optional[PathLike] = None
) -> Results:
    """Reads a results file.

    `source` is a path, or the bytes of a file, which then goes by `name`. `limits` is a limits document or a text of limits; when
    it is not named it is the document beside the file, if there is one.
    """
    if isinstance(source, (bytes, bytearray, memoryview)):
        read = _result_tables.read_content(text_of("name", name), bytes(source), path_of("limits", limits))
    else:
        read = _result_tables.read_path(path_of("source", source), path_of("limits", limits))
    return Results(read)


def read_print(
    path: PathLike,
    map: PathLike,
    *,
    format: Optional[str] = None,
    decimal_comma: bool = False,
    limits: Optional[PathLike] = None,
) -> Results:
    """Reads what a solver printed, a CalculiX `.dat` or CSV, with a map that says what its histories feed.

    `format` is `calculix` or `csv`, where the name does not say it; `decimal_comma` is for CSV. What the print has that is passed
    over is a warning.
    """
    chosen = "" if format is None else text_of("format", format)
    read, notes = _result_tables.read_print(
        path_of("path", path), path_of("map", map), chosen, bool(decimal_comma), path_of("limits", limits)
    )
    for note in notes:
        warnings.warn(note, stacklevel=2)
    return Results(read)


def sample() -> Results:
    """The sample that is built into the program: a clamped panel and a door line."""
    return Results(_result_tables.read_sample())
