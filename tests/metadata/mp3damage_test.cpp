// Files cut anywhere, sizes of any value, random bytes: a pass returns a result, never fails, and
// returns the same for the same bytes.
#include "metadata/mp3info.h"
#include "tests/support/mp3bytes.h"
#include "tests/support/testfolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace
{

using metadata::ReadSongInfo;
using metadata::SongInfo;
using tests::Frame3;
using tests::Tag;
using tests::Tag1;
using tests::Z;

std::string WholeSong(int majorVersion = 3)
{
    const std::string frames =
        majorVersion == 2
            ? Z("TT2\0\0\x06\0Title") + Z("TCO\0\0\x05\0(17)") + Z("COM\0\0\x09\0eng\0Words")
            : Frame3("TIT2", "Title") + Frame3("TPE1", "Artist") + Frame3("TCON", "(17)Rock") +
                  Frame3("TRCK", "7") + Frame3("COMM", Z("eng\0Words")) +
                  Frame3("USLT", Z("eng\0La la"));
    return Tag(majorVersion, frames + std::string(16, '\0')) + tests::Header128() +
           std::string(300, 'a') + Tag1("One", "Two", "Three", "1999", "Words", 3, 17);
}

// The size of the body in the tag header; 0 without a complete header.
std::size_t ClaimedBytes(std::string_view bytes)
{
    if (bytes.size() < 10 || !bytes.starts_with("ID3"))
        return 0;
    std::size_t claimed = 0;
    for (const char c : bytes.substr(6, 4))
        claimed = claimed * 128 + static_cast<unsigned char>(c);
    return claimed;
}

// Checks the result of a pass over a file with these bytes. A tag that is larger than the file, by
// its header, ends the pass.
void ExpectSane(const SongInfo &pass, std::string_view bytes, const std::string &what)
{
    SCOPED_TRACE(what);
    EXPECT_EQ(metadata::LastReadFailure(), 0);
    const std::size_t claimed = ClaimedBytes(bytes);
    const bool isRead = claimed <= bytes.size();
    const bool hasImage = bytes.size() >= 128 && bytes.substr(bytes.size() - 128, 3) == "TAG";
    ASSERT_EQ(pass.hasID3v1, isRead && hasImage);
    EXPECT_TRUE(!pass.hasID3v1 || bytes.substr(bytes.size() - 128) == metadata::RawID3v1Image());
    EXPECT_EQ(pass.header.FileSize, isRead ? static_cast<std::int64_t>(bytes.size()) : 0);
    const std::string_view body = metadata::RawID3v2Body();
    EXPECT_EQ(pass.hasID3v2, isRead && claimed > 0);
    ASSERT_EQ(body.size(), isRead ? claimed : 0);
    const std::string_view present = bytes.substr(std::min<std::size_t>(bytes.size(), 10));
    for (std::size_t at = 0; at < body.size(); ++at) // what the file lacks is zeros
        ASSERT_EQ(body[at], at < present.size() ? present[at] : '\0') << at;
    for (const std::string &text :
         {pass.id3v2.Title, pass.id3v2.Artist, pass.id3v2.Comment, pass.id3v2.Lyrics})
        EXPECT_NE(body.find(text), std::string_view::npos);
}

class DamagedSong : public testing::Test
{
protected:
    void SetUp() override { metadata::ResetMP3Info(); }
    void TearDown() override { metadata::ResetMP3Info(); }

    SongInfo Read(std::string_view bytes, const std::string &what)
    {
        tests::WriteFile(m_path, bytes);
        SongInfo pass = ReadSongInfo(m_path);
        ExpectSane(pass, bytes, what);
        SongInfo tags = metadata::ReadSongTags(m_path);
        EXPECT_EQ(tags.header, metadata::MPEGHeader()) << what;
        tags.header = pass.header;
        EXPECT_EQ(tags, pass) << what;
        return pass;
    }

    tests::TestFolder m_folder;
    std::string m_path = m_folder / "song.mp3";
};

TEST_F(DamagedSong, CutAnywhere)
{
    for (const int version : {2, 3, 4}) {
        const std::string song = WholeSong(version);
        for (std::size_t length = 0; length <= song.size(); ++length) {
            const SongInfo pass = Read(song.substr(0, length), std::to_string(length));
            EXPECT_EQ(pass.hasID3v1, length == song.size());
        }
    }
}

TEST_F(DamagedSong, CutAtTheFront)
{
    const std::string song = WholeSong();
    for (std::size_t from = 0; from <= song.size(); from += 3)
        Read(song.substr(from), std::to_string(from));
}

TEST_F(DamagedSong, EverySizeFieldAtItsEnds)
{
    const std::string song = WholeSong();
    for (std::size_t at = 4; at + 4 <= song.size() - 128; ++at)
        for (const std::string &size : {Z("\0\0\0\0"), Z("\xFF\xFF\xFF\xFF"), Z("\x7F\xFF\xFF\xFF"),
                                        Z("\x80\0\0\0"), Z("\0\0\0\x01")}) {
            std::string changed = song;
            changed.replace(at, 4, size);
            Read(changed, std::to_string(at));
        }
}

TEST_F(DamagedSong, BytesAtRandom)
{
    std::mt19937 random(1);
    const std::string pieces[] = {"ID3",  "TAG",  "TIT2",     "COMM",      "USLT",
                                  "TCON", "TRCK", "\xFF\xFB", Z("\0\0\0"), "("};
    for (int round = 0; round < 2000; ++round) {
        std::string bytes = random() % 2 ? Tag(static_cast<int>(random() % 5), "") : "";
        while (random() % 12 != 0 && bytes.size() < 400)
            bytes += random() % 2 ? pieces[random() % std::size(pieces)]
                                  : std::string(random() % 9, static_cast<char>(random()));
        if (bytes.size() > 10 && random() % 2)
            bytes.replace(6, 4,
                          tests::Number128(static_cast<unsigned>(random() % (bytes.size() * 2))));
        Read(bytes, std::to_string(round));
    }
}

} // namespace
