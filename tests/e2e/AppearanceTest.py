"""The window in the colours that the desktop wishes for."""
import subprocess
import unittest

import Desktop
from Desktop import until
from Portal import DARK, LIGHT, SettingsPortal
from Programs import Programs
from Session import SpokenSession


@unittest.skipUnless(Desktop.is_possible(), "needs Xvfb, openbox, dbus-daemon and xdotool")
class AppearanceTest(Programs):
    def brightness(self, thing):
        """Of the darker half of what is to be seen of it, from 0 to 255."""
        left, top, width, height = thing.place
        pixels = sorted(subprocess.run(
            ["import", "-window", "root", "-crop", f"{width}x{height}+{left}+{top}", "-depth", "8", "GRAY:-"],
            check=True, stdout=subprocess.PIPE, timeout=Desktop.PATIENCE).stdout)
        return pixels[len(pixels) // 2]

    def test_the_window_follows_the_desktop_into_the_dark_and_back(self):
        desktop = Desktop.Desktop.own()
        portal = SettingsPortal(desktop.environment["DBUS_SESSION_BUS_ADDRESS"], DARK)
        self.addCleanup(portal.end)
        empty = self.place / "leer"
        empty.mkdir()
        session = SpokenSession(self.place / "colors", empty)
        self.addCleanup(session.abandon)
        session.wait_for("idle")
        session.move_to(0, 0)
        parts = [session.find("filler", "Symbolleiste"), session.find("tree", "Ordner"), session.find("status bar"),
                 session.find("menu bar"), session.find("label", "Keine Fotos in diesem Ordner").parent]

        def are(is_so):
            return lambda: all(is_so(self.brightness(part)) for part in parts)

        until(are(lambda brightness: brightness < 80), "a dark window")
        portal.wish(LIGHT)
        until(are(lambda brightness: brightness > 200), "a light window")
        portal.wish(DARK)
        until(are(lambda brightness: brightness < 80), "a dark window again")
        self.assertEqual(session.end(), 0)


if __name__ == "__main__":
    unittest.main()
