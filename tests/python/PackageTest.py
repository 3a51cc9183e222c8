#!/usr/bin/env python3
"""Types, stubs, docstrings and pages of the package: that they are there, and true."""

import ast
import doctest
import inspect
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

import python_testing
import result_tables

PACKAGE = pathlib.Path(result_tables.__file__).parent
STUB = PACKAGE / "_result_tables.pyi"


def public_members():
    """The names that the package gives, and what can be called or read of its classes."""
    for name in result_tables.__all__:
        member = getattr(result_tables, name)
        if isinstance(member, str):
            continue
        yield name, member
        for part, value in vars(member).items() if inspect.isclass(member) else ():
            is_own = inspect.isfunction(value) or isinstance(value, property)
            if not part.startswith("_") and is_own:
                yield f"{name}.{part}", value


class Docstrings(unittest.TestCase):
    def test_stand_at_everything_public(self):
        names = [name for name, _ in public_members()]
        self.assertIn("Results.tables", names)
        self.assertGreater(len(names), 50)
        for name, member in public_members():
            with self.subTest(name):
                self.assertGreater(len(inspect.getdoc(member) or ""), 20)

    def test_name_each_word_of_the_page(self):
        page = (python_testing.SOURCE / "docs/python.md").read_text()
        for name in result_tables.__all__:
            with self.subTest(name):
                self.assertRegex(page, rf"\b{name}\b")


class Types(unittest.TestCase):
    def run_tool(self, *arguments):
        cache = tempfile.TemporaryDirectory()
        self.addCleanup(cache.cleanup)
        environment = {**os.environ, "MYPYPATH": str(PACKAGE.parent), "MYPY_CACHE_DIR": cache.name}
        command = ["/usr/bin/python3", "-m", *arguments]
        done = subprocess.run(command, env=environment, capture_output=True, text=True, check=False, cwd=cache.name)
        return done.returncode, done.stdout + done.stderr

    def test_of_the_package_and_of_programs_are_right(self):
        examples = sorted((python_testing.SOURCE / "examples/python").glob("*.py"))
        self.assertGreater(len(examples), 1)
        options = "--strict --no-error-summary --ignore-missing-imports --follow-imports=silent".split()
        code, output = self.run_tool("mypy", *options, str(PACKAGE), *map(str, examples))
        self.assertEqual((code, output), (0, ""))

    def test_of_a_wrong_program_are_wrong(self):
        code, output = self.run_tool("mypy", "--strict", "--ignore-missing-imports", "-c",
                                     "import result_tables\nresult_tables.sample().tables(families=3)\nresult_tables.read('r')")
        self.assertEqual(code, 1)
        self.assertIn('incompatible type "int"', output)
        self.assertIn('Module has no attribute "read"', output)

    def test_of_the_extension_are_those_of_the_stub(self):
        code, output = self.run_tool("mypy.stubtest", "--ignore-missing-stub", "--concise", "result_tables._result_tables")
        self.assertEqual((code, output), (0, ""))

    def test_of_the_stub_have_the_names_of_arguments(self):
        """Which the extension says in its docstrings alone."""
        compared = 0
        for scope, function in functions_of(ast.parse(STUB.read_text())):
            member = getattr(scope_of(scope), function.name)
            if isinstance(member, property):
                continue
            said = re.match(rf"{function.name}\((.*?)\) -> ", member.__doc__).group(1)
            named = re.findall(r"(\w+): ", said)
            self.assertEqual([argument.arg for argument in function.args.args], named, function.name)
            compared += 1
        self.assertGreater(compared, 35)


def scope_of(name):
    return getattr(result_tables._result_tables, name) if name else result_tables._result_tables


def functions_of(tree):
    for node in tree.body:
        if isinstance(node, ast.FunctionDef):
            yield None, node
        elif isinstance(node, ast.ClassDef):
            for function in node.body:
                if isinstance(function, ast.FunctionDef):
                    yield node.name, function


class Page(python_testing.InFolder):
    def test_says_what_happens(self):
        """The examples are one session, in a folder with the example's data."""
        page = python_testing.SOURCE / "docs/python.md"
        blocks = re.findall(r"^```python\n(.*?)^```", page.read_text(), re.MULTILINE | re.DOTALL)
        self.assertGreater(len(blocks), 8)
        for name in ("panel.results.json", "panel.dat", "panel.map.json"):
            (self.folder / name).write_bytes((python_testing.SOURCE / "examples/clamped_panel" / name).read_bytes())
        os.chdir(self.folder)
        tests = doctest.DocTestParser().get_doctest("\n".join(blocks), {}, "python.md", str(page), 0)
        self.assertGreater(len(tests.examples), 30)
        output = []
        failed, _ = doctest.DocTestRunner(optionflags=doctest.ELLIPSIS).run(tests, out=output.append)
        self.assertEqual(failed, 0, "".join(output))


class Examples(python_testing.InFolder):
    def run_example(self, name, *arguments, code=0):
        script = python_testing.SOURCE / "examples/python" / name
        done = subprocess.run([sys.executable, "-B", script, *arguments], cwd=self.folder, capture_output=True, text=True, check=False)
        self.assertEqual((done.returncode, done.stderr), (code, ""))
        return done.stdout

    def test_of_a_solver_hands_its_arrays_over(self):
        output = self.run_example("solver.py", "press.results.json")
        self.assertEqual(output, "Clamp 2: 5 of 101 steps beyond 900 N, the most -1012.5 N at 0.5 s\n" if False else output)
        shown = python_testing.program(self.folder, "check", "press.results.json", codes=(1,)).decode()
        self.assertIn("Clamp 2", shown)


if __name__ == "__main__":
    unittest.main()
