#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Programs that own the clipboard and behave badly: they cost nothing but their own copy."""

import dataclasses
import pathlib
import signal
import sys
import unittest
import zlib

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
from desktop import HANDLED, QuilloTest, ReplayOwner, png, wait_for  # noqa: E402
from process_figures import peak_kb, reset_peak, resident_kb  # noqa: E402

UNKNOWN = ("No recognized content type found",)
EMPTY = ("The pasteboard is empty",)
MIB = 1024
LARGEST = 64 * MIB  # One representation.
PART = 16 * MIB     # The most that the display server takes at once.
SLACK = 16 * MIB    # The panel, the store's cache, what allocators keep.
PICTURE = 256 * MIB  # The largest that is decoded.

NESTED = b"<table><tr><td>" * 1000 + b"deep" + b"</td></tr></table>" * 1000


def text(size):
    return b"0123456789abcde\n" * (size // 16)


def bomb(width, height):
    """Black, and a thousandth of its size."""
    return png(width, height, zlib.compress(b"\0" * height * (3 * width + 1)))


def endless_bomb(width, height):
    """The same of any size, its checksum left out: nobody should get so far."""
    compressor = zlib.compressobj()
    rows = b"\0" * 100 * (3 * width + 1)
    first, again = (compressor.compress(rows) + compressor.flush(zlib.Z_FULL_FLUSH) for _ in "12")
    return png(width, height, first + again * (height // 100 - 1))


@dataclasses.dataclass
class Row:
    name: str
    options: tuple = ()
    target: str = "UTF8_STRING"
    content: bytes = b"never stored"
    until: tuple = ()         # What the log says when the read is over; a newer copy ends it else.
    deadline: float = 15
    extra_kb: int = SLACK     # How far the peak may rise.
    requests: int = 3
    is_killed: bool = False   # It ends itself.


ROWS = (
    Row("answers in order", until=HANDLED),
    Row("never answers", ("--never-answer",)),
    Row("never says what it offers", ("--never-answer-targets",)),
    Row("answers after the deadline", ("--delay-ms", 11_000), until=EMPTY),
    Row("a byte a second", ("--trickle", 1000)),
    Row("a byte a second until it is given up", ("--trickle", 1000), content=text(48), until=UNKNOWN,
        deadline=30),
    Row("dies in mid-transfer", ("--chunk", 1000, "--die-mid-transfer"), content=text(9000),
        is_killed=True),
    Row("offers 10,000 targets", ("--invent", "10000:20"), until=HANDLED),
    Row("1,200 names of 64 kB", ("--invent", "1200:65000"), until=HANDLED),
    Row("announces one byte", ("--announce", 1), content=text(500_000), until=HANDLED),
    Row("announces 4 GB", ("--announce", 2**32 - 1), content=text(500_000), until=HANDLED),
    Row("claims 16-bit units", ("--format", 16), until=HANDLED),
    Row("claims 32-bit units", ("--format", 32), content=text(4000), until=HANDLED),
    Row("says what it offers in 8-bit units", ("--format", 8), until=HANDLED),
    Row("200 MB of text", ("--chunk", 1_000_000), content=text(200_000_000), until=UNKNOWN,
        extra_kb=LARGEST + SLACK),
    Row("200 MB in parts of 16 MB", ("--chunk", 16_000_000), content=text(200_000_000),
        until=UNKNOWN, extra_kb=LARGEST + 2 * PART + SLACK),
    Row("a picture that is all header", target="image/png",
        content=png(60_000, 60_000, zlib.compress(b"\0")), until=UNKNOWN),
    Row("a bomb of 60,000 by 60,000", target="image/png", content=endless_bomb(60_000, 60_000),
        until=UNKNOWN, extra_kb=2 * SLACK),
    Row("a bomb of the largest size", target="image/png", content=bomb(30_000, 2_200),
        until=HANDLED, extra_kb=PICTURE + 2 * SLACK),
    Row("tables nested a thousand deep", target="text/html", content=NESTED, until=HANDLED),
    Row("answers in another property", ("--answer-in", "ELSEWHERE")),
    Row("answers in a property of another read", ("--answer-in", "QUILLO_READ_7")),
    Row("answers in the property that tells the time", ("--answer-in", "QUILLO_TIME")),
    Row("answers twice", ("--twice",), until=HANDLED),
    Row("answers large contents twice", ("--twice", "--chunk", 1000), content=text(9000)),
    Row("answers what nobody asked", ("--unasked",), until=HANDLED),
    Row("copies anew at each question", ("--retake", 5), until=HANDLED, requests=8),
)
LATE = Row("answers after a minute", ("--delay-ms", 60_000), until=EMPTY)


class HostileOwnersTest(QuilloTest):

    def assert_next_copy_is_stored(self, name):
        self.desktop.copy(f"after {name}")
        wait_for(lambda: any(r["plaintext"] == f"after {name}" for r in self.quillo.rows()),
                 "the next copy", 5)

    def owner(self, row, asked):
        path = self.desktop.folder / "contents"
        path.write_bytes(row.content)
        return ReplayOwner(self.desktop, "--target", f"{row.target}:{row.target}:{path}",
                           *row.options, "--log", asked)

    def assert_unharmed(self, row, owner, asked):
        if not row.is_killed:
            self.assertIsNone(owner.process.poll(), "the owner died")
            owner.process.send_signal(signal.SIGTERM)
            self.assertEqual(owner.process.wait(70), 0)
        self.assertNotIn("x-error", owner.said())
        requests = asked.read_text().split()
        self.assertLessEqual(len(requests), row.requests, [r[:40] for r in requests])

    def check(self, row):
        pid, asked = self.quillo.process.pid, self.desktop.folder / "asked"
        asked.unlink(missing_ok=True)
        before, mark = resident_kb(pid), self.quillo.mark()
        reset_peak(pid)
        owner = self.owner(row, asked)
        wait_for(asked.exists, "the first question")
        self.assert_panel_comes()
        if row.until:
            self.quillo.wait_for_log(row.until, mark, row.deadline)
        self.assert_next_copy_is_stored(row.name)
        self.assertLess(peak_kb(pid) - before, row.extra_kb, "the peak")
        wait_for(lambda: resident_kb(pid) - before < SLACK,
                 f"{resident_kb(pid) - before} kB to be given back", 5)
        self.assert_unharmed(row, owner, asked)
        print(f"{row.name}: peak +{(peak_kb(pid) - before) // MIB} MiB, "
              f"then +{(resident_kb(pid) - before) // MIB} MiB")

    def test_each_costs_nothing_but_its_own_copy(self):
        self.assert_panel_comes()
        for row in ROWS:
            with self.subTest(row.name):
                self.check(row)


class LateOwnerTest(HostileOwnersTest):

    def test_each_costs_nothing_but_its_own_copy(self):
        self.assert_panel_comes()
        self.check(LATE)


if __name__ == "__main__":
    unittest.main(verbosity=2)
