#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""What each key does in the panel, by the part that has the keyboard. Keys that do nothing are
followed by one that does something, so that the first is known to have been heard."""

import pathlib
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
from desktop import active_window, key, wait_for, xdotool  # noqa: E402
from panel import PanelTest, click, main, pixels  # noqa: E402

TEN = ("one", "two", "three", "four", "five", "six", "seven", "eight", "nine", "ten")
EDITING = ("ctrl+a", "ctrl+c", "ctrl+v", "ctrl+x", "ctrl+z")
HIDING = ("Escape", "ctrl+Escape")
MENU_KEYS = ("Menu", "shift+F10")
SEARCH, CARDS = "Search clips", "Clips"


def press(keys):
    """Presses keys given as words."""
    key(*keys.split())


class KeysTest(PanelTest):
    CLIPS = TEN

    def state(self):
        """Everything that a key might have changed."""
        return {"focus": self.panel.focused(), "query": self.panel.query(),
                "selected": self.panel.selected(), "cards": self.panel.cards(),
                "stored": self.pins(), "clipboard": self.desktop.clipboard()}

    def pins(self):
        """What is stored, and what of it is pinned."""
        return [(row["plaintext"], row["isPinned"]) for row in self.quillo.rows()]

    def check_hides(self):
        for name in HIDING:
            with self.subTest(name):
                mark = self.quillo.mark()
                self.open()
                key(name)
                self.quillo.wait_until_hidden()
                self.assert_nothing_chosen(mark)

    def check_starts_search(self):
        for name, typed in (("t", "t"), ("0", "0"), ("question", "?"), ("T", "T")):
            with self.subTest(name):
                self.open()
                key(name)
                self.panel.wait_for_query(typed)
                self.assertEqual(self.panel.focused(), SEARCH)
                key("e")
                self.panel.wait_for_query(typed + "e")
                self.hide()

    def check_goes_to_field(self):
        for name in ("slash", "ctrl+f"):
            with self.subTest(name):
                self.open()
                key(name)
                self.panel.wait_for_focus(SEARCH)
                self.assertEqual(self.panel.query(), "")
                self.hide()

    def check_chooses(self, *cases):
        for keys, index in cases:
            with self.subTest(keys):
                shown, mark = self.texts(), self.quillo.mark()
                self.open()
                press(keys)
                self.assert_pasted(shown[index], mark)

    def check_does_nothing(self, names, there, back, seen):
        """Each of the keys, then one that does something, which seen() tells, and is undone."""
        self.open()
        before = self.state()
        for name in names:
            with self.subTest(name):
                here = seen()
                key(name, there)
                wait_for(lambda: seen() != here, f"{there} after {name}")
                key(back)
                wait_for(lambda: seen() == here, f"{back} after {name}")
                self.assertEqual(self.state(), before)


class CardsTest(KeysTest):
    """The cards have the keyboard, as they do when the panel comes."""

    def open(self):
        self.show()

    def test_escape_hides(self):
        self.check_hides()

    def test_return_and_digits_choose(self):
        self.check_chooses(("Return", 0), ("Right Right Return", 2), ("KP_Enter", 0), ("1", 0),
                           ("2", 1), ("9", 8), ("KP_3", 2))

    def test_arrows_home_end_and_pages_select(self):
        self.open()
        for name, wanted in (("Right", 1), ("Down", 2), ("Left", 1), ("Up", 0), ("Left", 0),
                             ("End", 9), ("Right", 9), ("Home", 0), ("Next", 4), ("Next", 8),
                             ("Next", 9), ("Prior", 5), ("Prior", 1), ("Prior", 0)):
            with self.subTest(name, wanted=wanted):
                key(name)
                self.panel.wait_for_selected(wanted)
                self.assertIn("showing", self.panel.strip.children[wanted].states)

    def test_characters_start_a_search(self):
        self.check_starts_search()

    def test_the_keys_of_the_field(self):
        self.check_goes_to_field()

    def test_other_control_keys_are_let_through(self):
        self.check_does_nothing((*EDITING, "ctrl+b", "ctrl+Left", "ctrl+Delete", "ctrl+1"),
                                "Right", "Left", self.panel.selected)

    def test_control_p_pins_and_unpins_the_selected_card(self):
        text = self.texts()[1]
        self.open()
        press("Right ctrl+p")
        wait_for(lambda: self.row(text)["isPinned"] == 1, "the pin")
        wait_for(lambda: self.panel.cards()[0] == text, "the pinned card to come first")
        self.assertEqual(self.panel.selected(), 0, "the selection stays with its clip")
        key("ctrl+p")
        wait_for(lambda: self.row(text)["isPinned"] == 0, "the pin to go")

    def test_delete_and_undo(self):
        shown = self.texts()
        left = [text for text in shown if text != shown[1]]
        self.open()
        press("Right Delete")
        self.panel.wait_for("Undo")
        self.panel.wait_for_cards(*left)
        self.assertEqual(self.panel.selected(), 1, "the next card takes the selection")
        self.assertEqual(self.texts(), shown, "it can still be had back")
        key("ctrl+z")
        self.panel.wait_for_cards(*shown)
        self.panel.wait_until_gone("Undo")
        press("Home Delete Delete")
        self.panel.wait_for_cards(*shown[2:])
        key("Escape")
        wait_for(lambda: self.texts() == shown[2:], "the clips to be gone from the store")
        self.copy_all(shown[:2])

    def test_the_cards_menu(self):
        for name in MENU_KEYS:
            with self.subTest(name):
                self.open()
                key(name)
                self.panel.wait_for("Pin", "menu item")
                self.hide()

    def test_tab_walks_everything_with_a_visible_focus(self):
        self.open()
        stops, seen = [], []
        for _ in range(30):
            part = self.focused_part()
            stops.append(part.name)
            left, top, width, height = part.area
            # A card's ring is drawn within the strip.
            seen.append((part, pixels(left - 2, top, width + 4, min(height, 270))))
            key("Tab")
            wait_for(lambda: self.panel.focused() != stops[-1], f"Tab to leave {stops[-1]}", 5)
            if self.panel.focused() == CARDS:
                break
        for name in (SEARCH, "All", "Text", "Link", "Create new group", "Pinned", "Close"):
            self.assertIn(name, stops)
        self.assertEqual(stops[:3], [CARDS, SEARCH, "All"])
        for part, focused in seen[1:]:
            left, top, width, height = part.area
            self.assertNotEqual(pixels(left - 2, top, width + 4, min(height, 270)), focused,
                                f"the focus on {part.name} is not seen")
        back = []
        for _ in stops:
            key("shift+Tab")
            wait_for(lambda: self.panel.focused() != (back or [CARDS])[-1], "Shift-Tab", 5)
            back.append(self.panel.focused())
        self.assertEqual(back, stops[:0:-1] + [CARDS])

    def focused_part(self):
        return next(part for part in self.panel.root.walk()
                    if "focused" in part.states and part.role != "list item")


class FieldTest(KeysTest):
    """The search field has the keyboard."""

    def open(self):
        self.show()
        key("ctrl+f")
        self.panel.wait_for_focus(SEARCH)

    def type(self, text):
        xdotool("type", "--delay", "1", text)

    def test_escape_hides_and_forgets_the_search(self):
        for name in HIDING:
            with self.subTest(name):
                mark, count = self.quillo.mark(), len(self.texts())
                self.open()
                self.type("t")
                self.panel.wait_for_query("t")
                key(name)
                self.quillo.wait_until_hidden()
                self.assert_nothing_chosen(mark)
                self.show()
                self.assertEqual(self.panel.query(), "")
                self.assertEqual(len(self.panel.cards()), count)
                self.hide()

    def test_return_chooses_the_first_result_of_what_was_typed_last(self):
        for text in ("seven", "ve", "o"):
            with self.subTest(text):
                wanted = next(clip for clip in self.texts() if text in clip)
                mark = self.quillo.mark()
                self.open()
                self.type(text)
                key("Return")
                self.assert_pasted(wanted, mark)

    def test_return_chooses_the_card_that_was_selected_since(self):
        # No letter of "XTerm", the program that they come from.
        found = [clip for clip in self.texts() if "o" in clip]
        mark = self.quillo.mark()
        self.open()
        self.type("o")
        self.panel.wait_for_cards(*found)
        press("Down Right Right ctrl+f")
        self.panel.wait_for_focus(SEARCH)
        self.assertEqual(self.panel.selected(), 2)
        key("Return")
        self.assert_pasted(found[2], mark)

    def test_return_without_results_chooses_nothing(self):
        mark = self.quillo.mark()
        self.open()
        self.type("zzz")
        self.panel.wait_for_cards()
        key("Return", "x")
        self.panel.wait_for_query("zzzx")
        self.assert_nothing_chosen(mark)

    def test_down_goes_to_the_cards(self):
        self.open()
        key("Down")
        self.panel.wait_for_focus(CARDS)
        self.assertEqual(self.panel.selected(), 0)

    def test_editing(self):
        before = self.pins()
        self.open()
        for keys, wanted in (
                ("1 2 9", "ab cd129"), ("slash", "ab cd/"), ("t", "ab cdt"), ("space", "ab cd "),
                ("Left x", "ab cxd"), ("Home x", "xab cd"), ("Home Right x", "axb cd"),
                ("Home End x", "ab cdx"), ("Up x", "ab cdx"), ("Prior x", "ab cdx"),
                ("Next x", "ab cdx"), ("BackSpace", "ab c"), ("Home Delete", "b cd"),
                ("ctrl+a x", "x"), ("ctrl+f x", "x"), ("ctrl+Left x", "ab xcd"),
                ("ctrl+BackSpace", "ab "), ("Home ctrl+Delete", "cd"),
                ("Home ctrl+Right x", "ab xcd"),
                ("ctrl+a Delete ctrl+z", "ab cd"), ("ctrl+a Delete ctrl+z ctrl+shift+z", ""),
                ("ctrl+p x", "ab cdx"), ("shift+Home Delete", "")):
            with self.subTest(keys):
                key("ctrl+a")
                self.type("ab cd")
                press(keys)
                self.panel.wait_for_query(wanted)
                self.assertEqual(self.panel.focused(), SEARCH)
        self.assertEqual(self.pins(), before)

    def test_the_clipboard(self):
        self.open()
        self.type("kept words")
        press("ctrl+a ctrl+c")
        wait_for(lambda: self.desktop.clipboard() == b"kept words", "the copied text")
        press("End ctrl+v")
        self.panel.wait_for_query("kept wordskept words")
        press("ctrl+a ctrl+x")
        self.panel.wait_for_query("")
        wait_for(lambda: self.desktop.clipboard() == b"kept wordskept words", "the cut text")
        key("ctrl+v")
        self.panel.wait_for_query("kept wordskept words")

    def test_the_fields_menu(self):
        for name in MENU_KEYS:
            with self.subTest(name):
                self.open()
                self.type("t")
                key(name)
                self.panel.wait_for("Select All", "menu item")
                key("Escape")
                self.panel.wait_until_gone("Select All")
                self.assertEqual((self.panel.focused(), self.panel.query()), (SEARCH, "t"))
                self.hide()


class ControlTest(KeysTest):
    """A chip has the keyboard."""

    def open(self):
        self.show()
        press("Tab Tab")
        self.panel.wait_for_focus("All")

    def test_escape_hides(self):
        self.check_hides()

    def test_return_presses_the_control(self):
        mark = self.quillo.mark()
        self.open()
        press("Right Right Return")
        self.panel.wait_for_cards()
        self.assertIn("checked", self.panel.find("Link", "radio button").states)
        self.assertNotIn("checked", self.panel.find("All", "radio button").states)
        self.assertEqual(self.panel.focused(), "Link")
        press("Left Left Return")
        self.panel.wait_for_cards(*self.texts())
        self.assert_nothing_chosen(mark)

    def test_return_on_the_lock_and_on_close(self):
        self.open()
        for _ in range(30):
            if self.panel.focused() == "Pinned":
                break
            key("Right")
        self.panel.wait_for_focus("Pinned")
        key("Return")
        self.panel.wait_for("Drag")
        key("Return")
        self.panel.wait_for("Pinned")
        for _ in range(5):
            if self.panel.focused() == "Close":
                break
            key("Right")
        self.panel.wait_for_focus("Close")
        key("Return")
        self.quillo.wait_until_hidden()

    def test_arrows_walk_the_controls(self):
        self.open()
        for name, wanted in (("Right", "Text"), ("Down", "Link"), ("Left", "Text"), ("Up", "All")):
            key(name)
            self.panel.wait_for_focus(wanted)

    def test_digits_choose(self):
        self.check_chooses(("2", 1))

    def test_characters_start_a_search(self):
        self.check_starts_search()

    def test_the_keys_of_the_field(self):
        self.check_goes_to_field()

    def test_other_keys_are_let_through(self):
        self.check_does_nothing(
            (*EDITING, "ctrl+b", "ctrl+p", "Delete", "Home", "End", "Prior", "Next"),
            "Right", "Left", self.panel.focused)


class MenuTest(KeysTest):
    """A card's menu is open; the keys are its own."""

    def open(self):
        self.show()
        press("Right shift+F10")
        self.panel.wait_for_focus("Move to Group")

    def test_escape_closes_the_menu_and_control_escape_the_panel(self):
        mark = self.quillo.mark()
        self.open()
        key("Escape")
        self.panel.wait_until_gone("Pin")
        self.panel.wait_for_focus(CARDS)
        self.assertEqual(self.panel.selected(), 1)
        press("shift+F10 ctrl+Escape")
        self.quillo.wait_until_hidden()
        self.assert_nothing_chosen(mark)
        self.show()
        self.assertIsNone(self.panel.find("Pin"), "the menu does not come back with the panel")

    def test_return_does_what_the_entry_says_and_chooses_no_card(self):
        text, mark = self.texts()[1], self.quillo.mark()
        for entry, pinned in (("Pin", 1), ("Unpin", 0)):
            self.show()
            if pinned:
                key("Right")
            press("shift+F10 Down")
            self.panel.wait_for_focus(entry)
            key("Return")
            wait_for(lambda: self.row(text)["isPinned"] == pinned, f"{entry} to be done")
            self.assertTrue(self.quillo.panel())
            self.assert_nothing_chosen(mark)

    def test_arrows_home_end_tab_and_letters_walk_the_entries(self):
        self.open()
        for name, wanted in (("Down", "Pin"), ("Down", "Delete"), ("Down", "Move to Group"),
                             ("Up", "Delete"), ("Home", "Move to Group"), ("End", "Delete"),
                             ("p", "Pin"), ("Tab", "Delete"), ("shift+Tab", "Pin"),
                             ("d", "Delete"), ("m", "Move to Group")):
            with self.subTest(name, wanted=wanted):
                key(name)
                self.panel.wait_for_focus(wanted)
        key("Right")
        self.panel.wait_for_focus("Remove from all groups")
        key("Left")
        self.panel.wait_until_gone("Remove from all groups")
        self.panel.wait_for_focus("Move to Group")

    def test_no_key_reaches_what_lies_beneath(self):
        self.check_does_nothing(
            (*EDITING, "1", "2", "z", "slash", "ctrl+f", "ctrl+p", "Prior", "Next"),
            "Down", "Up", self.panel.focused)


