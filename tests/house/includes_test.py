"""The include graph: no arrow up, no circle, Qt in windows only, the operating system behind ports only.

A file may include its own layer and those below. A module is a header and the source beside it; modules
form no circle, neither within an area nor through several. An area is a folder at the top; a folder inside
catalogue/ is private: only catalogue/ includes it. The layers, from the lowest: runtime, toolkit-free
controls, platform ports, the top of shell/, metadata, catalogue, the subsystems' logic, windows, app.

Another operating system needs other sources in the place of platform/posix/ and other players. So headers of
the operating system are included there and nowhere else; and besides these folders only app/, which fills the
ports in, includes headers of platform/posix/.
"""
import pathlib
import re
import unittest

import house

AREAS = {"runtime": 0, "platform": 2, "metadata": 4, "catalogue": 5, "shell": 6, "player": 6,
         "browser": 6, "search": 6, "playlists": 6, "tagedit": 6, "lyrics": 6, "online": 6, "ui": 6,
         "app": 8}
WINDOWS_LAYER = 7
INCLUDE = re.compile(r'^[ \t]*#[ \t]*include[ \t]*([<"])([^>"]+)[>"]', re.MULTILINE)


def is_toolkit(name):
    """Whether the name between an include's angle brackets is one of Qt's."""
    return re.match(r"Qt?[A-Z]", name) is not None


def is_window(path):
    """Whether the file may include Qt and is on the windows' layer (app has a layer of its own)."""
    return path.name.startswith("frm") or path.parts[:2] in (("ui", "qt"), ("platform", "qt"))


def layer(path):
    if is_window(path):
        return WINDOWS_LAYER
    if path.parts[:2] == ("ui", "controls") or path.parts == ("ui", "twips.h"):
        return 1
    if path.parts[0] == "shell" and len(path.parts) == 2:
        return 3
    return AREAS[path.parts[0]]


def is_private(path):
    return path.parts[0] == "catalogue" and len(path.parts) > 2


# Headers in angle brackets that end in ".h" and are the same on every system: those of libraries, and of the
# processor. All others are the operating system's; C++ has none.
PORTABLE_HEADERS = {"curl/curl.h", "emmintrin.h", "iconv.h", "sqlite3.h", "utf8proc.h", "xxhash.h", "zlib.h",
                    "commentsframe.h", "id3v2tag.h", "tbytevector.h", "textidentificationframe.h",
                    "tstring.h", "unsynchronizedlyricsframe.h"}
SYSTEM_FOLDERS = {("platform", "posix"), ("platform", "player")}

def is_system_header(name):
    """Whether the name between an include's angle brackets is one of the operating system's."""
    return name.endswith(".h") and name not in PORTABLE_HEADERS and not is_toolkit(name)


def system_users(files):
    """The files that use the operating system without a port, sorted."""
    found = set()
    for path, text in files.items():
        if path.parts[:2] in SYSTEM_FOLDERS:
            continue
        for quoted, name in includes(text):
            is_inner = name.startswith("platform/posix/") and path.parts[0] != "app"
            if is_inner if quoted else is_system_header(name):
                found.add(str(path))
    return sorted(found)


def includes(text):
    """(whether in quotes, name) of each include in the text."""
    return [(mark == '"', name) for mark, name in INCLUDE.findall(text)]


def violations(files):
    """What is wrong in `files`, a map from path to text."""
    wrong, modules = [], {}
    for path, text in files.items():
        for quoted, name in includes(text):
            if not quoted:
                if is_toolkit(name) and not is_window(path) and path.parts[0] != "app":
                    wrong.append(f"{path} includes Qt: {name}")
                continue
            target = pathlib.PurePosixPath(name)
            if target not in files:
                if target.name.endswith(".h"):
                    wrong.append(f"{path} includes what is not there: {name}")
                continue
            if is_private(target) and path.parts[0] != target.parts[0]:
                wrong.append(f"{path} includes {target}, which is private to {target.parts[0]}/")
            if layer(target) > layer(path):
                wrong.append(f"{path} includes {target}, which is above it")
            modules.setdefault(path.with_suffix(""), set()).add(target.with_suffix(""))
    return wrong + circles(modules)


def circles(arrows):
    """Each circle of modules once, as a text."""
    found, done, way = [], set(), []

    def visit(module):
        if module in way:
            found.append("circle: " + " -> ".join(map(str, way[way.index(module):] + [module])))
            return
        if module in done:
            return
        way.append(module)
        for target in sorted(arrows.get(module, ())):
            if target != module:
                visit(target)
        way.pop()
        done.add(module)

    for module in sorted(arrows):
        visit(module)
    return found


# The second source of a class, and the one source of a port that has no class: each with its header.
OTHER_SOURCES = {
    "app/main.cpp": None, "catalogue/makecatalogue.cpp": None, "ui/qt/contactsheet.cpp": None,  # programs
    "app/windowcalls.cpp": "app/windowlibrary.h",
    "browser/windows/frmMainLists.cpp": "browser/windows/frmMain.h",
    "browser/windows/frmMainMenus.cpp": "browser/windows/frmMain.h",
    "catalogue/adobuilder.cpp": "catalogue/adoclass.h",
    "platform/posix/endrequest.cpp": "platform/endrequest.h",
    "platform/posix/helperthread.cpp": "platform/helperthread.h",
    "platform/posix/process.cpp": "platform/process.h",
    "platform/posix/session.cpp": "platform/session.h",
    "platform/posix/spawn.cpp": "platform/spawn.h",
    "platform/posix/disk/filelock.cpp": "platform/disk/filelock.h",
    "platform/posix/disk/filesinuse.cpp": "platform/disk/files.h",
    "platform/posix/disk/filewriting.cpp": "platform/posix/disk/systemfiles.h",
    "platform/posix/disk/folderreader.cpp": "platform/disk/folderreader.h",
    "platform/posix/disk/userfolders.cpp": "platform/disk/userfolders.h",
    "platform/posix/disk/wholefiles.cpp": "platform/disk/wholefiles.h",
    "ui/qt/formarrangement.cpp": "ui/qt/formwindow.h",
    "ui/qt/formevents.cpp": "ui/qt/formwindow.h",
    "ui/qt/formplace.cpp": "ui/qt/formwindow.h",
}


