"""What the tests of studies share: the program, databases as people's own SQL sees them, runs, and what must hold of every study."""

import contextlib
import csv
import io
import itertools
import json
import os
import pathlib
import random
import re
import shutil
import sqlite3
import struct
import subprocess
import sys
import tempfile
import unittest
import uuid

csv.field_size_limit(sys.maxsize)
PROGRAM = os.environ.get("KESTREL_PROGRAM", "")
ENVIRONMENT = {**os.environ, "LC_ALL": "C.UTF-8", "LANGUAGE": "en", "NO_COLOR": "1"}
LONGEST = 300  # seconds that a process of a test may take

# Each counts what must not be there.
INVARIANTS = {
    "runs whose number of values is another": "SELECT count(*) FROM study_runs r WHERE value_count <> "
    "(SELECT count(*) FROM study_values v WHERE v.run_id = r.id)",
    "runs whose view has another number of rows": "SELECT count(*) FROM study_runs r WHERE value_count <> "
    "(SELECT count(*) FROM result_values v WHERE v.run = r.name)",
    "values that are there twice": "SELECT count(*) FROM (SELECT 1 FROM study_values "
    "GROUP BY run_id, element_no, column_no HAVING count(*) > 1) twice",
    "values without a run": "SELECT count(*) FROM study_values WHERE run_id NOT IN (SELECT id FROM study_runs)",
    "columns without a run": "SELECT count(*) FROM study_run_columns WHERE run_id NOT IN (SELECT id FROM study_runs)",
    "labels without a run": "SELECT count(*) FROM study_labels WHERE run_id NOT IN (SELECT id FROM study_runs)",
    "layouts without a run": "SELECT count(*) FROM study_layouts WHERE id NOT IN (SELECT layout_id FROM study_runs)",
    "sections without a layout": "SELECT count(*) FROM study_sections WHERE layout_id NOT IN (SELECT id FROM study_layouts)",
    "columns without a layout": "SELECT count(*) FROM study_columns WHERE layout_id NOT IN (SELECT id FROM study_layouts)",
    "elements without a layout": "SELECT count(*) FROM study_elements WHERE layout_id NOT IN (SELECT id FROM study_layouts)",
}

VIEW = "unit, unit_id, family, section, sub_group, item, valid, quantity, value, value_unit, limit_value, exceeded, step, time, count, nans"
SHOWN = "unit unitId family group subGroup item valid key value valueUnit limit exceeded step time count nans".split()
NUMBERS = {"value", "limit", "time"}


def command(*arguments):
    return [PROGRAM, *map(str, arguments)]


def run(folder, *arguments, **more):
    """A process of the program that has ended."""
    return subprocess.run(
        command(*arguments), cwd=folder, env={**ENVIRONMENT, **more}, capture_output=True, check=False, timeout=LONGEST
    )


def expect_done(done):
    if done.returncode != 0 or done.stderr:
        raise AssertionError(f"{done.args}: exit code {done.returncode}, {done.stderr.decode()}")
    return done.stdout


def expect_one_line(done):
    """What a process says that could not do its work: one line of text."""
    line = done.stderr.decode()
    if done.returncode != 2 or not line.startswith("result-tables: ") or line.count("\n") != 1 or not line.endswith("\n"):
        raise AssertionError(f"{done.args}: expected one line and exit code 2, found {done.returncode} and {line!r}")
    return line


def output_of(folder, *arguments):
    return expect_done(run(folder, *arguments))


class Together:
    """Processes that begin their work at the same moment, when the block ends. `ended` has them with what they said."""

    def __enter__(self):
        self.gate, self.opener = os.pipe()
        self.processes, self.ended = [], []
        return self

    def start(self, folder, *arguments):
        self.processes.append(
            subprocess.Popen(
                ["/bin/sh", "-c", 'read -r _; exec "$@"', "sh", *command(*arguments)],
                cwd=folder,
                env=ENVIRONMENT,
                stdin=self.gate,
                stdout=subprocess.PIPE,
                stderr=subprocess.PIPE,
            )
        )

    def __exit__(self, *_):
        os.close(self.opener)
        os.close(self.gate)
        for process in self.processes:
            out, err = process.communicate(timeout=LONGEST)
            self.ended.append(subprocess.CompletedProcess(process.args, process.returncode, out, err))


# ---- databases


class FileStudy:
    """A study in a file, read by SQLite of Python."""

    numbers = itertools.count()

    def __init__(self, folder):
        self.name = f"study-{next(self.numbers)}.db"
        self.path = pathlib.Path(folder) / self.name

    def rows(self, sql):
        with contextlib.closing(sqlite3.connect(self.path, timeout=60)) as connection:
            return connection.execute(sql).fetchall()

    def values(self, run_name):
        """Rows of the view, numbers as their bits."""
        with contextlib.closing(sqlite3.connect(self.path, timeout=60)) as connection:
            found = connection.execute(f"SELECT {VIEW} FROM result_values WHERE run = ?", [run_name])
            return sorted(row_of(values) for values in found)

    def is_there(self):
        return self.path.exists() and bool(self.rows("SELECT 1 FROM sqlite_schema WHERE name = 'result_values'"))

    def check(self):
        if not self.path.exists():
            return
        found = self.rows("PRAGMA integrity_check")
        if found != [("ok",)]:
            raise AssertionError(f"integrity: {found}")

    def drop(self):
        for suffix in ("", "-wal", "-shm", "-journal"):
            pathlib.Path(f"{self.path}{suffix}").unlink(missing_ok=True)


