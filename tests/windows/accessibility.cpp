#include "tests/windows/accessibility.h"

#include <QAccessible>
#include <QMetaEnum>
#include <algorithm>

namespace tests
{

namespace
{

// A widget that only contains others, or is a part of the control around it, and needs no name.
bool IsContainer(QAccessible::Role role)
{
    switch (role) {
    case QAccessible::Client:
    case QAccessible::Pane:
    case QAccessible::LayeredPane:
    case QAccessible::Grip:
    case QAccessible::Border:
    case QAccessible::Separator:
    case QAccessible::Splitter:
    case QAccessible::Whitespace:
    case QAccessible::Indicator:
    case QAccessible::TitleBar:
    case QAccessible::MenuBar:
    case QAccessible::ToolBar:
    case QAccessible::Column:
        return true;
    default:
        return false;
    }
}

bool IsView(QAccessible::Role role)
{
    return role == QAccessible::Table || role == QAccessible::Tree || role == QAccessible::List;
}

// The scroll bars of a scrolling view are a part of it.
bool IsPartOfView(const QAccessibleInterface &item)
{
    const QObject *object = item.object();
    return item.role() == QAccessible::ScrollBar && object && object->parent() &&
           object->parent()->objectName().startsWith(QLatin1String("qt_scrollarea_"));
}

// A label speaks its text, which may be empty; a group of controls may have no caption.
bool NeedsName(const QAccessibleInterface &item)
{
    return item.role() != QAccessible::StaticText && item.role() != QAccessible::Graphic &&
           item.role() != QAccessible::Grouping && item.role() != QAccessible::ProgressBar &&
           item.role() != QAccessible::Window && item.role() != QAccessible::ScrollBar;
}

std::string Describe(const QAccessibleInterface &item, const std::string &path)
{
    const char *role = QMetaEnum::fromType<QAccessible::Role>().valueToKey(item.role());
    return std::string(role ? role : "role?") + " at " + path;
}

std::string PathOf(const QAccessibleInterface &item, const std::string &parent, int index)
{
    const QObject *object = item.object();
    const std::string name = object ? object->objectName().toStdString() : std::string();
    return parent + "/" + (name.empty() ? std::to_string(index) : name);
}

class Walk
{
public:
    explicit Walk(int maxRows) : m_maxRows(maxRows) {}

    void Visit(QAccessibleInterface &item, const std::string &path)
    {
        if (!item.isValid() || item.state().invisible)
            return;
        if (item.role() == QAccessible::NoRole)
            found.push_back("no role: " + path);
        else if (!IsContainer(item.role()) && !IsPartOfView(item) && NeedsName(item) &&
                 item.text(QAccessible::Name).trimmed().isEmpty())
            found.push_back(Describe(item, path));
        if (IsView(item.role()) && item.tableInterface())
            VisitRows(*item.tableInterface(), path);
        else
            VisitChildren(item, path);
    }

    std::vector<std::string> found;

private:
    void VisitChildren(QAccessibleInterface &item, const std::string &path)
    {
        for (int i = 0; i < item.childCount(); ++i)
            if (QAccessibleInterface *child = item.child(i))
                Visit(*child, PathOf(*child, path, i));
    }

    // The name of a row is that of its first cell; the other cells may be empty, as an album may
    // be.
    void VisitRows(QAccessibleTableInterface &table, const std::string &path)
    {
        const int rows = std::min(table.rowCount(), m_maxRows);
        for (int row = 0; row < rows; ++row) {
            QAccessibleInterface *cell = table.cellAt(row, 0);
            if (!cell || cell->role() == QAccessible::NoRole)
                found.push_back("no cell: " + path + "/row " + std::to_string(row));
            else if (cell->text(QAccessible::Name).trimmed().isEmpty())
                found.push_back(Describe(*cell, path + "/row " + std::to_string(row)));
        }
    }

    int m_maxRows;
};

} // namespace

std::vector<std::string> NamelessControls(QWidget &window, int maxRows)
{
    Walk walk(maxRows);
    if (QAccessibleInterface *root = QAccessible::queryAccessibleInterface(&window))
        walk.Visit(*root, window.objectName().toStdString());
    else
        walk.found.push_back("no accessible window");
    return walk.found;
}

} // namespace tests
