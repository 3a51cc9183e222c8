#!/usr/bin/env python3
"""Limits as dictionaries, as documents and as texts."""

import json
import math
import unittest

import python_testing
import result_tables

PANEL = "d4e1959f-d43d-404f-bb29-6913da5eb447"
JOINING = "5672865c-2ebf-5e57-92ae-2b38d2d5dce3"


class Limits(unittest.TestCase):
    def setUp(self):
        self.results = result_tables.sample()

    def test_are_dictionaries_by_unit_and_kind(self):
        limits = self.results.limits
        self.assertEqual(list(limits), [unit.id for unit in self.results.units])
        self.assertEqual(limits[PANEL]["BoltNormalForce"], 30.0)
        self.assertEqual(limits[PANEL]["PilotForce"], 500.0)
        self.assertEqual(len(limits[PANEL]), 16)

    def test_cannot_be_changed_by_mistake(self):
        with self.assertRaises(TypeError):
            self.results.limits[PANEL]["BoltNormalForce"] = 1.0
        with self.assertRaises(TypeError):
            self.results.limits[PANEL] = {}

    def test_are_set_by_kind(self):
        self.results.set_limits({"BoltNormalForce": 45.5, "PilotForce": math.inf}, units="Clamped panel")
        self.assertEqual(self.results.limits[PANEL]["BoltNormalForce"], 45.5)
        self.assertEqual(self.results.limits[PANEL]["PilotForce"], math.inf)
        self.assertEqual(self.results.limits[JOINING]["BoltNormalForce"], 30.0)
        self.results.set_limits({"BoltNormalForce": 7})
        self.assertEqual([limits["BoltNormalForce"] for limits in self.results.limits.values()], [7.0] * 3)

    def test_decide_what_is_found(self):
        before = len(self.results.findings(units=JOINING, families="JoiningTongs"))
        self.results.set_limits({"JoiningTongNormalForce": 1e6})
        after = self.results.findings(units=JOINING, families="JoiningTongs")
        self.assertLess(len(after), before)
        table = self.results.tables(units=JOINING, families="JoiningTongs")[0]
        self.assertEqual(table.attrs["limits"]["JoiningTongNormalForce"], 1e6)

    def test_of_columns_without_a_kind_are_set_by_family_and_key(self):
        self.assertEqual(len(self.results.findings(families="Clamps")), 0)
        self.results.set_limits({("Clamps", "ClampClosingForce"): 900.0}, units=PANEL)
        self.assertEqual(self.results.limits[PANEL][("Clamps", "ClampClosingForce")], 900.0)
        self.assertEqual(list(self.results.findings(families="Clamps")["item"]), ["C3", "C5"])

    def test_are_set_all_or_none(self):
        for wrong in ({"BoltNormalForce": 1.0, "ForceLimit": 2.0}, {"BoltNormalForce": 1.0, "ClampClosingForce": 2.0},
                      {"BoltNormalForce": 1.0, ("Clamps", "ClampClosing"): 2.0}, {"BoltNormalForce": 1.0, ("Clams", "A"): 2.0},
                      {"BoltNormalForce": 1.0, ("Bolts", "ClampNormalForce"): 2.0}):
            with self.subTest(wrong), self.assertRaisesRegex(result_tables.Error, "^limits: expected .*, found "):
                self.results.set_limits(wrong)
        with self.assertRaises(result_tables.Error):
            self.results.set_limits({"BoltNormalForce": 1.0}, units=["Clamped panel", "OP99"])
        self.assertEqual(self.results.limits[PANEL]["BoltNormalForce"], 30.0)

    def test_refuse_what_is_no_key(self):
        for wrong in ({3: 1.0}, {("Clamps",): 1.0}):
            with self.subTest(wrong), self.assertRaisesRegex(TypeError, "limits: expected a kind or a family and a key"):
                self.results.set_limits(wrong)

    def test_go_back_to_their_defaults(self):
        self.results.set_limits({"BoltNormalForce": 1.0, ("Clamps", "ClampClosingForce"): 2.0})
        self.results.reset_limits(units=PANEL)
        self.assertEqual(self.results.limits[PANEL], result_tables.sample().limits[PANEL])
        self.assertEqual(self.results.limits[JOINING]["BoltNormalForce"], 1.0)


class Documents(python_testing.InFolder):
    def setUp(self):
        super().setUp()
        self.path = self.folder / "panel.json"
        self.path.write_bytes((python_testing.SOURCE / "examples/clamped_panel/panel.results.json").read_bytes())
        self.results = result_tables.read_results(self.path)

    def listed(self, *arguments):
        output = python_testing.program(self.folder, "limits", "list", "panel.json", "--format", "json", *arguments)
        return {limit["typeName"]: limit["limit"] for limit in json.loads(output)["limits"]}

    def test_are_what_the_program_reads(self):
        self.results.set_limits({"BoltNormalForce": 45.5})
        self.results.save_limits(f"{self.path}.limits")
        self.assertEqual(self.listed()["BoltNormalForce"], 45.5)
        self.assertEqual(result_tables.read_results(self.path).limits[PANEL]["BoltNormalForce"], 45.5)

    def test_of_the_program_are_read(self):
        python_testing.program(self.folder, *"limits set panel.json --all --type PilotForce --value 12.5 --limits d".split())
        self.results.read_limits(self.folder / "d")
        self.assertEqual(self.results.limits[PANEL]["PilotForce"], 12.5)

    def test_hold_no_limits_of_columns(self):
        self.results.set_limits({("Clamps", "ClampClosingForce"): 900.0})
        with self.assertRaisesRegex(result_tables.Error, "no limit of a column, which documents cannot hold"):
            self.results.save_limits(self.folder / "d")
        self.assertFalse((self.folder / "d").exists())

    def test_do_not_take_the_place_of_a_text(self):
        text = self.folder / "policy.json"
        text.write_text(self.results.limits_text())
        with self.assertRaisesRegex(result_tables.Error, "expected a limits document, found a text of limits"):
            self.results.save_limits(text)
        self.assertEqual(text.read_text(), self.results.limits_text())

    def test_that_are_damaged_change_nothing(self):
        (self.folder / "d").write_bytes(b"no document")
        with self.assertRaises(result_tables.Error) as raised:
            self.results.read_limits(self.folder / "d")
        self.assertEqual(raised.exception.path, str(self.folder / "d"))
        self.assertEqual(self.results.limits[PANEL]["BoltNormalForce"], 30.0)

    def test_have_texts(self):
        self.results.set_limits({"BoltNormalForce": 45.5, ("Clamps", "ClampClosingForce"): 900.0})
        text = self.results.limits_text(units="Clamped panel")
        (unit,) = json.loads(text)["units"]
        self.assertEqual(unit["limits"]["BoltNormalForce"], 45.5)
        self.assertEqual(unit["columns"], {"Clamps": {"ClampClosingForce": 900}})
        (self.folder / "policy.json").write_text(text)
        other = result_tables.read_results(self.path, limits=self.folder / "policy.json")
        self.assertEqual(other.limits, self.results.limits)
        self.assertEqual(self.listed("--limits", "policy.json")["BoltNormalForce"], 45.5)


if __name__ == "__main__":
    unittest.main()
