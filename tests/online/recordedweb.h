// tests/online/recordedweb.h - a web port that records the downloads and answers when the test says
// so.
#pragma once

#include "platform/machine.h"
#include "platform/web.h"

#include <utility>
#include <vector>

namespace tests
{

// While one exists, it is TheMachine().web. Only the last download waits for its answer.
class RecordedWeb : public platform::Web
{
public:
    RecordedWeb() : m_before(platform::TheMachine().web) { platform::TheMachine().web = this; }
    ~RecordedWeb() override { platform::TheMachine().web = m_before; }
    RecordedWeb(const RecordedWeb &) = delete;
    RecordedWeb &operator=(const RecordedWeb &) = delete;

    [[nodiscard]] std::unique_ptr<platform::WebFetch>
    Fetch(const std::string &address,
          std::function<void(const std::optional<std::string> &)> done) override
    {
        addresses.push_back(address);
        m_done = std::move(done);
        return std::make_unique<Waiting>(*this, static_cast<int>(addresses.size()));
    }

    // Whether a fetch waits.
    bool Waits() const { return m_done != nullptr; }

    // Answers the fetch that waits.
    void Answer(const std::optional<std::string> &bytes)
    {
        const auto done = std::exchange(m_done, nullptr);
        if (done)
            done(bytes);
    }

    std::vector<std::string> addresses;
    int dropped = 0; // fetches that were given up before their answer

private:
    struct Waiting : platform::WebFetch {
        Waiting(RecordedWeb &web, int number) : m_web(web), m_number(number) {}
        ~Waiting() override
        {
            if (m_web.m_done == nullptr || m_number > static_cast<int>(m_web.addresses.size()))
                return;
            ++m_web.dropped;
            if (m_number == static_cast<int>(m_web.addresses.size()))
                m_web.m_done = nullptr;
        }
        Waiting(const Waiting &) = delete;
        Waiting &operator=(const Waiting &) = delete;

        RecordedWeb &m_web;
        int m_number;
    };

    std::function<void(const std::optional<std::string> &)> m_done;
    platform::Web *m_before;
};

} // namespace tests
