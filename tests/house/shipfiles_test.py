"""A build copies what ships beside the program; what the user changed there is kept."""
import pathlib
import tempfile
import unittest

import house


class ShipFiles(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        root = pathlib.Path(folder.name)
        self.source, self.target, self.kept = root / "a source", root / "bin", root / "kept"
        self.source.mkdir()
        (self.source / "Español.qlt").write_text("one")

    def ship(self):
        done = house.run("cmake", "-D", f"SOURCE={self.source}", "-D", f"TARGET={self.target}",
                         "-D", f"KEPT={self.kept}", "-P", house.SOURCE / "cmake" / "ShipFiles.cmake")
        self.assertEqual(done.returncode, 0, done.stderr)

    def shipped(self):
        return (self.target / "Español.qlt").read_text()

    def test_copies_and_marks_the_folder(self):
        self.ship()
        self.assertEqual(self.shipped(), "one")
        self.assertTrue((self.target / "portable").is_file())

    def test_a_new_version_replaces_the_old_one(self):
        self.ship()
        (self.source / "Español.qlt").write_text("two")
        self.ship()
        self.assertEqual(self.shipped(), "two")

    def test_a_changed_file_stays_for_good(self):
        self.ship()
        (self.target / "Español.qlt").write_text("mine")
        for text in ("one", "two", "three"):
            (self.source / "Español.qlt").write_text(text)
            self.ship()
            self.assertEqual(self.shipped(), "mine")

    def test_a_file_of_the_user_s_own_stays(self):
        self.target.mkdir()
        (self.target / "Español.qlt").write_text("mine")
        (self.target / "portable").write_text("mine")
        self.ship()
        self.ship()
        self.assertEqual(self.shipped(), "mine")
        self.assertEqual((self.target / "portable").read_text(), "mine")


if __name__ == "__main__":
    unittest.main()