class EditorTest(KeysTest):
    """The popover of a new group is open, and its text field has the keyboard."""

    def open(self):
        self.show()
        press("Tab Tab")
        self.panel.wait_for_focus("All")
        for _ in range(12):
            if self.panel.focused() == "Create new group":
                break
            key("Right")
        self.panel.wait_for_focus("Create new group")
        key("Return")
        self.panel.wait_for_focus("Group name")
        key("ctrl+a", "Delete")

    def name(self):
        return self.panel.find("Group name", "text").text

    def wait_for_name(self, text):
        wait_for(lambda: self.name() == text, f"the name {text!r}, not {self.name()!r}", 5)

    def test_escape_closes_the_popover_and_control_escape_the_panel(self):
        mark = self.quillo.mark()
        self.open()
        key("Escape")
        self.panel.wait_until_gone("Group name")
        self.panel.wait_for_focus("Create new group")
        self.assertTrue(self.quillo.panel())
        key("Return")
        self.panel.wait_for_focus("Group name")
        key("ctrl+Escape")
        self.quillo.wait_until_hidden()
        self.assert_nothing_chosen(mark)
        self.assertEqual(self.groups(), {})

    def test_what_is_typed_is_text_and_editing_keys_edit(self):
        self.open()
        before = self.texts()
        for keys, wanted in (
                ("1 2 slash", "ab12/"), ("z", "abz"), ("Left x", "axb"), ("Home x", "xab"),
                ("Home End x", "abx"), ("Home Delete", "b"), ("ctrl+a x", "x"),
                ("ctrl+a Delete ctrl+z", "ab"), ("ctrl+a ctrl+c End ctrl+v", "abab"),
                ("ctrl+a ctrl+x ctrl+v ctrl+v", "abab")):
            with self.subTest(keys):
                key("ctrl+a")
                xdotool("type", "--delay", "1", "ab")
                press(keys)
                self.wait_for_name(wanted)
                self.assertEqual(self.panel.query(), "")
        self.assertEqual([text for text in self.texts() if text != "ab"], before)

    def test_tab_stays_inside(self):
        self.open()
        inside = [self.panel.focused()]
        for _ in range(30):
            key("Tab")
            wait_for(lambda: self.panel.focused() != inside[-1], f"Tab to leave {inside[-1]}", 5)
            if self.panel.focused() == "Group name":
                break
            inside.append(self.panel.focused())
        self.assertLessEqual({"Group name", "Custom color", "Cancel", "Create"}, set(inside))
        self.assertFalse({CARDS, SEARCH, "All", "Close"} & set(inside))

    def test_return_makes_the_group_and_chooses_no_card(self):
        mark = self.quillo.mark()
        self.open()
        key("Return")
        self.wait_for_name("")
        self.assertEqual(self.groups(), {}, "a group needs a name")
        xdotool("type", "--delay", "1", "Made by key")
        key("Return")
        wait_for(lambda: list(self.groups()) == ["Made by key"], "the group")
        self.panel.wait_until_gone("Group name")
        self.panel.wait_for("Made by key", "radio button")
        self.assert_nothing_chosen(mark)


