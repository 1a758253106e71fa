# SPDX-License-Identifier: MIT
"""The pictures of the settings window: each page from its top to its end, the recorder, the sheets
and the alerts, dark and light."""

import time

from accessible import program
from desktop import key, run, wait_for, xdotool

WINDOW = "^Preferences$"
TABS = ("general", "capture", "appearance", "privacy")


class SettingsGallery:
    def __init__(self, gallery, scheme):
        self.folder, self.scheme = gallery.folder, scheme
        gallery.start({"appTheme": scheme})
        gallery.quillo.act("settings")
        self.window = gallery.quillo.desktop.window(WINDOW)
        self.root = program(gallery.quillo.process.pid).wait_for("Preferences")
        xdotool("mousemove", 2, 2)

    def pixels(self):
        return run("import", "-silent", "-window", self.window, "rgb:-", timeout=5)

    def save(self, name):
        def still():
            before = self.pixels()
            time.sleep(0.2)
            return self.pixels() == before
        wait_for(still, "the window to come to rest")
        path = self.folder / f"settings-{name}-{self.scheme}.png"
        run("import", "-silent", "-window", self.window, "-depth", "8", str(path), timeout=5)
        run("convert", str(path), "-strip", "-define", "png:compression-level=9", f"png24:{path}")
        print(f"{path.name}: {path.stat().st_size // 1024} KB", flush=True)

    def save_pages(self):
        """Each page as far as the wheel goes, a window's height at a time."""
        for number, tab in enumerate(TABS, 1):
            key(f"ctrl+{number}")
            self.save(tab)
            for part in range(2, 9):
                before = self.pixels()
                xdotool("mousemove", "--window", self.window, 493, 250,
                        "click", "--repeat", 5, "--delay", 20, 5, "mousemove", 2, 2)
                time.sleep(0.2)
                if self.pixels() == before:
                    break
                self.save(f"{tab}-{part}")

    def save_questions(self):
        key("ctrl+1")
        self.root.wait_for("Shortcut: Shift-Super-V", "push button").do("Press")
        self.save("recording")
        key("ctrl+c")
        self.root.wait_for("OK", "push button")
        self.save("conflict")
        key("Return")
        self.root.wait_for("Delete All", "push button").do("Press")
        self.root.wait_for("Cancel", "push button")
        self.save("delete")
        key("Escape")

    def save_sheets(self):
        """What the Appearance page asks and offers in front of itself."""
        key("ctrl+3")
        for button, name in (("Create new group", "group-new"), ("Edit group Recipes", "group-edit"),
                             ("Delete group Recipes", "group-delete"), ("Link", "color")):
            self.root.wait_for(button, "push button").do("Press")
            self.root.wait_for("Done" if name == "color" else "Cancel", "push button")
            self.save(name)
            key("Escape")


def make_settings(gallery, _):
    for scheme in ("dark", "light"):
        pictures = SettingsGallery(gallery, scheme)
        pictures.save_pages()
        pictures.save_questions()
        pictures.save_sheets()
        key("Escape")
