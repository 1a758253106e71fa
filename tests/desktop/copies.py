# SPDX-License-Identifier: MIT
"""Any number of copies of mixed kinds, each made from its number, by a fast program."""

import os
import pathlib
import subprocess
import zlib

from desktop import Failure, png

IMAGE_SIZES = ((32, 32), (200, 120), (640, 400), (300, 900), (1280, 800))
LARGE_IMAGE = (2560, 1440)
FILES = 200


def picture(width, height, number):
    """A picture that is like no other number's: a gradient with the number in its first pixel."""
    row = bytes((x * 3 + number) % 256 for x in range(width * 3))
    rows = bytearray()
    for y in range(height):
        shift = y % 97 * 3 % len(row)
        rows += b"\0" + row[shift:] + row[:shift]
    rows[1:4] = number.to_bytes(3, "little")
    return png(width, height, zlib.compress(bytes(rows), 1))


class Copies:
    """The numbered copies. Every eleventh repeats an earlier one that is still in the history."""

    KINDS = ("text", "text", "link", "rtf", "image", "text", "long text", "html", "file", "colour")

    def __init__(self, folder):
        self.folder = pathlib.Path(folder) / "copied files"
        self.folder.mkdir(parents=True)
        for i in range(FILES):
            (self.folder / f"Report {i}.pdf").write_bytes(b"%PDF-1.4\n%%EOF\n")

    def contents(self, number):
        """The targets of a copy: their name, type and bytes."""
        if number % 11 == 10:
            number -= 30
        kind = self.KINDS[number % len(self.KINDS)]
        return getattr(self, "make_" + kind.replace(" ", "_"))(number)

    @staticmethod
    def of_text(text, *more):
        data = text.encode()
        plain = [("UTF8_STRING", "UTF8_STRING", data), ("text/plain", "text/plain", data)]
        return [*more, *plain]

    def make_text(self, number):
        return self.of_text(f"Copy {number}: the quick brown fox, ünïcödé – 日本語")

    def make_long_text(self, number):
        return self.of_text(f"Long copy {number}\n" + f"line {number} of a long text\n" * 720)

    def make_link(self, number):
        return self.of_text(f"https://docs.example.org/page/{number}?from=search#part")

    def make_colour(self, number):
        return self.of_text(f"#{number * 7919 % 2 ** 24:06X}")

    def make_rtf(self, number):
        document = rb"{\rtf1\ansi\ansicpg1252 Summary \b %d\b0 : up by {\i 18 %%}.\par}" % number
        return self.of_text(f"Summary {number}: up by 18 %.", ("text/rtf", "text/rtf", document))

    def make_html(self, number):
        document = f"<h1>Page {number}</h1><ul><li>first<li>second <b>bold</b></ul>".encode()
        return self.of_text(f"Page {number}", ("text/html", "text/html", document))

    def make_image(self, number):
        index = number // len(self.KINDS)
        size = LARGE_IMAGE if index % 100 == 99 else IMAGE_SIZES[index % len(IMAGE_SIZES)]
        return [("image/png", "image/png", picture(*size, number))]

    def make_file(self, number):
        path = self.folder / f"Report {number // len(self.KINDS) % FILES}.pdf"
        data = f"{path.as_uri()}\r\n".encode()
        return [("text/uri-list", "text/uri-list", data)]


class FastOwner:
    """A program that copies again and again, as fast as it is told."""

    def __init__(self, desktop, *options):
        self.folder = desktop.folder / f"copies-{len(desktop.processes)}"
        self.folder.mkdir(parents=True)
        self.process = subprocess.Popen(
            [os.environ["QUILLO_REPLAY_OWNER"], "--follow", *options], stdin=subprocess.PIPE,
            stdout=subprocess.PIPE, text=True, bufsize=1, start_new_session=True)
        desktop.processes.append(self.process)

    def copy(self, targets):
        """Takes the clipboard with these contents; returns when it is owned."""
        fields = []
        for position, (name, kind, data) in enumerate(targets):
            path = self.folder / str(position)
            path.write_bytes(data)
            fields.append(f"{name}:{kind}:{path}")
        self.process.stdin.write("\t".join(fields) + "\n")
        self.expect("ready")

    def line(self):
        return self.process.stdout.readline().strip()

    def expect(self, *words):
        """Reads its next lines, which must be these words."""
        for word in words:
            line = self.line()
            if line != word:
                raise Failure(f"the copying program says {line!r} instead of {word!r}")

    def copy_saved(self, targets):
        """Copies, and waits until the clipboard manager has read it all; needs --save-each."""
        self.copy(targets)
        self.expect("asked", "saved")
