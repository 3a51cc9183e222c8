#!/usr/bin/env python3
"""Holds the frames of random results against the CSV that the program writes of them.

The environment says how many files, FORMS_FILES, and the number of the first, FORMS_SEED, as for tests/FormsAgreeTest.py.
"""

import csv
import io
import math
import os
import random
import sys
import unittest

import pandas
import python_testing

sys.path.insert(0, str(python_testing.SOURCE / "tests/support"))

from random_results import RandomResults  # noqa: E402

import result_tables  # noqa: E402

TEXTS = ("file", "unit", "unitId", "family", "group", "subGroup", "item", "key", "column", "valueUnit")


def same(number, other):
    return number == other or (number != number and other != other)


def value_of(row):
    """None where there is no data, NaN where there is no number."""
    count, nans = int(row["count"]), int(row["nans"])
    return float(row["value"]) if count else math.nan if nans else None


class Frames(python_testing.InFolder):
    def rows(self, command, *arguments):
        output = python_testing.program(self.folder, command, *arguments, "--format", "csv", codes=(0, 1)).decode()
        return list(csv.DictReader(io.StringIO(output, newline="")))

    def compare(self, frame, name, numbers):
        """None stands for what is missing."""
        column = frame[name]
        self.assertEqual([None if missing else 0 for missing in column.isna()],
                         [None if number is None else 0 for number in numbers], name)
        for found, number in zip(column, numbers):
            if number is not None:
                self.assertTrue(same(found, number), f"{name}: expected {number}, found {found}")

    def compare_values(self, values, rows):
        self.assertEqual(list(values.columns), list(rows[0]) if rows else list(values.columns))
        self.assertEqual(len(values), len(rows))
        for name in TEXTS:
            self.assertEqual(values[name].tolist(), [row[name] for row in rows])
        for name in ("valid", "exceeded"):
            self.assertEqual(values[name].tolist(), [row[name] == "true" for row in rows])
        for name in ("count", "nans"):
            self.assertEqual(values[name].tolist(), [int(row[name]) for row in rows])
        self.compare(values, "value", [value_of(row) for row in rows])
        for name in ("limit", "time", "step"):
            self.compare(values, name, [float(row[name]) if row[name] else None for row in rows])

    def compare_tables(self, tables, rows):
        """The same numbers, section by section and row by row; sections without values have no rows in CSV."""
        numbers = [value_of(row) for row in rows]
        found = [number for table in tables for row in table.itertuples(index=False) for number in row]
        self.assertEqual(len(found), len(numbers))
        for one, number in zip(found, numbers):
            self.assertTrue(number is None and one is pandas.NA or number is not None and same(one, number))
        items = [item for table in tables for item in table.index.get_level_values("item") for _ in table.columns]
        self.assertEqual(items, [row["item"] for row in rows])

    def compare_file(self, teaching):
        selection = ["results.json", "--limits", "limits.json", *(["--teaching"] if teaching else [])]
        results = result_tables.read_results("results.json", limits="limits.json")
        rows = self.rows("show", *selection)
        self.compare_values(results.values(teaching=teaching), rows)
        self.compare_tables(results.tables(teaching=teaching), rows)
        rows = self.rows("series", *selection)
        series = results.series(teaching=teaching)
        numbers = [float(row["value"]) for row in rows]
        found = [value for one in series for value in one["value"]]
        self.assertEqual(len(found), len(numbers))
        self.assertTrue(all(same(one, other) for one, other in zip(found, numbers)))

    def test_are_what_the_program_writes_as_csv(self):
        first, count = int(os.environ.get("FORMS_SEED", "1")), int(os.environ.get("FORMS_FILES", "12"))
        os.chdir(self.folder)
        for seed in range(first, first + count):
            with self.subTest(FORMS_SEED=seed):
                RandomResults(random.Random(seed)).write(self.folder)
                self.compare_file(teaching=seed % 2 == 1)


if __name__ == "__main__":
    unittest.main()
