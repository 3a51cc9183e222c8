#!/usr/bin/env python3
"""Holds every form that the program writes against its JSON, on random results: the same numbers, and the names as each form promises.

usage: tests/FormsAgreeTest.py PROGRAM

Results files, limits and names are those of tests/support/random_results.py. The environment says how many files, FORMS_FILES, and
the number of the first, FORMS_SEED: the same number makes the same file.
"""

import csv
import io
import json
import math
import os
import pathlib
import random
import re
import subprocess
import sys
import tempfile
import unicodedata
import warnings
import xml.etree.ElementTree as ElementTree

import html5lib
import openpyxl

sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent / "support"))

from random_results import RandomResults  # noqa: E402

ENVIRONMENT = {"LC_ALL": "C.UTF-8", "PATH": os.environ["PATH"], "TMPDIR": tempfile.gettempdir()}
FOUND_NOTHING_OR_SOMETHING = (0, 1, 3)


def same(what, found, expected):
    """Ends the test where they differ; NaN equals NaN."""
    if found != expected and not (found != found and expected != expected):
        raise AssertionError(f"{what}: expected {expected!r}, found {found!r}")


# ---- what the program says


def run(folder, *arguments):
    done = subprocess.run([sys.argv[1], *arguments], cwd=folder, env=ENVIRONMENT, capture_output=True, check=False, timeout=60)
    if done.returncode not in FOUND_NOTHING_OR_SOMETHING or done.stderr:
        raise AssertionError(f"{arguments}: exit code {done.returncode}, {done.stderr.decode()}")
    return done.stdout


def number_of(member):
    """A number of the program's JSON."""
    return math.nan if member is None else float(member.replace("Infinity", "inf")) if isinstance(member, str) else float(member)


class Value:
    """A value of a table with what JSON says of it."""

    def __init__(self, table, group, sub_group, item, index):
        self.table, self.group, self.sub_group, self.item = table, group, sub_group, item
        self.column = group["columns"][index]
        self.stored = number_of(item["maxValues"][index])
        self.exceeded, self.step, self.count, self.nans = (item[of][index] for of in ("exceeded", "steps", "counts", "nans"))
        time = item["times"][index]
        self.time = None if time is None else number_of(time)
        self.limit = self.column["limit"] and number_of(self.column["limit"]["value"])
        self.has_data = self.count > 0 or self.nans > 0
        self.value = self.stored if self.count > 0 or self.nans == 0 else math.nan  # as people see it

    def utilisation(self):
        """None where it is no finite number, or the limit is none or 0."""
        if self.limit is None or not self.item["valid"] or self.count == 0 or not math.isfinite(self.limit) or self.limit == 0:
            return None
        ratio = abs(self.value) / abs(self.limit)
        return ratio if math.isfinite(ratio) else None


def rows_of(table):
    """Section, group, element and values of each row."""
    for group in table["groups"]:
        for sub_group in group["subGroups"]:
            for item in sub_group["items"]:
                count = min(len(item["maxValues"]), len(group["columns"]))
                yield group, sub_group, item, [Value(table, group, sub_group, item, i) for i in range(count)]


def values_of(tables):
    return [value for table in tables for *_, values in rows_of(table) for value in values]


def printable(text):
    """A name as forms for people show it."""
    return "".join(map(printable_character, text))


def printable_character(character):
    point = ord(character)
    if point < 0x20:
        return chr(0x2400 + point)
    if point == 0x7F:
        return "\u2421"
    turns = 0x202A <= point <= 0x202E or 0x2066 <= point <= 0x2069
    is_none = point & 0xFFFE == 0xFFFE or 0xFDD0 <= point <= 0xFDEF
    return "\ufffd" if turns or is_none or unicodedata.category(character) in ("Cc", "Zl", "Zp") else character


def head_of(column):
    return column["tableDisplayName"] or column["key"]


# ---- CSV


