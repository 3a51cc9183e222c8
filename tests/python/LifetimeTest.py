#!/usr/bin/env python3
"""Who keeps what alive, what is given back, and that Python goes on while the module is at work."""

import gc
import json
import os
import resource
import subprocess
import sys
import threading
import time
import unittest

import numpy
import python_testing
import result_tables

UNIT = "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01"


def content(tools, values):
    """A results file of so many bolts with so many values each."""
    numbers = [float(number % 97 - 48) for number in range(values)]
    tools = [
        {"id": f"B{i}", "kind": "bolt", "series": [{"quantity": "ClampNormalForce", "values": numbers}]} for i in range(tools)
    ]
    unit = {"id": UNIT, "name": "OP20", "tools": tools}
    return json.dumps({"format": "simulation-results", "version": 1, "units": [unit]}).encode()


class Lifetimes(python_testing.InFolder):
    def test_arrays_stay_when_results_are_gone(self):
        text = content(3, 5000)
        array = result_tables.read_results(text).tools()[1].series["ClampNormalForce"]
        gc.collect()
        others = [result_tables.read_results(text.replace(b".0", b".5")) for _ in range(20)]
        self.assertEqual(array[:4].tolist(), [-48.0, -47.0, -46.0, -45.0])
        self.assertEqual(array.sum(), sum(float(number % 97 - 48) for number in range(5000)))
        self.assertEqual(others[0].tools()[1].series["ClampNormalForce"][0], -48.5)

    def test_numbers_of_a_text_stay_when_it_is_gone(self):
        results = result_tables.read_results(bytearray(content(1, 1000)))
        gc.collect()
        self.assertEqual(results.tools()[0].series["ClampNormalForce"][:2].tolist(), [-48.0, -47.0])

    def test_frames_stay_when_results_are_gone(self):
        values = result_tables.read_results(content(100, 3)).values()
        gc.collect()
        self.assertEqual(values["value"].dropna().tolist(), [-48.0] * 100)

    def test_a_unit_outlives_its_draft(self):
        draft = result_tables.Draft()
        unit = draft.unit(UNIT, "OP20")
        del draft
        gc.collect()
        unit.tool("B1", "bolt", {"A": [1.0]})

    def test_nothing_is_left_behind(self):
        path = self.folder / "r.json"
        path.write_bytes(content(20, 50))
        study = result_tables.Study(self.folder / "s.study", create=True)
        study.add(path, run="one")

        everything = result_tables._result_tables.Selection([], [], False)

        def work():
            """Without pandas, which keeps things for itself."""
            results = result_tables.read_results(path)
            results.tools(), results.limits, results.units, results.limits_text()
            results.set_limits({"BoltNormalForce": 1.0, ("Bolts", "ClampClosingForce"): 2.0})
            inner, of_study = results._results, study._study
            inner.values(everything), inner.sections(everything), inner.findings(everything)
            inner.series(everything, [], []), inner.differences(inner, everything, 0.0, 0.0)
            of_study.runs(), of_study.values(["one"], everything), of_study.worst(everything, 3)
            of_study.sections("one", everything), of_study.differences("one", "one", everything, 0.0, 0.0)
            of_study.trend("OP20", "Bolts", "B1", "ClampNormalForce", "")
            draft = result_tables.Draft()
            draft.unit(UNIT, "U").tool("B", "bolt", {"A": numpy.zeros(100)})
            draft.results().tools()
            for wrong in (lambda: results.tables(units="x"), lambda: draft.unit(UNIT, "V")):
                with self.assertRaises(result_tables.Error):
                    wrong()

        def grown(turns=20):
            before = sys.getallocatedblocks(), sys.getrefcount(None)
            for _ in range(turns):
                work()
            gc.collect()
            return sys.getallocatedblocks() - before[0], sys.getrefcount(None) - before[1]

        # What is kept for later comes once; what is lost in each turn would be there each time.
        blocks, nones = zip(*(grown() for _ in range(4)))
        self.assertLess(min(blocks), 20)
        self.assertLess(min(nones), 20)

    def test_numbers_are_given_back(self):
        text = content(4, 100_000)
        megabytes = 4 * 100_000 * 8 / 1e6

        def read():
            results = result_tables.read_results(text)
            results.series(), [tool.series for tool in results.tools()]

        for _ in range(5):
            read()
        before = resource.getrusage(resource.RUSAGE_SELF).ru_maxrss
        for _ in range(60):
            read()
        grown = (resource.getrusage(resource.RUSAGE_SELF).ru_maxrss - before) / 1e3
        self.assertLess(grown, 20 * megabytes, "60 times the numbers were read")


