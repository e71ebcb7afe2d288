// playlists/bookmarks.h - the catalogue as a text file for the player's bookmark plug-in. One
// record a line: "VER1" alone in the first; then "d1" and a field for a group, "d2" and a value for
// a sub-group, "a3" and a path for a song. Source: the plug-in's file gen_bmark.dat.
#pragma once

#include "browser/mainform.h"

#include <span>
#include <string>

namespace playlists
{

// The fields that become groups: "Title", "Artist", "Album", "Year".
std::span<const char *const> BookmarkFields();

// Writes the bookmarks of the whole catalogue to the plug-in's own place, a fixed path.
// Errors: kPathNotFound where that folder is not there; as the next.
void ExportBookmarks(browser::MainForm &form);

// The same to a file of the user's choice, which is whole or as it was. Values are told apart
// without regard to letter case; empty ones are left out, and a line end in one becomes a blank. A
// path with a line end has no record. Shows its progress in the status bar and lets events run;
// a call during another does nothing.
// Errors: FileError with the path; kInvalidCall with the catalogue's words when it cannot be read.
//         The end of the program ends it without an error.
// Returns: whether the file was written and is on the disk.
bool ExportBookmarksTo(browser::MainForm &form, const std::string &path,
                       std::span<const char *const> fields = BookmarkFields());

// submnuExportBookmarks_Click: asks for the file, exports.
void AskAndExportBookmarks(browser::MainForm &form);

} // namespace playlists
