// platform/qt/text.h - converts between the program's texts (UTF-8) and paths (bytes) and those of
// the toolkit. No state.
#pragma once

#include <QString>
#include <string>
#include <string_view>

namespace platform::qt
{

// UTF-8 as the toolkit's text; bytes that are not valid UTF-8 become U+FFFD.
[[nodiscard]] QString ToQt(std::string_view text);

// The toolkit's text as UTF-8.
[[nodiscard]] std::string FromQt(const QString &text);

// The path for a name that the toolkit returned: its bytes when such a file exists; else the file
// in the same folder whose name is not valid UTF-8 and is shown like this by the toolkit.
[[nodiscard]] std::string PathFromQt(const QString &shown);

} // namespace platform::qt
