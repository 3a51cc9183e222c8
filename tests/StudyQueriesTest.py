#!/usr/bin/env python3
"""Every query of docs/study-database.md answers, and answers the same in a file and on a server; its picture shows the tables.

usage: KESTREL_PROGRAM=PROGRAM tests/StudyQueriesTest.py

Where the environment names a PostgreSQL server, the queries are asked there, too.
"""

import contextlib
import csv
import io
import json
import os
import pathlib
import re
import sqlite3
import subprocess
import sys
import unittest
import xml.etree.ElementTree

sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent / "support"))

from study_testing import StudyTest, output_of  # noqa: E402

ROOT = pathlib.Path(__file__).resolve().parent.parent
PAGE = (ROOT / "docs" / "study-database.md").read_text()
QUERIES = re.findall(r"```sql\n(.*?)```", PAGE, re.S)
PICTURE = ROOT / "docs" / "images" / "study-schema.svg"


def number_or_text(field):
    """A field as both databases mean it: psql writes numbers as texts."""
    if field is None or field == "":
        return None
    try:
        return float(field)
    except ValueError:
        return field


class StudyQueriesTest(StudyTest):
    def setUp(self):
        super().setUp()
        panel = ROOT / "examples" / "clamped_panel" / "panel.results.json"
        results = json.loads(panel.read_text())
        for tool in results["units"][0]["tools"]:
            for series in tool.get("series", []):
                if "pairs" in series:
                    series["pairs"] = [[value if value is None else 1.25 * value, time] for value, time in series["pairs"]]
                    series["pairs"][0][0] = None
        (pathlib.Path(self.folder) / "thicker.json").write_text(json.dumps(results))
        self.runs = [
            (panel, "panel", "--label", "thickness=0.8"),
            (panel, "panel again", "--label", "thickness=0.8"),
            ("thicker.json", "thicker", "--label", "thickness=1e0"),
            (ROOT / "examples" / "door_line" / "door_line.results.json", "door line"),
        ]

    def add_runs(self, study):
        for file, name, *labels in self.runs:
            output_of(self.folder, "study", "add", study, file, "--run", name, *labels)

    def answers_of_file(self):
        self.add_runs("study.db")
        with contextlib.closing(sqlite3.connect(pathlib.Path(self.folder) / "study.db")) as connection:
            return [[tuple(map(number_or_text, row)) for row in connection.execute(query)] for query in QUERIES]

    def test_answer(self):
        self.assertGreaterEqual(len(QUERIES), 10)
        answers = self.answers_of_file()
        for query, rows in zip(QUERIES, answers):
            self.assertTrue(rows, query)
        self.assertEqual([row[0] for row in answers[1]][0], "door line")
        self.assertEqual([row[0] for row in answers[2]], ["panel", "panel again", "thicker"])
        self.assertEqual([row[0] for row in answers[3]], [0.8, 0.8, 1.0])
        self.assertEqual(answers[10][0][1:], (2.0, "panel"))

    @unittest.skipUnless(os.environ.get("PGHOST"), "no PostgreSQL server")
    def test_answer_the_same_on_a_server(self):
        self.add_runs("postgresql://")
        for query, expected in zip(QUERIES, self.answers_of_file()):
            asked = subprocess.run(["psql", "-qX", "--csv", "-v", "ON_ERROR_STOP=1", "-t", "-c", query], capture_output=True, text=True, check=True)
            rows = [tuple(map(number_or_text, row)) for row in csv.reader(io.StringIO(asked.stdout))]
            self.assertEqual(len(rows), len(expected), query)
            for row, other in zip(rows, expected):
                for field, value in zip(row, other):
                    if isinstance(value, float) and isinstance(field, float):
                        self.assertAlmostEqual(field, value, delta=1e-12 * abs(value), msg=query)
                    else:
                        self.assertEqual(field, value, query)

    def test_picture_shows_the_tables(self):
        output_of(self.folder, "study", "add", "study.db", self.runs[0][0])
        shown = {}
        for text in xml.etree.ElementTree.parse(PICTURE).iter("{http://www.w3.org/2000/svg}text"):
            if text.get("class") == "name":
                columns = shown.setdefault(text.text, [])
            elif text.get("class") in ("key", "column"):
                columns.append((text.text, text.get("class") == "key"))
        with contextlib.closing(sqlite3.connect(pathlib.Path(self.folder) / "study.db")) as connection:
            tables = [row[0] for row in connection.execute("SELECT name FROM sqlite_schema WHERE type IN ('table', 'view')")]
            stored = {
                table: [(row[1], row[5] > 0) for row in connection.execute("SELECT * FROM pragma_table_info(?)", [table])] for table in tables
            }
        self.assertEqual(shown, stored)


if __name__ == "__main__":
    unittest.main()
