"""A release is a tag with the version's name, on a commit that is what it says."""
import os
import subprocess
import unittest

from Checkout import Checkout

AUTHOR = {"GIT_CONFIG_GLOBAL": "/dev/null", "GIT_CONFIG_SYSTEM": "/dev/null"}
for role in ("AUTHOR", "COMMITTER"):
    AUTHOR |= {f"GIT_{role}_NAME": "Test", f"GIT_{role}_EMAIL": "test@localhost"}


class ReleaseTest(unittest.TestCase):
    def setUp(self):
        self.checkout = Checkout("release")
        self.addCleanup(self.checkout.remove)
        self.checkout.write("CMakeLists.txt", "project(Pixelhain VERSION 1.2.3 LANGUAGES CXX)\n")
        self.checkout.write("CHANGELOG.md", "# Changes\n\n## 1.2.3 (2026-01-02)\n\n- Nüsse\n\n"
                                            "## 1.2.2 (2026-01-01)\n\n- Äpfel\n")
        self.checkout.write("debian/changelog", "pixelhain (1.2.3) unstable; urgency=medium\n")
        self.git("init", "--quiet")
        self.commit()

    def git(self, *words):
        return subprocess.run(["git", *words], cwd=self.checkout.root, env={**os.environ, **AUTHOR}, check=True,
                              stdout=subprocess.PIPE, encoding="utf-8").stdout.strip()

    def commit(self):
        self.git("add", "--all")
        self.git("commit", "--quiet", "--allow-empty", "--message", "tests: Change")

    def release(self, *words):
        return self.checkout.run("release", *words, **AUTHOR)

    def assert_refused(self, reason):
        answer = self.release()
        self.assertEqual(answer.returncode, 1)
        self.assertIn(reason, answer.stderr)
        return answer

    def test_the_tag_has_the_version_and_tells_what_changed(self):
        answer = self.release()
        self.assertEqual((answer.returncode, answer.stdout), (0, "v1.2.3\n"))
        self.assertEqual(self.git("rev-parse", "v1.2.3^{commit}"), self.git("rev-parse", "HEAD"))
        told = self.git("tag", "--list", "--format=%(contents)", "v1.2.3")
        self.assertEqual(told, "Pixelhain 1.2.3\n\n- Nüsse")

    def test_a_second_time_changes_nothing(self):
        self.release()
        before = self.git("rev-parse", "v1.2.3")
        self.assertEqual(self.release().stdout, "v1.2.3 is this commit already\n")
        self.assertEqual(self.git("rev-parse", "v1.2.3"), before)

    def test_a_version_is_released_once(self):
        self.release()
        before = self.git("rev-parse", "v1.2.3")
        self.commit()
        self.assert_refused("v1.2.3 is another commit")
        self.assertEqual(self.git("rev-parse", "v1.2.3"), before)

    def test_what_is_not_committed_is_not_released(self):
        self.checkout.write("new file", "x")
        self.assert_refused("not committed")
        self.assertEqual(self.git("tag"), "")

    def test_all_places_tell_the_same_version(self):
        for name, text in {"CHANGELOG.md": "# Changes\n\n## 1.2.2 (2026-01-01)\n",
                           "debian/changelog": "pixelhain (1.2.2) unstable; urgency=medium\n"}.items():
            with self.subTest(name):
                before = (self.checkout.root / name).read_text(encoding="utf-8")
                self.checkout.write(name, text)
                self.commit()
                self.assert_refused(f"{name} begins with 1.2.2, the version is 1.2.3")
                self.assertEqual(self.git("tag"), "")
                self.checkout.write(name, before)

    def test_changes_without_a_version_are_not_released(self):
        log = self.checkout.root / "CHANGELOG.md"
        text = log.read_text(encoding="utf-8")
        self.checkout.write("CHANGELOG.md", text.replace("## 1.2.3", "## Unreleased\n\n- Mehr\n\n## 1.2.3"))
        self.commit()
        self.assert_refused("CHANGELOG.md begins with Unreleased")

    def test_it_takes_no_arguments(self):
        self.assertEqual(self.release("v2").returncode, 2)
        self.assertEqual(self.git("tag"), "")


if __name__ == "__main__":
    unittest.main()
