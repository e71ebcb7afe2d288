#include "tagedit/boxtext.h"

#include "metadata/tagtext.h"
#include "runtime/utf8.h"

#include <algorithm>
#include <vector>

namespace tagedit
{

namespace
{

constexpr std::string_view kLineEnd = "\r\n";
constexpr std::string_view kParagraphSeparator = "\xE2\x80\xA9"; // U+2029, a toolkit's line end

// One character, or one line end however it is written.
struct Unit {
    std::string_view text;
    bool isLineEnd = false;

    bool operator==(const Unit &other) const
    {
        return isLineEnd ? other.isLineEnd : text == other.text;
    }
    // The number of bytes of this unit in a field of that kind. A line end is ASCII.
    std::size_t FieldBytes(metadata::TextKind kind) const
    {
        return isLineEnd || kind == metadata::TextKind::Utf8 ? text.size() : 1;
    }
};

std::vector<Unit> UnitsOf(std::string_view text)
{
    std::vector<Unit> units;
    units.reserve(text.size());
    while (!text.empty()) {
        std::size_t length = runtime::LeftCharacters(text, 1).size();
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
std::size_t CountFieldBytes(Iterator first, Iterator last, metadata::TextKind kind)
{
    std::size_t bytes = 0;
    for (; first != last; ++first)
        bytes += first->FieldBytes(kind);
    return bytes;
}

} // namespace

std::string ShownText(std::string_view field, metadata::TextKind kind)
{
    return metadata::TextOf(kind, field.substr(0, field.find('\0')));
}

std::string EditedField(std::string_view field, std::string_view edited, metadata::TextKind kind)
{
    const std::string shown = ShownText(field, kind);
    if (edited == shown)
        return std::string(field);
    const std::vector<Unit> before = UnitsOf(shown);
    const std::vector<Unit> after = UnitsOf(edited);
    const auto front = std::mismatch(before.begin(), before.end(), after.begin(), after.end());
    const auto back = std::mismatch(before.rbegin(), std::make_reverse_iterator(front.first),
                                    after.rbegin(), std::make_reverse_iterator(front.second));
    const std::size_t frontBytes = CountFieldBytes(before.begin(), front.first, kind);
    const std::size_t backBytes = CountFieldBytes(before.rbegin(), back.first, kind);
    const std::size_t shownBytes = CountFieldBytes(before.begin(), before.end(), kind);

    std::string result(field.substr(0, frontBytes));
    for (auto unit = front.second; unit != back.second.base(); ++unit)
        result += unit->isLineEnd ? std::string(kLineEnd) : metadata::FieldOf(kind, unit->text);
    result += field.substr(shownBytes - backBytes, backBytes);
    return result;
}

} // namespace tagedit
