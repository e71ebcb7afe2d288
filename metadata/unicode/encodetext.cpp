#include "metadata/unicode/encodetext.h"

#include "runtime/error.h"
#include "runtime/utf8.h"

#include <tbytevector.h>
#include <tstring.h>

#include <cstdint>
#include <limits>

namespace metadata::unicode
{

namespace
{

TagLib::String StringOf(std::string_view utf8)
{
    const TagLib::ByteVector bytes(utf8.data(), static_cast<unsigned>(utf8.size()));
    return {bytes, TagLib::String::UTF8};
}

std::string BytesOf(const TagLib::ByteVector &bytes)
{
    return {bytes.data(), bytes.size()};
}

// A control character of Latin-1 (0x80 to 0x9F) is another character for programs that read with
// their code page.
bool FitsLatin1(std::string_view utf8)
{
    for (std::string_view rest = utf8; !rest.empty();) {
        std::int32_t codePoint = 0;
        const int length = runtime::NextCharacter(rest, codePoint);
        if (length == 0 || codePoint > 0xFF || (codePoint >= 0x80 && codePoint < 0xA0))
            return false;
        rest.remove_prefix(static_cast<std::size_t>(length));
    }
    return runtime::IsAscii(utf8) ||
           DecodeText(Encoding::Latin1, EncodeText(Encoding::Latin1, utf8)) == utf8;
}

} // namespace

Encoding EncodingFor(const std::vector<std::string_view> &texts)
{
    for (const auto text : texts)
        if (!FitsLatin1(text))
            return Encoding::Utf16;
    return Encoding::Latin1;
}

std::string EncodeText(Encoding encoding, std::string_view utf8)
{
    if (encoding == Encoding::Latin1)
        return BytesOf(StringOf(utf8).data(TagLib::String::Latin1));
    if (utf8.empty())
        return "\xFF\xFE";
    return BytesOf(StringOf(utf8).data(TagLib::String::UTF16));
}

std::string_view Terminator(Encoding encoding)
{
    return {"\0\0", encoding == Encoding::Latin1 ? 1U : 2U};
}

std::string MakeFrame23(std::string_view id, std::string_view data, FrameFlags flags)
{
    if (data.size() > std::numeric_limits<std::int32_t>::max())
        throw runtime::RuntimeError(runtime::kInvalidCall);
    std::string frame(id);
    for (const unsigned shift : {24U, 16U, 8U, 0U})
        frame += static_cast<char>(data.size() >> shift & 0xFFU);
    frame += static_cast<char>(flags.status);
    frame += static_cast<char>(flags.format);
    frame += data;
    return frame;
}

} // namespace metadata::unicode
