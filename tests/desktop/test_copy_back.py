#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Each kind of clip pasted into real programs; what arrived is read back from the program."""

import contextlib
import os
import pathlib
import shutil
import sys
import unittest

HERE = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(HERE))
from desktop import Desktop, Failure, Quillo, key, run, visible_windows, wait_for  # noqa: E402
from read_back import OpenDocumentReader, Page, read_html  # noqa: E402

LINK = "https://docs.example.org/handbook?page=2"
RED = "#c0392b"
LINES = "def grüße():\n\treturn '漢字 and かな'\n\n\t\t# naïve \U0001f600 end"
RTF = (rb"{\rtf1\ansi\ansicpg1252\deff0{\fonttbl{\f0\froman Liberation Serif;}}"
       rb"{\colortbl;\red192\green57\blue43;}\f0\fs24 Caf\'e9 \b summary\b0 : revenue \i grew\i0 "
       rb" by \cf1 18 \u8364?\cf0 .\par See the {\field{\*\fldinst{HYPERLINK "
       rb'"https://docs.example.org/handbook?page=2"}}{\fldrslt handbook}} now.\par}')
# The last paragraph ends with a line break in the text, as the document has it.
RTF_LINES = ["Café summary: revenue grew by 18 €.", "See the handbook now."]
HTML = ("<p>First &amp; <b>bold</b> line<br>second line</p>"
        "<ul><li>One<ul><li>Nested</li></ul></li><li>Two &euro;</li></ul>"
        "<table><tr><td>A1</td><td>B1</td></tr><tr><td>A2</td><td>B2</td></tr></table>"
        "<p>Last &lt;paragraph&gt;</p>")
HTML_TEXT = ("First & bold line\nsecond line\n• One\n• Nested\n• Two €\n"
             "A1\tB1\nA2\tB2\nLast <paragraph>")
HTML_ROWS = [["First & bold line"], ["second line"], ["One"], ["Nested"], ["Two €"],
             ["A1", "B1"], ["A2", "B2"], ["Last <paragraph>"]]
CELLS = HERE.parent / "data" / "clipboard" / "calc-cells"
CELL_ROWS = [["Name", "Qty", "Price"], ["Äpfel", "3", "1.5"], ["Bananas, ripe", "12", "0.25"],
             ["Total", "", "7.5"]]
MARKER = "com.quillohq.Quillo.marker"
TEXT_TARGETS = ["UTF8_STRING", "text/plain;charset=utf-8", "text/plain", "STRING", "TEXT"]


class Board:
    """A desktop with Quillo and one clip of each kind; shared by the classes of one run."""

    def __init__(self):
        self.desktop = Desktop()
        self.folder = self.desktop.folder
        self.quillo = Quillo(self.desktop, os.environ["QUILLO_PROGRAM"]).start()
        self.png = self.picture("png:-")
        self.jpeg = self.picture("-quality", "90", "jpeg:-")
        self.file = self.folder / "Größe 1 & 2.txt"
        self.file.write_bytes("one file's bytes\nü\n".encode())
        self.ids = {}
        self.copy_all()

    @staticmethod
    def picture(*output):
        return run("convert", "-size", "48x32", "gradient:#3a7bd5-#f7b267", "-fill", "#ff0000",
                   "-draw", "point 0,0", "-fill", "#00ff00", "-draw", "rectangle 40,24 47,31",
                   "-depth", "8", *output)

    def copy_all(self):
        for name, data, target in (
                ("lines", LINES, None), ("link", LINK, None), ("colour", "#FF8E72", None),
                ("rich", RTF, "text/rtf"), ("html", HTML.encode(), "text/html"),
                ("png", self.png, "image/png"), ("jpeg", self.jpeg, "image/jpeg"),
                ("file", f"{self.file.as_uri()}\r\n".encode(), "text/uri-list")):
            self.desktop.copy(data, target)
            self.remember(name)
        self.desktop.start(os.environ["QUILLO_REPLAY_OWNER"], "--manifest", str(CELLS))
        self.remember("cells")

    def remember(self, name):
        self.quillo.wait_for_count(len(self.ids) + 1)
        self.ids[name] = self.quillo.rows()[0]["id"]

    def choose(self, name):
        """Chooses a card in the panel, by its digit or by arrows, and waits until it is pasted
        (or copied, where nothing is in front)."""
        place = [row["id"] for row in self.quillo.rows()].index(self.ids[name])
        settled = self.settled()
        self.quillo.show_panel()
        if place % 2:
            key(str(place + 1))
        else:
            key(*["Right"] * place, "Return")
        self.quillo.wait_until_hidden()
        wait_for(lambda: self.settled() > settled, f"the paste of {name}")
        wait_for(lambda: self.quillo.rows()[0]["id"] == self.ids[name], f"{name} in first place")

    def settled(self):
        log = self.quillo.log()
        return log.count("The clip was pasted") + log.count("copied but not pasted")

    def paste(self, name, window):
        self.desktop.focus(window)
        before = self.quillo.log().count("The clip was pasted")
        self.choose(name)
        if self.quillo.log().count("The clip was pasted") != before + 1:
            raise Failure(f"{name} was not pasted:\n{self.quillo.log()[-2000:]}")


