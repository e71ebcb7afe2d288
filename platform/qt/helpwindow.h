// platform/qt/helpwindow.h - the viewer of the help file, a window beside the others.
#pragma once

#include <QWidget>
#include <string>

class QTextBrowser;

namespace platform::qt
{

class HelpWindow : public QWidget
{
public:
    HelpWindow();

    // Reads `file` (HTML in UTF-8; a path, byte for byte) and shows it from its beginning, in front
    // of the other windows. False when it cannot be read: then nothing shows.
    bool Open(const std::string &file);

private:
    QTextBrowser *m_text; // owned by this window
};

} // namespace platform::qt
