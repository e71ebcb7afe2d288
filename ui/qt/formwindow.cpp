#include "ui/qt/formwindow.h"

#include "platform/qt/modalwait.h"
#include "ui/qt/bindings.h"
#include "ui/qt/inputbindings.h"
#include "ui/qt/qttext.h"
#include "ui/qt/views/listview.h"
#include "ui/qt/views/treeview.h"
#include "ui/qt/widgetmakers.h"
#include "ui/qt/widgets/statusbarview.h"
#include "ui/qt/widgets/textpane.h"

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QCloseEvent>
#include <QComboBox>
#include <QIcon>
#include <QKeyEvent>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QProgressBar>
#include <QPushButton>
#include <QStringList>
#include <QWindow>
#include <algorithm>
#include <cassert>
#include <set>
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

// The widget that shows the contents of a control: the label inside a pane that scrolls.
QWidget *NamedPart(QWidget *widget)
{
    const auto *pane = dynamic_cast<TextPane *>(widget);
    return pane != nullptr ? pane->Text() : widget;
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

template <class Control>
const void *AddressOf(const Control *control)
{
    if constexpr (std::is_base_of_v<ui::Area, Control>)
        return static_cast<const ui::Area *>(control);
    else
        return control;
}

} // namespace

FormWindow::FormWindow(ui::Form &form, QWidget *parent) : QDialog(parent), m_form(form)
{
    setObjectName(ToQt(form.name));
    setWindowIcon(QIcon(QStringLiteral(":/icons/app.svg")));
    if (m_form.framed)
        setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    else
        setWindowFlags(Qt::SplashScreen | Qt::FramelessWindowHint);
    Build();
    OrderTabs();
    Arrange();
    Bind(form, this, [this] { ShowForm(); });
    form.SetHosted(true);
    setProperty(platform::qt::kOwnsNoBox, form.overModal);
}

FormWindow::~FormWindow()
{
    m_form.SetHosted(false);
}

void FormWindow::ShowForm()
{
    setWindowTitle(OneLineText(m_form.Title()));
    setAccessibleName(OneLineText(m_form.Title()));
}

// Whether a control is at its Place(); otherwise a layout decides where it is.
bool FormWindow::IsPlaced(const ui::Member &member) const
{
    const auto isAround = [&](const ui::Layout &inside) { return inside.control == member.in; };
    return m_form.layout.kind == ui::Layout::Kind::Empty &&
           std::none_of(m_form.insides.begin(), m_form.insides.end(), isAround);
}

// Makes the widget of one control; null for a control that is not visible.
QWidget *FormWindow::Make(const ui::Member &member, QWidget *parent, bool isBuddy)
{
    const Binding binding{IsPlaced(member)};
    const auto make = [&](auto *control) -> QWidget * {
        using Control = std::remove_pointer_t<decltype(control)>;
        if constexpr (std::is_same_v<Control, ui::Label>) {
            return MakeLabel(*control, isBuddy, parent, binding);
        } else if constexpr (std::is_same_v<Control, ui::Button>) {
            return MakeButton(*control, parent, binding);
        } else if constexpr (std::is_base_of_v<ui::CheckBox, Control>) {
            constexpr bool kRound = std::is_same_v<Control, ui::Option>;
            return MakeCheckBox(*control, kRound, parent, binding);
        } else if constexpr (std::is_same_v<Control, ui::TextBox>) {
            return MakeTextBox(*control, parent, binding);
        } else if constexpr (std::is_same_v<Control, ui::ComboBox>) {
            return MakeComboBox(*control, parent, binding);
        } else if constexpr (std::is_same_v<Control, ui::Frame>) {
            return MakeFrame(*control, parent, binding);
        } else if constexpr (std::is_same_v<Control, ui::Slider>) {
            return MakeSlider(*control, parent, binding);
        } else if constexpr (std::is_same_v<Control, ui::Picture>) {
            auto *picture = new QLabel(parent);
            BindPicture(*control, picture, binding.placed);
            return picture;
        } else if constexpr (std::is_same_v<Control, ui::KeyedTree>) {
            return new TreeView(*control, parent, !binding.placed);
        } else if constexpr (std::is_same_v<Control, ui::KeyedList>) {
            return new ListView(*control, parent,
                                binding.placed ? Positioning::Exact : Positioning::ByLayout);
        } else if constexpr (std::is_same_v<Control, ui::StatusBar>) {
            return new StatusBarView(*control, parent);
        } else if constexpr (std::is_same_v<Control, ui::ProgressBar>) {
            auto *bar = new QProgressBar(parent);
            BindProgress(*control, bar);
            return bar;
        } else if constexpr (std::is_same_v<Control, ui::Timer>) {
            BindTimer(*control, this);
            return nullptr;
        } else {
            return MakeArea(member.name, *control, parent, binding);
        }
    };
    QWidget *widget = std::visit(make, member.control);
    if (widget != nullptr)
        m_widgets[std::visit([](auto *control) { return AddressOf(control); }, member.control)] =
            widget;
    return widget;
}

