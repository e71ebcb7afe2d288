#include "metadata/unicode/textvalues.h"

#include "runtime/codepage.h"
#include "runtime/text.h"

#include <cstdint>
#include <optional>

namespace metadata::unicode
{

namespace
{

constexpr std::string_view kLowFirstMark = "\xFF\xFE";
constexpr std::string_view kHighFirstMark = "\xFE\xFF";
constexpr std::uint32_t kReplacement = 0xFFFD; // for what is no character

enum class ByteOrder { LowFirst, HighFirst };

void AppendUtf8(std::string &text, std::uint32_t codePoint)
{
    const auto byte = [&text](std::uint32_t value) { text += static_cast<char>(value); };
    if (codePoint < 0x80) {
        byte(codePoint);
    } else if (codePoint < 0x800) {
        byte(0xC0 | codePoint >> 6);
        byte(0x80 | (codePoint & 0x3F));
    } else if (codePoint < 0x10000) {
        byte(0xE0 | codePoint >> 12);
        byte(0x80 | (codePoint >> 6 & 0x3F));
        byte(0x80 | (codePoint & 0x3F));
    } else {
        byte(0xF0 | codePoint >> 18);
        byte(0x80 | (codePoint >> 12 & 0x3F));
        byte(0x80 | (codePoint >> 6 & 0x3F));
        byte(0x80 | (codePoint & 0x3F));
    }
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
    std::string text;
    for (std::size_t at = 0; at + 1 < bytes.size(); at += 2) {
        std::uint32_t codePoint = UnitAt(bytes, at, order);
        if (IsHighSurrogate(codePoint) && at + 3 < bytes.size() &&
            IsLowSurrogate(UnitAt(bytes, at + 2, order))) {
            codePoint =
                0x10000 + ((codePoint - 0xD800) << 10) + (UnitAt(bytes, at + 2, order) - 0xDC00);
            at += 2;
        } else if (IsHighSurrogate(codePoint) || IsLowSurrogate(codePoint)) {
            codePoint = kReplacement;
        }
        AppendUtf8(text, codePoint);
    }
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

// The order that a mark gives, cut off `bytes`.
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

// `known` is the order of the value before, and becomes that of this one.
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
    const bool wide = encoding == Encoding::Utf16 || encoding == Encoding::Utf16Be;
    const std::size_t step = wide ? 2 : 1;
    for (std::size_t at = 0; at + step <= bytes.size(); at += step) {
        if (bytes[at] == '\0' && (!wide || bytes[at + 1] == '\0'))
            return {bytes.substr(0, at), bytes.substr(at + step)};
    }
    return {bytes, {}};
}

std::vector<std::string> DecodeValues(Encoding encoding, std::string_view bytes)
{
    std::vector<std::string> values;
    std::optional<ByteOrder> known;
    while (!bytes.empty()) {
        const auto [text, rest] = CutAtTerminator(encoding, bytes);
        if (std::string value = DecodeOne(encoding, text, known); !value.empty())
            values.push_back(std::move(value));
        bytes = rest;
    }
    return values;
}

} // namespace metadata::unicode
