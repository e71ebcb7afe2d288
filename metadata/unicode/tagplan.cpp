#include "metadata/unicode/tagplan.h"

#include "metadata/unicode/form23.h"
#include "metadata/unicode/newframes.h"
#include "metadata/unicode/syncedlyrics.h"
#include "metadata/unicode/textvalues.h"
#include "runtime/error.h"
#include "runtime/text.h"

#include <algorithm>
#include <map>
#include <memory>
#include <set>
#include <utility>

namespace metadata::unicode
{

namespace
{

constexpr std::int64_t kId3v1Bytes = 128;
constexpr std::int64_t kMostOldBytes = 2 * kLargestBody;
constexpr std::string_view kLanguage = "eng"; // of a new comment or lyrics
constexpr unsigned kFlagsOfStructure = 0xC0;  // unsynchronised, extended header

// One tag of the old file, with its bytes.
struct OldTag {
    TagPlace place;
    std::string bytes;
    FrameList list;
    std::vector<FrameForm> forms = {};
};

using OldTags = std::vector<std::unique_ptr<OldTag>>; // the lists have views into `bytes`

OldTags ReadOldTags(FileBytesPort &file)
{
    OldTags tags;
    std::int64_t all = 0;
    WalkTags(file, [&](const TagPlace &place, std::string_view bytes, const FrameList &) {
        all += place.bytes;
        if (all > kMostOldBytes)
            throw runtime::RuntimeError(runtime::kOutOfMemory);
        auto tag = std::make_unique<OldTag>(OldTag{place, std::string(bytes), {}});
        tag->list = ReadFrames(place.header, tag->bytes);
        tags.push_back(std::move(tag));
    });
    return tags;
}

bool IsPadding(std::string_view bytes)
{
    return bytes.find_first_not_of('\0') == std::string_view::npos;
}

std::string TextOr(const std::optional<std::string> &text)
{
    return text.value_or(std::string());
}

std::string Words(const std::optional<std::string> &genre)
{
    return genre ? GenreInWords(*genre) : std::string();
}

// The name in version 2.3 of a frame that a tag may have only once; empty for frames that it may
// have several times, and for text frames without a value.
std::string_view UniqueName(const Frame &frame)
{
    constexpr std::string_view kOnce[] = {"MCDI", "PCNT", "RBUF", "ETCO", "MLLT", "SYTC",
                                          "RVAD", "EQUA", "RVRB", "OWNE", "POSS", "IPLS"};
    const bool isText = frame.id.starts_with('T') && frame.id != "TXXX";
    if (isText && ValuesOf(frame).empty())
        return {};
    if (frame.id == "TDRC")
        return "TYER";
    if (frame.id == "TDOR")
        return "TORY";
    if (frame.id == "TIPL" || frame.id == "TMCL")
        return "IPLS";
    const bool isOnce =
        isText || std::find(std::begin(kOnce), std::end(kOnce), frame.id) != std::end(kOnce);
    return isOnce ? frame.id : std::string_view();
}

// A tag in memory.
class TagBytes : public FileBytesPort
{
public:
    explicit TagBytes(std::string_view bytes) : m_bytes(bytes) {}
    std::int64_t Length() override { return static_cast<std::int64_t>(m_bytes.size()); }
    std::string_view Read(std::int64_t position, std::int64_t count) override
    {
        if (position < 0 || count < 0 || position >= Length())
            return {};
        return m_bytes.substr(static_cast<std::size_t>(position), static_cast<std::size_t>(count));
    }

private:
    std::string_view m_bytes;
};

// A genre in words as a tag of version 2.3 stores it: a bracket at its beginning is doubled,
// because a single one begins a number.
std::string StoredGenre(const std::string &genre)
{
    return genre.starts_with('(') ? "(" + genre : genre;
}

// The text of a track frame with another number: "4" in the place of the 3 in "3/12".
std::string TrackText(const std::string &old, std::int16_t track)
{
    const auto slash = old.find('/');
    return std::to_string(track) + (slash == std::string::npos ? "" : old.substr(slash));
}

class Planner
{
public:
    Planner(FileBytesPort &file, const TagEdit &edit) : m_file(file), m_edit(edit) {}

