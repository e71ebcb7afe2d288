#include "online/frmHistory.h"

#include "online/historyform.h"
#include "ui/qt/form.h"
#include "ui/qt/icons.h"
#include "ui/qt/qttext.h"

#include <QEvent>
#include <QScrollBar>
#include <QTextBrowser>
#include <QTextDocument>
#include <algorithm>
#include <vector>

namespace online
{

namespace
{

constexpr int kPicturePixels = 16;

// A read-only text. It scrolls to its end and takes the keyboard each time its window becomes
// active.
class HistoryView : public QTextBrowser
{
public:
    HistoryView(const RichText &box, QWidget *parent) : QTextBrowser(parent)
    {
        setOpenLinks(false);
        Fill(box);
    }

protected:
    // The widget has no window before this.
    void showEvent(QShowEvent *event) override
    {
        QTextBrowser::showEvent(event);
        window()->installEventFilter(this);
        ShowEnd();
    }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (watched == window() && event->type() == QEvent::WindowActivate)
            ShowEnd();
        return QTextBrowser::eventFilter(watched, event);
    }

private:
    void ShowEnd()
    {
        setFocus();
        moveCursor(QTextCursor::End);
        verticalScrollBar()->setValue(verticalScrollBar()->maximum());
    }

    void Fill(const RichText &box)
    {
        // The places where the format of the text changes, in ascending order.
        std::vector<std::size_t> places{0, box.text.size()};
        for (const RichText::Bold &bold : box.bold)
            places.insert(places.end(), {bold.begin, bold.end});
        for (const RichText::Picture &picture : box.pictures)
            places.insert(places.end(), {picture.at, picture.at + kObjectBytes});
        std::ranges::sort(places);

        QTextCursor cursor(document());
        for (std::size_t i = 0; i + 1 < places.size(); ++i)
            if (places[i] < places[i + 1])
                Insert(cursor, box, places[i], places[i + 1]);
    }

    void Insert(QTextCursor &cursor, const RichText &box, std::size_t begin, std::size_t end)
    {
        const auto picture = std::ranges::find(box.pictures, begin, &RichText::Picture::at);
        if (picture != box.pictures.end()) {
            InsertPicture(cursor, picture->key);
            return;
        }
        QTextCharFormat format;
        const bool bold = std::ranges::any_of(box.bold, [&](const RichText::Bold &stretch) {
            return stretch.begin <= begin && end <= stretch.end;
        });
        format.setFontWeight(bold ? QFont::Bold : QFont::Normal);
        QString text = ui::qt::ToQt(std::string_view(box.text).substr(begin, end - begin));
        cursor.insertText(text.replace(QLatin1Char('\r'), QLatin1Char('\n')), format);
    }

    void InsertPicture(QTextCursor &cursor, const std::string &key)
    {
        const QString name = QStringLiteral("history:") + ui::qt::ToQt(key);
        const qreal ratio = devicePixelRatioF();
        QImage image =
            ui::qt::Icon(key).pixmap(QSize(kPicturePixels, kPicturePixels), ratio).toImage();
        document()->addResource(QTextDocument::ImageResource, QUrl(name), image);
        QTextImageFormat format;
        format.setName(name);
        format.setWidth(kPicturePixels);
        format.setHeight(kPicturePixels);
        format.setVerticalAlignment(QTextCharFormat::AlignMiddle);
        format.setToolTip(ui::qt::ToQt(key));
        cursor.insertImage(format);
    }

    static constexpr std::size_t kObjectBytes = 3; // U+FFFC in UTF-8
};

} // namespace

void RegisterHistoryWidget()
{
    ui::qt::RegisterWidget("frmHistory", "History", [](ui::Form &form, QWidget *parent) {
        auto *view = new HistoryView(static_cast<HistoryForm &>(form).box, parent);
        view->setAccessibleName(ui::qt::ToQt(form.Title()));
        return view;
    });
}

} // namespace online
