#include "catalogue/rows/lazyrows.h"
#include "runtime/collation.h"
#include "runtime/error.h"
#include "tests/support/freshcatalogue.h"
#include "tests/support/oddtexts.h"
#include "ui/controls/inputs/keyedlist.h"

#include <gtest/gtest.h>

#include <random>

using namespace catalogue;
using namespace std::string_literals;

namespace
{

RecordsetPtr Select(tests::FreshCatalogue &fresh, const std::string &statement)
{
    return Records(fresh.access.ExecuteSQL(statement, kSelect));
}

void FillOdd(tests::FreshCatalogue &fresh, int rows)
{
    const std::string titles[] = {"b", "a", "A", "É", "e", "", " ", "z\0"s, "ñ", "Zz"};
    std::mt19937 random(11);
    for (int i = 0; i < rows; ++i)
        fresh.Add({titles[random() % 10], titles[random() % 10], "", "", "",
                   i % 3 == 0 ? std::string(5000, 'l') : "", std::to_string(i),
                   "/" + std::to_string(random() % 50)},
                  static_cast<std::int64_t>(random() % 12));
}

} // namespace

TEST(Recordset, ClosedOne)
{
    tests::FreshCatalogue fresh;
    const auto closed = Select(fresh, "SELECT * FROM Nowhere");
    EXPECT_FALSE(closed->IsOpen());
    EXPECT_TRUE(closed->AtEnd());
    EXPECT_EQ(closed->FieldCount(), 0);
    EXPECT_EQ(closed->RecordCount(), 0);
    closed->MoveFirst();
    closed->MoveNext();
    EXPECT_THROW(static_cast<void>(closed->Text("x")), runtime::RuntimeError);
}

TEST(Recordset, PositionsAndErrors)
{
    for (const std::string statement :
         {"SELECT * FROM MP3s ORDER BY Title", "SELECT Title FROM MP3s ORDER BY Title"}) {
        SCOPED_TRACE(statement); // read late, and copied
        tests::FreshCatalogue fresh;
        EXPECT_TRUE(Select(fresh, statement)->AtEnd());
        fresh.AddPath("/1", "b");
        fresh.AddPath("/2", "a");
        const auto records = Select(fresh, statement);
        EXPECT_TRUE(records->IsOpen());
        EXPECT_EQ(records->RecordCount(), 2);
        EXPECT_EQ(records->Position(), 1);
        EXPECT_EQ(records->Text("TITLE"), "a");
        records->MoveNext();
        EXPECT_EQ(records->Position(), 2);
        EXPECT_EQ(records->Text(0), "b");
        EXPECT_THROW(static_cast<void>(records->Text(-1)), runtime::RuntimeError);
        EXPECT_THROW(static_cast<void>(records->Text(99)), runtime::RuntimeError);
        records->MoveNext();
        records->MoveNext();
        EXPECT_TRUE(records->AtEnd());
        EXPECT_EQ(records->Position(), 0);
        EXPECT_THROW(static_cast<void>(records->Text(0)), runtime::RuntimeError);
        records->MoveFirst();
        EXPECT_EQ(records->Text(0), "a");
    }
}

TEST(LazyRecordset, SortsAsTheEngineWould)
{
    tests::FreshCatalogue fresh;
    FillOdd(fresh, 300);
    fresh.access.ExecuteSQL("UPDATE MP3s SET Title = NULL WHERE Lyrics = '5'", kUpdate);
    for (const std::string order : {"Title", "Title DESC", "Path", "Artist, Title DESC, Path",
                                    "Duplicated, Path DESC", "Lyrics", "title, artist"}) {
        SCOPED_TRACE(order);
        const auto late = Select(fresh, "SELECT * FROM MP3s ORDER BY " + order);
        ASSERT_NE(dynamic_cast<LazyRecordset *>(late.get()), nullptr);
        // The same rows, sorted by the engine; Lyrics has the number of the row.
        const auto sorted = Select(fresh, "SELECT Title, Artist, Path, Duplicated, Lyrics FROM "
                                          "MP3s ORDER BY " +
                                              order);
        for (; !late->AtEnd(); late->MoveNext(), sorted->MoveNext())
            for (const std::string field : {"Title", "Artist", "Path", "Duplicated"})
                if (order.find(field) != std::string::npos) {
                    ASSERT_EQ(runtime::CollateText(late->Text(field), sorted->Text(field)), 0)
                        << field << " of row " << late->Position();
                }
        EXPECT_TRUE(sorted->AtEnd());
    }
}