class PickerTest(KeysTest):
    """The group picker of a card is open."""

    def open(self):
        if not self.groups():
            EditorTest.open(self)
            xdotool("type", "--delay", "1", "Work")
            key("Return")
            wait_for(self.groups, "the group")
            self.hide()
        self.show()
        click(self.panel.group_button(1))
        self.panel.wait_for("Work", "check box")
        self.panel.wait_for_focus("Work")

    def test_keys(self):
        text, mark = self.texts()[1], self.quillo.mark()
        self.open()
        press("2 z ctrl+f Return")
        self.wait_for_members("Work", text)
        self.assertIn("checked", self.panel.find("Work", "check box").states)
        self.assertEqual((self.panel.focused(), self.panel.query()), ("Work", ""))
        for name, wanted in (("Down", "New Group"), ("Up", "Work"), ("Tab", "New Group"),
                             ("shift+Tab", "Work")):
            key(name)
            self.panel.wait_for_focus(wanted)
        press("Down Return")
        self.panel.wait_for_focus("Group name")
        key("Escape")
        self.panel.wait_until_gone("New Group")
        self.panel.wait_for_focus(CARDS)
        self.open()
        key("ctrl+Escape")
        self.quillo.wait_until_hidden()
        self.assert_nothing_chosen(mark)
        self.assertEqual(active_window(), self.terminal)


if __name__ == "__main__":
    main()
