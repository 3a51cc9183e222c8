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
import os
import pathlib
import random
import subprocess
import sys
import tempfile

sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent / "support"))

from random_results import RandomResults  # noqa: E402

ENVIRONMENT = {name: value for name, value in os.environ.items() if name.startswith(("PG", "PATH", "ASAN", "UBSAN"))} | {
    "LC_ALL": "C.UTF-8",
    "TMPDIR": tempfile.gettempdir(),
}
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


def main():
    first = int(os.environ.get("TREND_SEED", "1"))
    count = 0
    for seed in range(first, first + int(os.environ.get("TREND_STUDIES", "4"))):
        with tempfile.TemporaryDirectory() as folder:
            count += check(pathlib.Path(folder), random.Random(seed))
    if count == 0:
        raise AssertionError("expected values, found none")
    print(count, "values compared")


main()
