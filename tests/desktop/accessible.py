# SPDX-License-Identifier: MIT
"""A program as screen readers see it: its accessible objects over AT-SPI, asked on the bus itself,
so that nothing is answered from a cache. Needs AT_SPI=on of ./with_display."""

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402

from desktop import Failure, wait_for  # noqa: E402

REGISTRY = ("org.a11y.atspi.Registry", "/org/a11y/atspi/accessible/root")
STATES = {1: "active", 4: "checked", 7: "editable", 8: "enabled", 11: "focusable", 12: "focused",
          20: "pressed", 23: "selected", 24: "sensitive", 25: "showing", 30: "visible",
          41: "checkable"}


class Accessible:
    """One object of a program."""

    bus = None

    def __init__(self, owner, path):
        self.owner, self.path = owner, path

    def __eq__(self, other):
        return (isinstance(other, Accessible)
                and (self.owner, self.path) == (other.owner, other.path))

    def __hash__(self):
        return hash((self.owner, self.path))

    def __repr__(self):
        return f"<{self.role} {self.name!r}>"

    @classmethod
    def connection(cls):
        if cls.bus is None:
            session = Gio.bus_get_sync(Gio.BusType.SESSION)
            address = session.call_sync(
                "org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress", None, None,
                Gio.DBusCallFlags.NONE, 10_000, None).unpack()[0]
            cls.bus = Gio.DBusConnection.new_for_address_sync(
                address, Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT
                | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION, None, None)
        return cls.bus

    def call(self, interface, method, arguments=None):
        return self.connection().call_sync(
            self.owner, self.path, interface, method, arguments, None, Gio.DBusCallFlags.NONE,
            10_000, None).unpack()

    def ask(self, method, arguments=None, interface="Accessible"):
        return self.call(f"org.a11y.atspi.{interface}", method, arguments)[0]

    def read(self, name, interface="Accessible"):
        return self.call("org.freedesktop.DBus.Properties", "Get",
                         GLib.Variant("(ss)", (f"org.a11y.atspi.{interface}", name)))[0]

    @property
    def name(self):
        return self.read("Name")

    @property
    def description(self):
        return self.read("Description")

    @property
    def role(self):
        return self.ask("GetRoleName")

    @property
    def text(self):
        return self.ask("GetText", GLib.Variant("(ii)", (0, -1)), "Text")

    @property
    def states(self):
        low, high = self.ask("GetState")
        bits = low | high << 32
        return {name for bit, name in STATES.items() if bits >> bit & 1}

    @property
    def children(self):
        return [Accessible(*child) for child in self.ask("GetChildren")]

    @property
    def area(self):
        """Left, top, width and height on the screen."""
        return self.ask("GetExtents", GLib.Variant("(u)", (0,)), "Component")

    @property
    def center(self):
        x, y, width, height = self.area
        return x + width // 2, y + height // 2

    @property
    def actions(self):
        return [name for name, _, _ in self.ask("GetActions", None, "Action")]

    def do(self, action):
        names = self.actions
        if action not in names:
            raise Failure(f"{self!r} knows {names}, not {action!r}")
        self.ask("DoAction", GLib.Variant("(i)", (names.index(action),)), "Action")

    def is_showing(self):
        return "showing" in self.states

    def walk(self):
        """This object and what is in it, as far as it can be seen."""
        yield self
        for child in self.children:
            if child.is_showing():
                yield from child.walk()

    def find(self, name, role=None):
        """The first that is seen of that name, or none. One that goes meanwhile counts as gone."""
        try:
            return next((found for found in self.walk()
                         if found.name == name and role in (None, found.role)), None)
        except GLib.Error:
            return None

    def wait_for(self, name, role=None):
        return wait_for(lambda: self.find(name, role), f"the {role or 'object'} {name!r}")


def program(pid):
    """The root of a process's objects."""
    registry = Accessible(*REGISTRY)

    def found():
        for child in registry.children:
            bus_pid = Accessible.connection().call_sync(
                "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                "GetConnectionUnixProcessID", GLib.Variant("(s)", (child.owner,)), None,
                Gio.DBusCallFlags.NONE, 10_000, None).unpack()[0]
            if bus_pid == pid:
                return child
        return None
    return wait_for(found, f"the accessible objects of process {pid}")
