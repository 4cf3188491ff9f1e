"""A running window, and hands on its mouse and keyboard."""
import os
import queue
import subprocess
import threading
import time

from Desktop import PATIENCE, Desktop, until
from Programs import BUILD

SECOND = 500, 160  # within the second photo of the gallery, beside the folders of a new window


class Session:
    """The program over a folder, with settings, trash and caches of its own below `home`."""

    def __init__(self, home, *arguments, **variables):
        home.mkdir(mode=0o700, exist_ok=True)
        self.data = home / "data"
        self.environment = {
            **os.environ, "HOME": str(home), "LC_ALL": "C.UTF-8", "XDG_CONFIG_HOME": str(home / "config"),
            "XDG_DATA_HOME": str(self.data), "XDG_CACHE_HOME": str(home / "cache"), "PIXELHAIN_TRACE": "1",
            "QT_QPA_PLATFORM": "xcb", "WAYLAND_DISPLAY": "", "DBUS_SESSION_BUS_ADDRESS": "",
            "XDG_RUNTIME_DIR": str(home), **variables}
        self.said = []
        self._lines = queue.Queue()
        self.program = subprocess.Popen(
            [BUILD / "pixelhain", *arguments], env=self.environment, text=True, stdin=subprocess.DEVNULL,
            stderr=subprocess.PIPE)
        self._reader = threading.Thread(target=self._read, daemon=True)
        self._reader.start()

    def _read(self):
        for line in self.program.stderr:
            self._lines.put(line.rstrip("\n"))

    def rest(self):
        """All that the program has said, once it has ended."""
        self._reader.join(PATIENCE)
        while not self._lines.empty():
            self.said.append(self._lines.get())
        return self.said

    def wait_for(self, what):
        """Waits until the program says a line that ends in `what`, after those waited for before."""
        end = time.monotonic() + PATIENCE
        while time.monotonic() < end:
            try:
                line = self._lines.get(timeout=max(0.01, end - time.monotonic()))
            except queue.Empty:
                break
            self.said.append(line)
            if line.endswith(what):
                return
        raise AssertionError(f"never said: {what}\n" + "\n".join(self.said))

    def take_focus(self):
        """Gives the window the keyboard: there is no window manager that would."""
        self.window = self._xdotool("search", "--sync", "--onlyvisible", "--pid", self.program.pid).split()[0]
        self.focus(self.window)

    def focus(self, window):
        self.window = window
        self._xdotool("windowfocus", "--sync", window)

    def visible_windows(self):
        """The titles of the program's windows that are on the screen, by window."""
        found = self._xdotool("search", "--onlyvisible", "--pid", self.program.pid, check=False).split()
        titles = {window: self._xdotool("getwindowname", window, check=False) for window in found}
        return {window: title.strip() for window, title in titles.items() if title}

    def wait_until(self, happens):
        """Waits until `happens()` gives something true, and gives that."""
        return until(happens, "\n".join(self.said))

    def wait_for_window(self, title=None, other_than=None):
        """Waits until a window of the program with this title, or any but one, is on the screen; gives it."""
        return self.wait_until(lambda: next(
            (window for window, its in self.visible_windows().items()
             if window != other_than and title in (None, its)), None))

    def keys(self, *names):
        self._xdotool("key", "--delay", "30", *names)

    def click(self, x, y, held=None):
        self._xdotool("mousemove", "--window", self.window, x, y)
        if held:
            self._xdotool("keydown", held, "click", 1, "keyup", held)
        else:
            self._xdotool("click", 1)

    def drag(self, start, *way):
        """Presses at a place in the window, moves over others, and lets go at the last one."""
        self._xdotool("mousemove", "--window", self.window, *start, "mousedown", 1)
        for place in way:
            self._xdotool("mousemove", "--window", self.window, *place, "sleep", 0.2)
        self._xdotool("sleep", 0.5, "mouseup", 1)

    def start_again(self, *arguments):
        """A second start beside this one; gives its exit code."""
        return subprocess.run(
            [BUILD / "pixelhain", *arguments], env=self.environment, stdin=subprocess.DEVNULL,
            timeout=PATIENCE).returncode

    def end(self):
        """Asks the program to end; gives its exit code."""
        self.program.terminate()
        return self.program.wait(PATIENCE)

    def abandon(self):
        if self.program.poll() is None:
            self.program.kill()
            self.program.wait()
        self.program.stderr.close()

    def _xdotool(self, *arguments, check=True):
        return subprocess.run(
            ["xdotool", *map(str, arguments)], check=check, text=True, timeout=PATIENCE, stdout=subprocess.PIPE,
            stderr=None if check else subprocess.DEVNULL).stdout


