"""What tools/run hands to the program, and what it says without a display."""
import unittest

from Checkout import Checkout


class RunTest(unittest.TestCase):
    def setUp(self):
        self.checkout = Checkout("run")
        self.addCleanup(self.checkout.remove)
        self.release = self.checkout.root / "build/release"
        self.screenshot = self.checkout.root / "build/screenshot.png"
        self.samples = self.checkout.root / "build/samples"
        self.checkout.program(self.checkout.root / "tools/setup")
        self.checkout.program(self.release / "pixelhain")
        self.checkout.program(self.release / "pixelhain-samples")
        self.checkout.command("xvfb-run", 'while [[ $1 = -* ]]; do [[ $1 = --server-args ]] && shift; shift; done\n"$@" || exit $?')

    def draws_window(self):
        self.checkout.program(self.release / "pixelhain", 'echo picture >"$2"')

    def remember(self, line):
        settings = self.checkout.home / ".config/pixelhain/pixelhain.ini"
        settings.parent.mkdir(parents=True)
        settings.write_text(f"thumbnailSize=200\n{line}\n", encoding="utf-8")

    def program_arguments(self):
        return [call.removeprefix("pixelhain").strip() for call in self.checkout.calls("pixelhain")]

    def test_the_program_gets_the_arguments(self):
        result = self.checkout.run("run", "/a folder", DISPLAY=":7")
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertEqual(self.checkout.calls(), ["setup [release]", "pixelhain [/a folder]"])

    def test_a_first_start_shows_the_samples(self):
        self.checkout.run("run", WAYLAND_DISPLAY="wayland-0")
        self.assertEqual(self.checkout.calls("pixelhain-samples"), [f"pixelhain-samples [{self.samples}]"])
        self.assertEqual(self.program_arguments(), [f"[{self.samples}]"])

    def test_with_folders_to_restore_the_program_starts_as_always(self):
        self.remember('lastFolders="/home/mia/Bilder", "/media/archiv"')
        self.checkout.run("run", DISPLAY=":7")
        self.assertEqual(self.checkout.calls("pixelhain-samples"), [])
        self.assertEqual(self.program_arguments(), ["[]"])

    def test_an_empty_list_of_folders_is_nothing_to_restore(self):
        self.remember('lastFolder=""\nlastFolders=""')
        self.checkout.run("run", DISPLAY=":7")
        self.assertEqual(self.program_arguments(), [f"[{self.samples}]"])

    def test_the_settings_are_sought_where_the_environment_says(self):
        self.remember('lastFolder="/home/mia/Bilder"')
        self.checkout.run("run", DISPLAY=":7", XDG_CONFIG_HOME=str(self.checkout.place / "elsewhere"))
        self.assertEqual(self.program_arguments(), [f"[{self.samples}]"])

    def test_without_a_home_folder_it_is_a_first_start(self):
        result = self.checkout.run("run", DISPLAY=":7", HOME=None)
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertEqual(self.program_arguments(), [f"[{self.samples}]"])

    def test_without_a_display_a_picture_of_the_window_is_left(self):
        self.draws_window()
        result = self.checkout.run("run", "/a folder")
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertEqual(self.checkout.calls("setup"), ["setup [--with] [headless] [release]"])
        self.assertEqual(self.program_arguments(), [f"[--screenshot] [{self.screenshot}] [/a folder]"])
        self.assertIn(str(self.screenshot), result.stdout)
        self.assertTrue(self.screenshot.exists())

    def test_a_program_that_fails_fails_the_run(self):
        self.checkout.program(self.release / "pixelhain", 'echo "12 pictures missing" >&2', answer=3)
        result = self.checkout.run("run", "/a folder")
        self.assertEqual(result.returncode, 3)
        self.assertIn("12 pictures missing", result.stderr)
        self.assertIn("no picture of the window", result.stderr)

    def test_the_picture_of_a_former_run_does_not_count(self):
        self.screenshot.write_text("old", encoding="utf-8")
        result = self.checkout.run("run", "/a folder")
        self.assertNotEqual(result.returncode, 0)
        self.assertIn("left no", result.stderr)

    def test_a_failing_setup_starts_nothing(self):
        self.checkout.program(self.checkout.root / "tools/setup", answer=1)
        self.assertNotEqual(self.checkout.run("run", DISPLAY=":7").returncode, 0)
        self.assertEqual(self.checkout.calls("pixelhain"), [])


if __name__ == "__main__":
    unittest.main()
