#include "player/nowplaying.h"

#include "player/winampmod.h"
#include "runtime/numbers.h"
#include "runtime/text.h"

namespace player
{

namespace
{

std::string TwoDigits(std::int32_t number)
{
    return std::string(runtime::Right("00" + std::to_string(number), 2));
}

std::string MinutesAndSeconds(float seconds)
{
    const std::int32_t whole = runtime::RoundToInt32(seconds);
    return TwoDigits(whole / 60) + ":" + TwoDigits(whole % 60);
}

} // namespace

std::string GetPlayingTimeStatus(float *position)
{
    const auto length = static_cast<float>(GetPlayingLength());
    const auto now = static_cast<float>(GetPlayingPosition() / 1000);
    if (position != nullptr)
        *position = now;
    return MinutesAndSeconds(now) + " / " + MinutesAndSeconds(length);
}

} // namespace player
