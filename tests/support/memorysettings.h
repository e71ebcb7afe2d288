// tests/support/memorysettings.h - settings and file types in memory, which a test can read. While
// one exists, it is the port in TheMachine().
#pragma once

#include "platform/disk/filetypes.h"
#include "platform/machine.h"
#include "platform/settingsstore.h"
#include "runtime/error.h"

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tests
{

class MemorySettings : public platform::SettingsStore
{
public:
    MemorySettings() : m_before(platform::TheMachine().settings)
    {
        platform::TheMachine().settings = this;
    }
    ~MemorySettings() override { platform::TheMachine().settings = m_before; }
    MemorySettings(const MemorySettings &) = delete;
    MemorySettings &operator=(const MemorySettings &) = delete;

    std::string Read(std::string_view title, std::string_view section, std::string_view key,
                     std::string_view defaultText) override
    {
        reads.push_back(std::string(section) + "/" + std::string(key));
        const auto found = values.find(Name(title, section, key));
        return found == values.end() ? std::string(defaultText) : found->second;
    }
    void Write(std::string_view title, std::string_view section, std::string_view key,
               std::string_view text) override
    {
        if (onWrite)
            onWrite();
        values[Name(title, section, key)] = text;
    }
    void Delete(std::string_view title, std::string_view section, std::string_view key) override
    {
        if (values.erase(Name(title, section, key)) == 0)
            throw runtime::RuntimeError(runtime::kInvalidCall);
    }
    void Flush() override { ++flushes; }

    std::map<std::string, std::string> values; // by "title/section/key"
    std::vector<std::string> reads;            // "section/key", in the order of the calls
    std::function<void()> onWrite;             // called before each write
    int flushes = 0;

private:
    static std::string Name(std::string_view title, std::string_view section, std::string_view key)
    {
        return std::string(title) + "/" + std::string(section) + "/" + std::string(key);
    }

    platform::SettingsStore *m_before;
};

class MemoryFileTypes : public platform::FileTypes
{
public:
    using Pairs = std::vector<std::pair<std::string, std::string>>;

    MemoryFileTypes() : m_before(platform::TheMachine().fileTypes)
    {
        platform::TheMachine().fileTypes = this;
    }
    ~MemoryFileTypes() override { platform::TheMachine().fileTypes = m_before; }
    MemoryFileTypes(const MemoryFileTypes &) = delete;
    MemoryFileTypes &operator=(const MemoryFileTypes &) = delete;

    void WritePairs(const Pairs &pairs) override { types.push_back(pairs); }

    std::vector<Pairs> types; // one element for each call

private:
    platform::FileTypes *m_before;
};

} // namespace tests
