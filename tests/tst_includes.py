#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""tst_includes.py SRC QTCORE: fails on an include in SRC that points the wrong way.

QTCORE is the folder of Qt Core's headers. Before the sources, made-up ones show that the rules bite.
"""
import pathlib
import posixpath
import re
import sys
import tempfile

# Which folders of src/ a folder may include, beside itself.
LOW = {"base", "text", "device", "store", "ui", "chat/text"}
SCREENS = {"app", "device_ui", "chat"}
ALLOWED = {
    "base": set(),
    "text": {"base"},
    "device": {"base", "text"},
    "store": {"base"},
    "ui": {"base"},
    "chat/text": {"base"},
    "app": LOW | SCREENS,
    "device_ui": LOW | SCREENS,
    "chat": LOW | SCREENS,
    "qml": LOW | SCREENS,
    "platform": {"base", "device", "store", "ui"},
    "simulator": {"base", "text", "device", "store", "ui"},
    "simulator/bluez": {"base", "device", "simulator"},
    "simulator/bluez": {"base", "device", "simulator"},
    "cli": {"base", "text", "device", "chat/text", "platform", "simulator"},
    "main": LOW | SCREENS | {"qml", "platform", "simulator", "simulator/bluez", "cli"},
}
QT_CORE_ONLY = {"base", "text", "device", "store", "chat/text", "simulator", "cli"}

INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]')


def room_of(path):
    """The folder of src/ whose rules hold for a path relative to src/; None where no rule is known."""
    parts = path.split("/")
    if len(parts) > 2 and "/".join(parts[:2]) in ALLOWED:
        return "/".join(parts[:2])
    return parts[0] if len(parts) > 1 and parts[0] in ALLOWED else None


def is_qt_header(name):
    return re.match(r"Q[A-Za-z]*(/|$)|q\w*\.h$", name) is not None


def is_qt_core_header(name, qt_core):
    if "/" in name:
        return name.startswith("QtCore/")
    return name == "QtCore" or (qt_core / name).exists()


def fault_of(source, room, bracket, name, src, qt_core):
    """What is wrong with one include, or None."""
    beside = posixpath.normpath(posixpath.join(posixpath.dirname(source), name))
    if bracket == '"' and (src / beside).exists():
        target = beside
    elif (src / name).exists():
        target = posixpath.normpath(name)
    elif bracket == '"' and not name.endswith(".moc"):
        return "is not a file of src/"
    else:
        wrong_qt = room in QT_CORE_ONLY and is_qt_header(name) and not is_qt_core_header(name, qt_core)
        return f"{room} may use Qt Core only" if wrong_qt else None
    other = room_of(target)
    if other is None:
        return "lies outside the folders that have a rule"
    return None if other == room or other in ALLOWED[room] else f"{room} may not include {other}"


def faults(src, qt_core):
    found, count = [], 0
    for path in sorted(src.rglob("*")):
        if path.suffix not in (".h", ".cpp", ".mm", ".inc"):
            continue
        source = path.relative_to(src).as_posix()
        room = room_of(source)
        if room is None:
            found.append(f"{source}: lies outside the folders that have a rule")
            continue
        for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
            match = INCLUDE.match(line)
            if not match:
                continue
            count += 1
            fault = fault_of(source, room, match[1], match[2], src, qt_core)
            if fault:
                found.append(f"{source}:{number}: {match[2]}: {fault}")
    return found, count


GOOD = {
    "base/A.h": "#include <QString>\n#include <queue>\n",
    "device/B.h": '#include "base/A.h"\n#include "B2.h"\n#include <QtCore/QFile>\n#include <qglobal.h>\n',
    "device/B2.h": "",
    "chat/text/T.h": '#include "base/A.h"\n',
    "chat/C.cpp": '#include "chat/text/T.h"\n#include "app/D.h"\n#include <QFont>\n#include "C.moc"\n',
    "app/D.h": '#include "device/B.h"\n',
    "platform/bluetooth/P.h": '#include "device/B.h"\n#include <QBluetoothUuid>\n',
    "simulator/S.h": '#include "device/B.h"\n',
    "simulator/bluez/Z.h": '#include "simulator/S.h"\n#include <QDBusMessage>\n',
    "main/main.cpp": '#include "simulator/S.h"\n#include "chat/../app/D.h"\n',
}
BAD = [
    ("base/X.h", '#include "device/B.h"'),
    ("device/X.h", '#include "simulator/S.h"'),
    ("device/X.h", '#include "../simulator/S.h"'),
    ("device/X.h", "  #  include <simulator/S.h>"),
    ("device/X.h", "#include <QFont>"),
    ("device/X.h", "#include <QtGui/QFont>"),
    ("device/X.h", "#include <QtNetwork>"),
    ("device/X.h", "#include <qfont.h>"),
    ("device/X.h", '#include "base/Missing.h"'),
    ("store/X.h", '#include "device/B.h"'),
    ("chat/text/X.h", '#include "chat/X.h"'),
    ("ui/X.h", '#include "app/D.h"'),
    ("app/X.cpp", '#include "platform/bluetooth/P.h"'),
    ("simulator/X.h", '#include "platform/bluetooth/P.h"'),
    ("platform/X.cpp", '#include "chat/C.h"'),
    ("simulator/X.h", '#include "simulator/bluez/Z.h"'),
    ("simulator/X.cpp", "#include <QDBusMessage>"),
    ("cli/X.cpp", "#include <QBluetoothUuid>"),
    ("elsewhere/X.cpp", ""),
    ("X.cpp", ""),
]


def self_check():
    for bad, line in [(None, "")] + BAD:
        with tempfile.TemporaryDirectory() as folder:
            qt_core, src = pathlib.Path(folder, "QtCore"), pathlib.Path(folder, "src")
            files = dict(GOOD)
            files["chat/X.h"] = files["chat/C.h"] = ""
            if bad:
                files[bad] = line + "\n"
            for name, text in files.items():
                (src / name).parent.mkdir(parents=True, exist_ok=True)
                (src / name).write_text(text)
            qt_core.mkdir()
            for name in ("QString", "QFile", "qglobal.h"):
                (qt_core / name).touch()
            found, _ = faults(src, qt_core)
            expected = [bad] if bad else []
            if [fault.split(":")[0] for fault in found] != expected:
                sys.exit(f"The rules miss the made-up case {bad}: {line!r} (found: {found})")


def main():
    src, qt_core = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2])
    if not (qt_core / "QString").exists():
        sys.exit(f"{qt_core} does not hold Qt Core's headers")
    self_check()
    found, count = faults(src, qt_core)
    print("\n".join(found + [f"{count} includes read, {len(found)} point the wrong way"]))
    sys.exit(1 if found or not count else 0)


main()
