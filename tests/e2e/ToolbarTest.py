"""The toolbar of the running window, under a mouse."""
import re
import unittest

import Desktop
from Desktop import until
from Programs import GALLERY, Programs
from Session import SpokenSession

CONTROLS = ["Seitenleiste ausblenden", "Ordner öffnen", "Vorschaugröße", "Ansicht", "Diashow", "Papierkorb",
            "Aktionen", "Teilen", "Dateiname filtern"]
SMALLEST, LARGEST = 80, 400  # photos, in points


@unittest.skipUnless(Desktop.is_possible(), "needs Xvfb, openbox, dbus-daemon and xdotool")
class ToolbarTest(Programs):
    def start(self, name, *arguments):
        session = SpokenSession(self.place / name, *(arguments or [self.samples]))
        self.addCleanup(session.abandon)
        session.wait_for("idle")
        self.gallery = session.find("list", "Galerie")
        self.toolbar = session.find("filler", "Symbolleiste")
        return session

    def control(self, name):
        return self.toolbar.wait_for(name=name, states=("focusable", "showing"))

    def width_of_photos(self):
        return self.gallery.child(0).place[2]

    def names(self):
        return [re.sub(r", \d+ × \d+$", "", item.name) for item in self.gallery.children()]

    def wait_for_names(self, wanted):
        until(lambda: self.gallery.child_count == len(wanted) and self.names() == list(wanted), "that order")

    def menu(self, session, name):
        return session.popup(lambda: session.click_on(self.control(name)))

    def mark(self, session, *photos):
        for photo in photos:
            session.click_on(self.gallery.child(photo), held="ctrl")
        session.find("label", f"{len(GALLERY)} Fotos · {len(photos)} ausgewählt")

    def test_all_its_controls_stand_side_by_side_from_left_to_right(self):
        session = self.start("order")
        places = [self.control(name).place for name in CONTROLS]
        self.check_row(places, self.toolbar.place)
        self.assertEqual(session.end(), 0)

    def check_row(self, places, bar):
        """They lie in the bar, one after the other, without touching."""
        left, top, width, height = bar
        for x, y, its_width, its_height in places:
            self.assertGreaterEqual(x, left)
            left = x + its_width
            self.assertGreater(its_width, 15)
            self.assertGreaterEqual(y, top)
            self.assertLessEqual(y + its_height, top + height)
        self.assertLessEqual(left, bar[0] + width)

    def test_in_the_smallest_window_nothing_is_cut_off(self):
        session = self.start("small")
        session.resize(640, 420)
        until(lambda: session.frame.place[2:] == (640, 420), "the smallest size")
        until(lambda: self.toolbar.place[2] <= 640, "a toolbar as wide")
        shown = [thing for thing in self.toolbar.below() if thing.is_("focusable", "showing")]
        self.check_row(sorted(thing.place for thing in shown), self.toolbar.place)
        x, y, width, height = self.toolbar.place
        left, top, *_ = session.frame.place
        self.assertGreaterEqual((x, y), (left, top))
        self.assertLessEqual(x + width, left + 640)
        names = [thing.name for thing in shown]
        for name in "Ordner öffnen", "Dateiname filtern":
            self.assertIn(name, names)
        # What has no place is in the menu that says so.
        missing = [name for name in CONTROLS if name not in names]
        if missing:
            more = self.menu(session, "Mehr").entries()
            self.assertEqual(more, [name for name in missing if name != "Vorschaugröße"])
            session.keys("Escape")
        # As little as anything has been cut off, as little can the window be made smaller.
        session.resize(500, 300)
        session.keys("F5")
        session.wait_for(f"scan-accepted {len(GALLERY)}")
        self.assertEqual(session.frame.place[2:], (640, 420))
        self.assertEqual(session.end(), 0)

    def test_the_slider_is_dragged(self):
        session = self.start("drag")
        slider = self.control("Vorschaugröße")
        left, top, width, height = slider.place
        first, middle = slider.value, top + height // 2
        knob = left + 7 + (width - 14) * (first - SMALLEST) / (LARGEST - SMALLEST)
        at_first = self.width_of_photos()
        session.move_to(round(knob), middle)
        session.press()
        session.move_to(left + width // 2, middle)
        until(lambda: abs(slider.value - 240) < 6, "the middle of the slider")
        until(lambda: self.width_of_photos() > at_first + 40, "photos grow while the slider is held")
        # Beyond its ends, and the pointer need not stay on it.
        session.move_to(left + 3 * width, top + 200)
        until(lambda: slider.value == LARGEST, "the largest photos")
        session.move_to(left - 300, middle)
        until(lambda: slider.value == SMALLEST, "the smallest photos")
        session.release()
        until(lambda: self.width_of_photos() < at_first - 60, "small photos")
        session.move_to(left + width // 2, middle)
        session.keys("plus")
        until(lambda: slider.value == SMALLEST + 30, "a key comes from where the slider was left")
        self.assertEqual(session.end(), 0)
        settings = (self.place / "drag/config/pixelhain/pixelhain.ini").read_text()
        self.assertIn(f"thumbSize={SMALLEST + 30}\n", settings)

    def test_a_click_beside_the_knob_takes_it_there(self):
        session = self.start("click")
        slider = self.control("Vorschaugröße")
        left, top, width, height = slider.place
        session.move_to(left + width - 1, top + height // 2)
        session.press()
        session.release()
        until(lambda: slider.value == LARGEST, "the largest photos")
        self.assertTrue(self.gallery.is_("focused"), "the keyboard stays with the photos")
        self.assertEqual(session.end(), 0)

    def test_the_search_field_filters_while_one_types(self):
        session = self.start("search")
        field = self.control("Dateiname filtern")
        session.click_on(field)
        until(lambda: field.is_("focused"))
        session.type("BALLON")
        found = [name for name in GALLERY if name.startswith("Ballon")]
        self.wait_for_names(found)
        session.find("label", f"{len(found)} Fotos")
        session.wait_for_focus("frame", f"samples – {len(found)} Fotos")
        session.keys("ctrl+a", "BackSpace")
        self.wait_for_names(GALLERY)
        session.type("no photo is called that")
        session.find("label", "Keine Treffer")
        session.find("label", "0 Fotos")
        self.assertFalse(self.gallery.is_("showing"))
        session.click_on(session.find("push button", "Filter löschen"))
        self.wait_for_names(GALLERY)
        session.find("label", f"{len(GALLERY)} Fotos")
        self.assertEqual(field.text, "")
        # Escape clears, and once more goes back to the photos.
        session.type("strand")
        self.wait_for_names([name for name in GALLERY if name.startswith("Strand")])
        session.keys("Escape")
        self.wait_for_names(GALLERY)
        self.assertTrue(field.is_("focused"))
        session.keys("Escape")
        until(lambda: self.gallery.is_("focused"))
        session.keys("ctrl+f")
        until(lambda: field.is_("focused"))
        self.assertEqual(session.end(), 0)

    def test_photos_are_sorted_by_the_menu(self):
        session = self.start("sort")
        size = {name: (self.samples / name).stat().st_size for name in GALLERY}

        def sizes():
            return [size[name] for name in self.names()]

        session.choose(self.menu(session, "Ansicht"), "Dateigröße")
        until(lambda: sizes() == sorted(size.values()), "the smallest file first")
        menu = self.menu(session, "Ansicht")
        self.assertEqual(self.checked(menu), [
            "Dateigröße", "Aufsteigend", "Dateinamen anzeigen", "Auflösung anzeigen"])
        session.choose(menu, "Aufsteigend")
        until(lambda: sizes() == sorted(size.values())[::-1], "the largest first")
        menu = self.menu(session, "Ansicht")
        self.assertEqual(self.checked(menu), ["Dateigröße", "Dateinamen anzeigen", "Auflösung anzeigen"])
        session.choose(menu, "Name")
        self.wait_for_names(GALLERY[::-1])
        session.choose(self.menu(session, "Ansicht"), "Aufsteigend")
        self.wait_for_names(GALLERY)
        self.assertEqual(session.end(), 0)

    def checked(self, menu):
        return [entry.name for entry in menu.children() if entry.is_("checked")]

    def test_the_menu_switches_folders_below_and_captions(self):
        session = self.start("view")
        cell = self.gallery.child(0).place
        session.choose(self.menu(session, "Ansicht"), "Dateinamen anzeigen")
        until(lambda: self.gallery.child(0).place[3] < cell[3], "photos without their names")
        session.choose(self.menu(session, "Ansicht"), "Auflösung anzeigen")
        until(lambda: self.gallery.child(0).place[3] < cell[3] - 15, "photos without any caption")
        menu = self.menu(session, "Ansicht")
        self.assertEqual(self.checked(menu), ["Name", "Aufsteigend"])
        session.choose(menu, "Unterordner einbeziehen")
        until(lambda: self.gallery.child_count > len(GALLERY), "photos of the folders below")
        session.find("label", f"{self.gallery.child_count} Fotos")
        menu = self.menu(session, "Ansicht")
        self.assertEqual(self.checked(menu), ["Name", "Aufsteigend", "Unterordner einbeziehen"])
        session.choose(menu, "Unterordner einbeziehen")
        self.wait_for_names(GALLERY)
        for name in "Dateinamen anzeigen", "Auflösung anzeigen":
            session.choose(self.menu(session, "Ansicht"), name)
        until(lambda: self.gallery.child(0).place == cell, "photos with their captions")
        self.assertEqual(session.end(), 0)

    def test_the_menu_of_actions_marks_and_acts(self):
        session = self.start("actions")
        for action, marked in ("Alle auswählen", len(GALLERY)), ("Auswahl umkehren", 0), ("Auswahl umkehren", len(
                GALLERY)), ("Auswahl aufheben", 0):
            session.choose(self.menu(session, "Aktionen"), action)
            session.find("label", f"{len(GALLERY)} Fotos" + (f" · {marked} ausgewählt" if marked else ""))
        self.mark(session, 0, 3)
        session.choose(self.menu(session, "Aktionen"), "In Zwischenablage kopieren")
        session.wait_for("status: 2 Fotos in die Zwischenablage kopiert")
        session.choose(self.menu(session, "Aktionen"), "Kontaktabzug (PDF) …")
        dialog = session.wait_for_focus("dialog", "Kontaktabzug erstellen")
        dialog.wait_for("label", "2 ausgewählte Fotos")
        session.keys("Escape")
        session.wait_for_focus("frame")
        session.choose(self.menu(session, "Aktionen"), "In den Papierkorb legen  (⌘⌫)")
        session.wait_for("status: 2 Fotos in den Papierkorb gelegt – ⌘Z macht es rückgängig")
        self.wait_for_names([*GALLERY[1:3], *GALLERY[4:]])
        session.keys("ctrl+z")
        self.wait_for_names(GALLERY)
        self.assertEqual(session.end(), 0)

    def test_the_tips_follow_the_selection(self):
        session = self.start("tips")
        trash, slideshow = self.control("Papierkorb"), self.control("Diashow")
        one = "In den Papierkorb (⌘⌫, rückgängig mit ⌘Z)"
        self.assertEqual(session.tip_of(trash), one)
        self.assertEqual(session.tip_of(slideshow), "Diashow aller Fotos (⇧⌘D)")
        self.mark(session, 0)
        self.assertEqual(session.tip_of(trash), one)
        self.assertEqual(session.tip_of(slideshow), "Diashow aller Fotos (⇧⌘D)")
        session.keys("Right", "x", "Right", "x")
        session.find("label", f"{len(GALLERY)} Fotos · 3 ausgewählt")
        self.assertEqual(
            session.tip_of(trash), "3 ausgewählte Fotos in den Papierkorb (⌘⌫, rückgängig mit ⌘Z)")
        self.assertEqual(session.tip_of(slideshow), "Diashow der Auswahl (⇧⌘D)")
        session.click_on(session.find("push button", "Auswahl aufheben"))
        session.find("label", f"{len(GALLERY)} Fotos")
        self.assertEqual(session.tip_of(trash), one)
        self.assertEqual(session.end(), 0)

    def test_the_trash_button_takes_the_marked_photos(self):
        session = self.start("trash")
        self.mark(session, 1, 2)
        session.click_on(self.control("Papierkorb"))
        session.wait_for("status: 2 Fotos in den Papierkorb gelegt – ⌘Z macht es rückgängig")
        self.wait_for_names([GALLERY[0], *GALLERY[3:]])
        session.keys("ctrl+z")
        self.wait_for_names(GALLERY)
        self.assertEqual(session.end(), 0)

    def test_the_sidebar_button_hides_and_shows_the_folders(self):
        session = self.start("sidebar")
        tree, left = session.find("tree", "Ordner"), self.gallery.place[0]
        session.click_on(self.control("Seitenleiste ausblenden"))
        until(lambda: not tree.is_("showing"), "the folders go")
        until(lambda: self.gallery.place[0] < left, "the photos take their room")
        button = self.control("Seitenleiste einblenden")
        self.assertEqual(session.tip_of(button), "Seitenleiste einblenden (⌃⌘S)")
        menu = session.menu("Ansicht")
        self.assertIn("Seitenleiste einblenden", menu.entries())
        session.click_on(menu.parent)
        session.click_on(button)
        until(lambda: tree.is_("showing"), "the folders come back")
        until(lambda: self.gallery.place[0] == left, "the photos as they were")
        self.control("Seitenleiste ausblenden")
        self.assertEqual(session.end(), 0)

    def test_the_slideshow_button_shows_photos_without_the_toolbar(self):
        session = self.start("slideshow")
        window = session.frame.place
        session.click_on(self.control("Diashow"))
        session.wait_for("photo-shown 1")
        until(lambda: not self.toolbar.is_("showing"), "the toolbar goes")
        until(lambda: session.frame.place[2:] == (1920, 1080), "full screen")
        session.keys("Escape")
        until(lambda: self.toolbar.is_("showing"), "the toolbar comes back")
        until(lambda: session.frame.place == window, "the window as it was")
        self.assertEqual(session.end(), 0)

    def test_there_is_no_toolbar_beside_a_photo_shown_large(self):
        session = self.start("viewer")
        session.click_on(self.gallery.child(0))
        session.wait_for("photo-shown 1")
        until(lambda: not self.toolbar.is_("showing"), "the toolbar goes")
        self.assertEqual([thing for thing in self.toolbar.below() if thing.is_("showing")], [])
        session.click_on(session.find("push button", "Zurück zur Übersicht"))
        until(lambda: self.toolbar.is_("showing"), "the toolbar comes back")
        self.assertEqual([name for name in CONTROLS if not self.control(name)], [])
        self.assertEqual(session.end(), 0)

    def test_the_share_menu_copies_the_marked_photos(self):
        session = self.start("share")
        self.mark(session, 4)
        session.choose(self.menu(session, "Teilen"), "Dateien kopieren")
        session.wait_for("status: 1 Foto in die Zwischenablage kopiert")
        self.assertEqual(session.end(), 0)


if __name__ == "__main__":
    unittest.main()
