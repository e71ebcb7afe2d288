// platform/web/curlweb.h - the web by libcurl's multi interface: asynchronous on the one thread.
// The owner of `poll` lets it tick; it is enabled only while a fetch is under way.
#pragma once

#include "platform/web.h"
#include "ui/controls/timer.h"

#include <string>
#include <vector>

namespace platform::web
{

class CurlWeb : public Web
{
public:
    // `userAgent`: "Quenlin/1.6.9".
    explicit CurlWeb(std::string userAgent);
    ~CurlWeb() override;
    CurlWeb(const CurlWeb &) = delete;
    CurlWeb &operator=(const CurlWeb &) = delete;

    [[nodiscard]] std::unique_ptr<WebFetch>
    Fetch(const std::string &address,
          std::function<void(const std::optional<std::string> &bytes)> done) override;

    // Lets the transfers go on and reports those that have ended. Never waits.
    void Poll();

    ui::Timer poll{kPollMs}; // driven by the window system; its event is Poll

    // A certificate file to trust instead of the system's own, for tests; empty for none.
    std::string trustedCertificates;

    class Transfer; // one fetch, curlweb.cpp

private:
    static constexpr int kPollMs = 20;

    void Forget(Transfer *transfer);

    std::string m_userAgent;
    void *m_multi = nullptr; // a CURLM; null before the first fetch, and without libcurl
    std::vector<Transfer *> m_transfers; // under way; owned by their callers
};

} // namespace platform::web
