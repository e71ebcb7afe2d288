// tagedit/tageditor.h - frmEditTag: the two tags of one song in two columns, 1 = ID3v1 and 2 =
// ID3v2, and what its buttons and keys do.
#pragma once

#include "metadata/mp3info.h"
#include "metadata/records.h"
#include "ui/controls/form.h"

#include <array>
#include <functional>
#include <string>
#include <string_view>

namespace tagedit
{

inline constexpr int kID3v1 = 1, kID3v2 = 2;

// A text box, and the field that it was filled with (of its column's kind of texts).
struct TagBox : ui::TextBox {
    std::string field;
};

// The same for a combo box. The program may put any genre into it; in column 1 a user can only
// choose one of the list.
struct GenreBox : ui::ComboBox {
    GenreBox() { canType = true; }
    std::string field;
    std::string kept; // column 1: the last text that was chosen or set by the program
};

// The controls of one column: those that share an index. Column 1 has no txtLyrics.
struct Column {
    ui::Frame ID3Info;
    ui::CheckBox HasID3Tag;
    TagBox txtTitle, txtArtist, txtAlbum, txtYear, txtComment, txtTrack, txtLyrics;
    GenreBox cmbGenre;
    ui::Button cmdToID3;
    int tag = 0; // the button's: the column that it copies to
    metadata::TextKind kind = metadata::TextKind::FileBytes; // of the boxes' fields

    std::array<TagBox *, 5> TextBoxes()
    {
        return {&txtTitle, &txtArtist, &txtAlbum, &txtYear, &txtComment};
    }
};

struct TagEditor : ui::Form {
    TagEditor();

    std::string File; // the full path of the song, byte for byte

    ui::Frame frmHeader;
    ui::Label lblMPEGInfo;
    std::array<ui::Label, 7> labels; // Label10 to Label16
    ui::Label lblLyrics;
    Column &At(int index) { return m_columns.at(static_cast<std::size_t>(index) - 1); }
    ui::Button cmdOk, cmdCancel;
    ui::Label lblNote; // what will be written in place of characters that a tag cannot hold
    ui::Label lblBusy; // visible while the song is written

    // The tags as they were read, which SaveTag compares with, and the file as it was then.
    metadata::ID3v1Tag oldID3v1;
    metadata::ID3v2Tag oldID3v2;
    metadata::RawTags opened;

    bool saving = false; // the window cannot be closed, and OK does nothing

    // Called with the new tags once the song is saved and the window is to close; may be empty.
    std::function<void(const metadata::ID3v1Tag &, const metadata::ID3v2Tag &)> saved;

private:
    void AddColumn(int index);
    void Arrange();

    std::array<Column, 2> m_columns;
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

// Copies the texts of column `index` to the column in the button's `tag`, and ticks that column's
// box. Texts copied to column 1 are cut to 30 characters, the year to 4. The lyrics are not copied.
void cmdToID3_Click(TagEditor &editor, int index);

// Handles a key press in the genre box of column `index`. In column 1 a letter selects the next
// entry that begins with it, and no other key does anything.
// Returns: true when the box itself must ignore the key (column 1: always).
bool cmbGenre_KeyPress(TagEditor &editor, int index, std::string_view letter);

// Whether a key press (a character or Backspace) in this text box must be ignored, because the box
// is in column 1 and its text has the greatest allowed length.
[[nodiscard]] bool IsLimitReached(TagEditor &editor, const ui::TextBox &box);

// The text of one of the boxes has changed: `lblNote` and the tool tips of the boxes in question,
// which are marked, say which characters no tag can hold and what will be written instead. A tag
// whose texts are UTF-8 can hold all of them.
void ShowNote(TagEditor &editor);

// Writes both columns into the song. This takes one or two seconds and lets events run; a second
// call meanwhile does nothing.
// Returns: true when the window can close: the song is saved, or nothing had to be saved. False
// when the song was left unchanged; a box has then said why: another program changed the file since
// it was read (the user may have it read again), the file does not exist any more, or a step of the
// writing failed.
// Errors: kOverflow when a track number does not fit: 0 to 255 in column 1, 16 bits with sign in
// column 2.
bool cmdOk_Click(TagEditor &editor);

} // namespace tagedit
