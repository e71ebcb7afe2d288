#include "platform/terminal/terminaltext.h"

#include "platform/disk/userfolders.h"
#include "runtime/text.h"
#include "runtime/utf8.h"

#include <iconv.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace platform::terminal
{

namespace
{

// An open conversion from UTF-8.
class Conversion
{
public:
    explicit Conversion(const std::string &to) : m_handle(iconv_open(to.c_str(), "UTF-8")) {}
    ~Conversion()
    {
        if (IsOpen())
            iconv_close(m_handle);
    }
    Conversion(const Conversion &) = delete;
    Conversion &operator=(const Conversion &) = delete;

    bool IsOpen() const { return reinterpret_cast<std::intptr_t>(m_handle) != -1; }

    // One character; "?" where the character set lacks it.
    std::string Convert(std::string character)
    {
        char bytes[16];
        char *from = character.data();
        char *to = bytes;
        std::size_t left = character.size();
        std::size_t room = sizeof bytes;
        iconv(m_handle, nullptr, nullptr, nullptr, nullptr);
        if (iconv(m_handle, &from, &left, &to, &room) != 0)
            return "?";
        return {bytes, to};
    }

private:
    iconv_t m_handle;
};

} // namespace

std::string CharacterSetOf(std::string_view localeName)
{
    const std::size_t dot = localeName.find('.');
    if (dot == std::string_view::npos)
        return {};
    std::string set(localeName.substr(dot + 1, localeName.find('@') - dot - 1));
    const std::string upper = runtime::UpperText(set);
    return upper == "UTF-8" || upper == "UTF8" ? std::string() : set;
}

std::string TextIn(const std::string &characterSet, std::string_view utf8)
{
    if (characterSet.empty() || runtime::IsAscii(utf8))
        return std::string(utf8);
    Conversion conversion(characterSet);
    if (!conversion.IsOpen())
        return std::string(utf8);
    std::string shown;
    while (!utf8.empty()) {
        std::int32_t codePoint = 0;
        const auto length = static_cast<std::size_t>(runtime::NextCharacter(utf8, codePoint));
        const std::string character(utf8.substr(0, std::max<std::size_t>(length, 1)));
        shown += length > 1 ? conversion.Convert(character) : character;
        utf8.remove_prefix(character.size());
    }
    return shown;
}

std::string ForTerminal(std::string_view utf8)
{
    static const std::string characterSet = CharacterSetOf(LocaleName());
    return TextIn(characterSet, utf8);
}

} // namespace platform::terminal