// A click on a header gives the order that a statement would have given.
TEST(LazyRecordset, AListSortsAsAStatementDoes)
{
    tests::FreshCatalogue fresh;
    ui::KeyedList list;
    std::vector<std::string> texts = tests::OddTexts(200);
    texts.insert(texts.end(), {"\u00E9\xFF", "Z", "\u0915\u093F\u0905", "\u0915\u093E\u092C"});
    for (std::size_t i = 0; i < texts.size(); ++i) {
        fresh.AddPath("/" + std::to_string(i), texts[i]);
        const std::string_view subItem = texts[i];
        list.AddRow(std::to_string(i), "", "", {&subItem, 1});
    }
    for (const bool descending : {false, true}) {
        SCOPED_TRACE(descending);
        list.SetSort(1, descending);
        const auto rows = Select(fresh, descending ? "SELECT * FROM MP3s ORDER BY Title DESC"
                                                   : "SELECT * FROM MP3s ORDER BY Title");
        for (int at = 0; at < list.Count(); ++at, rows->MoveNext())
            ASSERT_EQ(rows->Text("Path").substr(1), list.Key(list.RowAt(at))) << at;
    }
}

TEST(LazyRecordset, KeepsWhatItHadWhateverIsWritten)
{
    for (const bool copyFirst : {false, true}) {
        SCOPED_TRACE(copyFirst);
        tests::FreshCatalogue fresh;
        FillOdd(fresh, 100);
        const auto before = fresh.Rows("SELECT * FROM MP3s ORDER BY Title, Lyrics");
        const auto late = Select(fresh, "SELECT * FROM MP3s ORDER BY Title, Lyrics");
        late->MoveNext();
        EXPECT_EQ(late->Position(), 2);
        fresh.access.ExecuteSQL("UPDATE MP3s SET Title = 'new', Lyrics = 'new'", kUpdate);
        fresh.access.ExecuteSQL("DELETE FROM MP3s WHERE Duplicated > 3", kDelete);
        if (copyFirst)
            LazyRecordset::CopyAll(0);
        EXPECT_EQ(late->Position(), 2);
        late->MoveFirst();
        EXPECT_EQ(tests::RowsOf(*late), before);
    }
}

TEST(LazyRecordset, OutlivesTheObjectAndTheFile)
{
    std::vector<std::string> before;
    RecordsetPtr late;
    {
        tests::FreshCatalogue fresh;
        FillOdd(fresh, 50);
        before = fresh.Rows("SELECT * FROM MP3s ORDER BY Path, Lyrics");
        late = Select(fresh, "SELECT * FROM MP3s ORDER BY Path, Lyrics");
        CloseCatalogue();
        EXPECT_FALSE(std::filesystem::exists(fresh.File() + "-wal")) << "the file alone is whole";
    }
    EXPECT_EQ(tests::RowsOf(*late), before);
}

TEST(LazyRecordset, NullApartFromEmpty)
{
    tests::FreshCatalogue fresh;
    fresh.AddPath("/1");
    fresh.access.ExecuteSQL("UPDATE MP3s SET Title = NULL, Genre = NULL", kUpdate);
    const auto late = Select(fresh, "SELECT * FROM MP3s ORDER BY Title");
    EXPECT_TRUE(late->IsNull(late->FindField("Title")));
    EXPECT_TRUE(late->IsNull(late->FindField("Genre")));
    EXPECT_FALSE(late->IsNull(late->FindField("Artist")));
    EXPECT_EQ(late->Text("Genre"), "");
}
