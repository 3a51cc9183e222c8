#!/usr/bin/env python3
"""Holds what `study compare` says of two runs against what `diff` says of their files, byte by byte, in whatever database.

usage: tests/StudyCompareTest.py PROGRAM DATABASE

Results files, limits and names are those of tests/support/random_results.py and the sample of examples/. The environment says how
many pairs of files, COMPARE_PAIRS, and the number of the first, COMPARE_SEED.
"""

import copy
import json
import os
import pathlib
import random
import re
import subprocess
import sys
import tempfile

sys.dont_write_bytecode = True
TESTS = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(TESTS / "support"))

from random_results import RandomResults  # noqa: E402
from random_studies import ENVIRONMENT  # noqa: E402

FORMS = [["--format", form] for form in ("text", "csv", "json", "junit", "html")] + [["--csv", "excel-de"]]
OPTIONS = [[], ["--abs", "0.5"], ["--rel", "0.01"], ["--teaching"], ["--family", "Bolts", "--family", "Pilots"], ["--digits", "17", "--colour", "always"]]
SAMPLES = [TESTS.parent / "examples" / name for name in ("clamped_panel/panel.results.json", "door_line/door_line.results.json")]


def run(folder, *arguments, codes=(0,)):
    done = subprocess.run([sys.argv[1], *arguments], cwd=folder, env=ENVIRONMENT, capture_output=True, check=False, timeout=120)
    if done.returncode not in codes or done.stderr:
        raise AssertionError(f"{arguments}: exit code {done.returncode}, {done.stderr.decode()}")
    return done.returncode, done.stdout


def changed(results, rng):
    """The same with other numbers here and there, and without some tools."""
    results = copy.deepcopy(results)
    for unit in results["units"]:
        unit["tools"] = [tool for tool in unit.get("tools", []) if rng.random() < 0.95]
        for tool in unit["tools"]:
            for series in tool.get("series", []):
                if series.get("values") and rng.random() < 0.2:
                    series["values"] = [value * 1.005 if isinstance(value, float) and abs(value) < 1e300 else value for value in series["values"]]
                if series.get("values") and rng.random() < 0.1:
                    series["values"] = [rng.gauss(0, 900)]
        for step in filter(None, unit.get("steps", [])):
            for join in step.get("joins", []):
                if rng.random() < 0.1:
                    join["state"] = rng.randrange(12)
    return results


def pairs():
    for sample in SAMPLES:
        results = json.loads(sample.read_text(encoding="utf-8"))
        yield results, results, None
        yield results, changed(results, random.Random(1)), None
    first = int(os.environ.get("COMPARE_SEED", "1"))
    for seed in range(first, first + int(os.environ.get("COMPARE_PAIRS", "4"))):
        rng = random.Random(seed)
        both = RandomResults(rng)
        yield both.results, changed(both.results, rng), both.limits if rng.random() < 0.7 else None


def without_files(html):
    """The report without its list of files: studies know neither the names of limits nor units without elements."""
    return re.sub(rb'<table class="files">.*?</table>', b"", html, count=1, flags=re.DOTALL)


def write(folder, name, results):
    # What no database keeps in a text is not stored at all.
    text = json.dumps(results).replace("\\u0000", "\\u2400")
    (folder / name).write_text(text, encoding="utf-8")


def compare(folder, study, before, after, limits):
    write(folder, "before", before)
    write(folder, "after", after)
    limiting = []
    if limits is not None:
        write(folder, "limits.json", limits)
        limiting = ["--limits", "limits.json"]
    run(folder, "study", "add", study, "before", "after", "--teaching", *limiting)
    for options in OPTIONS:
        for form in FORMS:
            expected = run(folder, "diff", "before", "after", *limiting, *options, *form, codes=(0, 1))
            found = run(folder, "study", "compare", study, "before", "after", *options, *form, codes=(0, 1))
            if "html" in form:
                expected, found = [(code, without_files(page)) for code, page in (expected, found)]
            if found != expected:
                raise AssertionError(f"{study} {options} {form}: expected\n{expected}\nfound\n{found}")


def main():
    for before, after, limits in pairs():
        with tempfile.TemporaryDirectory() as folder:
            compare(pathlib.Path(folder), sys.argv[2], before, after, limits)


main()
