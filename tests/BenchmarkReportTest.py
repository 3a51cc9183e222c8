#!/usr/bin/env python3
"""Tests of what the report of the benchmarks makes of what was measured: its arithmetic and its page."""

import json
import os
import pathlib
import sys
import tempfile
import unittest
import unittest.mock

ROOT = pathlib.Path(__file__).resolve().parent.parent
sys.dont_write_bytecode = True
sys.path.insert(0, str(ROOT / "benchmarks/report"))

import InstructionCountTest  # noqa: E402
import arithmetic  # noqa: E402
import data  # noqa: E402
import measuring  # noqa: E402
import rows  # noqa: E402
from page import Page  # noqa: E402
from rows import Growth, Row, Section  # noqa: E402


def samples(*milliseconds, **more):
    return [{"ms": value, "faults": 0, **more} for value in milliseconds]


def page(jobs, benchmarks=None, counts=None, reasons=None):
    machine = {
        "machine: touchPages": samples(4.0, items=4.0),
        "machine: readLines/bytes:16384": samples(0.5, items=1.0),
        "machine: readLines/bytes:524288": samples(1.0, items=1.0),
        "machine: readLines/bytes:536870912": samples(2.0, items=1.0),
    }
    figures = {
        "machine": [],
        "missing": [],
        "files": {"some.json": [{"peak": 1_000_000}]},
        "caches": [1024, 2048, 4096],
        "jobs": {"Title": jobs},
        "benchmarks": {**machine, **(benchmarks or {})},
        "counts": counts or {},
        "counted_with": "valgrind",
    }
    return Page(figures, reasons or {})


def cells(lines, name):
    """The cells of the one line that begins with a name."""
    found = [line for line in lines if line.startswith(f"| {name} |")]
    assert len(found) == 1, lines
    return [cell.strip() for cell in found[0].split("|")[1:-1]]


class Arithmetic(unittest.TestCase):
    def test_median_is_between_the_middle_ones(self):
        self.assertEqual(arithmetic.median([9.0, 1.0, 2.0]), 2.0)
        self.assertEqual(arithmetic.median([9.0, 1.0, 2.0, 4.0]), 3.0)

    def test_spread_is_the_middle_half_over_the_median(self):
        self.assertEqual(arithmetic.spread([5.0]), 0.0)
        self.assertEqual(arithmetic.spread([8.0, 9.0, 10.0, 11.0, 12.0]), 0.2)
        self.assertEqual(arithmetic.spread([10.0, 10.0, 10.0, 10.0, 90.0]), 0.0)

    def test_exponent_is_that_of_the_power(self):
        self.assertAlmostEqual(arithmetic.exponent([(1, 3.0), (10, 30.0), (100, 300.0)]), 1.0)
        self.assertAlmostEqual(arithmetic.exponent([(2, 5.0), (4, 20.0), (8, 80.0)]), 2.0)
        self.assertAlmostEqual(arithmetic.exponent([(10, 7.0), (1000, 7.0)]), 0.0)

    def test_exponent_fits_all_points(self):
        # Slopes of 1 and 2 between neighbours at equal distances.
        self.assertAlmostEqual(arithmetic.exponent([(1, 1.0), (10, 10.0), (100, 1000.0)]), 1.5)


