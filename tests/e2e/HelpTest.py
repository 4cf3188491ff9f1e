"""The help window of the running program, on a keyboard."""
import os
import pathlib
import tempfile
import time
import unittest

from Session import PATIENCE, Session


@unittest.skipUnless(os.environ.get("DISPLAY"), "needs an X server: xvfb-run -a ctest …")
class HelpTest(unittest.TestCase):
    def setUp(self):
        place = tempfile.TemporaryDirectory()
        self.addCleanup(place.cleanup)
        home = pathlib.Path(place.name) / "home"
        folder = pathlib.Path(place.name) / "Fotos"
        folder.mkdir()
        self.session = Session(home, folder)
        self.addCleanup(self.session.abandon)
        self.session.wait_for("visible-complete 0")
        self.session.take_focus()
        self.main = self.session.window

    def until_windows(self, *names):
        """Waits until just the windows with these titles are there; gives them by title."""
        end = time.monotonic() + PATIENCE
        while True:
            shown = self.session.visible_windows()
            if sorted(shown.values()) == sorted(names):
                return {name: window for window, name in shown.items()}
            self.assertLess(time.monotonic(), end, f"{shown} are not {names}")
            time.sleep(0.05)

    def open_help(self, key):
        self.session.keys(key)
        shown = self.until_windows("Fotos – 0 Fotos", "Pixelhain-Hilfe")
        self.session.focus(shown["Pixelhain-Hilfe"])

    def test_f1_opens_help_and_escape_closes_it(self):
        for _ in range(2):
            self.open_help("F1")
            self.session.keys("Escape")
            self.until_windows("Fotos – 0 Fotos")
            self.session.focus(self.main)
        self.assertIsNone(self.session.program.poll())

    def test_control_and_question_mark_open_one_help_window(self):
        self.open_help("ctrl+question")
        self.session.focus(self.main)
        self.open_help("ctrl+question")

    def test_the_program_ends_with_its_last_window(self):
        self.open_help("F1")
        self.session.focus(self.main)
        self.session.keys("ctrl+w")
        shown = self.until_windows("Pixelhain-Hilfe")
        self.assertIsNone(self.session.program.poll())
        self.session.focus(shown["Pixelhain-Hilfe"])
        self.session.keys("ctrl+w")
        self.assertEqual(self.session.program.wait(PATIENCE), 0)

    def test_control_q_in_help_ends_the_program(self):
        self.open_help("F1")
        self.session.keys("ctrl+q")
        self.assertEqual(self.session.program.wait(PATIENCE), 0)


if __name__ == "__main__":
    unittest.main()
