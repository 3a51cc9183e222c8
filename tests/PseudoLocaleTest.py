#!/usr/bin/env python3
"""Shows the program in a language whose every text is longer, accented and in brackets, and looks for what is not translated, cut,
or translated where scripts read.

usage: tests/PseudoLocaleTest.py, with the program in KESTREL_PROGRAM

The language is one file, made of the texts of a catalogue by tests/support/pseudo_locale.py, as any new language is.
"""

import csv
import fcntl
import io
import json
import os
import pathlib
import pty
import re
import shutil
import struct
import subprocess
import sys
import tempfile
import termios
import unittest
import warnings
import xml.etree.ElementTree as ElementTree

import openpyxl

sys.dont_write_bytecode = True
ROOT = pathlib.Path(__file__).resolve().parent.parent
sys.path.insert(0, str(ROOT / "tests" / "support"))

from pseudo_locale import CLOSING, LOCALE, OPENING, make_pseudo_locale, pseudo  # noqa: E402
from wrong_inputs import wrong_command_lines, wrong_inputs  # noqa: E402

CATALOGUE = ROOT / "translations" / "de.po"
TEMPORARY = tempfile.TemporaryDirectory()
FOLDER = pathlib.Path(TEMPORARY.name)
PSEUDO = {"KESTREL_LOCALEDIR": str(FOLDER / "locale"), "LC_ALL": LOCALE}
ENGLISH = {"LC_ALL": "C.UTF-8"}
RUNS = ("r1.json", "r2.json")  # of the study s.db
WIDTHS = (60, 80, 132)  # of terminals

# What is the same in every language and no word of the files that are read.
NAMES = frozenset(
    """result tables shown rows
    show check diff series limits import study demo list set reset sync export dump add worst trend compare remove calculix csv
    text json html xlsx junit svg plain excel de dat auto always never none findings all
    unit family teaching limits output format colour when digits curves jobs map from step decimal comma help version abs rel
    item key type value make run label top by long statistics
    RESULTS FILE DIALECT WHICH COMMAND OPTIONS MAP FORMAT BEFORE AFTER NAME KEY TEXT INPUT DATABASE RUN VALUE LABEL UTF JSON UUID
    Clamps ClampingTools JoiningTongs Pilots Bolts LineJoiningTools SuctionZones Rollers Steels HemmingBed SpotWelds LineWelds
    pilot clamp tool spotWeld joiningTong suctionZone bolt
    NoLimit JoiningTongNormalForce JoiningTongDistance JoiningTongGap LineJoiningToolDistanceToInput JoinNormalForce
    JoinTangentialForce ForceLimit Reserved LineJoiningToolGap ClampingToolForce JoiningTeachingX JoiningTeachingY JoiningTeachingZ
    SuctionDistance SuctionZoneForce PilotForce RollerForce SteelForce HemmingBedForce BoltNormalForce ClampClosingForce
    TablePropertiesData TablePropertyLimit Object SimulationUnitId bytes
    simulation results id name version visibleSteps tools joinsDefinedInUnit toolGroupings steps last values pairs columns units form
    sum norm stepTimes suctionZones joiningTongs joins lineJoins guid active state kind series quantity skins first reduce element
    point node history scale offset sign
    USER HOST PORT PGPASSWORD pgpass CSV postgresql nx ny nz mm NaN inf nan Infinity null true false""".split()
)


def setUpModule():
    make_pseudo_locale(CATALOGUE, FOLDER / "locale")
    write_inputs()


def tearDownModule():
    TEMPORARY.cleanup()


# ---- files to be read


def nameless(part, names):
    """Results with Q1, Q2, … for the names that people gave, so that no word of theirs is taken for one of the program's."""
    if isinstance(part, list):
        return [nameless(one, names) for one in part]
    if not isinstance(part, dict):
        return part
    return {member: name_of(member, value, names) for member, value in part.items()}


def name_of(member, value, names):
    if member in ("id", "name") and isinstance(value, str) and not re.fullmatch(r"[0-9a-fA-F-]{36}", value):
        return names.setdefault(value, f"Q{len(names) + 1}")
    if member == "tools" and value and isinstance(value[0], str):
        return [names.setdefault(one, f"Q{len(names) + 1}") for one in value]
    return nameless(value, names)


def write(name, content):
    text = content if isinstance(content, (str, bytes)) else json.dumps(content)
    (FOLDER / name).write_bytes(text if isinstance(text, bytes) else text.encode())


