"""The program on a desktop with a window manager, used with the keyboard alone."""
import subprocess
import unittest

import Desktop
from Desktop import until
from Programs import GALLERY, Programs
from Session import SpokenSession


@unittest.skipUnless(Desktop.is_possible(), "needs Xvfb, openbox, dbus-daemon and xdotool")
class KeyboardTest(Programs):
    def start(self, name, *arguments):
        session = SpokenSession(self.place / name, *(arguments or [self.samples]))
        self.addCleanup(session.abandon)
        session.wait_for("idle")
        self.gallery = session.find("list", "Galerie")
        return session

    def wait_for_photo(self, index, *states):
        until(lambda: self.gallery.child(index).is_(*states), f"photo {index} is {states}")

    def contents(self):
        return {file.name: file.read_bytes() for file in self.samples.iterdir() if file.is_file()}

    def test_arrows_move_space_and_return_open_and_escape_closes(self):
        session = self.start("arrows")
        session.keys("Right")
        self.wait_for_photo(0, "focused")
        session.keys("Right", "Right")
        self.wait_for_photo(2, "focused")
        session.keys("Left")
        self.wait_for_photo(1, "focused")
        session.keys("Down")
        until(lambda: not self.gallery.child(1).is_("focused"))
        session.keys("Up")
        self.wait_for_photo(1, "focused")
        for key in "space", "Return":
            session.keys(key)
            session.wait_for("photo-shown 2")
            session.find("graphic", f"{GALLERY[1]}, 2 von {len(GALLERY)}", ("focused",))
            session.keys("Escape")
            self.wait_for_photo(1, "focused", "showing")
        session.keys("End")
        self.wait_for_photo(len(GALLERY) - 1, "focused", "showing")
        self.assertEqual(session.end(), 0)

    def test_three_marked_photos_go_to_the_trash_and_come_back(self):
        before = self.contents()
        session = self.start("trash")
        session.keys("Right", "x", "Right", "x", "Right", "x")
        session.find("label", f"{len(GALLERY)} Fotos · 3 ausgewählt")
        session.find("push button", "Auswahl aufheben")
        session.keys("Delete")
        session.wait_for("status: 3 Fotos in den Papierkorb gelegt – ⌘Z macht es rückgängig")
        until(lambda: self.gallery.child_count == len(GALLERY) - 3)
        self.assertEqual(set(before) - set(self.contents()), set(GALLERY[:3]))
        self.assertEqual(len(list((session.data / "Trash/info").iterdir())), 3)
        session.keys("ctrl+z")
        session.wait_for("status: 3 Fotos wiederhergestellt")
        until(lambda: self.gallery.child_count == len(GALLERY))
        self.assertEqual(self.contents(), before)
        self.assertEqual(list((session.data / "Trash/files").iterdir()), [])
        self.assertEqual(session.end(), 0)

    def test_tab_goes_round_through_all_that_can_be_used(self):
        session = self.start("tab")
        seen = []
        while (focused := session.focused()) not in seen:
            seen.append(focused)
            session.keys("Tab")
            until(lambda: session.focused() not in (None, focused), f"Tab leaves {focused}")
        names = [thing.name for thing in seen]
        self.assertEqual(focused, seen[0], names)
        self.assertEqual(sorted(set(names)), sorted(names), "each of them once")
        self.assertEqual(names[0], "Galerie")
        for name in "Ordner", "Ordnerliste aktualisieren", "Ordner öffnen …":
            self.assertIn(name, names)
        # Along the toolbar as it is read.
        toolbar = ["Seitenleiste ausblenden", "Ordner öffnen", "Vorschaugröße", "Ansicht", "Diashow", "Papierkorb",
                   "Aktionen", "Teilen", "Dateiname filtern"]
        self.assertEqual([name for name in names if name in toolbar], toolbar)
        self.assertEqual(session.end(), 0)

    def test_help_opens_and_closes(self):
        session = self.start("help")
        session.keys("F1")
        help_window = session.wait_for_focus("frame", "Pixelhain-Hilfe")
        topics = help_window.wait_for("list", "Themen")
        self.assertGreater(topics.child_count, 5)
        session.keys("Escape")
        self.assertEqual(session.wait_for_focus("frame", other_than=help_window), session.frame)
        self.assertEqual(session.end(), 0)

    def test_a_contact_sheet_is_made(self):
        session = self.start("sheet")
        sheet = self.samples / "Kontaktabzug samples.pdf"
        self.addCleanup(sheet.unlink, missing_ok=True)
        session.keys("ctrl+p")
        dialog = session.wait_for_focus("dialog", "Kontaktabzug erstellen")
        self.assertEqual([thing for thing in dialog.below() if self.is_nameless(thing)], [])
        dialog.find("push button", "Erstellen …").perform("Press")
        session.wait_for_focus("dialog", other_than=dialog).wait_for("text", states=("focused",))
        session.keys("Return")
        session.wait_for(f"status: Kontaktabzug gespeichert: {sheet.name}")
        said = subprocess.run(["pdfinfo", sheet], check=True, text=True, stdout=subprocess.PIPE).stdout
        self.assertRegex(said, r"Pages: +2\n")
        self.assertEqual(session.end(), 0)

    def is_nameless(self, thing):
        roles = "push button", "check box", "spin box", "combo box", "text"
        return thing.is_("focusable", "showing") and thing.role in roles and not thing.name

    def test_menus_open_on_the_keyboard(self):
        session = self.start("menus")
        session.keys("alt+d")
        session.find("menu item", "Neu laden")
        session.keys("Right", "Right")
        session.find("menu item", "Seitenleiste ausblenden")
        session.keys("Escape", "Right")
        self.wait_for_photo(0, "focused")
        session.keys("F10")
        session.find("menu item", "Neu laden")
        session.keys("Escape", "Right")
        self.wait_for_photo(1, "focused")
        self.assertEqual(session.end(), 0)

    def test_the_keyboard_is_the_gallery_s_after_a_menu_and_another_window(self):
        session = self.start("menu and help")
        session.keys("alt+d")
        session.find("menu item", "Neu laden")
        session.keys("Escape", "F1")
        help_window = session.wait_for_focus("frame", "Pixelhain-Hilfe")
        session.keys("Escape")
        session.wait_for_focus("frame", other_than=help_window)
        session.keys("Right")
        self.wait_for_photo(0, "focused")
        self.assertEqual(session.end(), 0)

    def test_the_menu_of_a_photo_opens_where_the_keyboard_is(self):
        session = self.start("photo menu")
        session.bus.listen("object:state-changed:focused")
        session.keys("Right")
        self.wait_for_photo(0, "focused")
        for index, key in enumerate(("Menu", "shift+F10")):
            session.bus.forget()
            session.keys(key, "Down")
            until(lambda: ("menu item", "Öffnen") in [
                (thing.role, thing.name) for _, detail, number, thing in session.bus.hear()
                if (detail, number) == ("focused", 1)], "the menu opens")
            session.keys("Escape")
            session.keys("Right")
            self.wait_for_photo(index + 1, "focused")
        self.assertEqual(session.end(), 0)

    def test_the_smallest_window_shows_everything_whole(self):
        session = self.start("small")
        session.keys("Right", "x")
        session.resize(640, 420)
        until(lambda: session.frame.place[2:] == (640, 420), "the smallest size")
        left, top, width, height = session.frame.place
        for thing in session.frame.below():
            if thing.role in ("push button", "label", "status bar", "tree") and thing.is_("showing") and thing.name:
                x, y, its_width, its_height = thing.place
                self.assertGreaterEqual((x, y), (left, top), thing)
                self.assertLessEqual(x + its_width, left + width, thing)
                self.assertLessEqual(y + its_height, top + height, thing)
        self.assertEqual(session.end(), 0)


if __name__ == "__main__":
    unittest.main()
