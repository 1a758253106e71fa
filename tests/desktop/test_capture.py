#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""What is copied in a program becomes a clip and outlives that program."""

import os
import pathlib
import signal
import sqlite3
import struct
import subprocess
import sys
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
from desktop import (  # noqa: E402
    Desktop, Quillo, QuilloTest, ReplayOwner, key, run, visible_windows, wait_for)

DATA = pathlib.Path(__file__).resolve().parent.parent / "data" / "clipboard"
MARKER = "com.quillohq.Quillo.marker"
TEXT, RTF, HTML, IMAGE, FILE = range(5)
IGNORED = "Skipping sensitive content"
EMPTIED = "The pasteboard is empty"

TEXTAREA = "plain text area\nsecond line with tab\tand ünïcödé 🎉\n"
FIRST_FILE = {"type": FILE, "fileName": "a.txt", "plaintext": None, "imageSize": None,
              "urlString": "file:///home/user/doc/files/dir/a.txt"}
FOLDER = {"type": FILE, "fileName": "Sub folder ü", "plaintext": None, "fileSize": 0,
          "urlString": "file:///home/user/doc/files/dir/Sub%20folder%20%C3%BC"}

# In this order; what a clip equals that came before is the same clip, brought to the front.
RECORDED = {
    "abiword-doc": {"type": RTF, "imageSize": None,
                    # The program's own RTF has both spaces behind the picture.
                    "plaintext": "Writer bold italic red ünïcödé – 日本語🎉  link\n"
                                 "A1\tB1\nA2\tB2\n\nlast"},
    "calc-cells": {"type": RTF, "imageSize": None,
                   "plaintext": "Name\tQty\tPrice\nÄpfel\t3\t1.5\n"
                                "Bananas, ripe\t12\t0.25\nTotal\t\t7.5"},
    "chromium-addressbar": {"type": TEXT, "plaintext": "http://127.0.0.1:8177/page.html",
                            "urlString": "http://127.0.0.1:8177/page.html",
                            "urlHost": "127.0.0.1"},
    "chromium-image": {"type": IMAGE, "imageSize": (48, 32), "plaintext": None},
    "chromium-link": {"type": TEXT, "urlHost": "example.com",
                      "urlString": "https://example.com/some/where?x=1&y=%C3%BC",
                      "plaintext": "https://example.com/some/where?x=1&y=%C3%BC"},
    "chromium-rich": {"type": HTML, "urlString": None,
                      "found": ("Heading one", "text with ünïcödé — 日本語 🎉 and a link text.")},
    "chromium-textarea": {"type": TEXT, "plaintext": TEXTAREA, "urlString": None},
    "firefox-image": {"type": IMAGE, "imageSize": (48, 32), "plaintext": None},
    "firefox-textarea": {"type": TEXT, "plaintext": TEXTAREA, "isBump": True},
    "keepassxc-password": None,
    "mousepad-text": {"type": TEXT, "plaintext": "mousepad line one\n\tindented ünïcödé 日本 🎉\n"
                                                 "last line\n"},
    "pcmanfm-cutfolder": FOLDER,
    "qt6-html": {"type": HTML, "plaintext": "Qt6 bold ü it"},
    "qt6-rtf": {"type": HTML, "found": ("Hello bold red ü",)},
    "qt6-urls": FIRST_FILE,
    "thunar-folder": {**FOLDER, "isBump": True},
    "thunar-onefile": {**FIRST_FILE, "isBump": True},
    "thunar-threefiles": {**FIRST_FILE, "isBump": True},
    "writer-line": {"type": RTF, "plaintext": "Writer bold italic red ünïcödé – 日本語 🎉 link"},
    "xclip-png": {"type": IMAGE, "imageSize": (48, 32)},
    "xclip-text": {"type": TEXT, "plaintext": "xclip ünïcödé 🎉", "urlString": None},
    "xterm-line": {"type": TEXT, "plaintext": "xterm line ünïcödé 日本\n"},
}

# Copies as fast as a program can that owns the clipboard itself; prints how long it took.
QUICK_COPIES = """
import sys, time, gi
gi.require_version("Gtk", "3.0")
from gi.repository import Gdk, GLib, Gtk
clipboard = Gtk.Clipboard.get(Gdk.SELECTION_CLIPBOARD)
count, start = 0, time.monotonic()
def copy():
    global count
    count += 1
    clipboard.set_text(f"quick copy {count}", -1)
    if count == 20:
        Gdk.flush()
        print(time.monotonic() - start, flush=True)
    return count < 20
GLib.timeout_add(15, copy)
Gtk.main()
"""


