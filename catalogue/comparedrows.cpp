#include "catalogue/comparedrows.h"

#include <bit>
#include <cstring>
#include <string>
#include <variant>

namespace catalogue
{

// The fingerprint is the hash of the hashes of the texts: so the end of one text and the beginning
// of the next one cannot be confused, and no text is copied.
runtime::Hash128 FingerprintOf(const ComparedTexts &texts)
{
    std::array<runtime::Hash128, kComparedColumns> hashes;
    for (std::size_t i = 0; i < texts.size(); ++i)
        hashes[i] = runtime::Hash128Of(texts[i]);
    std::array<char, sizeof hashes> bytes{};
    std::memcpy(bytes.data(), hashes.data(), bytes.size());
    return runtime::Hash128Of({bytes.data(), bytes.size()});
}

runtime::Hash128 FingerprintOf(const std::vector<Value> &values)
{
    ComparedTexts texts;
    for (std::size_t i = 0; i < texts.size(); ++i)
        texts[i] = std::get<std::string>(values[i]);
    return FingerprintOf(texts);
}

std::vector<Value> ValuesOf(const runtime::Hash128 &fingerprint)
{
    return {std::bit_cast<std::int64_t>(fingerprint.low),
            std::bit_cast<std::int64_t>(fingerprint.high)};
}

runtime::Hash128 FingerprintFrom(std::int64_t first, std::int64_t second)
{
    return {std::bit_cast<std::uint64_t>(first), std::bit_cast<std::uint64_t>(second)};
}

} // namespace catalogue
