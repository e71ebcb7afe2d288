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
    delete m_server; // its socket goes before the lock does
    if (m_lock >= 0)
        close(m_lock);
}

void SingleInstance::Listen()
{
    const QString path = QString::fromLocal8Bit(m_path.c_str());
    QLocalServer::removeServer(path); // of a run that was killed: this one has the lock
    m_server = new QLocalServer(this);
    m_server->setSocketOptions(QLocalServer::UserAccessOption);
    connect(m_server, &QLocalServer::newConnection, this, [this] { Answer(); });
    m_server->listen(path);
}

// The caller sends its token and closes; one that sends nothing is not waited for.
void SingleInstance::Answer()
{
    constexpr int kPatienceMs = 200;
    constexpr qint64 kLongestToken = 511;
    const std::unique_ptr<QLocalSocket> caller(m_server->nextPendingConnection());
    if (caller == nullptr)
        return;
    caller->waitForReadyRead(kPatienceMs);
    const QByteArray token = caller->read(kLongestToken);
    if (!token.isEmpty())
        qputenv(kTokenVariable, token);
    if (onCalled)
        onCalled();
}

void SingleInstance::CallFirst() const
{
    constexpr int kPatienceMs = 1000;
    QLocalSocket socket;
    socket.connectToServer(QString::fromLocal8Bit(m_path.c_str()), QIODevice::WriteOnly);
    if (!socket.waitForConnected(kPatienceMs))
        return;
    const QByteArray token = qgetenv(kTokenVariable);
    if (!token.isEmpty() && socket.write(token) == token.size())
        socket.waitForBytesWritten(kPatienceMs);
}

} // namespace app
