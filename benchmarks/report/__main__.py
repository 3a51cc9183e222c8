"""Measures the program, the library and what people would use in their place, and writes the page about it."""

import argparse
import concurrent.futures
import datetime
import json
import os
import pathlib
import re
import shlex
import subprocess
import sys

import measuring
from measuring import note
from page import Page, matches
from rows import BENCHMARKS, JOBS, SECTIONS, Growth

ROOT = pathlib.Path(__file__).resolve().parents[2]
BUILD = ROOT / "build/benchmark"
DATA = BUILD / "data"
TOOLS = {
    "program": str(BUILD / "result_tables/result-tables"),
    "parse": str(BUILD / "benchmarks/parse"),
    "peers": f"/usr/bin/python3 {ROOT / 'benchmarks/report/peers.py'}",
    "frames": f"env PYTHONPATH={BUILD / 'python'} /usr/bin/python3 -B {ROOT / 'benchmarks/report/frames.py'}",
    "data": str(DATA),
    "examples": str(ROOT / "examples"),
}


# ---- the machine and what is installed on it


def first_match(file, pattern):
    match = re.search(pattern, pathlib.Path(file).read_text(), re.MULTILINE)
    return match.group(1) if match else "unknown"


def version_of(package):
    query = ["dpkg-query", "--show", "--showformat=${db:Status-Status} ${Version}", package]
    status, _, version = subprocess.run(query, capture_output=True, text=True).stdout.partition(" ")
    return version if status == "installed" else None


def packages():
    names = []
    for file in ("packages-benchmark.txt", "packages-python.txt", "packages-report.txt"):
        lines = (ROOT / "setup" / file).read_text().splitlines()
        names += [line for line in lines if line and not line.startswith("#")]
    return list(dict.fromkeys(["g++", "rapidjson-dev", *names]))


def machine(quick, load):
    cpus = len(os.sched_getaffinity(0))
    memory = int(first_match("/proc/meminfo", r"^MemTotal: +(\d+)")) / (1 << 20)
    commit, _ = measuring.output_of(["git", "-C", str(ROOT), "describe", "--always", "--dirty"], (0, 128))
    versions = [f"{name} {version_of(name)}" for name in packages() if version_of(name)]
    return [
        ["measured", f"{datetime.date.today()}{', with few repetitions' if quick else ''}"],
        ["of", f"commit {commit.strip() or 'unknown'}, preset `benchmark`"],
        ["processor", f"{first_match('/proc/cpuinfo', r'^model name.*: (.*)')}, {cpus} at its disposal"],
        ["caches", ", ".join(f"{size >> 10:,} KiB" for size, _ in measuring.caches())],
        ["memory", f"{memory:.1f} GiB"],
        ["system", f"{first_match('/etc/os-release', r'^PRETTY_NAME=.(.*).$')}, Linux {os.uname().release}"],
        ["packages", ", ".join(versions)],
        ["other work", "none" if load < 0.5 else f"a load of {load:.1f} when it began"],
    ]


# ---- measuring


def command_of(job):
    return shlex.split(job.command.format(**TOOLS))


def jobs_of(section):
    """The jobs that a section's rows name, each once."""
    patterns = []
    for row in section.rows:
        patterns += [row.ours] if isinstance(row, Growth) else [row.ours, row.peer or ""]
    return {name: JOBS[name] for pattern in patterns for name, _ in matches(pattern, JOBS)}


