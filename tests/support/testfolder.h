// tests/support/testfolder.h - a fresh folder for one test, gone again at its end, and small files.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace tests
{

// A new empty folder under the system's folder for temporary files; removed with all it holds when
// the object goes, also where a test took away the rights of a sub-folder.
class TestFolder
{
public:
    TestFolder();
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

// Writes `bytes` as the whole content of the file; folders on the way are made. Fails the test.
void WriteFile(const std::string &path, std::string_view bytes);

// The whole content of the file; fails the test when it cannot be read.
std::string ReadFile(const std::string &path);

} // namespace tests
