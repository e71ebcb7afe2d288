// What is found in a song's first bytes on another thread is what the pass would find itself.
#include "metadata/filepass.h"
#include "metadata/headdigest.h"
#include "metadata/mp3info.h"
#include "metadata/mpegheader.h"
#include "metadata/unicode/tagtexts.h"
#include "platform/machine.h"
#include "platform/posix/disk/readahead.h"
#include "tests/support/mp3bytes.h"
#include "tests/support/testfolder.h"
#include "tests/support/wait.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace
{

using metadata::FrameFindings;
using metadata::HeadDigest;
using tests::Frame;
using tests::Tag;

const std::string kSongBehindTag = "\xFF\xFB\x90\x64" + std::string(9000, '\x11');

struct Sample {
    const char *name;
    std::string bytes;
    bool hasWholeTag = false;
    bool hasTextsForFrames = false;
};

std::vector<Sample> Samples()
{
    const std::string plain = Tag(3, Frame("TIT2", std::string_view("\0Song", 5)) +
                                         Frame("TRCK", std::string_view("\0"
                                                                        "7",
                                                                        2)) +
                                         Frame("TCON", std::string_view("\0(17)", 5)));
    const std::string utf16 = Tag(3, Frame("TIT2", std::string_view("\1\xFF\xFE"
                                                                    "A\0",
                                                                    5)));
    const std::string picture = Tag(3, Frame("APIC", std::string(20000, '\xFF')) +
                                           Frame("TPE1", std::string_view("\0Who", 4)));
    std::string tooLong = plain;
    tooLong[6] = '\x7F';
    return {
        {"nothing", ""},
        {"no tag", kSongBehindTag},
        {"no audio", std::string(9000, 'x')},
        {"a tag", plain + kSongBehindTag, true},
        {"texts for frames", utf16 + kSongBehindTag, true, true},
        {"version 2", Tag(2, "TT2" + std::string("\0\0\5\0Song", 8)) + kSongBehindTag, true, true},
        {"version 4", Tag(4, Frame("TIT2", std::string_view("\3Song", 5))) + kSongBehindTag, true,
         true},
        {"an unknown version", Tag(9, "TIT2 and more") + kSongBehindTag, true},
        {"a tag longer than the first read", picture + kSongBehindTag, true},
        {"a header alone", plain.substr(0, 10)},
        {"half a header", plain.substr(0, 7)},
        {"an empty tag", Tag(3, "") + kSongBehindTag},
        {"a tag that is cut off", plain.substr(0, plain.size() - 3)},
        {"a tag longer than the file", tooLong + kSongBehindTag},
    };
}

void ExpectSame(const FrameFindings &found, const FrameFindings &want)
{
    EXPECT_EQ(found.title, want.title);
    EXPECT_EQ(found.artist, want.artist);
    EXPECT_EQ(found.album, want.album);
    EXPECT_EQ(found.year, want.year);
    EXPECT_EQ(found.comment, want.comment);
    EXPECT_EQ(found.lyrics, want.lyrics);
    EXPECT_EQ(found.genre, want.genre);
    EXPECT_EQ(found.track, want.track);
}

TEST(HeadDigest, HasWhatIsFoundInTheSameBytes)
{
    for (const Sample &sample : Samples()) {
        SCOPED_TRACE(sample.name);
        const std::string_view head = sample.bytes;
        const auto made = metadata::DigestHead(head, static_cast<std::int64_t>(head.size()));
        const HeadDigest *digest = metadata::DigestOf(made.get(), head);
        ASSERT_NE(digest, nullptr);
        EXPECT_EQ(digest->headerPosition, metadata::FindHeaderPosition(head));
        EXPECT_EQ(digest->hasWholeTag, sample.hasWholeTag);
        EXPECT_EQ(digest->hasTextsForFrames, sample.hasTextsForFrames);
        if (digest->hasWholeTag)
            ExpectSame(
                digest->findings,
                metadata::FindFrames(head.substr(10, *metadata::FindBodyBytes(head)), head[3]));
    }
}

TEST(HeadDigest, HoldsForNoOtherBytes)
{
    const std::string song = kSongBehindTag, other = kSongBehindTag;
    const std::string_view head = song;
    const auto digest = metadata::DigestHead(head, 9004);
    EXPECT_NE(metadata::DigestOf(digest.get(), head), nullptr);
    EXPECT_EQ(metadata::DigestOf(digest.get(), other), nullptr) << "elsewhere in memory";
    EXPECT_EQ(metadata::DigestOf(digest.get(), head.substr(0, 9003)), nullptr) << "fewer of them";
    EXPECT_EQ(metadata::DigestOf(nullptr, head), nullptr);
}

// Files that were last changed an hour ago, so that their bytes that were fetched ahead are used.
struct OldFiles : platform::posix::SystemFilesPort {
    static int Aged(int result, platform::FileIdentity &identity)
    {
        identity.changedNs -= 3'600'000'000'000;
        return result;
    }
    int OpenToRead(const std::string &path, platform::FileIdentity &identity) override
    {
        const int handle = Aged(SystemFilesPort::OpenToRead(path, identity), identity);
        ++opens;
        return handle;
    }
    int Identify(const std::string &path, platform::FileIdentity &identity) override
    {
        return Aged(SystemFilesPort::Identify(path, identity), identity);
    }
    int IdentifyOpen(int /*handle*/, const std::string &path,
                     platform::FileIdentity &identity) override
    {
        return Aged(SystemFilesPort::Identify(path, identity), identity);
    }

    std::atomic<int> opens = 0;
};

struct FetchedSongs : testing::Test {
    FetchedSongs()
    {
        metadata::ResetMP3Info();
        platform::TheMachine().files = &files;
    }
    ~FetchedSongs() override
    {
        metadata::ResetMP3Info();
        platform::TheMachine().files = &platform::SystemFiles();
    }

    tests::TestFolder folder;
    std::shared_ptr<OldFiles> old = std::make_shared<OldFiles>();
    platform::posix::ReadAheadFiles files{old};
};

TEST_F(FetchedSongs, AreReadAsOthersAre)
{
    for (const Sample &sample : Samples()) {
        SCOPED_TRACE(sample.name);
        const std::string path = folder / "song.mp3";
        tests::WriteFile(path, sample.bytes);
        metadata::ResetMP3Info();
        const metadata::SongInfo want = metadata::ReadSongInfo(path);
        const bool wantTexts = metadata::HasTextsForFrames();
        EXPECT_TRUE(tests::WaitUntil([&] { // until the helper has been fast enough
            files.ExpectNothing();
            metadata::FileBytes bytes;
            old->opens = 0;
            metadata::ExpectReads({path});
            EXPECT_TRUE(tests::WaitUntil([&] { return old->opens > 0; }));
            const int held = metadata::ReadFileBytes(path, {}, bytes);
            if (held >= 0)
                files.Close(held);
            return bytes.digest != nullptr || sample.bytes.empty();
        }));
        for (int i = 0; i < 20; ++i) {
            metadata::ResetMP3Info();
            metadata::ExpectPasses({path});
            EXPECT_EQ(metadata::ReadSongInfo(path), want);
            EXPECT_EQ(metadata::HasTextsForFrames(), wantTexts);
            files.ExpectNothing();
        }
    }
}

} // namespace
