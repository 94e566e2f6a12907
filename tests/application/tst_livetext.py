#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""tst_livetext.py CVTAMBER PROFILES SHOTS [keyboard]: live text with somebody at the simulated device, in English and in Chinese.

The shipped profiles answer by their scripts; only how long a person takes to type is shortened.
"""
import json
import pathlib
import sys

from driver import Desk, until
from keyboard import chosen
from news import News
from steps import expect

THINKS_MS = 200


def quick(desk, profile):
    """The profile with somebody at the device who types at once."""
    content = json.loads(profile.read_text(encoding="utf-8"))
    for device in content.get("devices", [content]):
        for answer in device.get("chat", []) + device.get("board", []):
            answer["after"] = THINKS_MS
    file = desk.root / profile.name
    file.write_text(json.dumps(content), encoding="utf-8")
    return file


def connect(p, device):
    p.press("Corvane Brailler", "page tab")
    p.press("Connect to Corvane")
    p.press(f"{device}...")
    p.press("Done")
    p.see_no("Done")


def open_live(p, name):
    p.press(name, "push button")
    # What is typed before the device is in the mode stays where it is.
    until(lambda: p.find("Back") or p.find("Close"), "the open screen")


def sees_message(p, words):
    """An item of the conversation by itself: who, what, when."""
    return p.see(f"{words},...", "list item")


def field_is(p, text):
    until(lambda: p.text_of("Message to the device") == text, f"{text!r} in the field, which holds {p.text_of('Message to the device')!r}")


def page_is(p, text):
    until(lambda: p.text_of("Whiteboard") == text, f"{text!r} on the whiteboard, which holds {p.text_of('Whiteboard')!r}")


def whiteboard(p):
    open_live(p, "Whiteboard")
    page_is(p, "Today: ")
    p.has_focus("Whiteboard")
    p.write("frog ")
    page_is(p, "Today: frog sat on the stone.\n")
    p.write("x")
    page_is(p, "Today: frog sat on the stone.\nx")
    p.keys("BackSpace", "BackSpace", "BackSpace")
    page_is(p, "Today: frog sat on the stone.\n")
    p.shot_of("whiteboard")
    p.back()
    open_live(p, "Whiteboard")
    page_is(p, "Today: frog sat on the stone.\nToday: ")
    p.back()


def english(p):
    news = News(p)
    open_live(p, "Chat")
    sees_message(p, "Device: Good morning.")
    news.hear_among("Device: Good morning.")
    news.stop()
    p.has_focus("Message to the device")
    p.write("Hello")
    field_is(p, "Hello")
    p.keys("Return")
    field_is(p, "")
    sees_message(p, "You: Hello")
    sees_message(p, "Device: Hello! This is Ida at the window.")
    p.has_focus("Message to the device")
    p.write("How are you today?")
    field_is(p, "How are you today?")
    p.press("Send")
    field_is(p, "")
    p.has_focus("Message to the device")
    sees_message(p, "Device: The rain is loud on the roof.")
    p.shot_of("chat")
    # By key: the messages, the field, Send.
    p.keys("shift+Tab")
    p.has_focus("Device: The rain...")
    p.keys("Home")
    p.has_focus("Device: Good morning....")
    p.keys("Tab")
    p.has_focus("Message to the device")
    p.keys("Tab")
    p.has_focus("Send")


def resizes_in_mid_chat(p):
    """Two columns, one, two: what is typed, where the focus is and the mode of the device stay."""
    wide = p.size
    open_live(p, "Chat")
    sees_message(p, "Device: Good morning.")
    p.has_focus("Message to the device")
    p.write("Hel")
    for size, pages in ((wide, ["Corvane", "Chat"]), ((800, 800), ["Chat"]), (wide, ["Corvane", "Chat"])):
        p.resize(*size)
        until(lambda: [page.get_name() for page in p.columns()] == pages, f"{pages} at {size}:\n{p.outline()}")
        field_is(p, "Hel")
        p.has_focus("Message to the device")
    p.keys("F6")
    p.has_focus(role="list item")
    p.keys("F6")
    p.has_focus("Message to the device")
    p.write("lo")
    p.keys("Return")
    sees_message(p, "Device: Hello! This is Ida at the window.")
    # A greeting for each time that the device came into the mode.
    expect(len([name for name in p.names("list item") if name.startswith("Device: Good morning.")]), 1)
    expect(p.see("Chat, 2 of 2").get_description(), "Open at the side")
    # Chosen again it is where it was; the whiteboard takes its place.
    p.press("Chat", "push button")
    until(lambda: "Chat" in p.place(p.focused()).split(" in "), "the focus in the chat")
    open_live(p, "Whiteboard")
    page_is(p, "Today: ")
    expect([page.get_name() for page in p.columns()], ["Corvane", "Whiteboard"])
    p.press("Refresh files")
    p.see("The chat and the whiteboard open here.")
    p.see("Files, 1,...")


def grades(p):
    expect([p.see(name).get_description() for name in ("Grade 1", "Grade 2")], ["Not available", ""])
    p.press("Grade 2")
    until(lambda: p.see("Grade 2").get_description() == "Not available", "grade 2")
    expect(p.see("Grade 1").get_description(), "")


def comes_back(p):
    p.back()
    p.see("State, Connected...")
    open_live(p, "Chat")
    sees_message(p, "You: Hello")
    until(lambda: len([name for name in p.names("list item") if name.startswith("Device: Good morning.")]) == 2,
          "the greeting of each visit")


def chinese(p):
    open_live(p, "Chat")
    assert p.find("Grade 1") is None
    sees_message(p, "Device: nǐ hǎo!")
    p.write("你好")
    field_is(p, "你好")
    p.press("Send")
    sees_message(p, "You: 你好")
    sees_message(p, "You: nǐ hǎo")
    sees_message(p, "Device: nǐ hǎo! wǒ zài dú shū.")
    p.shot_of("chat-chinese")
    p.back()
    # The whiteboard converts nothing.
    open_live(p, "Whiteboard")
    page_is(p, "ni^ hao^! ")
    p.back()
    p.see("State, Connected...")


def main():
    binary, profiles, shots = (pathlib.Path(argument).resolve() for argument in sys.argv[1:4])
    # Each a run of its own: the conversation is a run's.
    visits = (("phone", "classroom", "Window desk", (whiteboard, english, grades, comes_back)),
              ("tablet", "chinese", "Bookshelf", (chinese,)),
              ("desktop", "classroom", "Window desk", (english,)),
              ("wide", "classroom", "Window desk", (resizes_in_mid_chat,)))
    with Desk() as desk:
        for size, profile, device, parts in visits:
            file = quick(desk, profiles / f"{profile}.json")
            with chosen()(desk, binary, [f"--simulate={file}"], size) as p:
                p.shots = shots / size
                connect(p, device)
                for part in parts:
                    part(p)


main()
