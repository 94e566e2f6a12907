#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""tst_places.py CVTAMBER SHOTS [keyboard]: where documents are kept, with the settings beside the application."""
import pathlib
import sys

from driver import Atspi, Desk, SIZES, until
from keyboard import chosen
from steps import expect, give, put, put_pupil

NO_PLACE = "There is no place for documents..."


def is_active(p):
    return p.app.get_child_at_index(0).get_state_set().contains(Atspi.StateType.ACTIVE)


def to_front(front, other):
    """The other one is told some time later that it is not in front any more."""
    front.resize(*front.size)
    until(lambda: is_active(front) and not is_active(other), "the change of windows")


def settings_pictures(s, shots, name):
    for size, extent in SIZES.items():
        s.shots = shots / size
        s.resize(*extent)
        s.shot_of(f"settings-{name}")
    s.resize(*SIZES["phone"])


def switch_cloud(s, p):
    to_front(s, p)
    s.press("Keep documents in the cloud", "check box")


def choose_folder(s, path, outcome, role=None):
    s.press("Cloud folder,...")
    # The question takes the focus once it has opened.
    s.has_focus(role="text")
    s.fill("Cloud folder", str(path))
    s.press("Choose")
    s.see(outcome, role)


def cloud_on_and_off(desk, binary, shots):
    put_pupil(desk, Letter="in the cloud\n")
    cloud = desk.root / "home" / "Cloud"
    away = cloud.with_name("Away")
    cloud.mkdir()
    with chosen()(desk, binary) as p, chosen()(desk, binary, ["--settings"]) as s:
        p.see("Ann Lee...")
        settings_pictures(s, shots, "local")
        switch_cloud(s, p)
        s.see("A cloud folder has not been chosen yet...")
        settings_pictures(s, shots, "nothing-chosen")
        to_front(p, s)
        p.see(NO_PLACE)
        to_front(s, p)
        choose_folder(s, "/nowhere", "/nowhere is not a folder.", "notification")
        choose_folder(s, desk.documents, "This folder holds the documents of this computer...", "notification")
        choose_folder(s, "~/Cloud", "Documents are kept in the cloud folder...")
        expect(list(cloud.iterdir()), [])
        to_front(p, s)
        p.see("Ann Lee...")
        until(lambda: [file.read_text() for file in cloud.rglob("*.tamber")] == ["in the cloud\n"], "the document")
        until(lambda: not list(desk.documents.rglob("*.tamber")), "the old place empty")
        # As a disk that is unmounted leaves it.
        cloud.rename(away)
        cloud.mkdir()
        to_front(s, p)
        s.see("The cloud folder is not there...")
        settings_pictures(s, shots, "missing")
        to_front(p, s)
        p.see("The cloud folder is not there. Its documents are shown when it is back.")
        expect(list(cloud.iterdir()), [])
        cloud.rmdir()
        away.rename(cloud)
        p.see("Ann Lee...")
        to_front(s, p)
        s.see("Documents are kept in the cloud folder...")
        switch_cloud(s, p)
        s.see("Documents are kept on this computer...")
        to_front(p, s)
        p.see("Add the first user...")


def no_place_at_all(desk, binary, shots):
    blocked = put(desk, "blocked", b"no folder")
    letter = put(desk, "letter.txt", b"to be saved nowhere")
    with chosen()(desk, binary, XDG_DATA_HOME=str(blocked)) as p:
        for tab in ("Users", "Archive"):
            p.press(tab, "page tab")
            p.see(NO_PLACE)
            for button in p.names("push button"):
                p.press(button, "push button")
        give(desk, binary, letter)
        p.see("letter.txt could not be taken over...", "notification")
        with chosen()(desk, binary, ["--settings"], XDG_DATA_HOME=str(blocked)) as s:
            s.see("Documents cannot be kept on this computer...")
            settings_pictures(s, shots, "no-place")


def main():
    binary, shots = (pathlib.Path(sys.argv[i]).resolve() for i in (1, 2))
    with Desk() as desk:
        cloud_on_and_off(desk, binary, shots)
        no_place_at_all(desk, binary, shots)


main()
