#include "ui/qt/views/listmodel.h"

#include "ui/qt/icons.h"
#include "ui/qt/qttext.h"
#include "ui/qt/views/rowdelegate.h"

#include <QBrush>
#include <QGuiApplication>
#include <QMimeData>
#include <QPalette>
#include <QUrl>

namespace ui::qt
{

namespace
{

QBrush DimmedText()
{
    return QGuiApplication::palette().brush(QPalette::Disabled, QPalette::Text);
}

} // namespace

ListModel::ListModel(ui::KeyedList &list, QObject *parent)
    : QAbstractTableModel(parent), m_list(list)
{
}

ui::RowId ListModel::RowOf(const QModelIndex &index) const
{
    if (!index.isValid() || m_list.Updating() || index.row() >= m_list.Count())
        return ui::kNoRow;
    return m_list.RowAt(index.row());
}

int ListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() || m_list.Updating() ? 0 : m_list.Count();
}

int ListModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() || m_list.Updating() ? 0 : static_cast<int>(m_list.Columns().size());
}

QString ListModel::CellText(ui::RowId row, int column) const
{
    return OneLineText(column == 0 ? m_list.Text(row) : m_list.SubItemAt(row, column));
}

// A screen reader speaks the name of a row, and for an empty cell the name of its column.
QString ListModel::AccessibleText(ui::RowId row, int column) const
{
    if (column == 0 && nameOfRow)
        return nameOfRow(row);
    QString text = CellText(row, column);
    if (column == 0 && text.isEmpty()) // only a picture; the text is in the next column
        text = CellText(row, 1);
    if (!text.isEmpty())
        return text;
    const QString words = TextOfEmpty(column);
    return words.isEmpty() ? headerData(column, Qt::Horizontal, Qt::DisplayRole).toString() : words;
}

QString ListModel::TextOfEmpty(int column) const
{
    const auto &columns = m_list.Columns();
    const auto place = static_cast<std::size_t>(column);
    return textOfEmpty && place < columns.size() ? textOfEmpty(columns[place].key) : QString();
}

// The reason why a row is dimmed; else the characters of the cell that cannot be seen.
QVariant ListModel::TipOf(ui::RowId row, int column) const
{
    if (m_list.IsDimmed(row))
        return ToQt(m_list.DimmedTip());
    const QString odd =
        OddCharactersShown(column == 0 ? m_list.Text(row) : m_list.SubItemAt(row, column));
    return odd.isEmpty() ? QVariant() : QVariant(odd);
}

QVariant ListModel::data(const QModelIndex &index, int role) const
{
    const ui::RowId row = RowOf(index);
    if (row == ui::kNoRow)
        return {};
    switch (role) {
    case Qt::DisplayRole:
        return CellText(row, index.column());
    case Qt::DecorationRole:
        return index.column() == 0 ? QVariant(Icon(m_list.Image(row))) : QVariant();
    case Qt::AccessibleTextRole:
        return AccessibleText(row, index.column());
    case Qt::ForegroundRole:
        return m_list.IsDimmed(row) ? QVariant(DimmedText()) : QVariant();
    case kTextOfEmptyRole:
        return TextOfEmpty(index.column());
    case Qt::ToolTipRole:
        return TipOf(row, index.column());
    case Qt::AccessibleDescriptionRole:
        return m_list.IsDimmed(row) ? QVariant(ToQt(m_list.DimmedTip())) : QVariant();
    default:
        return {};
    }
}

QVariant ListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    const auto &columns = m_list.Columns();
    if (orientation != Qt::Horizontal || section < 0 || section >= static_cast<int>(columns.size()))
        return {};
    const ui::ListColumn &column = columns[static_cast<std::size_t>(section)];
    if (role == Qt::DisplayRole)
        return LabelText(column.caption);
    if (role == Qt::AccessibleTextRole)
        return column.caption.empty() ? ToQt(column.key) : LabelText(column.caption);
    if (role == Qt::ToolTipRole && isHeaderCut && isHeaderCut(section))
        return TipText(LabelText(column.caption));
    if (role == Qt::TextAlignmentRole)
        return static_cast<int>(Qt::AlignLeft | Qt::AlignVCenter);
    return {};
}

Qt::ItemFlags ListModel::flags(const QModelIndex &index) const
{
    const ui::RowId row = RowOf(index);
    if (row == ui::kNoRow)
        return Qt::NoItemFlags;
    Qt::ItemFlags flags = Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemNeverHasChildren;
    if (fileOfRow && !fileOfRow(row).empty())
        flags |= Qt::ItemIsDragEnabled;
    return flags;
}

QStringList ListModel::mimeTypes() const
{
    return {QStringLiteral("text/uri-list")};
}

// Made from the bytes of the path, so that a name that is not valid UTF-8 stays complete. Empty
// when the row is not a file.
QByteArray ListModel::AddressOf(ui::RowId row) const
{
    const std::string path = fileOfRow ? fileOfRow(row) : std::string();
    return path.empty() ? QByteArray()
                        : "file://" + QByteArray::fromStdString(path).toPercentEncoding("/");
}

QMimeData *ListModel::Copy(const QList<int> &rows, const QList<int> &columns) const
{
    QStringList lines;
    QList<QUrl> urls;
    QByteArray files = "copy"; // the form that the file managers of one desktop need
    for (const int place : rows) {
        const ui::RowId row = m_list.RowAt(place);
        QStringList cells;
        for (const int column : columns)
            cells.append(CellText(row, column));
        lines.append(cells.join(QLatin1Char('\t')));
        if (const QByteArray address = AddressOf(row); !address.isEmpty()) {
            urls.append(QUrl::fromEncoded(address));
            files += '\n' + address;
        }
    }
    auto *data = new QMimeData; // owned by the clipboard
    data->setText(lines.join(QLatin1Char('\n')));
    if (!urls.isEmpty()) {
        data->setUrls(urls);
        data->setText(lines.join(QLatin1Char('\n'))); // the addresses are not the text of the rows
        data->setData(QStringLiteral("x-special/gnome-copied-files"), files);
    }
    return data;
}

QMimeData *ListModel::mimeData(const QModelIndexList &indexes) const
{
    QList<QUrl> urls;
    for (const QModelIndex &index : indexes) {
        const ui::RowId row = RowOf(index);
        if (index.column() != 0 || row == ui::kNoRow)
            continue;
        if (const QByteArray address = AddressOf(row); !address.isEmpty())
            urls.append(QUrl::fromEncoded(address));
    }
    if (urls.isEmpty())
        return nullptr;
    auto *data = new QMimeData;
    data->setUrls(urls);
    return data;
}

} // namespace ui::qt
