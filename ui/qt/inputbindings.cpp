#include "ui/qt/inputbindings.h"

#include "ui/qt/bindings.h"
#include "ui/qt/icons.h"
#include "ui/qt/marking.h"
#include "ui/qt/qttext.h"
#include "ui/qt/textmap.h"
#include "ui/qt/widgets/elidedlabel.h"
#include "ui/qt/widgets/linkbutton.h"
#include "ui/qt/widgets/textpane.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScopedValueRollback>
#include <QScrollArea>
#include <QSlider>
#include <QStyle>
#include <QToolButton>

namespace ui::qt
{

namespace
{

constexpr int kIconPixels = 20;
constexpr int kTypedCharacters = 6; // the least width of a combo box for typing

// Runs `show` at each change of the control, and gives the focus to the widget when the program
// asks for it.
template <class Control>
void Follow(Control &control, QWidget *widget, const std::function<void()> &show)
{
    Bind(control, widget, show);
    QObject::connect(widget, &QObject::destroyed, [&control] { control.focusWanted = nullptr; });
    control.focusWanted = [widget] { widget->setFocus(); };
}

// Connects a text box with its widget, in both directions.
struct TextBoxBinding {
    ui::TextBox &box;
    bool following = false; // the widget is being changed from the control
    bool edited =
        false; // the user has changed the widget's text, and the control does not have it yet

    bool MultiLine() const { return box.multiLine; }

    ui::TextRange RangeOf(int anchor, int position) const
    {
        const int from = TextPosition(box.Text(), MultiLine(), std::min(anchor, position));
        const int to = TextPosition(box.Text(), MultiLine(), std::max(anchor, position));
        return {from, to - from};
    }

