#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Typing in the panel narrows the cards; Return means the newest search. With QUILLO_SEARCH_STORE
the store there is searched instead, and QUILLO_SCREENSHOTS gets a picture of each step."""

import os
import pathlib
import shutil
import sys
import time
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
from desktop import QuilloTest, key, main_guard, screenshot, wait_for, xdotool  # noqa: E402

WANTED = "Die STRASSE nach Süden, number 77"
BIG = os.environ.get("QUILLO_SEARCH_STORE")
PICTURES = os.environ.get("QUILLO_SCREENSHOTS")


class SearchTest(QuilloTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        if BIG:
            cls.quillo.stop()
            shutil.rmtree(cls.quillo.data, ignore_errors=True)
            shutil.copytree(BIG, cls.quillo.data)
            cls.quillo.start()
        cls.editor, cls.note = cls.desktop.open_editor()

    def type_and_choose(self, text):
        """Types at ten letters a second and presses Return at once after the last one."""
        self.desktop.focus(self.editor)
        key("ctrl+a", "Delete")
        self.quillo.show_panel()
        xdotool("type", "--delay", "100", text)
        if PICTURES:
            time.sleep(0.3)
            screenshot(f"{PICTURES}/search-{text.split()[0]}.png")
        key("Return")
        self.quillo.wait_until_hidden()
        wait_for(lambda: xdotool("getwindowname", self.editor).startswith("*"), "the paste")
        return self.desktop.saved_text(self.editor, self.note)

    def test_return_takes_the_first_card_of_the_newest_search(self):
        self.copy(WANTED)
        for number in range(3):
            self.copy(f"straight to the strand, number {number}")
        # Each letter before the last one finds the newer clips first.
        self.assertEqual(self.type_and_choose("stra").strip(), "straight to the strand, number 2")
        self.assertEqual(self.type_and_choose("strasse").strip(), WANTED)

    def test_the_search_is_gone_when_the_panel_comes_again(self):
        self.copy("the newest of all")
        self.quillo.show_panel()
        xdotool("type", "nothing at all")
        key("Escape")
        self.quillo.wait_until_hidden()
        self.desktop.focus(self.editor)
        key("ctrl+a", "Delete")
        self.quillo.show_panel()
        key("Return")
        self.quillo.wait_until_hidden()
        wait_for(lambda: "the newest of all" in self.desktop.saved_text(self.editor, self.note),
                 "the newest clip")


if __name__ == "__main__":
    main_guard(unittest.main)
