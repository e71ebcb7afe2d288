#include "browser/windows/frmItemView.h"

#include "browser/itemkinds.h"
#include "runtime/error.h"
#include "shell/language.h"
#include "ui/qt/bindings.h"
#include "ui/qt/qttext.h"
#include "ui/qt/views/listview.h"
#include "ui/qt/widgets/pagelabel.h"
#include "ui/qt/widgets/pagepanel.h"

#include <QApplication>
#include <QClipboard>
#include <QKeyEvent>
#include <QScrollBar>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

namespace browser
{

namespace
{

// The text of a sub-item; empty when the rows have no sub-item of that name.
std::string SubItemOrEmpty(const ui::KeyedList &list, ui::RowId row, std::string_view key)
{
    try {
        return std::string(list.SubItem(row, key));
    } catch (const runtime::RuntimeError &) {
        return {};
    }
}

// The path of a file's row; empty for another row.
std::string FileOfRow(const ui::KeyedList &list, ui::RowId row)
{
    return list.Key(row).starts_with(kFileMarker) ? SubItemOrEmpty(list, row, "Path")
                                                  : std::string();
}

// Whether an empty cell of the column means that the song has no such value.
bool MayBeEmpty(std::string_view columnKey)
{
    constexpr std::string_view kFields[] = {"Title", "Artist", "Album", "Year", "Comment", "Genre"};
    return std::find(std::begin(kFields), std::end(kFields), columnKey) != std::end(kFields);
}

// The name of a row for a screen reader: title, artist and kind.
QString NameOfRow(const ui::KeyedList &list, ui::RowId row)
{
    QStringList words;
    for (const std::string &word :
         {std::string(list.SubItemAt(row, 1)), SubItemOrEmpty(list, row, "Artist"),
          GetItemTypeText(list.Key(row), false)})
        if (!word.empty())
            words.append(ui::qt::ToQt(word));
    return words.join(QLatin1String(", "));
}

} // namespace

ItemView::ItemView(PanelForm &form, ui::KeyedList &list, const char *listName, QWidget *parent)
    : QWidget(parent), m_form(form), m_panel(new ui::qt::PagePanel(this)),
      m_scroll(new QScrollBar(Qt::Vertical, this)), m_list(new ui::qt::ListView(list, this))
{
    BuildPanel();
    ui::qt::Name(m_list, listName);
    m_list->setFrameShape(QFrame::NoFrame);
    m_list->Model().nameOfRow = [&list](ui::RowId row) { return NameOfRow(list, row); };
    m_list->Model().fileOfRow = [&list](ui::RowId row) { return FileOfRow(list, row); };
    m_list->Model().textOfEmpty = [none = QString()](const std::string &columnKey) mutable {
        if (none.isEmpty()) // looked up only once, because it is needed for each cell
            none = ui::qt::ToQt(TextOfNone());
        return MayBeEmpty(columnKey) ? none : QString();
    };
    form.focusList = [this] { m_list->setFocus(); };
    form.placed = [this] { ShowPanel(); };
}

ItemView::~ItemView()
{
    m_form.focusList = nullptr;
    m_form.placed = nullptr;
    for (auto &[label, widget] : m_pageLabels)
        label->measureHeight = nullptr;
}

QWidget &ItemView::Panel()
{
    return *m_panel;
}

void ItemView::RaisePanel()
{
    m_list->lower();
    m_panel->raise();
    m_scroll->raise();
}

void ItemView::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        SetPanelFonts();
}

bool ItemView::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_panel && event->type() == QEvent::KeyPress)
        return PanelKey(*static_cast<QKeyEvent *>(event));
    if (event->type() == QEvent::Wheel)
        return ScrollPanel(*static_cast<QWheelEvent *>(event));
    return QWidget::eventFilter(watched, event);
}

void ItemView::BuildPanel()
{
    using namespace ui::qt;
    Name(this, "pctBorders");
    Bind(m_form.pctBorders, this, [this] { ShowArea(m_form.pctBorders, this); });
    Name(m_panel, "pctWeb");
    m_panel->setFocusPolicy(Qt::StrongFocus);
    m_panel->setAccessibleName(ToQt(shell::GetLanguageText("Information", "Panel", "Spoken")));
    Bind(m_form.pctWeb, m_panel, [this] { ShowArea(m_form.pctWeb, m_panel); });

    auto *rule = new PageRule(m_panel);
    Name(rule, "pctWebLine");
    Bind(m_form.pctWebLine, rule, [this, rule] { ShowArea(m_form.pctWebLine, rule); });
    // From the back of the pile: a widget that is made later is above the earlier ones.
    for (std::size_t i = m_form.ImgOthers.size(); i-- > 0;) {
        auto *other = new QLabel(rule);
        Name(other, i == 0 ? "ImgOthers(0)" : "ImgOthers(1)");
        BindPicture(m_form.ImgOthers[i], other);
    }
    auto *icon = new QLabel(rule);
    Name(icon, "ImgIcon");
    BindPicture(m_form.ImgIcon, icon);

    AddPageLabel(m_form.lblWebFolder, "lblWebFolder");
    AddPageLabel(m_form.WebItemName, "WebItemName");
    AddPageLabel(m_form.WebItemType, "WebItemType")->SetFaint(true);
    AddPageLabel(m_form.WebToolTip, "WebToolTip");
    AddPageLabel(m_form.lblInfo, "lblInfo")->SetFaintCaptions(true);
    SetPanelFonts();

    Name(m_scroll, "vsbBack");
    m_scroll->setFocusPolicy(Qt::NoFocus);
    m_scroll->setAccessibleName(
        ToQt(shell::GetLanguageText("Position in the information", "PanelBar", "Spoken")));
    BindScrollBar(m_form.vsbBack, m_scroll);
    for (QWidget *widget : {static_cast<QWidget *>(m_panel), static_cast<QWidget *>(m_scroll)})
        widget->installEventFilter(this);
    m_form.vsbBack.changed = [this, show = m_form.vsbBack.changed] {
        show();
        ShowPanel();
    };
}