def image_size(png):
    return struct.unpack(">II", png[16:24]) if png and png.startswith(b"\x89PNG") else None


class RecordedTest(QuilloTest):
    """What each kind of contents is stored as."""

    def row_with_image(self):
        row = self.quillo.rows(
            "SELECT Clip.*, h.imageData, h.fileBookmark, h.attributed FROM Clip "
            "LEFT JOIN ClipHeavy h USING (id) ORDER BY createdAt DESC LIMIT 1")[0]
        return {**row, "imageSize": image_size(row["imageData"])}

    def expect(self, expected):
        row = self.row_with_image()
        # A document's last line end, and the tags of one that is searched, are not the point.
        if row["type"] in (RTF, HTML):
            row["plaintext"] = row["plaintext"].strip("\n")
        for text in expected.get("found", ()):
            self.assertIn(text, row["plaintext"])
            self.assertNotIn("<", row["plaintext"])
        wanted = {k: v for k, v in expected.items() if k in row}
        self.assertEqual({k: row[k] for k in wanted}, wanted)

    def test_recorded_clipboards_become_the_clips_that_a_person_expects(self):
        self.assertEqual(set(RECORDED), {folder.name for folder in DATA.iterdir()})
        for name, expected in RECORDED.items():
            with self.subTest(name):
                rows = self.quillo.rows()
                mark = self.quillo.mark()
                owner = ReplayOwner(self.desktop, "--manifest", DATA / name)
                if expected is None:
                    self.quillo.wait_for_log(IGNORED, mark)
                    self.assertEqual(self.quillo.rows(), rows)
                else:
                    wait_for(lambda: self.quillo.rows()[:1] != rows[:1], f"a clip of {name}")
                    isNew = not expected.get("isBump")
                    self.assertEqual(len(self.quillo.rows()), len(rows) + isNew)
                    self.expect(expected)
                self.desktop.end(owner.process)

    def test_a_real_file_is_known_by_size_kind_and_bookmark(self):
        path = self.desktop.folder / "Bericht #1 ü.pdf"
        path.write_bytes(b"%PDF-1.4\n%%EOF\n")
        for target, data in (("text/uri-list", path.as_uri() + "\r\n"),
                             ("x-special/gnome-copied-files", "copy\n" + path.as_uri())):
            with self.subTest(target):
                self.copy(data, target)
                row = self.row_with_image()
                self.assertEqual((row["type"], row["fileName"], row["fileSize"], row["fileUTI"]),
                                 (FILE, path.name, 15, "com.adobe.pdf"))
                self.assertTrue(row["fileBookmark"])
                self.copy(f"between files {target}")


