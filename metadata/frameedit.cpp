#include "metadata/frameedit.h"

#include "metadata/filepass.h"
#include "metadata/genres.h"
#include "metadata/id3v1.h"
#include "metadata/tagtext.h"
#include "platform/desktop.h"
#include "platform/machine.h"
#include "runtime/error.h"
#include "runtime/text.h"
#include "shell/language.h"

#include <algorithm>
#include <vector>

namespace metadata
{

namespace
{

// The bytes of a song; each part is read when it is needed.
class SongBytes : public unicode::FileBytesPort
{
public:
    explicit SongBytes(const std::string &path)
        : m_path(path), m_handle(platform::TheMachine().files->OpenToRead(path, m_song))
    {
        if (m_handle < 0)
            throw runtime::FileError(-m_handle, path);
    }
    ~SongBytes() override { platform::TheMachine().files->Close(m_handle); }
    SongBytes(const SongBytes &) = delete;
    SongBytes &operator=(const SongBytes &) = delete;

    std::int64_t Length() override { return m_song.sizeBytes; }

    std::string_view Read(std::int64_t position, std::int64_t count) override
    {
        count = std::clamp<std::int64_t>(count, 0, std::max<std::int64_t>(Length() - position, 0));
        if (static_cast<std::size_t>(count) < m_bytes.size() / 2)
            m_bytes = {}; // the memory of a large tag is not kept for a small one
        m_bytes.resize(static_cast<std::size_t>(count));
        std::size_t done = 0;
        while (done < m_bytes.size()) {
            const auto got = platform::TheMachine().files->ReadAt(
                m_handle, position + static_cast<std::int64_t>(done), m_bytes.data() + done,
                m_bytes.size() - done, true);
            if (got < 0) // what cannot be read could not be kept in the new tag
                throw runtime::FileError(static_cast<int>(-got), m_path);
            if (got == 0)
                break;
            done += static_cast<std::size_t>(got);
        }
        return {m_bytes.data(), done};
    }

private:
    const std::string &m_path;
    platform::FileIdentity m_song;
    int m_handle;
    std::vector<char> m_bytes;
};

unicode::TagTexts WantedTexts(const ID3v2Tag &tag)
{
    unicode::TagTexts texts;
    texts.title = tag.Title;
    texts.artist = tag.Artist;
    texts.album = tag.Album;
    texts.year = tag.Year;
    texts.comment = tag.Comment;
    texts.lyrics = tag.Lyrics;
    texts.genre = GenreField(tag);
    if (tag.Track > 0)
        texts.track = tag.Track;
    return texts;
}

bool IsSameText(const std::string &first, const std::string &second, std::size_t width)
{
    const auto used = [width](const std::string &field) {
        return UsedText(std::string_view(field).substr(0, width));
    };
    return used(first) == used(second);
}

// The names, each once, at most kMostNames of them.
std::string NamesOf(std::vector<std::string> names)
{
    constexpr std::size_t kMostNames = 12;
    std::sort(names.begin(), names.end());
    names.erase(std::unique(names.begin(), names.end()), names.end());
    std::string text;
    for (std::size_t i = 0; i < std::min(names.size(), kMostNames); ++i)
        text += (i == 0 ? "" : ", ") + runtime::ShownText(names[i]);
    return names.size() > kMostNames ? text + " ..." : text;
}

} // namespace

bool MayLoseFrames(const unicode::TagPlan &plan)
{
    if (plan.lost.empty())
        return true;
    const std::string question = shell::GetLanguageText(
        "These parts of the tag have no form in the version in which it would be written, and "
        "would be lost: $Frames$. Write it all the same?",
        "FramesLost", "TagEditor");
    return platform::TheMachine().desktop->MessageBox(
               runtime::Replace(question, "$Frames$", NamesOf(plan.lost)), platform::Buttons::YesNo,
               {}, platform::BoxIcon::Exclamation) == platform::Answer::Yes;
}

unicode::TagPlan PlanFrames(const RawTags &raw, const ID3v2Tag &tag, bool isWanted)
{
    SongBytes song(raw.file.path);
    unicode::TagEdit edit;
    edit.before = raw.texts.value_or(unicode::TagTexts());
    edit.now = WantedTexts(tag);
    edit.isWanted = isWanted;
    edit.hasID3v1 = raw.fileHasID3v1;
    edit.options = raw.bytes->options;
    return unicode::PlanTag(song, edit);
}

std::string PlanImage(const RawTags &raw, ID3v1Tag &tag)
{
    if (raw.fileHasID3v1) {
        ID3v1Tag old;
        ReadID3v1Fields(raw.id3v1Image, old);
        const bool isSame =
            IsSameText(old.Title, tag.Title, 30) && IsSameText(old.Artist, tag.Artist, 30) &&
            IsSameText(old.Album, tag.Album, 30) && IsSameText(old.Year, tag.Year, 4) &&
            IsSameText(old.Comment, tag.Comment, 29) && old.Track == tag.Track &&
            GenreName(old.Genre) == GenreName(tag.Genre);
        if (isSame)
            return raw.id3v1Image;
    }
    return BuildID3v1Tag(tag);
}

ID3v2Tag FieldsForRows(const ID3v1Tag *id3v1, const ID3v2Tag *id3v2, const unicode::TagPlan &plan)
{
    ID3v2Tag fields;
    fields.kind = TextKind::Utf8;
    fields.Genre = "-1";
    if (id3v2 != nullptr && plan.isChanged)
        TakeTexts(plan.texts, fields);
    else if (id3v2 != nullptr)
        fields = *id3v2;
    if (id3v1 != nullptr)
        FillFromID3v1(*id3v1, fields);
    return fields;
}

} // namespace metadata
