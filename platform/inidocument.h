// platform/inidocument.h - the text of the settings file, line by line: sections, keys and
// values of any bytes can be stored and read again unchanged; all other lines are kept. No state.
//
// A name, key or value that cannot be stored in plain form (blanks at its ends, control characters,
// characters with a meaning there) is written in quotation marks, with \\, \", \n, \r and \xHH
// inside.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform
{

// How entries are written. Quoted: as above, lines end in LF. Plain: unchanged, for files that
// other programs read; lines end in CR and LF, and quotation marks have no meaning.
enum class IniStyle { Quoted, Plain };

class IniDocument
{
public:
    explicit IniDocument(std::string_view text, IniStyle style = IniStyle::Quoted);

    // The value of the first entry of that key; in names and keys the case of ASCII letters is
    // ignored. nullopt when there is none.
    [[nodiscard]] std::optional<std::string> Find(std::string_view section,
                                                  std::string_view key) const;

    // Sets the first entry of that key, or adds one at the end of the section, or the section at
    // the end of the text.
    void Set(std::string_view section, std::string_view key, std::string_view value);

    // Removes every entry of that key.
    void Remove(std::string_view section, std::string_view key);

    // The whole text; lines that were not set are unchanged, and the last line has a line end.
    [[nodiscard]] std::string Text() const;

private:
    struct Line {
        std::string raw;     // without the LF at its end
        std::string section; // the section of the line
        bool entry = false;  // "key=value"; else a head, a comment, or anything else
        std::string key, value;
    };

    [[nodiscard]] std::size_t FindIndex(std::string_view section, std::string_view key) const;

    [[nodiscard]] std::string Raw(std::string line) const;

    std::vector<Line> m_lines;
    IniStyle m_style;
};

} // namespace platform
