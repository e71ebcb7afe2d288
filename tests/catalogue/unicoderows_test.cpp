// Rows of songs whose tags are read by their frames, and the offer to read them so.
#include "platform/machine.h"
#include "shell/globals.h"
#include "tests/catalogue/regenerationfixture.h"
#include "tests/metadata/unicode/tagbytes.h"
#include "tests/support/memorysettings.h"

#include <utility>

namespace
{

constexpr char kJapanese[] = "\xE6\xA1\x9C";

struct UnicodeRows : tests::Regeneration {
    UnicodeRows() { platform::TheMachine().settings = &settings; }
    ~UnicodeRows() override
    {
        platform::TheMachine().settings = nullptr;
        shell::TheGlobals().UnicodeTags = false;
        catalogue::TheRegenerationControls().OfferUnicodeTags = nullptr;
    }

    // A song of version 2.4 that leaves some fields to its ID3v1 tag.
    void AddNewSong(const std::string &name)
    {
        const auto text = [](std::string_view id, std::string_view words) {
            return tests::Frame24(id, '\x03' + std::string(words));
        };
        tests::WriteFile(Song(name),
                         tests::TagOf(4, text("TIT2", kJapanese) + text("TRCK", "3/12")) +
                             tests::Audio() +
                             tests::Id3v1({.title = "old", .artist = "Art\xE9", .genre = 17}));
    }

    tests::MemorySettings settings;
};

const std::string kRow = std::string(kJapanese) + "|Art\xC3\xA9||||Rock||~/new.mp3||0";

} // namespace

TEST_F(UnicodeRows, AreReadWhereTheSettingIsOn)
{
    shell::TheGlobals().UnicodeTags = true;
    AddNewSong("new.mp3");
    catalogue::ListRefresh(false);
    EXPECT_EQ(Rows(), (tests::RowList{kRow}));
    EXPECT_EQ(catalogue::LastRegeneration().unicodeFiles, 0);
    // A known song keeps its genre in words.
    catalogue::AllowRegeneration();
    catalogue::ListRefresh(false);
    EXPECT_EQ(Rows(), (tests::RowList{kRow}));
}

TEST_F(UnicodeRows, AreOfferedAndReadAnew)
{
    AddSong("usual.mp3");
    AddNewSong("new.mp3");
    std::vector<std::pair<std::int64_t, std::int64_t>> offers;
    bool answer = false;
    catalogue::TheRegenerationControls().OfferUnicodeTags = [&](std::int64_t files,
                                                                std::int64_t of) {
        offers.emplace_back(files, of);
        return answer;
    };
    catalogue::ListRefresh(false);
    EXPECT_EQ(offers.size(), 1U);
    EXPECT_FALSE(shell::TheGlobals().UnicodeTags);
    EXPECT_EQ(Rows()[0].substr(0, 4), "||||"); // what is read without frames
    answer = true;
    catalogue::AllowRegeneration();
    catalogue::ListRefresh(false);
    ASSERT_EQ(offers.size(), 2U);
    EXPECT_EQ(offers[1], (std::pair<std::int64_t, std::int64_t>{1, 2}));
    EXPECT_TRUE(shell::TheGlobals().UnicodeTags);
    EXPECT_EQ(Rows()[0], kRow);
    EXPECT_EQ(catalogue::LastRegeneration().files, 2);
}

// A run that is repeated asks about its report once, at its very end.
TEST_F(UnicodeRows, TheReportIsAskedAboutAfterTheOffer)
{
    const std::string title = tests::Frame24("TIT2", '\x03' + std::string(kJapanese));
    tests::WriteFile(Song("new.mp3"), tests::TagOf(4, title) + tests::Audio()); // one tag alone
    for (const bool answer : {false, true}) {
        SCOPED_TRACE(answer);
        std::size_t boxesBefore = 99;
        catalogue::TheRegenerationControls().OfferUnicodeTags = [&](std::int64_t, std::int64_t) {
            boxesBefore = desktop.boxes.size();
            return answer;
        };
        desktop.boxes.clear();
        desktop.ExpectBox("There were some 'mistakes'", platform::Answer::No);
        catalogue::AllowRegeneration();
        catalogue::ListRefresh(false);
        EXPECT_EQ(boxesBefore, 0U) << "the offer comes first";
        EXPECT_EQ(desktop.boxes.size(), 1U);
        EXPECT_EQ(catalogue::LastRegeneration().reported, 1);
        EXPECT_NE(Report().find("new.mp3"), std::string::npos);
    }
    EXPECT_EQ(Rows(), tests::RowList{std::string(kJapanese) + "|||||||~/new.mp3||0"});
}
