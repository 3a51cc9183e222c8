#!/usr/bin/env python3
"""What the module says of small results, against literal values."""

import json
import math
import os
import pathlib
import unittest

import numpy
import pandas
import python_testing
import result_tables

UNIT = "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01"


def bolt(name, **series):
    return {
        "id": name,
        "kind": "bolt",
        "series": [{"quantity": quantity, "pairs" if numbers and isinstance(numbers[0], list) else "values": numbers}
                   for quantity, numbers in series.items()],
    }


def content(*tools, **members):
    unit = {"id": UNIT, "name": "OP20", "tools": list(tools), **members}
    return json.dumps({"format": "simulation-results", "version": 1, "units": [unit]}).encode()


TOOLS = (
    bolt("B1", ClampNormalForce=[0, 45.5, -7], ClampClosingForce=[[-1, 0.1], [-12, 0.2]]),
    bolt("B2", ClampNormalForce=[None, None], ClampClosingForce=[0, 0]),
    bolt("B3", ClampNormalForce=[None, -31]),
)


def read(*tools):
    return result_tables.read_results(content(*(tools or TOOLS)))


class Tables(unittest.TestCase):
    def test_have_a_frame_for_each_section(self):
        forces, distances = read().tables()
        self.assertEqual(list(forces.index), ["B1", "B2", "B3"])
        self.assertEqual(forces.index.name, "item")
        self.assertEqual(
            list(forces.columns), ["ClampNormalForce", "ClampClosingForce", "ClampSupportingForce", "ClampTangentialForce"]
        )
        self.assertEqual(forces.loc["B1"].tolist(), [45.5, -12.0, pandas.NA, pandas.NA])
        self.assertEqual(distances.attrs["group"], "Distances")

    def test_tell_nan_from_no_data(self):
        forces = read().tables(families="Bolts")[0]
        self.assertTrue(math.isnan(forces.loc["B2", "ClampNormalForce"]))
        self.assertEqual(forces.loc["B2", "ClampClosingForce"], 0.0)
        self.assertEqual(forces.loc["B3", "ClampNormalForce"], -31.0)
        self.assertIs(forces.loc["B3", "ClampClosingForce"], pandas.NA)

    def test_say_what_they_are_of(self):
        attrs = read().tables()[0].attrs
        self.assertEqual(attrs["limits"], {"ClampNormalForce": 30.0})
        self.assertEqual(attrs["units"]["ClampNormalForce"], "N")
        self.assertEqual(attrs["columns"]["ClampNormalForce"], "Max Normal Force")
        others = {key: attrs[key] for key in ("file", "unit", "unitId", "family", "title", "group", "teaching", "invalid")}
        self.assertEqual(
            others,
            {
                "file": "memory",
                "unit": "OP20",
                "unitId": UNIT,
                "family": "Bolts",
                "title": "Bolts",
                "group": "Forces",
                "teaching": False,
                "invalid": [],
            },
        )

    def test_have_sub_groups_where_these_have_names(self):
        rollers = result_tables.sample().tables(families="Rollers")[0]
        self.assertEqual(rollers.index.names, ["subGroup", "item"])
        self.assertEqual(rollers.loc[("Final hemming", "Roller 90°"), "TotalToolForces"], -1240.35)

    def test_are_those_that_are_selected(self):
        sample = result_tables.sample()
        tables = sample.tables(units=["OP30 Joining"], families=("SpotWelds", "LineWelds"))
        families = {table.attrs["family"] for table in tables}
        self.assertEqual(families, {"SpotWelds", "LineWelds"})
        self.assertEqual({table.attrs["unit"] for table in sample.tables(units="OP30 Joining")}, {"OP30 Joining"})
        self.assertIn(True, [table.attrs["teaching"] for table in sample.tables(families="Clamps", teaching=True)])
        self.assertNotIn(True, [table.attrs["teaching"] for table in sample.tables(families="Clamps")])

    def test_name_elements_whose_values_cannot_be_trusted(self):
        invalid = {item for table in result_tables.sample().tables() for item in table.attrs["invalid"]}
        findings = result_tables.sample().findings()
        self.assertEqual(set(findings[findings["kind"] == "invalid"]["item"]) - invalid, set())
        self.assertGreater(len(invalid), 0)


