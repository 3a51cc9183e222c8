"""What the tests share that hold questions to a study of random runs against the files of these runs."""

import os
import pathlib
import random
import tempfile

ENVIRONMENT = {name: value for name, value in os.environ.items() if name.startswith(("PG", "PATH", "ASAN", "UBSAN"))} | {
    "LC_ALL": "C.UTF-8",
    "TMPDIR": tempfile.gettempdir(),
}


def check_random_studies(name, check):
    """Lets `check(folder, rng)` compare values of as many studies as NAME_STUDIES says, the first of the number NAME_SEED."""
    first = int(os.environ.get(f"{name}_SEED", "1"))
    count = 0
    for seed in range(first, first + int(os.environ.get(f"{name}_STUDIES", "4"))):
        with tempfile.TemporaryDirectory() as folder:
            count += check(pathlib.Path(folder), random.Random(seed))
    if count == 0:
        raise AssertionError("expected values, found none")
    print(count, "values compared")
