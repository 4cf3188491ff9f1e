"""What tools/setup installs, asks for and builds."""
import os
import unittest

from Checkout import NOBODY, Checkout, is_root

CONTROL = """\
Source: pixelhain
# a comment between fields
Build-Depends:
 debhelper-compat (= 13),
 cmake (>= 3.25),
 libjpeg62-turbo-dev | libjpeg-dev,
 qt6-base-dev (>= 6.4) <!pkg.pixelhain.noqt>,
 doctest-dev <!nocheck>,
 xvfb <!nocheck> <pkg.pixelhain.headless>,
 clang-format-14 <pkg.pixelhain.house>,
 clang-14 <pkg.pixelhain.fuzz> <pkg.pixelhain.clang>
Standards-Version: 4.6.2

Package: pixelhain
Depends: ${shlibs:Depends}, qt6-qpa-plugins
"""
ALL = {
    "cmake": "3.25.1", "libjpeg-dev": "1:2.1", "qt6-base-dev": "6.4.2+dfsg-10", "doctest-dev": "2.4",
    "xvfb": "2:21", "clang-format-14": "1:14.0.6", "qt6-qpa-plugins": "6.4.2",
}


class SetupTest(unittest.TestCase):
    def setUp(self):
        self.checkout = Checkout("setup")
        self.addCleanup(self.checkout.remove)
        self.checkout.write("debian/control", CONTROL)
        self.checkout.write("CMakePresets.json", "{}")
        self.checkout.command("apt-get")
        self.checkout.command("sudo", 'shift; "$@"')
        self.checkout.command("cmake", 'if [[ $1 = --preset ]]; then mkdir -p "build/$2"; touch "build/$2/build.ninja"; fi')
        self.has_installed(ALL)

    def has_installed(self, packages):
        lines = "".join(f'echo "{name} installed {version}"\n' for name, version in packages.items())
        self.checkout.command("dpkg-query", lines + "exit 1")

    def without(self, *names):
        self.has_installed({name: version for name, version in ALL.items() if name not in names})

    def installed(self):
        """The packages of each apt-get install."""
        calls = [call for call in self.checkout.calls("apt-get") if "[install]" in call]
        return [call.split("[--no-install-recommends] ")[1] for call in calls]

    def test_nothing_is_asked_of_apt_when_nothing_is_missing(self):
        result = self.checkout.run("setup", "--with", "headless", "--with", "house", "dev")
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertEqual(self.checkout.calls("apt-get"), [])

    def test_what_is_missing_is_installed_after_one_update(self):
        self.without("cmake", "doctest-dev")
        result = self.checkout.run("setup", "dev")
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertEqual(self.installed(), ["[cmake] [doctest-dev]"])
        self.assertEqual(sum("[update]" in call for call in self.checkout.calls("apt-get")), 1)

    def test_any_alternative_will_do_and_the_first_is_installed(self):
        self.without("libjpeg-dev")
        self.checkout.run("setup")
        self.assertEqual(self.installed(), ["[libjpeg62-turbo-dev]"])

    def test_a_version_that_is_too_old_is_missing(self):
        self.has_installed({**ALL, "cmake": "3.18.4"})
        self.checkout.run("setup")
        self.assertEqual(self.installed(), ["[cmake]"])

    def test_a_package_that_was_removed_but_left_its_settings_is_missing(self):
        self.without("cmake")
        with (self.checkout.bin / "dpkg-query").open("r+", encoding="utf-8") as script:
            text = script.read().replace("exit 1", 'echo "cmake config-files 3.25.1"\nexit 1')
            script.seek(0)
            script.write(text)
        self.checkout.run("setup")
        self.assertEqual(self.installed(), ["[cmake]"])

    def test_each_preset_asks_only_for_what_it_needs(self):
        self.has_installed({})
        wanted = {
            ("release",): "[cmake] [libjpeg62-turbo-dev] [qt6-base-dev] [qt6-qpa-plugins]",
            ("core",): "[cmake] [libjpeg62-turbo-dev] [doctest-dev] [xvfb]",
            ("clang",): "[cmake] [libjpeg62-turbo-dev] [qt6-base-dev] [doctest-dev] [xvfb] [clang-14] [qt6-qpa-plugins]",
            ("tsan", "dev"): "[cmake] [libjpeg62-turbo-dev] [qt6-base-dev] [doctest-dev] [xvfb] [qt6-qpa-plugins]",
            ("--with", "headless", "release"):
                "[cmake] [libjpeg62-turbo-dev] [qt6-base-dev] [xvfb] [qt6-qpa-plugins]",
            ("--with", "house", "core"):
                "[cmake] [libjpeg62-turbo-dev] [doctest-dev] [xvfb] [clang-format-14]",
            ("--with", "package", "release"):
                "[cmake] [libjpeg62-turbo-dev] [qt6-base-dev] [qt6-qpa-plugins] [build-essential] [debhelper]",
        }
        for arguments, packages in wanted.items():
            with self.subTest(arguments):
                self.checkout.run("setup", "--packages-only", *arguments)
                self.assertEqual(self.installed()[-1], packages)

    def test_release_is_configured_and_built_by_default(self):
        self.checkout.run("setup")
        self.assertEqual(self.checkout.calls("cmake"), [
            "cmake [--preset] [release] [--log-level=NOTICE]", "cmake [--build] [--preset] [release]"])

    def test_a_preset_is_configured_again_only_when_the_presets_changed(self):
        self.checkout.run("setup", "dev")
        self.checkout.run("setup", "dev")
        self.assertEqual(sum("log-level" in call for call in self.checkout.calls("cmake")), 1)
        later = (self.checkout.root / "build/dev/build.ninja").stat().st_mtime + 5
        os.utime(self.checkout.root / "CMakePresets.json", (later, later))
        self.checkout.run("setup", "dev")
        self.assertEqual(sum("log-level" in call for call in self.checkout.calls("cmake")), 2)

    def test_a_failing_build_ends_it_and_is_named(self):
        self.checkout.command("cmake", answer=1)
        result = self.checkout.run("setup", "dev", "asan")
        self.assertNotEqual(result.returncode, 0)
        self.assertIn("preset dev could not be built", result.stderr)
        self.assertEqual(len(self.checkout.calls("cmake")), 1)

    def test_a_failing_installation_ends_it_and_is_named(self):
        self.without("cmake")
        self.checkout.command("apt-get", answer=100)
        result = self.checkout.run("setup")
        self.assertNotEqual(result.returncode, 0)
        self.assertIn("could not install: cmake", result.stderr)
        self.assertEqual(self.checkout.calls("cmake"), [])

    @unittest.skipUnless(is_root(), "only root can become somebody else")
    def test_others_than_root_go_through_sudo(self):
        self.without("cmake")
        result = self.checkout.run("setup", "--packages-only", user=NOBODY)
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertEqual(len(self.checkout.calls("sudo")), 2)
        self.assertEqual(self.installed(), ["[cmake]"])

    @unittest.skipUnless(is_root(), "only root can become somebody else")
    def test_who_may_not_install_is_told_what_is_missing(self):
        self.without("cmake")
        (self.checkout.bin / "sudo").unlink()
        for name in ("bash", "dirname", "awk", "tr", "sed", "env"):
            (self.checkout.bin / name).symlink_to(f"/usr/bin/{name}")
        result = self.checkout.run("setup", user=NOBODY, path=str(self.checkout.bin))
        self.assertNotEqual(result.returncode, 0)
        self.assertIn("neither root nor sudo", result.stderr)
        self.assertIn("apt-get install cmake", result.stderr)
        self.assertEqual(self.checkout.calls("apt-get"), [])

    def test_an_unknown_option_is_a_usage_error(self):
        self.assertEqual(self.checkout.run("setup", "--wrong").returncode, 2)


if __name__ == "__main__":
    unittest.main()
