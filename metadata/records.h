// metadata/records.h - what one MP3 file contains: its two tag records and its audio header. Texts
// are file bytes (one character per byte, in the code page in use); those of an ID3v2Tag may be
// UTF-8 instead, see its `kind`. metadata/tagtext.h converts both kinds. Plain structs, no state.
#pragma once

#include <cstdint>
#include <string>

namespace metadata
{

// The two kinds of texts that a record can hold.
enum class TextKind {
    FileBytes, // as the tag stores them, one character per byte
    Utf8       // decoded: the record comes from reading by frames (shell::Globals::UnicodeTags)
};

// The ID3v1 tag. A text field holds its full width, padded with blanks, once a tag was read; NULs
// of the file stay in it. A fresh record holds empty texts, which mean blanks alone.
struct ID3v1Tag {
    std::string Header;     // 3 characters: "TAG" when a tag was read
    std::string Title;      // 30 characters
    std::string Artist;     // 30 characters
    std::string Album;      // 30 characters
    std::string Year;       // 4 characters
    std::string Comment;    // 29 characters; a writer uses the first 28
    std::int16_t Genre = 0; // 0..255; -1 when no tag was read
    std::uint8_t Track = 0; // 0 = unknown

    bool operator==(const ID3v1Tag &) const = default;
};

// The ID3v2 tag, and the common form in which tags are passed to the catalogue and to the tag
// editor.
struct ID3v2Tag {
    std::string Header; // empty from the reader; "TAG" when an ID3v1 tag was copied into the record
    std::string Title;
    std::string Artist;
    std::string Album;
    std::string Year;
    std::string Comment;
    std::string Genre; // a number as text, or a genre in words; "-1" when unset. In UTF-8 always
                       // the words
    std::int16_t Track = 0;              // 0 when unset
    std::string Lyrics;                  // with time marks
    TextKind kind = TextKind::FileBytes; // of all the texts

    bool operator==(const ID3v2Tag &) const = default;
};

// The audio header, mostly as display text; LeadingNumber reads the numbers in it.
struct MPEGHeader {
    std::int32_t FileSize = 0;       // bytes
    std::int32_t HeaderPosition = 0; // zero-based offset of the four header bytes; -1 = none found
    std::int16_t Seconds = 0;
    std::string Version;     // "MPEG-1", "MPEG-2", "MPEG-2.5", "reserved"
    std::string Layer;       // "Layer 1", "Layer 2", "Layer 3", "Not defined"
    std::string Frequency;   // "44100 Hz"
    std::string ChannelMode; // "Stereo", "Joint Stereo", "Dual channel", "Mono"
    std::string Emphasis;    // "None", "50/15ms", "reserved", "CCITT j.17"
    bool Padding = false;
    std::int32_t FrameLength = 0; // bytes
    std::int32_t Frames = 0;
    bool Copyright = false;
    bool Original = false;
    std::string Bitrate; // "128kbit", "Not defined"
    bool CRC = false;

    bool operator==(const MPEGHeader &) const = default;
};

} // namespace metadata
