#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Programs that paste and behave badly, and ends in the middle of things."""

import os
import pathlib
import signal
import sys
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
from desktop import QuilloTest, ReplayOwner, run, wait_for  # noqa: E402
from process_figures import (  # noqa: E402
    XResources, peak_kb, reset_peak, resident_kb, wait_until_quiet)

TEXT = "0123456789abcde\n" * (20_000_000 // 16)
MIB = 1024
SLACK = 16 * MIB
TARGET = "UTF8_STRING"
HERE_AND_GONE = 3  # Seconds within which the program ends when it is asked to.


class Rig(QuilloTest):

    @classmethod
    def offer_large_text(cls):
        """Quillo owns 20 MB, because the program that copied them has gone."""
        program = cls.quillo.capture(TEXT)
        cls.desktop.end(program)
        wait_for(lambda: "com.quillohq.Quillo.marker" in cls.desktop.clipboard_targets(),
                 "Quillo's own offer")
        wait_until_quiet(cls.quillo.process.pid)

    def hostile(self, *arguments):
        """Starts the badly behaved program; returns it and the file of what it says."""
        said = self.desktop.folder / f"hostile-{len(self.desktop.processes)}"
        with open(said, "wb") as out:
            process = self.desktop.start(os.environ["QUILLO_HOSTILE_REQUESTOR"],
                                         *map(str, arguments), stdout=out)
        return process, said

    def ask_badly(self, word, *arguments):
        """Runs it until it says the word; returns it and the number it says."""
        process, said = self.hostile(*arguments)
        wait_for(lambda: word in said.read_text().split(), f"{arguments} to have {word}", 60)
        return process, int(said.read_text().split()[1])


class HostileRequestorsTest(Rig):

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.offer_large_text()

    def check(self, behave, windows=0):
        """The bad behaviour, and an ordinary paste while those windows still wait for theirs."""
        pid, resources = self.quillo.process.pid, XResources()
        before, held = resident_kb(pid), resources.of(pid)
        reset_peak(pid)
        behave()
        self.assertTrue(run(os.environ["QUILLO_READ_SELECTION"], TARGET) == TEXT.encode())
        self.assert_panel_comes()
        wait_until_quiet(pid)
        self.assertLess(peak_kb(pid) - before, SLACK)
        now = resources.of(pid)
        grown = {kind: now[kind] - held.get(kind, 0) for kind in now}
        # The panel's first show, and one watch on each window that a transfer goes to.
        self.assertLess(sum(grown.values()), 20 + windows, grown)

    def test_a_hundred_that_stop_reading_cost_no_copy_of_the_text(self):
        for mode, word in (("stall", "stalled"), ("vanish", "vanished")):
            for count in (1, 100):
                with self.subTest(mode, count=count):
                    programs = []
                    self.check(lambda: programs.append(self.ask_badly(word, mode, TARGET, count)),
                               windows=count if mode == "stall" else 0)
                    self.desktop.end(programs[0][0])

    def test_nonsense_is_answered_and_forgotten(self):
        self.check(lambda: self.assertGreater(self.ask_badly("done", "nonsense", TARGET)[1], 60))

    def test_ten_seconds_of_a_thousand_requests_each_keep_nobody_waiting(self):
        def flood():
            process, said = self.hostile("flood", TARGET, 10_000)
            self.assertTrue(run(os.environ["QUILLO_READ_SELECTION"], TARGET) == TEXT.encode())
            self.assert_panel_comes()
            self.assertIsNone(process.poll())
            wait_for(lambda: "flooded" in said.read_text(), "the flood to end", 60)
            self.assertGreater(int(said.read_text().split()[1]), 5000)
        self.check(flood)


class EndTest(Rig):
    """The program is asked to end while another one keeps it busy."""

    def assert_ends_at_once(self):
        self.quillo.process.send_signal(signal.SIGTERM)
        self.assertEqual(self.quillo.process.wait(HERE_AND_GONE), 0)
        self.quillo.start()

    def test_it_ends_at_once_whoever_waits_for_it(self):
        for mode in ("stall", "a paste", "an owner that hangs", "an owner that trickles"):
            with self.subTest(mode):
                if mode.startswith("an owner"):
                    asked, contents = self.desktop.folder / mode, self.desktop.folder / "contents"
                    contents.write_text("never given")
                    how = ("--trickle", 1000) if "trickles" in mode else ("--never-answer",)
                    ReplayOwner(self.desktop, *how, "--log", asked,
                                "--target", f"{TARGET}:{TARGET}:{contents}")
                    wait_for(lambda: asked.exists() and TARGET in asked.read_text(), "the read")
                else:
                    self.offer_large_text()
                    if mode == "stall":
                        self.ask_badly("stalled", "stall", TARGET, 10)
                    else:
                        self.desktop.start(os.environ["QUILLO_READ_SELECTION"], TARGET)
                self.assert_ends_at_once()


if __name__ == "__main__":
    unittest.main(verbosity=2)
