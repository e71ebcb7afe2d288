#include "ui/qt/views/listview.h"

#include "ui/qt/bindings.h"
#include "ui/qt/qttext.h"
#include "ui/qt/views/itemtips.h"
#include "ui/qt/views/rowdelegate.h"

#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QScrollBar>

namespace ui::qt
{

namespace
{

constexpr int kHintGap = 12;                // pixels from the middle to the hint, and to its button
constexpr int kFrame = 3;                   // pixels, of the frame that the parent cuts off
constexpr std::string_view kFiller = "Non"; // the key of the column that takes the remaining width

} // namespace

ListView::ListView(ui::KeyedList &list, QWidget *parent, Positioning positioning)
    : QTreeView(parent), m_list(list), m_positioning(positioning), m_model(list, this),
      m_picture(*this)
{
    setRootIsDecorated(false);
    setItemsExpandable(false);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    setSelectionMode(ExtendedSelection);
    setSelectionBehavior(SelectRows);
    setEditTriggers(NoEditTriggers);
    setDragEnabled(true);
    setDragDropMode(DragOnly);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollMode(ScrollPerPixel);
    setItemDelegate(new RowDelegate(this));
    header()->setStretchLastSection(false);
    header()->setSectionsMovable(false);
    header()->setSectionsClickable(true);
    header()->setHighlightSections(false);
    header()->setMinimumSectionSize(0);
    setModel(&m_model);
    m_model.isHeaderCut = [this](int column) {
        return header()->sectionSizeHint(column) > header()->sectionSize(column);
    };
    connect(selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &ListView::TakeSelection);
    connect(header(), &QHeaderView::sectionClicked, this, [this](int section) {
        if (m_list.onColumnClick)
            m_list.onColumnClick(section + 1);
    });
    connect(header(), &QHeaderView::sectionResized, this, [this](int section, int, int width) {
        if (m_showing)
            return;
        m_list.SetColumnWidth(m_list.Columns()[static_cast<std::size_t>(section)].key,
                              ui::TwipsOfPixels(width));
        FillWidth();
    });
    connect(verticalScrollBar(), &QScrollBar::actionTriggered, this, [this] {
        if (onScrolled)
            onScrolled(false);
    });
    list.rowsAboutToChange = [this] {
        m_picture.Keep(); // until the new rows have come
        m_model.BeginReset();
    };
    list.rowsChanged = [this] {
        m_model.EndReset();
        ShowRows();
        m_picture.Drop();
    };
    list.listChanged = [this](ui::ListChange change) { Changed(change); };
    // A regeneration changes the hint at each song.
    const auto showHintText = Throttled(this, [this] { ShowHintText(); });
    Bind(list, this, [this, showHintText] {
        Place();
        setHeaderHidden(m_list.HeadersHidden());
        ShowHintButton();
        showHintText();
    });
    ShowRows();
}

ListView::~ListView()
{
    m_list.rowsAboutToChange = nullptr;
    m_list.rowsChanged = nullptr;
    m_list.listChanged = nullptr;
    setModel(nullptr);
}

void ListView::SetLeftInset(int pixels)
{
    m_leftInset = pixels;
    Place();
}

// The list's place includes a frame that its parent cuts off; this view has no frame and is placed
// inside it.
void ListView::Place()
{
    QRect place = PixelRect(m_list.Place());
    if (m_positioning == Positioning::InCutFrame)
        place.adjust(kFrame, kFrame, 0, kFrame);
    place.setLeft(std::min(place.left() + m_leftInset, place.right()));
    if (m_positioning != Positioning::ByLayout && geometry() != place)
        setGeometry(place);
    ShowState(m_list, this);
}

void ListView::Changed(ui::ListChange change)
{
    if (m_showing)
        return;
    switch (change) {
    case ui::ListChange::Columns:
        if (header()->count() != static_cast<int>(m_list.Columns().size())) {
            m_model.BeginReset();
            m_model.EndReset();
            ShowRows();
        } else {
            ShowColumns();
        }
        break;
    case ui::ListChange::Order:
        ShowOrder();
        break;
    case ui::ListChange::Selection:
        ShowSelection();
        break;
    case ui::ListChange::Cells:
        viewport()->update();
        break;
    }
}

void ListView::ShowRows()
{
    ShowColumns();
    ShowSelection();
    ShowHintText();
    ShowHintButton();
}

bool ListView::ShowsHint() const
{
    return m_list.Count() == 0 && !m_list.Hint().empty();
}

void ListView::ShowHintText()
{
    setAccessibleDescription(ShowsHint() ? ToQt(m_list.Hint()) : QString());
    if (m_model.rowCount() == 0)
        viewport()->update();
}

// The hint's button is below the middle; the text ends above it.
void ListView::ShowHintButton()
{
    const bool hasButton = ShowsHint() && !m_list.HintButton().empty();
    if (hasButton && m_hintButton == nullptr) {
        m_hintButton = new QPushButton(viewport());
        Name(m_hintButton, "cmdHint");
        connect(m_hintButton, &QPushButton::clicked, this, [this] {
            if (m_list.onHintClick)
                m_list.onHintClick();
        });
    }
    if (m_hintButton == nullptr)
        return;
    m_hintButton->setText(MenuText(m_list.HintButton()));
    m_hintButton->resize(m_hintButton->sizeHint());
    m_hintButton->move((viewport()->width() - m_hintButton->width()) / 2,
                       viewport()->height() / 2 + kHintGap);
    m_hintButton->setVisible(hasButton);
}

void ListView::ShowColumns()
{
    const QScopedValueRollback following(m_showing, true);
    const auto &columns = m_list.Columns();
    for (int i = 0; i < static_cast<int>(columns.size()); ++i) {
        const ui::ListColumn &column = columns[static_cast<std::size_t>(i)];
        const int width = ui::PixelsOfTwips(column.widthTwips);
        header()->setSectionHidden(i, width <= 0);
        if (width > 0 && header()->sectionSize(i) != width)
            header()->resizeSection(i, width);
        if (header()->visualIndex(i) != column.position - 1)
            header()->moveSection(header()->visualIndex(i), column.position - 1);
    }
    const bool sorted = m_list.SortKey() > 0 && m_list.SortKey() < static_cast<int>(columns.size());
    header()->setSortIndicatorShown(sorted);
    if (sorted)
        header()->setSortIndicator(m_list.SortKey(),
                                   m_list.Descending() ? Qt::DescendingOrder : Qt::AscendingOrder);
    FillWidth();
}

// Gives the last column the width that the others leave, but never less than its own: the filler,
// and without headers any column, as the user cannot widen it there.
void ListView::FillWidth()
{
    const auto &columns = m_list.Columns();
    const int filler = static_cast<int>(columns.size()) - 1;
    if (filler < 0 || (columns.back().key != kFiller && !m_list.HeadersHidden()) ||
        header()->count() != filler + 1 || header()->isSectionHidden(filler))
        return;
    const QScopedValueRollback following(m_showing, true);
    const int left = viewport()->width() - (header()->length() - header()->sectionSize(filler));
    const int width = std::max(ui::PixelsOfTwips(columns.back().widthTwips), left);
    if (header()->sectionSize(filler) != width)
        header()->resizeSection(filler, width);
}

void ListView::CopySelection() const
{
    QList<int> rows, shown;
    for (int place = 0; place < m_list.Count(); ++place)
        if (m_list.IsSelected(m_list.RowAt(place)))
            rows.append(place);
    for (int place = 0; place < header()->count(); ++place) {
        const int column = header()->logicalIndex(place);
        if (!header()->isSectionHidden(column) &&
            !m_list.Columns()[static_cast<std::size_t>(column)].caption.empty())
            shown.append(column);
    }
    if (shown.isEmpty()) // a list without headers
        shown.append(m_list.Columns().size() > 1 ? 1 : 0);
    if (!rows.isEmpty())
        QGuiApplication::clipboard()->setMimeData(m_model.Copy(rows, shown));
}

void ListView::ShowOrder()
{
    {
        const QScopedValueRollback following(m_showing, true);
        m_model.BeginReset();
        m_model.EndReset();
    }
    ShowRows();
}

// Shows the list's selection in the view; neighbouring rows are selected together.
void ListView::ShowSelection()
{
    const QScopedValueRollback following(m_showing, true);
    const ui::RowId focus = m_list.SelectedItem();
    const int lastColumn = m_model.columnCount() - 1;
    QItemSelection selection;
    QModelIndex current;
    int first = -1;
    for (int i = 0; i <= m_list.Count() && m_list.SelectedCount() > 0; ++i) {
        const bool selected = i < m_list.Count() && m_list.IsSelected(m_list.RowAt(i));
        if (selected && first < 0)
            first = i;
        if (!selected && first >= 0) {
            selection.select(m_model.index(first, 0), m_model.index(i - 1, lastColumn));
            first = -1;
        }
    }
    if (focus != ui::kNoRow && lastColumn >= 0)
        current = m_model.index(m_list.DisplayIndex(focus), 0);
    selectionModel()->setCurrentIndex(current, QItemSelectionModel::NoUpdate);
    selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
    if (current.isValid())
        ListView::scrollTo(current);
}

// Passes the user's selection to the list.
void ListView::TakeSelection()
{
    if (m_showing || m_list.Updating())
        return;
    const QScopedValueRollback following(m_showing, true);
    std::vector<ui::RowId> rows;
    for (const QItemSelectionRange &range : selectionModel()->selection())
        for (int i = range.top(); i <= range.bottom(); ++i)
            rows.push_back(m_list.RowAt(i));
    const QModelIndex current = currentIndex();
    ui::RowId focus = rows.empty() ? ui::kNoRow : rows.back();
    if (current.isValid() && selectionModel()->isRowSelected(current.row(), {}))
        focus = m_model.RowOf(current);
    m_list.SetSelection(rows, focus);
    m_selectionChanged = true;
}

int ListView::SearchColumn() const
{
    for (int place = 0; place < header()->count(); ++place) {
        const int column = header()->logicalIndex(place);
        if (column > 0 && !header()->isSectionHidden(column))
            return column;
    }
    return 0;
}

bool ListView::RowBeginsWith(int displayIndex, int column, const QString &text) const
{
    // A letter takes at most four bytes in upper or lower case, so more text makes no difference.
    const auto most = static_cast<std::size_t>(text.size()) * 4;
    const std::string_view cell = m_list.SubItemAt(m_list.RowAt(displayIndex), column);
    return ToQt(cell.substr(0, most)).startsWith(text, Qt::CaseInsensitive);
}

void ListView::keyboardSearch(const QString &text)
{
    const int count = m_model.rowCount(), column = SearchColumn();
    const bool fresh =
        !m_sinceTyped.isValid() || m_sinceTyped.elapsed() > QApplication::keyboardInputInterval();
    m_sinceTyped.start();
    m_typed = fresh || text == m_typed ? text : m_typed + text;
    if (count == 0)
        return;
    // The first letter moves to the next row that begins with it; after more letters the current
    // row may match too.
    const int start = std::max(0, currentIndex().row() + (m_typed.size() == 1 ? 1 : 0));
    for (int step = 0; step < count; ++step) {
        const int row = (start + step) % count;
        if (RowBeginsWith(row, column, m_typed)) {
            setCurrentIndex(m_model.index(row, 0));
            return;
        }
    }
}

void ListView::mousePressEvent(QMouseEvent *event)
{
    const QModelIndex index = indexAt(event->position().toPoint());
    if (event->button() == Qt::RightButton) {
        if (onMenuAsked)
            onMenuAsked(m_model.RowOf(index), event->globalPosition().toPoint(), false);
        return;
    }
    m_pressed = event->button() == Qt::LeftButton;
    QTreeView::mousePressEvent(event);
}

void ListView::mouseReleaseEvent(QMouseEvent *event)
{
    QTreeView::mouseReleaseEvent(event);
    m_selectionChanged = false;
    if (event->button() != Qt::LeftButton || !std::exchange(m_pressed, false))
        return;
    if (indexAt(event->position().toPoint()).isValid() && m_list.onItemClick)
        m_list.onItemClick();
    if (m_list.onClick)
        m_list.onClick();
}

void ListView::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton && indexAt(event->position().toPoint()).isValid() &&
        m_list.onDblClick)
        m_list.onDblClick();
}

