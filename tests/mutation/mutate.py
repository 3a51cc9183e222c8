#!/usr/bin/env python3
"""Changes the sources in one place at a time and says which changes no test notices.

A sample of single changes (another comparison, arithmetic or logical operator, another number, a condition the other
way round, a statement left out, another value returned) is tried in a copy of the tree with a build folder of its
own. Each change is built without optimisation, and the test programs run until one fails, crashes or hangs: then the
change is noticed. The same seed gives the same sample as long as the sources stay as they are.

  tests/mutation/mutate.py host --compiling 100          try changes until 100 of them have compiled
  tests/mutation/mutate.py host --compiling 200          go on from there
  tests/mutation/mutate.py host --again                  try those that were not noticed with the tests of today
  tests/mutation/mutate.py host --report                 print what is known, try nothing
  tests/mutation/mutate.py host --files '\.cpp$' --tests 'Archive|Object|Text' --exclude AtScale
                                                         changes of sources alone, by some of the tests: quick

Results are kept in the work folder as they come, one JSON object a line, so that a run can be ended at any time and
taken up again. A change that cannot be observed, whatever a test does, is listed with the reason in
tests/mutation/unobservable.txt and counts neither as noticed nor as unnoticed.
"""
import argparse
import concurrent.futures
import json
import os
import pathlib
import random
import re
import resource
import shutil
import signal
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parents[2]
MEMORY_LIMIT = 8 << 30  # bytes of address space of a test program
NOTICED, UNNOTICED, NOT_COMPILED = "noticed", "not noticed", "does not compile"


# ---- changes


def masked(text):
    """The text with blanks in place of comments, string literals and preprocessor lines."""
    pattern = r'//[^\n]*|/\*.*?\*/|R"\((?:.*?)\)"|"(?:\\.|[^"\\\n])*"|\'(?:\\.|[^\'\\\n])\'|^[ \t]*#(?:\\\n|[^\n])*'
    return re.sub(pattern, lambda m: re.sub(r"[^\n]", " ", m.group()), text, flags=re.S | re.M)


SWAPS = {"==": ["!="], "!=": ["=="], "<": ["<=", ">"], "<=": ["<"], ">": [">=", "<"], ">=": [">"],
         "+": ["-"], "-": ["+"], "*": ["/"], "/": ["*"], "%": ["/"], "&": ["|"], "|": ["&"], "^": ["|"],
         "&&": ["||"], "||": ["&&"], "+=": ["-="], "-=": ["+="], "|=": ["&="], "&=": ["|="], ">>=": ["<<="]}
# Operators have blanks around them; angle brackets of templates, references and pointers have not.
OPERATOR = re.compile(r"(?<=[\w)\]\"'] )(" + "|".join(sorted(map(re.escape, SWAPS), key=len, reverse=True)) + r")(?= )")
STEP = re.compile(r"\+\+|--")
NUMBER = re.compile(r"(?<![\w.'])(0x[0-9A-Fa-f]+|\d+)(?=[uU]?[lL]*\b)(?![\w.']*[.'])")
CONDITION = re.compile(r"\b(?:if|while) \(")
RETURN = re.compile(r"\breturn ([^;{}]+);")
STATEMENT = re.compile(r"^ +(?!return|using|static|const|constexpr|auto|throw|friend|namespace|case|public|private)"
                       r"[\w:*&(+-][^;{}]*;$", re.M)


def closing(text, at):
    """Where the bracket that opens at `at` is closed."""
    depth = 0
    for i in range(at, len(text)):
        depth += {"(": 1, ")": -1}.get(text[i], 0)
        if depth == 0:
            return i
    return len(text) - 1


def other_numbers(number):
    isOctal = len(number) > 1 and number.isdigit() and number[0] == "0"
    value = int(number, 8 if isOctal else 0)
    yield str(value + 1)
    if value > 1:
        yield str(value - 1)


def other_values(value):
    yield {"true": "false", "false": "true"}.get(value, "{}")


def changes_of_condition(code):
    for match in CONDITION.finditer(code):
        begin = match.end() - 1
        end = closing(code, begin) + 1
        condition = code[begin:end]
        if ";" not in condition and " = " not in condition:
            yield begin, end, "(!" + condition + ")"


