// Dark and light by the desktop's portal, on a real D-Bus session.
#include "platform/qt/theme.h"
#include "tests/windows/bench.h"
#include "ui/qt/icons.h"

#include <gtest/gtest.h>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QIcon>
#include <QPalette>

using platform::qt::Theme;

// Answers in place of the settings portal, on a separate connection.
class FakePortal : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    explicit FakePortal(unsigned scheme) : m_scheme(scheme)
    {
        EXPECT_TRUE(m_bus.registerObject(kPath, this, QDBusConnection::ExportAllSlots));
        EXPECT_TRUE(m_bus.registerService(QStringLiteral("org.freedesktop.portal.Desktop")));
    }
    ~FakePortal() override
    {
        m_bus.unregisterService(QStringLiteral("org.freedesktop.portal.Desktop"));
        m_bus.unregisterObject(kPath);
        QDBusConnection::disconnectFromBus(QStringLiteral("portal"));
    }

    void Change(const QString &group, const QString &key, const QVariant &value)
    {
        QDBusMessage signal =
            QDBusMessage::createSignal(kPath, QStringLiteral("org.freedesktop.portal.Settings"),
                                       QStringLiteral("SettingChanged"));
        signal << group << key << QVariant::fromValue(QDBusVariant(value));
        m_bus.send(signal);
    }
    void Change(unsigned scheme)
    {
        Change(QStringLiteral("org.freedesktop.appearance"), QStringLiteral("color-scheme"),
               scheme);
    }

    bool wraps = true; // the form of older portals: a variant in the variant

public Q_SLOTS:
    QDBusVariant Read(const QString &group, const QString &key)
    {
        EXPECT_EQ(group, QStringLiteral("org.freedesktop.appearance"));
        EXPECT_EQ(key, QStringLiteral("color-scheme"));
        const QDBusVariant value{QVariant(m_scheme)};
        return wraps ? QDBusVariant(QVariant::fromValue(value)) : value;
    }

private:
    const QString kPath = QStringLiteral("/org/freedesktop/portal/desktop");
    QDBusConnection m_bus =
        QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("portal"));
    unsigned m_scheme;
};

namespace
{

class ThemeTest : public testing::Test
{
protected:
    void SetUp() override { platform::qt::ApplyPalette(false); }
    void TearDown() override { platform::qt::ApplyPalette(false); }
};

TEST_F(ThemeTest, WithoutPortalThePaletteCounts)
{
    Theme light;
    EXPECT_FALSE(platform::qt::IsDark());
    platform::qt::ApplyPalette(true);
    Theme dark;
    EXPECT_TRUE(platform::qt::IsDark());
}

TEST_F(ThemeTest, ASelectedRowsIconIsTheDrawingForItsBackground)
{
    const auto drawn = [](const char *theme) {
        return QIcon(QStringLiteral(":/icons/%1/open.svg").arg(QLatin1String(theme)))
            .pixmap(QSize(16, 16), 1.0)
            .toImage();
    };
    const auto shown = [](QIcon::Mode mode) {
        return ui::qt::Icon("open").pixmap(QSize(16, 16), 1.0, mode).toImage();
    };
    ASSERT_NE(drawn("light"), drawn("dark"));
    EXPECT_EQ(shown(QIcon::Normal), drawn("light"));
    EXPECT_EQ(shown(QIcon::Selected), drawn("dark")) << "white text on blue, in a light window";
    QPalette pale = QGuiApplication::palette();
    pale.setColor(QPalette::Highlight, QColor(0xcc, 0xe8, 0xff));
    pale.setColor(QPalette::HighlightedText, Qt::black);
    QApplication::setPalette(pale);
    EXPECT_EQ(shown(QIcon::Selected), drawn("light"));
}

TEST_F(ThemeTest, PortalDecidesAtTheStart)
{
    for (const bool wraps : {true, false}) {
        platform::qt::ApplyPalette(false);
        FakePortal portal(Theme::Dark);
        portal.wraps = wraps;
        Theme theme;
        EXPECT_TRUE(platform::qt::IsDark());
    }
    platform::qt::ApplyPalette(true);
    FakePortal portal(Theme::Light);
    Theme theme;
    EXPECT_FALSE(platform::qt::IsDark());
}

TEST_F(ThemeTest, FollowsTheChange)
{
    FakePortal portal(Theme::NoPreference);
    Theme theme;
    EXPECT_FALSE(platform::qt::IsDark());
    portal.Change(Theme::Dark);
    EXPECT_TRUE(tests::WaitUntil([] { return platform::qt::IsDark(); }));
    portal.Change(QStringLiteral("org.other"), QStringLiteral("color-scheme"), unsigned{0});
    portal.Change(QStringLiteral("org.freedesktop.appearance"), QStringLiteral("contrast"),
                  unsigned{0});
    portal.Change(Theme::Dark); // comes after the two others, which have changed nothing
    EXPECT_TRUE(tests::Stays([] { return platform::qt::IsDark(); }, 100));
    portal.Change(Theme::NoPreference); // back to the palette that the desktop has
    EXPECT_TRUE(tests::WaitUntil([] { return !platform::qt::IsDark(); }));
}

} // namespace

#include "theme_test.moc"
