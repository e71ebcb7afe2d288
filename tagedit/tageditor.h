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

// A text box, and the field that it was filled with (file bytes).
struct TagBox : ui::TextBox {
    std::string field;
};

// A combo box likewise. It shows any genre, also where the user can only choose an entry.
struct GenreBox : ui::ComboBox {
    GenreBox() { canType = true; }
    std::string field;
    std::string kept; // column 1: what it shows, put back when the user makes it no entry
};

// The controls with one index. Column 1 has no txtLyrics.
struct Column {
    ui::Frame ID3Info;
    ui::CheckBox HasID3Tag;
    TagBox txtTitle, txtArtist, txtAlbum, txtYear, txtComment, txtTrack, txtLyrics;
    GenreBox cmbGenre;
    ui::Button cmdToID3;
    int tag = 0; // the button's: the column that it copies to

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

    // The records as they were read; SaveTag compares with them. The file as it was then.
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

// The load of the window, after its captions: the genre lists, then LoadTags. Errors: as LoadTags.
void LoadTagEditor(TagEditor &editor);

// Reads `File` and fills header, check boxes and columns; these are the old values from now on.
// Errors: FileError with the path when the file cannot be read; the editor is then as it was.
void LoadTags(TagEditor &editor);

// Whether the tag is to be in the file: enables or disables the column's controls.
void SetHasID3Tag(TagEditor &editor, int index, bool checked);

// Copies the texts of column `index` to the one in the button's tag and switches that on. What goes
// to column 1 is cut to 30 characters, the year to 4. The lyrics are not copied.
void cmdToID3_Click(TagEditor &editor, int index);

// A key press in the genre box of column `index`: true when the key was taken, which in column 1 is
// any; there a letter selects the next entry that begins with it.
bool cmbGenre_KeyPress(TagEditor &editor, int index, std::string_view letter);

// A key press (a character or Backspace) in a text box: true when it is to be dropped, because the
// box is one of column 1 and has reached its limit.
[[nodiscard]] bool IsLimitReached(TagEditor &editor, const ui::TextBox &box);

// The text of one of the boxes has changed: `lblNote` and the tool tips of the boxes in question,
// which are marked, say which characters no tag can hold and what will be written instead.
void ShowNote(TagEditor &editor);

// Writes both columns into the song. Takes one or two seconds and lets events run; a second call in
// that time does nothing.
// Returns: true when the window is to close: the song is saved, or nothing was to be saved. False
//     when the song was left as it is, after a box that says why: changed by another program since
//     it was read (the user may then have it read again), gone, or a step of the writing failed.
// Errors: kOverflow when a track does not fit: 0 to 255 in column 1, 16 bits with sign in column 2.
bool cmdOk_Click(TagEditor &editor);

} // namespace tagedit
