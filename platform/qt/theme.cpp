#include "platform/qt/theme.h"

#include "platform/qt/ownstyle.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QEventLoop>
#include <QPalette>
#include <QStyle>
#include <QTimer>

namespace platform::qt
{

namespace
{

const QString kService = QStringLiteral("org.freedesktop.portal.Desktop");
const QString kPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString kInterface = QStringLiteral("org.freedesktop.portal.Settings");
const QString kGroup = QStringLiteral("org.freedesktop.appearance");
const QString kKey = QStringLiteral("color-scheme");

struct Colours {
    QRgb window, base, alternate, button, text, disabled, placeholder, highlight, inactiveHighlight,
        highlightedText, link, tip, tipText, light, midlight, mid, dark, shadow;
};

constexpr Colours kLight{0xfff4f5f7, 0xffffffff, 0xfff7f8fa, 0xffe6e9ee, 0xff1d2127, 0xff9197a1,
                         0xff6f7681, 0xff1f6feb, 0xffcfd8e6, 0xffffffff, 0xff0b57c4, 0xff2a2f37,
                         0xfff4f5f7, 0xffffffff, 0xffe9ebef, 0xffbcc2cb, 0xffa3aab5, 0xff767d88};
constexpr Colours kDark{0xff23262b, 0xff1b1d21, 0xff202328, 0xff2f333a, 0xffe6e9ee, 0xff7d848f,
                        0xff949ba6, 0xff2f6fd0, 0xff3c4656, 0xffffffff, 0xff7ab4ff, 0xffe6e9ee,
                        0xff23262b, 0xff454a53, 0xff3a3f47, 0xff4b515b, 0xff14161a, 0xff0a0b0d};

QPalette MakePalette(const Colours &c)
{
    QPalette palette;
    const std::pair<QPalette::ColorRole, QRgb> roles[] = {
        {QPalette::Window, c.window},
        {QPalette::WindowText, c.text},
        {QPalette::Base, c.base},
        {QPalette::AlternateBase, c.alternate},
        {QPalette::Button, c.button},
        {QPalette::ButtonText, c.text},
        {QPalette::Text, c.text},
        {QPalette::PlaceholderText, c.placeholder},
        {QPalette::BrightText, 0xffff5555},
        {QPalette::Highlight, c.highlight},
        {QPalette::HighlightedText, c.highlightedText},
        {QPalette::Link, c.link},
        {QPalette::LinkVisited, c.link},
        {QPalette::ToolTipBase, c.tip},
        {QPalette::ToolTipText, c.tipText},
        {QPalette::Light, c.light},
        {QPalette::Midlight, c.midlight},
        {QPalette::Mid, c.mid},
        {QPalette::Dark, c.dark},
        {QPalette::Shadow, c.shadow}};
    for (const auto &[role, colour] : roles)
        palette.setColor(role, QColor::fromRgba(colour));
    palette.setColor(QPalette::Inactive, QPalette::Highlight,
                     QColor::fromRgba(c.inactiveHighlight));
    palette.setColor(QPalette::Inactive, QPalette::HighlightedText, QColor::fromRgba(c.text));
    for (const QPalette::ColorRole role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::HighlightedText})
        palette.setColor(QPalette::Disabled, role, QColor::fromRgba(c.disabled));
    palette.setColor(QPalette::Disabled, QPalette::Highlight,
                     QColor::fromRgba(c.inactiveHighlight));
    return palette;
}

bool IsDarkPalette(const QPalette &palette)
{
    return palette.color(QPalette::WindowText).lightness() >
           palette.color(QPalette::Window).lightness();
}

bool HasOwnStyle()
{
    return dynamic_cast<const OwnStyle *>(QApplication::style()) != nullptr;
}

} // namespace

void ApplyPalette(bool dark)
{
    if (!HasOwnStyle())
        QApplication::setStyle(new OwnStyle);
    QApplication::setPalette(MakePalette(dark ? kDark : kLight));
}

bool IsDark()
{
    return IsDarkPalette(QGuiApplication::palette());
}

Theme::Theme(QObject *parent)
    : QObject(parent), m_desktopIsDark(IsDark()),
      m_ownStyle(HasOwnStyle() || QApplication::style()->name() == QLatin1String("fusion"))
{
    Apply(NoPreference);
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return;
    // Without this the first connect of a process fails, because the slot's type is not registered
    // yet.
    qRegisterMetaType<QDBusVariant>("QDBusVariant");
    if (!bus.connect(kService, kPath, kInterface, QStringLiteral("SettingChanged"), this,
                     SLOT(SettingChanged(QString, QString, QDBusVariant))))
        qWarning("The changes between dark and light are not followed: %s",
                 qPrintable(bus.lastError().message()));
    Ask();
}

void Theme::Ask()
{
    QDBusMessage question =
        QDBusMessage::createMethodCall(kService, kPath, kInterface, QStringLiteral("Read"));
    question << kGroup << kKey;
    auto *answer =
        new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(question), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, &Theme::Answered);
    QEventLoop loop;
    connect(answer, &QDBusPendingCallWatcher::finished, &loop, &QEventLoop::quit);
    QTimer::singleShot(kWaitMs, &loop, &QEventLoop::quit);
    if (!answer->isFinished())
        loop.exec(QEventLoop::ExcludeUserInputEvents);
}

void Theme::Answered(QDBusPendingCallWatcher *answer)
{
    answer->deleteLater();
    const QDBusPendingReply<QDBusVariant> reply = *answer;
    if (reply.isError())
        return;
    // Older portals put the value into a second variant.
    QVariant value = reply.value().variant();
    if (value.canConvert<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    Apply(value.toUInt());
}

void Theme::SettingChanged(const QString &group, const QString &key, const QDBusVariant &value)
{
    if (group == kGroup && key == kKey)
        Apply(value.variant().toUInt());
}

void Theme::Apply(unsigned scheme)
{
    const bool dark = scheme == Dark || (scheme != Light && m_desktopIsDark);
    if (m_applied && dark == IsDark())
        return;
    // A style of the desktop has its own colours. It is replaced only when these are dark and light
    // is wanted, or the other way round.
    if (m_ownStyle || dark != IsDark())
        ApplyPalette(dark);
    m_applied = true;
}

} // namespace platform::qt
