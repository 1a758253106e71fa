#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""A saved clip is heard as the settings say, whatever becomes of the sound server."""

import json
import os
import pathlib
import signal
import sys
import time
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
from desktop import Desktop, Quillo, wait_for  # noqa: E402
from sound_server import SoundServer  # noqa: E402

# How loud the sounds of the program are at full volume, and how near to that a recording comes.
PEAK, NEAR = 8200, 1000


class SoundTest(unittest.TestCase):
    def setUp(self):
        self.desktop = Desktop()
        self.addCleanup(self.desktop.__exit__)
        self.quillo = Quillo(self.desktop, os.environ["QUILLO_PROGRAM"])
        self.quillo.forget()
        self.server = SoundServer()
        self.addCleanup(self.server.close)
        self.count = 0

    def start(self, settings=None):
        self.quillo.config.parent.mkdir(parents=True, exist_ok=True)
        self.quillo.config.write_text(json.dumps(settings or {}))
        self.quillo.start(env={"PULSE_SERVER": self.server.address})

    def change(self, settings):
        """As editors do: a new file in the place of the old one."""
        new = self.quillo.config.with_suffix(".new")
        new.write_text(json.dumps(settings))
        os.replace(new, self.quillo.config)

    def save(self):
        self.count += 1
        text = f"heard {self.count}"
        self.desktop.copy(text)
        return self.quillo.wait_for_text(text)

    def heard_at_a_save(self):
        with self.server.recording() as bursts:
            self.save()
            time.sleep(0.5)
        return bursts

    def stop_quickly(self):
        begin = time.monotonic()
        self.assertEqual(self.quillo.stop(), 0)
        self.assertLess(time.monotonic() - begin, 3)

    def test_a_save_sounds_as_the_settings_say_at_that_moment(self):
        self.start()
        rows = (
            ("nothing is set", {}, 0.4),
            ("a chosen one", {"captureSound": "Glass", "captureSoundVolume": 1}, 1),
            ("none", {"captureSound": "none"}, None),
            ("no such sound", {"captureSound": "frog"}, None),
            ("no text", {"captureSound": 7, "captureSoundVolume": "loud"}, 0.4),
            ("silent", {"captureSoundVolume": 0.0}, None),
            ("below silence", {"captureSoundVolume": -3}, None),
            ("louder than loud", {"captureSound": "Glass", "captureSoundVolume": 1e300}, 1))
        for name, settings, volume in rows:
            with self.subTest(name):
                self.change(settings)
                # The file is looked at within a quarter of a second of its change.
                time.sleep(0.6)
                bursts = self.heard_at_a_save()
                self.assertEqual(len(bursts), 1 if volume else 0, bursts)
                if volume:
                    self.assertAlmostEqual(bursts[0][2], PEAK * volume, delta=NEAR)
                    # The shorter sound lasts 255 ms; a loaded machine stretches what is recorded.
                    self.assertGreater(bursts[0][1], 230, "to its end")
                    self.assertLess(bursts[0][1], 900, "and not beyond")
        with self.server.recording() as bursts:
            self.desktop.copy(f"heard {self.count}")
            self.quillo.wait_for_log("Duplicate", 0)
            time.sleep(0.5)
        self.assertEqual(bursts, [], "a clip that only moves to the front")

    def test_two_saves_in_quick_succession_are_both_heard(self):
        self.start({"captureSound": "Submarine", "captureSoundVolume": 1})
        alone = self.heard_at_a_save()
        self.assertEqual(len(alone), 1, alone)

        def both_heard():
            with self.server.recording() as bursts:
                self.save()
                begin = time.monotonic()
                self.save()
                apart = time.monotonic() - begin
                time.sleep(0.7)
            # Later than this the second begins when the first has ended.
            return bursts if apart < 0.3 else None
        both = wait_for(both_heard, "two saves close to each other", 60)
        self.assertEqual(len(both), 1, both)
        self.assertGreater(both[0][1], alone[0][1] + 80)

    def test_without_a_server_nothing_else_suffers_and_a_later_one_is_found(self):
        self.server.stop()
        self.start()
        self.save()
        self.save()
        self.quillo.show_panel()
        self.server.start()
        wait_for(lambda: self.heard_at_a_save(), "a sound from the server that came later", 30)
        self.stop_quickly()

    def test_a_server_that_hangs_keeps_nobody_waiting(self):
        os.kill(self.server.process.pid, signal.SIGSTOP)
        self.start()
        for _ in range(3):
            self.save()
        self.quillo.show_panel()
        self.stop_quickly()


if __name__ == "__main__":
    unittest.main(verbosity=2)
