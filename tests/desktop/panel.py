# SPDX-License-Identifier: MIT
"""The panel as a person works with it: where its parts are, what it says, keys and pointer. Its
controls are found over AT-SPI, so AT_SPI=on of ./with_display is needed."""

import json
import re
import sys
import time
import unittest
import uuid

import accessible
from desktop import Failure, QuilloTest, active_window, key, run, wait_for, xdotool

PANEL_HEIGHT, BAR_HEIGHT, HINTS_HEIGHT = 320, 40, 24
CARD_WIDTH, CARD_HEIGHT, CARD_STEP, CARD_LEFT, CARD_TOP = 280, 240, 292, 16, BAR_HEIGHT + 12
PASTED = "The clip was pasted"


def geometry(window):
    """Left, top, width and height of a window on the screen."""
    told = xdotool("getwindowgeometry", "--shell", window)
    return tuple(int(re.search(rf"^{name}=(-?\d+)", told, re.M)[1])
                 for name in ("X", "Y", "WIDTH", "HEIGHT"))


def pixels(x, y, width, height):
    """What is on the screen there, as RGB bytes."""
    return run("import", "-silent", "-window", "root", "-crop", f"{width}x{height}+{x}+{y}",
               "-depth", "8", "rgb:-")


def move_to(point):
    xdotool("mousemove", *point)


def click(point, button=1):
    xdotool("mousemove", *point, "click", button)


