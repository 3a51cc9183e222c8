"""Writes docs/performance.md from what was measured: every figure in it is one of them or a quotient of two."""

import re
import textwrap

import arithmetic
from rows import Growth, Row

BYTES_PER_LINE = 64
NEAR_A_READ = 1.5  # times a mere read: what takes no longer is bound by where its data lie


def figure(samples, name="ms"):
    return arithmetic.median([sample[name] for sample in samples])


def as_time(milliseconds):
    for unit, factor in (("s", 1e-3), ("ms", 1.0), ("µs", 1e3)):
        if milliseconds * factor >= 1.0:
            return f"{milliseconds * factor:.3g} {unit}"
    return f"{milliseconds * 1e6:.3g} ns"


def as_figure(value, name):
    if name in ("ms", "wall"):
        return as_time(value)
    if name in ("peak", "bytes"):
        return f"{value / 1e6:.4g} MB"
    return f"{value:.2f}"


def paragraph(text):
    return textwrap.wrap(text, 130, break_long_words=False, break_on_hyphens=False)


def table(header, lines):
    return ["| " + " | ".join(cells) + " |" for cells in (header, ["---"] * len(header), *lines)]


# ---- what bounds a row


class Machine:
    """What the memory of this machine costs, in milliseconds, as the benchmarks of it have found."""

    def __init__(self, samples, caches):
        self.caches = caches
        self.fault = self._each(samples, "machine: touchPages")
        lines = {int(name.rpartition(":")[2]): name for name in samples if name.startswith("machine: readLines/")}
        self.first, self.second, self.memory = (self._each(samples, lines[size]) for size in sorted(lines))

    @staticmethod
    def _each(samples, name):
        return figure(samples[name]) / figure(samples[name], "items")

    def place(self, doubles):
        """Where so many doubles lie when they are read again and again."""
        for cache, size in zip(("L1", "L2", "L3"), self.caches):
            if doubles * 8 <= size:
                return cache
        return "memory"

    def parts(self, sample, counts):
        """What takes a process its time, in milliseconds; what neither memory nor the system account for are instructions."""
        faults = sample["faults"] * self.fault
        parts = {
            "page faults": faults,
            "other work of the system": max(sample["system"] - faults, 0.0),
            "memory": counts["l2Misses"] * self.memory,
            "L2": (counts["l1Misses"] - counts["l2Misses"]) * self.second,
        }
        return {"instructions": sample["ms"] - sum(parts.values()), **parts}


def bound_of_process(machine, samples, counts):
    medians = {name: figure(samples, name) for name in ("ms", "system", "faults")}
    largest = sorted(machine.parts(medians, counts).items(), key=lambda item: -item[1])
    return ", ".join(f"{name} {milliseconds / medians['ms']:.0%}" for name, milliseconds in largest[:2])


def milliseconds_of_reading(machine, row, samples, measured, groups):
    """How long a mere read of the row's memory takes; nothing where the row does not say what it reads."""
    if row.read:
        peer = measured.get(row.read.format(**groups))
        return row.doubles_of_each * figure(peer) if peer else None
    if not row.touched:
        return None
    touched = figure(samples, row.touched)
    if row.touched == "bytes_per_second":
        touched *= figure(samples) / 1e3
    return touched / BYTES_PER_LINE * machine.memory


def bound(machine, row, name, measured, counts, groups):
    if row.figure != "ms":
        return "–"
    if name in counts:
        return bound_of_process(machine, measured[name], counts[name])
    reading = milliseconds_of_reading(machine, row, measured[name], measured, groups)
    if reading is None:
        return "–"
    if figure(measured[name]) > NEAR_A_READ * reading:
        return "instructions"
    return machine.place(row.doubles_of_each * int(row.doubles.format(**groups))) if row.doubles else "memory"


# ---- rows


def matches(pattern, names):
    """Each of the names that the pattern matches whole, with its groups."""
    for name in names:
        match = re.fullmatch(pattern, name)
        if match:
            yield name, match.groupdict()


def without_groups(text):
    """What a row is called where nothing says what its groups are."""
    return re.sub(r"{\w+}", "…", text)


