"""The program ends within a second, whatever it is busy with, and leaves nothing behind."""
import os
import pathlib
import shutil
import signal
import time
import unittest

import Desktop
from Desktop import until
from Programs import Programs
from Session import Session

LONGEST = 1  # second


def close(session):
    session.keys("alt+F4")  # which the window manager takes


def quit_by_key(session):
    session.keys("ctrl+q")


def terminate(session):
    session.program.terminate()


WAYS = close, quit_by_key, terminate


def processes():
    """The parent and the state of every process, by its number."""
    found = {}
    for entry in pathlib.Path("/proc").glob("[0-9]*/stat"):
        try:
            state, parent, *_ = entry.read_text(errors="replace").rpartition(") ")[2].split()
        except OSError:
            continue
        found[int(entry.parent.name)] = int(parent), state
    return found


def descendants(process):
    """Those that a process started, and those that they did."""
    every, found = processes(), [process]
    for one in found:
        found += [number for number, (parent, _) in every.items() if parent == one]
    return found[1:]


def size_of(file):
    try:
        return file.stat().st_size
    except FileNotFoundError:
        return 0


def still_run(numbers):
    every = processes()
    return [number for number in numbers if number in every and every[number][1] != "Z"]


@unittest.skipUnless(Desktop.is_possible(), "needs what a desktop needs")
class EndingTest(Programs):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.desktop = Desktop.Desktop.own()

    def start(self, name, folder, **settings):
        home = self.place / name
        lines = "".join(f"{key}={value}\n" for key, value in settings.items())
        config = home / "config" / "pixelhain"
        config.mkdir(parents=True)
        (config / "pixelhain.ini").write_text(lines)
        session = Session(home, folder, XDG_RUNTIME_DIR=str(home), DISPLAY=self.desktop.environment["DISPLAY"])
        self.addCleanup(session.abandon)
        return session

    def end(self, session, way):
        """Asks in this way for the end; what it was busy with is not waited for."""
        helpers = descendants(session.program.pid)
        self.assertTrue(helpers, "processes that decode")
        begun = time.monotonic()
        try:
            way(session)
            self.assertEqual(session.program.wait(Desktop.PATIENCE), 0)
            self.assertLess(time.monotonic() - begun, LONGEST)
            until(lambda: not still_run(helpers), "the end of the processes that decode")
        finally:
            session.program.kill()  # for the next way

    def more_files(self, tree, folders, files=2000):
        made = len(os.listdir(tree))
        for folder in range(made, made + folders):
            place = tree / f"{folder:03}"
            place.mkdir()
            for file in range(files):
                os.close(os.open(f"{place}/{file:04}.jpg", os.O_CREAT | os.O_WRONLY))

    def test_while_a_scan_is_under_way(self):
        tree = self.place / "tree"
        tree.mkdir()
        self.addCleanup(shutil.rmtree, tree)
        self.more_files(tree, 100)
        for way in WAYS:
            with self.subTest(way.__name__):
                # A fast machine may be through before it is asked to end, and is then given more to read.
                for attempt in range(3):
                    if not self.end_is_after_scan(f"scan {way.__name__} {attempt}", tree, way):
                        break
                    self.more_files(tree, 200)
                else:
                    self.fail("every scan was through before the end")

    def end_is_after_scan(self, name, tree, way):
        session = self.start(name, tree, subfolders="true")
        session.wait_for("window-shown")
        session.window = session.wait_for_window()
        until(lambda: self.desktop.active_window() == session.window, "a window with the keyboard")
        self.end(session, way)
        return "scan-accepted" in "\n".join(session.rest())

    def test_while_a_contact_sheet_is_being_written(self):
        folder = self.place / "many"
        folder.mkdir()
        photo = next(self.samples.glob("Alpen*.jpg"))
        for number in range(4000):
            os.link(photo, folder / f"{number:04}.jpg")
        photos = set(os.listdir(folder))
        for way in WAYS:
            with self.subTest(way.__name__):
                session = self.start(f"sheet {way.__name__}", folder)
                self.begin_sheet(session)
                part = folder / "Kontaktabzug many.pdf.part"
                until(lambda: size_of(part) > 0, "the first pages")
                self.end(session, way)
                self.assertEqual(set(os.listdir(folder)), photos)
        session = self.start("sheet killed", folder)
        self.begin_sheet(session)
        until(part.exists, "a contact sheet that has begun")
        helpers = descendants(session.program.pid)
        session.program.kill()
        self.assertEqual(session.program.wait(Desktop.PATIENCE), -signal.SIGKILL)
        until(lambda: not still_run(helpers), "the end of the processes that decode")
        self.assertEqual(set(os.listdir(folder)) - photos, {part.name})

    def begin_sheet(self, session):
        session.wait_for("idle")
        session.window = main = session.wait_for_window()
        session.keys("ctrl+p")
        session.wait_for_window("Kontaktabzug erstellen")
        session.wait_until(lambda: self.desktop.active_window() != main)
        dialog = self.desktop.active_window()
        session.keys("Return")
        session.wait_until(lambda: self.desktop.active_window() not in (main, dialog))
        session.keys("Return")
        session.wait_for("status: Erstelle Kontaktabzug mit 4000 Fotos …")
        session.wait_until(lambda: self.desktop.active_window() == main)


if __name__ == "__main__":
    unittest.main()
