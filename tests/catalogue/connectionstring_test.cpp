#include "catalogue/engines.h"
#include "catalogue/rowgroups.h"
#include "catalogue/rows/rowtable.h"
#include "shell/apppath.h"
#include "tests/support/freshcatalogue.h"
#include "tests/support/scripteddesktop.h"

#include <gtest/gtest.h>

using namespace catalogue;
using namespace std::string_literals;

namespace
{

// While one exists: an engine that records what it is asked, and a data access object for it.
class NotingProvider
{
public:
    NotingProvider()
    {
        access.TipoLectura = 0;
        access.DirBase = "/d/";
        access.DataBaseName = "N";
        Providers().insert(Providers().begin(),
                           {"Microsoft.Jet.OLEDB.3.51", [this](const std::string &text) {
                                opened = text;
                                ++resolved;
                                return [this] { return Open(); };
                            }});
    }
    ~NotingProvider() { Providers().erase(Providers().begin()); }
    NotingProvider(const NotingProvider &) = delete;
    NotingProvider &operator=(const NotingProvider &) = delete;

    // The calls since the last call of Takes.
    std::string Takes() { return std::exchange(m_notes, {}); }

    enum { Sound, Closed, GivesNone, CannotBegin } state = Sound;
    std::string opened; // the last connection string
    int resolved = 0;   // how often one was resolved
    ADOclass access;

private:
    struct Noting : Connection {
        explicit Noting(NotingProvider &o) : owner(o) { owner.m_notes += "open "; }
        ~Noting() override { owner.m_notes += "close "; }
        bool IsOpen() const override { return owner.state != Closed; }
        void Close() override {}
        RecordsetPtr Run(const Statement &statement) override
        {
            owner.m_notes.append(statement.text).append(", ");
            return MakeClosedRecordset();
        }
        RecordsetPtr RunStored(std::string_view name, const std::vector<Value> &values) override
        {
            owner.m_notes.append(name).append("(" + std::to_string(values.size()) + "), ");
            return MakeClosedRecordset();
        }
        void Begin() override
        {
            if (owner.state == CannotBegin)
                throw ProviderFailure(kStatementFailure, "no turn");
            owner.m_notes += "begin ";
        }
        void Commit() override { owner.m_notes += "commit "; }
        void RollBack() override { owner.m_notes += "rollback "; }
        NotingProvider &owner;
    };

    std::unique_ptr<Connection> Open()
    {
        return state == GivesNone ? nullptr : std::make_unique<Noting>(*this);
    }

    std::string m_notes;
};

} // namespace

TEST(ConnectionString, ByKind)
{
    ADOclass access;
    access.DirBase = "/d/";
    access.DataBaseName = "N";
    access.SQLServerName = "S";
    access.SQLUserID = "U";
    access.SQLPass = "P";
    const struct {
        int kind;
        bool integrated;
        std::string want;
    } cases[] = {
        {0, false,
         "Provider=Microsoft.Jet.OLEDB.3.51;Persist Security Info=False;Data Source=/d/N.mdb;Jet "
         "OLEDB"},
        {1, false,
         "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=/d/N.mdb;Persist Security Info=False;Jet "
         "OLEDB"},
        {2, true, "Provider=SQLOLEDB;Integrated Security=SSPI;Initial Catalog=N;Data Source=S"},
        {2, false, "driver={SQL Server};uid=U;pwd=P;server=S;dataBase=N"},
        {3, false, ""},
        {4, false,
         "StrDOS=Provider=MSDASQL.1;Persist Security Info=False;Data Source=dBASE Files;Initial "
         "Catalog=/d/"},
        {9, false, ""},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.kind);
        access.TipoLectura = c.kind;
        access.SQLIntegratedSecurity = c.integrated;
        EXPECT_EQ(access.GetStringConnection(), c.want);
        EXPECT_EQ(access.Initialize(), c.want);
    }
    access.TipoLectura = 1;
    EXPECT_EQ(access.GetProviderAndDataSource(),
              "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=/d/N.mdb;");
}

