#!/usr/bin/python3
"""The manual pages: one for each command, without warnings, the same each time, with examples that run.

usage: tests/ManualPagesTest.py PROGRAM     from the repository's sources; exit code 77 without help2man or man
"""

import json
import os
import pathlib
import re
import shlex
import shutil
import subprocess
import sys
import tempfile
import unittest

SOURCE = pathlib.Path(__file__).resolve().parent.parent
ENVIRONMENT = {**os.environ, "LC_ALL": "C.UTF-8", "LANGUAGE": "en", "SOURCE_DATE_EPOCH": "1700000000", "MANWIDTH": "80"}


def make_pages(folder):
    folder.mkdir()
    subprocess.run([SOURCE / "packaging/man/make", PROGRAM, folder], env=ENVIRONMENT, check=True)
    return {page.name: page.read_text() for page in folder.iterdir()}


def shown(page):
    result = subprocess.run(["man", "--warnings", "--local-file", page], env=ENVIRONMENT, capture_output=True, text=True, check=True)
    return result.stdout, result.stderr


class ManualPagesTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = pathlib.Path(tempfile.mkdtemp())
        cls.addClassCleanup(shutil.rmtree, cls.folder)
        cls.pages = make_pages(cls.folder / "pages")

    def test_each_command_has_one(self):
        def names(words):
            help_text = subprocess.run([PROGRAM, *words, "--help"], env=ENVIRONMENT, capture_output=True, text=True, check=True).stdout
            _, _, commands = help_text.partition("\nCommands:\n")
            found = re.findall(r"^  (\S+) ", commands.partition("\n\n")[0], re.MULTILINE)
            return {"-".join(["result-tables", *words]) + ".1"}.union(*(names([*words, name]) for name in found))

        self.assertEqual(set(self.pages), names([]))
        self.assertIn("result-tables-limits-set.1", self.pages)

    def test_they_are_without_warnings_and_whole(self):
        for name in self.pages:
            with self.subTest(name):
                text, warnings = shown(self.folder / "pages" / name)
                self.assertEqual(warnings, "")
                headings = re.findall(r"^[A-Z][A-Z ]+$", text, re.MULTILINE)
                self.assertEqual(headings[:3], ["NAME", "SYNOPSIS", "DESCRIPTION"])
                for heading in ["OPTIONS", "EXIT STATUS", "EXAMPLES", "SEE ALSO"]:
                    self.assertIn(heading, headings)
                self.assertNotIn("?" * 3, text)

    def test_they_say_what_help_says(self):
        text, _ = shown(self.folder / "pages/result-tables-limits-set.1")
        words = " ".join(text.split())
        self.assertIn("NAME result-tables-limits-set - Set a limit of one kind SYNOPSIS", words)
        self.assertIn("SYNOPSIS result-tables limits set RESULTS --type T --value V [OPTIONS] DESCRIPTION", words)
        self.assertIn("--type T Kind of limit by its name or number", words)
        self.assertIn("KINDS OF LIMITS 0 NoLimit 1 JoiningTongNormalForce", words)

    def test_they_refer_to_pages_that_are_there(self):
        for name, page in self.pages.items():
            for other in re.findall(r"^\.BR (\S+) \(1\)", page, re.MULTILINE):
                self.assertIn(other + ".1", self.pages, name)

    def test_they_are_the_same_each_time(self):
        self.assertEqual(make_pages(self.folder / "again"), self.pages)

    def test_their_examples_run(self):
        work = self.folder / "work"
        work.mkdir()
        door_line = json.loads((SOURCE / "examples/door_line/door_line.results.json").read_text())
        for name in ["results.json", "monday.json"]:
            (work / name).write_text(json.dumps(door_line))
        door_line["units"][0]["tools"][0]["series"][0]["values"][0] = 1000
        (work / "tuesday.json").write_text(json.dumps(door_line))
        for name in ["panel.dat", "panel.map.json"]:
            shutil.copy(SOURCE / "examples/clamped_panel" / name, work)
        (work / "histories.csv").write_text("entity,quantity,time,value\nClamp 1,ClampNormalForce,0,1.5\n")
        (work / "bin").mkdir()
        (work / "bin/result-tables").symlink_to(PROGRAM)
        environment = {**ENVIRONMENT, "PATH": f"{work}/bin:{os.environ['PATH']}"}
        examples = re.findall("^result-tables .*", (SOURCE / "packaging/man/examples").read_text(), re.MULTILINE)
        for example in examples:
            with self.subTest(example):
                shown_in = [name for name, page in self.pages.items() if f"\\fB{example}\\fR" in page.replace("\\-", "-")]
                self.assertEqual(len(shown_in), 1)
                result = subprocess.run(shlex.split(example), cwd=work, env=environment, capture_output=True, text=True)
                self.assertIn(result.returncode, [0, 1], result.stderr)
                self.assertEqual(result.stderr, "")


if __name__ == "__main__":
    PROGRAM = pathlib.Path(sys.argv[1]).resolve()
    if not all(map(shutil.which, ["help2man", "man", "groff"])):
        sys.exit(77)
    unittest.main(argv=sys.argv[:1])
