# SPDX-License-Identifier: GPL-3.0-or-later
"""A busy store, killed at random moments again and again, and held against its journal each time.

A tree is one store; a round opens it, compares what it lists with what the journal of the rounds before allows and
with the disk, lets it work, and kills it. The seed decides what is done and when it is killed; how far it has come
by then differs from run to run.
"""

import concurrent.futures
import json
import os
import pathlib
import random
import selectors
import shutil
import subprocess
import tempfile
import time

ROUNDS_A_TREE = 50
# Numbers of operations are never used again within a tree.
OPERATIONS_A_ROUND = 100000
# Opening a store, under a sanitizer and beside others.
LONGEST_LOADING = 60
LONGEST_WORK = 0.12
# Of a round that is killed while it loads.
LONGEST_START = 0.15
LONGEST_SWEEP = 20
TWO_HOURS = 7200
RECORDS = {"user.txt", "folder.dat"}
LEFTOVER = ".cvtamber-"
REGISTRIES = ("ActiveUsers", "ArchivedUsers")


class Failure(Exception):
    """What must not be."""


def is_below(key, place):
    return key == place or key.startswith(place + "/")


def moved(listing, place, to):
    return {to + key[len(place):] if is_below(key, place) else key: value for key, value in listing.items()}


class Expectation:
    """What the store must list: in the end equal to what it lists, or something is lost, torn or too much."""

    def __init__(self, listing):
        self.listing = dict(listing)

    def apply(self, journal, found):
        begun, done = {}, {}
        for line in journal:
            if "failed" in line:
                raise Failure(f"operation {begun.get(line['number'], line)} failed: {line['failed']}")
            (done if "done" in line else begun)[line["number"]] = line
        for number, line in begun.items():
            if number in done:
                self._do(line, done[number].get("place"))
        for number in begun.keys() - done.keys():
            self._do_if_found(begun[number], found)
        if self.listing == found:
            return len(begun), len(begun.keys() - done.keys())
        lines = [f"{key}: {found.get(key, 'not listed')!r} instead of {self.listing.get(key, 'nothing')!r}"
                 for key in sorted(self.listing.keys() | found.keys())
                 if key not in found or key not in self.listing or found[key] != self.listing[key]]
        unfinished = [begun[number] for number in sorted(begun.keys() - done.keys())]
        raise Failure("\n    ".join(lines + ["under way:"] + [str(line) for line in unfinished]))

    def _do(self, line, place):
        what = line["what"]
        if what == "move":
            self.listing = moved(self.listing, line["at"], line["to"])
        elif what == "delete":
            self.listing = {key: value for key, value in self.listing.items() if not is_below(key, line["at"])}
        else:
            self.listing[place or line["at"]] = line["value"]

    def _do_if_found(self, line, found):
        """What was under way is done or not; only a deletion may be half done."""
        what, at = line["what"], line.get("at", REGISTRIES[0])
        if what == "write" and found.get(at) == line["value"]:
            self._do(line, None)
        elif what == "move" and any(is_below(key, line["to"]) for key in found):
            self._do(line, None)
        elif what == "delete":
            for key in [key for key in self.listing if is_below(key, at)]:
                if key not in found:
                    del self.listing[key]
                elif found[key] is None:
                    self.listing[key] = None
        elif what in ("add user", "add folder"):
            # Its directory has a new name; a folder whose record was not written yet has none.
            values = [line["value"], None] if what == "add folder" else [line["value"]]
            for key in found.keys() - self.listing.keys():
                if os.path.dirname(key) == at and "." not in key and found[key] in values:
                    self.listing[key] = found[key]


def check_disk(root, found):
    """What is listed is what is there, apart from leftovers, which are returned, and users on their way."""
    present, leftovers = set(), []
    for registry in REGISTRIES:
        for folder, folders, files in os.walk(root / registry):
            leftovers += [os.path.join(folder, name) for name in folders + files if name.startswith(LEFTOVER)]
            folders[:] = [name for name in folders if not name.startswith(LEFTOVER)]
            if folder == str(root / registry):
                # A young directory without a record is left alone.
                folders[:] = [name for name in folders if os.path.exists(os.path.join(folder, name, "user.txt"))]
            shown = [name for name in folders + files if name not in RECORDS and not name.startswith(LEFTOVER)]
            present |= {os.path.relpath(os.path.join(folder, name), root) for name in shown}
    if present != found.keys():
        raise Failure(f"only on the disk: {sorted(present - found.keys())}\n"
                      f"    only listed: {sorted(found.keys() - present)}")
    return leftovers


