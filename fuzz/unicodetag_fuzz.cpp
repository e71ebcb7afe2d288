// Any file whose tags are read by their frames: all texts are UTF-8, and reading it again gives the
// same.
#include "fuzz/bytesport.h"
#include "fuzz/expect.h"
#include "metadata/unicode/tagtexts.h"
#include "runtime/utf8.h"

#include <string_view>

using fuzz::Expect;

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size)
{
    fuzz::BytesPort file({reinterpret_cast<const char *>(data), size});
    const metadata::unicode::ReadingOptions options{.language = "spa", .mpegFrameMs = 26.122};
    const auto found = metadata::unicode::ReadTagTexts(file, options);
    const auto texts = found.value_or(metadata::unicode::TagTexts());
    for (const auto *text : {&texts.title, &texts.artist, &texts.album, &texts.year, &texts.comment,
                             &texts.lyrics, &texts.genre})
        Expect(!*text || (!(*text)->empty() && runtime::IsUtf8(**text)));
    Expect(!texts.track || *texts.track >= 1);
    if (metadata::unicode::ReadTagTexts(file, options) != found)
        std::abort();
    return 0;
}
