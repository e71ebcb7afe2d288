#include "player/controlsform.h"

#include "player/nowplaying.h"
#include "player/winampmod.h"
#include "runtime/numbers.h"
#include "runtime/text.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <string>
#include <utility>

namespace player
{

namespace
{

constexpr ui::Caption kCaptions[] = {
    {"", "SongControls", "SongControls", "Song's controls"},
    {"cmdShuffle", "SongControls", "Shuffle", "Shuffle"},
    {"cmdSong(0)", "SongControls", "PreviousTrack", "Previous song", ui::Caption::Of::ToolTip},
    {"cmdSong(1)", "SongControls", "PlayTrack", "Play", ui::Caption::Of::ToolTip},
    {"cmdSong(2)", "SongControls", "PauseTrack", "Pause", ui::Caption::Of::ToolTip},
    {"cmdSong(3)", "SongControls", "StopTrack", "Stop", ui::Caption::Of::ToolTip},
    {"cmdSong(4)", "SongControls", "NextTrack", "Next song", ui::Caption::Of::ToolTip},
    {"HScroll", "SongControls", "Position", "Position in the song", ui::Caption::Of::ToolTip},
};

// In a font of symbols these captions are the signs on a player's buttons.
constexpr struct {
    const char *caption, *image;
    std::int32_t (*send)();
} kButtons[] = {
    {"9", "Previous", PreviousTrack}, {"4", "Play", PlayTrack}, {";", "Pause", PauseTrack},
    {"<", "Stop", StopTrack},         {":", "Next", NextTrack},
};

constexpr int kLeftKey = 37, kRightKey = 39; // of ui::Key
constexpr int kKeyStepSeconds = 5;

struct State {
    std::unique_ptr<ControlsForm> form; // made when it is first needed
} state;

// The seconds in a text such as "03:25" (205).
std::int16_t SecondsOf(std::string_view text)
{
    return runtime::RoundToInt16(runtime::LeadingNumber(runtime::Left(text, 2)) * 60 +
                                 runtime::LeadingNumber(runtime::Mid(text, 4)));
}

} // namespace

ControlsForm::ControlsForm() : Form("frmControls", kCaptions)
{
    for (std::size_t i = 0; i < cmdSong.size(); ++i) {
        cmdSong[i].SetCaption(kButtons[i].caption);
        cmdSong[i].SetImage(kButtons[i].image);
        cmdSong[i].onClick = [send = kButtons[i].send] { send(); };
        Add("cmdSong(" + std::to_string(i) + ")", cmdSong[i]);
    }
    Add("cmdShuffle", cmdShuffle);
    Add("HScroll", HScroll);
    Add("tmrUpdate", tmrUpdate);
    Add("tmrStopDragging", tmrStopDragging);
    layout = ui::Column({ui::Row({cmdSong[0], cmdSong[1], cmdSong[2], cmdSong[3], cmdSong[4],
                                  ui::Room(), cmdShuffle}),
                         HScroll});
    size = {0, 0, 5250, 1200};
    resizable = true; // a longer bar can be set more exactly
    remembersPlace = true;
    cmdShuffle.onClick = [] { ToggleShuffle(); };
    HScroll.thumbMoved = [this] { HScroll_Scroll(); };
    HScroll.thumbReleased = [this] { HScroll_Release(); };
    HScroll.valueChanged = [this] { HScroll_Change(); };
    tmrUpdate.event = [this] { tmrUpdate_Timer(); };
    tmrStopDragging.event = [this] { tmrStopDragging_Timer(); };
    onKeyDown = [this](const ui::Key &key) { return KeyDown(key); };
    onLoad = [this] {
        Dragging = SeekPending = releasePending = HScroll.thumbHeld = false;
        tmrUpdate_Timer();
        tmrUpdate.SetEnabled(true);
    };
    onUnload = [this] {
        tmrUpdate.SetEnabled(false);
        tmrStopDragging.SetEnabled(false);
    };
}

// While the user holds the thumb, and until its release is handled, the tick must not change the
// value. A player that did not answer in time has not reported a position.
void ControlsForm::tmrUpdate_Timer()
{
    if (HScroll.thumbHeld || releasePending)
        return;
    const std::string text = GetPlayingTimeStatus();
    if (IsPlayerSilent())
        return;
    const std::size_t cut = text.find('/');
    HScroll.SetMax(SecondsOf(runtime::Trim(std::string_view(text).substr(cut + 1))));
    HScroll.SetValue(SecondsOf(runtime::Trim(std::string_view(text).substr(0, cut))));
}

void ControlsForm::HScroll_Scroll()
{
    Dragging = true;
    StopTrack();
    tmrStopDragging.SetEnabled(true);
}

void ControlsForm::tmrStopDragging_Timer()
{
    tmrStopDragging.SetEnabled(false);
    Dragging = false;
    SeekPending = true;
    if (releasePending)
        HScroll_Change();
}

// The bar reports the release before the new value, and does not report a value that has not
// changed. So the Change event is handled at the end of the drag.
void ControlsForm::HScroll_Release()
{
    if (!Dragging && !SeekPending)
        return; // a click without a move
    releasePending = true;
    tmrStopDragging.SetEnabled(true);
}

void ControlsForm::HScroll_Change()
{
    if (Dragging || !SeekPending)
        return;
    SeekPending = false;
    releasePending = false;
    tmrStopDragging.SetEnabled(false);
    PlayTrack();
    JumpToTime(HScroll.Value(), 0);
}

bool ControlsForm::KeyDown(const ui::Key &key)
{
    if (key.shift || key.alt || (key.code != kLeftKey && key.code != kRightKey))
        return false;
    float position = 0;
    GetPlayingTimeStatus(&position);
    if (IsPlayerSilent())
        return true;
    const int step = key.code == kLeftKey ? -kKeyStepSeconds : kKeyStepSeconds;
    // After its end the player would begin the next song. Without a known length any position is
    // allowed.
    const int last = HScroll.Max() > 0 ? HScroll.Max() : std::numeric_limits<int>::max() / 1000;
    JumpToTime(std::clamp(runtime::RoundToInt32(position) + step, 0, last), 0);
    return true;
}

void submnuSongControls_Click()
{
    if (state.form == nullptr)
        state.form = std::make_unique<ControlsForm>();
    ui::Show(*state.form);
}

void ForgetControls()
{
    if (state.form == nullptr)
        return;
    ui::Close(*state.form);
    ui::Retire(std::move(
        state.form)); // the form must outlive its window, which is destroyed a little later
}

} // namespace player
