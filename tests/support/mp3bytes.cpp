#include "tests/support/mp3bytes.h"

namespace tests
{

namespace
{

constexpr std::size_t kAudioFrameBytes = 417; // 144 * 128000 / 44100

std::string Number(unsigned value, unsigned bits)
{
    std::string bytes;
    for (int i = 3; i >= 0; --i)
        bytes +=
            static_cast<char>((value >> (bits * static_cast<unsigned>(i))) & ((1u << bits) - 1));
    return bytes;
}

std::string Filled(std::string_view text, std::size_t width, char filler)
{
    std::string field(text.substr(0, width));
    field.resize(width, filler);
    return field;
}

} // namespace

std::string Frame(std::string_view identifier, std::string_view data)
{
    return std::string(identifier) + Number256(static_cast<unsigned>(data.size())) + Z("\0\0") +
           std::string(data);
}

std::string TextFrame(std::string_view identifier, std::string_view text)
{
    return Frame3(identifier, text);
}

std::string Id3v2(std::string_view frames)
{
    return Tag(3, frames);
}

std::string Id3v1(const Id3v1Fields &fields)
{
    return Tag1(fields.title, fields.artist, fields.album, fields.year,
                fields.comment.substr(0, 28), fields.track, fields.genre);
}

std::string Audio()
{
    std::string frame = Header128();
    frame.resize(kAudioFrameBytes, '\0');
    return frame + frame + frame + frame;
}

std::string Number128(unsigned value)
{
    return Number(value, 7);
}

std::string Number256(unsigned value)
{
    return Number(value, 8);
}

std::string Frame3(std::string_view identifier, std::string_view data, std::string_view flags)
{
    const std::string flagBytes = flags.empty() ? std::string(2, '\0') : std::string(flags);
    return std::string(identifier) + Number256(static_cast<unsigned>(data.size()) + 1) + flagBytes +
           std::string(1, '\0') + std::string(data);
}

std::string Tag(int majorVersion, std::string_view body)
{
    return "ID3" + std::string(1, static_cast<char>(majorVersion)) + Z("\0\0") +
           Number128(static_cast<unsigned>(body.size())) + std::string(body);
}

std::string Tag1(std::string_view title, std::string_view artist, std::string_view album,
                 std::string_view year, std::string_view comment, int track, int genre, char filler)
{
    return "TAG" + Filled(title, 30, filler) + Filled(artist, 30, filler) +
           Filled(album, 30, filler) + Filled(year, 4, filler) + Filled(comment, 29, filler) +
           static_cast<char>(track) + static_cast<char>(genre);
}

std::string Header128()
{
    return "\xFF\xFB\x90\x64";
}

} // namespace tests
