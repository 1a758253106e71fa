#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""A real VTE terminal in a window: what is typed or pasted goes to a file as it comes."""

import sys

import gi

gi.require_version("Gtk", "3.0")
gi.require_version("Vte", "2.91")
from gi.repository import Gdk, GLib, Gtk, Vte  # noqa: E402


def key_pressed(terminal, event):
    wanted = Gdk.ModifierType.CONTROL_MASK | Gdk.ModifierType.SHIFT_MASK
    if event.state & wanted == wanted and Gdk.keyval_to_lower(event.keyval) == Gdk.KEY_v:
        terminal.paste_clipboard()
        return True
    return False


def main(title, path):
    GLib.set_prgname("vte-2.91")
    window = Gtk.Window(title=title)
    terminal = Vte.Terminal()
    terminal.connect("key-press-event", key_pressed)
    terminal.spawn_async(
        Vte.PtyFlags.DEFAULT, None, ["/bin/sh", "-c", f"stty -icanon; exec cat > '{path}'"], [],
        GLib.SpawnFlags.DEFAULT, None, None, -1, None, None)
    window.add(terminal)
    window.connect("destroy", Gtk.main_quit)
    window.set_default_size(600, 300)
    window.show_all()
    Gtk.main()


if __name__ == "__main__":
    Gdk.set_program_class("vte-2.91")
    main(sys.argv[1], sys.argv[2])
