"""Marks of unfinished work, paths of one person's machine, and the length of the files."""
import pathlib
import re
import unittest

import house

PHRASES = [
    r"\b(TODO|FIXME|XXX|HACK)\b",
    r"(^|[^A-Za-z0-9_.])/(home|Users|root)/(?!(ana|me|mean|u)\b)[A-Za-z]",  # those of the tests are nobody's
]
BINARY = (".png", ".mp3", ".bin", ".ico", ".gz")
LONGEST = 500  # lines of a C++ file; at 400 it is time to split it by subject
THIS = pathlib.Path(__file__).name  # which names what it looks for


def findings(text):
    return [match.group(0) for phrase in PHRASES for match in re.finditer(phrase, text, re.MULTILINE)]


class Wording(unittest.TestCase):
    def test_the_rule_sees_each_kind(self):
        for text in ("TODO: later", "// FIXME", "cd /home/somebody/music"):
            with self.subTest(text):
                self.assertTrue(findings(text))
        for text in ("hacking away", "./home/main", "/home/ana/", "root + path"):
            with self.subTest(text):
                self.assertEqual(findings(text), [])

    def test_no_such_word(self):
        for path in house.sources():
            if path.name == THIS or path.name.endswith(BINARY) or path.parts[:2] == ("tests", "data"):
                continue
            text = (house.SOURCE / path).read_bytes().decode("utf-8", "replace")
            with self.subTest(str(path)):
                self.assertEqual(findings(text), [])

    def test_length_of_files(self):
        lengths = {path: len((house.SOURCE / path).read_bytes().splitlines())
                   for path in house.sources(".cpp", ".h")}
        for path, lines in sorted(lengths.items(), key=lambda item: -item[1]):
            if lines > 400:
                print(f"long: {path} has {lines} lines")
        self.assertEqual([str(p) for p, lines in lengths.items() if lines > LONGEST], [])


if __name__ == "__main__":
    unittest.main()
