#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""What the pointer does in the panel, and where the panel stands: checked in the store, in the
programs that get what is pasted or dropped, and on the screen."""

import json
import pathlib
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
from desktop import active_window, key, run, wait_for, xdotool  # noqa: E402
from panel import (  # noqa: E402
    BAR_HEIGHT, CARD_STEP, PANEL_HEIGHT, PanelTest, click, drag, geometry, main, move_to, pixels)


class PointerTest(PanelTest):
    @classmethod
    def make_group(cls, title):
        """A group made as a person does, unless it is there."""
        if title in cls.groups():
            return
        cls.show()
        click(cls.panel.wait_for("Create new group", "push button").center)
        cls.panel.wait_for_focus("Group name")
        key("ctrl+a", "Delete")
        xdotool("type", "--delay", "1", title)
        click(cls.panel.wait_for("Create", "push button").center)
        wait_for(lambda: title in cls.groups(), f"the group {title}")
        cls.panel.wait_for(title, "radio button")
        cls.hide()

    def choose_from_menu(self, index, *entries):
        click(self.panel.point_in_card(index), 3)
        for entry in entries:
            click(self.panel.wait_for(entry, "menu item").center)


class ChoosingTest(PointerTest):
    def test_a_click_on_a_card_pastes_it(self):
        for index in (0, 2):
            with self.subTest(index):
                wanted, mark = self.texts()[index], self.quillo.mark()
                self.show()
                click(self.panel.point_in_card(index))
                self.assert_pasted(wanted, mark)

    def test_a_click_on_the_ground_or_on_a_chip_chooses_nothing(self):
        mark = self.quillo.mark()
        self.show()
        click(self.panel.ground())
        click(self.panel.wait_for("Text", "radio button").center)
        wait_for(lambda: "checked" in self.panel.find("Text", "radio button").states, "the chip")
        self.panel.wait_for_cards(*self.texts())
        click(self.panel.wait_for("Link", "radio button").center)
        self.panel.wait_for_cards()
        click(self.panel.wait_for("All", "radio button").center)
        self.panel.wait_for_cards(*self.texts())
        self.assert_nothing_chosen(mark)

    def test_close_hides(self):
        self.show()
        click(self.panel.wait_for("Close", "push button").center)
        self.quillo.wait_until_hidden()
        wait_for(lambda: active_window() == self.terminal, "the terminal's focus")

    def test_the_wheel_scrolls_the_cards(self):
        self.copy_all([f"line {number}" for number in range(8)])
        self.show()
        first, last = self.panel.strip.children[0], self.panel.strip.children[-1]
        left = first.area[0]
        move_to(self.panel.point_in_card(1))
        # Down, up, right and left.
        for button, direction in ((5, -1), (4, 1), (7, -1), (6, 1)):
            with self.subTest(button):
                before = first.area[0]
                xdotool("click", button)
                wait_for(lambda: (first.area[0] - before) * direction > 20, "the cards to scroll")
                wait_for(lambda: self.rests(first), "the glide to end")
        wait_for(lambda: first.area[0] == left, "the cards to come back")
        xdotool("click", "--repeat", 80, "--delay", 1, 5)
        right = geometry(self.quillo.panel())[2] - CARD_STEP + 12 - 16
        wait_for(lambda: last.area[0] == right, "the last card at the right end")
        self.assertEqual(self.panel.selected(), 0, "scrolling selects nothing")

    def rests(self, part):
        before = part.area
        time.sleep(0.1)
        return part.area == before


class DeletingTest(PointerTest):
    def test_the_hover_button_deletes_and_undo_brings_back(self):
        shown = self.texts()
        self.show()
        click(self.panel.delete_button(1))
        self.panel.wait_for_cards(shown[0], *shown[2:])
        self.assertEqual(self.texts(), shown, "the store still has it")
        click(self.panel.wait_for("Undo", "push button").center)
        self.panel.wait_for_cards(*shown)
        self.panel.wait_until_gone("Undo")
        click(self.panel.delete_button(4))
        self.panel.wait_for_cards(*shown[:4])
        self.hide()
        wait_for(lambda: self.texts() == shown[:4], "the clip to be gone from the store")
        self.copy_all([shown[4]])

    def test_the_menu_deletes_and_after_six_seconds_it_is_done(self):
        shown = self.texts()
        self.show()
        self.choose_from_menu(2, "Delete")
        self.panel.wait_for_cards(*shown[:2], *shown[3:])
        deleted = time.monotonic()
        wait_for(lambda: shown[2] not in self.texts(), "the clip to be gone from the store")
        self.assertGreater(time.monotonic() - deleted, 4)
        self.assertIsNone(self.panel.find("Undo"))
        self.assertTrue(self.quillo.panel())
        self.hide()
        self.copy_all([shown[2]])


class GroupsTest(PointerTest):
    def test_a_group_is_made_filled_and_shown(self):
        self.make_group("R&D")
        by_picker, by_menu, by_drop = self.texts()[:3]
        self.show()
        click(self.panel.group_button(0))
        click(self.panel.wait_for("R&D", "check box").center)
        self.wait_for_members("R&D", by_picker)
        self.assertIn("checked", self.panel.find("R&D", "check box").states)
        key("Escape")
        self.panel.wait_until_gone("New Group")
        self.choose_from_menu(1, "Move to Group", "R&D")
        self.wait_for_members("R&D", by_picker, by_menu)
        drag(self.panel.point_in_card(2), self.panel.wait_for("R&D", "radio button").center)
        self.wait_for_members("R&D", by_picker, by_menu, by_drop)

        chip = self.panel.wait_for("R&D", "radio button")
        wait_for(lambda: chip.description == "Group with 3 clips", "the chip's count")
        click(chip.center)
        wait_for(lambda: set(self.panel.cards()) == {by_picker, by_menu, by_drop}, "the members")
        self.assertIn("checked", chip.states)
        click(chip.center)
        self.panel.wait_for_cards(*self.texts())

        self.choose_from_menu(1, "Move to Group", "R&D")
        self.wait_for_members("R&D", by_picker, by_drop)
        self.choose_from_menu(0, "Move to Group", "Remove from all groups")
        self.wait_for_members("R&D", by_drop)
        self.assertEqual(len(self.texts()), 5, "no clip is lost")

    def test_a_click_beside_a_popup_only_closes_it(self):
        mark = self.quillo.mark()
        self.show()
        click(self.panel.point_in_card(1), 3)
        self.panel.wait_for("Pin", "menu item")
        click(self.panel.point_in_card(3, 250, 200))
        self.panel.wait_until_gone("Pin")
        self.assertTrue(self.quillo.panel())
        self.assert_nothing_chosen(mark)

    def test_the_picker_makes_a_group_for_its_clip(self):
        text = self.texts()[3]
        self.show()
        click(self.panel.group_button(3))
        click(self.panel.wait_for("New Group", "push button").center)
        self.panel.wait_for_focus("Group name")
        xdotool("type", "--delay", "1", "Picked")
        key("Return")
        self.wait_for_members("Picked", text)
        self.assertTrue(self.quillo.panel())


class ReorderingTest(PointerTest):
    """A group with all five clips."""

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.make_group("Order")
        cls.show()
        for index in range(5):
            drag(cls.panel.point_in_card(index),
                 cls.panel.wait_for("Order", "radio button").center)
        wait_for(lambda: len(cls.members("Order")) == 5, "five members")
        cls.hide()

    def setUp(self):
        super().setUp()
        self.show()
        click(self.panel.wait_for("Order", "radio button").center)
        wait_for(lambda: "checked" in self.panel.find("Order", "radio button").states, "the group")

    def order(self):
        return self.groups()["Order"]["order"]

    def test_a_dragged_card_takes_the_place_it_is_dropped_on(self):
        shown = self.panel.cards()
        for start, end in ((0, 2), (3, 1)):
            with self.subTest(start=start, end=end):
                wanted = list(shown)
                wanted.insert(end, wanted.pop(start))
                drag(self.panel.point_in_card(start), self.panel.point_in_card(end))
                wait_for(lambda: self.order() == wanted, f"the order {wanted}, not {self.order()}")
                self.panel.wait_for_cards(*wanted)
                shown = wanted
        self.hide()
        self.show()
        click(self.panel.wait_for("Order", "radio button").center)
        self.panel.wait_for_cards(*shown)

    def test_a_card_pinned_in_the_group_keeps_its_place(self):
        key("ctrl+p")
        pinned = wait_for(lambda: self.groups()["Order"]["pinned"], "the pin in the group")
        shown = self.panel.cards()
        self.assertEqual({shown[0]}, pinned)
        before = self.order()
        drag(self.panel.point_in_card(2), self.panel.point_in_card(0))
        # A later move tells that this one has been refused.
        drag(self.panel.point_in_card(4, 140, 200), self.panel.point_in_card(3, 140, 200))
        wait_for(lambda: self.order() != before, "the second move")
        self.assertEqual(self.order()[0], shown[0])
        self.assertEqual(self.panel.cards()[0], shown[0])
        key("Home", "ctrl+p")
        wait_for(lambda: not self.groups()["Order"]["pinned"], "the pin to go")

    def test_nothing_moves_without_a_group(self):
        click(self.panel.wait_for("Order", "radio button").center)
        self.panel.wait_for_cards(*self.texts())
        shown, before = self.panel.cards(), self.order()
        drag(self.panel.point_in_card(0), self.panel.point_in_card(2))
        self.assertEqual(self.panel.cards(), shown)
        self.assertEqual(self.order(), before)


class DragOutTest(PointerTest):
    """Cards dropped on other programs."""

    def setUp(self):
        super().setUp()
        # The panel is at the bottom, so the upper half of the screen is free.
        self.started = len(self.desktop.processes)

    def tearDown(self):
        super().tearDown()
        for process in self.desktop.processes[self.started:]:
            self.desktop.end(process)

    def place_above(self, window):
        run("wmctrl", "-i", "-r", hex(int(window)), "-e", "0,100,20,800,400")
        wait_for(lambda: geometry(window)[1] < 100 and geometry(window)[3] <= 400, "the place")
        return geometry(window)

    def test_a_text_card_in_an_editor(self):
        editor, note = self.desktop.open_editor("dropped.txt")
        left, top, width, height = self.place_above(editor)
        text = self.texts()[1]
        self.show()
        drag(self.panel.point_in_card(1), (left + width // 2, top + height // 2 + 40))
        wait_for(lambda: xdotool("getwindowname", editor).startswith("*"), "the dropped text")
        self.assertTrue(self.quillo.panel(), "the panel stays")
        self.assertEqual(self.desktop.saved_text(editor, note).strip(), text)
        self.assertNotIn("pasted", self.quillo.log_since(0))

    def test_a_file_card_in_a_file_manager(self):
        source, target = self.desktop.folder / "from", self.desktop.folder / "to"
        source.mkdir()
        target.mkdir()
        document = source / "Report & notes.pdf"
        document.write_bytes(b"%PDF-1.4\n%%EOF\n")
        self.quillo.capture(f"{document.as_uri()}\r\n", "text/uri-list")
        wait_for(lambda: self.quillo.rows()[0]["fileName"] == document.name, "the file's clip")
        self.desktop.start("pcmanfm", "--no-desktop", "--new-win", str(target))
        left, top, width, height = self.place_above(self.desktop.window("^to$"))
        self.show()
        drag(self.panel.point_in_card(0), (left + width * 2 // 3, top + height * 2 // 3))
        wait_for(lambda: (target / document.name).exists(), "the dropped file")
        wait_for(lambda: (target / document.name).read_bytes() == b"%PDF-1.4\n%%EOF\n", "its bytes")
        self.assertTrue(document.exists(), "a drag out copies")


class PlaceTest(PointerTest):
    """A panel with room beside it: window managers keep windows from the screen's edges."""

    SETTINGS = '{"panelWidth": 0.8}'

    def unlock(self):
        click(self.panel.wait_for("Pinned", "push button").center)
        self.panel.wait_for("Drag", "push button")

    def test_a_locked_panel_stays_and_an_unlocked_one_is_dragged_and_remembered(self):
        self.show()
        place = geometry(self.quillo.panel())
        start = self.panel.ground()
        drag(start, (start[0] + 60, start[1] - 150))
        self.assertEqual(geometry(self.quillo.panel()), place)
        self.unlock()
        drag(start, (start[0] + 60, start[1] - 150))
        wanted = (place[0] + 60, place[1] - 150, *place[2:])
        wait_for(lambda: geometry(self.quillo.panel()) == wanted, "the panel's new place")
        self.hide()
        for what in ("again", "after a restart"):
            with self.subTest(what):
                self.show()
                self.assertEqual(geometry(self.quillo.panel()), wanted)
                self.assertIsNotNone(self.panel.find("Drag", "push button"), "it is still unlocked")
                self.hide()
            self.quillo.stop()
            self.quillo.start()
            self.panel.objects = None
        settings = json.loads(self.quillo.config.read_text())
        self.assertEqual((settings["panelCustomX"], settings["panelCustomY"]), wanted[:2])
        self.show()
        click(self.panel.wait_for("Drag", "push button").center)
        self.panel.wait_for("Pinned", "push button")