class SpokenSession(Session):
    """The program on a desktop of its own, as a screen reader and its user meet it."""

    def __init__(self, home, *arguments, **variables):
        from Accessible import AccessibilityBus  # needs what not every test program needs
        desktop = Desktop.own()
        self.bus = AccessibilityBus.shared()
        super().__init__(
            home, *arguments, QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1", XDG_RUNTIME_DIR=str(desktop.place),
            DBUS_SESSION_BUS_ADDRESS=desktop.environment["DBUS_SESSION_BUS_ADDRESS"], **variables)
        self.root = until(lambda: self.bus.application(self.program.pid), "a place on the accessibility bus")
        # A compositor without a keyboard lets no window have it.
        self.frame = self.find("frame") if "WAYLAND_DISPLAY" in variables else self.wait_for_focus("frame")

    def find(self, role=None, name=None, states=("showing",)):
        """Waits until the program shows something like that."""
        return self.root.wait_for(role, name, states)

    def wait_for_focus(self, role="frame", name=None, other_than=None):
        """Waits until a window has the keyboard, and gives it."""
        def look():
            for window in self.root.children():
                if window != other_than and role in (None, window.role) and name in (None, window.name) \
                        and window.is_("active"):
                    return window
            return None
        return until(look, f"an active {role} {name or ''}")

    def focused(self):
        """The widget that has the keyboard; none for a moment."""
        # Lists say of the item that they stand at that it is the one, whoever has the keyboard.
        return next((
            thing for thing in self.wait_for_focus(None).below()
            if thing.is_("focused", "focusable", "showing") and thing.role not in ("tree item", "list item")), None)

    def click_on(self, thing, button=1, held=None):
        """Clicks into the middle of what it shows."""
        self.point_at(thing)
        if held:
            self._xdotool("keydown", held, "click", button, "keyup", held)
        else:
            self._xdotool("click", button)

    def point_at(self, thing):
        left, top, width, height = thing.place
        self.move_to(left + width // 2, top + height // 2)

    def move_to(self, x, y):
        """To a place on the screen."""
        self._xdotool("mousemove", x, y)

    def press(self):
        self._xdotool("mousedown", 1)

    def release(self):
        self._xdotool("mouseup", 1)

    def type(self, text):
        self._xdotool("type", "--delay", "30", text)

    def tip_of(self, thing):
        """What is shown to a pointer that rests on it."""
        left, top, width, height = thing.place
        # Away from others' tips, and in two steps: only a pointer that moves within it asks for one.
        self.move_to(self.frame.place[0] + 3, self.frame.place[1] + self.frame.place[3] // 2)
        until(lambda: not self.root.find_own("tool tip"), "no tip is left")
        self.move_to(left + width // 2 - 2, top + height // 2)
        self.move_to(left + width // 2, top + height // 2)
        return until(lambda: self.root.find_own("tool tip"), f"a tip of {thing}").name

    def menu(self, title):
        """Opens a menu of the menu bar with the mouse, and gives it."""
        entry = self.frame.wait_for("menu bar").wait_for("menu item", title)
        self.click_on(entry)
        return self.opened(entry)

    def opened(self, entry):
        """The menu that an entry has opened."""
        popup = entry.child(0)
        until(lambda: popup.is_("showing"), f"the menu of {entry} opens")
        return popup

    def popup(self, opens):
        """Does what opens a menu that hangs on no other, and gives that menu."""
        self.bus.listen("object:state-changed:focused")
        self.bus.forget()
        opens()
        # It is told of no sooner than an entry of it has the keyboard.
        self.keys("Down")
        return until(lambda: next((
            thing.parent for _, detail, number, thing in self.bus.hear()
            if (detail, number) == ("focused", 1) and thing.role == "menu item"), None), "a menu opens")

    def choose(self, menu, *names):
        """Clicks on an entry, in menus of menus on one after the other."""
        for name in names:
            if not menu.is_("showing"):
                raise AssertionError(f"{menu} is not open")
            entry = menu.entry(name)
            if not entry.is_("enabled"):
                raise AssertionError(f"{entry} is disabled")
            self.click_on(entry)
            if name != names[-1]:
                menu = self.opened(entry)
        until(lambda: not menu.is_shown(), f"{menu} closes")

    def resize(self, width, height):
        window = self._xdotool("getactivewindow").strip()
        self._xdotool("windowsize", "--sync", window, width, height)
