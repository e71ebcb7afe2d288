// browser/frmItemView.h - a list of items beside its information panel, as the main window and the
// search window show them: the widgets of a PanelForm and a KeyedList.
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

// It is `pctBorders` itself and holds `pctWeb` with its labels and pictures, `vsbBack`, and the
// list.
class ItemView : public QWidget
{
public:
    // `form` and `list` outlive the view; the list's widget is called `listName`. Fills in the
    // form's focusList and the labels' measureHeight while it lives.
    ItemView(PanelForm &form, ui::KeyedList &list, const char *listName, QWidget *parent);
    ~ItemView() override;

    ui::qt::ListView &List() { return *m_list; }

    // The panel and its bar in front of the list, whose left edge lies below them.
    void RaisePanel();

    // Follows a layout that has set the places.
    void ShowPanel();

    // The panel's type from this widget's font; its labels grow with it.
    void SetPanelFonts();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void BuildPanel();
    ui::qt::PageLabel *AddPageLabel(ui::Label &label, const char *name);
    bool ScrollPanel(const QWheelEvent &wheel);
    bool PanelKey(const QKeyEvent &key);
    QString PanelText(bool selectedOnly) const;

    PanelForm &m_form;
    ui::qt::PagePanel *m_panel; // pctWeb; owned by its parent as all that follows
    QScrollBar *m_scroll;       // vsbBack
    ui::qt::ListView *m_list;
    std::vector<std::pair<ui::Label *, ui::qt::PageLabel *>> m_pageLabels;
};

} // namespace browser
