#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Makes the pictures of the panel for the documentation; scripts/pictures.sh calls it on displays
of several sizes, with and without a compositor."""

import argparse
import json
import os
import pathlib
import sys
import time

HERE = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parent.parent / "tests" / "desktop"))
from desktop import (  # noqa: E402
    Desktop, Quillo, key, main_guard, run, wait_for, xdotool)
from library_pictures import make_library, make_library_wide  # noqa: E402
from panel import Drag, Panel, click, geometry, move_to, pixels  # noqa: E402
from sample_history import SampleHistory  # noqa: E402
from settings_pictures import make_settings  # noqa: E402

ABOVE, BELOW, BESIDE = 60, 20, 24
DARK, LIGHT = {"appTheme": "dark"}, {"appTheme": "light"}
TRANSLUCENT = {"panelOpacity": 0.7}
NARROW = {"panelWidth": 0.8}
TIP_DELAY = 1.5


class Gallery:
    def __init__(self, quillo, folder, screen):
        self.quillo, self.folder, self.screen = quillo, folder, screen
        self.panel = Panel(quillo)

    def start(self, settings, history=None):
        """The program anew with these settings, and the ages as they should be."""
        if self.quillo.process and self.quillo.process.poll() is None:
            self.quillo.stop()
        if history:
            history.date()
        self.quillo.config.parent.mkdir(parents=True, exist_ok=True)
        self.quillo.config.write_text(json.dumps(settings))
        self.quillo.start()
        self.panel.objects = None

    def show(self):
        move_to((2, 2))
        self.quillo.show_panel()
        self.settle()

    def hide(self):
        key("ctrl+Escape")
        self.quillo.wait_until_hidden()

    def settle(self):
        """Waits until nothing moves; a caret may blink."""
        area = geometry(self.quillo.panel())
        def still():
            before = pixels(*area)
            time.sleep(0.15)
            return pixels(*area) == before
        wait_for(still, "the panel to come to rest")

    def save(self, name):
        left, top, width, height = geometry(self.quillo.panel())
        screen_width, screen_height = self.screen
        left = max(0, left - BESIDE)
        width = min(screen_width - left, width + 2 * BESIDE)
        top -= ABOVE
        height = min(screen_height - top, ABOVE + height + BELOW)
        path = self.folder / f"overlay-{name}.png"
        run("import", "-silent", "-window", "root", "-crop", f"{width}x{height}+{left}+{top}",
            "+repage", "-depth", "8", str(path))
        run("convert", str(path), "-strip", "-define", "png:compression-level=9",
            "-define", "png:compression-filter=2", "-define", "png:compression-strategy=0",
            f"png24:{path}")
        print(f"{path.name}: {path.stat().st_size // 1024} KB", flush=True)

    def show_and_save(self, name):
        self.show()
        self.save(name)
        self.hide()

    def choose_chip(self, name):
        click(self.panel.wait_for(name, "radio button").center)
        move_to((2, 2))
        self.settle()

    # What is seen while a person works.

    def kinds(self):
        """The cards that the first picture does not show."""
        self.show()
        for name, index in (("kinds-2", 6), ("kinds-3", 10)):
            key("Home", *["Right"] * index)
            self.settle()
            self.save(name)
        self.hide()

    def search(self):
        self.show()
        xdotool("type", "--delay", "20", "quarterly")
        wait_for(lambda: len(self.panel.cards()) == 9, "the cards that are found")
        self.settle()
        self.save("search")
        xdotool("type", "--delay", "20", " reprot")
        wait_for(lambda: not self.panel.cards(), "no cards")
        self.settle()
        self.save("search-none")
        self.hide()

    def group(self):
        self.show()
        self.choose_chip("Work")
        self.save("group")
        self.hide()

    def menu(self):
        self.show()
        click(self.panel.point_in_card(0, 132, 30), 3)
        move_to(self.panel.wait_for("Move to Group", "menu item").center)
        move_to([part + 1 for part in self.panel.wait_for("Move to Group", "menu item").center])
        self.panel.wait_for("Recipes", "menu item")
        key("Right", "Down")
        self.settle()
        self.save("menu")
        self.hide()

    def picker(self):
        self.show()
        click(self.panel.group_button(2))
        self.panel.wait_for("New Group", "push button")
        self.settle()
        self.save("picker")
        self.hide()

    def create_group(self):
        self.show()
        click(self.panel.wait_for("Create new group", "push button").center)
        self.panel.wait_for("Group name", "text")
        xdotool("type", "--delay", "20", "Travel")
        self.settle()
        self.save("create-group")
        click(self.panel.wait_for("Custom color").center)
        self.panel.wait_for("Hue")
        self.settle()
        self.save("custom-color")
        self.hide()

    def field_menu(self):
        self.show()
        xdotool("type", "--delay", "20", "summary")
        key("ctrl+a", "shift+F10")
        self.panel.wait_for("Select All", "menu item")
        self.settle()
        self.save("field-menu")
        self.hide()

    def drag(self):
        """Onto a group; and within one."""
        self.show()
        movement = Drag(self.panel.point_in_card(3, 60, 60))
        movement.move_to(self.panel.point_in_card(3, 90, 30), 6)
        movement.move_to(self.panel.wait_for("Recipes", "radio button").center)
        time.sleep(0.4)
        self.save("drag")
        movement.move_to((20, 20))
        key("Escape")
        movement.drop()
        if self.quillo.panel():
            self.hide()
        self.show()
        self.choose_chip("Work")
        movement = Drag(self.panel.point_in_card(3, 60, 60))
        movement.move_to(self.panel.point_in_card(3, 90, 70), 6)
        movement.move_to(self.panel.point_in_card(1, 150, 90))
        time.sleep(0.6)
        self.save("reorder")
        movement.drop()
        self.hide()

    def undo(self):
        self.show()
        key("Right", "Delete")
        self.panel.wait_for("Undo")
        self.settle()
        self.save("undo")
        key("ctrl+z")
        self.panel.wait_until_gone("Undo")
        self.hide()

    def tips(self):
        self.show()
        move_to([part - 3 for part in self.panel.group_button(1)])
        move_to(self.panel.group_button(1))
        time.sleep(TIP_DELAY)
        self.save("tip")
        self.hide()

    def focus(self):
        """The keyboard on a chip."""
        self.show()
        click(self.panel.wait_for("Search clips").center)
        key("Tab", "Right", "Right")
        move_to((2, 2))
        self.settle()
        self.save("focus")
        self.hide()

    def empty_states(self, history, settings):
        self.quillo.stop()
        history.forget_clips()
        self.start(settings)
        self.show()
        self.save("empty")
        self.choose_chip("Link")
        self.save("empty-filter")
        self.choose_chip("Work")
        self.save("empty-filter-in-group")
        self.choose_chip("All")
        self.save("empty-group")
        self.hide()


def make_main(gallery, history):
    """A screen of common size with a compositor."""
    gallery.start(DARK, history)
    gallery.show_and_save("dark")
    gallery.menu()
    gallery.picker()
    gallery.create_group()
    gallery.start(DARK, history)
    gallery.kinds()
    gallery.tips()
    gallery.drag()
    gallery.start(LIGHT, history)
    gallery.show_and_save("light")
    gallery.search()
    gallery.group()
    gallery.undo()
    gallery.start(LIGHT, history)
    gallery.field_menu()
    gallery.focus()
    for name, theme in (("dark", DARK), ("light", LIGHT)):
        gallery.start({**theme, **TRANSLUCENT}, history)
        gallery.show_and_save(f"{name}-70")
    gallery.empty_states(history, LIGHT)


def make_plain(gallery, history):
    """The same screen without a compositor, where nothing can shine through."""
    for name, theme in (("dark", DARK), ("light", {**LIGHT, **TRANSLUCENT})):
        gallery.start(theme, history)
        gallery.show_and_save(f"{name}{'-70' if 'panelOpacity' in theme else ''}-no-compositor")


def make_narrow(gallery, history):
    for name, theme in (("dark", DARK), ("light", LIGHT)):
        gallery.start({**theme, **NARROW}, history)
        gallery.show_and_save(f"{name}-1024")


def make_wide(gallery, history):
    for name, theme in (("dark", DARK), ("light", LIGHT)):
        gallery.start(theme, history)
        gallery.show_and_save(f"{name}-2560")


class StatusGallery:
    """What is reached through the status item, in the tray of a panel at the top."""

    TRAY = ("trayer", "--edge", "top", "--align", "right", "--widthtype", "pixel", "--width", "160",
            "--height", "28", "--SetDockType", "true", "--SetPartialStrut", "true",
            "--transparent", "true", "--alpha", "0")
    DOUBLE_CLICK = 0.5

    def __init__(self, gallery):
        self.gallery = gallery
        self.quillo = gallery.quillo

    def start(self, theme, history=None):
        self.gallery.start(theme, history)
        tint = "0x2c2c2e" if theme == DARK else "0xf0f0f2"
        desktop = self.quillo.desktop
        if getattr(self, "tray", None):
            desktop.end(self.tray)
        mark = self.quillo.mark()
        self.tray = desktop.start(*self.TRAY, "--tint", tint)
        self.quillo.wait_for_log("Status item: system tray", mark)

    def windows(self):
        found = xdotool("search", "--onlyvisible", "--class", "^quillo$", check=False).split()
        return {window: geometry(window) for window in found}

    def icon(self):
        def place():
            return next(((x + w // 2, y + h // 2) for x, y, w, h in self.windows().values()
                         if w <= 64 and y < 40), None)
        return wait_for(place, "the icon in the tray")

    def open(self, button=1):
        """A click on the icon; returns where what it opened is."""
        time.sleep(self.DOUBLE_CLICK)
        click(self.icon(), button)
        def opened():
            return next((area for area in self.windows().values() if area[3] > 100), None)
        area = wait_for(opened, "the popover or the menu")
        move_to((2, 2))
        time.sleep(0.8)
        return area

    def save(self, name, area):
        left, top, width, height = area
        right = min(self.gallery.screen[0], left + width + BESIDE)
        path = self.gallery.folder / f"{name}.png"
        left = max(0, left - BESIDE)
        run("import", "-silent", "-window", "root", "-crop",
            f"{right - left}x{top + height + BELOW}+{left}+0", "+repage", "-depth", "8", str(path))
        run("convert", str(path), "-strip", "-define", "png:compression-level=9",
            f"png24:{path}")
        print(f"{path.name}: {path.stat().st_size // 1024} KB", flush=True)


def make_updates(status):
    """The window that the status item's menu opens."""
    for name, theme in (("light", LIGHT), ("dark", DARK)):
        status.start(theme)
        status.open(3)
        key("Up", "Up", "Return")
        window = status.quillo.desktop.window("^Software Update$")
        time.sleep(0.8)
        path = status.gallery.folder / f"update-{name}.png"
        run("import", "-silent", "-window", window, "-depth", "8", str(path))
        key("Escape")


