// playlists/bookmarks.h - exports the catalogue as a text file for the player's bookmark plug-in.
// One record in each line: the first is "VER1"; then "d1" and a field for a group, "d2" and a value
// for a sub-group, "a3" and a path for a song. Source: the plug-in's file gen_bmark.dat.
#pragma once

#include "browser/mainform.h"

#include <span>
#include <string>

namespace playlists
{

// The fields that become groups: "Title", "Artist", "Album", "Year".
std::span<const char *const> BookmarkFields();

// Writes the bookmarks of the whole catalogue to the plug-in's own file, which has a fixed path.
// Errors: kPathNotFound when its folder does not exist; those of ExportBookmarksTo.
void ExportBookmarks(browser::MainForm &form);

// The same to a file that the user chooses; it is written completely or not changed. Letter case of
// values is ignored, empty values are left out, and a line end in a value becomes a blank. A path
// with a line end gets no record. Shows its progress in the status bar and lets events run; a call
// during another one does nothing.
// Errors: FileError with the path; kInvalidCall with the words of the catalogue when it cannot be
// read. The end of the program ends it without an error.
// Returns: whether the file was written and is on the disk.
bool ExportBookmarksTo(browser::MainForm &form, const std::string &path,
                       std::span<const char *const> fields = BookmarkFields());

// submnuExportBookmarks_Click: asks for the file and exports.
void AskAndExportBookmarks(browser::MainForm &form);

} // namespace playlists
