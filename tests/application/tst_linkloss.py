#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""tst_linkloss.py CVTAMBER [keyboard]: every wait for a device can be left, and ends when the device goes away.

It is said once on the screen that waits, the way out has the focus and works by key, nothing of the file is kept, and the
device screen knows.
"""
import json
import pathlib
import sys

from driver import Desk, SIZES
from keyboard import chosen
from news import News
from steps import expect, put_pupil

# The fetch of this file takes minutes; the device leaves two seconds after it was asked for it.
LEAVES_AFTER_MS = 2000
LINES = 40000
# Its sending takes minutes as well; titles may end with a dot.
LETTER = "A line of a letter that goes to the device.\n" * LINES


def profile_in(desk):
    device = {"name": "Window desk", "serial": "20140017", "model": 1,
              "files": [{"name": "LONG.TXT", "text": "Another line of a long text.\r\n" * LINES}],
              "faults": [{"fault": "leave", "command": "PR", "after": LEAVES_AFTER_MS}]}
    # Says nothing of itself, which takes the program 45 seconds to give up.
    silent = {"name": "Silent desk", "serial": "20140018",
              "faults": [{"fault": "reply", "command": "PC S2 ON", "text": "{PC."}]}
    file = desk.root / "profile.json"
    file.write_text(json.dumps({"devices": [device, silent]}))
    return file


def leave_connecting(p):
    p.press("Connect to Corvane")
    p.press("Silent desk...")
    p.see("Connecting to Corvane", "heading")
    p.see("Cancel", limit=10)
    p.shot_of("connecting")
    p.press("Cancel")
    p.see_no("Connecting to Corvane", limit=10)
    p.see("State, Disconnected...")


def leave_store(p):
    p.press("Letter., ...", "list item")
    p.press("Send to the Corvane")
    p.has_focus("Turn into braille")
    p.keys("Escape")
    p.see_no("Send as it is")
    p.press("Letter., ...", "list item")
    p.press("Send to the Corvane")
    p.press("Send as it is")
    p.see("Progress:...", "progress bar")
    p.shot_of("sending")
    for size in ("desktop", "wide", "phone"):
        p.resize(*SIZES[size])
        p.see("Progress:...", "progress bar")
    p.keys("Escape")
    p.see("You have cancelled. The file on the Corvane is incomplete.")
    p.has_focus("OK")
    p.press("Delete the incomplete file")
    p.see("The incomplete file has been deleted from the Corvane.")
    p.has_focus("OK")
    p.keys("Return")
    p.see_no("OK")


def main():
    binary = pathlib.Path(sys.argv[1]).resolve()
    with Desk() as desk:
        put_pupil(desk, **{"Letter.": LETTER})
        with chosen()(desk, binary, [f"--simulate={profile_in(desk)}"]) as p:
            p.press("Corvane Brailler")
            leave_connecting(p)
            p.press("Connect to Corvane")
            p.press("Window desk...")
            p.press("Done")
            p.see_no("Done")
            p.press("Users", "page tab")
            p.press("Ann Lee...", "list item")
            leave_store(p)
            p.press("Add")
            p.press("Fetch a file from the Corvane")
            p.press("LONG.TXT...")
            p.see("Fetch as it is")
            news = News(p)
            p.press("Fetch as it is")
            p.see("The connection to the Corvane was lost. The file has not been fetched.")
            p.has_focus("OK")
            p.keys("Return")
            p.see_no("OK")
            news.hear("The connection to the Corvane was lost. The file has not been fetched.",
                      "Trying to connect again.")
            news.stop()
            expect([file.name for file in desk.documents.rglob("*.tamber")], ["Letter..tamber"])
            p.press("Corvane Brailler", "page tab")
            p.see("State, Connecting again...")
            p.press("Do not connect to the Corvane again")
            p.see("State, Disconnected...")


main()
