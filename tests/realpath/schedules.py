# SPDX-License-Identifier: GPL-3.0-or-later
"""Seeded schedules of troubles, run with the real programs over the real path, and judged.

A schedule is one operation of corvane and one trouble. The same seed makes the same schedule everywhere; when
exactly a trouble that comes at a time strikes, differs a little from run to run.
"""

import base64
import collections
import concurrent.futures
import dataclasses
import random
import threading

from realpath import Bench, Failure, SERIAL, check

BYTES_IN_WRITE = 20
# Before and after what an operation itself writes.
OTHER_WRITES = 12
# Finding and identifying the device, in ms.
TIME_BEFORE = 14000
# The longest of all, with time to spare: every step of a connection tried until its own limit.
LONGEST_RUN = 180
# How soon what is wrong must be said, in seconds; the second of the two is 6 in the program and a margin for a
# busy machine.
LOSS_KNOWN = 1.0
STALL_KNOWN = 6.5
# How long the end of a link may take after the program's own end.
LINK_LEFT = 2
LETTERS = "abcdefghijklmnopqrstuvwxyz ABC 0123456789.,\n\u00e9"

OPERATIONS = ["info and ls", "put", "put --translate", "get", "get --back-translate", "emboss",
              "emboss --translate", "rm", "chat"]
SENDS_TEXT = {"put", "put --translate", "emboss", "emboss --translate", "chat"}

# Each with the exit statuses that it may lead to. Whatever strikes may strike too late: 0 is among them where
# nothing stands against it, and always judged by what the device then holds.
TROUBLES = {
    "nothing": {0},
    "link lost": {0, 5},
    "link lost silently": {0, 5},
    "lost confirmation": {0, 5},
    "failed write": {0, 5},
    "radio off at a write": {0, 5},
    "daemon restarted at a write": {0, 5},
    "daemon stopped": {0, 3, 4, 5},
    "daemon restarted": {0, 3, 4, 5},
    "radio off": {0, 3, 4, 5},
    "device leaves": {0, 4, 5},
    "missing service": {0, 4, 5},
    "services never": {0, 4, 5},
    "connect trouble": {0, 4, 5},
    "refused notify": {0, 4, 5},
    "late answer": {0, 1, 5, 6},
    "repeated pieces": {0, 1, 5, 6},
    "split pieces": {0},
    "merged pieces": {0},
    "no trailer": {0},
}
AT_WRITE = {"link lost": "dropAtWrite", "link lost silently": "dropAtWrite", "lost confirmation": "loseConfirmation",
            "failed write": "failWrite", "radio off at a write": "radioOffAtWrite",
            "daemon restarted at a write": "daemonRestartAtWrite"}
# The device's answers are then not what it meant, and nobody can tell.
DISTORTING = {"late answer", "repeated pieces"}
# After this exit status the trouble is over and the device in reach, so that the next command must succeed.
PASSING = {"nothing": 0, "link lost": 5, "link lost silently": 5, "lost confirmation": 5, "failed write": 5}


def in_device_codes(text):
    return text.replace("\u00e9", "\u201a").encode("cp1252")


