// tests/support/oddtexts.h - texts that are hard to compare.
#pragma once

#include <random>
#include <string>
#include <vector>

namespace tests
{

// `count` short texts, the same at each call: letters in both cases, accents in both forms, marks
// that take space and marks that do not, bytes that are no valid UTF-8, NULs, wildcards.
inline std::vector<std::string> OddTexts(int count)
{
    using namespace std::string_literals;
    const std::string pieces[] = {"a",    "A", "b",      "é",      "É",      "e",     "E\u0301",
                                  "ñ",    "Ñ", "ß",      "ẞ",      " ",      "\0"s,   "\x80",
                                  "\xFF", "ı", "\u017F", "z",      "Z",      "_",     "%",
                                  "д",    "Д", "\u0915", "\u093F", "\u093E", "\u0905"};
    std::mt19937 random(7);
    std::vector<std::string> texts;
    for (int i = 0; i < count; ++i) {
        std::string text;
        for (auto length = random() % 5; length > 0; --length)
            text += pieces[random() % std::size(pieces)];
        texts.push_back(text);
    }
    return texts;
}

} // namespace tests
