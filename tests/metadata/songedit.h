// tests/metadata/songedit.h - a song whose tags are read, edited and compared byte by byte.
#pragma once

#include "metadata/id3v1.h"
#include "metadata/mp3info.h"
#include "metadata/tagwriter.h"
#include "tests/support/mp3bytes.h"
#include "tests/support/songdesk.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace tests
{

// `size` bytes that begin like an audio frame; their values depend on their position.
inline std::string AudioBytes(std::size_t size = 5000)
{
    std::string audio = Header128();
    for (std::size_t i = audio.size(); i < size; ++i)
        audio += static_cast<char>('A' + i % 50);
    return audio;
}

// What an unchanged ID3v2Tag record adds after the frames of its texts.
inline std::string GenreAndTrack(std::string_view genre = "(255)", std::string_view track = "0")
{
    return Frame3("TCON", genre) + Frame3("TRCK", track);
}

// A song with its own desktop and settings, edited and compared byte by byte.
class SongEdit : public ::testing::Test
{
protected:
    // A song of these bytes whose tags have just been read.
    void Song(std::string_view bytes)
    {
        WriteFile(m_path, bytes);
        m_pass = m_old = metadata::ReadSongInfo(m_path);
    }

    bool Save(bool writeID3v1, bool writeID3v2, ui::Label *label = nullptr)
    {
        return metadata::SaveTag(m_pass.id3v1, m_pass.id3v2, m_old.id3v1, m_old.id3v2, m_path,
                                 writeID3v1, writeID3v2, label);
    }

    // The image that the pass's ID3v1 record builds.
    std::string Image()
    {
        metadata::ID3v1Tag tag = m_pass.id3v1;
        return metadata::BuildID3v1Tag(tag);
    }

    void ExpectSong(const std::string &want, const char *what = "")
    {
        EXPECT_TRUE(ReadFile(m_path) == want) << what;
        EXPECT_FALSE(std::filesystem::exists(m_path + ".bck")) << what;
        EXPECT_EQ(m_desk.boxes, std::vector<std::string>()) << what;
        EXPECT_EQ(std::distance(std::filesystem::directory_iterator(m_desk.music.Path()), {}), 1)
            << what;
    }

    SongDesk m_desk;
    std::string m_path = m_desk.music / "song.mp3";
    metadata::SongInfo m_pass, m_old;
};

} // namespace tests
