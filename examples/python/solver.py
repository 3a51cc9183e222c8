#!/usr/bin/python3
"""A solver that hands its arrays over: the clamps of a station close one after the other, as damped springs.

usage: solver.py RESULTS [SPEED]

Shows the extremes at once, without a file between, and writes a results file.
"""

import sys

import numpy
import numpy.typing
import result_tables

UNIT = "5a0e0bb6-6c0b-4d5e-9a86-9c1f0a1c7a10"  # the same in every run, so that limits and studies find the unit again
STIFFNESS = (410.0, 530.0, 470.0)  # of the clamps, in N/mm
TIMES = numpy.linspace(0.0, 1.0, 101)


def closing_force(stiffness: float, begin: float, speed: float) -> numpy.typing.NDArray[numpy.float64]:
    """A clamp that meets the sheet at `begin` with `speed` and rings."""
    after = numpy.maximum(TIMES - begin, 0.0)
    rest = 1.0 - numpy.exp(-8.0 * after) * numpy.cos(40.0 * after)
    return numpy.asarray(-stiffness * (1.0 + 0.25 * speed) * rest)


def simulate(speed: float) -> result_tables.Draft:
    """A station with its clamps, and pairs of force and time for each."""
    draft = result_tables.Draft()
    station = draft.unit(UNIT, "OP10 Clamping")
    for number, stiffness in enumerate(STIFFNESS):
        force = closing_force(stiffness, 0.2 * number, speed)
        pairs = numpy.column_stack([force, TIMES])
        station.tool(f"Clamp {number + 1}", "clamp", {"ClampClosingForce": pairs})
    return draft


if __name__ == "__main__":
    if len(sys.argv) not in (2, 3):
        sys.exit(__doc__)
    draft = simulate(float(sys.argv[2]) if len(sys.argv) == 3 else 1.0)
    print(draft.results().tables(families="Clamps")[0][["ClampClosingForce"]])
    draft.write(sys.argv[1])
