// The arrangement of the controls in a form's window: its layouts and its size.
#include "ui/qt/bindings.h"
#include "ui/qt/formwindow.h"

#include <QBoxLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QMargins>
#include <QScreen>

namespace ui::qt
{

namespace
{

// The largest size with which a resizable window opens, unless its own least size is larger: it
// then fits a screen of 800 by 600 pixels.
constexpr QSize kSmallScreen(790, 560);

constexpr int kGapPixels = 8; // besides the usual distance between controls
constexpr QMargins kTightMargins(8, 2, 8, 4);

// The gap beside a widget, which takes no room while the widget is hidden.
class GapBeside : public QSpacerItem
{
public:
    GapBeside(const QWidget &beside, bool inRow)
        : QSpacerItem(inRow ? kGapPixels : 0, inRow ? 0 : kGapPixels,
                      inRow ? QSizePolicy::Fixed : QSizePolicy::Minimum,
                      inRow ? QSizePolicy::Minimum : QSizePolicy::Fixed),
          m_beside(beside)
    {
    }
    QSize sizeHint() const override
    {
        return m_beside.isHidden() ? QSize(0, 0) : QSpacerItem::sizeHint();
    }
    QSize minimumSize() const override { return sizeHint(); }

private:
    const QWidget &m_beside; // the window deletes its layout first
};

} // namespace

void FormWindow::Arrange()
{
    const QSize least(ui::PixelsOfTwips(m_form.size.width), ui::PixelsOfTwips(m_form.size.height));
    if (m_form.layout.kind == ui::Layout::Kind::Empty) {
        for (const ui::Layout &inside : m_form.insides)
            Arranged(inside);
        resize(least);
        if (!m_form.resizable)
            setFixedSize(least);
        else
            setMinimumSize(PixelRect(m_form.leastSize).size());
        return;
    }
    auto *outer = new QVBoxLayout(this);
    AddTo(outer, m_form.layout, true);
    outer->setSizeConstraint(m_form.resizable ? QLayout::SetMinimumSize : QLayout::SetFixedSize);
    if (m_form.resizable) { // with its frame it must fit a small screen
        const QSize room = screen()->availableSize() - QSize(10, 40);
        resize(least.expandedTo(outer->sizeHint().boundedTo(kSmallScreen)).boundedTo(room));
    }
}

// Adds one part of a row or column. A filled part takes the remaining space.
void FormWindow::AddTo(QBoxLayout *box, const ui::Layout &part, bool filled)
{
    const int stretch = filled ? 1 : 0;
    if (part.kind == ui::Layout::Kind::Room)
        box->addStretch(1);
    else if (part.kind == ui::Layout::Kind::Gap && part.control != nullptr)
        box->addItem(
            new GapBeside(*WidgetOf(part.control), box->direction() == QBoxLayout::LeftToRight));
    else if (part.kind == ui::Layout::Kind::Gap)
        box->addSpacing(kGapPixels);
    else if (part.kind == ui::Layout::Kind::Control)
        box->addWidget(Arranged(part), stretch);
    else if (part.kind != ui::Layout::Kind::Empty)
        box->addLayout(MakeLayout(part), stretch);
}

// The widget of a part that is a control; the contents of a frame are arranged.
QWidget *FormWindow::Arranged(const ui::Layout &part)
{
    QWidget *widget = WidgetOf(part.control);
    if (!part.parts.empty()) {
        auto *inner = new QVBoxLayout(widget);
        const int margin = ui::PixelsOfTwips(part.margin);
        if (qobject_cast<QGroupBox *>(widget) == nullptr)
            inner->setContentsMargins(margin, margin, margin, margin);
        else if (part.parts.front().tight)
            inner->setContentsMargins(kTightMargins);
        for (const ui::Layout &content : part.parts)
            AddTo(inner, content, true);
    }
    return widget;
}

QLayout *FormWindow::MakeLayout(const ui::Layout &layout)
{
    if (layout.kind == ui::Layout::Kind::Grid) {
        auto *grid = new QGridLayout;
        int place = 0;
        for (const ui::Layout &part : layout.parts) {
            const int row = place / layout.columns;
            const int column = place % layout.columns;
            ++place;
            if (part.kind == ui::Layout::Kind::Control)
                grid->addWidget(Arranged(part), row, column);
            else if (part.kind != ui::Layout::Kind::Empty && part.kind != ui::Layout::Kind::Room)
                grid->addLayout(MakeLayout(part), row, column);
            if (part.filled)
                grid->setColumnStretch(column, 1);
        }
        return grid;
    }
    auto *box = new QBoxLayout(layout.kind == ui::Layout::Kind::Row ? QBoxLayout::LeftToRight
                                                                    : QBoxLayout::TopToBottom);
    if (layout.tight)
        box->setSpacing(0);
    for (const ui::Layout &part : layout.parts)
        AddTo(box, part, part.filled);
    return box;
}

// At a scale such as 150 percent the toolkit asks the window system for sizes in steps of whole
// pixels (two for one and a half). If the steps are counted from 0, a size may be less than the
// least size, and a row of controls is cut; so they are counted from the least size.
void FormWindow::CountStepsFromLeastSize()
{
    if (baseSize() != minimumSize())
        setBaseSize(minimumSize());
}

} // namespace ui::qt
