"""One program for the desktop session: a second start, the bus, and how it ends."""
import os
import pathlib
import shutil
import signal
import subprocess
import tempfile
import time
import unittest

from Programs import BUILD
from Session import PATIENCE, Session

NAME, PLACE = "de.pixelhain.Pixelhain", "/de/pixelhain/Pixelhain"


class Bus:
    """A session bus of its own."""

    def __init__(self):
        self.program = subprocess.Popen(
            ["dbus-daemon", "--session", "--nofork", "--print-address"], text=True, stdout=subprocess.PIPE,
            stderr=subprocess.DEVNULL)
        self.address = self.program.stdout.readline().strip()

    def end(self):
        self.program.send_signal(signal.SIGCONT)
        self.program.kill()
        self.program.wait()
        self.program.stdout.close()

    def call(self, method, *arguments):
        return subprocess.run(
            ["gdbus", "call", "--session", "--dest", NAME, "--object-path", PLACE,
             "--method", f"org.freedesktop.Application.{method}", *arguments],
            env={**os.environ, "DBUS_SESSION_BUS_ADDRESS": self.address}, text=True, timeout=PATIENCE,
            stdout=subprocess.PIPE, stderr=subprocess.PIPE)


@unittest.skipUnless(os.environ.get("DISPLAY"), "needs an X server: xvfb-run -a ctest …")
@unittest.skipUnless(shutil.which("dbus-daemon"), "needs dbus-daemon")
class ApplicationTest(unittest.TestCase):
    def setUp(self):
        place = tempfile.TemporaryDirectory()
        self.addCleanup(place.cleanup)
        self.place = pathlib.Path(place.name)
        self.home = self.place / "home"
        self.bus = Bus()
        self.addCleanup(self.bus.end)

    def folder(self, name):
        folder = self.place / name
        folder.mkdir()
        return folder

    def start(self, *arguments, **variables):
        session = Session(
            self.home, *arguments, **{"DBUS_SESSION_BUS_ADDRESS": self.bus.address, **variables})
        self.addCleanup(session.abandon)
        return session

    def running(self, *arguments, **variables):
        """A start that has its window and its name."""
        session = self.start(*arguments, **variables)
        session.wait_for("idle")
        session.wait_until(lambda: self.bus.call("Open", "[]", "{}").returncode == 0)
        return session

    def until_title(self, session, title):
        session.wait_for_window(title)

    def test_a_second_start_shows_its_folder_in_the_running_window_and_ends(self):
        first = self.running(self.folder("eins"))
        second = self.start(self.folder("zwei"))
        self.assertEqual(second.program.wait(PATIENCE), 0)
        self.until_title(first, "zwei – 0 Fotos")
        self.assertEqual(len(first.visible_windows()), 1)

    def test_a_second_start_counts_from_its_own_folder_and_keeps_all_bytes(self):
        first = self.running(self.folder("eins"))
        odd = os.fsencode(self.place) + b"/f\xe4 100% #?\n"
        os.mkdir(odd)
        inner = odd + b"/innen"
        os.mkdir(inner)
        for name in (b"a.jpg", b"b.jpg"):
            open(inner + b"/" + name, "xb").close()
        command = [BUILD / "pixelhain", b"innen"]
        ended = subprocess.run(
            command, cwd=odd, timeout=PATIENCE, env={
                **os.environ, "HOME": str(self.home), "XDG_RUNTIME_DIR": str(self.home), "QT_QPA_PLATFORM": "xcb",
                "DBUS_SESSION_BUS_ADDRESS": self.bus.address})
        self.assertEqual(ended.returncode, 0)
        self.until_title(first, "innen – 2 Fotos")

    def test_of_several_files_the_first_one_is_opened(self):
        first = self.running(self.folder("eins"))
        second = self.start(self.folder("zwei"), self.folder("drei"))
        self.assertEqual(second.program.wait(PATIENCE), 0)
        self.until_title(first, "zwei – 0 Fotos")

    def test_a_second_start_without_a_file_leaves_the_running_window_as_it_is(self):
        first = self.running(self.folder("eins"))
        self.assertEqual(self.start().program.wait(PATIENCE), 0)
        self.until_title(first, "eins – 0 Fotos")

    def until_titles(self, session, *titles):
        session.wait_until(lambda: sorted(session.visible_windows().values()) == sorted(titles))

    def test_actions_of_the_desktop_are_done_by_the_running_program(self):
        first = self.running(self.folder("eins"))
        self.assertEqual(self.start("--show-help").program.wait(PATIENCE), 0)
        self.until_titles(first, "eins – 0 Fotos", "Pixelhain-Hilfe")
        answer = self.bus.call("ActivateAction", "choose-folder", "[]", "{}")
        self.assertEqual(answer.returncode, 0, answer.stderr)
        self.until_titles(first, "eins – 0 Fotos", "Pixelhain-Hilfe", "Wähle einen Ordner mit Fotos")

    def test_a_first_start_does_what_the_desktop_offers(self):
        first = self.running("--show-help")
        self.until_titles(first, "Pixelhain", "Pixelhain-Hilfe")

    def test_a_second_start_hands_over_without_a_mark_of_the_first(self):
        first = self.running(self.folder("eins"))
        runtime = self.folder("runtime")
        second = self.start(self.folder("zwei"), XDG_RUNTIME_DIR=str(runtime))
        self.assertEqual(second.program.wait(PATIENCE), 0)
        self.until_title(first, "zwei – 0 Fotos")

    def test_options_of_the_toolkit_are_no_files(self):
        first = self.running(self.folder("eins"))
        second = self.start("-style", "fusion", self.folder("zwei"))
        self.assertEqual(second.program.wait(PATIENCE), 0)
        self.until_title(first, "zwei – 0 Fotos")

    def test_a_start_may_stand_apart(self):
        first = self.running(self.folder("eins"))
        second = self.start("--new-instance", self.folder("zwei"))
        second.wait_for("idle")
        self.until_title(second, "zwei – 0 Fotos")
        self.until_title(first, "eins – 0 Fotos")
        self.assertEqual(second.end(), 0)

    def test_a_running_program_that_does_not_answer_is_not_waited_for_long(self):
        begun = time.monotonic()
        first = self.running(self.folder("eins"))
        usual = time.monotonic() - begun
        first.program.send_signal(signal.SIGSTOP)
        begun = time.monotonic()
        second = self.start(self.folder("zwei"))
        second.wait_for("idle")
        # It has two seconds in all; one more for a machine that is busy.
        self.assertLess(time.monotonic() - begun, usual + 3)
        self.until_title(second, "zwei – 0 Fotos")
        first.program.send_signal(signal.SIGCONT)

    def test_a_bus_that_hangs_does_not_keep_the_window_from_coming_up(self):
        begun = time.monotonic()
        self.assertEqual(self.running(self.folder("eins")).end(), 0)
        usual = time.monotonic() - begun
        self.bus.program.send_signal(signal.SIGSTOP)
        for number, variables in enumerate(({}, {"QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1"})):
            with self.subTest(**variables):
                begun = time.monotonic()
                session = self.start(self.folder(f"zwei {number}"), **variables)
                session.wait_for("idle")
                # The bus has one second to answer; one more for a machine that is busy.
                self.assertLess(time.monotonic() - begun, usual + 2)
                self.until_title(session, f"zwei {number} – 0 Fotos")
                session.take_focus()
                session.keys("F5")
                session.wait_for("scan-accepted 0")
                self.assertEqual(session.end(), 0)

    def test_a_bus_that_hangs_later_holds_up_nothing(self):
        folder = self.folder("eins")
        (folder / "a.jpg").touch()
        for used_before in (False, True):
            with self.subTest(used_before=used_before):
                session = self.running(folder)
                session.take_focus()
                session.keys("Right", *["ctrl+shift+r"] * used_before)
                self.bus.program.send_signal(signal.SIGSTOP)
                begun = time.monotonic()
                session.keys("ctrl+shift+r", "ctrl+shift+d", "Escape", "F5")
                session.wait_for("scan-accepted 1")
                self.assertEqual(session.end(), 0)
                # Each of the calls would wait for half a minute.
                self.assertLess(time.monotonic() - begun, 5)
                self.bus.program.send_signal(signal.SIGCONT)

    def test_without_a_bus_each_start_stands_for_itself(self):
        first = self.start(self.folder("eins"), DBUS_SESSION_BUS_ADDRESS="")
        first.wait_for("idle")
        second = self.start(self.folder("zwei"), DBUS_SESSION_BUS_ADDRESS="unix:path=/nonexistent")
        second.wait_for("idle")
        self.until_title(first, "eins – 0 Fotos")
        self.until_title(second, "zwei – 0 Fotos")

    def test_the_name_is_free_again_when_the_program_has_ended(self):
        self.assertEqual(self.running(self.folder("eins")).end(), 0)
        self.until_title(self.running(self.folder("zwei")), "zwei – 0 Fotos")

    def test_with_only_help_open_the_bus_brings_the_main_window_back(self):
        first = self.running(self.folder("eins"))
        first.take_focus()
        first.keys("F1")
        help_window = first.wait_for_window("Pixelhain-Hilfe")
        first.focus(first.wait_for_window("eins – 0 Fotos"))
        first.keys("ctrl+w")
        first.wait_until(lambda: list(first.visible_windows().values()) == ["Pixelhain-Hilfe"])
        self.assertEqual(self.start(self.folder("zwei")).program.wait(PATIENCE), 0)
        self.until_title(first, "zwei – 0 Fotos")
        first.focus(help_window)
        first.keys("ctrl+w")
        first.wait_until(lambda: list(first.visible_windows().values()) == ["zwei – 0 Fotos"])
        first.focus(first.wait_for_window("zwei – 0 Fotos"))
        first.keys("ctrl+w")
        self.assertEqual(first.program.wait(PATIENCE), 0)

    def geometry(self, session):
        """The size and the place of its main window."""
        session.take_focus()
        words = session._xdotool("getwindowgeometry", "--shell", session.window).split()
        values = dict(word.split("=") for word in words)
        return [int(values[name]) for name in ("X", "Y", "WIDTH", "HEIGHT")]

    def arrange(self, session, x, y, width, height):
        session.take_focus()
        session._xdotool("windowsize", "--sync", session.window, width, height)
        session._xdotool("windowmove", "--sync", session.window, x, y)
        # A key comes after the news of the new place, so that the program knows it by then.
        session.keys("F5")
        session.wait_for("scan-accepted 0")

    def test_the_window_comes_back_where_it_was(self):
        first = self.running(self.folder("eins"))
        self.assertEqual(self.geometry(first)[2:], [1200, 800])
        self.arrange(first, 130, 90, 900, 640)
        self.assertEqual(first.end(), 0)
        self.assertEqual(self.geometry(self.running()), [130, 90, 900, 640])

    def test_a_window_off_all_screens_comes_back_into_view(self):
        first = self.running(self.folder("eins"))
        self.arrange(first, 5000, 90, 900, 640)
        self.assertEqual(first.end(), 0)
        x, y, width, height = self.geometry(self.running())
        self.assertEqual([width, height], [900, 640])
        self.assertTrue(0 <= x <= 1920 - width and 0 <= y <= 1080 - height, (x, y))

    def test_the_first_window_is_no_larger_than_the_screen(self):
        first = self.running(self.folder("eins"), QT_SCALE_FACTOR="2")
        self.assertEqual(self.geometry(first)[2:], [1920, 1080])

    def test_a_user_who_may_have_no_threads_is_told_so(self):
        if os.geteuid() != 0 or not shutil.which("setpriv"):
            self.skipTest("needs root, who may become another user")
        self.place.chmod(0o755)
        folder = self.folder("eins")
        # Which thread is refused, and whether the program or its toolkit asked for it, is a matter of luck.
        # Each time it is another user: what ended a moment ago may still count against the limit.
        # With an empty folder ten are enough.
        for user, limit in enumerate([2, 4, 6] * 5, start=61000):
            with self.subTest(limit=limit, user=user):
                home = self.folder(f"home {user}")
                shutil.chown(home, user, user)
                ended = subprocess.run(
                    ["prlimit", f"--nproc={limit}", "setpriv", f"--reuid={user}", f"--regid={user}", "--clear-groups",
                     BUILD / "pixelhain", folder],
                    env={**os.environ, "HOME": str(home), "XDG_RUNTIME_DIR": str(home), "QT_QPA_PLATFORM": "offscreen",
                         "XDG_CONFIG_HOME": str(home), "DBUS_SESSION_BUS_ADDRESS": ""},
                    text=True, stderr=subprocess.PIPE, timeout=PATIENCE)
                self.assertEqual(ended.returncode, 1, ended.stderr)
                self.assertIn("pixelhain: Das System lässt keine weiteren Threads zu.\n", ended.stderr)

    def test_callers_who_send_nonsense_are_told_and_nothing_happens(self):
        first = self.running(self.folder("eins"))
        for method, *arguments in (
                ("Open", "['https://example.org/a.jpg']", "{}"), ("Open", "['file:///%00']", "{}"),
                ("ActivateAction", "quit", "[]", "{}")):
            with self.subTest(method, arguments=arguments):
                answer = self.bus.call(method, *arguments)
                self.assertNotEqual(answer.returncode, 0)
                self.assertIn("InvalidArgs", answer.stderr)
        long = "x" * 100_000
        answer = self.bus.call("Open", f"['file:///{long}']", f"{{'activation-token': <'{long}'>}}")
        self.assertEqual(answer.returncode, 0, answer.stderr)
        self.assertIsNone(first.program.poll())
        self.assertEqual(first.end(), 0)


if __name__ == "__main__":
    unittest.main()
