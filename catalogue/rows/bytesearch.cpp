#include "catalogue/rows/bytesearch.h"

#include "runtime/text.h"

#include <algorithm>
#include <cstring>
#include <utility>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace catalogue
{

namespace
{

// The bit in which the two cases of an ASCII letter differ. It is set in all bytes before they are
// compared, so that a match is only a candidate.
constexpr unsigned char kCaseBit = 0x20;

// How frequent a byte is in upper-cased texts, as a rank: 0 for all rare bytes.
std::size_t Commonness(char c)
{
    constexpr std::string_view kCommon = "ZQXJ9876543210VKBPYGW-./FMCULDRHSNIOATE ";
    const auto byte = static_cast<unsigned char>(c);
    if (byte >= 0xC2) // the first byte of a letter beyond ASCII, which many letters share
        return kCommon.size();
    const auto rank = kCommon.find(runtime::UpperAscii(c));
    return rank == std::string_view::npos ? 0 : rank + 1;
}

} // namespace

ByteSearch::ByteSearch(std::string needle, LetterCase letterCase)
    : m_needle(std::move(needle)), m_letterCase(letterCase)
{
    const auto rarer = [this](std::size_t a, std::size_t b) {
        return Commonness(m_needle[a]) < Commonness(m_needle[b]);
    };
    for (std::size_t i = 1; i < m_needle.size(); ++i)
        if (rarer(i, m_firstProbe))
            m_firstProbe = i;
    m_secondProbe = m_firstProbe == 0 && m_needle.size() > 1 ? 1 : 0;
    for (std::size_t i = 0; i < m_needle.size(); ++i)
        if (i != m_firstProbe && rarer(i, m_secondProbe))
            m_secondProbe = i;
}

bool ByteSearch::IsAt(const char *place) const
{
    if (m_letterCase == LetterCase::Counts)
        return std::memcmp(place, m_needle.data(), m_needle.size()) == 0;
    return std::equal(m_needle.begin(), m_needle.end(), place, [](char a, char b) {
        return runtime::UpperAscii(a) == runtime::UpperAscii(b);
    });
}

std::size_t ByteSearch::FindOneByOne(std::string_view text, std::size_t from) const
{
    const auto mask = static_cast<unsigned char>(m_letterCase == LetterCase::Counts ? 0 : kCaseBit);
    const auto maskedAt = [mask](char c) { return static_cast<unsigned char>(c) | mask; };
    const int wanted = maskedAt(m_needle[m_firstProbe]);
    const char *place = text.data() + from;
    for (; from + m_needle.size() <= text.size(); ++from, ++place)
        if (maskedAt(place[m_firstProbe]) == wanted && IsAt(place))
            return from;
    return kNone;
}

#ifdef __SSE2__

std::size_t ByteSearch::Find(std::string_view text, std::size_t from) const
{
    constexpr std::size_t kStep = sizeof(__m128i);
    if (m_needle.empty())
        return from <= text.size() ? from : kNone;
    if (text.size() < m_needle.size())
        return kNone;
    const std::size_t places = text.size() - m_needle.size() + 1;
    const unsigned char mask = m_letterCase == LetterCase::Counts ? 0 : kCaseBit;
    const auto bits = _mm_set1_epi8(static_cast<char>(mask));
    const auto wanted = [&](std::size_t probe) {
        return _mm_set1_epi8(static_cast<char>(static_cast<unsigned char>(m_needle[probe]) | mask));
    };
    const auto first = wanted(m_firstProbe), second = wanted(m_secondProbe);
    const auto isThere = [&](const char *place, __m128i byte) {
        const auto bytes = _mm_loadu_si128(reinterpret_cast<const __m128i *>(place));
        return _mm_cmpeq_epi8(_mm_or_si128(bytes, bits), byte);
    };
    // The first place with the needle among the kStep places from `place` on, without the first
    // `skipped` of them; kNone when there is none.
    const auto findInStep = [&](const char *place, std::size_t skipped) {
        auto found = static_cast<unsigned>(_mm_movemask_epi8(_mm_and_si128(
            isThere(place + m_firstProbe, first), isThere(place + m_secondProbe, second))));
        for (found = found >> skipped << skipped; found != 0; found &= found - 1) {
            const auto at = static_cast<std::size_t>(__builtin_ctz(found));
            if (IsAt(place + at))
                return at;
        }
        return kNone;
    };
    for (; from + kStep <= places; from += kStep)
        if (const auto at = findInStep(text.data() + from, 0); at != kNone)
            return from + at;
    if (from >= places)
        return kNone;
    if (places < kStep)
        return FindOneByOne(text, from);
    // The last places, together with some that have been looked at already.
    const std::size_t last = places - kStep;
    const auto at = findInStep(text.data() + last, from - last);
    return at == kNone ? kNone : last + at;
}

#else

std::size_t ByteSearch::Find(std::string_view text, std::size_t from) const
{
    if (m_needle.empty())
        return from <= text.size() ? from : kNone;
    if (m_letterCase == LetterCase::Counts)
        return text.find(m_needle, from);
    return FindOneByOne(text, from);
}

#endif

} // namespace catalogue
