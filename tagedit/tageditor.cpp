#include "tagedit/tageditor.h"

#include "metadata/genres.h"
#include "metadata/mp3info.h"
#include "metadata/tagtext.h"
#include "runtime/error.h"
#include "runtime/numbers.h"
#include "runtime/text.h"
#include "runtime/utf8.h"
#include "shell/language.h"
#include "tagedit/boxtext.h"
#include "tagedit/characternote.h"
#include "tagedit/genrelist.h"

namespace tagedit
{

namespace
{

using metadata::TextKind;

constexpr std::size_t kTextLimit = 30; // characters of a field of an ID3v1 tag
constexpr std::size_t kYearLimit = 4;  // characters

constexpr ui::Caption kCaptions[] = {
    {"", "TagEditor", "TagEditor", "Tag Editor"},
    {"frmHeader", "TagEditor", "MP3Header", "MPEG Info"},
    {"Label10", "ColumnHeaders", "Title", "Title"},
    {"Label11", "ColumnHeaders", "Artist", "Artist"},
    {"Label12", "ColumnHeaders", "Album", "Album"},
    {"Label13", "ColumnHeaders", "Year", "Year"},
    {"Label14", "ColumnHeaders", "Genre", "Genre"},
    {"Label15", "ColumnHeaders", "Track", "Track"},
    {"Label16", "ColumnHeaders", "Comment", "Comment"},
    {"lblLyrics", "ColumnHeaders", "Lyrics", "Lyrics"},
    {"cmdToID3(1)", "TagEditor", "CopyToID3v2", "Copy to ID3v&2"},
    {"cmdToID3(2)", "TagEditor", "CopyToID3v1", "Copy to ID3v&1"},
    {"lblBusy", "TagEditor", "Saving", "Saving the file..."},
    {"cmdOk", "TagEditor", "OkButton", "&OK"},
    {"cmdCancel", "TagEditor", "CancelButton", "&Cancel"},
};

// Whether a key types or deletes a character. No limit applies to the others (Tab, Escape, Ctrl
// with a letter).
bool IsTyped(char32_t key)
{
    constexpr char32_t kBackspace = 8;
    return key >= 32 || key == kBackspace;
}

std::string Utf8Of(char32_t character)
{
    std::string text;
    runtime::AppendCharacter(static_cast<std::int32_t>(character), text);
    return text;
}

// Sets a genre from the program; in column 1 it need not be in the list.
void SetGenre(GenreBox &box, std::string_view text)
{
    box.kept = text;
    box.SetText(text);
}

// The text of the genre box has changed. In column 1 a text that is not in the list was pasted or
// cut, not chosen; the last one is set again.
void GenreChosen(TagEditor &editor, int index)
{
    GenreBox &box = editor.At(index).cmbGenre;
    if (index == kID3v1 && box.ListIndex() < 0)
        box.SetText(box.kept);
    else
        box.kept = box.Text();
    ShowNote(editor, editor.lblNote);
}

void Fill(TagBox &box, std::string_view field, TextKind kind = TextKind::FileBytes)
{
    box.field = field;
    box.SetText(ShownText(field, kind));
}

void Fill(GenreBox &box, std::string_view field, TextKind kind = TextKind::FileBytes)
{
    box.field = field;
    SetGenre(box, ShownText(field, kind));
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
    column.kind = tag.kind;
    Fill(column.txtTitle, tag.Title, tag.kind);
    Fill(column.txtArtist, tag.Artist, tag.kind);
    Fill(column.txtAlbum, tag.Album, tag.kind);
    Fill(column.txtYear, tag.Year, tag.kind);
    Fill(column.txtComment, tag.Comment, tag.kind);
    Fill(column.cmbGenre, metadata::GenreField(tag), tag.kind);
    Fill(column.txtLyrics, tag.Lyrics, tag.kind);
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

// The greatest number of characters in a box of column 1; 0 for a box without a limit.
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

// While one exists, the editor is saving: its buttons are disabled and the line that says so is
// visible.
class SavingMark
{
public:
    explicit SavingMark(TagEditor &editor) : m_editor(editor) { Set(true); }
    ~SavingMark() { Set(false); }
    SavingMark(const SavingMark &) = delete;
    SavingMark &operator=(const SavingMark &) = delete;

private:
    void Set(bool saving)
    {
        m_editor.saving = saving;
        m_editor.cmdOk.SetEnabled(!saving);
        m_editor.cmdCancel.SetEnabled(!saving);
        m_editor.lblBusy.SetVisible(saving);
        for (const int index : {kID3v1, kID3v2})
            m_editor.At(index).ID3Info.SetEnabled(!saving);
    }

    TagEditor &m_editor;
};

} // namespace

TagEditor::TagEditor() : Form("frmEditTag", kCaptions)
{
    At(kID3v1).tag = kID3v2;
    At(kID3v2).tag = kID3v1;
    Add("frmHeader", frmHeader);
    Add("lblMPEGInfo", lblMPEGInfo, {.in = &frmHeader});
    for (const int index : {kID3v1, kID3v2})
        AddColumn(index);
    Add("lblNote", lblNote);
    Add("lblBusy", lblBusy);
    Add("cmdOk", cmdOk);
    Add("cmdCancel", cmdCancel);
    Arrange();
    lblBusy.SetVisible(false);
    lblNote.SetVisible(false);

    acceptButton = &cmdOk;
    cancelButton = &cmdCancel;
    resizable = true;
    onLoad = [this] { LoadTagEditor(*this); };
    mayClose = [this] { return !saving; };
    cmdCancel.onClick = [this] { ui::AskToClose(*this); };
    cmdOk.onClick = [this] {
        if (cmdOk_Click(*this))
            ui::Close(*this);
    };
}

// The Tab key moves down the column, in the order of these calls.
void TagEditor::AddColumn(int index)
{
    Column &column = At(index);
    const std::string suffix = "(" + std::to_string(index) + ")";
    ui::Frame *const frame = &column.ID3Info;
    column.ID3Info.SetCaption(index == kID3v1 ? "ID3v1" : "ID3v2");
    column.HasID3Tag.SetCaption(column.ID3Info.Caption());
    Add("ID3Info" + suffix, column.ID3Info);
    if (index == kID3v1)
        for (std::size_t i = 0; i < labels.size(); ++i)
            Add("Label" + std::to_string(10 + i), labels[i], {.in = frame});
    Add("HasID3Tag" + suffix, column.HasID3Tag, {.in = frame});
    const auto addText = [&](std::string_view controlName, TagBox &box, std::size_t label) {
        Add(std::string(controlName) + suffix, static_cast<ui::TextBox &>(box),
            {.in = frame, .label = &labels[label]});
        box.textChanged = [this] { ShowNote(*this, lblNote); };
        box.keyPressed = [this, &box](char32_t key) {
            return IsTyped(key) && IsLimitReached(*this, box);
        };
    };
    addText("txtTitle", column.txtTitle, 0);
    addText("txtArtist", column.txtArtist, 1);
    addText("txtAlbum", column.txtAlbum, 2);
    addText("txtYear", column.txtYear, 3);
    Add("cmbGenre" + suffix, static_cast<ui::ComboBox &>(column.cmbGenre),
        {.in = frame, .label = &labels[4]});
    addText("txtTrack", column.txtTrack, 5);
    addText("txtComment", column.txtComment, 6);
    if (index == kID3v2) {
        Add("lblLyrics", lblLyrics, {.in = frame});
        Add("txtLyrics" + suffix, static_cast<ui::TextBox &>(column.txtLyrics),
            {.in = frame, .label = &lblLyrics});
        column.txtLyrics.multiLine = true;
        column.txtLyrics.textChanged = [this] { ShowNote(*this, lblNote); };
    }
    Add("cmdToID3" + suffix, column.cmdToID3, {.in = frame});

    column.HasID3Tag.onClick = [this, index] {
        SetHasID3Tag(*this, index, At(index).HasID3Tag.Checked());
    };
    column.cmdToID3.onClick = [this, index] { cmdToID3_Click(*this, index); };
    column.cmbGenre.keyPressed = [this, index](char32_t key) {
        return IsTyped(key) && cmbGenre_KeyPress(*this, index, Utf8Of(key));
    };
    column.cmbGenre.onClick = [this, index] { GenreChosen(*this, index); };
    column.cmbGenre.textChanged = [this, index] { GenreChosen(*this, index); };
}

void TagEditor::Arrange()
{
    Column &one = At(kID3v1);
    Column &two = At(kID3v2);
    const ui::Layout fields1 =
        ui::Grid(2, {labels[0], ui::Filled(one.txtTitle), labels[1], one.txtArtist, labels[2],
                     one.txtAlbum, labels[3], one.txtYear, labels[4], one.cmbGenre, labels[5],
                     one.txtTrack, labels[6], one.txtComment});
    const ui::Layout fields2 =
        ui::Grid(1, {ui::Filled(two.txtTitle), two.txtArtist, two.txtAlbum, two.txtYear,
                     two.cmbGenre, two.txtTrack, two.txtComment});
    layout = ui::Column(
        {ui::Filled(ui::Row(
             {ui::Inside(frmHeader, ui::Column({lblMPEGInfo, ui::Room()})),
              ui::Filled(ui::Inside(
                  one.ID3Info, ui::Column({one.HasID3Tag, fields1, ui::Room(), one.cmdToID3}))),
              ui::Filled(ui::Inside(two.ID3Info,
                                    ui::Column({two.HasID3Tag, fields2, lblLyrics,
                                                ui::Filled(two.txtLyrics), two.cmdToID3})))})),
         ui::Row({ui::Filled(lblNote), lblBusy, ui::Room(), cmdOk, cmdCancel})});
    size.width = 11400;
    size.height = 7200;
}

void LoadTagEditor(TagEditor &editor)
{
    const std::vector<std::string> genres = GenreEntries();
    for (const int index : {kID3v1, kID3v2})
        editor.At(index).cmbGenre.SetItems(genres);
    LoadTags(editor);
}

void LoadTags(TagEditor &editor)
{
    const metadata::SongInfo info = metadata::ReadSongInfo(editor.File);
    if (const int failure = metadata::LastReadFailure(); failure != 0)
        throw runtime::FileError(failure, editor.File);
    editor.oldID3v1 = info.id3v1;
    editor.oldID3v2 = info.id3v2;
    editor.opened = metadata::CopyRawTags();
    editor.lblMPEGInfo.SetCaption(ui::CaptionOf(HeaderText(info.header)));
    SetHasID3Tag(editor, kID3v1, info.hasID3v1);
    SetHasID3Tag(editor, kID3v2, info.hasID3v2);
    FillColumn1(editor.At(kID3v1), info.id3v1);
    FillColumn2(editor.At(kID3v2), info.id3v2);
    ShowNote(editor, editor.lblNote);
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
        targets[i]->SetText(limit == 0 ? text : runtime::LeftCharacters(text, limit));
    }
    SetGenre(to.cmbGenre, from.cmbGenre.Text());
    to.txtTrack.SetText(from.txtTrack.Text());
    ShowNote(editor, editor.lblNote);
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
    return limit > 0 && runtime::CountCharacters(box.Text()) >= limit;
}

bool cmdOk_Click(TagEditor &editor)
{
    if (editor.saving)
        return false;
    const SavingMark mark(editor);
    const SaveEnd end = SaveTags(editor);
    if (end == SaveEnd::ReadAgain)
        LoadTags(editor);
    return end == SaveEnd::Saved;
}

} // namespace tagedit
