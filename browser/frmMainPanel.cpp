// The main window's information panel: a page beside the list.
#include "browser/frmMain.h"
#include "ui/qt/bindings.h"
#include "ui/qt/listview.h"
#include "ui/qt/pagelabel.h"
#include "ui/qt/pagepanel.h"
#include "ui/qt/qttext.h"

#include <QApplication>
#include <QScrollBar>
#include <QWheelEvent>
#include <cmath>

namespace browser
{

void frmMainWindow::BuildPanel()
{
    using namespace ui::qt;
    Name(m_borders, "pctBorders");
    Bind(m_form.pctBorders, m_borders, [this] { ShowArea(m_form.pctBorders, m_borders); });
    Name(m_panel, "pctWeb");
    Bind(m_form.pctWeb, m_panel, [this] { ShowArea(m_form.pctWeb, m_panel); });

    auto *rule = new PageRule(m_panel);
    Name(rule, "pctWebLine");
    Bind(m_form.pctWebLine, rule, [this, rule] { ShowArea(m_form.pctWebLine, rule); });
    // The pile from its back: what is made later lies above.
    for (std::size_t i = m_form.ImgOthers.size(); i-- > 0;) {
        auto *other = new QLabel(rule);
        Name(other, i == 0 ? "ImgOthers(0)" : "ImgOthers(1)");
        BindPicture(m_form.ImgOthers[i], other);
    }
    auto *icon = new QLabel(rule);
    Name(icon, "ImgIcon");
    BindPicture(m_form.ImgIcon, icon);

    AddPageLabel(m_form.lblWebFolder, "lblWebFolder", font());
    AddPageLabel(m_form.WebItemName, "WebItemName", font());
    AddPageLabel(m_form.WebItemType, "WebItemType", font())->SetFaint(true);
    AddPageLabel(m_form.WebToolTip, "WebToolTip", font());
    AddPageLabel(m_form.lblInfo, "lblInfo", font())->SetFaintCaptions(true);
    SetPanelFonts();

    Name(m_scroll, "vsbBack");
    m_scroll->setFocusPolicy(Qt::NoFocus);
    BindScrollBar(m_form.vsbBack, m_scroll);
    for (QWidget *widget : {static_cast<QWidget *>(m_panel), static_cast<QWidget *>(m_scroll)})
        widget->installEventFilter(this);
    m_form.vsbBack.changed = [this, show = m_form.vsbBack.changed] {
        show();
        ShowPanel();
    };
}

ui::qt::PageLabel *frmMainWindow::AddPageLabel(ui::Label &label, const char *name,
                                               const QFont &font)
{
    auto *widget = new ui::qt::PageLabel(m_panel);
    ui::qt::Name(widget, name);
    widget->setFont(font);
    label.measureHeight = [widget](const ui::Label &measured) {
        return ui::TwipsOfPixels(widget->HeightFor(ui::qt::LabelText(measured.Caption()),
                                                   ui::PixelsOfTwips(measured.Width())));
    };
    ui::qt::BindLabel(label, widget);
    m_pageLabels.emplace_back(&label, widget);
    return widget;
}

// A page's type: the heading half as large again as the text, the row's name bold.
void frmMainWindow::SetPanelFonts()
{
    for (auto &[label, widget] : m_pageLabels) {
        QFont type = font();
        if (label == &m_form.lblWebFolder) {
            type.setPointSizeF(type.pointSizeF() * 1.5);
            type.setWeight(QFont::DemiBold);
        } else if (label == &m_form.WebItemName) {
            type.setPointSizeF(type.pointSizeF() * 1.1);
            type.setBold(true);
        }
        widget->setFont(type);
        label->FitHeight();
    }
}

// The list keeps clear of the panel's scroll bar, which stands over its left edge.
void frmMainWindow::ShowPanel()
{
    const bool barShows = m_form.vsbBack.Visible() && m_form.pctWeb.Visible();
    m_list->SetLeftInset(barShows ? m_scroll->width() : 0);
}

// The wheel over the panel or its bar moves the text by lines: the bar's own steps are shares of
// the way, a pixel or two of a short one. False where there is nothing to scroll.
bool frmMainWindow::ScrollPanel(const QWheelEvent &wheel)
{
    if (!m_form.vsbBack.Visible())
        return false;
    constexpr double kNotch = 120; // of QWheelEvent::angleDelta
    const double lines = QApplication::wheelScrollLines() * wheel.angleDelta().y() / kNotch;
    const int pixels = wheel.pixelDelta().isNull()
                           ? static_cast<int>(std::lround(lines * fontMetrics().lineSpacing()))
                           : wheel.pixelDelta().y();
    m_form.vsbBack.SetValue(m_form.vsbBack.Value() - ui::TwipsOfPixels(pixels));
    return true;
}

} // namespace browser