def compare_csv(text, tables):
    records = list(csv.DictReader(io.StringIO(text.decode(), newline="")))
    values = values_of(tables)
    same("records", len(records), len(values))
    for record, value in zip(records, values):
        names = [value.table["unit"]["name"], value.table["family"], value.group["name"], value.sub_group["name"], value.item["name"]]
        same("names", [record[of] for of in ("unit", "family", "group", "subGroup", "item")], names)
        same("key", record["key"], value.column["key"])
        same("value", float(record["value"]), value.stored)
        same("limit", float(record["limit"]) if record["limit"] else None, value.limit)
        same("time", float(record["time"]) if record["time"] else None, value.time)
        same("step", record["step"], "" if value.step is None else str(value.step))
        same("exceeded", record["exceeded"], str(value.exceeded).lower())
        same("counts", (record["count"], record["nans"]), (str(value.count), str(value.nans)))


# ---- the workbook


def cell_text(text):
    """A name as a cell of a workbook spells it; an empty cell for an empty name."""
    return unescaped(re.sub(r"(?=_x[0-9A-Fa-f]{4}_)", "_x005F", printable(text))) or None


def unescaped(text):
    """What openpyxl makes of texts that several cells have in common, and of these alone."""
    return text and text.replace("x005F_", "")


def cell_number(number):
    return number if math.isfinite(number) else "NaN" if math.isnan(number) else str(number)


def compare_cell(what, cell, expected):
    same(what, float(cell.value) if isinstance(cell.value, int) and not isinstance(cell.value, bool) else cell.value, expected)


def quantities_of(tables):
    """The quantities of a family in the order of its columns, and whether they are limited."""
    quantities = {}
    for table in tables:
        for column in (column for group in table["groups"] for column in group["columns"]):
            _, limited = quantities.get(column["key"], (column, False))
            quantities[column["key"]] = (column, limited or column["limit"] is not None)
    return quantities


def compare_heads(cells, quantities):
    heads = ["Unit", "Section", "Group", "Element", "Valid"]
    for column, limited in quantities.values():
        heads.append(f"{head_of(column)} [{column['unit']}]" if column["unit"] else head_of(column))
        heads += [f"{head_of(column)}: {what}" for what in ("limit", "utilisation") if limited]
    same("heads", [cell.value for cell in cells], [cell_text(head) for head in heads])


def compare_values(cells, row, quantities, formulas, limits):
    """The cells behind the names of a row, with the formulas that made them and the sheet of limits."""
    by_key = {value.column["key"]: value for value in row}
    for key, (_, limited) in quantities.items():
        value = by_key.get(key)
        cell = next(cells)
        if value is None:
            same("cell of another section", cell.value, None)
        else:
            compare_cell(f"{key} of {value.item['name']}", cell, cell_number(value.value) if value.has_data else "\u2013")
            same("mark of NaN", cell.number_format, 'General"*"' if value.nans > 0 and math.isfinite(value.value) else "General")
        if not limited:
            continue
        limit, utilisation = next(cells), next(cells)
        if value is None or value.limit is None:
            same("no limit", (limit.value, utilisation.value), (None, None))
            continue
        compare_cell("limit", limit, cell_number(value.limit))
        compare_cell("utilisation", utilisation, value.utilisation())
        sheet, place = formulas[limit.coordinate].value[1:].split("!")
        same("sheet of the limit", sheet, "'Limits'")
        compare_cell("limit that the formula names", limits[place.replace("$", "")], cell_number(value.limit))


def compare_sheet(sheet, tables, formulas, limits):
    quantities = quantities_of(tables)
    rows = sheet.iter_rows()
    compare_heads(next(rows), quantities)
    for table in tables:
        for group, sub_group, item, values in rows_of(table):
            cells = iter(next(rows))
            names = [table["unit"]["name"], group["name"], sub_group["name"], item["name"]]
            same("names", [unescaped(next(cells).value) for _ in names], [cell_text(name) for name in names])
            same("valid", next(cells).value, item["valid"])
            compare_values(cells, values, quantities, formulas, limits)
    same("rows left over", list(rows), [])


