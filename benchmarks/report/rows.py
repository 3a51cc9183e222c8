"""What is measured and what it is held against: the jobs, the benchmarks and the rows of the tables, as data.

A sample is known by a name: a job's is its key in JOBS, a benchmark's is "program: name", a file's of the data is its name.
"""

from typing import NamedTuple, Optional


class Job(NamedTuple):
    """A process that is measured whole. {program}, {parse}, {peers}, {frames}, {data} and {examples} stand for what they are called."""

    command: str
    exit_codes: tuple = (0,)
    on_terminal: bool = False
    is_counted: bool = False  # its instructions are
    smaller: Optional[str] = None  # by valgrind, which takes long, those of this job
    times: int = 1  # which does such a part of the work


class Benchmarks(NamedTuple):
    """Benchmarks of a program to run. Those whose names match `together` with the same groups run interleaved."""

    program: str
    pattern: str
    seconds: float
    repetitions: tuple  # in full and quick
    together: str = ""
    beside: str = ""  # a script of the tests that runs a program beside what it needs


class Row(NamedTuple):
    """A line of a table. `ours` is a pattern for names of samples; what its groups match stands for {group} in the others."""

    what: str
    ours: str
    beside: str = ""
    peer: Optional[str] = None  # the sample to divide by; none: the goal is for the figure itself
    goal: Optional[float] = None
    figure: str = "ms"  # of a sample: ms, wall, peak or a counter of a benchmark
    read: Optional[str] = None  # the sample that merely reads the same memory
    touched: Optional[str] = None  # or the counter that says how many bytes there are to read
    doubles: Optional[str] = None  # how many are read, to tell which cache holds them; none: no cache does
    doubles_of_each: int = 1  # of ours for each that is read


class Growth(NamedTuple):
    """How a cost grows with its size, which is the group "n" of `ours`."""

    what: str
    ours: str
    read: Optional[str] = None  # the sample that merely reads the same memory
    goal: float = 1.1


class Section(NamedTuple):
    title: str
    text: str
    rows: tuple
    rounds: tuple = (0, 0)  # of the jobs that its rows name, in full and quick


def check(file, **more):
    return Job(f"{{program}} check {{data}}/{file}.json", exit_codes=(0, 1, 3), **more)


def show(file, options="", **more):
    return Job(f"{{program}} show --format csv {options}{{data}}/{file}.json", **more)


def check_several(file, count, **more):
    return Job("{program} check --jobs 1" + count * f" {{data}}/{file}.json", exit_codes=(1,), **more)


def of_tenth(name):
    """How a job is counted that does ten times what another does."""
    return {"is_counted": True, "smaller": name, "times": 10}


CSV = "{{data}}/{0}.csv --map {{data}}/table.map.json"

