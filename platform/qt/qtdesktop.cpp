#include "platform/qt/qtdesktop.h"

#include "platform/qt/modalwait.h"
#include "platform/qt/text.h"
#include "platform/spawn.h"
#include "platform/waiting.h"
#include "ui/boxforms.h"

#include <QApplication>
#include <QClipboard>
#include <QDesktopServices>
#include <QFileDialog>
#include <QUrl>

namespace platform::qt
{

namespace
{

constexpr std::string_view kTitle = "Quenlin";
constexpr int kEventsMs = 50; // how long DoEvents continues while new events keep coming

std::string_view TitleOr(std::string_view title)
{
    return title.empty() ? kTitle : title;
}

Answer Ask(const ui::Message &message)
{
    ui::MessageBoxForm box(message);
    ui::ShowModal(box);
    return box.answer;
}

// Changes "*.mp3" to "*.[mM][pP]3", so that every file dialog ignores letter case.
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

// A path becomes a file: address with the same bytes; an address is not changed.
QUrl UrlOf(const std::string &address)
{
    if (!address.empty() && address.front() == '/')
        return QUrl::fromEncoded("file://" +
                                 QByteArray::fromStdString(address).toPercentEncoding("/"));
    return QUrl(ToQt(address), QUrl::TolerantMode);
}

} // namespace

QtDesktop::~QtDesktop()
{
    SetProgramPointer(Pointer::Normal);
}

Answer QtDesktop::MessageBox(std::string_view text, Buttons buttons, std::string_view title,
                             BoxIcon icon)
{
    return Ask({text, {}, TitleOr(title), buttons, icon});
}

Answer QtDesktop::MessageBoxWithDetails(std::string_view text, std::string_view details,
                                        Buttons buttons, std::string_view title)
{
    return Ask({text, details, TitleOr(title), buttons, BoxIcon::None});
}

std::optional<std::string> QtDesktop::InputBox(std::string_view prompt, std::string_view title,
                                               std::string_view initialText)
{
    ui::InputBoxForm box(prompt, TitleOr(title), initialText);
    ui::ShowModal(box);
    m_inputClosed = box.closedByFrame;
    return box.accepted ? std::optional(box.txtInput.Text()) : std::nullopt;
}

std::optional<std::string> QtDesktop::OpenDialog(std::string_view title,
                                                 const std::vector<FileFilter> &filters,
                                                 const std::string &folder)
{
    const ModalWait wait;
    QFileDialog dialog(OwnerOfBox(), ToQt(TitleOr(title)), ToQt(folder));
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
    const ModalWait wait;
    QFileDialog dialog(OwnerOfBox(), ToQt(TitleOr(title)));
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
    BeginWait();
    if (address.starts_with("mailto:")) // the toolkit would encode it again
        return OpenWithDesktop(address, workingFolder);
    const QUrl url = UrlOf(address);
    return url.isValid() && !url.isEmpty() && QDesktopServices::openUrl(url);
}

void QtDesktop::SetPointer(Pointer pointer)
{
    SetProgramPointer(pointer);
}

void QtDesktop::DoEvents()
{
    QCoreApplication::processEvents(QEventLoop::AllEvents, kEventsMs);
}

} // namespace platform::qt
