// online/webvrchk.h - fetches a version file and compares it with the version in use; one of three
// events follows each start, later, from the event loop.
#pragma once

#include "platform/web.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace online
{

class WebVrChk
{
public:
    // What the file is compared by.
    enum class Subject {
        Program,  // the version of the first tool
        Database, // the version of the last database line
    };

    // The connection failed or the file was not there.
    static constexpr std::int32_t kNoFile = -2;

    Subject subject = Subject::Program;
    std::string version; // in use, a dotted number
    std::string address; // of the file, whole
    std::string base;    // of the web pages, handed on with the newer-version event

    // The file names a newer version: the base address, the text of the file.
    std::function<void(const std::string &base, const std::string &text)> newerVersion;
    std::function<void()> noNewerVersion;
    std::function<void(std::int32_t code)> error;

    // Fetches and compares, without blocking. A fetch that is still under way is given up. Without
    // a web port the error event follows at once.
    void Start();

private:
    void Take(const std::optional<std::string> &bytes);

    std::unique_ptr<platform::WebFetch> m_fetch;
};

} // namespace online
