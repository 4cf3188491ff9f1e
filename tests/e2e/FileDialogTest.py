"""The dialogs for files and folders, with what a person types into them; and folders from other places."""
import pathlib
import tempfile
import unittest

import Desktop
from Desktop import until
from Programs import GALLERY, Programs
from Session import SpokenSession


@unittest.skipUnless(Desktop.is_possible(), "needs Xvfb, openbox, dbus-daemon and xdotool")
class FileDialogTest(Programs):
    def start(self, name, *arguments):
        session = SpokenSession(self.place / name, *(arguments or [self.samples]))
        self.addCleanup(session.abandon)
        session.wait_for("idle")
        return session

    def folder(self, name, *photos):
        folder = self.place / name
        folder.mkdir()
        for photo in photos:
            (folder / photo).write_bytes((self.samples / photo).read_bytes())
        return folder

    def answer(self, session, path, title=None, other_than=None):
        """Types a path into the dialog that comes, and takes it."""
        dialog = session.wait_for_focus("dialog", title, other_than)
        field = dialog.wait_for("text", states=("focused",))
        session.keys("ctrl+a")
        session.type(path)
        until(lambda: field.text == path, f"{path} is typed, not {field.text}")
        session.keys("Return")
        return dialog

    def test_a_folder_is_opened_by_its_path(self):
        folder = self.folder("Ordner (2)", *GALLERY[:3])
        session = self.start("open", self.folder("anderer"))
        session.click_on(session.find("push button", "Ordner öffnen"))
        self.answer(session, "../Ordner (2)", "Wähle einen Ordner mit Fotos")
        session.wait_for("scan-accepted 3")
        session.wait_for_focus("frame", f"{folder.name} – 3 Fotos")
        self.assertEqual(session.end(), 0)

    def test_a_dialog_that_is_left_changes_nothing(self):
        session = self.start("cancel")
        for opens in (
                lambda: session.click_on(session.find("push button", "Ordner öffnen")),
                lambda: session.keys("ctrl+o"),
                lambda: session.click_on(session.find("filler", "Symbolleiste").wait_for("push button", "Ordner öffnen"))):
            opens()
            dialog = session.wait_for_focus("dialog", "Wähle einen Ordner mit Fotos")
            dialog.wait_for("push button", "Öffnen")
            session.click_on(dialog.wait_for("push button", "Abbrechen"))
            session.wait_for_focus("frame", f"samples – {len(GALLERY)} Fotos")
        session.keys("Right", "ctrl+c")
        session.wait_for("status: 1 Foto in die Zwischenablage kopiert")
        self.assertEqual(sum("scan-accepted" in line for line in session.said), 1)
        self.assertEqual(session.end(), 0)

    def test_photos_are_moved_and_copied_to_a_folder_by_its_path(self):
        source = self.folder("Quelle", *GALLERY[:3])
        # A keyboard of the usual kind has all letters of this path.
        place = tempfile.TemporaryDirectory(prefix="pixelhain-e2e-")
        self.addCleanup(place.cleanup)
        target = pathlib.Path(place.name) / "Ziel"
        target.mkdir()
        data = {name: (source / name).read_bytes() for name in GALLERY[:3]}
        session = self.start("move", source)
        session.keys("Right", "x")
        session.find("label", "3 Fotos · 1 ausgewählt")
        session.choose(session.menu("Fotos"), "Kopieren nach …")
        self.answer(session, str(target), "1 Foto kopieren nach …")
        session.wait_for("status: 1 Foto nach „Ziel“ kopiert")
        self.assertEqual((target / GALLERY[0]).read_bytes(), data[GALLERY[0]])
        self.assertEqual(len(list(source.iterdir())), 3)
        session.keys("ctrl+shift+m")
        self.answer(session, str(target), "1 Foto verschieben nach …")
        session.wait_for("status: 1 Foto nach „Ziel“ verschoben")
        session.wait_for_focus("frame", "Quelle – 2 Fotos")
        self.assertEqual({file.name for file in source.iterdir()}, set(GALLERY[1:3]))
        self.assertEqual([file.read_bytes() for file in target.iterdir()], [data[GALLERY[0]]] * 2)
        self.assertEqual(session.end(), 0)

    def test_a_contact_sheet_is_saved_under_the_name_that_is_typed(self):
        session = self.start("sheet", self.folder("Blätter", *GALLERY[:2]))
        sheet = self.place / "Abzug Nr. 1.pdf"
        self.make_sheet(session, "../Abzug Nr. 1")
        session.wait_for(f"status: Kontaktabzug gespeichert: {sheet.name}")
        first = sheet.read_bytes()
        self.assertTrue(first.startswith(b"%PDF-"))
        # What is there already is not replaced unasked.
        sheet.write_bytes(b"mine")
        self.make_sheet(session, "../Abzug Nr. 1")
        question = session.wait_for_focus(None, other_than=self.panel)
        question.wait_for(name=f"„{sheet.name}“ ist schon vorhanden. Soll die Datei ersetzt werden?")
        session.keys("Escape")
        session.wait_for_focus("frame")
        self.assertEqual(sheet.read_bytes(), b"mine")
        self.make_sheet(session, "../Abzug Nr. 1")
        question = session.wait_for_focus(None, other_than=self.panel)
        session.click_on(question.wait_for("push button", "Ersetzen"))
        until(lambda: sheet.read_bytes().startswith(b"%PDF-"), "the sheet is replaced")
        self.assertEqual(session.end(), 0)

    def make_sheet(self, session, path):
        session.keys("ctrl+p")
        dialog = session.wait_for_focus("dialog", "Kontaktabzug erstellen")
        session.click_on(dialog.wait_for("push button", "Erstellen …"))
        self.panel = self.answer(session, path, other_than=dialog)

    def test_a_second_start_brings_the_window_to_the_front_with_its_folder(self):
        session = self.start("second")
        session.keys("F1")
        helping = session.wait_for_focus("frame", "Pixelhain-Hilfe")
        other = self.folder("zweiter Ordner", *GALLERY[:2])
        self.assertEqual(session.start_again(other), 0)
        front = session.wait_for_focus("frame", "zweiter Ordner – 2 Fotos", helping)
        self.assertEqual(front, session.frame)
        # One photo is shown at once.
        self.assertEqual(session.start_again(self.samples / GALLERY[4]), 0)
        session.wait_for("photo-shown 5")
        session.wait_for_focus("frame", f"samples – {len(GALLERY)} Fotos")
        self.assertEqual(session.end(), 0)


if __name__ == "__main__":
    unittest.main()
