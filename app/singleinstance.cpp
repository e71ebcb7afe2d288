#include "app/singleinstance.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QCryptographicHash>
#include <QLocalServer>
#include <QLocalSocket>
#include <cstdlib>
#include <memory>

namespace app
{

namespace
{

constexpr const char *kTokenVariable =
    "XDG_ACTIVATION_TOKEN"; // the right to bring a window to the front

// A private folder of the user among the temporary files; empty when another user owns a folder of
// that name, or when others may write to it.
std::string TemporaryFolder()
{
    const std::string folder = "/tmp/quenlin-" + std::to_string(getuid());
    mkdir(folder.c_str(), 0700);
    struct stat state;
    const bool isOwn = lstat(folder.c_str(), &state) == 0 && S_ISDIR(state.st_mode) &&
                       state.st_uid == getuid() && (state.st_mode & 077) == 0;
    return isOwn ? folder : std::string();
}

// The path of the socket: in the user's run-time folder, with a name made from the catalogue's
// folder.
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
    delete m_server; // removes the socket before the lock is released
    if (m_lock >= 0)
        close(m_lock);
}

void SingleInstance::Listen()
{
    const QString path = QString::fromLocal8Bit(m_path.c_str());
    QLocalServer::removeServer(
        path); // a run that was killed has left it; this process has the lock
    m_server = new QLocalServer(this);
    m_server->setSocketOptions(QLocalServer::UserAccessOption);
    connect(m_server, &QLocalServer::newConnection, this, [this] { Answer(); });
    m_server->listen(path);
}

// The caller sends its token and closes the connection. This waits only 200 ms for the token.
void SingleInstance::Answer()
{
    constexpr int kTimeoutMs = 200;
    constexpr qint64 kLongestToken = 511; // bytes
    const std::unique_ptr<QLocalSocket> caller(m_server->nextPendingConnection());
    if (caller == nullptr)
        return;
    caller->waitForReadyRead(kTimeoutMs);
    const QByteArray token = caller->read(kLongestToken);
    if (!token.isEmpty())
        qputenv(kTokenVariable, token);
    if (onCalled)
        onCalled();
}

void SingleInstance::CallFirst() const
{
    constexpr int kTimeoutMs = 1000;
    QLocalSocket socket;
    socket.connectToServer(QString::fromLocal8Bit(m_path.c_str()), QIODevice::WriteOnly);
    if (!socket.waitForConnected(kTimeoutMs))
        return;
    const QByteArray token = qgetenv(kTokenVariable);
    if (!token.isEmpty() && socket.write(token) == token.size())
        socket.waitForBytesWritten(kTimeoutMs);
}

} // namespace app
