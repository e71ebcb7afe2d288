// ui/qt/icons.h - the pictures of the image lists `Mns` and `ImgDirTree`, by key ("MP3", "closed").
// Each has a drawing for light and one for dark windows; an icon chooses one each time it is
// painted, so that a change of the theme is seen at the next repaint.
#pragma once

#include <QIcon>
#include <string_view>

namespace ui::qt
{

// The icon of an image key, or one of the program's larger pictures ("splash"); a null icon when
// the key is empty or has no drawing.
[[nodiscard]] QIcon Icon(std::string_view key);

// Uses the desktop's icon for files with this extension (".mp3") as the picture with the key "MP3":
// the extension in upper case, without its point. Returns: false when the desktop has none; the
// program's own drawing is then used.
bool AddDesktopIcon(std::string_view extension);

// Removes the desktop's icons again; for tests.
void ForgetDesktopIcons();

} // namespace ui::qt
