#include "tests/windows/bench.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QElapsedTimer>
#include <QKeySequence>
#include <QPointer>
#include <QScreen>
#include <QTest>
#include <QTimer>
#include <QWindow>

namespace tests
{

void FailMissing(const QWidget &window, const char *name)
{
    ADD_FAILURE() << "no control " << name << " in " << window.objectName().toStdString();
}

bool WaitUntil(const std::function<bool()> &done, int milliseconds)
{
    QElapsedTimer timer;
    timer.start();
    while (!done()) {
        if (timer.elapsed() > milliseconds)
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QTest::qSleep(1);
    }
    return true;
}

bool Stays(const std::function<bool()> &holds, int milliseconds)
{
    return !WaitUntil([&] { return !holds(); }, milliseconds);
}

void Settle()
{
    for (int round = 0; round < 3; ++round) { // an event may post another one
        QCoreApplication::sendPostedEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
    }
}

void AwaitTicks(ui::Timer &timer, int count)
{
    const std::function<void()> event = timer.event;
    int ticks = 0;
    timer.event = [&] {
        ++ticks;
        event();
    };
    EXPECT_TRUE(WaitUntil([&] { return ticks >= count; }));
    timer.event = event;
}

void EndDoubleClick()
{
    QElapsedTimer sinceClick;
    sinceClick.start();
    EXPECT_TRUE(
        WaitUntil([&] { return sinceClick.hasExpired(QApplication::doubleClickInterval()); }));
}

void EndTypedWord()
{
    QElapsedTimer sinceLetter;
    sinceLetter.start();
    EXPECT_TRUE(
        WaitUntil([&] { return sinceLetter.hasExpired(QApplication::keyboardInputInterval()); }));
}

QWidget *WaitForWindow(const char *objectName, int milliseconds)
{
    QWidget *found = nullptr;
    const QString wanted = QString::fromLatin1(objectName);
    (void)WaitUntil(
        [&] {
            for (QWidget *window : QApplication::topLevelWidgets())
                if (window->isVisible() && window->objectName() == wanted)
                    found = window;
            return found != nullptr;
        },
        milliseconds);
    return found;
}

void ShowAndActivate(QWidget &window)
{
    window.show();
    window.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&window, 30000));
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window, 30000));
}

namespace
{

// The window that has the keyboard. After another window was closed there is none for a moment.
QWindow *WindowWithKeyboard()
{
    (void)WaitUntil([] { return QGuiApplication::focusWindow() != nullptr; });
    return QGuiApplication::focusWindow();
}

} // namespace

void PressKey(const char *keys)
{
    QWindow *window = WindowWithKeyboard();
    ASSERT_NE(window, nullptr) << "no window has the keyboard for " << keys;
    const QKeySequence sequence(QString::fromLatin1(keys), QKeySequence::PortableText);
    ASSERT_EQ(sequence.count(), 1) << keys;
    QTest::keyClick(window, sequence[0].key(), sequence[0].keyboardModifiers());
}

void TypeText(const std::string &text)
{
    QWindow *window = WindowWithKeyboard();
    ASSERT_NE(window, nullptr) << "no window has the keyboard";
    for (const char letter : text)
        QTest::keyClick(window, letter);
}

namespace
{

// A point of the control relative to its window, as the window system needs it.
QPoint InWindow(QWidget &control, QPoint at)
{
    return control.mapTo(control.window(), at);
}

QWindow *WindowOf(QWidget &control)
{
    QWindow *window = control.window()->windowHandle();
    EXPECT_NE(window, nullptr) << "never shown: " << control.objectName().toStdString();
    return window;
}

} // namespace

void Click(QWidget &control, Qt::MouseButton button)
{
    ClickAt(control, control.rect().center(), button);
}

