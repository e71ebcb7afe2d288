// playlists/install.h - connects the play lists with the main window.
#pragma once

namespace playlists
{

// Registers the commands of play lists and how a list in the tree is opened. To be called once,
// before LoadMainForm.
void Install();

} // namespace playlists
