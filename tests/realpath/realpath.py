# SPDX-License-Identifier: GPL-3.0-or-later
"""Runs the built corvane over the real path: Qt Bluetooth, a private D-Bus, corvane-simulator as the daemon.

Each Bench has a folder, a bus and a simulator of its own, so any number run side by side. Every line that a
program prints is kept with the time it came, on one clock. Nothing here sleeps: what waits, waits for a line or
an exit, with a deadline.
"""

import base64
import json
import os
import pathlib
import signal
import shutil
import subprocess
import tempfile
import threading
import time

# Far more than anything takes, also under a sanitizer on a busy machine.
PATIENCE = 30
# Exit status with which the sanitizers end a program; no program here has it.
SANITIZER_STATUS = 99
SERIAL = "10000001"

BUS_CONFIGURATION = """<busconfig><listen>unix:path={path}</listen><auth>EXTERNAL</auth>
<policy context="default"><allow user="*"/><allow own="*"/><allow send_destination="*"/>
<allow receive_sender="*"/></policy></busconfig>
"""


class Failure(Exception):
    """What must not be, in words."""


def check(condition, *details):
    if not condition:
        raise Failure(" | ".join(str(detail) for detail in details))


class Program:
    """A process whose lines are read as they come."""

    def __init__(self, arguments, environment, data=None, folder=None):
        """data: bytes for its standard input; None leaves that open for send()."""
        self.name = os.path.basename(str(arguments[0]))
        self.lines = {"out": [], "err": []}  # of (time, bytes)
        self.ended = None
        self._changed = threading.Condition()
        self._process = subprocess.Popen(
            [str(argument) for argument in arguments], env=environment, cwd=folder,
            stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.PIPE, start_new_session=True)
        self._threads = [threading.Thread(target=self._read, args=(stream, key), daemon=True)
                         for stream, key in ((self._process.stdout, "out"), (self._process.stderr, "err"))]
        for thread in self._threads:
            thread.start()
        self._waiter = threading.Thread(target=self._wait_for_end, daemon=True)
        self._waiter.start()
        if data is not None:
            # A pipe takes less than a long text, and the program may read late.
            threading.Thread(target=self._feed, args=(data,), daemon=True).start()

    def _feed(self, data):
        self.send(data)
        self.end_input()

    def _read(self, stream, key):
        for line in stream:
            entry = (time.monotonic(), line)
            with self._changed:
                self.lines[key].append(entry)
                self._changed.notify_all()

    def _wait_for_end(self):
        self._process.wait()
        ended = time.monotonic()
        for thread in self._threads:
            thread.join()
        with self._changed:
            self.ended = ended
            self._changed.notify_all()

    def send(self, data):
        try:
            self._process.stdin.write(data)
            self._process.stdin.flush()
        except OSError:
            pass  # it has ended, which its exit status tells

    def end_input(self):
        try:
            self._process.stdin.close()
        except OSError:
            pass

    def signal(self, number):
        self._process.send_signal(number)

    def _wait_until(self, condition, limit, what):
        with self._changed:
            if not self._changed.wait_for(condition, limit):
                raise Failure(f"{self.name}: {what} within {limit} s; {self.story()}")

    def wait_for_line(self, text, key="out", start=0, limit=PATIENCE, count=1):
        """The (time, line) of the first line, or of that with this count, from number start on that holds the
        text, or one of a tuple's."""
        texts = text if isinstance(text, tuple) else (text,)
        found = []

        def holds():
            found[:] = [entry for entry in self.lines[key][start:] if any(one in entry[1] for one in texts)]
            return len(found) >= count or self.ended is not None

        self._wait_until(holds, limit, f"no line {text!r}")
        check(len(found) >= count, f"{self.name} ended before the line {text!r}", self.story())
        return found[count - 1]

    def wait(self, limit=PATIENCE):
        """The exit status; a program that outlives the limit is a Failure."""
        self._wait_until(lambda: self.ended is not None, limit, "has not ended")
        return self._process.returncode

    def stop(self):
        """Ends it if it still runs; the exit status."""
        if self.ended is None and self._process.poll() is None:
            self._process.terminate()
        self.end_input()
        try:
            return self.wait()
        except Failure:
            self.kill()
            raise

    def kill(self):
        if self._process.poll() is None:
            self._process.kill()
        self._waiter.join()

    def processor_time(self):
        """In seconds, of all its threads so far; it must still run."""
        fields = pathlib.Path(f"/proc/{self._process.pid}/stat").read_text().rpartition(")")[2].split()
        return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")

    def output(self, key="out"):
        return b"".join(line for _, line in self.lines[key])

    def errors(self):
        """Its messages, without the log of a simulator."""
        lines = [line for _, line in self.lines["err"] if not line.startswith(b"[debug]")]
        return b"".join(lines).decode(errors="replace")

    def check_sound(self):
        """Neither a crash nor a sanitizer's report."""
        report = self.errors()
        status = self._process.returncode
        sound = status is None or (status >= 0 and status != SANITIZER_STATUS)
        check(sound and "Sanitizer" not in report and "runtime error" not in report,
              f"{self.name} crashed (status {status})", report[-4000:])

    def story(self):
        return f"status {self._process.returncode}, messages: {self.errors()[-1500:].strip()!r}"


