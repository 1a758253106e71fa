#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The settings file edited by hand and the desktop's own light or dark change the shown panel."""

import json
import os
import pathlib
import signal
import sys
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
from desktop import HERE, QuilloTest, key, run, wait_for  # noqa: E402
from panel import geometry  # noqa: E402

LIGHT, DARK = "F0F0F2", "2C2C2E"


class AppearanceTest(QuilloTest):
    def setUp(self):
        self.window = self.quillo.show_panel()

    def tearDown(self):
        key("Escape")
        self.quillo.wait_until_hidden()

    def width(self):
        return geometry(self.window)[2]

    def ground(self):
        """The panel's colour beside its line of hints, as RRGGBB."""
        pixel = run("import", "-silent", "-window", self.window, "-crop", "1x1+120+308",
                    "-depth", "8", "rgb:-")
        return pixel[:3].hex().upper()

    def edit(self, settings):
        """Saves as editors do: a new file takes the place of the old one."""
        path = self.quillo.config
        path.parent.mkdir(parents=True, exist_ok=True)
        new = path.with_suffix(".new")
        new.write_text(settings if isinstance(settings, str) else json.dumps(settings))
        os.replace(new, path)

    def wait_for_ground(self, color):
        wait_for(lambda: self.ground() == color, f"a panel of {color}")

    def test_edits_of_the_settings_file_are_taken_over_while_the_panel_is_shown(self):
        screen = self.width()
        self.wait_for_ground(LIGHT)
        self.edit({"appTheme": "dark", "panelWidth": 0.8, "captureSound": "Frog"})
        self.wait_for_ground(DARK)
        wait_for(lambda: self.width() == round(screen * 0.8), "the narrow panel")

        self.edit('{"appTheme": "light"')
        self.quillo.wait_for_log("the settings file is no JSON", 0)
        self.assertEqual(self.ground(), DARK, "a file that is being edited changes nothing")

        self.edit({"appTheme": "light", "panelBackgroundColor": "#203040"})
        self.wait_for_ground("203040")
        wait_for(lambda: self.width() == screen, "the full width")
        self.assertEqual(json.loads(self.quillo.config.read_text()),
                         {"appTheme": "light", "panelBackgroundColor": "#203040"})
        self.edit({})
        self.wait_for_ground(LIGHT)

    def test_the_desktops_color_scheme_is_followed(self):
        self.wait_for_ground(LIGHT)
        scheme = self.desktop.folder / "scheme"
        scheme.write_text("1")
        portal = self.desktop.start("/usr/bin/python3", str(HERE / "fake_portal.py"), str(scheme))
        self.wait_for_ground(DARK)
        for value, ground in (("2", LIGHT), ("1", DARK), ("0", LIGHT)):
            scheme.write_text(value)
            portal.send_signal(signal.SIGUSR1)
            self.wait_for_ground(ground)


if __name__ == "__main__":
    unittest.main(verbosity=2)
