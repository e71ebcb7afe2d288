#include "platform/desktop.h"
#include "platform/endrequest.h"
#include "platform/machine.h"
#include "tests/support/freshcatalogue.h"
#include "tests/support/silentdesktop.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <functional>

using namespace catalogue;

namespace
{

// A desktop that records the calls.
struct NotingDesktop : tests::SilentDesktop {
    NotingDesktop() : m_before(platform::TheMachine().desktop)
    {
        platform::TheMachine().desktop = this;
    }
    ~NotingDesktop() override { platform::TheMachine().desktop = m_before; }

    platform::Answer MessageBox(std::string_view text, platform::Buttons, std::string_view,
                                platform::BoxIcon) override
    {
        boxes.emplace_back(text);
        return platform::Answer::Ok;
    }
    void SetPointer(platform::Pointer pointer) override
    {
        steps += pointer == platform::Pointer::Hourglass ? "H" : "N";
    }
    void DoEvents() override
    {
        steps += "e";
        if (onYield)
            std::exchange(onYield, nullptr)();
    }

    std::vector<std::string> boxes;
    std::string steps; // H and N: the pointer; e: events run
    std::function<void()> onYield;

private:
    platform::Desktop *m_before;
};

std::vector<Value> Values(std::initializer_list<const char *> texts)
{
    return {texts.begin(), texts.end()};
}

} // namespace

TEST(TipoConsulta, FirstWordOfTheListThatIsAnywhere)
{
    constexpr struct {
        std::string_view text;
        int want;
    } cases[] = {
        {"SELECT * FROM MP3s", kSelect},
        {"select 1", kSelect},
        {"INSERT INTO MP3s VALUES ('Select All')", kSelect},
        {"INSERT INTO MP3s VALUES ('Delete me')", kInsert},
        {"UPDATE x SET y = 'DELETEd'", kDelete},
        {"uPdAtE MP3s", kUpdate},
        {"DELETE FROM MP3s", kDelete},
        {"SELEC", kOther},
        {"xSELECTx", kSelect},
        {"", kOther},
        {"SELSELECT", kSelect},
        {"\u017Felect", kSelect}, // the upper case of the long s is S
        {"\u0131nsert", kInsert}, // and that of the dotless i is I
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(ADOclass::TipoConsulta(c.text), c.want);
    }
}

