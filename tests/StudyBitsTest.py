#!/usr/bin/env python3
"""Random results with hostile names and numbers at the edges come back from a study bit for bit, in SQL and from the program.

usage: KESTREL_PROGRAM=PROGRAM [STUDY_KIND=server] tests/StudyBitsTest.py

Results files, limits and names are those of tests/support/random_results.py. STUDY_FILES says how many, STUDY_SEED the first.
"""

import json
import os
import pathlib
import random
import sys

sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent / "support"))

import random_results  # noqa: E402
import study_testing  # noqa: E402
from study_testing import StudyTest, bits, expect_one_line, expect_whole, listed, output_of, run, shown_values  # noqa: E402

NAMES = [name for name in random_results.NAMES if "\0" not in name]
HOSTILE = ["'; DROP TABLE study_runs; --", "$1", '"', "E'\\x00'", "\\copy", "%", "_", "x" * 2000, *NAMES]


class StudyBitsTest(StudyTest):
    def setUp(self):
        super().setUp()
        self.study = self.new_study()

    def write_results(self, path, values, **more):
        series = [{"quantity": "ClampNormalForce", **values}]
        unit = {"id": "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01", "name": "OP20", "tools": [{"id": "Clamp 1", "kind": "clamp", "series": series}], **more}
        (self.folder / path).write_text(json.dumps({"format": "simulation-results", "version": 1, "units": [unit]}))

    def stored(self, sql):
        return [tuple(map(bits, row)) for row in self.study.rows(sql)]

    def test_random_results_are_what_show_says(self):
        first, count = int(os.environ.get("STUDY_SEED", "1")), int(os.environ.get("STUDY_FILES", "12"))
        random_results.NAMES, kept = NAMES, random_results.NAMES
        self.addCleanup(setattr, random_results, "NAMES", kept)
        expected = {}
        for seed in range(first, first + count):
            results = random_results.RandomResults(random.Random(seed))
            folder = self.folder / str(seed)
            folder.mkdir()
            results.write(folder)
            content = (folder / "results.json").read_text()
            if "\\u0000" in content or "\0" in content:
                continue
            arguments = (f"{seed}/results.json", "--limits", f"{seed}/limits.json", *(("--teaching",) if seed % 2 else ()))
            output_of(self.folder, "study", "add", self.study.name, *arguments)
            expected[f"{seed}/results"] = shown_values(self.folder, *arguments)
        self.assertGreater(len(expected), count // 2)
        expect_whole(self.folder, self.study, expected)
        # And what is read of it and stored again.
        copy = study_testing.FileStudy(self.folder)
        output_of(self.folder, "study", "add", copy.name, self.study.name)
        expect_whole(self.folder, copy, expected)
        self.assertEqual(listed(self.folder, copy), listed(self.folder, self.study))

    def test_numbers_at_the_edges(self):
        numbers = {
            "-0.0": "8000000000000000",
            "5e-324": "0000000000000001",
            "-2.2250738585072009e-308": "800fffffffffffff",
            "1.7976931348623157e308": "7fefffffffffffff",
            "Infinity": "7ff0000000000000",
            "-Infinity": "fff0000000000000",
            "0.1": "3fb999999999999a",
        }
        for number, hexadecimal in numbers.items():
            with self.subTest(number):
                value = number if "Inf" in number else float(number)
                self.write_results("run.json", {"pairs": [[value if number != "-0.0" else 1, value]]})
                limits = {"format": "limits", "version": 1, "all": {"columns": {"Clamps": {"ClampNormalForce": value}}}}
                (self.folder / "limits.json").write_text(json.dumps(limits))
                output_of(self.folder, "study", "add", self.study.name, "run.json", "--limits", "limits.json")
                (row,) = self.stored("SELECT value, time, limit_value FROM result_values WHERE quantity = 'ClampNormalForce'")
                if number == "-0.0":
                    self.assertEqual(row[1:], (hexadecimal, hexadecimal))
                else:
                    self.assertEqual(row, (hexadecimal,) * 3)

    def test_not_a_number_is_no_null(self):
        self.write_results("run.json", {"values": [None, None]})
        limits = {"format": "limits", "version": 1, "all": {"columns": {"Clamps": {"ClampNormalForce": None}}}}
        (self.folder / "limits.json").write_text(json.dumps(limits))
        output_of(self.folder, "study", "add", self.study.name, "run.json", "--limits", "limits.json")
        rows = self.study.rows("SELECT limit_value, count, nans FROM result_values WHERE quantity = 'ClampNormalForce'")
        self.assertEqual(rows, [("NaN", 0, 2)])

    def test_names_that_mean_harm(self):
        self.write_results("run.json", {"values": [1]})
        expected = {}
        for number, name in enumerate(HOSTILE):
            if not name:
                continue
            self.write_results("run.json", {"values": [number + 1]}, name=name)
            options = ("--run", name, "--label", f"key {name}={name}")
            output_of(self.folder, "study", "add", self.study.name, "run.json", *options)
            expected[name] = number + 1
        runs = listed(self.folder, self.study)
        self.assertEqual(list(runs), list(expected))
        for name, value in expected.items():
            key, _, text = f"key {name}={name}".partition("=")
            self.assertEqual(runs[name]["labels"], {key: text})
            (row,) = [row for row in self.study.values(name) if "ClampNormalForce" in row]
            self.assertEqual((row[0], row[8]), (name, bits(value)))
        for name in expected:
            self.assertEqual(output_of(self.folder, "study", "remove", self.study.name, name), b"")
        self.assertEqual(listed(self.folder, self.study), {})

    def test_a_name_with_nul_is_an_error(self):
        for what in ("name", "id"):
            self.write_results("run.json", {"values": [1]}, **({"name": "a\0b"} if what == "name" else {}))
            if what == "id":
                content = (self.folder / "run.json").read_text()
                (self.folder / "run.json").write_text(content.replace("Clamp 1", "a\\u0000b"))
            line = expect_one_line(run(self.folder, "study", "add", self.study.name, "run.json"))
            self.assertIn("run.json: expected names without NUL, as databases have none in texts, found ", line)
            self.assertEqual(listed(self.folder, self.study), {})

    def test_a_name_that_is_no_utf8_is_an_error(self):
        self.write_results("run.json", {"values": [1]})
        line = expect_one_line(run(self.folder, "study", "add", self.study.name, "run.json", "--run", os.fsdecode(b"a\xffb")))
        self.assertIn("expected UTF-8", line)


if __name__ == "__main__":
    study_testing.main()
