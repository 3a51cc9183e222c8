#!/usr/bin/env python3
"""Counts the instructions of three small jobs of the program and compares them with those that are stored.

usage: tests/InstructionCountTest.py PROGRAM [--renew]

A job that takes more than 1.15 times the stored number is a failure: it has become slower, whatever the clock of a busy
machine says. With --renew the numbers of today are stored: after a change that is meant to be, or that made a job faster.

Valgrind counts, on a processor of its own making. That has the caches and the name of one model wherever it runs, so
that the routines which programs and the C library choose for a processor are the same ones: those for AVX2, if the machine has it.
Where it has not (exit code 77, skipped), or another compiler has made the program, the numbers are others.
"""

import json
import pathlib
import re
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parent.parent
sys.dont_write_bytecode = True
sys.path.insert(0, str(ROOT / "benchmarks/report"))

import data  # noqa: E402

STORED = ROOT / "tests/data/instruction_counts.json"
PANEL = ROOT / "examples/clamped_panel"
MOST = 1.15  # times the stored number
SKIPPED = 77

JOBS = {
    "check": ["check", "results.json"],
    "show": ["show", "--format", "csv", "results.json"],
    "import": ["import", "calculix", f"{PANEL}/panel.dat", "--map", f"{PANEL}/panel.map.json"],
}


def count(program, arguments, folder):
    """The instructions of a job, which finds values beyond limits or nothing."""
    valgrind = ["valgrind", "--tool=callgrind", "--callgrind-out-file=/dev/null", "--log-file=valgrind.log"]
    environment = {"LC_ALL": "C", "PATH": "/usr/bin:/bin"}
    job = subprocess.run([*valgrind, program, *arguments], cwd=folder, env=environment, capture_output=True, text=True)
    if job.returncode not in (0, 1) or job.stderr:
        sys.exit(f"{' '.join(arguments)}: exit code {job.returncode}: {job.stderr}")
    return int(re.search(r"Collected : (\d+)", (folder / "valgrind.log").read_text()).group(1))


def count_all(program):
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        data.write_results(folder / "results.json", iter(data.tool_texts(100, 500)), 1, 500)
        return {job: count(program, arguments, folder) for job, arguments in JOBS.items()}


def compare(counts, stored):
    """A line for each job, and whether one of them takes too many instructions."""
    fails = False
    for job, instructions in counts.items():
        ratio = instructions / stored[job]
        fails = fails or ratio > MOST
        print(f"{job}: {instructions:,} instructions, {ratio:.3f} times the stored number{' (too many)' if ratio > MOST else ''}")
    return fails


def main(program, renew):
    if "avx2" not in pathlib.Path("/proc/cpuinfo").read_text():
        print("skipped: the numbers are those of a processor with AVX2")
        return SKIPPED
    counts = count_all(program.resolve())
    if renew:
        STORED.write_text(json.dumps(counts, indent=2) + "\n")
        return 0
    return 1 if compare(counts, json.loads(STORED.read_text())) else 0


if __name__ == "__main__":
    if len(sys.argv) not in (2, 3) or sys.argv[2:] not in ([], ["--renew"]):
        sys.exit(__doc__)
    sys.exit(main(pathlib.Path(sys.argv[1]), sys.argv[2:] == ["--renew"]))
