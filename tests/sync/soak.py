# SPDX-License-Identifier: GPL-3.0-or-later
"""Two busy stores in two cloud folders, which two nodes of Syncthing keep in sync.

The seed decides what is done; what both sides see by then differs from run to run. Every few hundred steps all comes to
rest, and then the lists of both stores must be what both disks hold, and no text may be lost.
"""

import collections
import json
import pathlib
import random
import shutil
import tempfile
import time

from disk import TEXT, Disk, Texts, hash_of, is_below, texts_below
from side import LONGEST_ANSWER, Failure, Listing, Side
from works import Works

STEPS_A_ROUND = 250
LONGEST_REST = 180
# How long a listing may be behind the disk: two looks at it, and one more after a failed one.
LONGEST_LISTING = 20
QUIET = 2
# Two minutes after the record has gone, and as much again where documents went as well.
LONGEST_WITHOUT_RECORD = 250
KEPT_OTHER_VERSION = 2


class Soak:
    """One run."""

    def __init__(self, program, seed, tell=print):
        self.seed = seed
        self.steps = 0
        self.stops = collections.Counter()
        self.kept = 0
        self.failures = []
        self.texts = Texts()
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="sync-soak-")).resolve()
        self.disk = None
        self._tell = tell
        self._dice = random.Random(seed)
        self._sides = [Side(name, self.folder, program, number) for number, name in enumerate("AB")]
        self._journal = open(self.folder / "journal", "w")
        self._began = time.monotonic()
        self._handlers = {}
        self._works = Works(self._sides, self._dice, self.texts, self._do, self._list)
        # At which step what was stopped starts again.
        self._node_starts = self._program_starts = None

    # Running

    def run(self, steps, is_kept=False):
        """What must not be is in `failures`, and the folder is kept then."""
        try:
            self._run(steps)
        except (Failure, OSError, ValueError) as failure:
            self._fail(str(failure))
        if not self.failures and not is_kept:
            shutil.rmtree(self.folder)

    def _run(self, steps):
        try:
            self._start()
            while self.steps < steps:
                last = min(steps, self.steps + STEPS_A_ROUND)
                while self.steps < last:
                    self._step()
                    self.steps += 1
                self._come_to_rest()
                if self.steps == steps:
                    self._wait_for_records()
                self._judge()
            if self.disk.waiting:
                self._fail("in no list:\n    " + "\n    ".join(sorted(self.disk.waiting)))
            for side in self._sides:
                side.stop_program()
        finally:
            for side in self._sides:
                side.kill()
            self._journal.close()

    def _start(self):
        one, other = self._sides
        one.node.configure(other.node)
        other.node.configure(one.node)
        for side in self._sides:
            side.node.start()
        for side in self._sides:
            side.node.wait_until_up()
            side.start_program()

    def _note(self, side, line):
        line = {key: value for key, value in line.items() if key != "texts"}
        self._journal.write(json.dumps({"time": round(time.monotonic() - self._began, 3),
                                        "side": side.name, **line}) + "\n")
        self._journal.flush()

    def _do(self, side, what, then=None, paths=(), **details):
        number = side.send(what, paths, **details)
        self._handlers[side.name, number] = then
        texts = details.get("texts", [details["text"]] if "text" in details else [])
        self._note(side, {"id": number, "do": what, **{k: v for k, v in details.items() if k != "text"},
                          "hashes": [hash_of(text.encode()) for text in texts]})
        return number

    def _hear(self, side, limit=0.0):
        """Takes one line; None when none came."""
        line = side.next_line(limit) if side.is_running else None
        if line is not None:
            self._take(side, line)
        return line

    def _take(self, side, line):
        if "list" not in line:
            self._note(side, line)
        if line.get("problem") == KEPT_OTHER_VERSION:
            self.kept += 1
        if "removed" in line:
            side.removed.append((line["removed"], line["text"]))
        handler = self._handlers.get((side.name, line.get("id", line.get("of"))))
        if "id" in line:
            self._handlers.pop((side.name, line["id"]), None)
        if handler:
            handler(line)

    def _hear_all(self):
        for side in self._sides:
            while self._hear(side):
                pass

    def _ask(self, side, what):
        answers = []
        self._do(side, what, answers.append)
        limit = time.monotonic() + LONGEST_ANSWER
        while not answers:
            self._hear(side, 1)
            if time.monotonic() > limit:
                raise Failure(f"side {side.name} does not answer")
        return answers[0]

    def _list(self, side):
        side.listed = self._ask(side, "list")["list"]
        return Listing(side.listed)

    # Steps

    def _step(self):
        self._hear_all()
        self._stop_or_start()
        self._works.draw(self._dice.choice([side for side in self._sides if side.is_running]))
        pace = self._dice.random()
        time.sleep(self._dice.uniform(0, 0.1) if pace < 0.75 else
                   self._dice.uniform(0.1, 0.4) if pace < 0.97 else self._dice.uniform(1, 4))

    def _stop_or_start(self):
        """At most one node and one program rest at a time."""
        if self._node_starts is None and self._dice.random() < 0.012:
            self._dice.choice(self._sides).node.stop()
            self._node_starts = self.steps + self._dice.randrange(5, 40)
            self.stops["node"] += 1
        elif self._node_starts == self.steps:
            self._start_nodes()
        if self._program_starts is None and self._dice.random() < 0.008:
            self._stop_program(self._dice.choice(self._sides))
            self._program_starts = self.steps + self._dice.randrange(1, 20)
        elif self._program_starts == self.steps:
            self._start_programs()

    def _start_nodes(self):
        self._node_starts = None
        for side in self._sides:
            if not side.node.is_running:
                side.node.start()

    def _stop_program(self, side):
        """Ends it, or kills it in the middle of something."""
        is_killed = self._dice.random() < 0.5
        self.stops["program killed" if is_killed else "program"] += 1
        self._note(side, {"stopped": "killed" if is_killed else "ended"})
        for line in side.stop_program(is_killed):
            self._take(side, line)
        # Nobody may be left who could tell what a deletion has removed.
        for place in side.deleting.values():
            for path, text in side.listed.items():
                if is_below(path, place):
                    self.texts.deleted(text)
        side.deleting.clear()
        side.busy.clear()
        for key in [key for key in self._handlers if key[0] == side.name]:
            del self._handlers[key]

    def _start_programs(self):
        self._program_starts = None
        for side in self._sides:
            if not side.is_running:
                side.start_program()

    # Judging

    def _come_to_rest(self):
        self._start_programs()
        self._start_nodes()
        for side in self._sides:
            side.node.wait_until_up()
        limit = time.monotonic() + LONGEST_REST
        while self._handlers:
            self._hear_all()
            time.sleep(0.01)
            if time.monotonic() > limit:
                raise Failure(f"never answered: {sorted(self._handlers)}")
        before, since, looked = None, 0.0, 0.0
        while True:
            self._hear_all()
            now = time.monotonic()
            if now > looked + 10:
                looked = now
                for side in self._sides:
                    side.node.look_through()
            found = self._snapshot_in_sync()
            if found is None or found != before:
                before, since = found, now
            elif now > since + QUIET:
                return
            if now > limit:
                raise Failure("they do not come to rest:\n    " + "\n    ".join(self._differences()))
            time.sleep(0.3)

    def _wait_for_records(self):
        """What has lost its record to the other side gets it again from the program that had it listed."""
        limit = time.monotonic() + LONGEST_WITHOUT_RECORD
        while Disk(self._sides[0].root).waiting and time.monotonic() < limit:
            self._hear_all()
            time.sleep(0.3)
        self._come_to_rest()

    def _snapshot_in_sync(self):
        one, other = self._sides
        if not one.node.is_in_sync(other.node) or not other.node.is_in_sync(one.node):
            return None
        try:
            found = [Disk(side.root).snapshot() for side in self._sides]
        except OSError:
            # Something has gone since it was listed.
            return None
        return found[0] if found[0] == found[1] else None

    def _differences(self):
        found = [Disk(side.root).snapshot() for side in self._sides]
        return ([f"only on side {side.name}: {path}" for number, side in enumerate(self._sides)
                 for path in sorted(found[number].keys() - found[1 - number].keys())]
                + [f"different: {path}" for path in sorted(found[0].keys() & found[1].keys())
                   if found[0][path] != found[1][path]]) or ["both disks are equal"]

    def _judge(self):
        unsaved = {path for side in self._sides for path in self._ask(side, "rest")["unsaved"]}
        self.disk = Disk(self._sides[0].root)
        for side in self._sides:
            self._judge_listing(side)
        for side in self._sides:
            for path, text in side.removed:
                if path in side.asked:
                    self.texts.deleted(text)
        trashed = set().union(*(texts_below(side.trash) for side in self._sides))
        if self.stops["program killed"]:
            trashed |= self.disk.leftovers
        for text, what in self.texts.find_lost(self.disk.texts | trashed).items():
            self._fail(f"lost: {text}, told by {what}")
        self._tell(f"  {self.steps} steps, {len(self.disk.listed)} listed, {len(self.disk.waiting)} waiting, "
                   f"{len(unsaved)} unsaved, {time.monotonic() - self._began:.0f} s", flush=True)

    def _judge_listing(self, side):
        limit = time.monotonic() + LONGEST_LISTING
        while True:
            found = self._ask(side, "list")["list"]
            if found == self.disk.listed:
                return
            if time.monotonic() > limit:
                break
            time.sleep(0.2)
        wrong = [f"{path}: {found.get(path, 'not listed')!r} instead of {self.disk.listed.get(path, 'nothing')!r}"
                 for path in sorted(found.keys() | self.disk.listed.keys())
                 if path not in found or path not in self.disk.listed or found[path] != self.disk.listed[path]]
        new = [line for line in wrong if line not in side.wrong]
        side.wrong += new
        if new:
            self._fail(f"side {side.name} lists what the disk does not hold:\n    " + "\n    ".join(new))

    def _fail(self, why):
        self.failures.append(why)
        self._tell(f"FAILED seed {self.seed}, until step {self.steps}, kept in {self.folder}:\n    {why}", flush=True)

    def print(self):
        work = ", ".join(f"{count} {what}" for what, count in self._works.done.most_common())
        self._tell(f"{self.steps} steps: {work}")
        if self.folder.exists():
            self._tell(f"kept in {self.folder}")
        disk = self.disk
        if disk:
            documents = sum(path.endswith(TEXT) for path in disk.listed)
            self._tell(f"{documents} documents in the end, {len(disk.waiting)} more without a user or folder; "
                       f"{len(self.texts.told)} texts told as saved; {self.kept} conflict copies made by the store, "
                       f"{disk.conflicts['.sync-conflict-']} of the sync program there in the end; "
                       f"stopped: {dict(self.stops)}; {len(self.texts.lost)} texts lost", flush=True)