ui::qt::PageLabel *ItemView::AddPageLabel(ui::Label &label, const char *name)
{
    auto *widget = new ui::qt::PageLabel(m_panel);
    ui::qt::Name(widget, name);
    label.measureHeight = [widget](const ui::Label &measured) {
        return ui::TwipsOfPixels(widget->HeightFor(ui::qt::LabelText(measured.Caption()),
                                                   ui::PixelsOfTwips(measured.Width())));
    };
    ui::qt::BindLabel(label, widget);
    widget->onSelect = [this] { // only one label has a selection
        for (auto &[other, shown] : m_pageLabels)
            shown->Deselect();
        m_panel->setFocus();
    };
    m_pageLabels.emplace_back(&label, widget);
    return widget;
}

// Sets the panel's fonts from this widget's font; the labels change their height. The heading is
// half as large again as the text, the name of the row is bold.
void ItemView::SetPanelFonts()
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
    if (!m_form.lblWebFolder.Caption().empty()) // the heading may have more lines now
        m_form.pctWebLine.SetTop(m_form.lblWebFolder.Place().Bottom());
}

// Handles keys: they scroll the panel, and copy the text that is selected on it, or all of its
// texts when none is.
bool ItemView::PanelKey(const QKeyEvent &key)
{
    if (key.matches(QKeySequence::Copy)) {
        QGuiApplication::clipboard()->setText(PanelText(true).isEmpty() ? PanelText(false)
                                                                        : PanelText(true));
        return true;
    }
    if (key.matches(QKeySequence::SelectAll)) {
        for (auto &[label, widget] : m_pageLabels)
            widget->SelectAll();
        return true;
    }
    if (!m_form.vsbBack.Visible())
        return false;
    const int line = ui::TwipsOfPixels(fontMetrics().lineSpacing());
    const int page = std::max(line, m_form.vsbBack.Height() - line);
    const int value = m_form.vsbBack.Value();
    const std::pair<int, int> places[] = {
        {Qt::Key_Up, value - line},
        {Qt::Key_Down, value + line},
        {Qt::Key_PageUp, value - page},
        {Qt::Key_PageDown, value + page},
        {Qt::Key_Home, 0},
        {Qt::Key_End, m_form.vsbBack.Max()},
    };
    for (const auto &[code, place] : places)
        if (key.key() == code) {
            m_form.vsbBack.SetValue(place);
            m_panel->setFocus(); // scrolling gives the focus to the list
            return true;
        }
    return false;
}

// The texts of the panel, or the selected parts of them, from top to bottom in lines.
QString ItemView::PanelText(bool selectedOnly) const
{
    QStringList texts;
    for (const auto &[label, widget] : m_pageLabels) {
        const QString text = selectedOnly ? widget->SelectedText() : widget->text();
        if (widget->isVisible() && !text.trimmed().isEmpty())
            texts.append(text);
    }
    return texts.join(QLatin1Char('\n'));
}

// The list leaves room for the panel's scroll bar, which covers its left edge.
void ItemView::ShowPanel()
{
    const bool barShows = m_form.vsbBack.Visible() && m_form.pctWeb.Visible();
    m_list->SetLeftInset(barShows ? m_scroll->width() : 0);
}

// The wheel over the panel or its bar scrolls by lines: the bar's own steps depend on the height of
// the text, and may be only a pixel or two. Returns: false when there is nothing to scroll.
bool ItemView::ScrollPanel(const QWheelEvent &wheel)
{
    if (!m_form.vsbBack.Visible())
        return false;
    constexpr double kNotch = 120; // in QWheelEvent::angleDelta
    const double lines = QApplication::wheelScrollLines() * wheel.angleDelta().y() / kNotch;
    const int pixels = wheel.pixelDelta().isNull()
                           ? static_cast<int>(std::lround(lines * fontMetrics().lineSpacing()))
                           : wheel.pixelDelta().y();
    m_form.vsbBack.SetValue(m_form.vsbBack.Value() - ui::TwipsOfPixels(pixels));
    return true;
}

} // namespace browser
