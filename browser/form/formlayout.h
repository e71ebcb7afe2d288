// browser/form/formlayout.h - the layout of frmMain, its splitter, the progress bar over its status
// bar.
#pragma once

#include "browser/mainform.h"

#include <string_view>

namespace browser
{

// ReDrawForm: sets the places of all children, yields once, and saves the settings when the layout
// is complete.
void ReDrawForm(MainForm &form);

// Form_Resize: does the layout, then wraps the panel's text again.
void ResizeMainForm(MainForm &form);

// Dragging the splitter: press, move, release. `mouseX`: twips from the left edge of the splitter
// to the mouse, with fractions; negative at its left.
void Separator_MouseDown(MainForm &form);
void Separator_MouseMove(MainForm &form, double mouseX);
void Separator_MouseUp(MainForm &form);

// Puts the progress bar over the status bar's panel `panelKey`, `margin` twips inside it. Its place
// is computed once in a run.
void ShowProgressBar(MainForm &form, std::string_view panelKey = "PlayingStatus", int margin = 40);

} // namespace browser
