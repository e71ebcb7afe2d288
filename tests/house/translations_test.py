"""The shipped texts. Language files: each text that the code looks up and no other, within the format's
limits, marks kept, access keys without clashes; the reader of the sources and the translator's command."""
import pathlib
import sys
import tempfile
import unittest

import house

sys.path.insert(0, str(house.SOURCE / "tools"))
import languages  # noqa: E402

SHIPPED = house.SOURCE / "assets" / "shipped"
TRANSLATION = house.SOURCE / "tools" / "translation"


class Translations(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.want = languages.wanted(house.SOURCE)
        cls.files = {path.stem: languages.parse(path.read_text(encoding="utf-8"))
                     for path in sorted(SHIPPED.glob("*.qlt"))}

    def test_the_shipped_languages(self):
        self.assertEqual(list(self.files), ["Deutsch", "Español", "Français"])

    def test_every_lookup_is_understood(self):
        self.assertEqual(self.want.unknown, [])
        for where in (("FolderGroups", "ByField"), ("Status", "NewLanguageSelected"),  # its text is on two lines
                      ("OptionMenus", "AddPlayList"), ("Menus", "Extras"), ("PopUpMenu", "PlaySong"),
                      ("ItemType", "GenreFolders"), ("ColumnHeaders", "Denomination"), ("History", "BugFix"),
                      ("Preferences", "MP3Directory"), ("MP3Header", "Seconds"), ("TranslationInfo", "Title")):
            self.assertIn(where, self.want.texts)

    def test_each_file_has_every_text_and_no_other(self):
        for name, entries in self.files.items():
            self.assertEqual(languages.missing(entries, self.want.texts), [], name)
            self.assertEqual(languages.problems(entries, self.want), [], name)

    def test_names_are_spelled_as_in_the_code(self):
        for name, entries in self.files.items():
            self.assertEqual(set(entries) - languages.KEPT, set(self.want.texts) - languages.KEPT, name)

    def test_each_text_that_is_taken_out_is_missed(self):
        for name, entries in self.files.items():
            for where in self.want.texts:
                rest = {other: value for other, value in entries.items() if other != where}
                self.assertEqual(languages.missing(rest, self.want.texts), [where], name)

    def test_faults_are_seen(self):
        cases = ((("FolderGroups", "ByField"), "Von Feld", "must hold $Field$"),
                 (("FolderGroups", "ByField"), "Von $Field$ $Feld$", "must hold $Field$"),
                 (("Status", "FileNotThere"), "Nicht%0Ada", "%0A makes no line break here"),
                 (("Status", "FileNotThere"), "FileNotThere=Nicht da", "the key is there twice"),
                 (("Status", "FileNotThere"), "x" * 200, "has 200 characters, 199 are shown"),
                 (("Status", "FileNotThere"), "", "is empty, so that nothing is shown"),
                 (("Status", "FileNotThere"), "'so'", "the quotes around it are cut off"),
                 (("Status", "NoSuchKey"), "Text", "the program has no such text"),
                 (("OptionMenus", "FileInfo"), "&Info", "Alt+3 is cut off at its end"))
        for where, value, fault in cases:
            found = languages.problems({**self.files["Deutsch"], where: value}, self.want)
            self.assertEqual(found, [f"[{where[0]}] {where[1]}: {fault}"])

    def test_access_keys_that_clash_are_seen(self):
        for menu, places in self.want.menus.items():
            if len(places) < 2:
                continue
            (section, key), (_, other) = places[:2]
            entries = {**self.files["Deutsch"], (section, key): "&Übel     Alt+3", (section, other): "&übel"}
            self.assertIn(f"[{section}] {key} and [{section}] {other} have the same access key Ü in one menu ({menu})",
                          languages.problems(entries, self.want))


class Reader(unittest.TestCase):
    """What is read out of a source."""

    def read(self, text):
        with tempfile.TemporaryDirectory() as folder:
            pathlib.Path(folder, "a.cpp").write_text(text, encoding="utf-8")
            return languages.Wanted(folder)

    def test_lookups(self):
        cases = (
            ('x = GetLanguageText("One, (two", "Key", "Part");', {("Part", "Key"): "One, (two"}),
            ('x = GetLanguageText("One " // why\n "two \\"q\\"", "Key", "Part");', {("Part", "Key"): 'One two "q"'}),
            ('constexpr std::string_view kPart = "Part";\nx = GetLanguageText("One", "Key", kPart);',
             {("Part", "Key"): "One"}),
            ('x = GetLanguageText(f(a) ? "One" : "Two", f(a) ? "A" : "B", "Part");',
             {("Part", "A"): "One", ("Part", "B"): "Two"}),
            ('std::string Words(std::string_view text, std::string_view key)\n{\n'
             '    if (text.empty()) {\n        return "";\n    }\n'
             '    return GetLanguageText(text, key, "Part");\n}\nvoid F()\n{\n    Tell(Words("One", "Key"));\n}',
             {("Part", "Key"): "One"}),
            ('void F()\n{\n    const auto words = [](const char *text, const char *key) {\n'
             '        return GetLanguageText(text, key, "Part");\n    };\n    G(words("One", "Key"));\n}',
             {("Part", "Key"): "One"}),
            ('std::string Own(std::string_view key)\n{\n    return GetLanguageText(key, key, "Part");\n}\n'
             'void F()\n{\n    Own("One");\n}', {("Part", "One"): "One"}),
            ('constexpr ui::Caption kCaptions[] = {\n    {"", "Part", "Key", "One"},\n'
             '    {"cmdOk", "Part", "Ok", "{&Ok}", ui::Caption::Of::ToolTip},\n};',
             {("Part", "Key"): "One", ("Part", "Ok"): "{&Ok}"}),
        )
        for source, texts in cases:
            with self.subTest(source):
                want = self.read(source)
                self.assertEqual(want.unknown, [])
                self.assertEqual(want.texts, texts)

    def test_a_lookup_that_is_not_understood_is_named(self):
        want = self.read('void F()\n{\n    x = GetLanguageText("One", table[i].key, "Part");\n}')
        self.assertEqual(want.unknown, ['a.cpp: "One", table[i].key, "Part"'])


class Command(unittest.TestCase):
    """tools/translation, from nothing to a file that is complete."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.file = pathlib.Path(folder.name, "Italiano.qlt")

    def run_it(self, word, status):
        done = house.run(sys.executable, "-B", TRANSLATION, word, self.file)
        self.assertEqual(done.returncode, status, done.stdout + done.stderr)
        return done.stdout + done.stderr

    def test_from_an_empty_file_to_a_finished_one(self):
        count = len(languages.wanted(house.SOURCE).texts)
        self.assertEqual(self.run_it("new", 0), f"{self.file}: {count} texts to translate\n")
        self.assertIn("File exists", self.run_it("new", 2))
        lines = self.run_it("missing", 1).splitlines()
        self.assertEqual(len(lines), count + 1)
        self.assertIn(f"{self.file}: [Menus] File=&File", lines)
        self.run_it("check", 0)

        text = self.file.read_text(encoding="utf-8")
        self.file.write_text(text.replace("\n;", "\n"), encoding="utf-8")
        self.assertEqual(self.run_it("missing", 0), f"{self.file}: {count} of {count} texts are there\n")
        self.assertIn("have the same access key T", self.run_it("check", 1))  # the English Tutorials and Tips

        done = self.file.read_text(encoding="utf-8").replace("=Online &Tutorials", "=&Online Tutorials")
        self.file.write_text(done, encoding="utf-8")
        self.assertEqual(self.run_it("check", 0), f"{self.file}: 0 faults\n")

    def test_what_is_no_language_file_is_refused(self):
        for content, words in ((b"Key=Text\n", "neither a section nor Name=Text"),
                               (b"[Menus]\nFile=a\nfile=b\n", "comes twice"),
                               (b"[Menus]\nFile=\xe4\n", "is not UTF-8")):
            self.file.write_bytes(content)
            self.assertIn(words, self.run_it("missing", 2))


class Tips(unittest.TestCase):
    def test_one_tip_a_line(self):
        lines = (SHIPPED / "TIPOFDAY.TXT").read_bytes().decode("ascii").splitlines()
        self.assertGreaterEqual(len(lines), 40)
        self.assertEqual(len(set(lines)), len(lines))
        for line in lines:
            self.assertTrue(line.startswith("... that ") and len(line) <= 200, line)


if __name__ == "__main__":
    unittest.main()
