#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""tst_narrow.py CVTAMBER PROFILES SHOTS [keyboard]: the smallest window with text twice as large.

Nothing lies over anything else, and what has the focus is seen.
"""
import pathlib
import sys

from driver import Desk
from keyboard import chosen
from steps import put_pupil

SMALLEST = (320, 480)
TEXT = "".join(f"Line {number} of a text.\n" for number in range(300))


def keys_help(p):
    p.keys("F1")
    p.has_focus("Tab, Shift+Tab,...", "list item")
    p.shot_of("keys")
    p.keys("End")
    p.has_focus("F1, shows these keys, 14 of 14", "list item")
    p.shot_of("keys-end")
    p.press("Done")
    p.see_no("Keys", "dialog")


def connect(p):
    p.press("Corvane Brailler", "page tab")
    p.press("Connect to Corvane")
    p.see("Library...")
    # Under the list, out of sight until it has the focus.
    p.keys("Tab")
    p.has_focus("Cancel")
    p.shot_of("devices-cancel")
    p.keys("shift+Tab", "Home")
    p.has_focus("Window desk, 20140017, 1 of 4")
    p.keys("Return")
    p.press("Done")
    p.see_no("Done")


def chat(p):
    p.press("Chat", "push button")
    p.see("Device: Good morning....")
    p.shot_of("chat")
    p.keys("Escape")
    p.see("State, Connected...")


def main():
    binary, profiles, shots = (pathlib.Path(argument).resolve() for argument in sys.argv[1:4])
    with Desk() as desk:
        put_pupil(desk, Letter=TEXT)
        with chosen()(desk, binary, [f"--simulate={profiles / 'classroom.json'}"], SMALLEST, CVTAMBER_TEXT_SCALE="2") as p:
            p.shots = shots / "narrow"
            p.see("Ann Lee...")
            p.shot_of("users")
            keys_help(p)
            connect(p)
            chat(p)
            p.press("Users", "page tab")
            p.press("Ann Lee...", "list item")
            p.see_no("Ann Lee...", "list item")
            p.press("Letter...", "list item")
            p.see("Preview")
            p.shot_of("document-menu")
            # Two lines.
            assert p.see("Send to the Corvane").get_size().y > 60
            p.keys("Escape")
            p.see_no("Preview")


main()
