#!/usr/bin/env python3
"""Holds `study worst` against the utilisations of all values that `show` puts out of the files of the runs, in whatever database.

usage: tests/StudyWorstTest.py PROGRAM DATABASE

Results files, limits and names are those of tests/support/random_results.py; many values are as far from their limits as others. The
environment says how many studies, WORST_STUDIES, and the number of the first, WORST_SEED.
"""

import json
import math
import pathlib
import subprocess
import sys

sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent / "support"))

from random_results import RandomResults  # noqa: E402
from random_studies import ENVIRONMENT, check_random_studies  # noqa: E402



def run(folder, *arguments):
    done = subprocess.run([sys.argv[1], *arguments], cwd=folder, env=ENVIRONMENT, capture_output=True, check=False, timeout=120)
    if done.returncode or done.stderr:
        raise AssertionError(f"{arguments}: exit code {done.returncode}, {done.stderr.decode()}")
    return done.stdout


def number_of(member):
    return float(member.replace("Infinity", "inf")) if isinstance(member, str) else float(member)


def utilisation_of(value, limit):
    if value == 0 and limit == 0:
        return 0.0
    if math.isinf(value) and math.isinf(limit) or math.isnan(limit):
        return None
    return abs(value) / abs(limit) if limit else math.inf


def values_of(table, group):
    """The values with a limit and a number of a section, of valid items, with their places in the table."""
    for sub_group in group["subGroups"]:
        for item in sub_group["items"]:
            for index, column in enumerate(group["columns"][: len(item["maxValues"])]):
                if column["limit"] is None or column["limit"]["value"] is None or not item["valid"] or not item["counts"][index]:
                    continue
                value, limit = (number_of(number) for number in (item["maxValues"][index], column["limit"]["value"]))
                utilisation = utilisation_of(value, limit)
                if utilisation is not None:
                    place = (table["unit"]["name"], table["unit"]["id"], table["family"], sub_group["name"], item["name"], column["key"])
                    yield utilisation, place, value, limit, item["steps"][index], item["times"][index]


def expected(folder, runs, limiting, options, top):
    values = []
    for name in runs:
        for table in json.loads(run(folder, "show", name, *limiting, *options, "--format", "json"))["tables"]:
            for group in table["groups"]:
                values += [(name, *value) for value in values_of(table, group)]
    return sorted(values, key=lambda value: -value[1])[:top]


def found(folder, options, top):
    worst = json.loads(run(folder, "study", "worst", sys.argv[2], *options, "--top", str(top), "--format", "json"))["worst"]
    return [
        (
            value["run"],
            number_of(value["utilisation"]),
            tuple(value[member] for member in ("unit", "unitId", "family", "subGroup", "item", "key")),
            number_of(value["value"]),
            number_of(value["limit"]),
            value["step"],
            value["time"],
        )
        for value in worst
    ]


def with_few_numbers(results, rng):
    for unit in results["units"]:
        for tool in unit["tools"]:
            for series in tool["series"]:
                if "values" in series and rng.random() < 0.7:
                    series["values"] = [rng.choice([0, 5, -5, 10, 3])]
    return results


def write(folder, name, content):
    # What no database keeps in a text is not stored at all.
    (folder / name).write_text(json.dumps(content).replace("\\u0000", "\\u2400"), encoding="utf-8")


def check(folder, rng):
    both = RandomResults(rng)
    # Numbers that are NaN stand for none here.
    write(folder, "limits.json", both.limits)
    limiting = ["--limits", "limits.json"]
    runs = []
    for number in range(rng.randrange(1, 6)):
        results = both.results if rng.random() < 0.4 else RandomResults(rng).results
        runs.append(f"run {number}")
        both.limits["units"] = []
        write(folder, "limits.json", both.limits)
        write(folder, runs[-1], with_few_numbers(results, rng))
    run(folder, "study", "add", sys.argv[2], *runs, "--teaching", *limiting)
    count = 0
    for options in ([], ["--teaching"], ["--family", "Bolts", "--family", "JoiningTongs"]):
        for top in (1, 2, 5, 20, 1000):
            right, stored = expected(folder, runs, limiting, options, top), found(folder, options, top)
            if right != stored:
                raise AssertionError(f"{options} --top {top}: expected\n{right}\nfound\n{stored}")
            count += len(right)
    run(folder, "study", "remove", sys.argv[2], *runs)
    return count


check_random_studies("WORST", check)
