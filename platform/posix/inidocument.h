// platform/posix/inidocument.h - the text of the settings file, line by line: any section, key and
// value in any bytes come back as they went in; lines that are not ours stay as they are. No state.
//
// A name, a key or a value that the plain form would not bring back (blanks at its ends, control
// characters, a character that means something there) is put in quotation marks, with \\, \", \n,
// \r and \xHH inside.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform::posix
{

// How entries are written. Quoted: as above, lines end in LF. Plain: just as they are, for files
// that other programs read; lines end in CR and LF, and nothing is taken out of quotation marks.
enum class IniStyle { Quoted, Plain };

class IniDocument
{
public:
    explicit IniDocument(std::string_view text, IniStyle style = IniStyle::Quoted);

    // The value of the first entry of that key; names and keys compare without regard to the case
    // of ASCII letters. Nothing when there is none.
    [[nodiscard]] std::optional<std::string> Find(std::string_view section,
                                                  std::string_view key) const;

    // Sets the first entry of that key, or adds one at the end of the section, or the section at
    // the end of the text.
    void Set(std::string_view section, std::string_view key, std::string_view value);

    // Removes every entry of that key.
    void Remove(std::string_view section, std::string_view key);

    // The whole text; lines that were not set are as they were, with an end at the last one.
    [[nodiscard]] std::string Text() const;

private:
    struct Line {
        std::string raw;     // without the LF at its end
        std::string section; // the section that it is in
        bool entry = false;  // "key=value"; else a head, a comment, or anything else
        std::string key, value;
    };

    [[nodiscard]] std::size_t FindIndex(std::string_view section, std::string_view key) const;

    [[nodiscard]] std::string Raw(std::string line) const;

    std::vector<Line> m_lines;
    IniStyle m_style;
};

} // namespace platform::posix
