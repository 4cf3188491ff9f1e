"""A desktop of a test's own: X server, session bus with the one for accessibility, window manager."""
import atexit
import os
import pathlib
import re
import shutil
import subprocess
import tempfile
import time

PATIENCE = 60  # seconds, for what hangs
NEEDED = "Xvfb", "dbus-daemon", "openbox", "xdotool", "xprop"
WINDOW_MANAGER = """\
<?xml version="1.0"?>
<openbox_config xmlns="http://openbox.org/3.4/rc">
  <focus><focusNew>yes</focusNew></focus>
  <keyboard><keybind key="A-F4"><action name="Close"/></keybind></keyboard>
  <mouse>
    <context name="Client"><mousebind button="Left" action="Press"><action name="Focus"/><action name="Raise"/></mousebind></context>
  </mouse>
</openbox_config>
"""


def is_possible():
    return all(shutil.which(program) for program in NEEDED)


def until(happens, what="it", patience=PATIENCE):
    """Waits until `happens()` gives something true, and gives that."""
    end = time.monotonic() + patience
    while True:
        if found := happens():
            return found
        if time.monotonic() > end:
            raise AssertionError(f"never happened: {what}")
        time.sleep(0.03)


class Desktop:
    """One for the whole test program: the toolkits of this process know one desktop only."""

    screen = "1920x1080"  # of the desktops that are made from then on
    window_manager = WINDOW_MANAGER
    _own = None

    @classmethod
    def own(cls):
        if not cls._own:
            cls._own = cls()
        return cls._own

    def __init__(self):
        self.place = pathlib.Path(tempfile.mkdtemp(prefix="desktop-"))
        self._programs = []
        atexit.register(self.end)
        self.environment = {
            "HOME": str(self.place), "XDG_RUNTIME_DIR": str(self.place), "XDG_DATA_HOME": str(self.place / "data"),
            "XDG_CONFIG_HOME": str(self.place / "config"), "XDG_CACHE_HOME": str(self.place / "cache"),
            "GSETTINGS_BACKEND": "memory", "LC_ALL": "C.UTF-8", "NO_AT_BRIDGE": "1"}
        self.environment["DISPLAY"] = ":" + self._start_and_read(
            "Xvfb", "-displayfd", "{}", "-screen", "0", f"{self.screen}x24", "-dpi", "96", "-nolisten", "tcp", "-noreset")
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = self._start_and_read(
            "dbus-daemon", "--session", "--nofork", "--print-address={}")
        os.environ.update({name: self.environment[name] for name in ("DISPLAY", "DBUS_SESSION_BUS_ADDRESS")})
        self._manage_windows()

    def _start(self, *command, **options):
        program = subprocess.Popen(
            command, env={**os.environ, **self.environment}, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL, **options)
        self._programs.append(program)
        return program

    def _start_and_read(self, *command):
        """Starts what tells on the descriptor that stands for {} where it is to be found."""
        told, telling = os.pipe()
        with os.fdopen(told) as answer:
            self._start(*(part.format(telling) for part in command), pass_fds=[telling])
            os.close(telling)
            line = answer.readline().strip()
        if not line:
            raise AssertionError(f"{command[0]} does not start")
        return line

    def _manage_windows(self):
        settings, started = self.place / "openbox.xml", self.place / "managed"
        settings.write_text(self.window_manager)
        self._start("openbox", "--config-file", str(settings), "--startup", f"touch {started}")
        until(started.exists, "a window manager")

    def property(self, window, name):
        """What a window, or the root window if there is none, says of itself."""
        place = ["-id", window] if window else ["-root"]
        said = subprocess.run(
            ["xprop", *place, name], env={**os.environ, **self.environment}, text=True, timeout=PATIENCE,
            stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        return said.stdout.strip()

    def _windows(self, name):
        return [str(int(number, 16)) for number in re.findall(r"0x[0-9a-f]+", self.property(None, name))]

    def active_window(self):
        """The one that has the keyboard, as the window manager says."""
        return next(iter(self._windows("_NET_ACTIVE_WINDOW")), None)

    def topmost_window(self):
        return next(reversed(self._windows("_NET_CLIENT_LIST_STACKING")), None)

    def is_iconified(self, window):
        return "Iconic" in self.property(window, "WM_STATE")

    def end(self):
        for program in reversed(self._programs):
            program.terminate()
        for program in self._programs:
            program.wait(PATIENCE)
        shutil.rmtree(self.place, ignore_errors=True)
