#!/usr/bin/env python3
"""The reference says a word about all that the installed headers offer, and its picture shows who includes whom.

usage: tests/ReferenceTest.py DOXYFILE      as the build has made it
"""

import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree

ROOT = pathlib.Path(__file__).resolve().parent.parent
IMAGES = ROOT / "docs" / "images"
LIBRARY = "Business_TableProperties"
CLASSES = {
    "MaxValueGroup", "MaxValueGroupContainer", "MaxValueItem", "MaxValueOrigin", "MaxValueSeries", "MaxValueSubGroup",
    "SimUnitMaxValueOrigins", "SimUnitMaxValuesProvider", "TablePropertiesData", "TablePropertyLimit", "TablePropertySettings",
}  # fmt: skip


class ReferenceTest(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.folder)

    def make(self, **settings):
        """Runs doxygen with other settings than the build's."""
        lines = "".join(f"{name} = {value}\n" for name, value in {"OUTPUT_DIRECTORY": self.folder, **settings}.items())
        done = subprocess.run(
            ["doxygen", "-"], input=f"@INCLUDE = {DOXYFILE}\n{lines}", cwd=ROOT, capture_output=True, text=True, check=False, timeout=300
        )
        return done.returncode, done.stderr

    def test_says_a_word_about_each_member_and_begins_with_the_house(self):
        self.assertEqual(self.make(), (0, ""))
        html = self.folder / "html"
        self.assertTrue((html / "house.svg").is_file())
        first_page = (html / "index.html").read_text()
        self.assertIn('data="house.svg"', first_page)
        self.assertIn('href="classKestrel_1_1SimUnitMaxValuesProvider.html"', first_page)
        pages = {match[1] for match in (re.fullmatch(r"(?:class|struct)Kestrel_1_1(\w+)\.html", page.name) for page in html.iterdir()) if match}
        self.assertLessEqual(CLASSES, pages)

    def test_says_a_word_about_each_parameter_and_result_of_the_library(self):
        headers = [ROOT / LIBRARY / name for name in public_headers()]
        self.assertEqual(len(headers), 7)
        settings = {"INPUT": " ".join(map(str, headers)), "WARN_NO_PARAMDOC": "YES", "USE_MDFILE_AS_MAINPAGE": ""}
        self.assertEqual(self.make(**settings), (0, ""))

    def test_takes_silence_for_an_error(self):
        header = self.folder / "Silent.h"
        header.write_text("/// A class.\nclass Silent {\n public:\n  void say();\n};\n")
        code, said = self.make(INPUT=header, USE_MDFILE_AS_MAINPAGE="")
        self.assertEqual(code, 1)
        self.assertRegex(said, r"Silent\.h:4: error: Member say\(\) .* is not documented")


def public_headers():
    text = (ROOT / LIBRARY / "CMakeLists.txt").read_text()
    return re.findall(r"\w+\.h", text[text.index("FILE_SET HEADERS BASE_DIRS") : text.index("FILE_SET made_headers")])


# ---- the house


def arrows_of(text):
    return set(re.findall(r"^  (\w+) -> (\w+)$", text, re.M))


def room_of(path):
    """The box of the picture that a path of an include, or of a source, belongs to; none of a header that is of no box."""
    first, *rest = pathlib.PurePath(path).parts
    if first == "result_tables":
        return rest[0] if len(rest) > 1 else "command"
    if first in (LIBRARY, "python", "examples", "host"):
        return {LIBRARY: "library"}.get(first, first)
    return "host" if (ROOT / "host" / first).is_dir() else None


def includes():
    """Who includes whom, in sources and headers."""
    found = set()
    for folder in ("result_tables", LIBRARY, "host", "python", "examples"):
        for source in (ROOT / folder).rglob("*"):
            if source.suffix not in (".h", ".cpp"):
                continue
            here = room_of(source.relative_to(ROOT))
            there = {room_of(path) for path in re.findall(r'#include "([^"]+/[^"]+)"', source.read_text())}
            found |= {(here, room) for room in there - {here, None}}
    return found


def reachable(arrows):
    """The arrows, and what follows from them."""
    closed = set(arrows)
    while more := {(a, d) for a, b in closed for c, d in closed if b == c} - closed:
        closed |= more
    return closed


class HouseTest(unittest.TestCase):
    DRAWN = arrows_of((IMAGES / "house.dot").read_text())

    def test_arrows_are_the_includes(self):
        follows = reachable(self.DRAWN)
        self.assertEqual({(a, b) for a, b in follows if (b, a) in follows}, set(), "arrows run one way")
        self.assertEqual(includes() - follows, set(), "includes that no arrows lead along")
        followed = includes()
        needed = {(a, b) for a, b in self.DRAWN if (ROOT / a).is_dir() or a not in ("python", "examples")}
        self.assertEqual(needed - followed, set(), "arrows that no include needs")

    def test_picture_is_that_of_the_arrows(self):
        titles = {}
        for group in xml.etree.ElementTree.parse(IMAGES / "house.svg").iter("{http://www.w3.org/2000/svg}g"):
            titles.setdefault(group.get("class"), set()).add(group[0].text)
        self.assertEqual({tuple(title.split("->")) for title in titles["edge"]}, self.DRAWN)
        made = subprocess.run(["dot", "-Tsvg", IMAGES / "house.dot"], capture_output=True, text=True, check=True).stdout
        texts = re.findall(r"<text[^>]*>([^<]*)<", (IMAGES / "house.svg").read_text())
        self.assertEqual(texts, re.findall(r"<text[^>]*>([^<]*)<", made))


if __name__ == "__main__":
    DOXYFILE = sys.argv[1]
    if not (shutil.which("doxygen") and shutil.which("dot")):
        print("expected doxygen and dot, found none of them or one alone")
        sys.exit(77)
    unittest.main(argv=sys.argv[:1])
