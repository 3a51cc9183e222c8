#!/usr/bin/env python3
"""Every command, program and piece of data that the pages for people show does what they say.

usage: tests/DocumentationCodeTest.py PROGRAM BUILD

Each block of each page is held by its kind, the first word behind its opening marks:
  sh        every command runs, in a folder with the files that pages speak of, and ends with 0, or with 1 where it finds something
  console   the same, and what stands below "$ command" is what it prints; "…" stands for any lines
  json      a results file, a text of limits, a map or a tool of one, which the program reads; else what the command before it printed
  sql       a query to the study of the page
  cmake     is configured, in a project with a program, beside the installed libraries
  python, pycon   is repeated by a test in Python that names the page
  cpp, csv, po, text, yaml, and others with a file   stands in the file that is named behind the kind, which
            tests/DocumentationTest.cpp compares; sources are compiled, and CMakeLists.txt configured, by tests
Of a block without a kind, or of another one, nobody knows whether it is true: that is an error.
"""

import json
import os
import pathlib
import re
import shutil
import sqlite3
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parent.parent
PROGRAM, BUILD = (pathlib.Path(argument).resolve() for argument in sys.argv[1:3])
LONGEST = 60  # seconds that a command may take

# What is not run here: page, how the command or block begins, why not, and what does it in place of this test.
NOT_RUN = [
    ("README.md", "./run", "builds the tree and runs the demo", "tests/ProgramTest.cpp"),
    ("README.md", "./test", "runs this test", ".ci/run"),
    ("CONTRIBUTING.md", "./test", "runs this test", ".ci/run"),
    ("docs/developing.md", "cmake --preset dev && cmake --build --preset dev && ctest", "builds the tree", "test"),
    ("docs/developing.md", "clang-format", "changes the sources", ".ci/checks"),
    ("docs/developing.md", ".ci/checks tidy", "takes minutes", "test"),
    ("docs/developing.md", "build/release/benchmarks/families", "measures", "tests/BenchmarkReportTest.py"),
    ("docs/developing.md", "./benchmark", "measures", "tests/BenchmarkReportTest.py"),
    ("docs/developing.md", "git apply", "changes the sources", "tests/CMakeLists.txt"),
    ("docs/developing.md", "cmake --preset dev && cmake --build --preset dev --target", "builds the tree", "tests/CMakeLists.txt"),
    ("docs/developing.md", "build/dev/tests/GripperGroupsTest", "is built by the lines before it", "tests/CMakeLists.txt"),
    ("docs/developing.md", "tests/InstructionCountTest.py", "stores what it should compare", "tests/InstructionCountTest.py"),
    ("docs/developing.md", "KESTREL_PROGRAM=", "needs a browser", "tests/browser/CMakeLists.txt"),
    ("docs/linking.md", "cmake --", "builds the tree", "tests/LinkingTest.cmake"),
    ("docs/packages.md", "setup/install", "installs packages", "test"),
    ("docs/packages.md", "cmake --workflow", "builds the tree", "tests/packages.cmake"),
    ("docs/packages.md", "apt install", "installs packages", "tests/support/in-bare-debian.sh"),
    ("docs/packages.md", ". packaging/completion", "is for a shell that somebody types in", "tests/ShellCompletionTest.py"),
    ("docs/linking-a-host.md", "cmake", "needs a real host", "tests/StrictHostTest.cmake"),
    ("docs/releasing.md", "./release", "changes the repository", "tests/ReleaseTest.py"),
    ("docs/limits-document.md", "document = magic", "is a grammar", "tests/DocumentationTest.cpp"),
    ("docs/study-database.md", "result-tables study add postgresql://", "needs a server", "tests/StudyProcessesTest.py"),
    ("examples/clamped_panel/README.md", "OMP_NUM_THREADS=2 ccx", "takes seconds", "tests/ExamplesTest.py"),
    ("examples/clamped_panel/README.md", "./report", "ends with what check has found, after seconds", "tests/ExamplesTest.py"),
    ("examples/python/README.md", "", "needs the Python module", "tests/python/PackageTest.py"),
    ("examples/slurm/README.md", "", "needs a cluster", "tests/StudySlurmTest.py"),
]


class Block:
    def __init__(self, page, line, kind):
        self.page, self.line, self.lines = page, line, []
        self.kind, _, self.file = kind.partition(" ")

    def __str__(self):
        return f"{self.page}:{self.line}"

    def text(self):
        return "".join(line + "\n" for line in self.lines)


def pages():
    """The pages by their path in the repository."""
    found = [ROOT / name for name in os.listdir(ROOT) if name.endswith(".md")]
    for folder in ("docs", "examples", "python", "tests"):
        found += sorted((ROOT / folder).rglob("*.md"))
    return {str(page.relative_to(ROOT)): page.read_text() for page in found}