void ClickAt(QWidget &control, QPoint at, Qt::MouseButton button)
{
    ASSERT_TRUE(control.isVisible()) << control.objectName().toStdString();
    if (QWindow *window = WindowOf(control))
        QTest::mouseClick(window, button, {}, InWindow(control, at));
}

void DoubleClickAt(QWidget &control, QPoint at)
{
    ASSERT_TRUE(control.isVisible()) << control.objectName().toStdString();
    if (QWindow *window = WindowOf(control))
        QTest::mouseDClick(window, Qt::LeftButton, {}, InWindow(control, at));
}

void Drag(QWidget &control, QPoint from, QPoint to)
{
    QWindow *window = WindowOf(control);
    ASSERT_NE(window, nullptr);
    // The control may move under the pointer meanwhile: the points are those of the start.
    const QPoint start = InWindow(control, from);
    const QPoint end = InWindow(control, to);
    QTest::mousePress(window, Qt::LeftButton, {}, start);
    constexpr int kSteps = 4;
    for (int step = 1; step <= kSteps; ++step)
        QTest::mouseMove(window, start + (end - start) * step / kSteps);
    QTest::mouseRelease(window, Qt::LeftButton, {}, end);
}

namespace
{

// A box that stays open would block the test for ever.
void CloseModalWindows()
{
    for (int i = 0; i < 10 && QApplication::activeModalWidget(); ++i)
        QApplication::activeModalWidget()->close();
}

} // namespace

void WhenModal(const std::function<void(QWidget &modal)> &action, int milliseconds)
{
    auto *timer = new QTimer(qApp);
    timer->setInterval(10);
    QElapsedTimer waited;
    waited.start();
    QObject::connect(timer, &QTimer::timeout, timer, [=]() {
        QPointer<QWidget> modal = QApplication::activeModalWidget();
        const bool isUp = modal && modal->isVisible() && modal->isActiveWindow();
        if (!isUp && waited.elapsed() <= milliseconds)
            return;
        timer->stop();
        timer->deleteLater();
        if (!isUp) {
            ADD_FAILURE() << "no modal window came";
            CloseModalWindows();
            return;
        }
        action(*modal);
        if (modal.isNull())
            return; // it is closed already
        QTimer::singleShot(milliseconds, modal, [modal] {
            ADD_FAILURE() << "still up: " << modal->windowTitle().toStdString();
            CloseModalWindows();
        });
    });
    timer->start();
}

void WhenPopup(const std::function<void(QMenu &menu)> &action)
{
    auto *timer = new QTimer(qApp);
    QObject::connect(timer, &QTimer::timeout, timer, [timer, action] {
        auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        if (menu == nullptr || !menu->isVisible())
            return;
        timer->stop();
        timer->deleteLater();
        action(*menu);
    });
    timer->start(10);
}

QImage Screenshot(QWidget &window)
{
    Settle();
    return window.screen()->grabWindow(window.winId()).toImage();
}

void AwaitPainted(QWidget &window)
{
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&window, 30000));
    Settle();
    window.repaint();
}

namespace
{

void Keep(QWidget &window, const std::string &name, const std::function<QImage()> &picture)
{
    const QString folder = qEnvironmentVariable("QUENLIN_SCREENSHOTS");
    if (folder.isEmpty())
        return;
    QDir().mkpath(folder);
    const qreal scale = window.devicePixelRatioF();
    const QString suffix = scale > 1 ? QStringLiteral("@%1x").arg(scale) : QString();
    const QString file =
        folder + QLatin1Char('/') + QString::fromStdString(name) + suffix + QStringLiteral(".png");
    EXPECT_TRUE(picture().save(file)) << file.toStdString();
}

} // namespace

void KeepScreenshot(QWidget &window, const std::string &name)
{
    Keep(window, name, [&] { return Screenshot(window); });
}

void KeepPainted(QWidget &window, const std::string &name)
{
    Keep(window, name, [&] { return window.screen()->grabWindow(window.winId()).toImage(); });
}

} // namespace tests
