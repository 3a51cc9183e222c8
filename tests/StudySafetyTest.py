#!/usr/bin/env python3
"""Study databases from anywhere: what is no study stays as it is and costs one line, and what is damaged never more than that.

usage: KESTREL_PROGRAM=PROGRAM tests/StudySafetyTest.py

STUDY_FLIPS says how many damaged files are tried, STUDY_SEED which.
"""

import contextlib
import os
import pathlib
import random
import shutil
import sqlite3
import subprocess
import sys

sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent / "support"))

import study_testing  # noqa: E402
from study_testing import StudyTest, expect_one_line, expect_whole, listed, output_of, run, shown_values  # noqa: E402

SCHEMA = pathlib.Path(__file__).resolve().parent.parent / "result_tables/study/schema"


def alter(path, script):
    with contextlib.closing(sqlite3.connect(path)) as connection:
        connection.executescript(script)


class StudySafetyTest(StudyTest):
    def setUp(self):
        super().setUp()
        self.study = study_testing.FileStudy(self.folder)
        self.names = [self.write("first.json", 1), self.write("second.json", 2, bolts=5)]
        self.expected = {name.removesuffix(".json"): shown_values(self.folder, name) for name in self.names}
        output_of(self.folder, "study", "add", self.study.name, *self.names, "--label", "shift=early")
        self.write("third.json", 3)

    def state(self):
        """The bytes of all that is in the folder, but for the locks that SQLite leaves beside a log."""
        return {
            path.name: path.read_bytes() for path in self.folder.iterdir() if path.is_file() and not path.name.endswith("-shm")
        }

    def expect_refused(self, name, message, arguments=None):
        """That nobody reads or changes what is called `name`."""
        before = self.state()
        for command in arguments or (
            ("list", name),
            ("add", name, "third.json"),
            ("remove", name, "first"),
        ):
            self.assertIn(message, expect_one_line(run(self.folder, "study", *command)))
            self.assertEqual(self.state(), before)

    # ---- what is no study

    def test_files_of_other_kinds_stay_as_they_are(self):
        kinds = {
            "text": b"a text",
            "results": (self.folder / "first.json").read_bytes(),
            "beginning": b"SQLite format 3",
            "nothing but its beginning": b"SQLite format 3\0",
            "zeros": bytes(8192),
        }
        for name, content in kinds.items():
            (self.folder / name).write_bytes(content)
            with self.subTest(name):
                self.expect_refused(name, f"{name}: ")

    def test_folders_pipes_and_devices_are_refused(self):
        (self.folder / "folder").mkdir()
        os.mkfifo(self.folder / "pipe")
        for name in ("folder", "pipe", "/dev/null", "/dev/zero"):
            with self.subTest(name):
                self.expect_refused(name, f"{name}: expected a file, found something else")

    def test_databases_of_others_stay_as_they_are(self):
        scripts = {
            "tables.db": "CREATE TABLE study_runs (id)",
            "empty but for its mark.db": "PRAGMA application_id = 7",
            "log.db": "PRAGMA journal_mode=WAL; CREATE TABLE t (x)",
        }
        for name, script in scripts.items():
            alter(self.folder / name, script)
            with self.subTest(name):
                self.expect_refused(name, f"{name}: expected a study, found a database of another kind")

    def test_what_others_have_not_finished_stays_as_it_is(self):
        writers = {
            "others.db": ("CREATE TABLE t (x)", "found a database of another kind"),
            self.study.name: ("PRAGMA user_version = 9", "found version 9; a newer program can read it"),
        }
        for name, (script, message) in writers.items():
            with contextlib.closing(sqlite3.connect(self.folder / name)) as writer:
                writer.executescript(f"PRAGMA journal_mode=WAL; {script}")
                for suffix in ("", "-wal"):
                    shutil.copy(self.folder / f"{name}{suffix}", self.folder / f"left.db{suffix}")
            with self.subTest(name):
                self.assertGreater((self.folder / "left.db-wal").stat().st_size, 0)
                self.expect_refused("left.db", message)

    def test_what_cannot_be_read_is_one_line(self):
        self.study.path.chmod(0)
        line = expect_one_line(self.run_as_others("study", "list", self.study.name))
        self.assertIn(f"{self.study.name}: cannot be read; see that you may read it", line)

    # ---- other versions

    def test_a_newer_study_is_left_alone(self):
        alter(self.study.path, "PRAGMA user_version = 3; CREATE TABLE study_later (x)")
        self.expect_refused(self.study.name, "expected a study of version 2 or older, found version 3; a newer program can read it")

    def test_a_study_of_version_1_becomes_one_of_this(self):
        alter(self.study.path, "DROP VIEW result_values; DROP INDEX study_elements_by_item; PRAGMA user_version = 1")
        self.assertEqual(set(listed(self.folder, self.study)), {"first", "second"})
        expect_whole(self.folder, self.study, self.expected)
        empty = study_testing.FileStudy(self.folder)
        alter(empty.path, (SCHEMA / "sqlite-1.sql").read_text())
        output_of(self.folder, "study", "add", empty.name, *self.names)
        expect_whole(self.folder, empty, self.expected)
        self.assertEqual(empty.rows("PRAGMA user_version"), [(2,)])

    # ---- what is in a study that this program has not put there

    def test_what_a_database_defines_is_not_run(self):
        scripts = (
            "CREATE TRIGGER t AFTER INSERT ON study_runs BEGIN DELETE FROM study_values; END",
            "CREATE TRIGGER t AFTER UPDATE ON study_runs BEGIN SELECT load_extension('x'); END",
            "CREATE TABLE more (x)",
            "CREATE INDEX more ON study_runs (file)",
            "CREATE VIEW more AS WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n) SELECT * FROM n",
            "CREATE VIRTUAL TABLE more USING fts5(x)",
            "DROP TABLE study_labels; CREATE VIEW study_labels AS SELECT 1 AS run_id, 'a' AS name, 'b' AS value",
            "DROP TABLE study_labels",
            "DROP VIEW result_values; CREATE VIEW result_values AS SELECT 1",
            "DROP VIEW result_values; CREATE TABLE result_values (run)",
            "ALTER TABLE study_runs ADD COLUMN more AS (abs(-9223372036854775808))",
            "ALTER TABLE study_labels RENAME COLUMN value TO valuE",
        )
        whole = self.study.path.read_bytes()
        for script in scripts:
            self.study.path.write_bytes(whole)
            alter(self.study.path, script)
            with self.subTest(script):
                self.expect_refused(self.study.name, "expected the tables of a study and nothing else, found other ones")

    def test_values_of_other_kinds_and_numbers_out_of_range_are_damage(self):
        scripts = [
            f"UPDATE {table} SET {column} = {value}{' WHERE id = 1' if column == 'name' else ''}"
            for table, columns, values in (
                ("study_runs", "name", ("x'ff'",)),
                ("study_runs", "value_count", ("'many'", "7", "-1")),
                ("study_runs", "layout_id", ("99",)),
                ("study_runs", "invalid", ("-1", "0.5")),
                ("study_sections", "family", ("'Nothing'", "x'00'")),
                ("study_sections", "section_no", ("section_no - 9", "section_no + 9000000000000")),
                ("study_sections", "first_element", ("-1", "9223372036854775807")),
                ("study_sections", "element_count", ("-1", "9223372036854775807", "1")),
                ("study_columns", "section_no", ("section_no + 9", "-1 - section_no")),
                ("study_elements", "section_no", ("-1", "9", "'x'")),
                ("study_elements", "element_no", ("element_no + 1000", "element_no - 4000000000000")),
                ("study_elements", "item", ("x'00ff'",)),
                ("study_run_columns", "limit_value", ("'often'", "x''")),
                ("study_run_columns", "compared", ("'x'", "-1")),
                ("study_values", "value", ("'nan'", "x'00'", "1")),
                ("study_values", "step", ("-1", "'x'")),
                ("study_values", "time", ("'then'",)),
                ("study_values", "count", ("-1", "0.5")),
                ("study_values", "column_no", ("column_no + 100", "column_no - 100", "column_no + 4294967296")),
                ("study_values", "element_no", ("element_no + 1000", "element_no - 1000", "element_no + 4294967296")),
            )
            for column in columns.split()
            for value in values
        ]
        scripts += ["DELETE FROM study_layouts", "DELETE FROM study_sections", "DELETE FROM study_values WHERE column_no = 1"]
        scripts += ["DELETE FROM study_columns WHERE column_no = 1", "DELETE FROM study_elements WHERE element_no = 1"]
        whole = self.study.path.read_bytes()
        for script in scripts:
            self.study.path.write_bytes(whole)
            alter(self.study.path, f"PRAGMA foreign_keys=OFF; {script}")
            with self.subTest(script):
                target = study_testing.FileStudy(self.folder)
                line = expect_one_line(run(self.folder, "study", "add", target.name, self.study.name))
                self.assertIn(f"{self.study.name}: the study is damaged (", line)
                expect_whole(self.folder, target, {})

    # ---- damaged files

    def test_truncated_and_flipped_files_cost_one_line(self):
        generator = random.Random(int(os.environ.get("STUDY_SEED", "1")))
        whole = self.study.path.read_bytes()
        damaged = [whole[:size] for size in (1, 16, 99, 100, 4095, 4096, 4097, len(whole) // 2, len(whole) - 4096, len(whole) - 1)]
        for number in range(int(os.environ.get("STUDY_FLIPS", "100"))):
            content = bytearray(whole)
            # Every other time in a page's head, where the damage does most.
            for _ in range(generator.choice((1, 1, 1, 8))):
                place = generator.randrange(len(content))
                if number % 2:
                    place = place // 4096 * 4096 + generator.randrange(100 if place < 4096 else 12)
                content[place] ^= 1 << generator.randrange(8)
            damaged.append(bytes(content))
        outcomes = {0: 0, 2: 0}
        for number, content in enumerate(damaged):
            with self.subTest(number):
                target = study_testing.FileStudy(self.folder)
                for arguments in (("list", self.study.name), ("add", target.name, self.study.name), ("add", self.study.name, "third.json")):
                    self.study.drop()
                    self.study.path.write_bytes(content)
                    done = run(self.folder, "study", *arguments)
                    outcomes[done.returncode] += 1
                    if done.returncode == 2:
                        expect_one_line(done)
                    else:
                        self.assertEqual(done.stderr, b"")
                        done.stdout.decode()
                runs = listed(self.folder, target)
                self.assertLessEqual(len(runs), 2)
                target.check()
        self.assertGreater(outcomes[0], 0)
        self.assertGreater(outcomes[2], 0)

    # ---- where nothing can be written

    @contextlib.contextmanager
    def nothing_can_be_written(self):
        files = list(self.folder.iterdir())
        for path in (*files, self.folder):
            path.chmod(0o444 if path.is_file() else 0o555)
        try:
            yield
        finally:
            self.folder.chmod(0o700)
            for path in files:
                path.chmod(0o644)

    def run_as_others(self, *arguments):
        """Without the rights by which root reads and writes everything."""
        rights = ["setpriv", "--bounding-set=-all", "--inh-caps=-all"] if os.geteuid() == 0 else []
        return subprocess.run(
            [*rights, *study_testing.command(*arguments)],
            cwd=self.folder,
            env=study_testing.ENVIRONMENT,
            capture_output=True,
            check=False,
            timeout=study_testing.LONGEST,
        )

    def test_where_nothing_can_be_written_a_study_is_read(self):
        before = self.state()
        with self.nothing_can_be_written():
            done = self.run_as_others("study", "list", self.study.name, "--format", "csv")
            self.assertEqual((done.returncode, done.stderr), (0, b""))
            for arguments in (("add", self.study.name, "third.json"), ("remove", self.study.name, "first"), ("add", "new.db", "third.json")):
                line = expect_one_line(self.run_as_others("study", *arguments))
                self.assertIn("see that the file and its folder may be written", line)
        self.assertEqual(done.stdout, output_of(self.folder, "study", "list", self.study.name, "--format", "csv"))
        self.assertEqual(self.state(), before)
        self.assertFalse((self.folder / "new.db").exists())

    def test_where_nothing_can_be_written_unfinished_work_is_one_line(self):
        with contextlib.closing(sqlite3.connect(self.study.path)) as writer:
            writer.executescript("PRAGMA wal_autocheckpoint = 0; UPDATE study_labels SET value = 'late'")
            for suffix in ("", "-wal"):
                shutil.copy(f"{self.study.path}{suffix}", self.folder / f"left.db{suffix}")
        before = self.state()
        with self.nothing_can_be_written():
            line = expect_one_line(self.run_as_others("study", "list", "left.db"))
        self.assertIn("left.db: cannot be read where it cannot be written, as somebody has not finished with it; copy it", line)
        self.assertEqual(self.state(), before)
        # Who can write finishes it.
        self.assertIn(b"shift=late", output_of(self.folder, "study", "list", "left.db", "--format", "csv"))


if __name__ == "__main__":
    study_testing.main()