def blocks_of(page, text):
    """The blocks of code of a page, and the text around them."""
    blocks, around, block = [], [], None
    for number, line in enumerate(text.splitlines(), 1):
        if not line.lstrip().startswith("```"):
            (around if block is None else block.lines).append(line)
        elif block is None:
            block = Block(page, number, line.strip("` "))
        else:
            blocks.append(block)
            block = None
    assert block is None, f"{block}: expected an end of the block, found none"
    return blocks, "\n".join(around)


PAGES = pages()
BLOCKS = {page: blocks_of(page, text) for page, text in PAGES.items()}


# ---- the files that pages speak of


def results(unit, *tools):
    return {
        "format": "simulation-results",
        "version": 1,
        "units": [{"id": "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01", "name": unit, "tools": list(tools)}],
    }


def bolt(name, **series):
    return {"id": name, "kind": "bolt", "series": [{"quantity": quantity, **values} for quantity, values in series.items()]}


def values(*numbers):
    return {"values": numbers}


def make_files(folder):
    """Fills a folder with everything that commands on pages name."""
    for part in ("examples", "translations", "docs/images", "tests/data/import"):
        shutil.copytree(ROOT / part, folder / part)
    (folder / "build").mkdir()
    (folder / "build" / "release").symlink_to(BUILD)
    for source in ("examples/clamped_panel", "tests/data/import"):
        for file in (folder / source).iterdir():
            if file.suffix in (".csv", ".dat", ".json"):
                shutil.copy(file, folder)

    def write(name, content):
        (folder / name).parent.mkdir(exist_ok=True)
        (folder / name).write_text(content if isinstance(content, str) else json.dumps(content))

    door_line = json.loads((folder / "examples/door_line/door_line.results.json").read_text())
    door_line["units"][0]["name"] = "OP20"
    for name in ("results.json", "run1.json", "run2.json", "runs/1.json", "runs/2.json"):
        write(name, door_line)
    bolts = ({"ClampNormalForce": values(45.125), "ClampClosingForce": values(1000)}, {"ClampNormalForce": values(1), "ClampClosingForce": values("Infinity")})
    for name in ("runs", "accepted"):
        write(f"examples/ci_gate/{name}/panel.json", (folder / "panel.results.json").read_text())
    write("main.cpp", (folder / "examples/print_table/main.cpp").read_text())
    write("monday.json", results("OP20", bolt("Bolt 1", ClampNormalForce=values(20)), bolt("Bolt 2", **bolts[0])))
    write("tuesday.json", results("OP20", bolt("Bolt 1", ClampNormalForce=values(31)), bolt("Bolt 2", **bolts[1])))
    write("press.json", results("OP20", bolt("Bolt 1", ClampNormalForce={"pairs": [[0, 0], [-40.5, 0.25], [None, 0.5]]})))
    write("misspelt.json", results("OP20", {"id": "Clamp 1", "kind": "Clamp"}))
    write("policy.json", (folder / "examples/door_line/policy.limits.json").read_text())
    write("limits.json", (folder / "examples/door_line/policy.limits.json").read_text())
    write("histories.csv", (folder / "press.csv").read_text())
    write("map.json", (folder / "press.map.json").read_text())
    write("monday.csv", (folder / "press.csv").read_text())
    write("tuesday.csv", (folder / "press.csv").read_text())
    write("misspelt.map.json", (folder / "panel.map.json").read_text().replace('"C1_TIP.fz"', '"C1_TIP.fw"', 1))
    print_lines = (folder / "panel.dat").read_text().splitlines(keepends=True)
    print_lines[15] = print_lines[15][:-15] + "\n"
    write("broken.dat", "".join(print_lines))
    write("station.dat", (folder / "punches.dat").read_text())
    for command in (
        "import calculix station.dat --make-map --output station.map.json",
        "study add node1.db runs/1.json",
        "study add node2.db runs/2.json",
    ):
        subprocess.run([PROGRAM, *command.split()], cwd=folder, check=True, capture_output=True)


# ---- running


def commands_of(lines):
    """Commands of a shell, one for each line that does not continue the one before."""
    return [command for command in "\n".join(lines).replace("\\\n", "").splitlines() if command.strip() and not command.startswith("#")]


def is_same(shown, printed):
    """Whether lines are what is shown, in which "…" stands for any lines."""
    pattern = "".join(r"(?:.*\n)*" if line.strip() == "…" else re.escape(line) + r"\n" for line in shown)
    return re.fullmatch(pattern, printed) is not None


class CodeTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.place = pathlib.Path(tempfile.mkdtemp())
        cls.addClassCleanup(shutil.rmtree, cls.place)
        (cls.place / "bin").mkdir()
        (cls.place / "bin" / "result-tables").symlink_to(PROGRAM)
        make_files(cls.place / "files")
        environment = {name: value for name, value in os.environ.items() if not name.startswith("LC_") and name not in ("LANGUAGE", "COLUMNS")}
        cls.environment = {
            **environment,
            "LANG": "C.UTF-8",
            "PATH": f"{cls.place / 'bin'}:{os.environ['PATH']}",
            "PKG_CONFIG_PATH": cls.install(),
        }
        cls.sources = {entry["file"] for entry in json.loads((BUILD / "compile_commands.json").read_text())}

    @classmethod
    def install(cls):
        """Installs the libraries; where they have their files for pkg-config."""
        cls.prefix = cls.place / "prefix"
        for component in ("library", "development"):
            subprocess.run(["cmake", "--install", BUILD, "--prefix", cls.prefix, "--component", component], check=True, capture_output=True)
        return str(next(cls.prefix.rglob("pkgconfig")))

    def sandbox(self, page):
        """A folder with the files, and where in it the page's commands are run: beside the page, for those of a folder's own data."""
        self.folder = pathlib.Path(tempfile.mkdtemp(dir=self.place)) / "files"
        shutil.copytree(self.place / "files", self.folder, symlinks=True)
        beside = pathlib.Path(page).parent
        return self.folder / beside if beside.parts[:1] in (("examples",), ("tests",)) else self.folder

    def is_left_out(self, block, beginning):
        for exception in NOT_RUN:
            if exception[0] == block.page and beginning.startswith(exception[1]):
                self.left_out.add(exception)
                return True
        return False

    def run_command(self, block, command, codes=(0, 1)):
        done = subprocess.run(
            ["bash", "-o", "pipefail", "-c", command],
            cwd=self.cwd,
            env=self.environment,
            stdin=subprocess.DEVNULL,
            stdout=subprocess.PIPE,
            stderr=subprocess.STDOUT,
            text=True,
            check=False,
            timeout=LONGEST,
        )
        finds = re.search(r"result-tables (study )?(check|diff|compare)", command)
        self.assertIn(done.returncode, codes if finds or len(codes) > 2 else codes[:1], f"{block}: {command}\n{done.stdout}")
        self.printed = done.stdout

    def hold_sh(self, block):
        for command in commands_of(block.lines):
            if self.is_left_out(block, command):
                continue
            if " ccx " in command and not shutil.which("ccx"):
                print(f"{block}: not run, as there is no ccx: {command}")
                continue
            self.run_command(block, command)

    def hold_console(self, block):
        parts = re.split(r"^\$ (.*)\n", block.text(), flags=re.M)
        self.assertEqual(parts[0], "", f"{block}: expected a line that begins with a dollar sign")
        for command, shown in zip(parts[1::2], parts[2::2]):
            if not self.is_left_out(block, command):
                self.run_command(block, command, (0, 1, 2))
                if not is_same(shown.splitlines(), self.printed):
                    self.fail(f"{block}: {command}\nprints\n{self.printed}")

    def hold_json(self, block):
        content = json.loads((ROOT / block.file).read_text() if block.file else block.text())
        shown = self.cwd / "shown.json"
        if "kind" in content:
            map_of_tool = {"format": "import-map", "version": 1, "units": results("Unit", content)["units"]}
            shown.write_text(json.dumps(map_of_tool))
            self.run_command(block, "result-tables import calculix panel.dat --map shown.json", (0,))
            return
        shown.write_text(json.dumps(content))
        form = content.get("format")
        if form == "simulation-results":
            self.run_command(block, "result-tables show shown.json", (0,))
        elif form == "limits":
            self.run_command(block, "result-tables show results.json --limits shown.json", (0,))
        elif form == "import-map":
            stem = self.cwd / pathlib.Path(block.file).name.removesuffix(".map.json")
            kind = "csv" if stem.with_suffix(".csv").exists() else "calculix"
            suffix = {"csv": ".csv", "calculix": ".dat"}[kind]
            self.run_command(block, f"result-tables import {kind} {stem.name}{suffix} --map shown.json", (0,))
        else:
            self.assertEqual(content, json.loads(self.printed), f"{block}: what the command before it prints")

    def hold_sql(self, block):
        connection = sqlite3.connect(self.cwd / "study.db")
        try:
            connection.execute(block.text()).fetchall()
        finally:
            connection.close()

    def hold_excerpt(self, block):
        if block.kind == "text" and self.is_left_out(block, block.lines[0]):
            return
        self.assertTrue(block.file, f"{block}: expected the file that this stands in, as in \"```cpp examples/print_table/main.cpp\"")
        path = ROOT / block.file
        self.assertTrue(path.is_file(), f"{block}: {block.file}")
        if path.suffix == ".cpp":
            self.assertIn(str(path), self.sources, f"{block}: expected a source that is compiled")
        if path.name == "CMakeLists.txt":
            users = [*(ROOT / "tests").glob("*.cmake"), *(ROOT / "tests").glob("*.py"), ROOT / "tests/CMakeLists.txt"]
            folder = str(path.parent.relative_to(ROOT))
            self.assertTrue(any(folder in user.read_text() for user in users), f"{block}: expected a test that configures {folder}")

    def hold_cmake(self, block):
        if block.file:
            self.hold_excerpt(block)
            return
        project = self.cwd / "project"
        shutil.rmtree(project, ignore_errors=True)
        shutil.copytree(ROOT / "examples/print_table", project)
        program = "" if "add_executable(" in block.text() else "add_executable(print_table main.cpp)\n"
        lines = f"cmake_minimum_required(VERSION 3.25)\nproject(page LANGUAGES C CXX)\n{program}{block.text()}"
        (project / "CMakeLists.txt").write_text(lines)
        fetched = "".join(f" -DFETCHCONTENT_SOURCE_DIR_{name.upper()}={ROOT}" for name in re.findall(r"FetchContent_Declare\((\w+)", lines))
        self.run_command(block, f"cmake -S project -B project/build -DCMAKE_PREFIX_PATH={self.prefix}{fetched}")

    def hold_python(self, block):
        tests = [*(ROOT / "tests").rglob("*.py"), *(ROOT / "python").rglob("*.py")]
        repeats = [test for test in tests if test != pathlib.Path(__file__).resolve() and block.page in test.read_text()]
        self.assertTrue(any("doctest" in test.read_text() for test in repeats), f"{block}: expected a test that repeats {block.page}")

    hold_pycon = hold_python

    def test_blocks(self):
        self.left_out = set()
        for page, (blocks, _) in BLOCKS.items():
            self.cwd, self.printed = self.sandbox(page), ""
            for block in blocks:
                other = self.hold_excerpt if block.file or block.kind in ("cpp", "text") else None
                hold = getattr(self, f"hold_{block.kind}", other)
                with self.subTest(str(block)):
                    self.assertIsNotNone(hold, f"{block}: expected a kind that is known, found \"{block.kind}\"")
                    hold(block)
        self.assertEqual(set(NOT_RUN) - self.left_out, set(), "commands that no page has")
        for *_, covers in NOT_RUN:
            self.assertTrue((ROOT / covers).exists(), covers)


