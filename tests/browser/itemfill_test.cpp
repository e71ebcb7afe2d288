#include "runtime/error.h"
#include "tests/browser/itemlistfixture.h"

namespace
{

using namespace browser;
using platform::Pointer;
using ItemFill = tests::ItemListTest;

TEST_F(ItemFill, AStatementThatFailsShowsTheWarning)
{
    MainForm &form = Library();
    catalogue::DataAccess->DataBaseName = "nowhere";
    Click("#ABBA");
    EXPECT_FALSE(catalogue::DataAccess->Succeeded);
    EXPECT_EQ(ShownRows(), "/0:No items found. ");
    EXPECT_EQ(form.lblWebFolder.Caption(), "Abba");
    EXPECT_EQ(desktop.pointers.back(), Pointer::Normal);
}

TEST_F(ItemFill, AValueWithoutRowsShowsTheWarning)
{
    MainForm &form = Library();
    catalogue::DataAccess->ExecuteSQL("DELETE FROM MP3s", catalogue::kDelete);
    Click("#ABBA");
    EXPECT_EQ(ShownRows(), "/0:No items found. ");
    EXPECT_EQ(Columns(), "Icon=450 Warning=2400 ");
    EXPECT_EQ(form.WEPath.Caption(), "MP3/By Artist/Abba");
    form.LV.SelectOnly(0);
    EXPECT_EQ(SelectedPath(form.LV), "");
    RegisterItemKind("/", [](const std::string &, ui::KeyedList &) { FAIL() << "no song"; });
    form.LV.onDblClick();
    EXPECT_EQ(ShownRows(), "/0:No items found. ");
}

TEST_F(ItemFill, AFileWithSeveralRowsInTheCatalogueIsOneRow)
{
    Add({"One", "Abba", "", "", "", "Pop", "/m/one.mp3"});
    Add({"One", "Abba and friends", "", "", "", "Pop", "/m/one.mp3"});
    MainForm &form = Loaded();
    LoadTreeView(form, "");
    Click("\u00A1POP");
    EXPECT_EQ(ShownRows(), "/0:One ");
    EXPECT_EQ(form.LV.SubItem(0, "Artist"), "Abba");
    Click("#ABBA AND FRIENDS");
    EXPECT_EQ(ShownRows(), "/0:One ");
}

TEST_F(ItemFill, PathsThatDifferOnlyInCaseShareOneRow)
{
    Add({"One", "Abba", "", "", "", "", "/m/one.mp3"});
    Add({"One again", "Abba", "", "", "", "", "/m/ONE.mp3"});
    Add({"\u00D1", "Abba", "", "", "", "", "/m/\u00F1.mp3"});
    Add({"\u00D1 again", "Abba", "", "", "", "", "/M/\u00D1.mp3"});
    MainForm &form = Loaded();
    LoadTreeView(form, "");
    Click("#ABBA");
    EXPECT_EQ(form.LV.Count(), 2);
}

TEST_F(ItemFill, ColumnClicksSort)
{
    MainForm &form = Library();
    Click("\u00A1POP");
    EXPECT_EQ(ShownRows(), "/0:One /1:Two ");
    form.LV.onColumnClick(2);
    EXPECT_EQ(ShownRows(), "/0:One /1:Two ");
    form.LV.onColumnClick(2);
    EXPECT_EQ(ShownRows(), "/1:Two /0:One ");
    form.LV.onColumnClick(6); // another column keeps the order
    EXPECT_TRUE(form.LV.Descending());
    EXPECT_EQ(form.LV.SortKey(), 5);
    EXPECT_EQ(ShownRows(), "/1:Two /0:One ");
    form.LV.onColumnClick(6);
    EXPECT_EQ(ShownRows(), "/0:One /1:Two ");
}

TEST_F(ItemFill, AColumnThatIsNotShownStaysTheOneSortedBy)
{
    Add({"One", "b", "x", "", "", "", "/m/1"});
    Add({"Two", "a", "x", "", "", "", "/m/2"});
    MainForm &form = Loaded();
    LoadTreeView(form, "");
    form.LV.SetSort(2, false); // the artist
    Click("~X");
    EXPECT_EQ(ShownRows(), "/1:Two /0:One ");
    form.LV.SetColumnWidth("Artist", 0);
    EXPECT_EQ(ShownRows(), "/1:Two /0:One ");
    form.LV.SetSort(3, false); // the album, which is the same in all rows and hidden
    EXPECT_EQ(form.LV.Columns()[3].widthTwips, 0);
    EXPECT_EQ(ShownRows(), "/0:One /1:Two ");
}

TEST_F(ItemFill, ALongFillYieldsEveryFiftyRows)
{
    for (int i = 0; i < 120; ++i)
        Add({"t", "Abba", "", "", "", "", "/m/" + std::to_string(i)});
    MainForm &form = Loaded();
    LoadTreeView(form, "");
    const auto records = catalogue::Records(catalogue::DataAccess->ExecuteSQL(
        "SEL_ByArtist", catalogue::kStoredSelect, catalogue::Value(std::string("ABBA"))));
    std::vector<int> counts;
    desktop.pointers.clear();
    desktop.onYield = [&] { counts.push_back(form.LV.Count()); };
    EXPECT_TRUE(FillItemList(form.LV, *records));
    EXPECT_EQ(counts, (std::vector<int>{0, 50, 100, 120}));
    EXPECT_EQ(desktop.pointers, (std::vector<Pointer>{Pointer::Hourglass, Pointer::Normal}));
}

// The window shows the first 100 rows as soon as they have been added, the others at the end.
TEST_F(ItemFill, TheFirstRowsOfALongFillShowAtOnce)
{
    for (int i = 0; i < 2100; ++i)
        Add({"t", "Abba", "", "", "", "", "/m/" + std::to_string(i) + ".mp3"});
    MainForm &form = Loaded();
    LoadTreeView(form, "");
    std::vector<ui::RowId> shown; // rows that the window may look at, at each yield
    desktop.onYield = [&] {
        if (!form.LV.Updating() && (shown.empty() || shown.back() != form.LV.Count()))
            shown.push_back(form.LV.Count());
    };
    Click("#ABBA");
    EXPECT_EQ(form.LV.Count(), 2100);
    EXPECT_EQ(shown, (std::vector<ui::RowId>{100, 2100}));
}

TEST_F(ItemFill, ANewerClickWhileTheFirstRowsShowTakesTheListOver)
{
    for (int i = 0; i < 2100; ++i)
        Add({"t", i == 0 ? "Other" : "Abba", "", "", "", "", "/m/" + std::to_string(i) + ".mp3"});
    MainForm &form = Loaded();
    LoadTreeView(form, "");
    bool clicked = false;
    desktop.onYield = [&] {
        if (!form.LV.Updating() && form.LV.Count() == 100 && !std::exchange(clicked, true))
            Click("#OTHER");
    };
    Click("#ABBA");
    EXPECT_TRUE(clicked);
    EXPECT_EQ(ShownRows(), "/0:t ");
    EXPECT_FALSE(form.LV.Updating());
}

TEST_F(ItemFill, ARecordThatMakesNoRowYieldsAsTheRowBeforeIt)
{
    for (int i = 0; i < 51; ++i)
        Add({"t", "Abba", "", "", "", "", "/m/" + std::to_string(i == 50 ? 3 : i)});
    MainForm &form = Loaded();
    const auto records = AllRecords();
    std::vector<int> counts;
    desktop.onYield = [&] { counts.push_back(form.LV.Count()); };
    EXPECT_TRUE(FillItemList(form.LV, *records));
    EXPECT_EQ(counts, (std::vector<int>{0, 50, 50, 50}));
}

TEST_F(ItemFill, ARecordThatCannotBeReadGivesThePointerBack)
{
    MainForm &form = Library();
    const auto records = AllRecords();
    class Damaged : public catalogue::Recordset
    {
    public:
        explicit Damaged(catalogue::Recordset &good) : m_good(good) {}
        bool IsOpen() const override { return true; }
        bool AtEnd() const override { return m_good.AtEnd(); }
        void MoveFirst() override { m_good.MoveFirst(); }
        void MoveNext() override { m_good.MoveNext(); }
        std::int64_t RecordCount() const override { return m_good.RecordCount(); }
        std::int64_t Position() const override { return m_good.Position(); }
        int FieldCount() const override { return m_good.FieldCount(); }
        int FindField(std::string_view name) const override { return m_good.FindField(name); }
        bool IsNull(int index) const override { return m_good.IsNull(index); }
        std::string_view Text(int index) const override
        {
            if (m_good.Position() > 2)
                throw runtime::RuntimeError(runtime::kDeviceIoError);
            return m_good.Text(index);
        }

    private:
        catalogue::Recordset &m_good;
    } damaged(*records);
    EXPECT_THROW(FillItemList(form.LV, damaged), runtime::RuntimeError);
    EXPECT_EQ(form.LV.Count(), 2);
    EXPECT_FALSE(form.LV.Updating());
    EXPECT_EQ(desktop.pointers.back(), Pointer::Normal);
}

TEST_F(ItemFill, TheProgramMayBeEndedWhileTheListFills)
{
    for (int i = 0; i < 120; ++i)
        Add({"t", "Abba", "", "", "", "", "/m/" + std::to_string(i)});
    for (int at = 1; at <= 5; ++at) {
        SCOPED_TRACE(at);
        ResetMainForm();
        OpenCatalogue();
        MainForm &form = Loaded();
        LoadTreeView(form, "");
        form.TreeJustExpanded = false;
        int ended = 0, yields = 0;
        form.calls.endProgram = [&] { ++ended; };
        desktop.onYield = [&] {
            if (++yields == at)
                RunCommand(form, "submnuExit");
        };
        Click("#ABBA");
        Click("ByArtist"); // a click that was waiting to be handled
        Click("#ABBA");
        desktop.onYield = nullptr;
        EXPECT_EQ(ended, 1);
        EXPECT_FALSE(form.LV.Updating());
        EXPECT_EQ(catalogue::DataAccess, nullptr);
    }
}

TEST_F(ItemFill, ClosingTheOwnerEndsTheFill)
{
    Library();
    const auto records = AllRecords();
    int asked = 0;
    EXPECT_FALSE(FillItemList(Form().LV, *records, [&] { return ++asked < 2; }));
    EXPECT_EQ(Form().LV.Count(), 2);
    EXPECT_EQ(desktop.pointers.back(), Pointer::Normal);
}

TEST_F(ItemFill, AResultIsTakenFromItsFirstRecord)
{
    MainForm &form = Library();
    const auto records = AllRecords();
    records->MoveNext();
    records->MoveNext();
    EXPECT_TRUE(FillItemList(form.LV, *records));
    EXPECT_EQ(form.LV.Count(), 3);
}

// Also at the yield after the last row: the older click must not hide a column of the newer one.
TEST_F(ItemFill, ANewerClickKeepsItsColumnsAtEachYield)
{
    for (int at = 1; at <= 3; ++at) {
        SCOPED_TRACE(at);
        ResetMainForm();
        catalogue::DataAccess->ExecuteSQL("DELETE FROM MP3s", catalogue::kDelete);
        MainForm &form = Library();
        int yields = 0;
        desktop.onYield = [&] {
            if (++yields == at)
                form.TV.MoveTo(form.TV.Find("ByArtist"));
        };
        form.TV.MoveTo(form.TV.Find("@ONE"));
        desktop.onYield = nullptr;
        EXPECT_GE(yields, at);
        EXPECT_EQ(ShownRows(), "#ABBA:Abba #BLUR:Blur ");
        EXPECT_EQ(Columns(), "Icon=300 Title=3200 ");
        EXPECT_EQ(form.WEPath.Caption(), "MP3/By Artist");
    }
}

TEST_F(ItemFill, ANewerClickTakesTheListOver)
{
    for (int i = 0; i < 120; ++i)
        Add({"t", "Abba", "", "", "", "", "/m/" + std::to_string(i)});
    Add({"Three", "Blur", "", "", "", "", "/m/three.mp3"});
    MainForm &form = Loaded();
    LoadTreeView(form, "");
    form.TreeJustExpanded = false;
    desktop.onYield = [&] {
        if (form.LV.Count() != 100)
            return;
        desktop.onYield = nullptr;
        form.TV.ClickText(form.TV.Find("#BLUR"));
    };
    form.TV.MoveTo(form.TV.Find("#ABBA"));
    EXPECT_EQ(ShownRows(), "/0:Three ");
    EXPECT_EQ(form.WEPath.Caption(), "MP3/By Artist/Blur");
    EXPECT_FALSE(form.LV.Updating());
    EXPECT_EQ(desktop.pointers.back(), Pointer::Normal);
}

} // namespace
