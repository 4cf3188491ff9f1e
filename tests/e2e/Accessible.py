"""What a screen reader sees of a program: its tree on the accessibility bus."""
import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402

from Desktop import PATIENCE, until  # noqa: E402

ROOT = "/org/a11y/atspi/accessible/root"
NOTHING = "/org/a11y/atspi/null"  # some of the toolkit's views count children that they have not
INTERFACE = "org.a11y.atspi."
STATES = {
    1: "active", 4: "checked", 5: "collapsed", 6: "defunct", 7: "editable", 8: "enabled", 9: "expandable",
    10: "expanded", 11: "focusable", 12: "focused", 16: "modal", 18: "multiselectable", 22: "selectable",
    23: "selected", 24: "sensitive", 25: "showing", 30: "visible", 41: "checkable"}
SCREEN, WINDOW = 0, 1


class AccessibilityBus:
    """The bus on which programs show themselves; starts with the first one who asks for it."""

    _shared = None

    @classmethod
    def shared(cls):
        if not cls._shared:
            cls._shared = cls()
        return cls._shared

    def __init__(self):
        session = Gio.bus_get_sync(Gio.BusType.SESSION)
        address, = session.call_sync(
            "org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress", None, None, Gio.DBusCallFlags.NONE,
            PATIENCE * 1000).unpack()
        self._connection = Gio.DBusConnection.new_for_address_sync(
            address, Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT
            | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION)
        self.events = []

    def call(self, name, path, interface, method, arguments=None):
        return self._connection.call_sync(
            name, path, interface, method, arguments, None, Gio.DBusCallFlags.NONE, PATIENCE * 1000).unpack()

    def application(self, pid):
        """The root of what a process shows; none until it does."""
        for name, path in self.call("org.a11y.atspi.Registry", ROOT, INTERFACE + "Accessible", "GetChildren")[0]:
            its, = self.call(
                "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "GetConnectionUnixProcessID",
                GLib.Variant("(s)", (name,)))
            if its == pid:
                return Accessible(self, name, path)
        return None

    def listen(self, event):
        """Gathers what happens in `events`, as (kind, detail, number, accessible)."""
        self.call(
            "org.a11y.atspi.Registry", "/org/a11y/atspi/registry", INTERFACE + "Registry", "RegisterEvent",
            GLib.Variant("(sass)", (event, [], "")))
        member = "".join(part.capitalize() for part in event.split(":")[1].split("-"))
        self._connection.signal_subscribe(
            None, INTERFACE + "Event.Object", member, None, None, Gio.DBusSignalFlags.NONE, self._heard)

    def _heard(self, _, sender, path, __, member, arguments):
        detail, number, *_rest = arguments.unpack()
        self.events.append((member, detail, number, Accessible(self, sender, path)))

    def forget(self):
        """Leaves out what has happened so far."""
        self.hear()
        self.events.clear()

    def hear(self):
        """Takes in what has happened."""
        context = GLib.MainContext.default()
        while context.iteration(False):
            pass
        return self.events