TEST(AddDato, LiteralByType)
{
    const struct {
        const char *name;
        Value value;
        DatoType type;
        int width;
        std::string want;
    } cases[] = {
        {"text", std::string("abc"), DatoType::Text, 0, "'abc'"},
        {"text cut", std::string("abcdef"), DatoType::Text, 3, "'abc'"},
        {"text cut by characters", std::string("ñandú"), DatoType::Text, 2, "'ña'"},
        {"width beyond", std::string("ab"), DatoType::Text, 5, "'ab'"},
        {"apostrophes are the caller's", std::string("a'b"), DatoType::Text, 0, "'a'b'"},
        {"true", true, DatoType::Flag, 0, "-1"},
        {"false", false, DatoType::Flag, 0, "0"},
        {"date", Date{"2001-02-03"}, DatoType::Date, 0, "#2001-02-03#"},
        {"number", std::int64_t{-17}, DatoType::Number, 0, "-17"},
        {"fraction", 0.5, DatoType::Number, 0, "0.5"},
        {"trimmed", std::string("  7 "), DatoType::Number, 0, "7"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        std::string literal;
        EXPECT_EQ(ADOclass::AddDato(c.value, c.type, c.width, literal), c.want);
        EXPECT_EQ(literal, c.want);
    }
}

TEST(ExecuteSQL, DetectedKindIsReturned)
{
    tests::FreshCatalogue fresh;
    int kind = kDetect;
    const auto outcome = fresh.access.ExecuteSQL("DELETE FROM MP3s", kind);
    EXPECT_EQ(kind, kDelete);
    EXPECT_TRUE(std::get<bool>(outcome));
}

TEST(ExecuteSQL, OutcomeByKind)
{
    tests::FreshCatalogue fresh;
    auto &access = fresh.access;
    EXPECT_TRUE(Records(access.ExecuteSQL("SELECT * FROM Lists", kSelect))->IsOpen());
    EXPECT_TRUE(std::holds_alternative<std::monostate>(
        access.ExecuteSQL("INSERT INTO Lists VALUES('a', 'b')", kInsert)));
    EXPECT_TRUE(std::get<bool>(access.ExecuteSQL("UPDATE Lists SET LIST_Path = 'c'", kUpdate)));
    EXPECT_EQ(Records(access.ExecuteSQL("SELECT * FROM Lists", kOther))->FieldCount(), 2);
    EXPECT_EQ(std::get<int>(access.ExecuteSQL("DELETE FROM Lists", kOther)), 0);
    EXPECT_FALSE(std::get<bool>(access.ExecuteSQL("UPDATE Nowhere SET a = 1", kUpdate)));
    EXPECT_FALSE(Records(access.ExecuteSQL("SELECT * FROM Nowhere", kSelect))->IsOpen());
    EXPECT_TRUE(std::holds_alternative<std::monostate>(access.ExecuteSQL(
        "Edit1", kStoredUpdate, Values({"1", "2", "3", "4", "5", "6", "7", "8"}))));
}

TEST(ExecuteSQL, FailureReportsWordsAndStatement)
{
    tests::FreshCatalogue fresh;
    fresh.access.ExecuteSQL("SELECT * FROM Nowhere", kSelect);
    EXPECT_FALSE(fresh.access.Succeeded);
    EXPECT_EQ(fresh.access.ErrorMessage, "Error: no such table: Nowhere\r\tSELECT * FROM Nowhere");
    fresh.access.ExecuteSQL("SEL_ByNowhere", kStoredSelect, std::string("x"));
    EXPECT_EQ(fresh.access.ErrorMessage,
              "Error: There is no stored query 'SEL_ByNowhere'.\r\tSEL_ByNowhere");
    const auto closed = fresh.access.ExecuteSQL("SEL_ByNowhere", kStoredSelect, std::string("x"));
    ASSERT_NE(Records(closed), nullptr);
    EXPECT_FALSE(Records(closed)->IsOpen());
    EXPECT_TRUE(std::holds_alternative<std::monostate>(
        fresh.access.ExecuteSQL("Nowhere", kStoredUpdate, std::string("x"))));
    EXPECT_FALSE(fresh.access.Succeeded);
    fresh.access.ExecuteSQL("SELECT * FROM Lists", kSelect);
    EXPECT_TRUE(fresh.access.Succeeded);
    EXPECT_EQ(fresh.access.ErrorMessage, "");
}

TEST(ExecuteSQL, MarkersAreReplacedFromLeftToRight)
{
    const struct {
        const char *name;
        Params params;
        const char *marker;
        std::vector<std::string> want;
    } cases[] = {
        {"two values", Values({"a", "b"}), "?", {"a|b"}},
        {"apostrophes doubled once", Values({"it's", "''"}), "?", {"it's|''"}},
        {"second lands inside the first", Values({"?", "b"}), "?", {}},
        {"other marker leaves ? alone", Values({"?", "?b"}), "¹", {"?|?b"}},
        {"too many values", Values({"a", "b", "c"}), "?", {"a|b"}},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        tests::FreshCatalogue fresh;
        const std::string marker = c.marker;
        fresh.access.ExecuteSQL("INSERT INTO Lists VALUES(" + marker + ", " + marker + ")", kInsert,
                                c.params, c.marker);
        EXPECT_EQ(fresh.access.Succeeded, !c.want.empty());
        EXPECT_EQ(fresh.Rows("SELECT * FROM Lists"), c.want);
    }
}

TEST(ExecuteSQL, EmptyMarkerTakesNoValue)
{
    tests::FreshCatalogue fresh;
    fresh.access.ExecuteSQL("INSERT INTO Lists VALUES('x', 'y')", kInsert, Values({"a", "b"}), "");
    EXPECT_TRUE(fresh.access.Succeeded) << fresh.access.ErrorMessage;
    EXPECT_EQ(fresh.Rows("SELECT * FROM Lists"), std::vector<std::string>{"x|y"});
    fresh.access.ExecuteSQL("INSERT INTO Lists VALUES(?, 'y')", kInsert, Values({"a"}), "");
    EXPECT_FALSE(fresh.access.Succeeded) << "the mark is a parameter without a value";
}

TEST(ExecuteSQL, ShiftedValueIsTextInsideTheFirst)
{
    tests::FreshCatalogue fresh;
    fresh.access.ExecuteSQL("INSERT INTO Lists VALUES(?, ?)", kInsert, Values({"a?", "b'c"}));
    EXPECT_EQ(fresh.access.ErrorMessage,
              "Error: No value given for one or more required parameters.\r\tINSERT INTO Lists "
              "VALUES('ab''c', ?)");
    fresh.access.ExecuteSQL("INSERT INTO Lists VALUES(?, ?)", kInsert, Values({"a?", "b'c"}),
                            Marker("?", LeftOver::IsEmpty));
    EXPECT_EQ(fresh.Rows("SELECT * FROM Lists"), (std::vector<std::string>{"ab'c|"}));
}

TEST(ExecuteSQL, ValuesThatUsersGiveMayHoldAnyMarker)
{
    tests::FreshCatalogue fresh;
    DataAccess = std::make_unique<ADOclass>();
    fresh.LeadHere(*DataAccess);
    for (const char *name : {"why?", "?", "?1?", "?1? ?2? ?", "it's ?", "?1"}) {
        SCOPED_TRACE(name);
        ExecuteWithValues("DELETE FROM Lists", kDelete, {});
        ExecuteWithValues("INSERT INTO Lists VALUES(?, ?)", kInsert,
                          {std::string(name), std::string("/?")});
        EXPECT_TRUE(DataAccess->Succeeded) << DataAccess->ErrorMessage;
        const auto found = Records(ExecuteWithValues("SELECT * FROM Lists WHERE LIST_Name = ?",
                                                     kSelect, {std::string(name)}));
        ASSERT_EQ(found->RecordCount(), 1);
        EXPECT_EQ(found->Text(0), name);
        EXPECT_EQ(found->Text(1), "/?");
    }
    DataAccess.reset();
}

TEST(ExecuteSQL, OddTextsComeBackTheSame)
{
    const std::string odd[] = {"Select All",
                               "Insert Coin",
                               "It's 50% _off_",
                               std::string("a\0b\0", 4),
                               "what?",
                               "line\r\nline\n\r",
                               std::string(20000, 'x') + "'",
                               "\"quoted\" [x] #1# ;--",
                               "",
                               " ",
                               "\xFF\xFE not UTF-8 \x80",
                               "ñandú ¹ ·",
                               "\\'",
                               "'; DELETE FROM MP3s; --",
                               std::string(1 << 20, '\'')};
    for (const auto &text : odd) {
        SCOPED_TRACE(text.substr(0, 30));
        tests::FreshCatalogue fresh;
        auto &access = fresh.access;
        const std::vector<Value> texts(8, text.find("¹") == std::string::npos ? text : "x");
        access.ExecuteSQL("INSERT INTO MP3s\rVALUES (¹, ¹, ¹, ¹, ¹, ¹, ¹, '/p', ¹, 0)", kDetect,
                          texts, "¹");
        EXPECT_TRUE(access.Succeeded) << access.ErrorMessage.substr(0, 200);
        const auto added = Records(access.ExecuteSQL("SELECT * FROM MP3s", kSelect));
        ASSERT_EQ(added->RecordCount(), 1);
        for (int i = 0; i < 7; ++i)
            EXPECT_EQ(added->Text(i), std::get<std::string>(texts[0]));
        std::vector<Value> edit(7, text);
        edit.emplace_back("/p");
        access.ExecuteSQL("Edit1", kStoredUpdate, edit);
        const auto edited = Records(access.ExecuteSQL("SELECT * FROM MP3s", kSelect));
        ASSERT_EQ(edited->RecordCount(), 1);
        for (int i = 0; i < 7; ++i)
            EXPECT_EQ(edited->Text(i), text);
        EXPECT_EQ(added->Text("Title"), std::get<std::string>(texts[0])) << "the result is static";
    }
}

TEST(ExecuteSQL, NothingButRowsAndOneStatement)
{
    const char *refused[] = {"DROP TABLE MP3s",
                             "PRAGMA user_version = 7",
                             "CREATE TABLE x (a)",
                             "ATTACH 'x' AS y",
                             "DELETE FROM sqlite_schema",
                             "SELECT * FROM sqlite_schema",
                             "DELETE FROM StoredQueries",
                             "BEGIN",
                             "COMMIT",
                             "VACUUM",
                             "SELECT 1; SELECT 2",
                             "SELECT 1; DELETE FROM MP3s",
                             "",
                             "-- nothing",
                             "SELECT 'no end",
                             "SELECT ?",
                             "ALTER TABLE MP3s ADD COLUMN x",
                             "INSERT INTO MP3s SELECT * FROM MP3s",
                             "INSERT INTO Lists VALUES((SELECT Title FROM MP3s), 'b')",
                             "INSERT INTO Lists VALUES(randomblob(9), 'b')",
                             "UPDATE MP3s SET Path = upper(Path)",
                             "UPDATE MP3s SET Path = (SELECT 'x')",
                             "DELETE FROM MP3s WHERE Path IN (SELECT Path FROM MP3s)",
                             "DELETE FROM MP3s WHERE length(Path) = 2",
                             "WITH x AS (SELECT '/a') DELETE FROM MP3s WHERE Path IN x",
                             ("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n) "
                              "INSERT INTO Lists SELECT i, i FROM n"),
                             ("SELECT * FROM (WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT "
                              "i + 1 FROM n) SELECT i FROM n)")};
    for (const auto *statement : refused) {
        SCOPED_TRACE(statement);
        tests::FreshCatalogue fresh;
        fresh.AddPath("/a");
        fresh.access.ExecuteSQL(statement, kOther);
        EXPECT_FALSE(fresh.access.Succeeded);
        EXPECT_EQ(fresh.Rows("SELECT Path FROM MP3s"), std::vector<std::string>{"/a"});
    }
}

TEST(ExecuteSQL, StatementWithoutAnEndEndsWithTheProgram)
{
    tests::FreshCatalogue fresh;
    for (int i = 0; i < 60; ++i)
        fresh.AddPath("/" + std::to_string(i));
    const auto start = std::chrono::steady_clock::now();
    platform::RequestEnd(SIGTERM); // 60^6 combinations would take years
    fresh.access.ExecuteSQL(
        "SELECT count(*) FROM MP3s AS a, MP3s AS b, MP3s AS c, MP3s AS d, MP3s AS e, MP3s AS f "
        "WHERE a.Title || b.Title || c.Title || d.Title || e.Title || f.Title = 'x'",
        kSelect);
    platform::RequestEnd(0);
    EXPECT_FALSE(fresh.access.Succeeded);
    EXPECT_NE(fresh.access.ErrorMessage.find("interrupted"), std::string::npos)
        << fresh.access.ErrorMessage;
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20))
        << "the query would take hours";
    EXPECT_EQ(fresh.Rows("SELECT count(*) FROM MP3s"), std::vector<std::string>{"60"});
}