def make_popover(gallery, history):
    gallery.quillo.stop()
    history.move_files("/home/user/Documents")
    status = StatusGallery(gallery)
    for name, theme in (("dark", DARK), ("light", LIGHT)):
        status.start(theme, history)
        status.save(f"popover-{name}", status.open())
        key("Escape")
    area = status.open()
    xdotool("type", "--delay", "20", "summary")
    time.sleep(0.8)
    status.save("popover-search", area)
    xdotool("type", "--delay", "20", " nowhere")
    time.sleep(0.8)
    status.save("popover-none", area)
    key("Escape")
    area = status.open(3)
    key("Down", "Down", "Down", "Down", "Right", "Down")
    time.sleep(0.8)
    x, y, width, height = area
    status.save("popover-menu", (x - 220, y, width + 220, height + 220))
    key("Escape", "Escape")
    make_updates(status)
    gallery.quillo.stop()
    history.forget_clips()
    status.start(DARK)
    status.save("popover-empty", status.open())


SETS = {"settings": make_settings, "popover": make_popover, "main": make_main,
        "plain": make_plain, "narrow": make_narrow, "wide": make_wide, "library": make_library,
        "library-wide": make_library_wide}


FONTS = """<?xml version="1.0"?><!DOCTYPE fontconfig SYSTEM "urn:fontconfig:fonts.dtd">
<fontconfig>
<match target="pattern"><test qual="all" name="family" compare="not_eq"><string>monospace</string>
</test><edit name="family" mode="prepend" binding="weak"><string>Inter</string></edit></match>
<match target="pattern"><edit name="hintstyle" mode="assign"><const>hintnone</const></edit></match>
</fontconfig>"""


