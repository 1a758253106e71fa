# SPDX-License-Identifier: MIT
"""A desktop portal that states one colour scheme: the number in a file, read again on SIGUSR1."""

import pathlib
import signal
import sys

import dbus
import dbus.mainloop.glib
import dbus.service
from gi.repository import GLib

SETTINGS = "org.freedesktop.portal.Settings"
SCHEME = ("org.freedesktop.appearance", "color-scheme")


class Portal(dbus.service.Object):
    def __init__(self, bus, path):
        super().__init__(bus, "/org/freedesktop/portal/desktop")
        self.path = path

    def value(self):
        return dbus.UInt32(int(self.path.read_text()), variant_level=1)

    # Only the method of the interface's first version, whose value is wrapped twice.
    @dbus.service.method(SETTINGS, in_signature="ss", out_signature="v")
    def Read(self, namespace, key):
        assert (namespace, key) == SCHEME
        print("read", flush=True)
        return dbus.UInt32(int(self.path.read_text()), variant_level=2)

    @dbus.service.signal(SETTINGS, signature="ssv")
    def SettingChanged(self, namespace, key, value):
        pass

    def tell(self):
        self.SettingChanged(*SCHEME, self.value())
        return True


def main():
    dbus.mainloop.glib.DBusGMainLoop(set_as_default=True)
    bus = dbus.SessionBus()
    portal = Portal(bus, pathlib.Path(sys.argv[1]))
    name = dbus.service.BusName("org.freedesktop.portal.Desktop", bus)
    GLib.unix_signal_add(GLib.PRIORITY_DEFAULT, signal.SIGUSR1, portal.tell)
    print("ready", name.get_name(), flush=True)
    GLib.MainLoop().run()


main()
