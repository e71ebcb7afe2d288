#include "metadata/tagframes.h"

#include "metadata/genres.h"
#include "metadata/id3v2.h"
#include "runtime/error.h"
#include "runtime/numbers.h"
#include "runtime/text.h"

#include <algorithm>
#include <optional>

namespace metadata
{

namespace
{

constexpr int kWrittenVersion = 3;
constexpr int kDescriptionOffset = 3; // of a comment, from the frame's text: after the language

// Cuts the header of every "COMM" whose description is empty. The search continues one character
// after the cut, so the new body is made in one pass over the old one.
void RemoveCommentHeaders(std::string &body, int majorVersion)
{
    const auto textOffset = static_cast<std::size_t>(GeometryOf(majorVersion).textOffset);
    const std::string_view old = body;
    std::string kept;
    std::size_t copied = 0; // of the old body
    for (auto at = old.find("COMM"); at != std::string_view::npos;) {
        const auto description = at + textOffset + kDescriptionOffset;
        std::size_t next = at + 1;
        if (description < old.size() && old[description] == '\0') {
            kept.append(old.substr(copied, at - copied));
            copied = at + textOffset;
            next = copied + 1;
        }
        at = old.find("COMM", next);
    }
    if (copied == 0)
        return;
    kept.append(old.substr(copied));
    body = std::move(kept);
}

// Where the frame at `position` ends, one-based and exclusive; nothing when its size cannot be
// read.
std::optional<long long> EndOfFrame(std::string_view body, long long position, int majorVersion)
{
    const FrameGeometry geometry = GeometryOf(majorVersion);
    const auto bodyEnd = static_cast<long long>(body.size()) + 1;
    if (majorVersion != 2 && majorVersion != 3)
        return bodyEnd; // the size is made of letters, so it is far larger than any body
    const auto size = FindNumber(runtime::Mid(body, position + geometry.sizeOffset, 4), 256);
    if (!size)
        return std::nullopt;
    const long long end = position + geometry.textOffset + *size - 1;
    return std::min(end, bodyEnd);
}

std::string GenreData(ID3v2Tag &tag, bool unset)
{
    if (unset)
        return "(255)";
    return "(" + runtime::NumberText(GenreNumber(tag.Genre)) + ")" + GenreName(tag.Genre);
}

struct TextFrame {
    std::string_view identifier;
    const std::string &text;
};

} // namespace

std::string NumberToBytes(std::int64_t value, int base)
{
    std::string bytes(4, '\0');
    for (std::size_t i = 3; i > 0; --i) {
        bytes[i] = static_cast<char>(value % base);
        value /= base;
    }
    if (value < 0 || value > 255)
        throw runtime::RuntimeError(runtime::kInvalidCall);
    bytes[0] = static_cast<char>(value);
    return bytes;
}

void AppendFrame(std::string &frames, std::string_view identifier, std::string_view data)
{
    frames.append(identifier);
    frames += NumberToBytes(static_cast<std::int64_t>(data.size()) + 1, 256);
    frames.append(3, '\0');
    frames.append(data);
}

std::string &RemoveFrame(std::string &body, std::string_view identifier, int majorVersion)
{
    if (identifier == "COMM") {
        RemoveCommentHeaders(body, majorVersion);
        return body;
    }
    const auto position = FindIdentifier(1, body, identifier);
    if (position == 0)
        return body;
    if (const auto end = EndOfFrame(body, position, majorVersion))
        body.erase(static_cast<std::size_t>(position - 1),
                   static_cast<std::size_t>(*end - position));
    return body;
}

bool RemoveEmptied(std::string &body, const ID3v2Tag &before, const ID3v2Tag &now, int majorVersion)
{
    const struct {
        std::string_view identifier;
        const std::string &before, &now;
    } fields[] = {{"TALB", before.Album, now.Album},     {"TPE1", before.Artist, now.Artist},
                  {"COMM", before.Comment, now.Comment}, {"TCON", before.Genre, now.Genre},
                  {"USLT", before.Lyrics, now.Lyrics},   {"TIT2", before.Title, now.Title},
                  {"TYER", before.Year, now.Year}};
    bool removed = false;
    for (const auto &field : fields) {
        if (!field.now.empty() || field.before == field.now)
            continue;
        RemoveFrame(body, field.identifier, majorVersion);
        removed = true;
    }
    return removed;
}

std::string BuildID3v2Tag(std::string body, ID3v2Tag &tag, int majorVersion)
{
    const bool genreUnset = runtime::LeadingNumber(tag.Genre) == -1;
    if (genreUnset)
        tag.Genre = "255";
    const TextFrame texts[] = {
        {"TIT2", tag.Title}, {"TPE1", tag.Artist}, {"TALB", tag.Album}, {"TYER", tag.Year}};
    for (const TextFrame &frame : texts)
        if (!frame.text.empty())
            RemoveFrame(body, frame.identifier, majorVersion);
    RemoveFrame(body, "TCON", majorVersion);
    if (!tag.Lyrics.empty())
        RemoveFrame(body, "USLT", majorVersion);
    if (tag.Track > -1)
        RemoveFrame(body, "TRCK", majorVersion);

    std::string frames;
    if (!tag.Comment.empty())
        AppendFrame(frames, "COMM", "eng" + std::string(1, '\0') + tag.Comment);
    for (const TextFrame &frame : texts)
        if (!frame.text.empty())
            AppendFrame(frames, frame.identifier, frame.text);
    AppendFrame(frames, "TCON", GenreData(tag, genreUnset));
    if (!tag.Lyrics.empty())
        AppendFrame(frames, "USLT", std::string(4, '\0') + tag.Lyrics);
    if (tag.Track > -1)
        AppendFrame(frames, "TRCK", runtime::NumberText(tag.Track));

    std::string header = "ID3";
    header += static_cast<char>(kWrittenVersion);
    header.append(2, '\0');
    header += NumberToBytes(static_cast<std::int64_t>(frames.size() + body.size()), 128);
    body.insert(0, header + frames);
    return body;
}

} // namespace metadata