board = None


def setUpModule():
    global board
    board = Board()


def tearDownModule():
    board.quillo.stop()
    board.desktop.__exit__()


def plain_texts():
    """What a program that takes plain text only is expected to receive."""
    return {"lines": LINES, "link": LINK, "colour": "#FF8E72",
            "rich": "\n".join(RTF_LINES),
            "html": HTML_TEXT, "file": str(board.file),
            "cells": "\n".join("\t".join(row) for row in CELL_ROWS)}


def pixels(image):
    return run("convert", "-", "-alpha", "off", "-depth", "8", "rgb:-", data=image)


def read_selection(target):
    return run(os.environ["QUILLO_READ_SELECTION"], target, check=False)


def patience(seconds, read, is_right):
    """The last value read: as soon as it is right, else when the time is up."""
    value = None

    def look():
        nonlocal value
        value = read()
        return is_right(value)
    with contextlib.suppress(Failure):
        wait_for(look, "the text", seconds)
    return value


def needs(program):
    return unittest.skipUnless(shutil.which(program), f"{program} is not installed")


def has_vte():
    import gi
    try:
        gi.require_version("Vte", "2.91")
    except ValueError:
        return False
    return True


class Target(unittest.TestCase):
    """A program that clips are pasted into."""

    maxDiff = None

    @classmethod
    def setUpClass(cls):
        cls.before = len(board.desktop.processes)
        try:
            cls.open()
        except BaseException:
            cls.tearDownClass()
            raise

    @classmethod
    def tearDownClass(cls):
        for process in board.desktop.processes[cls.before:]:
            board.desktop.end(process)
        del board.desktop.processes[cls.before:]

    @classmethod
    def open(cls):
        raise NotImplementedError

    def assert_arrives(self, expected, read, seconds=8):
        self.assertEqual(patience(seconds, read, lambda value: value == expected), expected)


class PlainTextCases:
    """What arrives in a program that takes plain text only."""

    def test_text_arrives_as_it_is_rendered(self):
        for name, text in plain_texts().items():
            with self.subTest(clip=name):
                self.clear()
                board.paste(name, self.window)
                self.assert_arrives(text, self.read)

    def test_a_picture_brings_nothing(self):
        """A picture has no text: nothing of an earlier clip may come in its place."""
        for name in ("png", "jpeg"):
            with self.subTest(clip=name):
                self.clear()
                board.paste("link", self.window)
                self.assert_arrives(LINK, self.read)
                self.clear()
                board.paste(name, self.window)
                board.desktop.focus(self.window)
                key("x")
                self.assert_arrives("x", self.read)


@needs("mousepad")
class EditorTest(PlainTextCases, Target):
    @classmethod
    def open(cls):
        cls.window, cls.path = board.desktop.open_editor()

    def clear(self):
        board.desktop.focus(self.window)
        key("ctrl+a", "Delete")

    def read(self):
        board.desktop.focus(self.window)
        before = self.path.stat().st_mtime_ns
        key("ctrl+s")
        with contextlib.suppress(Failure):
            wait_for(lambda: self.path.stat().st_mtime_ns != before, "the save", 0.5)
        return self.path.read_text()

class TerminalTarget(PlainTextCases):
    skipped = 0

    def clear(self):
        type(self).skipped = len(self.path.read_bytes())

    def read(self):
        return self.path.read_bytes()[self.skipped:].decode(errors="replace")


@unittest.skipUnless(has_vte(), "the VTE library is not installed")
class VteTest(TerminalTarget, Target):
    @classmethod
    def open(cls):
        cls.window, cls.path = board.desktop.open_vte()

