// playlists/install.h - what the play lists add to the main window.
#pragma once

namespace playlists
{

// Registers the commands of play lists and what opening one in the tree does. Once, before
// LoadMainForm.
void Install();

} // namespace playlists
