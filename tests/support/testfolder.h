// tests/support/testfolder.h - a new folder for one test, which its destructor deletes, and small
// files.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace tests
{

// A new empty folder. The destructor deletes it with all its contents, also
// when a test has removed the rights of a sub-folder.
class TestFolder
{
public:
    // It is in the folder `parent`, usually the one for temporary files.
    explicit TestFolder(
        const std::filesystem::path &parent = std::filesystem::temp_directory_path());
    ~TestFolder();
    TestFolder(const TestFolder &) = delete;
    TestFolder &operator=(const TestFolder &) = delete;

    // The folder's path without a trailing separator.
    const std::string &Path() const { return m_path; }

    // The path of `name` in the folder.
    std::string operator/(std::string_view name) const { return m_path + "/" + std::string(name); }

private:
    std::string m_path;
};

// Writes `bytes` to the file, in place of what it had; makes missing folders. Fails the test on an
// error.
void WriteFile(const std::string &path, std::string_view bytes);

// The whole contents of the file; fails the test when it cannot be read.
std::string ReadFile(const std::string &path);

} // namespace tests
