#include "tagedit/characternote.h"

#include "metadata/tagtext.h"
#include "runtime/codepage.h"
#include "runtime/text.h"
#include "shell/language.h"

#include <string>

namespace tagedit
{

namespace
{

using metadata::TextKind;

std::string NoteOn(const std::string &lacking, bool onlyID3v1)
{
    const std::string words =
        onlyID3v1 ? shell::GetLanguageText("The ID3v1 tag cannot hold $Characters$. In place of "
                                           "each a \"?\" will be written there.",
                                           "NotInID3v1", "TagEditor")
                  : shell::GetLanguageText("A tag cannot hold $Characters$. In place of each a "
                                           "\"?\" will be written.",
                                           "NotInCodePage", "TagEditor");
    return runtime::Replace(words, "$Characters$", lacking);
}

} // namespace

void ShowNote(EditedSong &song, ui::Label &note)
{
    std::string lacking;
    const bool onlyID3v1 = song.At(kID3v2).kind == TextKind::Utf8;
    const auto look = [&](Column &column, ui::Area &box, const std::string &text) {
        std::string own;
        if (column.kind == TextKind::FileBytes)
            own = runtime::CharactersLacking(text);
        box.SetToolTip(own.empty() ? std::string() : NoteOn(own, onlyID3v1));
        box.SetMarked(!own.empty());
        lacking += own;
    };
    for (const int index : {kID3v1, kID3v2}) {
        Column &column = song.At(index);
        for (TagBox *box : column.TextBoxes())
            look(column, *box, box->Text());
        look(column, column.cmbGenre, column.cmbGenre.Text());
        look(column, column.txtLyrics, column.txtLyrics.Text());
    }
    lacking = runtime::CharactersLacking(lacking); // each once
    note.SetVisible(!lacking.empty());
    if (!lacking.empty())
        note.SetCaption(ui::CaptionOf(NoteOn(lacking, onlyID3v1)));
}

} // namespace tagedit
