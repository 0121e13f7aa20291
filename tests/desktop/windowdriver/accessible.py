"""Widgets as assistive technology sees them."""

from gi.repository import Gio, GLib

from .errors import Gone

INTERFACE = "org.a11y.atspi."
ROOT = "/org/a11y/atspi/accessible/root"
REGISTRY = "org.a11y.atspi.Registry"

STATE_BITS = {
    "active": 1,
    "checked": 4,
    "editable": 7,
    "enabled": 8,
    "focusable": 11,
    "focused": 12,
    "modal": 16,
    "selected": 23,
    "showing": 25,
    "is-default": 39,
    "checkable": 41,
    "read-only": 43,
}
ITEM_ROLES = {"list item", "table cell", "tree item"}


class AccessibilityBus:
    """One connection to the bus. Nothing that is read is kept: every question goes to the program."""

    # A program that does not answer for so long is busy, and asked again.
    CALL_MILLISECONDS = 15000

    def __init__(self, address):
        flags = Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION
        self.connection = Gio.DBusConnection.new_for_address_sync(address, flags, None, None)

    def call(self, owner, path, interface, method, arguments=None):
        try:
            return self.connection.call_sync(
                owner, path, interface, method, arguments, None, Gio.DBusCallFlags.NONE, self.CALL_MILLISECONDS, None
            ).unpack()
        except GLib.Error as error:
            raise Gone(f"{method} of {path}: {error.message}") from None

    def process_of(self, owner):
        arguments = GLib.Variant("(s)", (owner,))
        bus = "org.freedesktop.DBus"
        return self.call(bus, "/org/freedesktop/DBus", bus, "GetConnectionUnixProcessID", arguments)[0]

    def programs(self):
        return Accessible(self, REGISTRY, ROOT).children

    def close(self):
        self.connection.set_exit_on_close(False)
        self.connection.close_sync(None)


class Accessible:
    """One widget, row or menu entry."""

    def __init__(self, bus, owner, path):
        self.bus, self.owner, self.path = bus, owner, path

    def __eq__(self, other):
        return isinstance(other, Accessible) and (self.owner, self.path) == (other.owner, other.path)

    def __hash__(self):
        return hash((self.owner, self.path))

    def __repr__(self):
        try:
            return f'{self.role} "{self.name}"'
        except Gone:
            return f"{self.path}, which is gone"

    def call(self, interface, method, arguments=None):
        return self.bus.call(self.owner, self.path, INTERFACE + interface, method, arguments)

    def read(self, interface, name):
        arguments = GLib.Variant("(ss)", (INTERFACE + interface, name))
        return self.bus.call(self.owner, self.path, "org.freedesktop.DBus.Properties", "Get", arguments)[0]

    def reference(self, found):
        return None if found[1].endswith("/null") else Accessible(self.bus, *found)

    @property
    def role(self):
        return self.call("Accessible", "GetRoleName")[0]

    @property
    def name(self):
        return self.read("Accessible", "Name")

    @property
    def description(self):
        return self.read("Accessible", "Description")

    @property
    def states(self):
        low, high = self.call("Accessible", "GetState")[0]
        bits = low | high << 32
        return {state for state, bit in STATE_BITS.items() if bits >> bit & 1}

    def has(self, *states):
        return set(states) <= self.states

    @property
    def parent(self):
        return self.reference(self.read("Accessible", "Parent"))

    @property
    def children(self):
        found = (self.reference(child) for child in self.call("Accessible", "GetChildren")[0])
        return [child for child in found if child]

    @property
    def interfaces(self):
        return {name.rsplit(".", 1)[1] for name in self.call("Accessible", "GetInterfaces")[0]}

    @property
    def text(self):
        """What a text field holds; the name of anything else."""
        if "Text" not in self.interfaces:
            return self.name
        return self.call("Text", "GetText", GLib.Variant("(ii)", (0, -1)))[0]

    @property
    def keys(self):
        """Shortcuts and mnemonics, lower-case."""
        if "Action" not in self.interfaces:
            return set()
        bindings = set()
        for index in range(self.read("Action", "NActions")):
            found = self.call("Action", "GetKeyBinding", GLib.Variant("(i)", (index,)))[0]
            bindings |= {key.strip().lower() for key in found.split(";") if key.strip()}
        return bindings

    @property
    def rectangle(self):
        """Left, top, width and height on the screen."""
        return tuple(self.call("Component", "GetExtents", GLib.Variant("(u)", (0,)))[0])

    @property
    def rows(self):
        return [child for child in self.children if child.role in ITEM_ROLES]

    @property
    def row_names(self):
        return [row.name for row in self.rows]

    @property
    def selected_names(self):
        return [row.name for row in self.rows if row.has("selected")]

    def walk(self, is_entered=lambda node: True):
        """This widget and all below it, in the order of the tree; neither what is not entered nor rows of lists."""
        try:
            if not is_entered(self):
                return
            children = [] if self.role in {"list", "table", "tree"} else self.children
        except Gone:
            return
        yield self
        for child in children:
            yield from child.walk(is_entered)

    def walk_shown(self):
        """As walk(), without what is hidden, and thus quicker."""
        return self.walk(lambda node: node.has("showing"))

    def find_all(self, role=None, name=None, states=("showing",)):
        """`role` is one role or a set of them. Without `states`, hidden widgets are found too."""
        roles = {role} if isinstance(role, str) else role

        def is_meant(node):
            try:
                fits = (roles is None or node.role in roles) and (name is None or node.name == name)
                return fits and node.has(*states)
            except Gone:
                return False

        return [node for node in (self.walk_shown() if "showing" in states else self.walk()) if is_meant(node)]

    def tree(self, depth=0):
        """The widgets as text, a line each, to be read by people; of rows, those in sight."""
        lines = []
        try:
            line = f"{'  ' * depth}{self.role} {self.name!r} {self.rectangle if depth else ''} {sorted(self.states)}"
            if "Text" in self.interfaces and self.text != self.name:
                line += f" text={self.text!r}"
            if self.description:
                line += f" description={self.description!r}"
            lines.append(line)
            for child in self.children:
                if child.role not in ITEM_ROLES or child.has("showing"):
                    lines += child.tree(depth + 1)
        except Gone as error:
            lines.append(f"{'  ' * depth}gone: {error}")
        return lines
