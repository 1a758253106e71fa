#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The panel as a screen reader finds it: every control by name and role, their states, the number
of results, and actions that do what a press would."""

import pathlib
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
from desktop import key, wait_for, xdotool  # noqa: E402
from panel import PanelTest, click, main  # noqa: E402

LINK = "https://docs.example.org/handbook"
RICH = rb"{\rtf1\ansi Quarterly \b summary\b0\par}"
# Buttons that wait for a window that may not be there are found but cannot be pressed.
BAR = (("Search clips", "text"), ("All", "radio button"), ("Text", "radio button"),
       ("Link", "radio button"), ("HTML", "radio button"), ("Image", "radio button"),
       ("Files", "radio button"), ("Create new group", "push button"), ("Pinned", "push button"),
       ("Library", "push button"), ("Settings", "push button"), ("Close", "push button"))


class AccessibilityTest(PanelTest):
    CLIPS = ("one", "two", "three")

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        for data, target in ((LINK, None), ("#FF8E72", None), (RICH, "text/rtf")):
            cls.quillo.capture(data, target)
        wait_for(lambda: len(cls.texts()) == 6, "six clips")

    def setUp(self):
        super().setUp()
        self.show()

    def names(self):
        return [card.name for card in self.panel.strip.children]

    def make_group(self, title):
        if title not in self.groups():
            self.panel.wait_for("Create new group", "push button").do("Press")
            self.panel.wait_for_focus("Group name")
            xdotool("type", "--delay", "1", title)
            self.panel.wait_for("Create", "push button").do("Press")
            wait_for(lambda: title in self.groups(), "the group")

    def test_every_control_is_found_by_name_and_role(self):
        for name, role in BAR:
            with self.subTest(name):
                part = self.panel.find(name, role)
                self.assertIsNotNone(part)
                self.assertIn("focusable", part.states)
                left, top, width, height = part.area
                self.assertGreater(width, 15)
                self.assertGreater(height, 15)
        self.assertIsNotNone(self.panel.find("6 clips", "label"))
        nameless = [part for part in self.panel.root.walk()
                    if not part.name and "focusable" in part.states]
        self.assertEqual(nameless, [])

    def test_cards_tell_their_kind_their_contents_and_their_state(self):
        self.assertEqual(self.panel.strip.role, "list")
        self.assertEqual(
            self.names(),
            ["Rich Text: Quarterly summary", "Color: #FF8E72", f"Link: {LINK}", "Text: three",
             "Text: two", "Text: one"])
        cards = self.panel.strip.children
        self.assertEqual({card.role for card in cards}, {"list item"})
        self.assertIn("5 characters", cards[3].description)
        self.assertLessEqual({"selected", "focused", "showing"}, cards[0].states)
        self.assertFalse({"selected", "focused"} & cards[1].states)
        self.assertNotIn("showing", cards[5].states, "a card that is scrolled away")
        key("Right")
        wait_for(lambda: "focused" in cards[1].states, "the focus on the second card")
        self.assertFalse({"selected", "focused"} & cards[0].states)
        key("ctrl+p")
        wait_for(lambda: "Pinned" in self.panel.strip.children[0].description, "the pin to be told")
        key("ctrl+p")
        wait_for(lambda: "Pinned" not in self.panel.strip.children[0].description, "no pin")

    def test_the_number_of_results_is_told(self):
        for query, total in (("t", None), ("handbook", "1 clip"), ("handbookk", "0 clips")):
            with self.subTest(query):
                key("ctrl+f")
                xdotool("type", "--delay", "1", query)
                if total is None:
                    total = f"{len(self.names())} clips"
                self.panel.wait_for(total, "label")
        key("ctrl+a", "Delete")
        self.panel.wait_for("6 clips", "label")

    def test_focus_and_choices_are_told(self):
        key("ctrl+f")
        search = self.panel.search
        wait_for(lambda: {"focused", "editable"} <= search.states, "the field's focus")
        xdotool("type", "--delay", "1", "three")
        wait_for(lambda: search.text == "three", "the field's text")
        key("ctrl+a", "Delete", "Tab")
        every, link = (self.panel.find(name, "radio button") for name in ("All", "Link"))
        wait_for(lambda: {"focused", "checked"} <= every.states, "the focus on All")
        link.do("Press")
        wait_for(lambda: "checked" in link.states and "checked" not in every.states, "Link")
        wait_for(lambda: self.names() == [f"Link: {LINK}"], "the links")
        self.panel.wait_for("1 clip", "label")

    def test_undo_is_offered_and_pressed(self):
        before = self.names()
        self.panel.strip.children[1].do("Delete")
        undo = self.panel.wait_for("Undo", "push button")
        self.panel.wait_for("Clip deleted", "label")
        self.assertEqual(self.names(), before[:1] + before[2:])
        undo.do("Press")
        wait_for(lambda: self.names() == before, "the card to come back")
        self.panel.wait_until_gone("Undo")

    def test_menus_and_their_entries(self):
        self.make_group("Work")
        self.panel.strip.children[1].do("ShowMenu")
        menu = self.panel.wait_for("Menu", "popup menu")
        for entry in ("Move to Group", "Pin", "Delete"):
            self.assertIsNotNone(menu.find(entry, "menu item"), entry)
        menu.find("Move to Group").do("Press")
        submenu = self.panel.wait_for("Move to Group", "popup menu")
        self.assertIsNotNone(submenu.find("Remove from all groups", "menu item"))
        work = submenu.find("Work", "menu item")
        self.assertNotIn("checked", work.states)
        work.do("Press")
        self.wait_for_members("Work", "#FF8E72")
        self.panel.strip.children[1].do("ShowMenu")
        self.panel.wait_for("Move to Group", "menu item").do("Press")
        submenu = self.panel.wait_for("Move to Group", "popup menu")
        self.assertIn("checked", submenu.find("Work", "menu item").states)
        submenu.find("Remove from all groups").do("Press")
        self.wait_for_members("Work")

    def test_the_picker_and_the_popover(self):
        self.make_group("Work")
        click(self.panel.group_button(0))
        row = self.panel.wait_for("Work", "check box")
        self.panel.wait_for("New Group", "push button")
        row.do("Press")
        wait_for(lambda: "checked" in row.states, "the row to be checked")
        row.do("Press")
        wait_for(lambda: "checked" not in row.states, "the row not to be checked")
        key("Escape")
        self.panel.wait_for("Create new group", "push button").do("Press")
        popover = self.panel.wait_for("New Group")
        self.assertIn("focused", self.panel.wait_for("Group name", "text").states)
        for name in ("Custom color", "Cancel", "Create"):
            self.assertIsNotNone(popover.find(name), name)
        nameless = [part for part in popover.walk()
                    if not part.name and "focusable" in part.states]
        self.assertEqual(nameless, [])


class ActionTest(PanelTest):
    def test_the_action_of_a_card_pastes_it(self):
        mark = self.quillo.mark()
        self.show()
        index = self.panel.cards().index("two")
        self.panel.strip.children[index].do("Press")
        self.assert_pasted("two", mark)


if __name__ == "__main__":
    main()
