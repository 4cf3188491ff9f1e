"""What `cmake --install` lays out, and that it works from there."""
import os
import pathlib
import subprocess
import tempfile
import unittest

BUILD = pathlib.Path(os.environ["PIXELHAIN_BUILD"])
ID = "de.pixelhain.Pixelhain"
WITH_TOOLKIT = (BUILD / "pixelhain").exists()
COMMANDS = {
    "bin/pixelhain-cli", "libexec/pixelhain/pixelhain-decoder", "lib/pixelhain/pixelhain-pdf.so",
    "share/bash-completion/completions/pixelhain-cli", "share/zsh/site-functions/_pixelhain-cli",
    "share/man/man1/pixelhain-cli.1", "share/man/de/man1/pixelhain-cli.1"}
WINDOW = {
    "bin/pixelhain", "share/bash-completion/completions/pixelhain", "share/zsh/site-functions/_pixelhain",
    "share/man/man1/pixelhain.1", "share/man/de/man1/pixelhain.1",
    f"share/applications/{ID}.desktop", f"share/metainfo/{ID}.metainfo.xml", f"share/dbus-1/services/{ID}.service",
    f"share/icons/hicolor/scalable/apps/{ID}.svg", f"share/icons/hicolor/symbolic/apps/{ID}-symbolic.svg",
    *(f"share/icons/hicolor/{size}x{size}/apps/{ID}.png" for size in (16, 22, 24, 32, 48, 64, 128, 256, 512))}


def run(*command, **options):
    return subprocess.run(
        command, text=True, timeout=100, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
        **options)


class InstallTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        place = tempfile.TemporaryDirectory(prefix="pixelhain-install-ü-")
        cls.addClassCleanup(place.cleanup)
        # What heeds no prefix shall not end up on this machine.
        cls.root = pathlib.Path(place.name)
        done = run("cmake", "--install", BUILD, "--prefix", "/opt/ort", env={**os.environ, "DESTDIR": str(cls.root)})
        cls.prefix = cls.root / "opt/ort"
        assert done.returncode == 0, done.stdout

    def test_everything_is_where_the_conventions_have_it(self):
        expected = COMMANDS | (WINDOW if WITH_TOOLKIT else set())
        found = {str(file.relative_to(self.root)) for file in self.root.rglob("*") if not file.is_dir()}
        self.assertEqual(found, {f"opt/ort/{name}" for name in expected})

    def test_only_programs_can_be_executed(self):
        for file in self.prefix.rglob("*"):
            if file.is_file():
                is_program = file.parent.name in ("bin", "pixelhain") and file.suffix != ".so"
                self.assertEqual(os.access(file, os.X_OK), is_program, file)

    def test_programs_find_their_decoder_from_where_they_are(self):
        picture = pathlib.Path(__file__).resolve().parents[2] / "docs/screenshots/window.jpg"
        command = self.prefix / "bin/pixelhain-cli", "thumbnail", "--size", "32", picture
        done = run(*command)
        self.assertRegex(done.stdout, r"\t32\t\d+\t\w+\n$")
        decoder = self.prefix / "libexec/pixelhain/pixelhain-decoder"
        away = decoder.rename(decoder.with_name("away"))
        try:
            self.assertEqual(run(*command).returncode, 1)
        finally:
            away.rename(decoder)

    def test_programs_write_pdf_files_from_where_they_are(self):
        picture = pathlib.Path(__file__).resolve().parents[2] / "docs/screenshots/window.jpg"
        sheet = self.root / "sheet.pdf"
        done = run(self.prefix / "bin/pixelhain-cli", "contact-sheet", "--output", sheet, picture)
        self.assertEqual(done.returncode, 0, done.stdout)
        self.assertEqual(sheet.read_bytes()[:5], b"%PDF-")

    @unittest.skipUnless(WITH_TOOLKIT, "built without the toolkit")
    def test_the_bus_is_told_where_the_program_is(self):
        service = (self.prefix / f"share/dbus-1/services/{ID}.service").read_text()
        self.assertEqual(service.splitlines()[-1], "Exec=/opt/ort/bin/pixelhain")


if __name__ == "__main__":
    unittest.main()
