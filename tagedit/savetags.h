// tagedit/savetags.h - the tags of one song in the boxes of the editor's two columns, 1 = ID3v1 and
// 2 = ID3v2, and writing them into the song.
#pragma once

#include "metadata/mp3info.h"
#include "metadata/records.h"
#include "ui/controls/button.h"
#include "ui/controls/frame.h"
#include "ui/controls/inputs/checkbox.h"
#include "ui/controls/inputs/combobox.h"
#include "ui/controls/inputs/textbox.h"

#include <array>
#include <cstddef>
#include <functional>
#include <string>

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

struct EditedSong {
    std::string File; // the full path of the song, byte for byte

    Column &At(int index) { return m_columns.at(static_cast<std::size_t>(index) - 1); }

    // The tags as they were read, which SaveTag compares with, and the file as it was then.
    metadata::ID3v1Tag oldID3v1;
    metadata::ID3v2Tag oldID3v2;
    metadata::RawTags opened;

    // Called with the new tags once the song is saved; may be empty.
    std::function<void(const metadata::ID3v1Tag &, const metadata::ID3v2Tag &)> saved;

private:
    std::array<Column, 2> m_columns;
};

// Saved: also when nothing had to be written. The others: the song was left unchanged.
enum class SaveEnd { Saved, Unsaved, ReadAgain };

// Writes both columns into the song. This takes one or two seconds and lets events run.
// Returns: Unsaved or ReadAgain after a box that has said why: another program changed the file
// since it was read, the file does not exist any more, or a step of the writing failed. ReadAgain
// when the user wants the tags of the file to be read again.
// Errors: kOverflow when a track number does not fit: 0 to 255 in column 1, 16 bits with sign in
// column 2.
[[nodiscard]] SaveEnd SaveTags(EditedSong &song);

} // namespace tagedit
