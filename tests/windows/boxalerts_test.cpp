// What a screen reader is alerted to when a box opens.
#include "platform/qt/qtdesktop.h"
#include "tests/windows/bench.h"
#include "ui/qt/form.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QProcess>
#include <QStringList>

namespace
{

using platform::BoxIcon;
using platform::Buttons;

// Notes what a screen reader is alerted to while it exists: the name of the window and the texts in
// it.
class NotedAlerts
{
public:
    NotedAlerts() : m_before(QAccessible::installUpdateHandler(Note)) { Noted().clear(); }
    ~NotedAlerts() { QAccessible::installUpdateHandler(m_before); }
    NotedAlerts(const NotedAlerts &) = delete;
    NotedAlerts &operator=(const NotedAlerts &) = delete;

    static QStringList &Noted()
    {
        static QStringList noted;
        return noted;
    }

private:
    static void Note(QAccessibleEvent *event)
    {
        QAccessibleInterface *window = event->accessibleInterface();
        if (event->type() == QAccessible::Alert && window != nullptr)
            Noted() << window->text(QAccessible::Name) + TextsIn(*window);
    }

    static QString TextsIn(const QAccessibleInterface &parent)
    {
        QString texts;
        for (int i = 0; i < parent.childCount(); ++i) {
            QAccessibleInterface *part = parent.child(i);
            if (part == nullptr || part->state().invisible)
                continue;
            if (part->role() == QAccessible::StaticText)
                texts += QLatin1Char('|') + part->text(QAccessible::Name);
            texts += TextsIn(*part);
        }
        return texts;
    }

    QAccessible::UpdateHandler m_before;
};

// As if a screen reader were running: the desktop's service for them says so, and the toolkit then
// speaks to them until the program ends. So it is a program of its own that has these tests.
class BoxAlerts : public testing::Test
{
protected:
    BoxAlerts()
    {
        m_service.start(QStringLiteral("/usr/libexec/at-spi-bus-launcher"),
                        {QStringLiteral("--launch-immediately"), QStringLiteral("--a11y=1"),
                         QStringLiteral("--screen-reader=1")});
    }
    ~BoxAlerts() override
    {
        m_service.terminate();
        m_service.waitForFinished();
    }

    QProcess m_service;
    ui::qt::FormWindows m_forms;
    platform::qt::QtDesktop m_desktop;
};

TEST_F(BoxAlerts, AScreenReaderIsAlertedToABoxAndItsText)
{
    ASSERT_TRUE(tests::WaitUntil([] { return QAccessible::isActive(); }));
    const NotedAlerts alerts;
    const auto answer = [] {
        tests::WhenModal([](QWidget &) {
            EXPECT_EQ(NotedAlerts::Noted().size(), 1) << "before the user answers";
            tests::PressKey("Escape");
        });
    };
    const struct {
        Buttons buttons;
        BoxIcon icon;
    } cases[] = {{Buttons::Ok, BoxIcon::None},
                 {Buttons::YesNo, BoxIcon::Exclamation},
                 {Buttons::SaveDiscardCancel, BoxIcon::None}};
    for (const auto &c : cases) {
        NotedAlerts::Noted().clear();
        answer();
        m_desktop.MessageBox("Go on?\rAll of it", c.buttons, "Corrupted file", c.icon);
        EXPECT_EQ(NotedAlerts::Noted(),
                  QStringList{QStringLiteral("Corrupted file|Go on?\nAll of it")});
    }
    NotedAlerts::Noted().clear();
    answer();
    m_desktop.MessageBoxWithDetails("Go on?", "/a/b: Permission denied", Buttons::YesNo, "File");
    EXPECT_EQ(NotedAlerts::Noted(), QStringList{QStringLiteral("File|Go on?")});

    // A box with a line to type in speaks by that line, which has the focus.
    NotedAlerts::Noted().clear();
    tests::WhenModal([](QWidget &) { tests::PressKey("Escape"); });
    m_desktop.InputBox("Name", "Folder", "New one");
    EXPECT_EQ(NotedAlerts::Noted(), QStringList{});
}

} // namespace
