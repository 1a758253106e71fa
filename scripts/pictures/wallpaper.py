# SPDX-License-Identifier: MIT
"""Shows a picture behind all windows, as a desktop does. usage: wallpaper.py FILE"""

import sys

import gi

gi.require_version("Gtk", "3.0")
gi.require_version("Gdk", "3.0")
from gi.repository import Gdk, Gtk  # noqa: E402

window = Gtk.Window(title="wallpaper", decorated=False, type_hint=Gdk.WindowTypeHint.DESKTOP)
window.add(Gtk.Image.new_from_file(sys.argv[1]))
window.show_all()
window.move(0, 0)
Gtk.main()
