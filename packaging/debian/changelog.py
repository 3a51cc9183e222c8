#!/usr/bin/env python3
"""Prints CHANGELOG.md in Debian's form, or the version that packages have.

usage: packaging/debian/changelog.py CHANGELOG VERSION MAINTAINER
       packaging/debian/changelog.py CHANGELOG VERSION

VERSION is that of the sources. Where changes stand under "Unreleased", packages have the version VERSION+unreleased, which is
newer than VERSION and older than any other, and the time that SOURCE_DATE_EPOCH says.
"""

import datetime
import email.utils
import os
import re
import sys
import textwrap
import time


def sections_of(text):
    """Each heading of the second level with its lines."""
    parts = re.split(r"^## (.*)\n", text, flags=re.MULTILINE)[1:]
    return [(heading, body.strip("\n")) for heading, body in zip(parts[::2], parts[1::2])]


def entries_of(body):
    """Headings and items, each as one line without links."""
    for block in re.split(r"\n(?=- |### |\n)", body):
        line = " ".join(block.split())
        if line:
            yield re.sub(r"\[([^]]*)\]\([^)]*\)", r"\1", line)


def in_debians_form(body):
    for entry in entries_of(body):
        if entry.startswith("### "):
            yield f"\n  [ {entry[4:]} ]"
        else:
            yield textwrap.fill(entry.removeprefix("- "), 78, initial_indent="  * ", subsequent_indent="    ", break_long_words=False)


def version_of(heading, version):
    return version + "+unreleased" if heading == "Unreleased" else heading.partition(" - ")[0]


def times_of(headings):
    """When each section was made; what is not released is newer than what is."""
    days = [heading.partition(" - ")[2] for heading in headings]
    times = [datetime.datetime.fromisoformat(day + "T00:00:00+00:00").timestamp() for day in days if day]
    if "Unreleased" in headings:
        now = float(os.environ.get("SOURCE_DATE_EPOCH", time.time()))
        times.insert(0, max([now, *(released + 3600 for released in times)]))
    return times


def main():
    text = open(sys.argv[1], encoding="utf-8").read()
    sections = [(heading, body) for heading, body in sections_of(text) if body]
    if len(sys.argv) == 3:
        print(version_of(sections[0][0], sys.argv[2]))
        return
    for (heading, body), when in zip(sections, times_of([heading for heading, _ in sections])):
        lines = "\n".join(in_debians_form(body)).strip("\n")
        print(f"result-tables ({version_of(heading, sys.argv[2])}) unstable; urgency=medium\n\n{lines}\n")
        print(f" -- {sys.argv[3]}  {email.utils.formatdate(when)}\n")


main()
