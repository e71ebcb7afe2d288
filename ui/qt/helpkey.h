// ui/qt/helpkey.h - F1 in every window but the main one, whose menu has that key.
#pragma once

#include <QObject>
#include <functional>
#include <string>

namespace ui::qt
{

// While one lives, F1 calls `open` with the name of the window that has the keyboard, "dialogs" for
// one that chooses a file, and the message that it shows; the message is empty for any window but a
// box.
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
