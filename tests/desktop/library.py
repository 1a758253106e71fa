# SPDX-License-Identifier: MIT
"""The library window as a person works with it: its parts by their names, and what it hands to
other programs. Needs AT_SPI=on of ./with_display."""

import os
import pathlib
import sqlite3

import accessible
from gi.repository import Gio

from desktop import Failure, active_window, key, visible_windows, wait_for, xdotool
from panel import Panel, PanelTest, click
from status_host import pump

WINDOW = "^Quillo$"
FILE_MANAGER = "org.freedesktop.FileManager1"


class FileManager:
    """The desktop's file manager on the session bus, which only remembers what it was to show."""

    DESCRIPTION = f"""<node><interface name="{FILE_MANAGER}"><method name="ShowItems">
    <arg type="as" direction="in"/><arg type="s" direction="in"/></method></interface></node>"""

    def __init__(self):
        self.shown = []
        self.bus = Gio.bus_get_sync(Gio.BusType.SESSION)
        interface = Gio.DBusNodeInfo.new_for_xml(self.DESCRIPTION).interfaces[0]
        self.object = self.bus.register_object(f"/{FILE_MANAGER.replace('.', '/')}", interface,
                                               self.show, None, None)
        self.name = Gio.bus_own_name_on_connection(
            self.bus, FILE_MANAGER, Gio.BusNameOwnerFlags.NONE, None, None)

    def show(self, _bus, _sender, _path, _interface, _method, arguments, call):
        self.shown += arguments.unpack()[0]
        call.return_value(None)

    def wait_for(self, address):
        wait_for(lambda: pump() or address in self.shown, f"{address} in the file manager")

    def stop(self):
        Gio.bus_unown_name(self.name)
        self.bus.unregister_object(self.object)


class Browser:
    """The person's browser, which only writes down what it is given."""

    def __init__(self, folder):
        self.script, self.opened = folder / "browser", folder / "opened"
        self.script.write_text(f"#!/bin/sh\nprintf %s \"$1\" > '{self.opened}'\n")
        self.script.chmod(0o700)
        entries = pathlib.Path(os.environ["XDG_DATA_HOME"]) / "applications"
        entries.mkdir(parents=True, exist_ok=True)
        (entries / "browser.desktop").write_text(
            f"[Desktop Entry]\nType=Application\nName=Browser\nExec={self.script} %u\n")
        pathlib.Path(os.environ["XDG_CONFIG_HOME"], "mimeapps.list").write_text(
            "[Default Applications]\nx-scheme-handler/http=browser.desktop\n"
            "x-scheme-handler/https=browser.desktop\n")
        # Where there is no xdg-open, which reads the above.
        self.environment = {"BROWSER": str(self.script)}

    def wait_for(self, address):
        wait_for(lambda: self.opened.exists() and self.opened.read_text() == address,
                 f"{address} in the browser")


def add_clips(quillo, count):
    """Older ones, made from one that is stored; the program must not be running."""
    with sqlite3.connect(quillo.data / "Quillo.sqlite") as store:
        store.execute("CREATE TEMP TABLE Older AS SELECT * FROM Clip ORDER BY createdAt LIMIT 1")
        for number in range(count):
            store.execute("UPDATE Older SET id = randomblob(16), contentHash = NULL, "
                          "createdAt = createdAt - 1000000, plaintext = ?", (f"older {number}",))
            store.execute("INSERT INTO Clip SELECT * FROM Older")


