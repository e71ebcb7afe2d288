"""The files for the desktop: valid by its own validators, and with the contents that they should have."""
import configparser
import os
import pathlib
import re
import shutil
import tempfile
import unittest
import xml.etree.ElementTree as ElementTree

import house

MADE = house.BUILD / "desktop"
MIME = "{http://www.freedesktop.org/standards/shared-mime-info}"


def entry(name):
    parser = configparser.RawConfigParser(delimiters="=", interpolation=None)
    parser.optionxform = str
    parser.read(MADE / name, encoding="utf-8")
    return parser["Desktop Entry"]


class Validators(unittest.TestCase):
    def passes(self, *command, quiet=True, **options):
        done = house.run(*command, **options)
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)
        if quiet:
            self.assertEqual(done.stdout + done.stderr, "")

    def test_desktop_entries(self):
        entries = sorted(MADE.glob("*.desktop"))
        self.assertEqual(len(entries), 2)
        self.passes("desktop-file-validate", "--warn-kde", *entries)

    def test_metainfo(self):
        self.passes("appstreamcli", "validate", "--no-net", MADE / f"{house.ID}.metainfo.xml", quiet=False)

    def test_the_releases_are_those_of_the_change_log(self):
        root = ElementTree.parse(MADE / f"{house.ID}.metainfo.xml").getroot()
        releases = [(release.get("version"), release.get("date")) for release in root.iter("release")]
        log = (house.SOURCE / "CHANGELOG.md").read_text(encoding="utf-8")
        self.assertEqual(re.findall(r"^## (\S+) - (\S+)$", log, re.MULTILINE), releases)
        self.assertGreaterEqual(len(releases), 1)

    def test_manual(self):
        self.passes("man", "--warnings=w", "-E", "UTF-8", "-l", "-Tutf8", MADE / "quenlin.1", quiet=False)
        done = house.run("man", "--warnings=w", "-E", "UTF-8", "-l", "-Tutf8", "-Z", MADE / "quenlin.1")
        self.assertEqual(done.stderr, "")

    def test_xml(self):
        self.passes("xmllint", "--noout", *sorted(MADE.glob("*.xml")))
        pictures = sorted((house.SOURCE / "assets").glob("**/*.svg"))
        self.assertGreater(len(pictures), 60)
        self.passes("xmllint", "--noout", *pictures)

    def test_copyright_is_the_licence(self):
        licence = (house.SOURCE / "LICENSE").read_text().split("\n\n", 2)[2]
        in_package = (house.SOURCE / "assets" / "desktop" / "copyright").read_text()
        for line in licence.splitlines():
            self.assertIn(line, in_package)


class MimeDatabase(unittest.TestCase):
    def test_both_types_are_kinds_of_plain_text(self):
        with tempfile.TemporaryDirectory() as folder:
            database = pathlib.Path(folder) / "mime"
            (database / "packages").mkdir(parents=True)
            shutil.copy(MADE / f"{house.ID}.xml", database / "packages")
            done = house.run("update-mime-database", database, env={**os.environ, "XDG_DATA_HOME": folder})
            self.assertEqual((done.returncode, done.stderr), (0, ""))
            globs = (database / "globs").read_text()
            kinds = (database / "subclasses").read_text()
        for pattern in ("*.qlt", "*.qrp"):
            lines = [line for line in globs.splitlines() if line.endswith(":" + pattern)]
            self.assertEqual(len(lines), 1, pattern)
            self.assertIn(lines[0].split(":")[0] + " text/plain", kinds)

    def test_names_and_descriptions(self):
        root = ElementTree.parse(MADE / f"{house.ID}.xml").getroot()
        self.assertEqual([kind.get("type") for kind in root],
                         ["application/x-quenlin-languagefile", "application/x-quenlin-integrityreport"])
        comments = [kind.find(MIME + "comment").text for kind in root]
        self.assertEqual(comments, ["Quenlin Language File", "Quenlin Integrity Report"])


class Entries(unittest.TestCase):
    def test_the_main_entry_takes_no_files(self):
        main = entry(f"{house.ID}.desktop")
        self.assertEqual(main["Exec"], "quenlin")
        self.assertNotIn("MimeType", main)
        self.assertEqual(main["Icon"], house.ID)

    def test_the_hidden_entry_runs_the_batch(self):
        add = entry(f"{house.ID}.Add.desktop")
        self.assertEqual((add["Name"], add["Exec"], add["MimeType"], add["NoDisplay"]),
                         ("Add to Quenlin", "quenlin %F", "audio/mpeg;", "true"))

    def test_one_id_for_all(self):
        root = ElementTree.parse(MADE / f"{house.ID}.metainfo.xml").getroot()
        self.assertEqual(root.find("id").text, house.ID)
        self.assertEqual(root.find("launchable").text, house.ID + ".desktop")
        self.assertEqual(root.find("icon").text, house.ID)
        header = (house.SOURCE / "platform" / "appid.h").read_text()
        self.assertIn(f'kApplicationId = "{house.ID}"', header)


if __name__ == "__main__":
    unittest.main()
