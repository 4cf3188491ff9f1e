"""Manuals and completions beside the options that the programs themselves say they take."""
import os
import pathlib
import re
import subprocess
import unittest

BUILD = pathlib.Path(os.environ["PIXELHAIN_BUILD"])
MADE = BUILD / "packaging"
LANGUAGES = "en", "de"
OPTION = r"(?<![\w-])(--?\w[\w-]*)"


def said(program, *words):
    done = subprocess.run(
        [BUILD / program, *words], check=True, text=True, timeout=60, stdin=subprocess.DEVNULL,
        stdout=subprocess.PIPE, env={**os.environ, "LC_ALL": "C.UTF-8", "QT_QPA_PLATFORM": "offscreen"})
    return done.stdout


def made(name):
    return (MADE / name).read_text()


def manual(language, program):
    return made(f"man/{language}/{program}.1").replace("\\-", "-")


def between(text, start, end):
    """What follows the line that begins with `start`, up to the next that matches `end`."""
    _, begin, rest = text.partition(f"\n{start}\n")
    assert begin, f"no {start}"
    return re.split(end, rest, maxsplit=1, flags=re.M)[0]


def described(section):
    """The options that paragraphs of a manual are about, and whether they take a value."""
    found = {}
    for font, words in re.findall(r"^\.TP\n\.(B|BI|BR) (.*)$", section, re.M):
        found.update({name: font == "BI" for name in re.findall(OPTION, words)})
    return found


def offered_by_zsh(block):
    """As `described`, of the arguments of zsh's _arguments."""
    found = {}
    for alternatives, one, rest in re.findall(r"^\s*(?:_arguments )?'(?:\(.*?\)'?)?(?:\{(.*?)\}')?(-[\w-]*)?\[.*?\](.*)", block, re.M):
        found.update({name: rest.startswith(":") for name in re.findall(OPTION, alternatives or one)})
    return found


class CommandsTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        overview = said("pixelhain-cli", "--help")
        cls.summaries = dict(re.findall(r"^  ([\w-]+)  +(.*)\.$", overview, re.M))
        cls.helps = {name: said("pixelhain-cli", name, "--help") for name in cls.summaries}
        cls.options = {name: cls.in_usage(text) for name, text in cls.helps.items()}
        assert len(cls.options) > 4 and cls.options["list"]["--sort"] and not cls.options["list"]["-0"]

    @staticmethod
    def in_usage(text):
        line = text.splitlines()[0]
        return {name: bool(value) for name, value in re.findall(OPTION + r"(?: ([^\]\s]+))?", line)}

    def test_the_help_of_a_command_describes_the_options_of_its_usage(self):
        for name, text in self.helps.items():
            found = dict(re.findall(r"^  (--?[\w-]+) ([A-Z]*) ", text, re.M))
            self.assertEqual({option: bool(value) for option, value in found.items()}, self.options[name], name)

    def test_manuals_describe_them(self):
        for language in LANGUAGES:
            page = manual(language, "pixelhain-cli")
            for name, options in self.options.items():
                section = between(page, f".SS {name}", r"^\.S[HS]")
                self.assertEqual(described(section), options, f"{language} {name}")

    def test_manuals_list_them_in_their_synopsis(self):
        for language in LANGUAGES:
            page = manual(language, "pixelhain-cli")
            for name, options in self.options.items():
                usage = re.search(rf"^\.B pixelhain-cli ({name}\b.*?)^\.br$", page, re.M | re.S)[1]
                self.assertEqual(set(re.findall(r"(?<=[ \[])--?\w[\w-]*", usage)), set(options), f"{language} {name}")

    def test_bash_offers_them(self):
        script = made("completions/pixelhain-cli")
        for name, options in self.options.items():
            line = re.search(rf"^ +(?:[\w-]+ \| )*{name}(?: \| [\w-]+)*\) echo '(.*)'", script, re.M)[1]
            self.assertEqual(set(line.split()), {*options, "--help"}, name)
            values = set(re.findall(rf"\b{name}\.(--?[\w-]+)", script))
            self.assertEqual(values, {option for option, value in options.items() if value}, name)

    def test_zsh_offers_them(self):
        script = made("completions/_pixelhain-cli")
        for name, options in self.options.items():
            block = re.search(rf"^ +(?:[\w-]+ \| )*{name}(?: \| [\w-]+)*\)(.*?);;", script, re.M | re.S)[1]
            found = offered_by_zsh(block.replace("_arguments '", "_arguments \\\n'"))
            self.assertEqual(found, {**options, "--help": False}, name)

    def test_all_of_them_know_all_commands(self):
        names = list(self.summaries)
        self.assertIn(f"echo '{' '.join(names)} --help --version'", made("completions/pixelhain-cli"))
        self.assertEqual(re.findall("^    '([a-z-]+):", made("completions/_pixelhain-cli"), re.M), names)
        for language in LANGUAGES:
            self.assertEqual(re.findall(r"^\.SS (.*)$", manual(language, "pixelhain-cli"), re.M), names)


@unittest.skipUnless((BUILD / "pixelhain").exists(), "built without the toolkit")
class WindowProgramTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        told = re.findall(r"^  (--[\w-]+)( [A-Z]+)?  ", said("pixelhain", "--help"), re.M)
        cls.options = {"-h": False, **{name: bool(value) for name, value in told}}
        assert cls.options["--screenshot"] and not cls.options["--help"]

    def test_manuals_describe_its_options(self):
        for language, heading in (("en", "OPTIONS"), ("de", "OPTIONEN")):
            section = between(manual(language, "pixelhain"), f".SH {heading}", r"^\.SH")
            self.assertEqual(described(section), self.options, language)

    def test_manuals_name_what_it_writes_by_itself(self):
        source = pathlib.Path(__file__).resolve().parents[2] / "src/qt/app/SingleInstance.cpp"
        lock, = re.findall(r'"/([\w.]+\.lock)"', source.read_text())
        for language, heading in (("en", "FILES"), ("de", "DATEIEN")):
            section = between(manual(language, "pixelhain"), f".SH {heading}", r"^\.SH")
            self.assertEqual(re.findall(r"^\.I (\$.*)$", section, re.M),
                             ["$XDG_CONFIG_HOME/pixelhain/pixelhain.ini", f"$XDG_RUNTIME_DIR/{lock}"], language)

    def test_bash_offers_them(self):
        words = re.search("compgen -W '(.*)'", made("completions/pixelhain"))[1].split()
        self.assertEqual(set(words), set(self.options) - {"-h"})

    def test_zsh_offers_them(self):
        self.assertEqual(offered_by_zsh(made("completions/_pixelhain")), self.options)


if __name__ == "__main__":
    unittest.main()
