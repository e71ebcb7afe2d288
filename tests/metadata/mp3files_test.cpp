// What GetMP3Info does with odd paths, with handles, and with reads that fail.
#include "metadata/mp3info.h"
#include "tests/metadata/countedfiles.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>

namespace fs = std::filesystem;

namespace tests
{

namespace
{

using metadata::ReadSongInfo;
using metadata::SongInfo;

constexpr uid_t kNobody = 65534;

class SongFiles : public CountedSongs
{
protected:
    // A pass over what cannot be read: nothing but the two defaults.
    void ExpectUnreadable(const std::string &path, int reason, std::int32_t size = 0)
    {
        SongInfo want;
        want.id3v1.Genre = -1;
        want.id3v2.Genre = "-1";
        want.header.FileSize = size;
        EXPECT_EQ(ReadSongInfo(path), want) << path;
        EXPECT_EQ(metadata::LastReadFailure(), reason) << path;
        EXPECT_EQ(metadata::RawID3v2Body(), "");
        EXPECT_EQ(metadata::RawTagsFile().path, "");
    }
};

int OpenHandles()
{
    int count = 0;
    for ([[maybe_unused]] const auto &entry : fs::directory_iterator("/proc/self/fd"))
        ++count;
    return count;
}

TEST_F(SongFiles, PathsThatAreNoReadableFile)
{
    ReadSongInfo(Song("before.mp3", "Before"));
    ExpectUnreadable(m_folder / "absent.mp3", ENOENT);
    ExpectUnreadable(m_folder.Path(), EISDIR);
    ExpectUnreadable(m_folder / "before.mp3/x.mp3", ENOTDIR);
    ExpectUnreadable("", ENOENT);
    ASSERT_EQ(mkfifo((m_folder / "pipe.mp3").c_str(), 0600), 0);
    ExpectUnreadable(m_folder / "pipe.mp3", ESPIPE);
    ExpectUnreadable("/dev/zero", ESPIPE);
    fs::create_symlink("loop.mp3", m_folder / "loop.mp3");
    ExpectUnreadable(m_folder / "loop.mp3", ELOOP);
    EXPECT_EQ(metadata::RawID3v1Image().substr(3, 6), "Before");
}

TEST_F(SongFiles, WithoutPermissionOnlyTheLengthIsReported)
{
    const std::string path = Song("locked.mp3", "x");
    fs::permissions(path, fs::perms::none);
    fs::permissions(m_folder.Path(), fs::perms::all);
    const bool isRoot = geteuid() == 0; // who may read everything
    ASSERT_TRUE(!isRoot || seteuid(kNobody) == 0);
    ExpectUnreadable(path, EACCES, 20'000 + 4 + 22 + 128);
    ASSERT_TRUE(!isRoot || seteuid(0) == 0);
}

TEST_F(SongFiles, EveryFileIsClosedAgain)
{
    const std::string path = Song("a.mp3", "x");
    const int before = OpenHandles();
    ReadSongInfo(path);
    ReadSongInfo(m_folder.Path());
    ReadSongInfo("/dev/null");
    EXPECT_EQ(OpenHandles(), before);
    EXPECT_EQ(m_files.opens, m_files.closes);
}

TEST_F(SongFiles, TheFileThatClaimsTooMuchStaysOpenUntilTheNextPass)
{
    const int before = OpenHandles();
    const std::string bad = m_folder / "bad.mp3";
    WriteFile(bad, "ID3" + Z("\x03\0\0\x7F\x7F\x7F\x7F") + "x");
    ReadSongInfo(bad);
    EXPECT_EQ(OpenHandles(), before + 1);
    for (int i = 0; i < 2000; ++i) {
        ReadSongInfo(bad);
        WriteFile(bad, "ID3" + Z("\x03\0\0\x7F\x7F\x7F\x7F") + std::to_string(i));
    }
    EXPECT_EQ(OpenHandles(), before + 1);
    ReadSongInfo(Song("good.mp3", "x"));
    EXPECT_EQ(OpenHandles(), before);
    ReadSongInfo(bad);
    metadata::CloseAllFiles();
    EXPECT_EQ(OpenHandles(), before);
}

TEST_F(SongFiles, FewCallsAndEachByteOnce)
{
    const std::string path = Song("a.mp3", "x");
    ReadSongInfo(path);
    EXPECT_EQ(m_files.reads, 2); // the beginning, the end
    EXPECT_EQ(m_files.bytesRead, 5120 + 128);
    EXPECT_EQ(m_files.identifications, 0);

    m_files = {};
    const std::string picture = m_folder / "picture.mp3";
    WriteFile(picture, Tag(3, std::string(40'000, 'p')) + std::string(10'000, 'a'));
    ReadSongInfo(picture);
    EXPECT_EQ(m_files.reads, 3);
    EXPECT_EQ(m_files.bytesRead, 10 + 40'000 + 4 + 128);

    m_files = {};
    const std::string tiny = m_folder / "tiny.mp3";
    WriteFile(tiny, Tag(3, Frame3("TIT2", "x")) + Tag1("", "", "", "", "", 0, 0));
    EXPECT_TRUE(ReadSongInfo(tiny).hasID3v1);
    EXPECT_EQ(m_files.reads, 1);
}

TEST_F(SongFiles, ShortReadsAndInterruptionsAreCompleted)
{
    const std::string path = Song("a.mp3", "A title");
    const SongInfo whole = ReadSongInfo(path);
    for (const std::size_t longest : {1u, 7u, 1000u}) {
        m_files.longest = longest;
        EXPECT_EQ(ReadSongInfo(path), whole) << longest;
    }
}

TEST_F(SongFiles, ErrorsWhileReadingAreReported)
{
    const std::string path = Song("a.mp3", "x");
    m_files.onRead = [](std::int64_t, bool) { return std::int64_t{-EIO}; };
    const SongInfo nothing = ReadSongInfo(path);
    EXPECT_EQ(metadata::LastReadFailure(), EIO);
    EXPECT_FALSE(nothing.hasID3v1 || nothing.hasID3v2);
    EXPECT_EQ(nothing.header.HeaderPosition, -1);
    m_files.onRead = [](std::int64_t offset, bool) {
        return std::int64_t{offset > 8192 ? -EIO : 0};
    };
    const SongInfo head = ReadSongInfo(path);
    EXPECT_EQ(metadata::LastReadFailure(), EIO);
    EXPECT_EQ(head.id3v2.Title, "x");
    EXPECT_FALSE(head.hasID3v1);
    // A failed read is tried again, also when the file is unchanged for long.
    m_files.shiftNs = -kHourNs;
    EXPECT_FALSE(ReadSongInfo(path).hasID3v1);
    m_files.onRead = nullptr;
    EXPECT_TRUE(ReadSongInfo(path).hasID3v1);
    EXPECT_EQ(metadata::LastReadFailure(), 0);
}

TEST_F(SongFiles, AFileThatShrinksDuringTheReadGivesZeros)
{
    const std::string path = m_folder / "a.mp3";
    WriteFile(path, Tag(3, Frame3("TIT2", "x") + std::string(30'000, 'p')) + std::string(500, 'a') +
                        Tag1("x", "", "", "", "", 1, 2));
    m_files.onRead = [&](std::int64_t offset, bool) {
        if (offset > 0)
            fs::resize_file(path, 9000);
        return std::int64_t{0};
    };
    const SongInfo pass = ReadSongInfo(path);
    EXPECT_EQ(pass.id3v2.Title, "x");
    EXPECT_FALSE(pass.hasID3v1);
    EXPECT_EQ(metadata::RawID3v2Body().size(), 30'012u);
    EXPECT_EQ(metadata::RawID3v2Body().substr(9000 - 10), std::string(30'012 - 8990, '\0'));
    EXPECT_EQ(metadata::LastReadFailure(), 0);
}

TEST_F(SongFiles, AFileThatEndsWithinItsLastTag)
{
    const std::string image = Tag1("One", "", "", "", "", 1, 2);
    for (const std::size_t left : {0u, 2u, 3u, 40u}) {
        SCOPED_TRACE(left);
        const std::string path = m_folder / "a.mp3";
        WriteFile(path, std::string(20'000, 'a') + image);
        m_files.onRead = [&](std::int64_t offset, bool) {
            if (offset > 0)
                fs::resize_file(path, 20'000 + left);
            return std::int64_t{0};
        };
        const SongInfo pass = ReadSongInfo(path);
        EXPECT_EQ(pass.hasID3v1, left >= 3);
        EXPECT_EQ(pass.id3v1.Header, left >= 3 ? "TAG" : "");
        EXPECT_EQ(pass.id3v1.Genre, left >= 3 ? 0 : -1);
        EXPECT_EQ(pass.id3v1.Title, left == 40  ? "One" + std::string(27, '\0')
                                    : left == 3 ? std::string(30, '\0')
                                                : "");
    }
}

TEST_F(SongFiles, BeforeAReadThatMayTakeLongTheCallerIsNotified)
{
    const std::string path = Song("a.mp3", "x");
    int calls = 0;
    metadata::TheMP3InfoHooks().beforeSlowRead = [&] { ++calls; };
    m_files.onRead = [](std::int64_t offset, bool mayWait) {
        return std::int64_t{!mayWait && offset > 8192 ? -EAGAIN : 0};
    };
    EXPECT_TRUE(ReadSongInfo(path).hasID3v1);
    EXPECT_EQ(calls, 1);
    m_files.onRead = [](std::int64_t, bool mayWait) {
        return std::int64_t{mayWait ? 0 : -EOPNOTSUPP};
    };
    m_files.reads = 0;
    ReadSongInfo(path); // after one read that would wait, all reads of that device count as slow
    EXPECT_EQ(m_files.reads, 3);
    EXPECT_EQ(calls, 3);
}

TEST_F(SongFiles, MoreThanFourGigabytes)
{
    const std::string path = Song("huge.mp3", "x");
    std::error_code error;
    fs::resize_file(path, (5LL << 30) - 128, error);
    ASSERT_FALSE(error) << error.message();
    {
        std::FILE *file = std::fopen(path.c_str(), "ab");
        const std::string image = Tag1("Last", "", "", "", "", 1, 2);
        ASSERT_EQ(std::fwrite(image.data(), 1, image.size(), file), image.size());
        std::fclose(file);
    }
    const SongInfo pass = ReadSongInfo(path);
    EXPECT_EQ(pass.id3v2.Title, "x");
    EXPECT_TRUE(pass.hasID3v1);
    EXPECT_EQ(pass.id3v1.Title.substr(0, 4), "Last");
    EXPECT_EQ(pass.header.Version, "MPEG-1");
    EXPECT_EQ(pass.header.FrameLength, 417);
    EXPECT_EQ(pass.header.FileSize, 0); // the length does not fit, and what follows from it stays
    EXPECT_EQ(pass.header.Frames, 0);
    EXPECT_EQ(pass.header.Seconds, 0);
    EXPECT_EQ(metadata::RawTagsFile().sizeBytes, 5LL << 30);
    EXPECT_LT(m_files.bytesRead, 10'000);
}

} // namespace

} // namespace tests
