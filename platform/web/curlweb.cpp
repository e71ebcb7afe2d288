#include "platform/web/curlweb.h"

#include "platform/process.h"

#include <curl/curl.h>

#include <algorithm>
#include <chrono>
#include <utility>

namespace platform::web
{

namespace
{

constexpr std::size_t kMaxHeaderBytes = 64u << 10; // much more than any correct answer has
constexpr long kFound = 200;

bool IsHttps(std::string_view address)
{
    constexpr std::string_view kScheme = "https:";
    return address.size() >= kScheme.size() &&
           std::ranges::equal(address.substr(0, kScheme.size()), kScheme,
                              [](char one, char other) { return (one | 0x20) == (other | 0x20); });
}

// The library's functions. It is loaded with the first fetch, because it needs about thirty other
// libraries, which would make each start of the program slower.
struct Curl {
    decltype(&curl_global_init) globalInit;
    decltype(&curl_easy_init) easyInit;
    decltype(&curl_easy_cleanup) easyCleanup;
    decltype(&curl_easy_setopt) easySetopt;
    decltype(&curl_easy_getinfo) easyGetinfo;
    decltype(&curl_multi_init) multiInit;
    decltype(&curl_multi_cleanup) multiCleanup;
    decltype(&curl_multi_add_handle) multiAddHandle;
    decltype(&curl_multi_remove_handle) multiRemoveHandle;
    decltype(&curl_multi_perform) multiPerform;
    decltype(&curl_multi_info_read) multiInfoRead;
};

// Looks the function up in the library. Returns: false when it does not have it.
template <class Function>
bool Take(void *library, const char *name, Function &function)
{
    std::string why;
    function = reinterpret_cast<Function>(FindInLibrary(library, name, why));
    return function != nullptr;
}

// Returns: nullopt when the library is not installed or too old.
std::optional<Curl> LoadCurl()
{
    std::string why;
    void *library = OpenLibrary(QUENLIN_CURL_LIBRARY, why);
    Curl curl{};
    const bool isWhole = library != nullptr && Take(library, "curl_global_init", curl.globalInit) &&
                         Take(library, "curl_easy_init", curl.easyInit) &&
                         Take(library, "curl_easy_cleanup", curl.easyCleanup) &&
                         Take(library, "curl_easy_setopt", curl.easySetopt) &&
                         Take(library, "curl_easy_getinfo", curl.easyGetinfo) &&
                         Take(library, "curl_multi_init", curl.multiInit) &&
                         Take(library, "curl_multi_cleanup", curl.multiCleanup) &&
                         Take(library, "curl_multi_add_handle", curl.multiAddHandle) &&
                         Take(library, "curl_multi_remove_handle", curl.multiRemoveHandle) &&
                         Take(library, "curl_multi_perform", curl.multiPerform) &&
                         Take(library, "curl_multi_info_read", curl.multiInfoRead);
    if (!isWhole || curl.globalInit(CURL_GLOBAL_DEFAULT) != CURLE_OK)
        return std::nullopt;
    return curl;
}

// Null when it cannot be loaded: each fetch fails then.
const Curl *TheCurl()
{
    static const std::optional<Curl> curl = LoadCurl();
    return curl ? &*curl : nullptr;
}

// The next message of a request that has ended; null when there is none.
const CURLMsg *ReadInfo(CURLM *multi, int &waiting)
{
    return multi != nullptr ? TheCurl()->multiInfoRead(multi, &waiting) : nullptr;
}

} // namespace

// One fetch. It follows redirects itself, because the library cannot refuse only redirects from
// https to http.
class CurlWeb::Transfer : public WebFetch
{
public:
    using Done = std::function<void(const std::optional<std::string> &)>;

    Transfer(CurlWeb &web, std::string address, Done done)
        : m_web(&web), m_done(std::move(done)), m_address(std::move(address)),
          m_end(std::chrono::steady_clock::now() + std::chrono::seconds(kWebSeconds))
    {
        if (!Begin())
            m_failed = true; // reported by the next Poll
    }

    ~Transfer() override
    {
        if (m_web != nullptr)
            m_web->Forget(this);
        End();
    }
    Transfer(const Transfer &) = delete;
    Transfer &operator=(const Transfer &) = delete;

    bool Failed() const { return m_failed; }
    bool Owns(const CURL *handle) const { return handle == m_handle; }
    void LeaveWeb()
    {
        End();
        m_web = nullptr;
    }

    // Handles the end of one request. Returns: whether the whole fetch has ended; its answer is in
    // `answer` then.
    bool Ended(CURLcode result, std::optional<std::string> &answer)
    {
        long status = 0;
        TheCurl()->easyGetinfo(m_handle, CURLINFO_RESPONSE_CODE, &status);
        const char *target = nullptr;
        TheCurl()->easyGetinfo(m_handle, CURLINFO_REDIRECT_URL, &target);
        const bool redirected = result == CURLE_OK && target != nullptr;
        const std::string next = redirected ? target : "";
        End();
        if (redirected)
            return !Follow(next);
        if (result == CURLE_OK && status == kFound)
            answer = std::move(m_bytes);
        return true;
    }

    Done TakeDone() { return std::exchange(m_done, nullptr); }

    // Expires when the caller destroys the fetch.
    std::weak_ptr<bool> Wanted() const { return m_wanted; }

private:
    bool Follow(const std::string &next)
    {
        if (++m_redirects > kWebMaxRedirects || (IsHttps(m_address) && !IsHttps(next)))
            return false;
        m_address = next;
        return Begin();
    }

