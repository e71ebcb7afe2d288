// Searches for texts in other scripts, over the rows that the tags of songs gave.
#include "catalogue/addfile.h"
#include "catalogue/adoclass.h"
#include "search/criteria.h"
#include "tests/browser/formfixture.h"
#include "tests/support/mp3bytes.h"
#include "tests/support/scriptsongs.h"

namespace
{

using search::Criteria;
using Names = std::vector<std::string>;

enum Field : std::size_t { kTitle = 0, kArtist = 1, kPath = 6, kLyrics = 7 };

class FoundScripts : public tests::FormTest
{
protected:
    void AddSong(const std::string &name, const tests::ScriptSong &song,
                 std::string_view lyrics = {})
    {
        tests::WriteFile(Song(name), tests::SongBytes(song, lyrics));
        std::string reason;
        ASSERT_EQ(catalogue::AddOrUpdateMP3(Song(name), reason), catalogue::kAdded) << reason;
    }

    // The names of the files that are found, without folder and ending.
    Names Found(const std::string &text, int type, std::initializer_list<Field> fields)
    {
        Criteria criteria;
        criteria.text = text;
        criteria.type = type;
        for (const Field field : fields)
            criteria.ticked[field] = true;
        const search::Search search = search::BuildSearch(criteria);
        const auto records = catalogue::Records(
            catalogue::ExecuteWithValues(search.statement, catalogue::kSelect, search.params));
        EXPECT_TRUE(catalogue::DataAccess->Succeeded) << catalogue::DataAccess->ErrorMessage;
        Names names;
        for (; !records->AtEnd(); records->MoveNext()) {
            const std::string path(records->Text("Path"));
            names.push_back(path.substr(Music().size() + 1, path.size() - Music().size() - 5));
        }
        return names;
    }

    // The same result while the texts are on the disk, and when they have been read ahead.
    void ExpectFound(const std::string &text, int type, std::initializer_list<Field> fields,
                     const Names &want)
    {
        EXPECT_EQ(Found(text, type, fields), want);
        while (catalogue::DataAccess->ReadAheadForSearches(1000)) {
        }
        EXPECT_EQ(Found(text, type, fields), want) << "read ahead";
    }

    tests::ReadingByFrames byFrames;
};

} // namespace

TEST_F(FoundScripts, WordsAndPhrases)
{
    AddSong("japanese.mp3", tests::kJapanese, "[00:01]さくら さくら\r\n");
    AddSong("russian.mp3", tests::kRussian, "[00:01]Тёплое место\r\n");
    AddSong("arabic.mp3", tests::kArabic, "[00:01]من مفرق الوادي\r\n");
    AddSong("emoji.mp3", tests::kEmoji, "[00:01]👨‍👩‍👧‍👦 home\r\n");
    AddSong("mixed.mp3", tests::kMixed);
    const struct {
        const char *name;
        std::string text;
        int type;
        std::initializer_list<Field> fields;
        Names want;
    } cases[] = {
        {"a part of a text without blanks", "の花", search::kAnyWords, {kTitle}, {"japanese"}},
        {"one character", "桜", search::kAnyWords, {kTitle}, {"japanese"}},
        {"another case", "ГРУППА", search::kAnyWords, {kTitle}, {"russian"}},
        {"the middle of a word", "РОВ", search::kAnyWords, {kTitle}, {"russian"}},
        {"right to left", "فيروز", search::kAnyWords, {kArtist}, {"arabic", "mixed"}},
        {"a phrase", "علينا الهوى", search::kExactPhrase, {kTitle}, {"arabic"}},
        {"the words of a phrase in another order",
         "الهوى علينا",
         search::kExactPhrase,
         {kTitle},
         {}},
        {"all words in another order", "الهوى علينا", search::kAllWords, {kTitle}, {"arabic"}},
        {"both directions", "world مرحبا", search::kAllWords, {kTitle}, {"mixed"}},
        {"any words of two scripts",
         "крови の花",
         search::kAnyWords,
         {kTitle},
         {"japanese", "russian"}},
        {"an emoji", "🎵", search::kAnyWords, {kTitle}, {"emoji"}},
        {"one that shares its first bytes", "😁", search::kAnyWords, {kTitle}, {}},
        {"one part of a sequence", "👩", search::kAnyWords, {kArtist}, {"emoji"}},
        {"a sequence", "👩‍🎤", search::kExactPhrase, {kArtist}, {"emoji"}},
        {"one character in place of another",
         "😀_ party",
         search::kExactPhrase,
         {kTitle},
         {"emoji"}},
        {"any characters", "桜%花", search::kExactPhrase, {kTitle}, {"japanese"}},
        {"an accent is a letter of its own", "ñandú", search::kAnyWords, {kArtist}, {"mixed"}},
        {"and is not found without it", "nandu", search::kAnyWords, {kArtist}, {}},
        {"Greek with accents", "ὈΔΎΣΣ", search::kAnyWords, {kTitle, kArtist}, {}},
        {"lyrics", "ТЁПЛОЕ", search::kAnyWords, {kLyrics}, {"russian"}},
        {"lyrics with marks", "[00:01]من", search::kExactPhrase, {kLyrics}, {"arabic"}},
        {"lyrics in emoji",
         "👨‍👩‍👧‍👦 HOME",
         search::kExactPhrase,
         {kLyrics},
         {"emoji"}},
        {"any of several fields",
         "さくら",
         search::kAnyWords,
         {kTitle, kArtist, kLyrics},
         {"japanese"}},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        ExpectFound(c.text, c.type, c.fields, c.want);
    }
}

