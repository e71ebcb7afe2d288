#include "tests/support/mp3bytes.h"

namespace tests
{

namespace
{

constexpr std::size_t kAudioFrameBytes = 417; // 144 * 128000 / 44100

std::string BigEndian(std::size_t value, int bitsPerByte)
{
    std::string bytes(4, '\0');
    for (int i = 3; i >= 0; i--) {
        bytes[static_cast<std::size_t>(i)] = static_cast<char>(value & ((1u << bitsPerByte) - 1));
        value >>= bitsPerByte;
    }
    return bytes;
}

std::string Field(std::string_view text, std::size_t width)
{
    std::string field(text.substr(0, width));
    field.resize(width, '\0');
    return field;
}

} // namespace

std::string Frame(std::string_view identifier, std::string_view data)
{
    return std::string(identifier) + BigEndian(data.size(), 8) + std::string(2, '\0') +
           std::string(data);
}

std::string TextFrame(std::string_view identifier, std::string_view text)
{
    return Frame(identifier, std::string(1, '\0') + std::string(text));
}

std::string Id3v2(std::string_view frames)
{
    return std::string("ID3\3\0\0", 6) + BigEndian(frames.size(), 7) + std::string(frames);
}

std::string Id3v1(const Id3v1Fields &fields)
{
    std::string tag = "TAG" + Field(fields.title, 30) + Field(fields.artist, 30) +
                      Field(fields.album, 30) + Field(fields.year, 4) + Field(fields.comment, 28);
    tag.push_back('\0');
    tag.push_back(static_cast<char>(fields.track));
    tag.push_back(static_cast<char>(fields.genre));
    return tag;
}

std::string Audio()
{
    std::string frame("\xFF\xFB\x90\x64", 4);
    frame.resize(kAudioFrameBytes, '\0');
    return frame + frame + frame + frame;
}

} // namespace tests
