#!/usr/bin/env python3
"""What people would write in place of the program: json or pandas reads, numpy finds, pandas writes.

usage: peers.py check|show|workbook|csv|print FILE

check   the bolts of a results file whose normal force is beyond 30 N
show    the table of every series of a results file, as CSV
workbook  the table of the bolts of a results file as a workbook, cell by cell as the program writes it
csv     reads a table of comma separated values, and nothing else
print   reads the forces of a CalculiX print, and nothing else
"""

import json
import sys
import tempfile

import numpy
import pandas
import xlsxwriter

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


def series_frame(path):
    """The same by pandas alone."""
    with open(path, encoding="utf-8") as file:
        document = json.load(file)
    places, values = [], []
    for unit in document["units"]:
        for tool in unit["tools"]:
            for one in tool["series"]:
                places.append((unit["name"], unit["id"], tool["id"], one["quantity"]))
                values.append(one["values"])
    series = pandas.DataFrame(values, dtype=float)
    table = pandas.DataFrame(places, columns=["unit", "unitId", "item", "key"])
    table["step"] = series.abs().idxmax(axis="columns")
    table["value"] = [series.iat[row, column] for row, column in enumerate(table["step"])]
    table["count"] = series.count(axis="columns")
    table["nans"] = series.isna().sum(axis="columns")
    table["limit"] = table["key"].map({LIMITED: LIMIT})
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


def write_rows(sheet, unit, section, values, percent):
    """Rows of names, the limited value with its limit and utilisation, and the others; of the second section there is no data."""
    for row, (name, numbers) in enumerate(values, start=1 if section == "Forces" else 1 + len(values)):
        sheet.write_string(row, 0, unit)
        sheet.write_string(row, 1, section)
        sheet.write_string(row, 3, name)
        sheet.write_boolean(row, 4, True)
        if section != "Forces":
            sheet.write_string(row, 11, "\u2013")
            continue
        sheet.write_number(row, 5, numbers[0])
        sheet.write_formula(row, 6, "='Limits'!$G$2", None, LIMIT)
        formula = f'=IF(E{row + 1},IFERROR(ABS(F{row + 1})/ABS(G{row + 1}),""),"")'
        sheet.write_formula(row, 7, formula, percent, abs(numbers[0]) / LIMIT)
        for column, number in enumerate(numbers[1:], start=8):
            sheet.write_number(row, column, number)


def write_workbook(path):
    with open(path, encoding="utf-8") as file:
        (unit,) = json.load(file)["units"]
    values = [(tool["id"], [max(one["values"], key=abs) for one in tool["series"]]) for tool in unit["tools"]]
    with tempfile.TemporaryFile() as output, xlsxwriter.Workbook(output, {"constant_memory": True}) as book:
        percent = book.add_format({"num_format": "0.0%"})
        sheet = book.add_worksheet("Bolts")
        book.add_worksheet("Limits").write_number(1, 6, LIMIT)
        for section in ("Forces", "Distances"):
            write_rows(sheet, unit["name"], section, values, percent)


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
    jobs = {"check": check, "show": show, "workbook": write_workbook, "csv": read_csv, "print": read_print}
    if len(sys.argv) != 3 or sys.argv[1] not in jobs:
        sys.exit(__doc__)
    jobs[sys.argv[1]](sys.argv[2])
