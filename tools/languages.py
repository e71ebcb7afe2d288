"""Language files, and the texts that the sources look up in them.

    want = wanted(folder)                    every key that the code looks up, with its English text
    entries = parse(text)                    what a language file holds
    missing(entries, want.texts), problems(entries, want)

The keys are read out of the sources: the calls of GetLanguageText whose arguments are texts, the
procedures that pass their own arguments on to it, the tables of captions, and the tables of menus,
kinds and fields. A call that is none of these is an error of the reader, so that no text is missed.
"""
import collections
import functools
import os
import pathlib
import re

LONGEST = 199  # characters that the reader of the program gives of a value
MARK = re.compile(r"\$[A-Za-z]+\$")
# The caller makes line breaks of "%0A" in these texts only.
WITH_LINE_BREAKS = {("Messages", key) for key in ("NewerVersionAvailableWannaSeeInfo", "EmailError", "NoInfoTyped")}
# What a new file says of itself in the about box: English has no such texts.
CREDITS = {"Title": "{language}", "TranslatedBy": "Translated by:", "Translator": "(your name)"}
# Names that the format has and that no window looks up at present.
KEPT = set()

TEXT = r'"(?:[^"\\]|\\.)*"'
HEADER = re.compile(r"(?:(?<=[\s:])(\w+)\s*|const auto (\w+) = \[[^\]]*\])\(([^()]*)\)[^{};()]*\{")
CONSTANT = re.compile(r"constexpr\s+(?:std::string_view|const char \*|char)\s*(\w+)(?:\[\])?\s*=\s*"
                      rf"((?:{TEXT}\s*)+);")


class LanguageError(Exception):
    """What is wrong with a file or a source, in words."""


# ---------------------------------------------------------------- language files


def parse(text):
    """{(section, key): value} of a language file. LanguageError names a line that is no entry."""
    entries, section, seen = {}, None, set()
    for number, line in enumerate(text.lstrip("\ufeff").splitlines(), 1):
        line = line.strip(" \t")
        if not line or line.startswith(";"):
            continue
        if line.startswith("[") and line.endswith("]"):
            section = line[1:-1]
            continue
        key, equals, value = line.partition("=")
        if not equals or section is None:
            raise LanguageError(f"line {number} is neither a section nor Name=Text: {line}")
        place = (section.lower(), key.strip().lower())
        if place in seen:
            raise LanguageError(f"line {number}: {key} comes twice in [{section}]; the first one counts")
        seen.add(place)
        entries[section, key.strip()] = value.strip(" \t")
    return entries


def access_key(caption):
    """The letter behind a single "&", in upper case; None without one."""
    found = re.search(r"(?<!&)(?:&&)*&([^&])", caption)
    return found.group(1).upper() if found else None


def plain(caption):
    return caption.replace("&&", "\0").replace("&", "").replace("\0", "&")


# ---------------------------------------------------------------- sources


def without_comments(text):
    return re.sub(rf"({TEXT})|//[^\n]*|/\*.*?\*/", lambda m: m.group(1) or " ", text, flags=re.DOTALL)


def unquote(text):
    parts = re.findall(TEXT, text)
    joined = "".join(part[1:-1] for part in parts)
    joined = re.sub(r"\\u([0-9a-fA-F]{4})", lambda m: chr(int(m.group(1), 16)), joined)
    return joined.replace('\\"', '"').replace("\\n", "\n").replace("\\\\", "\\")


def closing(text, start):
    """The place of the bracket that closes the one at `start`."""
    depth = 0
    for found in re.compile(rf"{TEXT}|'(?:[^'\\]|\\.)'|[(\[{{]|[)\]}}]").finditer(text, start):
        if found.group() in "([{":
            depth += 1
        elif found.group() in ")]}":
            depth -= 1
            if depth == 0:
                return found.start()
    raise LanguageError("a bracket is not closed: " + text[start:start + 60])


def split(text, mark=","):
    """The parts of a list, brackets and texts kept whole."""
    parts, depth, begin = [], 0, 0
    for found in re.finditer(rf"{TEXT}|'(?:[^'\\]|\\.)'|[(\[{{]|[)\]}}]|{re.escape(mark)}", text):
        if found.group() in "([{":
            depth += 1
        elif found.group() in ")]}":
            depth -= 1
        elif found.group() == mark and depth == 0:
            parts.append(text[begin:found.start()].strip())
            begin = found.end()
    last = text[begin:].strip()
    return parts + [last] if last else parts


def rows(text):
    """The innermost {...} of a table, each as the list of its parts."""
    return [split(row) for row in re.findall(rf"\{{((?:{TEXT}|[^{{}}\"])*)\}}", text)]


