#include "tagedit/tageditor.h"

#include "metadata/genres.h"
#include "runtime/codepage.h"
#include "runtime/numbers.h"
#include "runtime/text.h"
#include "shell/language.h"
#include "tagedit/boxtext.h"
#include "tagedit/genrelist.h"

namespace tagedit
{

namespace
{

constexpr std::size_t kTextLimit = 30;
constexpr std::size_t kYearLimit = 4;
constexpr std::string_view kSection = "TagEditor";

std::string Words(std::string_view defaultText, std::string_view key)
{
    return shell::GetLanguageText(defaultText, key, kSection);
}

template <class Box>
void Fill(Box &box, std::string_view field)
{
    box.field = field;
    box.SetText(ShownText(field));
}

void FillTrack(TagBox &box, double track)
{
    const std::string digits = runtime::NumberText(track);
    Fill(box, runtime::LeadingNumber(digits) == 0 ? std::string() : digits);
}

void FillColumn1(Column &column, const metadata::ID3v1Tag &tag)
{
    Fill(column.txtTitle, runtime::Trim(tag.Title));
    Fill(column.txtArtist, runtime::Trim(tag.Artist));
    Fill(column.txtAlbum, runtime::Trim(tag.Album));
    Fill(column.txtYear, runtime::Trim(tag.Year));
    Fill(column.txtComment, runtime::Trim(tag.Comment));
    Fill(column.cmbGenre, runtime::Trim(metadata::GenreName(tag.Genre)));
    FillTrack(column.txtTrack, tag.Track);
}

void FillColumn2(Column &column, const metadata::ID3v2Tag &tag)
{
    Fill(column.txtTitle, tag.Title);
    Fill(column.txtArtist, tag.Artist);
    Fill(column.txtAlbum, tag.Album);
    Fill(column.txtYear, tag.Year);
    Fill(column.txtComment, tag.Comment);
    Fill(column.cmbGenre, metadata::GenreName(tag.Genre));
    Fill(column.txtLyrics, tag.Lyrics);
    FillTrack(column.txtTrack, tag.Track);
}

std::string YesNo(bool yes)
{
    return yes ? shell::GetLanguageText("Yes", "Yes", "YesNo")
               : shell::GetLanguageText("No", "No", "YesNo");
}

std::string HeaderText(const metadata::MPEGHeader &header)
{
    const auto words = [](std::string_view text, std::string_view key) {
        return shell::GetLanguageText(text, key, "MP3Header");
    };
    const std::array<std::string, 10> lines = {
        words("Size:", "Size") + " " + std::to_string(header.FileSize) + " bytes",
        words("Header found at:", "HeaderFoundAt") + " " + std::to_string(header.HeaderPosition) +
            " bytes",
        words("Length:", "Length") + " " + std::to_string(header.Seconds) + " " +
            words("seconds", "Seconds"),
        header.Version + " " + header.Layer,
        header.Bitrate + ", " + std::to_string(header.Frames) + " " + words("frames", "Frames"),
        header.Frequency + " " + header.ChannelMode,
        "CRCs: " + YesNo(header.CRC),
        words("Copyrighted:", "Copyrighted") + " " + YesNo(header.Copyright),
        words("Original:", "Original") + " " + YesNo(header.Original),
        words("Emphasis:", "Emphasis") + " " + header.Emphasis,
    };
    std::string text = lines.front();
    for (std::size_t i = 1; i < lines.size(); ++i)
        text += "\r" + lines[i];
    return text;
}

// The limit of a box of column 1; 0 for the boxes without one.
std::size_t LimitOf(TagEditor &editor, const ui::TextBox &box)
{
    Column &column = editor.At(kID3v1);
    if (&box == &column.txtYear)
        return kYearLimit;
    for (const TagBox *limited : column.TextBoxes())
        if (&box == limited)
            return kTextLimit;
    return 0;
}

} // namespace

TagEditor::TagEditor()
    : caption("Tag Editor"),
      frmHeader("MPEG Info"), labels{ui::Label("Title"),  ui::Label("Artist"), ui::Label("Album"),
                                     ui::Label("Year"),   ui::Label("Genre"),  ui::Label("Track"),
                                     ui::Label("Comment")},
      cmdOk("&OK"), cmdCancel("&Cancel")
{
    At(kID3v1).ID3Info.SetCaption("ID3v1");
    At(kID3v2).ID3Info.SetCaption("ID3v2");
    At(kID3v1).HasID3Tag.SetCaption("ID3v1");
    At(kID3v2).HasID3Tag.SetCaption("ID3v2");
    At(kID3v1).cmdToID3.SetCaption("Copy to ID3v&2");
    At(kID3v2).cmdToID3.SetCaption("Copy to ID3v&1");
    At(kID3v1).tag = kID3v2;
    At(kID3v2).tag = kID3v1;
    At(kID3v1).txtLyrics.SetVisible(false);
    lblBusy.SetVisible(false);
    lblNote.SetVisible(false);
}

void LoadTagEditor(TagEditor &editor)
{
    const std::vector<std::string> genres = GenreEntries();
    editor.caption = Words(editor.caption, "TagEditor");
    editor.cmdOk.SetCaption(Words(editor.cmdOk.Caption(), "OkButton"));
    editor.cmdCancel.SetCaption(Words(editor.cmdCancel.Caption(), "CancelButton"));
    editor.frmHeader.SetCaption(Words(editor.frmHeader.Caption(), "MP3Header"));
    ui::Label &to2 = editor.At(kID3v1).cmdToID3;
    ui::Label &to1 = editor.At(kID3v2).cmdToID3;
    to2.SetCaption(Words(to2.Caption(), "CopyToID3v2"));
    to1.SetCaption(Words(to1.Caption(), "CopyToID3v1"));
    editor.lblBusy.SetCaption(Words("Saving the file...", "Saving"));
    for (ui::Label &label : editor.labels)
        label.SetCaption(shell::GetLanguageText(label.Caption(), label.Caption(), "ColumnHeaders"));
    for (const int index : {kID3v1, kID3v2})
        editor.At(index).cmbGenre.SetItems(genres);
    LoadTags(editor);
}

void LoadTags(TagEditor &editor)
{
    editor.oldID3v1 = {};
    editor.oldID3v2 = {};
    metadata::MPEGHeader header;
    bool hasID3v1 = false;
    bool hasID3v2 = false;
    metadata::GetMP3Info(editor.File, editor.oldID3v1, editor.oldID3v2, header, hasID3v1, hasID3v2,
                         false);
    editor.opened = metadata::CopyRawTags();
    editor.lblMPEGInfo.SetCaption(HeaderText(header));
    SetHasID3Tag(editor, kID3v1, hasID3v1);
    SetHasID3Tag(editor, kID3v2, hasID3v2);
    FillColumn1(editor.At(kID3v1), editor.oldID3v1);
    FillColumn2(editor.At(kID3v2), editor.oldID3v2);
    ShowNote(editor);
}

void SetHasID3Tag(TagEditor &editor, int index, bool checked)
{
    Column &column = editor.At(index);
    column.HasID3Tag.SetChecked(checked);
    for (TagBox *box : column.TextBoxes())
        box->SetEnabled(checked);
    column.txtTrack.SetEnabled(checked);
    column.txtLyrics.SetEnabled(checked);
    column.cmbGenre.SetEnabled(checked);
    column.cmdToID3.SetEnabled(checked);
}

void cmdToID3_Click(TagEditor &editor, int index)
{
    Column &from = editor.At(index);
    Column &to = editor.At(from.tag);
    SetHasID3Tag(editor, from.tag, true);
    const auto sources = from.TextBoxes();
    const auto targets = to.TextBoxes();
    for (std::size_t i = 0; i < sources.size(); ++i) {
        const std::size_t limit = LimitOf(editor, *targets[i]);
        const std::string &text = sources[i]->Text();
        targets[i]->SetText(limit == 0 ? text : LeftCharacters(text, limit));
    }
    to.cmbGenre.SetText(from.cmbGenre.Text());
    to.txtTrack.SetText(from.txtTrack.Text());
    ShowNote(editor);
}

bool cmbGenre_KeyPress(TagEditor &editor, int index, std::string_view letter)
{
    if (index != kID3v1)
        return false;
    ui::ComboBox &box = editor.At(index).cmbGenre;
    const int entry = FindNextEntry(box.Items(), box.ListIndex(), letter);
    if (entry >= 0)
        box.SetListIndex(entry);
    return true;
}

bool IsLimitReached(TagEditor &editor, const ui::TextBox &box)
{
    const std::size_t limit = LimitOf(editor, box);
    return limit > 0 && CountCharacters(box.Text()) >= limit;
}

void ShowNote(TagEditor &editor)
{
    std::string texts;
    for (const int index : {kID3v1, kID3v2}) {
        Column &column = editor.At(index);
        for (const TagBox *box : column.TextBoxes())
            texts += box->Text();
        texts += column.cmbGenre.Text();
    }
    texts += editor.At(kID3v2).txtLyrics.Text();
    const std::string lacking = runtime::CharactersLacking(texts);
    editor.lblNote.SetVisible(!lacking.empty());
    if (!lacking.empty())
        editor.lblNote.SetCaption(runtime::Replace(
            Words("A tag cannot hold $Characters$. In place of each a \"?\" will be written.",
                  "NotInCodePage"),
            "$Characters$", runtime::Replace(lacking, "&", "&&")));
}

bool MayClose(const TagEditor &editor)
{
    return !editor.saving;
}

} // namespace tagedit
