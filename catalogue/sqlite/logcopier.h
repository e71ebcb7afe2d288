// catalogue/sqlite/logcopier.h - copies what has been committed from the log into the catalogue
// while the program continues, on a helper thread: at the end of the program there is little left
// to copy and to flush.
#pragma once

#include <memory>
#include <string>

namespace catalogue
{

class LogCopier
{
public:
    // Opens a connection of its own; the file must be the one that the program uses. If that fails,
    // nothing will be copied.
    explicit LogCopier(const std::string &path);

    // Waits for the end of a copy, which takes no longer than the same work at the end of the
    // program, and closes the connection.
    ~LogCopier();
    LogCopier(const LogCopier &) = delete;
    LogCopier &operator=(const LogCopier &) = delete;

    // Begins to copy, unless a copy is running. As in every such copy of SQLite, the log is flushed
    // before and the catalogue after it. Readers and writers do not wait for it. Errors: none; what
    // cannot be copied stays in the log.
    void Start();

    // The file is no longer the program's catalogue: nothing is copied into it, also not by the
    // destructor.
    void Abandon();

private:
    struct State;
    std::shared_ptr<State> m_state; // the other owner is the helper
};

} // namespace catalogue
