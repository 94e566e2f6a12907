# SPDX-License-Identifier: GPL-3.0-or-later
"""The application used by somebody who has a keyboard and nothing else.

KeyboardProgram has the tasks' words of Program (press, focus, fill), and does each with keys alone: Tab between
controls, arrows within a list or among tabs, Return and Space to act. Where Tab comes round without having reached
what is wanted, the control cannot be reached and the test fails.
"""
import sys

from audit import MANY, AuditedProgram
from driver import Missing, Program, matches, until


def chosen():
    """What a test is done with: KeyboardProgram where its last argument is "keyboard", else the tree."""
    return KeyboardProgram if sys.argv[-1] == "keyboard" else AuditedProgram


class KeyboardProgram(Program):
    def shot_of(self, name):
        """Pictures are for those who see."""

    def names(self, role):
        """Only those that can be used: Tab passes over the others."""
        return [node.get_name() for node in self.nodes(self.top())
                if node.get_role_name() == role and self.showing(node) and node.get_description() != "Not available"]

    def press(self, name, role=None):
        self.see(name, role)
        self._go_to(name, role)
        self.keys("space" if self.stop_of_focus()[0] == "check box" else "Return")

    def focus(self, name, role=None):
        self.see(name, role)
        self._go_to(name, role)

    def _is_on(self, name, role):
        place = self.stop_of_focus()
        if place is None or not matches(place[1], name) or role not in (None, place[0]):
            return False
        wanted = self.find(name, role)
        return wanted is not None and self.page_of(wanted) == place[2]

    def _go_to(self, name, role):
        """Tab until it has the focus; the rows of a list are walked when the list has it."""
        self._settled()
        row = self._row_of(name, role)
        if row is not None:
            # The controls of a row are behind it.
            self._go_to(row, "list item")
        seen = []
        for _ in range(MANY):
            if self._is_on(name, role) or self._walk(name, role):
                return
            place = self.stop_of_focus()
            if seen and place is not None and seen.count(place) > 1:
                break
            seen.append(place)
            self.moves_by("Tab")
        raise Missing(f"a way to {name!r} ({role or 'any role'}) by Tab; the stops were {seen}:\n{self.outline()}")

    def _walk(self, name, role):
        """Along the rows or tabs from the one that has the focus to the one that is wanted, and back if it is none."""
        here = (self.stop_of_focus() or ("",))[0]
        wanted = self.find(name, role)
        if here not in ("list item", "page tab") or wanted is None or wanted.get_role_name() != here:
            return False
        forward = "Down" if here == "list item" else "Right"
        if self._walk_on(forward, name, role):
            return True
        self.moves_by("Home")
        return self._walk_on(forward, name, role)

    def _walk_on(self, forward, name, role):
        for _ in range(MANY):
            if self._is_on(name, role):
                return True
            if not self.moves_by(forward):
                break
        return False

    def _row_of(self, name, role):
        parent = self.see(name, role).get_parent()
        return parent.get_name() if parent and parent.get_role_name() == "list item" else None

    def _settled(self):
        """What has just opened takes the focus by itself."""
        until(self.stop_of_focus, f"a focus:\n{self.outline()}")