class Source:
    """One file: its calls, its constants and its tables."""

    def __init__(self, path, text, shared):
        self.path = path
        self.text = without_comments(text)
        self.constants = {**shared, **{name: unquote(value) for name, value in CONSTANT.findall(self.text)}}

    def texts(self, argument):
        """What an argument can be, as texts; empty when it is not known here."""
        argument = argument.strip()
        if re.fullmatch(rf"(?:{TEXT}\s*)+", argument):
            return [unquote(argument)]
        choice = re.fullmatch(r"[^?\"]+\?(.+)", argument, re.DOTALL)
        if choice:
            ways = [self.texts(way) for way in split(choice.group(1), ":")]
            return sum(ways, []) if len(ways) == 2 and all(ways) else []
        name = argument.rpartition("::")[2]
        return [self.constants[name]] if name in self.constants else []

    def calls(self, name):
        """(place, arguments) of each call of `name`, its declarations apart."""
        for found in re.finditer(rf"(?<![\w.]){name}\(", self.text):
            end = closing(self.text, found.end() - 1)
            if re.match(r"\s*(?:const)?\s*\{", self.text[end + 1:end + 20]):
                continue
            yield found.start(), split(self.text[found.end():end])

    def enclosing(self, place):
        """(name, parameters) of the smallest named procedure around `place`."""
        best = None
        for found in HEADER.finditer(self.text, 0, place):
            if found.group(1) in ("if", "for", "while", "switch", "catch"):
                continue
            if closing(self.text, found.end() - 1) > place:
                parameters = [part.split("=")[0].split()[-1].lstrip("&*") for part in split(found.group(3))]
                best = (found.group(1) or found.group(2), parameters)
        return best

    def table(self, name):
        found = re.search(rf"\b{name}(?:\[\])?\s*=?\s*\{{", self.text)
        if not found:
            raise LanguageError(f"{self.path} has no table {name}")
        return rows(self.text[found.end():closing(self.text, found.end() - 1)])

    def list(self, name):
        found = re.search(rf"\b{name}(?:\[\])?\s*=\s*\{{", self.text)
        if not found:
            raise LanguageError(f"{self.path} has no list {name}")
        return [unquote(part) for part in split(self.text[found.end():closing(self.text, found.end() - 1)])]


class Wanted:
    """Every text that the program looks up."""

    def __init__(self, root):
        self.texts = {}    # (section, key): the English text
        self.where = collections.defaultdict(set)  # (section, key): the files that look it up
        self.menus = {}    # name of a menu: the (section, key) of its entries
        self.unknown = []  # calls that this reader does not understand
        files = {}
        for folder, folders, names in os.walk(root):
            folders[:] = [f for f in folders if f not in ("build", ".git", "tests", "bench", "fuzz")]
            for name in names:
                if name.endswith((".cpp", ".h")):
                    path = pathlib.Path(folder, name)
                    files[path.relative_to(root).as_posix()] = path.read_text(encoding="utf-8")
        shared = {}
        for path, text in files.items():
            if path.endswith(".h"):
                shared.update((name, unquote(value)) for name, value in CONSTANT.findall(without_comments(text)))
        self.sources = {path: Source(path, text, shared) for path, text in files.items()}
        for path in sorted(self.sources):
            self.read(self.sources[path])

    def add(self, source, section, key, text):
        self.texts.setdefault((section, key), text)
        self.where[section, key].add(source.path)

    def read(self, source):
        tables = TABLES.get(source.path, {})
        for reader in filter(None, tables.values()):
            reader(self, source)
        wrappers = {}
        for place, arguments in source.calls("GetLanguageText"):
            self.take(source, place, arguments, wrappers, tables)
        if source.path not in ("shell/progress.h", "shell/progress.cpp"):
            for place, arguments in source.calls("ShowProgressText"):
                self.take(source, place, [*arguments, '"Progress"'], wrappers, tables)
        for name, order in wrappers.items():
            for place, arguments in source.calls(name):
                self.take(source, place, [order[i] if isinstance(order[i], str) else arguments[order[i][0]]
                                          for i in range(3)], {}, tables)
        for found in re.finditer(r"ui::Caption \w+\[\]\s*=\s*\{", source.text):
            for row in rows(source.text[found.end():closing(source.text, found.end() - 1)]):
                self.take(source, found.start(), [row[3], row[2], row[1]], {}, tables)

    def take(self, source, place, arguments, wrappers, tables):
        if source.path in ("shell/language.h",) or arguments[1] in tables:
            return
        texts, keys, sections = (source.texts(argument) for argument in arguments)
        if keys and len(sections) == 1 and len(texts) == len(keys):
            for text, key in zip(texts, keys):
                self.add(source, sections[0], key, text)
            return
        around = source.enclosing(place)
        if around and arguments[1] in around[1]:  # a procedure that passes its arguments on
            wrappers[around[0]] = [(around[1].index(argument),) if argument in around[1] else argument
                                   for argument in arguments]
            return
        self.unknown.append(f"{source.path}: {', '.join(arguments)}")


def menus(wanted, source):
    """The menus of the main window, by the name of the menu."""
    children = collections.defaultdict(list)
    for row in source.table("kMenuLines") + source.table("kExtraMenuLines"):
        name, parent, caption = (unquote(part) for part in row[:3])
        if caption in ("-", ""):
            continue
        where = ("Menus", name[3:]) if not parent else ("OptionMenus", name[6:])
        wanted.add(source, *where, caption)
        children[parent or "menu bar"].append(where)
    popup = []
    for row in source.table("kPopupLines"):
        key, caption = unquote(row[0]), unquote(row[1])
        wanted.add(source, "PopUpMenu", key, caption)
        if unquote(row[4]):
            popup.append(("PopUpMenu", key))
    wanted.menus = {**children, "popup": popup}


