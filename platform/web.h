// platform/web.h - what the program asks of the web: one small file by its address. Nothing about
// the user is sent: no cookie, no identifier; the request contains only the name and version of the
// program.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace platform
{

// A running fetch. The destructor cancels it: `done` is not called any more.
struct WebFetch {
    virtual ~WebFetch() = default;
};

struct Web {
    virtual ~Web() = default;

    // Fetches the file at `address` (http or https). `done` gets the file's bytes, or nothing: for
    // another kind of address, and when there was no connection, no answer in time, an answer other
    // than 200, or one that is too large. It is called once, later, from the event loop of the
    // caller's thread, never inside Fetch; it may destroy the fetch.
    // Returns: the fetch; never null.
    [[nodiscard]] virtual std::unique_ptr<WebFetch>
    Fetch(const std::string &address,
          std::function<void(const std::optional<std::string> &bytes)> done) = 0;
};

// The limits of a fetch.
inline constexpr long kWebConnectSeconds = 10;
inline constexpr long kWebSeconds = 30; // in all, redirects included
inline constexpr std::size_t kWebMaxBytes = 256u << 10;
inline constexpr int kWebMaxRedirects = 3; // none of them from https to http

} // namespace platform
