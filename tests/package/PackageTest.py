"""The package that tools/package built: what it consists of, and how it fares where the program has never been
seen. One such place is this machine beneath a layer of its own: what is installed there is gone when the test
ends, and neither checkout nor build folders are in it. Where the kernel lets nobody have that, there is the
other one: a folder that dpkg takes for the root of a machine."""
import os
import pathlib
import re
import shutil
import subprocess
import tempfile
import unittest

import yaml

HERE = pathlib.Path(__file__).resolve().parent
ROOT = HERE.parents[1]
PLACE = ROOT / "build/package"
BUILT = PLACE / "source/build/debian"
NAMESPACES = ["unshare", "--mount", "--pid", "--fork", "--kill-child", "--propagation", "private"]
# $1: the folder that gets the layer, $2: the luggage, $3: what is hidden, then the command that is run there.
# Everything in the layer vanishes with the last process.
NEW_MACHINE = """\
set -e
mount -t tmpfs layer "$1"
mkdir "$1/above" "$1/work" "$1/root"
mount -t overlay overlay -o lowerdir=/,upperdir="$1/above",workdir="$1/work" "$1/root"
cd "$1/root"
mount -t proc proc proc
mount --rbind /dev dev
mount -t tmpfs tmp tmp
mount -t tmpfs run run
mkdir -p tmp/package
cp -r "$2"/. tmp/package
mkdir -p ".$3"  # below /tmp, it is not there
mount -t tmpfs hidden ".$3"
exec chroot . "${@:4}"
"""
# $1: the folder. What of it the kernel may refuse.
MAY_HAVE_A_LAYER = """\
mount -t tmpfs layer "$1" && mkdir "$1/above" "$1/work" "$1/root" &&
    mount -t overlay overlay -o lowerdir=/,upperdir="$1/above",workdir="$1/work" "$1/root" &&
    mount -t proc proc "$1/root/proc"
"""


def run(*command, **options):
    return subprocess.run(
        command, text=True, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, **options)


def version():
    return re.search(r"^project\(\w+ VERSION (\S+)", (ROOT / "CMakeLists.txt").read_text(), re.M)[1]


class PackageTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        found = list(PLACE.glob("pixelhain_*.deb"))
        assert len(found) == 1, f"tools/package makes one package, but there are: {found}"
        cls.package = found[0]

    def field(self, name):
        return run("dpkg-deb", "--field", self.package, name).stdout.strip()

    def test_it_has_the_version_of_the_program(self):
        self.assertEqual(self.field("Version"), version())

    def test_it_brings_what_the_desktop_may_lack(self):
        for name in ("qt6-wayland", "qt6-gtk-platformtheme", "qt6-xdgdesktopportal-platformtheme"):
            self.assertIn(name, self.field("Recommends"))

    def test_it_depends_on_every_library_that_its_programs_are_linked_with(self):
        unpacked = self.folder("unpacked")
        subprocess.run(["dpkg-deb", "--extract", self.package, unpacked], check=True)
        linked = [file for file in unpacked.rglob("*") if file.is_file() and file.read_bytes()[:4] == b"\x7fELF"]
        self.assertEqual({file.name for file in linked}, {
            "pixelhain", "pixelhain-cli", "pixelhain-decoder", "pixelhain-pdf.so"})
        needed = {file.name: set(re.findall(r"NEEDED +(\S+)", run("objdump", "-p", file).stdout)) for file in linked}
        libraries = set().union(*needed.values())
        found = run("dpkg-query", "--search", *(f"*/{library}" for library in libraries)).stdout
        depends = set(re.findall(r"(?:^|, )([a-z0-9.+-]+)", self.field("Depends")))
        brought = {name for package, name in re.findall(r"^([a-z0-9.+-]+)(?::\w+)?: .*/(.*)$", found, re.M)
                   if package in depends}
        for name, wanted in needed.items():
            self.assertIn("libc.so.6", wanted)
            self.assertEqual(wanted - brought, set(), name)

    def test_lintian_finds_neither_errors_nor_warnings(self):
        changes, = PLACE.glob("pixelhain_*.changes")
        checked = run("lintian", "--allow-root", "--fail-on", "error,warning", changes)
        self.assertEqual(checked.returncode, 0, checked.stdout)

    def test_there_is_a_picture_for_every_screenshot_that_software_centres_show(self):
        metainfo = (ROOT / "packaging/desktop/de.pixelhain.Pixelhain.metainfo.xml.in").read_text()
        names = re.findall(r"<image>@HOMEPAGE@/(.*)</image>", metainfo)
        self.assertTrue(names)
        for name in names:
            self.assertTrue((ROOT / "docs" / name).is_file(), name)

    def test_no_check_of_lintian_is_overridden(self):
        self.assertEqual([*ROOT.glob("debian/**/*lintian-overrides")], [])

    def test_it_can_be_installed_used_and_removed_on_a_machine(self):
        possible = self.with_mounts_of_its_own(MAY_HAVE_A_LAYER, self.folder("layer"))
        if possible.returncode != 0:
            self.skipTest(f"there is only the folder: {possible.stdout.strip()}")
        luggage = self.pack()
        self.passed(self.on_a_new_machine(luggage, "/usr/bin/python3", "-B", "/tmp/package/InstalledTest.py"))

    def on_a_new_machine(self, luggage, *command):
        return self.with_mounts_of_its_own(NEW_MACHINE, self.folder("machine"), luggage, ROOT, *command)

    def with_mounts_of_its_own(self, script, *arguments):
        namespaces = NAMESPACES if os.geteuid() == 0 else [*NAMESPACES, "--user", "--map-root-user"]
        return run(*namespaces, "bash", "-c", script, "bash", *arguments)

    def test_it_can_be_installed_used_and_removed_in_a_folder(self):
        machine, luggage = self.folder("folder"), self.pack()
        for name in ("info", "triggers", "updates"):
            (machine / "var/lib/dpkg" / name).mkdir(parents=True)
        (machine / "var/lib/dpkg/status").touch()
        self.passed(run("/usr/bin/python3", "-B", luggage / "InstalledTest.py",
                        env={**os.environ, "PIXELHAIN_MACHINE": str(machine)}))

    def passed(self, done):
        self.assertEqual(done.returncode, 0, done.stdout)
        self.assertRegex(done.stdout, r"Ran \d+ tests")

    def folder(self, name):
        folder = tempfile.TemporaryDirectory(prefix=f"pixelhain-{name}-")
        self.addCleanup(folder.cleanup)
        return pathlib.Path(folder.name)

    def pack(self):
        luggage = self.folder("package")
        shutil.copy(self.package, luggage / "pixelhain.deb")
        for file in (*HERE.glob("*.py"), *(ROOT / "tests/e2e").glob("*.py")):
            shutil.copy(file, luggage)
        subprocess.run([BUILT / "pixelhain-samples", "--percent", "10", luggage / "samples"], check=True)
        (luggage / "version").write_text(version())
        return luggage


