#include "metadata/unicode/tagwalk.h"

#include <algorithm>
#include <optional>
#include <set>

namespace metadata::unicode
{

namespace
{

constexpr int kMaxTags = 16;
constexpr auto kMostOfCutTag = static_cast<std::int64_t>(kMaxUnpackedBytes);
constexpr std::int64_t kId3v1Bytes = 128;

// Where a tag was read already (a SEEK frame that leads back), the walk ends.
class TagWalk
{
public:
    TagWalk(FileBytesPort &file, const VisitTag &visit) : m_file(file), m_visit(visit) {}

    void Run()
    {
        std::int64_t at = 0;
        while (const auto next = ReadTagAt(at))
            at = *next;
        ReadTagAtEnd();
    }

private:
    // Where the next tag may be; no value when there was no tag at `at`.
    std::optional<std::int64_t> ReadTagAt(std::int64_t at)
    {
        const auto header = ReadTagHeader(m_file.Read(at, kTagHeaderBytes));
        if (!header || m_read.size() == kMaxTags || !m_read.insert(at).second)
            return std::nullopt;
        const std::int64_t whole = header->WholeBytes();
        const std::int64_t rest = m_file.Length() - at;
        // A tag that claims more than the file holds is damaged: a large file is not read for it.
        const std::int64_t there = whole <= rest ? whole : std::min(rest, kMostOfCutTag);
        const std::string_view bytes = m_file.Read(at, there);
        const FrameList list = ReadFrames(*header, bytes);
        const std::int64_t next = at + whole + list.seek.value_or(0);
        m_visit({*header, at, there, there < whole}, bytes, list);
        return next;
    }

    void ReadTagAtEnd()
    {
        for (const std::int64_t behind : {kId3v1Bytes, std::int64_t{0}}) {
            const std::int64_t end = m_file.Length() - behind;
            if (end < 2 * kTagHeaderBytes)
                continue;
            const auto footer = ReadTagFooter(m_file.Read(end - kTagHeaderBytes, kTagHeaderBytes));
            const std::int64_t start = footer ? end - footer->bodyBytes - 2 * kTagHeaderBytes : -1;
            if (start >= 0 && ReadTagAt(start))
                return;
        }
    }

    FileBytesPort &m_file;
    const VisitTag &m_visit;
    std::set<std::int64_t> m_read; // where tags began
};

} // namespace

void WalkTags(FileBytesPort &file, const VisitTag &visit)
{
    TagWalk(file, visit).Run();
}

} // namespace metadata::unicode
