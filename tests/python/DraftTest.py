#!/usr/bin/env python3
"""Results that a solver hands over as arrays: what is refused, and that file, memory and program say the same."""

import json
import math
import random
import unittest
import uuid

import numpy
import pandas
import python_testing
import result_tables
from result_tables import Join, JoiningTong, LineJoin, SuctionZone

UNIT = "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01"
OTHER = "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a02"
JOIN = "7d0e0d5c-70f2-4b2f-9a0b-6d7b5f0f9c11"


def draft_of(**series):
    draft = result_tables.Draft()
    draft.unit(UNIT, "OP20").tool("B1", "bolt", series)
    return draft


def whole_draft():
    """Every kind of record."""
    draft = result_tables.Draft()
    unit = draft.unit(UNIT, "OP20 \u00e4 \"q\"")
    unit.tool("Tong 1", "joiningTong", {"JoiningTongNormalForce": numpy.array([1.5, -2.5]), "JoiningTongGap": [0.25]})
    unit.tool("Weld 1", "spotWeld", {"JoinForceN": numpy.array([[3, 0.1], [-4, 0.2]])}, tangential_force=[0.5, 0.75])
    unit.tool("Zone A", "suctionZone", {"SuctionDistance": [1.25]})
    unit.tool("Roller 1", "tool", {"TotalToolForces": [-600.0]})
    unit.group("Rollers", "Left", ["Roller 1", "Roller 2"])
    unit.group("Rollers", "Right", [])
    unit.define_join(JOIN)
    unit.step_without_data()
    unit.step(
        suction_zones=[SuctionZone(uuid.UUID(OTHER), "Zone A", False)],
        joining_tongs=[JoiningTong("Tong 1", "Tong left", 3)],
        joins=[Join(OTHER, "Weld 1", "Spot 1", 9)],
        line_joins=[
            LineJoin(OTHER, "LJ-1", "LJ 1", 2, JOIN,
                     {"LineJoinGap": (-0.2, 0.4), "LineJoinSumForceN": None, "LineJoinSumForceT": (None, 7.0)})
        ],
    )
    unit.step()
    unit.show_steps(0, 2)
    draft.unit(OTHER, "empty")
    return draft


def shown_in(tables):
    """By family and element the values by key."""
    shown = {}
    for table in tables:
        for group in table["groups"]:
            for item in (item for part in group["subGroups"] for item in part["items"]):
                values = shown.setdefault((table["family"], item["name"]), {})
                values.update(zip((column["key"] for column in group["columns"]), item["maxValues"]))
    return shown


