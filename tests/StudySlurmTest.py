#!/usr/bin/env python3
"""The example of a job array, examples/slurm, on the cluster that the environment names (tests/support/with-slurm.sh).

usage: KESTREL_PROGRAM=PROGRAM [STUDY_KIND=server] tests/StudySlurmTest.py
"""

import json
import os
import pathlib
import subprocess
import sys
import time

sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent / "support"))

import study_testing  # noqa: E402
from study_testing import StudyTest, expect_whole, shown_values  # noqa: E402

SUBMIT = pathlib.Path(__file__).resolve().parent.parent / "examples/slurm/submit"


def state_of(job):
    done = subprocess.run(["scontrol", "show", "job", "--oneliner", job], capture_output=True, check=True)
    return [word.split(b"=")[1].decode() for word in done.stdout.split() if word.startswith(b"JobState=")]


class StudySlurmTest(StudyTest):
    def setUp(self):
        super().setUp()
        self.study = self.new_study()
        self.work = self.folder / "work"
        self.names = [self.write(f"run {number}.json", number, bolts=20 if number else 400) for number in range(12)]

    def submit(self):
        """Submits, waits, and returns how the report ended and what the tasks said, by task."""
        path = f"{pathlib.Path(study_testing.PROGRAM).parent}:{os.environ['PATH']}"
        # The large file is alone, six or so of the others are together.
        environment = {**study_testing.ENVIRONMENT, "PATH": path, "SLICE_MEGABYTES": "0.045"}
        done = subprocess.run(
            [SUBMIT, self.study.name, "work", *self.names], cwd=self.folder, env=environment, capture_output=True, check=False, timeout=60
        )
        self.assertEqual((done.returncode, done.stderr), (0, b""))
        report = done.stdout.split()[1].decode()
        begun = time.monotonic()
        while state_of(report)[0] in ("PENDING", "RUNNING", "COMPLETING", "CONFIGURING"):
            self.assertLess(time.monotonic() - begun, 120)
            time.sleep(0.1)
        slices = (self.work / "slices").read_text().split()
        said = {number: (self.work / f"task-{number}.out").read_text().splitlines() for number in range(1, len(slices) + 1)}
        return state_of(report)[0], said

    def expected(self):
        return {name.removesuffix(".json"): shown_values(self.folder, name) for name in self.names}

    def test_an_array_adds_slices_and_a_second_one_what_is_missing(self):
        state, said = self.submit()
        self.assertEqual(state, "COMPLETED", (self.work / "report.out").read_text())
        self.assertGreaterEqual(len(said), 3)
        self.assertLessEqual(len(said), 6)
        self.assertEqual(said[1], ["run 0: added, 2000 values"])
        lines = sorted(line for lines in said.values() for line in lines)
        self.assertEqual(lines, sorted(["run 0: added, 2000 values", *(f"run {number}: added, 100 values" for number in range(1, 12))]))
        expect_whole(self.folder, self.study, self.expected())
        check = json.loads(study_testing.run(self.folder, "check", "--format", "json", *self.names).stdout)
        merged = json.loads((self.work / "findings.json").read_text())
        self.assertEqual(merged["compared"], check["compared"])
        order = lambda finding: json.dumps(finding, sort_keys=True)  # noqa: E731
        self.assertEqual(sorted(merged["findings"], key=order), sorted(check["findings"], key=order))
        self.assertGreater(len(merged["findings"]), 0)
        self.assertEqual(len((self.work / "runs.csv").read_text().splitlines()), 1 + 12)
        self.assertEqual(len((self.work / "worst.csv").read_text().splitlines()), 1 + 20)
        self.assertIn("run 11", (self.work / "report.html").read_text())

        # One is changed: the others are passed over.
        self.write("run 5.json", 55)
        state, said = self.submit()
        self.assertEqual(state, "COMPLETED", (self.work / "report.out").read_text())
        lines = [line for lines in said.values() for line in lines if not line.endswith(": checked before")]
        self.assertEqual(lines.count("run 5: replaced, as the content is another; 100 values"), 1)
        self.assertEqual(len([line for line in lines if line.endswith(": unchanged, as the content is the same")]), 11)
        self.assertEqual(len(lines), 12)
        expect_whole(self.folder, self.study, self.expected())

    def test_a_file_that_cannot_be_read_stops_no_other(self):
        (self.folder / "run 7.json").write_text("{")
        state, said = self.submit()
        self.assertEqual(state, "FAILED")
        self.assertIn("not checked to the end", (self.work / "report.out").read_text())
        self.assertEqual(len([line for lines in said.values() for line in lines if line.startswith("result-tables: run 7.json:")]), 2)
        self.names.remove("run 7.json")
        expect_whole(self.folder, self.study, self.expected())

        self.write("run 7.json", 7)
        self.names.append("run 7.json")
        state, _ = self.submit()
        self.assertEqual(state, "COMPLETED", (self.work / "report.out").read_text())
        expect_whole(self.folder, self.study, self.expected())


if __name__ == "__main__":
    study_testing.main()