@needs("xterm")
class XtermTest(TerminalTarget, Target):
    @classmethod
    def open(cls):
        cls.window, cls.path = board.desktop.open_xterm("copy-back xterm")

class RichTarget(Target):
    def assert_rich_text(self, document):
        self.assertEqual([text for _, text in document.blocks], RTF_LINES)
        for text, flag in (("summary", "bold"), ("grew", "italic"), ("18 €", RED),
                           ("handbook", LINK)):
            self.assertIn(flag, document.flags_of(text), text)
        self.assertFalse({"bold", "italic", RED} & document.flags_of("See the "))
        self.assertFalse({"bold", "italic"} & document.flags_of("revenue "))

    def assert_html(self, document):
        self.assertEqual(document.blocks, [
            ("p", "First & bold line\nsecond line"), ("li1", "One"), ("li2", "Nested"),
            ("li1", "Two €"), ("td", "A1"), ("td", "B1"), ("td", "A2"), ("td", "B2"),
            ("p", "Last <paragraph>")])
        self.assertIn("bold", document.flags_of("bold"))
        self.assertNotIn("bold", document.flags_of("First & "))

    def assert_cells(self, document):
        """A spreadsheet's block as lines with tabs."""
        self.assertEqual(document.blocks, [("p", "\t".join(row)) for row in CELL_ROWS])

    def check_documents(self, read):
        for name, check in (("rich", self.assert_rich_text), ("html", self.assert_html),
                            ("cells", self.assert_cells)):
            with self.subTest(clip=name):
                self.clear()
                board.paste(name, self.window)
                check(patience(10, read, lambda document: document.blocks))


class QtEditorTest(RichTarget):
    @classmethod
    def open(cls):
        cls.path = board.folder / "rich.html"
        board.desktop.start(os.environ["QUILLO_RICH_EDITOR"], "rich editor", str(cls.path))
        cls.window = board.desktop.window("^rich editor$")
        cls.texts = cls.path.with_name("rich.html.txt")

    def clear(self):
        board.desktop.focus(self.window)
        key("ctrl+a", "Delete")

    def read(self):
        board.desktop.focus(self.window)
        self.path.unlink(missing_ok=True)
        key("ctrl+s")
        wait_for(self.path.exists, "the save")
        return read_html(self.path.read_text())

    def read_text(self):
        self.read()
        return self.texts.read_text()

    def test_texts_arrive_unchanged(self):
        for name in ("lines", "link", "colour", "file"):
            with self.subTest(clip=name):
                self.clear()
                board.paste(name, self.window)
                self.assert_arrives(plain_texts()[name], self.read_text)

    def test_documents_keep_their_styling(self):
        self.check_documents(self.read)


class RawTest(unittest.TestCase):
    """What any program can ask for, with no program in front to paste into."""

    def test_targets_in_order_with_the_marker_first(self):
        rich = ["text/rtf", "application/rtf", "text/richtext", "text/html", *TEXT_TARGETS]
        for name, targets in {
                "lines": TEXT_TARGETS, "link": TEXT_TARGETS, "colour": TEXT_TARGETS, "rich": rich,
                "html": ["text/html", *TEXT_TARGETS], "cells": rich, "png": ["image/png"],
                "jpeg": ["image/jpeg", "image/png"],
                "file": ["text/uri-list", "x-special/gnome-copied-files", *TEXT_TARGETS]}.items():
            with self.subTest(clip=name):
                board.choose(name)
                self.assertEqual(read_selection("TARGETS").decode().splitlines(),
                                 [MARKER, *targets, "TARGETS", "MULTIPLE", "TIMESTAMP"])
                for target in targets:
                    self.assertTrue(read_selection(target), target)

    def test_documents_are_given_byte_for_byte(self):
        address = board.file.as_uri().replace("%26", "&").encode()  # Stored normalised.
        for name, target, expected in (
                ("rich", "text/rtf", RTF), ("html", "text/html", HTML.encode()),
                ("jpeg", "image/jpeg", board.jpeg),
                ("file", "text/uri-list", address + b"\r\n"),
                ("file", "x-special/gnome-copied-files", b"copy\n" + address),
                ("lines", "text/plain", LINES.encode()), ("link", "STRING", LINK.encode())):
            with self.subTest(clip=name, target=target):
                board.choose(name)
                self.assertEqual(read_selection(target), expected)

    def test_a_picture_as_png_has_the_same_pixels(self):
        for name in ("png", "jpeg"):
            with self.subTest(clip=name):
                board.choose(name)
                png = read_selection("image/png")
                self.assertTrue(png.startswith(b"\x89PNG"))
                self.assertEqual(pixels(png), pixels(getattr(board, name)))


