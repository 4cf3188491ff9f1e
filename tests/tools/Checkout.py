"""A checkout of nothing but the tools, with programs around them that only note how they are called."""
import os
import pathlib
import shutil
import stat
import subprocess
import tempfile

ROOT = pathlib.Path(__file__).resolve().parents[2]
NOBODY = 65534


class Checkout:
    def __init__(self, *tools):
        self.place = pathlib.Path(tempfile.mkdtemp(prefix="pixelhain tools ü "))
        self.place.chmod(0o777)
        self.root = self.place / "mein Pixelhain"
        self.bin = self.place / "bin"
        self.home = self.place / "home"
        self.log = self.place / "calls"
        for folder in (self.root / "tools", self.bin, self.home):
            folder.mkdir(parents=True)
            folder.chmod(0o777)
        self.root.chmod(0o777)
        self.log.touch()
        self.log.chmod(0o666)
        for tool in tools:
            shutil.copy(ROOT / "tools" / tool, self.root / "tools" / tool)

    def remove(self):
        shutil.rmtree(self.place)

    def write(self, name, text):
        path = self.root / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text, encoding="utf-8")
        return path

    def program(self, path, body="", answer=0):
        """An executable that notes its name and arguments, then does `body`."""
        path = pathlib.Path(path)
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(
            f'#!/bin/bash\n{{ printf "%s" "{path.name}"; printf " [%s]" "$@"; echo; }} >>"{self.log}"\n'
            f"{body}\nexit {answer}\n",
            encoding="utf-8",
        )
        path.chmod(path.stat().st_mode | stat.S_IXUSR | stat.S_IXGRP | stat.S_IXOTH)

    def command(self, name, body="", answer=0):
        self.program(self.bin / name, body, answer)

    def run(self, tool, *arguments, user=None, path=None, **environment):
        base = {
            "PATH": path or f"{self.bin}:/usr/bin:/bin",
            "HOME": str(self.home),
            "LC_ALL": "C.UTF-8",
        }
        base.update(environment)
        base = {name: value for name, value in base.items() if value is not None}
        return subprocess.run(
            [str(self.root / "tools" / tool), *arguments],
            env=base, cwd="/", user=user, text=True,
            stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
        )

    def calls(self, of=None):
        lines = self.log.read_text(encoding="utf-8").splitlines()
        return [line for line in lines if of is None or line.split(" ")[0] == of]


def is_root():
    return os.geteuid() == 0
