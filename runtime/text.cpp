#include "runtime/text.h"

#include "runtime/error.h"
#include "runtime/utf8.h"

#include <utf8proc.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

namespace runtime
{

namespace
{

constexpr utf8proc_int32_t kFirstOfTwoBytes = 0x80, kFirstOfThreeBytes = 0x800;

// For each letter of two bytes (U+0080 to U+07FF) its upper case; 0 when that does not take two
// bytes.
using TwoByteLetters = std::array<std::uint16_t, kFirstOfThreeBytes>;

const TwoByteLetters &UpperOfTwoBytes()
{
    static const TwoByteLetters letters = [] {
        TwoByteLetters made{};
        for (auto letter = kFirstOfTwoBytes; letter < kFirstOfThreeBytes; ++letter) {
            const auto upper = utf8proc_toupper(letter);
            if (upper >= kFirstOfTwoBytes && upper < kFirstOfThreeBytes)
                made[static_cast<std::size_t>(letter)] = static_cast<std::uint16_t>(upper);
        }
        return made;
    }();
    return letters;
}

// Appends the upper case of the first character of `text`, which is not ASCII, to `out`.
// Returns: its length in bytes; 1 for a byte that is not part of valid UTF-8 and is kept.
std::size_t AppendUpperCharacter(std::string_view text, std::string &out)
{
    const auto lead = static_cast<unsigned char>(text[0]);
    if (lead >= 0xC2 && lead < 0xE0 && text.size() > 1 && ContinuesCharacter(text[1])) {
        const auto letter = static_cast<std::size_t>((lead & 0x1F) << 6 | (text[1] & 0x3F));
        if (const unsigned upper = UpperOfTwoBytes()[letter]; upper != 0) {
            out += static_cast<char>(0xC0 | upper >> 6);
            out += static_cast<char>(0x80 | (upper & 0x3F));
            return 2;
        }
    }
    utf8proc_int32_t codePoint = 0;
    const int length = NextCharacter(text, codePoint);
    if (length == 0) {
        out += text[0];
        return 1;
    }
    AppendCharacter(utf8proc_toupper(codePoint), out);
    return static_cast<std::size_t>(length);
}

// Applies `map` to each valid character; other bytes are kept.
std::string MapCharacters(std::string_view utf8, utf8proc_int32_t (*map)(utf8proc_int32_t))
{
    std::string result;
    result.reserve(utf8.size());
    while (!utf8.empty()) {
        utf8proc_int32_t codePoint = 0;
        const int length = NextCharacter(utf8, codePoint);
        if (length == 0) {
            result.push_back(utf8.front());
            utf8.remove_prefix(1);
            continue;
        }
        AppendCharacter(map(codePoint), result);
        utf8.remove_prefix(static_cast<std::size_t>(length));
    }
    return result;
}

} // namespace

std::string_view Mid(std::string_view text, long long start, long long count)
{
    if (start < 1 || count < 0)
        throw RuntimeError(kInvalidCall);
    const auto offset = static_cast<std::size_t>(start - 1);
    if (offset >= text.size())
        return {};
    return text.substr(offset, static_cast<std::size_t>(count));
}

std::string_view Mid(std::string_view text, long long start)
{
    return Mid(text, start, static_cast<long long>(text.size()));
}

std::string_view Left(std::string_view text, long long count)
{
    return Mid(text, 1, count);
}

std::string_view Right(std::string_view text, long long count)
{
    if (count < 0)
        throw RuntimeError(kInvalidCall);
    const auto wanted = std::min(static_cast<std::size_t>(count), text.size());
    return text.substr(text.size() - wanted);
}

long long InStr(long long start, std::string_view text, std::string_view needle)
{
    if (start < 1)
        throw RuntimeError(kInvalidCall);
    const auto offset = static_cast<std::size_t>(start - 1);
    if (offset >= text.size())
        return 0;
    if (needle.empty())
        return start;
    const std::string_view rest = text.substr(offset);
    const void *hit = memmem(rest.data(), rest.size(), needle.data(), needle.size());
    if (hit == nullptr)
        return 0;
    return static_cast<const char *>(hit) - text.data() + 1;
}

std::string_view Trim(std::string_view text)
{
    const auto first = text.find_first_not_of(' ');
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::string_view StripTrailingNulls(std::string_view text)
{
    const auto last = text.find_last_not_of('\0');
    return last == std::string_view::npos ? std::string_view{} : text.substr(0, last + 1);
}

std::string Replace(std::string_view text, std::string_view from, std::string_view to)
{
    if (from.empty())
        return std::string(text);
    std::string result;
    result.reserve(text.size());
    std::size_t at = 0;
    for (std::size_t hit; (hit = text.find(from, at)) != std::string_view::npos;) {
        result.append(text, at, hit - at).append(to);
        at = hit + from.size();
    }
    result += text.substr(at);
    return result;
}

std::string ReplaceFirst(std::string_view text, std::string_view from, std::string_view to)
{
    std::string result(text);
    const auto hit = from.empty() ? std::string::npos : result.find(from);
    if (hit != std::string::npos)
        result.replace(hit, from.size(), to);
    return result;
}

std::string WithCrLf(std::string_view text)
{
    std::string result;
    result.reserve(text.size());
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text[at] != '\r' && text[at] != '\n') {
            result += text[at];
            continue;
        }
        if (text.substr(at, 2) == "\r\n")
            ++at;
        result += "\r\n";
    }
    return result;
}

std::vector<std::string> Split(std::string_view text, std::string_view separator)
{
    std::vector<std::string> pieces;
    if (text.empty())
        return pieces;
    std::size_t at = 0;
    for (std::size_t hit; (hit = text.find(separator, at)) != std::string_view::npos;) {
        pieces.emplace_back(text.substr(at, hit - at));
        at = hit + separator.size();
    }
    pieces.emplace_back(text.substr(at));
    return pieces;
}

std::string UpperAscii(std::string_view text)
{
    std::string result;
    AppendUpperAscii(text, result);
    return result;
}

void AppendUpperAscii(std::string_view text, std::string &out)
{
    const auto at = static_cast<std::ptrdiff_t>(out.size());
    out.append(text);
    std::transform(out.begin() + at, out.end(), out.begin() + at,
                   [](char c) { return UpperAscii(c); });
}

bool EqualAscii(std::string_view first, std::string_view second)
{
    return std::equal(first.begin(), first.end(), second.begin(), second.end(),
                      [](char a, char b) { return UpperAscii(a) == UpperAscii(b); });
}

std::string UpperText(std::string_view utf8)
{
    std::string upper;
    upper.reserve(utf8.size());
    AppendUpperText(utf8, upper);
    return upper;
}

void AppendUpperText(std::string_view utf8, std::string &out)
{
    while (!utf8.empty()) {
        const std::size_t ascii = AsciiLength(utf8);
        AppendUpperAscii(utf8.substr(0, ascii), out);
        utf8.remove_prefix(ascii);
        while (!utf8.empty() && static_cast<unsigned char>(utf8[0]) >= 0x80)
            utf8.remove_prefix(AppendUpperCharacter(utf8, out));
    }
}

std::string LowerText(std::string_view utf8)
{
    return MapCharacters(utf8, utf8proc_tolower);
}

bool EqualText(std::string_view first, std::string_view second)
{
    return UpperText(first) == UpperText(second);
}

} // namespace runtime
