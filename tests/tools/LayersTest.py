"""Which includes tools/check-layers refuses."""
import subprocess
import sys
import unittest

from Checkout import ROOT, Checkout


class LayersTest(unittest.TestCase):
    def setUp(self):
        self.checkout = Checkout()
        self.addCleanup(self.checkout.remove)

    def problems(self, name, *includes):
        self.checkout.write(f"src/{name}", "".join(f"#include {include}\n" for include in includes))
        return subprocess.run(
            [sys.executable, ROOT / "tools/check-layers", self.checkout.root],
            text=True, stdout=subprocess.PIPE,
        ).stdout.splitlines()

    def test_a_room_may_include_what_lies_below_it(self):
        self.assertEqual(self.problems("model/A.cpp", '"base/Text.h"', '"images/ImageLoader.h"', "<vector>"), [])

    def test_a_room_may_not_include_what_lies_above_it(self):
        self.assertEqual(self.problems("base/A.cpp", '"model/BrowserModel.h"'),
                         ['src/base/A.cpp:1: base/ may not include model/: "model/BrowserModel.h"'])

    def test_only_the_toolkit_room_includes_the_toolkit(self):
        self.assertEqual(len(self.problems("window/A.cpp", "<QString>")), 1)
        (self.checkout.root / "src/window/A.cpp").unlink()
        self.assertEqual(self.problems("qt/window/A.cpp", "<QString>"), [])

    def test_a_gate_is_open_for_its_header_only(self):
        self.assertEqual(len(self.problems("images/A.cpp", '"model/PhotoItem.h"', '"model/SortKey.h"')), 1)

    def test_nobody_includes_the_programs(self):
        self.assertEqual(len(self.problems("qt/A.cpp", '"cli/Output.h"')), 1)

    def test_an_include_names_its_room(self):
        self.assertEqual(len(self.problems("base/A.cpp", '"Text.h"')), 1)

    def test_a_source_begins_with_its_own_header(self):
        self.checkout.write("src/base/A.h", "")
        self.assertEqual(self.problems("base/A.cpp", "<vector>", '"base/A.h"'),
                         ['src/base/A.cpp:1: the first include is not "base/A.h"'])
        self.assertEqual(self.problems("base/A.cpp", '"base/A.h"', "<vector>"), [])


if __name__ == "__main__":
    unittest.main()
