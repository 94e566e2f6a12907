# SPDX-License-Identifier: GPL-3.0-or-later
"""What a cloud folder holds, and which texts must be there."""

import collections
import hashlib
import os
import pathlib

TEXT = ".tamber"
LEFTOVER = ".cvtamber-"


def is_below(path, place):
    return path == place or path.startswith(place + "/")


def hash_of(data):
    return hashlib.sha1(data).hexdigest()


def text_of(number):
    """A text like no other; its size is from nothing to some 16 KB."""
    ends = f"text {number}\n"
    return ends + "Zeile für Zeile\n" * (number * 37 % 1000) + ends


class Texts:
    """Which texts are owed: told as saved, and not replaced or deleted by somebody who saw them."""

    def __init__(self):
        self.told = {}
        self.lost = {}
        self._last = 0
        self._next = collections.defaultdict(list)
        self._deleted = set()

    def new(self):
        self._last += 1
        return text_of(self._last)

    def written(self, text, saw):
        """By somebody who saw that text."""
        self._next[saw].append(text)

    def tell(self, text, what):
        """It is saved, a person was told."""
        self.told[text] = what

    def deleted(self, text):
        self._deleted.add(text)

    def find_lost(self, present):
        """Those that are owed and not there; each is told once."""
        def is_kept(text):
            # Nobody was told of a save that failed or was cut short, and yet it may have got through.
            return text in present or text in self._deleted or any(
                following in self.told or is_kept(following) for following in self._next[text])
        lost = {text: what for text, what in self.told.items() if text not in self.lost and not is_kept(text)}
        self.lost |= lost
        return lost


class Disk:
    """What lies in one cloud folder."""

    def __init__(self, root):
        # What a store must list, by path, as sync_store does.
        self.listed = {}
        # Documents below a user or folder that has no record: they wait for it.
        self.waiting = set()
        self.texts = set()
        # What a killed program leaves goes to the trash later.
        self.leftovers = set()
        self.files = {}
        self.conflicts = collections.Counter()
        for folder, folders, files in os.walk(root):
            folders[:] = [name for name in folders if name != ".stfolder"]
            # A node that was stopped leaves what it had not fetched whole, and uses it later.
            for name in (name for name in files if not name.startswith(".syncthing.")):
                data = (pathlib.Path(folder) / name).read_bytes()
                self.files[os.path.relpath(os.path.join(folder, name), root)] = data
                if name.startswith(LEFTOVER):
                    self.leftovers.add(hash_of(data))
                elif name.endswith(TEXT) and not name.startswith("."):
                    self.texts.add(hash_of(data))
                self.conflicts[".sync-conflict-" if ".sync-conflict-" in name else
                               "(conflicted copy" if "(conflicted copy" in name else "none"] += 1
        for path, data in self.files.items():
            self._list(pathlib.PurePosixPath(path), data)

    def _list(self, path, data):
        place = str(path.parent)
        if path.name == "user.txt" and len(path.parts) == 3:
            self.listed[place] = "|".join(data.decode().split("\n")[:3])
        elif path.name == "folder.dat" and len(path.parts) == 4 and self._has_user(path):
            self.listed[place] = data.decode().split("\n")[0]
        elif path.suffix == TEXT and not path.name.startswith("."):
            has_folder = len(path.parts) == 3 or f"{place}/folder.dat" in self.files
            if self._has_user(path) and has_folder:
                self.listed[str(path)] = hash_of(data)
            else:
                self.waiting.add(str(path))

    def _has_user(self, path):
        return "/".join(path.parts[:2] + ("user.txt",)) in self.files

    def snapshot(self):
        return {path: hash_of(data) for path, data in self.files.items()}


def texts_below(folder):
    return {hash_of(path.read_bytes()) for path in pathlib.Path(folder).rglob("*" + TEXT)}
