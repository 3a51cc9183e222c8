#!/usr/bin/env python3
"""The module as it is installed, with the libraries and catalogues beside it, in a folder that has moved."""

import os
import subprocess
import unittest

import python_testing

SCRIPT = """
import result_tables
print(result_tables.__file__)
try:
    result_tables.read_results("none.json")
except result_tables.Error as error:
    print(error)
"""


class Installed(python_testing.InFolder):
    def test_module_finds_what_it_needs(self):
        for component in ("library", "python"):
            subprocess.run(
                ["cmake", "--install", os.environ["KESTREL_BUILD"], "--prefix", self.folder / "there", "--component", component],
                stdout=subprocess.DEVNULL,
                check=True,
            )
        here = (self.folder / "there").rename(self.folder / "here") / "lib/python3/dist-packages"
        self.assertTrue((here / "result_tables/py.typed").is_file())
        environment = {"PATH": os.environ["PATH"], "PYTHONPATH": str(here), "LANG": "de_DE.UTF-8"}
        done = subprocess.run(
            ["/usr/bin/python3", "-B", "-c", SCRIPT], env=environment, cwd=self.folder, capture_output=True, text=True, check=False
        )
        self.assertEqual(done.stderr, "")
        self.assertEqual(
            done.stdout,
            f"{here}/result_tables/__init__.py\nnone.json: kann nicht gelesen werden: Datei oder Verzeichnis nicht gefunden\n",
        )


if __name__ == "__main__":
    unittest.main()