void ListView::scrollTo(const QModelIndex &index, ScrollHint hint)
{
    const int column = horizontalScrollBar()->value();
    QTreeView::scrollTo(index, hint);
    horizontalScrollBar()->setValue(column);
}

void ListView::startDrag(Qt::DropActions actions)
{
    m_pressed = false; // a press that becomes a drag is not a click
    QTreeView::startDrag(actions);
}

void ListView::keyPressEvent(QKeyEvent *event)
{
    const bool plain = (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    if (plain && (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)) {
        if (m_list.SelectedItem() != ui::kNoRow && m_list.onDblClick)
            m_list.onDblClick();
        return;
    }
    if (event->matches(QKeySequence::Copy)) {
        CopySelection();
        return;
    }
    if (event->key() == Qt::Key_F10 && event->modifiers() == Qt::ShiftModifier) {
        AskForMenuByKey();
        return;
    }
    m_selectionChanged = false;
    QTreeView::keyPressEvent(event);
    if (!std::exchange(m_selectionChanged, false))
        return;
    if (m_list.onItemClick)
        m_list.onItemClick();
    if (m_list.onClick)
        m_list.onClick();
}

// The mouse has opened the menu at its press already; this is for the menu key.
void ListView::contextMenuEvent(QContextMenuEvent *event)
{
    if (event->reason() != QContextMenuEvent::Mouse)
        AskForMenuByKey();
}

void ListView::AskForMenuByKey()
{
    if (!onMenuAsked)
        return;
    const QRect row = visualRect(currentIndex());
    const QPoint place = viewport()->mapToGlobal(
        viewport()->rect().intersects(row) ? row.bottomLeft() : QPoint(0, 0));
    onMenuAsked(m_list.SelectedItem(), place, true);
}

void ListView::wheelEvent(QWheelEvent *event)
{
    if (onScrolled)
        onScrolled(true);
    QTreeView::wheelEvent(event);
}

bool ListView::viewportEvent(QEvent *event)
{
    return ShowTipOfCutText(*this, event) || QTreeView::viewportEvent(event);
}

void ListView::resizeEvent(QResizeEvent *event)
{
    QTreeView::resizeEvent(event);
    FillWidth();
    ShowHintButton();
}

void ListView::paintEvent(QPaintEvent *event)
{
    QTreeView::paintEvent(event);
    if (m_model.rowCount() > 0 || m_list.Hint().empty())
        return;
    QPainter painter(viewport());
    painter.setPen(palette().color(QPalette::PlaceholderText));
    QRect place = viewport()->rect().adjusted(24, 24, -24, -24);
    Qt::Alignment where = Qt::AlignCenter;
    if (!m_list.HintButton().empty()) {
        place.setBottom(viewport()->height() / 2 - kHintGap);
        where = Qt::AlignHCenter | Qt::AlignBottom;
    }
    painter.drawText(place, static_cast<int>(where) | Qt::TextWordWrap, LabelText(m_list.Hint()));
}

} // namespace ui::qt
