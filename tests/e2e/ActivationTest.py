"""Under a window manager: a second start brings the running window to the front."""
import pathlib
import tempfile
import time
import unittest

import Desktop
from Desktop import PATIENCE, until
from Session import Session


def now():
    """The X server's clock: milliseconds since the machine started, in 32 bits."""
    return int(time.clock_gettime(time.CLOCK_MONOTONIC) * 1000) & 0xFFFFFFFF


@unittest.skipUnless(Desktop.is_possible(), "needs what a desktop needs")
class ActivationTest(unittest.TestCase):
    def setUp(self):
        place = tempfile.TemporaryDirectory()
        self.addCleanup(place.cleanup)
        self.place = pathlib.Path(place.name)
        self.desktop = Desktop.Desktop.own()

    def start(self, name, *arguments, **variables):
        folder = self.place / name
        folder.mkdir()
        session = Session(
            self.place / "home", folder, *arguments,
            DBUS_SESSION_BUS_ADDRESS=self.desktop.environment["DBUS_SESSION_BUS_ADDRESS"], **variables)
        self.addCleanup(session.abandon)
        return session

    def shown(self, *arguments):
        """A start that has its window, which is in front."""
        session = self.start(*arguments)
        session.wait_for("idle")
        session.window = session.wait_for_window()
        until(lambda: self.desktop.active_window() == session.window, "a new window in front")
        return session

    def second_start(self, name):
        second = self.start(name, DESKTOP_STARTUP_ID=f"launcher/pixelhain/1-1-host_TIME{now()}")
        self.assertEqual(second.program.wait(PATIENCE), 0)

    def test_a_second_start_raises_the_running_window_above_others(self):
        first = self.shown("eins")
        other = self.shown("anders", "--new-instance")
        self.assertEqual(self.desktop.topmost_window(), other.window)
        self.second_start("zwei")
        first.wait_for_window("zwei – 0 Fotos")
        until(lambda: self.desktop.active_window() == first.window, "the running window has the keyboard")
        until(lambda: self.desktop.topmost_window() == first.window, "the running window is in front")
        first.keys("F5")
        first.wait_for("scan-accepted 0")
        self.assertEqual(first.end(), 0)
        self.assertEqual(other.end(), 0)

    def test_a_second_start_brings_an_iconified_window_back(self):
        first = self.shown("eins")
        other = self.shown("anders", "--new-instance")
        first._xdotool("windowminimize", "--sync", first.window)
        until(lambda: self.desktop.is_iconified(first.window), "an icon")
        self.second_start("zwei")
        until(lambda: not self.desktop.is_iconified(first.window), "a window again")
        first.wait_for_window("zwei – 0 Fotos")
        until(lambda: self.desktop.active_window() == first.window, "the running window has the keyboard")
        until(lambda: self.desktop.topmost_window() == first.window, "the running window is in front")
        self.assertEqual(first.end(), 0)
        self.assertEqual(other.end(), 0)

    def test_a_start_while_the_running_program_ends_has_a_window_of_its_own(self):
        for number, delay in enumerate((0, 0.02, 0.04, 0.08)):
            first = self.shown(f"eins {number}")
            first.program.terminate()
            time.sleep(delay)
            second = self.start(f"zwei {number}")
            second.wait_for("idle")
            second.wait_for_window(f"zwei {number} – 0 Fotos")
            self.assertEqual(first.program.wait(PATIENCE), 0)
            # It is the one that a third start finds.
            self.second_start(f"drei {number}")
            second.wait_for_window(f"drei {number} – 0 Fotos")
            self.assertEqual(second.end(), 0)

    def test_the_launcher_is_told_that_the_start_is_complete(self):
        first = self.shown("eins")
        self.second_start("zwei")
        first.wait_for_window("zwei – 0 Fotos")
        until(lambda: "_TIME" in self.desktop.property(first.window, "_NET_STARTUP_ID"), "the id of the start")
        self.assertEqual(first.end(), 0)


if __name__ == "__main__":
    unittest.main()
