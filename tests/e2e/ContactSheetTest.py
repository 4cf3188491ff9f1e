"""A contact sheet from the window, with a keyboard in a virtual X server."""
import os
import subprocess
import unittest

from Programs import GALLERY, Programs
from Session import SECOND, Session


@unittest.skipUnless(os.environ.get("DISPLAY"), "needs an X server: xvfb-run -a ctest …")
class ContactSheetTest(Programs):
    def start(self, name):
        # What would be opened is only noted.
        self.opened = self.place / f"{name} opened"
        programs = self.place / f"{name} programs"
        programs.mkdir()
        opener = programs / "xdg-open"
        opener.write_text(f"#!/bin/sh\nprintf '%s' \"$1\" > '{self.opened}.new'\nmv '{self.opened}.new' '{self.opened}'\n")
        opener.chmod(0o755)
        session = Session(self.place / name, self.samples, PATH=f"{programs}:{os.environ['PATH']}")
        self.addCleanup(session.abandon)
        session.wait_for("idle")
        session.take_focus()
        return session

    def about(self, sheet):
        said = subprocess.run(["pdfinfo", sheet], check=True, text=True, stdout=subprocess.PIPE).stdout
        return dict((part.strip() for part in line.split(":", 1)) for line in said.splitlines())

    def names_on(self, sheet):
        return subprocess.run(["pdftotext", sheet, "-"], check=True, text=True, stdout=subprocess.PIPE).stdout

    def make(self, session, sheet, photos):
        """Takes the dialog and the save panel as they come; both have the keyboard once they are seen."""
        main = session.window
        session.keys("ctrl+p")
        session.focus(session.wait_for_window("Kontaktabzug erstellen"))
        session.keys("Return")
        session.focus(session.wait_for_window(other_than=main))
        session.keys("Return")
        session.wait_for(f"status: Erstelle Kontaktabzug mit {photos} Fotos …")
        session.wait_for(f"status: Kontaktabzug gespeichert: {sheet.name}")
        session.focus(main)

    def test_a_sheet_of_all_photos_is_written_beside_them_and_opened(self):
        before = {file.name: file.read_bytes() for file in self.samples.iterdir() if file.is_file()}
        session = self.start("all")
        sheet = self.samples / "Kontaktabzug samples.pdf"
        self.addCleanup(sheet.unlink, missing_ok=True)
        self.make(session, sheet, len(GALLERY))
        about = self.about(sheet)
        self.assertEqual(about["Title"], "samples")
        self.assertEqual(about["Creator"], "Pixelhain")
        self.assertEqual(about["Pages"], "2")
        self.assertTrue(about["Page size"].startswith("595.28 x 841.89 pts"), about["Page size"])
        self.assertIn(f"{len(GALLERY)} Fotos", self.names_on(sheet))
        session.wait_until(self.opened.exists)
        self.assertTrue(self.opened.read_text().endswith("/samples/Kontaktabzug%20samples.pdf"))
        after = {file.name: file.read_bytes() for file in self.samples.iterdir() if file.is_file()}
        after.pop(sheet.name)
        self.assertEqual(after, before)
        self.assertEqual(session.end(), 0)

    def test_marked_photos_alone_go_on_the_sheet(self):
        session = self.start("marked")
        sheet = self.samples / "Kontaktabzug samples.pdf"
        self.addCleanup(sheet.unlink, missing_ok=True)
        session.click(*SECOND, held="ctrl")
        session.keys("Right", "x")
        self.make(session, sheet, 2)
        self.assertEqual(self.about(sheet)["Pages"], "1")
        self.assertIn("2 Fotos", self.names_on(sheet))
        self.assertEqual(session.end(), 0)


if __name__ == "__main__":
    unittest.main()
