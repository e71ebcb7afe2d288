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
#include <QScopedValueRollback>
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
        if (!modal && m_over == nullptr && !m_form.isIndependent)
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

// A dialog moves itself to the middle of the screen or of its parent, unless it was moved before.
void FormWindow::showEvent(QShowEvent *event)
{
    const bool wasMoved = testAttribute(Qt::WA_Moved);
    setAttribute(Qt::WA_Moved, wasMoved || m_form.isIndependent);
    QDialog::showEvent(event);
    if (m_form.isIndependent)
        setAttribute(Qt::WA_Moved, wasMoved);
    if (!event->spontaneous())
        m_form.SetVisible(true);
    CountStepsFromLeastSize();
    if (!m_form.isBox)
        return;
    QAccessibleEvent alert(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

// Also when the program hides the window without its form.
void FormWindow::hideEvent(QHideEvent *event)
{
    QDialog::hideEvent(event);
    if (!event->spontaneous())
        m_form.SetVisible(false);
}

// Presses acceptButton, if it is pressed by Enter only in a frame. Returns: false for the usual
// one.
bool FormWindow::PressAccepting()
{
    const QWidget *frame = WidgetOf(m_form.acceptsIn);
    if (frame != nullptr && frame->isAncestorOf(focusWidget()))
        m_form.acceptButton->Click();
    return frame != nullptr;
}

// The keys that no control has used.
void FormWindow::keyPressEvent(QKeyEvent *event)
{
    if (IsEnter(*event) && PressAccepting())
        return;
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

// The layout has set the new least size when its request is delivered. onResize may let events run,
// which could destroy what the toolkit uses during its own layout, so it is called after that.
bool FormWindow::event(QEvent *event)
{
    const QScopedValueRollback depth(m_eventDepth, m_eventDepth + 1);
    const bool done = QDialog::event(event);
    if (event->type() == QEvent::LayoutRequest)
        CountStepsFromLeastSize();
    if (std::exchange(m_layoutDue, false) && m_form.onResize && !m_form.minimised)
        m_form.onResize();
    return done;
}

void FormWindow::resizeEvent(QResizeEvent *event)
{
    QDialog::resizeEvent(event);
    m_form.size.width = ui::TwipsOfPixels(width());
    m_form.size.height = ui::TwipsOfPixels(height());
    m_layoutDue = true;
}

void FormWindow::changeEvent(QEvent *event)
{
    QDialog::changeEvent(event);
    if (event->type() == QEvent::WindowStateChange)
        m_form.minimised = isMinimized();
    if (event->type() == QEvent::ActivationChange && isActiveWindow())
        ui::Notify(m_form.onActivate);
    const bool isNewFont =
        event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange;
    if (isNewFont && m_form.onMeasure) {
        m_form.onMeasure();
        m_layoutDue = true;
    }
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
