"""Making results of a solver's arrays."""

from __future__ import annotations

import uuid
from typing import TYPE_CHECKING, Any, Iterable, Mapping, NamedTuple, Optional, Tuple, Union

from . import _result_tables
from ._arguments import PathLike, names_of, path_of, text_of
from ._results import Results

if TYPE_CHECKING:
    import numpy.typing

    Numbers = numpy.typing.ArrayLike

Identifier = Union[str, uuid.UUID]
Range = Optional[Tuple[Optional[float], Optional[float]]]


class SuctionZone(NamedTuple):
    """A suction zone in a step."""

    guid: Identifier
    """Unique among the step's suction zones, whose order it is."""
    name: str
    """What tables call it."""
    active: bool
    """Whether it holds the part in the step."""


class JoiningTong(NamedTuple):
    """A joining tong in a step."""

    id: str
    """The identifier of the tool; unique among the step's tongs."""
    name: str
    """What tables call it."""
    state: int
    """How far the join has come, 0 to 4294967295; 5, 9 and 10: it failed."""


class Join(NamedTuple):
    """A spot weld in a step."""

    guid: Identifier
    """Unique among the step's joins, whose order it is."""
    id: str
    """The identifier of the tool."""
    name: str
    """What tables call it."""
    state: int
    """As of a joining tong."""


class LineJoin(NamedTuple):
    """A weld seam or an adhesive bead in a step, with the ranges of its results."""

    guid: Identifier
    """Unique among the step's line joins, whose order it is."""
    id: str
    """The identifier of the join."""
    name: str
    """What tables call it."""
    state: int
    """As of a joining tong."""
    simulationUnitJoin: Identifier
    """Where it was defined; see `DraftUnit.define_join`."""
    skins: Mapping[str, Range]
    """Minimum and maximum by result variable, `LineJoinGap` for example; either may be None, and None for both is a variable that
    holds something other than numbers."""


def _array(numbers: Numbers) -> Any:
    import numpy

    return numpy.asarray(numbers)


def _identifier(what: str, identifier: Identifier) -> str:
    return str(identifier) if isinstance(identifier, uuid.UUID) else text_of(what, identifier)


def _state(state: int) -> int:
    if isinstance(state, bool) or not isinstance(state, int) or not 0 <= state <= 0xFFFFFFFF:
        raise TypeError(f"state: expected a whole number from 0 to 4294967295, found {state!r}")
    return state


class DraftUnit:
    """A unit of results that are being made; see `Draft.unit`. What is refused leaves it as it was."""

    def __init__(self, unit: _result_tables.UnitDraft) -> None:
        self._unit = unit

    def tool(
        self,
        id: str,
        kind: str,
        series: Mapping[str, Numbers],
        tangential_force: Optional[Numbers] = None,
    ) -> None:
        """Adds a tool with the series that a solver stored for it, by quantity.

        A series is an array of the shape (n,), or of pairs of a value and its time with the shape (n, 2). The numbers are copied.
        `kind` is `pilot`, `clamp`, `tool`, `spotWeld`, `joiningTong`, `suctionZone` or `bolt`.
        """
        arrays = [(text_of("series", quantity), _array(numbers)) for quantity, numbers in series.items()]
        force = None if tangential_force is None else _array(tangential_force)
        self._unit.add_tool(text_of("id", id), text_of("kind", kind), arrays, force)

    def define_join(self, id: Identifier) -> None:
        """Says that the line joins with this `simulationUnitJoin` are defined in this unit."""
        self._unit.define_join(_identifier("id", id))

    def group(self, family: str, name: str, tools: Iterable[str]) -> None:
        """Adds a group of tools to the table of a family: `ClampingTools`, `Rollers`, `Steels` or `HemmingBed`."""
        self._unit.group(text_of("family", family), text_of("name", name), names_of("tools", tools))

    def step(
        self,
        suction_zones: Iterable[SuctionZone] = (),
        joining_tongs: Iterable[JoiningTong] = (),
        joins: Iterable[Join] = (),
        line_joins: Iterable[LineJoin] = (),
    ) -> None:
        """Adds the next step, which the records say of what it holds."""
        step = _result_tables.StepDraft()
        for guid, name, active in suction_zones:
            step.add_suction_zone(_identifier("guid", guid), text_of("name", name), bool(active))
        for id, name, state in joining_tongs:
            step.add_joining_tong(text_of("id", id), text_of("name", name), _state(state))
        for guid, id, name, state in joins:
            step.add_join(_identifier("guid", guid), text_of("id", id), text_of("name", name), _state(state))
        for guid, id, name, state, defined, skins in line_joins:
            step.add_line_join(
                _identifier("guid", guid),
                text_of("id", id),
                text_of("name", name),
                _state(state),
                _identifier("simulationUnitJoin", defined),
                [(text_of("skins", skin), values) for skin, values in skins.items()],
            )
        self._unit.add_step(step)

    def step_without_data(self) -> None:
        """Adds the next step, of which nothing is known."""
        self._unit.add_step(None)

    def show_steps(self, first: int, last: int) -> None:
        """Says which steps are visible, both included: the joining families and suction zones have their elements from them."""
        for what, step in (("first", first), ("last", last)):
            if isinstance(step, bool) or not isinstance(step, int) or not 0 <= step <= 0xFFFFFFFF:
                raise TypeError(f"{what}: expected the number of a step, found {step!r}")
        self._unit.show((first, last))


class Draft:
    """Results that are being made: a solver hands over its arrays, and has the tables at once or writes a results file."""

    def __init__(self) -> None:
        self._draft = _result_tables.ResultsDraft()

    def unit(self, id: Identifier, name: str) -> DraftUnit:
        """Adds a unit. Limits find it by its id, a UUID, which is best the same in every run."""
        return DraftUnit(self._draft.add_unit(_identifier("id", id), text_of("name", name)))

    def results(self, name: str = "memory") -> Results:
        """The results as they are now, with the default limits. Later changes of the draft do not reach them."""
        return Results(self._draft.results(text_of("name", name)))

    def write(self, path: PathLike) -> None:
        """Writes a results file, whole or not at all."""
        self._draft.write(path_of("path", path))