class Values(unittest.TestCase):
    def test_have_the_columns_of_csv(self):
        values = read().values()
        self.assertEqual(
            list(values.columns),
            "file unit unitId family group subGroup item valid key column value valueUnit limit exceeded step time count nans".split(),
        )
        self.assertEqual(len(values), 3 * 5)
        first, second = values.iloc[0], values.iloc[1]
        self.assertEqual(
            first.tolist(),
            ["memory", "OP20", UNIT, "Bolts", "Forces", "", "B1", True, "ClampNormalForce", "Max Normal Force", 45.5, "N", 30.0]
            + [True, 1, pandas.NA, 3, 0],
        )
        self.assertEqual(second[["value", "step", "time", "count"]].tolist(), [-12.0, 1, 0.2, 2])

    def test_have_types_that_know_what_is_missing(self):
        types = read().values().dtypes
        self.assertEqual([str(types[name]) for name in ("value", "limit", "time")], ["Float64"] * 3)
        self.assertEqual([str(types[name]) for name in ("step", "count", "nans")], ["Int64", "int64", "int64"])
        self.assertEqual([str(types[name]) for name in ("valid", "exceeded")], ["bool"] * 2)

    def test_of_nothing_are_an_empty_frame(self):
        values = result_tables.read_results(b'{"format": "simulation-results", "version": 1, "units": []}').values()
        self.assertEqual((len(values), len(values.columns)), (0, 18))


class Findings(unittest.TestCase):
    def test_are_what_check_finds(self):
        found = read().findings()
        self.assertEqual(
            found[["item", "kind", "value", "limit", "step"]].values.tolist()[:1], [["B1", "exceeded", 45.5, 30.0, 1]]
        )
        self.assertEqual(list(found["kind"]), ["exceeded", "notANumber", "exceeded", "notANumber"])
        self.assertTrue(math.isnan(found["value"][1]))
        self.assertEqual(found.attrs, {"compared": 2, "withoutData": 0})

    def test_say_how_much_has_no_data(self):
        self.assertEqual(read(bolt("B1")).findings().attrs, {"compared": 0, "withoutData": 1})


class Differences(unittest.TestCase):
    def test_are_what_diff_says(self):
        after = read(bolt("B1", ClampNormalForce=[50.0]), bolt("B4", ClampNormalForce=[1]))
        found = read(TOOLS[0]).differences(after, families="Bolts")
        row = found.iloc[0]
        self.assertEqual(row[["item", "key", "kind", "before", "after", "change"]].tolist(),
                         ["B1", "ClampNormalForce", "changed", 45.5, 50.0, 4.5])
        self.assertEqual(row[["validBefore", "exceededBefore", "exceededAfter"]].tolist(), [True, True, True])
        self.assertIs(found.iloc[1]["after"], pandas.NA)
        added = found[found["kind"] == "added"]
        self.assertEqual(set(added["item"]), {"B4"})
        self.assertTrue(added["validBefore"].isna().all())
        self.assertEqual(found.attrs, {"compared": 5})

    def test_leave_out_what_is_within_the_tolerance(self):
        after = read(bolt("B1", ClampNormalForce=[46.0], ClampClosingForce=[-12]))
        self.assertEqual(len(read(TOOLS[0]).differences(after, rel=0.02)), 0)
        self.assertEqual(len(read(TOOLS[0]).differences(after, abs=0.25)), 1)

    def test_of_results_and_themselves_are_none(self):
        results = read()
        self.assertEqual(len(results.differences(results)), 0)


class Series(unittest.TestCase):
    def test_are_frames_by_step(self):
        (series,) = read().series(items="B1", keys=["ClampClosingForce"])
        self.assertEqual(series.index.name, "step")
        self.assertEqual(series.reset_index().values.tolist(), [[0, -1.0, 0.1], [1, -12.0, 0.2]])
        self.assertEqual(list(series.columns), ["value", "time"])
        attrs = {key: series.attrs[key] for key in ("item", "key", "valueUnit", "limit", "step", "time", "exceeded")}
        self.assertEqual(
            attrs,
            {"item": "B1", "key": "ClampClosingForce", "valueUnit": "N", "limit": None, "step": 1, "time": 0.2, "exceeded": False},
        )

    def test_of_line_joins_have_ranges(self):
        series = result_tables.sample().series(items="LJ 1", keys="LineJoinSumForceN")[0]
        self.assertEqual(list(series.columns), ["value", "minimum", "maximum"])


class Tools(unittest.TestCase):
    def test_have_arrays_of_what_is_stored(self):
        first, second, _ = read().tools()
        self.assertEqual((first.unit, first.unitId, first.id, first.kind), ("OP20", UNIT, "B1", "bolt"))
        numpy.testing.assert_array_equal(first.series["ClampNormalForce"], [0, 45.5, -7])
        numpy.testing.assert_array_equal(first.series["ClampClosingForce"], [[-1, 0.1], [-12, 0.2]])
        self.assertTrue(numpy.isnan(second.series["ClampNormalForce"]).all())
        self.assertIsNone(first.tangentialForce)

    def test_cannot_be_written_to(self):
        array = read().tools()[0].series["ClampNormalForce"]
        self.assertFalse(array.flags.writeable)
        with self.assertRaises(ValueError):
            array[0] = 1.0
        with self.assertRaises(TypeError):
            read().tools()[0].series["ClampNormalForce"] = array

    def test_share_the_numbers(self):
        results = read()
        one, other = (results.tools()[0].series["ClampNormalForce"] for _ in range(2))
        self.assertEqual(one.__array_interface__["data"], other.__array_interface__["data"])

    def test_have_the_tangential_force_of_welds(self):
        weld = {"id": "W", "kind": "spotWeld", "series": [], "tangentialForce": {"values": [0.5, 0.75]}}
        numpy.testing.assert_array_equal(read(weld).tools()[0].tangentialForce, [0.5, 0.75])

    def test_name_the_total_force_by_its_key(self):
        tool = {"id": "T", "kind": "tool", "series": [{"quantity": "TotalToolForces", "values": [1]}]}
        self.assertEqual(list(read(tool).tools()[0].series), ["TotalToolForces"])


