"""The installation: every file in its place, the program found and running from there."""
import os
import pathlib
import tempfile
import unittest

import house

WITH_WINDOWS = (house.BUILD / "libquenlin_windows.a").exists()


class Install(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.prefix = pathlib.Path(folder.name) / "usr"
        cls.done = house.run("cmake", "--install", house.BUILD, "--prefix", cls.prefix)

    def test_it_installs(self):
        self.assertEqual(self.done.returncode, 0, self.done.stdout + self.done.stderr)

    def test_every_file_in_its_place(self):
        share = self.prefix / "share"
        wanted = ["man/man1/quenlin.1.gz", "doc/quenlin/copyright", f"mime/packages/{house.ID}.xml",
                  f"applications/{house.ID}.Add.desktop", f"icons/hicolor/scalable/apps/{house.ID}.svg",
                  f"icons/hicolor/16x16/apps/{house.ID}.png", f"icons/hicolor/256x256/apps/{house.ID}.png",
                  "quenlin/TIPOFDAY.TXT", "quenlin/Brandolet.hlp", "quenlin/Deutsch.qlt", "quenlin/Español.qlt",
                  "quenlin/Français.qlt", "quenlin/Deutsch.hlp", "quenlin/Español.hlp", "quenlin/Français.hlp"]
        if WITH_WINDOWS:
            wanted += [f"applications/{house.ID}.desktop", f"metainfo/{house.ID}.metainfo.xml"]
        for name in wanted:
            self.assertTrue((share / name).is_file(), name)
        self.assertTrue(os.access(self.prefix / "bin" / "quenlin", os.X_OK))

    def test_the_catalogue_is_installed_untouched(self):
        """The build leaves a fresh catalogue at share/quenlin/, apart from the one in use in bin/."""
        installed = self.prefix / "share" / "quenlin" / "MP3s.mdb"
        self.assertTrue(installed.is_file(), "MP3s.mdb is missing from the installation")
        self.assertEqual([p.name for p in installed.parent.glob("MP3s.mdb-*")], [])
        count = house.run("sqlite3", f"file:{installed}?mode=ro&immutable=1",
                          "SELECT (SELECT COUNT(*) FROM MP3s) || ' ' || Version FROM Validations")
        self.assertEqual(count.stdout.strip(), "0 1.6.6", count.stderr)

    def test_an_installed_folder_is_not_portable(self):
        self.assertEqual([str(p) for p in self.prefix.rglob("portable")], [])

    def test_only_what_belongs_there(self):
        """No headers, libraries or test programs slip in."""
        places = {path.relative_to(self.prefix).parts[0] for path in self.prefix.rglob("*") if path.is_file()}
        self.assertEqual(places, {"bin", "share"})
        self.assertEqual([p.name for p in (self.prefix / "bin").iterdir()], ["quenlin"])


if __name__ == "__main__":
    unittest.main()
