// Whatever a tag, a path or the name of a list contains: one row with exactly these values.
#include "catalogue/addfile.h"
#include "catalogue/adoclass.h"
#include "catalogue/edittags.h"
#include "catalogue/rowgroups.h"
#include "metadata/genres.h"
#include "metadata/mp3info.h"
#include "runtime/codepage.h"
#include "tests/support/libraryfixture.h"
#include "tests/support/mp3bytes.h"

#include <gtest/gtest.h>

#include <array>
#include <map>

using catalogue::DataAccess;
using catalogue::Value;

namespace
{

// Odd texts as file bytes. 0xB9 is the marker of the insert in the code page.
std::vector<std::string> OddTexts()
{
    std::vector<std::string> texts = {"\xB9",
                                      "\xB9\xB9\xB9\xB9\xB9\xB9\xB9\xB9\xB9\xB9",
                                      "x\xB9y",
                                      "?",
                                      "??",
                                      "?1?",
                                      "'",
                                      "''",
                                      "\"",
                                      "`",
                                      "[x]",
                                      "--",
                                      "/*",
                                      "*/",
                                      ";",
                                      "'; DELETE FROM MP3s; --",
                                      "\\",
                                      "#1/2/2001#",
                                      "%",
                                      "_",
                                      "SELECT",
                                      "\xB9', 'a', 'b') --",
                                      "\xB9'?'\xB9",
                                      std::string("a\0b", 3),
                                      std::string("\0", 1),
                                      " ",
                                      std::string(40000, 'x'),
                                      std::string(40000, '\xB9'),
                                      std::string(40000, '\'')};
    for (int byte = 0; byte < 256; byte++)
        texts.push_back(std::string("a") + static_cast<char>(byte) + "z");
    return texts;
}

struct AnyText : tests::LibraryFixture {
    AnyText() { catalogue::DataAccess->ExecuteSQL("DELETE FROM MP3s", catalogue::kDelete); }

    // All rows by their path, the seven fields of the tag each; fails where a path has two.
    std::map<std::string, std::vector<std::string>> RowsByPath() const
    {
        std::map<std::string, std::vector<std::string>> rows;
        const auto records =
            catalogue::Records(DataAccess->ExecuteSQL("SELECT * FROM MP3s", catalogue::kSelect));
        for (; !records->AtEnd(); records->MoveNext()) {
            std::vector<std::string> fields;
            for (int field = 0; field < 7; field++)
                fields.emplace_back(records->Text(field));
            EXPECT_TRUE(rows.emplace(records->Text("Path"), fields).second);
        }
        return rows;
    }

    // The fields that a row is to have, `genre` in its place.
    static std::vector<std::string> Wanted(const metadata::ID3v2Tag &tag, const std::string &genre)
    {
        std::vector<std::string> fields;
        for (const std::string *bytes :
             {&tag.Title, &tag.Artist, &tag.Album, &tag.Year, &tag.Comment, &genre})
            fields.push_back(runtime::TextOfBytes(bytes->substr(0, 32767)));
        fields.push_back(runtime::TextOfBytes(tag.Lyrics));
        return fields;
    }
};

std::string SongWith(int field, const std::string &text)
{
    static constexpr std::array kFrames = {"TIT2", "TPE1", "TALB", "TYER", "COMM", "TCON", "USLT"};
    std::string frames;
    for (int i = 0; i < 7; i++) {
        const std::string value = i == field ? text : "plain " + std::to_string(i);
        const std::string head =
            i == 4 || i == 6 ? std::string("\0eng\0", 5) : std::string("\0", 1);
        frames += tests::Frame(kFrames[static_cast<std::size_t>(i)], head + value);
    }
    return tests::Id3v2(frames) + tests::Audio();
}

// What the program reads in the song, before any of it becomes a statement.
metadata::ID3v2Tag TagOf(const std::string &path)
{
    const metadata::SongInfo info = metadata::ReadSongInfo(path);
    EXPECT_TRUE(info.hasID3v2);
    return info.id3v2;
}

} // namespace

TEST_F(AnyText, InEveryFieldOfATag)
{
    std::map<std::string, std::vector<std::string>> added, updated;
    catalogue::RowGroups groups;
    int number = 0;
    for (int field = 0; field < 7; field++)
        for (const std::string &text : OddTexts()) {
            const std::string path = Song(std::to_string(++number) + ".mp3");
            tests::WriteFile(path, SongWith(field, text));
            const metadata::ID3v2Tag tag = TagOf(path);
            added[path] = Wanted(tag, metadata::GenreName(tag.Genre));
            updated[path] = Wanted(tag, tag.Genre);
            std::string reason;
            ASSERT_EQ(catalogue::AddOrUpdateMP3(path, reason), catalogue::kAdded) << reason;
            ASSERT_EQ(reason, "");
        }
    groups.Close();
    EXPECT_TRUE(RowsByPath() == added);
    for (const auto &[path, fields] : added) {
        std::string reason;
        ASSERT_EQ(catalogue::AddOrUpdateMP3(path, reason), catalogue::kUpdated) << reason;
    }
    groups.Close();
    EXPECT_TRUE(RowsByPath() == updated);
}

TEST_F(AnyText, InAPath)
{
    std::map<std::string, std::vector<std::string>> wanted;
    for (const std::string &text : OddTexts()) {
        const bool isName = text.find('/') == std::string::npos &&
                            text.find('\0') == std::string::npos && text.size() < 200;
        if (!isName)
            continue;
        for (const std::string &name : {text, runtime::TextOfBytes(text)}) { // both spellings
            const std::string path = Song(name + ".mp3");
            tests::WriteFile(path, SongWith(0, "Title"));
            const metadata::ID3v2Tag tag = TagOf(path);
            const bool isNew =
                wanted.emplace(path, Wanted(tag, metadata::GenreName(tag.Genre))).second;
            std::string reason;
            ASSERT_EQ(catalogue::AddOrUpdateMP3(path, reason),
                      isNew ? catalogue::kAdded : catalogue::kUpdated)
                << reason;
        }
    }
    for (auto &[path, fields] : wanted) {
        std::string reason;
        ASSERT_EQ(catalogue::AddOrUpdateMP3(path, reason), catalogue::kUpdated) << reason;
        fields[5] = "plain 5";
    }
    EXPECT_GE(wanted.size(), 350U);
    EXPECT_TRUE(RowsByPath() == wanted);
}

TEST_F(AnyText, InTheNameOfAListAndInARenamedPath)
{
    for (const std::string &bytes : OddTexts()) {
        const std::string name = runtime::TextOfBytes(bytes);
        catalogue::ExecuteWithValues("DELETE FROM Lists", catalogue::kDelete, {});
        catalogue::ExecuteWithValues("INSERT INTO Lists VALUES(?, ?)", catalogue::kInsert,
                                     {name, "/" + name});
        ASSERT_TRUE(DataAccess->Succeeded) << DataAccess->ErrorMessage;
        catalogue::ExecuteWithValues("UPDATE Lists SET LIST_Path = ? WHERE LIST_Path = ?",
                                     catalogue::kUpdate, {"/new" + name, "/" + name});
        ASSERT_TRUE(DataAccess->Succeeded) << DataAccess->ErrorMessage;
        const auto found = catalogue::Records(catalogue::ExecuteWithValues(
            "SELECT * FROM Lists WHERE LIST_Path = ?", catalogue::kSelect, {"/new" + name}));
        ASSERT_EQ(found->RecordCount(), 1) << name.substr(0, 40);
        EXPECT_TRUE(found->Text(0) == name);
    }
}