class FocusTest(PointerTest):
    """The panel among other windows."""

    def test_the_focus_goes_back_even_if_another_window_was_clicked_meanwhile(self):
        other, typed = self.desktop.open_xterm("other")
        run("wmctrl", "-i", "-r", hex(int(other)), "-e", "0,900,40,300,200")
        self.desktop.focus(self.terminal)
        run("wmctrl", "-i", "-r", hex(int(self.terminal)), "-e", "0,20,40,500,300")
        wanted, mark = self.texts()[1], self.quillo.mark()
        self.show()
        left, top, width, height = geometry(other)
        click((left + width // 2, top + height // 2))
        wait_for(lambda: active_window() == other, "the other window's focus")
        self.assertTrue(self.quillo.panel(), "the panel stays")
        xdotool("type", "x")
        wait_for(lambda: typed.read_text() == "x", "the letter in the other window")
        click(self.panel.point_in_card(1))
        self.assert_pasted(wanted, mark)
        wait_for(lambda: active_window() == self.terminal, "the terminal's focus")
        self.assertEqual(typed.read_text(), "x")
        self.show()
        click((left + width // 2, top + height // 2))
        wait_for(lambda: active_window() == other, "the other window's focus")
        click(self.panel.wait_for("Close", "push button").center)
        self.quillo.wait_until_hidden()
        wait_for(lambda: active_window() == self.terminal, "the terminal's focus")

    def test_the_panel_has_the_focus_when_it_is_shown_again_at_once(self):
        for _ in range(4):
            self.show()
            self.quillo.pass_debounce()
            key("Escape")
            self.quillo.wait_until_hidden()
            self.quillo.show_panel()
            self.panel.wait_for_focus("Clips")

    def test_the_panel_is_seen_over_a_fullscreen_window(self):
        run("wmctrl", "-i", "-r", hex(int(self.terminal)), "-b", "add,fullscreen")
        screen = tuple(map(int, xdotool("getdisplaygeometry").split()))
        wait_for(lambda: geometry(self.terminal)[2:] == screen, "the full screen")
        wanted, mark = self.texts()[2], self.quillo.mark()
        try:
            self.show()
            left, top, width, _ = geometry(self.quillo.panel())
            self.assertEqual(top + PANEL_HEIGHT, screen[1] - 20)
            over = (left + width // 3, top + BAR_HEIGHT + 4, 60, 4)
            shown = pixels(*over)
            key("Right", "Right", "Return")
            self.assert_pasted(wanted, mark)
            wait_for(lambda: pixels(*over) != shown, "the window in the panel's place")
        finally:
            run("wmctrl", "-i", "-r", hex(int(self.terminal)), "-b", "remove,fullscreen")
        wait_for(lambda: geometry(self.terminal)[2:] != screen, "the former size")


if __name__ == "__main__":
    main()
