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
        """No headers, further libraries or test programs slip in."""
        files = [path.relative_to(self.prefix) for path in self.prefix.rglob("*") if path.is_file()]
        self.assertEqual({str(path) for path in files if path.parts[0] != "share"},
                         {"bin/quenlin"} | ({"lib/quenlin/quenlin-windows.so"} if WITH_WINDOWS else set()))
        self.assertIn("share", {path.parts[0] for path in files})

    @unittest.skipUnless(WITH_WINDOWS, "built without windows")
    def test_the_installed_program_finds_its_windows(self):
        """With the one of the build folder out of reach; the display is one that nobody has."""
        env = {"PATH": os.environ["PATH"], "HOME": str(self.prefix.parent), "DISPLAY": ":4711", "QT_QPA_PLATFORM": "xcb"}
        program = self.prefix / "bin" / "quenlin"
        opened = house.run(program, env=env)
        self.assertEqual(opened.returncode, 1)
        self.assertIn("display", opened.stderr)
        library = self.prefix / "lib" / "quenlin" / "quenlin-windows.so"
        library.rename(library.with_suffix(".gone"))
        self.addCleanup(library.with_suffix(".gone").rename, library)
        missing = house.run(program, env=env)
        self.assertEqual(missing.returncode, 1)
        self.assertIn("the windows cannot be loaded", missing.stderr)

    def test_a_start_in_the_terminal_loads_no_toolkit(self):
        loaded = house.run(self.prefix / "bin" / "quenlin", "--version",
                           env={"PATH": os.environ["PATH"], "HOME": str(self.prefix.parent), "LD_DEBUG": "files"})
        self.assertEqual(loaded.returncode, 0)
        self.assertIn("libsqlite3", loaded.stderr)
        self.assertNotIn("Qt", loaded.stderr)


if __name__ == "__main__":
    unittest.main()
