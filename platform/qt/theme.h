// platform/qt/theme.h - dark or light windows: as the desktop's portal says (`color-scheme` of
// org.freedesktop.appearance), else as the palette of the desktop is. Where the desktop brings no
// style of its own, the windows get the program's colours.
#pragma once

#include <QObject>

class QDBusPendingCallWatcher;
class QDBusVariant;

namespace platform::qt
{

// Gives the application the program's own colours, with its own style (ownstyle.h).
void ApplyPalette(bool dark);

// Whether windows are dark now: their text is lighter than their background.
[[nodiscard]] bool IsDark();

// Follows the desktop as long as it lives. The application object must exist.
class Theme : public QObject
{
    Q_OBJECT

public:
    // Asks the portal and waits for its answer, at most this long; a later answer counts when it
    // comes. Without a D-Bus session, or without a portal, nothing is waited for.
    static constexpr int kWaitMs = 150;

    explicit Theme(QObject *parent = nullptr);

    // The values of `color-scheme`. Source: the settings portal's description.
    enum Scheme : unsigned { NoPreference = 0, Dark = 1, Light = 2 };

private Q_SLOTS:
    void SettingChanged(const QString &group, const QString &key, const QDBusVariant &value);

private:
    void Ask();
    void Answered(QDBusPendingCallWatcher *answer);
    void Apply(unsigned scheme);

    bool m_desktopIsDark; // the palette before the program touched it
    bool m_ownStyle;      // no style of the desktop: the program's colours in any case
    bool m_applied = false;
};

} // namespace platform::qt