TEST(ConnectionString, KindsWithoutAProviderFail)
{
    ADOclass access;
    access.DirBase = "/d/";
    access.DataBaseName = "N";
    for (const int kind : {0, 2, 4}) {
        SCOPED_TRACE(kind);
        access.TipoLectura = kind;
        EXPECT_FALSE(Records(access.ExecuteSQL("SELECT 1", kSelect))->IsOpen());
        EXPECT_FALSE(access.Succeeded);
        EXPECT_EQ(access.ErrorMessage.substr(0, 7), "Error: ");
        access.ExecuteSQL("Edit1", kStoredUpdate);
        EXPECT_FALSE(access.Succeeded);
    }
    access.TipoLectura = 3; // no connection is attempted
    EXPECT_FALSE(Records(access.ExecuteSQL("SELECT 1", kSelect))->IsOpen());
    EXPECT_TRUE(access.Succeeded);
}

TEST(ConnectionString, NamesTheProgramsFolderWhereNoneIsGiven)
{
    const std::string before = shell::GetAppPath();
    shell::SetAppPath("/program/folder/");
    ADOclass access;
    access.DataBaseName = "N";
    access.TipoLectura = 1;
    EXPECT_EQ(access.GetProviderAndDataSource(),
              "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=/program/folder/N.mdb;");
    EXPECT_EQ(access.DirBase, "/program/folder/");
    shell::SetAppPath(before);
}

TEST(OpenConnection, ProviderThatGivesNoConnection)
{
    tests::ScriptedDesktop desktop;
    desktop.ExpectBox("Couldn't connect.");
    NotingProvider provider;
    provider.state = NotingProvider::GivesNone;
    EXPECT_FALSE(Records(provider.access.ExecuteSQL("SELECT 1", kSelect))->IsOpen());
    EXPECT_TRUE(provider.access.Succeeded) << "the box alone tells of it";
    ASSERT_EQ(desktop.boxes.size(), 1u);
    EXPECT_EQ(desktop.boxes[0].text, "Couldn't connect.");
}

TEST(OpenConnection, ConnectionThatIsNotOpenIsClosed)
{
    tests::ScriptedDesktop desktop;
    desktop.ExpectBox("Couldn't connect.");
    NotingProvider provider;
    provider.state = NotingProvider::Closed;
    provider.access.ExecuteSQL("DELETE FROM x", kDelete);
    EXPECT_EQ(provider.Takes(), "open close ");
    ASSERT_EQ(desktop.boxes.size(), 1u);
    EXPECT_EQ(desktop.boxes[0].text, "Couldn't connect.");
}

TEST(OpenConnection, BackslashInFrontOfTheFileIsCut)
{
    NotingProvider provider;
    provider.access.DirBase = "\\\\d\\";
    provider.access.ExecuteSQL("SELECT 1", kSelect);
    EXPECT_EQ(provider.opened, "Provider=Microsoft.Jet.OLEDB.3.51;Persist Security Info=False;"
                               "Data Source=\\d\\N.mdb;Jet OLEDB");
}

TEST(OpenConnection, EachStatementHasItsOwnButThoseOfATransaction)
{
    NotingProvider provider;
    provider.access.ExecuteSQL("SELECT 1", kSelect);
    EXPECT_EQ(provider.Takes(), "open SELECT 1, close ");
    provider.access.ExecuteSQL("DELETE 2", kDelete);
    EXPECT_EQ(provider.Takes(), "open DELETE 2, close ");
    provider.access.ExecuteSQL("Q", kStoredUpdate, std::string("x"));
    EXPECT_EQ(provider.Takes(), "open Q(1), close ");
    provider.access.BeginTrans();
    provider.access.BeginTrans();
    provider.access.ExecuteSQL("SELECT 3", kSelect);
    provider.access.ExecuteSQL("INSERT 4", kInsert);
    provider.access.CommitTrans();
    EXPECT_EQ(provider.Takes(), "open begin SELECT 3, INSERT 4, ");
    provider.access.CommitTrans();
    EXPECT_EQ(provider.Takes(), "commit close ");
    provider.access.BeginTrans();
    provider.access.RollBack();
    EXPECT_EQ(provider.Takes(), "open begin rollback close ");
}