    bool Begin()
    {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
                              m_end - std::chrono::steady_clock::now())
                              .count();
        m_bytes.clear();
        m_headerBytes = 0;
        m_handle = left > 0 && m_web->m_multi != nullptr ? TheCurl()->easyInit() : nullptr;
        if (m_handle == nullptr)
            return false;
        const bool set =
            Set(CURLOPT_URL, m_address.c_str()) && Set(CURLOPT_PROTOCOLS_STR, "http,https") &&
            Set(CURLOPT_USERAGENT, m_web->m_userAgent.c_str()) &&
            Set(CURLOPT_CONNECTTIMEOUT, kWebConnectSeconds) &&
            Set(CURLOPT_TIMEOUT_MS, static_cast<long>(left)) &&
            Set(CURLOPT_MAXFILESIZE, static_cast<long>(kWebMaxBytes)) &&
            Set(CURLOPT_NOSIGNAL, 1L) &&
            Set(CURLOPT_QUICK_EXIT, 1L) && // do not wait for the look-up of a name
            Set(CURLOPT_WRITEFUNCTION, &Transfer::TakeBytes) && Set(CURLOPT_WRITEDATA, this) &&
            Set(CURLOPT_HEADERFUNCTION, &Transfer::TakeHeader) && Set(CURLOPT_HEADERDATA, this) &&
            (m_web->trustedCertificates.empty() ||
             Set(CURLOPT_CAINFO, m_web->trustedCertificates.c_str()));
        if (set && TheCurl()->multiAddHandle(m_web->m_multi, m_handle) == CURLM_OK)
            return true;
        TheCurl()->easyCleanup(std::exchange(m_handle, nullptr));
        return false;
    }

    template <class Value>
    bool Set(CURLoption option, Value value)
    {
        return TheCurl()->easySetopt(m_handle, option, value) == CURLE_OK;
    }

    void End()
    {
        if (m_handle == nullptr || m_web == nullptr)
            return;
        TheCurl()->multiRemoveHandle(m_web->m_multi, m_handle);
        TheCurl()->easyCleanup(std::exchange(m_handle, nullptr));
    }

    // Returns: the number of bytes taken; when that is less than `count`, the transfer fails.
    static std::size_t TakeBytes(const char *bytes, std::size_t size, std::size_t count, void *self)
    {
        std::string &kept = static_cast<Transfer *>(self)->m_bytes;
        if (kept.size() + size * count > kWebMaxBytes)
            return 0;
        kept.append(bytes, size * count);
        return size * count;
    }

    static std::size_t TakeHeader(const char * /*bytes*/, std::size_t size, std::size_t count,
                                  void *self)
    {
        std::size_t &taken = static_cast<Transfer *>(self)->m_headerBytes;
        taken += size * count;
        return taken > kMaxHeaderBytes ? 0 : size * count;
    }

    CurlWeb *m_web; // null when it was destroyed before the fetch ended
    Done m_done;
    std::shared_ptr<bool> m_wanted = std::make_shared<bool>(true); // only read by Poll
    std::string m_address;
    std::chrono::steady_clock::time_point m_end;
    CURL *m_handle = nullptr;
    std::string m_bytes;
    std::size_t m_headerBytes = 0;
    int m_redirects = 0;
    bool m_failed = false;
};

CurlWeb::CurlWeb(std::string userAgent) : m_userAgent(std::move(userAgent))
{
    poll.event = [this] { Poll(); };
}

CurlWeb::~CurlWeb()
{
    for (Transfer *transfer : m_transfers)
        transfer->LeaveWeb();
    if (m_multi != nullptr)
        TheCurl()->multiCleanup(m_multi);
}

std::unique_ptr<WebFetch>
CurlWeb::Fetch(const std::string &address,
               std::function<void(const std::optional<std::string> &bytes)> done)
{
    if (m_multi == nullptr && TheCurl() != nullptr)
        m_multi = TheCurl()->multiInit();
    auto transfer = std::make_unique<Transfer>(*this, address, std::move(done));
    m_transfers.push_back(transfer.get());
    poll.SetEnabled(true);
    return transfer;
}

void CurlWeb::Poll()
{
    int running = 0;
    if (m_multi != nullptr)
        TheCurl()->multiPerform(m_multi, &running);

    // All ended requests are collected first, because the receiver of an answer may start or
    // destroy fetches.
    struct Answer {
        std::weak_ptr<bool> wanted;
        Transfer::Done done;
        std::optional<std::string> bytes;
    };
    std::vector<Answer> answers;
    const auto finish = [&](Transfer *transfer, std::optional<std::string> bytes) {
        Forget(transfer);
        answers.push_back({transfer->Wanted(), transfer->TakeDone(), std::move(bytes)});
    };
    int waiting = 0;
    while (const CURLMsg *message = ReadInfo(m_multi, waiting)) {
        if (message->msg != CURLMSG_DONE)
            continue;
        const auto at = std::ranges::find_if(m_transfers, [message](const Transfer *transfer) {
            return transfer->Owns(message->easy_handle);
        });
        std::optional<std::string> answer;
        if (at != m_transfers.end() && (*at)->Ended(message->data.result, answer))
            finish(*at, std::move(answer));
    }
    const std::vector<Transfer *> transfers = m_transfers;
    for (Transfer *transfer : transfers)
        if (transfer->Failed())
            finish(transfer, {});
    poll.SetEnabled(!m_transfers.empty());
    for (const Answer &answer : answers)
        if (!answer.wanted.expired())
            answer.done(answer.bytes);
}

void CurlWeb::Forget(Transfer *transfer)
{
    std::erase(m_transfers, transfer);
}

} // namespace platform::web
