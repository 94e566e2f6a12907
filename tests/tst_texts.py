#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""tst_texts.py SRC CATALOGUE: every text that the sources ask for is in the English catalogue, once, finished, and has
the places for its arguments that the sources fill."""
import collections
import pathlib
import re
import sys
import xml.etree.ElementTree

LITERAL = r'((?:"(?:[^"\\]|\\.)*"\s*)+)'
CALL = re.compile(r"\b(localized|localizedFormat|localizedName|qsTrId)\(\s*" + LITERAL)
# Tables of keys that are looked up by number.
KEYS = re.compile(r'"((?:BC_[A-Z0-9_]+))"')


def text_of(literal):
    parts = re.findall(r'"((?:[^"\\]|\\.)*)"', literal)
    return "".join(parts).encode().decode("unicode_escape").encode("latin-1").decode()


def asked(src):
    """Keys with what is done to them and where."""
    result = collections.defaultdict(set)
    for file in sorted(src.rglob("*")):
        if file.suffix in (".cpp", ".h", ".qml"):
            text = file.read_text(encoding="utf-8")
            for match in CALL.finditer(text):
                is_format = match[1] == "localizedFormat" or text[match.end():].startswith(").arg(")
                result[text_of(match[2])].add((is_format, file.relative_to(src)))
            for match in KEYS.finditer(text):
                result[match[1]].add((False, file.relative_to(src)))
    return result


def main():
    src, catalogue = map(pathlib.Path, sys.argv[1:])
    messages = collections.defaultdict(list)
    for message in xml.etree.ElementTree.parse(catalogue).iter("message"):
        messages[message.get("id")].append(message.find("translation"))
    keys = asked(src)
    assert len(keys) > 100, "the sources are not read rightly"
    faults = []
    for key, uses in keys.items():
        where = ", ".join(sorted({str(file) for _, file in uses}))
        found = messages.get(key, [])
        if len(found) != 1:
            faults.append(f"{key!r} ({where}) is {len(found)} times in the catalogue")
            continue
        text = found[0].text or ""
        if not text or found[0].get("type"):
            faults.append(f"{key!r} has no finished text")
        has_place = "%@" in text or "%1" in text
        if has_place != any(is_format for is_format, _ in uses):
            faults.append(f"{key!r} ({where}): the argument has {'no use' if has_place else 'no place'} in {text!r}")
    if faults:
        sys.exit("\n".join(faults))
    print(f"{len(keys)} texts are in the catalogue")


main()
