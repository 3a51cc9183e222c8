#!/usr/bin/python3
"""A gate in a pipeline: no run may go on that is beyond its limits, or has become worse than the one before.

usage: gate.py BEFORE AFTER [LIMITS]

Prints a line for each reason and exits with 1 where there is one, with 2 where something could not be read.
"""

import sys
from typing import Iterator, Optional

import result_tables

TOLERANCE = 0.05  # more than that part of a value is a change


def reasons(before: result_tables.Results, after: result_tables.Results) -> Iterator[str]:
    """Why the run after does not pass."""
    findings = after.findings()
    if findings.attrs["compared"] == 0:
        yield "nothing was compared with a limit"
    for found in findings.itertuples():
        yield f"{found.unit}, {found.item}: {found.kind} {found.key or ''}".rstrip()
    changes = before.differences(after, rel=TOLERANCE)
    for change in changes[changes["kind"] == "changed"].itertuples():
        yield f"{change.unit}, {change.item}: {change.key} was {change.before:.6g}, is {change.after:.6g}"
    for unit, items in changes[changes["kind"] == "removed"].groupby("unit")["item"]:
        yield f"{unit}: gone: {', '.join(items.unique())}"


def main(before: str, after: str, limits: Optional[str] = None) -> int:
    """The exit code."""
    try:
        found = list(reasons(*(result_tables.read_results(path, limits=limits) for path in (before, after))))
    except result_tables.Error as error:
        print(error, file=sys.stderr)
        return 2
    for reason in found:
        print(reason)
    return 1 if found else 0


if __name__ == "__main__":
    if len(sys.argv) not in (3, 4):
        sys.exit(__doc__)
    sys.exit(main(*sys.argv[1:]))
