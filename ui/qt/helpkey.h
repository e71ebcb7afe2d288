// ui/qt/helpkey.h - F1 in every window except the main one, whose menu handles it.
#pragma once

#include <QObject>
#include <functional>
#include <string>

namespace ui::qt
{

// While one exists, F1 calls `open` with the name of the window that has the focus ("dialogs" for a
// window in which a file is chosen) and with the message that it shows, which is empty for a window
// that is not a message box.
class HelpKey : public QObject
{
public:
    using Open = std::function<void(const std::string &window, const std::string &message)>;
    explicit HelpKey(Open open);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    Open m_open;
};

} // namespace ui::qt
