#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The display server goes away while Quillo runs: nothing is lost and the program ends in order."""

import contextlib
import os
import pathlib
import signal
import sqlite3
import subprocess
import sys
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
from desktop import Desktop, Quillo, ReplayOwner, noise_png, run, wait_for, xdotool  # noqa: E402

LOST = "The connection to the X server is lost"
ROUNDS = 3  # Which thread notices first differs from time to time.


@contextlib.contextmanager
def display(desktop):
    """A display server of the test's own, which it may kill; yields its process."""
    read, write = os.pipe()
    server = subprocess.Popen(
        ["Xvfb", "-displayfd", str(write), "-screen", "0", "1280x800x24", "-nolisten", "tcp",
         "-noreset"], pass_fds=(write,), stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    desktop.processes.append(server)
    os.close(write)
    outer = os.environ["DISPLAY"]
    with open(read, encoding="ascii") as number:
        os.environ["DISPLAY"] = ":" + number.readline().strip()
    try:
        desktop.start("openbox")
        wait_for(lambda: b"window id" in run("xprop", "-root", "_NET_SUPPORTING_WM_CHECK"),
                 "the window manager")
        yield server
    finally:
        os.environ["DISPLAY"] = outer
        server.kill()
        server.wait()


class DisplayLostTest(unittest.TestCase):

    def large_image(self):
        path = self.desktop.folder / "noise.png"
        if not path.exists():
            path.write_bytes(noise_png(2400, 1800))
        return ReplayOwner(self.desktop, "--target", f"image/png:image/png:{path}")

    def nothing(self):
        pass

    def panel_open(self):
        self.quillo.show_panel()

    def large_image_is_read(self):
        self.large_image()
        self.quillo.wait_for_log("Available types: image/png", self.mark)

    def large_image_is_stored(self):
        self.large_image()
        self.quillo.wait_for_log("Detected: IMAGE", self.mark)

    def many_texts_are_stored(self):
        self.desktop.copy("a long text " * 400_000)
        self.quillo.wait_for_log("Detected: TEXT", self.mark)

    def panel_is_asked_for(self):
        self.large_image()
        xdotool("key", "super+shift+v")

    def lose_display(self, situation):
        """Brings the situation about and kills the server; returns what was logged of it."""
        with display(self.desktop) as server:
            self.quillo.start()
            self.desktop.copy(f"before {situation.__name__}")
            self.quillo.wait_for_text(f"before {situation.__name__}")
            self.mark = self.quillo.mark()
            situation()
            server.send_signal(signal.SIGKILL)
            self.assertEqual(self.quillo.process.wait(5), 1)
        return self.quillo.log_since(self.mark)

    def assert_store_is_whole(self):
        detected = self.quillo.log().count("Detected: ")
        bumped = self.quillo.log().count("Duplicate ")
        self.assertEqual(len(self.quillo.rows()), detected - bumped, "a clip that was taken is lost")
        with sqlite3.connect(self.quillo.data / "Quillo.sqlite") as store:
            self.assertEqual(store.execute("PRAGMA integrity_check").fetchall(), [("ok",)])
        self.assertEqual(list(self.quillo.data.glob("set-aside-*")), [])

    def assert_nothing_is_left_running(self):
        # The program was started as the leader of its own session.
        sessions = subprocess.run(["ps", "-e", "-o", "sess="], capture_output=True, text=True,
                                  check=True).stdout.split()
        self.assertNotIn(str(self.quillo.process.pid), sessions)

    def test_whatever_it_was_doing_the_program_ends_with_everything_stored(self):
        for situation in (self.nothing, self.panel_open, self.large_image_is_read,
                          self.large_image_is_stored, self.many_texts_are_stored,
                          self.panel_is_asked_for):
            for number in range(ROUNDS):
                with self.subTest(situation.__name__, round=number), Desktop() as self.desktop:
                    self.quillo = Quillo(self.desktop, os.environ["QUILLO_PROGRAM"])
                    self.quillo.forget()
                    logged = self.lose_display(situation)
                    self.assertEqual(logged.count(LOST), 1, logged)
                    self.assert_nothing_is_left_running()
                    self.assert_store_is_whole()


if __name__ == "__main__":
    unittest.main(verbosity=2)
