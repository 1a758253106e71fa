#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The library window of the built program with real keys and a real pointer: what they do is read
from the store, the real clipboard and the programs that get something."""

import pathlib
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
from desktop import key, run, wait_for, xdotool  # noqa: E402
from library import Browser, FileManager, LibraryTest, add_clips  # noqa: E402
from panel import Panel, click, drag, geometry, main  # noqa: E402

MARKER = "com.quillohq.Quillo.marker"
LINK = "https://docs.example.org/handbook"
RICH = rb"{\rtf1\ansi Quarterly \b summary\b0\par}"
SECOND_THOUGHTS = 8  # How long a deleted clip can come back, in seconds.


class ListTest(LibraryTest):
    def test_the_panel_and_the_desktop_entry_lead_to_the_one_window(self):
        self.close()
        panel = Panel(self.quillo)
        self.quillo.show_panel()
        panel.wait_for_focus("Clips")
        click(panel.wait_for("Library", "push button").center)
        self.arrive()
        first = self.window
        self.desktop.focus(self.terminal)
        self.open()
        self.assertEqual(self.window, first)

    def test_sections_with_counts_that_follow_what_happens(self):
        shown = self.texts()
        self.library.wait_for_cards(*shown)
        self.make_pinboard("Counted")
        self.library.wait_for_counts(All_Clips=len(shown), Favorites=0, Counted=0)
        self.library.choose(shown[1])
        self.library.press("Pin")
        wait_for(lambda: self.row(shown[1])["isPinned"], "the pin in the store")
        self.library.press("Counted", "check box")
        self.wait_for_members("Counted", shown[1])
        for keys, title in (("ctrl+2", "Favorites"), ("ctrl+3", "Counted")):
            with self.subTest(title):
                key(keys)
                self.library.wait_for_title(title)
                self.library.wait_for_cards(shown[1])
                key("ctrl+1")
                self.library.wait_for_cards(*shown)
        self.copy_all(["came later"])
        self.library.wait_for_cards("came later", *shown)
        self.library.wait_for_counts(All_Clips=len(shown) + 1, Favorites=1, Counted=1)
        self.library.press("Unpin")
        wait_for(lambda: not self.row(shown[1])["isPinned"], "no pin in the store")
        self.library.press("Counted", "check box")
        self.wait_for_members("Counted")
        self.library.wait_for_counts(Favorites=0, Counted=0)
        for title in ("Favorites", "Counted"):
            self.library.show_section(title)
            self.library.wait_for("No clips yet", "label")
            self.assertIsNone(self.library.find("Clear Filters"))

    def test_search_and_type_narrow_the_list(self):
        self.copy_all([LINK])
        texts = self.texts()
        # Typed on the cards, a letter goes into the field.
        self.type("t")
        self.library.wait_for_focus("Search clips")
        for query in ("t", "   ", " TWO ", "Handbook"):
            with self.subTest(query):
                key("ctrl+f", "Delete")
                self.type(query)
                self.library.wait_for_query(query)
                self.library.wait_for_cards(
                    *(text for text in texts if query.strip().lower() in text.lower()))
        self.library.press("Type: All Types", None)
        self.library.choose_entries("Link")
        self.library.wait_for_cards(LINK)
        key("ctrl+f", "Delete")
        self.type("two")
        self.library.wait_for("No matching clips", "label")
        self.library.press("Clear Filters")
        self.library.wait_for_cards(*texts)
        self.library.wait_for("Type: All Types")
        self.assertEqual(self.library.query(), "")


class CopyTest(LibraryTest):
    def test_what_is_copied_is_on_the_clipboard_and_no_new_clip(self):
        texts, library = self.texts(), self.library
        def chosen(text):
            library.choose(text)
            return library.card(text)
        ways = {
            "Return": lambda text: chosen(text) and key("Return"),
            "Control-C": lambda text: chosen(text) and key("ctrl+c"),
            "a double click": lambda text: xdotool(
                "mousemove", *library.card(text).center, "click", "--repeat", 2, "--delay", 60, 1),
            "the menu": lambda text: library.choose_from_menu(library.card(text), "Copy"),
            "the detail pane": lambda text: chosen(text) and library.press("Copy")}
        for (name, way), text in zip(ways.items(), texts):
            with self.subTest(name):
                way(text)
                self.wait_for_clipboard(text)
                self.assertIn(MARKER, self.desktop.clipboard_targets())
        library.press("Transform", None)
        library.choose_entries("UPPERCASE")
        self.wait_for_clipboard(texts[4].upper())
        # What another program copies afterwards tells that nothing of the above was captured.
        self.copy_all(["the next"])
        self.assertEqual(self.texts(), ["the next", *texts])

    def test_a_document_keeps_its_form_and_a_part_of_it_can_be_copied(self):
        self.quillo.capture(RICH, "text/rtf")
        self.library.choose("Quarterly summary")
        self.library.press("Copy")
        wait_for(lambda: "text/rtf" in self.desktop.clipboard_targets(), "the document")
        self.assertIn(rb"\b", self.desktop.clipboard("text/rtf"))
        self.wait_for_clipboard("Quarterly summary")
        content = next(part for part in self.library.wait_for("Details").walk()
                       if part.name == "Content" and "focusable" in part.states)
        left, top, _, _ = content.area
        xdotool("mousemove", left + 30, top + 8, "click", "--repeat", 2, "--delay", 60, 1)
        key("ctrl+c")
        self.wait_for_clipboard("Quarterly")
        before = self.texts()
        self.assertEqual(before[0], "Quarterly summary")
        self.copy_all(["after the part"])
        self.assertEqual(self.texts(), ["after the part", *before])


class SeveralTest(LibraryTest):
    def test_several_are_selected_with_keys_and_pointer(self):
        texts, library = self.texts(), self.library
        steps = (
            ("a click", lambda: click(library.card(texts[1]).center), (1,)),
            ("with Control", lambda: library.click_with("ctrl", texts[3]), (1, 3)),
            ("again", lambda: library.click_with("ctrl", texts[1]), (3,)),
            ("with Shift", lambda: library.click_with("shift", texts[4]), (1, 2, 3, 4)),
            ("all", lambda: key("ctrl+a"), (0, 1, 2, 3, 4)),
            ("the first", lambda: key("Home"), (0,)),
            ("Shift and arrows", lambda: key("shift+Right", "shift+Right"), (0, 1, 2)),
            ("back", lambda: key("shift+Left"), (0, 1)),
            ("one of them", lambda: key("Escape"), (1,)),
            ("a band", lambda: drag(library.gap_after(texts[4]), library.card(texts[1]).center),
             (1, 4)))
        for name, step, wanted in steps:
            with self.subTest(name):
                step()
                library.wait_for_chosen(*(texts[index] for index in wanted))

    def test_several_are_copied_pinned_and_put_on_a_pinboard(self):
        texts, library = self.texts(), self.library
        self.make_pinboard("Several")
        library.choose(texts[3], texts[0], texts[2])
        library.wait_for("Details").wait_for("Delete", "push button")
        key("ctrl+c")
        self.wait_for_clipboard("\n".join((texts[0], texts[2], texts[3])))
        library.choose_from_menu(library.card(texts[2]), "Pin")
        wait_for(lambda: all(self.row(texts[i])["isPinned"] for i in (0, 2, 3)), "the pins")
        library.wait_for_counts(Favorites=3)
        library.choose_from_menu(library.card(texts[2]), "Add to Pinboard", "Several")
        self.wait_for_members("Several", texts[0], texts[2], texts[3])
        library.wait_for_chosen(texts[0], texts[2], texts[3])
        self.assertFalse(self.row(texts[1])["isPinned"])

    def test_what_is_deleted_comes_back_until_it_is_too_late(self):
        texts, library = self.texts(), self.library
        for how in (lambda: library.press("Undo"), lambda: key("ctrl+z")):
            library.choose(texts[1], texts[3])
            key("Delete")
            library.wait_for_cards(texts[0], texts[2], texts[4])
            library.wait_for_counts(All_Clips=3)
            library.wait_for("2 clips deleted")
            self.assertEqual(self.texts(), texts, "the store still has them")
            how()
            library.wait_for_cards(*texts)
            library.wait_for_counts(All_Clips=5)
            library.wait_until_gone("Undo")
        key("ctrl+a", "Delete")
        library.wait_for("No clips yet", "label")
        key("ctrl+z")
        library.wait_for_cards(*texts)
        library.choose_from_menu(library.card(texts[1]), "Delete")
        library.wait_for_cards(texts[0], *texts[2:])
        library.wait_for_chosen(texts[2])
        deleted = time.monotonic()
        wait_for(lambda: self.texts() == [texts[0], *texts[2:]], "the clip to be gone",
                 SECOND_THOUGHTS + 7)
        self.assertGreater(time.monotonic() - deleted, SECOND_THOUGHTS - 2)
        library.wait_until_gone("Undo")
        key("Delete")
        library.wait_for_cards(texts[0], *texts[3:])
        self.close()
        wait_for(lambda: self.texts() == [texts[0], *texts[3:]], "the clip to go with the window",
                 SECOND_THOUGHTS / 2)
        self.copy_all([texts[2], texts[1]])


class PinboardsTest(LibraryTest):
    TITLES = ("Work", "Recipes", "Travel")

    def setUp(self):
        super().setUp()
        if not self.groups():
            plus = self.library.wait_for("Sections").wait_for("New Pinboard")
            ways = (lambda: click(plus.center), lambda: key("ctrl+n"),
                    lambda: self.library.press("New Pinboard"))
            for title, way in zip(self.TITLES, ways):
                self.make_pinboard(title, way)

    def order(self):
        """The pinboards in the store, by their places."""
        return [(group["sortIndex"], title) for title, group in self.groups().items()]

    def wait_for_order(self, *titles):
        wait_for(lambda: self.order() == list(enumerate(titles)),
                 f"the order {titles}, not {self.order()}", 5)
        wait_for(lambda: tuple(self.library.counts())[2:] == titles, "the order in the sidebar")

    def test_one_is_made_with_a_color_or_not_at_all(self):
        before = self.order()
        self.library.press("New Pinboard")
        self.library.wait_for_focus("Name")
        self.type("   ")
        key("Return")
        # A click on a color leaves the keyboard to the name.
        self.library.press("Green", "radio button")
        self.type("Made ")
        key("Return")
        made = wait_for(lambda: self.groups().get("Made"), "the pinboard without the blanks")
        self.assertEqual(made["colorHex"], "#6BCB77")
        self.assertEqual(made["sortIndex"], before[-1][0] + 1)
        key("ctrl+n")
        self.library.wait_for_focus("Name")
        self.type("cancelled")
        key("Escape")
        self.library.wait_until_gone("Create")
        self.library.choose_from_menu(self.library.section("Made"), "Delete")
        wait_for(lambda: self.order() == before, "the pinboards as before")

    def test_one_is_renamed_and_recolored(self):
        for how, name, title in (
                (lambda: self.library.choose_from_menu(self.library.section("Travel"), "Rename"),
                 " R&D ", " R&D "),
                (lambda: (click(self.library.section(" R&D ").center), key("F2")), "", "Untitled"),
                (lambda: key("F2"), "Travel", "Travel")):
            with self.subTest(title):
                how()
                self.library.wait_for_focus("Name")
                key("ctrl+a", "Delete")
                self.type(name)
                key("Return")
                wait_for(lambda: name in self.groups(), f"the name {name!r}")
                self.library.section(title)
        self.library.choose_from_menu(self.library.section("Travel"), "Change Color", "Pink")
        wait_for(lambda: self.groups()["Travel"]["colorHex"] == "#00D9FF", "the color")

    def test_one_is_deleted_and_comes_back_as_it_was(self):
        texts = self.texts()
        self.library.choose(texts[2])
        self.library.press("Recipes", "check box")
        self.wait_for_members("Recipes", texts[2])
        def pinboards():
            return [(title, group["sortIndex"], group["colorHex"], group["members"])
                    for title, group in self.groups().items()]
        before = pinboards()
        for delete, undo in (
                (lambda: self.library.choose_from_menu(self.library.section("Recipes"), "Delete"),
                 lambda: key("ctrl+z")),
                (lambda: key("Delete"), lambda: self.library.press("Undo"))):
            self.library.show_section("Recipes")
            delete()
            wait_for(lambda: "Recipes" not in self.groups(), "the pinboard to go")
            self.library.wait_for_title("All Clips")
            self.library.wait_for_focus("All Clips")
            self.library.wait_for_cards(*texts)
            undo()
            wait_for(lambda: pinboards() == before, "it as it was")
            self.library.wait_for_counts(Recipes=1)

    def test_they_are_put_in_order(self):
        one, two, three = self.groups()
        def drag_to(title, other, below):
            x, y = self.library.section(other).center
            drag(self.library.section(title).center, (x, y + below))
        drag_to(one, three, 8)
        self.wait_for_order(two, three, one)
        drag_to(one, two, -8)
        self.wait_for_order(one, two, three)
        self.library.show_section(one)
        for keys, wanted in (("alt+Down", (two, one, three)), ("alt+Down", (two, three, one)),
                             ("alt+Down", (two, three, one)), ("alt+Up", (two, one, three)),
                             ("alt+Up", (one, two, three))):
            key(keys)
            self.wait_for_order(*wanted)

    def test_cards_are_dropped_on_pinboards_and_favorites(self):
        texts, library = self.texts(), self.library
        drag(library.card(texts[0]).center, library.section("Work").center)
        self.wait_for_members("Work", texts[0])
        library.choose(texts[3], texts[1])
        drag(library.card(texts[3]).center, library.section("Work").center)
        self.wait_for_members("Work", texts[0], texts[1], texts[3])
        library.wait_for_counts(Work=3)
        library.show_section("Work")
        shown = wait_for(lambda: len(cards := library.cards()) == 3 and cards, "the members")
        last, _, width, _ = library.card(shown[2]).area
        drag(library.card(shown[0]).center, (last + width - 8, library.card(shown[2]).center[1]))
        wait_for(lambda: self.groups()["Work"]["order"] == [*shown[1:], shown[0]], "the order")
        library.wait_for_cards(*shown[1:], shown[0])
        library.show_section("All Clips")
        library.wait_for_cards(*texts)
        drag(library.card(texts[4]).center, library.section("Favorites").center)
        wait_for(lambda: self.row(texts[4])["isPinned"], "the dropped clip among the favorites")
        library.wait_for_counts(Favorites=1)


class ProgramsTest(LibraryTest):
    """What other programs get."""

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.browser = Browser(cls.desktop.folder)
        cls.restart(env=cls.browser.environment)

    def test_a_link_opens_in_the_browser(self):
        self.copy_all([LINK])
        self.library.choose(LINK)
        self.library.press("Open Link")
        self.browser.wait_for(LINK)

    def test_a_file_is_shown_in_the_file_manager_and_copied_as_a_file(self):
        document = self.desktop.folder / "Report notes.pdf"
        document.write_bytes(b"%PDF-1.4\n%%EOF\n")
        manager = FileManager()
        self.addCleanup(manager.stop)
        self.quillo.capture(f"{document.as_uri()}\r\n", "text/uri-list")
        wait_for(lambda: self.quillo.rows()[0]["fileName"] == document.name, "the file's clip")
        wait_for(lambda: self.library.strip.children[0].name.startswith("PDF: "), "its card")
        click(self.library.strip.children[0].center)
        self.library.press("Show in File Manager")
        manager.wait_for(document.as_uri())
        self.library.press("Copy")
        wait_for(lambda: document.as_uri().encode() in self.desktop.clipboard("text/uri-list"),
                 "the file on the clipboard")

    def test_cards_are_dropped_on_an_editor(self):
        editor, note = self.desktop.open_editor("dropped.txt")
        run("wmctrl", "-i", "-r", hex(int(editor)), "-e", "0,960,100,440,500")
        run("wmctrl", "-i", "-r", hex(int(self.window)), "-e", "0,20,60,900,620")
        wait_for(lambda: geometry(editor)[0] >= 960 and geometry(self.window)[0] < 60, "room")
        self.desktop.focus(self.window)
        self.library.choose("two", "four")
        left, top, width, height = geometry(editor)
        drag(self.library.card("two").center, (left + width // 2, top + height // 2))
        wait_for(lambda: xdotool("getwindowname", editor).startswith("*"), "the dropped text")
        self.assertEqual(self.desktop.saved_text(editor, note).strip(), "four\ntwo")


class WindowTest(LibraryTest):
    """A longer history, live; columns and frame."""

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.restart(lambda: add_clips(cls.quillo, 60))

    def test_what_is_captured_does_not_move_what_is_seen(self):
        library = self.library
        key("Home", "Next", "Next", "Right")
        wait_for(lambda: len(library.chosen()) == 1, "a card")
        chosen, = library.chosen()
        self.assertTrue(chosen.startswith("older"), chosen)
        for number in range(4):
            left, top, _, _ = library.card(chosen).area
            self.copy_all([f"live {number}"])
            # The rows are filled anew, so it moves along its row.
            wait_for(lambda: library.card(chosen).area[0] != left, "the list with the new clip")
            self.assertEqual(library.card(chosen).area[1], top)
            self.assertEqual(library.chosen(), [chosen])
        library.wait_for_counts(All_Clips=69)
        key("Return")
        self.wait_for_clipboard(chosen)
        key("Home")
        library.wait_for_chosen("live 3")
        self.copy_all(["at the top"])
        wait_for(lambda: library.card("at the top").is_showing(), "the new card in sight")

    def test_columns_go_and_come(self):
        for keys, name in (("F9", "Sections"), ("ctrl+i", "Details")):
            with self.subTest(name):
                self.library.wait_for(name)
                key(keys)
                self.library.wait_until_gone(name)
                key(keys)
                self.library.wait_for(name)
        self.library.choose("one")
        click(self.library.wait_for("Copy").center)
        key("ctrl+i")
        self.library.wait_for_focus("Clips")
        self.close()
        self.open()
        self.assertIsNone(self.library.find("Details"))
        key("ctrl+i")
        self.library.wait_for("Details")

    def test_frame_and_columns_are_kept_over_a_restart(self):
        run("wmctrl", "-i", "-r", hex(int(self.window)), "-e", "0,100,80,1120,640")
        wait_for(lambda: geometry(self.window)[2:] == (1120, 640), "the window's size")
        for name, wanted in (("Sections", 240), ("Details", 360)):
            left, top, width, _ = self.library.wait_for(name).area
            edge, end = ((left + width, left + wanted) if name == "Sections"
                         else (left - 1, left + width - wanted))
            drag((edge, top + 300), (end, top + 300))
            wait_for(lambda: abs(self.library.wait_for(name).area[2] - wanted) < 3, "the width")
        before = geometry(self.window), self.widths()
        self.restart()
        self.assertEqual((geometry(self.window), self.widths()), before)

    def widths(self):
        return [self.library.wait_for(name).area[2] for name in ("Sections", "Clips", "Details")]


class AccessibilityTest(LibraryTest):
    CLIPS = ("one", "two", "three")
    # Layouts, lines and pictures, which nobody turns to.
    UNNAMED = {"filler", "splitter", "grip", "graphic", "label"}

    def test_every_control_has_a_name_and_the_tab_key_leads_round(self):
        self.make_pinboard("Work")
        self.library.choose("two")
        parts = list(self.library.root.walk())
        self.assertEqual([part for part in parts
                          if not part.name and part.role not in self.UNNAMED], [])
        stops = {part.name for part in parts if "focusable" in part.states
                 and part.role not in ("list item", *self.UNNAMED)} | {"All Clips", "Content"}
        self.assertLessEqual({"New Pinboard", "Search clips", "Type: All Types", "Clips", "Copy",
                              "Transform", "Pin", "Work"}, stops)
        for keys in ("Tab", "shift+Tab"):
            with self.subTest(keys):
                reached, here = set(), self.library.focused_part()
                for _ in range(len(stops) + 4):
                    key(keys)
                    here = wait_for(lambda: (now := self.library.focused_part()) != here and now,
                                    f"the focus after {here!r}")
                    reached.add(here.name)
                    if here.name == "Clips":
                        break
                self.assertEqual(reached, stops)

    def test_cards_tell_what_they_are_and_do_what_they_offer(self):
        library = self.library
        library.choose("two")
        card = library.card("two")
        self.assertEqual(card.name, "Text: two")
        self.assertLessEqual({"selected", "focused", "showing"}, card.states)
        library.card("one").do("Copy")
        self.wait_for_clipboard("one")
        library.wait_for_chosen("one")
        for how in (lambda: key("shift+F10"), lambda: key("Menu"),
                    lambda: library.card("three").do("ShowMenu")):
            how()
            library.wait_for("Pin", "menu item")
            key("Escape")
            library.wait_for_focus("Clips")
        library.card("three").do("ShowMenu")
        library.choose_entries("Pin")
        wait_for(lambda: self.row("three")["isPinned"], "the pin")
        self.assertIn("Pinned", library.card("three").description)
        library.card("three").do("Delete")
        library.wait_for_cards("two", "one")
        library.wait_for("Undo", "push button").do("Press")
        library.wait_for_cards("three", "two", "one")


if __name__ == "__main__":
    main()
