// Any file whose tags are read by their frames: all texts are UTF-8, and reading it again gives the
// same.
#include "metadata/unicode/tagtexts.h"
#include "runtime/text.h"

#include <cstdlib>
#include <string_view>

namespace
{

class BytesPort : public metadata::unicode::FileBytesPort
{
public:
    BytesPort(const unsigned char *data, std::size_t size)
        : m_bytes(reinterpret_cast<const char *>(data), size)
    {
    }
    std::int64_t Length() override { return static_cast<std::int64_t>(m_bytes.size()); }
    std::string_view Read(std::int64_t position, std::int64_t count) override
    {
        if (position < 0 || count < 0)
            std::abort();
        if (position >= Length())
            return {};
        return m_bytes.substr(static_cast<std::size_t>(position), static_cast<std::size_t>(count));
    }

private:
    std::string_view m_bytes;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size)
{
    BytesPort file(data, size);
    const metadata::unicode::ReadingOptions options{.language = "spa", .mpegFrameMs = 26.122};
    const auto found = metadata::unicode::ReadTagTexts(file, options);
    const auto texts = found.value_or(metadata::unicode::TagTexts());
    for (const auto *text : {&texts.title, &texts.artist, &texts.album, &texts.year, &texts.comment,
                             &texts.lyrics, &texts.genre}) {
        if (*text && ((*text)->empty() || !runtime::IsUtf8(**text)))
            std::abort();
    }
    if (texts.track && *texts.track < 1)
        std::abort();
    if (metadata::unicode::ReadTagTexts(file, options) != found)
        std::abort();
    return 0;
}
