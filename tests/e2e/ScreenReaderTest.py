"""What a screen reader is told of the running program, over the accessibility bus."""
import unittest

import Desktop
from Desktop import until
from Programs import GALLERY, Programs
from Session import SpokenSession


@unittest.skipUnless(Desktop.is_possible(), "needs Xvfb, openbox, dbus-daemon and xdotool")
class ScreenReaderTest(Programs):
    def start(self, name, *arguments):
        session = SpokenSession(self.place / name, *(arguments or [self.samples]))
        self.addCleanup(session.abandon)
        return session

    def gallery(self, session):
        session.wait_for("idle")
        return session.find("list", "Galerie")

    def test_the_gallery_is_a_list_with_a_named_item_for_each_photo(self):
        session = self.start("items")
        gallery = self.gallery(session)
        self.assertTrue(gallery.is_("focused", "multiselectable", "showing"))
        self.assertEqual(gallery.child_count, len(GALLERY))
        items = gallery.children()
        self.assertEqual([item.name.rsplit(", ", 1)[0] for item in items[:20]], GALLERY[:20])
        self.assertRegex(items[0].name, rf"^{GALLERY[0]}, \d+ × \d+$")
        self.assertEqual({item.role for item in items}, {"list item"})
        self.assertTrue(items[0].is_("showing", "focusable", "selectable"))
        self.assertFalse(items[-1].is_("showing"))
        self.assertEqual([item.index for item in items], list(range(len(GALLERY))))
        self.assertEqual(items[12].description, "Animiert")
        # The rest of the window says what it is.
        self.assertEqual(session.frame.name, f"samples – {len(GALLERY)} Fotos")
        self.assertEqual(session.find("status bar").name, "Status")
        session.find("label", f"{len(GALLERY)} Fotos")
        session.find("tree", "Ordner")
        found = [thing.role for thing in session.frame.below() if thing.role in ("tree", "list")]
        self.assertEqual(found, ["tree", "list"])
        keys = [thing for thing in session.frame.below() if "⌘" in thing.name and "item" not in thing.role]
        self.assertEqual(keys, [])
        self.assertEqual([thing for thing in session.frame.below() if self.is_nameless_control(thing)], [])
        self.assertEqual(session.end(), 0)

    def is_nameless_control(self, thing):
        roles = "push button", "toggle button", "check box", "menu item", "slider", "text", "combo box", "list item"
        return thing.role in roles and thing.is_("showing") and not thing.name

    def test_calls_that_the_toolkit_does_not_expect_do_no_harm(self):
        session = self.start("calls")
        gallery = self.gallery(session)
        for thing in session.root, session.frame, gallery, gallery.child(0):
            name = thing.name
            self.assertEqual(thing.ask_for_properties("GetAll", "org.a11y.atspi.Accessible"), ({},))
            for method, arguments in (("GetAll", ()), ("Get", ("org.a11y.atspi.Accessible",)), ("Get", ()), ("Set", ())):
                answer = thing.ask_for_properties(method, *arguments)
                self.assertIn(answer, (({},), "org.freedesktop.DBus.Error.InvalidArgs"), (method, arguments))
            self.assertEqual(thing.name, name)
        slider = session.find("slider")
        answer = slider.ask_for_properties("Set", "org.a11y.atspi.Value", "CurrentValue")
        self.assertEqual(answer, "org.freedesktop.DBus.Error.InvalidArgs")
        self.assertTrue(slider.name)
        self.assertEqual(session.end(), 0)

    def test_steps_and_marks_are_told_as_they_happen(self):
        session = self.start("events")
        gallery = self.gallery(session)
        session.bus.listen("object:state-changed:focused")
        session.bus.listen("object:state-changed:checked")
        session.bus.listen("object:state-changed:showing")
        session.bus.forget()

        def told(detail, number, name):
            return any(
                event[1:3] == (detail, number) and event[3].role == "list item" and event[3].name.startswith(name)
                for event in session.bus.hear())

        session.keys("Right")
        until(lambda: told("focused", 1, GALLERY[0]), "the first photo has the keyboard")
        session.keys("Right")
        until(lambda: told("focused", 1, GALLERY[1]), "the second photo has the keyboard")
        self.assertTrue(gallery.child(1).is_("focused"))
        self.assertFalse(gallery.child(0).is_("focused"))
        session.keys("x")
        until(lambda: told("checked", 1, GALLERY[1]), "the second photo is marked")
        session.find("label", f"{len(GALLERY)} Fotos · 1 ausgewählt")
        session.bus.forget()
        session.keys("ctrl+a")
        session.find("label", f"{len(GALLERY)} Fotos · {len(GALLERY)} ausgewählt")
        self.assertLess(len(session.bus.hear()), 7)
        until(lambda: any(
            event[1:3] == ("showing", 1) and event[3].name == f"{len(GALLERY)} ausgewählt"
            for event in session.bus.hear()), "the number of marks is read out")
        session.keys("ctrl+c")
        message = f"{len(GALLERY)} Fotos in die Zwischenablage kopiert"
        until(lambda: any(
            event[1:3] == ("showing", 1) and event[3].role == "notification" and event[3].name == message
            for event in session.bus.hear()), "the message is read out")
        self.assertEqual(session.end(), 0)

    def test_photos_are_opened_and_marked_by_their_actions(self):
        session = self.start("actions")
        gallery = self.gallery(session)
        gallery.child(2).perform("Toggle")
        until(lambda: gallery.child(2).is_("selected"))
        gallery.child(3).perform("Press")
        session.wait_for("photo-shown 4")
        picture = session.find("graphic", f"{GALLERY[3]}, 4 von {len(GALLERY)}", ("showing", "focused"))
        self.assertFalse(gallery.is_("showing"))
        session.find("push button", "Infos").perform("Press")
        until(lambda: " px (" in picture.description)
        self.assertTrue(picture.description.startswith(GALLERY[3] + "\n"))
        viewer = session.find(name="Bildbetrachter")
        self.assertEqual([thing for thing in viewer.below() if self.is_nameless_control(thing)], [])
        session.find("push button", "Nächstes Foto").perform("Press")
        session.find("graphic", f"{GALLERY[4]}, 5 von {len(GALLERY)}")
        session.find("push button", "Zurück zur Übersicht").perform("Press")
        until(lambda: gallery.is_("showing"))
        until(lambda: gallery.child(4).is_("focused"))
        self.assertEqual(session.end(), 0)

    def test_empty_states_are_read(self):
        empty = self.place / "leer"
        empty.mkdir()
        session = self.start("empty", empty)
        session.find("label", "Keine Fotos in diesem Ordner")
        session.find("label", "Unterordner findest du links in der Seitenleiste.")
        self.assertEqual(session.end(), 0)
        session = self.start("nothing", "--")
        session.find("label", "Ordner wählen oder hierher ziehen")
        session.find("push button", "Ordner öffnen …")
        seen = []
        while (focused := session.focused()) not in seen:
            seen.append(focused)
            session.keys("Tab")
            until(lambda: session.focused() not in (None, focused), f"Tab leaves {focused}")
        self.assertNotIn("tree", [thing.role for thing in seen])
        self.assertEqual(session.end(), 0)


if __name__ == "__main__":
    unittest.main()