def choose_font():
    """The font of a desktop that has one of its own."""
    folder = pathlib.Path(os.environ["XDG_CONFIG_HOME"]) / "fontconfig"
    folder.mkdir(parents=True, exist_ok=True)
    (folder / "fonts.conf").write_text(FONTS)


def paint_wallpaper(desktop, screen):
    path = desktop.folder / "wallpaper.png"
    run("convert", "xc:#1f2f5c", "xc:#3c6d8e", "xc:#8ea6c8", "xc:#cfae92", "+append", "-filter",
        "triangle", "-resize", f"{screen[0]}x{screen[1]}!", str(path))
    desktop.start("/usr/bin/python3", str(HERE / "wallpaper.py"), str(path))
    desktop.window("wallpaper")


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--set", choices=SETS, required=True)
    parser.add_argument("--folder", type=pathlib.Path, required=True)
    arguments = parser.parse_args()
    arguments.folder.mkdir(parents=True, exist_ok=True)
    screen = tuple(map(int, xdotool("getdisplaygeometry").split()))
    with Desktop() as desktop:
        choose_font()
        paint_wallpaper(desktop, screen)
        quillo = Quillo(desktop, os.environ["QUILLO_PROGRAM"]).start()
        history = SampleHistory(desktop, quillo)
        history.make()
        SETS[arguments.set](Gallery(quillo, arguments.folder, screen), history)
        quillo.stop()


if __name__ == "__main__":
    main_guard(main)
