#include "catalogue/engines.h"
#include "tests/support/freshcatalogue.h"
#include "tests/support/scripteddesktop.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

using namespace catalogue;

TEST(StatementBuilder, Texts)
{
    tests::FreshCatalogue fresh;
    auto &access = fresh.access;
    access.Reset();
    EXPECT_EQ(access.TableName, "");
    access.TableName = "Lists";
    access.AddCampo("LIST_Name", DatoType::Text, 5);
    access.AddCampo("LIST_Path", DatoType::Text, 0);
    access.AddCampo("list_name", DatoType::Number, 0); // is there already
    access.AddCampoClave("LIST_Name", DatoType::Text, 0);
    access.SetCampo("list_name", std::string("it's long"));
    access.SetCampo("LIST_Path", std::string("/p"));
    access.SetCampoClave("LIST_Name", std::string("it's "));
    EXPECT_EQ(access.GetSelectString(),
              "SELECT LIST_Name, LIST_Path\rFROM Lists\rWHERE LIST_Name = 'it''s '");
    EXPECT_EQ(access.GetInsertString(),
              "INSERT INTO Lists\r(LIST_Name, LIST_Path)\rVALUES ('it''s ', '/p')");
    EXPECT_EQ(access.GetUpdateString(),
              "UPDATE Lists\rSET LIST_Name = 'it''s ', LIST_Path = '/p'\rWHERE LIST_Name = 'it''s "
              "'");
    EXPECT_EQ(access.GetDeleteString(), "DELETE * FROM Lists\rWHERE LIST_Name = 'it''s '");
    access.ExeInsert();
    EXPECT_EQ(tests::RowsOf(*Records(access.ExeSelect())), std::vector<std::string>{"it's |/p"});
    access.SetCampo("LIST_Path", std::string("/q"));
    EXPECT_TRUE(std::get<bool>(access.ExeUpdate()));
    EXPECT_EQ(tests::RowsOf(*Records(access.ExeSelect())), std::vector<std::string>{"it's |/q"});
    EXPECT_TRUE(std::get<bool>(access.ExeDelete()));
    EXPECT_TRUE(Records(access.ExeSelect())->AtEnd());
    access.Clear();
    EXPECT_EQ(access.GetInsertString(),
              "INSERT INTO Lists\r(LIST_Name, LIST_Path)\rVALUES ('', '')");
    EXPECT_EQ(access.GetDeleteString(), "DELETE * FROM Lists\rWHERE LIST_Name = ''");
}

TEST(StatementBuilder, JoinsFieldsByCommasAndKeysByAnd)
{
    ADOclass access;
    access.TableName = "T";
    access.AddCampo("a", DatoType::Number, 0);
    access.AddCampo("b", DatoType::Flag, 0);
    access.AddCampoClave("k", DatoType::Text, 2);
    access.AddCampoClave("K", DatoType::Number, 0); // is there already
    access.AddCampoClave("d", DatoType::Date, 0);
    access.SetCampo("A", std::int64_t{7});
    access.SetCampo("b", true);
    access.SetCampoClave("K", std::string("xyz"));
    access.SetCampoClave("d", Date{"2001-02-03"});
    EXPECT_EQ(access.GetSelectString(), "SELECT a, b\rFROM T\rWHERE k = 'xy' AND d = #2001-02-03#");
    EXPECT_EQ(access.GetInsertString(), "INSERT INTO T\r(a, b)\rVALUES (7, -1)");
    EXPECT_EQ(access.GetUpdateString(),
              "UPDATE T\rSET a = 7, b = -1\rWHERE k = 'xy' AND d = #2001-02-03#");
    EXPECT_EQ(access.GetDeleteString(), "DELETE * FROM T\rWHERE k = 'xy' AND d = #2001-02-03#");
    access.Reset();
    EXPECT_EQ(access.GetSelectString(), "SELECT \rFROM \rWHERE ");
    EXPECT_EQ(access.GetInsertString(), "INSERT INTO \r()\rVALUES ()");
}

