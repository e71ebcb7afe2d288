// The main window's tree, list and splitter.
#include "browser/itemkinds.h"
#include "browser/itemlist.h"
#include "browser/windows/frmItemView.h"
#include "browser/windows/frmMain.h"
#include "ui/qt/bindings.h"
#include "ui/qt/qttext.h"
#include "ui/qt/views/listview.h"
#include "ui/qt/views/treeview.h"
#include "ui/qt/widgets/splittergrip.h"

#include <QMouseEvent>

namespace browser
{

namespace
{

constexpr int kKeyStepTwips = 150; // an arrow key moves the splitter ten pixels

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

void frmMainWindow::BuildSeparator()
{
    ui::qt::Name(m_separator, "Separator");
    m_separator->setFocusPolicy(Qt::TabFocus);
    m_separator->installEventFilter(this);
    ui::qt::Name(m_grip, "SeparatorGrip");
    m_grip->setCursor(Qt::SplitHCursor);
    m_grip->installEventFilter(this);
    ui::qt::Bind(m_form.Separator, m_separator, [this] {
        ui::qt::ShowArea(m_form.Separator, m_separator);
        m_grip->setGeometry(
            m_separator->geometry().adjusted(-ui::qt::kGripPixels, 0, ui::qt::kGripPixels, 0));
    });
}

void frmMainWindow::DragSeparator(QEvent *event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress:
        // The distance at which it was grabbed, so that the separator does not jump to the mouse.
        m_grabbedAt = ui::qt::GrabbedBeside(static_cast<QMouseEvent *>(event)->position().x() -
                                                ui::qt::kGripPixels,
                                            m_separator->width());
        Separator_MouseDown(m_form);
        break;
    case QEvent::MouseMove:
        Separator_MouseMove(m_form, (static_cast<QMouseEvent *>(event)->position().x() -
                                     ui::qt::kGripPixels - m_grabbedAt) *
                                        ui::kTwipsPerPixel);
        break;
    case QEvent::MouseButtonRelease:
        Separator_MouseUp(m_form);
        break;
    case QEvent::KeyPress:
        MoveSeparatorByKey(static_cast<QKeyEvent *>(event)->key());
        break;
    case QEvent::FocusIn:
    case QEvent::FocusOut:
        m_separator->setAutoFillBackground(event->type() == QEvent::FocusIn);
        m_separator->setBackgroundRole(QPalette::Highlight);
        break;
    default:
        break;
    }
}

void frmMainWindow::MoveSeparatorByKey(int key)
{
    if (key != Qt::Key_Left && key != Qt::Key_Right)
        return;
    Separator_MouseDown(m_form);
    Separator_MouseMove(m_form, key == Qt::Key_Left ? -kKeyStepTwips : kKeyStepTwips);
    Separator_MouseUp(m_form);
}

} // namespace browser