def measure_jobs(section, rounds, missing):
    """Samples by job. A round runs each once, so that whatever disturbs the machine disturbs all of them."""
    samples = {}
    failed = set()
    jobs = list(jobs_of(section).items())
    for turn in range(rounds):
        # Another one begins in each round: none is always measured after the same.
        shift = turn * (len(jobs) // 2 + 1) % len(jobs)
        for name, job in jobs[shift:] + jobs[:shift]:
            try:
                sample = measuring.run(command_of(job), job.exit_codes, job.on_terminal)
                samples.setdefault(name, []).append(sample)
            except measuring.Failure as failure:
                failed.add(name)
                missing.append(str(failure))
    return {name: found for name, found in samples.items() if name not in failed}


def measure_benchmarks(benchmarks, repetitions, missing):
    program = BUILD / "benchmarks" / benchmarks.program
    names = measuring.benchmark_names(program, benchmarks.pattern)
    if not names:
        missing.append(f"the benchmark program {benchmarks.program}, which is not built")
    together = {}
    for name in names:
        match = re.search(benchmarks.together, name)
        together.setdefault(match.groups() if match else name, []).append(name)
    command = [str(ROOT / "tests/support" / benchmarks.beside)] if benchmarks.beside else []
    samples = {}
    for some in together.values():
        try:
            samples.update(measuring.run_benchmarks([*command, str(program)], some, repetitions, benchmarks.seconds))
        except measuring.Failure as failure:
            missing.append(str(failure))
    return {f"{benchmarks.program}: {name}": samples[name] for name in names if name in samples}


def count(name, job):
    """Instructions and cache misses of a job, and whether the processor has counted them."""
    found = measuring.perf_counts(command_of(job), job.exit_codes)
    if found:
        return found, True
    smaller = JOBS[job.smaller or name]
    found = measuring.callgrind_counts(command_of(smaller), smaller.exit_codes)
    return {event: job.times * number for event, number in found.items()}, False


def count_all(jobs):
    """Counts by job, and what counted. Counting is not disturbed by other work: all processors count."""
    with concurrent.futures.ThreadPoolExecutor(len(os.sched_getaffinity(0))) as pool:
        runs = {name: pool.submit(count, name, job) for name, job in jobs.items()}
    found = {name: run.result() for name, run in runs.items()}
    by_processor = any(is_by_processor for _, is_by_processor in found.values())
    return {name: counts for name, (counts, _) in found.items()}, "the processor" if by_processor else "valgrind"


def measure(quick, only):
    """All figures of a run."""
    load = os.getloadavg()[0]
    chosen = [section for section in SECTIONS if re.search(only, section.title)]
    missing = [f"the package {name}, which is not installed" for name in packages() if not version_of(name)]
    jobs = {}
    for section in chosen:
        if jobs_of(section):
            note(f"measuring {section.title}")
            jobs[section.title] = measure_jobs(section, section.rounds[quick], missing)
    benchmarks = {}
    for some in BENCHMARKS:
        # Bounds need the machine's figures.
        if re.search(only, some.program) or some.program == "machine":
            note(f"measuring benchmarks/{some.program}")
            benchmarks.update(measure_benchmarks(some, some.repetitions[quick], missing))
    note("counting instructions")
    measured = {name for samples in jobs.values() for name in samples}
    counts, counted_with = count_all({name: job for name, job in JOBS.items() if job.is_counted and name in measured})
    return {
        "machine": machine(quick, load),
        "caches": [size for size, _ in measuring.caches()],
        "missing": sorted(set(missing)),
        "files": {file.name: [{"peak": file.stat().st_size}] for file in DATA.glob("*.json")},
        "jobs": jobs,
        "benchmarks": benchmarks,
        "counts": counts,
        "counted_with": counted_with,
    }


# ---- the page


def read_reasons():
    """Why a goal is missed, by section and row: "Section: row / beside = reason"; a row may have " = " in its name."""
    lines = (ROOT / "benchmarks/report/reasons.txt").read_text().splitlines()
    pairs = [line.rsplit(" = ", 1) for line in lines if line and not line.startswith("#")]
    return dict(pairs)


def arguments():
    parser = argparse.ArgumentParser(prog="./benchmark", description=__doc__)
    parser.add_argument("--quick", action="store_true", help="fewer repetitions; the page is build/benchmark/quick.md")
    parser.add_argument(
        "--only", metavar="PATTERN", help="only sections and benchmark programs that match; the page is build/benchmark/some.md"
    )
    parser.add_argument(
        "--page", action="store_true", help="measure nothing: write the page anew from the figures of the last such run"
    )
    return parser.parse_args()


def main():
    options = arguments()
    # Figures of each kind of run are kept apart, so that those of a quick one never get into the documents.
    kind = "some" if options.only else "quick" if options.quick else "full"
    figures = BUILD / f"{kind}.json"
    if not options.page:
        note("making the data")
        subprocess.run([sys.executable, ROOT / "benchmarks/report/data.py", DATA], check=True)
        figures.write_text(json.dumps(measure(options.quick, options.only or ""), indent=1))
    if not figures.is_file():
        sys.exit(f"benchmark: {figures}: expected the figures of an earlier run, found none")
    output = ROOT / "docs/performance.md" if kind == "full" else BUILD / f"{kind}.md"
    output.write_text(Page(json.loads(figures.read_text()), read_reasons()).text(SECTIONS))
    note(f"written: {output.relative_to(ROOT)}")


if __name__ == "__main__":
    try:
        main()
    except measuring.Failure as failure:
        sys.exit(f"benchmark: {failure}")
