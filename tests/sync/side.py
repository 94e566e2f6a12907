# SPDX-License-Identifier: GPL-3.0-or-later
"""One machine: a node of Syncthing and a busy store over one cloud folder."""

import itertools
import json
import os
import pathlib
import queue
import subprocess
import threading

from disk import TEXT, is_below
from syncthing import Node

LONGEST_ANSWER = 60


class Failure(Exception):
    """What must not be."""


class Side:
    """One machine: a node, and the program beside it."""

    def __init__(self, name, folder, program, number):
        self.name = name
        folder = pathlib.Path(folder) / name
        self.cloud, self.trash = folder / "cloud", folder / "trash"
        self.root = self.cloud / "Documents"
        for place in (self.cloud, self.trash):
            place.mkdir(parents=True)
        self.node = Node(folder / "home", self.cloud, number)
        # What is being worked on, by the command's number.
        self.busy = {}
        # Documents that a person had deleted, and what the store removed: path and text.
        self.asked, self.removed = set(), []
        # Deletions that are not answered, by the command's number, and what it listed last.
        self.deleting, self.listed = {}, {}
        # What it listed wrongly; told once.
        self.wrong = []
        self._program, self._folder, self._starts = program, folder, 0
        self._ids = itertools.count(1)
        self._process = None
        self._lines = None

    def start_program(self):
        self._starts += 1
        with open(self._folder / "errors", "ab") as errors:
            self._process = subprocess.Popen(
                [self._program, str(self.cloud), str(self.trash / str(self._starts)),
                 str(self._folder / "settings.ini")], stdin=subprocess.PIPE,
                stdout=subprocess.PIPE, stderr=errors)
        self._lines = queue.SimpleQueue()
        threading.Thread(target=self._read, args=(self._process.stdout, self._lines), daemon=True).start()

    @staticmethod
    def _read(stream, lines):
        for line in stream:
            # A killed program may have been in the middle of one.
            if line.endswith(b"\n"):
                lines.put(json.loads(line))
        lines.put(None)

    @property
    def is_running(self):
        return self._process is not None

    def stop_program(self, is_killed=False):
        """What it still told."""
        process, self._process = self._process, None
        if is_killed:
            process.kill()
        process.stdin.close()
        try:
            status = process.wait(LONGEST_ANSWER)
        except subprocess.TimeoutExpired:
            process.kill()
            raise Failure(f"the program on side {self.name} does not end") from None
        if status and not is_killed:
            raise Failure(f"the program on side {self.name} ended with status {status}; see errors")
        lines = []
        while (line := self._lines.get()) is not None:
            lines.append(line)
        return lines

    def kill(self):
        if self._process:
            self._process.kill()
            self._process.wait()
            self._process = None
        self.node.stop()

    def send(self, what, paths=(), **details):
        """The command's number; the paths are busy until it is answered."""
        number = next(self._ids)
        self._process.stdin.write(json.dumps({"id": number, "do": what, **details}).encode() + b"\n")
        self._process.stdin.flush()
        self.busy[number] = paths
        return number

    def next_line(self, limit=0.0):
        """None when none comes in time."""
        try:
            line = self._lines.get(timeout=limit) if limit else self._lines.get_nowait()
        except queue.Empty:
            return None
        if line is None:
            raise Failure(f"the program on side {self.name} ended by itself; see errors")
        self.busy.pop(line.get("id"), None)
        return line

    def is_free(self, path):
        """Nothing works on it, on what lies in it or on where it lies."""
        return self.is_open(path) and not any(is_below(busy, path) for paths in self.busy.values() for busy in paths)

    def is_open(self, path):
        """Something may be added to it."""
        return not any(is_below(path, busy) for paths in self.busy.values() for busy in paths)


class Listing:
    """What a side lists, sorted out."""

    def __init__(self, listed):
        self.listed = listed
        self.users = [path for path in listed if path.count("/") == 1]
        self.folders = [path for path in listed if path.count("/") == 2 and not path.endswith(TEXT)]
        self.files = [path for path in listed if path.endswith(TEXT)]

    def files_in(self, container):
        return [path for path in self.files if os.path.dirname(path) == container]

    def folders_of(self, user):
        return [path for path in self.folders if is_below(path, user)]
