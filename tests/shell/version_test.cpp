#include "runtime/error.h"
#include "shell/version.h"

#include <gtest/gtest.h>

namespace
{

using namespace shell;

TEST(IsVersionGreater, LooksAtEachNumberByItself)
{
    const struct {
        std::string_view catalogue;
        bool refused;
    } cases[] = {{"1.6.6", false},     {"1.6.7", false},  {"1.7.6", false},     {"2.6.6", false},
                 {"1.06.6", false},    {"2.0.0", true},   {"1.7.0", true},      {"1.5.9", true},
                 {"2.0.9", true},      {"0.6.6", true},   {"1.6.5", true},      {"1.6.6.9", false},
                 {" 1 . 6 .6", false}, {"1.6.5.9", true}, {"32767.6.6", false}, {"-1.6.6", true}};
    for (const auto &c : cases)
        EXPECT_EQ(IsVersionGreater(RequiredDBVersion, c.catalogue), c.refused) << c.catalogue;
}

TEST(ParseVersion, ReportsATextThatIsNoVersion)
{
    const struct {
        std::string_view text;
        int error;
    } cases[] = {{"1.6", runtime::kSubscriptOutOfRange}, {"", runtime::kSubscriptOutOfRange},
                 {"1.x.6", runtime::kTypeMismatch},      {"1..6", runtime::kTypeMismatch},
                 {"a.6.6", runtime::kTypeMismatch},      {"1.6.6b", runtime::kTypeMismatch},
                 {"1.6.40000", runtime::kOverflow}};
    for (const auto &c : cases) {
        try {
            (void)ParseVersion(c.text);
            ADD_FAILURE() << c.text;
        } catch (const runtime::RuntimeError &error) {
            EXPECT_EQ(error.number, c.error) << c.text;
        }
    }
    EXPECT_EQ(ParseVersion("1.02.30.x"), (Version{1, 2, 30}));
    EXPECT_EQ(ParseVersion("1.1e-400.2"), (Version{1, 0, 2}));
}

} // namespace
