"""The program under a Wayland compositor without a screen."""
import os
import re
import shutil
import subprocess
import unittest

import Desktop
from Desktop import PATIENCE, until
from Programs import GALLERY, Picture, Programs
from Session import SpokenSession


@unittest.skipUnless(Desktop.is_possible() and shutil.which("weston"), "needs weston beside what a desktop needs")
class WaylandTest(Programs):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.desktop = Desktop.Desktop.own()
        cls.socket = cls.desktop.place / "wayland-test"
        # The pixman renderer draws where the default one only pretends to.
        weston = subprocess.Popen(
            ["weston", "--backend=headless-backend.so", "--use-pixman", "--debug", "--no-config", "--idle-time=0",
             "--width=1280", "--height=800", f"--socket={cls.socket.name}"],
            env=cls.environment(), stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        cls.addClassCleanup(weston.wait, PATIENCE)
        cls.addClassCleanup(weston.terminate)
        until(cls.socket.exists, "a compositor")

    @classmethod
    def environment(cls, **more):
        return {
            **os.environ, **cls.desktop.environment, "DISPLAY": "", "XDG_PICTURES_DIR": str(cls.place), **more}

    def start(self, name, *arguments):
        session = SpokenSession(
            self.place / name, *arguments, QT_QPA_PLATFORM="wayland", WAYLAND_DISPLAY=self.socket.name, DISPLAY="")
        self.addCleanup(session.abandon)
        return session

    def end_without_complaint(self, session):
        self.assertEqual(session.end(), 0)
        complaints = [line for line in session.rest() if not re.match(r" *\d+\.\d ms  [a-z-]+:?", line)]
        self.assertEqual(complaints, [])

    def picture_of_the_screen(self):
        subprocess.run(
            ["weston-screenshooter"], cwd=self.place, check=True, timeout=PATIENCE,
            env=self.environment(WAYLAND_DISPLAY=self.socket.name))
        file, = self.place.glob("wayland-screenshot*.png")
        picture = Picture(file)
        file.unlink()
        return picture

    def test_a_folder_is_shown_and_a_photo_opens(self):
        session = self.start("folder", self.samples)
        session.wait_for("idle")
        # What the program has drawn is on the screen a frame of the compositor's later.
        until(lambda: self.picture_of_the_screen().colorful_share() > 0.05, "pictures on the screen")
        gallery = session.find("list", "Galerie")
        self.assertEqual(gallery.child_count, len(GALLERY))
        gallery.child(1).perform("Press")
        session.wait_for("photo-shown 2")
        session.find("push button", "Zurück zur Übersicht").perform("Press")
        until(lambda: gallery.is_("showing"), "the gallery shows again")
        self.end_without_complaint(session)

    def test_a_photo_named_on_the_command_line_is_shown(self):
        session = self.start("photo", self.samples / GALLERY[2])
        session.wait_for("photo-shown 3")
        self.end_without_complaint(session)


if __name__ == "__main__":
    unittest.main()
