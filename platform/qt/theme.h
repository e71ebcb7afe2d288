// platform/qt/theme.h - dark or light windows: as the desktop's portal says (`color-scheme` of
// org.freedesktop.appearance), else as the palette of the desktop is. When the desktop has no style
// of its own, the windows get the program's colours.
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

// Follows the desktop's changes while it exists. The application object must exist.
class Theme : public QObject
{
    Q_OBJECT

public:
    // Asks the portal and waits at most this long for its answer; a later answer is used when it
    // comes. Does not wait without a D-Bus session or without a portal.
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

    bool m_desktopIsDark; // whether the desktop's own palette is dark
    bool m_ownStyle;      // no style of the desktop: the program's colours in any case
    bool m_applied = false;
};

} // namespace platform::qt