@dataclasses.dataclass
class Schedule:
    seed: int
    operation: str
    trouble: str
    text: str
    stored: bytes
    write: int
    after: int  # ms
    passes: bool
    named: bool
    again: bool
    faults: list = dataclasses.field(default_factory=list)
    radio: dict = dataclasses.field(default_factory=dict)
    daemon: dict = dataclasses.field(default_factory=dict)

    @classmethod
    def from_seed(cls, seed):
        dice = random.Random(seed)
        operation = dice.choice(OPERATIONS)
        trouble = dice.choice(list(TROUBLES))

        def size():
            return dice.randrange(dice.choice([20, 2000, 2000, 20000]))

        length = size() % (500 if operation == "chat" else 20000) if operation in SENDS_TEXT else 0
        text = "".join(dice.choice(LETTERS) for _ in range(length))
        stored = "".join(dice.choice(LETTERS[:-1]) for _ in range(size())).encode()
        writes = len(text) // BYTES_IN_WRITE + OTHER_WRITES
        schedule = cls(seed, operation, trouble, text, stored, write=1 + dice.randrange(writes),
                       after=dice.randrange(TIME_BEFORE + 10 * writes), passes=dice.random() < 0.5,
                       named=dice.random() < 0.5, again=dice.random() < 0.25)
        schedule._choose_faults(dice)
        return schedule

    def _choose_faults(self, dice):
        command = dice.choice(["PC S2 ON", "PCR", "VER1", "DIR", "PR"])
        times = {"times": dice.randint(1, 3)}
        pause = dice.randint(1, 5000)
        trouble = self.trouble
        if trouble in AT_WRITE:
            fault = {"fault": AT_WRITE[trouble], "write": self.write}
            if trouble == "link lost silently":
                fault["withError"] = False
            elif trouble == "daemon restarted at a write" or (trouble == "radio off at a write" and self.passes):
                fault["ms"] = pause
            self.faults = [fault]
        elif trouble == "daemon restarted":
            self.daemon = {"restartsAfter": self.after, "restartTakes": pause}
        elif trouble == "radio off":
            self.radio = {"offAfter": self.after} | ({"onAfter": self.after + pause} if self.passes else {})
        elif trouble == "device leaves":
            fault = {"fault": "leave", "after": self.after}
            self.faults = [fault | ({"returnAfter": 1 + pause * 4} if self.passes else {})]
        elif trouble == "missing service":
            self.faults = [{"fault": "missing", "what": dice.choice(
                ["deviceService", "dataCharacteristic", "infoCharacteristic"])}]
        elif trouble == "services never":
            self.faults = [{"fault": dice.choice(["servicesNever", "discoveryFails"])}
                           | (times if self.passes else {})]
        elif trouble == "connect trouble":
            kinds = ["connectNever", "connectFails", "dropAfterConnect", "dropDuringDiscovery"]
            self.faults = [{"fault": dice.choice(kinds)} | times]
        elif trouble == "refused notify":
            self.faults = [{"fault": dice.choice(["notifyFails", "readFails"])}]
        elif trouble == "late answer":
            late = dice.choice([dice.randrange(1900), dice.randrange(40000)])
            self.faults = [{"fault": "late", "command": command, "ms": late}]
        elif trouble == "repeated pieces":
            self.faults = [{"fault": "repeatNotifications"} | (times if self.passes else {})]
        elif trouble == "split pieces":
            self.faults = [{"fault": "splitNotifications", "size": dice.randint(1, 5)}]
        elif trouble == "merged pieces":
            self.faults = [{"fault": "mergeNotifications", "size": dice.randint(21, 512)}]
        elif trouble == "no trailer":
            self.faults = [{"fault": "noTrailer"}]

    def __str__(self):
        fault = " ".join(f"{key}={value}" for fault in [*self.faults, self.radio, self.daemon]
                         for key, value in fault.items())
        return (f"seed {self.seed}: {self.operation}, {self.trouble} ({fault or f'after {self.after} ms'}), "
                f"text of {len(self.text)}, file of {len(self.stored)}")

    @property
    def profile(self):
        device = {"serial": SERIAL, "name": "Desk", "faults": self.faults,
                  "files": [{"name": "A.TXT", "base64": base64.b64encode(self.stored).decode()}]}
        return {"radio": self.radio, "daemon": self.daemon, "devices": [device]}

    @property
    def fetched(self):
        """What a fetch of A.TXT gives."""
        translates = self.operation == "get --back-translate"
        return b"<print 1>" + self.stored + b"</print>" if translates else self.stored

    @property
    def arguments(self):
        """What corvane is told, and its standard input."""
        verb, *options = self.operation.split()
        text = self.text.encode()
        words, data = {
            "info": (["batch"], b"info\nls\n"),
            "put": (["put", "-", "--as", "NEW.TXT", *options], text),
            "get": (["get", "A.TXT", *options], b""),
            "emboss": (["emboss", "-", *options], text),
            "rm": (["rm", "A.TXT"], b""),
            "chat": (["chat"], text),
        }[verb]
        return (["--device", SERIAL] if self.named else []) + words, data


