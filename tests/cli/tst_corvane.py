#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Black-box tests of the built corvane on simulated devices.

Usage: tst_corvane.py PROGRAM. The protocol's silences are real here, so all cases run side by side, each with
a state folder of its own; what needs no process is tested in tst_verbs.
"""

import concurrent.futures
import json
import os
import pathlib
import pty
import signal
import subprocess
import sys
import tempfile
import time

PROGRAM = os.path.abspath(sys.argv[1])
CASES = []


def case(function):
    CASES.append(function)
    return function


class World:
    """A private folder, and the program run in it."""

    def __init__(self, folder):
        self.folder = pathlib.Path(folder)
        # Whatever this machine has of Bluetooth is out of reach.
        self.environment = dict(os.environ, XDG_STATE_HOME=str(self.folder / "state"), LC_ALL="C.UTF-8",
                                DBUS_SYSTEM_BUS_ADDRESS=f"unix:path={self.folder}/no-bus")

    def profile(self, **keys):
        path = self.folder / "profile.json"
        path.write_text(json.dumps(keys))
        return f"--simulate={path}"

    def write(self, name, data):
        (self.folder / name).write_bytes(data)

    def start(self, *arguments, **more):
        more = {"stdin": subprocess.DEVNULL, "stdout": subprocess.PIPE, "stderr": subprocess.PIPE} | more
        return subprocess.Popen([PROGRAM, *arguments], cwd=self.folder, env=self.environment, **more)

    def run(self, *arguments, status=0, data=b""):
        process = self.start(*arguments, stdin=subprocess.PIPE)
        out, err = process.communicate(data, timeout=90)
        check(process.returncode == status, arguments, process.returncode, out, err)
        check((status == 0) or err, arguments, "a failure without a message")
        check(b"\x1b" not in err and b"\r" not in err, arguments, err)
        return out, err.decode()


def check(condition, *details):
    if not condition:
        raise AssertionError(" | ".join(str(detail) for detail in details))


@case
def help_and_usage(world):
    out, err = world.run("--help")
    check(b"Exit status" in out and not err, out, err)
    out, _ = world.run("put", "--help")
    check(b"--as NAME" in out, out)
    out, _ = world.run("--version")
    check(out.startswith(b"corvane "), out)
    for words in ([], ["frob"], ["ls", "--frob"], ["get"], ["--timeout", "x", "ls"], ["rm", "a b"], ["rm", "{X}"]):
        out, err = world.run(*words, status=2)
        check(not out and err.count("\n") == 1, words, err)
    _, err = world.run("ls", status=3)
    check("systemctl start dbus" in err and err.count("\n") == 1, err)


@case
def codec_without_device(world):
    out, err = world.run("encode", "--language", "2", data="é 中".encode())
    check(out == b"\x82 ?" and "1" in err, out, err)
    out, _ = world.run("decode", "--language", "2", data=b"\x82")
    check(out == "é".encode(), out)
    _, err = world.run("encode", "--language", "2", status=1, data=b"ab\xff")
    check("offset 2" in err, err)
    process = world.start("encode", "--language", "2", stdin=None, stdout=None, stderr=subprocess.PIPE,
                          preexec_fn=lambda: (os.close(0), os.close(1)))
    process.communicate(timeout=20)
    check(process.returncode == 0, "closed streams and nothing to write", process.returncode)
    with open("/dev/full", "wb") as full:
        process = world.start("encode", "--language", "2", stdin=subprocess.PIPE, stdout=full)
        _, err = process.communicate(b"text", timeout=20)
    check(process.returncode == 1 and b"Standard output" in err, process.returncode, err)


@case
def pinyin_without_device(world):
    out, _ = world.run("pinyin", data="中文。\n".encode())
    check(out == b"zhong$ wen%.\n", out)
    out, _ = world.run("pinyin", "--to-marks", data=out)
    check(out == "zhōng wén.\n".encode(), out)
    _, err = world.run("pinyin", status=1, data=b"a\xff")
    check("offset 1" in err, err)


@case
def chinese_chat(world):
    simulate = world.profile(language=15, languageSet="E", languageSwitch=7)
    out, _ = world.run(simulate, "chat", data="中文。\n".encode())
    check(out == "zhōng wén.\n".encode(), out)


@case
def bad_profiles(world):
    for name, data in (("empty", b""), ("garbage", b"\x00\xff{"), ("wrong", b'{"model": "x"}')):
        world.write(name, data)
        _, err = world.run(f"--simulate={name}", "ls", status=2)
        check(name in err, err)
    world.run("--simulate=none.json", "ls", status=2)


@case
def no_radio_no_device(world):
    world.run(world.profile(radio={"state": "off"}), "scan", status=3)
    world.run(world.profile(devices=[]), "--timeout", "1", "scan", status=4)
    two = world.profile(devices=[{"serial": "10000001"}, {"serial": "10000002", "name": "Desk"}])
    _, err = world.run(two, "ls", status=4)
    check("--device" in err, err)
    out, _ = world.run(two, "scan", "--device", "Desk", "--json")
    check({"serial": "10000002", "name": "Desk"} in json.loads(out), out)


@case
def files_last_from_run_to_run(world):
    text = "".join(f"Line {number}, quite long, with é.\n" for number in range(300)).encode()
    world.write("story.txt", text)
    world.run("--simulate", "put", "story.txt")
    out, _ = world.run("--simulate", "get", "story.txt")
    check(out == text, "fetched text differs")
    world.write("kept", b"mine")
    world.run("--simulate", "get", "story.txt", "-o", "kept", status=1)
    check((world.folder / "kept").read_bytes() == b"mine", "an existing file was overwritten")


@case
def batch_of_everything(world):
    world.write("t.txt", b"Hello\n")
    lines = ("put t.txt", "info", "ls", "get t.txt -o copy.txt", "emboss t.txt --translate", "grade 2",
             "rm t.txt", "ls", "get t.txt", "rm LETTER.TXT")
    out, err = world.run("--simulate", "--json", "batch", status=6, data="\n".join(lines).encode())
    info, before, after = [json.loads(line) for line in out.splitlines()]
    check({"model", "serial", "languageName", "forwardGrade", "files"} <= info.keys(), info)
    check({"name": "t.txt", "size": 6} in before and len(after) == len(before) - 1, before, after)
    check((world.folder / "copy.txt").read_bytes() == b"Hello\n", "copy differs")
    check("line 9" in err, err)


@case
def names_with_escapes(world):
    simulate = world.profile(name="Desk\u001b[2J", files=[{"name": "A\u001b]0;x\u0007", "text": "x"}])
    out, _ = world.run(simulate, "--timeout", "2", "scan")
    check(b"\x1b" not in out and b"\\x1b" in out, out)
    out, _ = world.run(simulate, "ls", "-v")
    check(b"\x1b" not in out and b"\x07" not in out, out)


@case
def chat_and_board(world):
    out, _ = world.run("--simulate", "chat", data=b"one\ntwo")
    check(out == b"one\ntwo\n", out)
    out, _ = world.run("--simulate", "board", data=b"three\n")
    check(out == b"three\n", out)


@case
def link_lost_while_storing(world):
    simulate = world.profile(faults=[{"fault": "dropAtWrite", "write": 30}])
    _, err = world.run(simulate, "put", "-", "--as", "N", status=5, data=b"x" * 4000)
    check("incomplete" in err, err)


@case
def silent_device(world):
    began = time.monotonic()
    _, err = world.run(world.profile(linkCode=46), "info", status=5)
    check(time.monotonic() - began < 45, "took too long")
    check("does not say what it is" in err, err)


@case
def signals(world):
    processes = []
    for number, (sent, status) in enumerate(((signal.SIGINT, 130), (signal.SIGTERM, 143))):
        world.environment["XDG_STATE_HOME"] = str(world.folder / f"state{number}")
        process = world.start("--simulate", "chat", stdin=subprocess.PIPE)
        process.stdin.write(b"hello\n")
        process.stdin.flush()
        processes.append((process, sent, status))
    for process, sent, status in processes:
        check(process.stdout.readline() == b"hello\n", "no echo")  # connected and in chat mode
        process.send_signal(sent)
    for process, _, status in processes:
        check(process.wait(20) == status, status, process.returncode, process.stderr.read())
        process.communicate()
    process = world.start("--simulate", "--timeout", "60", "--device", "none", "ls")
    time.sleep(1)
    process.send_signal(signal.SIGINT)
    check(process.wait(20) == 130, process.returncode)
    process.communicate()


@case
def progress_on_a_terminal_only(world):
    leader, follower = pty.openpty()
    process = world.start("--simulate", "put", "-", "--as", "N", stdin=subprocess.PIPE, stderr=follower)
    out, _ = process.communicate(b"x" * 3000, timeout=60)
    os.close(follower)
    shown = b""
    while True:
        try:
            piece = os.read(leader, 4096)
        except OSError:
            break
        if not piece:
            break
        shown += piece
    os.close(leader)
    check(process.returncode == 0 and not out, process.returncode, out)
    check(b"100 % [" in shown and b"Connecting to" in shown, shown)


def main():
    def attempt(function):
        with tempfile.TemporaryDirectory(prefix="corvane-test-") as folder:
            function(World(folder))

    # The program leaves an ignored signal ignored, which is what a background job begins with.
    signal.signal(signal.SIGINT, signal.SIG_DFL)
    failures = 0
    with concurrent.futures.ThreadPoolExecutor(len(CASES)) as pool:
        running = [(function, pool.submit(attempt, function)) for function in CASES]
        for function, future in running:
            error = future.exception()
            print("ok  " if error is None else "FAIL", function.__name__, error or "", flush=True)
            failures += error is not None
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