TEST(OpenConnection, ItsTextIsResolvedOnceAndAgainWhenItChanges)
{
    NotingProvider provider;
    provider.access.ExecuteSQL("SELECT 1", kSelect);
    provider.access.ExecuteSQL("Q", kStoredUpdate, std::string("x"));
    provider.access.BeginTrans();
    provider.access.CommitTrans();
    {
        RowStep step(provider.access);
        step.Access().ExecuteSQL("SELECT 2", kSelect);
    }
    EXPECT_EQ(provider.resolved, 1);
    provider.access.DataBaseName = "M";
    provider.access.ExecuteSQL("SELECT 3", kSelect);
    provider.access.ExecuteSQL("SELECT 4", kSelect);
    EXPECT_EQ(provider.resolved, 2);
}

TEST(OpenConnection, AnotherFileIsOpenedWhenOnlyOneLetterChanges)
{
    constexpr const char *kAll = "Path <> ''";
    tests::FreshCatalogue first, second;
    first.AddPath("/a");
    second.AddPath("/b");
    ADOclass &access = first.access;
    const std::string folder = access.DirBase;
    ASSERT_EQ(folder.size(), second.access.DirBase.size());
    EXPECT_EQ(first.Paths(kAll), "/a ");
    access.DirBase = second.access.DirBase;
    EXPECT_EQ(first.Paths(kAll), "/b ");
    EXPECT_EQ(first.Stored("SEL_ByPath", std::vector<Value>{"/a"s, "·"s}).size(), 0U);
    access.DirBase = folder;
    EXPECT_EQ(first.Stored("SEL_ByPath", std::vector<Value>{"/a"s, "·"s}).size(), 1U);
    access.DataBaseName.back() = '4';
    access.ExecuteSQL("SELECT 1", kSelect);
    EXPECT_FALSE(access.Succeeded) << "there is no such file";
    access.DataBaseName = "MP3s";
    EXPECT_EQ(first.Paths(kAll), "/a ");
}

TEST(OpenConnection, TransactionThatCannotBeginIsReported)
{
    NotingProvider provider;
    provider.state = NotingProvider::CannotBegin;
    provider.access.BeginTrans();
    EXPECT_FALSE(provider.access.Succeeded);
    EXPECT_EQ(provider.access.ErrorMessage, "Error: no turn\r\tBeginTrans");
    EXPECT_EQ(provider.Takes(), "open close ");
    provider.access.ExecuteSQL("SELECT 1", kSelect);
    EXPECT_EQ(provider.Takes(), "open SELECT 1, close ") << "none is open";
}

TEST(GetBaseName, ByTable)
{
    EXPECT_EQ(ADOclass::GetBaseName("SELECT * FROM Alumnos"), "Alumnos");
    EXPECT_EQ(ADOclass::GetBaseName("select * from MATERIASALUMNOS"), "Alumnos");
    EXPECT_EQ(ADOclass::GetBaseName("SELECT * FROM C_X"), "Correlativas");
    EXPECT_EQ(ADOclass::GetBaseName("SELECT * FROM DPALUMNO"), "Academica");
    EXPECT_EQ(ADOclass::GetBaseName("SELECT 1"), "Inscrip");
}

TEST(GetBaseName, ReplacesTheMark)
{
    tests::FreshCatalogue fresh;
    fresh.access.DataBaseName = "[GetDatabase]";
    fresh.access.ExecuteSQL("SELECT 1", kSelect);
    EXPECT_EQ(fresh.access.ErrorMessage, "Not ValidDataBase") << "there is no Inscrip.mdb";
    std::filesystem::copy_file(fresh.File(), fresh.folder / "Inscrip.mdb");
    fresh.access.ExecuteSQL("SELECT 1", kSelect);
    EXPECT_TRUE(fresh.access.Succeeded);
}
