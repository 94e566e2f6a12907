# SPDX-License-Identifier: GPL-3.0-or-later
"""What every screen, sheet and dialog must offer to a screen reader and to the keyboard, whatever it shows.

Faults of a screen come as sentences; a test fails with all of them. See docs/accessibility.md for the reasons.
"""
import re

from driver import Atspi, Missing, Program

CONTROLS = {"push button", "check box", "page tab", "text"}
NAMED = CONTROLS | {"list", "list item", "heading", "dialog", "panel", "page tab list", "progress bar", "image", "label"}
# What Qt calls things that nobody thought about.
MUTE = {"unknown", "invalid", "filler", "redundant object", "extended"}
TARGET = 44
# More stops than any screen has: past it Tab is caught somewhere.
MANY = 80
POSITION = re.compile(r", (\d+) of (\d+)$")
# Keys of texts, and places that were not filled in.
RAW = re.compile(r"^\d+\.\d+$|%[@d0-9]|^(qml|cvtamber)[._]")
# Spoken, or shown on a braille display, they are noise.
DECORATION = re.compile("[\u2190-\u21ff\u2022\u2026\u2500-\u25ff\u2600-\u27bf\ufe0f*_|<>]|\\.\\.\\.$")


class AuditedProgram(Program):
    """Each screen that is worth a picture is worth a look at what it says."""

    def shot_of(self, name):
        super().shot_of(name)
        found = faults(self) + round_faults(self)
        if found:
            raise Missing(f"{name} without fault:\n" + "\n".join(found) + "\n" + self.outline())


class Node:
    """What is asked of a node, read once."""

    def __init__(self, program, node, parent):
        self.parent = parent
        self.role = node.get_role_name()
        self.name = node.get_name() or ""
        self.description = node.get_description() or ""
        states = node.get_state_set()
        self.showing = states.contains(Atspi.StateType.SHOWING)
        self.focusable = states.contains(Atspi.StateType.FOCUSABLE)
        self.focused = states.contains(Atspi.StateType.FOCUSED)
        self.checked = states.contains(Atspi.StateType.CHECKED)
        self.actions = [node.get_action_name(i) for i in range(node.get_n_actions())] if self.role in CONTROLS else []
        # Those within the window are wrong for what stands in a dialog.
        extents = node.get_extents(Atspi.CoordType.SCREEN)
        self.place = (extents.x, extents.y, extents.width, extents.height)
        self.children = []
        for i in range(node.get_child_count()):
            child = node.get_child_at_index(i)
            if child is not None and program.showing(child):
                self.children.append(Node(program, child, self))

    def all(self):
        yield self
        for child in self.children:
            yield from child.all()

    def __str__(self):
        return f"{self.role} {self.name!r}"

    @property
    def is_available(self):
        return self.description != "Not available"


def faults(program):
    """Sentences about the uppermost screen or dialog."""
    root = Node(program, program.top(), None)
    found = []
    for node in root.all():
        found += _node_faults(node)
        found += _children_faults(node)
    found += _screen_faults(root)
    return found


def round_faults(program):
    """Sentences about what Tab or Shift+Tab does not come to on its way round the uppermost dialog, or Tab round the screen."""
    root = Node(program, program.top(), None)
    # The controls of a row are stops while it is the current one; of the tabs the chosen one is.
    wanted = {(node.role, node.name) for node in root.all()
              if node.role in CONTROLS - {"page tab"} and node.is_available and not _is_in_row(node)}
    wanted |= {("list item", "") for node in root.all() if node.role == "list item"}
    in_rows = {node.name for node in root.all() if _is_in_row(node)}
    found = []
    for key in ("Tab", "shift+Tab") if root.role == "dialog" else ("Tab",):
        stops = _round(program, key)
        met = {("list item", "") if role == "list item" or name in in_rows else (role, name) for role, name, _ in stops}
        if wanted - met:
            found.append(f"{key} does not come to {sorted(wanted - met)}; the stops are {stops}")
    return found