JOBS = {
    "check 2000 tools": check("tools-2000"),
    "check 20000 tools": check("tools-20000", **of_tenth("check 2000 tools")),
    "check 200000 tools": check("tools-200000", is_counted=True, smaller="check 2000 tools", times=100),
    "check 10 steps": check("steps-10"),
    "check 100 steps": check("tools-2000"),
    "check 1000 steps": check("steps-1000"),
    "check 10 units": check("units-10"),
    "check 100 units": check("units-100"),
    "check 1000 units": check("units-1000"),
    "check 2 files": check_several("tools-2000", 2),
    "check 8 files": check_several("tools-2000", 8),
    "check 32 files": check_several("tools-2000", 32),
    "check four": check_several("tools-20000", 4),
    "check four on a terminal": check_several("tools-20000", 4, on_terminal=True),
    "check the sample": Job("{program} check {examples}/door_line/door_line.results.json", exit_codes=(1,), is_counted=True),
    "check in Python": Job("{peers} check {data}/tools-20000.json"),
    "show 2000 tools": show("tools-2000"),
    "show 20000 tools": show("tools-20000", **of_tenth("show 2000 tools")),
    "show all units": show("units-100-large"),
    "show one unit": show("units-100-large", "--unit OP50 ", **of_tenth("show one small unit")),
    "show one small unit": show("units-100", "--unit OP50 "),
    "show in Python": Job("{peers} show {data}/tools-20000.json"),
    "show as a workbook": Job("{program} show --format xlsx {data}/values-1000000.json"),
    "frames": Job("{frames} module {data}/tools-20000.json"),
    "frames in pandas": Job("{frames} pandas {data}/tools-20000.json"),
    "frames in numpy": Job("{frames} numpy {data}/tools-20000.json"),
    "workbook in Python": Job("{peers} workbook {data}/values-1000000.json"),
    "version": Job("{program} --version", is_counted=True),
    "simdjson": Job("{parse} simdjson {data}/tools-20000.json"),
    "RapidJSON": Job("{parse} rapidjson {data}/tools-20000.json"),
    "nlohmann": Job("{parse} nlohmann {data}/tools-20000.json"),
    "read": Job("{parse} read {data}/tools-20000.json"),
    "csv histories": Job("{program} import csv {data}/table.csv --list", **of_tenth("csv histories of a tenth")),
    "csv histories of a tenth": Job("{program} import csv {data}/table-tenth.csv --list"),
    "csv show": Job("{program} show --format csv " + CSV.format("table"), **of_tenth("csv show of a tenth")),
    "csv show of a tenth": Job("{program} show --format csv " + CSV.format("table-tenth")),
    "csv import": Job("{program} import csv " + CSV.format("table"), **of_tenth("csv import of a tenth")),
    "csv import of a tenth": Job("{program} import csv " + CSV.format("table-tenth")),
    "csv in pandas": Job("{peers} csv {data}/table.csv"),
    "print histories": Job("{program} import calculix {data}/print.dat --list", **of_tenth("print histories of a tenth")),
    "print histories of a tenth": Job("{program} import calculix {data}/print-tenth.dat --list"),
    "print in Python": Job("{peers} print {data}/print.dat"),
}

BENCHMARKS = (
    Benchmarks("machine", "", 0.1, (5, 3)),
    Benchmarks("max_value", "", 0.02, (7, 1), r"/(values:\d+)$"),
    Benchmarks("families", "/elements:(20000/steps:100|2000/steps:10+)$", 0.05, (3, 1), r"^(\w+)/\w+/(.*)"),
    Benchmarks("families", "/elements:200/", 0.02, (5, 1), r"^(\w+)/\w+/(.*)"),
    Benchmarks("check", "", 0.1, (5, 1)),
    Benchmarks("results_file", "", 0.1, (3, 1)),
    Benchmarks("imports", "", 0.1, (5, 1)),
    Benchmarks("rendering", "", 0.1, (5, 1)),
    Benchmarks("limits", "", 0.03, (5, 1)),
    Benchmarks("archive", "", 0.05, (5, 1)),
    Benchmarks("study", "File|Sqlite", 0.1, (3, 1), r"/(runs:\d+)$"),
    Benchmarks("study", "Server", 0.1, (3, 1), beside="with-postgresql.sh"),
)

PYTHON = "Python"
SIMDJSON = "simdjson, parsing alone"


def kernel_row(what, who, beside, peer, goal, sizes=r"\d+", values=1):
    """Who finds the value of largest magnitude of n values, or of that many times n numbers, beside whom."""
    return Row(
        what,
        rf"max_value: {who}/values:(?P<n>{sizes})",
        beside,
        f"max_value: {peer}/values:{{n}}",
        goal,
        read="max_value: read/values:{n}",
        doubles="{n}",
        doubles_of_each=values,
    )


# A read is most of what these take: they are held against it.
READ_FAMILIES = "Clamps|JoiningTongs|Pilots|Bolts"


def family_row(families, beside, goal):
    peer = "families: {family}/%s/{size}"
    ours = rf"families: (?P<family>{families})/library/(?P<size>elements:20000/steps:100)"
    return Row("`{family}`", ours, beside, peer % beside, goal, read=peer % "read")


DOCUMENTS = ("values, 7 digits", "values, shortest form", "pairs, 7 digits", "pairs, shortest form")

