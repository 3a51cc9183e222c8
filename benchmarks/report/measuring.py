"""Runs programs and says what they took: processor time, memory and page faults of a process, instructions and cache misses
where the machine counts them or valgrind does, and what Google Benchmark measures."""

import contextlib
import json
import os
import pathlib
import pty
import re
import subprocess
import sys
import tempfile
import threading
import time

PERF_EVENTS = {
    "instructions:u": "instructions",
    "L1-dcache-load-misses:u": "l1Misses",
    "LLC-load-misses:u": "l2Misses",
}


class Failure(Exception):
    """A program that did not do what is measured: nothing of it is a figure."""


def read_all(descriptor):
    """Takes what a terminal shows until nobody writes to it any more."""
    with contextlib.suppress(OSError):
        while os.read(descriptor, 1 << 16):
            pass


@contextlib.contextmanager
def terminal():
    """A terminal to write to, with somebody who reads."""
    reader, writer = pty.openpty()
    thread = threading.Thread(target=read_all, args=(reader,))
    thread.start()
    try:
        yield writer
    finally:
        os.close(writer)
        thread.join()
        os.close(reader)


def run(command, exit_codes=(0,), on_terminal=False):
    """What a process took, as a sample: milliseconds of the processor, those of them in the system, and of the clock; bytes at most;
    page faults."""
    with contextlib.ExitStack() as stack:
        errors = stack.enter_context(terminal() if on_terminal else tempfile.TemporaryFile())
        begin = time.monotonic()
        process = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=errors)
        _, status, usage = os.wait4(process.pid, 0)
        wall = time.monotonic() - begin
        process.returncode = os.waitstatus_to_exitcode(status)
        if process.returncode not in exit_codes:
            raise Failure(f"{' '.join(command)}: exit code {process.returncode}")
    return {
        "ms": 1e3 * (usage.ru_utime + usage.ru_stime),
        "system": 1e3 * usage.ru_stime,
        "wall": 1e3 * wall,
        "peak": 1024 * usage.ru_maxrss,
        "faults": usage.ru_minflt + usage.ru_majflt,
    }


def output_of(command, exit_codes=(0,)):
    process = subprocess.run(command, stdin=subprocess.DEVNULL, capture_output=True, text=True)
    if process.returncode not in exit_codes:
        raise Failure(f"{' '.join(command)}: exit code {process.returncode}: {process.stderr.strip()}")
    return process.stdout, process.stderr


# ---- instructions and cache misses


def perf_counts(command, exit_codes=(0,)):
    """What the processor counts, or nothing where it does not or may not."""
    try:
        _, errors = output_of(["perf", "stat", "-x", ";", "-e", ",".join(PERF_EVENTS), "--", *command], exit_codes)
    except (FileNotFoundError, Failure):
        return None
    counts = {}
    for line in errors.splitlines():
        fields = line.split(";")
        if len(fields) > 2 and fields[2] in PERF_EVENTS and fields[0].isdigit():
            counts[PERF_EVENTS[fields[2]]] = int(fields[0])
    return counts if len(counts) == len(PERF_EVENTS) else None


def caches():
    """Bytes and ways of the processor's data caches, the nearest first, as far as the system says."""
    found = {}
    for folder in pathlib.Path("/sys/devices/system/cpu/cpu0/cache").glob("index*"):
        names = ("level", "type", "size", "ways_of_associativity")
        level, kind, size, ways = ((folder / name).read_text().strip() for name in names)
        if kind != "Instruction":
            found[int(level)] = (int(size.removesuffix("K")) << 10, int(ways))
    return [found[level] for level in sorted(found)]


def callgrind_counts(command, exit_codes=(0,)):
    """What valgrind counts, with caches as large as the first two of this machine."""
    first, second = caches()[:2] if len(caches()) > 1 else ((1 << 15, 8), (1 << 20, 8))
    simulated = [f"--D1={first[0]},{first[1]},64", f"--LL={second[0]},{second[1]},64"]
    valgrind = ["valgrind", "--tool=callgrind", "--cache-sim=yes", "--callgrind-out-file=/dev/null", *simulated]
    _, errors = output_of([*valgrind, *command], exit_codes)
    names = re.search(r"Events +: (.*)", errors).group(1).split()
    numbers = map(int, re.search(r"Collected +: (.*)", errors).group(1).split())
    events = dict(zip(names, numbers))
    return {
        "instructions": events["Ir"],
        "l1Misses": events["D1mr"] + events["D1mw"],
        "l2Misses": events["DLmr"] + events["DLmw"],
    }


# ---- Google Benchmark


def benchmark_names(program, pattern):
    """Names of the benchmarks of a program that match, none where there is no such program."""
    if not program.is_file():
        return []
    names, _ = output_of([str(program), "--benchmark_list_tests=true"])
    return [name for name in names.split() if re.search(pattern, name)]


def run_benchmarks(command, names, repetitions, seconds):
    """Samples by benchmark, of runs in random order: milliseconds of the processor, and its counters."""
    pattern = "|".join(f"^{re.escape(name)}$" for name in names)
    output, _ = output_of(
        [
            *command,
            f"--benchmark_filter={pattern}",
            f"--benchmark_repetitions={repetitions}",
            f"--benchmark_min_time={seconds}",
            "--benchmark_enable_random_interleaving=true",
            "--benchmark_format=json",
        ]
    )
    samples = {}
    milliseconds = {"ns": 1e-6, "us": 1e-3, "ms": 1.0, "s": 1e3}
    for entry in json.loads(output)["benchmarks"]:
        if entry["run_type"] != "iteration":
            continue
        if entry.get("error_occurred"):
            raise Failure(f"{command[-1]}: {entry['name']}: {entry['error_message']}")
        sample = {name: value for name, value in entry.items() if isinstance(value, float)}
        sample["ms"] = entry["cpu_time"] * milliseconds[entry["time_unit"]]
        samples.setdefault(entry["name"], []).append(sample)
    return samples


def note(text):
    """Tells who waits what is going on."""
    print(f"{time.strftime('%H:%M:%S')} {text}", file=sys.stderr, flush=True)
