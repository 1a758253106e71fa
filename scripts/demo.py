#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Plays the main job on a private display with real programs: copies of every kind, the panel,
two pastes. Prints the stored history and leaves a screenshot of each step."""

import argparse
import datetime
import pathlib
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "tests" / "desktop"))
from desktop import KINDS, Desktop, Quillo, key, main_guard, run, screenshot, wait_for  # noqa: E402

RICH_TEXT = rb"{\rtf1\ansi\ansicpg1252 Quarterly \b summary\b0 : revenue grew by {\i 18 %}.\par}"


def describe(row):
    when = datetime.datetime.fromtimestamp(row["createdAt"] / 1e6).strftime("%H:%M:%S")
    shown = row["plaintext"] or row["urlString"] or row["fileName"] or ""
    if row["type"] == 3:
        shown = f"{row['fileSize']} bytes"
    return f"{when}  {KINDS[row['type']]:5}  {row['sourceBundleID'] or '-':12}  {shown!r}"


def copy_one_of_each(desktop, quillo):
    image = desktop.folder / "picture.png"
    run("convert", "-size", "640x400", "gradient:#3a7bd5-#f7b267", str(image))
    document = desktop.folder / "Report.pdf"
    document.write_bytes(b"%PDF-1.4\n%%EOF\n")
    copies = [
        ("A line of text to keep", None),
        ("https://docs.example.org/handbook?page=2", None),
        ("#FF8E72", None),
        (RICH_TEXT, "text/rtf"),
        (image.read_bytes(), "image/png"),
        (f"{document.as_uri()}\r\n".encode(), "text/uri-list"),
    ]
    for count, (data, target) in enumerate(copies, start=1):
        desktop.copy(data, target)
        quillo.wait_for_count(count)


def play(program, pictures):
    with Desktop() as desktop:
        quillo = Quillo(desktop, program).start()
        run("xsetroot", "-solid", "#47617f")
        editor, note = desktop.open_editor()
        terminal, typed = desktop.open_xterm()
        copy_one_of_each(desktop, quillo)
        screenshot(pictures / "1-before.png")

        desktop.focus(editor)
        quillo.show_panel()
        screenshot(pictures / "2-panel.png")
        for _ in range(5):
            key("Right")
        screenshot(pictures / "3-selected.png")
        key("Return")
        quillo.wait_until_hidden()
        wait_for(lambda: "pasted" in quillo.log(), "the paste")
        wait_for(lambda: "A line of text to keep" in desktop.saved_text(editor, note),
                 "the text in the editor")
        screenshot(pictures / "4-pasted-in-editor.png")

        desktop.focus(terminal)
        quillo.show_panel()
        screenshot(pictures / "5-panel-again.png")
        key("1")
        quillo.wait_until_hidden()
        key_sent = wait_for(lambda: quillo.log().count("pasted") >= 2, "the second paste")
        assert key_sent
        desktop.focus(terminal)
        key("Return")
        wait_for(lambda: "A line of text to keep" in typed.read_text(), "the text in the terminal")
        screenshot(pictures / "6-pasted-in-terminal.png")

        print("The stored history, newest first:")
        for row in quillo.rows():
            print("  " + describe(row))
        print(f"The text arrived in the editor and in the terminal. Screenshots: {pictures}")
        quillo.stop()


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--program", required=True)
    parser.add_argument("--screenshots", required=True, type=pathlib.Path)
    arguments = parser.parse_args()
    play(arguments.program, arguments.screenshots)


if __name__ == "__main__":
    main_guard(main)
