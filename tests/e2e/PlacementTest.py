"""Where the window stands on a desktop that puts frames around windows."""
import re
import subprocess
import unittest

import Desktop
from Desktop import until
from Programs import Programs
from Session import SpokenSession

SCREEN = 1920, 1080


@unittest.skipUnless(Desktop.is_possible(), "needs Xvfb, openbox, dbus-daemon and xdotool")
class PlacementTest(Programs):
    def start(self, home, **variables):
        session = SpokenSession(home, self.samples, **variables)
        self.addCleanup(session.abandon)
        session.wait_for("idle")
        return session

    def place_of(self, session):
        """Its left and upper edge, width and height on the screen, without the frame."""
        window = session._xdotool("getactivewindow").strip()
        told = subprocess.run(["xwininfo", "-id", window], check=True, stdout=subprocess.PIPE, text=True).stdout
        names = "Absolute upper-left X", "Absolute upper-left Y", "Width", "Height"
        return [int(re.search(rf"{name}: +(-?\d+)", told)[1]) for name in names]

    def settings(self, home):
        lines = (home / "config/pixelhain/pixelhain.ini").read_text().splitlines()
        return dict(line.split("=", 1) for line in lines if "=" in line)

    def test_a_window_larger_than_the_screen_fits_with_its_frame_and_keeps_its_size_for_a_larger_one(self):
        home = self.place / "large"
        session = self.start(home, QT_SCALE_FACTOR="2")

        def fits():
            left, top, width, height = self.place_of(session)
            has_title = top > 0 and height < SCREEN[1]
            return has_title and left >= 0 and left + width <= SCREEN[0] and top + height <= SCREEN[1]

        until(fits, "the whole window is on the screen")
        self.assertGreater(self.place_of(session)[2], SCREEN[0] - 40)
        self.assertEqual(session.end(), 0)
        kept = self.settings(home)
        self.assertEqual((kept["windowWidth"], kept["windowHeight"]), ("1200", "800"))
        session = self.start(home)
        until(lambda: self.place_of(session)[2:] == [1200, 800], "the size of a first window")
        self.assertEqual(session.end(), 0)

    def test_a_window_that_filled_the_screen_fills_it_again(self):
        home = self.place / "maximized"
        (home / "config/pixelhain").mkdir(parents=True)
        (home / "config/pixelhain/pixelhain.ini").write_text(
            "windowWidth=900\nwindowHeight=640\nwindowMaximized=true\n")
        for _ in range(2):
            session = self.start(home)
            until(lambda: self.place_of(session)[2] == SCREEN[0], "the width of the screen")
            self.assertGreater(self.place_of(session)[3], SCREEN[1] - 60)
            self.assertEqual(session.end(), 0)
            kept = self.settings(home)
            self.assertEqual(kept["windowMaximized"], "true")
            self.assertEqual((kept["windowWidth"], kept["windowHeight"]), ("900", "640"))

    def test_the_window_bears_the_program_s_mark(self):
        session = self.start(self.place / "mark")
        window = session._xdotool("getactivewindow").strip()

        def mark():
            told = subprocess.run(
                ["xprop", "-id", window, "_NET_WM_ICON"], check=True, stdout=subprocess.PIPE, text=True).stdout
            return re.search(r"Icon \((\d+) x (\d+)\)", told)

        until(mark, "an icon among the window's properties")
        self.assertEqual(mark()[1], mark()[2])
        self.assertEqual(session.end(), 0)


if __name__ == "__main__":
    unittest.main()
