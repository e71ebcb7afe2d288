// player/nowplaying.h - what the player plays now, in words. Asks the window of the last look
// (player/winampmod.h).
#pragma once

#include <string>

namespace player
{

// "mm:ss / mm:ss": position and length of the current song, whole seconds rounded half to even; of
// a song of 100 minutes or more the last two digits of its minutes. "00:00 / 00:00" without a
// player. `position`, where given, is set to the position in seconds.
std::string GetPlayingTimeStatus(float *position = nullptr);

} // namespace player
