# SPDX-License-Identifier: GPL-3.0-or-later
"""What a screen reader is told without the focus having moved."""
from driver import Atspi, GLib, until


class News:
    """The words of all notifications of a program, in order; `until` keeps the listener's loop going."""

    def __init__(self, program):
        self.words = []
        self._pid = program.process.pid
        self._listener = Atspi.EventListener.new(self._hear)
        self._listener.register("object:state-changed:showing")

    def _hear(self, event, *_):
        try:
            if event.detail1 and event.source.get_role() == Atspi.Role.NOTIFICATION \
                    and event.source.get_process_id() == self._pid:
                self.words.append(event.source.get_name())
        except GLib.Error:
            pass

    def stop(self):
        self._listener.deregister("object:state-changed:showing")

    def _turn(self):
        while GLib.MainContext.default().iteration(False):
            pass

    def take(self):
        """What has come since the last time."""
        self._turn()
        taken, self.words = self.words, []
        return taken

    def hear_among(self, words):
        """Waits for these words, whatever comes beside them. A reader hears them; later they are gone from the tree."""
        def heard():
            self._turn()
            return words in self.words
        until(heard, f"the news {words!r}")

    def hear(self, *wanted):
        """Waits for exactly these words, one after the other and nothing between."""
        def heard():
            self._turn()
            return len(self.words) >= len(wanted)
        until(heard, f"the news {wanted}; there is {self.words}")
        taken, self.words = self.words[:len(wanted)], self.words[len(wanted):]
        assert taken == list(wanted), f"{taken} instead of {list(wanted)}"
