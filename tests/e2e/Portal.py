"""A stand-in for the part of the desktop that says which colours it wishes for."""
import threading

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402

NAME, PLACE, INTERFACE = (
    "org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop", "org.freedesktop.portal.Settings")
DESCRIPTION = f"""\
<node><interface name="{INTERFACE}">
  <method name="Read"><arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="v" direction="out"/></method>
  <signal name="SettingChanged"><arg type="s"/><arg type="s"/><arg type="v"/></signal>
</interface></node>
"""
WISH = "org.freedesktop.appearance", "color-scheme"
DARK, LIGHT = 1, 2


class SettingsPortal:
    """Answers on the session bus as long as it is not ended."""

    def __init__(self, bus, scheme):
        self._bus, self._scheme = bus, scheme
        self._context = GLib.MainContext.new()
        self._loop = GLib.MainLoop.new(self._context, False)
        self._ready = threading.Event()
        self._thread = threading.Thread(target=self._serve, daemon=True)
        self._thread.start()
        self._ready.wait()

    def _serve(self):
        self._context.push_thread_default()
        self._connection = Gio.DBusConnection.new_for_address_sync(
            self._bus, Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT
            | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION)
        interface, = Gio.DBusNodeInfo.new_for_xml(DESCRIPTION).interfaces
        self._connection.register_object(PLACE, interface, self._answer, None, None)
        self._connection.call_sync(
            "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "RequestName",
            GLib.Variant("(su)", (NAME, 0)), None, Gio.DBusCallFlags.NONE, -1)
        self._ready.set()
        self._loop.run()

    def _answer(self, _connection, _sender, _path, _interface, _method, arguments, call):
        if arguments.unpack() == WISH:
            call.return_value(GLib.Variant("(v)", (GLib.Variant("v", GLib.Variant("u", self._scheme)),)))
        else:
            call.return_dbus_error("org.freedesktop.portal.Error.NotFound", "no such setting")

    def wish(self, scheme):
        """From now on, and told to all who listen."""
        self._scheme = scheme
        self._connection.emit_signal(
            None, PLACE, INTERFACE, "SettingChanged", GLib.Variant("(ssv)", (*WISH, GLib.Variant("u", scheme))))

    def end(self):
        self._loop.quit()
        self._thread.join()
        self._connection.close_sync()