def _round(program, key):
    """The stops from the one that has the focus, until one comes again."""
    stops = [program.stop_of_focus()]
    while len(stops) < MANY and program.moves_by(key) and program.stop_of_focus() not in stops:
        stops.append(program.stop_of_focus())
    return [stop for stop in stops if stop]


def _is_in_row(node):
    while node.parent is not None:
        node = node.parent
        if node.role == "list item":
            return True
    return False


def _node_faults(node):
    if node.role in MUTE:
        yield f"{node} has no role"
    if node.role in NAMED and not node.name.strip():
        yield f"a {node.role} in {node.parent} has no name"
    if RAW.search(node.name):
        yield f"the name of {node} is a key or has a gap"
    if node.role in CONTROLS - {"text"} and DECORATION.search(node.name):
        yield f"the name of {node} has a decoration"
    if node.role in CONTROLS:
        if not node.focusable:
            yield f"{node} cannot have the focus"
        if node.role != "text" and not {"Press", "Toggle"} & set(node.actions):
            yield f"{node} has no action"
        if min(node.place[2:]) < TARGET and not _is_cut_off(node):
            yield f"{node} is {node.place[2]} x {node.place[3]} units, less than {TARGET}"


def _is_cut_off(node):
    """Scrolled partly out of its list, which says how much of it there is."""
    while node.parent is not None:
        node = node.parent
        if node.role == "list":
            return True
    return False


def _children_faults(node):
    names = {}
    for child in node.children:
        if child.role in CONTROLS | {"list item"}:
            other = names.setdefault((child.role, child.name), child)
            if other is not child:
                yield f"{node} has two of {child}"
    if node.role == "list":
        yield from _list_faults(node)
    if node.role == "page tab list" and sum(child.checked for child in node.children) != 1:
        yield f"of {node} not exactly one tab is selected"


def _list_faults(node):
    last = None
    tops = [child.place[1] for child in node.children]
    if tops != sorted(tops):
        yield f"the children of {node} are not told from top to bottom: {[str(child) for child in node.children]}"
    for child in node.children:
        if child.role == "heading":
            last = None
        if child.role != "list item":
            continue
        position = POSITION.search(child.name)
        if not position:
            yield f"{child} does not say which of how many"
            continue
        row, count = (int(part) for part in position.groups())
        if not 1 <= row <= count or last is not None and row != 1 and row != last + 1:
            yield f"{child} is not where it says"
        last = row


def _screen_faults(root):
    nodes = list(root.all())
    if root.role == "dialog" and not root.name:
        yield "the dialog has no name"
    # A sheet of buttons is headed by its own name.
    if root.role != "dialog" and not any(node.role == "heading" for node in nodes):
        yield f"{root} has no heading"
    yield from _places_faults(root, nodes)
    focused = [node for node in nodes if node.focused and node.role not in ("frame", "panel", "list", "dialog")]
    if not focused:
        yield f"nothing in {root} has the focus"
    for node in focused[-1:]:
        if node.role in CONTROLS and not _lies_in(node.place, root.place):
            yield f"{node} has the focus out of sight, at {node.place} of {root.place}"


def _places_faults(root, nodes):
    """No control over another; what is scrolled in a list stands under the bars."""
    controls = [node for node in nodes if node.role in CONTROLS and not _is_cut_off(node)]
    for number, one in enumerate(controls):
        for other in controls[number + 1:]:
            if other.parent is not one and _overlap(one.place, other.place):
                yield f"{one} at {one.place} and {other} at {other.place} lie over each other"


def _overlap(one, other):
    return (one[0] + 1 < other[0] + other[2] and other[0] + 1 < one[0] + one[2]
            and one[1] + 1 < other[1] + other[3] and other[1] + 1 < one[1] + one[3])


def _lies_in(place, room):
    return (place[0] >= room[0] and place[1] >= room[1] and place[0] + place[2] <= room[0] + room[2]
            and place[1] + place[3] <= room[1] + room[3])
