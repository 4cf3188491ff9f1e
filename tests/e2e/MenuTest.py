"""The menu bar of the running window, under a mouse and a keyboard."""
import os
import unittest

import Desktop
from Desktop import until
from Programs import GALLERY, Programs
from Session import PATIENCE, SpokenSession

LETTERS = {"Datei": "d", "Bearbeiten": "b", "Ansicht": "a", "Fotos": "f", "Hilfe": "h"}


@unittest.skipUnless(Desktop.is_possible(), "needs Xvfb, openbox, dbus-daemon and xdotool")
class MenuTest(Programs):
    def start(self, name, *arguments, **variables):
        session = SpokenSession(self.place / name, *(arguments or [self.samples]), **variables)
        self.addCleanup(session.abandon)
        session.wait_for("idle")
        return session

    def empty_folder(self, name):
        folder = self.place / name
        folder.mkdir()
        return folder

    def closed(self, session, menu):
        """From the keyboard: the first Escape leaves the menu, the other one the bar."""
        session.keys("Escape", "Escape")
        until(lambda: not menu.is_shown(), f"{menu} closes")

    def look(self, session, title, *submenus):
        """The states of a menu's entries by their titles, as they are once it is open."""
        first = menu = session.menu(title)
        for name in submenus:
            session.click_on(menu.entry(name))
            menu = session.opened(menu.entry(name))
        states = {entry.name: entry.states for entry in menu.children() if entry.role != "separator"}
        session.click_on(first.parent)
        until(lambda: not first.is_shown(), f"{first} closes")
        return states

    def enabled(self, states):
        return [name for name, its in states.items() if "enabled" in its]

    def checked(self, states):
        return [name for name, its in states.items() if "checked" in its]

    def choose(self, session, title, *names):
        session.choose(session.menu(title), *names)

    def test_each_menu_opens_by_its_letter_and_the_arrows_go_round(self):
        session = self.start("letters")
        bar = session.find("menu bar")
        self.assertEqual([entry.name for entry in bar.children()], list(LETTERS))
        for title, letter in LETTERS.items():
            session.keys(f"alt+{letter}")
            menu = session.opened(bar.entry(title))
            self.closed(session, menu)
        session.keys("alt+d")
        for title in [*list(LETTERS)[1:], "Datei"]:
            session.keys("Right")
            menu = session.opened(bar.entry(title))
        self.closed(session, menu)
        until(lambda: session.find("list", "Galerie").is_("focused"), "the keyboard goes back to the photos")
        self.assertEqual(session.end(), 0)

    def test_a_pointer_moves_from_menu_to_menu(self):
        session = self.start("hover")
        bar = session.find("menu bar")
        before = session.menu("Datei")
        for title in list(LETTERS)[1:]:
            session.point_at(bar.entry(title))
            menu = session.opened(bar.entry(title))
            until(lambda: not before.is_shown(), f"{before} closes")
            before = menu
        self.closed(session, before)
        self.assertEqual(session.end(), 0)

    def test_check_marks_show_what_has_been_chosen(self):
        session = self.start("checks")
        self.assertEqual(self.checked(self.look(session, "Fotos")), ["Dateinamen anzeigen", "Auflösung anzeigen"])
        self.choose(session, "Fotos", "Dateinamen anzeigen")
        self.choose(session, "Fotos", "Infos einblenden  (I)")
        self.choose(session, "Fotos", "Diashow zufällig")
        self.assertEqual(
            self.checked(self.look(session, "Fotos")),
            ["Diashow zufällig", "Infos einblenden  (I)", "Auflösung anzeigen"])
        self.assertEqual(self.checked(self.look(session, "Fotos", "Diashow-Intervall")), ["4 Sekunden"])
        self.choose(session, "Fotos", "Diashow-Intervall", "10 Sekunden")
        self.assertEqual(self.checked(self.look(session, "Fotos", "Diashow-Intervall")), ["10 Sekunden"])
        self.assertEqual(session.end(), 0)
        settings = (self.place / "checks/config/pixelhain/pixelhain.ini").read_text().splitlines()
        self.assertLessEqual({"interval=10", "shuffle=true", "showFilenames=false"}, set(settings), settings)

    def test_the_view_menu_hides_the_sidebar_and_fills_the_screen(self):
        session = self.start("view")
        tree = session.find("tree", "Ordner")
        window = session.frame.place
        self.choose(session, "Ansicht", "Seitenleiste ausblenden")
        until(lambda: not tree.is_("showing"), "the sidebar goes")
        self.choose(session, "Ansicht", "Seitenleiste einblenden")
        until(lambda: tree.is_("showing"), "the sidebar comes back")
        self.choose(session, "Ansicht", "Vollbild")
        until(lambda: session.frame.place[2:] == (1920, 1080), "full screen")
        self.assertEqual(self.checked(self.look(session, "Ansicht")), ["Vollbild"])
        self.choose(session, "Ansicht", "Vollbild")
        until(lambda: session.frame.place == window, "the window as it was")
        self.assertEqual(self.checked(self.look(session, "Ansicht")), [])
        self.assertEqual(session.end(), 0)

    def test_the_parent_can_be_reached_until_there_is_none(self):
        session = self.start("parent", "/")
        tree = session.find("tree", "Ordner")
        self.assertNotIn("Übergeordneter Ordner", self.enabled(self.look(session, "Ansicht")))
        self.assertEqual(session.end(), 0)
        session = self.start("parent", self.samples)
        self.assertIn("Übergeordneter Ordner", self.enabled(self.look(session, "Ansicht")))
        tree = session.find("tree", "Ordner")
        self.choose(session, "Ansicht", "Übergeordneter Ordner")
        tree.wait_for("tree item", self.place.name)
        until(lambda: tree.wait_for("tree item", "samples").is_("selected"), "the folder shown is the same")
        self.assertEqual(session.end(), 0)

    def test_with_an_empty_folder_only_what_needs_photos_is_disabled(self):
        session = self.start("empty", self.empty_folder("leer"))
        states = self.look(session, "Fotos")
        self.assertEqual(
            [name for name in states if name not in self.enabled(states)], ["Diashow starten", "Kontaktabzug (PDF) …"])
        self.assertEqual(self.enabled(self.look(session, "Bearbeiten")), [])
        # Their keys do as little as they themselves.
        session.keys("ctrl+p", "ctrl+shift+d", "F5")
        session.wait_for("scan-accepted 0")
        self.assertEqual([window.role for window in session.root.children()], ["frame"])
        self.assertFalse(session.frame.find(name="Bildbetrachter").is_("showing"))
        self.assertEqual(session.end(), 0)

    def test_photos_come_back_by_the_menu_once_some_are_in_the_trash(self):
        session = self.start("undo")
        self.assertNotIn("Papierkorb rückgängig", self.enabled(self.look(session, "Bearbeiten")))
        session.keys("Right")
        self.choose(session, "Fotos", "In den Papierkorb legen")
        session.wait_for("status: 1 Foto in den Papierkorb gelegt – ⌘Z macht es rückgängig")
        self.assertFalse((self.samples / GALLERY[0]).exists())
        self.choose(session, "Bearbeiten", "Papierkorb rückgängig")
        session.wait_for("status: 1 Foto wiederhergestellt")
        self.assertTrue((self.samples / GALLERY[0]).exists())
        self.assertNotIn("Papierkorb rückgängig", self.enabled(self.look(session, "Bearbeiten")))
        self.assertEqual(session.end(), 0)

    def test_text_is_edited_by_the_menu(self):
        session = self.start("text")
        field = session.find("text", "Dateiname filtern")
        session.keys("ctrl+f")
        until(lambda: field.is_("focused"))
        session.type("strand")
        until(lambda: field.text == "strand")
        self.assertNotIn("Kopieren", self.enabled(self.look(session, "Bearbeiten")))
        self.choose(session, "Bearbeiten", "Alles auswählen")
        self.assertEqual(
            self.enabled(self.look(session, "Bearbeiten")), ["Ausschneiden", "Kopieren", "Einfügen", "Alles auswählen"])
        self.choose(session, "Bearbeiten", "Ausschneiden")
        until(lambda: field.text == "")
        for text in "strand", "strandstrand":
            self.choose(session, "Bearbeiten", "Einfügen")
            until(lambda: field.text == text, f"{text} is pasted")
        self.assertEqual(session.end(), 0)

    def test_the_menu_of_photos_marks_them(self):
        session = self.start("marks")
        for action, marked in ("Alle auswählen  (⌘A)", len(GALLERY)), ("Auswahl umkehren", 0), (
                "Auswahl umkehren", len(GALLERY)), ("Auswahl aufheben  (⇧⌘A)", 0):
            self.choose(session, "Fotos", action)
            session.find("label", f"{len(GALLERY)} Fotos" + (f" · {marked} ausgewählt" if marked else ""))
        self.assertEqual(session.end(), 0)

    def test_a_slideshow_starts_by_the_menu_and_ends_by_its_key(self):
        session = self.start("slideshow")
        self.choose(session, "Fotos", "Diashow starten")
        session.wait_for("photo-shown 1")
        until(lambda: session.frame.place[2:] == (1920, 1080), "full screen")
        session.keys("ctrl+shift+d")
        until(lambda: session.frame.place[2:] != (1920, 1080), "the window again")
        # The viewer stays on the photo.
        session.find("push button", "Zurück zur Übersicht")
        self.assertEqual(session.end(), 0)

    def test_a_folder_reloads_and_closes(self):
        folder = self.empty_folder("neu")
        session = self.start("reload", folder)
        (folder / "neu.jpg").write_bytes((self.samples / GALLERY[0]).read_bytes())
        self.choose(session, "Datei", "Neu laden")
        session.wait_for("scan-accepted 1")
        (folder / "unten").mkdir()
        self.choose(session, "Datei", "Ordnerliste aktualisieren")
        session.find("tree item", "unten")
        self.choose_last(session, "Datei", "Schließen")
        self.assertEqual(session.program.wait(PATIENCE), 0)
        session = self.start("reload", folder)
        self.choose_last(session, "Datei", "Beenden")
        self.assertEqual(session.program.wait(PATIENCE), 0)

    def choose_last(self, session, title, name):
        """Without looking at the menu afterwards."""
        session.click_on(session.menu(title).entry(name))

    def test_folders_shown_before_stand_in_the_menu(self):
        first, second = self.empty_folder("erster"), self.empty_folder("zweiter")
        self.assertEqual(self.start("recent", first).end(), 0)
        session = self.start("recent", second)
        self.assertEqual(list(self.look(session, "Datei", "Zuletzt geöffnet")), ["zweiter", "erster", "Liste leeren"])
        self.choose(session, "Datei", "Zuletzt geöffnet", "erster")
        session.wait_for_focus("frame", "erster – 0 Fotos")
        self.choose(session, "Datei", "Zuletzt geöffnet", "Liste leeren")
        self.assertNotIn("Zuletzt geöffnet", self.enabled(self.look(session, "Datei")))
        self.assertEqual(session.end(), 0)

    def test_help_and_what_the_program_is_open_by_their_menu(self):
        session = self.start("help")
        self.choose(session, "Hilfe", "Pixelhain-Hilfe")
        helping = session.wait_for_focus("frame", "Pixelhain-Hilfe")
        session.keys("Escape")
        session.wait_for_focus("frame", other_than=helping)
        self.choose(session, "Hilfe", "Über Pixelhain")
        about = session.wait_for_focus("dialog", "Über Pixelhain")
        session.click_on(about.wait_for("push button", "Schließen"))
        session.wait_for_focus("frame")
        self.assertEqual(session.end(), 0)

    def test_photos_open_in_the_program_of_their_kind(self):
        opened, programs = self.place / "opened", self.empty_folder("programs")
        opener = programs / "xdg-open"
        opener.write_text(f"#!/bin/sh\nprintf '%s' \"$1\" > '{opened}.new'\nmv '{opened}.new' '{opened}'\n")
        opener.chmod(0o755)
        session = self.start("default", PATH=f"{programs}:{os.environ['PATH']}")
        session.keys("Right")
        self.choose(session, "Fotos", "Mit Standard-App öffnen")
        until(opened.exists, "the other program starts")
        self.assertTrue(opened.read_text().endswith("Aufbruch.jpg"), opened.read_text())
        self.assertEqual(session.end(), 0)


if __name__ == "__main__":
    unittest.main()
