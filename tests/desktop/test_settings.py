#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The settings window of the built program: real keys for the recorder, a shortcut that another
program owns, settings that outlive the program and are edited by hand, screen readers' view."""

import ctypes
import json
import time

import accessible
from desktop import QuilloTest, active_window, key, visible_windows, wait_for, xdotool
from panel import click, main

WINDOW = "^Preferences$"
CONTROL, ALT, SHIFT, SUPER = 4, 8, 1, 64  # Modifiers of the X server.
SPACE, V = 65, 55  # Key codes of the X server.
TABS = ("General", "Capture", "Appearance", "Privacy")


class Rival:
    """Another program that owns a shortcut."""

    def __init__(self, keycode, modifiers):
        self.x11 = ctypes.CDLL("libX11.so.6")
        self.x11.XOpenDisplay.restype = ctypes.c_void_p
        self.x11.XDefaultRootWindow.restype = ctypes.c_ulong
        self.display = ctypes.c_void_p(self.x11.XOpenDisplay(None))
        root = ctypes.c_ulong(self.x11.XDefaultRootWindow(self.display))
        self.x11.XGrabKey(self.display, keycode, modifiers, root, 0, 1, 1)
        self.x11.XSync(self.display, 0)

    def quit(self):
        self.x11.XCloseDisplay(self.display)