TEST(StatementBuilder, ReportsUnknownFields)
{
    tests::ScriptedDesktop desktop;
    ADOclass access;
    access.AddCampo("a", DatoType::Text, 0);
    access.AddCampoClave("k", DatoType::Text, 0);
    desktop.ExpectBox("Campo no encontrado.");
    access.SetCampo("k", std::string("x"));
    desktop.ExpectBox("Campo clave no encontrado.");
    access.SetCampoClave("a", std::string("x"));
    ASSERT_EQ(desktop.boxes.size(), 2u);
    EXPECT_EQ(desktop.boxes[0].text, "Campo no encontrado.");
    EXPECT_EQ(desktop.boxes[1].text, "Campo clave no encontrado.");
}

TEST(ADOExecuteQuery, AllOfATable)
{
    tests::FreshCatalogue fresh;
    const auto connection = ResolveConnection(fresh.access.GetStringConnection())();
    const auto records = Records(ADOclass::ADOExecuteQuery(*connection, "Genre"));
    ASSERT_TRUE(records);
    EXPECT_EQ(records->RecordCount(), 126);
    EXPECT_THROW(ADOclass::ADOExecuteQuery(*connection, "Nothing"), ProviderFailure);
}

TEST(ExpandTemplate, Marks)
{
    ADOclass access;
    access.DirBase = "/d/";
    access.DataBaseName = "N";
    EXPECT_EQ(access.ExpandTemplate("[DIRBASE][NOMBREBASE].txt"), "/d/N.txt");
    access.DataBaseName.clear();
    tests::ScriptedDesktop desktop;
    desktop.ExpectBox("No se determinó el nombre de la base de datos");
    EXPECT_EQ(access.ExpandTemplate("[DIRBASE][NOMBREBASE]"), "/d/[NOMBREBASE]");
}

TEST(IniHelpers, WriteThenRead)
{
    tests::TestFolder folder;
    const std::string file = folder / "x.ini";
    EXPECT_EQ(ADOclass::GetIniStr("S", "k", file), "");
    EXPECT_TRUE(ADOclass::PutIniStr("S", "k", "v", file));
    EXPECT_TRUE(ADOclass::PutIniStr("T", "k", "w", file));
    EXPECT_TRUE(ADOclass::PutIniStr("s", "K2", "v2", file));
    EXPECT_TRUE(ADOclass::PutIniStr("S", "K", "new", file));
    EXPECT_EQ(tests::ReadFile(file), "[S]\r\nK=new\r\nK2=v2\r\n[T]\r\nk=w\r\n");
    EXPECT_EQ(ADOclass::GetIniStr("S", "k", file), "new");
    EXPECT_EQ(ADOclass::GetIniStr("T", "K", file), "w");
    tests::WriteFile(file, "; mine\n[S]\n\"k\" = \"old\"\r\n\r\n[T]\r\nx=1");
    EXPECT_TRUE(ADOclass::PutIniStr("S", "k", " \"v\"", file));
    EXPECT_TRUE(ADOclass::PutIniStr("T", "y", "2", file));
    EXPECT_EQ(tests::ReadFile(file), "; mine\n[S]\n\"k\" = \"old\"\r\nk= \"v\"\r\n\r\n[T]\r\nx=1"
                                     "\r\ny=2\r\n")
        << "values are written as they are, all other lines are kept";
    EXPECT_FALSE(ADOclass::PutIniStr("S", "k", "v", folder / "absent/x.ini"));
    EXPECT_FALSE(ADOclass::PutIniStr("S", "k", "v", folder.Path())) << "a folder stays one";
    ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
    EXPECT_FALSE(ADOclass::PutIniStr("S", "k", "v", folder / "pipe"));
    EXPECT_TRUE(std::filesystem::is_fifo(folder / "pipe"));
    std::filesystem::remove(folder / "pipe");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.Path()), {}), 1)
        << "nothing is left beside the file";
    EXPECT_EQ(ADOclass::Trim0(std::string_view("ab\0cd", 5)), "ab");
    EXPECT_EQ(ADOclass::Trim0("ab"), "ab");
}
