// ui/qt/listmodel.h - a ui::KeyedList as the toolkit's views ask for it. Row r of the model is the
// row that the list shows in place r; column c of the model is the list's column c + 1, wherever it
// stands. The model keeps no row of its own.
#pragma once

#include "ui/controls/keyedlist.h"

#include <QAbstractTableModel>
#include <functional>

namespace ui::qt
{

class ListModel : public QAbstractTableModel
{
public:
    // `list` outlives the model.
    ListModel(ui::KeyedList &list, QObject *parent);

    // The list's row of an index; kNoRow for an invalid one and while the list is in update.
    ui::RowId RowOf(const QModelIndex &index) const;

    // Called by the view: all rows are about to be replaced, and were replaced.
    void BeginReset() { beginResetModel(); }
    void EndReset() { endResetModel(); }

    // What a screen reader says of a row, whose main text is empty. Set by the window.
    std::function<QString(ui::RowId)> nameOfRow;

    // The path of the file that a row is, byte for byte; empty for a row that is none. Set by the
    // window; rows with a path can be dragged out.
    std::function<std::string(ui::RowId)> fileOfRow;

    // The words that are drawn in the empty cells of the column with this key; empty for none. A
    // screen reader hears them too. Set by the window.
    std::function<QString(const std::string &columnKey)> textOfEmpty;

    // Whether the header of the column is too narrow for its caption; a tip then shows that. Set by
    // the view.
    std::function<bool(int column)> isHeaderCut;

    // What is copied of these rows, places in the list: their visible columns as lines of text with
    // tabs, in the order that shows, and those that are files as a list of files.
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