# ---- commands inside of sentences


def help_of(*command):
    done = subprocess.run([PROGRAM, *command, "--help"], env={**os.environ, "LC_ALL": "C.UTF-8"}, capture_output=True, text=True, check=True)
    return done.stdout


def options_by_command():
    """The options of each command, by its words."""
    found, waiting = {}, [()]
    while waiting:
        command = waiting.pop()
        text = help_of(*command)
        found[command] = set(re.findall(r"(?<![\w-])--?[a-z][a-z-]*", text))
        listed = re.search(r"^Commands:\n((?:  .*\n)+)", text, re.M)
        waiting += [(*command, name) for name in re.findall(r"^  (\w+)  ", listed[1], re.M)] if listed else []
    return found


# Options of other programs that pages name by themselves.
OPTIONS_OF_OTHERS = {"docs/developing.md": {"--quick"}, "docs/linking.md": {"--static"}}


class SentencesTest(unittest.TestCase):
    OPTIONS = options_by_command()
    SPANS = [(page, span) for page, (_, around) in BLOCKS.items() for span in re.findall(r"(?<!`)`([^`\n]+)`(?!`)", around)]

    def command_in(self, words):
        """The longest command that the words begin with."""
        length = next((n for n in range(len(words), 0, -1) if tuple(words[:n]) in self.OPTIONS), 0)
        return tuple(words[:length])

    def test_commands_have_the_options_that_they_are_shown_with(self):
        checked = 0
        for page, span in self.SPANS:
            words = span.removeprefix("result-tables ").split()
            command = self.command_in(words)
            if not command and not span.startswith("result-tables --"):
                self.assertFalse(span.startswith("result-tables ") and re.match(r"[a-z]+$", words[0]), f"{page}: {span}")
                continue
            known = set().union(*(options for name, options in self.OPTIONS.items() if name[: len(command)] == command))
            for option in re.findall(r"(?<![\w-])--?[a-z][a-z-]*", " ".join(words[len(command) :])):
                self.assertIn(option, known, f"{page}: {span}")
                checked += 1
        self.assertGreater(checked, 20)

    def test_options_that_stand_alone_exist(self):
        known = set().union(*self.OPTIONS.values())
        checked = 0
        for page, span in self.SPANS:
            if re.match("--[a-z]", span):
                self.assertIn(span.split()[0], known | OPTIONS_OF_OTHERS.get(page, set()), f"{page}: {span}")
                checked += 1
        self.assertGreater(checked, 20)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
