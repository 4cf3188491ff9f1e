"""pixelhain-cli over the sample pictures, as a script would use it."""
import unittest

from Programs import BUILD, GALLERY, Programs


class CommandLineTest(Programs):
    def table(self, *arguments, code=0):
        result = self.cli(*arguments)
        self.assertEqual(result.returncode, code, result.stderr)
        return [line.split("\t") for line in result.stdout.splitlines()]

    def test_the_version_is_told(self):
        self.assertRegex(self.cli("--version").stdout, r"^pixelhain-cli \d+\.\d+\.\d+\n$")

    def test_no_program_loads_at_its_start_what_only_pdf_files_need(self):
        for program in filter(lambda name: (BUILD / name).exists(), ("pixelhain", "pixelhain-cli")):
            loaded = self.run_program(program, LD_TRACE_LOADED_OBJECTS="1").stdout
            self.assertIn("libstdc++", loaded)
            self.assertNotRegex(loaded, "libcairo|libpango|libgio")

    def test_list_prints_the_gallery_in_natural_order(self):
        result = self.cli("list", self.samples)
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertEqual(result.stdout.splitlines(), [f"{self.samples}/{name}" for name in GALLERY])

    def test_list_goes_into_subfolders_when_asked_to(self):
        result = self.cli("list", "--recursive", "-0", self.samples)
        paths = result.stdout.split("\0")
        self.assertEqual(paths.pop(), "")
        self.assertEqual(len(paths), 45)
        self.assertIn(f"{self.samples}/Städte bei Nacht/Silvester/Feuerwerk.bmp", paths)
        skyline = [path.rsplit("/", 1)[1] for path in paths if "Skyline" in path]
        self.assertEqual(skyline, ["Skyline 1.jpg", "Skyline 2.jpg", "Skyline 11.jpg"])

    def test_list_filters_and_turns_the_order_round(self):
        result = self.cli("list", "--filter", "STRAND", "--descending", self.samples)
        names = [line.rsplit("/", 1)[1] for line in result.stdout.splitlines()]
        self.assertEqual(names, [f"Strand bei Ahrenshoop {n}.jpg" for n in ("10", "03", "02", "01")])

    def test_meta_tells_upright_sizes_and_animations(self):
        files = ["Strand bei Ahrenshoop 03.jpg", "Farbspiel.gif", "Karte der Höhen.png", "Zeichen.png"]
        table = self.table("meta", *[self.samples / name for name in files])
        self.assertEqual([row[1:] for row in table], [
            ["240", "320", "still"], ["96", "64", "animated"], ["240", "180", "still"], ["200", "200", "still"]])

    def test_info_prints_what_is_known_with_an_empty_line_between_files(self):
        result = self.cli("info", self.samples / "Strand bei Ahrenshoop 03.jpg", self.samples / "Zeichen.png")
        self.assertEqual(result.returncode, 0, result.stderr)
        photo, drawing = [text.splitlines() for text in result.stdout.split("\n\n")]
        self.assertEqual(photo[0], "Strand bei Ahrenshoop 03.jpg")
        self.assertRegex(photo[1], r"^320 × 240 px \(0\.1 MP\) · \d+ KB$")  # as stored, not upright
        self.assertEqual(drawing[0], "Zeichen.png")
        self.assertRegex(drawing[1], r"^200 × 200 px \(0\.0 MP\) · [\d,]+ (Byte|KB)$")
        self.assertRegex(drawing[2], r"^Geändert: \d\d\.\d\d\.\d{4}, \d\d:\d\d$")

    def test_thumbnails_come_from_previews_where_they_are_large_enough(self):
        files = [self.samples / "Rosa Blüten.jpg", self.samples / "Zeichen.png"]
        table = self.table("thumbnail", "--size", "128", "--jobs", "2", "--output", self.place, *files)
        self.assertEqual([row[1:] for row in table], [["128", "128", "embedded"], ["128", "128", "full"]])
        self.assertEqual(self.table("meta", self.place / "Rosa Blüten.jpg.png")[0][1:], ["128", "128", "still"])

    def test_every_sample_gives_a_thumbnail(self):
        paths = self.cli("list", "--recursive", self.samples).stdout.splitlines()
        table = self.table("thumbnail", "--size", "64", *paths)
        self.assertEqual([row[0] for row in table], paths)
        self.assertEqual({max(int(row[1]), int(row[2])) for row in table}, {64})

    def test_a_file_that_fails_is_named_and_the_others_are_done(self):
        good, bad = self.samples / "Margeriten.jpg", self.samples / "fehlt.jpg"
        result = self.cli("thumbnail", "--size", "64", bad, good)
        self.assertEqual(result.returncode, 1)
        self.assertIn(str(bad), result.stderr)
        self.assertIn(str(good), result.stdout)

    def test_a_wrong_call_ends_with_2(self):
        for arguments in ([], ["thumbnail", self.samples], ["list", "--sort", "color", self.samples], ["show"]):
            with self.subTest(arguments):
                self.assertEqual(self.cli(*arguments).returncode, 2)


if __name__ == "__main__":
    unittest.main()
