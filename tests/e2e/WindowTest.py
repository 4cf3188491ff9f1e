"""The window over the sample pictures, in a virtual X server."""
import os
import re
import subprocess
import unittest

from Programs import BUILD, GALLERY, Picture, Programs
from Session import Session


@unittest.skipUnless(os.environ.get("DISPLAY"), "needs an X server: xvfb-run -a ctest …")
class WindowTest(Programs):
    def show(self, name, *arguments, home="config"):
        """Runs the program until it has saved its window; gives its result and the picture's file."""
        file = self.place / f"{name}.png"
        result = self.run_program(
            "pixelhain", "--screenshot", file, *arguments,
            XDG_CONFIG_HOME=str(self.place / home), PIXELHAIN_TRACE="1", WAYLAND_DISPLAY="",
            QT_QPA_PLATFORM="xcb")
        return result, file

    def milestones(self, result):
        return re.findall(r"(window-shown|scan-accepted|first-thumbnail|visible-complete|bytes-read|bytes-looked)(?: (\d+))?", result.stderr)

    def test_the_gallery_shows_the_pictures_of_a_folder(self):
        result, file = self.show("gallery", self.samples, home="gallery")
        self.assertEqual(result.returncode, 0, result.stderr)
        picture = Picture(file)
        self.assertGreater(picture.width, 600)
        self.assertGreater(picture.colorful_share(), 0.1)
        shown = dict(self.milestones(result))
        self.assertEqual(shown["scan-accepted"], str(len(GALLERY)))
        self.assertGreater(int(shown["visible-complete"]), 3)
        self.assertLessEqual({"window-shown", "first-thumbnail"}, shown.keys())
        self.assertGreater(int(shown["bytes-read"]), 1000 * int(shown["visible-complete"]))
        whole = sum(file.stat().st_size for file in self.samples.iterdir())
        self.assertLess(int(shown["bytes-read"]), whole)
        self.assertGreater(int(shown["bytes-looked"]), 100 * int(shown["visible-complete"]))
        self.assertLess(int(shown["bytes-looked"]), whole)

    def test_nothing_is_seen_before_the_window_is(self):
        result, _ = self.show("order", self.samples, home="order")
        names = [name for name, _ in self.milestones(result)]
        self.assertEqual(len(names), len(set(names)), result.stderr)
        self.assertLess(names.index("window-shown"), names.index("first-thumbnail"), result.stderr)
        self.assertLessEqual(names.index("first-thumbnail"), names.index("visible-complete"))

    def test_it_starts_without_the_libraries_of_the_codecs(self):
        loaded = subprocess.run(["ldd", BUILD / "pixelhain"], stdout=subprocess.PIPE, text=True, check=True).stdout
        self.assertIn("libQt6Widgets", loaded)
        for library in "libheif", "libjxl", "libraw", "libtiff", "libOpenEXR", "libopenjp2":
            self.assertNotIn(library, loaded)

    def test_the_folder_shown_last_is_shown_again(self):
        self.show("first", self.samples, home="again")
        result, _ = self.show("second", home="again")
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertEqual(dict(self.milestones(result))["scan-accepted"], str(len(GALLERY)))

    def test_an_empty_folder_shows_no_pictures(self):
        empty = self.place / "leer"
        empty.mkdir()
        result, file = self.show("empty", empty, home="empty")
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertLess(Picture(file).colorful_share(), 0.1)
        shown = dict(self.milestones(result))
        self.assertEqual(shown["scan-accepted"], "0")
        self.assertEqual(shown["visible-complete"], "0")

    def test_a_window_without_a_folder_is_idle(self):
        session = Session(self.place / "no-folder")
        self.addCleanup(session.abandon)
        session.wait_for("window-shown")
        session.wait_for("idle")

    def test_a_picture_of_the_window_that_cannot_be_saved_is_a_failure(self):
        result, _ = self.show("no such folder/window", self.samples, home="unsaved")
        self.assertNotEqual(result.returncode, 0)
        self.assertNotEqual(result.stderr, "")


if __name__ == "__main__":
    unittest.main()
