"""The books of the help: one for each language, alike; a page for each window, for each question and for
the keys; the names in bold are those that the window shows; the licences name what is linked."""
import html.parser
import re
import sys
import unittest

import house

sys.path.insert(0, str(house.SOURCE / "tools"))
import languages  # noqa: E402

SHIPPED = house.SOURCE / "assets" / "shipped"
ENGLISH = "Brandolet"

# The questions of each file: calls of a box that has a choice, or that asks for a text. The id of a page is
# Section.Key of the question in the language files; of a question without a key it is a word of its own.
ASKS = {
    "browser/exportfolder.cpp": ["CreateFolder"],
    "browser/form/formcommands.cpp": ["UnicodeTags.Regenerate"],
    "browser/filecommands.cpp": ["Messages.EmailError", "Messages.InputInformation", "Duplicate", "Rename"],
    "catalogue/regeneration.cpp": ["SendReport", "SeeReport"],
    "lyrics/marks.cpp": ["Times.DraftOffer", "Times.Unsaved"],
    "metadata/frameedit.cpp": ["TagEditor.FramesLost"],
    "online/version/autocheck.cpp": ["Messages.NewerVersionAvailableWannaSeeInfo"],
    "playlists/lists.cpp": ["InputBox.NameThePlaylist"],
    "shell/preferences/newfolder.cpp": ["InputBox.NameTheFolder"],
    "shell/startup/startup.cpp": ["Damaged", "Damaged"],  # with the reason, and without
    "tagedit/savetags.cpp": ["TagEditor.ReadAgain"],      # one box, two questions
}
MORE_QUESTIONS = ["TagEditor.ChangedOutside"]
ASKING = re.compile(r"Buttons::(?:YesNo|SaveDiscardCancel)\b|(?:\.|->)\s*InputBox\(")
FORWARDS = ("platform/", "ui/boxforms", "catalogue/rowgroups", "bench/", "tests/", "fuzz/")

# What the program is linked with, and its name in the list of licences.
LIBRARIES = {"libQt6": "Qt 6", "libsqlite3": "SQLite", "libutf8proc": "utf8proc", "libcurl": "libcurl",
             "libjemalloc": "jemalloc",
             "libsystemd": "libsystemd", "libtag": "TagLib", "libz": "zlib", "libstdc++": "C++", "libgcc_s": "C++", "libc": "GNU", "libm": "GNU",
             "ld-linux": "GNU"}


class Book(html.parser.HTMLParser):
    """Pages by id: level, title, text; what is in bold, and where the links lead."""

    VOID = {"meta", "br", "hr", "!doctype"}

    def __init__(self, text):
        super().__init__()
        self.pages, self.bold, self.links, self.faults, self.open = {}, [], [], [], []
        self.current = None
        self.feed(text)
        self.faults += [f"<{tag}> is not closed" for tag in self.open]
        for page in self.pages.values():
            page["title"], page["text"] = (" ".join(page[part].split()) for part in ("title", "text"))

    def handle_starttag(self, tag, attrs):
        attributes = dict(attrs)
        if tag not in self.VOID:
            self.open.append(tag)
        if tag in ("h1", "h2"):
            self.current = attributes["id"]
            if self.current in self.pages:
                self.faults.append(f"{self.current} comes twice")
            self.pages[self.current] = {"level": int(tag[1]), "title": "", "text": ""}
        if tag == "b":
            self.bold.append("")
        if tag == "a":
            self.links.append(attributes["href"])

    def handle_endtag(self, tag):
        if not self.open or self.open.pop() != tag:
            self.faults.append(f"</{tag}> at line {self.getpos()[0]} closes nothing")

    def handle_data(self, data):
        if self.current:
            part = "title" if self.open[-1:] in (["h1"], ["h2"]) else "text"
            self.pages[self.current][part] += data
        if "b" in self.open:
            self.bold[-1] += data


def squeezed(text):
    return " ".join(text.replace("%0A", " ").replace("\\r", " ").split())


