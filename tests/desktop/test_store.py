#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The store's file in every state that it may be found in, and what may never be in it."""

import contextlib
import os
import pathlib
import shutil
import sqlite3
import subprocess
import sys
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
from desktop import Desktop, Quillo, key, wait_for  # noqa: E402

SEED = "stored by an earlier run"
RECOVERED = "Core Data store recovered successfully (old data cleared)"
IN_MEMORY = "New clips are held in memory until the store can be opened"
RETRIED = 25.0  # The program tries again after 10 s.


class StoreTest(unittest.TestCase):
    """Each case starts the program on a store that it prepares."""

    template = None

    def setUp(self):
        self.desktop = Desktop()
        self.addCleanup(self.desktop.__exit__)
        self.quillo = Quillo(self.desktop, os.environ["QUILLO_PROGRAM"])
        self.quillo.forget()
        self.store = self.quillo.data / "Quillo.sqlite"
        if StoreTest.template is None:
            self.quillo.start()
            self.quillo.capture(SEED)
            self.assertEqual(self.quillo.stop(), 0)
            self.assertEqual([f.name for f in self.quillo.data.iterdir()], ["Quillo.sqlite"])
            StoreTest.template = self.store.read_bytes()

    def copy_stored(self, text):
        self.quillo.capture(text)
        return self.quillo.wait_for_text(text)

    def put(self, contents):
        """Puts a file, or a folder when there are no contents, in the store's place."""
        shutil.rmtree(self.quillo.data, ignore_errors=True)
        self.quillo.data.mkdir(parents=True, mode=0o700)
        if contents is None:
            self.store.mkdir()
            (self.store / "inside").write_text("somebody's")
        else:
            self.store.write_bytes(contents)

    def put_aside(self):
        return sorted(self.quillo.data.glob("set-aside-*"))

    def test_what_is_no_store_is_moved_aside_unharmed_and_an_empty_store_begins(self):
        whole = self.template
        damaged = {
            "truncated in the first page": whole[:2000],
            "every page but the first scribbled": whole[:4096] + b"\x5a" * (len(whole) - 4096),
            "a folder in its place": None,
        }
        for name, contents in damaged.items():
            with self.subTest(name):
                self.put(contents)
                mark = self.quillo.mark()
                self.quillo.start()
                log = self.quillo.log_since(mark)
                self.assertIn("Core Data load error", log)
                self.assertIn(RECOVERED, log)
                folders = self.put_aside()
                self.assertEqual(len(folders), 1)
                aside = folders[0] / "Quillo.sqlite"
                if contents is None:
                    self.assertEqual((aside / "inside").read_text(), "somebody's")
                else:
                    self.assertEqual(aside.read_bytes(), contents)
                self.copy_stored(f"after {name}")
                self.assertEqual(len(self.quillo.rows()), 1)
                self.assertEqual(self.quillo.stop(), 0)

    def test_a_newer_store_is_left_as_it_is_and_the_program_works_in_memory(self):
        self.put(self.template)
        with contextlib.closing(sqlite3.connect(self.store)) as store:
            store.execute("PRAGMA user_version = 999")
            store.commit()
            store.execute("PRAGMA wal_checkpoint(TRUNCATE)")
        newer = self.store.read_bytes()
        mark = self.quillo.mark()
        self.quillo.start()
        self.assertIn(IN_MEMORY, self.quillo.log_since(mark))
        self.quillo.capture("held in memory 1")
        self.quillo.capture("held in memory 2")
        self.quillo.show_panel()
        key("2")
        self.quillo.wait_until_hidden()
        wait_for(lambda: self.desktop.clipboard() == b"held in memory 1", "the chosen clip")
        self.assertEqual(self.quillo.stop(), 0)
        self.assertEqual(self.store.read_bytes(), newer)
        self.assertEqual(self.put_aside(), [])

    def test_what_is_copied_while_another_process_locks_the_store_is_saved_later(self):
        self.put(self.template)
        with contextlib.closing(sqlite3.connect(self.store, isolation_level=None)) as other:
            other.execute("PRAGMA locking_mode = EXCLUSIVE")
            other.execute("BEGIN EXCLUSIVE")
            self.quillo.start()
            self.assertIn(IN_MEMORY, self.quillo.log())
            for text in ("copied meanwhile", "copied last", SEED):
                self.quillo.capture(text)
        held = [SEED, "copied last", "copied meanwhile"]
        wait_for(lambda: [r["plaintext"] for r in self.quillo.rows()] == held,
                 "the clips held in memory, in their order", RETRIED)
        self.copy_stored("after the release")
        self.assertEqual(self.put_aside(), [])

    def test_a_full_disk_drops_the_one_capture_and_says_so(self):
        disk = self.desktop.folder / "disk"
        disk.mkdir()
        mounted = subprocess.run(["mount", "-t", "tmpfs", "-o", "size=4m", "tmpfs", disk],
                                 capture_output=True, check=False)
        if mounted.returncode != 0:
            self.skipTest("no right to mount a small disk: " + mounted.stderr.decode().strip())
        self.addCleanup(lambda: subprocess.run(["umount", "-l", disk], check=True))
        self.quillo.data = disk / "Quillo"
        self.quillo.start(env={"XDG_DATA_HOME": str(disk)})
        self.copy_stored("while there is room")
        with (open(disk / "filler", "wb", buffering=0) as filler, contextlib.suppress(OSError)):
            while True:
                filler.write(b"x" * 4096)
        mark = self.quillo.mark()
        self.desktop.copy("too much for the disk " * 10000)
        self.quillo.wait_for_log("Error saving clip", mark)
        (disk / "filler").unlink()
        self.copy_stored("when there is room again")
        self.assertEqual([r["plaintext"] for r in self.quillo.rows()],
                         ["when there is room again", "while there is room"])

    def test_a_lock_that_stays_holds_captures_in_memory_in_their_order(self):
        self.put(self.template)
        self.quillo.start()
        with contextlib.closing(sqlite3.connect(self.store, isolation_level=None)) as other:
            other.execute("BEGIN IMMEDIATE")
            mark = self.quillo.mark()
            self.desktop.copy("the first during the lock")
            self.quillo.wait_for_log("The store is locked", mark)
            mark = self.quillo.mark()
            self.desktop.copy("the second during the lock")
            self.quillo.wait_for_log("Detected: TEXT", mark)
            self.assertEqual(len(self.quillo.rows()), 1)
            other.execute("ROLLBACK")
        self.quillo.wait_for_text("the second during the lock")
        self.assertEqual([r["plaintext"] for r in self.quillo.rows()],
                         ["the second during the lock", "the first during the lock", SEED])

    def test_a_settings_file_of_any_contents_breaks_nothing_and_stays(self):
        wrong = {
            "wrong types": '{"maxHistoryItems": "many", "enableAutoPaste": [1], '
                           '"hotkeyKeyCode": "v", "hotkeyModifiers": {}, "panelPosition": 7, '
                           '"panelHasCustomOrigin": "yes", "panelCustomX": null, '
                           '"panelPositionLocked": 3}',
            "wild numbers": '{"maxHistoryItems": -1e300, "panelHasCustomOrigin": true, '
                            '"panelCustomX": 1e300, "panelCustomY": -1e300}',
            "no JSON": "{not json at all",
            "no text": "\0\1\2",
        }
        for name, contents in wrong.items():
            with self.subTest(name):
                self.quillo.forget()
                self.quillo.config.parent.mkdir(parents=True)
                self.quillo.config.write_text(contents)
                self.quillo.start()
                self.copy_stored(f"with {name}")
                self.quillo.show_panel()
                key("Escape")
                self.quillo.wait_until_hidden()
                self.assertEqual(self.quillo.stop(), 0)
                self.assertEqual(self.quillo.config.read_text(), contents)


if __name__ == "__main__":
    unittest.main(verbosity=2)
