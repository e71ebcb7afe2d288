"""The shipped texts. Language files: complete, alike, within the format's limits, keys without clashes."""
import html.parser
import re
import unittest

import house

SHIPPED = house.SOURCE / "assets" / "shipped"
LONGEST = 199  # characters the reader gives of a value

# The entries of each menu, whose access keys must differ.
MENUS = {
    "File": ["AddFile", "TagEditor", "FileInfo", "DuplicateEntry", "Rename", "Export", "PlayList", "Exit"],
    "PlayList": ["AddPlayList", "RemovePlayList"],
    "Tools": ["ShowLyricsCurrentSong", "SongControls", "RegenerateDatabase", "RefreshTree", "Search",
              "WebStyle", "Preferences", "NewerVersion"],
    "Help": ["ShowHelp", "TechSupport", "Forums", "Tutorials", "Tips", "SetLanguage", "About"],
}
MARKS = {("Status", "TooLittleRoom"): ["$Folder$", "$Needed$", "$Free$"],
         ("TagEditor", "NotInCodePage"): ["$Characters$"],
         ("FolderGroups", "ByField"): ["$Field$"], ("Progress", "AddingInformation"): ["$Field$"],
         ("Messages", "RemovableDiskNotReady"): ["$DiskType$", "$Label$"]}
WITH_LINE_BREAKS = {("Messages", key) for key in ("NewerVersionAvailableWannaSeeInfo", "EmailError", "NoInfoTyped")}
LOOKUP = re.compile(r'GetLanguageText\(\s*(?:"(?:[^"\\]|\\.)*"\s*)+,\s*"([^"]+)"\s*,\s*"([^"]+)"\s*\)')


def parse(text):
    """{(section, key): value}; a key that comes twice is an error."""
    entries, section = {}, None
    for number, line in enumerate(text.splitlines(), 1):
        if not line or line.startswith(";"):
            continue
        if line.startswith("["):
            section = line.strip("[]")
            continue
        key, equals, value = line.partition("=")
        assert equals and section, f"line {number} is neither section nor entry"
        assert (section, key) not in entries, f"line {number}: {key} comes twice"
        entries[section, key] = value
    return entries


def access_key(caption):
    at = caption.find("&")
    return caption[at + 1].upper() if at >= 0 else None


class Translations(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.files = {path.name: parse(path.read_text(encoding="utf-8")) for path in SHIPPED.glob("*.qlt")}

    def test_all_have_the_same_keys(self):
        self.assertGreaterEqual(len(self.files), 2)
        first = next(iter(self.files.values()))
        self.assertEqual(len({section for section, _ in first}), 30)
        for name, entries in self.files.items():
            self.assertEqual(set(entries) ^ set(first), set(), name)

    def test_values_survive_the_reader(self):
        for name, entries in self.files.items():
            for where, value in entries.items():
                with self.subTest(f"{name} {where}"):
                    self.assertNotEqual(value, "")
                    self.assertEqual(value, value.strip(" \t"))
                    self.assertLessEqual(len(value), LONGEST)
                    self.assertFalse(value[0] in "\"'" and value[0] == value[-1], "quotes would be cut")
                    for mark in MARKS.get(where, []):
                        self.assertIn(mark, value)
                    if where not in WITH_LINE_BREAKS:
                        self.assertNotIn("%0A", value)

    def test_access_keys_differ(self):
        for name, entries in self.files.items():
            groups = [[entries["OptionMenus", key] for key in keys] for keys in MENUS.values()]
            groups.append([value for (section, _), value in entries.items() if section == "Menus"])
            groups.append([value for (section, _), value in entries.items() if section == "PopUpMenu"])
            groups.append([entries["Preferences", key] for key in ("OkButton", "CancelButton", "ApplyButton")])
            for group in groups:
                keys = [access_key(caption) for caption in group if access_key(caption)]
                self.assertEqual(sorted(set(keys)), sorted(keys), f"{name}: {group}")

    def test_shortcuts_stay_in_the_caption(self):
        for name, entries in self.files.items():
            self.assertTrue(entries["OptionMenus", "FileInfo"].endswith("Alt+3"), name)

    def test_what_the_code_looks_up_is_translated(self):
        found = set()
        for path in house.sources(".cpp"):
            if path.parts[0] != "tests":
                text = (house.SOURCE / path).read_text(encoding="utf-8")
                found |= {(section, key) for key, section in LOOKUP.findall(text)}
        self.assertIn(("FolderGroups", "ByField"), found)
        self.assertIn(("Status", "NewLanguageSelected"), found)  # its text stands on two lines
        for name, entries in self.files.items():
            known = {(section.lower(), key.lower()) for section, key in entries}
            missing = [where for where in found if (where[0].lower(), where[1].lower()) not in known]
            self.assertEqual(missing, [], name)


class Help(html.parser.HTMLParser):
    """Collects what the help's contents point at, and what stands there to be pointed at."""

    def __init__(self):
        super().__init__()
        self.wanted, self.there = [], []

    def handle_starttag(self, tag, attrs):
        attributes = dict(attrs)
        if tag == "a":
            self.wanted += [attributes["href"]] if "href" in attributes else []
            self.there += ["#" + attributes["name"]] if "name" in attributes else []


class HelpFile(unittest.TestCase):
    def test_every_entry_of_the_contents_has_its_chapter(self):
        reader = Help()
        reader.feed((SHIPPED / "Brandolet.hlp").read_text(encoding="utf-8"))
        self.assertGreater(len(reader.there), 10)
        self.assertEqual(reader.wanted, reader.there)


class Tips(unittest.TestCase):
    def test_one_tip_a_line(self):
        lines = (SHIPPED / "TIPOFDAY.TXT").read_bytes().decode("ascii").splitlines()
        self.assertGreaterEqual(len(lines), 25)
        self.assertEqual(len(set(lines)), len(lines))
        for line in lines:
            self.assertTrue(line.startswith("... that ") and len(line) <= 200, line)


if __name__ == "__main__":
    unittest.main()