    TagPlan Run()
    {
        if (m_edit.isWanted)
            FindChanges();
        if (m_edit.isWanted && m_changes.empty())
            return std::move(m_plan);
        m_tags = ReadOldTags(m_file);
        m_plan.isChanged =
            m_edit.isWanted || std::any_of(m_tags.begin(), m_tags.end(), [](const auto &tag) {
                return tag->place.header.bodyBytes > 0;
            });
        FindAudio();
        if (!m_plan.isChanged || !m_edit.isWanted || m_plan.claimsTooMuch)
            return std::move(m_plan);
        BuildTag();
        if (AddOtherwiseRead())
            BuildTag();
        // The new tag can be equal to the old one, because a frame cannot hold every text (a year
        // of five digits, for example).
        const bool isAsBefore = m_tags.size() == 1 && m_tags.front()->bytes == m_plan.tag;
        m_plan.isChanged = !isAsBefore && !(m_tags.empty() && m_plan.tag.empty());
        if (!m_plan.isChanged)
            m_plan.lost.clear();
        return std::move(m_plan);
    }

private:
    enum class Field { Title, Artist, Album, Year, Genre, Track, Comment, Lyrics };

    using Texts = std::map<Field, std::string>;

    // The fields as they are compared and written; an empty text is the same as none.
    static Texts TextsToCompare(const TagTexts &texts)
    {
        const bool hasTrack = texts.track.value_or(0) > 0;
        return {{Field::Title, TextOr(texts.title)},
                {Field::Artist, TextOr(texts.artist)},
                {Field::Album, TextOr(texts.album)},
                {Field::Year, TextOr(texts.year)},
                {Field::Genre, Words(texts.genre)},
                {Field::Track, hasTrack ? std::to_string(*texts.track) : std::string()},
                {Field::Comment, TextOr(texts.comment)},
                {Field::Lyrics, TextOr(texts.lyrics)}};
    }

    void FindChanges()
    {
        const Texts before = TextsToCompare(m_edit.before);
        for (auto &[field, text] : TextsToCompare(m_edit.now))
            if (before.at(field) != text)
                m_changes.emplace(field, text);
    }

    // Adds each field that nobody changed and that would be read differently from the new tag to
    // the changes. Returns: whether there are any.
    bool AddOtherwiseRead()
    {
        const Texts before = TextsToCompare(m_edit.before);
        const std::size_t count = m_changes.size();
        for (const auto &[field, text] : TextsToCompare(m_plan.texts))
            if (!m_changes.contains(field) && before.at(field) != text)
                m_changes.emplace(field, before.at(field));
        return m_changes.size() > count;
    }

    void FindAudio()
    {
        m_plan.audioEnd = m_file.Length() - (m_edit.hasID3v1 ? kId3v1Bytes : 0);
        for (const auto &tag : m_tags) {
            m_plan.claimsTooMuch |= tag->place.claimsTooMuch;
            if (tag->place.offset == m_plan.audioOffset)
                m_plan.audioOffset = tag->place.End();
        }
        // Tags at the end may be in the list in either order.
        for (std::size_t round = 0; round < m_tags.size(); ++round)
            for (const auto &tag : m_tags)
                if (tag->place.offset >= m_plan.audioOffset && tag->place.End() == m_plan.audioEnd)
                    m_plan.audioEnd = tag->place.offset;
        m_plan.claimsTooMuch |= m_plan.audioEnd < m_plan.audioOffset;
    }

    // The tags in the order in which their fields count.
    std::vector<OldTag *> Effective() const
    {
        std::vector<OldTag *> order;
        for (const auto &tag : m_tags)
            order.insert(tag->list.isUpdate ? order.begin() : order.end(), tag.get());
        return order;
    }

    void BuildTag()
    {
        m_plan.lost.clear();
        m_added.clear();
        m_order = Effective();
        for (OldTag *tag : m_order)
            tag->forms = FormsOf(tag->list, m_plan.lost);
        for (const auto &[field, text] : m_changes)
            Change(field, text);
        std::string &tag = m_plan.tag;
        tag.assign("ID3\x03\0\0\0\0\0\0", kTagHeaderBytes);
        tag.reserve(tag.size() + LengthOfAll());
        AppendFrames(tag);
        for (const auto &frame : m_added)
            tag += frame;
        AppendRests(tag);
        FinishTag(tag);
        TagBytes bytes(tag);
        m_plan.texts = ReadTagTexts(bytes, m_edit.options).value_or(TagTexts());
    }

    // About the length of the new tag, to reserve memory.
    std::size_t LengthOfAll() const
    {
        std::size_t length = 0;
        for (const auto &frame : m_added)
            length += frame.size();
        for (const OldTag *tag : m_order) {
            length += tag->list.rest.size();
            for (const FrameForm &form : tag->forms)
                form.ForEach([&length](std::string_view frame) { length += frame.size(); });
        }
        return length;
    }

