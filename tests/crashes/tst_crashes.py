#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""tst_crashes.py PROGRAM: 200 times kill -9 of a busy store at a random moment; PROGRAM is busy_store."""
import os
import sys

sys.dont_write_bytecode = True

from crashes import Expectation, Failure, Ledger  # noqa: E402

ROUNDS = 200
OLD = {"ActiveUsers/U": "A|B|C", "ActiveUsers/U/F": "Maths", "ActiveUsers/U/Text 1 1.tamber": "1.1"}
TEXT = "ActiveUsers/U/Text 1 1.tamber"


def is_found(found, *journal):
    try:
        Expectation(OLD).apply(journal, found)
    except Failure:
        return False
    return True


def check_the_judge():
    """One that lets everything pass would prove nothing."""
    save = {"number": 2, "what": "write", "at": TEXT, "value": "1.2"}
    move = {"number": 3, "what": "move", "at": TEXT, "to": "ActiveUsers/U/F/Text 1 3.tamber"}
    remove = {"number": 4, "what": "delete", "at": "ActiveUsers/U"}
    done = [{"number": number, "done": True} for number in range(5)]
    gone = {key: value for key, value in OLD.items() if key != TEXT}
    both = OLD | {move["to"]: "1.1"}
    for right, found, journal in [
            (True, OLD, []), (False, gone, []), (False, OLD | {TEXT: "torn"}, []), (False, both, []),
            (True, OLD, [save]), (True, OLD | {TEXT: "1.2"}, [save]), (False, OLD | {TEXT: "torn"}, [save]),
            (False, gone, [save]), (False, OLD, [save, done[2]]), (True, OLD | {TEXT: "1.2"}, [save, done[2]]),
            (True, OLD, [move]), (False, both, [move]), (False, gone, [move]), (False, OLD, [move, done[3]]),
            (True, gone, [remove]), (True, {}, [remove, done[4]]), (False, gone, [remove, done[4]]),
            (False, OLD, [{"number": 2, "failed": "no space left on device"}])]:
        assert is_found(found, *journal) == right, (right, found, journal)


def main():
    check_the_judge()
    ledger = Ledger(sys.argv[1])
    # Most of the time goes by in waiting.
    ledger.run(ROUNDS, 2 * (os.cpu_count() or 1), 1)
    ledger.print()
    # Else the kills came when nothing was going on.
    busy = ledger.operations > ROUNDS and ledger.interrupted > ROUNDS / 10
    return 0 if busy and not ledger.failures else 1


if __name__ == "__main__":
    sys.exit(main())
