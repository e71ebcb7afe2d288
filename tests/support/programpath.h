// tests/support/programpath.h - changes the PATH during a test.
#pragma once

#include <cstdlib>
#include <string>

namespace tests
{

// While one exists, programs are searched for only in `folder`.
class PathOfPrograms
{
public:
    explicit PathOfPrograms(const std::string &folder)
    {
        if (const char *before = std::getenv("PATH"); before != nullptr)
            m_before = before;
        setenv("PATH", folder.c_str(), 1);
    }
    ~PathOfPrograms() { setenv("PATH", m_before.c_str(), 1); }
    PathOfPrograms(const PathOfPrograms &) = delete;
    PathOfPrograms &operator=(const PathOfPrograms &) = delete;

private:
    std::string m_before;
};

} // namespace tests
