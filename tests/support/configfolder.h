// tests/support/configfolder.h - while one exists, settings are in a new folder.
#pragma once

#include "tests/support/testfolder.h"

#include <cstdlib>
#include <optional>
#include <string>

namespace tests
{

class ConfigFolder
{
public:
    ConfigFolder()
    {
        if (const char *before = std::getenv(kName))
            m_before = before;
        setenv(kName, m_folder.Path().c_str(), 1);
    }
    ~ConfigFolder()
    {
        if (m_before)
            setenv(kName, m_before->c_str(), 1);
        else
            unsetenv(kName);
    }
    ConfigFolder(const ConfigFolder &) = delete;
    ConfigFolder &operator=(const ConfigFolder &) = delete;

    const std::string &Path() const { return m_folder.Path(); }

private:
    static constexpr const char *kName = "XDG_CONFIG_HOME";
    TestFolder m_folder;
    std::optional<std::string> m_before;
};

} // namespace tests
