#!/usr/bin/env python3
"""Makes a language that nobody speaks out of a message catalogue: every text longer, accented, and in brackets.

usage: tests/support/pseudo_locale.py CATALOGUE.po FOLDER

Writes FOLDER/xx/LC_MESSAGES/kestrel.mo for the texts of the catalogue, whose translations do not matter. What a program shows
in ASCII letters with KESTREL_LOCALEDIR=FOLDER and LC_ALL=xx_XX.UTF-8 did not come from a catalogue, or came into a text as a
value; a text that lost its last bracket was cut.
"""

import pathlib
import re
import subprocess
import sys

LOCALE = "xx_XX.UTF-8"
OPENING, CLOSING = "⟦", "⟧"

# Each letter to one that is not ASCII and takes one column.
LETTERS = dict(
    zip(
        "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ",
        "àƀċďèƒġĥîĵķļɱñôƥɋŕšţûṽŵẋýžÀƁĊĎÈƑĠĤÎĴĶĻṀÑÔƤɊŔŠŢÛṼŴẊÝŽ",
    )
)
DOUBLED = frozenset("aeiounrAEIOUNR")  # some 45 % of what English consists of

# Places of values, options, names that files and command lines have, and escape sequences.
KEPT = re.compile(
    r"""\{\w*\} | %\d | (?<![\w-])--?[a-z][a-z-]* | \\?"\w+\\?" | \\. | [a-z]+://\S* | ~?/?\.[a-z]+ | \b[A-Z][A-Z]+\b | \b[a-z]+[A-Z]\w*""",
    re.VERBOSE,
)

# Entries that are no texts: the tag of the language, and a number as it writes it.
SETTINGS = {"en": "en-XA", "1.5": "1,5"}


def accented(text):
    return "".join(LETTERS.get(letter, letter) * (2 if letter in DOUBLED else 1) for letter in text)


def pseudo(text):
    """The pseudo translation of a text; a leading blank stays in front."""
    if text in SETTINGS:
        return SETTINGS[text]
    begin = len(text) - len(text.lstrip(" "))
    parts, end = [], begin
    for kept in KEPT.finditer(text, begin):
        parts += [accented(text[end : kept.start()]), kept.group()]
        end = kept.end()
    return text[:begin] + OPENING + "".join(parts) + accented(text[end:]) + CLOSING


def output_of(command, text):
    return subprocess.run(command, input=text, capture_output=True, check=True, encoding="utf-8").stdout


def entries_of(catalogue):
    """The header of a catalogue, then its entries, each with one text on one line."""
    return output_of(["msgcat", "--no-wrap", str(catalogue)], "").strip().split("\n\n")


def pseudo_entry(entry):
    """An entry with the pseudo translation in place of its own."""
    made, count = re.subn(
        r'^msgid "(.+)"\nmsgstr ".*"$', lambda match: f'msgid "{match[1]}"\nmsgstr "{pseudo(match[1])}"', entry, flags=re.MULTILINE
    )
    if count != 1:
        raise ValueError(f"expected a text and its translation on a line each, found {entry}")
    return made


def make_pseudo_locale(catalogue, folder):
    target = pathlib.Path(folder) / "xx" / "LC_MESSAGES" / "kestrel.mo"
    target.parent.mkdir(parents=True, exist_ok=True)
    header, *entries = entries_of(catalogue)
    output_of(["msgfmt", "--check", "-o", str(target), "-"], "\n\n".join([header, *map(pseudo_entry, entries)]) + "\n")


if __name__ == "__main__":
    make_pseudo_locale(*sys.argv[1:])