    // Writes the size into the header. A tag that has only padding is removed.
    static void FinishTag(std::string &tag)
    {
        const std::size_t bytes = tag.size() - kTagHeaderBytes;
        if (IsPadding(std::string_view(tag).substr(kTagHeaderBytes))) {
            tag.clear();
            return;
        }
        if (bytes > static_cast<std::size_t>(kLargestBody))
            throw runtime::RuntimeError(runtime::kInvalidCall);
        for (std::size_t i = 0; i < 4; ++i)
            tag[6 + i] = static_cast<char>(bytes >> (21 - 7 * i) & 0x7FU);
    }

    // Appends the frames of the first tag, then those of the other tags that the tags before do not
    // have.
    void AppendFrames(std::string &tag)
    {
        std::set<std::string_view> names;
        std::set<std::string_view> whole;
        for (std::size_t i = 0; i < m_order.size(); ++i) {
            std::set<std::string_view> namesHere;
            for (const FrameForm &form : m_order[i]->forms)
                AppendFrame(form, i > 0, tag, names, namesHere, whole);
            names.merge(namesHere);
        }
    }

    // `names`: the frames that a tag may have only once and that earlier tags have; `namesHere`:
    // the same for this tag.
    void AppendFrame(const FrameForm &form, bool isLater, std::string &tag,
                     const std::set<std::string_view> &names, std::set<std::string_view> &namesHere,
                     std::set<std::string_view> &whole)
    {
        const bool areSeveral = m_order.size() > 1;
        const std::string_view name =
            areSeveral && !form.IsEmpty() ? UniqueName(*form.source) : std::string_view();
        const bool isThere = isLater && !name.empty() && names.contains(name);
        bool isLost = false;
        form.ForEach([&](std::string_view frame) {
            if (isLater && whole.contains(frame))
                return;
            isLost |= isThere;
            if (isThere)
                return;
            tag += frame;
            if (areSeveral)
                whole.insert(frame);
        });
        if (isLost)
            m_plan.lost.emplace_back(form.source->id);
        if (!name.empty())
            namesHere.insert(name);
    }

    // Padding keeps its length. Bytes that are neither padding nor a frame are kept only when the
    // tag is written as it is stored; otherwise they are reported as lost.
    void AppendRests(std::string &bytes)
    {
        if (m_order.empty())
            return;
        const OldTag &first = *m_order.front();
        const bool isAsStored = m_order.size() == 1 && first.place.header.majorVersion == 3 &&
                                (first.place.header.flags & kFlagsOfStructure) == 0;
        for (const OldTag *tag : m_order) {
            const std::string_view rest = tag->list.rest;
            if (isAsStored || (tag == &first && IsPadding(rest)))
                bytes += rest;
            else if (!IsPadding(rest))
                m_plan.lost.push_back(std::to_string(rest.size()) + " B");
        }
    }

    // --- the fields

    void Change(Field field, const std::string &text)
    {
        switch (field) {
        case Field::Title:
            return ChangeText("TIT2", text);
        case Field::Artist:
            return ChangeText("TPE1", text);
        case Field::Album:
            return ChangeText("TALB", text);
        case Field::Year:
            return ChangeYear(text);
        case Field::Genre:
            return ChangeText("TCON", text);
        case Field::Track:
            return ChangeTrack(text);
        case Field::Comment:
            return ChangeDescribed("COMM", text);
        case Field::Lyrics:
            return ChangeDescribed("USLT", text);
        }
    }

    template <class Pick>
    std::vector<FrameForm *> Forms(const Pick &pick) const
    {
        std::vector<FrameForm *> forms;
        for (OldTag *tag : m_order)
            for (FrameForm &form : tag->forms)
                if (pick(*form.source))
                    forms.push_back(&form);
        return forms;
    }

    std::vector<FrameForm *> FormsNamed(std::string_view id) const
    {
        return Forms([id](const Frame &frame) { return frame.id == id; });
    }

    // Puts `frames` in the place of the first of `forms`, or at the end, and removes the other
    // forms.
    void Replace(const std::vector<FrameForm *> &forms, std::vector<std::string> frames)
    {
        for (FrameForm *form : forms)
            form->Set({});
        if (forms.empty())
            m_added.insert(m_added.end(), frames.begin(), frames.end());
        else
            forms.front()->Set(std::move(frames));
    }

