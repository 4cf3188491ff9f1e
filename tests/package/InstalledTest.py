"""The installed package, from its installation to its removal. It is run on a machine that nobody needs, or in
a folder that stands for the root of one; PackageTest.py makes either."""
import contextlib
import os
import pathlib
import re
import subprocess
import unittest

PLACE = pathlib.Path(__file__).resolve().parent
MACHINE = pathlib.Path(os.environ.get("PIXELHAIN_MACHINE", "/"))
IS_FOLDER = MACHINE != pathlib.Path("/")
SHARE = MACHINE / "usr/share"
os.environ.update({
    "PIXELHAIN_BUILD": str(MACHINE / "usr/bin"),
    "PATH": f"{MACHINE / 'usr/bin'}:/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin",
    "XDG_DATA_DIRS": f"{PLACE / 'data'}:{SHARE}:/usr/share" if IS_FOLDER else "/usr/share"})

from Desktop import Desktop, until  # noqa: E402
from Programs import Picture  # noqa: E402
from Session import Session  # noqa: E402

ID = "de.pixelhain.Pixelhain"
ENTRY = SHARE / f"applications/{ID}.desktop"
SERVICE = SHARE / f"dbus-1/services/{ID}.service"
PROGRAM = MACHINE / "usr/bin/pixelhain"
DECODER = MACHINE / "usr/libexec/pixelhain/pixelhain-decoder"
SAMPLES = PLACE / "samples"
COMMANDS = "list", "meta", "info", "thumbnail", "contact-sheet"


def run(*command, check=True, **variables):
    done = subprocess.run(
        command, text=True, timeout=200, env={**os.environ, "LC_ALL": "C.UTF-8", **variables},
        stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE)
    if check and done.returncode != 0:
        raise AssertionError(f"{command}: {done.returncode}\n{done.stdout}\n{done.stderr}")
    return done


def dpkg(*arguments, **options):
    # In a folder there are no other packages, and whoever made it may unpack.
    where = [f"--root={MACHINE}", f"--log={PLACE}/dpkg.log", "--force-not-root", "--force-script-chrootless",
             "--force-depends"] if IS_FOLDER else []
    return run("dpkg", *where, *arguments, DEBIAN_FRONTEND="noninteractive", **options)


def pdf_module():
    """What writes PDF files; the package has no other library."""
    files = dpkg("--listfiles", "pixelhain").stdout.split("\n")
    module, = [MACHINE / name.lstrip("/") for name in files if name.endswith(".so")]
    return module


def install():
    dpkg("--install", PLACE / "pixelhain.deb")
    if IS_FOLDER:
        # What the triggers of other packages do; and the bus starts a program where it is.
        run("update-desktop-database", ENTRY.parent)
        services = PLACE / "data/dbus-1/services"
        services.mkdir(parents=True, exist_ok=True)
        (services / SERVICE.name).write_text(SERVICE.read_text().replace("/usr/bin/pixelhain", str(PROGRAM)))


def purge():
    if IS_FOLDER:
        (ENTRY.parent / "mimeinfo.cache").unlink()
    dpkg("--purge", "pixelhain")


def files_of_the_machine():
    """What packages bring, and programs keep for all users, by their names from the machine's root on."""
    found = set()
    for top in "etc", "opt", "usr", "var":
        for folder, folders, files in os.walk(MACHINE / top):
            if folder == "/var":
                folders.remove("tmp")  # which is anybody's
            found.update(os.path.join("/", os.path.relpath(folder, MACHINE), name) for name in [*folders, *files])
    return found


def programs():
    """The processes of the installed program."""
    found = []
    for process in pathlib.Path("/proc").glob("[0-9]*"):
        with contextlib.suppress(OSError):  # it has ended, or is another user's
            if (process / "exe").readlink() == PROGRAM:
                found.append(int(process.name))
    return found


def windows():
    return run("xdotool", "search", "--onlyvisible", "--name", "^(samples – |Pixelhain)", check=False).stdout.split()


