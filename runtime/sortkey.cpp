#include "runtime/sortkey.h"

#include "runtime/text.h"

#include <utf8proc.h>

#include <algorithm>
#include <cstdlib>

namespace runtime
{

namespace
{

bool IsAscii(std::string_view text)
{
    return std::all_of(text.begin(), text.end(),
                       [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

// The upper-cased text without accents; as it stands when it is no valid UTF-8.
std::string BaseLetters(const std::string &upper)
{
    utf8proc_uint8_t *mapped = nullptr;
    const auto length =
        utf8proc_map(reinterpret_cast<const utf8proc_uint8_t *>(upper.data()),
                     static_cast<utf8proc_ssize_t>(upper.size()), &mapped,
                     static_cast<utf8proc_option_t>(UTF8PROC_DECOMPOSE | UTF8PROC_STRIPMARK));
    if (length < 0)
        return upper;
    std::string base(reinterpret_cast<const char *>(mapped), static_cast<std::size_t>(length));
    std::free(mapped);
    return base;
}

} // namespace

std::string SortKeyOf(std::string_view utf8)
{
    if (IsAscii(utf8))
        return UpperAscii(utf8);
    const std::string upper = UpperText(utf8);
    std::string key = BaseLetters(upper);
    key.push_back('\0');
    return key.append(upper);
}

} // namespace runtime
