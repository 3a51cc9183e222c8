#!/usr/bin/env python3
"""Holds `study trend` against what `show` puts out of the files of the runs, in whatever database.

usage: tests/StudyTrendTest.py PROGRAM DATABASE

Results files, limits and names are those of tests/support/random_results.py. The environment says how many studies, TREND_STUDIES,
and the number of the first, TREND_SEED.
"""

import collections
import csv
import io
import json
import pathlib
import subprocess
import sys

sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent / "support"))

from random_results import RandomResults  # noqa: E402
from random_studies import ENVIRONMENT, check_random_studies  # noqa: E402

SHOWN = ["file", "unit", "unitId", "family", "group", "subGroup", "item", "valid", "key", "column", "value", "valueUnit", "limit"]
SHOWN += ["exceeded", "step", "time", "count", "nans"]


def run(folder, *arguments):
    done = subprocess.run([sys.argv[1], *arguments], cwd=folder, env=ENVIRONMENT, capture_output=True, check=False, timeout=120)
    if done.returncode or done.stderr:
        raise AssertionError(f"{arguments}: exit code {done.returncode}, {done.stderr.decode()}")
    return done.stdout


def records(text):
    return list(csv.DictReader(io.StringIO(text.decode(), newline="")))


def write(folder, name, content):
    # What no database keeps in a text is not stored at all.
    (folder / name).write_text(json.dumps(content).replace("\\u0000", "\\u2400"), encoding="utf-8")


def changed(results, rng):
    for unit in results["units"]:
        for tool in unit["tools"]:
            for series in tool["series"]:
                if series.get("values"):
                    series["values"] = [rng.gauss(0, 500)]
    return results


def check(folder, rng):
    both = RandomResults(rng)
    runs = [f"run {number}" for number in range(4)]
    for name in runs:
        write(folder, name, both.results)
        both.results = changed(both.results, rng)
    write(folder, "limits.json", both.limits)
    limiting = ["--limits", "limits.json", "--teaching"]
    run(folder, "study", "add", sys.argv[2], *runs, *limiting)
    places = collections.defaultdict(list)
    for record in records(run(folder, "show", *runs, *limiting, "--format", "csv")):
        places[record["unit"], record["family"], record["item"], record["key"]].append([record[name] for name in SHOWN])
    count = 0
    for unit, family, item, key in rng.sample(sorted(places), min(8, len(places))):
        names = []
        for option, name in (("--unit", unit), ("--family", family), ("--item", item), ("--key", key)):
            names += [f"{option}={name}"] if name else [option, ""]
        found = [[record[name] for name in SHOWN] for record in records(run(folder, "study", "trend", sys.argv[2], *names, "--format", "csv"))]
        expected = places[unit, family, item, key]
        if sorted(found) != sorted(expected):
            raise AssertionError(f"{names}: expected\n{expected}\nfound\n{found}")
        for form in ("text", "json", "svg"):
            if not run(folder, "study", "trend", sys.argv[2], *names, "--format", form):
                raise AssertionError(f"{names}: nothing as {form}")
        count += len(found)
    run(folder, "study", "remove", sys.argv[2], *runs)
    return count


check_random_studies("TREND", check)
