# SPDX-License-Identifier: MIT
"""A panel that takes status items: the watcher and a host of StatusNotifierItem on the session bus,
which can come late, go and come again, and works with an item's menu as panels do."""

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402

from desktop import Failure, wait_for  # noqa: E402

WATCHER, WATCHER_PATH = "org.kde.StatusNotifierWatcher", "/StatusNotifierWatcher"
ITEM, ITEM_PATH = "org.kde.StatusNotifierItem", "/StatusNotifierItem"
MENU = "com.canonical.dbusmenu"
DESCRIPTION = f"""<node><interface name="{WATCHER}">
<method name="RegisterStatusNotifierItem"><arg type="s" direction="in"/></method>
<method name="RegisterStatusNotifierHost"><arg type="s" direction="in"/></method>
<property name="RegisteredStatusNotifierItems" type="as" access="read"/>
<property name="IsStatusNotifierHostRegistered" type="b" access="read"/>
<property name="ProtocolVersion" type="i" access="read"/>
<signal name="StatusNotifierHostRegistered"/>
<signal name="StatusNotifierHostUnregistered"/>
</interface></node>"""


def pump(deadline_reached=lambda: False):
    """Lets the bus's messages in."""
    while GLib.MainContext.default().iteration(False) and not deadline_reached():
        pass


class Entry:
    """A line of a menu."""

    def __init__(self, number, properties, children):
        self.number, self.properties = number, properties
        self.children = [Entry(*child) for child in children]

    @property
    def title(self):
        return self.properties.get("label", "").replace("_", "")

    @property
    def titles(self):
        """The titles in order; a separator is an empty one."""
        return ["" if child.properties.get("type") == "separator" else child.title
                for child in self.children]

    def child(self, title):
        return next(child for child in self.children if child.title == title)

    @property
    def checked(self):
        return [child.title for child in self.children
                if child.properties.get("toggle-state") == 1]


class StatusHost:
    def __init__(self):
        self.bus = Gio.bus_get_sync(Gio.BusType.SESSION)
        self.items, self.name, self.object = [], None, None
        self.icons = 0

    def start(self):
        interface = Gio.DBusNodeInfo.new_for_xml(DESCRIPTION).interfaces[0]
        self.object = self.bus.register_object(WATCHER_PATH, interface, self._called, self._asked,
                                               None)
        self.name = Gio.bus_own_name_on_connection(
            self.bus, WATCHER, Gio.BusNameOwnerFlags.REPLACE, None, None)
        self.bus.signal_subscribe(None, ITEM, "NewIcon", None, None, Gio.DBusSignalFlags.NONE,
                                  lambda *_: setattr(self, "icons", self.icons + 1))
        pump()
        return self

    def stop(self):
        Gio.bus_unown_name(self.name)
        self.bus.unregister_object(self.object)
        self.items = []
        pump()

    def _called(self, _bus, sender, _path, _interface, method, arguments, call):
        if method == "RegisterStatusNotifierItem":
            service = arguments.unpack()[0]
            self.items.append(sender if service.startswith("/") else service)
        call.return_value(None)

    def _asked(self, _bus, _sender, _path, _interface, name):
        return {"IsStatusNotifierHostRegistered": GLib.Variant("b", True),
                "ProtocolVersion": GLib.Variant("i", 0),
                "RegisteredStatusNotifierItems": GLib.Variant("as", self.items)}[name]

    def wait_for_item(self):
        def registered():
            pump()
            return self.items
        wait_for(registered, "the status item")

    def call(self, interface, method, arguments, path):
        """Calls the item while its own calls to us are answered."""
        answer = []
        self.bus.call(self.items[-1], path, interface, method, arguments, None,
                      Gio.DBusCallFlags.NONE, 10_000, None,
                      lambda bus, result: answer.append(self._finish(bus, result)))
        def answered():
            pump()
            return answer
        result = wait_for(answered, f"the answer to {method}")[0]
        if isinstance(result, GLib.Error):
            raise Failure(result.message)
        return result.unpack()

    @staticmethod
    def _finish(bus, result):
        try:
            return bus.call_finish(result)
        except GLib.Error as error:
            return error

    def read(self, name):
        return self.call("org.freedesktop.DBus.Properties", "Get",
                         GLib.Variant("(ss)", (ITEM, name)), ITEM_PATH)[0]

    def click(self):
        """The primary click; the item is not told where it is."""
        self.call(ITEM, "Activate", GLib.Variant("(ii)", (0, 0)), ITEM_PATH)

    def menu(self):
        path = self.read("Menu")
        _, root = self.call(MENU, "GetLayout", GLib.Variant("(iias)", (0, -1, [])), path)
        return Entry(*root)

    def choose(self, *titles):
        entry = self.menu()
        for title in titles:
            entry = entry.child(title)
        self.call(MENU, "Event", GLib.Variant(
            "(isvu)", (entry.number, "clicked", GLib.Variant("s", ""), 0)), self.read("Menu"))
