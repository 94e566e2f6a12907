# SPDX-License-Identifier: GPL-3.0-or-later
"""A device that goes away and comes back under a chat, which must then go on by itself."""

import concurrent.futures
import random
import threading

from realpath import Bench, Failure, SERIAL

RETURNS_IN_A_CHAT = 5
# In ms: finding and identifying the device, then from one absence to the next.
FIRST_ABSENCE = 16000
BETWEEN_ABSENCES = 28000
LONGEST_ABSENCE = 8000
# What the protocol itself takes, in seconds: 0.1 before the first word, and 2 of silence after each of the four
# answers of the identification.
SILENCES = 0.1 + 4 * 2
# The target, in seconds above the silences.
LIMIT = 2.0
STEP_LIMIT = 60


class Returns:
    """Runs any number of returns, several chats side by side, and keeps what each took."""

    def __init__(self, programs, tell=print):
        self.delays = []
        self.loads = []  # processor time of corvane for each second away
        self.failures = 0
        self._programs = programs
        self._tell = tell
        self._lock = threading.Lock()

    @property
    def all_met(self):
        return not self.failures and all(delay <= LIMIT for delay in self.delays)

    def run(self, count, jobs):
        chats = [min(RETURNS_IN_A_CHAT, count - first) for first in range(0, count, RETURNS_IN_A_CHAT)]
        with concurrent.futures.ThreadPoolExecutor(jobs) as pool:
            list(pool.map(self._chat, range(1, len(chats) + 1), chats))

    def _chat(self, seed, count):
        dice = random.Random(seed)
        absences = [{"fault": "leave", "after": FIRST_ABSENCE + number * BETWEEN_ABSENCES,
                     "returnAfter": dice.randint(100, LONGEST_ABSENCE)} for number in range(count)]
        profile = {"devices": [{"serial": SERIAL, "faults": absences}]}
        done = 0
        try:
            with Bench(self._programs, profile) as bench:
                chat = bench.start("--device", SERIAL, "chat", data=None)
                chat.send(b"line 0\n")
                chat.wait_for_line(b"line 0", limit=STEP_LIMIT)
                position = 0
                for number in range(1, count + 1):
                    position = self._return(bench, chat, number, position)
                    done = number
                chat.end_input()
                if chat.wait(STEP_LIMIT) != 0:
                    raise Failure(chat.story())
        except (Failure, OSError) as failure:
            with self._lock:
                self.failures += max(1, count - done)
                self._tell(f"FAILED chat {seed}, return {done + 1} of {count}, {absences}\n    {failure}",
                           flush=True)

    def _return(self, bench, chat, number, start):
        """Where in the simulator's log the next one is to be looked for."""
        log = bench.simulator.lines["err"]
        said = len(chat.lines["err"])
        left, _ = bench.simulator.wait_for_line(b" goes out of range.", "err", start, STEP_LIMIT)
        load = chat.processor_time()
        back = bench.simulator.wait_for_line(b" is back.", "err", start, STEP_LIMIT)
        returned = back[0]
        load = chat.processor_time() - load
        told, _ = chat.wait_for_line(b"Connected again", "err", said, STEP_LIMIT)
        # The attempt that succeeds is made when the wait is over, which is not the link's doing.
        asked = [when for when, line in log[start:] if b"Device1.Connect" in line and line.rstrip().endswith(b"Connect")
                 and when < told]
        delay = told - max([returned, *asked]) - SILENCES
        text = f"line {number}".encode()
        chat.send(text + b"\n")
        chat.wait_for_line(text, limit=STEP_LIMIT)
        with self._lock:
            self.delays.append(delay)
            self.loads.append(load / max(returned - left, 0.001))
            self._tell(f"    return {len(self.delays)}: away for {returned - left:.2f} s, identified again after "
                       f"{delay + SILENCES:.2f} s, {delay:.2f} s above the protocol's silences", flush=True)
        return log.index(back) + 1

    def print(self):
        if not self.delays:
            self._tell("No return was measured.")
            return
        met = sum(delay <= LIMIT for delay in self.delays)
        ordered = sorted(self.delays)
        self._tell(f"{'met    ' if self.all_met else 'NOT MET'}  identified again within {LIMIT:g} s above the "
                   f"protocol's silences: {met} of {len(ordered) + self.failures} (median "
                   f"{ordered[len(ordered) // 2]:.2f} s, longest {ordered[-1]:.2f} s); processor time while away "
                   f"{100 * sum(self.loads) / len(self.loads):.2f} %", flush=True)
