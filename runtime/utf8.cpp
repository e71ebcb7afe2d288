#include "runtime/utf8.h"

#include <utf8proc.h>

#include <algorithm>
#include <array>
#include <cstring>

namespace runtime
{

namespace
{

void AppendHex(std::string &text, std::string_view bytes)
{
    constexpr std::string_view kDigits = "0123456789abcdef";
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        text.append("\\x").append({kDigits[byte >> 4], kDigits[byte & 15]});
    }
}

// `text` with each control character that is not in `kept` written as "\x" and hexadecimal digits.
std::string WithoutControls(std::string_view text, std::string_view kept)
{
    std::string shown;
    shown.reserve(text.size());
    while (!text.empty()) {
        const auto other = std::ranges::find_if(text, [](char c) { return c < 0x20 || c == 0x7F; });
        const auto plain = static_cast<std::size_t>(other - text.begin());
        shown.append(text.substr(0, plain));
        text.remove_prefix(plain);
        if (text.empty())
            break;
        utf8proc_int32_t codePoint = 0;
        const int length = NextCharacter(text, codePoint);
        const auto character = text.substr(0, static_cast<std::size_t>(std::max(length, 1)));
        const auto byte = static_cast<unsigned char>(character[0]);
        const bool control = length == 0
                                 ? byte >= 0x80 && byte < 0xA0
                                 : codePoint < 0x20 || (codePoint >= 0x7F && codePoint < 0xA0);
        if (control && kept.find(character[0]) == std::string_view::npos)
            AppendHex(shown, character);
        else
            shown.append(character);
        text.remove_prefix(character.size());
    }
    return shown;
}

} // namespace

int NextCharacter(std::string_view text, std::int32_t &codePoint)
{
    const auto *bytes = reinterpret_cast<const utf8proc_uint8_t *>(text.data());
    const auto length =
        utf8proc_iterate(bytes, static_cast<utf8proc_ssize_t>(text.size()), &codePoint);
    return length > 0 && codePoint >= 0 ? static_cast<int>(length) : 0;
}

void AppendCharacter(std::int32_t codePoint, std::string &text)
{
    std::array<utf8proc_uint8_t, 4> bytes{};
    const auto length = utf8proc_encode_char(codePoint, bytes.data());
    text.append(reinterpret_cast<const char *>(bytes.data()), static_cast<std::size_t>(length));
}

std::size_t CountCharacters(std::string_view text)
{
    return static_cast<std::size_t>(
        std::count_if(text.begin(), text.end(), [](char c) { return !ContinuesCharacter(c); }));
}

std::string_view LeftCharacters(std::string_view text, std::size_t count)
{
    std::size_t length = 0;
    for (; count > 0 && length < text.size(); --count)
        for (++length; length < text.size() && ContinuesCharacter(text[length]);)
            ++length;
    return text.substr(0, length);
}

std::size_t AsciiLength(std::string_view text)
{
    constexpr std::uint64_t kHighBits = 0x8080808080808080u;
    std::size_t at = 0;
    for (std::uint64_t word = 0; at + sizeof word <= text.size(); at += sizeof word) {
        std::memcpy(&word, text.data() + at, sizeof word);
        if ((word & kHighBits) != 0)
            break;
    }
    while (at < text.size() && static_cast<unsigned char>(text[at]) < 0x80)
        ++at;
    return at;
}

// The loop has no exit, so that the compiler can test many bytes at once.
bool IsAscii(std::string_view text)
{
    unsigned char bits = 0;
    for (const char c : text)
        bits |= static_cast<unsigned char>(c);
    return bits < 0x80;
}

bool IsUtf8(std::string_view text)
{
    if (IsAscii(text))
        return true;
    while (!text.empty()) {
        utf8proc_int32_t codePoint = 0;
        const int length = NextCharacter(text, codePoint);
        if (length == 0)
            return false;
        text.remove_prefix(static_cast<std::size_t>(length));
    }
    return true;
}

std::string ShownText(std::string_view text)
{
    return WithoutControls(text, "");
}

std::string ShownLines(std::string_view text)
{
    return WithoutControls(text, "\t\r\n");
}

} // namespace runtime
