#include "platform/qt/helpwindow.h"

#include "platform/posix/files.h"
#include "platform/qt/text.h"

#include <QIcon>
#include <QScreen>
#include <QShortcut>
#include <QTextBrowser>
#include <QVBoxLayout>

namespace platform::qt
{

namespace
{

constexpr std::size_t kMaxBytes = 4u << 20; // far beyond any help
constexpr QSize kSize(680, 600);            // pixels; smaller on a small screen
constexpr double kMargin = 16;              // pixels around the text

} // namespace

HelpWindow::HelpWindow() : m_text(new QTextBrowser(this))
{
    setObjectName(QStringLiteral("frmHelp"));
    setWindowIcon(QIcon(QStringLiteral(":/icons/app.svg")));
    m_text->setObjectName(QStringLiteral("txtHelp"));
    m_text->setFrameShape(QFrame::NoFrame);
    m_text->setOpenExternalLinks(true);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_text);
    auto *escape = new QShortcut(QKeySequence(Qt::Key_Escape), this);
    connect(escape, &QShortcut::activated, this, &QWidget::close);
    resize(kSize.boundedTo(screen()->availableSize()));
}

bool HelpWindow::Open(const std::string &file)
{
    const auto html = platform::posix::ReadRegularFile(file, kMaxBytes);
    if (!html)
        return false;
    m_text->setHtml(ToQt(*html));
    m_text->document()->setDocumentMargin(kMargin);
    setWindowTitle(m_text->documentTitle());
    setAccessibleName(windowTitle());
    m_text->setAccessibleName(windowTitle());
    if (isMinimized())
        showNormal();
    show();
    raise();
    activateWindow();
    return true;
}

} // namespace platform::qt
