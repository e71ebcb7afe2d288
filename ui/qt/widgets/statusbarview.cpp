#include "ui/qt/widgets/statusbarview.h"

#include "ui/qt/bindings.h"
#include "ui/qt/qttext.h"
#include "ui/qt/widgets/elidedlabel.h"
#include "ui/twips.h"

#include <QPainter>
#include <algorithm>

namespace ui::qt
{

namespace
{

constexpr int kPadding = 5; // pixels between a panel's edge and its text

} // namespace

StatusBarView::StatusBarView(ui::StatusBar &bar, QWidget *parent, bool placed)
    : QWidget(parent), m_bar(bar), m_grip(new QSizeGrip(this))
{
    for (const ui::StatusPanel &panel : bar.Panels()) {
        auto *label = new ElidedLabel(this);
        label->setObjectName(ToQt(panel.key));
        label->setAccessibleName(ToQt(panel.key));
        m_labels.push_back(label);
    }
    m_grip->setAccessibleName(QStringLiteral("SizeGrip"));
    BindThrottled(bar, this, [this] { ShowPanels(); });
    bar.changed = [this, placed, panels = bar.changed] {
        if (placed) // at once, with the rest of the window
            ShowArea(m_bar, this);
        else
            ShowState(m_bar, this);
        panels();
    };
    bar.changed();
}

QSize StatusBarView::sizeHint() const
{
    return {200, fontMetrics().height() + 10};
}

void StatusBarView::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    ShowPanels();
}

// Shows texts and widths; the panels are side by side in their order.
void StatusBarView::ShowPanels()
{
    int left = 0;
    for (std::size_t i = 0; i < m_labels.size(); ++i) {
        const ui::StatusPanel &panel = m_bar.Panels()[i];
        const int panelWidth = std::max(0, ui::PixelsOfTwips(panel.widthTwips));
        const QRect place(left + kPadding, 1, std::max(0, panelWidth - 2 * kPadding), height() - 1);
        if (m_labels[i]->geometry() != place)
            m_labels[i]->setGeometry(place);
        m_labels[i]->SetFullText(LabelText(panel.text));
        left += panelWidth;
    }
    const QSize grip = m_grip->sizeHint();
    m_grip->setGeometry(width() - grip.width(), height() - grip.height(), grip.width(),
                        grip.height());
    update();
}

void StatusBarView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    const QColor line = palette().color(QPalette::Mid);
    painter.setPen(line);
    painter.drawLine(0, 0, width(), 0);
    int left = 0;
    for (const ui::StatusPanel &panel : m_bar.Panels()) {
        left += ui::PixelsOfTwips(panel.widthTwips);
        painter.drawLine(left - 1, 4, left - 1, height() - 4);
    }
}

} // namespace ui::qt
