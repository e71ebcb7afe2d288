#include "app/singleinstance.h"

#include "platform/machine.h"
#include "platform/session.h"

#include <QCryptographicHash>
#include <QLocalServer>
#include <QLocalSocket>
#include <memory>

namespace app
{

namespace
{

constexpr const char *kTokenVariable =
    "XDG_ACTIVATION_TOKEN"; // the right to bring a window to the front

// The path of the socket: its name is made from the catalogue's folder.
std::string SocketPath(const std::string &programFolder)
{
    const std::string folder = platform::SessionFolder();
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
    m_lock = platform::TheFiles().OpenLockFile(m_path + ".lock");
    m_first = m_lock < 0 || platform::TheFiles().TryLock(m_lock) == 0;
    if (m_first && m_lock >= 0)
        Listen();
}

SingleInstance::~SingleInstance()
{
    delete m_server; // removes the socket before the lock is released
    if (m_lock >= 0)
        platform::TheFiles().Close(m_lock);
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
