// ui/qt/views/listmodel.h - a ui::KeyedList as a model for the toolkit's views. Row r of the model
// is row r in the order shown; column c of the model is column c + 1 of the list, wherever it is
// shown. The model has no copy of the rows.
#pragma once

#include "ui/controls/inputs/keyedlist.h"

#include <QAbstractTableModel>
#include <functional>

namespace ui::qt
{

class ListModel : public QAbstractTableModel
{
public:
    // `list` outlives the model.
    ListModel(ui::KeyedList &list, QObject *parent);

    // The row of an index; kNoRow for an invalid one and during an update of the list.
    ui::RowId RowOf(const QModelIndex &index) const;

    // Called by the view: all rows are about to be replaced; all rows have been replaced.
    void BeginReset() { beginResetModel(); }
    void EndReset() { endResetModel(); }

    // The words of a screen reader for a row whose main text is empty. Set by the window.
    std::function<QString(ui::RowId)> nameOfRow;

    // The path (bytes) of the file of a row; empty for a row that is not a file. Set by the window;
    // rows with a path can be dragged out.
    std::function<std::string(ui::RowId)> fileOfRow;

    // The text that is drawn in empty cells of the column with this key, and spoken by screen
    // readers; empty for none. Set by the window.
    std::function<QString(const std::string &columnKey)> textOfEmpty;

    // Whether the header of the column is too narrow for its caption; a tip then shows the caption.
    // Set by the view.
    std::function<bool(int column)> isHeaderCut;

    // The data to copy for these rows (display indexes): the texts of `columns` (zero-based, in the
    // order shown) as lines with tabs between the texts, and the rows that are files as a list of
    // files. The caller owns the result.
    [[nodiscard]] QMimeData *Copy(const QList<int> &rows, const QList<int> &columns) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QStringList mimeTypes() const override;
    QMimeData *mimeData(const QModelIndexList &indexes) const override;
    Qt::DropActions supportedDragActions() const override { return Qt::CopyAction; }

private:
    QString CellText(ui::RowId row, int column) const;
    QString AccessibleText(ui::RowId row, int column) const;
    QString TextOfEmpty(int column) const;
    QVariant TipOf(ui::RowId row, int column) const;
    QByteArray AddressOf(ui::RowId row) const;

    ui::KeyedList &m_list;
};

} // namespace ui::qt
