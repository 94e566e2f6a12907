#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""tst_day.py CVTAMBER PROFILE SIZE SHOTS: a person's day with the real program, at one size of window.

Everything is done through what a screen reader offers or by keys; SHOTS gets a picture of each screen.
"""
import pathlib
import sys

from driver import Desk, Program, SIZES, until

PUPILS = (("Ann", "Lee"), ("Ben", "Okoro"))


def add_pupil(p, first, last):
    p.press("Add the first user..." if p.find("Add the first user...") else "Add user")
    p.see("First name")
    p.fill("First name", first)
    p.fill("Last name", last)
    p.shot_of("user-dialog")
    p.press("Save")
    p.see_no("Save")
    p.see(f"{first} {last}...")


def connect(p):
    p.press("Corvane Brailler")
    p.shot_of("device")
    p.press("Connect to Corvane")
    p.see("Window desk...")
    p.shot_of("devices-found")
    p.press("Window desk...")
    p.see("Connecting to Corvane")
    p.see("Done")
    p.shot_of("connected")
    p.press("Done")
    p.see_no("Done")
    p.see("State, Connected...")
    p.shot_of("device-connected")


def open_pupil(p):
    p.press("Users", "page tab")
    p.press("Ann Lee...")
    p.see("Nothing here yet...")
    p.shot_of("container-empty")


def make_folder(p):
    p.press("Add")
    p.see("New folder")
    p.shot_of("add-sheet")
    p.press("New folder")
    p.see("Name of the new folder", "text")
    p.shot_of("folder-name")
    p.fill("Name of the new folder", "Letters")
    p.press("OK")
    p.see_no("OK")
    p.see("Letters...")


def fetch(p):
    p.press("Add")
    p.press("Fetch a file from the Corvane")
    p.see("HOMEWORK.TXT...")
    p.shot_of("device-files")
    p.press("HOMEWORK.TXT...")
    p.press("Fetch as it is")
    p.see_no("Fetching...")
    p.see("HOMEWORK.TXT...")
    p.shot_of("container")


def document_menu(p, choice):
    p.press("HOMEWORK.TXT...")
    p.see("Send by e-mail")
    p.shot_of("document-menu")
    p.press(choice)


def send(p):
    document_menu(p, "Send to the Corvane")
    p.see("This name is taken", "text")
    p.shot_of("name-taken")
    p.fill("This name is taken", "HOMEWRK2.TXT")
    p.press("OK")
    p.see("Sending...")
    p.shot_of("transfer")
    p.press("Send as it is")
    p.see_no("Sending...")


def emboss(p):
    document_menu(p, "Emboss")
    p.press("Turn into braille")
    p.see_no("Embossing...")


def main():
    binary, profile, shots = (pathlib.Path(sys.argv[i]).resolve() for i in (1, 2, 4))
    size = sys.argv[3]
    folder = shots / size
    with Desk() as desk, Program(desk, binary, [f"--simulate={profile}"], size=size) as p:
        p.shots = folder
        p.see("Add the first user...")
        p.shot_of("first-start")
        for pupil in PUPILS:
            add_pupil(p, *pupil)
        p.shot_of("users")
        connect(p)
        open_pupil(p)
        make_folder(p)
        fetch(p)
        send(p)
        emboss(p)
        import time
        def look(what):
            time.sleep(.7); print("=====", what); print(p.outline()); p.shot_of("x-"+what)
        look("embossed")
        p.press("Edit"); look("edit")
        p.press("HOMEWORK..."); look("editdoc")
        p.press("Rename…"); look("rename"); p.fill(p.names("text")[0],"Homework"); p.press("OK"); p.see_no("OK"); look("renamed")
        p.press("Homework..."); p.press("Move…"); look("move");
        p.press("Ann Lee..."); look("move1"); p.press("Letters..."); look("move2")
        b=p.names("push button"); print(b)
        if "Move here" in b: p.press("Move here"); look("moved")
        p.press("Done"); p.press("Back"); p.see("Ben Okoro..."); look("users")
        p.press("Edit Ben Okoro"); look("edituser"); p.press("Move to the archive"); p.see_no("Cancel"); look("archived")
        p.press("Archive"); look("archive")


main()