class Run:
    """One schedule on a bench of its own; afterwards status is corvane's exit status, and delay how long it took
    until it said what was wrong (None where that has no meaning)."""

    def __init__(self, schedule, programs):
        self.schedule = schedule
        self.status = None
        self.delay = None
        self._programs = programs

    def run(self):
        """Raises Failure for what must not be."""
        with Bench(self._programs, self.schedule.profile) as bench:
            self._bench = bench
            arguments, data = self.schedule.arguments
            stopper = self._stop_daemon if self.schedule.trouble == "daemon stopped" else None
            timer = threading.Timer(self.schedule.after / 1000, stopper) if stopper else None
            self._simulators = [bench.simulator]
            self._corvane = bench.start(*arguments, data=data)
            if timer:
                timer.start()
            try:
                self.status = self._corvane.wait(LONGEST_RUN)
            finally:
                if timer:
                    timer.cancel()
                    timer.join()
            self._corvane.check_sound()
            self._check_status()
            self._measure()
            self._check_link_ended()
            # A trouble at a write that was not reached is still to come.
            if self.schedule.again and self.status == PASSING.get(self.schedule.trouble):
                bench.run("--device", SERIAL, "ls")
            check(bench.simulator.stop() == 0, "the simulator failed", bench.simulator.story())
            if self.status == 0:
                self._check_success()
            else:
                self._check_failure()

    def _stop_daemon(self):
        """The whole process; another one follows after a while, or none."""
        self._bench.simulator.stop()
        if self.schedule.passes:
            self._bench.start_simulator()
            self._simulators.append(self._bench.simulator)

    def _check_status(self):
        check(self.status in TROUBLES[self.schedule.trouble],
              f"status {self.status} for {self.schedule.trouble}", self._corvane.story())
        if self.status != 0:
            check(self._corvane.errors().rstrip().endswith((".", "?")), "it failed without a sentence",
                  self._corvane.story())

    def _measure(self):
        """Compares when the trouble struck, by the simulator's log, with when the first message came."""
        if self.status != 5:
            return
        began, limit = self._trouble_began()
        if began is None:
            return
        said = [when for when, _ in self._corvane.lines["err"]]
        check(said, "nothing is said")
        if said[0] < began:
            return  # something else went wrong before
        self.delay = said[0] - began
        check(self.delay <= limit, f"it was said after {self.delay:.2f} s only", self._corvane.story())

    def _trouble_began(self):
        log = self._bench.simulator.lines["err"]
        writes = [when for when, line in log if b".WriteValue" in line]
        if self.schedule.trouble == "lost confirmation":
            return writes[-1] if writes else None, STALL_KNOWN
        if self.schedule.trouble == "failed write":
            return writes[self.schedule.write - 1] if len(writes) >= self.schedule.write else None, LOSS_KNOWN
        for when, line in log:
            # A link that is lost before its first write may be made again; one that we end is not lost.
            if line.rstrip().endswith(b"Device1.Disconnect") and writes and when > writes[0]:
                break
            lost = line.rstrip().endswith(b"tells Connected false") or b"The daemon goes away" in line
            if lost and writes and when > writes[0]:
                return when, LOSS_KNOWN
        return None, None

    def _check_link_ended(self):
        """Who goes leaves no link behind: the daemon would keep it, and the device be lost to others."""
        simulator = self._bench.simulator
        changes = [index for index, (_, line) in enumerate(simulator.lines["err"])
                   if b" tells Connected " in line]
        # The last call may still be on its way.
        if simulator.ended is None and changes:
            simulator.wait_for_line((b" tells Connected false", b"The daemon goes away"), "err", changes[-1],
                                    LINK_LEFT)

    def _check_success(self):
        """Done means that the device, or the output, really holds it."""
        schedule = self.schedule
        output = self._corvane.output()
        sent = in_device_codes(schedule.text)
        translated = b"<braille 1>" + sent + b"</braille>"
        state = self._bench.state()
        files = state.files if state else {b"A.TXT": schedule.stored}
        page = state.page if state else b""
        warned = "Warning" in self._corvane.errors()
        distorted = schedule.trouble in DISTORTING
        lines = schedule.text.encode()
        lines += b"" if not lines or lines.endswith(b"\n") else b"\n"
        right = {
            "info and ls": lambda: distorted or (
                f"Serial number: {SERIAL}\n".encode() in output and b"Language: English\n" in output
                and output.endswith(f"Files: 1\n{len(schedule.stored)}\tA.TXT\n".encode())),
            "put": lambda: files.get(b"NEW.TXT") == sent,
            "put --translate": lambda: files.get(b"NEW.TXT") == translated,
            "get": lambda: warned or output == schedule.fetched,
            # Nobody knows how long a translation is to be: pieces that come twice are not noticed.
            "get --back-translate": lambda: (warned or schedule.trouble == "repeated pieces"
                                             or output == schedule.fetched),
            "emboss": lambda: page == sent,
            "emboss --translate": lambda: page == (translated if sent else b""),
            "rm": lambda: b"A.TXT" not in files,
            "chat": lambda: distorted or output == lines,
        }[schedule.operation]()
        check(right, "success is told, and it is not so", self._corvane.story(), output[:200], page[:200],
              {name: data[:200] for name, data in files.items()})
        if schedule.operation != "rm":
            check(files.get(b"A.TXT") == schedule.stored, "another file is not what it was")

    def _check_failure(self):
        """What it means for the files is said, and no half text handed over."""
        verb = self.schedule.operation.split()[0]
        state = self._bench.state()
        if verb == "get":
            # The modes that a fetch has changed are restored after the text was handed over.
            check(self._corvane.output() in (b"", self.schedule.fetched), "part of a text is handed over")
        if verb == "put" and state and b"NEW.TXT" in state.files:
            check("may be incomplete: put the whole" in self._corvane.errors(),
                  "nothing is said of the file that was begun", self._corvane.story())


