#include "online/help/frmHelp.h"

#include "online/help/helpform.h"
#include "ui/qt/form.h"
#include "ui/qt/qttext.h"

#include <QTextBrowser>
#include <QTextDocument>
#include <QUrl>

namespace online
{

namespace
{

constexpr double kMargin = 12; // pixels around the text

// A page of the help. A click on a link opens its page; the words of the search are marked.
class HelpView : public QTextBrowser
{
public:
    HelpView(HelpForm &form, QWidget *parent) : QTextBrowser(parent), m_form(form)
    {
        setOpenLinks(false);
        connect(this, &QTextBrowser::anchorClicked, this,
                [this](const QUrl &link) { m_form.Open(ui::qt::FromQt(link.fragment())); });
        m_form.pageChanged = [this] { ShowPage(); };
        ShowPage();
    }
    ~HelpView() override { m_form.pageChanged = nullptr; }
    HelpView(const HelpView &) = delete;
    HelpView &operator=(const HelpView &) = delete;

private:
    void ShowPage()
    {
        const std::string html = m_form.ShownHtml();
        if (html != m_html) {
            m_html = html;
            setHtml(ui::qt::ToQt(html).replace(QLatin1String("<table>"),
                                               QLatin1String("<table cellpadding=\"4\">")));
            document()->setDocumentMargin(kMargin);
        }
        MarkWanted();
    }

    void MarkWanted()
    {
        QList<QTextEdit::ExtraSelection> marks;
        const QStringList words =
            ui::qt::ToQt(m_form.Wanted()).split(QLatin1Char(' '), Qt::SkipEmptyParts);
        for (const QString &word : words)
            for (QTextCursor at = document()->find(word); !at.isNull();
                 at = document()->find(word, at)) {
                QTextCharFormat look;
                look.setBackground(palette().highlight());
                look.setForeground(palette().highlightedText());
                marks.append({at, look});
            }
        setExtraSelections(marks);
        if (!marks.isEmpty()) {
            setTextCursor(marks.first().cursor); // scrolls to it
            moveCursor(QTextCursor::StartOfLine);
        }
    }

    HelpForm &m_form; // outlives its window
    std::string m_html;
};

} // namespace

void RegisterHelpWidget()
{
    ui::qt::RegisterWidget("frmHelp", "Page", [](ui::Form &form, QWidget *parent) -> QWidget * {
        return new HelpView(static_cast<HelpForm &>(form), parent);
    });
}

} // namespace online
