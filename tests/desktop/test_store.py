#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The store's file in every state that it may be found in, and what may never be in it."""

import contextlib
import os
import pathlib
import shutil
import sqlite3
import stat
import subprocess
import sys
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
from desktop import Desktop, Quillo, ReplayOwner, key, wait_for  # noqa: E402

DATA = pathlib.Path(__file__).resolve().parent.parent / "data" / "clipboard"
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
            self.copy(SEED)
            self.assertEqual(self.quillo.stop(), 0)
            self.assertEqual([f.name for f in self.quillo.data.iterdir()], ["Quillo.sqlite"])
            StoreTest.template = self.store.read_bytes()

    def copy(self, text):
        mark = self.quillo.mark()
        self.desktop.copy(text)
        self.quillo.wait_for_log(("Saved new", "bumped to front"), mark)

    def copy_stored(self, text):
        self.copy(text)
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
            "scribbled header": b"\xff" * 100 + whole[100:],
            "scribbled schema": whole[:100] + b"\x5a" * 3996 + whole[4096:],
            "truncated in the first page": whole[:2000],
            "truncated after the first page": whole[:4096],
            "every page but the first scribbled": whole[:4096] + b"\x5a" * (len(whole) - 4096),
            "garbage text": b"This is not a store.\n" * 300,
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

    def test_an_empty_file_and_a_used_store_are_opened_as_they_are(self):
        for name, contents, count in (("empty", b"", 1), ("used", self.template, 2)):
            with self.subTest(name):
                self.put(contents)
                self.quillo.start()
                self.copy_stored(f"into the {name} store")
                self.assertEqual(len(self.quillo.rows()), count)
                self.assertEqual(self.put_aside(), [])
                self.assertEqual(self.quillo.stop(), 0)

    def test_only_the_last_three_stores_are_kept_aside(self):
        for number in range(5):
            self.quillo.data.mkdir(parents=True, exist_ok=True)
            self.store.write_bytes(b"no store %d" % number)
            self.quillo.start()
            self.assertEqual(self.quillo.stop(), 0)
        self.assertEqual([(f / "Quillo.sqlite").read_bytes() for f in self.put_aside()],
                         [b"no store 2", b"no store 3", b"no store 4"])

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
        self.copy("held in memory 1")
        self.copy("held in memory 2")
        self.quillo.show_panel()
        key("2")
        self.quillo.wait_until_hidden()
        wait_for(lambda: self.desktop.clipboard() == b"held in memory 1", "the chosen clip")
        self.assertEqual(self.quillo.stop(), 0)
        self.assertEqual(self.store.read_bytes(), newer)
        self.assertEqual(self.put_aside(), [])

    def check_late_save(self, release):
        """Copies while the store cannot be opened; all is there once it can."""
        self.assertIn(IN_MEMORY, self.quillo.log())
        for text in ("copied meanwhile", "copied last", SEED):
            self.copy(text)
        release()
        held = [SEED, "copied last", "copied meanwhile"]
        wait_for(lambda: [r["plaintext"] for r in self.quillo.rows()] == held,
                 "the clips held in memory, in their order", RETRIED)
        self.copy_stored("after the release")
        self.assertEqual(self.put_aside(), [])

    def test_what_is_copied_while_another_process_locks_the_store_is_saved_later(self):
        self.put(self.template)
        other = sqlite3.connect(self.store, isolation_level=None)
        self.addCleanup(other.close)
        other.execute("PRAGMA locking_mode = EXCLUSIVE")
        other.execute("BEGIN EXCLUSIVE")
        self.quillo.start()
        self.check_late_save(other.close)

    def test_what_is_copied_while_the_store_may_not_be_read_is_saved_later(self):
        prefix = ()
        if os.geteuid() == 0:  # Whom the modes do not bind as long as it has its capabilities.
            prefix = ("setpriv", "--bounding-set=-dac_override,-dac_read_search")
        self.put(self.template)
        self.store.chmod(0)
        self.quillo.start(prefix=prefix)
        self.check_late_save(lambda: self.store.chmod(0o600))

    def test_a_short_lock_of_a_running_store_loses_nothing(self):
        self.put(self.template)
        self.quillo.start()
        with contextlib.closing(sqlite3.connect(self.store, isolation_level=None)) as other:
            other.execute("BEGIN IMMEDIATE")
            mark = self.quillo.mark()
            self.desktop.copy("copied during the lock")
            self.quillo.wait_for_log("Detected: TEXT", mark)
            self.assertEqual(len(self.quillo.rows()), 1)
            other.execute("ROLLBACK")
        self.quillo.wait_for_text("copied during the lock")

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

    def small_disk(self):
        """A disk of 4 MB with the store's folder on it; skips where it cannot be mounted."""
        disk = self.desktop.folder / "disk"
        disk.mkdir()
        mounted = subprocess.run(["mount", "-t", "tmpfs", "-o", "size=4m", "tmpfs", disk],
                                 capture_output=True, check=False)
        if mounted.returncode != 0:
            self.skipTest("no right to mount a small disk: " + mounted.stderr.decode().strip())
        self.addCleanup(lambda: subprocess.run(["umount", "-l", disk], check=True))
        self.quillo.data = disk / "Quillo"
        return disk

    @staticmethod
    def fill(disk):
        with (open(disk / "filler", "wb", buffering=0) as filler,
              contextlib.suppress(OSError)):
            while True:
                filler.write(b"x" * 4096)

    def test_a_disk_that_is_full_at_the_start_costs_nothing_once_there_is_room(self):
        disk = self.small_disk()
        self.fill(disk)
        mark = self.quillo.mark()
        self.quillo.start(env={"XDG_DATA_HOME": str(disk)})
        self.assertIn(IN_MEMORY, self.quillo.log_since(mark))
        self.copy("copied to a full disk")
        (disk / "filler").unlink()
        self.quillo.wait_for_log("Core Data store loaded successfully", mark, RETRIED)
        self.quillo.wait_for_text("copied to a full disk")
        self.assertEqual(self.put_aside(), [])

    def test_a_full_disk_drops_the_one_capture_and_says_so(self):
        disk = self.small_disk()
        self.quillo.start(env={"XDG_DATA_HOME": str(disk)})
        self.copy_stored("while there is room")
        self.fill(disk)
        mark = self.quillo.mark()
        self.desktop.copy("too much for the disk " * 10000)
        self.quillo.wait_for_log("Error saving clip", mark)
        (disk / "filler").unlink()
        self.copy_stored("when there is room again")
        self.assertEqual([r["plaintext"] for r in self.quillo.rows()],
                         ["when there is room again", "while there is room"])
        self.assertEqual(self.quillo.stop(), 0)
        self.assertEqual(self.put_aside(), [])

    def test_nobody_else_may_read_the_store(self):
        for name, loosen in (("new", False), ("found open to all", True)):
            with self.subTest(name):
                if loosen:
                    self.put(self.template)
                    self.quillo.data.chmod(0o755)
                    self.store.chmod(0o644)
                self.quillo.start(prefix=("sh", "-c", 'umask 0; exec "$0"'))
                self.copy_stored("a private text")
                modes = {f.name: stat.S_IMODE(f.stat().st_mode)
                         for f in (self.quillo.data, *self.quillo.data.iterdir())}
                self.assertEqual(modes, {"Quillo": 0o700, "Quillo.sqlite": 0o600,
                                         "Quillo.sqlite-wal": 0o600, "Quillo.sqlite-shm": 0o600})
                self.assertEqual(self.quillo.stop(), 0)

    def test_a_settings_file_of_any_contents_breaks_nothing_and_stays(self):
        wrong = {
            "wrong types": '{"maxHistoryItems": "many", "enableAutoPaste": [1], '
                           '"hotkeyKeyCode": "v", "hotkeyModifiers": {}, "panelPosition": 7, '
                           '"panelHasCustomOrigin": "yes", "panelCustomX": null, '
                           '"panelPositionLocked": 3}',
            "wild numbers": '{"maxHistoryItems": -1e300, "panelHasCustomOrigin": true, '
                            '"panelCustomX": 1e300, "panelCustomY": -1e300}',
            "no JSON": "{not json at all",
            "no object": "[1, 2, 3]",
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

    def found_under_home(self, needle):
        forms = [needle.encode(), needle.encode("utf-16-le")]
        names = ("XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_STATE_HOME",
                 "XDG_RUNTIME_DIR")
        files = [f for n in names for f in pathlib.Path(os.environ[n]).rglob("*") if f.is_file()]
        return [f.name for f in files if any(form in f.read_bytes() for form in forms)]

    def test_secrets_are_written_nowhere_and_no_clip_to_the_log(self):
        self.quillo.start()
        secrets = {"password=hunter2-Xq": "hunter2-Xq", "918273": "918273",
                   "otpauth://totp/Someone?secret=JBSW": "JBSW",
                   "AUTHORIZATION: Bearer abcXYZ": "abcXYZ", "my Api_Key=k-77-k": "k-77-k"}
        for text in secrets:
            mark = self.quillo.mark()
            self.desktop.copy(text)
            self.quillo.wait_for_log("Skipping sensitive content", mark)
        mark = self.quillo.mark()
        owner = ReplayOwner(self.desktop, "--manifest", DATA / "keepassxc-password")
        self.quillo.wait_for_log("Skipping sensitive content", mark)
        self.desktop.end(owner.process)
        needles = [*secrets.values(), "s3cret-ünï"]

        document = self.desktop.folder / "Kontoauszug.txt"
        document.write_text("Umsatz")
        ordinary = {("a needle-like text", None): "needle-like",
                    ("https://needle.example.org/haystack", None): "needle.example",
                    ("<p>bold <b>html-needle</b></p>", "text/html"): "html-needle",
                    (r"{\rtf1 rtf-needle}", "text/rtf"): "rtf-needle",
                    (document.as_uri(), "text/uri-list"): "Kontoauszug"}
        for data, target in ordinary:
            mark = self.quillo.mark()
            self.desktop.copy(data, target)
            self.quillo.wait_for_log("Saved new", mark)
        self.quillo.show_panel()
        key("2")
        self.quillo.wait_until_hidden()
        for when in ("while it runs", "when it has ended"):
            for needle in needles:
                self.assertEqual(self.found_under_home(needle), [], f"{needle} {when}")
            self.assertTrue(self.found_under_home("rtf-needle"))
            self.quillo.stop()
        for needle in (*needles, *ordinary.values()):
            self.assertNotIn(needle, self.quillo.log())


if __name__ == "__main__":
    unittest.main(verbosity=2)
