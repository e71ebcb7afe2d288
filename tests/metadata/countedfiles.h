// tests/metadata/countedfiles.h - songs on the real files, with the calls of a pass counted and
// single results replaced.
#pragma once

#include "metadata/mp3info.h"
#include "platform/machine.h"
#include "platform/posix/disk/systemfiles.h"
#include "tests/support/mp3bytes.h"
#include "tests/support/testfolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <optional>
#include <string>

namespace tests
{

class CountedFiles : public platform::posix::SystemFilesPort
{
public:
    int OpenToRead(const std::string &path, platform::FileIdentity &identity) override
    {
        ++opens;
        const int handle = SystemFilesPort::OpenToRead(path, identity);
        if (handle >= 0)
            Shift(identity);
        return handle;
    }
    int Identify(const std::string &path, platform::FileIdentity &identity) override
    {
        ++identifications;
        const int result = SystemFilesPort::Identify(path, identity);
        Shift(identity);
        return result;
    }
    std::int64_t ReadAt(int handle, std::int64_t offset, char *to, std::size_t count,
                        bool mayWait) override
    {
        ++reads;
        if (const auto result = onRead ? onRead(offset, mayWait) : 0)
            return result;
        const auto got =
            SystemFilesPort::ReadAt(handle, offset, to, std::min(count, longest), mayWait);
        bytesRead += std::max<std::int64_t>(got, 0);
        return got;
    }
    void Close(int handle) override
    {
        ++closes;
        SystemFilesPort::Close(handle);
    }

    int opens = 0, identifications = 0, reads = 0, closes = 0;
    std::int64_t bytesRead = 0;
    std::int64_t shiftNs = 0;              // added to the time of change
    std::optional<std::int64_t> changedNs; // in place of the time of change
    std::size_t longest = SIZE_MAX;        // of one read
    std::function<std::int64_t(std::int64_t offset, bool mayWait)> onRead; // 0 = the real read

private:
    void Shift(platform::FileIdentity &identity) const
    {
        identity.changedNs = changedNs.value_or(identity.changedNs + shiftNs);
    }
};

inline constexpr std::int64_t kHourNs = 3'600'000'000'000;

class CountedSongs : public ::testing::Test
{
protected:
    void SetUp() override
    {
        metadata::ResetMP3Info();
        platform::TheMachine().files = &m_files;
    }
    void TearDown() override
    {
        metadata::ResetMP3Info();
        platform::TheMachine().files = &platform::SystemFiles();
    }

    std::string Song(std::string_view name, std::string_view title)
    {
        std::string path = m_folder / name;
        WriteFile(path, Tag(3, Frame3("TIT2", title)) + Header128() + std::string(20'000, 'a') +
                            Tag1(title, "", "", "", "", 1, 2));
        return path;
    }

    CountedFiles m_files;
    TestFolder m_folder;
};

} // namespace tests