def headerless(files):
    """The sources without a header of their own name, which define what another module's header declares."""
    return [str(path) for path in files if path.suffix == ".cpp" and path.with_suffix(".h") not in files]


def tree():
    """The program's own sources; tests, benchmarks and tools may look at everything."""
    return {pathlib.PurePosixPath(path): (house.SOURCE / path).read_text(encoding="utf-8")
            for path in house.sources(".cpp", ".h") if path.parts[0] in AREAS}


class Includes(unittest.TestCase):
    def check(self, want, **texts):
        files = {pathlib.PurePosixPath(name.replace("__", "/").replace("_cpp", ".cpp").replace("_h", ".h")):
                 text for name, text in texts.items()}
        found = violations(files)
        if want is None:
            self.assertEqual(found, [])
        else:
            self.assertEqual(len(found), 1, found)
            self.assertIn(want, found[0])

    def test_the_rule_sees_each_kind(self):
        self.check(None, metadata__a_h='#include "runtime/b.h"\n', runtime__b_h="")
        self.check("is above", runtime__b_h='#include "metadata/a.h"\n', metadata__a_h="")
        self.check("is above", metadata__a_cpp='#include "shell/startup/batch.h"\n', shell__startup__batch_h="")
        self.check(None, metadata__a_cpp='#include "shell/language.h"\n', shell__language_h="")
        self.check("is above", browser__tree_cpp='#include "browser/frmMain.h"\n', browser__frmMain_h="")
        self.check("includes Qt", browser__tree_cpp="#include <QString>\n")
        self.check("includes Qt", browser__tree_cpp="#include <QtWidgets>\n")
        self.check(None, browser__frmMain_cpp="#include <QString>\n", app__main_cpp="#include <QString>\n")
        self.check("circle: ", browser__a_h='#include "browser/b.h"\n', browser__b_h='#include "browser/a.h"\n')
        self.check("circle: ", browser__a_cpp='#include "browser/b.h"\n', browser__b_h="", browser__a_h="",
                   browser__b_cpp='#include "browser/a.h"\n')
        self.check(None, browser__a_cpp='#include "browser/a.h"\n', browser__a_h="")
        self.check("private", lyrics__a_cpp='#include "catalogue/sql/b.h"\n', catalogue__sql__b_h="")
        self.check(None, catalogue__a_cpp='#include "catalogue/sql/b.h"\n', catalogue__sql__b_h="")
        self.check("circle: ", browser__a_cpp='#include "player/b.h"\n', player__b_h="", browser__a_h="",
                   player__b_cpp='#include "browser/a.h"\n')
        self.check("not there", browser__a_cpp='#include "browser/b.h"\n')

    def test_a_source_is_beside_its_header(self):
        self.assertEqual(headerless({pathlib.PurePosixPath(name) for name in ("a/b.cpp", "a/b.h", "a/c.cpp")}),
                         ["a/c.cpp"])
        self.assertEqual(sorted(headerless(tree())), sorted(OTHER_SOURCES))
        for source, header in OTHER_SOURCES.items():
            if header is not None:
                self.assertIn(f'#include "{header}"', (house.SOURCE / source).read_text(encoding="utf-8"))

    def test_the_rule_sees_each_use_of_the_operating_system(self):
        def users(path, text):
            return system_users({pathlib.PurePosixPath(path): text})

        for header in ("unistd.h", "sys/stat.h", "dirent.h", "windows.h", "signal.h", "linux/fs.h"):
            text = f"#include <{header}>\n"
            self.assertEqual(users("catalogue/a.cpp", text), ["catalogue/a.cpp"])
            self.assertEqual(users("platform/disk/a.h", text), ["platform/disk/a.h"])
            self.assertEqual(users("app/a.cpp", text), ["app/a.cpp"])
            self.assertEqual(users("platform/posix/disk/a.cpp", text), [])
        for header in ("csignal", "filesystem", "sqlite3.h", "QString", "QtCore/qglobal.h"):
            self.assertEqual(users("catalogue/a.cpp", f"#include <{header}>\n"), [])
        text = '#include "platform/posix/disk/a.h"\n'
        self.assertEqual(users("lyrics/a.cpp", text), ["lyrics/a.cpp"])
        self.assertEqual(users("platform/a.cpp", text), ["platform/a.cpp"])
        self.assertEqual(users("app/a.cpp", text), [])
        self.assertEqual(users("platform/player/a.cpp", text), [])

    def test_the_operating_system_is_behind_ports(self):
        self.assertEqual(system_users(tree()), [])

    def test_tools_include_no_toolkit(self):
        """What draws with Qt is in ui/qt, a tool too."""
        self.assertTrue(is_toolkit("QSvgRenderer") and not is_toolkit("Queue.h"))
        wrong = [str(path) for path in house.sources(".cpp", ".h") if path.parts[0] in ("tools", "fuzz")
                 if any(is_toolkit(name) for _, name in includes((house.SOURCE / path).read_text()))]
        self.assertEqual(wrong, [])

    def test_the_tree(self):
        files = tree()
        self.assertGreater(len(files), 20)
        self.assertEqual(violations(files), [])


if __name__ == "__main__":
    unittest.main()
