"""What the benches share: pictures, processes that are timed by turns, an X server, tables."""
import argparse
import contextlib
import os
import pathlib
import re
import shutil
import signal
import statistics
import subprocess
import sys
import tempfile
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
BUILD = ROOT / "build" / "bench"
MILESTONE = re.compile(r"(window-shown|scan-accepted|visible-early|first-thumbnail|visible-complete|idle)\b(.*)")


def arguments(description, photos=40, rounds=5):
    parser = argparse.ArgumentParser(description=description)
    parser.add_argument("cache", type=pathlib.Path, help="folder for the pictures; kept for the next time")
    parser.add_argument("--photos", type=int, default=photos, help="how many (default %(default)s)")
    parser.add_argument("--rounds", type=int, default=rounds, help="turns of each side (default %(default)s)")
    return parser


def build():
    subprocess.run([ROOT / "tools" / "setup", "bench"], check=True, stdout=subprocess.DEVNULL)


def photos(cache, count):
    """Two lists of the same photos of 24 megapixels: without and with embedded previews."""
    folder = cache / f"photos-{count}"
    done = folder / ".complete"
    if not done.exists():
        print(f"Making {count} photos in {folder} …", file=sys.stderr)
        folder.mkdir(parents=True, exist_ok=True)
        subprocess.run([BUILD / "pixelhain-bench-photos", str(count), folder], check=True)
        done.touch()
    names = [f"IMG_{number}.jpg" for number in range(1, count + 1)]
    return [folder / "plain" / name for name in names], [folder / "previews" / name for name in names]


def progressive(files):
    """The same pictures as progressive files, beside the folder of the others."""
    folder = files[0].parent.with_name("progressive")
    if not (folder / ".complete").exists():
        folder.mkdir(parents=True, exist_ok=True)
        for file in files:
            subprocess.run(["jpegtran", "-progressive", "-outfile", folder / file.name, file], check=True)
        (folder / ".complete").touch()
    return [folder / file.name for file in files]


def links(folder, originals, count):
    """`count` names on the originals' data."""
    if not (folder / ".complete").exists():
        folder.mkdir(parents=True, exist_ok=True)
        for number in range(count):
            target = folder / f"IMG_{number + 1}.jpg"
            if not target.exists():
                os.link(originals[number % len(originals)], target)
        (folder / ".complete").touch()
    return folder


def warm(files):
    """Reads the files, so that no side is the first to wait for the disk."""
    for file in files:
        with open(file, "rb") as stream:
            while stream.read(1 << 22):
                pass


def evict(file):
    """Takes the file's contents out of memory."""
    stream = os.open(file, os.O_RDONLY)
    os.posix_fadvise(stream, 0, 0, os.POSIX_FADV_DONTNEED)
    os.close(stream)


class Usage:
    def __init__(self, wall, cpu, peak):
        self.wall = wall
        self.cpu = cpu
        self.peak = peak  # bytes


def timed(command, output=subprocess.DEVNULL):
    """Runs it to its end. The peak is told by time(1): what Python knows of a child's peak begins
    with its own."""
    with tempfile.NamedTemporaryFile("r") as note:
        watched = ["/usr/bin/time", "--format", "%M", "--output", note.name, *map(str, command)]
        start = time.monotonic()
        process = subprocess.Popen(watched, stdout=output, stderr=subprocess.PIPE)
        errors = process.stderr.read()
        _, status, usage = os.wait4(process.pid, 0)
        wall = time.monotonic() - start
        process.returncode = os.waitstatus_to_exitcode(status)
        if process.returncode != 0:
            sys.exit(f"{command[0]} ended with {process.returncode}: {errors.decode(errors='replace')[:400]}")
        return Usage(wall, usage.ru_utime + usage.ru_stime, int(note.read()) * 1024)


def by_turns(rounds, **sides):
    """Medians of each side's runs; the sides take turns, so that both meet the same noise."""
    runs = {name: [] for name in sides}
    for side in sides.values():
        side()  # not counted
    for _ in range(rounds):
        for name, side in sides.items():
            runs[name].append(side())
    return {
        name: Usage(*(statistics.median(getattr(run, key) for run in of) for key in ("wall", "cpu", "peak")))
        for name, of in runs.items()
    }


def each(program, *options):
    """A command that starts `program` once for every file given to it."""
    call = " ".join([program, *options])
    return ["sh", "-c", f'for file; do {call} "$file" || exit 1; done', "sh"]


