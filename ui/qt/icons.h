// ui/qt/icons.h - the pictures of the image lists `Mns` and `ImgDirTree`, by key ("MP3", "closed").
// Each picture has a drawing for light and one for dark windows; an icon picks the right one each
// time it is painted, so a change of theme shows with the next repaint.
#pragma once

#include <QIcon>
#include <string_view>

namespace ui::qt
{

// The icon of an image key; a null icon for an empty key or one that has no drawing.
[[nodiscard]] QIcon Icon(std::string_view key);

// Puts the desktop's icon of the files with this extension (".mp3") into the list, under the key of
// the extension in upper case without its point ("MP3"). A desktop without one changes nothing:
// the program's own drawing stays in its place. True when an icon was taken.
bool AddDesktopIcon(std::string_view extension);

// Forgets the desktop's icons, as at the start; for tests.
void ForgetDesktopIcons();

} // namespace ui::qt
