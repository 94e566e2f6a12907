#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""tst_endings.py CVTAMBER PROFILE: what is remembered, and every way to end."""
import pathlib
import signal
import subprocess
import sys
import time

from driver import Desk, Program, until
from steps import expect, put, put_pupil, save_with_ann, sees_text

END_LIMIT = 5


def ends(p, by_window):
    """In time, and with nothing of a sanitizer."""
    if by_window:
        has_ended(p, p.close_window)
    else:
        has_ended(p, lambda: p.process.send_signal(signal.SIGTERM))


def has_ended(p, by):
    start = time.monotonic()
    by()
    status = p.process.wait(END_LIMIT * 4)
    assert status == 0, f"status {status}:\n{p.said()[-4000:]}"
    assert time.monotonic() - start < END_LIMIT, f"{time.monotonic() - start} s"


def what_is_remembered(desk, binary):
    with Program(desk, binary) as p:
        p.press("Archive", "page tab")
        p.see("Archive", "heading")
        p.resize(500, 700)
        p.xdotool("windowmove", "--sync", p.window, 40, 30)
        ends(p, by_window=True)
    with Program(desk, binary, size=None) as p:
        p.see("Archive", "heading")
        geometry = desk.run(["xdotool", "getwindowgeometry", p.window]).stdout
        assert "500x700" in geometry and "Position: 40,30" in geometry, geometry
        p.press("Users", "page tab")


def ends_while_asking(desk, binary):
    with Program(desk, binary, [put(desk, "asked.txt", b"to be asked for\n")]) as p:
        sees_text(p, "to be asked for\n")
        p.press("Done")
        p.see("Close without saving")
        ends(p, by_window=False)


def window_asks_for_an_unsaved_text(desk, binary):
    with Program(desk, binary, [put(desk, "unsaved.txt", b"not saved yet\n")]) as p:
        sees_text(p, "not saved yet\n")
        p.keys("ctrl+q")
        p.see("Close without saving")
        p.press("Cancel")
        sees_text(p, "not saved yet\n")
        p.press("Done")
        p.see("Close without saving")
        p.close_window()
        has_ended(p, lambda: p.press("Close without saving"))


def ends_while_saving(desk, binary, by_window):
    pupil = next(desk.documents.rglob("user.txt")).parent
    with Program(desk, binary, [put(desk, f"saved {by_window}.txt", b"just saved\n")]) as p:
        sees_text(p, "just saved\n")
        save_with_ann(p)
        ends(p, by_window)
    expect((pupil / f"saved {by_window}.tamber").read_text(), "just saved\n")


def ends_while_adding(desk, binary, by_window):
    with Program(desk, binary) as p:
        p.press("Ann Lee...")
        p.press("Add")
        p.press("New folder")
        p.see("OK")
        p.fill("Name of the new folder", f"Folder {by_window}")
        p.press("OK")
        ends(p, by_window)
    expect([file for file in desk.documents.rglob("folder.dat") if f"Folder {by_window}" in file.read_text()] != [],
           True)


def ends_while_sending(desk, binary, profile):
    with Program(desk, binary, [f"--simulate={profile}"]) as p:
        p.press("Corvane Brailler", "page tab")
        p.press("Connect to Corvane")
        p.press("Window desk...")
        p.press("Done")
        p.see("State, Connected...")
        p.press("Users", "page tab")
        p.press("Ann Lee...")
        p.press("Long,...")
        p.press("Send to the Corvane")
        p.press("Send as it is")
        p.see("Progress:...", "progress bar")
        ends(p, by_window=True)


def without_a_bus(desk, binary):
    env = dict(desk.env, DBUS_SESSION_BUS_ADDRESS="unix:path=/nowhere", QT_QUICK_BACKEND="software")
    programs = []
    for number in range(2):
        log = desk.root / f"no-bus-{number}"
        with open(log, "wb") as stream:
            programs.append(subprocess.Popen([binary, "--verbose"], env=env, stderr=stream))
        until(lambda: "setTabBarController" in log.read_text(), "a start without a bus")
    expect([program.poll() for program in programs], [None, None])
    for program in programs:
        program.terminate()
    for program in programs:
        program.wait(END_LIMIT * 4)
    expect(["There is no session bus" in (desk.root / f"no-bus-{number}").read_text() for number in range(2)],
           [True, False])


def main():
    binary, profile = (pathlib.Path(sys.argv[i]).resolve() for i in (1, 2))
    with Desk() as desk:
        put_pupil(desk, Long="Ten lines of text to be sent.\n" * 2000)
        what_is_remembered(desk, binary)
        ends_while_asking(desk, binary)
        window_asks_for_an_unsaved_text(desk, binary)
        for by_window in (True, False):
            ends_while_saving(desk, binary, by_window)
            ends_while_adding(desk, binary, by_window)
        ends_while_sending(desk, binary, profile)
        without_a_bus(desk, binary)


main()