TEST_F(FoundScripts, LettersFoldOneToOne)
{
    AddSong("spanish.mp3", {"ñandú", "", "", "", "", ""});
    AddSong("greek.mp3", {"Οδυσσεύς", "", "", "", "", ""});
    AddSong("wide.mp3", {"ＡＢＣ", "", "", "", "", ""}); // full-width letters
    AddSong("turkish.mp3", {"kapı", "", "", "", "", ""});
    AddSong("german.mp3", {"Straße", "", "", "", "", ""});
    AddSong("georgian.mp3", {"სიმღერა", "", "", "", "", ""});
    const struct {
        const char *name;
        std::string text;
        Names want;
    } cases[] = {
        {"ñ and ú", "ÑANDÚ", {"spanish"}},
        {"a final sigma is a sigma", "ΣΣΕΎΣ", {"greek"}},
        {"either sigma", "οδυσσεύσ", {"greek"}},
        {"full-width", "ｂｃ", {"wide"}},
        {"full-width is not half-width", "bc", {}},
        {"the i without a dot is an I", "KAPI", {"turkish"}},
        {"the i with a dot is one too", "kapi", {"turkish"}},
        {"the I with a dot is a letter of its own", "KAPİ", {}},
        {"one letter stays one", "strasse", {}},
        {"sharp s", "STRAẞE", {"german"}},
        {"a script without cases", "მღერა", {"georgian"}},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        ExpectFound(c.text, search::kAnyWords, {kTitle}, c.want);
    }
}

TEST_F(FoundScripts, PathsOfSuchNames)
{
    AddSong("桜 😀.mp3", {"x", "", "", "", "", ""});
    AddSong("نسم.mp3", {"x", "", "", "", "", ""});
    ExpectFound("😀.mp3", search::kAnyWords, {kPath}, {"桜 😀"});
    ExpectFound("نسم.MP3", search::kAnyWords, {kPath}, {"نسم"});
}

// Rows that were read with the setting UnicodeTags off are searched as they are shown.
TEST_F(FoundScripts, RowsReadWithUnicodeTagsOff)
{
    shell::TheGlobals().UnicodeTags = false;
    tests::WriteFile(Song("old.mp3"),
                     tests::Id3v2(tests::TextFrame("TIT2", "caf\xC3\xA9 \xE9")) + tests::Audio());
    std::string reason;
    ASSERT_EQ(catalogue::AddOrUpdateMP3(Song("old.mp3"), reason), catalogue::kAdded);
    shell::TheGlobals().UnicodeTags = true;
    AddSong("new.mp3", tests::kRussian);
    ExpectFound("cafã© É", search::kExactPhrase, {kTitle}, {"old"});
    ExpectFound("крови", search::kExactPhrase, {kTitle}, {"new"});
}
