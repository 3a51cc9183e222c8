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
EXTENSION = "result_tables._result_tables"
CONFIGURATION = f"--config-file={pathlib.Path(__file__).parent / 'mypy.ini'}"


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
        self.assertGreater(len(names), 40)
        for name, member in public_members():
            with self.subTest(name):
                self.assertGreater(len(inspect.getdoc(member) or ""), 20)

    def test_name_each_word_of_the_page(self):
        page = (python_testing.SOURCE / "docs/python.md").read_text()
        for name in result_tables.__all__:
            with self.subTest(name):
                self.assertRegex(page, rf"\b{name}\b")


class Types(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(cls.folder.cleanup)

    def run_tool(self, *arguments):
        environment = {**os.environ, "MYPYPATH": str(PACKAGE.parent), "MYPY_CACHE_DIR": self.folder.name}
        command = ["/usr/bin/python3", "-m", *arguments]
        done = subprocess.run(command, env=environment, capture_output=True, text=True, check=False, cwd=self.folder.name)
        return done.returncode, done.stdout + done.stderr

    def test_of_the_package_and_of_programs_are_right(self):
        examples = sorted((python_testing.SOURCE / "examples/python").glob("*.py"))
        self.assertGreater(len(examples), 1)
        code, output = self.run_tool("mypy", CONFIGURATION, "--no-error-summary", str(PACKAGE), *map(str, examples))
        self.assertEqual((code, output), (0, ""))

    def test_of_a_wrong_program_are_wrong(self):
        program = "import result_tables\nresult_tables.sample().tables(families=3)\nresult_tables.read('r')"
        code, output = self.run_tool("mypy", CONFIGURATION, "-c", program)
        self.assertEqual(code, 1)
        self.assertIn('incompatible type "int"', output)
        self.assertIn('Module has no attribute "read"', output)

    def test_of_the_extension_are_those_of_the_stub(self):
        # What all classes of the binding library have: a metaclass, and a constructor where there is none.
        known = pathlib.Path(self.folder.name) / "known"
        classes = [node.name for node in ast.parse(STUB.read_text()).body if isinstance(node, ast.ClassDef)]
        known.write_text("\n".join([f"{EXTENSION}.{name}" for name in [*classes, "Results.__init__", "UnitDraft.__init__"]]))
        options = [f"--mypy-{CONFIGURATION[2:]}", f"--allowlist={known}", "--concise"]
        code, output = self.run_tool("mypy.stubtest", *options, EXTENSION)
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
        done = subprocess.run(
            [sys.executable, "-B", script, *arguments], cwd=self.folder, capture_output=True, text=True, check=False
        )
        self.assertEqual((done.returncode, done.stderr), (code, ""))
        return done.stdout

    def test_solver_shows_and_writes_the_same(self):
        shown = self.run_example("solver.py", "press.json", "0.5")
        forces = dict(re.findall(r"(Clamp \d) +(\S+)", shown))
        self.assertEqual({name: round(float(force), 1) for name, force in forces.items()},
                         {"Clamp 1": -709.5, "Clamp 2": -917.2, "Clamp 3": -813.3})
        output = python_testing.program(self.folder, "show", "press.json", "--format", "csv").decode()
        self.assertEqual(len(re.findall(r"Clamp \d,true,ClampClosingForce,", output)), 3)
        self.assertIn(f"ClampClosingForce,Max Closing Force,{forces['Clamp 1']}", output)

    def test_evaluation_tells_forces_by_speed(self):
        output = self.run_example("evaluate.py", ".")
        self.assertIn("speed 2.0 Clamp 2 -1222.874  1000.0        1.223  0.27\n", output)
        self.assertIn("speed 0.5   -709.5   -917.2   -813.3\n", output)
        self.assertTrue(output.endswith("1.0   -101.9\n1.5   -101.9\n2.0   -101.9\n"))

    def test_gate_says_why_a_run_does_not_pass(self):
        self.run_example("evaluate.py", ".")
        slow, fast, policy = "speed-0.5.json", "speed-2.0.json", "policy.limits.json"
        self.assertEqual(self.run_example("gate.py", slow, slow, policy), "")
        self.assertEqual(
            self.run_example("gate.py", slow, fast, policy, code=1).splitlines(),
            ["OP10 Clamping, Clamp 2: exceeded ClampClosingForce", "OP10 Clamping, Clamp 3: exceeded ClampClosingForce"]
            + ["OP10 Clamping, Clamp 1: ClampClosingForce was -709.497, is -945.997"]
            + ["OP10 Clamping, Clamp 2: ClampClosingForce was -917.155, is -1222.87"]
            + ["OP10 Clamping, Clamp 3: ClampClosingForce was -813.326, is -1084.44"],
        )
        self.assertEqual(self.run_example("gate.py", slow, slow, code=1), "nothing was compared with a limit\n")

    def test_gate_says_what_it_could_not_read(self):
        script = python_testing.SOURCE / "examples/python/gate.py"
        done = subprocess.run([sys.executable, "-B", script, "a", "b"], cwd=self.folder, capture_output=True, text=True, check=False)
        self.assertEqual((done.returncode, done.stdout, done.stderr), (2, "", "a: cannot read: No such file or directory\n"))


if __name__ == "__main__":
    unittest.main()