    // Takes the text that the user has typed.
    void Take(const QString &shown, int position)
    {
        const std::string taken = EditedText(box.Text(), MultiLine(), shown, position);
        box.Replace(taken, {TextPosition(taken, MultiLine(), position), 0});
    }
};

void ShowLine(const TextBoxBinding &text, QLineEdit *edit)
{
    const QString shown = ShownText(text.box.Text(), false);
    if (edit->text() != shown)
        edit->setText(shown);
    const ui::TextRange range = text.box.Selection();
    const int start = ShownPosition(text.box.Text(), false, range.start);
    const int end = ShownPosition(text.box.Text(), false, range.start + range.length);
    if (end > start && (edit->selectionStart() != start || edit->selectionEnd() != end))
        edit->setSelection(start, end - start);
    else if (end == start && (edit->hasSelectedText() || edit->cursorPosition() != start))
        edit->setCursorPosition(start);
    edit->setReadOnly(text.box.Locked());
}

QWidget *MakeLine(ui::TextBox &box, QWidget *parent, Binding binding)
{
    auto *edit = new QLineEdit(parent);
    if (box.columns > 0)
        edit->setMinimumWidth(edit->fontMetrics().averageCharWidth() * box.columns);
    auto text =
        std::make_shared<TextBoxBinding>(TextBoxBinding{box}); // shared by all hooks of the box
    Follow(box, edit, [text, edit, &box, binding] {
        const QScopedValueRollback following(text->following, true);
        ShowControl(box, edit, binding);
        ShowLine(*text, edit);
    });
    QObject::connect(edit, &QLineEdit::textEdited, edit, [text, edit](const QString &typed) {
        const QScopedValueRollback following(text->following, true);
        text->Take(typed, edit->cursorPosition());
    });
    const auto selected = [text, edit, &box] {
        if (text->following || edit->text() != ShownText(box.Text(), false))
            return;
        const int start = edit->hasSelectedText() ? edit->selectionStart() : edit->cursorPosition();
        const int end = edit->hasSelectedText() ? edit->selectionEnd() : start;
        const QScopedValueRollback following(text->following, true);
        box.SetSelection(text->RangeOf(start, end));
    };
    QObject::connect(edit, &QLineEdit::selectionChanged, edit, selected);
    QObject::connect(edit, &QLineEdit::cursorPositionChanged, edit, selected);
    return edit;
}

// The text of the widget with all its blanks: the toolkit's plain text loses the no-break spaces.
QString LinesOf(const QPlainTextEdit *edit)
{
    QString text = edit->document()->toRawText();
    text.replace(QChar(QChar::ParagraphSeparator), QLatin1Char('\n'));
    text.replace(QChar(QChar::LineSeparator), QLatin1Char('\n'));
    return text;
}

void ShowLines(const TextBoxBinding &text, QPlainTextEdit *edit)
{
    const QString shown = ShownText(text.box.Text(), true);
    if (LinesOf(edit) != shown)
        edit->setPlainText(shown);
    const ui::TextRange range = text.box.Selection();
    const int start = ShownPosition(text.box.Text(), true, range.start);
    const int end = ShownPosition(text.box.Text(), true, range.start + range.length);
    QTextCursor cursor = edit->textCursor();
    if (cursor.selectionStart() != start || cursor.selectionEnd() != end) {
        cursor.setPosition(start);
        cursor.setPosition(end, QTextCursor::KeepAnchor);
        edit->setTextCursor(cursor);
        edit->ensureCursorVisible();
    }
    edit->setReadOnly(text.box.Locked());
}

QWidget *MakeLines(ui::TextBox &box, QWidget *parent, Binding binding)
{
    auto *edit = new QPlainTextEdit(parent);
    edit->setTabChangesFocus(true);
    edit->setLineWrapMode(box.wrap ? QPlainTextEdit::WidgetWidth : QPlainTextEdit::NoWrap);
    KeepSelectionBright(edit);
    auto text =
        std::make_shared<TextBoxBinding>(TextBoxBinding{box}); // shared by all hooks of the box
    Follow(box, edit, [text, edit, &box, binding] {
        const QScopedValueRollback following(text->following, true);
        ShowControl(box, edit, binding);
        ShowLines(*text, edit);
    });
    // For a change the widget reports first the change, then the new place of the caret, then the
    // text.
    QObject::connect(edit->document(), &QTextDocument::contentsChange, edit,
                     [text] { text->edited = !text->following; });
    QObject::connect(edit, &QPlainTextEdit::textChanged, edit, [text, edit] {
        if (text->following)
            return;
        text->edited = false;
        const QScopedValueRollback following(text->following, true);
        text->Take(LinesOf(edit), edit->textCursor().position());
    });
    const auto selected = [text, edit, &box] {
        if (text->following || text->edited)
            return;
        const QScopedValueRollback following(text->following, true);
        const QTextCursor cursor = edit->textCursor();
        box.SetSelection(text->RangeOf(cursor.anchor(), cursor.position()));
    };
    QObject::connect(edit, &QPlainTextEdit::selectionChanged, edit, selected);
    QObject::connect(edit, &QPlainTextEdit::cursorPositionChanged, edit, selected);
    return edit;
}

} // namespace

void ShowControl(const ui::Area &control, QWidget *widget, Binding binding)
{
    if (binding.placed)
        ShowArea(control, widget);
    else
        ShowState(control, widget);
    const QString tip = TipText(ToQt(control.ToolTip()));
    if (widget->toolTip() != tip)
        widget->setToolTip(tip);
    ShowMark(widget, control.Marked());
}

void SpeakAs(QWidget *widget, const QString &words)
{
    widget->setAccessibleName(words);
    if (const auto *combo = qobject_cast<QComboBox *>(widget);
        combo != nullptr && combo->lineEdit() != nullptr)
        combo->lineEdit()->setAccessibleName(words);
}

QString SpokenText(std::string_view caption)
{
    QString words = LabelText(caption).simplified();
    while (words.endsWith(QLatin1Char(':')) || words.endsWith(QLatin1Char(' ')))
        words.chop(1);
    return words;
}

namespace
{

QWidget *MakeElidedLabel(ui::Label &label, QWidget *parent, Binding binding)
{
    auto *widget = new ElidedLabel(parent);
    widget->SetElideMode(Qt::ElideMiddle);
    widget->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    // A regeneration shows the name of each song.
    const auto showText =
        Throttled(widget, [&label, widget] { widget->SetFullText(LabelText(label.Caption())); });
    Follow(label, widget, [&label, widget, binding, showText] {
        ShowControl(label, widget, binding);
        showText();
    });
    return widget;
}

QWidget *MakePane(ui::Label &label, QWidget *parent, Binding binding)
{
    auto *pane = new TextPane(label.columns, parent);
    Follow(label, pane, [&label, pane, binding] {
        ShowControl(label, pane, binding);
        pane->SetText(LabelText(label.Caption()));
        pane->setAccessibleName(SpokenText(label.SpokenName()));
    });
    return pane;
}

Qt::Alignment AlignmentOf(const ui::Label &label, bool isBuddy)
{
    if (isBuddy || label.align == ui::Label::Align::Middle)
        return Qt::AlignLeft | Qt::AlignVCenter;
    return Qt::AlignTop |
           (label.align == ui::Label::Align::TopRight ? Qt::AlignRight : Qt::AlignLeft);
}

void MakeWhite(QLabel *widget)
{
    QPalette colours = widget->palette();
    colours.setColor(QPalette::WindowText, Qt::white);
    widget->setPalette(colours);
}

} // namespace

QWidget *MakeLabel(ui::Label &label, bool isBuddy, QWidget *parent, Binding binding)
{
    if (label.elided)
        return MakeElidedLabel(label, parent, binding);
    if (label.columns > 0)
        return MakePane(label, parent, binding);
    auto *widget = new QLabel(parent);
    widget->setTextFormat(Qt::PlainText);
    widget->setWordWrap(!isBuddy && !label.oneLine);
    widget->setAlignment(AlignmentOf(label, isBuddy));
    if (label.onDark)
        MakeWhite(widget);
    if (label.bold) {
        QFont font = widget->font();
        font.setBold(true);
        widget->setFont(font);
    }
    Follow(label, widget, [&label, widget, isBuddy, binding] {
        ShowControl(label, widget, binding);
        if (QFont font = widget->font();
            label.FontSize() > 0 && font.pointSize() != label.FontSize()) {
            font.setPointSize(label.FontSize());
            widget->setFont(font);
        }
        const QString text = isBuddy ? MenuText(label.Caption()) : LabelText(label.Caption());
        const bool isNew = text != widget->text();
        widget->setText(text);
        if (widget->buddy() != nullptr)
            SpeakAs(widget->buddy(), SpokenText(label.Caption()));
        if (label.paintsAtOnce && isNew)
            widget->repaint();
    });
    return widget;
}

namespace
{

QAbstractButton *MakeButtonWidget(const ui::Button &button, QWidget *parent)
{
    if (button.isFlat) {
        auto *flat = new QToolButton(parent);
        flat->setAutoRaise(true);
        return flat;
    }
    auto *widget = button.isLink ? new LinkButton(parent) : new QPushButton(parent);
    widget->setAutoDefault(false);
    return widget;
}

// A pane that scrolls. It does not take the focus: the controls inside do, and scroll into view.
QWidget *MakeScrollingFrame(ui::Frame &frame, QWidget *parent, Binding binding)
{
    auto *pane = new QScrollArea(parent);
    pane->setFrameShape(QFrame::NoFrame);
    pane->setFocusPolicy(Qt::NoFocus);
    pane->setWidgetResizable(true);
    pane->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    Follow(frame, pane, [&frame, pane, binding] { ShowControl(frame, pane, binding); });
    return pane;
}

} // namespace

QWidget *MakeButton(ui::Button &button, QWidget *parent, Binding binding)
{
    QAbstractButton *widget = MakeButtonWidget(button, parent);
    widget->setIconSize({kIconPixels, kIconPixels});
    Follow(button, widget, [&button, widget, binding] {
        ShowControl(button, widget, binding);
        const bool drawn = !button.Image().empty();
        widget->setIcon(Icon(button.Image()));
        widget->setText(drawn ? QString() : MenuText(button.Caption()));
        QString spoken = ToQt(button.SpokenName());
        if (spoken.isEmpty())
            spoken = drawn ? ToQt(button.ToolTip()) : SpokenText(button.Caption());
        widget->setAccessibleName(spoken);
    });
    QObject::connect(widget, &QAbstractButton::clicked, widget, [&button] { button.Click(); });
    return widget;
}

QWidget *MakeCheckBox(ui::CheckBox &box, bool round, QWidget *parent, Binding binding)
{
    QAbstractButton *widget =
        round ? static_cast<QAbstractButton *>(new QRadioButton(parent)) : new QCheckBox(parent);
    widget->setCheckable(true);
    Follow(box, widget, [&box, widget, binding] {
        const QSignalBlocker quiet(widget);
        ShowControl(box, widget, binding);
        widget->setText(MenuText(box.Caption()));
        widget->setAccessibleName(SpokenText(box.Caption()));
        widget->setChecked(box.Checked());
    });
    QObject::connect(widget, &QAbstractButton::toggled, widget,
                     [&box](bool checked) { box.SetChecked(checked); });
    return widget;
}

QWidget *MakeTextBox(ui::TextBox &box, QWidget *parent, Binding binding)
{
    return box.multiLine ? MakeLines(box, parent, binding) : MakeLine(box, parent, binding);
}

QWidget *MakeComboBox(ui::ComboBox &box, QWidget *parent, Binding binding)
{
    auto *widget = new QComboBox(parent);
    widget->setEditable(box.canType);
    widget->setInsertPolicy(QComboBox::NoInsert);
    if (box.canType) {
        widget->setCompleter(nullptr);
        // As wide as for a typed text, not as the longest entry.
        widget->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
        widget->setMinimumContentsLength(kTypedCharacters);
    }
    if (box.canNarrow)
        widget->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    widget->setMaxVisibleItems(20);
    widget->setFocusPolicy(Qt::StrongFocus); // not by the wheel
    Follow(box, widget, [&box, widget, binding] {
        const QSignalBlocker quiet(widget);
        ShowControl(box, widget, binding);
        QStringList items;
        for (const std::string &item : box.Items())
            items << OneLineText(item);
        QStringList shown;
        for (int i = 0; i < widget->count(); ++i)
            shown << widget->itemText(i);
        if (items != shown) {
            widget->clear();
            widget->addItems(items);
        }
        if (widget->currentIndex() != box.ListIndex())
            widget->setCurrentIndex(box.ListIndex());
        if (!box.canType)
            widget->setPlaceholderText(
                OneLineText(box.Text())); // shows a text that is not an entry
        else if (widget->currentText() != ToQt(box.Text()))
            widget->setEditText(ToQt(box.Text()));
    });
    QObject::connect(widget, qOverload<int>(&QComboBox::activated), widget,
                     [&box](int index) { box.SetListIndex(index); });
    QObject::connect(widget, &QComboBox::currentIndexChanged, widget, [&box](int index) {
        if (index >= 0)
            box.SetListIndex(index);
    });
    if (box.canType)
        QObject::connect(widget->lineEdit(), &QLineEdit::textEdited, widget,
                         [&box](const QString &text) { box.SetText(FromQt(text)); });
    return widget;
}

QWidget *MakeFrame(ui::Frame &frame, QWidget *parent, Binding binding)
{
    if (frame.scrolls)
        return MakeScrollingFrame(frame, parent, binding);
    if (!frame.bordered) {
        auto *holder = new QWidget(parent);
        Follow(frame, holder, [&frame, holder, binding] { ShowControl(frame, holder, binding); });
        return holder;
    }
    auto *group = new QGroupBox(parent);
    Follow(frame, group, [&frame, group, binding] {
        ShowControl(frame, group, binding);
        group->setTitle(MenuText(frame.Caption()));
        group->setAccessibleName(SpokenText(frame.Caption()));
    });
    return group;
}

QWidget *MakeSlider(ui::Slider &slider, QWidget *parent, Binding binding)
{
    auto *widget = new QSlider(Qt::Horizontal, parent);
    widget->setTracking(false); // the value changes when the thumb is released
    Follow(slider, widget, [&slider, widget, binding] {
        ShowControl(slider, widget, binding);
        const QSignalBlocker quiet(widget);
        if (!slider.ToolTip().empty())
            widget->setAccessibleName(ToQt(slider.ToolTip()));
        widget->setRange(0, slider.Max());
        widget->setPageStep(std::max(1, slider.LargeChange()));
        widget->setSingleStep(std::max(1, slider.SmallChange()));
        if (!widget->isSliderDown() || slider.Value() != widget->sliderPosition())
            widget->setValue(slider.Value());
    });
    QObject::connect(widget, &QSlider::sliderMoved, widget, [&slider](int) {
        if (slider.thumbMoved)
            slider.thumbMoved();
    });
    QObject::connect(widget, &QSlider::sliderPressed, widget,
                     [&slider] { slider.thumbHeld = true; });
    QObject::connect(widget, &QSlider::sliderReleased, widget, [&slider] {
        slider.thumbHeld = false;
        if (slider.thumbReleased)
            slider.thumbReleased();
    });
    QObject::connect(widget, &QSlider::valueChanged, widget,
                     [&slider](int value) { slider.SetValue(value); });
    return widget;
}

} // namespace ui::qt