QWidget *FormWindow::MakeArea(const std::string &controlName, ui::Area &area, QWidget *parent,
                              Binding binding)
{
    if (const WidgetMaker *maker = FindWidgetMaker(m_form.name, controlName))
        return (*maker)(m_form, parent);
    auto *widget = new QWidget(parent);
    Bind(area, widget, [&area, widget, binding] { ShowControl(area, widget, binding); });
    return widget;
}

void FormWindow::Build()
{
    std::set<const ui::Label *> buddies;
    for (const ui::Member &member : m_form.members)
        buddies.insert(member.label);
    for (const ui::Member &member : m_form.members) {
        const auto *label = std::get_if<ui::Label *>(&member.control);
        QWidget *widget =
            Make(member, WidgetOf(member.in, this), label != nullptr && buddies.contains(*label));
        if (widget == nullptr)
            continue;
        NamedPart(widget)->setObjectName(ToQt(member.name));
        NameBySpokenName(member, widget);
        m_inOrder.push_back(widget);
        if (member.label != nullptr)
            NameByLabel(*member.label, widget);
        ListenTo(member, widget);
    }
    if (m_form.acceptButton != nullptr)
        static_cast<QPushButton *>(WidgetOf(m_form.acceptButton))->setDefault(true);
    if (QWidget *first = WidgetOf(m_form.firstFocus); first != nullptr)
        first->setFocus();
}

// For a control without a caption; a caption is spoken by itself.
void FormWindow::NameBySpokenName(const ui::Member &member, QWidget *widget)
{
    const auto name = [widget](auto *control) {
        using Control = std::remove_pointer_t<decltype(control)>;
        if constexpr (std::is_base_of_v<ui::Area, Control> &&
                      !std::is_base_of_v<ui::Label, Control>)
            if (!control->SpokenName().empty())
                SpeakAs(widget, ToQt(control->SpokenName()));
    };
    std::visit(name, member.control);
}

void FormWindow::NameByLabel(const ui::Label &label, QWidget *widget)
{
    auto *shown = qobject_cast<QLabel *>(WidgetOf(&label));
    assert(shown != nullptr && "the label was added before the control that it names");
    shown->setBuddy(widget);
    SpeakAs(widget, SpokenText(label.Caption()));
}

// Notes the events for keys that the program handles before the widget, and for the loss of the
// focus.
void FormWindow::ListenTo(const ui::Member &member, QWidget *widget)
{
    if (auto *const *box = std::get_if<ui::TextBox *>(&member.control))
        m_typing[widget] = {[box = *box] { return box->keyPressed; },
                            [box = *box] { return box->lostFocus; }};
    if (auto *const *box = std::get_if<ui::ComboBox *>(&member.control))
        m_typing[widget] = {[box = *box] { return box->keyPressed; }, {}};
    widget->installEventFilter(this);
}

QWidget *FormWindow::WidgetOf(const ui::Area *control, QWidget *otherwise) const
{
    const auto found = m_widgets.find(control);
    return found == m_widgets.end() ? otherwise : found->second;
}

void FormWindow::OrderTabs()
{
    QWidget *before = nullptr;
    for (QWidget *widget : m_inOrder) {
        if (widget->focusPolicy() == Qt::NoFocus)
            continue;
        if (before != nullptr)
            setTabOrder(before, widget);
        before = widget;
    }
}

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
