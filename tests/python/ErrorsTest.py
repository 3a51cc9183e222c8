#!/usr/bin/env python3
"""What cannot be done is one clear line, and a mistake in a program is a TypeError of one."""

import pickle
import unittest

import python_testing
import result_tables

RESULTS = b'{"format": "simulation-results", "version": 1, "units": [{"id": "x"}]}'


def error_of(work, kind=result_tables.Error):
    try:
        work()
    except kind as error:
        return error
    raise AssertionError("expected an error, found none")


class Errors(python_testing.InFolder):
    def test_say_path_and_place(self):
        path = self.folder / "r.json"
        path.write_bytes(RESULTS)
        error = error_of(lambda: result_tables.read_results(path))
        self.assertEqual(error.path, str(path))
        self.assertEqual(error.place, "/units/0/id")
        self.assertEqual(str(error), f'{path}: /units/0/id: expected a UUID of 8-4-4-4-12 hexadecimal digits, found "x"')
        self.assertEqual(error.message, str(error))

    def test_say_line_and_column_where_it_is_no_json(self):
        error = error_of(lambda: result_tables.read_results(b'{\n  "format" 1}'))
        self.assertEqual((error.path, error.place), ("memory", "line 2, column 12"))

    def test_say_no_place_where_there_is_none(self):
        error = error_of(lambda: result_tables.read_results(self.folder / "none.json"))
        self.assertEqual((error.path, error.place), (str(self.folder / "none.json"), None))

    def test_are_value_errors(self):
        self.assertIsInstance(error_of(lambda: result_tables.read_results(RESULTS)), ValueError)

    def test_survive_pickling(self):
        error = error_of(lambda: result_tables.read_results(RESULTS))
        for protocol in range(pickle.HIGHEST_PROTOCOL + 1):
            again = pickle.loads(pickle.dumps(error, protocol))
            self.assertIs(type(again), result_tables.Error)
            self.assertEqual((str(again), again.path, again.place), (str(error), error.path, error.place))

    def test_are_of_the_file_that_is_wrong(self):
        (self.folder / "limits.json").write_text('{"format": "limits", "version": 2}')
        sample = result_tables.sample()
        error = error_of(lambda: sample.read_limits(self.folder / "limits.json"))
        self.assertEqual((error.path, error.place), (str(self.folder / "limits.json"), "/version"))
        (self.folder / "h.csv").write_text("time,C1\n0,1\n0.1,x\n")
        error = error_of(lambda: result_tables.read_print(self.folder / "h.csv", self.folder / "no.json"))
        self.assertEqual((error.path, error.place), (str(self.folder / "h.csv"), "line 3"))

    def test_name_what_there_is(self):
        sample = result_tables.sample()
        wrong = {
            "OP99": lambda: sample.tables(units="OP99"),
            "Clams": lambda: sample.values(families="Clams"),
            "C99": lambda: sample.series(items="C99"),
            "ClampForce": lambda: sample.series(keys="ClampForce"),
            "-1": lambda: sample.differences(sample, rel=-1),
            "nan": lambda: sample.differences(sample, abs=float("nan")),
        }
        for found, work in wrong.items():
            with self.subTest(found):
                message = str(error_of(work))
                self.assertRegex(message, f"expected .*found \"?{found}")
                self.assertNotIn("\n", message)


class Mistakes(unittest.TestCase):
    def test_are_type_errors_of_one_line(self):
        sample = result_tables.sample()
        unit = result_tables.Draft().unit("0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01", "U")
        wrong = [
            lambda: result_tables.read_results(3),
            lambda: result_tables.read_results(b"", limits=3),
            lambda: result_tables.read_print("a.csv", "m.json", format=3),
            lambda: sample.tables(units=3),
            lambda: sample.tables(units=[3]),
            lambda: sample.values(families=b"Clamps"),
            lambda: sample.series(items=3),
            lambda: sample.differences("other.json"),
            lambda: result_tables.Study(3),
            lambda: unit.tool(3, "bolt", {}),
            lambda: unit.tool("B", "bolt", {3: [1.0]}),
            lambda: unit.step(joining_tongs=[("T", "Tong", -1)]),
            lambda: unit.step(joining_tongs=[("T", "Tong", True)]),
            lambda: unit.show_steps(0, -1),
        ]
        for number, work in enumerate(wrong):
            with self.subTest(number):
                self.assertRegex(str(error_of(work, TypeError)), r"^\w+: expected [^\n]*, found [^\n]*$")


if __name__ == "__main__":
    unittest.main()
