#include "platform/qt/qtdesktop.h"

#include "platform/posix/spawn.h"
#include "platform/qt/boxes.h"
#include "platform/qt/modalwait.h"
#include "platform/qt/text.h"

#include <QApplication>
#include <QClipboard>
#include <QDesktopServices>
#include <QFileDialog>
#include <QUrl>

namespace platform::qt
{

namespace
{

constexpr char kTitle[] = "Quenlin";
constexpr int kEventsMs = 50; // how long DoEvents continues while new events keep coming

QString TitleOr(std::string_view title)
{
    return title.empty() ? QString::fromLatin1(kTitle) : ToQt(title);
}

// "*.mp3" as "*.[mM][pP]3", which any file dialog matches without regard to letter case.
QString WithoutCase(std::string_view pattern)
{
    QString result;
    for (const QChar letter : ToQt(pattern)) {
        if (letter.toUpper() == letter.toLower())
            result += letter;
        else
            result += QStringLiteral("[%1%2]").arg(letter.toLower()).arg(letter.toUpper());
    }
    return result;
}

void SetFilters(QFileDialog &dialog, const std::vector<FileFilter> &filters)
{
    QStringList kinds;
    for (const FileFilter &filter : filters)
        kinds << ToQt(filter.caption) + QStringLiteral(" (") + WithoutCase(filter.pattern) +
                     QLatin1Char(')');
    dialog.setNameFilters(kinds);
    dialog.setOption(QFileDialog::HideNameFilterDetails);
}

// A path becomes a file address with its bytes; an address stays what it is.
QUrl UrlOf(const std::string &address)
{
    if (!address.empty() && address.front() == '/')
        return QUrl::fromEncoded("file://" +
                                 QByteArray::fromStdString(address).toPercentEncoding("/"));
    return QUrl(ToQt(address), QUrl::TolerantMode);
}

} // namespace

// Stands around everything that waits for the user.
class QtDesktop::BoxUp
{
public:
    explicit BoxUp(QtDesktop &desktop) : m_desktop(desktop)
    {
        ++m_desktop.m_boxesUp;
        m_desktop.ShowPointer();
    }
    ~BoxUp()
    {
        --m_desktop.m_boxesUp;
        m_desktop.ShowPointer();
    }
    BoxUp(const BoxUp &) = delete;
    BoxUp &operator=(const BoxUp &) = delete;

private:
    QtDesktop &m_desktop;
};

QtDesktop::QtDesktop() = default;

QtDesktop::~QtDesktop()
{
    if (m_shownPointer != Pointer::Normal)
        QGuiApplication::restoreOverrideCursor();
}

Answer QtDesktop::MessageBox(std::string_view text, Buttons buttons, std::string_view title,
                             BoxIcon icon)
{
    return ShowBox(text, {}, buttons, title, icon);
}

Answer QtDesktop::MessageBoxWithDetails(std::string_view text, std::string_view details,
                                        Buttons buttons, std::string_view title)
{
    return ShowBox(text, details, buttons, title, BoxIcon::None);
}

Answer QtDesktop::ShowBox(std::string_view text, std::string_view details, Buttons buttons,
                          std::string_view title, BoxIcon icon)
{
    BoxUp boxUp(*this);
    MessageDialog box(LinesToQt(text), TitleOr(title), buttons, icon, OwnerOfBox());
    if (!details.empty())
        box.SetDetails(LinesToQt(details));
    box.exec();
    return box.Chosen();
}

std::optional<std::string> QtDesktop::InputBox(std::string_view prompt, std::string_view title,
                                               std::string_view initialText)
{
    BoxUp boxUp(*this);
    InputDialog box(LinesToQt(prompt), TitleOr(title), ToQt(initialText), OwnerOfBox());
    const bool accepted = box.exec() == QDialog::Accepted;
    m_inputClosed = box.ClosedByFrame();
    if (!accepted)
        return std::nullopt;
    return FromQt(box.Text());
}

std::optional<std::string> QtDesktop::OpenDialog(std::string_view title,
                                                 const std::vector<FileFilter> &filters,
                                                 const std::string &folder)
{
    BoxUp boxUp(*this);
    QFileDialog dialog(OwnerOfBox(), TitleOr(title), ToQt(folder));
    SetFilters(dialog, filters);
    dialog.setFileMode(QFileDialog::ExistingFile);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return std::nullopt;
    return PathFromQt(dialog.selectedFiles().constFirst());
}

std::optional<std::string> QtDesktop::SaveDialog(std::string_view title,
                                                 const std::vector<FileFilter> &filters,
                                                 const std::string &path)
{
    BoxUp boxUp(*this);
    QFileDialog dialog(OwnerOfBox(), TitleOr(title));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    SetFilters(dialog, filters);
    dialog.selectFile(ToQt(path));
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return std::nullopt;
    return PathFromQt(dialog.selectedFiles().constFirst());
}

void QtDesktop::EmptyClipboard()
{
    QGuiApplication::clipboard()->clear();
}

void QtDesktop::SetClipboardText(std::string_view text)
{
    QGuiApplication::clipboard()->setText(ToQt(text));
}

std::string QtDesktop::ClipboardText()
{
    return FromQt(QGuiApplication::clipboard()->text());
}

bool QtDesktop::OpenAddress(const std::string &address, const std::string &workingFolder)
{
    if (address.starts_with("mailto:")) // the toolkit would encode it anew
        return posix::OpenWithDesktop(address, workingFolder);
    const QUrl url = UrlOf(address);
    return url.isValid() && !url.isEmpty() && QDesktopServices::openUrl(url);
}

void QtDesktop::SetPointer(Pointer pointer)
{
    m_pointer = pointer;
    ShowPointer();
}

void QtDesktop::ShowPointer()
{
    const Pointer wanted = m_boxesUp == 0 ? m_pointer : Pointer::Normal;
    if (wanted == m_shownPointer)
        return;
    if (m_shownPointer != Pointer::Normal)
        QGuiApplication::restoreOverrideCursor();
    m_shownPointer = wanted;
    if (wanted != Pointer::Normal)
        QGuiApplication::setOverrideCursor(wanted == Pointer::Hourglass ? Qt::WaitCursor
                                                                        : Qt::BusyCursor);
}

void QtDesktop::DoEvents()
{
    QCoreApplication::processEvents(QEventLoop::AllEvents, kEventsMs);
}

} // namespace platform::qt
