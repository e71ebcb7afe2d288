#include "ui/qt/formwindow.h"

#include "platform/qt/modalwait.h"
#include "ui/qt/bindings.h"
#include "ui/qt/inputbindings.h"
#include "ui/qt/qttext.h"
#include "ui/qt/views/listview.h"
#include "ui/qt/views/treeview.h"
#include "ui/qt/widgetmakers.h"
#include "ui/qt/widgets/splitterview.h"
#include "ui/qt/widgets/statusbarview.h"
#include "ui/qt/widgets/textpane.h"

#include <QIcon>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollArea>
#include <algorithm>
#include <cassert>
#include <set>

namespace ui::qt
{

namespace
{

// The widget that shows the contents of a control: the label inside a pane that scrolls.
QWidget *NamedPart(QWidget *widget)
{
    const auto *pane = dynamic_cast<TextPane *>(widget);
    return pane != nullptr ? pane->Text() : widget;
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
    if (m_form.isIndependent)
        setWindowFlags(Qt::Window);
    else if (m_form.framed)
        setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    else
        setWindowFlags(Qt::SplashScreen | Qt::FramelessWindowHint);
    Build();
    OrderTabs();
    Arrange();
    ui::Notify(form.onMeasure);
    Bind(form, this, [this] { ShowForm(); });
    form.SetHosted(true);
    setProperty(platform::qt::kOwnsNoBox, form.overModal);
}

FormWindow::~FormWindow()
{
    for (const ui::Member &member : m_form.members)
        LetMeasure(member, nullptr);
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
    if (member.in != nullptr && member.in->scrolls)
        return false;
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
        } else if constexpr (std::is_same_v<Control, ui::Splitter>) {
            return new SplitterView(*control, parent);
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
            return new StatusBarView(*control, parent, binding.placed);
        } else if constexpr (std::is_same_v<Control, ui::ProgressBar>) {
            auto *bar = new QProgressBar(parent);
            BindProgress(*control, bar);
            return bar;
        } else if constexpr (std::is_same_v<Control, ui::Timer>) {
            BindTimer(*control, this);
            return nullptr;
        } else {
            auto *widget = new QWidget(parent);
            Bind(*control, widget,
                 [control, widget, binding] { ShowControl(*control, widget, binding); });
            return widget;
        }
    };
    return std::visit(make, member.control);
}

// The same; the window's own kind of widget where a maker is registered for it.
QWidget *FormWindow::MakeOwn(const ui::Member &member, QWidget *parent, bool isBuddy)
{
    const WidgetMaker *maker = FindWidgetMaker(m_form.name, member.name);
    QWidget *widget = maker != nullptr ? (*maker)(m_form, parent) : Make(member, parent, isBuddy);
    if (widget == nullptr)
        return nullptr;
    m_widgets[std::visit([](auto *control) { return AddressOf(control); }, member.control)] =
        widget;
    if (auto *pane = qobject_cast<QScrollArea *>(parent); pane != nullptr)
        pane->setWidget(widget);
    return widget;
}

void FormWindow::Build()
{
    std::set<const ui::Label *> buddies;
    for (const ui::Member &member : m_form.members)
        buddies.insert(member.label);
    for (const ui::Member &member : m_form.members) {
        const auto *label = std::get_if<ui::Label *>(&member.control);
        QWidget *widget = MakeOwn(member, WidgetOf(member.in, this),
                                  label != nullptr && buddies.contains(*label));
        if (widget == nullptr)
            continue;
        NamedPart(widget)->setObjectName(ToQt(member.name));
        NameBySpokenName(member, widget);
        LetMeasure(member, widget);
        m_inOrder.push_back(widget);
        if (member.label != nullptr)
            NameByLabel(*member.label, widget);
        ListenTo(member, widget);
    }
    if (m_form.acceptButton != nullptr && m_form.acceptsIn == nullptr)
        static_cast<QPushButton *>(WidgetOf(m_form.acceptButton))->setDefault(true);
    if (QWidget *first = WidgetOf(m_form.firstFocus); first != nullptr)
        first->setFocus();
}

// Sets what NeededSize calls, or takes it back (null).
void FormWindow::LetMeasure(const ui::Member &member, QWidget *widget)
{
    const auto measure = [widget](auto *control) {
        using Control = std::remove_pointer_t<decltype(control)>;
        if constexpr (std::is_base_of_v<ui::Area, Control>) {
            control->measureSize = nullptr;
            if (widget != nullptr)
                control->measureSize = [widget] {
                    const QSize size = widget->sizeHint();
                    return ui::Rect{0, 0, ui::TwipsOfPixels(size.width()),
                                    ui::TwipsOfPixels(size.height())};
                };
        }
    };
    std::visit(measure, member.control);
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

} // namespace ui::qt
