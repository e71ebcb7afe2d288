// browser/windows/frmItemView.h - a list of items with the information panel beside it, in the main
// window and the search window: the widgets of a PanelForm and a KeyedList.
#pragma once

#include "browser/panelform.h"

#include <QWidget>
#include <utility>
#include <vector>

class QKeyEvent;
class QScrollBar;
class QWheelEvent;

namespace ui::qt
{
class ListView;
class PageLabel;
class PagePanel;
} // namespace ui::qt

namespace browser
{

// The widget itself is `pctBorders`; it contains `pctWeb` with its labels and pictures, `vsbBack`,
// and the list.
class ItemView : public QWidget
{
public:
    // `form` and `list` outlive the view; `listName` is the object name of the list's widget. Sets
    // the form's focusList and placed, and the labels' measureHeight, and empties them in the
    // destructor.
    ItemView(PanelForm &form, ui::KeyedList &list, const char *listName, QWidget *parent);
    ~ItemView() override;

    ui::qt::ListView &List() { return *m_list; }
    QWidget &Panel(); // pctWeb

    // Puts the panel and its scroll bar in front of the list, whose left edge they cover.
    void RaisePanel();

protected:
    void changeEvent(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void BuildPanel();
    void SetPanelFonts();
    void ShowPanel();
    ui::qt::PageLabel *AddPageLabel(ui::Label &label, const char *name);
    bool ScrollPanel(const QWheelEvent &wheel);
    bool PanelKey(const QKeyEvent &key);
    QString PanelText(bool selectedOnly) const;

    PanelForm &m_form;
    ui::qt::PagePanel *m_panel; // pctWeb; it and all below are owned by their parent widgets
    QScrollBar *m_scroll;       // vsbBack
    ui::qt::ListView *m_list;
    std::vector<std::pair<ui::Label *, ui::qt::PageLabel *>> m_pageLabels;
};

} // namespace browser