@needs("chromium")
class ChromiumTest(RichTarget):
    @classmethod
    def open(cls):
        cls.page = Page()
        cls.addClassCleanup(cls.page.close)
        board.desktop.start(
            "chromium", "--no-sandbox", "--disable-gpu", "--no-first-run", "--disable-sync",
            "--disable-background-networking", "--disable-component-update", "--no-proxy-server",
            "--password-store=basic", f"--user-data-dir={board.folder}/chromium", cls.page.address)
        cls.window = board.desktop.window("copy-back page", 90)

    def ask_for(self, field):
        board.desktop.focus(self.window)
        self.page.ask_for(field)
        wait_for(self.page.is_ready, f"the focus on {field}", 30)

    def clear(self):
        self.ask_for("rich")

    def document(self):
        return read_html(self.page.state["html"])

    def test_text_area(self):
        for name, text in plain_texts().items():
            with self.subTest(clip=name):
                self.ask_for("area")
                board.paste(name, self.window)
                self.assert_arrives(text, lambda: self.page.state["text"])

    def test_documents_keep_their_styling(self):
        self.check_documents(self.document)

    def test_plain_lines_in_the_rich_editor(self):
        self.clear()
        board.paste("lines", self.window)
        expected = [line.strip() for line in LINES.split("\n") if line]
        self.assert_arrives(expected, lambda: [
            text.strip() for _, text in self.document().blocks])

    def test_a_picture_in_the_rich_editor(self):
        for name in ("png", "jpeg"):
            with self.subTest(clip=name):
                self.clear()
                board.paste(name, self.window)
                images = wait_for(lambda: self.page.state["images"], "the picture")
                self.assertEqual((images[0]["width"], images[0]["height"]), (48, 32))
                rgb = bytes(v for i, v in enumerate(images[0]["rgba"]) if i % 4 != 3)
                self.assertEqual(rgb, pixels(getattr(board, name)))


REGISTRY = """<?xml version="1.0" encoding="UTF-8"?>
<oor:items xmlns:oor="http://openoffice.org/2001/registry"
 xmlns:xs="http://www.w3.org/2001/XMLSchema" xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance">
<item oor:path="/org.openoffice.Office.Common/Misc"><prop oor:name="ShowTipOfTheDay"
 oor:op="fuse"><value>false</value></prop></item>
<item oor:path="/org.openoffice.Office.Common/Save/Document"><prop oor:name="WarnAlienFormat"
 oor:op="fuse"><value>false</value></prop></item>
<item oor:path="/org.openoffice.Setup/Product"><prop oor:name="LastTimeDonateShown"
 oor:op="fuse"><value>4000000000</value></prop></item>
<item oor:path="/org.openoffice.Setup/Product"><prop oor:name="ooSetupLastVersion"
 oor:op="fuse"><value>7.4</value></prop></item>
</oor:items>
"""
EMPTY = """<?xml version="1.0" encoding="UTF-8"?>
<office:document xmlns:office="urn:oasis:names:tc:opendocument:xmlns:office:1.0"
 xmlns:text="urn:oasis:names:tc:opendocument:xmlns:text:1.0"
 xmlns:table="urn:oasis:names:tc:opendocument:xmlns:table:1.0" office:version="1.3"
 office:mimetype="application/vnd.oasis.opendocument.{kind}"><office:body>{body}</office:body>
</office:document>
"""
BODIES = {"text": "<office:text><text:p/></office:text>",
          "spreadsheet": '<office:spreadsheet><table:table table:name="One"><table:table-row>'
                         "<table:table-cell/></table:table-row></table:table></office:spreadsheet>"}


