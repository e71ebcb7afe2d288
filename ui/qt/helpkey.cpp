#include "ui/qt/helpkey.h"

#include "ui/qt/qttext.h"

#include <QApplication>
#include <QFileDialog>
#include <QKeyEvent>
#include <QLabel>

namespace ui::qt
{

namespace
{

bool IsHelpKey(const QEvent &event)
{
    if (event.type() != QEvent::KeyPress)
        return false;
    const auto &key = static_cast<const QKeyEvent &>(event);
    return key.key() == Qt::Key_F1 && key.modifiers() == Qt::NoModifier;
}

// The window that a widget belongs to; for the list of a combo box, the window with the box.
QWidget *WindowOf(QObject *watched)
{
    auto *widget = qobject_cast<QWidget *>(watched);
    if (widget == nullptr)
        return nullptr;
    QWidget *window = widget->window();
    while (window->windowType() == Qt::Popup && window->parentWidget() != nullptr)
        window = window->parentWidget()->window();
    return window;
}

} // namespace

HelpKey::HelpKey(Open open) : m_open(std::move(open))
{
    QCoreApplication::instance()->installEventFilter(this);
}

bool HelpKey::eventFilter(QObject *watched, QEvent *event)
{
    QWidget *window = IsHelpKey(*event) ? WindowOf(watched) : nullptr;
    if (window == nullptr || window->objectName() == QLatin1String("frmMain"))
        return false;
    QString message;
    for (const char *name : {"lblText", "lblPrompt"})
        if (const auto *label = window->findChild<QLabel *>(QLatin1String(name)))
            message = label->text();
    const bool choosesFile = qobject_cast<QFileDialog *>(window) != nullptr;
    m_open(choosesFile ? "dialogs" : FromQt(window->objectName()), FromQt(message));
    return true;
}

} // namespace ui::qt
