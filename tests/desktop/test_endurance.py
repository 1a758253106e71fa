#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""After any number of copies and shows the program holds no more than before; with nothing to do
it does not wake. The environment sets how long that is tried."""

import concurrent.futures
import os
import pathlib
import statistics
import subprocess
import sys
import time
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
from copies import Copies, FastOwner  # noqa: E402
from desktop import HANDLED, Failure, QuilloTest, key, wait_for  # noqa: E402
from process_figures import (  # noqa: E402
    XResources, descriptors, memory_kb, size_of, wait_until_quiet, wake_ups)

COPIES = int(os.environ.get("QUILLO_COPIES", "1500"))
SHOWS = int(os.environ.get("QUILLO_SHOWS", "20"))
FAST_SHOWS = int(os.environ.get("QUILLO_FAST_SHOWS", "1300"))
QUIET_SECONDS = float(os.environ.get("QUILLO_QUIET_SECONDS", "10"))
AFTER_EACH_KIND = QUIET_SECONDS > 10
FIGURES = os.environ.get("QUILLO_FIGURES")  # A file that gets what was measured.

HISTORY = 500
CHECKPOINTS = (100, 200, 500, 1000, 1500, 2000, 5000, 10_000, 20_000, 50_000, 100_000)
# By then the history is full, so that each copy drops one, and the largest picture was there.
WARM_COPIES = 1000
# By then the texts that the cards keep laid out and the pictures have reached their bounds.
WARM_SHOWS = 1000
# How much more than after the warm-up is no growth: the allocator's and the kernel's rounding.
MEMORY_SLACK_KB = 6 * 1024
# Lines of the change log and tombstones are about this long, and 10,000 of each are kept.
BYTES_PER_CHANGE = 400
MOST_CHANGE_BYTES = 10_000 * BYTES_PER_CHANGE


def note(line):
    print(f"{time.strftime('%H:%M:%S')} {line}", flush=True)
    if FIGURES:
        with open(FIGURES, "a", encoding="utf-8") as out:
            print(line, file=out)


def until(points, last):
    return [point for point in points if point < last] + [last]


class HistoryTest(QuilloTest):
    """A class of tests with a short history."""

    SETTINGS = f'{{"maxHistoryItems": {HISTORY}}}'

    def setUp(self):
        self.resources = XResources()
        self.copies = Copies(self.desktop.folder / self.id())
        self.store = self.quillo.data / "Quillo.sqlite"
        self.figures = {}
        self.copied = 0
        self.lost = []

    def measure(self, pid, count, what):
        wait_until_quiet(pid)
        self.figures[count] = {
            "copies": self.copied,
            "threads": len(wake_ups(pid)),
            "descriptors": descriptors(pid),
            "resources": self.resources.of(pid),
            "clips": len(self.quillo.rows("SELECT id FROM Clip")),
            **memory_kb(pid),
            "store": size_of(self.store),
            "log": size_of(self.store.with_name("Quillo.sqlite-wal")),
        }
        note(f"{count} {what}: {self.figures[count]}")

    def copy_next(self):
        """Copies what comes next; a copy that is not saved is told of at the end."""
        mark = self.quillo.mark()
        try:
            self.owner.copy_saved(self.copies.contents(self.copied))
        except Failure as failure:
            self.lost.append(f"copy {self.copied}: {failure}:\n{self.quillo.log_since(mark)}")
            note(self.lost[-1])
        self.copied += 1

    def assert_no_growth(self, warm):
        """Nothing that was measured later is more than what was measured when warm."""
        before = self.figures[warm]
        later = {count: figures for count, figures in self.figures.items() if count > warm}
        self.assertTrue(later)
        for count, now in later.items():
            with self.subTest(count):
                for name in ("threads", "descriptors", "resources", "clips", "log"):
                    self.assertEqual(now[name], before[name], name)
                for name in ("Rss", "Anonymous"):
                    self.assertLess(now[name], before[name] + MEMORY_SLACK_KB, name)
                copies = now["copies"] - before["copies"]
                changes = min(copies * BYTES_PER_CHANGE, MOST_CHANGE_BYTES)
                self.assertLess(now["store"], before["store"] * 1.2 + changes)


class GrowthTest(HistoryTest):
    """The program as it is. Each copy asks to be saved, so it is read at once and not at the next
    point of the grid, on which a long run would take hours."""

    def setUp(self):
        super().setUp()
        self.pid = self.quillo.process.pid
        self.owner = FastOwner(self.desktop, "--save-each")
        self.shown = 0

    def show_until(self, shown):
        while self.shown < shown:
            self.quillo.show_panel()
            self.hide_panel()

    def hide_panel(self):
        key("Escape")
        self.quillo.wait_until_hidden()
        self.shown += 1

    def show_newest(self):
        """Until the newest pictures are loaded: whether a show beside the copies comes to that is
        chance, and what they take is no growth."""
        self.quillo.show_panel()
        wait_until_quiet(self.pid, seconds=0.5)
        self.hide_panel()

    def go_on_until(self, last):
        """Copies as fast as it goes while the panel comes and goes."""
        with concurrent.futures.ThreadPoolExecutor(1) as beside:
            shows = beside.submit(self.show_until, SHOWS * last // COPIES)
            while self.copied < last:
                self.copy_next()
            shows.result()

    def test_copies_and_shows_by_the_shortcut_leave_nothing_behind(self):
        for count in until(CHECKPOINTS, COPIES):
            self.go_on_until(count)
            self.show_newest()
            self.measure(self.pid, count, f"copies and {self.shown} shows")
        self.assert_no_growth(WARM_COPIES)
        self.assertEqual(self.lost, [])


class ShowsTest(HistoryTest):
    """The program's panel and its capture, without the pause between two presses."""

    def setUp(self):
        super().setUp()
        self.assertEqual(self.quillo.stop(), 0)
        with open(self.quillo.log_path, "ab") as log:
            self.panel = subprocess.Popen(
                [os.environ["QUILLO_PANEL_SHOWS"]], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                stderr=log, text=True, bufsize=1, start_new_session=True,
                env={**os.environ, "QT_LOGGING_RULES": self.quillo.log_rules})
        self.desktop.processes.append(self.panel)
        self.panel.stdin.write("0\n")
        self.assertEqual(self.panel.stdout.readline().strip(), "done")
        self.owner = FastOwner(self.desktop, "--save-each")
        wait_for(self.is_saved, "the clipboard manager")

    def is_saved(self):
        """Copies; the program that just started may not be the clipboard manager yet."""
        self.owner.copy(self.copies.contents(0))
        return self.owner.line() == "asked" and self.owner.line() == "saved"

    def show_while_copying(self, shows):
        self.panel.stdin.write(f"{shows}\n")
        with concurrent.futures.ThreadPoolExecutor(1) as beside:
            answer = beside.submit(self.panel.stdout.readline)
            while not answer.done():
                self.copy_next()
        self.assertEqual(answer.result().strip(), "done")

    def test_shows_while_captures_go_on_leave_nothing_behind(self):
        done = 0
        for count in until(CHECKPOINTS, FAST_SHOWS):
            self.show_while_copying(count - done)
            while self.copied < WARM_COPIES:
                self.copy_next()
            self.measure(self.panel.pid, count, "shows")
            done = count
        self.assert_no_growth(WARM_SHOWS)
        # Growth is what counts here; that no copy is lost is GrowthTest's. Beside shows without a
        # pause, on a machine under load, about one copy in 25,000 was found empty, and it is not
        # known why; more than that is another fault.
        self.assertLess(len(self.lost), 2, "".join(self.lost)[-2000:])


