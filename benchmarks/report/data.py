#!/usr/bin/env python3
"""Makes the data that the benchmarks of the whole program read: the same in every run, as the seed is fixed.

usage: data.py FOLDER

A tool has four series of, mostly, 100 values with nine digits, 4.8 kB of text. A folder that is there is kept, unless it was
made by another version of this generator.
"""

import itertools
import pathlib
import random
import shutil
import sys
import uuid

VERSION = "5"  # of what is made
DECK = 20_000  # different tools; a file with more has them again under other names
# Of each quantity how far its forces deviate from 0, in N. One normal force in 60,000 is beyond the limit of bolts, 30 N.
QUANTITIES = {
    "ClampNormalForce": 7.0,
    "ClampClosingForce": 100.0,
    "ClampSupportingForce": 100.0,
    "ClampTangentialForce": 100.0,
}
CSV_COLUMNS = 80
CSV_ROWS = {"table": 100_000, "table-tenth": 10_000}
PRINT_SETS = 40
PRINT_TIMES = {"print": 4_000, "print-tenth": 400}

# Results files by name: units, tools of each, values of each series.
RESULTS = {
    "tools-2000": (1, 2_000, 100),
    "tools-20000": (1, 20_000, 100),
    "tools-200000": (1, 200_000, 100),
    "steps-10": (1, 2_000, 10),
    "steps-1000": (1, 2_000, 1_000),
    "units-10": (10, 20, 100),
    "units-100": (100, 20, 100),
    "units-1000": (1_000, 20, 100),
    "units-100-large": (100, 200, 100),
    "values-1000000": (1, 250_000, 1),
}


def numbers(generator, count, deviation):
    return [f"{generator.gauss(0.0, deviation):.9g}" for _ in range(count)]


def tool_texts(values, count):
    """What follows the identifiers of so many tools, with so many values in each series."""
    generator = random.Random(20261122)

    def series(quantity, deviation):
        return f'{{"quantity":"{quantity}","values":[{",".join(numbers(generator, values, deviation))}]}}'

    return ['"kind":"bolt","series":[' + ",".join(itertools.starmap(series, QUANTITIES.items())) + "]}" for _ in range(count)]


def unit_id(number):
    return uuid.UUID(int=(number + 1) * 0x9E3779B97F4A7C15F39CC0605CEDC835 % (1 << 128))


def write_results(path, texts, units, tools):
    """A results file whose tools take the texts one after the other."""
    with path.open("w") as file:
        file.write('{"format":"simulation-results","version":1,"units":[')
        for unit in range(units):
            file.write(f'{"," if unit else ""}\n{{"id":"{unit_id(unit)}","name":"OP{unit}","tools":[')
            for tool in range(tools):
                file.write(f'{"," if tool else ""}\n{{"id":"Bolt {tool}",{next(texts)}')
            file.write("]}")
        file.write("]}\n")


def write_all_results(folder):
    for values in {values for _, _, values in RESULTS.values()}:
        sizes = {name: (units, tools) for name, (units, tools, count) in RESULTS.items() if count == values}
        texts = tool_texts(values, min(DECK, max(units * tools for units, tools in sizes.values())))
        for name, (units, tools) in sizes.items():
            write_results(folder / f"{name}.json", itertools.cycle(texts), units, tools)


def write_map(path, series):
    """A map that feeds one clamp with each history."""
    tools = ",\n".join(
        f'{{"id":"{name}","kind":"clamp","series":[{{"quantity":"ClampNormalForce","form":"values",'
        f'"sum":[{{"history":"{history}"}}]}}]}}'
        for name, history in series
    )
    path.write_text(
        f'{{"format":"import-map","version":1,"units":[{{"id":"{unit_id(0)}","name":"OP20","tools":[\n{tools}]}}]}}\n'
    )


def write_csv(folder):
    """Forces over time, a column for each of 80 clamps."""
    names = [f"C{column}.fz" for column in range(CSV_COLUMNS)]
    for file_name, rows in CSV_ROWS.items():
        generator = random.Random(20261123)
        with (folder / f"{file_name}.csv").open("w") as file:
            file.write(",".join(["time", *names]) + "\n")
            for row in range(rows):
                file.write(",".join([f"{row / 1000:.3f}", *numbers(generator, CSV_COLUMNS, 100.0)]) + "\n")
    write_map(folder / "table.map.json", [(name.removesuffix(".fz"), name) for name in names])


def write_print(folder):
    """Forces at sets of one node, as CalculiX prints them."""
    for file_name, times in PRINT_TIMES.items():
        generator = random.Random(20261124)
        with (folder / f"{file_name}.dat").open("w") as file:
            for time in range(1, times + 1):
                for number in range(PRINT_SETS):
                    forces = "".join(f" {generator.gauss(0.0, 100.0):13.6E}" for _ in range(3))
                    file.write(f"\n forces (fx,fy,fz) for set C{number} and time {time / 1000:14.7E}\n\n{number:10d}{forces}\n")


def main(folder):
    stamp = folder / "version"
    if stamp.is_file() and stamp.read_text() == VERSION:
        return
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    write_all_results(folder)
    write_csv(folder)
    write_print(folder)
    stamp.write_text(VERSION)


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    main(pathlib.Path(sys.argv[1]))
