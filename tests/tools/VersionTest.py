"""The places that name the version name the same."""
import re
import unittest

from Checkout import ROOT


def read(name):
    return (ROOT / name).read_text(encoding="utf-8")


class VersionTest(unittest.TestCase):
    def setUp(self):
        self.version = re.search(r"^project\(\w+ VERSION (\S+)", read("CMakeLists.txt"), re.M)[1]

    def test_the_change_log_begins_with_it(self):
        newest = re.search(r"^## (\S+) \(\d{4}-\d\d-\d\d\)$", read("CHANGELOG.md"), re.M)
        self.assertEqual(newest[1], self.version)

    def test_the_package_has_it(self):
        self.assertEqual(re.match(r"pixelhain \((\S+)\)", read("debian/changelog"))[1], self.version)


if __name__ == "__main__":
    unittest.main()
