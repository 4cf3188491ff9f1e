"""Marking photos, the trash and the way back, with a mouse and a keyboard in a virtual X server."""
import os
import unittest

from Programs import GALLERY, Programs
from Session import SECOND, Session


@unittest.skipUnless(os.environ.get("DISPLAY"), "needs an X server: xvfb-run -a ctest …")
class TrashTest(Programs):
    def start(self, name):
        session = Session(self.place / name, self.samples)
        self.addCleanup(session.abandon)
        session.wait_for("idle")
        session.take_focus()
        return session

    def contents(self):
        return {file.name: file.read_bytes() for file in self.samples.iterdir() if file.is_file()}

    def test_three_photos_go_to_the_trash_and_come_back(self):
        before = self.contents()
        session = self.start("three")
        # The second photo with the mouse, the third and the fourth with the keyboard.
        session.click(*SECOND, held="ctrl")
        session.keys("Right", "x", "Right", "x", "Delete")
        session.wait_for("status: 3 Fotos in den Papierkorb gelegt – ⌘Z macht es rückgängig")
        gone = set(GALLERY[1:4])
        self.assertEqual(set(before) - set(self.contents()), gone)
        trash = session.data / "Trash"
        self.assertEqual({file.name for file in (trash / "files").iterdir()}, gone)
        self.assertEqual(len(list((trash / "info").iterdir())), 3)
        session.keys("ctrl+z")
        session.wait_for("status: 3 Fotos wiederhergestellt")
        session.wait_for(f"scan-accepted {len(GALLERY)}")
        self.assertEqual(self.contents(), before)
        self.assertEqual(list((trash / "files").iterdir()) + list((trash / "info").iterdir()), [])
        self.assertEqual(session.end(), 0)

    def test_shift_and_delete_leaves_everything_where_it_is(self):
        before = self.contents()
        session = self.start("shift")
        session.keys("Right", "x", "shift+Delete", "ctrl+c")
        session.wait_for("status: 1 Foto in die Zwischenablage kopiert")
        self.assertEqual(self.contents(), before)
        self.assertFalse((session.data / "Trash").exists())
        self.assertEqual(session.end(), 0)

    def test_what_was_set_last_is_kept_when_the_session_ends(self):
        session = self.start("settings")
        session.keys("plus")
        session.keys("Right", "ctrl+c")
        session.wait_for("status: 1 Foto in die Zwischenablage kopiert")
        self.assertEqual(session.end(), 0)
        settings = (self.place / "settings/config/pixelhain/pixelhain.ini").read_text()
        self.assertIn("thumbSize=200", settings)


if __name__ == "__main__":
    unittest.main()
