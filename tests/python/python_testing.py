"""What the tests of the Python module have in common."""

import os
import pathlib
import subprocess
import tempfile
import unittest

SOURCE = pathlib.Path(__file__).resolve().parents[2]


def program(folder, *arguments, codes=(0,)):
    """What the program writes to standard output, in a folder."""
    command = [os.environ["KESTREL_PROGRAM"], *map(str, arguments)]
    done = subprocess.run(command, cwd=folder, capture_output=True, check=False, timeout=60)
    if done.returncode not in codes:
        raise AssertionError(f"{arguments}: exit code {done.returncode}, {done.stderr.decode()}")
    return done.stdout


class InFolder(unittest.TestCase):
    """Tests that have a temporary folder and may go there."""

    def setUp(self):
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        self.addCleanup(os.chdir, os.getcwd())
        self.folder = pathlib.Path(temporary.name)