class Accessible:
    def __init__(self, bus, owner, path):
        self._bus, self._owner, self.path = bus, owner, path

    def __eq__(self, other):
        return isinstance(other, Accessible) and (self._owner, self.path) == (other._owner, other.path)

    def __hash__(self):
        return hash((self._owner, self.path))

    def __repr__(self):
        try:
            return f"<{self.role} {self.name!r} {' '.join(sorted(self.states))}>"
        except GLib.Error:
            return f"<gone {self.path}>"

    def _call(self, interface, method, arguments=None):
        return self._bus.call(self._owner, self.path, INTERFACE + interface, method, arguments)

    def _property(self, interface, name):
        return self._bus.call(
            self._owner, self.path, "org.freedesktop.DBus.Properties", "Get",
            GLib.Variant("(ss)", (INTERFACE + interface, name)))[0]

    def ask_for_properties(self, method, *arguments):
        """Any call of the interface for properties; gives its answer or the name of the error."""
        signature = f"({'s' * len(arguments)})"
        try:
            return self._bus.call(
                self._owner, self.path, "org.freedesktop.DBus.Properties", method, GLib.Variant(signature, arguments))
        except GLib.Error as error:
            return Gio.DBusError.get_remote_error(error)

    @property
    def name(self):
        return self._property("Accessible", "Name")

    @property
    def description(self):
        return self._property("Accessible", "Description")

    @property
    def role(self):
        return self._call("Accessible", "GetRoleName")[0]

    @property
    def states(self):
        low, high = self._call("Accessible", "GetState")[0]
        return {name for bit, name in STATES.items() if (low | high << 32) >> bit & 1}

    def is_(self, *states):
        return self.states.issuperset(states)

    def is_shown(self):
        """Whether it is there and to be seen."""
        try:
            return self.is_("showing")
        except GLib.Error:
            return False

    @property
    def child_count(self):
        return self._property("Accessible", "ChildCount")

    def child(self, index):
        return Accessible(self._bus, *self._call("Accessible", "GetChildAtIndex", GLib.Variant("(i)", (index,)))[0])

    def children(self):
        return [Accessible(self._bus, *child) for child in self._call("Accessible", "GetChildren")[0]]

    @property
    def parent(self):
        return Accessible(self._bus, *self._property("Accessible", "Parent"))

    @property
    def index(self):
        return self._call("Accessible", "GetIndexInParent")[0]

    @property
    def text(self):
        return self._call("Text", "GetText", GLib.Variant("(ii)", (0, -1)))[0]

    @property
    def value(self):
        return self._property("Value", "CurrentValue")

    @property
    def place(self):
        """Its rectangle on the screen: left, top, width, height."""
        return self._call("Component", "GetExtents", GLib.Variant("(u)", (SCREEN,)))[0]

    @property
    def actions(self):
        return [name for name, *_ in self._call("Action", "GetActions")[0]]

    def perform(self, action="Press"):
        self._call("Action", "DoAction", GLib.Variant("(i)", (self.actions.index(action),)))

    def entry(self, name):
        """The entry of this menu with that title."""
        found = [entry for entry in self.children() if entry.name == name]
        if len(found) != 1:
            raise AssertionError(f"{name} is {len(found)} times among {self.entries()}")
        return found[0]

    def entries(self):
        """The titles of this menu's entries; None for each line between them."""
        return [None if entry.role == "separator" else entry.name for entry in self.children()]

    def find_own(self, role):
        """The first with that role that lies directly below it; none if there is none."""
        for child in self.children():
            try:
                if child.role == role:
                    return child
            except GLib.Error:
                continue  # it went meanwhile
        return None

    def below(self, most=200):
        """Everything below it, each before what is in it; of long lists only the beginning."""
        for index in range(min(self.child_count, most)):
            child = self.child(index)
            if child.path == NOTHING:
                continue
            yield child
            yield from child.below(most)

    def find(self, role=None, name=None, states=()):
        """The first below it that is so; none if there is none."""
        for found in self.below():
            try:
                if role in (None, found.role) and name in (None, found.name) and found.is_(*states):
                    return found
            except GLib.Error:
                continue  # it went meanwhile
        return None

    def wait_for(self, role=None, name=None, states=()):
        """The same, waiting until there is one; what it waits in may change meanwhile."""
        def look():
            try:
                return self.find(role, name, states)
            except GLib.Error:
                return None
        return until(look, f"{role} {name!r} {states}")

    def outline(self, depth=0, most=60):
        """The tree as text, for who looks at it."""
        lines = ["  " * depth + repr(self)]
        for index in range(min(self.child_count, most)):
            child = self.child(index)
            lines += [] if child.path == NOTHING else child.outline(depth + 1, most)
        return lines
