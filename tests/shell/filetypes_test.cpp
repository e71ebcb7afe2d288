#include "shell/apppath.h"
#include "shell/startup/filetypes.h"
#include "tests/support/memorysettings.h"

#include <gtest/gtest.h>

namespace
{

using Pairs = tests::MemoryFileTypes::Pairs;

TEST(PlanAssociation, WritesFourPairsWithAnIconAndThreeWithout)
{
    const Pairs three = {
        {".x", "P.X"}, {"P.X", "An X"}, {"P.X\\shell\\Open\\command", "\"p\" \"%1\""}};
    EXPECT_EQ(shell::PlanAssociation(".x", "P.X", "An X", "\"p\" \"%1\""), three);
    Pairs four = three;
    four.emplace_back("P.X\\DefaultIcon", "\"p\" , 0");
    EXPECT_EQ(shell::PlanAssociation(".x", "P.X", "An X", "\"p\" \"%1\"", 0), four);
}

TEST(RegisterFileTypes, RegistersLanguageFilesThenReports)
{
    tests::MemoryFileTypes registry;
    const std::string former = shell::GetAppPath();
    for (const std::string folder : {"/opt/quenlin", "/moved"}) {
        shell::SetAppPath(folder);
        registry.types.clear();
        shell::RegisterFileTypes();
        ASSERT_EQ(registry.types.size(), 2u);
        EXPECT_EQ(registry.types[0], (Pairs{{".qlt", "Quenlin.LanguageFile"},
                                            {"Quenlin.LanguageFile", "Quenlin Language File"},
                                            {"Quenlin.LanguageFile\\shell\\Open\\command",
                                             "\"notepad.exe\" \"%1\""}}));
        EXPECT_EQ(registry.types[1], (Pairs{{".qrp", "Quenlin.IntegrityReport"},
                                            {"Quenlin.IntegrityReport", "Quenlin Integrity Report"},
                                            {"Quenlin.IntegrityReport\\shell\\Open\\command",
                                             "\"" + folder + "/Reportolio.exe\" \"%1\""}}));
    }
    shell::SetAppPath(former);
}

} // namespace