def write_inputs():
    door = nameless(json.loads((ROOT / "examples/door_line/door_line.results.json").read_text(encoding="utf-8")), {})
    write("r1.json", door)
    first = next(tool for unit in door["units"] for tool in unit["tools"] if tool["kind"] == "bolt")
    first["series"][0]["values"] = [0, 1.5, None]
    door["units"][0]["tools"].append({"id": "Q0", "kind": "bolt", "series": [{"quantity": "ClampNormalForce", "values": [999]}]})
    write("r2.json", door)
    write("empty.json", {"format": "simulation-results", "version": 1, "units": []})
    for name in ("press.csv", "press.map.json", "cube.dat", "cube.map.json", "punches.dat", "elements.dat", "heat.dat", "rig.csv"):
        shutil.copy(ROOT / "tests/data/import" / name, FOLDER / name)
    shutil.copy(ROOT / "tests/data/limits_documents/example.limits", FOLDER / "d.limits")
    write("policy.json", {"format": "limits", "version": 1, "all": {"limits": {"BoltNormalForce": 3}}})
    for number, name in enumerate(RUNS):
        done = said("study", "add", "s.db", name, "--run", f"R{number}", "--label", f"Q0={number}")
        if done.returncode != 0:
            raise AssertionError(done.stderr)


# ---- what the program says


def said(*arguments, environment=None, text=""):
    return subprocess.run(
        [os.environ["KESTREL_PROGRAM"], *arguments],
        cwd=FOLDER,
        env={"PATH": os.environ["PATH"], **(PSEUDO if environment is None else environment)},
        input=text,
        capture_output=True,
        check=False,
        timeout=60,
        encoding="utf-8",
    )


def shown(width, *arguments):
    """What a terminal of this many columns shows."""
    ours, its = pty.openpty()
    fcntl.ioctl(its, termios.TIOCSWINSZ, struct.pack("HHHH", 24, width, 0, 0))
    environment = {"PATH": os.environ["PATH"], "TERM": "xterm", "NO_COLOR": "1", **PSEUDO}
    parts = []
    with subprocess.Popen(
        [os.environ["KESTREL_PROGRAM"], *arguments], cwd=FOLDER, env=environment, stdin=its, stdout=its, stderr=its, close_fds=True
    ):
        os.close(its)
        try:
            while part := os.read(ours, 65536):
                parts.append(part)
        except OSError:  # the terminal has no other end any more
            pass
    os.close(ours)
    return b"".join(parts).decode().replace("\r\n", "\n")


def commands():
    """Every command, as its arguments, as help lists them."""
    found = [()]
    for command in found:
        rows = said(*command, "--help").stdout.split(f"\n{pseudo('Commands')}:\n")[1:]
        for row in rows[:1]:
            found += [(*command, name) for name in re.findall(r"^  (\w+)  ", row.split("\n\n")[0], flags=re.MULTILINE)]
    return found


# ---- what is looked for


def words_of_inputs(arguments):
    """The words of a command line and of the files that it names."""
    words = set(words_in(" ".join(arguments)))
    read = [FOLDER / argument for argument in arguments] + [FOLDER / name for name in RUNS if "s.db" in arguments]
    for file in read:
        if file.suffix != ".db" and file.is_file():
            words.update(words_in(file.read_text(encoding="utf-8", errors="replace")))
    return words


def words_in(text):
    text = re.sub(r"\b[0-9a-fA-F]{8}-[0-9a-fA-F-]{27}\b|\b0x[0-9A-Fa-f]+|\b[\d.]+e[-+]\d+", " ", text)
    return re.findall(r"[A-Za-z]{2,}", text)


class Text(unittest.TestCase):
    def expect_translated_and_whole(self, text, arguments, what=""):
        names = NAMES | words_of_inputs(arguments)
        # Quotation marks stand around names and members.
        strange = [word for word in words_in(re.sub(r'"[^"\n]*"', " ", text)) if word not in names]
        self.assertEqual(strange, [], f"not translated, in {arguments} {what}:\n{text}")
        self.assertEqual(text.count(OPENING), text.count(CLOSING), f"cut, in {arguments} {what}:\n{text}")

    def test_help_of_every_command(self):
        found = commands()
        self.assertIn(("study", "export"), found)
        self.assertIn(("limits", "dump"), found)
        for command in found:
            for width in (*WIDTHS, 40):
                text = shown(width, *command, "--help")
                self.expect_translated_and_whole(text, command, f"in {width} columns")
                self.assertLessEqual(max(map(len, text.split("\n"))), width, text)

    def test_tables(self):
        for arguments in TEXTS:
            done = said(*arguments)
            self.assertIn(done.returncode, (0, 1, 3), done.stderr)
            self.expect_translated_and_whole(done.stdout + done.stderr, arguments)
            for width in WIDTHS:
                self.expect_translated_and_whole(shown(width, *arguments), arguments, f"in {width} columns")

    def expect_refused(self, command, what=""):
        done = said(*command)
        self.assertEqual((done.returncode, done.stdout), (2, ""), (command, what))
        self.expect_translated_and_whole(done.stderr, command, what)

    def test_texts_that_keep_within_the_terminal(self):
        for arguments in WITHIN_TERMINALS:
            for width in WIDTHS[1:]:
                text = shown(width, *arguments)
                self.assertLessEqual(max(map(len, text.split("\n"))), width, text)

    def test_messages_on_inputs(self):
        for name, content, command in wrong_inputs():
            write(name, content)
            self.expect_refused(command, repr(content))

    def test_messages_on_command_lines(self):
        for command in wrong_command_lines():
            self.expect_refused(command)


