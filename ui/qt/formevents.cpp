// The window of a form: shown, hidden, closed, and its events.
#include "ui/qt/formwindow.h"
#include "ui/qt/qttext.h"

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QCloseEvent>
#include <QComboBox>
#include <QKeyEvent>
#include <QKeySequence>
#include <QMainWindow>
#include <QPushButton>
#include <QStringList>
#include <QWindow>
#include <utility>

namespace ui::qt
{

namespace
{

// The key codes of the KeyDown event.
int CodeOf(const QKeyEvent &event)
{
    constexpr std::pair<int, int> kCodes[] = {
        {Qt::Key_Backspace, 8},
        {Qt::Key_Tab, 9},
        {Qt::Key_Return, ui::kEnterKey},
        {Qt::Key_Enter, ui::kEnterKey},
        {Qt::Key_Shift, 16},
        {Qt::Key_Control, 17},
        {Qt::Key_Alt, 18},
        {Qt::Key_PageUp, 33},
        {Qt::Key_PageDown, 34},
        {Qt::Key_End, 35},
        {Qt::Key_Home, 36},
        {Qt::Key_Left, 37},
        {Qt::Key_Up, 38},
        {Qt::Key_Right, 39},
        {Qt::Key_Down, 40},
        {Qt::Key_Insert, 45},
        {Qt::Key_Delete, 46},
        {Qt::Key_Escape, ui::kEscapeKey},
    };
    for (const auto &[toolkit, code] : kCodes)
        if (event.key() == toolkit)
            return code;
    if (event.key() >= Qt::Key_F1 && event.key() <= Qt::Key_F12)
        return 112 + event.key() - Qt::Key_F1;
    return event.key() < 128 ? event.key() : 0;
}

ui::Key KeyOf(const QKeyEvent &event)
{
    const Qt::KeyboardModifiers keys = event.modifiers();
    return {CodeOf(event), keys.testFlag(Qt::ShiftModifier), keys.testFlag(Qt::ControlModifier),
            keys.testFlag(Qt::AltModifier), event.isAutoRepeat()};
}

bool IsEnter(const QKeyEvent &event)
{
    return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
}

// The character that a key types; 0 when it types none.
char32_t CharacterOf(const QKeyEvent &event)
{
    if (IsEnter(event))
        return 13;
    const QList<uint> characters = event.text().toUcs4();
    return characters.isEmpty() || event.key() == Qt::Key_Delete ? 0 : characters.first();
}

// The button of a window that the key presses without Alt; null for none.
QPushButton *ButtonOfAccessKey(const QWidget &window, const QKeyEvent &event)
{
    if (event.modifiers() != Qt::NoModifier && event.modifiers() != Qt::ShiftModifier)
        return nullptr;
    for (QPushButton *button : window.findChildren<QPushButton *>()) {
        const QKeySequence accessKey = QKeySequence::mnemonic(button->text());
        if (button->isVisible() && !accessKey.isEmpty() && accessKey[0].key() == event.key())
            return button;
    }
    return nullptr;
}

} // namespace

void FormWindow::Present(bool modal)
{
    m_form.SetVisible(true);
    const bool comesForward = modal || m_form.takesKeyboard;
    if (!isVisible()) {
        setWindowModality(modal ? Qt::ApplicationModal : Qt::NonModal);
        setAttribute(Qt::WA_ShowWithoutActivating, !comesForward);
        if (!m_placed)
            RestorePlace();
        m_placed = true;
        if (m_form.centred)
            Centre();
        if (m_form.opensBeside)
            PlaceBesideWindowInUse();
        if (!modal && m_over == nullptr)
            BelongToMainWindow();
        show();
    } else if (comesForward && isMinimized()) {
        showNormal();
    }
    if (comesForward) {
        raise();
        activateWindow();
    }
}

// A window without modality stays above the main window, and is minimised with it.
void FormWindow::BelongToMainWindow()
{
    for (const QWidget *window : QApplication::topLevelWidgets()) {
        if (!window->isVisible() || qobject_cast<const QMainWindow *>(window) == nullptr)
            continue;
        winId(); // makes a native window
        windowHandle()->setTransientParent(window->windowHandle());
    }
}

void FormWindow::Leave()
{
    if (isVisible())
        StorePlace();
    hide();
    Q_EMIT finished(0);
}

void FormWindow::reject()
{
    if (m_form.cancelButton != nullptr && m_form.cancelButton->Enabled())
        m_form.cancelButton->Click();
    else if (m_form.escapeCloses)
        ui::AskToClose(m_form);
}

void FormWindow::closeEvent(QCloseEvent *event)
{
    event->ignore(); // the form decides whether to close
    m_form.closedByFrame = event->spontaneous();
    ui::AskToClose(m_form);
}

void FormWindow::showEvent(QShowEvent *event)
{
    QDialog::showEvent(event);
    CountStepsFromLeastSize();
    if (!m_form.isBox)
        return;
    QAccessibleEvent alert(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

// The keys that no control has used.
void FormWindow::keyPressEvent(QKeyEvent *event)
{
    if (QPushButton *button = m_form.isBox ? ButtonOfAccessKey(*this, *event) : nullptr)
        button->click();
    else if (event->matches(QKeySequence::Copy) && !m_form.copied.empty())
        CopyTexts();
    else
        QDialog::keyPressEvent(event);
}

void FormWindow::CopyTexts() const
{
    QStringList lines;
    for (const ui::Label *label : m_form.copied)
        if (!label->Caption().empty())
            lines << LabelText(label->Caption());
    QGuiApplication::clipboard()->setText(lines.join(QLatin1Char('\n')));
}

// The layout has set the new least size when its request is delivered.
bool FormWindow::event(QEvent *event)
{
    const bool done = QDialog::event(event);
    if (event->type() == QEvent::LayoutRequest)
        CountStepsFromLeastSize();
    return done;
}

void FormWindow::resizeEvent(QResizeEvent *event)
{
    QDialog::resizeEvent(event);
    m_form.size.width = ui::TwipsOfPixels(width());
    m_form.size.height = ui::TwipsOfPixels(height());
    if (m_form.onResize && !m_form.minimised)
        m_form.onResize();
}

void FormWindow::changeEvent(QEvent *event)
{
    QDialog::changeEvent(event);
    if (event->type() == QEvent::WindowStateChange)
        m_form.minimised = isMinimized();
}

// A key is passed to the form first, then to the box with the focus, then to the widget.
bool FormWindow::eventFilter(QObject *watched, QEvent *event)
{
    const auto typing = m_typing.find(watched);
    if (watched == m_over && event->type() == QEvent::Hide)
        LeaveOver();
    if (watched == m_over)
        return false;
    if (event->type() == QEvent::KeyPress) {
        const auto &key = static_cast<const QKeyEvent &>(*event);
        if (m_form.onKeyDown && m_form.onKeyDown(KeyOf(key)))
            return true;
        if (auto *button = qobject_cast<QPushButton *>(watched);
            button != nullptr && IsEnter(key)) { // not the default button
            button->click();
            return true;
        }
        const auto pressed = typing == m_typing.end() ? nullptr : typing->second.keyPressed();
        const char32_t character = CharacterOf(key);
        if (pressed && character != 0 && pressed(character))
            return true;
    } else if (event->type() == QEvent::Wheel && qobject_cast<QComboBox *>(watched) != nullptr &&
               !static_cast<QWidget *>(watched)->hasFocus()) {
        event->ignore(); // turning the wheel over a box without the focus changes nothing
        return true;
    } else if (event->type() == QEvent::FocusOut && typing != m_typing.end() &&
               typing->second.lostFocus) {
        if (const auto lost = typing->second.lostFocus())
            lost();
    }
    return QDialog::eventFilter(watched, event);
}

} // namespace ui::qt
