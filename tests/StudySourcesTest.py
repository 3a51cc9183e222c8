#!/usr/bin/env python3
"""SQL stands in the program as it is: no statement is put together, and what was read gets into none but as a bound parameter.

The class `Sql` takes nothing but what the compiler knows. This test holds the few calls that hand texts to a database to it.

usage: tests/StudySourcesTest.py
"""

import pathlib
import re
import unittest

PROGRAM = pathlib.Path(__file__).resolve().parent.parent / "result_tables"
SOURCES = {str(path.relative_to(PROGRAM)): path.read_text() for path in sorted(PROGRAM.rglob("*")) if path.suffix in (".h", ".cpp")}
LITERAL = r'(?:"(?:[^"\\]|\\.)*"\s*)+'
# What takes the text of a statement, which of its arguments that is, and what may stand there.
TAKERS = {
    r"\bsqlite3_exec\(": (1, rf"{LITERAL}|script"),
    r"\bsqlite3_prepare\w*\(": (1, "sql"),
    r"\blibPq\(\)\.exec\(": (1, rf"{LITERAL}|script|table\.copy\.text\(\)"),
    r"\blibPq\(\)\.execParams\(": (1, r"sql\.text\(\)"),
    r"(?<![\w:])(?:fresh\.)?run\((?!char const\* script\))": (0, rf"{LITERAL}|s_(?:sqlite|postgres)Steps\[[^\]]*\](?:\))?"),
    r"(?<![\w:])prepare\((?!char const\* sql\))": (0, r"sql\.text\(\)"),
}
# Others that would take one, or make one.
FORBIDDEN = r"sqlite3_(?:get_table|v?mprintf|snprintf|str_append\w*)|PQ(?:sendQuery|prepare|escape\w*)|quote_literal"


def arguments_of(text, begin):
    """The arguments of a call whose parenthesis has just been opened."""
    found, depth, start, place = [], 0, begin, begin
    while depth >= 0:
        literal = re.compile(LITERAL).match(text, place)
        if literal:
            place = literal.end()
            continue
        depth += {"(": 1, "[": 1, "{": 1, ")": -1, "]": -1, "}": -1}.get(text[place], 0)
        if depth < 0 or (depth == 0 and text[place] == ","):
            found.append(text[start:place].strip())
            start = place + 1
        place += 1
    return found


class StudySources(unittest.TestCase):
    def room(self):
        return {name: text for name, text in SOURCES.items() if name.startswith("study/")}

    def test_databases_are_spoken_to_in_two_sources(self):
        users = [name for name, text in SOURCES.items() if re.search(r"\bsqlite3_\w+\(", text)]
        self.assertEqual(users, ["study/SqliteDatabase.cpp"])
        users = [name for name, text in SOURCES.items() if re.search(r"\blibPq\(\)\.|\bPQ[a-z]\w+\(", text)]
        self.assertEqual(users, ["study/PostgresDatabase.cpp"])

    def test_statements_are_those_of_the_program(self):
        for pattern, (index, allowed) in TAKERS.items():
            calls = 0
            for name in ("study/SqliteDatabase.cpp", "study/PostgresDatabase.cpp"):
                for match in re.finditer(pattern, SOURCES[name]):
                    calls += 1
                    argument = arguments_of(SOURCES[name], match.end())[index]
                    self.assertRegex(argument, rf"^(?:{allowed})$", f"{name}: {match.group()}")
            self.assertGreater(calls, 0, pattern)

    def test_nothing_else_takes_or_makes_statements(self):
        for name, text in SOURCES.items():
            self.assertIsNone(re.search(FORBIDDEN, text), name)

    def test_a_statement_is_known_to_the_compiler(self):
        header = SOURCES["study/Database.h"]
        sql = header[header.index("class Sql {") : header.index("};", header.index("class Sql {"))]
        self.assertEqual(re.findall(r"[\w ]*\bSql\(.*", sql), ["  consteval Sql(char const (&text)[size]) : m_text(text) {}"])
        self.assertEqual(re.findall(r"virtual .*\b(?:execute|query)\((\w+)", header), ["Sql", "Sql"])
        self.assertEqual(re.findall(r"(\w+) (?:insert|copy);", header), ["Sql", "Sql"])

    def test_no_text_of_a_statement_has_a_place_for_another(self):
        statements = 0
        for name, text in self.room().items():
            for match in re.finditer(LITERAL, text):
                if re.search(r"\b(?:SELECT|INSERT INTO|UPDATE|DELETE FROM|COPY|BEGIN|PRAGMA) ", match.group()):
                    statements += 1
                    self.assertNotRegex(match.group(), r"\{\w*\}|%[sd]", name)
                    self.assertNotRegex(text[: match.start()].rstrip()[-12:], r"(?:\+|format\(|tr\()$", name)
                    self.assertNotRegex(text[match.end() :].lstrip()[:1], r"\+", name)
        self.assertGreater(statements, 20)


if __name__ == "__main__":
    unittest.main()
