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
constexpr std::size_t kLargestBody = (1U << 28U) - 1;
constexpr std::string_view kLanguage = "eng"; // of a new comment or lyrics
constexpr unsigned kFlagsOfStructure = 0xC0;  // unsynchronised, extended header

// One tag of the old file, with its bytes.
struct OldTag {
    TagPlace place;
    std::string bytes;
    FrameList list;
    std::vector<FrameForm> forms = {};
};

using OldTags = std::vector<std::unique_ptr<OldTag>>; // the lists look into `bytes`

OldTags ReadOldTags(FileBytesPort &file)
{
    OldTags tags;
    WalkTags(file, [&](const TagPlace &place, std::string_view bytes, const FrameList &) {
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

// The name, in version 2.3, that a tag may hold once; empty for frames that it may hold several
// times.
std::string UniqueName(const Frame &frame)
{
    constexpr std::string_view kOnce[] = {"MCDI", "PCNT", "RBUF", "ETCO", "MLLT", "SYTC",
                                          "RVAD", "EQUA", "RVRB", "OWNE", "POSS", "IPLS"};
    if (frame.id == "TDRC")
        return "TYER";
    if (frame.id == "TDOR")
        return "TORY";
    if (frame.id == "TIPL" || frame.id == "TMCL")
        return "IPLS";
    const bool isText = frame.id.starts_with('T') && frame.id != "TXXX";
    const bool isOnce =
        isText || std::find(std::begin(kOnce), std::end(kOnce), frame.id) != std::end(kOnce);
    return isOnce ? frame.id : std::string();
}

// A genre in words as a tag of version 2.3 stores it: a bracket in front would be a number's.
std::string StoredGenre(const std::string &genre)
{
    return genre.starts_with('(') ? "(" + genre : genre;
}

// "4" in the place of the 3 in "3/12".
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
        m_tags = ReadOldTags(m_file);
        const bool hasTag = std::any_of(m_tags.begin(), m_tags.end(), [](const auto &tag) {
            return tag->place.header.bodyBytes > 0;
        });
        if (m_edit.isWanted)
            FindChanges();
        m_plan.isChanged = m_edit.isWanted ? !m_changes.empty() : hasTag;
        if (!m_plan.isChanged)
            return std::move(m_plan);
        FindAudio();
        if (m_edit.isWanted && !m_plan.claimsTooMuch)
            BuildTag();
        return std::move(m_plan);
    }

private:
    enum class Field { Title, Artist, Album, Year, Genre, Track, Comment, Lyrics };

    void FindChanges()
    {
        const TagTexts &before = m_edit.before;
        const TagTexts &now = m_edit.now;
        const auto compare = [this](Field field, const std::string &old, std::string text) {
            if (old != text)
                m_changes.emplace(field, std::move(text));
        };
        compare(Field::Title, TextOr(before.title), TextOr(now.title));
        compare(Field::Artist, TextOr(before.artist), TextOr(now.artist));
        compare(Field::Album, TextOr(before.album), TextOr(now.album));
        compare(Field::Year, TextOr(before.year), TextOr(now.year));
        compare(Field::Genre, Words(before.genre), Words(now.genre));
        compare(Field::Comment, TextOr(before.comment), TextOr(now.comment));
        compare(Field::Lyrics, TextOr(before.lyrics), TextOr(now.lyrics));
        const auto digits = [](const std::optional<std::int16_t> &track) {
            return track.value_or(0) > 0 ? std::to_string(*track) : std::string();
        };
        compare(Field::Track, digits(before.track), digits(now.track));
    }

    void FindAudio()
    {
        m_plan.audioEnd = m_file.Length() - (m_edit.hasID3v1 ? kId3v1Bytes : 0);
        for (const auto &tag : m_tags) {
            m_plan.claimsTooMuch |= tag->place.claimsTooMuch;
            if (tag->place.offset == m_plan.audioOffset)
                m_plan.audioOffset = tag->place.End();
        }
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
        m_order = Effective();
        for (OldTag *tag : m_order)
            tag->forms = FormsOf(tag->list, m_plan.lost);
        for (const auto &[field, text] : m_changes)
            Change(field, text);
        std::string frames;
        AppendFrames(frames);
        for (const auto &frame : m_added)
            frames += frame;
        AppendRests(frames);
        if (!IsPadding(frames))
            AddHeader(frames);
    }

    void AddHeader(const std::string &frames)
    {
        if (frames.size() > kLargestBody)
            throw runtime::RuntimeError(runtime::kInvalidCall);
        m_plan.tag = std::string("ID3\x03\0\0", 6);
        for (const unsigned shift : {21U, 14U, 7U, 0U})
            m_plan.tag += static_cast<char>(frames.size() >> shift & 0x7FU);
        m_plan.tag += frames;
    }

    // The frames of the first tag, then those of the others that it has not.
    void AppendFrames(std::string &frames)
    {
        std::set<std::string> names;
        std::set<std::string> whole;
        for (std::size_t i = 0; i < m_order.size(); ++i) {
            std::set<std::string> namesHere;
            for (const FrameForm &form : m_order[i]->forms) {
                const std::string name = UniqueName(*form.source);
                if (i > 0 && !name.empty() && names.contains(name)) {
                    if (!form.frames.empty() && !whole.contains(form.frames.front()))
                        m_plan.lost.push_back(name);
                    continue;
                }
                for (const auto &frame : form.frames) {
                    if (i > 0 && whole.contains(frame))
                        continue;
                    frames += frame;
                    if (m_order.size() > 1)
                        whole.insert(frame);
                }
                if (!name.empty())
                    namesHere.insert(name);
            }
            names.merge(namesHere);
        }
    }

    // Padding stays as long as it was. What is neither padding nor a frame stays where the tag is
    // written as it is stored; elsewhere it has no form.
    void AppendRests(std::string &frames)
    {
        if (m_order.empty())
            return;
        const OldTag &first = *m_order.front();
        const bool isAsStored = m_order.size() == 1 && first.place.header.majorVersion == 3 &&
                                (first.place.header.flags & kFlagsOfStructure) == 0;
        for (const OldTag *tag : m_order) {
            const std::string_view rest = tag->list.rest;
            if (isAsStored || (tag == &first && IsPadding(rest)))
                frames += rest;
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
            return ChangeText("TCON", StoredGenre(text));
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

    // Puts `frames` in the place of the first of `forms`, or at the end; the others go.
    void Replace(const std::vector<FrameForm *> &forms, std::vector<std::string> frames)
    {
        for (FrameForm *form : forms)
            form->frames.clear();
        if (forms.empty())
            m_added.insert(m_added.end(), frames.begin(), frames.end());
        else
            forms.front()->frames = std::move(frames);
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
        // Day and time of a TDRC frame stay.
        for (const FrameForm *form : forms) {
            if (form->source->id != "TDRC" || text.size() != 4)
                continue;
            const auto values = ValuesOf(*form->source);
            if (!values.empty() && values.front().size() > 4)
                return Replace(forms, RecordingTime(text + values.front().substr(4)));
        }
        Replace(forms, {NewTextFrame("TYER", {text})});
    }

    void ChangeTrack(const std::string &text)
    {
        const auto forms = FormsNamed("TRCK");
        if (text.empty())
            return Replace(forms, {});
        std::string old;
        for (const FrameForm *form : forms)
            if (old.empty())
                old = Joined(ValuesOf(*form->source));
        Replace(forms, {NewTextFrame("TRCK", {TrackText(old, m_edit.now.track.value_or(0))})});
    }

    // The frame of that name that is read: null without one.
    FrameForm *Chosen(std::string_view id) const
    {
        for (OldTag *tag : m_order) {
            const Frame *frame = ChosenFrame(tag->list, id, m_edit.wishes);
            if (frame != nullptr)
                return &tag->forms[static_cast<std::size_t>(frame - tag->list.frames.data())];
        }
        return nullptr;
    }

    // The lyrics with times that are read where there are no others.
    FrameForm *SyncedLyrics() const
    {
        for (FrameForm *form : FormsNamed("SYLT")) {
            const auto content = FrameContent(*form->source);
            if (content && !LinesOfSyncedLyrics(*content, m_edit.wishes.mpegFrameMs).empty())
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
                chosen->frames.clear();
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
        chosen->frames = {NewDescribedFrame(id, content.substr(1, 3), description, text)};
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
