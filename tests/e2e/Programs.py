"""The built programs, and a sample folder that they are shown."""
import os
import pathlib
import shutil
import struct
import subprocess
import tempfile
import unittest
import zlib

BUILD = pathlib.Path(os.environ["PIXELHAIN_BUILD"])
GALLERY = """\
Alpenüberquerung, Tag 1 – Aufbruch.jpg
Alpenüberquerung, Tag 2 – Über den Grat.jpg
Alpenüberquerung, Tag 3 – Bergsee am Abend.jpg
Alpenüberquerung, Tag 3 – Bergsee am Morgen.jpg
Alpenüberquerung, Tag 4 – Wald im Nebel.jpg
Alpenüberquerung, Tag 5 – Gipfel.jpg
Astern (alt).tif
Ballonfahrt 1.jpg
Ballonfahrt 2.jpg
Ballonfahrt 3.jpg
Buchenwald.jpg
Dünen am Abend.jpg
Farbspiel.gif
Feuerwerk über der Bucht.jpg
Karte der Höhen.png
Lavendel im Juli.jpg
Leuchtturm am Darßer Ort.jpg
Leuchtturm, hochkant.jpg
Margeriten.jpg
Mohnfeld hinterm Zaun.jpg
Nordlicht über Þingvellir.jpg
Panorama vom Deich.jpg
Ringelblumen.jpg
Rosa Blüten.jpg
Segelboote.webp
Skyline 1.jpg
Sonnenblumen.jpg
Strand bei Ahrenshoop 01.jpg
Strand bei Ahrenshoop 02.jpg
Strand bei Ahrenshoop 03.jpg
Strand bei Ahrenshoop 10.jpg
Zeichen.png
""".splitlines()


class Programs(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.place = pathlib.Path(tempfile.mkdtemp(prefix="pixelhain e2e ü "))
        cls.addClassCleanup(shutil.rmtree, cls.place)
        cls.samples = cls.place / "samples"
        subprocess.run([BUILD / "pixelhain-samples", "--percent", "20", cls.samples], check=True)

    def run_program(self, program, *arguments, **environment):
        return subprocess.run(
            [BUILD / program, *arguments], text=True, timeout=100,
            env={**os.environ, "HOME": str(self.place), "LC_ALL": "C.UTF-8", **environment},
            stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE)

    def cli(self, *arguments):
        return self.run_program("pixelhain-cli", *arguments)


class Picture:
    """An 8-bit PNG without interlacing, as the program saves its window."""

    def __init__(self, file):
        data, at, packed = pathlib.Path(file).read_bytes(), 8, b""
        while at < len(data):
            length, kind = struct.unpack(">I4s", data[at:at + 8])
            body = data[at + 8:at + 8 + length]
            if kind == b"IHDR":
                self.width, self.height, depth, color, *_ = struct.unpack(">IIBBBBB", body)
            elif kind == b"IDAT":
                packed += body
            at += length + 12
        assert depth == 8 and color in (2, 6), (depth, color)
        self.channels = 3 if color == 2 else 4
        self.rows = list(self._unfiltered(zlib.decompress(packed)))

    def _unfiltered(self, data):
        step, length = self.channels, self.width * self.channels
        above = bytearray(length)
        for start in range(0, len(data), length + 1):
            filter_type, row = data[start], bytearray(data[start + 1:start + 1 + length])
            for at in range(length) if filter_type else ():
                left = row[at - step] if at >= step else 0
                corner = above[at - step] if at >= step else 0
                if filter_type == 1:
                    guess = left
                elif filter_type == 2:
                    guess = above[at]
                elif filter_type == 3:
                    guess = (left + above[at]) // 2
                else:
                    guess = min((left, above[at], corner), key=lambda near: abs(left + above[at] - corner - near))
                row[at] = (row[at] + guess) & 255
            above = row
            yield row

    def colorful_share(self):
        """The share of pixels that are no shade of grey."""
        colorful = 0
        for row in self.rows:
            for at in range(0, len(row), self.channels):
                pixel = row[at:at + 3]
                colorful += max(pixel) - min(pixel) > 40
        return colorful / (self.width * self.height)
