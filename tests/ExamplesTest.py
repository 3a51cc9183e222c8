#!/usr/bin/env python3
"""The examples do what their pages say.

usage: tests/ExamplesTest.py PROGRAM BUILD COMPILER
"""

import json
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree

EXAMPLES = pathlib.Path(__file__).resolve().parent.parent / "examples"
PROGRAM, BUILD = (pathlib.Path(argument).resolve() for argument in sys.argv[1:3])
COMPILER = sys.argv[3]
PANEL = EXAMPLES / "clamped_panel"
LONGEST = 300  # seconds that a command may take


class ExampleTest(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.folder)
        (self.folder / "bin").mkdir()
        (self.folder / "bin" / "result-tables").symlink_to(PROGRAM)
        self.environment = {**os.environ, "LC_ALL": "C.UTF-8", "LANGUAGE": "en", "PATH": f"{self.folder}/bin:{os.environ['PATH']}"}

    def run_command(self, *command, **environment):
        return subprocess.run(
            [str(word) for word in command],
            cwd=self.folder,
            env={**self.environment, **environment},
            capture_output=True,
            text=True,
            check=False,
            timeout=LONGEST,
        )

    def outcome(self, *command, **environment):
        done = self.run_command(*command, **environment)
        return done.returncode, done.stdout + done.stderr


class HostApplicationTest(ExampleTest):
    EXPECTED = """\
OP10: Bolt 1, Normal Force -42.5 N, limit 30: exceeded
OP20: Bolt 1, Normal Force 28 N, limit 30
told: the limit is 50
OP10: Bolt 1, Normal Force -42.5 N, limit 45
OP10: Bolt 1, Normal Force -42.5 N, limit 45
"""

    def expect_done(self, *command):
        done = self.run_command(*command)
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)
        return done.stdout

    def test_is_built_from_what_is_installed(self):
        source = EXAMPLES / "host_application"
        self.assertLess(len((source / "main.cpp").read_text().splitlines()), 100)
        for component in ("library", "development"):
            self.expect_done("cmake", "--install", BUILD, "--prefix", self.folder / "prefix", "--component", component)
        shutil.copytree(source, self.folder / "source")
        configure = ("cmake", "-G", "Ninja", "-S", "source", "-B", "build", f"-DCMAKE_CXX_COMPILER={COMPILER}")
        self.expect_done(*configure, f"-DCMAKE_PREFIX_PATH={self.folder / 'prefix'}")
        self.expect_done("cmake", "--build", "build")
        self.assertEqual(self.expect_done("build/host_application", "kept.limits"), self.EXPECTED)
        dump = self.expect_done("result-tables", "limits", "dump", "kept.limits")
        self.assertIn("TablePropertiesData", dump)


class PanelTest(ExampleTest):
    FOUND = [("C3", "ClampClosingForce", -1314.547), ("C5", "ClampClosingForce", -1029.041), ("W02", "JoinTangentialForce", 132.8476)]

    def expect_report(self, **environment):
        done = self.run_command(PANEL / "report", "out", **environment)
        self.assertEqual(done.returncode, 1, done.stderr)
        findings = json.loads((self.folder / "out" / "findings.json").read_text())
        self.assertEqual([(one["item"], one["key"]) for one in findings["findings"]], [(item, key) for item, key, _ in self.FOUND])
        for one, (*_, value) in zip(findings["findings"], self.FOUND):
            self.assertAlmostEqual(one["value"], value, places=4)
        self.assertEqual(findings["compared"], 34)
        self.assertIn("C3, Max Closing Force: -1314.547 N, limit 1000 N, step 5, time 0.6\n", done.stdout)
        xml.etree.ElementTree.parse(self.folder / "out" / "report.html")
        return done.stderr

    @unittest.skipUnless(shutil.which("ccx"), "ccx is not installed")
    def test_comes_from_the_solver_to_a_report(self):
        self.assertEqual(self.expect_report(OMP_NUM_THREADS="1"), "")
        self.assertIn("CalculiX", (self.folder / "out" / "solver.log").read_text())
        compare = self.run_command("result-tables", "diff", PANEL / "panel.results.json", "out/panel.results.json", "--abs", "1e-4")
        self.assertEqual((compare.returncode, compare.stderr), (0, ""), compare.stdout)

    def test_takes_the_print_that_was_kept_where_there_is_no_solver(self):
        for tool in ("bash", "sed", "realpath", "dirname", "mkdir", "cp", "nproc"):
            (self.folder / "bin" / tool).symlink_to(shutil.which(tool))
        said = self.expect_report(PATH=str(self.folder / "bin"))
        self.assertEqual(said, "report: found no ccx; taking the print that was kept\n")
        self.assertEqual((self.folder / "out" / "panel.results.json").read_text(), (PANEL / "panel.results.json").read_text())

    def test_says_what_it_takes(self):
        code, said = self.outcome(PANEL / "report")
        self.assertEqual(code, 2)
        self.assertIn("usage: examples/clamped_panel/report FOLDER\n", said)


