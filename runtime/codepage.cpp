#include "runtime/codepage.h"

#include "runtime/text.h"
#include "runtime/utf8.h"

#include <utf8proc.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>
#include <vector>

namespace runtime
{

namespace
{

struct Table {
    int number;                      // of the code page
    std::array<char16_t, 128> upper; // code point of byte 0x80 + index
};

constexpr Table kTables[] = {
#include "runtime/codepagetables.inc"
};

struct Utf8Character {
    char bytes[3];
    unsigned char length;
};

struct State {
    int number = 0;
    std::array<Utf8Character, 128> utf8{};                    // of byte 0x80 + index
    std::vector<std::pair<char16_t, unsigned char>> toByte{}; // sorted by code point
};

State MakeState(int codePage)
{
    const Table *table = std::find_if(std::begin(kTables), std::end(kTables),
                                      [&](const Table &t) { return t.number == codePage; });
    if (table == std::end(kTables))
        return MakeState(1252);
    State state;
    state.number = codePage;
    for (std::size_t i = 0; i < 128; ++i) {
        utf8proc_uint8_t bytes[4];
        const auto length = utf8proc_encode_char(table->upper[i], bytes);
        std::copy_n(bytes, length, state.utf8[i].bytes);
        state.utf8[i].length = static_cast<unsigned char>(length);
        state.toByte.emplace_back(table->upper[i], static_cast<unsigned char>(0x80 + i));
    }
    std::sort(state.toByte.begin(), state.toByte.end());
    return state;
}

State &TheState()
{
    static State state = MakeState(1252);
    return state;
}

char ByteOfCodePoint(const State &state, utf8proc_int32_t codePoint)
{
    if (codePoint < 0x80)
        return static_cast<char>(codePoint);
    if (codePoint > 0xFFFF)
        return '?';
    const auto wanted = static_cast<char16_t>(codePoint);
    const auto hit = std::lower_bound(state.toByte.begin(), state.toByte.end(),
                                      std::pair<char16_t, unsigned char>{wanted, 0});
    const bool found = hit != state.toByte.end() && hit->first == wanted;
    return found ? static_cast<char>(hit->second) : '?';
}

struct LanguagePage {
    std::string_view language; // two letters of ISO 639-1
    int codePage;
};

constexpr LanguagePage kLanguagePages[] = {
    {"bs", 1250}, {"cs", 1250}, {"hr", 1250}, {"hu", 1250}, {"pl", 1250}, {"ro", 1250},
    {"sk", 1250}, {"sl", 1250}, {"sq", 1250}, {"be", 1251}, {"bg", 1251}, {"kk", 1251},
    {"ky", 1251}, {"mk", 1251}, {"mn", 1251}, {"ru", 1251}, {"sr", 1251}, {"tt", 1251},
    {"uk", 1251}, {"el", 1253}, {"az", 1254}, {"tr", 1254}, {"uz", 1254}, {"he", 1255},
    {"yi", 1255}, {"ar", 1256}, {"fa", 1256}, {"ur", 1256}, {"et", 1257}, {"lt", 1257},
    {"lv", 1257}, {"vi", 1258}, {"th", 874},
};

} // namespace

int CodePage()
{
    return TheState().number;
}

void UseCodePage(int codePage)
{
    TheState() = MakeState(codePage);
}

int CodePageOfLocale(std::string_view localeName)
{
    const std::string_view language = localeName.substr(0, localeName.find_first_of("_.@"));
    if (localeName.starts_with("sr") && localeName.find("latin") != std::string_view::npos)
        return 1250;
    for (const LanguagePage &entry : kLanguagePages)
        if (entry.language == language)
            return entry.codePage;
    return 1252;
}

std::string TextOfBytes(std::string_view fileBytes)
{
    if (IsAscii(fileBytes))
        return std::string(fileBytes);
    const State &state = TheState();
    std::string text;
    text.reserve(fileBytes.size() + fileBytes.size() / 8);
    for (const char c : fileBytes) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x80) {
            text.push_back(c);
            continue;
        }
        const Utf8Character &character = state.utf8[byte - 0x80U];
        text.append(character.bytes, character.length);
    }
    return text;
}

std::string BytesOfText(std::string_view utf8)
{
    if (IsAscii(utf8))
        return std::string(utf8);
    const State &state = TheState();
    std::string bytes;
    bytes.reserve(utf8.size());
    while (!utf8.empty()) {
        std::int32_t codePoint = 0;
        const int length = NextCharacter(utf8, codePoint);
        if (length == 0) {
            bytes.push_back(utf8.front());
            utf8.remove_prefix(1);
            continue;
        }
        bytes.push_back(ByteOfCodePoint(state, codePoint));
        utf8.remove_prefix(static_cast<std::size_t>(length));
    }
    return bytes;
}

std::string CharactersLacking(std::string_view utf8)
{
    std::string lacking;
    while (!utf8.empty()) {
        std::int32_t codePoint = 0;
        const int length = NextCharacter(utf8, codePoint);
        const auto taken = static_cast<std::size_t>(std::max(length, 1));
        const std::string_view character = utf8.substr(0, taken);
        utf8.remove_prefix(taken);
        if (length > 1 && ByteOfCodePoint(TheState(), codePoint) == '?' &&
            lacking.find(character) == std::string::npos)
            lacking += character;
    }
    return lacking;
}

} // namespace runtime
