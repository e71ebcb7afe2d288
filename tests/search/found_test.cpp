// The rows that a search finds are those that a plain reading of its rules finds.
#include "catalogue/adoclass.h"
#include "search/criteria.h"
#include "tests/browser/formfixture.h"

#include <random>

namespace
{

using search::Criteria;
using search::kFields;
using Row = std::array<std::string, kFields.size()>;

const std::vector<std::string> kLetters = {"a",      "B",      "\u00F1", "\u00D1", "\u00E9",
                                           "\u0416", "\u0436", "%",      "_",      "?",
                                           "'",      " ",      "x",      "Y",      "\\"};

std::vector<std::string> Characters(std::string_view utf8)
{
    std::vector<std::string> characters;
    for (const char c : utf8)
        if ((static_cast<unsigned char>(c) & 0xC0) != 0x80)
            characters.emplace_back(1, c);
        else
            characters.back() += c;
    return characters;
}

// LIKE as its words say: "%" any characters, "_" one, letters without regard to case.
bool IsLike(const std::vector<std::string> &text, std::size_t at,
            const std::vector<std::string> &pattern, std::size_t from)
{
    if (from == pattern.size())
        return at == text.size();
    if (pattern[from] == "%") {
        for (std::size_t end = at; end <= text.size(); ++end)
            if (IsLike(text, end, pattern, from + 1))
                return true;
        return false;
    }
    return at < text.size() && (pattern[from] == "_" || text[at] == pattern[from]) &&
           IsLike(text, at + 1, pattern, from + 1);
}

bool Holds(const std::string &text, const std::string &searched)
{
    return IsLike(Characters(runtime::UpperText(text)), 0,
                  Characters("%" + runtime::UpperText(searched) + "%"), 0);
}

// The words of the rule: between blanks, one letter at the end is lost unless it is all there is.
std::vector<std::string> Words(std::string text)
{
    if (text.empty())
        text = "%";
    if (text.find(' ') == std::string::npos)
        text += ' ';
    std::vector<std::string> words;
    std::string word;
    for (const char c : text) {
        if (c == ' ')
            words.push_back(std::exchange(word, {}));
        else
            word += c;
    }
    if (Characters(word).size() >= 2)
        words.push_back(word);
    return words;
}

bool FieldMatches(const std::string &value, const Criteria &criteria)
{
    if (criteria.type == search::kExactPhrase)
        return Holds(value, criteria.text.empty() ? "%" : criteria.text);
    const auto words = Words(criteria.text);
    const auto holds = [&](const std::string &word) { return Holds(value, word); };
    return criteria.type == search::kAnyWords ? std::any_of(words.begin(), words.end(), holds)
                                              : std::all_of(words.begin(), words.end(), holds);
}

class Found : public tests::FormTest
{
protected:
    std::string Text(int most)
    {
        std::string text;
        for (int i = std::uniform_int_distribution<int>(0, most)(random); i > 0; --i)
            text += kLetters[std::uniform_int_distribution<std::size_t>(0, kLetters.size() -
                                                                               1)(random)];
        return text;
    }

    void AddRow(Row row)
    {
        // The path distinguishes the rows.
        row[6] = "/" + std::to_string(rows.size()) + "/" + row[6];
        std::vector<catalogue::Value> values;
        for (const std::size_t column : {0, 1, 2, 3, 4, 5, 7, 6})
            values.emplace_back(row[column]);
        values.emplace_back(std::int64_t{0});
        catalogue::DataAccess->ExecuteSQL("AddMP3", catalogue::kStoredInsert, values);
        ASSERT_TRUE(catalogue::DataAccess->Succeeded);
        rows.push_back(row);
    }

    void ReadAhead()
    {
        for (int slices = 0; catalogue::DataAccess->ReadAheadForSearches(1000); ++slices)
            ASSERT_LT(slices, 100);
    }

    std::vector<std::string> PathsFound(const Criteria &criteria)
    {
        const search::Search search = search::BuildSearch(criteria);
        const auto records = catalogue::Records(
            catalogue::ExecuteWithValues(search.statement, catalogue::kSelect, search.params));
        EXPECT_TRUE(catalogue::DataAccess->Succeeded) << catalogue::DataAccess->ErrorMessage;
        std::vector<std::string> paths;
        for (; !records->AtEnd(); records->MoveNext())
            paths.emplace_back(records->Text("Path"));
        return paths;
    }

    std::mt19937 random{20260321};
    std::vector<Row> rows;
};

TEST_F(Found, RandomTextsWildcardsAndLetterCases)
{
    for (int i = 0; i < 60; ++i) {
        Row row;
        for (std::string &text : row)
            text = Text(6);
        AddRow(row);
    }
    std::size_t found = 0;
    for (int i = 0; i < 300; ++i) {
        Criteria criteria;
        criteria.text = Text(5);
        criteria.type = i % 3;
        for (bool &ticked : criteria.ticked)
            ticked = std::uniform_int_distribution<int>(0, 2)(random) == 0;
        criteria.ticked[static_cast<std::size_t>(i) % kFields.size()] = true;
        std::vector<std::string> want;
        for (const Row &row : rows)
            for (std::size_t field = 0; field < kFields.size(); ++field)
                if (criteria.ticked[field] && FieldMatches(row[field], criteria)) {
                    want.push_back(row[6]);
                    break;
                }
        if (i == 150) // from here on the texts have been read ahead
            ReadAhead();
        ASSERT_EQ(PathsFound(criteria), want)
            << "\"" << criteria.text << "\" type " << criteria.type;
        found += want.size();
    }
    EXPECT_GT(found, 1000u); // it compared something
}

TEST_F(Found, LettersOfEveryCase)
{
    AddRow({"\u00F1and\u00FA", "", "", "", "", "", "", ""});
    Criteria criteria;
    criteria.text = "\u00D1AND\u00DA";
    criteria.ticked[0] = true;
    EXPECT_EQ(PathsFound(criteria).size(), 1u);
}

TEST_F(Found, LettersOfEveryCaseInTextsReadAhead)
{
    AddRow({"\u00F1and\u00FA", "", "", "", "", "", "", ""});
    AddRow({"", "", "", "", "", "", "", "\u043B\u044E\u0431\u043E\u0432\u044C"});
    ReadAhead();
    Criteria criteria;
    criteria.ticked.fill(true);
    for (const char *text : {"\u00D1AND\u00DA", "\u00F1a", "\u041B\u042E\u0431", "\u042C"}) {
        criteria.text = text;
        EXPECT_EQ(PathsFound(criteria).size(), 1u) << text;
    }
}

TEST_F(Found, AnEmptyTextFindsAllThatIsNotNull)
{
    AddRow({"", "", "", "", "", "", "", ""});
    catalogue::DataAccess->ExecuteSQL(
        "INSERT INTO MP3s VALUES (NULL, 'a', '', '', '', '', '', '/n', '', 0)", catalogue::kInsert);
    ASSERT_TRUE(catalogue::DataAccess->Succeeded);
    Criteria criteria;
    criteria.ticked[0] = true;
    EXPECT_EQ(PathsFound(criteria), std::vector<std::string>{"/0/"});
    criteria.ticked[1] = true;
    EXPECT_EQ(PathsFound(criteria).size(), 2u);
}

} // namespace
