#include "metadata/mp3info.h"
#include "tests/support/mp3bytes.h"
#include "tests/support/testfolder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>

namespace
{

using metadata::SongInfo;
using tests::Frame3;
using tests::Header128;
using tests::Tag;
using tests::Tag1;
using tests::Z;

class GetMP3Info : public testing::Test
{
protected:
    void SetUp() override { metadata::ResetMP3Info(); }
    void TearDown() override { metadata::ResetMP3Info(); }

    // One pass over a new file of these bytes.
    SongInfo Read(std::string_view bytes, bool preferID3v2 = false)
    {
        const std::string path = m_folder / ("song" + std::to_string(++m_files) + ".mp3");
        tests::WriteFile(path, bytes);
        return metadata::ReadSongInfo(path, preferID3v2);
    }

    tests::TestFolder m_folder;
    int m_files = 0;
};

void ExpectNoHeader(const SongInfo &pass)
{
    EXPECT_EQ(pass.header.HeaderPosition, -1);
    EXPECT_EQ(pass.header.Version, "MPEG-2.5");
    EXPECT_EQ(pass.header.Layer, "Not defined");
    EXPECT_EQ(pass.header.Bitrate, "Not defined");
    EXPECT_EQ(pass.header.Frequency, "22050 Hz");
    EXPECT_TRUE(pass.header.CRC);
    EXPECT_EQ(pass.header.FrameLength, 0);
    EXPECT_EQ(pass.header.Frames, 0);
    EXPECT_EQ(pass.header.Seconds, 0);
}

const std::string kAudio = Header128() + std::string(996, '\0');

TEST_F(GetMP3Info, BothTagsAndTheHeader)
{
    const std::string body = Frame3("TIT2", "Two") + std::string(20, '\0');
    const std::string image = Tag1("One", "", "", "1999", "", 3, 17);
    const SongInfo pass = Read(Tag(3, body) + kAudio + image);
    EXPECT_TRUE(pass.hasID3v1);
    EXPECT_TRUE(pass.hasID3v2);
    EXPECT_EQ(pass.id3v1.Header, "TAG");
    EXPECT_EQ(pass.id3v1.Title, "One" + std::string(27, '\0'));
    EXPECT_EQ(pass.id3v1.Genre, 17);
    EXPECT_EQ(pass.id3v2.Header, "");
    EXPECT_EQ(pass.id3v2.Title, "Two");
    EXPECT_EQ(pass.id3v2.Genre, "-1");
    EXPECT_EQ(pass.header.HeaderPosition, static_cast<int>(10 + body.size()));
    EXPECT_EQ(pass.header.FileSize, static_cast<int>(10 + body.size() + 1000 + 128));
    EXPECT_EQ(pass.header.Frames, (1000 + 128 - 4) / 417);
    EXPECT_EQ(metadata::RawID3v2Body(), body);
    EXPECT_EQ(metadata::RawID3v1Image(), image);
    EXPECT_EQ(metadata::ID3v2MajorVersion(), 3);
    EXPECT_EQ(metadata::LastReadFailure(), 0);
}

TEST_F(GetMP3Info, NoTags)
{
    const SongInfo pass = Read(kAudio);
    EXPECT_FALSE(pass.hasID3v1);
    EXPECT_FALSE(pass.hasID3v2);
    EXPECT_EQ(pass.id3v1.Genre, -1);
    EXPECT_EQ(pass.id3v1.Title, "");
    EXPECT_EQ(pass.id3v2.Genre, "-1");
    EXPECT_EQ(pass.header.HeaderPosition, 0);
    EXPECT_EQ(pass.header.Bitrate, "128kbit");
    EXPECT_EQ(metadata::RawID3v2Body(), "");
}

TEST_F(GetMP3Info, PreferringID3v2SkipsTheOtherTagsFields)
{
    const std::string bytes =
        Tag(3, Frame3("TIT2", "Two")) + kAudio + Tag1("One", "", "", "", "", 3, 17);
    const SongInfo pass = Read(bytes, true);
    EXPECT_TRUE(pass.hasID3v1);
    EXPECT_EQ(pass.id3v1.Header, "TAG");
    EXPECT_EQ(pass.id3v1.Title, "");
    EXPECT_EQ(pass.id3v1.Genre, -1);
    EXPECT_EQ(metadata::RawID3v1Image(), "");
    const SongInfo alone = Read(kAudio + Tag1("One", "", "", "", "", 3, 17), true);
    EXPECT_EQ(alone.id3v1.Genre, 17); // there is no body that could be preferred
    const SongInfo empty = Read(Tag(3, "") + kAudio + Tag1("One", "", "", "", "", 3, 17), true);
    EXPECT_EQ(empty.id3v1.Genre, 17);
    EXPECT_FALSE(empty.hasID3v2);
}

TEST_F(GetMP3Info, RecordsKeepWhatTheFileDoesNotSet)
{
    tests::WriteFile(m_folder / "a.mp3", Tag(3, Frame3("TIT2", "New")) + kAudio);
    SongInfo pass;
    pass.id3v1 = {"hdr", "t", "a", "l", "y", "c", 5, 6};
    pass.id3v2 = {"hdr", "t", "a", "l", "y", "c", "g", 7, "w"};
    pass.hasID3v1 = true;
    metadata::GetMP3Info(m_folder / "a.mp3", pass.id3v1, pass.id3v2, pass.header, pass.hasID3v1,
                         pass.hasID3v2, false);
    EXPECT_FALSE(pass.hasID3v1);
    EXPECT_EQ(pass.id3v1, (metadata::ID3v1Tag{Z("\0\0\0"), "t", "a", "l", "y", "c", -1, 6}));
    EXPECT_EQ(pass.id3v2, (metadata::ID3v2Tag{"hdr", "New", "a", "l", "y", "c", "-1", 7, "w"}));
}

TEST_F(GetMP3Info, SyncPairTooFarOutIsNoHeader)
{
    ExpectNoHeader(Read(std::string(6000, '\0') + kAudio));
    ExpectNoHeader(Read(std::string(5000, '\0') + kAudio));
    EXPECT_EQ(Read(std::string(4999, '\0') + kAudio).header.HeaderPosition, 4999);
}

TEST_F(GetMP3Info, LowSamplingRatesAreFoundOnlyAfterATag)
{
    const std::string audio = "\xFF\xF3\x80\x64" + std::string(500, '\0');
    ExpectNoHeader(Read(audio));
    const SongInfo pass = Read(Tag(3, Frame3("TIT2", "x")) + audio);
    EXPECT_EQ(pass.header.Version, "MPEG-2");
    EXPECT_EQ(pass.header.Layer, "Layer 3");
    EXPECT_EQ(pass.header.Bitrate, "64kbit");
    EXPECT_EQ(pass.header.HeaderPosition, 10 + 12);
    const SongInfo far = Read(Tag(3, Frame3("TIT2", "x") + std::string(20'000, '\0')) + audio);
    EXPECT_EQ(far.header.Version, "MPEG-2");
    EXPECT_EQ(far.header.HeaderPosition, 10 + 12 + 20'000);
}

TEST_F(GetMP3Info, SyncPairInsideTheTagCounts)
{
    const SongInfo pass = Read(Tag(3, Frame3("TIT2", "x\xFF\xFA\x90\x64")) + kAudio);
    EXPECT_EQ(pass.header.HeaderPosition, 10 + 11 + 1);
    EXPECT_TRUE(pass.header.CRC);
}

TEST_F(GetMP3Info, EmptyTagPutsTheFallbackAfterItsHeader)
{
    const SongInfo pass = Read(Tag(3, "") + "\xFF\xF3\x90\x64");
    EXPECT_FALSE(pass.hasID3v2);
    EXPECT_EQ(pass.header.HeaderPosition, 10);
    EXPECT_EQ(pass.header.Version, "MPEG-2");
}

TEST_F(GetMP3Info, FreeFormatHasNoLengths)
{
    const SongInfo pass = Read("\xFF\xFB" + Z("\0\0") + std::string(1000, '\0'));
    EXPECT_EQ(pass.header.Bitrate, "Not defined");
    EXPECT_EQ(pass.header.Version, "MPEG-1");
    EXPECT_EQ(pass.header.FrameLength, 0);
    EXPECT_EQ(pass.header.Frames, 0);
    EXPECT_EQ(pass.header.Seconds, 0);
}

TEST_F(GetMP3Info, AllBitsOfTheSizeBytesCount)
{
    // 0x80 as the last size byte is 128, not 0.
    const std::string body = Frame3("TIT2", std::string(117, 't'));
    ASSERT_EQ(body.size(), 128u);
    const SongInfo pass = Read("ID3" + Z("\x03\0\0\0\0\0\x80") + body + kAudio);
    EXPECT_EQ(pass.id3v2.Title, std::string(117, 't'));
    EXPECT_EQ(metadata::RawID3v2Body(), body);
}

TEST_F(GetMP3Info, ClaimingMoreThanTheFileHoldsEndsThePass)
{
    const std::string image = Tag1("One", "", "", "", "", 3, 17);
    std::string bytes = Tag(3, Frame3("TIT2", "x") + kAudio + image);
    const auto length = static_cast<unsigned>(bytes.size());
    bytes.replace(6, 4, tests::Number128(length + 1));
    SongInfo fresh;
    fresh.id3v1.Genre = -1;
    fresh.id3v2.Genre = "-1";
    EXPECT_EQ(Read(bytes), fresh);
    EXPECT_EQ(metadata::RawID3v2Body(), "");
    EXPECT_EQ(metadata::LastReadFailure(), 0);
    bytes.replace(6, 4, "\xFF\xFF\xFF\xFF");
    EXPECT_EQ(Read(bytes), fresh);
    EXPECT_EQ(metadata::ID3v2MajorVersion(), 3); // that byte was read before

    bytes.replace(6, 4, tests::Number128(length)); // as long as the file: what is missing is NULs
    const SongInfo whole = Read(bytes);
    EXPECT_TRUE(whole.hasID3v1);
    EXPECT_EQ(whole.id3v2.Title, "x");
    EXPECT_EQ(metadata::RawID3v2Body(), bytes.substr(10) + std::string(10, '\0'));
}

TEST_F(GetMP3Info, NothingButATagHeader)
{
    const std::string header = "ID3" + Z("\x03\0\0") + tests::Number128(11);
    EXPECT_EQ(Read(header).header, metadata::MPEGHeader()); // 11 of 10 bytes: the pass ends
    const SongInfo cut = Read(header.substr(0, 9));         // no size: the tag is empty
    EXPECT_FALSE(cut.hasID3v2);
    EXPECT_EQ(cut.header.HeaderPosition, 10);
    EXPECT_EQ(cut.header.FileSize, 9);
}

TEST_F(GetMP3Info, StateOfAnEarlierFileStaysWhereThisOneHasNone)
{
    const std::string image = Tag1("One", "", "", "", "", 3, 17);
    Read(Tag(2, "TT2") + kAudio + image);
    Read(kAudio);
    EXPECT_EQ(metadata::RawID3v2Body(), "");
    EXPECT_EQ(metadata::RawID3v1Image(), image);
    EXPECT_EQ(metadata::ID3v2MajorVersion(), 2);
    Read("ID3"); // the version byte is after the end of the file: 0
    EXPECT_EQ(metadata::ID3v2MajorVersion(), 0);
}

TEST_F(GetMP3Info, Version4HasATagButNoFields)
{
    const SongInfo pass = Read(Tag(4, Frame3("TIT2", "x")) + kAudio);
    EXPECT_TRUE(pass.hasID3v2);
    EXPECT_EQ(pass.id3v2, (metadata::ID3v2Tag{"", "", "", "", "", "", "-1", 0, ""}));
}

TEST_F(GetMP3Info, ID3v1AtTheLengthsAroundItsOwn)
{
    const std::string image = Tag1("One", "", "", "", "", 3, 17);
    EXPECT_FALSE(Read(image.substr(1)).hasID3v1);
    EXPECT_FALSE(Read(image.substr(0, 127)).hasID3v1);
    EXPECT_EQ(Read(image.substr(0, 127)).id3v1.Header, "");
    EXPECT_TRUE(Read(image).hasID3v1);
    EXPECT_TRUE(Read("x" + image).hasID3v1);
    EXPECT_FALSE(Read(image + "x").hasID3v1);
    EXPECT_EQ(Read(image + "x").id3v1.Header, "AGO");
}

TEST_F(GetMP3Info, TheFlagsAloneAreThoseOfAPass)
{
    const std::string image = Tag1("One", "", "", "1999", "", 3, 17);
    const struct {
        const char *name;
        std::string bytes;
    } cases[] = {
        {"both", Tag(3, Frame3("TIT2", "x")) + kAudio + image},
        {"at the front", Tag(3, Frame3("TIT2", "x")) + kAudio},
        {"at the end", kAudio + image},
        {"none", kAudio},
        {"an empty one", Tag(3, "") + kAudio},
        {"nothing but the one at the end", image},
        {"cut short", image.substr(0, 127)},
        {"nothing", ""},
        {"more than there is", Z("ID3\3\0\0\0\0\x7f\x7f") + kAudio + image},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        const std::string path = m_folder / c.name;
        tests::WriteFile(path, c.bytes);
        metadata::ResetMP3Info();
        bool v1 = true, v2 = true;
        metadata::GetTagFlags(path, v1, v2);
        EXPECT_EQ(metadata::LastReadFailure(), 0);
        metadata::KeepForNextPass();
        std::filesystem::remove(path); // the bytes are there
        metadata::ID3v1Tag oldTag;
        metadata::ID3v2Tag tag;
        metadata::MPEGHeader header;
        bool hasID3v1 = false, hasID3v2 = false;
        metadata::GetMP3Info(path, oldTag, tag, header, hasID3v1, hasID3v2, false);
        EXPECT_EQ(metadata::LastReadFailure(), 0);
        EXPECT_EQ(v1, hasID3v1);
        EXPECT_EQ(v2, hasID3v2);
    }
    bool v1 = true, v2 = true;
    metadata::GetTagFlags(m_folder / "absent", v1, v2);
    EXPECT_FALSE(v1 || v2);
    EXPECT_EQ(metadata::LastReadFailure(), ENOENT);
}

TEST_F(GetMP3Info, LongBodiesAreReadCompletely)
{
    for (const std::size_t size : {5000u, 5098u, 5110u, 5120u, 8192u, 70'000u, 3'000'000u}) {
        std::string body = Frame3("TIT2", "x");
        body.resize(size, 'p');
        body += Frame3("TPE1", "behind");
        const SongInfo pass = Read(Tag(3, body) + "\xFF\xF3\x90\x64" + std::string(200, 'a'));
        EXPECT_EQ(pass.id3v2.Artist, "behind") << size;
        EXPECT_TRUE(metadata::RawID3v2Body() == body) << size;
        EXPECT_EQ(pass.header.Version, "MPEG-2") << size;
    }
}

} // namespace
