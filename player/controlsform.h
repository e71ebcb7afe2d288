// player/controlsform.h - frmControls, the small window with the player's buttons and its seek bar.
// It sends messages to the player's window that was last found (player/winampmod.h), and shows no
// errors.
#pragma once

#include "ui/controls/form.h"

#include <array>

namespace player
{

struct ControlsForm : ui::Form {
    ControlsForm();

    std::array<ui::Button, 5> cmdSong; // previous, play, pause, stop, next
    ui::Button cmdShuffle;
    ui::Slider HScroll; // the position in the song, in whole seconds
    ui::Timer tmrUpdate{1000};
    ui::Timer tmrStopDragging{250};

    bool Dragging = false;       // the user is moving the thumb
    bool SeekPending = false;    // a drag has ended, and the player does not have its value yet
    bool releasePending = false; // the thumb was released, and its Change event is not handled yet

    void tmrUpdate_Timer();
    void tmrStopDragging_Timer();
    void HScroll_Scroll();
    void HScroll_Change();
    void HScroll_Release();
    bool KeyDown(const ui::Key &key); // left and right arrow seek by 5 s
};

// submnuSongControls: shows the window, or brings it to the front. Errors: those of ui::Show.
void submnuSongControls_Click();

// Closes the window and destroys its form. To be called once at the end, while the host of the
// forms exists.
void ForgetControls();

} // namespace player