TREND = ("--unit", "Q1", "--family", "Bolts", "--item", "Q2", "--key", "ClampNormalForce")
TEXTS = [
    ("show", "r1.json", "r2.json", "--teaching", "--when"),
    ("show", "r1.json", "--family", "Pilots"),
    ("show", "press.csv", "--map", "press.map.json"),
    ("check", "r2.json", "r1.json"),
    ("check", "empty.json"),
    ("diff", "r1.json", "r2.json"),
    ("diff", "r2.json", "r1.json"),
    ("diff", "r1.json", "r1.json"),
    ("series", "r2.json"),
    ("series", "r1.json", "--family", "Clamps", "--unit", "Q1"),
    ("limits", "list", "r1.json"),
    ("limits", "list", "r1.json", "--limits", "policy.json"),
    ("limits", "dump", "d.limits"),
    ("import", "csv", "press.csv", "--list"),
    ("import", "calculix", "punches.dat", "--list"),
    ("import", "calculix", "elements.dat", "--list"),
    ("import", "calculix", "heat.dat", "--list"),
    ("study", "list", "s.db"),
    ("study", "worst", "s.db"),
    ("study", "trend", "s.db", *TREND),
    ("study", "compare", "s.db", "R0", "R1"),
]

WITHIN_TERMINALS = [
    ("show", "r1.json", "r2.json", "--teaching", "--when"),
    ("show", "press.csv", "--map", "press.map.json"),
    ("limits", "list", "r1.json"),
    ("study", "list", "s.db"),
]


class Forms(unittest.TestCase):
    """Forms for people other than text: each of their texts is whole, and no other words are in them."""

    def expect_translated_and_whole(self, texts, arguments, least):
        names = NAMES | words_of_inputs(arguments)
        count = 0
        for text in texts:
            self.assertEqual(text.count(OPENING), text.count(CLOSING), f"cut, in {arguments}: {text}")
            self.assertEqual([word for word in words_in(text) if word not in names], [], f"not translated, in {arguments}: {text}")
            count += OPENING in text
        self.assertGreater(count, least, arguments)

    def output_of(self, *arguments):
        done = said(*arguments)
        self.assertIn(done.returncode, (0, 1, 2, 3), done.stderr)
        return done.stdout

    def test_pages(self):
        for arguments in PAGES:
            page = self.output_of(*arguments, "--format", "html")
            self.expect_translated_and_whole(texts_of_page(page), arguments, 20)
            self.assertIn('lang="en-XA"', page)

    def test_pictures(self):
        for arguments in (("series", "r2.json"), ("study", "trend", "s.db", *TREND)):
            texts = ElementTree.fromstring(self.output_of(*arguments, "--format", "svg")).itertext()
            self.expect_translated_and_whole(texts, arguments, 3)

    def test_workbooks(self):
        for number, arguments in enumerate([("show", "r1.json", "r2.json", "--teaching"), ("study", "export", "s.db")]):
            file = FOLDER / f"{number}.xlsx"
            self.output_of(*arguments, "--format", "xlsx", "--output", file.name)
            self.expect_translated_and_whole(texts_of_workbook(file), arguments, 20)


PAGES = [
    ("show", "r1.json", "r2.json", "--teaching", "--curves", "all"),
    ("show", "press.csv", "--map", "press.map.json"),
    ("check", "r2.json", "r1.json"),
    ("check", "empty.json"),
    ("check", "none.json"),
    ("diff", "r1.json", "r2.json", "--rel", "0.01"),
    ("diff", "r1.json", "r1.json"),
    ("diff", "r1.json", "empty.json"),
    ("study", "export", "s.db"),
]


