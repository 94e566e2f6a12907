#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""The built corvane over the real path: Qt Bluetooth, a private bus, the simulated daemon.

    tst_realpath.py PROGRAMS              what works when nothing goes wrong, and what is said when Bluetooth is
                                          not there
    tst_realpath.py PROGRAMS --schedules  40 seeded schedules of troubles, eight side by side

PROGRAMS is the folder of corvane and corvane-simulator. The protocol's silences are real, so cases run side by side.
"""
import concurrent.futures
import json
import pathlib
import re
import signal
import sys
import time

sys.dont_write_bytecode = True

from realpath import Bench, Failure, SERIAL, check  # noqa: E402
from schedules import LOSS_KNOWN, Ledger  # noqa: E402

PROGRAMS = pathlib.Path(sys.argv[1])
SCHEDULES = 40
JOBS = 8
# Starting the program, under a sanitizer and beside others.
AT_ONCE = 10
CASES = []
ONE_DEVICE = {"devices": [{"serial": SERIAL, "name": "Desk"}]}
NAMED = ["--device", SERIAL]


def case(function):
    CASES.append(function)
    return function


def long_text():
    """20 kB, with letters that take one byte on the device and two here."""
    lines = [f"{number}: No\u00ebl, un \u00e9t\u00e9 \u00e0 la mer, o\u00f9 l'on va.\r\n" for number in range(450)]
    text = "".join(lines).encode()
    check(20000 < len(text) < 23000, len(text))
    return text


@case
def scan_of_several_devices():
    gone = {"fault": "leave", "after": 0}
    profile = {"devices": [
        {"serial": "10000001", "name": "Desk"},
        {"serial": "10000002", "name": "Window", "remembered": True},
        {"serial": "10000003", "name": "Attic", "linkCode": 34, "info": "genericAccess"},
        # The daemon remembers it, and it is not there.
        {"serial": "10000004", "name": "Away", "remembered": True, "faults": [gone]},
    ]}
    with Bench(PROGRAMS, profile) as bench:
        output, _ = bench.run("scan", "--timeout", "6")
        # The daemon keeps generic access to itself, so the third one cannot tell who it is.
        check(sorted(output.splitlines()) == [b"-\t-", b"10000001\tDesk", b"10000002\tWindow"], output)
        output, _ = bench.run("scan", "--json", "--device", "Window")
        check({"serial": "10000002", "name": "Window"} in json.loads(output), output)
        _, messages = bench.run("ls", status=4)
        check("--device" in messages, messages)
        _, messages = bench.run("--timeout", "2", "--device", "10000004", "ls", status=4)
        check("10000004" in messages, messages)


@case
def info_and_files():
    with Bench(PROGRAMS, {"devices": [{"serial": SERIAL, "name": "Desk", "model": 3, "firmware": "3.2A007",
                                       "files": [{"name": "A.TXT", "text": "abc"}]}]}) as bench:
        output, _ = bench.run(*NAMED, "--json", "batch", data=b"info\nls\n")
        info, files = (json.loads(line) for line in output.splitlines())
        told = [info[key] for key in ("serial", "firmware", "modelCode", "files")]
        check(told == [SERIAL, "3.2A007", 3, 1], info)
        check(files == [{"name": "A.TXT", "size": 3}], files)
        _, messages = bench.run(*NAMED, "get", "B.TXT", status=6)
        check("B.TXT" in messages, messages)


@case
def put_and_get():
    text = long_text()
    with Bench(PROGRAMS, ONE_DEVICE) as bench:
        bench.run(*NAMED, "put", "-", "--as", "LONG.TXT", data=text)
        output, messages = bench.run(*NAMED, "get", "LONG.TXT")
        check(output == text and not messages, "the text that comes back is another one", messages)
        bench.simulator.stop()
        stored = bench.state().files[b"LONG.TXT"]
        check(len(stored) == len(text.decode()), "one byte a letter", len(stored))


@case
def emboss_and_remove():
    with Bench(PROGRAMS, {"devices": [{"serial": SERIAL, "files": [{"name": "A.TXT", "text": "abc"},
                                                                   {"name": "B.TXT", "text": "x"}]}]}) as bench:
        bench.run(*NAMED, "emboss", "-", data=b"On paper.\n")
        bench.run(*NAMED, "rm", "A.TXT")
        bench.simulator.stop()
        state = bench.state()
        check(state.page == b"On paper.\n" and state.files == {b"B.TXT": b"x"}, state.page, state.files)


@case
def chat_ends_in_order():
    with Bench(PROGRAMS, ONE_DEVICE) as bench:
        chat = bench.start(*NAMED, "chat", data=None)
        chat.send(b"one\n")
        chat.wait_for_line(b"one")
        chat.send("caf\u00e9\n".encode())
        chat.wait_for_line("caf\u00e9".encode())
        chat.end_input()
        check(chat.wait() == 0 and chat.output() == "one\ncaf\u00e9\n".encode(), chat.story())
        bench.simulator.wait_for_line(b"Device1.Disconnect", "err")
        check(not chat.errors(), chat.errors())


@case
def chat_in_chinese():
    """Characters go out as pinyin with tone symbols, which the person at the device reads and writes."""
    profile = {"serial": SERIAL, "name": "Desk", "language": 15, "languageSet": "E", "languageSwitch": 7,
               "chat": [{"say": ["ni^ hao^!"]}, {"when": "zhong$ wen%.", "say": ["dong&, wo^ dong^."], "after": 0}]}
    with Bench(PROGRAMS, {"devices": [profile]}) as bench:
        chat = bench.start(*NAMED, "chat", data=None)
        chat.wait_for_line("n\u01d0 h\u01ceo!".encode())
        chat.send("\u4e2d\u6587\u3002\n".encode())
        chat.wait_for_line("d\u00f2ng, w\u01d2 d\u01d2ng.".encode())
        chat.end_input()
        check(chat.wait() == 0 and not chat.errors(), chat.story())


@case
def signal_ends_the_link():
    with Bench(PROGRAMS, ONE_DEVICE) as bench:
        chat = bench.start(*NAMED, "chat", data=None)
        chat.send(b"one\n")
        chat.wait_for_line(b"one")
        chat.signal(signal.SIGINT)
        check(chat.wait() == 130, chat.story())
        bench.simulator.wait_for_line(b"tells Connected false", "err", len(bench.simulator.lines["err"]) - 3)


# Each with the number of packets that it sends and receives.
TRANSFERS = {"get A.TXT --back-translate": 130, "put - --as NEW.TXT --translate": 126, "put - --as NEW.TXT": 125,
             "emboss - --translate": 123}
SIDE_BY_SIDE = 40
TEXT = b"".join(b"%03d: line of a text." % number for number in range(120))
# A packet holds a state record, and is under way long enough for a signal to meet it.
SLOW_DEVICE = {"devices": [{"serial": SERIAL, "maximalNotification": 100,
                            "delays": {"write": 20, "notification": 20},
                            "files": [{"name": "A.TXT", "text": (TEXT * 5).decode()}]}]}


def modes_told(bench):
    info = json.loads(bench.run(*NAMED, "--json", "info")[0])
    del info["files"]
    return info


def interrupt(transfer, moment):
    """Ends a transfer by SIGTERM after so many packets; what is told of the device afterwards."""
    verb, *_ = words = transfer.split()
    with Bench(PROGRAMS, SLOW_DEVICE) as bench:
        monitor = bench.start_monitor()
        first = b"{{ADV}}" if verb == "emboss" else b"{{EM OFF}}"
        corvane = bench.start(*NAMED, *words, data=TEXT)
        begin = monitor.lines["out"].index(monitor.wait_for_line(first))
        monitor.wait_for_line(b"array of bytes", start=begin, count=moment + 1)
        corvane.signal(signal.SIGTERM)
        # On a busy machine it may be done before it hears of the signal.
        check(corvane.wait() in (143, 0), transfer, moment, corvane.story())
        info = modes_told(bench)
        bench.simulator.stop()
        bench.bus.stop()
        check(monitor.wait() == 0, monitor.story())
        packets = monitor.output()
        records = re.findall(rb'array of bytes "((?:\d+, ){29}\d+)"', packets)
        check(len(records) == 2 and records[0] == records[1], transfer, moment, "other modes", records)
        sent = b"".join(re.findall(rb'^   array of bytes "(.*)"$', packets, re.MULTILINE))
        opened, closed = (len(re.findall(word, sent)) for word in (rb"{{(BEGIN|FM) NEW", rb"{{(FM )?END}}"))
        check(opened == closed, transfer, moment, "a file is left open", sent)
        check_what_is_left(bench.state(), transfer, corvane)
        return info


def check_what_is_left(state, transfer, corvane):
    """Nothing but a part of the text, which is said to be one."""
    whole = b"<print 1>" + TEXT * 5 + b"</print>"
    check(corvane.output() in (b"", whole), "part of a text is handed over")
    if state:
        told = state.files.get(b"NEW.TXT") if transfer.startswith("put") else state.page
        check(told is not None, "nothing is stored")
        left = told.removeprefix(b"<braille 1>").removesuffix(b"</braille>")
        check(TEXT.startswith(left), transfer, "more than the text is there", left)
        check(left == TEXT or "incomplete" in corvane.errors(), transfer, "nothing is said", corvane.story())


@case
def signal_amid_a_transfer_leaves_the_modes():
    with Bench(PROGRAMS, SLOW_DEVICE) as bench, concurrent.futures.ThreadPoolExecutor(SIDE_BY_SIDE) as pool:
        told = [pool.submit(interrupt, transfer, moment) for transfer, packets in TRANSFERS.items()
                for moment in [*range(6), packets // 3, packets * 2 // 3, packets - 3, packets - 1]]
        before = modes_told(bench)
        check(before["embosserOn"] and not before["advancedMode"], before)
        for future in told:
            check(future.result() == before, "other modes are told", future.result(), before)


@case
def no_bluetooth():
    """Each at once, with what to do."""
    def refused(words, **how):
        with Bench(PROGRAMS, **how) as bench:
            began = time.monotonic()
            output, messages = bench.run("ls", status=3)
            check(words in messages and messages.count("\n") == 1 and not output, messages)
            check(time.monotonic() - began < AT_ONCE, "it takes long to say", words)

    refused("systemctl start dbus", bus=False)
    refused("systemctl start bluetooth", simulator=False)
    refused("no Bluetooth adapter", profile={"radio": {"state": "unsupported"}, "devices": []})
    refused("bluetoothctl power on", profile={"radio": {"state": "off"}, "devices": []})
    refused("no permission", profile={"radio": {"state": "unauthorized"}, "devices": []})


@case
def no_device():
    with Bench(PROGRAMS, {"devices": []}) as bench:
        bench.run("--timeout", "1", "ls", status=4)


@case
def bus_that_ends():
    with Bench(PROGRAMS, ONE_DEVICE) as bench:
        upload = bench.start(*NAMED, "put", "-", "--as", "N.TXT", data=b"x" * 200000)
        # Some way into the text.
        bench.simulator.wait_for_line(b".WriteValue", "err")
        position = len(bench.simulator.lines["err"])
        for _ in range(60):
            bench.simulator.wait_for_line(b".WriteValue", "err", position)
            position += 1
        bench.bus.stop()
        ended = time.monotonic()
        check(upload.wait() == 5 and "put the whole" in upload.errors(), upload.story())
        check(upload.lines["err"][0][0] - ended <= LOSS_KNOWN, "it was said too late")
        check(bench.simulator.wait() == 1, bench.simulator.story())


@case
def chat_comes_back():
    absence = {"fault": "leave", "after": 20000, "returnAfter": 500}
    with Bench(PROGRAMS, {"devices": [{"serial": SERIAL, "faults": [absence]}]}) as bench:
        chat = bench.start(*NAMED, "chat", data=None)
        chat.send(b"before\n")
        chat.wait_for_line(b"before")
        chat.wait_for_line(b"trying again in 1 second", "err")
        chat.send(b"meanwhile\n")
        chat.wait_for_line(b"Connected again", "err")
        chat.wait_for_line(b"meanwhile")
        chat.end_input()
        check(chat.wait() == 0, chat.story())


def attempt(function):
    try:
        function()
        return None
    except (Failure, OSError, KeyError) as error:
        return f"{type(error).__name__}: {error}"


def main():
    # The program leaves an ignored signal ignored, which is what a background job begins with.
    signal.signal(signal.SIGINT, signal.SIG_DFL)
    # CTest ends a test that takes too long with this one; what was started ends then, too.
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(143))
    if "--schedules" in sys.argv:
        ledger = Ledger(PROGRAMS)
        ledger.run(range(1, SCHEDULES + 1), JOBS)
        ledger.print()
        return 1 if ledger.failures else 0
    failures = 0
    with concurrent.futures.ThreadPoolExecutor(JOBS) as pool:
        for function, error in zip(CASES, pool.map(attempt, CASES)):
            print("ok  " if error is None else "FAIL", function.__name__, error or "", flush=True)
            failures += error is not None
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