def changes_of(text):
    """All single changes of a source: begin, end, and what stands there instead."""
    code = masked(text)
    for match in OPERATOR.finditer(code):
        yield from ((*match.span(1), swap) for swap in SWAPS[match.group(1)])
    for match in STEP.finditer(code):
        yield (*match.span(), "--" if match.group() == "++" else "++")
    for match in NUMBER.finditer(code):
        yield from ((*match.span(1), number) for number in other_numbers(match.group(1)))
    yield from changes_of_condition(code)
    for match in RETURN.finditer(code):
        yield from ((*match.span(1), value) for value in other_values(match.group(1)))
    for match in STATEMENT.finditer(code):
        yield (*match.span(), ";")


def genChange(path, text, change):
    begin, end, replacement = change
    line = text.count("\n", 0, begin) + 1
    before = " ".join(text[begin:end].split())
    first = text.rfind("\n", 0, begin) + 1
    last = text.find("\n", begin)
    context = text[first:last].strip()
    occurrence = sum(1 for other in range(first, begin) if text.startswith(text[begin:end], other))
    return {"file": path, "line": line, "code": context, "from": before, "to": replacement,
            "occurrence": occurrence, "begin": begin, "end": end}


def key_of(change):
    return tuple(change[part] for part in ("file", "code", "from", "to", "occurrence"))


def all_changes(tree, folders, files):
    """Of the files whose path matches the expression, each once: equal lines of a file count as one."""
    found = {}
    for folder in folders:
        for path in sorted((tree / folder).rglob("*")):
            name = str(path.relative_to(tree))
            if path.suffix not in (".cpp", ".h") or not re.search(files, name):
                continue
            text = path.read_text()
            for change in changes_of(text):
                entry = genChange(name, text, change)
                found.setdefault(key_of(entry), entry)
    return found


# ---- the copy and its tests


class Copy:
    """The tree in a folder of its own, built without optimisation."""

    def __init__(self, work, jobs, tests):
        self.work, self.tree, self.build, self.jobs, self.tests = work, work / "tree", work / "build", jobs, tests
        self.environment = dict(os.environ, CCACHE_BASEDIR=str(work), CCACHE_NOHASHDIR="1")
        self.slowest = {}

    def update(self):
        """Brings the sources in step with the tree that the script belongs to."""
        listed = subprocess.run(["git", "ls-files", "--cached", "--others", "--exclude-standard"], cwd=ROOT, check=True,
                                capture_output=True, text=True).stdout.split("\n")
        names = {name for name in listed if name and (ROOT / name).is_file()}
        for old in [path for path in self.tree.rglob("*") if path.is_file()]:
            if str(old.relative_to(self.tree)) not in names:
                old.unlink()
        for name in names:
            source, target = ROOT / name, self.tree / name
            if target.exists() and target.read_bytes() == source.read_bytes():
                continue
            target.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(source, target)

    def configure(self):
        # Without optimisation, libraries hold unique symbols of Boost and could not be unloaded, which tests do.
        command = ["cmake", "-S", self.tree, "-B", self.build, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Debug",
                   "-DCMAKE_CXX_FLAGS_DEBUG=-O0 -fno-gnu-unique",
                   "-DKESTREL_BUILD_BENCHMARKS=OFF", "-DCMAKE_LINK_DEPENDS_NO_SHARED=ON",
                   "-DCMAKE_COMPILE_WARNING_AS_ERROR=OFF"]
        subprocess.run(command, check=True, env=self.environment, stdout=subprocess.DEVNULL)
        if not self.make(self.targets()):
            sys.exit("mutate.py: the tree does not build as it is")

    def targets(self):
        """What the chosen tests need; "all" when all are chosen."""
        sources = [source.stem for source in (self.tree / "tests").glob("*Test.cpp")]
        chosen = [name for name in sources if re.search(self.tests, name)]
        return chosen if len(chosen) < len(sources) else ["all"]

    def make(self, targets):
        command = ["cmake", "--build", self.build, f"-j{self.jobs}", "--target", *targets]
        return subprocess.run(command, env=self.environment, capture_output=True).returncode == 0

    def programs(self, excluded):
        """The chosen test programs with their arguments and their folder. The tests of a program run as one, without
        those that are excluded."""
        listed = subprocess.run(["ctest", "--test-dir", self.build, "--show-only=json-v1"], check=True,
                                capture_output=True, text=True).stdout
        programs, without = {}, {}
        for test in json.loads(listed)["tests"]:
            program, *arguments = test.get("command", [""])
            if not program.startswith(str(self.build)) or not re.search(self.tests, pathlib.Path(program).name):
                continue
            filters = [argument.split("=", 1)[1] for argument in arguments if argument.startswith("--gtest_filter=")]
            if re.search(excluded, test["name"]):
                without.setdefault(program, []).extend(filters)
                continue
            properties = {entry["name"]: entry["value"] for entry in test.get("properties", [])}
            known = programs.setdefault(program, ([], properties.get("WORKING_DIRECTORY", str(self.build))))
            known[0].extend(argument for argument in arguments if not argument.startswith("--gtest"))
        for program in programs.keys() & without.keys():
            programs[program][0].append("--gtest_filter=-" + ":".join(without[program]))
        return programs

    def passes(self, program, arguments, folder):
        seconds = max(20.0, 20 * self.slowest.get(program, 30.0))
        bound = lambda: resource.setrlimit(resource.RLIMIT_AS, (MEMORY_LIMIT, MEMORY_LIMIT))
        begin = time.monotonic()
        process = subprocess.Popen([program, *arguments], cwd=folder, env=dict(os.environ, LC_ALL="C"),
                                   stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                                   preexec_fn=bound, start_new_session=True)
        try:
            result = process.wait(timeout=seconds)
        except subprocess.TimeoutExpired:
            return False
        finally:
            end_session(process)
        self.slowest.setdefault(program, time.monotonic() - begin)
        return result == 0


