#!/usr/bin/python3
"""The Debian packages that the preset `package` makes: they satisfy lintian, are the same bytes each time, and are whole.

usage: tests/PackagesTest.py BUILD [CLASS.TEST]...     BUILD: folder of the preset, in which the packages have been made

Exit code 77 without lintian.
"""

import gzip
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

PROGRAM, LIBRARY, DEVELOPMENT, PYTHON = (
    "result-tables",
    "libbusiness-tableproperties1",
    "libbusiness-tableproperties-dev",
    "python3-result-tables",
)


def output_of(*command, **options):
    return subprocess.run(command, check=True, capture_output=True, text=True, **options).stdout


def field(package, name):
    return output_of("dpkg-deb", "--field", package, name).strip()


def contents(folder):
    return {package.name: package.read_bytes() for package in folder.glob("*.deb")}


class PackagesTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = pathlib.Path(tempfile.mkdtemp())
        cls.addClassCleanup(shutil.rmtree, cls.folder)
        cls.packages = {field(package, "Package"): package for package in (BUILD / "packages").glob("*.deb")}
        cls.root = cls.folder / "root"
        for package in cls.packages.values():
            subprocess.run(["dpkg-deb", "--extract", package, cls.root], check=True)

    def test_there_is_one_for_each_component(self):
        self.assertEqual(set(self.packages), {PROGRAM, LIBRARY, DEVELOPMENT, PYTHON})

    def test_lintian_has_nothing_to_say_but_what_is_explained(self):
        result = subprocess.run(
            ["lintian", "--fail-on", "error,warning", *self.packages.values()], capture_output=True, text=True
        )
        self.assertEqual((result.returncode, result.stdout), (0, ""))
        overrides = list(self.root.glob("usr/share/lintian/overrides/*"))
        self.assertEqual([file.name for file in overrides], [LIBRARY])
        self.assertTrue(overrides[0].read_text().startswith("# CPack adds scripts that call ldconfig"))

    def test_they_are_the_same_bytes_each_time(self):
        before = contents(BUILD / "packages")
        for made in ["man", "changelog.gz", "symbols"]:
            path = BUILD / "packaging" / made
            shutil.rmtree(path) if path.is_dir() else path.unlink()
        subprocess.run(["cmake", "--build", BUILD], check=True, capture_output=True)
        again = self.folder / "again"
        subprocess.run(["cpack", "-B", again], cwd=BUILD, check=True, capture_output=True)
        self.assertEqual(contents(again).keys(), before.keys())
        for name, content in contents(again).items():
            self.assertTrue(content == before[name], name)

    def test_links_of_installed_pages_resolve(self):
        pages = list(self.root.glob("usr/share/doc/**/*.md"))
        self.assertIn(self.root / "usr/share/doc/result-tables/README.md", pages)
        followed = 0
        for page in pages:
            for link in re.findall(r"\]\(([^)#:\s]+)(?:#[^)]*)?\)", page.read_text()):
                followed += 1
                self.assertTrue((page.parent / link).exists(), f"{page.relative_to(self.root)}: {link}")
        self.assertGreater(followed, 50)

    def test_the_reference_comes_with_the_headers(self):
        first = self.root / f"usr/share/doc/{DEVELOPMENT}/reference/index.html"
        self.assertIn("SimUnitMaxValuesProvider", first.read_text() + (first.parent / "annotated.html").read_text())

    def test_libraries_say_what_programs_need(self):
        control = self.folder / "control"
        subprocess.run(["dpkg-deb", "--control", self.packages[LIBRARY], control], check=True)
        version = field(self.packages[LIBRARY], "Version")
        self.assertEqual(
            sorted((control / "shlibs").read_text().split("\n")),
            ["", f"libBusiness_TableProperties 1 {LIBRARY} (>= {version})", f"libKestrelHost 1 {LIBRARY} (>= {version})"],
        )
        self.assertEqual((control / "triggers").read_text(), "activate-noawait ldconfig\n")
        symbols = (control / "symbols").read_text()
        self.assertIn(f" _ZNK7Kestrel18TablePropertyLimit8getLimitEv@Base {version}\n", symbols)
        self.assertIn(f"libKestrelHost.so.1 {LIBRARY} #MINVER#\n", symbols)

    def test_packages_of_one_build_belong_together(self):
        exactly = f"{LIBRARY} (= {field(self.packages[LIBRARY], 'Version')})"
        for name in [PROGRAM, DEVELOPMENT, PYTHON]:
            self.assertIn(exactly, field(self.packages[name], "Depends").split(", "), name)
        self.assertIn("libboost-dev", field(self.packages[DEVELOPMENT], "Depends").split(", "))
        self.assertEqual(field(self.packages[PROGRAM], "Recommends"), "libpq5")

    def test_each_has_licence_and_changes(self):
        for name in self.packages:
            documents = self.root / "usr/share/doc" / name
            self.assertTrue((documents / "copyright").read_text().startswith("Format: https://www.debian.org/"), name)
            changes = gzip.decompress((documents / "changelog.gz").read_bytes()).decode()
            self.assertTrue(changes.startswith(f"result-tables ({field(self.packages[name], 'Version')}) "), name)
            self.assertIn("\nresult-tables (1.0.0) unstable; urgency=medium\n", changes)
        self.assertEqual((self.root / "usr/share/doc/result-tables/LICENSE").readlink(), pathlib.Path("copyright"))

    def test_code_is_hardened_and_finds_no_libraries_of_the_build(self):
        files = [self.root / "usr/bin/result-tables", *self.root.glob("usr/lib/*/libKestrelHost.so.1")]
        self.assertEqual(len(files), 2)
        for file in files:
            dynamic = output_of("readelf", "--dynamic", "--wide", file)
            self.assertIn("BIND_NOW", dynamic)
            self.assertNotIn("RUNPATH", dynamic)
            self.assertNotIn("RPATH", dynamic)
            self.assertIn("__stack_chk_fail", output_of("readelf", "--dyn-syms", "--wide", file))


if __name__ == "__main__":
    BUILD = pathlib.Path(sys.argv[1]).resolve()
    if not all(map(shutil.which, ["lintian", "dpkg-deb", "cpack", "help2man"])):
        sys.exit(77)
    unittest.main(argv=sys.argv[:1] + sys.argv[2:])