class Drag:
    """A drag with the pointer, in steps small and slow enough for both ends to follow."""

    PAUSE = 0.05

    def __init__(self, start):
        self.at = start
        xdotool("mousemove", *start, "mousedown", 1)
        time.sleep(self.PAUSE)

    def move_to(self, point, steps=8):
        x, y = self.at
        for i in range(1, steps + 1):
            xdotool("mousemove", x + (point[0] - x) * i // steps, y + (point[1] - y) * i // steps)
            time.sleep(self.PAUSE)
        self.at = point

    def drop(self):
        # The target's answer to the last movement decides; some ask what is dragged first.
        for offset in (1, 0):
            time.sleep(0.15)
            xdotool("mousemove", self.at[0] + offset, self.at[1])
        time.sleep(0.15)
        xdotool("mouseup", 1)


def drag(start, *points):
    movement = Drag(start)
    # The first steps only tell a drag from a click.
    movement.move_to((start[0] + 24, start[1] - 8), 4)
    for point in points:
        movement.move_to(point)
    movement.drop()


class Panel:
    """The panel of a running Quillo."""

    def __init__(self, quillo):
        self.quillo = quillo
        self.objects = None

    @property
    def root(self):
        """The panel's accessible object; another process has another one."""
        if self.objects is None:
            self.objects = accessible.program(self.quillo.process.pid)
        return self.objects.wait_for("Clipboard history")

    @property
    def strip(self):
        return self.root.wait_for("Clips", "list")

    @property
    def search(self):
        return self.root.wait_for("Search clips", "text")

    def find(self, name, role=None):
        return self.root.find(name, role)

    def wait_for(self, name, role=None):
        return self.root.wait_for(name, role)

    def wait_until_gone(self, name, role=None):
        wait_for(lambda: not self.find(name, role), f"the {role or 'object'} {name!r} to go")

    def cards(self):
        """What the cards say, from left to right, without the name of their kind."""
        return [card.name.partition(": ")[2] for card in self.strip.children]

    def wait_for_cards(self, *wanted):
        def shown():
            return self.cards() == list(wanted)
        try:
            wait_for(shown, "the cards", 5)
        except Failure as failure:
            raise Failure(f"the cards are {self.cards()} and not {list(wanted)}") from failure

    def selected(self):
        """The index of the selected card."""
        states = [card.states for card in self.strip.children]
        chosen = [index for index, state in enumerate(states) if "selected" in state]
        if len(chosen) > 1:
            raise Failure(f"the cards {chosen} are selected")
        return chosen[0] if chosen else None

    def wait_for_selected(self, index):
        wait_for(lambda: self.selected() == index, f"card {index} to be selected", 5)

    def focused(self):
        """The name of what has the keyboard."""
        names = [part.name for part in self.root.walk()
                 if "focused" in (states := part.states) and "showing" in states
                 and part.role != "list item"]
        return names[0] if names else None

    def wait_for_focus(self, name):
        try:
            wait_for(lambda: self.focused() == name, "the focus", 5)
        except Failure as failure:
            raise Failure(f"the focus is on {self.focused()!r} and not on {name!r}") from failure

    def query(self):
        return self.search.text

    def wait_for_query(self, text):
        wait_for(lambda: self.query() == text, f"the query {text!r}, not {self.query()!r}", 5)

    def point_in_card(self, index, x=CARD_WIDTH // 2, y=CARD_HEIGHT // 2):
        """A point of a card that is not scrolled, on the screen."""
        left, top, _, _ = geometry(self.quillo.panel())
        return left + CARD_LEFT + CARD_STEP * index + x, top + CARD_TOP + y

    def delete_button(self, index):
        return self.point_in_card(index, CARD_WIDTH - 20, 17)

    def group_button(self, index):
        return self.point_in_card(index, CARD_WIDTH - 46, 17)

    def ground(self):
        """A point of the panel where nothing is: the line of hints, beside the hints."""
        left, top, width, _ = geometry(self.quillo.panel())
        return left + width // 6, top + PANEL_HEIGHT - HINTS_HEIGHT // 2


class PanelTest(QuilloTest):
    """A class of tests with some text clips, copied in that order, and a terminal in front that
    keeps what is pasted into it."""

    CLIPS = ("one", "two", "three", "four", "five")

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.panel = Panel(cls.quillo)
        cls.terminal, cls.typed = cls.desktop.open_xterm("terminal")
        cls.seen = 0
        cls.copy_all(cls.CLIPS)

    @classmethod
    def copy_all(cls, texts):
        for text in texts:
            cls.quillo.capture(text)
        wait_for(lambda: cls.texts()[:len(texts)] == list(texts)[::-1], f"the clips {texts}")

    def setUp(self):
        self.desktop.focus(self.terminal)

    def tearDown(self):
        self.hide()

    @classmethod
    def texts(cls):
        """The stored clips, newest first."""
        return [row["plaintext"] for row in cls.quillo.rows()]

    def row(self, text):
        return next((row for row in self.quillo.rows() if row["plaintext"] == text), None)

    @classmethod
    def show(cls):
        cls.hide()
        cls.quillo.show_panel()
        cls.panel.wait_for_focus("Clips")

    @classmethod
    def hide(cls):
        window = cls.quillo.panel()
        if window and active_window() == window:
            key("ctrl+Escape")
        elif window:
            cls.quillo.press_hotkey()
        cls.quillo.wait_until_hidden()

    def arrived(self):
        """What has come into the terminal since the last time."""
        text = self.typed.read_text()
        before, self.__class__.seen = self.seen, len(text)
        return text[before:]

    def assert_pasted(self, text, since):
        self.quillo.wait_for_log(PASTED, since)
        self.quillo.wait_until_hidden()
        got = []
        wait_for(lambda: got.append(self.arrived()) or "".join(got), "the text in the terminal")
        self.assertEqual("".join(got), text)
        wait_for(lambda: self.texts()[0] == text, "the chosen clip to come first")

    def assert_nothing_chosen(self, since):
        """Nor will be: the keys that follow arrive as they are."""
        self.hide()
        wait_for(lambda: active_window() == self.terminal, "the terminal's focus")
        xdotool("type", "q")
        wait_for(lambda: self.typed.read_text()[self.seen:], "the typed letter")
        self.assertEqual(self.arrived(), "q")
        self.assertNotIn("pasted", self.quillo.log_since(since))

    @classmethod
    def groups(cls):
        """The stored groups by title: their row, their members and their order, as texts."""
        by_id = {row["id"]: row["plaintext"] for row in cls.quillo.rows()}
        members = cls.quillo.rows("SELECT clip, other FROM ClipPinboards")
        groups = {}
        for row in cls.quillo.rows("SELECT * FROM Pinboard ORDER BY sortIndex"):
            entries = json.loads(row["clipOrder"] or b"[]")
            groups[row["title"]] = {
                **row,
                "members": {by_id[m["clip"]] for m in members if m["other"] == row["id"]},
                "order": [by_id.get(uuid.UUID(e["clipID"]).bytes) for e in entries],
                "pinned": {by_id.get(uuid.UUID(e["clipID"]).bytes)
                           for e in entries if e["isPinned"]}}
        return groups

    @classmethod
    def members(cls, title):
        return cls.groups().get(title, {}).get("members", set())

    def wait_for_members(self, title, *texts):
        wait_for(lambda: self.members(title) == set(texts),
                 f"{texts} in the group {title}, not {self.members(title)}", 5)


def main():
    unittest.main(module=sys.modules["__main__"], verbosity=2)
