# SPDX-License-Identifier: GPL-3.0-or-later
"""Starts the application on a display and a session bus of its own, and uses it as a person does.

Desk is the place: folders, display, buses. Program is one run of the application on it, read through the tree that
screen readers use, and driven by its actions or by keys. What a person would wait for is waited for with a limit.
"""
import ctypes
import itertools
import os
import pathlib
import shutil
import signal
import subprocess
import tempfile
import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

# A sanitized program draws slowly on a busy machine, and the device link has silences of several seconds by rule.
LIMIT = 60
STEP = 0.05
SIZES = {"phone": (390, 844), "tablet": (820, 1180), "desktop": (1280, 800), "wide": (1920, 1080)}


class Missing(AssertionError):
    """What was waited for did not come."""


def until(condition, what, limit=LIMIT):
    end = time.monotonic() + limit
    while True:
        try:
            result = condition()
        except GLib.Error:  # Something went while it was being read.
            result = None
        if result:
            return result
        if time.monotonic() > end:
            raise Missing(what)
        time.sleep(STEP)


class ClientMessage(ctypes.Structure):
    """As big as any event of the display."""

    _fields_ = [("type", ctypes.c_int), ("serial", ctypes.c_ulong), ("send_event", ctypes.c_int),
                ("display", ctypes.c_void_p), ("window", ctypes.c_ulong), ("message_type", ctypes.c_ulong),
                ("format", ctypes.c_int), ("data", ctypes.c_long * 5), ("pad", ctypes.c_long * 24)]


class Desk:
    """A display, a session bus and empty folders; gone at the end of a `with` block."""

    def __init__(self, screen=(1920, 1240)):
        self.root = pathlib.Path(tempfile.mkdtemp(prefix="cvtamber-desk-"))
        self._children = []
        self._screen = screen
        self.env = dict(os.environ, LC_ALL="C.UTF-8", HOME=str(self.root / "home"))
        self.env.pop("AT_SPI_BUS_ADDRESS", None)
        self.env.pop("WAYLAND_DISPLAY", None)
        for name in ("DATA", "CONFIG", "STATE", "CACHE", "RUNTIME"):
            folder = self.root / name.lower()
            folder.mkdir(mode=0o700)
            self.env["XDG_RUNTIME_DIR" if name == "RUNTIME" else f"XDG_{name}_HOME"] = str(folder)
        (self.root / "home").mkdir()

    def __enter__(self):
        try:
            self._start_display()
            self._start_bus()
        except BaseException:
            self.__exit__()
            raise
        return self

    def __exit__(self, *_):
        for child in reversed(self._children):
            child.terminate()
        for child in self._children:
            try:
                child.wait(10)
            except subprocess.TimeoutExpired:
                child.kill()
                child.wait()
        shutil.rmtree(self.root, ignore_errors=True)

    def _spawn(self, command, **options):
        child = subprocess.Popen(command, env=self.env, **options)
        self._children.append(child)
        return child

    def _start_display(self):
        read, write = os.pipe()
        size = f"{self._screen[0]}x{self._screen[1]}x24"
        self._spawn(["Xvfb", "-displayfd", str(write), "-screen", "0", size, "-nolisten", "tcp", "-noreset"], pass_fds=[write],
                    stderr=subprocess.DEVNULL)
        os.close(write)
        with os.fdopen(read) as pipe:
            number = pipe.readline().strip()
        if not number:
            raise Missing("a display")
        self.env["DISPLAY"] = os.environ["DISPLAY"] = f":{number}"

    def _start_bus(self):
        bus = self._spawn(["dbus-daemon", "--session", "--print-address", "--nofork"], stdout=subprocess.PIPE, text=True)
        self.env["DBUS_SESSION_BUS_ADDRESS"] = bus.stdout.readline().strip()
        os.environ.update({name: self.env[name] for name in ("DBUS_SESSION_BUS_ADDRESS", "XDG_RUNTIME_DIR")})
        os.environ.pop("AT_SPI_BUS_ADDRESS", None)
        self.env["QT_LINUX_ACCESSIBILITY_ALWAYS_ON"] = "1"
        Atspi.init()
        # Of each call; without it a call has 0.8 seconds, in which a busy machine may not come to answer.
        Atspi.set_timeout(LIMIT * 1000, LIMIT * 1000)

    @property
    def documents(self):
        return self.root / "data" / "cvtamber" / "Documents"

    @property
    def settings(self):
        return self.root / "config" / "cvtamber" / "settings.ini"

    def run(self, command, **options):
        return subprocess.run(command, env=self.env, check=True, capture_output=True, text=True, **options)