def compare_workbook(content, tables):
    with warnings.catch_warnings():
        warnings.simplefilter("ignore")  # of extensions that the reader does not know
        book, formulas = (openpyxl.load_workbook(io.BytesIO(content), data_only=is_read) for is_read in (True, False))
    families = {}
    for table in sorted(tables, key=lambda table: table["dataType"]):
        families.setdefault(table["title"], []).append(table)
    has_limits = any(value["limit"] for table in tables for group in table["groups"] for value in group["columns"])
    same("sheets", book.sheetnames, ["Summary"] + ["Limits"] * has_limits + list(families))
    for title, of_family in families.items():
        compare_sheet(book[title], of_family, formulas[title], book["Limits"] if has_limits else None)


# ---- the page


def page_of(content):
    page = ElementTree.fromstring(content)
    for element in page.iter():
        same("events and styles in the markup", [name for name in element.attrib if name.startswith("on") or name == "style"], [])
    return page


def plain(number):
    return "nan" if math.isnan(number) else float(number)


def numbers_of(parts):
    return [None if part == "-" else plain(float(part)) for part in parts]


def compare_row_of_page(row, group, item, values):
    mark = "" if item["valid"] else " "
    same("element", row[0].text or "", printable(item["displayName"]) + mark)
    same("mark", ("i" in row.get("class", "").split(), len(row[0])), (not item["valid"], len(mark)))
    values_shown, steps, times = (row.get(of, "").split() or ["-"] * len(values) for of in ("data-v", "data-s", "data-t"))
    same("values", numbers_of(values_shown), [plain(value.value) if value.has_data else None for value in values])
    same("steps", steps, ["-" if value.step is None else str(value.step) for value in values])
    same("times", numbers_of(times), [None if value.time is None else plain(value.time) for value in values])
    cells = list(row)[-len(group["columns"]) :]
    for cell, value in zip(cells, values):
        classes = cell.get("class", "").split()
        same("exceeded", "x" in classes, value.exceeded)
        same("NaN", "n" in classes, value.nans > 0)


def compare_page(content, tables):
    page = page_of(content)
    shown = iter([table for table in page.iter("table") if "data" in table.get("class", "").split()])
    for table in tables:
        for group in table["groups"]:
            part = next(shown)
            same("unit", part.get("data-unit", ""), printable(table["unit"]["name"]))
            same("place", (part.get("data-family"), part.get("data-group")), (table["family"], group["name"]))
            heads = [head for head in part.find("thead/tr") if head.get("data-key")]
            limits = [column["limit"] and number_of(column["limit"]["value"]) for column in group["columns"]]
            found = [float(head.get("data-limit")) if head.get("data-limit") else None for head in heads]
            same("limits", [limit and plain(limit) for limit in found], [limit and plain(limit) for limit in limits])
            rows = iter(part.find("tbody"))
            for sub_group in group["subGroups"]:
                for item in sub_group["items"]:
                    count = min(len(item["maxValues"]), len(group["columns"]))
                    compare_row_of_page(next(rows), group, item, [Value(table, group, sub_group, item, i) for i in range(count)])
            same("rows left over", list(rows), [])
    same("tables left over", list(shown), [])


# ---- checking


def findings_of(tables):
    """The values of which `check` has something to say, and what."""
    for value in values_of(tables):
        if value.limit is None:
            continue
        for kind, holds in (("exceeded", value.exceeded), ("notANumber", value.nans > 0)):
            if holds:
                yield kind, value


def finding_of(kind, value):
    return [kind, value.column["key"], value.item["name"], value.stored, value.limit]


def limited_of(tables):
    return [value for value in values_of(tables) if value.limit is not None and value.item["valid"]]