class Threads(python_testing.InFolder):
    def test_go_on_while_a_file_is_awaited(self):
        pipe = self.folder / "pipe"
        os.mkfifo(pipe)
        writer = threading.Thread(target=lambda: pipe.write_bytes(content(1, 3)))
        writer.start()  # waits for a reader, and the reader for what it writes
        results = result_tables.read_results(pipe)
        writer.join()
        self.assertEqual(len(results.tools()), 1)

    def test_go_on_while_the_module_is_at_work(self):
        path = self.folder / "r.json"
        path.write_bytes(content(200, 1000))
        results, other = (result_tables.read_results(path) for _ in range(2))
        study = result_tables.Study(self.folder / "s.study", create=True)
        study.add(path, run="one")
        draft = result_tables.Draft()
        draft.unit(UNIT, "U").tool("B", "bolt", {"A": numpy.zeros(200_000)})
        selection = result_tables._result_tables.Selection([], [], False)
        inner, inner_study = results._results, study._study
        # What takes long enough for another thread to wake. What the package does besides is Python's own work.
        work = {
            "read_path": lambda: result_tables._result_tables.read_path(os.fsencode(path), b""),
            "read_content": lambda text=path.read_bytes(): result_tables._result_tables.read_content("r", text, b""),
            "values": lambda: inner.values(selection),
            "sections": lambda: inner.sections(selection),
            "findings": lambda: inner.findings(selection),
            "differences": lambda: inner.differences(other._results, selection, 0.0, 0.0),
            "series": lambda: inner.series(selection, [], []),
            "save_limits": lambda: inner.save_limits(os.fsencode(self.folder / "l")),
            "draft.write": lambda: draft._draft.write(os.fsencode(self.folder / "d.json")),
            "study.add": lambda: inner_study.add(os.fsencode(path), "one", {}, selection, b""),
            "study.values": lambda: inner_study.values(["one"], selection),
        }
        for name, call in work.items():
            with self.subTest(name):
                self.assertTrue(lets_others_run(call))

    def test_share_results(self):
        results = result_tables.read_results(content(50, 200))
        expected = results.values()["value"].tolist()
        found = []

        def read():
            for _ in range(20):
                found.append(results.values()["value"].tolist() == expected)

        def change():
            for limit in range(20):
                results.set_limits({"BoltNormalForce": float(limit)})

        threads = [threading.Thread(target=work) for work in (read, change, read)]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        self.assertEqual(found, [True] * 40)
        self.assertEqual(results.limits[UNIT]["BoltNormalForce"], 19.0)

    def test_compare_results_both_ways(self):
        one, other = (result_tables.read_results(content(20, 20)) for _ in range(2))

        def compare(before, after):
            for limit in range(30):
                before.set_limits({"BoltNormalForce": float(limit)})
                before.differences(after)

        threads = [threading.Thread(target=compare, args=pair) for pair in ((one, other), (other, one))]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        self.assertEqual(one.limits, other.limits)

    def test_share_a_study(self):
        study = result_tables.Study(self.folder / "s.study", create=True)
        paths = [self.folder / f"{number}.json" for number in range(8)]
        for number, path in enumerate(paths):
            path.write_bytes(content(number + 1, 3))
        threads = [threading.Thread(target=study.add, args=(path, path.stem)) for path in paths]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        self.assertEqual(sorted(study.runs()["run"]), [str(number) for number in range(8)])


def lets_others_run(call):
    """Whether another thread comes to run while `call` does, in one of some hundred turns.

    Python itself would take the lock from no thread in that time: the other one runs where the call gives it back.
    """
    ticks = 0
    is_over = False

    def tick():
        nonlocal ticks
        while not is_over:
            ticks += 1
            time.sleep(0)

    interval = sys.getswitchinterval()
    sys.setswitchinterval(1000)
    other = threading.Thread(target=tick)
    try:
        other.start()
        for _ in range(300):
            before = ticks
            call()
            if ticks > before:
                return True
        return False
    finally:
        is_over = True
        other.join()
        sys.setswitchinterval(interval)


class Importing(unittest.TestCase):
    def test_needs_neither_pandas_nor_numpy_for_what_has_no_frames(self):
        script = """
import sys
for name in ("pandas", "numpy"):
    sys.modules[name] = None
import result_tables
results = result_tables.sample()
results.set_limits({"PilotForce": 1.0})
print(len(results.units), results.limits_text() != "", sorted(set(result_tables.__all__) - set(dir(result_tables))))
"""
        done = subprocess.run([sys.executable, "-B", "-c", script], capture_output=True, text=True, check=False)
        self.assertEqual((done.stdout, done.stderr), ("3 True []\n", ""))

    def test_needs_no_pandas_for_arrays(self):
        script = "import sys; sys.modules['pandas'] = None\nimport result_tables\nprint(len(result_tables.sample().tools()) > 5)"
        done = subprocess.run([sys.executable, "-B", "-c", script], capture_output=True, text=True, check=False)
        self.assertEqual((done.stdout, done.stderr), ("True\n", ""))


if __name__ == "__main__":
    unittest.main()
