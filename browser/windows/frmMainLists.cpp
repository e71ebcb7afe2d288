// The main window's tree and list.
#include "browser/form/formpopup.h"
#include "browser/itemkinds.h"
#include "browser/itemlist.h"
#include "browser/windows/frmItemView.h"
#include "browser/windows/frmMain.h"
#include "ui/qt/bindings.h"
#include "ui/qt/qttext.h"
#include "ui/qt/views/listview.h"
#include "ui/qt/views/treeview.h"

namespace browser
{

namespace
{

// The numbers of two messages of the list, the wheel's and the scroll bar's (ListMessage).
constexpr int kWheelMessage = 0x20A, kScrollMessage = 0x115;

} // namespace

void frmMainWindow::BuildTree()
{
    ui::qt::Name(m_tree, "TV");
    m_tree->setFrameShape(QFrame::NoFrame);
    m_tree->installEventFilter(this);
    m_tree->Model().nameOfEmpty = [this](ui::NodeId node) {
        return ui::qt::ToQt(TextOfNone() + ", " + GetItemTypeText(m_form.TV.Key(node), false));
    };
    m_tree->Model().textOfEmpty = [](ui::NodeId) { return ui::qt::ToQt(TextOfNone()); };
    m_tree->Model().tipOf = [this](ui::NodeId node) {
        const auto folder = m_form.folderOfNode.find(std::string(m_form.TV.Key(node)));
        return folder == m_form.folderOfNode.end() ? QString() : ui::qt::ToQt(folder->second);
    };
}

void frmMainWindow::BuildList()
{
    m_items->List().onScrolled = [this](bool wheel) {
        ListMessage(m_form, wheel ? kWheelMessage : kScrollMessage);
    };
    m_items->List().onMenuAsked = [this](ui::RowId row, QPoint place, bool byKey) {
        m_anchor = place;
        LV_MouseDown(m_form, 2, byKey ? ui::kNoRow : row);
        m_anchor.reset();
    };
}

} // namespace browser