class GateTest(ExampleTest):
    def setUp(self):
        super().setUp()
        self.results = json.loads((PANEL / "panel.results.json").read_text())
        for folder in ("runs", "accepted"):
            (self.folder / folder).mkdir()
            self.write(f"{folder}/panel.json")

    def write(self, name):
        (self.folder / name).write_text(json.dumps(self.results))

    def scale_closing_forces(self, factor):
        for tool in self.results["units"][0]["tools"]:
            for series in tool.get("series", []):
                if series["quantity"] == "ClampClosingForce":
                    series["pairs"] = [[factor * value, time] for value, time in series["pairs"]]

    def gate(self, **environment):
        return self.outcome(EXAMPLES / "ci_gate" / "gate", "runs", "accepted", "reports", **environment)

    def failures(self, report):
        return len(list(xml.etree.ElementTree.parse(self.folder / "reports" / report).iter("failure")))

    def test_lets_a_run_pass_that_is_as_accepted(self):
        self.write("runs/second.json")
        self.assertEqual(self.gate(), (0, "limits: 2 runs pass\npanel: as accepted\nsecond: new\n"))
        self.assertEqual(sorted(os.listdir(self.folder / "reports")), ["check.html", "check.xml", "panel.diff.html", "panel.diff.xml"])
        self.assertEqual((self.failures("check.xml"), self.failures("panel.diff.xml")), (0, 0))

    def test_stops_a_run_that_differs_from_the_accepted_one(self):
        self.scale_closing_forces(1.02)
        self.write("runs/panel.json")
        self.assertEqual(self.gate(), (1, "limits: 1 runs pass\npanel: exit code 1, see reports/panel.diff.html\n"))
        self.assertEqual((self.failures("check.xml"), self.failures("panel.diff.xml")), (0, 6))
        self.assertEqual(self.gate(TOLERANCE="0.05")[0], 0)

    def test_stops_a_run_that_goes_beyond_a_limit(self):
        self.scale_closing_forces(1.1)
        self.write("runs/panel.json")
        self.write("accepted/panel.json")
        self.assertEqual(self.gate(), (1, "limits: exit code 1, see reports/check.html\npanel: as accepted\n"))
        self.assertEqual(self.failures("check.xml"), 1)

    def test_stops_when_an_accepted_run_is_gone(self):
        self.write("accepted/gone.json")
        self.assertEqual(self.gate(), (1, "limits: 1 runs pass\npanel: as accepted\ngone: accepted, but not run\n"))

    def test_says_what_could_not_be_done_whatever_else_was_found(self):
        (self.folder / "runs" / "broken.json").write_text("{")
        self.write("accepted/gone.json")
        code, said = self.gate()
        self.assertEqual(code, 2)
        self.assertIn("limits: exit code 2, see reports/check.html\nbroken: new\npanel: as accepted\n", said)
        shutil.rmtree(self.folder / "runs")
        self.assertEqual(self.gate(), (2, "gate: expected results files (*.json) in runs, found none\n"))

    def test_stops_without_the_program(self):
        (self.folder / "bin" / "result-tables").unlink()
        code, said = self.gate()
        self.assertEqual(code, 2)
        self.assertIn("result-tables: command not found\n", said)

    def test_says_that_nothing_was_compared(self):
        self.results["units"][0]["tools"] = []
        self.results["units"][0]["steps"] = []
        del self.results["units"][0]["visibleSteps"]
        self.write("runs/panel.json")
        self.write("accepted/panel.json")
        self.assertEqual(self.gate(), (3, "limits: exit code 3, see reports/check.html\npanel: as accepted\n"))

    def test_is_what_the_workflow_runs(self):
        workflow = (EXAMPLES / "ci_gate" / "workflow.yml").read_text()
        self.assertIn("      - run: ./gate runs accepted reports\n", workflow)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