    void ChangeText(std::string_view id, const std::string &text)
    {
        const auto forms = FormsNamed(id);
        if (text.empty())
            return Replace(forms, {});
        std::vector<std::string> values{text};
        for (const FrameForm *form : forms)
            if (ValuesOf(*form->source).size() > 1)
                values = runtime::Split(text, "; ");
        if (values.size() > kMostValues ||
            std::find(values.begin(), values.end(), std::string()) != values.end())
            values = {text}; // several values would be read as another text
        if (id == "TCON")
            std::transform(values.begin(), values.end(), values.begin(), StoredGenre);
        Replace(forms, {NewTextFrame(id, values)});
    }

    void ChangeYear(const std::string &text)
    {
        if (text.empty())
            return Replace(Forms([](const Frame &frame) {
                               return frame.id == "TDRC" || frame.id == "TYER" ||
                                      frame.id == "TDRL";
                           }),
                           {});
        const auto forms =
            Forms([](const Frame &frame) { return frame.id == "TDRC" || frame.id == "TYER"; });
        std::vector<std::string> frames{NewTextFrame("TYER", {text})};
        // The day and the time of a TDRC frame are kept.
        for (const FrameForm *form : forms) {
            if (form->source->id != "TDRC" || text.size() != 4 || !BeginsWithYear(text))
                continue;
            const auto values = ValuesOf(*form->source);
            if (values.empty() || values.front().size() <= 4 || !BeginsWithYear(values.front()))
                continue;
            const std::string time = text + values.front().substr(4);
            if (FormsNamed("TDAT").empty() && FormsNamed("TIME").empty())
                frames = RecordingTime(time);
            else
                frames.push_back(NewTextFrame("TDRC", {time}));
            break;
        }
        Replace(forms, std::move(frames));
    }

    void ChangeTrack(const std::string &text)
    {
        const auto forms = FormsNamed("TRCK");
        if (text.empty())
            return Replace(forms, {});
        std::string old;
        for (const FrameForm *form : forms)
            if (old.find('/') == std::string::npos)
                old = Joined(ValuesOf(*form->source));
        Replace(forms, {NewTextFrame("TRCK", {TrackText(old, m_edit.now.track.value_or(0))})});
    }

    // The frame of that name that is read; null when there is none.
    FrameForm *Chosen(std::string_view id) const
    {
        std::vector<const FrameList *> lists;
        for (const OldTag *tag : m_order)
            lists.push_back(&tag->list);
        const Frame *frame = ChosenFrame(lists, id, m_edit.options);
        for (OldTag *tag : m_order)
            for (FrameForm &form : tag->forms)
                if (form.source == frame)
                    return &form;
        return nullptr;
    }

    // The lyrics with times that are read when there are no others.
    FrameForm *SyncedLyrics() const
    {
        for (FrameForm *form : FormsNamed("SYLT")) {
            const auto content = FrameContent(*form->source);
            if (content && !LinesOfSyncedLyrics(*content, m_edit.options.mpegFrameMs).empty())
                return form;
        }
        return nullptr;
    }

    void ChangeDescribed(std::string_view id, const std::string &text)
    {
        FrameForm *chosen = Chosen(id);
        if (text.empty()) {
            if (chosen == nullptr && id == "USLT")
                chosen = SyncedLyrics();
            if (chosen != nullptr)
                chosen->Set({});
            return;
        }
        if (chosen == nullptr) {
            m_added.push_back(NewDescribedFrame(id, kLanguage, {}, text));
            return;
        }
        const std::string content = FrameContent(*chosen->source).value_or("");
        const Encoding encoding = EncodingOf(static_cast<unsigned char>(content.front()));
        const std::string_view behind = std::string_view(content).substr(4);
        const std::string description =
            DecodeText(encoding, CutAtTerminator(encoding, behind).text);
        chosen->Set({NewDescribedFrame(id, content.substr(1, 3), description, text)});
    }

    FileBytesPort &m_file;
    const TagEdit &m_edit;
    TagPlan m_plan;
    OldTags m_tags;
    std::vector<OldTag *> m_order;
    std::map<Field, std::string> m_changes;
    std::vector<std::string> m_added; // frames that come last
};

} // namespace

TagPlan PlanTag(FileBytesPort &file, const TagEdit &edit)
{
    return Planner(file, edit).Run();
}

} // namespace metadata::unicode