class OfficeTarget(RichTarget):
    """Each paste goes into an empty document of its own, which is then saved and read."""

    @classmethod
    def open(cls):
        profile = board.folder / "office"
        (profile / "user").mkdir(parents=True, exist_ok=True)
        (profile / "user" / "registrymodifications.xcu").write_text(REGISTRY)
        cls.command = ["soffice", f"-env:UserInstallation={profile.as_uri()}", "--norestore",
                       "--nologo", "--nofirststartwizard"]

    def open_document(self, name):
        self.path = board.folder / f"{name}{self.suffix}"
        self.path.write_text(EMPTY.format(kind=self.kind, body=BODIES[self.kind]))
        board.desktop.start(*self.command, str(self.path), env={"SAL_USE_VCLPLUGIN": "gtk3"})
        self.window = board.desktop.window(self.path.name, 120)
        # The window is there long before it listens, and takes the focus again when it does.
        wait_for(self.listens, "the document", 60)
        key(*self.clearing)
        wait_for(lambda: not self.texts(), "the empty document", 60)

    def listens(self):
        board.desktop.focus(self.window)
        key("5", "Return")
        return self.texts()

    def texts(self):
        return [text for _, text in self.save().read().blocks]

    def save(self):
        board.desktop.focus(self.window)
        before = self.path.stat().st_mtime_ns
        key("ctrl+s")
        with contextlib.suppress(Failure):
            wait_for(lambda: self.path.stat().st_mtime_ns != before, "the save", 3)
        return OpenDocumentReader(self.path)

    def after_pasting(self, name, read, is_right, question=None):
        """What read finds in the document once it is right; the program's question about the
        paste is answered with its default."""
        self.open_document(name)
        board.paste(name, self.window)
        if question:
            board.desktop.focus(board.desktop.window(question))
            key("Return")
            wait_for(lambda: not visible_windows(question), "the answer")
        return patience(20, lambda: read(self.save()), is_right)


@needs("lowriter")
class WriterTest(OfficeTarget):
    kind, suffix = "text", ".fodt"
    clearing = ["ctrl+a", "Delete"]

    def assert_cells(self, document):
        self.assertEqual(document.blocks,
                         [("td", cell) for row in CELL_ROWS for cell in row if cell])

    def test_texts_and_documents(self):
        checks = {"lines": lambda d: self.assertEqual(
                      d.plain.split("\n"), [line for line in LINES.split("\n") if line]),
                  "link": lambda d: self.assertEqual(d.plain, LINK),
                  "rich": self.assert_rich_text, "html": self.assert_html,
                  "cells": self.assert_cells}
        for name, check in checks.items():
            with self.subTest(clip=name):
                check(self.after_pasting(name, OpenDocumentReader.read, lambda d: d.blocks))

    def test_a_file_becomes_a_linked_section(self):
        links = self.after_pasting("file", OpenDocumentReader.links, bool, "Insert Section")
        self.assertEqual([link.rpartition("/")[2] for link in links], [board.file.name])

    def test_a_picture_is_embedded_in_its_size(self):
        for name in ("png", "jpeg"):
            with self.subTest(clip=name):
                document = self.after_pasting(name, OpenDocumentReader.read, lambda d: d.images)
                self.assertEqual(len(document.images), 1)
                self.assertEqual(pixels(document.images[0]["bytes"]),
                                 pixels(getattr(board, name)))


@needs("localc")
class CalcTest(OfficeTarget):
    kind, suffix = "spreadsheet", ".fods"
    clearing = ["ctrl+a", "Delete", "ctrl+Home"]

    def test_blocks_of_cells_and_text(self):
        for name, rows, question in (
                ("cells", CELL_ROWS, None), ("link", [[LINK]], None),
                ("html", HTML_ROWS, "Import Options")):
            with self.subTest(clip=name):
                self.assertEqual(
                    self.after_pasting(name, OpenDocumentReader.rows, bool, question), rows)


class FileManagerTest(Target):
    @classmethod
    def open(cls):
        pass

    def check_copy(self, program, *options):
        target = board.folder / f"{program} target"
        target.mkdir()
        board.desktop.start(program, *options, str(target))
        window = board.desktop.window(target.name, 30)
        board.paste("file", window)
        copy = target / board.file.name
        wait_for(lambda: copy.exists() and copy.read_bytes() == board.file.read_bytes(),
                 "the file's copy")
        self.assertTrue(board.file.exists(), "the file was moved, not copied")

    @needs("thunar")
    def test_thunar(self):
        self.check_copy("thunar")

    @needs("pcmanfm")
    def test_pcmanfm(self):
        self.check_copy("pcmanfm", "--new-win")


if __name__ == "__main__":
    unittest.main()