class Drafts(python_testing.InFolder):
    def test_have_their_tables_at_once(self):
        results = draft_of(ClampNormalForce=numpy.array([0.0, 45.5, -7.0])).results()
        self.assertEqual(results.units, [(UNIT, "OP20")])
        self.assertEqual(results.tables()[0].loc["B1", "ClampNormalForce"], 45.5)
        self.assertEqual(results.findings()["value"].tolist(), [45.5])
        self.assertEqual(results.name, "memory")

    def test_are_in_the_file_what_they_are_in_memory(self):
        draft = whole_draft()
        draft.write(self.folder / "r.json")
        written, results = result_tables.read_results(self.folder / "r.json"), draft.results(str(self.folder / "r.json"))
        for teaching in (False, True):
            pandas.testing.assert_frame_equal(written.values(teaching=teaching), results.values(teaching=teaching))
        self.assertEqual(set(results.values()["family"]), {"JoiningTongs", "SuctionZones", "Rollers", "SpotWelds", "LineWelds",
                                                           "LineJoiningTools"})
        self.assertEqual(written.findings().values.tolist()[0][6:8], results.findings().values.tolist()[0][6:8])

    def test_are_what_the_program_shows(self):
        whole_draft().write(self.folder / "r.json")
        tables = json.loads(python_testing.program(self.folder, "show", "r.json", "--format", "json"))["tables"]
        shown = shown_in(tables)
        self.assertEqual(shown["JoiningTongs", "Tong left"]["JoiningTongNormalForce"], -2.5)
        self.assertEqual(shown["SpotWelds", "Spot 1"]["JoinForceN"], -4)
        self.assertEqual(shown["Rollers", "Roller 1"]["TotalToolForces"], -600)
        self.assertEqual(shown["Rollers", "Roller 2"]["TotalToolForces"], 0)
        self.assertEqual(shown["LineWelds", "LJ 1"]["LineJoinSumForceN"], 0)
        valid = {table["family"]: table["valuesAreValid"] for table in tables}
        self.assertEqual(valid["SuctionZones"], {"Zone A": False})

    def test_keep_each_bit_of_a_number(self):
        generator = numpy.random.default_rng(20261122)
        numbers = generator.integers(0, 1 << 64, 4000, dtype=numpy.uint64).view(numpy.float64)
        numbers[:5] = [-0.0, math.nan, math.inf, -math.inf, 5e-324]
        draft = draft_of(A=numbers, B=numbers.reshape(-1, 2))
        draft.write(self.folder / "r.json")
        for results in (draft.results(), result_tables.read_results(self.folder / "r.json")):
            series = results.tools()[0].series
            for found in (series["A"], series["B"].reshape(-1)):
                self.assertEqual(numpy.isnan(found).tolist(), numpy.isnan(numbers).tolist())
                there = ~numpy.isnan(numbers)
                self.assertEqual(found[there].tobytes(), numbers[there].tobytes())

    def test_take_numbers_of_every_kind(self):
        for numbers in ([1, 2], (1.0, 2.0), range(1, 3), numpy.array([1, 2], dtype=numpy.int8), pandas.Series([1.0, 2.0]),
                        numpy.array([1, 2], dtype=numpy.float32), numpy.array([1, 2], dtype=">f8"),
                        numpy.array([1.0, 9.0, 2.0])[::2], numpy.array([1, 2], dtype=numpy.uint64)):
            with self.subTest(type(numbers)):
                self.assertEqual(draft_of(A=numbers).results().tools()[0].series["A"].tolist(), [1.0, 2.0])
        pairs = numpy.asfortranarray([[1.0, 0.1], [2.0, 0.2]])
        self.assertEqual(draft_of(A=pairs).results().tools()[0].series["A"].tolist(), [[1.0, 0.1], [2.0, 0.2]])
        self.assertEqual(draft_of(A=[]).results().tools()[0].series["A"].shape, (0,))

    def test_copy_what_the_solver_may_change(self):
        numbers = numpy.array([1.0, 2.0])
        draft = draft_of(A=numbers)
        results = draft.results()
        numbers[:] = 7.0
        self.assertEqual(results.tools()[0].series["A"].tolist(), [1.0, 2.0])
        self.assertEqual(draft.results().tools()[0].series["A"].tolist(), [1.0, 2.0])

    def test_do_not_reach_results_that_were_made(self):
        draft = result_tables.Draft()
        unit = draft.unit(UNIT, "OP20")
        unit.tool("B1", "bolt", {"A": [1.0]})
        before = draft.results()
        unit.tool("B2", "bolt", {"A": [2.0]})
        self.assertEqual([tool.id for tool in before.tools()], ["B1"])
        self.assertEqual([tool.id for tool in draft.results().tools()], ["B1", "B2"])

    def test_refuse_what_is_wrong_and_lose_nothing(self):
        draft = whole_draft()
        unit = draft.unit(JOIN, "U")
        unit.tool("B1", "bolt", {"ClampNormalForce": [1.0]})
        before = draft.results().values()
        line_join = (OTHER, "L", "L", 1, JOIN)
        wrong = {
            'tool "B2": expected one of pilot, clamp': lambda: unit.tool("B2", "bold", {}),
            'tool "B1": expected an identifier that is unique in the unit, found "B1"': lambda: unit.tool("B1", "clamp", {}),
            'tool "B2", "A": expected an array of numbers up to 64 bits, found complex128': lambda: unit.tool(
                "B2", "bolt", {"B": [1.0], "A": [1j]}),
            'expected an array of numbers up to 64 bits, found bool': lambda: unit.tool("B2", "bolt", {"A": [True]}),
            'expected an array of numbers up to 64 bits, found <U1': lambda: unit.tool("B2", "bolt", {"A": ["1"]}),
            'expected an array of numbers up to 64 bits, found float128': lambda: unit.tool(
                "B2", "bolt", {"A": numpy.array([1], dtype=numpy.longdouble)}),
            r'expected an array of the shape \(n,\) or \(n, 2\), found \(1, 3\)': lambda: unit.tool("B2", "bolt", {"A": [[1, 2, 3]]}),
            r'expected an array of the shape \(n,\) or \(n, 2\), found \(\)': lambda: unit.tool("B2", "bolt", {"A": 1.0}),
            'unit "V": expected an identifier that is unique in the file, found ' + UNIT: lambda: draft.unit(UNIT, "V"),
            'unit "V": expected a UUID of 8-4-4-4-12 hexadecimal digits, found "V"': lambda: draft.unit("V", "V"),
            'family: expected one of ClampingTools, Rollers': lambda: unit.group("Bolts", "Left", ["B1"]),
            'joins: expected an identifier that is unique in its list': lambda: unit.step(
                joins=[Join(OTHER, "W", "W", 1), Join(OTHER.upper(), "V", "V", 1)]),
            'joiningTongs: expected an identifier that is unique in its list, found "T"': lambda: unit.step(
                joining_tongs=[JoiningTong("T", "T", 1), JoiningTong("T", "U", 1)]),
            'LineJoinGap: expected a finite number, found nan': lambda: unit.step(
                line_joins=[LineJoin(*line_join, {"LineJoinGap": (math.nan, 1.0)})]),
        }
        for message, work in wrong.items():
            with self.subTest(message), self.assertRaisesRegex(result_tables.Error, message) as raised:
                work()
            self.assertNotIn("\n", str(raised.exception))
        pandas.testing.assert_frame_equal(draft.results().values(), before)

    def test_refuse_steps_that_are_not_there(self):
        draft = draft_of()
        draft.unit(OTHER, "U").show_steps(0, 0)
        (self.folder / "r.json").write_text("as it was")
        for work in (draft.results, lambda: draft.write(self.folder / "r.json")):
            with self.assertRaisesRegex(result_tables.Error, 'unit "U": expected the index of one of 0 steps, found 0'):
                work()
        self.assertEqual((self.folder / "r.json").read_text(), "as it was")

    def test_are_written_whole_or_not_at_all(self):
        with self.assertRaises(result_tables.Error) as raised:
            draft_of().write(self.folder / "none" / "r.json")
        self.assertEqual(raised.exception.path, str(self.folder / "none" / "r.json"))

    def test_of_random_tools_are_what_the_program_shows(self):
        generator = random.Random(20261122)
        draft = result_tables.Draft()
        unit = draft.unit(UNIT, "U")
        expected = {}
        for number in range(200):
            numbers = [generator.gauss(0, 100) for _ in range(generator.randrange(1, 30))]
            unit.tool(f"B{number}", "bolt", {"ClampNormalForce": numpy.array(numbers)})
            expected[f"B{number}"] = max(numbers, key=abs)
        draft.write(self.folder / "r.json")
        tables = json.loads(python_testing.program(self.folder, "show", "r.json", "--format", "json"))["tables"]
        shown = {item: values["ClampNormalForce"] for (_, item), values in shown_in(tables).items()}
        self.assertEqual(shown, expected)


if __name__ == "__main__":
    unittest.main()
