#include "metadata/unicode/newframes.h"

#include "metadata/unicode/encodetext.h"
#include "metadata/unicode/framelist.h"
#include "runtime/error.h"

#include <commentsframe.h>
#include <id3v2tag.h>
#include <textidentificationframe.h>
#include <unsynchronizedlyricsframe.h>

#include <memory>

namespace metadata::unicode
{

namespace
{

TagLib::String StringOf(std::string_view utf8)
{
    return {std::string(utf8), TagLib::String::UTF8};
}

TagLib::ByteVector BytesOf(std::string_view bytes)
{
    return {bytes.data(), static_cast<unsigned>(bytes.size())};
}

TagLib::String::Type TypeFor(const std::vector<std::string_view> &texts)
{
    return EncodingFor(texts) == Encoding::Latin1 ? TagLib::String::Latin1 : TagLib::String::UTF16;
}

// The bytes of the frame, made by writing a tag of version 2.3 with this frame alone.
std::string Render(std::unique_ptr<TagLib::ID3v2::Frame> frame)
{
    TagLib::ID3v2::Tag tag;
    tag.addFrame(frame.release()); // the tag owns it now
    const TagLib::ByteVector rendered = tag.render(TagLib::ID3v2::v3);
    const std::string_view bytes(rendered.data(), rendered.size());
    const auto header = ReadTagHeader(bytes);
    const FrameList list = header ? ReadFrames(*header, bytes) : FrameList();
    if (list.frames.size() != 1)
        throw runtime::RuntimeError(runtime::kInvalidCall);
    return std::string(list.frames.front().whole);
}

} // namespace

std::string NewTextFrame(std::string_view id, const std::vector<std::string> &values)
{
    const std::vector<std::string_view> views(values.begin(), values.end());
    // TagLib changes genres and dates of version 2.3, and writes genres in Latin-1: therefore each
    // text is made under a name for which it has no such rule.
    constexpr std::string_view kAnyName = "TIT1";
    auto frame =
        std::make_unique<TagLib::ID3v2::TextIdentificationFrame>(BytesOf(kAnyName), TypeFor(views));
    TagLib::StringList texts;
    for (const auto &value : values)
        texts.append(StringOf(value));
    frame->setText(texts);
    return Render(std::move(frame)).replace(0, kAnyName.size(), id);
}

std::string NewDescribedFrame(std::string_view id, std::string_view language,
                              std::string_view description, std::string_view text)
{
    const auto fill = [&](auto frame) {
        frame->setLanguage(BytesOf(language));
        frame->setDescription(StringOf(description));
        frame->setText(StringOf(text));
        return Render(std::move(frame));
    };
    const TagLib::String::Type type = TypeFor({description, text});
    if (id == "COMM")
        return fill(std::make_unique<TagLib::ID3v2::CommentsFrame>(type));
    return fill(std::make_unique<TagLib::ID3v2::UnsynchronizedLyricsFrame>(type));
}

} // namespace metadata::unicode