class Tree:
    """One store and its rounds."""

    def __init__(self, program, seed, folder):
        self.rounds = self.operations = self.interrupted = self.swept = 0
        self._program = program
        self._seed = seed
        self._dice = random.Random(seed)
        self._root = pathlib.Path(folder) / "store"
        self._root.mkdir()
        self._journal = pathlib.Path(folder) / "journal"
        self._errors = pathlib.Path(folder) / "errors"
        self._expected = Expectation({})

    def run(self, rounds, is_stopped):
        while self.rounds < rounds and not is_stopped():
            self._round()
            self.rounds += 1
        self._round(is_last=True)

    def _round(self, is_last=False):
        aged = self._age_leftovers() if is_last or self._dice.random() < 0.2 else []
        arguments = [str(self._root), str(self._journal), str(self._dice.randrange(2 ** 32)),
                     str((self.rounds + 1) * OPERATIONS_A_ROUND)]
        kills_loading = not is_last and self._dice.random() < 0.1
        # Drawn in every round, so that a round's dice do not depend on how the one before went.
        start, work = (self._dice.random() * limit for limit in (LONGEST_START, LONGEST_WORK))
        with open(self._errors, "wb") as errors:
            process = subprocess.Popen([self._program, *arguments], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                       stderr=errors)
            with process:
                try:
                    if kills_loading:
                        time.sleep(start)
                    else:
                        self._judge(process, aged)
                        if not is_last:
                            process.stdin.write(b"go\n")
                            process.stdin.flush()
                            time.sleep(work)
                    ended = process.poll()
                finally:
                    process.kill()
        if ended is not None:
            raise Failure(f"it ended by itself, status {ended}: {self._errors.read_text(errors='replace')}")

    def _judge(self, process, aged):
        found = self._read_listing(process)
        # A kill may cut the last line short, where a page of the file ends.
        journal = [json.loads(line) for line in self._journal.read_bytes().splitlines(keepends=True)
                   if line.endswith(b"\n")]
        operations, interrupted = self._expected.apply(journal, found)
        check_disk(self._root, found)
        limit = time.monotonic() + LONGEST_SWEEP
        while any(os.path.lexists(path) for path in aged):
            if time.monotonic() > limit:
                raise Failure(f"not swept: {[path for path in aged if os.path.lexists(path)]}")
            time.sleep(0.001)
        self.operations += operations
        self.interrupted += interrupted
        self.swept += len(aged)
        # Told only now: a round that is killed while it loads leaves the journal to the next.
        os.truncate(self._journal, 0)

    def _read_listing(self, process):
        with selectors.DefaultSelector() as selector:
            selector.register(process.stdout, selectors.EVENT_READ)
            if not selector.select(LONGEST_LOADING):
                raise Failure("it does not get the store loaded")
        line = process.stdout.readline()
        if not line.endswith(b"\n"):
            process.wait(LONGEST_LOADING)
            raise Failure(f"it lists nothing: {self._errors.read_text(errors='replace')}")
        return json.loads(line)

    def _age_leftovers(self):
        """As they are two hours later; returns their paths."""
        paths = []
        for registry in REGISTRIES:
            for folder, folders, files in os.walk(self._root / registry):
                paths += [os.path.join(folder, name) for name in folders + files if name.startswith(LEFTOVER)]
        then = time.time() - TWO_HOURS
        for path in paths:
            for inside, folders, files in os.walk(path):
                for name in folders + files:
                    os.utime(os.path.join(inside, name), (then, then))
            os.utime(path, (then, then))
        return paths


class Ledger:
    """Runs trees side by side, and keeps what must not be."""

    def __init__(self, program, tell=print):
        self.failures = []
        self.rounds = self.operations = self.interrupted = self.swept = 0
        self._program = program
        self._tell = tell
        self._stopped = False

    def run(self, rounds, jobs, seed):
        numbers = [min(ROUNDS_A_TREE, rounds - first) for first in range(0, rounds, ROUNDS_A_TREE)]
        with concurrent.futures.ThreadPoolExecutor(jobs) as pool:
            try:
                for tree, failure in pool.map(self._run_tree, range(seed, seed + len(numbers)), numbers):
                    self._count(tree, failure)
            except BaseException:
                self._stopped = True
                raise

    def _count(self, tree, failure):
        self.rounds += tree.rounds
        self.operations += tree.operations
        self.interrupted += tree.interrupted
        self.swept += tree.swept
        if failure:
            self.failures.append(failure)
            self._tell(failure, flush=True)

    def _run_tree(self, seed, rounds):
        folder = tempfile.mkdtemp(prefix="crashes-")
        tree = Tree(self._program, seed, folder)
        try:
            tree.run(rounds, lambda: self._stopped)
        except (Failure, OSError, ValueError) as failure:
            return tree, f"FAILED seed {seed}, round {tree.rounds + 1}, kept in {folder}:\n    {failure}"
        shutil.rmtree(folder)
        return tree, None

    def print(self):
        self._tell(f"{self.rounds} kills, {self.operations} operations, {self.interrupted} of them cut short, "
                   f"{self.swept} leftovers swept, {len(self.failures)} trees failed", flush=True)
