#include "metadata/unicode/tagwalk.h"

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

namespace metadata::unicode
{

namespace
{

constexpr std::size_t kMaxTags = 16;
constexpr auto kMostOfDamagedTag = static_cast<std::int64_t>(kMaxUnpackedBytes);
constexpr std::int64_t kId3v1Bytes = 128;

class TagWalk
{
public:
    TagWalk(FileBytesPort &file, const VisitTag &visit) : m_file(file), m_visit(visit) {}

    void Run()
    {
        ReadTagsInFront();
        // Once with an ID3v1 tag after them, once without.
        for (const std::int64_t behind : {kId3v1Bytes, std::int64_t{0}})
            ReadTagsInFrontOf(m_file.Length() - behind);
    }

private:
    struct Extent {
        std::int64_t offset, end;
    };

    // The tags at the beginning, and those that SEEK frames lead to: always forward.
    void ReadTagsInFront()
    {
        std::int64_t at = 0;
        std::int64_t sought = -1;
        for (;;) {
            std::optional<std::int64_t> seek;
            if (ReadTagAt(at, seek)) {
                at = m_behind;
                if (seek)
                    sought = at + *seek;
            } else if (sought > at) {
                at = std::exchange(sought, -1);
            } else {
                return;
            }
        }
    }

    // Reads the tags that end at `end`, one in front of the other: each has a footer, or was read
    // already.
    void ReadTagsInFrontOf(std::int64_t end)
    {
        for (std::size_t i = 0; i <= kMaxTags && end > 0; ++i) {
            const auto known = std::find_if(m_read.begin(), m_read.end(),
                                            [end](const Extent &tag) { return tag.end == end; });
            const std::int64_t start = known != m_read.end() ? known->offset : ReadTagWithEnd(end);
            if (start < 0)
                return;
            end = start;
        }
    }

    // Returns: where the tag begins; -1 when there is none.
    std::int64_t ReadTagWithEnd(std::int64_t end)
    {
        if (end < 2 * kTagHeaderBytes)
            return -1;
        const auto footer = ReadTagFooter(m_file.Read(end - kTagHeaderBytes, kTagHeaderBytes));
        const std::int64_t start = footer ? end - footer->bodyBytes - 2 * kTagHeaderBytes : -1;
        const bool isFree =
            start >= 0 && std::none_of(m_read.begin(), m_read.end(), [&](const Extent &tag) {
                return tag.offset < end && start < tag.end;
            });
        if (!isFree)
            return -1;
        const auto header = ReadTagHeader(m_file.Read(start, kTagHeaderBytes));
        std::optional<std::int64_t> notUsed;
        const bool isWhole = header && start + header->WholeBytes() == end;
        return isWhole && ReadTagAt(start, notUsed) ? start : -1;
    }

    // Returns: whether there is a tag. `seek` is set to the value of its SEEK frame.
    bool ReadTagAt(std::int64_t at, std::optional<std::int64_t> &seek)
    {
        auto header = ReadTagHeader(m_file.Read(at, kTagHeaderBytes));
        if (!header || m_read.size() == kMaxTags)
            return false;
        // If the announced footer is missing, its bytes belong to the audio.
        const std::int64_t bodyEnd = at + kTagHeaderBytes + header->bodyBytes;
        if (header->HasFooter() && !ReadTagFooter(m_file.Read(bodyEnd, kTagHeaderBytes)))
            header->flags &= ~TagHeader::kFooterFlag;
        const std::int64_t there = BytesThere(*header, m_file.Length() - at);
        const std::string_view bytes = m_file.Read(at, there);
        const FrameList list = ReadFrames(*header, bytes);
        seek = list.seek;
        m_read.push_back({at, at + there});
        m_behind = at + header->WholeBytes(); // after the file's end, where the tag is damaged
        m_visit({*header, at, there, there < header->WholeBytes()}, bytes, list);
        return true;
    }

    FileBytesPort &m_file;
    const VisitTag &m_visit;
    std::vector<Extent> m_read; // no two of them overlap
    std::int64_t m_behind = 0;  // where the last tag ends, as its header says
};

} // namespace

std::int64_t BytesThere(const TagHeader &header, std::int64_t rest)
{
    const std::int64_t whole = header.WholeBytes();
    const bool isDamaged = whole > rest || header.bodyBytes > kLargestBody;
    return isDamaged ? std::min({rest, whole, kMostOfDamagedTag}) : whole;
}

void WalkTags(FileBytesPort &file, const VisitTag &visit)
{
    TagWalk(file, visit).Run();
}

} // namespace metadata::unicode
