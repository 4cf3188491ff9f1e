"""What the documents say is there is there."""
import json
import re
import unittest

from Checkout import ROOT

DOCUMENTS = sorted([*ROOT.glob("*.md"), *ROOT.glob("docs/*.md")])
LINK = re.compile(r"!?\[[^\]]*\]\(([^)\s]+)\)")
PATH = re.compile(r"(?:src|tests|tools|docs|bench|fuzz|packaging|debian|cmake)/[\w./-]*\w")


def named(document):
    """What stands as code in a document, without its indented and fenced blocks."""
    return re.findall(r"`([^`\n]+)`", re.sub(r"```.*?```", "", document.read_text(), flags=re.S))


class DocumentsTest(unittest.TestCase):
    def test_no_link_is_dead(self):
        found = 0
        for document in DOCUMENTS:
            text = document.read_text()
            for target in LINK.findall(text):
                if re.match("[a-z]+:", target):
                    continue
                file, _, heading = target.partition("#")
                place = document.parent / file if file else document
                self.assertTrue(place.exists(), f"{document.name}: {target}")
                if heading:
                    headings = re.findall("^#+ (.*)$", place.read_text(), re.M)
                    anchors = [re.sub(r"[^\w -]", "", line.lower()).replace(" ", "-") for line in headings]
                    self.assertIn(heading, anchors, f"{document.name}: {target}")
                found += 1
        self.assertGreater(found, 10)

    def test_every_picture_is_shown(self):
        shown = {target for document in DOCUMENTS for target in LINK.findall(document.read_text())}
        for picture in ROOT.glob("docs/screenshots/*"):
            self.assertIn(str(picture.relative_to(ROOT)), shown)

    def test_every_path_that_is_named_exists(self):
        for document in DOCUMENTS:
            for words in named(document):
                for path in PATH.findall(words):
                    # One that begins within another word is another folder's: ~/src/…
                    if re.search(rf"(?<![\w/.-]){re.escape(path)}(?![\w*{{])", words):
                        self.assertTrue((ROOT / path).exists(), f"{document.name}: {words}")

    def test_every_type_that_the_architecture_names_exists(self):
        sources = "\n".join(file.read_text() for file in ROOT.glob("src/**/*.h"))
        types = set(re.findall(r"\b(?:class|struct|enum class|concept) (\w+)", sources))
        types |= {file.stem for file in ROOT.glob("src/**/*.h")}
        named_types = [word for word in named(ROOT / "docs/architecture.md") if re.fullmatch("[A-Z][a-z]\\w+", word)]
        self.assertGreater(len(named_types), 30)
        self.assertEqual([word for word in named_types if word not in types], [])

    def test_the_architecture_lists_every_folder(self):
        listing = re.search("```\n(.*?)```", (ROOT / "docs/architecture.md").read_text(), re.S)[1]
        rooms = re.findall(r"^  (\w+)/ ", listing, re.M)
        self.assertEqual(sorted(rooms), sorted(path.name for path in (ROOT / "src").iterdir() if path.is_dir()))
        folders = set(re.findall(r"^(\w+)/", listing, re.M))
        there = {path.name for path in ROOT.iterdir() if path.is_dir() and not path.name.startswith(".")}
        self.assertEqual(folders, there - {"build", "docs", "cmake"})

    def test_every_preset_is_explained(self):
        presets = json.loads((ROOT / "CMakePresets.json").read_text())["configurePresets"]
        table = re.findall(r"^\| `(\w+)` \|", (ROOT / "CONTRIBUTING.md").read_text(), re.M)
        self.assertEqual(sorted(table), sorted(preset["name"] for preset in presets if not preset.get("hidden")))

    def test_every_tool_is_explained(self):
        told = (ROOT / "CONTRIBUTING.md").read_text() + (ROOT / "README.md").read_text()
        for tool in (ROOT / "tools").iterdir():
            if tool.is_file():
                self.assertIn(f"tools/{tool.name}", told)


if __name__ == "__main__":
    unittest.main()
