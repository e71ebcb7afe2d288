#include "platform/qt/text.h"

#include <filesystem>
#include <system_error>

namespace platform::qt
{

QString ToQt(std::string_view text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

std::string FromQt(const QString &text)
{
    return text.toStdString();
}

std::string PathFromQt(const QString &shown)
{
    namespace fs = std::filesystem;
    const fs::path path(FromQt(shown));
    std::error_code failed;
    if (!shown.contains(QChar::ReplacementCharacter) || fs::exists(path, failed))
        return path.string();
    for (fs::directory_iterator entry(path.parent_path(), failed), end; !failed && entry != end;
         entry.increment(failed))
        if (ToQt(entry->path().filename().string()) == ToQt(path.filename().string()))
            return entry->path().string();
    return path.string();
}

} // namespace platform::qt
