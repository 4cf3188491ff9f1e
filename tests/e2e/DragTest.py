"""Dragging photos into another program, with a mouse in a virtual X server."""
import os
import subprocess
import unittest
import urllib.parse

from Programs import BUILD, GALLERY, Programs
from Session import SECOND, Session


@unittest.skipUnless(os.environ.get("DISPLAY"), "needs an X server: xvfb-run -a ctest …")
class DragTest(Programs):
    def start(self, name):
        session = Session(self.place / name, self.samples)
        self.addCleanup(session.abandon)
        session.wait_for("idle")
        session.take_focus()
        return session

    def uris(self, *names):
        return ["file://" + urllib.parse.quote(str(self.samples / name), safe="/!$&'()*+,=:@~") for name in names]

    def start_other_program(self, *files):
        other = subprocess.Popen(
            [BUILD / "drop-target", *files], env={**os.environ, "QT_QPA_PLATFORM": "xcb", "HOME": str(self.place)},
            text=True, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        self.addCleanup(other.stdout.close)
        self.addCleanup(other.wait)
        self.addCleanup(other.kill)
        self.assertEqual(other.stdout.readline(), "shown\n")
        return other

    def test_marked_photos_are_dragged_into_another_program_as_copies(self):
        target = self.start_other_program()
        session = self.start("drag")
        session.click(*SECOND, held="ctrl")
        session.keys("Right", "x")
        session.drag(SECOND, (530, 180), (1350, 250), (1400, 260), (1410, 270))
        dropped = dict(target.stdout.readline().rstrip("\n").split(": ", 1) for _ in range(3))
        wanted = self.uris(*GALLERY[1:3])
        self.assertEqual(
            urllib.parse.unquote(dropped["x-special/gnome-copied-files"]), "\n".join(["copy", *wanted]))
        self.assertEqual(
            urllib.parse.unquote(dropped["text/uri-list"]), "".join(uri + "\r\n" for uri in wanted))
        self.assertEqual(dropped["offers to move"], "no")
        self.assertEqual(session.end(), 0)

    def test_a_photo_dragged_from_another_program_is_shown_in_its_folder(self):
        empty = self.place / "nothing here"
        empty.mkdir()
        self.start_other_program(self.samples / GALLERY[4], self.samples / GALLERY[7])
        session = Session(self.place / "dropped", empty)
        self.addCleanup(session.abandon)
        session.wait_for("idle")
        session.take_focus()
        session.drag((1450, 300), (1350, 320), (700, 400), (710, 410))
        session.wait_for(f"scan-accepted {len(GALLERY)}")
        session.wait_for("photo-shown 5")
        self.assertTrue((self.samples / GALLERY[4]).exists())
        self.assertEqual(session.end(), 0)

    def test_a_folder_dragged_onto_the_window_is_shown(self):
        first, empty = self.place / "eins", self.place / "keins"
        for folder in first, empty:
            folder.mkdir()
        (first / "a.jpg").write_bytes((self.samples / GALLERY[0]).read_bytes())
        # Of several, the first.
        self.start_other_program(first, self.samples)
        session = Session(self.place / "folder", empty)
        self.addCleanup(session.abandon)
        session.wait_for("idle")
        session.take_focus()
        session.drag((1450, 300), (1350, 320), (700, 400), (710, 410))
        session.wait_for("scan-accepted 1")
        session.wait_for_window("eins – 1 Fotos")
        self.assertTrue((first / "a.jpg").exists())
        self.assertEqual(session.end(), 0)

    def test_photos_that_fall_back_onto_their_own_window_open_nothing(self):
        session = self.start("own")
        session.drag(SECOND, (530, 180), (600, 300), (610, 310))
        session.keys("Right", "ctrl+c")
        session.wait_for("status: 1 Foto in die Zwischenablage kopiert")
        self.assertEqual(sum("scan-accepted" in line for line in session.said), 1)
        self.assertEqual(session.end(), 0)


if __name__ == "__main__":
    unittest.main()