class Bench:
    """A private bus with a simulator, and the programs that are started on it. A context manager: at its end
    everything that was started is ended, and looked at for crashes."""

    def __init__(self, programs, profile=None, options=(), bus=True, simulator=True):
        self._programs = pathlib.Path(programs).resolve()
        self._profile = profile
        self._options = list(options)
        self._with = bus, simulator
        self._started = []
        self.bus = None
        self.simulator = None
        self.folder = None

    def __enter__(self):
        # The path of a socket must be short.
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="corvane-path-", dir="/tmp"))
        self.environment = dict(
            os.environ, LC_ALL="C.UTF-8", XDG_STATE_HOME=str(self.folder / "home"),
            DBUS_SYSTEM_BUS_ADDRESS=f"unix:path={self.folder}/bus",
            # Qt would run the daemon's own program to learn its version.
            BLUETOOTH_FORCE_DBUS_LE_VERSION="5.66",
            ASAN_OPTIONS=f"exitcode={SANITIZER_STATUS}", LSAN_OPTIONS=f"exitcode={SANITIZER_STATUS}",
            UBSAN_OPTIONS=f"exitcode={SANITIZER_STATUS}:print_stacktrace=1")
        try:
            if self._with[0]:
                self.start_bus()
            if all(self._with):
                self.start_simulator()
        except BaseException:
            self._clean_up()
            raise
        return self

    def __exit__(self, kind, *_):
        try:
            if kind is None:
                for program in reversed(self._started):
                    program.stop()
                    program.check_sound()
        finally:
            self._clean_up()

    def _clean_up(self):
        for program in reversed(self._started):
            program.kill()
        shutil.rmtree(self.folder, ignore_errors=True)

    def _start(self, arguments, **more):
        program = Program(arguments, self.environment, folder=self.folder, **more)
        self._started.append(program)
        return program

    def start_bus(self):
        configuration = self.folder / "bus.conf"
        configuration.write_text(BUS_CONFIGURATION.format(path=self.folder / "bus"))
        self.bus = self._start(["dbus-daemon", "--nofork", "--nopidfile", "--print-address",
                                f"--config-file={configuration}"])
        self.bus.wait_for_line(b"unix:")

    def start_simulator(self):
        """Also one that takes the place of one that was ended: what is stored lasts."""
        options = ["--verbose", "--state", self.folder / "state", *self._options]
        if self._profile is not None:
            path = self.folder / "profile.json"
            path.write_text(json.dumps(self._profile))
            options += ["--profile", path]
        self.simulator = self._start([self._programs / "corvane-simulator", *options])
        self.simulator.wait_for_line(b"ready")

    def start_monitor(self):
        """Prints all that goes over the bus, and ends with it: the bus has to be stopped before the bench."""
        return self._start(["dbus-monitor", "--address", self.environment["DBUS_SYSTEM_BUS_ADDRESS"]])

    def start(self, *arguments, data=b""):
        return self._start([self._programs / "corvane", *arguments], data=data)

    def run(self, *arguments, data=b"", status=0, limit=3 * PATIENCE):
        """Standard output and messages of a run that ends with this status."""
        program = self.start(*arguments, data=data)
        ended = program.wait(limit)
        program.check_sound()
        check(ended == status, arguments, f"status {status} is expected", program.story())
        messages = program.errors()
        check(status == 0 or messages.rstrip().endswith((".", "?")), arguments, "no sentence", messages)
        return program.output(), messages

    def state(self, serial=SERIAL):
        """What the simulated device holds, once its simulator has ended: files by name, and the embosser's page.
        None if nothing was ever stored."""
        path = self.folder / "state" / f"device-{serial}.json"
        if not path.exists():
            return None
        return DeviceState(json.loads(path.read_text()))


class DeviceState:
    def __init__(self, stored):
        self.files = {base64.b64decode(file["name"]): base64.b64decode(file["bytes"]) for file in stored["files"]}
        self.page = base64.b64decode(stored["embosserPage"])
