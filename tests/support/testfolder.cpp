#include "tests/support/testfolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <iterator>

namespace fs = std::filesystem;

namespace tests
{

TestFolder::TestFolder(const fs::path &parent) : m_path((parent / "quenlin-test-XXXXXX").string())
{
    if (mkdtemp(m_path.data()) == nullptr)
        ADD_FAILURE() << "no folder for the test: " << m_path;
}

TestFolder::~TestFolder()
{
    std::error_code ignored; // folders that cannot be listed get their rights back first, then
                             // everything is deleted
    for (auto at = fs::recursive_directory_iterator(
             m_path, fs::directory_options::skip_permission_denied, ignored);
         at != fs::recursive_directory_iterator(); at.increment(ignored))
        if (at->is_directory(ignored) && !at->is_symlink(ignored))
            fs::permissions(at->path(), fs::perms::owner_all, fs::perm_options::add, ignored);
    fs::remove_all(m_path, ignored);
}

void WriteFile(const std::string &path, std::string_view bytes)
{
    fs::create_directories(fs::path(path).parent_path());
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    out.close();
    ASSERT_TRUE(out.good()) << path;
}

std::string ReadFile(const std::string &path)
{
    std::ifstream in(path, std::ios::binary);
    EXPECT_TRUE(in.good()) << path;
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

} // namespace tests
