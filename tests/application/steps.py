# SPDX-License-Identifier: GPL-3.0-or-later
"""What several tests of the running application do."""
import subprocess

from driver import Atspi, LIMIT, until

PUPIL = "7E849E2F-4C10-4498-87A2-F536EF551FA4"


def put_pupil(desk, **documents):
    """A store with one pupil, as an earlier run has left it; gives the pupil's folder."""
    folder = desk.documents / "ActiveUsers" / PUPIL
    folder.mkdir(parents=True)
    (folder / "user.txt").write_text("Ann\nLee\n\n")
    for title, text in documents.items():
        (folder / f"{title}.tamber").write_text(text)
    return folder


def put(desk, name, content):
    """A file of the person's own. The name may be bytes."""
    if isinstance(name, bytes):
        name = name.decode("utf-8", "surrogateescape")
    file = desk.root / "home" / name
    file.parent.mkdir(exist_ok=True)
    file.write_bytes(content)
    return file


def give(desk, binary, *files, cwd=None):
    """A second start."""
    done = subprocess.run([binary, *files], env=desk.env, cwd=cwd, capture_output=True, text=True, timeout=LIMIT,
                          check=False)
    assert done.returncode == 0, done.stderr


def sees_text(p, text):
    """The open editor shows it."""
    def shown():
        area = p.find(None, "text")
        return area and Atspi.Text.get_text(area, 0, -1).replace("\u2029", "\n") == text
    until(shown, f"the text {text!r}")


def leave_editor(p):
    p.press("Done")
    p.press("Close without saving")


def save_with_ann(p):
    p.press("Save")
    p.press("Ann Lee...")
    p.press("Save here", "push button")


def expect(found, wanted):
    assert found == wanted, f"{found!r} instead of {wanted!r}"