def end_session(process):
    """Ends a program and what it has started: a child of a death test may hang where the change keeps it alive."""
    try:
        os.killpg(process.pid, signal.SIGKILL)
    except ProcessLookupError:
        pass
    process.wait()


class Trial:
    """Tries changes in a copy, those programs first that are likely to notice."""

    def __init__(self, copy, programs):
        self.copy = copy
        self.programs = {program: entry for program, entry in programs.items() if copy.passes(program, *entry)}
        for program in programs.keys() - self.programs.keys():
            print(f"fails without a change, left out: {program}", flush=True)
        self.notices = {program: 0 for program in self.programs}

    def near(self, file):
        """The programs whose source names the file."""
        stem = pathlib.Path(file).stem
        near = []
        for program in self.programs:
            source = self.copy.tree / "tests" / (pathlib.Path(program).name + ".cpp")
            if source.exists() and (source.stem == stem + "Test" or f"/{stem}.h\"" in source.read_text()):
                near.append(program)
        return near

    def run(self, programs):
        """The first program that fails; none when all pass."""
        order = sorted(programs, key=lambda program: (-self.notices[program], self.copy.slowest.get(program, 0)))
        with concurrent.futures.ThreadPoolExecutor(self.copy.jobs) as pool:
            for first in range(0, len(order), self.copy.jobs):
                some = order[first:first + self.copy.jobs]
                passed = list(pool.map(lambda program: self.copy.passes(program, *self.programs[program]), some))
                failed = [program for program, isPassed in zip(some, passed) if not isPassed]
                if failed:
                    self.notices[failed[0]] += 1
                    return failed[0]
        return None

    def attempt(self, change):
        path = self.copy.tree / change["file"]
        text = path.read_text()
        path.write_text(text[:change["begin"]] + change["to"] + text[change["end"]:])
        try:
            return self.judge(change)
        finally:
            path.write_text(text)

    def judge(self, change):
        near = self.near(change["file"])
        others = [program for program in self.programs if program not in near]
        for programs, targets in ((near, [pathlib.Path(program).name for program in near]),
                                  (others, self.copy.targets())):
            if not programs:
                continue
            if not self.copy.make(targets):
                return NOT_COMPILED, None
            failed = self.run(programs)
            if failed:
                return NOTICED, pathlib.Path(failed).name
        return UNNOTICED, None