class IdleTest(QuilloTest):
    """A quiet display: nothing but the program and what owns the clipboard."""

    def setUp(self):
        self.pid = self.quillo.process.pid
        self.copies = Copies(self.desktop.folder / self.id())

    def assert_rests(self, state):
        # Qt's own pool, which converts pictures, lets its threads go after half a minute.
        wait_for(lambda: not any("pooled" in name for name in wake_ups(self.pid)),
                 "the pooled threads to end", 60)
        wait_until_quiet(self.pid)
        before = wake_ups(self.pid)
        time.sleep(QUIET_SECONDS)
        after = wake_ups(self.pid)
        note(f"{state}: {sum(after.values()) - sum(before.values())} wake-ups "
             f"of {len(after)} threads in {QUIET_SECONDS:g} s")
        self.assertEqual(after, before, state)

    def copy_with(self, owner, number):
        """Copies and waits until it is stored; returns the seconds until the copy was noticed."""
        mark = self.quillo.mark()
        owner.copy(self.copies.contents(number))
        copied = time.monotonic()
        owner.expect("asked")
        noticed = time.monotonic() - copied
        self.quillo.wait_for_log(HANDLED, mark)
        return noticed

    def test_it_does_not_wake_when_nothing_happens(self):
        self.assert_rests("just started")
        owner = FastOwner(self.desktop)
        for number, kind in enumerate(Copies.KINDS):
            self.copy_with(owner, number)
            if AFTER_EACH_KIND or number == len(Copies.KINDS) - 1:
                self.assert_rests(f"after a copy: {kind}")
        self.quillo.show_panel()
        self.assert_rests("with the panel shown")
        key("Escape")
        self.quillo.wait_until_hidden()
        self.assert_rests("after the panel")
        self.desktop.end(owner.process)
        wait_for(lambda: "UTF8_STRING" in self.desktop.clipboard_targets(), "the kept contents")
        self.assert_rests("when it owns the clipboard itself")

    def test_a_copy_after_a_rest_is_noticed(self):
        owner = FastOwner(self.desktop)
        noticed = []
        for number in range(100, 140):
            wait_until_quiet(self.pid, seconds=0.01 * (number % 16), deadline=10)
            noticed.append(self.copy_with(owner, number) * 1000)
        noticed.sort()
        note(f"noticed after (ms): least {noticed[0]:.0f}, median {statistics.median(noticed):.0f},"
             f" 95th percentile {noticed[37]:.0f}, most {noticed[-1]:.0f}")


if __name__ == "__main__":
    unittest.main(verbosity=2)
