#include "tagedit/boxtext.h"

#include "runtime/codepage.h"

#include <algorithm>
#include <vector>

namespace tagedit
{

namespace
{

constexpr std::string_view kLineEnd = "\r\n";
constexpr std::string_view kParagraphSeparator = "\xE2\x80\xA9"; // U+2029, a toolkit's line end

bool ContinuesCharacter(char c)
{
    return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

// The number of bytes of the first character of `text`; `text` is not empty.
std::size_t FirstLength(std::string_view text)
{
    std::size_t length = 1;
    while (length < text.size() && length < 4 && ContinuesCharacter(text[length]))
        ++length;
    return length;
}

// One character, or one line end of any kind.
struct Unit {
    std::string_view text;
    bool isLineEnd = false;

    bool operator==(const Unit &other) const
    {
        return isLineEnd ? other.isLineEnd : text == other.text;
    }
    // The number of file bytes. A line end is ASCII in both encodings.
    std::size_t FieldBytes() const { return isLineEnd ? text.size() : 1; }
};

std::vector<Unit> UnitsOf(std::string_view text)
{
    std::vector<Unit> units;
    units.reserve(text.size());
    while (!text.empty()) {
        std::size_t length = FirstLength(text);
        if (text.starts_with(kLineEnd))
            length = kLineEnd.size();
        const std::string_view unit = text.substr(0, length);
        units.push_back(
            {unit, unit.front() == '\r' || unit.front() == '\n' || unit == kParagraphSeparator});
        text.remove_prefix(length);
    }
    return units;
}

template <class Iterator>
std::size_t CountFieldBytes(Iterator first, Iterator last)
{
    std::size_t bytes = 0;
    for (; first != last; ++first)
        bytes += first->FieldBytes();
    return bytes;
}

} // namespace

std::string ShownText(std::string_view field)
{
    return runtime::TextOfBytes(field.substr(0, field.find('\0')));
}

std::string EditedField(std::string_view field, std::string_view edited)
{
    const std::string shown = ShownText(field);
    if (edited == shown)
        return std::string(field);
    const std::vector<Unit> before = UnitsOf(shown);
    const std::vector<Unit> after = UnitsOf(edited);
    const auto front = std::mismatch(before.begin(), before.end(), after.begin(), after.end());
    const auto back = std::mismatch(before.rbegin(), std::make_reverse_iterator(front.first),
                                    after.rbegin(), std::make_reverse_iterator(front.second));
    const std::size_t frontBytes = CountFieldBytes(before.begin(), front.first);
    const std::size_t backBytes = CountFieldBytes(before.rbegin(), back.first);
    const std::size_t shownBytes = CountFieldBytes(before.begin(), before.end());

    std::string result(field.substr(0, frontBytes));
    for (auto unit = front.second; unit != back.second.base(); ++unit)
        result += unit->isLineEnd ? std::string(kLineEnd) : runtime::BytesOfText(unit->text);
    result += field.substr(shownBytes - backBytes, backBytes);
    return result;
}

std::size_t CountCharacters(std::string_view text)
{
    std::size_t count = 0;
    for (; !text.empty(); ++count)
        text.remove_prefix(FirstLength(text));
    return count;
}

std::string_view LeftCharacters(std::string_view text, std::size_t count)
{
    std::size_t length = 0;
    for (; count > 0 && length < text.size(); --count)
        length += FirstLength(text.substr(length));
    return text.substr(0, length);
}

} // namespace tagedit
