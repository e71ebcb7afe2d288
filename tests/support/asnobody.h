// tests/support/asnobody.h - the rights of a user who is not root.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

namespace tests
{

// While one exists, root has no rights of its own and cannot read what is closed to others.
class AsNobody
{
public:
    AsNobody() { EXPECT_TRUE(m_was != 0 || seteuid(65534) == 0); }
    ~AsNobody() { EXPECT_TRUE(m_was != 0 || seteuid(m_was) == 0); }
    AsNobody(const AsNobody &) = delete;
    AsNobody &operator=(const AsNobody &) = delete;

private:
    uid_t m_was = geteuid();
};

} // namespace tests
