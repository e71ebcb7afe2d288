// tests/support/mp3bytes.h - small MP3 files as bytes, made by the formats' own layouts.
#pragma once

#include <string>
#include <string_view>

namespace tests
{

// An ID3v2.3 frame: identifier, size, flags, and `data` (encoding byte included) as it stands.
std::string Frame(std::string_view identifier, std::string_view data);

// A text frame: encoding 0 and `text`.
std::string TextFrame(std::string_view identifier, std::string_view text);

// An ID3v2.3 tag around `frames`.
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

} // namespace tests
