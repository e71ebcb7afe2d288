// tests/metadata/unicode/taginmemory.h - tags of a song in memory: read, and edited without a file.
#pragma once

#include "metadata/unicode/tagplan.h"
#include "metadata/unicode/tagtexts.h"
#include "metadata/unicode/tagwalk.h"
#include "tests/metadata/unicode/tagbytes.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tests
{

class BytesInMemory : public metadata::unicode::FileBytesPort
{
public:
    explicit BytesInMemory(std::string bytes) : m_bytes(std::move(bytes)) {}
    std::int64_t Length() override { return static_cast<std::int64_t>(m_bytes.size()); }
    std::string_view Read(std::int64_t position, std::int64_t count) override
    {
        if (position >= Length())
            return {};
        bytesRead += count;
        return std::string_view(m_bytes).substr(static_cast<std::size_t>(position),
                                                static_cast<std::size_t>(count));
    }
    std::int64_t bytesRead = 0; // asked for

private:
    std::string m_bytes;
};

inline metadata::unicode::TagTexts TextsOf(const std::string &bytes,
                                           const metadata::unicode::ReadingOptions &options = {})
{
    BytesInMemory file(bytes);
    return metadata::unicode::ReadTagTexts(file, options).value_or(metadata::unicode::TagTexts());
}

// What an edit made of a song.
struct EditedSong {
    metadata::unicode::TagPlan plan;
    std::string bytes; // as they would be written; the old ones where nothing is
};

using ChangeOfTexts = std::function<void(metadata::unicode::TagTexts &)>;

inline EditedSong EditInMemory(const std::string &song, const ChangeOfTexts &change)
{
    BytesInMemory file(song);
    metadata::unicode::TagEdit edit;
    edit.before = edit.now = TextsOf(song);
    change(edit.now);
    edit.hasID3v1 = song.size() >= 128 && song.compare(song.size() - 128, 3, "TAG") == 0;
    EditedSong result{metadata::unicode::PlanTag(file, edit), song};
    const auto &plan = result.plan;
    if (!plan.isChanged || plan.claimsTooMuch)
        return result;
    const auto audio = static_cast<std::size_t>(plan.audioOffset);
    const auto end = static_cast<std::size_t>(plan.audioEnd);
    result.bytes = plan.tag + song.substr(audio, end - audio) +
                   (edit.hasID3v1 ? song.substr(song.size() - 128) : std::string());
    return result;
}

// Where a test needs no real one.
inline const std::string kSomeAudio = "\xFF\xFB\x90\x64" + std::string(200, '\x55');

// `text` as zlib packs it.
inline std::string Packed(std::string_view text)
{
    std::string out(compressBound(static_cast<uLong>(text.size())), '\0');
    auto size = static_cast<uLongf>(out.size());
    EXPECT_EQ(compress(reinterpret_cast<Bytef *>(out.data()), &size,
                       reinterpret_cast<const Bytef *>(text.data()),
                       static_cast<uLong>(text.size())),
              Z_OK);
    out.resize(size);
    return out;
}

} // namespace tests
