#!/usr/bin/env python3
"""Many processes use one study at the same time, and some are killed: nothing is lost, nothing doubled, each run whole or absent.

usage: KESTREL_PROGRAM=PROGRAM [STUDY_KIND=server] tests/StudyProcessesTest.py

The study is a file, or with STUDY_KIND=server a database of the PostgreSQL server that the environment names. STUDY_KILLS says how
many processes are killed, STUDY_SEED when.
"""

import json
import os
import pathlib
import random
import signal
import subprocess
import sys
import threading
import time

sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent / "support"))

import study_testing  # noqa: E402
from study_testing import StudyTest, Together, expect_done, expect_whole, listed, output_of, run, shown_values  # noqa: E402

PROCESSES = 8


def lines_of(ended):
    """What processes said that all succeeded."""
    return [line for done in ended for line in expect_done(done).decode().splitlines()]


class StudyProcessesTest(StudyTest):
    def test_each_adds_its_own_runs_while_others_list(self):
        study = self.new_study()
        names = [[self.write(f"run-{process}-{number}.json", 100 * process + number) for number in range(5)] for process in range(PROCESSES)]
        expected = {name.removesuffix(".json"): shown_values(self.folder, name) for own in names for name in own}
        is_over = threading.Event()
        faults = []

        def keep_listing():
            seen = set()
            while not is_over.is_set():
                done = run(self.folder, "study", "list", study.name, "--format", "json")
                if done.returncode == 2 and not seen:
                    continue  # it is being made
                try:
                    found = {one["run"]: one["values"] for one in json.loads(expect_done(done))["runs"]}
                    self.assertLessEqual(seen, set(found))
                    self.assertEqual(found, {name: len(expected[name]) for name in found})
                    seen |= set(found)
                except BaseException as fault:  # pylint: disable=broad-except
                    faults.append(fault)
                    return

        listers = [threading.Thread(target=keep_listing) for _ in range(2)]
        for lister in listers:
            lister.start()
        with Together() as adders:
            for own in names:
                adders.start(self.folder, "study", "add", study.name, *own)
        is_over.set()
        for lister in listers:
            lister.join()
        self.assertEqual(faults, [])
        said = lines_of(adders.ended)
        self.assertEqual(len([line for line in said if line.endswith(": added, 100 values")]), 40)
        expect_whole(self.folder, study, expected)

    def test_all_make_the_study_and_add_the_same_runs(self):
        names = [self.write(f"run-{number}.json", number) for number in range(4)]
        expected = {name.removesuffix(".json"): shown_values(self.folder, name) for name in names}
        for _ in range(5):
            study = self.new_study()
            with Together() as adders:
                for _ in range(PROCESSES):
                    adders.start(self.folder, "study", "add", study.name, *names)
            said = lines_of(adders.ended)
            for name in expected:
                self.assertEqual(said.count(f"{name}: added, 100 values"), 1)
                self.assertEqual(said.count(f"{name}: unchanged, as the content is the same"), PROCESSES - 1)
            expect_whole(self.folder, study, expected)

    def test_all_replace_the_same_run(self):
        study = self.new_study()
        choices = []
        # Some share neither layout nor a column's place.
        for process in range(PROCESSES):
            folder = self.folder / str(process)
            folder.mkdir()
            self.write(f"{process}/run.json", process, bolts=10 + process // 2, units=1 + process % 2, prefix=f"Bolt {process % 3}")
            choices.append(shown_values(folder, "run.json"))
        for _ in range(5):
            with Together() as adders:
                for process in range(PROCESSES):
                    adders.start(self.folder, "study", "add", study.name, f"{process}/run.json", "--run", "run", "--label", f"from={process}")
            lines_of(adders.ended)
            expect_whole(self.folder, study, {"run": choices})
            found = listed(self.folder, study)["run"]
            self.assertEqual(found["file"], f"{found['labels']['from']}/run.json")
            self.assertEqual(study.values("run"), choices[int(found["labels"]["from"])])

    def test_some_remove_what_others_add_and_replace(self):
        study = self.new_study()
        choices = []
        for content in range(2):
            (self.folder / str(content)).mkdir()
            self.write(f"{content}/run.json", content, prefix=f"Bolt {content}")
            choices.append(shown_values(self.folder / str(content), "run.json"))
        self.write("other.json", 7)
        other = shown_values(self.folder, "other.json")
        output_of(self.folder, "study", "add", study.name, "other.json")
        for _ in range(5):
            with Together() as processes:
                for process in range(PROCESSES):
                    if process % 4 == 3:
                        processes.start(self.folder, "study", "remove", study.name, "run")
                    else:
                        processes.start(self.folder, "study", "add", study.name, f"{process % 2}/run.json", "--run", "run")
            for done in processes.ended:
                if "remove" not in done.args:
                    expect_done(done)
                elif done.returncode != 0:
                    self.assertIn("expected the name of a run", study_testing.expect_one_line(done))
            expected = {"other": other}
            if "run" in listed(self.folder, study):
                expected["run"] = choices
            expect_whole(self.folder, study, expected)

    def test_killed_at_any_moment_each_run_is_whole_or_absent(self):
        generator = random.Random(int(os.environ.get("STUDY_SEED", "1")))
        study = self.new_study()
        contents = {}
        for content in ("first", "second"):
            (self.folder / content).mkdir()
            for number in range(3):
                self.write(f"{content}/run-{number}.json", f"{content} {number}", bolts=400, prefix=content)
                contents[content, f"run-{number}"] = shown_values(self.folder / content, f"run-{number}.json")
        runs = sorted({name for _, name in contents})
        choices = {name: [contents["first", name], contents["second", name]] for name in runs}

        def arguments(content):
            return ["study", "add", study.name, *(f"{name}.json" for name in runs)]

        begun = time.monotonic()
        output_of(self.folder / "first", *self.inside(study, arguments("first")))
        whole = time.monotonic() - begun
        kills = int(os.environ.get("STUDY_KILLS", "16"))
        killed = 0
        for number in range(kills):
            content = "first" if number % 2 else "second"
            if number % 5 == 4:
                study.drop()
            process = subprocess.Popen(
                study_testing.command(*self.inside(study, arguments(content))),
                cwd=self.folder / content,
                env=study_testing.ENVIRONMENT,
                stdout=subprocess.DEVNULL,
                stderr=subprocess.DEVNULL,
            )
            time.sleep(generator.uniform(0, whole))
            process.send_signal(signal.SIGKILL)
            killed += process.wait() == -signal.SIGKILL
            study.check()
            if study.is_there():
                expect_whole(self.folder, study, {name: choices[name] for name in listed(self.folder, study)})
        output_of(self.folder / "first", *self.inside(study, arguments("first")))
        expect_whole(self.folder, study, {name: contents["first", name] for name in runs})
        print(f"{killed} of {kills} processes were killed before they ended", file=sys.stderr)
        self.assertGreater(killed, 0)

    def inside(self, study, arguments):
        """The arguments for a folder below the one that the study is in."""
        is_file = isinstance(study, study_testing.FileStudy)
        return [f"../{argument}" if is_file and argument == study.name else argument for argument in arguments]


if __name__ == "__main__":
    study_testing.main()
