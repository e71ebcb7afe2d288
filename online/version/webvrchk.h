// online/version/webvrchk.h - downloads a version file and compares it with the version in use.
// Each start is followed by one of three events, later, from the event loop.
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
    // The version that is compared with the file.
    enum class Subject {
        Program,  // by the version of the first tool
        Database, // by the version of the last database line
    };

    // The connection failed, or the server does not have the file.
    static constexpr std::int32_t kNoFile = -2;

    Subject subject = Subject::Program;
    std::string version; // in use, a dotted number
    std::string address; // the address of the file
    std::string base;    // the base address of the web pages, passed on with `newerVersion`

    // The file has a newer version. Arguments: the base address, the text of the file.
    std::function<void(const std::string &base, const std::string &text)> newerVersion;
    std::function<void()> noNewerVersion;
    std::function<void(std::int32_t code)> error;

    // Starts the download and returns. A download that is still running is cancelled. When there
    // is no web port, the error event runs at once.
    void Start();

private:
    void Take(const std::optional<std::string> &bytes);

    std::unique_ptr<platform::WebFetch> m_fetch;
};

} // namespace online
