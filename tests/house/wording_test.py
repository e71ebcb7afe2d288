"""Words that must not stand in the repository, and the length of its files."""
import re
import unittest

import house

# Put together here, so that this file does not hold what it looks for.
LATER = ["TO" + "DO", "FIX" + "ME", "XX" + "X", "HA" + "CK"]
PHRASES = [
    r"\b(" + "|".join(LATER) + r")\b",
    r"(?i)not imple" + r"mented yet",
    r"(?i)\bthe sp" + r"ec\b|\bsp" + r"ec\.md\b|\bspecifi" + r"cation\b|\bPa" + r"rt [0-9]+\.[0-9]",
    r"(^|[^A-Za-z0-9_.])/(wo" + r"rk|fa" + r"rm|ro" + r"ot)/",
]
BINARY = (".png", ".mp3", ".bin", ".ico", ".gz")
LONGEST = 500  # lines of a C++ file; at 400 it is time to split it by subject


def findings(text):
    return [match.group(0) for phrase in PHRASES for match in re.finditer(phrase, text, re.MULTILINE)]


class Wording(unittest.TestCase):
    def test_the_rule_sees_each_kind(self):
        for text in (LATER[0] + ": later", "it is not imple" + "mented yet", "see Pa" + "rt 3.2",
                     "as the sp" + "ec says", "cd /wo" + "rk/main"):
            with self.subTest(text):
                self.assertTrue(findings(text))
        for text in ("hacking away", "the part 3 of it", "./work/main", "special", "networks/"):
            with self.subTest(text):
                self.assertEqual(findings(text), [])

    def test_no_such_word(self):
        for path in house.sources():
            if path.name.endswith(BINARY) or path.parts[:2] == ("tests", "data"):
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
