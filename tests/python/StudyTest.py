#!/usr/bin/env python3
"""Studies from Python: what is added, asked and removed, against literal values and what the program says."""

import csv
import io
import json
import math
import unittest

import pandas
import python_testing
import result_tables

UNIT = "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01"


class Studies(python_testing.InFolder):
    def write(self, name, *forces):
        tools = [
            {"id": f"B{i}", "kind": "bolt", "series": [{"quantity": "ClampNormalForce", "pairs": [[force, 0.5]]}]}
            for i, force in enumerate(forces, 1)
        ]
        unit = {"id": UNIT, "name": "OP20", "tools": tools}
        path = self.folder / f"{name}.json"
        path.write_text(json.dumps({"format": "simulation-results", "version": 1, "units": [unit]}))
        return path

    def setUp(self):
        super().setUp()
        self.study = result_tables.Study(self.folder / "s.study", create=True)
        self.addCleanup(self.study.close)
        self.study.add(self.write("one", 10.0, -45.0), run="one", labels={"speed": "2"})
        self.study.add(self.write("two", 12.5, None), run="two", labels={"speed": "1", "who": "me"})

    def test_say_what_became_of_a_run(self):
        path = self.write("three", 1.0)
        self.assertEqual(self.study.add(path, run="three"), "added")
        self.assertEqual(self.study.add(path, run="three"), "unchanged")
        self.assertEqual(self.study.add(path, run="three", labels={"a": "b"}), "labels")
        self.assertEqual(self.study.add(self.write("three", 2.0), run="three"), "replaced")
        self.assertEqual(self.study.add(path), "added")
        self.assertEqual(list(self.study.runs()["run"]), ["one", "two", "three", str(self.folder / "three")])

    def test_list_their_runs(self):
        runs = self.study.runs()
        self.assertEqual(
            list(runs.columns),
            ["run", "file", "added", "program", "contentDigest", "limitsDigest", "label/speed", "label/who", "values"]
            + ["compared", "withoutData", "exceeded", "notANumber", "invalid", "worstUtilisation"],
        )
        self.assertEqual(runs["label/who"].tolist(), [None, "me"])
        self.assertEqual(runs[["compared", "exceeded", "notANumber"]].values.tolist(), [[2, 1, 0], [1, 0, 1]])
        self.assertEqual(runs["worstUtilisation"].tolist(), [1.5, 12.5 / 30])

    def test_say_what_is_worst(self):
        worst = self.study.worst(top=2)
        self.assertEqual(worst[["run", "item", "value", "limit", "utilisation", "time"]].values.tolist(),
                         [["one", "B2", -45.0, 30.0, 1.5, 0.5], ["two", "B1", 12.5, 30.0, 12.5 / 30, 0.5]])

    def test_show_trends(self):
        trend = self.study.trend("OP20", "Bolts", "B1", "ClampNormalForce")
        self.assertEqual(trend["value"].tolist(), [10.0, 12.5])
        self.assertEqual(trend.attrs, {"leftOut": 0})
        by_speed = self.study.trend("OP20", "Bolts", "B1", "ClampNormalForce", by="speed")
        self.assertEqual(by_speed[["run", "label"]].values.tolist(), [["two", "1"], ["one", "2"]])
        self.assertEqual(self.study.trend("OP20", "Bolts", "B1", "ClampNormalForce", by="who").attrs, {"leftOut": 2})

    def test_give_the_values_of_their_runs(self):
        values = self.study.values()
        self.assertEqual(list(values["run"].unique()), ["one", "two"])
        of_two = self.study.values(runs="two", families="Bolts")
        self.assertEqual(set(of_two["run"]), {"two"})
        forces = of_two[of_two["key"] == "ClampNormalForce"]["value"]
        self.assertEqual(forces.iloc[0], 12.5)
        self.assertTrue(math.isnan(forces.iloc[1]))
        self.assertIs(of_two[of_two["key"] == "ClampClosingForce"]["value"].iloc[0], pandas.NA)

    def test_give_what_export_writes(self):
        output = python_testing.program(self.folder, "study", "export", "s.study", "--long", "--format", "csv").decode()
        rows = list(csv.DictReader(io.StringIO(output, newline="")))
        values = self.study.values()
        self.assertEqual(list(values.columns), list(rows[0]))
        self.assertEqual(len(values), len(rows))
        for name in ("run", "file", "unit", "unitId", "family", "group", "subGroup", "item", "key", "column", "valueUnit"):
            self.assertEqual(values[name].tolist(), [row[name] for row in rows])
        for name in ("occurrence", "count", "nans"):
            self.assertEqual(values[name].tolist(), [int(row[name]) for row in rows])
        self.assertEqual(values["time"].isna().tolist(), [row["time"] == "" for row in rows])

    def test_keep_the_tables_of_a_run(self):
        forces = self.study.tables("one")[0]
        self.assertEqual(forces["ClampNormalForce"].tolist(), [10.0, -45.0])
        self.assertEqual(forces.attrs["unit"], "OP20")
        self.assertEqual(forces.attrs["limits"], {"ClampNormalForce": 30.0})
        with self.assertRaisesRegex(result_tables.Error, "expected the id or the name of one of its units .*found \"OP21\""):
            self.study.tables("one", units="OP21")

    def test_compare_runs(self):
        found = self.study.differences("one", "two")
        self.assertEqual(found[["item", "before", "change"]].values.tolist()[0], ["B1", 10.0, 2.5])
        self.assertEqual(len(self.study.differences("one", "one")), 0)

    def test_remove_all_or_none(self):
        with self.assertRaisesRegex(result_tables.Error, "three"):
            self.study.remove(["one", "three"])
        self.assertEqual(list(self.study.runs()["run"]), ["one", "two"])
        self.study.remove("one")
        self.assertEqual(list(self.study.runs()["run"]), ["two"])

    def test_take_in_what_is_selected(self):
        self.study.add(self.folder / "one.json", run="some", families="Clamps")
        self.assertEqual(len(self.study.values(runs="some")), 0)

    def test_take_limits_that_are_named(self):
        (self.folder / "policy.json").write_text('{"format": "limits", "version": 1, "all": {"limits": {"BoltNormalForce": 100}}}')
        self.study.add(self.folder / "one.json", run="lax", limits=self.folder / "policy.json")
        self.assertEqual(set(self.study.values(runs="lax")["limit"].dropna()), {100.0})

    def test_are_made_when_that_is_said(self):
        with self.assertRaises(result_tables.Error) as raised:
            result_tables.Study(self.folder / "other.study")
        self.assertEqual(raised.exception.path, str(self.folder / "other.study"))
        self.assertFalse((self.folder / "other.study").exists())
        with result_tables.Study(self.folder / "s.study") as study:
            self.assertEqual(len(study.runs()), 2)
        with self.assertRaisesRegex(result_tables.Error, "expected a study that is open"):
            study.runs()

    def test_stay_when_a_file_is_wrong(self):
        (self.folder / "bad.json").write_text("{")
        with self.assertRaises(result_tables.Error) as raised:
            self.study.add(self.folder / "bad.json")
        self.assertEqual(raised.exception.path, str(self.folder / "bad.json"))
        self.assertEqual(len(self.study.runs()), 2)


if __name__ == "__main__":
    unittest.main()
