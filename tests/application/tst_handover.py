#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""tst_handover.py CVTAMBER [keyboard]: files that other programs hand over, and documents that are handed to others."""
import os
import pathlib
import signal
import sys

from gi.repository import Gio

from driver import Atspi, Desk, GLib, until
from keyboard import chosen
from steps import expect, give, leave_editor, put, put_pupil, save_with_ann, sees_text

NAME = "org.cvtamber.CVTamber"
MAIL = """#!/bin/sh
printf '%s\\n' "$@" > "$0.arguments"
for last; do :; done
cat "$last" > "$0.attachment"
"""
OPENER = """#!/bin/sh
stat -c %a "$(dirname "$1")" > "$0.folder"
echo "$1" > "$0.path"
cat "$1" > "$0.text"
"""
PORTAL = """<node><interface name='org.freedesktop.portal.Email'><method name='ComposeEmail'>
<arg type='s' direction='in'/><arg type='a{sv}' direction='in'/><arg type='o' direction='out'/>
</method></interface></node>"""


class Bus:
    """The session bus, as another program uses it."""

    def __init__(self, desk):
        flags = Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION
        address = desk.env["DBUS_SESSION_BUS_ADDRESS"]
        self.connection = Gio.DBusConnection.new_for_address_sync(address, flags, None, None)

    def ask(self, method, *arguments, signature="(s)"):
        parameters = GLib.Variant(signature, arguments)
        return self.connection.call_sync("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                                         method, parameters, None, Gio.DBusCallFlags.NONE, 10000, None)[0]

    def application(self, method, signature, *arguments):
        parameters = GLib.Variant(signature, arguments)
        self.connection.call_sync(NAME, "/" + NAME.replace(".", "/"), "org.freedesktop.Application", method,
                                  parameters, None, Gio.DBusCallFlags.NONE, 10000, None)


class Portal:
    """A desktop portal that takes messages."""

    def __init__(self, bus):
        self._connection = bus.connection
        self.message = None
        interface = Gio.DBusNodeInfo.new_for_xml(PORTAL).interfaces[0]
        self._connection.register_object("/org/freedesktop/portal/desktop", interface, self._compose, None, None)
        bus.ask("RequestName", "org.freedesktop.portal.Desktop", 4, signature="(su)")

    def _compose(self, _connection, sender, _path, _interface, _method, parameters, invocation):
        options = parameters[1]
        files = invocation.get_message().get_unix_fd_list()
        with os.fdopen(files.get(options["attachment_fds"][0]), "rb") as file:
            self.message = (options["subject"], file.read())
        request = (f"/org/freedesktop/portal/desktop/request/{sender[1:].replace('.', '_')}/"
                   f"{options['handle_token']}")
        invocation.return_value(GLib.Variant("(o)", (request,)))
        self._connection.emit_signal(sender, request, "org.freedesktop.portal.Request", "Response",
                                     GLib.Variant("(ua{sv})", (0, {})))

    def taken(self):
        GLib.MainContext.default().iteration(False)
        return self.message


def reads_by_keys(p):
    """The caret goes through a text that is only read."""
    area = p.find(None, "text")
    p.focus(area.get_name(), "text")
    for key, place in (("ctrl+End", Atspi.Text.get_character_count(area)), ("ctrl+Home", 0)):
        p.keys(key)
        until(lambda: Atspi.Text.get_caret_offset(area) == place, f"the caret at {place}")


def first_start_with_files(desk, binary):
    letter = put(desk, "First.txt", b"handed to a first start\n")
    with chosen()(desk, binary, [letter, desk.root / "home" / "gone.txt"]) as p:
        sees_text(p, "handed to a first start\n")
        reads_by_keys(p)
        until(lambda: p.app.get_child_at_index(0) and "gone.txt could not be opened." in p.outline(), "the refusal")
        leave_editor(p)
        p.see("Ann Lee...")


def second_starts(desk, binary, p, pupil):
    files = [put(desk, name, content) for name, content in (("Letter 100%20.txt", b"one\r\n"),
                                                            ("other/Letter 100%20.txt", "Grüße".encode("cp1252")))]
    before = [(file.read_bytes(), file.stat().st_mtime_ns) for file in files]
    give(desk, binary, *files)
    for text in ("one\n", "Grüße"):
        sees_text(p, text)
        save_with_ann(p)
        p.see_no("Save here")
        p.press("Done")
    p.see("Users", "heading")
    expect([(file.read_bytes(), file.stat().st_mtime_ns) for file in files], before)
    expect({file.name: file.read_text() for file in pupil.glob("Letter 100*")},
           {"Letter 100%20.tamber": "one\n", "Letter 100%20 2.tamber": "Grüße"})


def names_of_every_kind(desk, binary, p):
    names = (".hidden", "two\nlines.txt", b"no utf \xff\xfe.txt", "n" * 251 + ".txt", "盲文 😀.txt", "a?b#c&d", "...")
    give(desk, binary, *(put(desk, name, f"text {i}".encode()) for i, name in enumerate(names)))
    for i in range(len(names)):
        sees_text(p, f"text {i}")
        leave_editor(p)
    folder = put(desk, b"folder \xff/name.txt", b"below").parent
    for file in ("name.txt", "../" + folder.name + "/name.txt"):
        give(desk, binary, file, cwd=folder)
        sees_text(p, "below")
        leave_editor(p)
        p.see("Users", "heading")
    p.see("Users", "heading")


def refusals(desk, binary, p):
    home = desk.root / "home"
    os.mkfifo(home / "pipe")
    (home / "dangling").symlink_to("nowhere")
    (home / "folder").mkdir()
    with open(home / "huge", "wb") as huge:
        huge.truncate(100 * 1024 * 1024)
    put(desk, "binary", b"\x7fELF\x00\x01")
    put(desk, "endless", b"x" * 200_000)
    put(desk, "undecodable", b"\x81\x8d")
    for name, words in (("pipe", "could not be opened"), ("dangling", "could not be opened"),
                        ("folder", "could not be opened"), ("vanished", "could not be opened"),
                        ("/dev/zero", "could not be opened"), ("huge", "is larger than 5 MB"),
                        ("binary", "does not hold text"), ("endless", "does not hold text"),
                        ("undecodable", "does not hold text")):
        give(desk, binary, home / name)
        p.see(f"{pathlib.Path(name).name} {words}...", "notification")
        assert not p.find("Save"), f"an editor for {name}"
    give(desk, binary, home / "pipe", home / "binary", home / "folder", home / "huge")
    p.see("pipe could not be opened. It is not a file. binary does not hold text that can be read. folder could ...",
          "notification")
    until(lambda: not any((desk.documents / "Inbox").iterdir()), "an empty Inbox")
    p.keys("ctrl+o")
    p.see("This system has no window for choosing files...", "notification")


def deletes_what_the_filter_left(p, pupil):
    before = {file.name for file in pupil.glob("*.tamber")}
    p.press("Ann Lee...")
    p.see("Lesson 3,...")
    p.keys("ctrl+f")
    p.has_focus("Filter...", "text")
    p.write("zaba")
    p.see(f"1 of {len(before)} left", "label")
    p.keys("Down")
    p.has_focus("Žába,...", "list item")
    p.keys("Delete")
    p.press("Yes")
    p.see(f"0 of {len(before) - 1} left", "label")
    p.keys("Escape")
    p.see("Lesson 1,...")
    p.see_no("Žába,...")
    expect(before - {file.name for file in pupil.glob("*.tamber")}, {"Žába.tamber"})
    p.back()


def waits_for_a_menu(desk, binary, p):
    """What is chosen in the menu comes first."""
    p.press("Ann Lee...")
    p.press("Letter,...")
    p.see("Preview")
    give(desk, binary, put(desk, "Later.txt", b"handed over later"))
    until(lambda: "Later.txt is waiting. It opens when this is closed." in p.outline(), "the news")
    p.press("Move")
    p.press("Ann Lee...", "list item")
    p.see_no("Ann Lee...", "list item")
    p.press("Cancel")
    sees_text(p, "handed over later")
    leave_editor(p)
    # A touch beside a menu is its Cancel.
    p.press("Letter,...")
    p.see("Preview")
    p.xdotool("mousemove", "--window", p.window, 20, 300, "click", 1)
    p.see_no("Preview")
    p.back()


def requests_of_the_desktop(desk, p):
    bus = Bus(desk)
    uri = put(desk, "ü 1.txt", b"opened by the desktop").as_uri()
    bus.application("Open", "(asa{sv})", [uri, "https://example.org/a"], {"activation-token": GLib.Variant("s", "t")})
    sees_text(p, "opened by the desktop")
    assert "https://example.org/a is not on this computer" in p.outline(), p.outline()
    leave_editor(p)
    bus.application("Activate", "(a{sv})", {})
    bus.application("ActivateAction", "(sava{sv})", "nonsense", [], {})
    bus.application("ActivateAction", "(sava{sv})", "settings", [], {})
    settings = f"{NAME}.Settings"
    until(lambda: bus.ask("NameHasOwner", settings), "the settings on the bus")
    os.kill(bus.ask("GetConnectionUnixProcessID", settings), signal.SIGTERM)
    until(lambda: not bus.ask("NameHasOwner", settings), "the end of the settings")


def choose_for_letter(p, choice):
    p.press("Letter,...")
    p.press(choice)


def documents_for_others(desk, binary):
    commands = desk.root / "bin"
    commands.mkdir()
    mail, opener = commands / "xdg-email", commands / "xdg-open"
    with chosen()(desk, binary, PATH=f"{commands}:{os.environ['PATH']}") as p:
        p.press("Ann Lee...")
        choose_for_letter(p, "Send by e-mail")
        p.see("There is no mail program on this device.", "notification")
        choose_for_letter(p, "Preview")
        p.see("No program on this device shows text files.", "notification")
        for command, script in ((mail, MAIL), (opener, OPENER)):
            command.write_text(script)
            command.chmod(0o755)
        choose_for_letter(p, "Send by e-mail")
        until((commands / "xdg-email.attachment").exists, "a message")
        choose_for_letter(p, "Preview")
        until((commands / "xdg-open.text").exists, "a preview")
        portal = Portal(Bus(desk))
        choose_for_letter(p, "Send by e-mail")
        until(portal.taken, "a message through the portal")
        shown = pathlib.Path((commands / "xdg-open.path").read_text().strip())
        assert shown.exists()
    expect(portal.message, ("Document: Letter.tamber", "Grüße 盲\n".encode()))
    arguments = (commands / "xdg-email.arguments").read_text().splitlines()
    expect(arguments[:3] + arguments[5:6], ["--utf8", "--subject", "Document: Letter.tamber", "--attach"])
    expect((commands / "xdg-email.attachment").read_text(), "Grüße 盲\n")
    expect((commands / "xdg-open.text").read_bytes(), b"\xef\xbb\xbf" + "Grüße 盲\n".encode())
    expect((commands / "xdg-open.folder").read_text(), "700\n")
    assert not shown.parent.exists(), f"{shown.parent} is left"


def main():
    binary = pathlib.Path(sys.argv[1]).resolve()
    with Desk() as desk:
        lessons = {f"Lesson {number}": "text" for number in range(1, 11)}
        pupil = put_pupil(desk, Letter="Grüße 盲\n", Žába="frog", **lessons)
        first_start_with_files(desk, binary)
        with chosen()(desk, binary) as p:
            second_starts(desk, binary, p, pupil)
            names_of_every_kind(desk, binary, p)
            deletes_what_the_filter_left(p, pupil)
            refusals(desk, binary, p)
            waits_for_a_menu(desk, binary, p)
            requests_of_the_desktop(desk, p)
        documents_for_others(desk, binary)


main()
