#include "metadata/headdigest.h"

#include "metadata/mpegheader.h"
#include "metadata/unicode/tagtexts.h"

namespace metadata
{

std::unique_ptr<platform::Digest> DigestHead(std::string_view start, std::int64_t sizeBytes)
{
    auto digest = std::make_unique<HeadDigest>();
    digest->bytes = start.data();
    digest->byteCount = start.size();
    digest->headerPosition = FindHeaderPosition(start);
    const std::int64_t body = FindBodyBytes(start).value_or(0);
    const auto held = static_cast<std::int64_t>(start.size());
    if (body <= 0 || body > sizeBytes || kTagHeaderBytes + body > held)
        return digest;
    digest->hasWholeTag = true;
    digest->findings = FindFrames(
        start.substr(static_cast<std::size_t>(kTagHeaderBytes), static_cast<std::size_t>(body)),
        static_cast<unsigned char>(start[kMajorVersionIndex]));
    const auto header = unicode::ReadTagHeader(start);
    digest->hasTextsForFrames = header && unicode::NeedsFrames(*header, start);
    return digest;
}

const HeadDigest *DigestOf(const platform::Digest *digest, std::string_view bytes)
{
    const auto *found = dynamic_cast<const HeadDigest *>(digest);
    const bool isOfThese =
        found != nullptr && found->bytes == bytes.data() && found->byteCount == bytes.size();
    return isOfThese ? found : nullptr;
}

} // namespace metadata
