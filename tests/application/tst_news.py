#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""tst_news.py CVTAMBER: what a screen reader says by itself, while the focus stays: each thing once and in order."""
import json
import pathlib
import sys
import time

from driver import Desk, Program
from news import News
from steps import expect, put_pupil

# Long enough for every quarter to be told on its own.
LETTER = "A line of a letter that goes to the device.\n" * 200
# The device leaves so long after a store has ended, which it does with this command.
END_OF_STORE = "EM ON"
LEAVES_AFTER_MS = 15000
RADIO_OFF = {"radio": {"state": "off"}, "devices": []}
# What would be said twice comes soon after the first time.
REST = 2


def profile_in(desk):
    device = {"name": "Window desk", "serial": "20140017", "model": 1,
              "files": [{"name": "A.TXT", "text": "One.\r\n"}],
              "faults": [{"fault": "leave", "command": END_OF_STORE, "after": LEAVES_AFTER_MS}]}
    file = desk.root / "profile.json"
    file.write_text(json.dumps({"devices": [device]}))
    return file


def silent(news):
    time.sleep(REST)
    expect(news.take(), [])


def without_radio(desk, binary):
    """The focus comes to what is wrong, and says it."""
    profile = desk.root / "radio.json"
    profile.write_text(json.dumps(RADIO_OFF))
    with Program(desk, binary, [f"--simulate={profile}"]) as p:
        news = News(p)
        p.press("Corvane Brailler")
        p.press("Connect to Corvane")
        p.has_focus("Bluetooth is off. Turn it on to find your Corvane, 1 of 1")
        silent(news)
        news.stop()


def main():
    binary = pathlib.Path(sys.argv[1]).resolve()
    with Desk() as desk:
        put_pupil(desk, Letter=LETTER)
        with Program(desk, binary, [f"--simulate={profile_in(desk)}"]) as p:
            news = News(p)
            p.press("Corvane Brailler")
            p.press("Connect to Corvane")
            news.hear("Found Window desk")
            p.press("Window desk...")
            news.hear("Connected!")
            p.press("Done")
            p.see_no("Done")
            p.press("Users", "page tab")
            p.press("Ann Lee...", "list item")
            p.press("Letter...", "list item")
            p.press("Send to the Corvane")
            p.press("Send as it is")
            news.hear("25 percent", "50 percent", "75 percent", "The file has been sent.")
            silent(news)
            before = p.focused().get_name()
            news.hear("The connection to the Corvane was lost. Trying to connect again.")
            silent(news)
            p.has_focus(before)
            # The last document goes: the list's own words take the place of its rows.
            p.press("Edit")
            p.press("Delete Letter...")
            p.press("Yes")
            p.has_focus("Nothing here yet....")
            news.stop()
        without_radio(desk, binary)


main()