class SettingsTest(QuilloTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.terminal, _ = cls.desktop.open_xterm("terminal")

    def setUp(self):
        self.open()

    def tearDown(self):
        self.close()

    def open(self):
        self.quillo.act("settings")
        self.window = self.desktop.window(WINDOW)
        wait_for(lambda: active_window() == self.window, "the settings' focus")
        self.root = accessible.program(self.quillo.process.pid).wait_for("Preferences")
        return self.root

    def close(self):
        while visible_windows(WINDOW):
            self.desktop.focus(self.window)
            key("Escape")
            wait_for(lambda: not self.root.find("Cancel"), "the sheet to go")

    def press(self, name, role="push button"):
        self.root.wait_for(name, role).do("Press")

    def settings(self):
        path = self.quillo.config
        return json.loads(path.read_text()) if path.exists() else {}

    def wait_for_setting(self, name, value):
        wait_for(lambda: self.settings().get(name) == value, f"{name} to be {value!r}")

    def record(self, shortcut, spoken):
        self.press(f"Shortcut: {spoken}")
        self.root.wait_for("Press keys...", "push button")
        key(*shortcut)

    def assert_panel_answers(self, *shortcut):
        self.quillo.pass_debounce()
        key(*shortcut)
        wait_for(self.quillo.panel, "the panel")
        key("Escape")
        self.quillo.wait_until_hidden()
        self.quillo.pressed = time.monotonic()


class RecorderTest(SettingsTest):
    def tearDown(self):
        self.press("Reset to default, Shift-Super-V")
        super().tearDown()

    def test_combinations_of_the_desktop_are_recorded_and_work(self):
        # Alt-F4 closes windows here, unless the recorder holds the keyboard.
        self.record(["alt+F4"], "Shift-Super-V")
        self.root.wait_for("Shortcut: Alt-F4", "push button")
        self.assertEqual(visible_windows(WINDOW), [self.window])
        self.wait_for_setting("hotkeyKeyCode", 118)
        self.wait_for_setting("hotkeyModifiers", 2048)
        self.record(["shift+k", "super+alt+k"], "Alt-F4")
        self.root.wait_for("Shortcut: Alt-Super-K", "push button")
        self.wait_for_setting("hotkeyKeyCode", 40)
        self.wait_for_setting("hotkeyModifiers", 2304)
        self.assert_panel_answers("super+alt+k")

    def test_refused_and_cancelled_ones_change_nothing(self):
        self.record(["ctrl+c"], "Shift-Super-V")
        self.root.wait_for('This shortcut conflicts with "Copy". '
                           "Please choose a different combination.")
        self.press("OK")
        self.record(["Escape"], "Shift-Super-V")
        self.root.wait_for("Shortcut: Shift-Super-V", "push button")
        self.assertEqual(visible_windows(WINDOW), [self.window])
        self.assert_panel_answers("super+shift+v")

    def test_the_running_shortcut_is_free_while_another_is_recorded(self):
        self.record(["super+shift+v"], "Shift-Super-V")
        self.root.wait_for("Shortcut: Shift-Super-V", "push button")
        self.assertIsNone(self.quillo.panel())
        self.press("Shortcut: Shift-Super-V")
        self.desktop.focus(self.terminal)
        self.root.wait_for("Shortcut: Shift-Super-V", "push button")
        self.assert_panel_answers("super+shift+v")

    def test_a_shortcut_of_another_program_is_tried_again_when_the_window_changes(self):
        rival = Rival(SPACE, CONTROL | ALT)
        self.record(["ctrl+alt+space"], "Shift-Super-V")
        self.root.wait_for("Disabled", "label")
        self.desktop.focus(self.terminal)
        self.desktop.focus(self.window)
        self.assertIsNotNone(self.root.find("Disabled", "label"))
        rival.quit()
        self.desktop.focus(self.terminal)
        self.root.wait_for("Enabled", "label")
        self.assert_panel_answers("ctrl+alt+space")


class ValuesTest(SettingsTest):
    SWITCHES = {"Auto-Paste": "enableAutoPaste", "Capture Images": "captureImages",
                "Capture Files": "captureFiles", "Link Previews": "fetchLinkPreviews"}

    def show_tab(self, name):
        key(f"ctrl+{TABS.index(name) + 1}")
        wait_for(lambda: "checked" in self.root.find(name, "page tab").states, f"the tab {name}")

    def is_on(self, name):
        return "checked" in self.root.wait_for(name, "check box").states

    def test_every_choice_outlives_the_program(self):
        self.press("Launch at Login", "check box")
        for name in self.SWITCHES:
            self.show_tab("General" if name == "Auto-Paste" else "Capture")
            if self.is_on(name):
                self.press(name, "check box")
        self.press("300", "radio button")
        self.press("Large", "radio button")
        for name in self.SWITCHES.values():
            self.wait_for_setting(name, False)
        self.wait_for_setting("maxHistoryItems", 300)
        self.wait_for_setting("imageBadgeSize", "large")
        stored = self.settings()
        self.quillo.stop()
        self.quillo.start()
        self.open()
        self.assertTrue(self.is_on("Launch at Login"))
        self.assertFalse(self.is_on("Auto-Paste"))
        self.show_tab("Capture")
        self.assertFalse(any(self.is_on(name) for name in list(self.SWITCHES)[1:]))
        for choice in ("300", "Large"):
            self.assertIn("checked", self.root.find(choice, "radio button").states)
        self.assertEqual({k: v for k, v in self.settings().items() if "Frame" not in k},
                         {k: v for k, v in stored.items() if "Frame" not in k})

    def test_an_edit_of_the_file_shows_at_once(self):
        self.show_tab("Capture")
        edited = self.settings() | {"captureImages": False, "maxHistoryItems": 1234}
        self.quillo.config.parent.mkdir(parents=True, exist_ok=True)
        self.quillo.config.write_text(json.dumps(edited))
        self.root.wait_for("1234", "label")
        self.assertFalse(self.is_on("Capture Images"))

    def test_delete_all_leaves_nothing(self):
        self.copy("to be forgotten")
        self.quillo.wait_for_text("to be forgotten")
        self.show_tab("General")
        self.press("Delete All")
        self.root.wait_for("This will permanently delete your entire clipboard history. "
                           "This action cannot be undone.")
        key("Tab", "Return")
        self.root.wait_for("All clips are deleted", "label")
        self.assertEqual(self.quillo.rows(), [])

    def test_every_control_is_named_and_the_tab_key_reaches_it(self):
        for tab in TABS:
            self.show_tab(tab)
            with self.subTest(tab):
                stops = [part for part in self.root.walk() if "focusable" in part.states
                         and part.role not in ("filler", "panel", "scroll pane", "page tab list")]
                self.assertEqual([part for part in stops if not part.name], [])
                buttons = {part.name for part in stops
                           if part.role in ("push button", "check box", "slider", "combo box")
                           and "enabled" in part.states}
                reached, waiting = set(), list(stops)
                for _ in range(2 * len(stops)):
                    key("Tab")
                    here = next((part for part in waiting if "focused" in part.states), None)
                    if here:
                        # Mostly the next one is the next to be reached.
                        at = waiting.index(here)
                        waiting = waiting[at + 1:] + waiting[:at]
                        reached.add(here.name)
                    if buttons <= reached:
                        break
                self.assertEqual(buttons - reached, set())


if __name__ == "__main__":
    main()