class Library(Panel):
    """The library window of a running Quillo."""

    @property
    def root(self):
        if self.objects is None:
            self.objects = accessible.program(self.quillo.process.pid)
        return self.objects.wait_for("Quillo", "filler")

    def focused_part(self):
        return next((part for part in self.root.walk()
                     if part.name and {"focused", "showing"} <= part.states), None)

    def focused(self):
        part = self.focused_part()
        return part.name if part else None

    def card(self, text):
        def found():
            return next((card for card in self.strip.children
                         if card.name.partition(": ")[2] == text), None)
        return wait_for(found, f"the card {text!r}")

    def gap_after(self, text):
        """A point between that card and what follows it in its row."""
        left, _, width, _ = self.card(text).area
        return left + width + 5, self.card(text).center[1]

    def chosen(self):
        """What the selected cards say, in their order."""
        return [card.name.partition(": ")[2] for card in self.strip.children
                if "selected" in card.states]

    def wait_for_chosen(self, *texts):
        try:
            wait_for(lambda: self.chosen() == list(texts), "the selection", 5)
        except Failure as failure:
            raise Failure(f"{self.chosen()} are selected and not {list(texts)}") from failure

    def choose(self, *texts):
        """Clicks on cards; on several with Control."""
        click(self.card(texts[0]).center)
        for text in texts[1:]:
            self.click_with("ctrl", text)
        wait_for(lambda: set(self.chosen()) == set(texts), f"{texts} to be selected", 5)

    def click_with(self, modifier, text):
        xdotool("mousemove", *self.card(text).center, "keydown", modifier, "click", 1,
                "keyup", modifier)

    def counts(self):
        """The sections and how many clips they say they have, from top to bottom."""
        rows = [row for row in self.wait_for("Sections").walk() if row.role == "list item"]
        return {row.name: int(row.description.split()[0])
                for row in sorted(rows, key=lambda row: row.area[1])}

    def wait_for_counts(self, **wanted):
        def told():
            counts = self.counts()
            return all(counts.get(name.replace("_", " ")) == n for name, n in wanted.items())
        try:
            wait_for(told, "the counts", 5)
        except Failure as failure:
            raise Failure(f"the counts are {self.counts()}, not {wanted}") from failure

    def section(self, title):
        return self.wait_for("Sections").wait_for(title, "list item")

    def show_section(self, title):
        click(self.section(title).center)
        self.wait_for_title(title)

    def wait_for_title(self, title):
        self.wait_for(title, "label")

    def press(self, name, role="push button"):
        click(self.wait_for(name, role).center)

    def choose_from_menu(self, part, *entries):
        """The secondary button on it, then one entry after the other."""
        click(part.center, 3)
        self.choose_entries(*entries)

    def choose_entries(self, *entries):
        for entry in entries:
            self.press(entry, "menu item")
        self.wait_until_gone(entries[-1], "menu item")


class LibraryTest(PanelTest):
    """A class of tests with some text clips in the library, which is opened for each of them."""

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.library = Library(cls.quillo)

    def setUp(self):
        super().setUp()
        self.open()

    def tearDown(self):
        self.close()

    @classmethod
    def open(cls):
        cls.quillo.act("library")
        cls.arrive()

    @classmethod
    def arrive(cls):
        """Waits until the library is there and has the keyboard."""
        wait_for(lambda: active_window() in visible_windows(WINDOW), "the library's focus")
        cls.window = active_window()
        cls.library.wait_for_focus("Clips")

    @classmethod
    def close(cls):
        if visible_windows(WINDOW):
            cls.desktop.focus(cls.window)
            key("ctrl+w")
            wait_for(lambda: not visible_windows(WINDOW), "the library to close")

    @classmethod
    def restart(cls, meanwhile=lambda: None, env=None):
        """The program anew, with its library open."""
        cls.quillo.stop()
        meanwhile()
        cls.quillo.start(env)
        cls.library.objects = None
        cls.open()

    def make_pinboard(self, title, how=lambda: key("ctrl+n")):
        how()
        self.library.wait_for_focus("Name")
        self.type(title)
        key("Return")
        wait_for(lambda: title in self.groups(), f"the pinboard {title}")
        self.library.section(title)

    @staticmethod
    def type(text):
        xdotool("type", "--delay", "1", text)

    def wait_for_clipboard(self, text):
        wait_for(lambda: self.desktop.clipboard().decode() == text,
                 f"{text!r} on the clipboard, not {self.desktop.clipboard()}", 5)