class CaptureTest(QuilloTest):
    """The cases share one running program."""

    def choose(self, digit, mark):
        """Chooses a card of the open panel and returns the text that is then on the clipboard."""
        key(digit)
        self.quillo.wait_until_hidden()
        wait_for(lambda: MARKER in self.desktop.clipboard_targets(), "the chosen clip's marker")
        self.quillo.wait_for_log("Skipping clipboard capture due to custom marker", mark)
        return self.desktop.clipboard().decode()

    def owner(self):
        return int(subprocess.check_output([os.environ["QUILLO_READ_SELECTION"], "--owner"]))

    def assert_stays_empty(self, mark):
        self.quillo.wait_for_log(EMPTIED, mark)
        self.assertEqual(self.owner(), 0)

    def test_the_contents_survive_the_program_that_copied(self):
        texts = {"short": "outlives its program ünïcödé\n", "long": "0123456789abcde\n" * 131072}
        for name, text in texts.items():
            for how in (signal.SIGTERM, signal.SIGKILL):
                with self.subTest(name, how=how):
                    program = self.quillo.capture(text)
                    self.desktop.end(program, how)
                    wait_for(lambda: MARKER in self.desktop.clipboard_targets(), "the marker")
                    self.assertEqual(self.desktop.clipboard(), text.encode())

    def test_what_is_not_stored_is_not_offered_again(self):
        filtered = self.desktop.folder / "filtered"
        filtered.write_text("Authorization: Bearer abc.def")
        for name, arguments in (
                ("concealed", ("--manifest", DATA / "keepassxc-password")),
                ("filtered", ("--target", f"UTF8_STRING:UTF8_STRING:{filtered}"))):
            with self.subTest(name):
                mark = self.quillo.mark()
                owner = ReplayOwner(self.desktop, *arguments)
                self.quillo.wait_for_log(IGNORED, mark)
                mark = self.quillo.mark()
                self.desktop.end(owner.process)
                self.assert_stays_empty(mark)

    def test_twenty_quick_copies_end_with_the_last_and_make_one_clip_a_period(self):
        copies = self.desktop.start("/usr/bin/python3", "-c", QUICK_COPIES, stdout=subprocess.PIPE)
        seconds = float(copies.stdout.readline())
        copies.stdout.close()
        self.quillo.wait_for_text("quick copy 20")
        stored = [r["plaintext"] for r in self.quillo.rows()
                  if (r["plaintext"] or "").startswith("quick copy ")]
        self.assertEqual(stored[0], "quick copy 20")
        # The periods that lie within that time, and the ones that it begins and ends in.
        self.assertLessEqual(len(stored), seconds / 0.15 + 2, stored)
        self.assertLess(len(stored), 20, "each copy became a clip")

    def test_the_panel_shows_at_once_and_a_copy_made_just_before_comes_first(self):
        self.copy("first of three")
        self.copy("second of three")
        for name, text in (("new", "copied just before the hotkey"), ("bumped", "first of three")):
            with self.subTest(name):
                before, mark = self.newest(), self.quillo.mark()
                self.desktop.copy(text)
                self.quillo.show_panel()
                wait_for(lambda: self.newest() != before, "the clip")
                self.assertEqual(self.choose("1", mark), text)

    def test_a_copy_back_is_not_captured(self):
        self.copy("the older one")
        self.copy("the newer one")
        count, mark = len(self.quillo.rows()), self.quillo.mark()
        self.quillo.show_panel()
        self.assertEqual(self.choose("2", mark), "the older one")
        wait_for(lambda: self.newest()["plaintext"] == "the older one", "the chosen clip's dates")
        self.assertEqual(len(self.quillo.rows()), count)
        self.assertNotIn("Detected:", self.quillo.log_since(mark))


class LifetimeTest(unittest.TestCase):
    """Starts and ends; each case has a program and a store of its own."""

    def setUp(self):
        self.desktop = Desktop()
        self.addCleanup(self.desktop.__exit__)
        self.quillo = Quillo(self.desktop, os.environ["QUILLO_PROGRAM"])
        self.quillo.forget()
        self.quillo.start()

    def test_a_second_start_leaves_the_first_alone(self):
        second = subprocess.run([self.quillo.program], capture_output=True, timeout=15, check=False)
        self.assertEqual(second.returncode, 0, second.stderr)
        self.assertIsNone(self.quillo.process.poll())
        wait_for(lambda: visible_windows("^Quillo$"), "the library")
        self.desktop.copy("after the second start")
        self.quillo.wait_for_text("after the second start")
        run("wmctrl", "-c", "Quillo")
        wait_for(lambda: not visible_windows("^Quillo$"), "the library to close")
        self.quillo.show_panel()

    def test_sigterm_ends_it_with_everything_stored(self):
        mark = self.quillo.mark()
        self.desktop.copy("copied at the very end " * 50000)
        self.quillo.wait_for_log("Detected: TEXT", mark)
        self.assertEqual(self.quillo.stop(), 0)
        self.assertEqual(len(self.quillo.rows()), 1)
        self.assertEqual(list(self.quillo.data.glob("set-aside-*")), [])

    def test_a_killed_program_keeps_what_it_had_stored(self):
        for number in range(6):
            self.desktop.copy(f"stored before the kill {number}")
            self.quillo.wait_for_text(f"stored before the kill {number}")
        mark = self.quillo.mark()
        self.desktop.copy("in flight " * 100000)
        self.quillo.wait_for_log("Pasteboard changed", mark)
        self.desktop.end(self.quillo.process, signal.SIGKILL)
        self.quillo.start()
        kept = {r["plaintext"] for r in self.quillo.rows()}
        self.assertLessEqual({f"stored before the kill {n}" for n in range(6)}, kept)
        self.assertEqual(list(self.quillo.data.glob("set-aside-*")), [])
        self.desktop.copy("after the restart")
        self.quillo.wait_for_text("after the restart")
        with sqlite3.connect(self.quillo.data / "Quillo.sqlite") as store:
            self.assertEqual(store.execute("PRAGMA integrity_check").fetchall(), [("ok",)])


if __name__ == "__main__":
    unittest.main(verbosity=2)
