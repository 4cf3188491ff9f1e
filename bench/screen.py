"""A virtual screen that is watched without asking its server, and what runs on it."""
import contextlib
import mmap
import operator
import os
import pathlib
import shlex
import signal
import struct
import subprocess
import sys
import tempfile
import time

import harness

WIDTH, HEIGHT = 1920, 1080
GRAIN = 8  # every so many pixels, across and down, one is looked at
PICTURE = 32  # greys by which a picture that is still soft may differ from the one that stays
EQUAL = 4  # and one that is sharp
POLL = 0.01  # seconds
QUIET = 3.0  # so long without work a program has nothing left to do
BUSY = 0.06  # of a processor counts as work
PAGES = os.sysconf("SC_PAGE_SIZE")
TICK = 1 / os.sysconf("SC_CLK_TCK")

# Everything on the whole screen, whatever the program thinks of it.
WINDOW_MANAGER = """<?xml version="1.0"?>
<openbox_config xmlns="http://openbox.org/3.4/rc"><applications><application class="*">
<decor>no</decor><maximized>yes</maximized><fullscreen>yes</fullscreen><focus>yes</focus>
</application></applications><keyboard></keyboard></openbox_config>
"""


@contextlib.contextmanager
def managed(display, home):
    """A window manager; it runs before the first window comes, as in every session."""
    rules, started = pathlib.Path(home) / "rc.xml", pathlib.Path(home) / "managed"
    latest = time.monotonic() + 20
    rules.write_text(WINDOW_MANAGER)
    command = ["openbox", "--config-file", rules, "--startup", shlex.join(["touch", str(started)])]
    manager = subprocess.Popen(command,
                               env={**os.environ, "DISPLAY": display},
                               stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    try:
        while not started.exists():
            if manager.poll() is not None or time.monotonic() > latest:
                sys.exit("openbox did not start")
            time.sleep(0.01)
        yield
    finally:
        manager.terminate()
        manager.wait()


class Pixels:
    """The screen's memory, which the X server shares as a file."""

    def __init__(self, folder):
        self.file = pathlib.Path(folder) / "Xvfb_screen0"
        with open(self.file, "rb") as file:
            self._bytes = mmap.mmap(file.fileno(), 0, prot=mmap.PROT_READ)
        head = struct.unpack(">25I", self._bytes[:100])
        self._stride = head[12]
        self._start = head[0] + 12 * head[19]

    def green(self):
        """One value for each pixel that is looked at."""
        starts = range(self._start, self._start + HEIGHT * self._stride, GRAIN * self._stride)
        return b"".join(self._bytes[at + 1:at + self._stride:4 * GRAIN] for at in starts)

    def part(self, left, top, width, height):
        """All bytes of a piece."""
        starts = range(self._start + top * self._stride + 4 * left, self._start + (top + height) * self._stride,
                       self._stride)
        return b"".join(self._bytes[at:at + 4 * width] for at in starts)


def alike(one, other, tolerance):
    """The share of pixels that differ by no more."""
    return sum(-tolerance <= difference <= tolerance for difference in map(operator.sub, one, other)) / len(one)


class Tree:
    """A process with all that it started."""

    def __init__(self, session):
        self._session = session

    def _processes(self):
        for entry in os.scandir("/proc"):
            if entry.name.isdigit():
                with contextlib.suppress(OSError):
                    fields = pathlib.Path(entry.path, "stat").read_text().rsplit(")", 1)[1].split()
                    if int(fields[3]) == self._session:
                        yield entry, fields

    def seconds(self):
        """Processor time, of those that have ended too."""
        return TICK * sum(sum(map(int, fields[11:15])) for _, fields in self._processes())

    def memory(self):
        """In MB, shared memory by halves."""
        kilobytes = 0
        for entry, _ in self._processes():
            with contextlib.suppress(OSError):
                lines = pathlib.Path(entry.path, "smaps_rollup").read_text().splitlines()
                kilobytes += sum(int(line.split()[1]) for line in lines if line.startswith("Pss:"))
        return kilobytes / 1024

    def end(self):
        for entry, _ in self._processes():
            with contextlib.suppress(OSError):
                os.kill(int(entry.name), signal.SIGKILL)


class Run:
    """What was to be seen since the start, and what it took."""

    def __init__(self, empty):
        self.empty = empty
        self.shown = []  # times with pixels
        self.done = self.cpu = self.memory = 0.0

    def window(self):
        return next((at for at, pixels in self.shown if alike(pixels, self.empty, 0) < 0.92), None)

    def pictures(self):
        """When the screen was full of what it shows in the end, be it soft."""
        final = self.shown[-1][1]
        ground = max(range(256), key=final.count)
        places = [index for index, value in enumerate(final) if value != ground]
        if not places:
            return None
        pick = operator.itemgetter(*places)
        return self._since(pick, PICTURE, 0.9)

    def sharp(self):
        return self._since(lambda pixels: pixels, EQUAL, 0.99)

    def _since(self, pick, tolerance, share):
        final = pick(self.shown[-1][1])
        since = None
        for at, pixels in reversed(self.shown):
            if alike(pick(pixels), final, tolerance) < share:
                break
            since = at
        return since


def watch(command, environment, pixels, seconds, picture=None):
    """Starts it and watches it until it is done, `seconds` at most; `picture` is of the screen then."""
    run = Run(pixels.green())
    start = time.monotonic()
    process = subprocess.Popen(command, env=environment, start_new_session=True, stdin=subprocess.DEVNULL,
                               stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    tree = Tree(process.pid)
    last, looked, worked, used = run.empty, start, start, 0.0
    while (now := time.monotonic()) < start + seconds and now < worked + QUIET:
        if (seen := pixels.green()) != last:
            last = seen
            run.shown.append((now - start, seen))
        if now > looked + 0.5:
            cpu = tree.seconds()
            if cpu - used > BUSY * (now - looked):
                worked = now
            looked, used = now, cpu
            run.memory = max(run.memory, tree.memory())
        time.sleep(POLL)
    run.done, run.cpu = worked - start, tree.seconds()
    if picture:
        picture.parent.mkdir(parents=True, exist_ok=True)
        subprocess.run(["convert", f"xwd:{pixels.file}", picture], check=True)
    tree.end()
    process.wait()
    return run


@contextlib.contextmanager
def desk():
    """An empty screen with a window manager, a session bus and a home; gives pixels and environment."""
    with tempfile.TemporaryDirectory() as memory, harness.fresh_home() as home, harness.session_bus() as bus, \
            harness.x_server(WIDTH, HEIGHT, "-fbdir", memory) as display, managed(display, home):
        time.sleep(0.5)
        variables = {key: value for key, value in os.environ.items()
                     if not key.startswith("XDG_") and key != "WAYLAND_DISPLAY"}
        yield Pixels(memory), {**variables, "DISPLAY": display, "HOME": home, "XDG_RUNTIME_DIR": home,
                               "DBUS_SESSION_BUS_ADDRESS": bus, "QT_QPA_PLATFORM": "xcb"}