SECTIONS = (
    Section(
        "The whole program",
        "A results file of 95.9 MB: 20,000 bolts with 4 series of 100 values of 9 digits; for one unit of many, such bolts in 100 "
        "units. Times are those of the processor for a process from its start to its end, in all its threads and in the system. "
        "*Python* does the same job with json, numpy and pandas: it parses, finds the value of largest magnitude of each series and "
        "its step, and prints what is beyond its limit, or the table. The others parse into their documents and do nothing else.",
        (
            Row("`check`", "check 20000 tools", PYTHON, "check in Python", 0.1),
            Row("`check`", "check 20000 tools", SIMDJSON, "simdjson", 1.0),
            Row("`check`", "check 20000 tools", "RapidJSON, parsing alone", "RapidJSON"),
            Row("`check`", "check 20000 tools", "nlohmann::json, parsing alone", "nlohmann"),
            Row("`check`", "check 20000 tools", "reading the bytes", "read"),
            Row("`show --format csv`", "show 20000 tools", PYTHON, "show in Python", 0.1),
            Row("`show --format csv`", "show 20000 tools", SIMDJSON, "simdjson", 1.0),
            Row("`check`, by the clock", "check 20000 tools", SIMDJSON, "simdjson", figure="wall"),
            Row("`check`, peak memory", "check 20000 tools", "the file", "tools-20000.json", 1.9, "peak"),
            Row("`show --format csv`, peak memory", "show 20000 tools", "the file", "tools-20000.json", 1.9, "peak"),
            Row("`show` of one unit", "show one unit", "`show` of all 100", "show all units", 0.7),
            Row("`--version`", "version", goal=10.0),
            Row("`check` of the sample", "check the sample", goal=10.0),
        ),
        (7, 2),
    ),
    Section(
        "Data frames in Python",
        "The same file, five times in one process, as a data frame of the extremes, their steps, counts and limits: "
        "`result_tables.read_results(path).values()`. *pandas* does it with json and pandas, *numpy* with json and numpy, as above, where "
        "all series are of the same length.",
        (
            Row("`values`", "frames", "pandas", "frames in pandas", 0.1),
            Row("`values`", "frames", "numpy", "frames in numpy", 0.1),
            Row("`values`, by the clock", "frames", "pandas", "frames in pandas", 0.1, figure="wall"),
            Row("`values`, by the clock", "frames", "numpy", "frames in numpy", 0.1, figure="wall"),
        ),
        (3, 1),
    ),
    Section(
        "Workbooks",
        "A million values, four each of 250,000 bolts with one step: a workbook of 500,000 rows, as bolts have a second section, with "
        "limit and utilisation beside each limited value. *python3-xlsxwriter* writes the same cells in its mode of constant memory; "
        "both read the results file first, here with json.",
        (Row("`show --format xlsx`", "show as a workbook", "python3-xlsxwriter", "workbook in Python", 0.2),),
        (3, 1),
    ),
    Section(
        "Progress",
        "Four such files, one after the other. On a terminal the number of files that are done is shown after a second.",
        (Row("`check` on a terminal", "check four on a terminal", "without one", "check four", 1.03),),
        (7, 3),
    ),
    Section(
        "Histories of solvers",
        "CSV of 91.9 MB, 80 columns and 100,000 rows, and a CalculiX print of 17.6 MB, 160,000 blocks of one node each. `import --list` "
        "reads the histories, `show --map` makes results and tables of them, `import --map` writes a results file of 99 MB. *Loop* takes "
        "the print's lines apart with Python's split and float; in version 1.0.0 the program took 0.165 of that.",
        (
            Row("`import csv --list`", "csv histories", "pandas' read_csv", "csv in pandas", 0.25),
            Row("`show --map`", "csv show", "pandas' read_csv", "csv in pandas", 0.25),
            Row("`import csv --map`", "csv import", "pandas' read_csv, which writes nothing", "csv in pandas"),
            Row("`import calculix --list`", "print histories", "loop", "print in Python", 0.165),
        ),
        (7, 2),
    ),
    Section(
        "The value of largest magnitude",
        "`computeMaxValue` of n values, and of n pairs of a value and its companion, beside OpenBLAS's idamax, which does not answer the "
        "question (it does not pass over NaN), a mere *read* of the values with AVX2, and a *loop* over the three steps, one value after "
        "the other. *Without AVX* is what other machines get.",
        (
            kernel_row("n = {n}", "library", "idamax", "idamax", 0.5, sizes=r"\d{1,6}"),
            kernel_row("n = {n}", "library", "idamax", "idamax", 0.6, sizes=r"\d{8}"),
            kernel_row("n = {n}", "library", "read", "read", None, sizes="64"),
            kernel_row("n = {n}", "library", "read", "read", 1.25, sizes=r"\d{3,}"),
            kernel_row("n = {n}, pairs", "pairs_library", "values alone", "library", 2.0, values=2),
            kernel_row("n = {n}, without AVX", "baseline", "loop", "loop", 1.0),
            kernel_row("n = {n}, pairs, without AVX", "pairs_baseline", "loop", "pairs_loop", 1.0, values=2),
        ),
    ),
    Section(
        "Families",
        "20,000 elements with 100 steps each; suction zones, tongs, welds and line joins also with their records in each step. *Loop* is a "
        "minimal hand-written loop over the same host data that finds the same numbers, *read* a mere read of the series and records.",
        (
            family_row(r"\w+", "loop", 1.0),
            family_row(READ_FAMILIES, "read", 1.3),
            family_row(rf"(?!{READ_FAMILIES})\w+", "read", None),
        ),
    ),
    Section(
        "Checking and comparing, in memory",
        "A results file of 105 MB, 2,000 bolts with 5,000 values each, reading included. Checking says of every limited value where it "
        "comes from and how much data there is; *maxima alone* compares them with their limits and no more.",
        (
            Row("checking", "check: checking", "maxima alone", "check: comparingMaximaAlone", touched="bytes_per_second"),
            Row("comparing two files", "check: comparingTwoFiles", "checking one", "check: checking", touched="bytes_per_second"),
        ),
    ),
    Section(
        "Results files, in memory",
        "2,000,000 numbers in 40 series. Memory is what reading adds at most, divided by the file and twice its doubles.",
        tuple(
            row
            for number, kind in enumerate(DOCUMENTS)
            for row in (
                Row(
                    kind,
                    f"results_file: readingResultsFile/{number}",
                    "nlohmann::json",
                    f"results_file: parsingWithNlohmannJson/{number}",
                    read=f"results_file: readingBytes/{number}",
                ),
                Row(f"{kind}, memory", f"results_file: readingResultsFile/{number}", goal=1.0, figure="peak_ratio"),
            )
        ),
    ),
    Section(
        "Histories, in memory",
        "800,000 forces as a wide table of CSV, 7.3 MiB, whose series are stored as pairs; the same as a long table and as a print of "
        "CalculiX.",
        tuple(
            Row(what, f"imports: {name}", "a wide table's histories", "imports: readingTheHistories/wide", touched="bytes_per_second")
            for what, name in (
                ("a long table's histories", "readingTheHistories/long"),
                ("a CalculiX print's histories", "readingTheHistories/calculix"),
                ("histories and results", "readingThePrint"),
                ("writing the results file and reading it", "importingAndReadingTheText"),
            )
        ),
    ),
    Section(
        "Forms of output, in memory",
        "Tables of 20,000 clamps with 100 steps, beside what every form asks the library for: where each value comes from.",
        (Row("{form}", r"rendering: (?!origins)(?P<form>.+)", "origins", "rendering: origins", touched="bytes_per_second"),),
    ),
    Section(
        "Limits",
        "16 limits for each of 10,000 units, listed in the order of their identifiers or scattered. *Read* reads every limit and does "
        "nothing else. Removing all children one by one, with a question for a position after each, is beside a ranked index of "
        "Boost.MultiIndex.",
        (
            Row(
                "`{job}`, {order}",
                r"limits: (?P<job>(?!read|remove)\w+)/(?P<order>\w+)/10000",
                "read",
                "limits: readEachLimit/{order}/10000",
                read="limits: readEachLimit/{order}/10000",
            ),
            Row(
                "`removeChildren`, {order}",
                r"limits: removeChildren/(?P<order>\w+)/10000",
                "ranked index",
                "limits: removeFromRankedIndex/{order}/10000",
                1.0,
                read="limits: readEachLimit/scattered/10000",
            ),
        ),
    ),
    Section(
        "Limits documents",
        "160,000 limits of 10,000 units, in memory. Each library begins and ends with limits that are children of one object. The archive "
        "of this project also stores names, links and versions, verifies a checksum and all bounds, and builds the index of units; "
        "cereal's binary archive and boost::archive::binary store the limits with their own tracking of shared pointers. Memory is what "
        "loading adds at most.",
        tuple(
            Row(
                what,
                rf"archive: {job}<ObjectArchive>/units:10000",
                peer,
                f"archive: {job}<{name}>/units:10000",
                1.0,
                figure,
                touched=touched if figure == "ms" else None,
            )
            for what, job, figure, touched in (
                ("save", "save", "ms", "bytes"),
                ("load", "load", "ms", "peak"),
                ("document", "save", "bytes", None),
                ("load, memory", "load", "peak", None),
            )
            for peer, name in (("cereal", "Cereal"), ("boost::archive", "BoostArchive"))
        ),
    ),
    Section(
        "Studies",
        "Runs of 80,000 values each, four of each of 20,000 bolts, added to a study in a file and on a server, a transaction for each; "
        "reading and evaluating results is not part of it. *SQLite* is its library alone with a table, a statement and settings like "
        "those of a study. A server works in processes of its own and is measured by the clock.",
        (
            Row("{n} runs into a file", r"study: addingToFile/runs:(?P<n>\d+)", "SQLite", "study: insertingIntoSqlite/runs:{n}", 1.25),
            Row("100 runs into a file, 300,000 values per second", "study: addingToFile/runs:100", goal=8e6 / 300),
            Row("100 runs onto a server, by the clock", "study: addingToServer/runs:100", goal=16e6 / 300, figure="wall"),
            Row("bytes of a value in a file", "study: addingToFile/runs:100", goal=40.0, figure="bytes_per_value"),
            Row("bytes of a value on a server", "study: addingToServer/runs:100", goal=80.0, figure="bytes_per_value"),
            Growth("runs into a file", r"study: addingToFile/runs:(?P<n>\d+)"),
        ),
    ),
    Section(
        "Growth of the whole program",
        "Each unit but the only one has 20 bolts, each file 2,000; the steps are those of 2,000 bolts. The exponent is that of the power "
        "of the size which fits the times best: 1 is a cost that grows as the size does.",
        (
            Growth("tools", r"check (?P<n>\d+) tools"),
            Growth("steps", r"check (?P<n>\d+) steps"),
            Growth("units", r"check (?P<n>\d+) units"),
            Growth("files", r"check (?P<n>\d+) files"),
            Row("`check` of 959 MB", "check 200000 tools", "of 95.9 MB", "check 20000 tools", 10.5),
            Row("`check` of 959 MB, peak memory", "check 200000 tools", "the file", "tools-200000.json", 1.9, "peak"),
        ),
        (5, 1),
    ),
    Section(
        "Growth in the library",
        "Families over 200 to 20,000 elements with 100 steps, and over 10 to 1,000 steps of 2,000 elements; limits over 100 to 10,000 "
        "units. Where the data outgrow the caches even a mere read grows faster than they do: its exponent stands beside.",
        (
            Growth(
                "`{family}`, elements",
                r"families: (?P<family>\w+)/library/elements:(?P<n>\d+)/steps:100",
                "families: {family}/read/elements:{n}/steps:100",
            ),
            Growth(
                "`{family}`, steps",
                r"families: (?P<family>\w+)/library/elements:2000/steps:(?P<n>\d+)",
                "families: {family}/read/elements:2000/steps:{n}",
            ),
            Growth(
                "`{job}`, {order}, units",
                r"limits: (?P<job>(?!read|remove)\w+)/(?P<order>\w+)/(?P<n>\d+)",
                "limits: readEachLimit/{order}/{n}",
            ),
            Growth(
                "{job} a limits document, units",
                r"archive: (?P<job>save|load)<ObjectArchive>/units:(?P<n>\d+)",
                "limits: readEachLimit/ascending/{n}",
            ),
            Growth(
                "`removeChildren`, {order}, units",
                r"limits: removeChildren/(?P<order>\w+)/(?P<n>\d+)",
                "limits: readEachLimit/scattered/{n}",
            ),
        ),
    ),
)
