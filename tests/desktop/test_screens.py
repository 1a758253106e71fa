#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The panel comes up on the screen of the window that has the focus, at every scale factor."""

import pathlib
import sys
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
from desktop import QuilloTest, key, run, xdotool  # noqa: E402
from panel import geometry  # noqa: E402

WIDTH, HEIGHT = 1440, 900
PANEL_HEIGHT, MARGIN = 320, 20


class ScreensTest(QuilloTest):
    """Two screens side by side on one display, which is twice as wide."""

    @classmethod
    def setUpClass(cls):
        # The millimetres stand for an ordinary density.
        for name, left, output in (("left", 0, "screen"), ("right", WIDTH, "none")):
            run("xrandr", "--setmonitor", name, f"{WIDTH}/380x{HEIGHT}/238+{left}+0", output)
        super().setUpClass()
        cls.terminal, _ = cls.desktop.open_xterm()

    def panel_place(self):
        window = self.quillo.show_panel()
        place = geometry(window)
        key("Escape")
        self.quillo.wait_until_hidden()
        return place

    def test_the_panel_is_where_the_focus_is_whatever_the_scale(self):
        for scale in (1, 1.25, 1.5, 2):
            self.quillo.stop()
            self.quillo.start(env={"QT_SCALE_FACTOR": str(scale)})
            height = round(PANEL_HEIGHT * scale)
            top = HEIGHT - height - round(MARGIN * scale)
            for left in (WIDTH, 0):
                with self.subTest(scale=scale, left=left):
                    xdotool("windowmove", "--sync", self.terminal, left + 300, 100)
                    self.desktop.focus(self.terminal)
                    x, y, width, panel_height = self.panel_place()
                    self.assertEqual((x, width, panel_height), (left, WIDTH, height))
                    self.assertAlmostEqual(y, top, delta=1)


if __name__ == "__main__":
    unittest.main(verbosity=2)