class Rows(unittest.TestCase):
    def lines(self, row, **figures):
        return page(**figures).section_lines(Section("Title", "Text.", (row,)))

    def test_ratio_is_that_of_medians(self):
        row = Row("`check`", "ours", "a peer", "theirs", 0.5)
        lines = self.lines(row, jobs={"ours": samples(3.0, 1.0, 2.0), "theirs": samples(9.0, 8.0, 5.0)})
        self.assertEqual(lines[:4], ["## Title", "", "Text.", ""])
        self.assertEqual(cells(lines, "`check`"), ["`check`", "2 ms", "a peer", "8 ms", "0.25", "0.5", "–", "met"])

    def test_missed_goal_has_its_reason(self):
        row = Row("`check`", "ours", "a peer", "theirs", 0.5)
        jobs = {"ours": samples(6.0), "theirs": samples(8.0)}
        self.assertEqual(cells(self.lines(row, jobs=jobs), "`check`")[-1], "**missed**: no reason is known")
        reasons = {"Title: `check` / a peer": "it has to"}
        self.assertEqual(cells(self.lines(row, jobs=jobs, reasons=reasons), "`check`")[-1], "**missed**: it has to")

    def test_goals_are_counted(self):
        jobs = {"ours": samples(1.0, 3.0, 5.0), "theirs": samples(9.0)}
        rows_with_goals = [Row("a", "ours", "b", "theirs", goal) for goal in (0.3, 0.4, 0.5, None)]
        text = page(jobs).text([Section("Title", "Text.", tuple(rows_with_goals))])
        self.assertIn("\n| goals | 2 met, 1 missed |\n", text)
        self.assertIn("\n| repetitions | half of them lie within 66.7% of the median, of the most unsteady row within 67% |\n", text)

    def test_goal_without_a_peer_is_for_the_figure(self):
        lines = self.lines(Row("start", "ours", goal=10.0), jobs={"ours": samples(10.5)})
        self.assertEqual(cells(lines, "start"), ["start", "10.5 ms", "", "", "", "10 ms", "–", "**missed**: no reason is known"])

    def test_memory_is_beside_the_file(self):
        row = Row("memory", "ours", "the file", "some.json", 1.9, "peak")
        lines = self.lines(row, jobs={"ours": samples(1.0, peak=1_900_000)})
        self.assertEqual(cells(lines, "memory"), ["memory", "1.9 MB", "the file", "1 MB", "1.9", "1.9", "–", "met"])

    def test_pattern_makes_a_line_of_each_match(self):
        row = Row("n = {n}", r"kernel: library/(?P<n>\d+)", "read", "kernel: read/{n}", read="kernel: read/{n}", doubles="{n}")
        benchmarks = {
            "kernel: library/64": samples(0.0014),
            "kernel: read/64": samples(0.001),
            "kernel: library/256": samples(0.0014),
            "kernel: read/256": samples(0.001),
            "kernel: library/9999": samples(1.4),
            "kernel: read/9999": samples(1.0),
            "kernel: library/100": samples(1600.0),
            "kernel: read/100": samples(1000.0),
        }
        lines = self.lines(row, jobs={}, benchmarks=benchmarks)
        self.assertEqual(cells(lines, "n = 64"), ["n = 64", "1.4 µs", "read", "1 µs", "1.4", "", "L1", ""])
        self.assertEqual(cells(lines, "n = 256")[6], "L2")
        self.assertEqual(cells(lines, "n = 9999")[6], "memory")
        self.assertEqual(cells(lines, "n = 100"), ["n = 100", "1.6 s", "read", "1 s", "1.6", "", "instructions", ""])

    def test_bound_of_a_process_is_what_takes_most_of_it(self):
        # 100 ms, 25 of them in the system: 20 page faults of 1 ms; 10 lines out of memory of 2 ms, 30 more of 1 ms out of L2.
        counts = {"ours": {"instructions": 1, "l1Misses": 40, "l2Misses": 10}}
        lines = self.lines(Row("job", "ours"), jobs={"ours": [{"ms": 100.0, "system": 25.0, "faults": 20}]}, counts=counts)
        self.assertEqual(cells(lines, "job")[6], "L2 30%, instructions 25%")
        lines = self.lines(Row("job", "ours"), jobs={"ours": [{"ms": 100.0, "system": 60.0, "faults": 20}]}, counts=counts)
        self.assertEqual(cells(lines, "job")[6], "other work of the system 40%, L2 30%")

    def test_what_is_not_measured_is_missing(self):
        row = Row("`check`", "ours", "a peer", "theirs", 0.5)
        made = page({"ours": samples(1.0)})
        self.assertEqual(made.section_lines(Section("Title", "Text.", (row,))), [])
        self.assertEqual(made.missing, ["Title: everything"])
        made = page({"ours": samples(1.0)})
        made.section_lines(Section("Title", "Text.", (row, Row("alone", "ours"), Row("n = {n}", r"kernel: (?P<n>\d+)"))))
        self.assertEqual(made.missing, ["Title: `check` beside a peer", "Title: n = …"])


class Growths(unittest.TestCase):
    def line(self, growth, benchmarks):
        made = page({}, benchmarks)
        return cells(made.section_lines(Section("Title", "Text.", (growth,))), "units")

    def test_goal_is_for_the_exponent(self):
        growth = Growth("units", r"b: ours/(?P<n>\d+)")
        line = self.line(growth, {"b: ours/1000": samples(30.0), "b: ours/10": samples(0.3), "b: ours/100": samples(3.0)})
        self.assertEqual(line, ["units", "10, 100, 1,000", "300 µs, 3 ms, 30 ms", "1.00", "", "1.10", "met"])

    def test_memory_that_grows_faster_itself_is_allowed_for(self):
        growth = Growth("units", r"b: ours/(?P<n>\d+)", "b: read/{n}")
        ours = {"b: ours/10": samples(1.0), "b: ours/100": samples(20.0)}
        reads = {"b: read/10": samples(0.1), "b: read/100": samples(1.9)}
        self.assertEqual(self.line(growth, {**ours, **reads})[3:], ["1.30", "1.28", "1.38", "met"])
        reads = {"b: read/10": samples(0.1), "b: read/100": samples(1.0)}
        self.assertEqual(self.line(growth, {**ours, **reads})[3:], ["1.30", "1.00", "1.10", "**missed**: no reason is known"])


class Measuring(unittest.TestCase):
    def test_process_is_measured_by_itself(self):
        busy = ["/bin/sh", "-c", "i=0; while [ $i -lt 20000 ]; do i=$((i+1)); done; exit 3"]
        sample = measuring.run(busy, exit_codes=(3,))
        self.assertEqual(sorted(sample), ["faults", "ms", "peak", "system", "wall"])
        self.assertGreater(sample["ms"], 0.0)
        self.assertGreater(sample["peak"], 100_000)

    def test_other_exit_codes_are_failures(self):
        with self.assertRaisesRegex(measuring.Failure, "/bin/false: exit code 1"):
            measuring.run(["/bin/false"])

    def test_terminal_is_one(self):
        measuring.run(["/bin/sh", "-c", "test -t 2"], on_terminal=True)
        measuring.run(["/bin/sh", "-c", "test -t 2"], exit_codes=(1,))