def is_on_the_bus():
    return "true" in run(
        "gdbus", "call", "--session", "--dest", "org.freedesktop.DBus", "--object-path", "/org/freedesktop/DBus",
        "--method", "org.freedesktop.DBus.NameHasOwner", ID).stdout


def options_in(text):
    return set(re.findall(r"(?<![\w-])--?[\w][\w-]*", text))


class InstalledTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        install()
        cls.addClassCleanup(purge)
        cls.version = (PLACE / "version").read_text()

    def test_both_programs_tell_their_version(self):
        self.assertEqual(run("pixelhain", "--version").stdout, f"pixelhain {self.version}\n")
        self.assertEqual(run("pixelhain-cli", "--version").stdout, f"pixelhain-cli {self.version}\n")

    def test_programs_are_hardened(self):
        for program in (PROGRAM, PROGRAM.with_name("pixelhain-cli"), DECODER, pdf_module()):
            with self.subTest(program):
                said = run("readelf", "--wide", "--file-header", "--program-headers", "--dynamic", program).stdout
                kind = "Shared object" if program.suffix == ".so" else "Position-Independent"
                self.assertRegex(said, rf"Type:\s+DYN \({kind}")
                self.assertIn("GNU_RELRO", said)
                self.assertRegex(said, r"FLAGS_1.*NOW")
                self.assertRegex(said, r"GNU_STACK.* RW ")
                self.assertNotRegex(said, r"R(UN)?PATH")
                self.assertIn("__stack_chk_fail", run("readelf", "--wide", "--dyn-syms", program).stdout)
        # Libraries come back into the decoder from their errors, by the checked way.
        self.assertIn("__longjmp_chk", run("readelf", "--wide", "--dyn-syms", DECODER).stdout)

    def test_pictures_are_decoded_by_the_installed_decoder(self):
        photo = next(SAMPLES.glob("*.jpg"))
        command = "pixelhain-cli", "thumbnail", "--size", "64", photo
        self.assertRegex(run(*command).stdout, r"\t(64\t\d+|\d+\t64)\t")
        away = DECODER.rename(DECODER.with_name("away"))
        self.addCleanup(away.rename, DECODER)
        without = run(*command, check=False)
        self.assertEqual(without.returncode, 1)
        self.assertIn("pictures cannot be decoded", without.stderr)

    def test_pdf_files_are_written_by_the_installed_module(self):
        sheet = PLACE / "sheet.pdf"
        command = "pixelhain-cli", "contact-sheet", "--output", sheet, next(SAMPLES.glob("*.jpg"))
        run(*command)
        written = sheet.read_bytes()
        self.assertEqual((written[:5], written.rstrip()[-5:]), (b"%PDF-", b"%%EOF"))
        sheet.unlink()
        module = pdf_module()
        away = module.rename(module.with_name("away"))
        self.addCleanup(away.rename, module)
        without = run(*command, check=False)
        self.assertEqual(without.returncode, 1)
        self.assertIn("PDF files cannot be written", without.stderr)
        self.assertFalse(sheet.exists())

    def test_a_folder_is_shown(self):
        Desktop.own()
        file = PLACE / "window.png"
        run("pixelhain", "--screenshot", file, SAMPLES, HOME=str(PLACE), XDG_CONFIG_HOME=str(PLACE / "shown"),
            QT_QPA_PLATFORM="xcb", XDG_RUNTIME_DIR=str(Desktop.own().place))
        self.assertGreater(Picture(file).colorful_share(), 0.1)

    def test_a_photo_is_opened_through_the_bus_in_a_program_that_the_bus_starts(self):
        desktop = Desktop.own()
        photo = next(SAMPLES.glob("*.jpg")).as_uri()
        self.opens(lambda: run(
            "gdbus", "call", "--session", "--dest", ID, "--object-path", "/de/pixelhain/Pixelhain",
            "--method", "org.freedesktop.Application.Open", f"['{photo}']", "{}",
            DBUS_SESSION_BUS_ADDRESS=desktop.environment["DBUS_SESSION_BUS_ADDRESS"]))

    def test_a_photo_is_opened_by_the_desktop_entry(self):
        launch = """if True:
            import sys
            from gi.repository import Gio, GLib
            loop, answers = GLib.MainLoop(), []

            def finish(entry, result):
                answers.append(result)
                loop.quit()

            entry = Gio.DesktopAppInfo.new(sys.argv[1])
            entry.launch_uris_async([sys.argv[2]], None, None, finish)
            loop.run()
            entry.launch_uris_finish(answers[0])
        """
        photo = next(SAMPLES.glob("*.jpg"))
        self.opens(lambda: run(
            "/usr/bin/python3", "-c", launch, ENTRY.name, photo.as_uri(), **Desktop.own().environment))

    def test_the_actions_of_the_desktop_entry_are_those_of_the_program(self):
        entry = ENTRY.read_text()
        names = run("gapplication", "list-actions", ID).stdout.split()
        self.assertGreaterEqual(len(names), 2)
        self.assertEqual(re.findall(r"^\[Desktop Action (.*)\]$", entry, re.M), names)
        told = options_in(run("pixelhain", "--help").stdout)
        for name in names:
            action = entry.partition(f"[Desktop Action {name}]\n")[2].split("\n\n")[0]
            self.assertRegex(action, r"(?m)^Name=\w")
            self.assertRegex(action, r"(?m)^Name\[de\]=\w")
            self.assertIn(f"Exec=pixelhain --{name}", action.splitlines())
            self.assertIn(f"--{name}", told)

    def test_an_action_of_the_desktop_entry_is_done_by_a_program_that_the_bus_starts(self):
        self.opens(lambda: run("gapplication", "action", ID, "show-help", **Desktop.own().environment),
                   "Pixelhain-Hilfe")

    def opens(self, ask, title=r"samples – \d+ Fotos"):
        """What is asked of the bus brings a window with this title, and there is one program."""
        def look():
            titles = [run("xdotool", "getwindowname", window, check=False).stdout.strip() for window in windows()]
            return sum(bool(re.fullmatch(title, name)) for name in titles) == 1

        try:
            ask()
            until(look, f"a window {title}")
            # For a moment there are more: what is about to become a decoder.
            until(lambda: len(programs()) == 1, "one program")
        finally:
            for program in programs():
                with contextlib.suppress(ProcessLookupError):
                    os.kill(program, 15)
            # The bus and the X server learn of an end after the kernel: what is asked of the bus before it
            # has goes to the program that was.
            until(lambda: not (programs() or is_on_the_bus() or windows()), "an end of the program")

    def test_the_desktop_offers_it_for_photos_and_folders(self):
        for kind in ("image/jpeg", "image/x-canon-cr3", "image/heif", "inode/directory"):
            self.assertIn(ENTRY.name, run("gio", "mime", kind).stdout, kind)
        self.assertNotIn(ENTRY.name, run("gio", "mime", "text/plain").stdout)

    def test_the_desktop_entry_is_valid(self):
        self.assertEqual(run("desktop-file-validate", ENTRY).stdout, "")

    def test_what_software_centres_read_is_valid(self):
        metainfo = SHARE / f"metainfo/{ID}.metainfo.xml"
        run("appstreamcli", "validate", "--no-net", metainfo)
        self.assertIn(f'<release version="{self.version}"', metainfo.read_text())
        entry = re.search("^MimeType=(.*);$", ENTRY.read_text(), re.M)[1].split(";")
        self.assertEqual(re.findall("<mediatype>(.*)</mediatype>", metainfo.read_text()), entry)

    def test_the_bus_starts_what_is_installed(self):
        self.assertEqual(SERVICE.read_text(), f"[D-BUS Service]\nName={ID}\nExec=/usr/bin/pixelhain\n")

    def test_the_icon_is_there_in_all_sizes(self):
        icons = SHARE / "icons/hicolor"
        for size in (16, 22, 24, 32, 48, 64, 128, 256, 512):
            picture = icons / f"{size}x{size}/apps/{ID}.png"
            self.assertEqual(run("pixelhain-cli", "meta", picture).stdout, f"{picture}\t{size}\t{size}\tstill\n")
        self.assertTrue((icons / f"scalable/apps/{ID}.svg").is_file())
        self.assertTrue((icons / f"symbolic/apps/{ID}-symbolic.svg").is_file())

    def test_manuals_are_complete_and_well_formed(self):
        for name in ("pixelhain", "pixelhain-cli"):
            for folder in ("man1", "de/man1"):
                page = SHARE / f"man/{folder}/{name}.1.gz"
                with self.subTest(page):
                    shown = run("man", "--warnings", "--local-file", page, MANWIDTH="80")
                    self.assertEqual(shown.stderr, "")
                    self.assertIn(self.version, shown.stdout)
                    self.assertLessEqual(self.options_of(name) - {"-h"}, options_in(shown.stdout))

    def options_of(self, program):
        """All that the program itself says it takes."""
        if program == "pixelhain":
            return options_in(run("pixelhain", "--help").stdout)
        told = options_in(run("pixelhain-cli", "--help").stdout)
        return told.union(*(options_in(run("pixelhain-cli", name, "--help").stdout) for name in COMMANDS))

    def completed(self, *words):
        """What bash offers for the last of the words."""
        script = """
            source /usr/share/bash-completion/bash_completion
            _completion_loader "$1" || (($? == 124))
            COMP_WORDS=("$@") COMP_CWORD=$(($# - 1)) COMP_LINE="$*" COMP_POINT=${#COMP_LINE}
            compopt() { :; }
            $(complete -p "$1" | sed 's/.*-F \\([^ ]*\\) .*/\\1/') "$1" "${!#}" "${@: -2:1}"
            printf '%s\\n' "${COMPREPLY[@]}"
        """
        return [word for word in run("bash", "--norc", "-c", script, "bash", *words).stdout.split("\n") if word]

    def test_bash_completes_all_options(self):
        self.assertEqual(set(self.completed("pixelhain", "--")),
                         {name for name in self.options_of("pixelhain") if name.startswith("--")})
        for command in COMMANDS:
            said = options_in(run("pixelhain-cli", command, "--help").stdout)
            self.assertEqual(set(self.completed("pixelhain-cli", command, "-")) - {"--help"}, said, command)
        self.assertEqual(self.completed("pixelhain-cli", "")[:5], [*COMMANDS])

    def test_bash_completes_photos_and_values(self):
        names = self.completed("pixelhain", f"{SAMPLES}/Farb")
        self.assertEqual(names, [f"{SAMPLES}/Farbspiel.gif"])
        self.assertEqual(self.completed("pixelhain-cli", "meta", f"{PLACE}/vers"), [])
        self.assertEqual(self.completed("pixelhain-cli", "list", "--sort", "d"), ["date"])
        self.assertEqual(self.completed("pixelhain-cli", "contact-sheet", "--paper", "a"), ["a4", "a3"])

    def test_zsh_loads_its_completions(self):
        for name in ("_pixelhain", "_pixelhain-cli"):
            run("zsh", "-f", "-c", f"fpath=({SHARE}/zsh/vendor-completions $fpath); autoload -Uz compinit {name} && compinit -D -u && "
                f"whence -w {name} && autoload +X {name} && [[ $_comps[{name[1:]}] == {name} ]]")


class RemovalTest(unittest.TestCase):
    def test_what_was_used_and_removed_leaves_nothing_behind(self):
        before = files_of_the_machine()
        install()
        self.assertTrue(ENTRY.exists())
        session = Session(PLACE / "home", SAMPLES, DISPLAY=Desktop.own().environment["DISPLAY"])
        self.addCleanup(session.abandon)
        session.wait_for("idle")
        self.assertEqual(session.end(), 0)
        purge()
        left = {name for name in files_of_the_machine() - before
                if not name.startswith(("/var/lib/dpkg/", "/var/log/", "/var/cache/"))}
        self.assertEqual(left, set())
        self.assertEqual([name for name in files_of_the_machine() if ID in name], [])
        for cache in SHARE.glob("applications/mimeinfo.cache"):
            self.assertNotIn(ID, cache.read_text())
        self.assertNotEqual(dpkg("--status", "pixelhain", check=False).returncode, 0)


if __name__ == "__main__":
    unittest.main()
