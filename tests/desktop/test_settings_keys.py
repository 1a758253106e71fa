#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Whatever stands in the settings file, the program starts, captures and shows its panel, and leaves
what it does not understand as it is."""

import json
import os
import pathlib
import sys
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
from desktop import Desktop, Quillo, key  # noqa: E402
from panel import PANEL_HEIGHT, geometry  # noqa: E402

STRINGS = ("statusBarIcon", "appTheme", "captureSound", "imageBadgeSize", "panelPosition",
           "panelBackgroundColor", "filterBadgeColor_link", "clipTypeColor_0", "clipTypeBgColor_0")
BOOLS = ("enableAutoPaste", "launchAtLogin", "captureImages", "captureFiles", "fetchLinkPreviews",
         "panelPositionLocked", "panelHasCustomOrigin", "filterChipVisible_text")
NUMBERS = ("hotkeyModifiers", "maxHistoryItems", "captureSoundVolume", "panelCustomX",
           "panelCustomY", "panelOpacity", "panelWidth", "itemOpacity", "clipTypeBgOpacity_0")
KEYS = (*STRINGS, *BOOLS, *NUMBERS, "hotkeyKeyCode", "filterChipOrder")
# The shortcut's code is left alone where the panel is to be shown with the usual keys.
SHORTCUT = {"hotkeyKeyCode": 9, "hotkeyModifiers": 768}
SIZE = (1440, 900)


def settings(string, boolean, number, chips):
    return {**dict.fromkeys(STRINGS, string), **dict.fromkeys(BOOLS, boolean),
            **dict.fromkeys(NUMBERS, number), "filterChipOrder": chips}


class SettingsKeysTest(unittest.TestCase):
    ROWS = {
        "null": dict.fromkeys(KEYS),
        "wrong types": {**settings(7, "true", "0.5", "text"), "hotkeyKeyCode": "V"},
        "lists and objects": {**settings([], {}, [1], {"text": 1}), "hotkeyKeyCode": [9]},
        "empty": {**settings("", False, 0, []), **SHORTCUT},
        "huge": {**settings("x" * 100_000, True, 1e308, ["text"] * 10_000), **SHORTCUT},
        "negative": {**settings("#GGGGGG", True, -9223372036854775808, ["x", "text", "text"]),
                     **SHORTCUT},
        "nearly right": {**settings("Auto ", True, 0.30000000000000004, ["Text"]), **SHORTCUT}}

    def setUp(self):
        self.desktop = Desktop()
        self.addCleanup(self.desktop.__exit__)
        self.quillo = Quillo(self.desktop, os.environ["QUILLO_PROGRAM"])

    def test_no_value_keeps_the_program_from_its_work_or_is_written_over(self):
        for name, values in self.ROWS.items():
            with self.subTest(name):
                self.quillo.forget()
                self.quillo.config.parent.mkdir(parents=True)
                text = json.dumps(values)
                self.quillo.config.write_text(text)
                self.quillo.start()
                for number in range(3):
                    self.desktop.copy(f"{name} {number}")
                    self.quillo.wait_for_text(f"{name} {number}")
                self.assertEqual(len(self.quillo.rows()), 3, "no limit")
                left, top, width, height = geometry(self.quillo.show_panel())
                self.assertEqual(height, PANEL_HEIGHT)
                self.assertTrue(0 <= left and left + width <= SIZE[0], (left, width))
                self.assertTrue(0 <= top and top + height <= SIZE[1], (top, height))
                key("Escape")
                self.quillo.wait_until_hidden()
                self.assertEqual(self.quillo.stop(), 0)
                self.assertEqual(self.quillo.config.read_text(), text)


if __name__ == "__main__":
    unittest.main(verbosity=2)