class Program:
    """One run of the application. Nodes are those of the tree that a screen reader sees."""

    def __init__(self, desk, binary, arguments=(), size="phone", **environment):
        self.desk = desk
        self.size = SIZES[size] if isinstance(size, str) else size
        self.shots = desk.root
        self.pressed = "nothing"
        self.log = desk.root / f"log-{time.monotonic_ns()}"
        suppressions = pathlib.Path(__file__).with_name("lsan.supp")
        env = dict(desk.env, QT_QUICK_BACKEND="software",
                   LSAN_OPTIONS=f"suppressions={suppressions}:print_suppressions=0", **environment)
        with open(self.log, "wb") as log:
            self.process = subprocess.Popen([binary, *arguments], env=env, stdout=log, stderr=log, cwd=desk.root)
        try:
            self.app = until(self._application, "the application on the accessibility bus")
            self.window = until(self._window, "a window").split()[-1]
            # Without a size the window has the one that it was left with.
            if self.size:
                self.resize(*self.size)
            until(lambda: self.app.get_child_at_index(0).get_child_count(), "a first screen")
        except BaseException:
            self.process.kill()
            raise

    def __enter__(self):
        return self

    def __exit__(self, kind, *_):
        status = self.stop()
        if kind is None and status != 0:
            raise Missing(f"a clean end; it was {status}:\n{self.said()[-4000:]}")

    def stop(self):
        if self.process.poll() is None:
            self.process.send_signal(signal.SIGTERM)
        try:
            return self.process.wait(LIMIT)
        except subprocess.TimeoutExpired:
            self.process.kill()
            self.process.wait()
            return "a hang"

    def said(self):
        return self.log.read_text(errors="replace")

    def _application(self):
        if self.process.poll() is not None:
            raise Missing(f"a running program; it ended with {self.process.returncode}:\n{self.said()[-4000:]}")
        desktop = Atspi.get_desktop(0)
        for i in range(desktop.get_child_count()):
            child = desktop.get_child_at_index(i)
            if child and child.get_process_id() == self.process.pid and child.get_child_count() > 0:
                return child
        return None

    def _window(self):
        done = subprocess.run(["xdotool", "search", "--onlyvisible", "--pid", str(self.process.pid)], env=self.desk.env,
                              capture_output=True, text=True)
        return done.stdout

    def xdotool(self, *arguments):
        self.desk.run(["xdotool", *(str(argument) for argument in arguments)])

    def resize(self, width, height):
        self.xdotool("windowsize", "--sync", self.window, width, height)
        self.xdotool("windowfocus", "--sync", self.window)
        self.size = (width, height)

    def close_window(self):
        """What a window manager sends for the button in the title bar."""
        x11 = ctypes.CDLL("libX11.so.6")
        x11.XOpenDisplay.restype = ctypes.c_void_p
        x11.XInternAtom.restype = ctypes.c_ulong
        display = ctypes.c_void_p(x11.XOpenDisplay(self.desk.env["DISPLAY"].encode()))
        event = ClientMessage(type=33, window=int(self.window), format=32,
                              message_type=x11.XInternAtom(display, b"WM_PROTOCOLS", 0))
        event.data[0] = x11.XInternAtom(display, b"WM_DELETE_WINDOW", 0)
        x11.XSendEvent(display, ctypes.c_ulong(int(self.window)), 0, 0, ctypes.byref(event))
        x11.XCloseDisplay(display)

    # Reading

    def nodes(self, root=None):
        """All nodes below the root, in reading order."""
        stack = [root or self.app]
        while stack:
            node = stack.pop()
            if node is None:
                continue
            yield node
            for i in reversed(range(node.get_child_count())):
                stack.append(node.get_child_at_index(i))

    def top(self):
        """The dialog above all others, else the window."""
        frame = self.app.get_child_at_index(0)
        # Where a child goes while they are counted, another one is passed over.
        children = self.children(frame)
        while children != (again := self.children(frame)):
            children = again
        dialogs = [child for child in children if child.get_role_name() == "dialog" and self.showing(child)]
        # The line of a notice is told as a dialog with nothing in it.
        dialogs = [dialog for dialog in dialogs if dialog.get_child_count() > 0]
        return dialogs[-1] if dialogs else frame

    def columns(self, top=None):
        """The pages that stand side by side, where nothing is above them."""
        return [page for page in self.children(top or self.top()) if page.get_role_name() == "panel" and self.showing(page)]

    @staticmethod
    def children(node):
        return [child for i in range(node.get_child_count()) if (child := node.get_child_at_index(i))]

    @staticmethod
    def showing(node):
        return node.get_state_set().contains(Atspi.StateType.SHOWING)

    def find(self, name=None, role=None, root=None):
        """The first showing node of that name (or beginning of a name, with "..." at the end) and role; else None.

        What stands under a sheet or a question cannot be used, so it is not looked at. Of two columns the right one comes first.
        """
        try:
            top = root or self.top()
            roots = [*([] if root else self.columns(top)[1:]), top]
            for node in itertools.chain.from_iterable(self.nodes(one) for one in roots):
                if role is not None and node.get_role_name() != role:
                    continue
                if name is not None and not matches(node.get_name(), name):
                    continue
                if self.showing(node):
                    return node
        except GLib.Error:  # Something went while it was being read.
            pass
        return None

    def see(self, name=None, role=None, limit=LIMIT):
        try:
            return until(lambda: self.find(name, role), "", limit)
        except Missing:
            raise Missing(f"{name!r} ({role or 'any role'}) is not there. There is:\n{self.outline()}") from None

    def see_no(self, name, role=None, limit=LIMIT):
        try:
            until(lambda: self.find(name, role) is None, "", limit)
        except Missing:
            raise Missing(f"{name!r} is still there, after {self.pressed}:\n{self.outline()}") from None

    def outline(self, root=None, level=0):
        """The tree in words, one line a showing node."""
        node = root or self.app
        try:
            words = f"{'  ' * level}{node.get_role_name()} {node.get_name()!r}"
            description = node.get_description()
            lines = [words + (f" ({description})" if description else "")] if level == 0 or self.showing(node) else []
            for i in range(node.get_child_count()):
                child = node.get_child_at_index(i)
                lines += [self.outline(child, level + 1)] if child else []
        except GLib.Error:
            return ""
        return "\n".join(line for line in lines if line)

    def names(self, role):
        return [node.get_name() for node in self.nodes() if node.get_role_name() == role and self.showing(node)]

    def is_checked(self, name):
        node = self.find(name)
        return node is not None and node.get_state_set().contains(Atspi.StateType.CHECKED)

    def text_of(self, name):
        node = self.find(name, "text")
        return Atspi.Text.get_text(node, 0, -1) if node else ""

    # Doing

    def press(self, name, role=None):
        """Does what touching the node does."""
        node = self.see(name, role)
        # The second action of the name is the view's own where there are two.
        places = [i for i in range(node.get_n_actions()) if node.get_action_name(i) in ("Press", "Toggle")]
        if not places:
            raise Missing(f"an action of {name!r}")
        self.pressed = f"{name!r} in {self.place(node)}"
        node.do_action(places[-1])

    def back(self):
        """Leaves what is open; in two columns what stands beside the root."""
        self.press(until(lambda: self.find("Back", "push button") or self.find("Close", "push button"), "a way back").get_name())

    def place(self, node):
        """The named ones around it, the innermost first."""
        names = []
        try:
            while (node := node.get_parent()) is not None and node != self.app:
                names += [node.get_name()] if node.get_name() else []
        except GLib.Error:  # It has gone meanwhile.
            pass
        return " in ".join(names)

    def focus(self, name, role=None):
        node = self.see(name, role)
        node.grab_focus()
        until(lambda: node.get_state_set().contains(Atspi.StateType.FOCUSED), f"the focus on {name!r}")

    def fill(self, name, text):
        """Replaces the text of a field by typing."""
        self.focus(name, "text")
        self.keys("ctrl+a", "Delete")
        self.write(text)
        node = self.see(name, "text")
        # Keys travel on their own: what follows must not overtake them.
        until(lambda: Atspi.Text.get_text(node, 0, -1) == text, f"{text!r} in {name!r}")

    def focused(self):
        found = None
        for node in self.nodes():
            # A list and its current row both say that they have it.
            if node.get_state_set().contains(Atspi.StateType.FOCUSED) and node.get_role_name() != "frame":
                found = node
        return found

    def has_focus(self, name=None, role=None):
        """Waits until that has it; what has it may go while it is being read."""
        def has():
            node = self.focused()
            return node and (name is None or matches(node.get_name(), name)) and role in (None, node.get_role_name())
        until(has, f"the focus on {name!r} ({role or 'any role'})")

    def stop_of_focus(self):
        """What has the focus and its page; the way to it goes through what says that it has it."""
        try:
            node = self._focused_below(self.top())
            return (node.get_role_name(), node.get_name(), self.page_of(node)) if node else None
        except GLib.Error:  # It went while it was being read.
            return None

    @staticmethod
    def page_of(node):
        """The name of the page that it stands on."""
        while node is not None and node.get_role_name() != "panel":
            node = node.get_parent()
        return node.get_name() if node else ""

    def _focused_below(self, node):
        children = [node.get_child_at_index(i) for i in range(node.get_child_count())]
        children = [child for child in children if child and self.showing(child)]
        with_focus = [child for child in children if child.get_state_set().contains(Atspi.StateType.FOCUSED)]
        for child in with_focus or children:
            found = self._focused_below(child)
            if found:
                return found
        return with_focus[-1] if with_focus else None

    def moves_by(self, name):
        """The key, and a moment for the focus to follow; whether it did."""
        before = self.stop_of_focus()
        self.keys(name)
        end = time.monotonic() + 1
        while self.stop_of_focus() == before:
            if time.monotonic() > end:
                return False
            time.sleep(STEP)
        return True

    def keys(self, *names):
        for name in names:
            self.xdotool("key", "--window", self.window, name)

    def write(self, text):
        # A character that no key has is given a key for a moment, which the program must hear of first.
        delay = 10 if text.isascii() else 300
        self.xdotool("type", "--window", self.window, "--delay", delay, text)

    def shot_of(self, name):
        """A picture of the screen as it stands, once it has come to rest."""
        self.shots.mkdir(parents=True, exist_ok=True)
        file = self.shots / f"{name}.png"
        last = None
        # What turns for ever never rests.
        for _ in range(4):
            self.shot(file)
            now = file.read_bytes()
            if now == last:
                break
            last = now
            time.sleep(STEP * 3)

    def shot(self, file):
        width, height = self.size
        self.desk.run(["import", "-window", self.window, "-crop", f"{width}x{height}+0+0", "+repage", str(file)])


def matches(name, wanted):
    return name.startswith(wanted[:-3]) if wanted.endswith("...") else name == wanted
