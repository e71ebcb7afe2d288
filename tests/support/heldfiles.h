// tests/support/heldfiles.h - the files of this machine, on which reads can be held up, and a
// fixture that reads them ahead.
#pragma once

#include "platform/endrequest.h"
#include "platform/posix/disk/readahead.h"
#include "tests/support/testfolder.h"
#include "tests/support/wait.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <thread>

namespace tests
{

// The real files, on which reads can be held up, and which counts its calls.
struct HeldFiles : platform::posix::SystemFilesPort {
    int OpenToRead(const std::string &path, platform::FileIdentity &identity) override
    {
        if (failures > 0 && failures-- > 0)
            return -EMFILE;
        ++opens;
        const int handle = SystemFilesPort::OpenToRead(path, identity);
        identity.changedNs -= ageNs;
        return handle;
    }
    int Identify(const std::string &path, platform::FileIdentity &identity) override
    {
        const int reason = SystemFilesPort::Identify(path, identity);
        identity.changedNs -= ageNs;
        return reason;
    }
    int IdentifyOpen(int handle, const std::string &path, platform::FileIdentity &identity) override
    {
        const int reason = SystemFilesPort::IdentifyOpen(handle, path, identity);
        identity.changedNs -= ageNs;
        return reason;
    }
    std::int64_t ReadAt(int handle, std::int64_t offset, char *to, std::size_t count,
                        bool mayWait) override
    {
        {
            std::unique_lock lock(m_mutex);
            if (!mayWait && m_isHeld) {
                ++readsWithoutWait;
                if (withoutWait != 0)
                    return withoutWait;
            }
            ++reads;
            if (std::this_thread::get_id() != logic)
                threads.insert(std::this_thread::get_id());
            most = std::max<int>(most, ++m_within);
            m_changed.notify_all();
            m_changed.wait(lock, [&] { return !mayWait || !m_isHeld || m_within >= m_enough; });
            m_isHeld = m_isHeld && (!mayWait || m_within < m_enough);
            m_changed.notify_all();
            if (delay.count() > 0) {
                lock.unlock();
                std::this_thread::sleep_for(delay);
                lock.lock();
            }
            --m_within;
        }
        return SystemFilesPort::ReadAt(handle, offset, to, count, mayWait);
    }
    void Close(int handle) override
    {
        SystemFilesPort::Close(handle);
        ++closes;
    }

    // Makes all reads wait until `enough` of them have begun, or until Release.
    void Hold(int enough)
    {
        const std::lock_guard lock(m_mutex);
        m_isHeld = true;
        m_enough = enough;
    }
    void Release()
    {
        const std::lock_guard lock(m_mutex);
        m_isHeld = false;
        m_changed.notify_all();
    }
    // Waits until a read is held up.
    void AwaitRead()
    {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [&] { return m_within > 0; });
    }

    void ForgetThreads()
    {
        const std::lock_guard lock(m_mutex);
        threads.clear();
    }

    const std::thread::id logic = std::this_thread::get_id();
    std::set<std::thread::id> threads;  // others that have read
    std::chrono::milliseconds delay{0}; // of each read
    // The result of a read that must not wait, while reads are held up; 0: its bytes, as from
    // memory.
    std::int64_t withoutWait = -EAGAIN;
    std::atomic<int> readsWithoutWait = 0; // meanwhile
    std::atomic<int> opens = 0, closes = 0, reads = 0;
    std::atomic<int> failures = 0; // how many of the next opens fail, as without a free handle
    std::atomic<int> most = 0;     // reads at a time
    std::atomic<std::int64_t> ageNs = 3'600'000'000'000;

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_isHeld = false;
    int m_enough = 0, m_within = 0;
};

inline constexpr int kNever = 1000;

inline void AwaitEqual(const std::atomic<int> &number, int wanted)
{
    EXPECT_TRUE(WaitUntil([&] { return number == wanted; })) << number << " " << wanted;
}

class ReadAheadTest : public testing::Test
{
protected:
    ~ReadAheadTest() override
    {
        held->Release();
        platform::RequestEnd(0);
    }

    std::string File(const std::string &name, std::size_t bytes) const
    {
        std::string text;
        for (std::size_t i = 0; text.size() < bytes; ++i)
            text += name + std::to_string(i);
        WriteFile(folder / name, text.substr(0, bytes));
        return folder / name;
    }

    // Opens the file, reads and closes it. `mayWait`: whether reading may wait for the disk.
    std::string Read(const std::string &path, std::int64_t offset, std::size_t count,
                     bool mayWait = true)
    {
        platform::FileIdentity identity;
        const int handle = files->OpenToRead(path, identity);
        if (handle < 0)
            return "error " + std::to_string(-handle);
        std::string text(count, '?');
        const auto got = files->ReadAt(handle, offset, text.data(), count, mayWait);
        files->Close(handle);
        return got < 0 ? "error " + std::to_string(-got)
                       : text.substr(0, static_cast<std::size_t>(got));
    }

    TestFolder folder;
    std::shared_ptr<HeldFiles> held = std::make_shared<HeldFiles>();
    std::unique_ptr<platform::posix::ReadAheadFiles> files =
        std::make_unique<platform::posix::ReadAheadFiles>(held);
};

} // namespace tests