TEST(ExecuteSQL, PointerAndEvents)
{
    NotingDesktop desktop;
    tests::FreshCatalogue fresh;
    fresh.access.ExecuteSQL("SELECT * FROM Lists", kSelect);
    EXPECT_EQ(desktop.steps, "HeNe");
    desktop.steps.clear();
    fresh.access.ExecuteSQL("SEL_ByTitle", kStoredSelect, std::string("x"));
    EXPECT_EQ(desktop.steps, "N");
    desktop.steps.clear();
    fresh.AddPath("/stored");
    EXPECT_EQ(desktop.steps, "N");
    desktop.steps.clear();
    RowStep step(fresh.access); // no handler runs between the look-up of a path and its row
    step.Access().ExecuteSQL("INSERT INTO Lists VALUES('a', 'b')", kInsert);
    EXPECT_EQ(desktop.steps, "HN");
}

TEST(ExecuteSQL, EventHandlerDoesNotChangeTheStatementsOutcome)
{
    NotingDesktop desktop;
    tests::FreshCatalogue fresh;
    desktop.onYield = [&] {
        desktop.onYield = [&] { fresh.access.ExecuteSQL("SELECT * FROM Lists", kSelect); };
    };
    fresh.access.ExecuteSQL("SELECT * FROM Nowhere", kSelect);
    EXPECT_FALSE(fresh.access.Succeeded);
    desktop.onYield = [&] { fresh.access.ExecuteSQL("SELECT * FROM Nowhere", kSelect); };
    EXPECT_TRUE(Records(fresh.access.ExecuteSQL("SELECT * FROM Lists", kSelect))->IsOpen());
    EXPECT_TRUE(fresh.access.Succeeded);
}

