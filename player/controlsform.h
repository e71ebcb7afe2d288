// player/controlsform.h - frmControls, the small window with the player's buttons and its seek bar.
// Sends to the player's window of the last look (player/winampmod.h); shows no message.
#pragma once

#include "ui/controls/form.h"

#include <array>

namespace player
{

struct ControlsForm : ui::Form {
    ControlsForm();

    std::array<ui::Button, 5> cmdSong; // previous, play, pause, stop, next
    ui::Button cmdShuffle;
    ui::Slider HScroll; // the song's position in whole seconds
    ui::Timer tmrUpdate{1000};
    ui::Timer tmrStopDragging{250};

    bool Dragging = false;       // the user is moving the thumb
    bool SeekPending = false;    // a drag has ended, and its value is still to go to the player
    bool releasePending = false; // the thumb was let go, and its Change is still to be handled

    void tmrUpdate_Timer();
    void tmrStopDragging_Timer();
    void HScroll_Scroll();
    void HScroll_Change();
    void HScroll_Release();
    bool KeyDown(const ui::Key &key); // an arrow to the left or right seeks by 5 s
};

// submnuSongControls: shows the one window, or brings it forward. Errors: those of ui::Show.
void submnuSongControls_Click();

// Closes the window and forgets its form. Once at the end, while there still is a host of forms.
void ForgetControls();

} // namespace player