class ServerStudy:
    """A database of the server that the environment names, read by psql."""

    numbers = itertools.count()

    def __init__(self, _):
        self.database = f"study_{os.getpid()}_{next(self.numbers)}"
        self.psql("postgres", f"CREATE DATABASE {self.database}")
        self.name = f"postgresql:///{self.database}"

    @staticmethod
    def psql(database, sql):
        done = subprocess.run(
            ["psql", "--no-psqlrc", "--quiet", "--csv", "--tuples-only", "--set=ON_ERROR_STOP=1", "--pset=null=\a", "--dbname", database],
            input=sql.encode(),
            env=ENVIRONMENT,
            capture_output=True,
            check=False,
            timeout=LONGEST,
        )
        if done.returncode != 0:
            raise AssertionError(f"{sql}: {done.stderr.decode()}")
        return [[None if cell == "\a" else cell for cell in row] for row in csv.reader(io.StringIO(done.stdout.decode(), newline=""))]

    def rows(self, sql):
        return [tuple(int(cell) if cell and re.fullmatch(r"0|-?[1-9]\d*", cell) else cell for cell in row) for row in self.psql(self.database, sql)]

    def values(self, run_name):
        quoted = "E'" + run_name.replace("\\", "\\\\").replace("'", "\\'") + "'"
        return sorted(row_of(values) for values in self.psql(self.database, f"SELECT {VIEW} FROM result_values WHERE run = {quoted}"))

    def is_there(self):
        return self.rows("SELECT count(*) FROM pg_views WHERE viewname = 'result_values'") == [(1,)]

    def check(self):
        """A server recovers by itself."""

    def drop(self):
        self.psql("postgres", f"DROP DATABASE {self.database} WITH (FORCE); CREATE DATABASE {self.database}")


# ---- values


def bits(number):
    """A number as text that only equal bits share; every NaN is one."""
    if number is None or number == "":
        return ""
    value = float(number)
    return "nan" if value != value else struct.pack(">d", value).hex()


def row_of(values):
    """A row as the view and `show --format csv` both have it, all texts."""
    row = {}
    for name, value in zip(SHOWN, values):
        if name in NUMBERS:
            row[name] = bits(value)
        elif name in ("valid", "exceeded"):
            row[name] = {"true": "1", "false": "0"}.get(value, str(value))
        else:
            row[name] = "" if value is None else str(value)
    return tuple(row.values())


def shown_values(folder, results, *options):
    """What `show` says of a results file."""
    text = output_of(folder, "show", results, *options, "--format", "csv").decode()
    return sorted(row_of([row[name] for name in SHOWN]) for row in csv.DictReader(io.StringIO(text, newline="")))


def listed(folder, study):
    """Runs by name, as `study list` has them."""
    return {one["run"]: one for one in json.loads(output_of(folder, "study", "list", study.name, "--format", "json"))["runs"]}


def expect_whole(folder, study, expected):
    """That a study is sound and that `expected` holds all its runs: by name the values, or several, one of which are the run's."""
    study.check()
    for what, count in study.rows(" UNION ALL ".join(f"SELECT '{what}', ({sql})" for what, sql in INVARIANTS.items())):
        if count != 0:
            raise AssertionError(f"{study.name}: there are {count} {what}")
    runs = listed(folder, study)
    if set(runs) != set(expected):
        raise AssertionError(f"{study.name}: expected runs {sorted(expected)}, found {sorted(runs)}")
    for name, choices in expected.items():
        found = study.values(name)
        if found not in (choices if isinstance(choices[0], list) else [choices]):
            raise AssertionError(f"{study.name}: the values of {name} are others than those of its file")


# ---- results files


def write_results(path, seed, bolts=20, units=1, prefix="Bolt"):
    """A results file with bolts of four quantities; one of another seed has the same layout."""
    generator = random.Random(seed)

    def series(quantity):
        return {"quantity": quantity, "values": [round(generator.gauss(0, 20), 3) for _ in range(3)]}

    quantities = ["Clamp" + kind for kind in ("NormalForce", "ClosingForce", "SupportingForce", "TangentialForce")]
    content = {"format": "simulation-results", "version": 1, "units": []}
    for unit in range(units):
        tools = [
            {"id": f"{prefix} {number}", "kind": "bolt", "series": [series(quantity) for quantity in quantities]} for number in range(bolts)
        ]
        content["units"].append({"id": str(uuid.UUID(int=unit + 1)), "name": f"OP{10 * (unit + 1)}", "tools": tools})
    pathlib.Path(path).write_text(json.dumps(content))


class StudyTest(unittest.TestCase):
    """A folder of its own, and studies of the kind that the test is run for."""

    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp())
        self.folder.chmod(0o755)
        self.addCleanup(shutil.rmtree, self.folder, ignore_errors=True)

    def new_study(self):
        return (ServerStudy if os.environ.get("STUDY_KIND") == "server" else FileStudy)(self.folder)

    def write(self, name, seed, **more):
        write_results(self.folder / name, seed, **more)
        return name


def main():
    if not PROGRAM:
        sys.exit("KESTREL_PROGRAM: expected the program result-tables, found nothing")
    unittest.main()
