#!/usr/bin/env python3
"""A data frame of the extremes of a results file, some times in one process as in a notebook, so that importing counts little.

usage: frames.py module|pandas|numpy FILE
"""

import sys

TURNS = 5


def with_module(path):
    import result_tables

    return lambda: result_tables.read_results(path).values()


def with_pandas(path):
    from peers import series_frame

    return lambda: series_frame(path)


def with_numpy(path):
    from peers import series_table

    return lambda: series_table(path)


if __name__ == "__main__":
    ways = {"module": with_module, "pandas": with_pandas, "numpy": with_numpy}
    if len(sys.argv) != 3 or sys.argv[1] not in ways:
        sys.exit(__doc__)
    make = ways[sys.argv[1]](sys.argv[2])
    print([make().shape for _ in range(TURNS)])
