#include "metadata/unicode/textvalues.h"

#include "runtime/codepage.h"
#include "runtime/text.h"

#include <bit>
#include <cstdint>
#include <cstring>
#include <optional>

namespace metadata::unicode
{

namespace
{

constexpr std::string_view kLowFirstMark = "\xFF\xFE";
constexpr std::string_view kHighFirstMark = "\xFE\xFF";
constexpr std::uint32_t kReplacement = 0xFFFD; // for what is no character

enum class ByteOrder { LowFirst, HighFirst };

// Four units of UTF-16 in the order of the bytes.
constexpr std::size_t kBlock = 8;

std::uint64_t BlockAt(std::string_view bytes, std::size_t offset)
{
    std::uint64_t block = 0;
    std::memcpy(&block, bytes.data() + offset, kBlock);
    return block;
}

// A block of which each unit has these two bytes.
constexpr std::uint64_t UnitsLike(std::uint64_t first, std::uint64_t second)
{
    std::uint64_t block = 0;
    for (std::size_t i = 0; i < kBlock; ++i) {
        const std::uint64_t byte = i % 2 == 0 ? first : second;
        const std::size_t place = std::endian::native == std::endian::little ? i : kBlock - 1 - i;
        block |= byte << (8 * place);
    }
    return block;
}

// Writes to `to`, which has room for 4 bytes. Returns: the end of what was written.
char *WriteUtf8(char *to, std::uint32_t codePoint)
{
    if (codePoint < 0x80) {
        *to++ = static_cast<char>(codePoint);
        return to;
    }
    if (codePoint < 0x800) {
        *to++ = static_cast<char>(0xC0 | codePoint >> 6);
    } else {
        if (codePoint < 0x10000) {
            *to++ = static_cast<char>(0xE0 | codePoint >> 12);
        } else {
            *to++ = static_cast<char>(0xF0 | codePoint >> 18);
            *to++ = static_cast<char>(0x80 | (codePoint >> 12 & 0x3F));
        }
        *to++ = static_cast<char>(0x80 | (codePoint >> 6 & 0x3F));
    }
    *to++ = static_cast<char>(0x80 | (codePoint & 0x3F));
    return to;
}

std::uint32_t UnitAt(std::string_view bytes, std::size_t offset, ByteOrder order)
{
    const auto first = static_cast<unsigned char>(bytes[offset]);
    const auto second = static_cast<unsigned char>(bytes[offset + 1]);
    return order == ByteOrder::LowFirst ? first | second << 8U : first << 8U | second;
}

constexpr bool IsHighSurrogate(std::uint32_t unit)
{
    return unit >= 0xD800 && unit < 0xDC00;
}

constexpr bool IsLowSurrogate(std::uint32_t unit)
{
    return unit >= 0xDC00 && unit < 0xE000;
}

std::string DecodeUtf16(std::string_view bytes, ByteOrder order)
{
    const std::uint64_t notAscii =
        order == ByteOrder::LowFirst ? UnitsLike(0x80, 0xFF) : UnitsLike(0xFF, 0x80);
    const std::size_t low = order == ByteOrder::LowFirst ? 0 : 1;
    std::string text(bytes.size() / 2 * 3, '\0'); // two units, which take four bytes, may take six
    char *to = text.data();
    for (std::size_t at = 0; at + 1 < bytes.size(); at += 2) {
        while (at + kBlock <= bytes.size() && (BlockAt(bytes, at) & notAscii) == 0) {
            for (std::size_t i = 0; i < kBlock; i += 2)
                *to++ = bytes[at + low + i];
            at += kBlock;
        }
        if (at + 1 >= bytes.size())
            break;
        std::uint32_t codePoint = UnitAt(bytes, at, order);
        if (IsHighSurrogate(codePoint) && at + 3 < bytes.size() &&
            IsLowSurrogate(UnitAt(bytes, at + 2, order))) {
            codePoint =
                0x10000 + ((codePoint - 0xD800) << 10) + (UnitAt(bytes, at + 2, order) - 0xDC00);
            at += 2;
        } else if (IsHighSurrogate(codePoint) || IsLowSurrogate(codePoint)) {
            codePoint = kReplacement;
        }
        to = WriteUtf8(to, codePoint);
    }
    text.resize(static_cast<std::size_t>(to - text.data()));
    return text;
}

ByteOrder GuessByteOrder(std::string_view bytes)
{
    int low = 0;
    int high = 0;
    for (std::size_t at = 0; at + 1 < bytes.size(); at += 2) {
        const bool firstIsZero = bytes[at] == '\0';
        const bool secondIsZero = bytes[at + 1] == '\0';
        low += secondIsZero && !firstIsZero ? 1 : 0;
        high += firstIsZero && !secondIsZero ? 1 : 0;
    }
    return high > low ? ByteOrder::HighFirst : ByteOrder::LowFirst;
}

// Removes a byte order mark from `bytes`. Returns: the order that it gives; no value without one.
std::optional<ByteOrder> TakeMark(std::string_view &bytes)
{
    if (bytes.starts_with(kLowFirstMark)) {
        bytes.remove_prefix(kLowFirstMark.size());
        return ByteOrder::LowFirst;
    }
    if (bytes.starts_with(kHighFirstMark)) {
        bytes.remove_prefix(kHighFirstMark.size());
        return ByteOrder::HighFirst;
    }
    return std::nullopt;
}

// `known`: the byte order of the value before; it is set to that of this value.
std::string DecodeOne(Encoding encoding, std::string_view bytes, std::optional<ByteOrder> &known)
{
    if (encoding == Encoding::Utf16 || encoding == Encoding::Utf16Be) {
        if (const auto marked = TakeMark(bytes))
            known = marked;
        else if (encoding == Encoding::Utf16Be)
            known = ByteOrder::HighFirst;
        else if (!known)
            known = GuessByteOrder(bytes);
        return DecodeUtf16(bytes, *known);
    }
    if (!runtime::IsAscii(bytes) && !runtime::IsUtf8(bytes))
        return runtime::TextOfBytes(bytes);
    if (bytes.starts_with(runtime::kByteOrderMark))
        bytes.remove_prefix(runtime::kByteOrderMark.size());
    return std::string(bytes);
}

bool IsWide(Encoding encoding)
{
    return encoding == Encoding::Utf16 || encoding == Encoding::Utf16Be;
}

// The offset of the first unit that is 0; bytes.size() without one.
std::size_t FindWideTerminator(std::string_view bytes)
{
    constexpr std::uint64_t kOnes = 0x0001000100010001;
    constexpr std::uint64_t kHighBits = 0x8000800080008000;
    std::size_t at = 0;
    for (; at + kBlock <= bytes.size(); at += kBlock) {
        const std::uint64_t block = BlockAt(bytes, at);
        if (((block - kOnes) & ~block & kHighBits) != 0) // at least one of the four units is 0
            break;
    }
    while (at + 1 < bytes.size() && (bytes[at] != '\0' || bytes[at + 1] != '\0'))
        at += 2;
    return at + 1 < bytes.size() ? at : bytes.size();
}

} // namespace

Encoding EncodingOf(unsigned char byte)
{
    return byte <= 3 ? static_cast<Encoding>(byte) : Encoding::Latin1;
}

std::string DecodeText(Encoding encoding, std::string_view bytes)
{
    std::optional<ByteOrder> known;
    return DecodeOne(encoding, bytes, known);
}

TerminatedText CutAtTerminator(Encoding encoding, std::string_view bytes)
{
    const bool wide = IsWide(encoding);
    const std::size_t end = wide ? FindWideTerminator(bytes) : bytes.find('\0');
    if (end >= bytes.size())
        return {bytes, {}};
    return {bytes.substr(0, end), bytes.substr(end + (wide ? 2 : 1))};
}

std::vector<std::string> DecodeValues(Encoding encoding, std::string_view bytes)
{
    std::vector<std::string> values;
    std::optional<ByteOrder> known;
    for (std::size_t count = 0; !bytes.empty() && count < kMostValues; ++count) {
        const auto [text, rest] = CutAtTerminator(encoding, bytes);
        if (std::string value = DecodeOne(encoding, text, known); !value.empty())
            values.push_back(std::move(value));
        bytes = rest;
    }
    return values;
}

std::string DecodeJoined(Encoding encoding, std::string_view bytes, std::string_view before)
{
    std::string all;
    std::optional<ByteOrder> known;
    if (IsWide(encoding))
        known = TakeMark(before);
    for (std::size_t count = 0; !bytes.empty() && count < kMostValues; ++count) {
        const auto [text, rest] = CutAtTerminator(encoding, bytes);
        std::string value = DecodeOne(encoding, text, known);
        bytes = rest;
        if (all.empty())
            all = std::move(value);
        else if (!value.empty())
            all.append("; ").append(value);
    }
    return all;
}

} // namespace metadata::unicode
