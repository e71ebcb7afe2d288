#include "app/singleinstance.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <QCryptographicHash>
#include <QSocketNotifier>
#include <array>
#include <cstring>

namespace app
{

namespace
{

constexpr const char *kTokenVariable = "XDG_ACTIVATION_TOKEN"; // the leave to come forward

// A folder of the user's alone among the system's temporary files; empty where another user has
// taken its name, or opened it to others.
std::string TemporaryFolder()
{
    const std::string folder = "/tmp/quenlin-" + std::to_string(getuid());
    mkdir(folder.c_str(), 0700);
    struct stat state;
    const bool isOwn = lstat(folder.c_str(), &state) == 0 && S_ISDIR(state.st_mode) &&
                       state.st_uid == getuid() && (state.st_mode & 077) == 0;
    return isOwn ? folder : std::string();
}

// The socket's place: the user's own run-time folder, named after the catalogue's folder.
std::string SocketPath(const std::string &programFolder)
{
    const char *runTime = std::getenv("XDG_RUNTIME_DIR");
    const std::string folder =
        runTime == nullptr || *runTime == '\0' ? TemporaryFolder() : std::string(runTime);
    if (folder.empty())
        return {};
    const QByteArray hash = QCryptographicHash::hash(QByteArray::fromStdString(programFolder),
                                                     QCryptographicHash::Sha1);
    return folder + "/quenlin-" + hash.toHex().left(16).toStdString();
}

// The address of a socket's path; false when the path is too long for one.
bool MakeAddress(const std::string &path, sockaddr_un &address)
{
    address = {};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof address.sun_path)
        return false;
    std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
    return true;
}

} // namespace

SingleInstance::SingleInstance(const std::string &programFolder) : m_path(SocketPath(programFolder))
{
    if (m_path.empty())
        return;
    m_lock = open((m_path + ".lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    m_first = m_lock < 0 || flock(m_lock, LOCK_EX | LOCK_NB) == 0;
    if (m_first && m_lock >= 0)
        Listen();
}

SingleInstance::~SingleInstance()
{
    if (m_socket >= 0) {
        unlink(m_path.c_str());
        close(m_socket);
    }
    if (m_lock >= 0)
        close(m_lock);
}

void SingleInstance::Listen()
{
    sockaddr_un address;
    if (!MakeAddress(m_path, address))
        return;
    unlink(m_path.c_str()); // of a run that was killed: this one holds the lock
    m_socket = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    const auto *place = reinterpret_cast<const sockaddr *>(&address);
    if (m_socket < 0 || bind(m_socket, place, sizeof address) != 0 || listen(m_socket, 4) != 0)
        return;
    m_notifier = new QSocketNotifier(m_socket, QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, [this] { Answer(); });
}

// The caller sends its token and closes; one that says nothing is not waited for.
void SingleInstance::Answer()
{
    const int caller = accept4(m_socket, nullptr, nullptr, SOCK_CLOEXEC);
    if (caller < 0)
        return;
    const timeval patience{0, 200000};
    setsockopt(caller, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
    std::array<char, 512> token{};
    const ssize_t length = read(caller, token.data(), token.size() - 1);
    close(caller);
    if (length > 0)
        qputenv(kTokenVariable, QByteArray(token.data(), length));
    if (onCalled)
        onCalled();
}

void SingleInstance::CallFirst() const
{
    sockaddr_un address;
    if (!MakeAddress(m_path, address))
        return;
    const int caller = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (caller < 0)
        return;
    if (::connect(caller, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0) {
        const QByteArray token = qgetenv(kTokenVariable);
        if (!token.isEmpty())
            send(caller, token.constData(), static_cast<std::size_t>(token.size()), MSG_NOSIGNAL);
    }
    close(caller);
}

} // namespace app
