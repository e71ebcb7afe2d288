// tests/support/mp3bytes.h - makes the bytes of small MP3 files.
#pragma once

#include <string>
#include <string_view>

namespace tests
{

// An ID3v2.3 frame: identifier, size, flags, and `data` (with its encoding byte) unchanged.
std::string Frame(std::string_view identifier, std::string_view data);

// A text frame: encoding 0 and `text`; Frame3 without flags.
std::string TextFrame(std::string_view identifier, std::string_view text);

// An ID3v2.3 tag that contains `frames`.
std::string Id3v2(std::string_view frames);

struct Id3v1Fields {
    std::string_view title, artist, album, year, comment;
    int track = 0;
    int genre = 255;
};

// The 128 bytes of an ID3v1.1 tag, its fields padded with NULs.
std::string Id3v1(const Id3v1Fields &fields);

// Four silent MPEG-1 Layer 3 frames, 128 kbit/s, 44100 Hz.
std::string Audio();

// A text with its NULs: Z("a\0b") has three characters.
template <std::size_t Size>
std::string Z(const char (&literal)[Size])
{
    return std::string(literal, Size - 1);
}

// `value` as 4 bytes with 7 or with 8 bits each.
std::string Number128(unsigned value);
std::string Number256(unsigned value);

// A version 3 frame: identifier, size, flags, the encoding byte 0, `data`.
std::string Frame3(std::string_view identifier, std::string_view data, std::string_view flags = {});

// A complete ID3v2 tag that contains `body`.
std::string Tag(int majorVersion, std::string_view body);

// An ID3v1 tag whose fields are padded with `filler`.
std::string Tag1(std::string_view title, std::string_view artist, std::string_view album,
                 std::string_view year, std::string_view comment, int track, int genre,
                 char filler = '\0');

// The four bytes of a 128 kbit/s, 44100 Hz, joint stereo header.
std::string Header128();

} // namespace tests
