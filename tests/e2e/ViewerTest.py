"""Photos shown large, with a mouse and a keyboard in a virtual X server."""
import os
import pathlib
import subprocess
import time
import unittest

from Programs import GALLERY, Programs
from Session import PATIENCE, SECOND, Session


@unittest.skipUnless(os.environ.get("DISPLAY"), "needs an X server: xvfb-run -a ctest …")
class ViewerTest(Programs):
    def start(self, name):
        session = Session(self.place / name, self.samples)
        self.addCleanup(session.abandon)
        session.wait_for("idle")
        session.take_focus()
        return session

    def screen(self, place):
        """The bytes of a part of the screen: width x height + left + top."""
        return subprocess.run(
            ["import", "-window", "root", "-crop", place, "-depth", "8", "RGB:-"], check=True, timeout=60,
            stdout=subprocess.PIPE).stdout

    def wait_for_screen(self, place, is_wanted):
        end = time.monotonic() + PATIENCE
        while time.monotonic() < end:
            if is_wanted(self.screen(place)):
                return
        self.fail("it never came to the screen")

    def open(self, session, name):
        index = GALLERY.index(name)
        session.keys("Home", *["Right"] * index, "Return")
        session.wait_for(f"photo-shown {index + 1}")

    def test_a_click_opens_a_photo_and_keys_page_through_the_folder(self):
        session = self.start("page")
        session.click(*SECOND)
        session.wait_for("photo-shown 2")
        session.keys("Right")
        session.wait_for("photo-shown 3")
        session.keys("Left", "Left")
        session.wait_for("photo-shown 1")
        session.keys("End")
        session.wait_for(f"photo-shown {len(GALLERY)}")
        session.keys("Escape", "ctrl+c")
        session.wait_for("status: 1 Foto in die Zwischenablage kopiert")
        self.assertEqual(session.end(), 0)

    def test_a_held_key_ends_on_the_photo_that_it_reached(self):
        session = self.start("held")
        session.keys("Return")
        session.wait_for("photo-shown 1")
        session.keys(*["Right"] * 25)
        session.wait_for("photo-shown 26")
        self.assertEqual(session.end(), 0)

    def test_a_photo_is_marked_and_put_into_the_trash_from_the_viewer(self):
        session = self.start("trash")
        session.click(*SECOND)
        session.wait_for("photo-shown 2")
        session.keys("x")
        session.wait_for("photo-shown 3")
        session.keys("Delete")
        session.wait_for("status: 1 Foto in den Papierkorb gelegt – ⌘Z macht es rückgängig")
        self.assertFalse((self.samples / GALLERY[2]).exists())
        self.assertTrue((self.samples / GALLERY[1]).exists())
        session.wait_for("photo-shown 3")
        session.keys("ctrl+z")
        session.wait_for("status: 1 Foto wiederhergestellt")
        self.assertTrue((self.samples / GALLERY[2]).exists())
        self.assertEqual(session.end(), 0)

    def test_a_zoomed_photo_fills_the_window(self):
        session = self.start("zoom")
        self.open(session, "Leuchtturm, hochkant.jpg")
        beside = "4x4+200+500"
        self.assertEqual(set(self.screen(beside)), {0})
        session.keys(*["ctrl+plus"] * 5)
        self.wait_for_screen(beside, lambda pixels: max(pixels) > 0)
        session.keys("ctrl+0")
        self.wait_for_screen(beside, lambda pixels: max(pixels) == 0)
        self.assertEqual(session.end(), 0)

    def test_an_animation_moves(self):
        session = self.start("animation")
        self.open(session, "Farbspiel.gif")
        middle = "40x40+580+400"
        first = self.screen(middle)
        self.wait_for_screen(middle, lambda pixels: pixels != first)
        self.assertEqual(session.end(), 0)

    def test_a_slideshow_of_the_marked_photos_goes_round_until_it_is_stopped(self):
        session = self.start("slideshow")
        settings = pathlib.Path(self.place / "slideshow/config/pixelhain/pixelhain.ini")
        self.assertEqual(session.end(), 0)
        settings.parent.mkdir(parents=True, exist_ok=True)
        settings.write_text("[General]\ninterval=2\n")
        session = self.start("slideshow")
        session.keys("Right", "x", "Right", "x", "d")
        for photo in (2, 1, 2):
            session.wait_for(f"photo-shown {photo}")
        session.keys("space", "Escape")
        session.keys("ctrl+c")
        session.wait_for("in die Zwischenablage kopiert")
        self.assertEqual(session.end(), 0)


if __name__ == "__main__":
    unittest.main()
