#include "shell/globals.h"
#include "shell/language.h"
#include "tests/support/testfolder.h"

#include <gtest/gtest.h>

namespace
{

using namespace shell;

class Language : public ::testing::Test
{
protected:
    Language() { TheGlobals().LanguageFilePath = folder / "Test.qlt"; }
    ~Language() override { TheGlobals() = Globals(); }

    void Write(std::string_view text) { tests::WriteFile(folder / "Test.qlt", text); }

    tests::TestFolder folder;
};

TEST_F(Language, AValueReplacesTheDefault)
{
    Write("[Splash]\nOkButton=&Aceptar\n");
    EXPECT_EQ(GetLanguageText("&Ok", "OkButton", "Splash"), "&Aceptar");
    EXPECT_EQ(GetLanguageText("&Ok", "okbutton", "SPLASH"), "&Aceptar");
    EXPECT_EQ(GetLanguageText("&History", "HistoryButton", "Splash"), "&History");
    EXPECT_EQ(GetLanguageText("&Ok", "OkButton", "TechSupport"), "&Ok");
}

TEST_F(Language, BlanksAtTheEndsAreCut)
{
    Write("[S]\nk=\"  text  \"\n");
    EXPECT_EQ(GetLanguageText("d", "k", "S"), "text");
    EXPECT_EQ(ReadIniValue("S", "k", "d"), "  text  ");
    EXPECT_EQ(GetLanguageText("  d ", "absent", "S"), "d");
}

TEST_F(Language, AnEmptyValueIsTheEmptyText)
{
    Write("[S]\nTitle=\n");
    EXPECT_EQ(GetLanguageText("Title", "Title", "S"), "");
    EXPECT_EQ(ReadIniValue("S", "Title", "Title"), "");
}

TEST_F(Language, ALongValueIsCutAndALongDefaultIsNot)
{
    Write("[S]\nk=" + std::string(250, 'x') + "\n");
    EXPECT_EQ(GetLanguageText("d", "k", "S"), std::string(199, 'x'));
    EXPECT_EQ(GetLanguageText(std::string(250, 'y'), "absent", "S"), std::string(250, 'y'));
}

TEST_F(Language, TrailingNulsAreCut)
{
    EXPECT_EQ(TrimNull(std::string_view("a\0b\0\0", 5)), std::string_view("a\0b", 3));
    EXPECT_EQ(TrimNull(std::string_view("\0\0", 2)), "");
    EXPECT_EQ(TrimNull(""), "");
    Write(std::string_view("[S]\nk=a\0\0", 9));
    EXPECT_EQ(ReadIniValue("S", "k", "d"), "a");
    EXPECT_EQ(ReadIniValue("S", "absent", std::string_view("d\0", 2)), "d");
}

TEST_F(Language, WithoutAFileEverythingIsEnglish)
{
    EXPECT_EQ(GetLanguageText("Default", "k", "S"), "Default");
    TheGlobals().LanguageFilePath = folder.Path() + "/"; // no language is set
    EXPECT_EQ(GetLanguageText("Default", "k", "S"), "Default");
}

TEST_F(Language, AnEditShowsAtTheNextLookUp)
{
    Write("[S]\nk=1\n");
    EXPECT_EQ(GetLanguageText("d", "k", "S"), "1");
    Write("[S]\nk=2\n");
    EXPECT_EQ(GetLanguageText("d", "k", "S"), "2");
}

TEST_F(Language, GroupsAreCalledByTheirField)
{
    EXPECT_EQ(GetFolderGroupCaption("Title"), "By Title");
    Write("[FolderGroups]\nByField=Por $Field$ ($Field$)\n[ColumnHeaders]\nTitle=Título\n");
    EXPECT_EQ(GetFolderGroupCaption("Title"), "Por Título (Título)");
    EXPECT_EQ(GetFolderGroupCaption("Album"), "Por Album (Album)");
}

TEST_F(Language, BreakMarksAreTheCallersToReplace)
{
    Write("[S]\nk=one%0Atwo%0a\n");
    EXPECT_EQ(GetLanguageText("d", "k", "S"), "one%0Atwo%0a");
    EXPECT_EQ(WithLineBreaks(GetLanguageText("d", "k", "S")), "one\rtwo%0a");
}

} // namespace
