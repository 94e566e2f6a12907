#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""tst_linkloss.py CVTAMBER [keyboard]: the device goes away in the middle of a fetch.

It is said on the screen that waits, the way out has the focus and works by key, nothing of the file is kept, and the
device screen knows.
"""
import json
import pathlib
import sys

from driver import Desk
from keyboard import chosen
from steps import put_pupil

# The fetch of this file takes minutes; the device leaves two seconds after it was asked for it.
LEAVES_AFTER_MS = 2000
LINES = 40000


def profile_in(desk):
    device = {"name": "Window desk", "serial": "20140017", "model": 1,
              "files": [{"name": "LONG.TXT", "text": "Another line of a long text.\r\n" * LINES}],
              "faults": [{"fault": "leave", "command": "PR", "after": LEAVES_AFTER_MS}]}
    file = desk.root / "profile.json"
    file.write_text(json.dumps({"devices": [device]}))
    return file


def main():
    binary = pathlib.Path(sys.argv[1]).resolve()
    with Desk() as desk:
        put_pupil(desk)
        with chosen()(desk, binary, [f"--simulate={profile_in(desk)}"]) as p:
            p.press("Corvane Brailler")
            p.press("Connect to Corvane")
            p.press("Window desk...")
            p.press("Done")
            p.see_no("Done")
            p.press("Users", "page tab")
            p.press("Ann Lee...", "list item")
            p.see("Nothing here yet...")
            p.press("Add")
            p.press("Fetch a file from the Corvane")
            p.press("LONG.TXT...")
            p.press("Fetch as it is")
            p.see("The connection to the Corvane was lost. The file has not been fetched.")
            p.has_focus("OK")
            p.keys("Return")
            p.see_no("OK")
            p.see("Nothing here yet...")
            assert not list(desk.documents.rglob("*.tamber"))
            p.press("Corvane Brailler", "page tab")
            p.see("State, Connecting again...")
            p.press("Do not connect to the Corvane again")
            p.see("State, Disconnected...")


main()