class Reading(python_testing.InFolder):
    def test_takes_paths_and_bytes(self):
        path = self.folder / "r.json"
        path.write_bytes(content(*TOOLS))
        for source in (path, str(path), content(*TOOLS), bytearray(content(*TOOLS)), memoryview(content(*TOOLS))):
            self.assertEqual(result_tables.read_results(source).units, [(UNIT, "OP20")])
        self.assertEqual(result_tables.read_results(path).name, str(path))
        self.assertEqual(result_tables.read_results(content(), name="run 7").name, "run 7")

    def test_takes_names_that_are_no_text(self):
        path = os.fsdecode(os.fsencode(self.folder) + b"/\xff.json")
        pathlib.Path(path).write_bytes(content(*TOOLS))
        self.assertEqual(result_tables.read_results(path).name, path)
        with self.assertRaises(result_tables.Error) as raised:
            result_tables.read_results(path + "x")
        self.assertEqual(raised.exception.path, path + "x")

    def test_takes_a_dash_for_a_file(self):
        os.chdir(self.folder)
        pathlib.Path("-").write_bytes(content(*TOOLS))
        self.assertEqual(result_tables.read_results("-").units, [(UNIT, "OP20")])

    def test_takes_the_limits_beside_the_file(self):
        path = self.folder / "r.json"
        path.write_bytes(content(*TOOLS))
        (self.folder / "r.json.limits").write_text('{"format": "limits", "version": 1, "all": {"limits": {"BoltNormalForce": 60}}}')
        self.assertEqual(result_tables.read_results(path).limits[UNIT]["BoltNormalForce"], 60.0)
        self.assertEqual(result_tables.read_results(content(*TOOLS)).limits[UNIT]["BoltNormalForce"], 30.0)
        named = result_tables.read_results(content(*TOOLS), limits=self.folder / "r.json.limits")
        self.assertEqual(named.limits[UNIT]["BoltNormalForce"], 60.0)

    def test_takes_prints(self):
        folder = python_testing.SOURCE / "examples/clamped_panel"
        results = result_tables.read_print(folder / "panel.dat", folder / "panel.map.json")
        expected = result_tables.read_results(folder / "panel.results.json")
        self.assertEqual(len(results.differences(expected)), 0)
        self.assertGreater(results.differences(expected).attrs["compared"], 50)

    def test_says_what_of_a_print_is_passed_over(self):
        lines = ["forces (fx,fy,fz) for set S and time 0.1", "", "1 1.0 2.0 3.0", "", "contact print energy for all", ""]
        (self.folder / "p.dat").write_text("\n".join(["", *lines]))
        (self.folder / "m.json").write_text(json.dumps({
            "format": "import-map", "version": 1,
            "units": [{"id": UNIT, "name": "U", "tools": [{"id": "B", "kind": "bolt", "series": [
                {"quantity": "ClampNormalForce", "sum": [{"history": "S.fz"}]}]}]}]}))
        with self.assertWarnsRegex(UserWarning, "line 6: passed over .contact print energy"):
            results = result_tables.read_print(self.folder / "p.dat", self.folder / "m.json")
        self.assertEqual(results.tools()[0].series["ClampNormalForce"].tolist(), [3.0])

    def test_wants_a_format_where_the_name_says_none(self):
        (self.folder / "p").write_text("time,C1\n0,-3.5\n")
        (self.folder / "m.json").write_text(json.dumps({
            "format": "import-map", "version": 1,
            "units": [{"id": UNIT, "name": "U", "tools": [{"id": "B", "kind": "bolt", "series": [
                {"quantity": "ClampNormalForce", "form": "values", "sum": [{"history": "C1"}]}]}]}]}))
        with self.assertRaisesRegex(result_tables.Error, "expected a name that ends in .dat or .csv"):
            result_tables.read_print(self.folder / "p", self.folder / "m.json")
        results = result_tables.read_print(self.folder / "p", self.folder / "m.json", format="csv")
        self.assertEqual(results.tools()[0].series["ClampNormalForce"].tolist(), [-3.5])
        with self.assertRaisesRegex(result_tables.Error, "format: expected one of calculix, csv, found"):
            result_tables.read_print(self.folder / "p", self.folder / "m.json", format="xls")


if __name__ == "__main__":
    unittest.main()