def equal_findings(found, expected):
    same("number of findings", len(found), len(expected))
    for one, other in zip(found, expected):
        for part, wanted in zip(one, other):
            same("finding", part, wanted)


def compare_check(report, tables):
    found = [
        [one["kind"], one["key"], one["item"], number_of(one["value"]), number_of(one["limit"])]
        for one in report["findings"]
        if one["kind"] != "invalid"
    ]
    equal_findings(found, [finding_of(kind, value) for kind, value in findings_of(tables)])
    limited = limited_of(tables)
    same("compared", report["compared"], sum(value.count > 0 for value in limited))
    same("without data", report["withoutData"], sum(not value.has_data for value in limited))


def numbers_in(report):
    kinds = [one["kind"] for one in report["findings"]]
    return [kinds.count(kind) for kind in ("exceeded", "notANumber", "invalid")] + [report["compared"], report["withoutData"]]


def shown_value(value):
    return "\u2013" if not value.has_data else f"{value.value:.7g}".replace("nan", "NaN")


def compare_check_texts(text, junit, page, report, tables):
    """The text of `check`, whose last line has all the numbers, its JUnit report and its page, held against its JSON."""
    lines = text.decode().splitlines()
    same("lines", len(lines), len(report["findings"]) + 1)
    same("numbers", [int(number) for number in re.findall(r": (\d+)", lines[-1])], numbers_in(report))
    limited = iter(findings_of(tables))
    for line, finding in zip(lines, report["findings"]):
        if finding["kind"] != "invalid":
            shown = shown_value(next(limited)[1])
            same(f"value in {line}", f": {shown} " in line or f": {shown}, " in line, True)
    suites = ElementTree.fromstring(junit)
    messages = [line for failure in suites.iter("failure") for line in failure.text.split("\n")]
    same("failures", messages, lines[:-1])
    counts = {part.get("class"): int(part.find("dd").get("data-count")) for part in page_of(page).find(".//dl[@class='counts']")}
    same("counts of the page", [counts[of] for of in ("exceeded", "nan", "invalid", "compared", "nodata")], numbers_in(report))


# ---- pictures


def compare_pictures(content, series):
    svg = ElementTree.fromstring(content)
    space = "{http://www.w3.org/2000/svg}"
    titles = ["".join(group.find(f"{space}title").itertext()) for group in svg.iter(f"{space}g")]
    same("pictures", len(titles), len(series))
    for title, one in zip(titles, series):
        same("name in the title", printable(one["item"]) in title, True)


def compare_file(folder, seed):
    selection = ("results.json", "--limits", "limits.json") + (("--teaching",) if seed % 2 else ())
    show, check, series = ([command, *selection, "--format"] for command in ("show", "check", "series"))
    tables = json.loads(run(folder, *show, "json"))["tables"]
    compare_csv(run(folder, *show, "csv"), tables)
    compare_workbook(run(folder, *show, "xlsx"), tables)
    page = run(folder, *show, "html")
    compare_page(page, tables)
    if seed % 10 == 0:
        html5lib.HTMLParser(strict=True).parse(page.decode())
    report = json.loads(run(folder, *check, "json"))
    compare_check(report, tables)
    compare_check_texts(run(folder, *check, "text"), run(folder, *check, "junit"), run(folder, *check, "html"), report, tables)
    compare_pictures(run(folder, *series, "svg"), json.loads(run(folder, *series, "json"))["series"])


def main():
    first, count = int(os.environ.get("FORMS_SEED", "1")), int(os.environ.get("FORMS_FILES", "12"))
    for seed in range(first, first + count):
        with tempfile.TemporaryDirectory() as name:
            folder = pathlib.Path(name)
            RandomResults(random.Random(seed)).write(folder)
            try:
                compare_file(folder, seed)
            except Exception:
                print(f"FORMS_SEED={seed}", file=sys.stderr)
                raise
    print(f"{count} files, no difference")


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    main()
