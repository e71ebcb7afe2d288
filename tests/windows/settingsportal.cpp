// The desktop's settings portal as a separate process: reports whether dark or light is preferred,
// and each change that is written to its standard input, one number in each line (0 no preference,
// 1 dark, 2 light).
#include <unistd.h>

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QSocketNotifier>
#include <cstdio>
#include <cstdlib>

class SettingsPortal : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    void Change(unsigned scheme)
    {
        m_scheme = scheme;
        QDBusMessage signal = QDBusMessage::createSignal(
            QStringLiteral("/org/freedesktop/portal/desktop"),
            QStringLiteral("org.freedesktop.portal.Settings"), QStringLiteral("SettingChanged"));
        signal << QStringLiteral("org.freedesktop.appearance") << QStringLiteral("color-scheme")
               << QVariant::fromValue(QDBusVariant(QVariant(scheme)));
        QDBusConnection::sessionBus().send(signal);
    }

public Q_SLOTS:
    QDBusVariant Read(const QString & /*group*/, const QString & /*key*/)
    {
        return QDBusVariant(QVariant::fromValue(QDBusVariant(QVariant(m_scheme))));
    }

private:
    unsigned m_scheme = 0;
};

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    SettingsPortal portal;
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.registerObject(QStringLiteral("/org/freedesktop/portal/desktop"), &portal,
                            QDBusConnection::ExportAllSlots) ||
        !bus.registerService(QStringLiteral("org.freedesktop.portal.Desktop")))
        return 1;
    std::puts("ready");
    std::fflush(stdout);
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &application, [&portal] {
        char line[16];
        const ssize_t got = read(STDIN_FILENO, line, sizeof line - 1);
        if (got <= 0) {
            QCoreApplication::quit();
            return;
        }
        line[got] = 0;
        portal.Change(static_cast<unsigned>(std::atoi(line)));
    });
    return QCoreApplication::exec();
}

#include "settingsportal.moc"
