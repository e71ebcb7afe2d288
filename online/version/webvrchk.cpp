#include "online/version/webvrchk.h"

#include "online/version/versionfile.h"
#include "platform/machine.h"

namespace online
{

namespace
{

// The newest version that the file has for the subject; empty when it has none.
std::string VersionIn(const VersionFile &file, WebVrChk::Subject subject)
{
    if (subject == WebVrChk::Subject::Program)
        return file.tools.empty() ? std::string{} : file.tools.front();
    return file.databases.empty() ? std::string{} : file.databases.back().version;
}

} // namespace

void WebVrChk::Start()
{
    m_fetch.reset();
    platform::Web *web = platform::TheMachine().web;
    if (web == nullptr) {
        Take({});
        return;
    }
    m_fetch = web->Fetch(address, [this](const std::optional<std::string> &bytes) { Take(bytes); });
}

void WebVrChk::Take(const std::optional<std::string> &bytes)
{
    // The events are copied: a handler may destroy this object.
    if (!bytes) {
        if (const auto event = error)
            event(kNoFile);
        return;
    }
    if (IsNewer(VersionIn(ParseVersionFile(*bytes), subject), version)) {
        if (const auto event = newerVersion)
            event(std::string(base), *bytes);
        return;
    }
    if (const auto event = noNewerVersion)
        event();
}

} // namespace online
