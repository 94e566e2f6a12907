#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""tst_day.py CVTAMBER PROFILE SIZE SHOTS [keyboard]: a person's day with the real program, at one size of window.

Everything is done through what a screen reader offers, and SHOTS gets a picture of each screen, which is audited as it
is taken; or all of it by keys alone.
"""
import pathlib
import sys

from driver import Atspi, Desk, until
from keyboard import chosen

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


def place(node):
    return node.get_extents(Atspi.CoordType.SCREEN)


def document_menu(p, document, choice):
    row = place(p.see(f"{document}...", "list item"))
    p.press(f"{document}...", "list item")
    p.see("Send by e-mail")
    p.shot_of("document-menu")
    menu = place(p.top())
    # It hangs at its row where the window is large.
    assert min(p.size) < 600 or 0 <= menu.y - row.y - row.height <= 8, (menu.y, row.y, row.height)
    p.press(choice)


def send_under_another_name(p):
    document_menu(p, "HOMEWORK.TXT", "Send to the Corvane")
    p.see("This name is taken", "text")
    p.shot_of("name-taken")
    p.fill("This name is taken", "HOMEWRK2.TXT")
    p.press("OK")
    p.see("Send as it is")
    p.shot_of("transfer")
    p.press("Send as it is")
    p.see_no("Sending...")


def emboss(p):
    document_menu(p, "HOMEWORK.TXT", "Emboss")
    p.press("Turn into braille")
    p.see_no("Embossing...")


def rename(p):
    p.press("Edit")
    p.see("Delete Letters")
    p.shot_of("container-editing")
    p.press("HOMEWORK.TXT...", "list item")
    p.see("Move", "push button")
    p.shot_of("edit-menu")
    p.press("Rename", "push button")
    p.see("Rename", "text")
    p.shot_of("rename")
    p.fill("Rename", "Not this")
    p.keys("Escape")
    p.see_no("Rename", "text")
    p.focus("HOMEWORK.TXT...", "list item")
    p.keys("F2")
    p.fill("Rename", "Homework")
    p.press("OK")
    p.see_no("OK")
    p.see("Homework, ...")
    p.see_no("HOMEWORK.TXT...")


def move_to_folder(p):
    p.press("Homework...", "list item")
    p.press("Move", "push button")
    p.see("Cancel")
    p.shot_of("pick-user")
    p.press("Ann Lee...", "list item")
    p.see("Move here")
    p.shot_of("pick-folder")
    p.press("Letters...", "list item")
    p.see_no("Cancel")
    p.see_no("Homework...")
    p.press("Done")
    p.press("Letters...", "list item")
    p.see("Homework...", "list item")
    p.shot_of("folder")


def delete_document(p):
    p.press("Edit")
    p.press("Delete Homework...")
    p.see("Delete this document?")
    p.shot_of("delete-question")
    p.press("Yes")
    p.see_no("Yes")
    p.see_no("Homework...")
    # Editing can be ended where no row is left.
    p.press("Done")
    p.back()
    p.see_no("Nothing here yet...")
    p.back()
    p.see("Ben Okoro...")


def look_at_device_files(p):
    p.press("Corvane Brailler", "page tab")
    p.press("Show files")
    p.see("HOMEWRK2.TXT...")
    p.press("HOMEWRK2.TXT...", "list item")
    p.see("View")
    p.shot_of("device-file-menu")
    p.press("View")
    p.see("Fetch as it is")
    # Nothing was fetched, so there is nothing to show.
    p.press("Cancel")
    p.press("HOMEWRK2.TXT...", "list item")
    p.press("View")
    p.press("Fetch as it is")
    p.see_no("Fetching...")
    # Lines of a text area are parted by U+2029.
    until(lambda: "Write ten lines." in p.text_of("HOMEWRK2.TXT"), "the text of the device's file")
    p.shot_of("editor")
    p.press("Save")
    p.press("Ann Lee...", "list item")
    p.see("Save here")
    p.shot_of("save-place")
    p.press("Save here")
    p.see_no("Save here")
    p.press("Done")
    p.see_no("HOMEWRK2.TXT", "text")
    p.press("HOMEWRK2.TXT...", "list item")
    p.press("Delete")
    p.see("Delete “HOMEWRK2.TXT” from the Corvane?")
    p.shot_of("device-file-delete")
    p.press("Delete")
    p.see_no("HOMEWRK2.TXT...")
    p.press("Done")
    p.see("State, Connected...")


def archive(p):
    p.press("Users", "page tab")
    p.press("Edit Ben Okoro")
    p.see("Move to the archive")
    p.shot_of("user-dialog-editing")
    p.press("Move to the archive")
    p.see_no("Cancel")
    p.see_no("Ben Okoro...")
    p.press("Archive", "page tab")
    p.see("Ben Okoro...")
    p.shot_of("archive")


def restore_and_delete(p):
    p.press("Edit Ben Okoro")
    p.see("Delete", "push button")
    p.shot_of("user-dialog-archived")
    p.press("Move back to the users")
    p.see_no("Cancel")
    p.see_no("Ben Okoro...")
    p.press("Users", "page tab")
    p.press("Edit Ben Okoro")
    p.press("Delete", "push button")
    p.see("Delete this user?")
    p.shot_of("user-delete")
    p.press("Delete", "push button")
    p.see_no("Ben Okoro...")


def device_switches(p):
    p.press("Corvane Brailler", "page tab")
    p.press("UEB contractions", "check box")
    until(lambda: p.is_checked("UEB contractions"), "the switch on")
    p.press("Refresh files")
    p.see("Refresh files")
    p.press("Disconnect from Corvane")
    p.see("State, Disconnected...")
    p.see_no("Whiteboard...")
    p.press("Connect to Corvane")
    # A dialog takes keys when it has opened.
    p.has_focus("Looking for devices...")
    p.keys("Escape")
    p.see_no("Select Corvane Bluetooth device...")


def menu_and_keys(p):
    p.press("Menu")
    p.see("About CVTamber")
    p.shot_of("menu")
    p.press("Keys")
    p.see("Ctrl+O, opens texts of this computer...")
    p.has_focus("Tab, Shift+Tab,...", "list item")
    p.shot_of("keys")
    p.keys("Escape")
    p.see_no("F2,...")
    p.press("Menu")
    p.has_focus("Open", "push button")
    p.keys("Escape")
    p.see_no("About CVTamber")


def on_disk(desk, pattern):
    return sorted(file.name for file in desk.documents.rglob(pattern))


def main():
    binary, profile, shots = (pathlib.Path(sys.argv[i]).resolve() for i in (1, 2, 4))
    size = sys.argv[3]
    with Desk() as desk, chosen()(desk, binary, [f"--simulate={profile}"], size=size) as p:
        p.shots = shots / size
        p.see("Add the first user...")
        p.shot_of("first-start")
        for pupil in PUPILS:
            add_pupil(p, *pupil)
        p.shot_of("users")
        connect(p)
        open_pupil(p)
        make_folder(p)
        fetch(p)
        fetched = next(desk.documents.rglob("HOMEWORK.TXT.tamber"))
        assert fetched.read_text() == "Read chapter three.\nWrite ten lines.\n", repr(fetched.read_text())
        send_under_another_name(p)
        emboss(p)
        rename(p)
        assert on_disk(desk, "*.tamber") == ["Homework.tamber"], on_disk(desk, "*.tamber")
        move_to_folder(p)
        delete_document(p)
        assert on_disk(desk, "*.tamber") == [], on_disk(desk, "*.tamber")
        look_at_device_files(p)
        archive(p)
        restore_and_delete(p)
        device_switches(p)
        if size == "desktop":
            menu_and_keys(p)


main()