class MeasuringOfOthers(unittest.TestCase):
    """Programs that say what others say, in a folder of their own."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def program(self, name, script):
        path = self.folder / name
        path.write_text("#!/bin/sh\n" + script)
        path.chmod(0o755)
        return path

    def perf_counts(self, *lines):
        self.program("perf", "".join(f"echo '{line}' >&2\n" for line in lines))
        with unittest.mock.patch.dict(os.environ, {"PATH": f"{self.folder}:/usr/bin:/bin"}):
            return measuring.perf_counts(["true"])

    def test_counters_of_the_processor_are_read(self):
        counted = ("7000;;instructions:u;1;100.00;;", "50;;L1-dcache-load-misses:u;1;100.00;;", "6;;LLC-load-misses:u;1;100.00;;")
        self.assertEqual(self.perf_counts("a message", *counted), {"instructions": 7000, "l1Misses": 50, "l2Misses": 6})
        self.assertIsNone(self.perf_counts(*counted[:2], "<not supported>;;LLC-load-misses:u;0;100.00;;"))
        self.assertIsNone(self.perf_counts("Error: access is limited"))

    def test_benchmarks_are_read_in_milliseconds(self):
        runs = [
            {"name": "a", "run_type": "iteration", "cpu_time": 2.0, "time_unit": "us", "iterations": 3, "items": 4.0},
            {"name": "a", "run_type": "iteration", "cpu_time": 4.0, "time_unit": "us", "iterations": 3, "items": 4.0},
            {"name": "a_median", "run_type": "aggregate", "cpu_time": 3.0, "time_unit": "us"},
        ]
        program = self.program("program", f"echo '{json.dumps({'benchmarks': runs})}'")
        found = measuring.run_benchmarks([program], ["a"], 2, 0.1)
        self.assertEqual(list(found), ["a"])
        self.assertEqual([sample["ms"] for sample in found["a"]], [0.002, 0.004])
        self.assertEqual(found["a"][0]["items"], 4.0)

    def test_benchmark_that_fails_is_a_failure(self):
        run = {"name": "a", "run_type": "iteration", "error_occurred": True, "error_message": "they differ"}
        program = self.program("program", f"echo '{json.dumps({'benchmarks': [run]})}'")
        with self.assertRaisesRegex(measuring.Failure, "program: a: they differ"):
            measuring.run_benchmarks([program], ["a"], 1, 0.1)

    def test_benchmarks_that_are_not_built_have_no_names(self):
        self.assertEqual(measuring.benchmark_names(self.folder / "none", ""), [])
        program = self.program("program", "echo read/n:64\necho library/n:64\necho library/n:500")
        self.assertEqual(measuring.benchmark_names(program, "^library"), ["library/n:64", "library/n:500"])


class Data(unittest.TestCase):
    def test_results_file_has_its_tools_in_turn(self):
        with tempfile.TemporaryDirectory() as folder:
            path = pathlib.Path(folder) / "results.json"
            data.write_results(path, iter(['"kind":"bolt"}', '"kind":"clamp"}']), 2, 1)
            units = json.loads(path.read_text())["units"]
        self.assertEqual([unit["name"] for unit in units], ["OP0", "OP1"])
        self.assertEqual(units[0]["id"], "9e3779b9-7f4a-7c15-f39c-c0605cedc835")
        self.assertEqual([unit["tools"] for unit in units], [[{"id": "Bolt 0", "kind": kind}] for kind in ("bolt", "clamp")])

    def test_series_are_the_same_in_every_run(self):
        text = data.tool_texts(2, 1)[0]
        self.assertTrue(text.startswith('"kind":"bolt","series":[{"quantity":"ClampNormalForce","values":[8.2016'), text)
        self.assertEqual(text.count('"quantity"'), 4)
        self.assertEqual(text, data.tool_texts(2, 3)[0])


class InstructionCounts(unittest.TestCase):
    def test_more_than_allowed_is_too_many(self):
        stored = {"check": 1000, "show": 1000}
        self.assertFalse(InstructionCountTest.compare({"check": 500, "show": 1150}, stored))
        self.assertTrue(InstructionCountTest.compare({"check": 1151, "show": 500}, stored))


class Table(unittest.TestCase):
    def test_rows_name_jobs_that_exist(self):
        peers = [row.peer for section in rows.SECTIONS if section.rounds[0] for row in section.rows if isinstance(row, Row)]
        for peer in peers:
            self.assertTrue(peer is None or peer in rows.JOBS or peer.endswith(".json"), peer)

    def test_jobs_are_counted_by_jobs_that_exist(self):
        for job in rows.JOBS.values():
            self.assertIn(job.smaller or "version", rows.JOBS)


if __name__ == "__main__":
    unittest.main()
