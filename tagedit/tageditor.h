// tagedit/tageditor.h - frmEditTag: the two tags of one song in two columns, 1 = ID3v1 and 2 =
// ID3v2, and what its buttons and keys do.
#pragma once

#include "tagedit/savetags.h"
#include "ui/controls/form.h"

#include <array>
#include <string_view>

namespace tagedit
{

struct TagEditor : ui::Form, EditedSong {
    TagEditor();

    ui::Frame frmHeader;
    ui::Label lblMPEGInfo;
    std::array<ui::Label, 7> labels; // Label10 to Label16
    ui::Label lblLyrics;
    ui::Button cmdOk, cmdCancel;
    ui::Label lblNote; // what will be written in place of characters that a tag cannot store
    ui::Label lblBusy; // visible while the song is written

    bool saving = false; // the window cannot be closed, and OK does nothing

private:
    void AddColumn(int index);
    void Arrange();
};

// Form_Load, after the captions are set: fills the genre lists, then calls LoadTags. Errors: those
// of LoadTags.
void LoadTagEditor(TagEditor &editor);

// Reads `File` and fills header, check boxes and columns. What was read counts as the old values
// from now on.
// Errors: FileError with the path when the file cannot be read; the editor is then unchanged.
void LoadTags(TagEditor &editor);

// Sets whether the file is to have the tag: enables or disables the column's controls.
void SetHasID3Tag(TagEditor &editor, int index, bool checked);

// Copies the texts of column `index` to the column in the button's `tag`, and checks that column's
// box. Texts copied to column 1 are cut to 30 characters, the year to 4. The lyrics are not copied.
void cmdToID3_Click(TagEditor &editor, int index);

// Handles a key press in the genre box of column `index`. In column 1 a `letter` (one character in
// UTF-8) selects the next entry that begins with it, and no other key does anything.
// Returns: true when the box itself must ignore the key (column 1: always).
bool cmbGenre_KeyPress(TagEditor &editor, int index, std::string_view letter);

// Whether a key press (a character or Backspace) in this text box must be ignored, because the box
// is in column 1 and its text has the greatest allowed length.
[[nodiscard]] bool IsLimitReached(TagEditor &editor, const ui::TextBox &box);

// Saves both columns (savetags.h). This takes one or two seconds and lets events run; a second
// call meanwhile does nothing.
// Returns: true when the window can close: the song is saved, or nothing had to be saved. False
// when the song was left unchanged; when the user wants it, its tags have been read again.
// Errors: those of SaveTags.
bool cmdOk_Click(TagEditor &editor);

} // namespace tagedit