def kinds(wanted, source):
    for _, _, key, word in source.table("kItemKinds"):
        for end in ("", "s"):
            wanted.add(source, "ItemType", unquote(key) + end, unquote(word) + end)


def fields(*places):
    """A reader of lists of column names, which are their own keys."""
    def read(wanted, source):
        for path, name in places:
            for field in wanted.sources[path].list(name):
                wanted.add(source, "ColumnHeaders", field, field)
    return read


TREE = ("shell/globals.h", "FieldNames")
ROWS = ("browser/itemlist.cpp", "kSubItems")

# Look-ups whose keys come from a table: the expression of the key in its file, and what reads the table.
TABLES = {
    "browser/form/formload.cpp": {"name.substr(6)": None, "name.substr(3)": None,
                             "line.name.substr(isMenu ? 3 : 6)": None},  # see commands.cpp
    "browser/form/formpopup.cpp": {"line.languageKey": None},              # see commands.cpp
    "browser/commands.cpp": {"kMenuLines": menus},
    "browser/itemkinds.cpp": {"std::string(kind->wordKey).append(end)": kinds},
    "browser/itemlist.cpp": {"kSubItems[i]": fields(ROWS), "field": fields(TREE)},
    "browser/fieldtree.cpp": {"field": fields(TREE)},
    "shell/language.cpp": {"field": fields(TREE), "key": None},
    "shell/progress.cpp": {"key": None},  # see ShowProgressText
    "search/searchcontrols.cpp": {"kFields[i]": fields(("search/criteria.h", "kFields"))},
    "ui/qt/form.cpp": {"row.key": None},  # the tables of captions
}


# ---------------------------------------------------------------- checks


@functools.lru_cache
def wanted(root):
    return Wanted(root)


def missing(entries, wanted_texts):
    """The keys that the file lacks. Names are compared without regard to letter case."""
    there = {(section.lower(), key.lower()) for section, key in entries}
    return [where for where in wanted_texts if (where[0].lower(), where[1].lower()) not in there]


def problems(entries, want):
    """One line for each fault of a file, missing texts apart."""
    english = {(section.lower(), key.lower()): text for (section, key), text in want.texts.items()}
    found = []
    for (section, key), value in entries.items():
        where = f"[{section}] {key}"
        place = (section.lower(), key.lower())
        if place not in english and (section, key) in KEPT:
            continue
        if place not in english:
            found.append(f"{where}: the program has no such text")
            continue
        if value == "":
            found.append(f"{where}: is empty, so that nothing is shown")
            continue
        if len(value) > LONGEST:
            found.append(f"{where}: has {len(value)} characters, {LONGEST} are shown")
        if value[0] in "\"'" and value[0] == value[-1] and len(value) > 1:
            found.append(f"{where}: the quotes around it are cut off")
        if sorted(MARK.findall(value)) != sorted(MARK.findall(english[place])):
            found.append(f"{where}: must hold {' '.join(MARK.findall(english[place])) or 'no $mark$'}")
        if "%0A" in value and (section, key) not in WITH_LINE_BREAKS:
            found.append(f"{where}: %0A makes no line break here")
        if value.startswith(f"{key}="):
            found.append(f"{where}: the key is there twice")
        shortcut = re.search(r" {2,}(Alt\+.)$", english[place])
        if shortcut and not value.endswith(shortcut.group(1)):
            found.append(f"{where}: {shortcut.group(1)} is cut off at its end")
    return found + clashes(entries, want)


def clashes(entries, want):
    """Entries of one menu that have the same access key."""
    values = {(section.lower(), key.lower()): value for (section, key), value in entries.items()}
    found = []
    for menu, places in want.menus.items():
        keys = collections.defaultdict(list)
        for section, key in places:
            value = values.get((section.lower(), key.lower()), "")
            if access_key(value):
                keys[access_key(value)].append(f"[{section}] {key}")
        found += [f"{' and '.join(names)} have the same access key {key} in one menu ({menu})"
                  for key, names in keys.items() if len(names) > 1]
    return found


def template(want, language):
    """A new file: every text in English, none of them in force yet."""
    lines = [f"; Quenlin in {language}. Take the ; away in front of a text when you have translated it.", ""]
    for section in dict.fromkeys(section for section, _ in sorted(want.texts, key=order)):
        lines.append(f"[{section}]")
        for (of, key), text in want.texts.items():
            if of == "TranslationInfo":
                text = CREDITS[key].format(language=language)
            lines += [f";{key}={text}"] if of == section else []
        lines.append("")
    return "\n".join(lines)


def order(place):
    """The credits first, then the menus, then the windows."""
    first = ("TranslationInfo", "Menus", "OptionMenus", "PopUpMenu")
    return (first.index(place[0]) if place[0] in first else len(first), place[0])
