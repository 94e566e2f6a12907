# SPDX-License-Identifier: GPL-3.0-or-later
"""A node of Syncthing that keeps one folder in sync with another node on this machine.

Call keep_to_loopback() first: from then on the process and all that it starts have no network but the loopback.
"""

import http.client
import json
import os
import pathlib
import shutil
import signal
import subprocess
import sys
import time
import xml.etree.ElementTree as xml

PROGRAM = "syncthing"
FOLDER = "soak"
LONGEST_START = 60
INSIDE = "CVTAMBER_IN_NAMESPACE"


class NoNetwork(Exception):
    """There can be no network of one's own here."""


def keep_to_loopback():
    """Starts this program anew in a network namespace of its own; returns there."""
    if os.environ.get(INSIDE):
        if subprocess.run(["ip", "link", "set", "lo", "up"]).returncode:
            raise NoNetwork("The loopback cannot be brought up.")
        return
    for tool in ("unshare", "ip", PROGRAM):
        if not shutil.which(tool):
            raise NoNetwork(f"There is no {tool}: tools/install-packages soak installs it.")
    flags = "-n" if os.geteuid() == 0 else "-rn"
    if subprocess.run(["unshare", flags, "true"]).returncode:
        raise NoNetwork("This system allows no network namespace.")
    os.environ[INSIDE] = "1"
    sys.stdout.flush()
    os.execvp("unshare", ["unshare", flags, sys.executable, *sys.argv])


class Node:
    """One node; it runs between start() and stop()."""

    def __init__(self, home, folder, number):
        self.home, self.folder = pathlib.Path(home), pathlib.Path(folder)
        self._port = 22000 + number
        self._rest_port = 8384 + number
        self._process = None
        self._environment = os.environ | {"HOME": str(self.home), "STNOUPGRADE": "1"}
        subprocess.run([PROGRAM, "generate", f"--home={self.home}", "--no-default-folder"], check=True,
                       env=self._environment, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.identity = subprocess.run([PROGRAM, f"--home={self.home}", "--device-id"], check=True, text=True,
                                       env=self._environment, stdout=subprocess.PIPE).stdout.strip()
        self._key = xml.parse(self.home / "config.xml").findtext("gui/apikey")

    def configure(self, other):
        """Before the first start: the folder is shared with the other node, and nobody else is looked for."""
        config = xml.parse(self.home / "config.xml")
        root = config.getroot()
        root.find("gui/address").text = f"127.0.0.1:{self._rest_port}"
        options = root.find("options")
        for name, value in {
                "listenAddress": f"tcp://127.0.0.1:{self._port}", "globalAnnounceEnabled": "false",
                "localAnnounceEnabled": "false", "relaysEnabled": "false", "natEnabled": "false",
                "crashReportingEnabled": "false", "startBrowser": "false", "urAccepted": "-1",
                "autoUpgradeIntervalH": "0", "reconnectionIntervalS": "1"}.items():
            options.find(name).text = value
        device = xml.SubElement(root, "device", {"id": other.identity, "name": "other"})
        xml.SubElement(device, "address").text = f"tcp://127.0.0.1:{other._port}"
        folder = xml.SubElement(root, "folder", {
            "id": FOLDER, "path": str(self.folder), "type": "sendreceive", "rescanIntervalS": "3600",
            "fsWatcherEnabled": "true", "fsWatcherDelayS": "1"})
        for node in (self, other):
            xml.SubElement(folder, "device", {"id": node.identity})
        # By itself it tries again after a minute, and throws the eleventh conflict copy of a file away.
        xml.SubElement(folder, "pullerPauseS").text = "1"
        xml.SubElement(folder, "maxConflicts").text = "-1"
        config.write(self.home / "config.xml")
        (self.folder / ".stfolder").mkdir(parents=True, exist_ok=True)

    @property
    def is_running(self):
        return self._process is not None

    def start(self):
        with open(self.home / "log", "ab") as log:
            self._process = subprocess.Popen(
                [PROGRAM, "serve", f"--home={self.home}", "--no-browser", "--no-restart"], env=self._environment,
                stdin=subprocess.DEVNULL, stdout=log, stderr=log, start_new_session=True)

    def wait_until_up(self):
        limit = time.monotonic() + LONGEST_START
        while self.ask("GET", "system/ping") is None:
            if time.monotonic() > limit or self._process.poll() is not None:
                raise OSError(f"the node in {self.home} does not start")
            time.sleep(0.1)

    def stop(self):
        """The first process watches and the second works: both are meant."""
        if not self._process:
            return
        os.killpg(self._process.pid, signal.SIGTERM)
        try:
            self._process.wait(30)
        except subprocess.TimeoutExpired:
            os.killpg(self._process.pid, signal.SIGKILL)
            self._process.wait()
        self._process = None

    def ask(self, method, path):
        """The node's answer, None when there is none."""
        connection = http.client.HTTPConnection("127.0.0.1", self._rest_port, timeout=30)
        try:
            connection.request(method, f"/rest/{path}", headers={"X-API-Key": self._key})
            response = connection.getresponse()
            body = response.read()
            return (json.loads(body) if body else {}) if response.status == 200 else None
        except (OSError, http.client.HTTPException, ValueError):
            return None
        finally:
            connection.close()

    def look_through(self):
        self.ask("POST", f"db/scan?folder={FOLDER}")

    def is_in_sync(self, other):
        """It has all that the other has, and the other all that it has."""
        here = self.ask("GET", f"db/status?folder={FOLDER}") or {}
        there = self.ask("GET", f"db/completion?folder={FOLDER}&device={other.identity}") or {}
        return (here.get("state") == "idle" and here.get("needTotalItems") == 0
                and there.get("needItems") == 0 and there.get("needDeletes") == 0)