TEST(StoredQuery, MissingAndSpareParameters)
{
    tests::FreshCatalogue fresh;
    fresh.access.ExecuteSQL("Edit1", kStoredUpdate, Values({"a", "b"}));
    EXPECT_FALSE(fresh.access.Succeeded);
    EXPECT_NE(fresh.access.ErrorMessage.find("No value given"), std::string::npos);
    fresh.Add({"", "x", "", "", "", "", "", "/a"});
    EXPECT_EQ(fresh.Stored("SEL_ByTitle", std::vector<Value>{}).size(), 1u)
        << "an empty array is one empty value";
    EXPECT_EQ(fresh.Stored("sel_bytitle", {}).size(), 1u);
    EXPECT_EQ(fresh.Stored("SEL_ByTitle", Value(std::string())).size(), 1u);
}

TEST(Transactions, NestAndRollBack)
{
    NotingDesktop desktop;
    tests::FreshCatalogue fresh;
    auto &access = fresh.access;
    access.BeginTrans();
    access.BeginTrans();
    access.ExecuteSQL("INSERT INTO Lists VALUES('a', '')", kInsert);
    access.CommitTrans();
    access.RollBackTrans();
    EXPECT_TRUE(fresh.Rows("SELECT * FROM Lists").empty());
    access.BeginTrans();
    access.ExecuteSQL("INSERT INTO Lists VALUES('b', '')", kInsert);
    EXPECT_EQ(fresh.Rows("SELECT LIST_Name FROM Lists"), std::vector<std::string>{"b"});
    EXPECT_EQ(fresh.Stored("SEL_ByTitle", Value(std::string("x"))).size(), 0u);
    access.CommitTrans();
    EXPECT_EQ(fresh.Rows("SELECT LIST_Name FROM Lists"), std::vector<std::string>{"b"});
    EXPECT_TRUE(desktop.boxes.empty());
    access.RollBack();
    EXPECT_EQ(desktop.boxes, std::vector<std::string>{"No hay una Transacción abierta"});
}

