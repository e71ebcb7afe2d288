#include "online/help/help.h"

#include "online/help/helpform.h"
#include "platform/disk/wholefiles.h"
#include "runtime/error.h"
#include "runtime/text.h"
#include "shell/globals.h"

#include <memory>

namespace online
{

namespace
{

constexpr std::size_t kMaxBytes = 4u << 20; // much more than any help file needs
constexpr std::string_view kLanguageExtension = ".QLT", kHelpExtension = ".hlp";

std::unique_ptr<HelpForm> &TheForm()
{
    static std::unique_ptr<HelpForm> form;
    return form;
}

} // namespace

std::string HelpFile()
{
    const std::string &language = shell::TheGlobals().LanguageFilePath;
    if (runtime::UpperAscii(language).ends_with(kLanguageExtension)) {
        std::string file = language.substr(0, language.size() - kLanguageExtension.size());
        file += kHelpExtension;
        if (platform::CheckAccess(file) == 0)
            return file;
    }
    return shell::TheGlobals().HelpFilePath;
}

HelpBook ReadHelpBook()
{
    const std::string file = HelpFile();
    const auto text = platform::ReadRegularFile(file, kMaxBytes);
    if (!text)
        throw runtime::RuntimeError(runtime::kFileNotFound,
                                    runtime::DescribeError(runtime::kFileNotFound) + ": " + file);
    return ParseHelpBook(*text);
}

void ShowHelp(std::string_view id)
{
    HelpBook book = ReadHelpBook();
    if (TheForm() == nullptr)
        TheForm() = std::make_unique<HelpForm>();
    TheForm()->SetBook(std::move(book));
    TheForm()->Open(id);
    ui::Show(*TheForm());
}

void ShowHelpOf(std::string_view window, std::string_view message)
{
    const HelpBook book = ReadHelpBook();
    const HelpPage *page = PageOfMessage(book, message);
    ShowHelp(page == nullptr ? window : std::string_view(page->id));
}

void ForgetHelp()
{
    if (TheForm() == nullptr)
        return;
    ui::Close(*TheForm());
    if (ui::TheFormHost() != nullptr)
        ui::Retire(std::move(TheForm()));
    TheForm().reset();
}

} // namespace online
