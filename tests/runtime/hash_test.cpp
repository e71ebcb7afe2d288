#include "runtime/hash.h"

#include <gtest/gtest.h>

#include <string>

using runtime::Hash128;
using runtime::Hash128Of;

namespace
{

// The value for no bytes is that of the algorithm's own description.
TEST(Hash, IsThatOfTheAlgorithm)
{
    EXPECT_EQ(Hash128Of(""), (Hash128{0x6001c324468d497f, 0x99aa06d3014798d8}));
}

TEST(Hash, DependsOnEachByteAndOnTheLength)
{
    for (const std::size_t length : {1U, 3U, 8U, 16U, 100U, 200U, 300U, 3000U}) {
        const std::string text(length, '\0');
        const Hash128 hash = Hash128Of(text);
        EXPECT_EQ(hash, Hash128Of(std::string(length, '\0')));
        EXPECT_NE(hash, Hash128Of(std::string(length + 1, '\0')));
        for (std::size_t at = 0; at < length; ++at) {
            std::string other = text;
            other[at] = 1;
            const Hash128 changed = Hash128Of(other);
            EXPECT_NE(changed.low, hash.low);
            EXPECT_NE(changed.high, hash.high);
        }
    }
}

} // namespace