TEST(Transactions, RollBackEndsThemAllAndUndoesStoredQueries)
{
    tests::FreshCatalogue fresh;
    auto &access = fresh.access;
    access.BeginTrans();
    access.BeginTrans();
    fresh.AddPath("/1");
    EXPECT_EQ(fresh.Stored("SEL_ByTitle", Value(std::string("t"))).size(), 1u);
    access.RollBackTrans();
    EXPECT_EQ(fresh.Stored("SEL_ByTitle", Value(std::string("t"))).size(), 0u);
    access.BeginTrans();
    fresh.AddPath("/2");
    access.RollBack();
    EXPECT_EQ(fresh.Rows("SELECT Path FROM MP3s"), std::vector<std::string>{});
}

TEST(Transactions, EndOfTheObjectRollsBack)
{
    tests::FreshCatalogue fresh;
    {
        ADOclass other;
        fresh.LeadHere(other);
        other.BeginTrans();
        other.ExecuteSQL("INSERT INTO Lists VALUES('a', '')", kInsert);
        EXPECT_TRUE(other.Succeeded);
    }
    EXPECT_EQ(fresh.Rows("SELECT * FROM Lists"), std::vector<std::string>{});
    fresh.AddPath("/free");
}

TEST(Transactions, AnotherObjectIsNotifiedAtOnce)
{
    tests::FreshCatalogue fresh;
    ADOclass other;
    fresh.LeadHere(other);
    fresh.access.BeginTrans();
    other.ExecuteSQL("INSERT INTO Lists VALUES('a', '')", kInsert);
    EXPECT_FALSE(other.Succeeded);
    fresh.access.CommitTrans();
    other.ExecuteSQL("INSERT INTO Lists VALUES('a', '')", kInsert);
    EXPECT_TRUE(other.Succeeded) << other.ErrorMessage;
}
