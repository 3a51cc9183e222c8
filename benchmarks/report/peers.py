#!/usr/bin/env python3
"""What people would write in place of the program: json or pandas reads, numpy finds, pandas writes.

usage: peers.py check|show|csv|print FILE

check   the bolts of a results file whose normal force is beyond 30 N
show    the table of every series of a results file, as CSV
csv     reads a table of comma separated values, and nothing else
print   reads the forces of a CalculiX print, and nothing else
"""

import json
import sys

import numpy
import pandas

LIMIT = 30.0
LIMITED = "ClampNormalForce"


def series_table(path):
    """A row for each series: its value of largest magnitude, at which step it is, how many numbers and NaN there are."""
    with open(path, encoding="utf-8") as file:
        document = json.load(file)
    series = [
        (unit["name"], unit["id"], tool["id"], one["quantity"], one["values"])
        for unit in document["units"]
        for tool in unit["tools"]
        for one in tool["series"]
    ]
    values = numpy.array([one[-1] for one in series], dtype=float)
    isnan = numpy.isnan(values)
    step = numpy.where(isnan, 0.0, numpy.abs(values)).argmax(axis=1)
    table = pandas.DataFrame([one[:-1] for one in series], columns=["unit", "unitId", "item", "key"])
    table["value"] = values[numpy.arange(len(series)), step]
    table["step"] = step
    table["count"] = values.shape[1]
    table["nans"] = isnan.sum(axis=1)
    table["limit"] = numpy.where(table["key"] == LIMITED, LIMIT, numpy.nan)
    table["exceeded"] = table["value"].abs() > table["limit"]
    return table


def check(path):
    table = series_table(path)
    for row in table[table["exceeded"]].itertuples():
        print(f"{row.unit}, {row.item}, {row.key}: {row.value:.7g} N, limit {row.limit:g} N")


def show(path):
    table = series_table(path)
    table.insert(0, "file", path)
    table.to_csv(sys.stdout, index=False)


def read_csv(path):
    print(pandas.read_csv(path).shape)


def read_print(path):
    """The forces by set, as rows of time and three components."""
    histories = {}
    with open(path, encoding="utf-8") as file:
        for line in file:
            words = line.split()
            if not words:
                continue
            if words[0] == "forces":
                rows, time = histories.setdefault(words[4], []), float(words[7])
            else:
                rows.append([time, *map(float, words[1:])])
    print({name: numpy.array(rows).shape for name, rows in histories.items()})


if __name__ == "__main__":
    jobs = {"check": check, "show": show, "csv": read_csv, "print": read_print}
    if len(sys.argv) != 3 or sys.argv[1] not in jobs:
        sys.exit(__doc__)
    jobs[sys.argv[1]](sys.argv[2])