def table(head, rows):
    texts = [head] + [[cell if isinstance(cell, str) else f"{cell:.3g}" for cell in row] for row in rows]
    widths = [max(len(row[column]) for row in texts) for column in range(len(head))]
    for index, row in enumerate(texts):
        cells = [cell.ljust(width) if not column else cell.rjust(width)
                 for column, (cell, width) in enumerate(zip(row, widths))]
        print("| " + " | ".join(cells) + " |")
        if index == 0:
            print("|" + "|".join("-" * (width + 2) for width in widths) + "|")
    print(flush=True)


def judged(value, limit, at_least):
    holds = value >= limit if at_least else value <= limit
    return f"{value:.3g} ({'holds' if holds else 'MISSED'}: {'≥' if at_least else '≤'} {limit:g})"


def machine():
    model = next((line.split(":")[1].strip() for line in open("/proc/cpuinfo") if line.startswith("model name")), "?")
    load = os.getloadavg()[0]
    print(f"{time.strftime('%Y-%m-%d')}, {os.cpu_count()} cores of {model}, load {load:.1f}\n")


@contextlib.contextmanager
def x_server(width=1920, height=1080, *options):
    """An empty virtual X server; gives the value of DISPLAY."""
    read, write = os.pipe()
    server = subprocess.Popen(
        ["Xvfb", "-displayfd", str(write), "-screen", "0", f"{width}x{height}x24", "-dpi", "96", "-nolisten", "tcp",
         *options],
        pass_fds=[write], stderr=subprocess.DEVNULL)
    os.close(write)
    with os.fdopen(read) as answer:
        number = answer.readline().strip()
    if not number:
        sys.exit("Xvfb did not start")
    try:
        yield f":{number}"
    finally:
        server.terminate()
        server.wait()


@contextlib.contextmanager
def session_bus():
    """A session bus, as every desktop has one; without, each program would try to start its own."""
    bus = subprocess.Popen(["dbus-daemon", "--session", "--nofork", "--print-address"], stdout=subprocess.PIPE,
                           stderr=subprocess.DEVNULL, text=True)
    try:
        yield bus.stdout.readline().strip()
    finally:
        bus.terminate()
        bus.wait()


@contextlib.contextmanager
def fresh_home():
    home = tempfile.mkdtemp(prefix="pixelhain-bench-")
    try:
        yield home
    finally:
        shutil.rmtree(home, ignore_errors=True)


def milliseconds(rest):
    """The line's time and, where it has one, its count: `visible-complete 66 412.5`."""
    numbers = [float(number) for number in re.findall(r"\d+(?:\.\d+)?", rest)]
    return numbers[-1], int(numbers[0]) if len(numbers) > 1 else None


class Window:
    """The program in a window that fills the screen, with its milestones."""

    def __init__(self, display, home, *arguments, program="pixelhain", **variables):
        environment = {key: value for key, value in os.environ.items() if key != "WAYLAND_DISPLAY"}
        environment.update(DISPLAY=display, HOME=home, XDG_CONFIG_HOME=home + "/config", PIXELHAIN_TRACE="1",
                           **variables)
        self.process = subprocess.Popen(
            [str(BUILD / program), "-qwindowgeometry", "1920x1080+0+0", *map(str, arguments)],
            env=environment, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True)
        self.milestones = {}

    def wait_for(self, name, seconds=120):
        """Milliseconds since the process started, and the milestone's count."""
        alarm = signal.signal(signal.SIGALRM, lambda *_: sys.exit(f"no {name} within {seconds} s"))
        signal.alarm(seconds)
        for line in self.process.stderr:
            found = MILESTONE.search(line)
            if not found:
                continue
            # The milestone before it on the line's left may be the time.
            before = re.search(r"(\d+(?:\.\d+)?)\s*(?:ms)?\s*$", line[:found.start()])
            if before:
                count = re.search(r"\d+", found[2])
                entry = float(before[1]), int(count[0]) if count else None
            else:
                entry = milliseconds(found[2])
            self.milestones.setdefault(found[1], entry)
            if found[1] == name:
                break
        signal.alarm(0)
        signal.signal(signal.SIGALRM, alarm)
        if name not in self.milestones:
            sys.exit(f"the program ended before {name}")
        return self.milestones[name]

    def memory(self):
        """Private and shared memory, and the largest resident size so far, in MB."""
        pss = peak = 0.0
        for line in open(f"/proc/{self.process.pid}/smaps_rollup"):
            if line.startswith("Pss:"):
                pss = int(line.split()[1]) / 1024
        for line in open(f"/proc/{self.process.pid}/status"):
            if line.startswith("VmHWM:"):
                peak = int(line.split()[1]) / 1024
        return pss, peak

    def close(self):
        self.process.terminate()
        self.process.wait()
        self.process.stderr.close()
