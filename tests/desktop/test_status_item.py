#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The status item in panels of both protocols and without any, the popover, the windows, and the
ways in from outside."""

import json
import os
import subprocess
import time
import unittest

from desktop import (Desktop, Quillo, QuilloTest, active_window, key, run, visible_windows,
                     wait_for, xdotool)
from panel import click, geometry, main
from status_host import StatusHost, pump

POPOVER, LIBRARY, SETTINGS = "^Recent clips$", "^Quillo$", "^Preferences$"
MARKER = "com.quillohq.Quillo.marker"
MENU = ["Show Overlay (⇧⌘V)", "Show Library", "", "Preferences...", "Menu Bar Icon",
        "Check for Updates...", "", "Quit Quillo"]
SAME_CLICK = 0.3  # A click on the icon so soon after the focus was lost is the one that took it.
DOUBLE_CLICK = 0.5  # Two clicks within this time are one.
SERVICE = ("-d", "com.quillohq.Quillo", "-o", "/com/quillohq/Quillo")


def call(method, *arguments):
    """Calls the program as the desktop does; returns what went wrong."""
    done = subprocess.run(
        ["gdbus", "call", "--session", *SERVICE, "-m", f"org.freedesktop.Application.{method}",
         *arguments], capture_output=True, text=True, timeout=10, check=False)
    return done.stderr


def act(name):
    return call("ActivateAction", name, "[]", "{}")


def wait_until_gone(name):
    wait_for(lambda: not visible_windows(name), f"the window {name} to go")


def copy_text(test, text):
    mark = test.quillo.mark()
    test.desktop.copy(text)
    test.quillo.wait_for_log(("Saved new", "bumped to front"), mark)


def close_window(window):
    run("wmctrl", "-i", "-c", hex(int(window)))
    wait_for(lambda: window not in visible_windows("."), "the window to close")


class NotifierHostTest(QuilloTest):
    """A panel of StatusNotifierItem that comes after the program."""

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.host = StatusHost().start()
        cls.addClassCleanup(cls.host.stop)
        cls.host.wait_for_item()
        cls.terminal, cls.typed = cls.desktop.open_xterm("terminal")
        for text in ("first note", "second note", "https://example.org/third"):
            copy_text(cls, text)

    def setUp(self):
        self.desktop.focus(self.terminal)

    def open_popover(self):
        self.host.click()
        window = self.desktop.window(POPOVER)
        wait_for(lambda: active_window() == window, "the popover's focus")
        return window

    def test_click_opens_the_popover_at_the_pointer_and_a_second_one_closes_it(self):
        xdotool("mousemove", 1430, 890)
        left, top, width, height = geometry(self.open_popover())
        self.assertEqual((width, height), (400, 500))
        self.assertTrue(left >= 0 and left + 400 <= 1440 and top + 500 <= 900, (left, top))
        self.host.click()
        wait_until_gone(POPOVER)

    def test_a_row_is_copied_with_the_marker_by_key_and_by_click(self):
        rows = len(self.quillo.rows())
        self.open_popover()
        xdotool("type", "--delay", "15", "NOTE")
        key("Down", "Return")
        wait_until_gone(POPOVER)
        wait_for(lambda: self.desktop.clipboard() == b"first note", "the first note")
        self.assertEqual(self.desktop.clipboard_targets()[0], MARKER)
        left, top, _, _ = geometry(self.open_popover())
        click((left + 200, top + 85))
        wait_until_gone(POPOVER)
        wait_for(lambda: self.desktop.clipboard() == b"https://example.org/third", "the address")
        self.assertEqual(len(self.quillo.rows()), rows, "our own copies are no new clips")

    def test_popover_closes_on_escape_and_when_the_person_turns_to_something_else(self):
        self.open_popover()
        key("Escape")
        wait_until_gone(POPOVER)
        self.open_popover()
        self.desktop.focus(self.terminal)
        wait_until_gone(POPOVER)
        time.sleep(SAME_CLICK)
        left, top, width, height = geometry(self.terminal)
        xdotool("mousemove", 1430, 890)
        self.open_popover()
        click((left + width // 2, top + height // 2))
        wait_until_gone(POPOVER)

    def test_menu_of_the_panel_reaches_everything(self):
        self.assertEqual(self.host.menu().titles, MENU)
        self.host.choose("Show Library")
        library = self.desktop.window(LIBRARY)
        wait_for(lambda: active_window() == library, "the library's focus")
        self.host.choose("Preferences...")
        settings = self.desktop.window(SETTINGS)
        wait_for(lambda: active_window() == settings, "the settings' focus")
        close_window(library)
        close_window(settings)
        self.assertIsNone(self.quillo.process.poll(), "closing windows never quits")
        self.host.choose("Check for Updates...")
        self.desktop.window("^Software Update$")
        key("Return")
        wait_until_gone("^Software Update$")
        self.host.choose("Menu Bar Icon", "Scissors")
        wait_for(lambda: self.host.menu().child("Menu Bar Icon").checked == ["Scissors"],
                 "the mark at the scissors")
        wait_for(lambda: json.loads(self.quillo.config.read_text()).get("statusBarIcon")
                 == "scissors", "the stored icon")
        mark = self.quillo.mark()
        self.host.choose("Show Overlay (⇧⌘V)")
        wait_for(self.quillo.panel, "the panel")
        key("Escape")
        self.quillo.wait_until_hidden()
        self.assertIn("Overlay hidden", self.quillo.log_since(mark))

    def test_a_saved_clip_bounces_the_icon(self):
        pump()
        self.host.icons = 0
        copy_text(self, "something new")
        def bounced():
            pump()
            return self.host.icons >= 9
        wait_for(bounced, "eight steps and the icon back", 3)

    def test_a_panel_that_restarts_gets_the_item_again(self):
        mark = self.quillo.mark()
        self.host.stop()
        self.quillo.wait_for_log("no panel takes it", mark)
        self.host.start()
        self.host.wait_for_item()
        self.assertEqual(self.host.menu().titles, MENU)
        self.open_popover()
        key("Escape")
        wait_until_gone(POPOVER)

    def test_a_withheld_paste_is_shown(self):
        editor, _ = self.desktop.open_xterm("leaving")
        self.quillo.show_panel()
        run("wmctrl", "-i", "-c", hex(int(editor)))
        wait_for(lambda: editor not in visible_windows("."), "the editor to close")
        key("Return")
        wait_for(lambda: "not pasted" in str(self.host.read("ToolTip")), "the tool tip")


class TrayWindowTest(QuilloTest):
    """A panel of the System Tray Protocol, and none of the other."""

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.terminal, _ = cls.desktop.open_xterm("terminal")
        copy_text(cls, "only note")
        cls.start_tray()

    @classmethod
    def start_tray(cls):
        mark = cls.quillo.mark()
        cls.tray = cls.desktop.start("trayer", "--edge", "top", "--align", "right", "--widthtype",
                                     "pixel", "--width", "120", "--height", "26", "--SetDockType",
                                     "true", "--SetPartialStrut", "true")
        cls.quillo.wait_for_log("Status item: system tray", mark)

    def icon(self):
        """The middle of the icon, the only one in the tray."""
        def place():
            inner = xdotool("search", "--onlyvisible", "--class", "^quillo$", check=False).split()
            areas = [geometry(window) for window in inner]
            return next((area for area in areas if area[2] <= 64 and area[0] >= 1320), None)
        left, top, width, height = wait_for(place, "the icon in the tray")
        return left + width // 2, top + height // 2

    def test_click_opens_the_popover_below_the_icon_and_the_secondary_one_the_menu(self):
        at = self.icon()
        self.click(at)
        window = self.desktop.window(POPOVER)
        _, top, _, _ = geometry(window)
        self.assertLess(abs(top - (at[1] + 17)), 16, "below the icon")
        self.click(at)
        wait_until_gone(POPOVER)
        self.click(at, 3)
        wait_for(self.menu_is_open, "the menu")
        key("Down", "Down", "Return")
        library = self.desktop.window(LIBRARY)
        close_window(library)

    @staticmethod
    def click(at, button=1):
        time.sleep(DOUBLE_CLICK)
        click(at, button)

    @staticmethod
    def menu_is_open():
        windows = xdotool("search", "--onlyvisible", "--class", "^quillo$", check=False).split()
        return any(geometry(window)[3] > 100 for window in windows)

    def test_a_tray_that_restarts_gets_the_icon_again(self):
        mark = self.quillo.mark()
        self.desktop.end(self.tray)
        self.quillo.wait_for_log("no panel takes it", mark)
        self.start_tray()
        self.click(self.icon())
        self.desktop.window(POPOVER)
        key("Escape")
        wait_until_gone(POPOVER)


class NoPanelTest(QuilloTest):
    """A desktop without a panel: everything is reached from outside."""

    def test_actions_open_everything_and_nonsense_nothing(self):
        self.assertEqual(act("overlay"), "")
        wait_for(self.quillo.panel, "the panel")
        self.assertEqual(act("settings"), "")
        settings = self.desktop.window(SETTINGS)
        wait_for(lambda: active_window() == settings, "the settings in front of the panel")
        self.assertEqual(act("library"), "")
        library = self.desktop.window(LIBRARY)
        for wrong in (act("delete"), act(""), call("ActivateAction", "7"), call("Open", "[]"),
                      call("Quit")):
            self.assertIn("Error", wrong)
        self.assertIsNone(self.quillo.process.poll())
        close_window(library)
        close_window(settings)

    def test_a_second_start_raises_the_library_wherever_it_is(self):
        for away in (lambda: None,
                     lambda: xdotool("windowminimize", self.library()),
                     lambda: run("wmctrl", "-i", "-r", hex(int(self.library())), "-t", "1")):
            away()
            second = subprocess.run([self.quillo.program], capture_output=True, timeout=10,
                                    check=False)
            self.assertEqual(second.returncode, 0)
            window = self.desktop.window(LIBRARY)
            wait_for(lambda: active_window() == window, "the library in front")
        xdotool("set_desktop", 0)
        close_window(self.library())

    def test_a_window_comes_back_where_it_was_at_the_next_start_too(self):
        act("library")
        window = self.desktop.window(LIBRARY)
        run("wmctrl", "-i", "-r", hex(int(window)), "-e", "0,300,200,920,610")
        wait_for(lambda: geometry(window)[2:] == (920, 610), "the window's size")
        before = geometry(window)
        self.quillo.stop()
        self.quillo.start()
        wait_for(lambda: not act("library"), "the program on the bus")
        window = self.desktop.window(LIBRARY)
        wait_for(lambda: geometry(window) == before, f"the place {before}")
        close_window(window)

    @staticmethod
    def library():
        return visible_windows(LIBRARY)[0]


class NoBusTest(unittest.TestCase):
    """Without a session bus the program runs, and a second start says what it cannot do."""

    def test_it_runs(self):
        env = {"DBUS_SESSION_BUS_ADDRESS": "", "NO_AT_BRIDGE": "1"}
        with Desktop() as desktop:
            quillo = Quillo(desktop, os.environ["QUILLO_PROGRAM"])
            quillo.forget()
            quillo.start(env)
            desktop.copy("a text")
            quillo.wait_for_text("a text")
            second = subprocess.run(
                [quillo.program], capture_output=True, text=True, timeout=10, check=False,
                env={**os.environ, **env, "QT_FORCE_STDERR_LOGGING": "1"})
            self.assertEqual(second.returncode, 0)
            self.assertIn("cannot be told", second.stderr)
            self.assertEqual(quillo.stop(), 0)


if __name__ == "__main__":
    main()