class Help(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.want = languages.wanted(house.SOURCE)
        cls.texts = {ENGLISH: cls.want.texts}
        for path in SHIPPED.glob("*.qlt"):
            cls.texts[path.stem] = languages.parse(path.read_text(encoding="utf-8"))
        cls.books = {name: Book((SHIPPED / f"{name}.hlp").read_text(encoding="utf-8")) for name in cls.texts}
        cls.sources = {path: source.text for path, source in cls.want.sources.items()}

    def test_each_language_has_the_same_pages(self):
        self.assertEqual(sorted(path.stem for path in SHIPPED.glob("*.hlp")), sorted(self.texts))
        english = [(page, self.books[ENGLISH].pages[page]["level"]) for page in self.books[ENGLISH].pages]
        self.assertGreater(len(english), 40)
        for name, book in self.books.items():
            self.assertEqual(book.faults, [], name)
            self.assertEqual([(page, book.pages[page]["level"]) for page in book.pages], english, name)

    def test_no_page_is_empty_and_no_link_leads_nowhere(self):
        for name, book in self.books.items():
            for identity, page in book.pages.items():
                self.assertNotEqual(page["title"], "", f"{name} {identity}")
                self.assertGreaterEqual(len(page["text"]), 30, f"{name} {identity}")
            self.assertGreater(len(book.links), 3)
            self.assertEqual([link for link in book.links if link[1:] not in book.pages], [], name)

    def test_every_window_has_its_page(self):
        windows = {name for text in self.sources.values()
                   for name in re.findall(r'(?:Form\(|Name\(this, )"(frm[A-Z]\w+)"', text)}
        self.assertLessEqual({"frmMain", "frmSplash", "frmPref", "frmSearch", "frmEditTag", "frmLyrics", "frmTip",
                              "frmLists", "frmHelp"}, windows)
        for name, book in self.books.items():
            self.assertEqual([window for window in sorted(windows) if window not in book.pages], [], name)
            self.assertEqual([page for page in book.pages if page.startswith("frm") and page not in windows], [], name)

    def test_every_question_has_its_page(self):
        calls = {path: len(ASKING.findall(text)) for path, text in self.sources.items()
                 if path.endswith(".cpp") and not path.startswith(FORWARDS)}
        self.assertEqual({path: count for path, count in calls.items() if count},
                         {path: len(pages) for path, pages in ASKS.items()},
                         "a new question wants a page in each book, and its id here")
        wanted = {page for pages in ASKS.values() for page in pages} | set(MORE_QUESTIONS)
        for name, book in self.books.items():
            chapter = list(book.pages)[list(book.pages).index("messages") + 1:list(book.pages).index("keys")]
            self.assertEqual(set(chapter), wanted, name)

    def test_the_title_of_a_question_is_the_question(self):
        literals = [squeezed("".join(re.findall(r'"((?:[^"\\]|\\.)*)"', text))).replace('\\"', '"')
                    for text in self.sources.values()]
        checked = 0
        for name, book in self.books.items():
            for identity in {page for pages in ASKS.values() for page in pages} | set(MORE_QUESTIONS):
                title = book.pages[identity]["title"]
                section, dot, key = identity.partition(".")
                if dot:
                    self.assertEqual(title, squeezed(self.texts[name][section, key]), f"{name} {identity}")
                else:
                    self.assertTrue(any(title in text for text in literals), f"{name} {identity}: {title}")
                checked += 1
        self.assertEqual(checked, 4 * (len({p for pages in ASKS.values() for p in pages}) + 1))

    def test_names_in_bold_are_those_of_the_program(self):
        own = {"ID3v1", "ID3v2"}
        for name, book in self.books.items():
            entries = {**self.want.texts, **self.texts[name]}
            group = entries["FolderGroups", "ByField"]
            shown = {group.replace("$Field$", entries["ColumnHeaders", field])
                     for field in ("Title", "Artist", "Album", "Year", "Comment", "Genre", "Path")}
            shown |= {squeezed(re.sub(r" +Alt\+3$", "", languages.plain(value))) for value in entries.values()}
            wrong = []
            for words in book.bold:
                words = squeezed(words)
                if words not in shown | own and any(part not in shown | own for part in words.split(", ")):
                    wrong.append(words)
            self.assertGreater(len(book.bold), 60)
            self.assertEqual(wrong, [], name)

    def test_all_keys_are_on_their_page(self):
        shortcuts = {languages.unquote(row[3]) for row in self.want.sources["browser/commands.cpp"].table("kMenuLines")
                     if len(row) > 3} - {""}
        self.assertLessEqual({"F1", "Ctrl+Q"}, shortcuts)
        for name, book in self.books.items():
            text = book.pages["keys"]["text"].replace("Strg", "Ctrl")
            for keys in shortcuts | {"Alt+3", "F9", "Ctrl+F", "Ctrl+C", "Ctrl+A", "F10"}:
                self.assertIn(keys, text, name)

    def test_the_licences_name_what_is_linked(self):
        linked = []
        with_windows = (house.BUILD / "libquenlin_windows.a").exists()
        for name in ["quenlin"] + ["quenlin-windows.so"] * with_windows:
            done = house.run("readelf", "-d", house.BUILD / "bin" / name)
            self.assertEqual(done.returncode, 0, done.stderr)
            found = re.findall(r"\(NEEDED\).*\[(.+?)\]", done.stdout)
            self.assertGreater(len(found), 5, name)
            linked += found
        linked.append("libcurl.so.4")   # loaded when the web is first asked
        for library in linked:
            stem = re.split(r"[.-]so|\.so|-linux", library)[0]
            stem = "ld-linux" if library.startswith("ld-linux") else stem
            stem = "libQt6" if stem.startswith("libQt6") else re.sub(r"-gnutls$", "", stem)
            self.assertIn(stem, LIBRARIES, f"{library}: name it and its licence in each book")
            for name, book in self.books.items():
                self.assertIn(LIBRARIES[stem], book.pages["licences"]["text"], name)


if __name__ == "__main__":
    unittest.main()
