# SPDX-License-Identifier: GPL-3.0-or-later
"""What two people do on the two sides of a soak, drawn from its dice."""

import collections
import os

from disk import TEXT, hash_of, is_below

MOST_USERS = 4
MOST_FOLDERS = 3
MOST_FILES = 7
# What does not disturb work on the documents in a user.
ADDITIONS = ("add folder", "rename user")


def is_edited(path):
    """What Syncthing does with every other document it does not do with its own conflict copies: where both sides change
    one, it keeps one version."""
    return ".sync-conflict-" not in path


class Works:
    """`begin` sends a command to a side and `look` asks for its listing, both as Soak does it."""

    def __init__(self, sides, dice, texts, begin, look):
        self.done = collections.Counter()
        self._sides, self._dice, self._texts, self._do, self._list = sides, dice, texts, begin, look
        self._number = 0

    def draw(self, side):
        """Begins one on this side, or on both."""
        listing = self._list(side)
        if len(listing.users) < 2:
            return self._add_user(side)
        works = {
            self._save: 36, self._add: 14, self._save_on_both: 8, self._rename: 8, self._move: 7, self._delete: 6,
            self._delete_and_save: 3, self._add_on_both: 2, self._add_folder: 4, self._rename_folder: 2,
            self._move_folder: 2, self._delete_folder: 1.5, self._add_user_if_few: 1, self._rename_user: 2,
            self._move_user: 2, self._delete_user: 0.6,
        }
        self._dice.choices(list(works), works.values())[0](side, listing)

    def _count(self, what):
        self.done[what] += 1

    def _fresh(self):
        self._number += 1
        return self._number

    def _any(self, paths, is_fit):
        fit = [path for path in sorted(paths) if is_fit(path)]
        return self._dice.choice(fit) if fit else None

    def _other(self, side):
        return self._sides[1 - self._sides.index(side)]

    def _title(self):
        return f"Letter {self._dice.randrange(1, 5)}" if self._dice.random() < 0.15 else f"Text {self._fresh()}"

    def _add_user(self, side):
        self._count("add user")
        self._do(side, "add user", name=f"User {self._fresh()}")

    def _add_user_if_few(self, side, listing):
        if len(listing.users) < MOST_USERS:
            self._add_user(side)

    def _on_one(self, side, what, paths, **details):
        """Of what is there and free; nothing where there is none."""
        path = self._any(paths, side.is_open if what in ADDITIONS else side.is_free)
        if path is None:
            return
        self._count(what)
        self._do(side, what, self._note_missing, [] if what in ADDITIONS else [path], at=path, **details)

    def _note_missing(self, line):
        if not line["ok"]:
            self._count("gone meanwhile")

    def _rename_user(self, side, listing):
        self._on_one(side, "rename user", listing.users, name=f"User {self._fresh()}")

    def _move_user(self, side, listing):
        self._on_one(side, "move user", listing.users)

    def _delete_user(self, side, listing):
        if len(listing.users) == MOST_USERS:
            self._delete_on(side, "delete user", self._any(listing.users, side.is_free))

    def _add_folder(self, side, listing):
        users = [user for user in listing.users if len(listing.folders_of(user)) < MOST_FOLDERS]
        self._on_one(side, "add folder", users, name=f"Folder {self._fresh()}")

    def _rename_folder(self, side, listing):
        self._on_one(side, "rename folder", listing.folders, name=f"Folder {self._fresh()}")

    def _move_folder(self, side, listing):
        target = self._any(listing.users, side.is_open)
        if target:
            folders = [folder for folder in listing.folders if not is_below(folder, target)]
            self._on_one(side, "move folder", folders, to=target)

    def _delete_folder(self, side, listing):
        self._delete_on(side, "delete folder", self._any(listing.folders, side.is_free))

    def _delete_on(self, side, what, path):
        if path is None:
            return
        self._count(what)

        def deleted(line):
            side.deleting.pop(line["id"])
            side.asked.update(line.get("listed", []))
        side.deleting[self._do(side, what, deleted, [path], at=path)] = path

    def _delete(self, side, listing):
        full = [path for path in listing.files if len(listing.files_in(os.path.dirname(path))) >= MOST_FILES]
        path = self._any(full or listing.files, side.is_free)
        self._delete_on(side, "delete", path)

    def _add(self, side, listing, title=None, containers=None):
        containers = [path for path in containers or listing.users + listing.folders
                      if len(listing.files_in(path)) < MOST_FILES]
        path = self._any(containers, side.is_open)
        if path is None:
            return
        self._count("add")
        text = self._texts.new()
        name = title or self._title()

        def added(line):
            if line["ok"]:
                self._texts.tell(hash_of(text.encode()), f"{side.name} add {line['at']}")
        self._do(side, "add", added, [f"{path}/{name}{TEXT}"], at=path, title=name, text=text,
                 free=self._dice.random() < 0.2)

    def _add_on_both(self, side, listing):
        other = self._other(side)
        if not other.is_running:
            return
        shared = set(self._list(other).listed) & set(listing.users + listing.folders)
        path = self._any(shared, lambda path: side.is_open(path) and other.is_open(path))
        if path is None:
            return
        title = self._title()
        for one in (side, other):
            self._add(one, listing, title, [path])

    def _save_on(self, side, path):
        self._count("save")
        texts = [self._texts.new() for _ in range(2 if self._dice.random() < 0.15 else 1)]
        pace = self._dice.random()
        hold = 0 if pace < 0.5 else self._dice.randrange(500) if pace < 0.8 else self._dice.randrange(1000, 4000)
        hashes = [hash_of(text.encode()) for text in texts]

        def opened_or_saved(line):
            if "saw" in line:
                for before, text in zip([line["saw"]] + hashes, hashes):
                    self._texts.written(text, before)
            else:
                for text in hashes[:line.get("saved", 0)]:
                    self._texts.tell(text, f"{side.name} save {path}")
        self._do(side, "save", opened_or_saved, [path], at=path, texts=texts, hold=hold,
                 closing=self._dice.random() < 0.3)

    def _save(self, side, listing):
        path = self._any(filter(is_edited, listing.files), side.is_free)
        if path:
            self._save_on(side, path)

    def _shared_file(self, side, listing):
        other = self._other(side)
        if not other.is_running:
            return None
        shared = set(self._list(other).files) & set(listing.files)
        return self._any(filter(is_edited, shared), lambda path: side.is_free(path) and other.is_free(path))

    def _save_on_both(self, side, listing):
        path = self._shared_file(side, listing)
        if path:
            self._save_on(side, path)
            self._save_on(self._other(side), path)

    def _delete_and_save(self, side, listing):
        path = self._shared_file(side, listing)
        if path:
            self._save_on(self._other(side), path)
            self._delete_on(side, "delete", path)

    def _rename(self, side, listing):
        self._on_one(side, "rename", listing.files, title=self._title())

    def _move(self, side, listing):
        target = self._any(listing.users + listing.folders, side.is_open)
        if target:
            self._on_one(side, "move", [path for path in listing.files if os.path.dirname(path) != target],
                         to=target)