class Page:
    """The figures of a run, the reasons of goals that are missed by what misses them, and the lines so far."""

    def __init__(self, figures, reasons):
        self.figures = figures
        self.reasons = reasons
        self.missing = list(figures["missing"])
        self.met = {True: 0, False: 0}  # goals so far
        self.machine = Machine(figures["benchmarks"], figures["caches"])

    def verdict(self, section, what, value, goal):
        if goal is None:
            return ""
        self.met[value <= goal] += 1
        if value <= goal:
            return "met"
        return "**missed**: " + self.reasons.get(f"{section.title}: {what}", "no reason is known")

    def measured_for(self, section):
        return {**self.figures["benchmarks"], **self.figures["files"], **self.figures["jobs"].get(section.title, {})}

    def row_lines(self, section, row):
        """A line for each sample of ours; what is not measured, or has no peer that is, is missing."""
        measured = self.measured_for(section)
        found = list(matches(row.ours, measured))
        for name, groups in found:
            peer = row.peer.format(**groups) if row.peer else None
            if peer is None or peer in measured:
                yield self.row_line(section, row, name, peer, groups)
            else:
                self.missing.append(f"{section.title}: {row.what.format(**groups)} beside {row.beside}")
        if not found:
            self.missing.append(f"{section.title}: {without_groups(row.what)}{row.beside and ' beside ' + row.beside}")

    def row_line(self, section, row, name, peer, groups):
        measured = self.measured_for(section)
        what = row.what.format(**groups)
        ours = figure(measured[name], row.figure)
        bounded = bound(self.machine, row, name, measured, self.figures["counts"], groups)
        line = [what, as_figure(ours, row.figure)]
        if peer is None:
            goal = "" if row.goal is None else as_figure(row.goal, row.figure)
            return [*line, "", "", "", goal, bounded, self.verdict(section, what, ours, row.goal)]
        theirs = figure(measured[peer], row.figure)
        goal = "" if row.goal is None else f"{row.goal:g}"
        verdict = self.verdict(section, f"{what} / {row.beside}", ours / theirs, row.goal)
        return [*line, row.beside, as_figure(theirs, row.figure), f"{ours / theirs:.3g}", goal, bounded, verdict]

    def growth_lines(self, section, growth):
        measured = self.measured_for(section)
        series = {}
        for name, groups in matches(growth.ours, measured):
            series.setdefault(growth.what.format(**groups), []).append((int(groups["n"]), name, groups))
        for what, points in series.items():
            if len(points) > 1:
                yield self.growth_line(section, growth, what, sorted(points, key=lambda point: point[0]))
        if not any(len(points) > 1 for points in series.values()):
            self.missing.append(f"{section.title}: {without_groups(growth.what)}")

    def growth_line(self, section, growth, what, points):
        measured = self.measured_for(section)
        times = [(n, figure(measured[name])) for n, name, _ in points]
        reads = []
        if growth.read:
            names = [(n, growth.read.format(**groups)) for n, _, groups in points]
            reads = [(n, figure(measured[name])) for n, name in names if name in measured]
        exponent = arithmetic.exponent(times)
        of_read = arithmetic.exponent(reads) if len(reads) == len(times) else None
        # What grows as a mere read of the same memory does is the memory's growth, up to the same tenth.
        allowed = max(growth.goal, of_read + growth.goal - 1.0) if of_read is not None else growth.goal
        return [
            what,
            ", ".join(f"{n:,}" for n, _ in times),
            ", ".join(as_time(time) for _, time in times),
            f"{exponent:.2f}",
            "" if of_read is None else f"{of_read:.2f}",
            f"{allowed:.2f}",
            self.verdict(section, what, exponent, allowed),
        ]

    def section_lines(self, section):
        missing = len(self.missing)
        rows = [line for row in section.rows if isinstance(row, Row) for line in self.row_lines(section, row)]
        growths = [line for row in section.rows if isinstance(row, Growth) for line in self.growth_lines(section, row)]
        if not rows and not growths:
            self.missing[missing:] = [f"{section.title}: everything"]
            return []
        lines = [f"## {section.title}", "", *paragraph(section.text), ""]
        if growths:
            lines += [*table(["by", "sizes", "times", "exponent", "of a read", "goal", ""], growths), ""]
        if rows:
            lines += [*table(["what", "takes", "beside", "takes", "ratio", "goal", "bound by", ""], rows), ""]
        return lines

    def text(self, sections):
        body = [line for section in sections for line in self.section_lines(section)]
        return "\n".join([*self.head(), *body, *self.tail()]) + "\n"

    def head(self):
        text = (
            "`./benchmark` measures and writes this page. Times are medians of the processor's time, of sides that alternate in one run; "
            "those of a shared machine vary, and the ratios are what to compare. A goal that is missed stays, with its reason."
        )
        facts = [*self.figures["machine"], *self.summary()]
        return ["# Performance", "", *paragraph(text), "", *table(["", ""], facts), ""]

    def summary(self):
        return [["repetitions", self.spread()], ["goals", f"{self.met[True]} met, {self.met[False]} missed"]]

    def spread(self):
        """How far repetitions lie apart, of jobs and benchmarks that have some."""
        measured = list(self.figures["benchmarks"].values())
        for jobs in self.figures["jobs"].values():
            measured += jobs.values()
        spreads = [arithmetic.spread([sample["ms"] for sample in samples]) for samples in measured if len(samples) > 1]
        if not spreads:
            return "none"
        usual = arithmetic.median(spreads)
        return f"half of them lie within {usual:.1%} of the median, of the most unsteady row within {max(spreads):.0%}"

    def tail(self):
        machine = self.machine
        text = (
            f"A page that the system hands out takes {as_time(machine.fault)} here; 64 bytes out of L2 "
            f"{as_time(machine.second)} and out of memory {as_time(machine.memory)}, when they are read in a row. Of a process the "
            "system counts the page faults and its own time, which is also what it takes to read files and to make huge pages; the processor "
            "counts instructions and cache misses where it may be asked, and valgrind, mostly on a file of a tenth of the size, where it may "
            f"not: here it was {self.figures['counted_with']}. What neither misses nor the system account for are the program's "
            "instructions. Of a function in memory it is the time beside a mere read of "
            f"the same data: up to {NEAR_A_READ} times it, the bound is where the data lie, beyond that instructions."
        )
        jobs = [[name, f"{count['instructions'] / 1e6:,.0f}"] for name, count in self.figures["counts"].items()]
        lines = ["## How bounds are found", "", *paragraph(text), ""]
        if jobs:
            lines += [*table(["job", "million instructions"], jobs), ""]
        missing = [f"- {what}" for what in self.missing] or ["Nothing: every row was measured."]
        return [*lines, "## What is missing", "", *missing]
