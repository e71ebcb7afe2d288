// platform/web/curlweb.h - the web by libcurl's multi interface: asynchronous on the one thread.
// The window system runs the timer `poll`; it is enabled only during a fetch.
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

    // Continues the transfers and reports those that have ended. Never waits.
    void Poll();

    ui::Timer poll{kPollMs}; // driven by the window system; its event is Poll

    // A certificate file that is trusted instead of the operating system's, for tests; empty: none.
    std::string trustedCertificates;

    class Transfer; // one fetch, curlweb.cpp

private:
    static constexpr int kPollMs = 20;

    void Forget(Transfer *transfer);

    std::string m_userAgent;
    void *m_multi = nullptr; // a CURLM; null before the first fetch, and without libcurl
    std::vector<Transfer *> m_transfers; // running; owned by their callers
};

} // namespace platform::web
