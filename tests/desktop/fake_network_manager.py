# SPDX-License-Identifier: MIT
"""The desktop's network service on the session bus; State and Connectivity stand in a file."""

import pathlib
import sys

import dbus
import dbus.mainloop.glib
import dbus.service
from gi.repository import GLib

NAME = "org.freedesktop.NetworkManager"


class NetworkManager(dbus.service.Object):
    def __init__(self, bus, path):
        super().__init__(bus, "/org/freedesktop/NetworkManager")
        self.path = path

    @dbus.service.method("org.freedesktop.DBus.Properties", in_signature="s",
                         out_signature="a{sv}")
    def GetAll(self, interface):
        assert interface == NAME
        state, connectivity = map(int, self.path.read_text().split())
        return {"State": dbus.UInt32(state), "Connectivity": dbus.UInt32(connectivity)}


def main():
    dbus.mainloop.glib.DBusGMainLoop(set_as_default=True)
    bus = dbus.SessionBus()
    service = NetworkManager(bus, pathlib.Path(sys.argv[1]))
    name = dbus.service.BusName(NAME, bus)
    print("ready", name.get_name(), bool(service), flush=True)
    GLib.MainLoop().run()


main()
