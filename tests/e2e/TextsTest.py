"""Every text of the windows stands where it belongs, letter by letter."""
import unittest

import Desktop
import Texts
from Desktop import until
from Programs import GALLERY, Programs
from Session import SpokenSession

UNREADABLE = "Kaputt.jpg"


@unittest.skipUnless(Desktop.is_possible(), "needs Xvfb, openbox, dbus-daemon and xdotool")
class TextsTest(Programs):
    def start(self, name, *arguments):
        session = SpokenSession(self.place / name, *(arguments or [self.samples]))
        self.addCleanup(session.abandon)
        session.wait_for("idle")
        return session

    def folder(self, name, *below):
        folder = self.place / name
        for place in (folder, *(folder / name for name in below)):
            place.mkdir()
        return folder

    def labels(self, thing):
        """What can be read in it now, from top to bottom."""
        return [below.name for below in thing.below() if below.is_("showing") and below.name
                and below.role in ("label", "push button", "check box")]

    def mark(self, session, photos):
        session.keys("Home", *["x", "Right"] * photos)
        session.find("label", Texts.STATUS["marked"].format(count=len(GALLERY), marked=photos))

    def test_the_menu_bar(self):
        session = self.start("menus")
        bar = session.find("menu bar")
        self.assertEqual([entry.name for entry in bar.children()], [titles[0] for titles in Texts.MENUS if not titles[1:]])
        for titles, wanted in Texts.MENUS.items():
            with self.subTest(menu=titles):
                first = menu = session.menu(titles[0])
                for title in titles[1:]:
                    entry = menu.entry(title)
                    session.click_on(entry)
                    menu = session.opened(entry)
                # A menu may have more, but these in this order.
                self.assertEqual([name for name in menu.entries() if name in wanted], wanted)
                session.click_on(first.parent)
                until(lambda: not first.is_shown(), f"{titles} closes")
        session.keys("F9")
        menu = session.menu("Ansicht")
        self.assertIn("Seitenleiste einblenden", menu.entries())
        session.click_on(menu.parent)
        self.assertEqual(session.end(), 0)

    def test_the_toolbar(self):
        session = self.start("toolbar")
        toolbar = session.find("filler", "Symbolleiste")
        self.check_controls(session, toolbar, Texts.TOOLBAR)
        field = toolbar.wait_for("text", Texts.SEARCH)
        self.assertEqual(session.tip_of(toolbar.wait_for("push button", Texts.SEARCH)), Texts.SEARCH)
        self.assertEqual(field.description, Texts.SEARCH)
        for name, wanted in Texts.TOOLBAR_MENUS.items():
            menu = session.popup(lambda: session.click_on(toolbar.wait_for("button menu", name)))
            self.assertEqual([entry.name or None for entry in menu.children()], wanted)
            session.keys("Escape")
            until(lambda: not menu.is_shown(), f"{name} closes")
        session.click_on(session.find("list", "Galerie").child(0), held="ctrl")
        session.find("push button", Texts.STATUS["unmark"])
        self.check_controls(session, toolbar, Texts.TOOLBAR)
        session.keys("Right", "x", "Right", "x")
        session.find("label", Texts.STATUS["marked"].format(count=len(GALLERY), marked=3))
        self.check_controls(session, toolbar, Texts.TOOLBAR_WITH_THREE_MARKED)
        self.assertEqual(session.end(), 0)

    def check_controls(self, session, toolbar, controls):
        for role, name, tip in controls:
            control = toolbar.wait_for(role, name, ("showing",))
            self.assertEqual(control.description, tip)

    def test_tips_are_shown_as_they_are_told(self):
        session = self.start("tips")
        toolbar = session.find("filler", "Symbolleiste")
        for role, name, tip in Texts.TOOLBAR:
            self.assertEqual(session.tip_of(toolbar.wait_for(role, name)), tip)
        for name, tip in ("refresh", "refresh"), ("up", "up tip"):
            button = session.find("push button", Texts.SIDEBAR[name])
            self.assertEqual(session.tip_of(button), Texts.SIDEBAR[tip])
        self.assertEqual(session.end(), 0)

    def test_the_sidebar(self):
        below = self.folder("Ordner mit Fotos", "eins", "keins")
        (below / "eins" / "a.jpg").write_bytes((self.samples / GALLERY[0]).read_bytes())
        session = self.start("sidebar", below)
        session.find("label", Texts.SIDEBAR["heading"])
        for text in Texts.SIDEBAR["refresh"], Texts.SIDEBAR["up"], Texts.SIDEBAR["open"]:
            session.find("push button", text)
        for name, path, tip in (("eins", below / "eins", Texts.SIDEBAR["counted one"]), (
                "keins", below / "keins", Texts.SIDEBAR["counted"].format(count=0))):
            row = session.find("tree item", name)
            until(lambda: row.description.startswith(tip), f"{name} is counted")
            self.assertEqual(session.tip_of(row), f"{path}\n{tip}")
        self.check_menu(session, session.find("tree item", "eins"), Texts.FOLDER_MENUS["not shown"])
        top = session.find("tree item", below.name)
        self.check_menu(session, top, Texts.FOLDER_MENUS["the only one, at the top"])
        session.click_on(session.find("tree item", "eins"), held="ctrl")
        session.wait_for_focus("frame", Texts.WINDOWS["two folders"].format(count=1))
        self.check_menu(session, session.find("tree item", "eins"), Texts.FOLDER_MENUS["one of those shown"])
        self.assertEqual(session.end(), 0)

    def check_menu(self, session, thing, wanted):
        menu = session.popup(lambda: session.click_on(thing, button=3))
        self.assertEqual(menu.entries(), wanted)
        session.keys("Escape")
        until(lambda: not menu.is_shown(), f"the menu of {thing} closes")

    def test_the_gallery_and_the_status_bar(self):
        session = self.start("gallery")
        session.wait_for_focus("frame", Texts.WINDOWS["one folder"].format(name="samples", count=len(GALLERY)))
        gallery, status = session.find("list", "Galerie"), session.find("status bar")
        self.assertEqual(self.labels(status), [Texts.STATUS["all"].format(count=len(GALLERY))])
        self.mark(session, 3)
        self.assertEqual(self.labels(status), [
            Texts.STATUS["marked"].format(count=len(GALLERY), marked=3), Texts.STATUS["unmark"]])
        self.check_menu(session, gallery.child(0), Texts.PHOTO_MENUS["one of three marked"])
        self.check_menu(session, gallery.child(5), Texts.PHOTO_MENUS["not marked"])
        # A message goes after a while, and comes anew with each copy.
        message = ["·", "3 Fotos in die Zwischenablage kopiert"]
        until(lambda: session.keys("ctrl+c") or [
            below.name for below in status.below() if below.is_("showing") and below.name in message] == message)
        self.assertEqual(session.end(), 0)

    def test_one_photo_is_counted_in_the_plural(self):
        folder = self.folder("einzeln")
        (folder / "a.jpg").write_bytes((self.samples / GALLERY[0]).read_bytes())
        session = self.start("one", folder)
        self.assertEqual(self.labels(session.find("status bar")), [Texts.STATUS["all"].format(count=1)])
        session.wait_for_focus("frame", Texts.WINDOWS["one folder"].format(name="einzeln", count=1))
        self.assertEqual(session.end(), 0)

    def test_the_empty_states(self):
        session = self.start("empty", "--")
        session.wait_for_focus("frame", Texts.WINDOWS["no folder"])
        self.check_empty(session, "no folder")
        self.assertEqual(session.end(), 0)
        session = self.start("empty", self.folder("leer"))
        self.check_empty(session, "no photos")
        menu = session.popup(lambda: session.click_on(session.find("button menu", "Ansicht")))
        session.choose(menu, "Unterordner einbeziehen")
        self.check_empty(session, "no photos, with those below")
        session.keys("ctrl+f")
        session.type("x")
        self.check_empty(session, "nothing found")
        self.assertEqual(session.end(), 0)

    def check_empty(self, session, state):
        wanted = Texts.EMPTY[state]
        session.find("label", wanted[0])
        until(lambda: self.labels(session.find("label", wanted[0]).parent) == wanted, f"it says {wanted}")

    def test_the_viewer(self):
        folder = self.folder("gemischt")
        (folder / "A.jpg").write_bytes((self.samples / GALLERY[0]).read_bytes())
        (folder / UNREADABLE).write_bytes(b"\xff\xd8 no photo")
        session = self.start("viewer", folder)
        session.keys("Return")
        session.wait_for("photo-shown 1")
        viewer = session.find("panel", "Bildbetrachter")
        viewer.wait_for("label", Texts.VIEWER["position"].format(position=1, count=2), ("showing",))
        viewer.wait_for("label", "A.jpg", ("showing",))
        buttons = [thing for thing in viewer.below() if thing.role == "push button" and thing.description]
        self.assertEqual([button.description for button in buttons], Texts.VIEWER["tips"])
        for button in buttons:
            self.assertEqual(session.tip_of(button), button.description)
        session.keys("Right")
        viewer.wait_for("label", Texts.VIEWER["unreadable"], ("showing",))
        viewer.wait_for("label", Texts.VIEWER["position"].format(position=2, count=2), ("showing",))
        session.keys("d", "space")
        viewer.wait_for("label", Texts.VIEWER["paused"], ("showing",))
        self.assertIn("Diashow beenden", session.find("menu bar", states=()).wait_for("menu item", "Fotos").child(
            0).entries())
        session.keys("Escape")
        self.assertEqual(session.end(), 0)

    def test_the_contact_sheet_dialog(self):
        session = self.start("sheet")
        self.check_sheet(session, Texts.SHEET["all"].format(count=len(GALLERY)))
        self.mark(session, 1)
        self.check_sheet(session, Texts.SHEET["all"].format(count=len(GALLERY)))
        session.keys("x")
        session.find("label", Texts.STATUS["marked"].format(count=len(GALLERY), marked=2))
        self.check_sheet(session, Texts.SHEET["marked"].format(count=2))
        self.assertEqual(session.end(), 0)

    def check_sheet(self, session, count):
        session.keys("ctrl+p")
        dialog = session.wait_for_focus("dialog", Texts.SHEET["title"])
        wanted = [Texts.SHEET["title"], count, *Texts.SHEET["labels"], *Texts.SHEET["boxes"], *Texts.SHEET["buttons"]]
        self.assertEqual(self.labels(dialog), wanted)
        self.assertEqual(dialog.find("spin box").text, Texts.SHEET["columns"])
        self.assertEqual(dialog.find("text").text, "samples")
        papers = [item.name for item in dialog.find("combo box").below() if item.role == "list item"]
        self.assertEqual(papers, Texts.SHEET["papers"])
        session.keys("Escape")
        session.wait_for_focus("frame")

    def test_the_titles_of_the_other_windows(self):
        session = self.start("windows")
        for opens, role, window in (
                (lambda: session.keys("F1"), "frame", "help"), (lambda: session.keys("ctrl+o"), "dialog", "open"),
                (lambda: session.choose(session.menu("Hilfe"), "Über Pixelhain"), "dialog", "about")):
            opens()
            other = session.wait_for_focus(role, Texts.WINDOWS[window])
            session.keys("Escape")
            session.wait_for_focus("frame", other_than=other)
        self.assertEqual(session.end(), 0)


if __name__ == "__main__":
    unittest.main()