class Ledger:
    """Runs schedules side by side, counts outcomes, and keeps what must not be."""

    def __init__(self, programs, tell=print):
        self.failures = []
        self.outcomes = collections.defaultdict(collections.Counter)
        self.delays = collections.defaultdict(list)
        self._programs = programs
        self._tell = tell
        self._lock = threading.Lock()
        self._stopped = False

    def run(self, seeds, jobs):
        with concurrent.futures.ThreadPoolExecutor(jobs) as pool:
            try:
                for future in [pool.submit(self._run_one, seed) for seed in seeds]:
                    future.result()
            except BaseException:
                self._stopped = True
                raise

    def _run_one(self, seed):
        if self._stopped:
            return
        schedule = Schedule.from_seed(seed)
        run = Run(schedule, self._programs)
        try:
            run.run()
            outcome = f"status {run.status}"
        except (Failure, OSError) as failure:
            outcome = "FAILED"
            with self._lock:
                self.failures.append(seed)
                self._tell(f"FAILED {schedule}\n    {failure}", flush=True)
        with self._lock:
            self.outcomes[schedule.trouble][outcome] += 1
            if run.delay is not None:
                self.delays[schedule.trouble].append(run.delay)

    def print(self):
        for trouble in TROUBLES:
            counts = ", ".join(f"{outcome}: {count}" for outcome, count in sorted(self.outcomes[trouble].items()))
            delays = self.delays[trouble]
            known = f"; said after {max(delays):.2f} s at most" if delays else ""
            if counts:
                self._tell(f"    {trouble:<28} {counts}{known}", flush=True)