def texts_of_page(page):
    """The texts of a page and of the attributes that people read, and those that its script shows."""
    for element in ElementTree.fromstring(page.removeprefix("<!DOCTYPE html>")).iter():
        if element.tag not in ("script", "style"):
            yield element.text or ""
            yield from (element.get(name, "") for name in ("title", "aria-label", "placeholder", "alt"))
        elif element.get("id") == "texts":
            yield from json.loads(element.text).values()
        yield element.tail or ""


def texts_of_workbook(file):
    with warnings.catch_warnings():
        warnings.simplefilter("ignore")  # of extensions that the reader does not know
        book = openpyxl.load_workbook(file, data_only=True)
    for sheet in book:
        yield sheet.title
        yield from (cell.value for row in sheet.iter_rows() for cell in row if isinstance(cell.value, str))


class Scripts(unittest.TestCase):
    """What scripts read is the same in every language, but for the texts that are there for people."""

    def in_both_languages(self, *arguments):
        english, other = (said(*arguments, environment=environment) for environment in (ENGLISH, PSEUDO))
        self.assertEqual(other.returncode, english.returncode, arguments)
        return english.stdout, other.stdout

    def members_that_differ(self, one, other, place=""):
        """The names of the members whose texts are translated; nothing else may differ."""
        self.assertEqual(type(other), type(one), place)
        if isinstance(one, dict):
            self.assertEqual(list(other), list(one), place)
            return set().union(*(self.members_that_differ(one[member], other[member], member) for member in one))
        if isinstance(one, list):
            self.assertEqual(len(other), len(one), place)
            return set().union(*(self.members_that_differ(part, its, place) for part, its in zip(one, other)))
        if one == other:
            return set()
        self.assertRegex(other, f"{OPENING}.*{CLOSING}", place)
        self.assertEqual(other.count(OPENING), other.count(CLOSING), place)
        return {place}

    def test_json(self):
        for arguments, members in JSON_FORMS:
            english, other = map(json.loads, self.in_both_languages(*arguments, "--format", "json"))
            self.assertEqual(self.members_that_differ(english, other), set(members.split()), arguments)

    def test_csv(self):
        for arguments, columns in CSV_FORMS:
            texts = self.in_both_languages(*arguments, "--format", "csv")
            english, other = (list(csv.DictReader(io.StringIO(text, newline=""))) for text in texts)
            self.assertGreater(len(english), 0, arguments)
            self.assertEqual(self.members_that_differ(english, other), set(columns.split()), arguments)

    def test_junit(self):
        for arguments, members in JUNIT_FORMS:
            texts = self.in_both_languages(*arguments, "--format", "junit")
            english, other = ([(part.tag, {**part.attrib, "text": part.text}) for part in ElementTree.fromstring(text).iter()] for text in texts)
            self.assertEqual([tag for tag, _ in other], [tag for tag, _ in english])
            found = self.members_that_differ([texts for _, texts in english], [texts for _, texts in other])
            self.assertEqual(found, set(members.split()), arguments)


JSON_FORMS = [
    (
        ("show", "r1.json", "r2.json", "--teaching"),
        "displayName invalidValuesNameAppendix invalidValuesText name shortDisplayName shortTableDisplayName tableDisplayName title"
        " unitTitle valueNames",
    ),
    (("check", "r2.json", "none.json"), "column group message"),
    (("diff", "r1.json", "r2.json"), "column group"),
    (("series", "r2.json"), "column"),
    (("limits", "list", "r1.json"), ""),
    (("import", "csv", "press.csv", "--list"), ""),
    (("study", "list", "s.db"), ""),
    (("study", "worst", "s.db"), ""),
    (("study", "trend", "s.db", *TREND), "column"),
    (("study", "compare", "s.db", "R0", "R1"), "column"),
    (("study", "export", "s.db"), "column"),
]
CSV_FORMS = [
    (("show", "r1.json", "r2.json", "--teaching"), "column group"),
    (("diff", "r1.json", "r2.json"), "column group"),
    (("series", "r2.json"), "column group"),
    (("study", "list", "s.db"), ""),
    (("study", "worst", "s.db"), "column"),
    (("study", "trend", "s.db", *TREND), "column"),
    (("study", "export", "s.db"), ""),
    (("study", "export", "s.db", "--long"), "column"),
    (("study", "export", "s.db", "--statistics"), "column"),
]
JUNIT_FORMS = [
    (("check", "r2.json", "none.json"), "message name text"),
    (("diff", "r1.json", "r2.json"), "message name text"),
]

if __name__ == "__main__":
    unittest.main()