class FlatpakTest(unittest.TestCase):
    # What the program is built with and the runtime has, by the names in CMakeLists.txt.
    RUNTIME = {"JPEG", "PNG", "ZLIB", "TIFF", "GIF", "ICU", "WEBP", "LCMS", "JXL", "PANGOCAIRO", "Qt6", "XCB",
               "FONTCONFIG", "Threads", "PkgConfig"}
    # What of the SDK runs while it is built; the first need not be there.
    PROGRAMS = {"ccache", "rsvg-convert"}
    MODULES = {"HEIF": "libheif", "RAW": "libraw", "OPENJPEG": "openjpeg", "OPENEXR": "openexr"}

    def setUp(self):
        file, = (ROOT / "packaging/flatpak").iterdir()
        self.manifest = yaml.safe_load(file.read_text())
        self.assertEqual(file.stem, self.manifest["id"])

    def modules(self, of=None):
        for module in (of or self.manifest)["modules"]:
            yield from self.modules(module) if "modules" in module else ()
            yield module

    def test_it_is_built_on_a_runtime_with_the_toolkit(self):
        self.assertEqual(self.manifest["runtime"], "org.kde.Platform")
        self.assertEqual(self.manifest["sdk"], "org.kde.Sdk")
        self.assertRegex(self.manifest["runtime-version"], r"^6\.\d+$")
        self.assertEqual(self.manifest["command"], "pixelhain")
        self.assertTrue((ROOT / f"packaging/desktop/{self.manifest['id']}.desktop.in").is_file())

    def test_it_brings_every_library_that_the_runtime_lacks(self):
        asked = re.findall(r"(?:find_package|pkg_check_modules)\((\w+)", (ROOT / "CMakeLists.txt").read_text())
        self.assertEqual(set(asked), self.RUNTIME | set(self.MODULES))
        names = [module["name"] for module in self.modules()]
        self.assertLessEqual(set(self.MODULES.values()), set(names))
        self.assertEqual(names[-1], "pixelhain")

    def test_it_needs_no_program_that_the_sdk_lacks(self):
        files = [ROOT / "CMakeLists.txt", *(ROOT / "cmake").glob("*.cmake"), *(ROOT / "packaging").rglob("CMakeLists.txt"),
                 *(ROOT / "src").rglob("CMakeLists.txt"), *(ROOT / "tools").rglob("CMakeLists.txt")]
        asked = [name for file in files for name in re.findall(r"find_program\(\w+ ([\w-]+)", file.read_text())]
        self.assertEqual(set(asked), self.PROGRAMS)

    def test_every_source_is_of_one_version_or_this_checkout(self):
        for module in self.modules():
            source = module["sources"][0]
            if module["name"] == "pixelhain":
                self.assertEqual((ROOT / "packaging/flatpak" / source["path"]).resolve(), ROOT)
            else:
                self.assertRegex(source["url"], "^https://.*[.]git$")
                self.assertRegex(source["tag"], r"^v?\d+(\.\d+)+$")

    def test_it_reaches_no_network(self):
        self.assertNotIn("--share=network", self.manifest["finish-args"])


if __name__ == "__main__":
    unittest.main()