# ---- results


def read_results(file):
    """By key; a later line counts."""
    lines = file.read_text().splitlines() if file.exists() else []
    return {key_of(result): result for result in map(json.loads, lines)}


def read_unobservable():
    """File, line of code and change of what no test can observe."""
    file = ROOT / "tests/mutation/unobservable.txt"
    lines = file.read_text().splitlines() if file.exists() else []
    return {line for line in lines if line and not line.startswith(("#", " "))}


def name_of(change):
    return f"{change['file']} | {change['code']} | {change['from']} -> {change['to']} | {change['occurrence']}"


def report(results, folders):
    unobservable = read_unobservable()
    mine = [result for result in results.values() if result["file"].split("/")[0] in folders]
    by_verdict = {verdict: [r for r in mine if r["verdict"] == verdict] for verdict in (NOTICED, UNNOTICED, NOT_COMPILED)}
    survivors = [result for result in by_verdict[UNNOTICED] if name_of(result) not in unobservable]
    hidden = len(by_verdict[UNNOTICED]) - len(survivors)
    for result in sorted(survivors, key=lambda r: (r["file"], r["line"])):
        print(f"not noticed: {result['file']}:{result['line']}: {name_of(result)}")
    noticed = len(by_verdict[NOTICED])
    share = 100.0 * noticed / max(1, noticed + len(survivors))
    print(f"{noticed} noticed, {len(survivors)} not noticed, {hidden} not observable, "
          f"{len(by_verdict[NOT_COMPILED])} do not compile: {share:.1f} % of what can be observed")


def chosen(arguments, known, results):
    """The changes to try, in the order of the sample."""
    if arguments.again:
        return [known[key] for key, result in results.items() if key in known and result["verdict"] == UNNOTICED]
    order = sorted(known)
    random.Random(arguments.seed).shuffle(order)
    return [known[key] for key in order if key not in results]


def try_changes(arguments, work, results):
    copy = Copy(work, arguments.jobs, arguments.tests)
    copy.update()
    copy.configure()
    trial = Trial(copy, copy.programs(arguments.exclude))
    known = all_changes(copy.tree, arguments.folders, arguments.files)
    with (work / "results.jsonl").open("a") as file:
        for change in chosen(arguments, known, results):
            compiling = sum(result["verdict"] != NOT_COMPILED and result["file"].split("/")[0] in arguments.folders
                            for result in results.values())
            if not arguments.again and compiling >= arguments.compiling:
                break
            verdict, program = trial.attempt(change)
            results[key_of(change)] = result = dict(change, verdict=verdict, program=program)
            file.write(json.dumps(result) + "\n")
            file.flush()
            print(f"{compiling:4} {verdict}: {change['file']}:{change['line']}: {change['from']} -> {change['to']}"
                  f"{' by ' + program if program else ''}", flush=True)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("folders", nargs="+", help="host, result_tables, Business_TableProperties")
    parser.add_argument("--compiling", type=int, default=100, help="how many changes that compile, in all (100)")
    parser.add_argument("--seed", type=int, default=1, help="of the sample (1)")
    parser.add_argument("--jobs", type=int, default=2, help="processes at once (2)")
    parser.add_argument("--work", type=pathlib.Path, default=ROOT / "build/mutation", help="work folder (build/mutation)")
    parser.add_argument("--files", default="", help="change only files whose path matches the expression")
    parser.add_argument("--tests", default="", help="build and run only test programs whose name matches the expression")
    parser.add_argument("--exclude", default="^(Linking|BinaryInterface|StrictHost|FirstChange)",
                        help="tests (Suite.Name) that do not run, by expression (%(default)s)")
    parser.add_argument("--again", action="store_true", help="only what was not noticed, with the tests of today")
    parser.add_argument("--report", action="store_true", help="only print what is known")
    arguments = parser.parse_args()
    os.nice(10)
    work = arguments.work.resolve()
    work.mkdir(parents=True, exist_ok=True)
    results = read_results(work / "results.jsonl")
    if not arguments.report:
        try_changes(arguments, work, results)
    report(results, arguments.folders)


if __name__ == "__main__":
    main()
