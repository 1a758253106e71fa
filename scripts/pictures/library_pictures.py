# SPDX-License-Identifier: MIT
"""The pictures of the library window: its sizes, dark and light, a clip of each kind in full, and
what a person meets on the way."""

import time
import uuid

from desktop import key, run, visible_windows, wait_for, xdotool
from library import WINDOW, Library
from panel import click, move_to

PINBOARDS = (("Travel", "#FFD93D", 9), ("Design", "#9B59B6", 3))
FAVORITES = 7
# The cards by their place, newest first.
TEXT, LINK, COLOR, IMAGE, RICH, HTML, FILE = range(7)
NOTE = 9


class LibraryGallery:
    def __init__(self, gallery):
        self.gallery, self.quillo, self.folder = gallery, gallery.quillo, gallery.folder
        self.library = Library(gallery.quillo)

    def open(self, theme, size=None, history=None):
        """The library of the program anew, in a window of that size or of its first one."""
        frame = {"windowFrame_MainWindow": "60 60 {} {}".format(*size)} if size else {}
        self.gallery.start({"appTheme": theme, **frame}, history)
        self.library.objects = None
        self.quillo.act("library")
        self.window = wait_for(lambda: visible_windows(WINDOW), "the library")[0]
        wait_for(lambda: self.library.find("Clips") or self.library.find("No clips yet"),
                 "its clips")

    def choose(self, place):
        click(self.library.strip.children[place].center)
        move_to((2, 2))

    def pixels(self, window):
        return run("import", "-silent", "-window", window, "rgb:-", timeout=5)

    def save(self, name, window=None):
        """The window as it is once nothing moves in it any more; a caret may blink."""
        window = window or self.window
        def still():
            before = self.pixels(window)
            time.sleep(0.2)
            return self.pixels(window) == before
        wait_for(still, "the window to come to rest")
        path = self.folder / f"library-{name}.png"
        run("import", "-silent", "-window", window, "-depth", "8", str(path), timeout=5)
        run("convert", str(path), "-strip", "-define", "png:compression-level=9", f"png24:{path}")
        print(f"{path.name}: {path.stat().st_size // 1024} KB", flush=True)

    def save_kinds(self):
        for name, place in (("image", IMAGE), ("file", FILE), ("html", HTML), ("color", COLOR),
                            ("link", LINK)):
            self.choose(place)
            self.save(name)

    def save_several(self):
        self.choose(TEXT)
        for place in (LINK, RICH, HTML):
            xdotool("mousemove", *self.library.strip.children[place].center,
                    "keydown", "ctrl", "click", 1, "keyup", "ctrl", "mousemove", 2, 2)
        self.save("several")

    def save_menu(self):
        click([part - 40 for part in self.library.strip.children[RICH].center], 3)
        move_to(self.library.wait_for("Add to Pinboard", "menu item").center)
        self.library.wait_for("Travel", "menu item")
        key("Right", "Down")
        self.save("menu")
        key("Escape", "Escape")

    def save_search(self):
        xdotool("type", "--delay", "20", "quarterly")
        wait_for(lambda: len(self.library.strip.children) == 9, "the clips that are found")
        key("Down", "Home")
        self.save("search")
        key("ctrl+f")
        xdotool("type", "--delay", "20", "nowhere")
        self.library.wait_for("Clear Filters")
        self.save("none")
        self.library.press("Clear Filters")
        move_to((2, 2))

    def save_types(self):
        self.library.press("Type: All Types", None)
        self.library.wait_for("PowerPoint", "menu item")
        move_to((2, 2))
        self.save("types")
        key("Escape")

    def save_forms(self):
        click(self.library.section("Travel").center, 3)
        self.library.press("Rename", "menu item")
        self.save("rename")
        key("Escape", "ctrl+n")
        self.library.wait_for_focus("Name")
        xdotool("type", "--delay", "20", "Reading")
        self.library.press("Green", "radio button")
        self.save("new-pinboard")
        key("Escape")

    def save_undo(self):
        self.choose(NOTE)
        key("Delete")
        self.library.wait_for("Undo")
        self.save("undo")
        key("ctrl+z")

    def save_columns(self):
        key("F9", "ctrl+i")
        self.save("columns-hidden")
        key("F9", "ctrl+i")

    def save_empty(self, history):
        """Sections without clips, then a library without any."""
        with history.opened() as store:
            store.execute("UPDATE Clip SET isPinned = 0")
            store.execute("DELETE FROM ClipPinboards")
        self.open("dark")
        for keys, name in (("ctrl+2", "favorites"), ("ctrl+3", "pinboard")):
            key(keys)
            self.save(f"empty-{name}")
        self.quillo.stop()
        history.forget_clips()
        with history.opened() as store:
            store.execute("DELETE FROM Pinboard")
        self.open("light")
        self.save("empty")


def add_pinboards(history):
    """More than the other pictures have, and some favorites."""
    history.quillo.stop()
    with history.opened() as store:
        clips = store.execute("SELECT id FROM Clip ORDER BY createdAt DESC").fetchall()
        for title, color, members in PINBOARDS:
            group = uuid.uuid5(uuid.NAMESPACE_OID, title).bytes
            place, = store.execute("SELECT count(*) FROM Pinboard").fetchone()
            store.execute("INSERT INTO Pinboard(id, title, colorHex, sortIndex) "
                          "VALUES (?, ?, ?, ?)", (group, title, color, place))
            store.executemany("INSERT INTO ClipPinboards(clip, other) VALUES (?, ?)",
                              [(clip, group) for (clip,) in clips[5:5 + members]])
        history.update(store, "rich", isPinned=1)
        missing = FAVORITES - store.execute("SELECT sum(isPinned) FROM Clip").fetchone()[0]
        store.executemany("UPDATE Clip SET isPinned = 1 WHERE id = ?", clips[20:20 + missing])


def make_library(gallery, history):
    add_pinboards(history)
    pictures = LibraryGallery(gallery)
    for theme in ("dark", "light"):
        pictures.open(theme, None, history)
        pictures.choose(RICH)
        pictures.save(theme)
        if theme == "dark":
            pictures.save_kinds()
            pictures.save_menu()
            pictures.save_columns()
            pictures.save_types()
        else:
            pictures.save_search()
            pictures.save_several()
            pictures.save_forms()
            pictures.save_undo()
    for theme, size in (("dark", (900, 600)), ("light", (1440, 900))):
        pictures.open(theme, size, history)
        pictures.choose(RICH)
        pictures.save(f"{theme}-{size[0]}")
    pictures.quillo.stop()
    pictures.save_empty(history)


def make_library_wide(gallery, history):
    """All of a large screen, with the title that the window manager gives."""
    add_pinboards(history)
    pictures = LibraryGallery(gallery)
    pictures.open("dark", None, history)
    run("wmctrl", "-i", "-r", hex(int(pictures.window)), "-b", "add,maximized_vert,maximized_horz")
    pictures.choose(RICH)
    pictures.save("dark-2560", "root")
