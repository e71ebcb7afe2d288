#include "lyrics/lyricsform.h"

#include "metadata/tagtext.h"
#include "platform/machine.h"
#include "platform/windows.h"
#include "player/nowplaying.h"
#include "player/winampmod.h"
#include "runtime/numbers.h"
#include "runtime/text.h"
#include "shell/language.h"

#include <algorithm>
#include <initializer_list>

namespace lyrics
{

namespace
{

using Of = ui::Caption::Of;

// Captions that depend on a mode or a state are set by the handlers; symbols need no translation.
constexpr ui::Caption kCaptions[] = {
    {"", "Times", "Lyrics", "Lyrics"},
    {"cmdSetTimes", "Times", "SetTimes", "Set times"},
    {"cmdSetTimes", "Times", "SetTimesTip", "To set the times of the lyrics", Of::ToolTip},
    {"cmdSetIt", "Times", "Set", "Set"},
    {"cmdSetIt", "Times", "SetTip", "The the time for the current line", Of::ToolTip},
    {"cmdSave", "Times", "SaveTip", "Save the lyrcis to the file.", Of::ToolTip},
    {"cmdTest", "Test", "TestTimes", "Test the times", Of::ToolTip},
    {"cmdPause", "Times", "PauseTip", "Pause the test.", Of::ToolTip},
    {"lblKey", "Times", "KeyHint", "F9 sets the time of the line"},
};

// Sets a caption that is a symbol, and the picture that is shown for it.
void SetSymbol(ui::Button &button, std::string_view symbol)
{
    struct Picture {
        std::string_view symbol, key;
    };
    constexpr Picture kPictures[] = {{kSaveSymbol, "Save"},
                                     {kTestSymbol, "Test"},
                                     {kStopSymbol, "Stop"},
                                     {kPauseSymbol, "Pause"},
                                     {kContinueSymbol, "Play"}};
    button.SetCaption(symbol);
    for (const Picture &picture : kPictures)
        if (picture.symbol == symbol)
            button.SetImage(picture.key);
}

void SetTimer(ui::Timer &timer, bool enabled)
{
    if (timer.Enabled() != enabled) // enabling it again would restart its interval
        timer.SetEnabled(enabled);
}

void tmrReport_Timer(LyricsForm &form)
{
    form.tmrReport.SetEnabled(false);
    const runtime::RuntimeError failure = form.failure.value();
    form.failure.reset();
    throw failure;
}

// Runs the work of a button during which events run; pressing a button meanwhile does nothing.
template <class Work>
void RunButton(LyricsForm &form, const Work &work)
{
    if (form.busy)
        return;
    const BusyWhile busy(form);
    work();
}

void StartTest(LyricsForm &form)
{
    form.MarkedText = form.Lyrics.Text();
    form.testing = true;
    form.Times.emplace();
    form.cmdSetTimes.SetEnabled(true);
    try {
        ParseTimes(form);
    } catch (const runtime::RuntimeError &) {
        form.cmdSetTimes.SetEnabled(false);
        throw;
    }
    form.cmdSetTimes.SetEnabled(false);
    player::EnqueueFile(form.FileName);
    player::PlayTrack();
    form.Lyrics.SetFocus();
}

// Ends a test: the box has the text with marks again.
void PutMarkedTextBack(LyricsForm &form)
{
    form.Lyrics.SetText(form.MarkedText);
    form.testing = false;
    SetTimer(form.showTimes, false);
}

} // namespace

LyricsForm::LyricsForm() : Form("frmLyrics", kCaptions)
{
    size = {0, 0, 8100, 6000};
    resizable = true;
    Add("Lyrics", Lyrics);
    Add("cmdSetTimes", cmdSetTimes);
    Add("cmdSetIt", cmdSetIt);
    Add("cmdTest", cmdTest); // from left to right
    Add("cmdPause", cmdPause);
    Add("cmdSave", cmdSave);
    Add("lblKey", lblKey);
    Add("showTimes", showTimes);
    Add("tmrDraft", tmrDraft);
    Add("tmrReport", tmrReport);
    onLoad = [this] { Form_Load(*this); };
    onUnload = [this] { Form_Unload(*this); };
    onResize = [this] { Form_Resize(*this); };
    onKeyDown = [this](const ui::Key &key) { return Form_KeyDown(*this, key); };
    mayClose = [this] { return !Loaded() || MayClose(*this); };
    Lyrics.textChanged = [this] { Lyrics_Change(*this); };
    showTimes.event = [this] { showTimes_Timer(*this); };
    tmrDraft.event = [this] { FlushDraft(*this); };
    tmrReport.event = [this] { tmrReport_Timer(*this); };
    cmdSetTimes.onClick = [this] { cmdSetTimes_Click(*this); };
    cmdSetIt.onClick = [this] { cmdSetIt_Click(*this); };
    cmdSave.onClick = [this] { cmdSave_Click(*this); };
    cmdTest.onClick = [this] { cmdTest_Click(*this); };
    cmdPause.onClick = [this] { cmdPause_Click(*this); };
}

LyricsForm::~LyricsForm()
{
    ui::Close(*this);
}

void Form_Load(LyricsForm &form)
{
    player::LyricsWindowOpen = true;
    form.testing = false;
    SetSymbol(form.cmdSave, kSaveSymbol);
    SetSymbol(form.cmdTest, kTestSymbol);
    SetSymbol(form.cmdPause, kPauseSymbol);
    form.cmdSetTimes.SetEnabled(!form.SettingTimes);
    for (ui::Area *area : std::initializer_list<ui::Area *>{
             &form.cmdSetIt, &form.cmdSave, &form.cmdTest, &form.cmdPause, &form.lblKey})
        area->SetVisible(form.SettingTimes);
    form.cmdPause.SetEnabled(false); // before the first test MarkedText is empty
    SetTimer(form.showTimes, false);
    if (form.cmdSetTimes.Enabled())
        form.Times.emplace();
    Form_Resize(form);
}

void Form_Unload(LyricsForm &form)
{
    player::LyricsWindowOpen = false;
    form.Times.reset();
    SetTimer(form.showTimes, false);
    SetTimer(form.tmrDraft, false);
}

void Form_Resize(LyricsForm &form)
{
    if (form.minimised)
        return;
    constexpr int kTop = 120;
    constexpr int kGap = 75;
    constexpr int kButtonHeight = 435;
    constexpr int kKeyWidth = 2700; // the text is cut when the window is narrower
    const int width = std::max(0, form.size.width - 320);
    const int height = std::max(0, form.size.height - 810);
    int left = 160;
    form.Lyrics.SetPlace({left, kTop, width, height});
    const int row = kTop + height + 120;
    const auto place = [&left, row](ui::Area &area, int areaWidth) {
        area.SetPlace({left, row, areaWidth, kButtonHeight});
        left += areaWidth + kGap;
    };
    place(form.cmdSetTimes, 1800);
    place(form.cmdSetIt, 1275);
    for (ui::Button *button : {&form.cmdTest, &form.cmdPause, &form.cmdSave})
        place(*button, 525);
    const int rest = form.size.width - left;
    form.lblKey.SetPlace({left, row + 105, std::max(0, rest), kButtonHeight - 105});
    form.lblKey.SetVisible(form.SettingTimes && rest >= kKeyWidth);
}

bool Form_KeyDown(LyricsForm &form, const ui::Key &key)
{
    if (key.code != kMarkKey || key.shift || key.ctrl || key.alt || !form.SettingTimes)
        return false;
    if (!key.repeated)
        form.cmdSetIt.Click();
    return true;
}

void FollowLyrics(LyricsForm &form, std::string_view title, std::string_view lyrics)
{
    if (form.Visible()) { // it stays where it is and is not brought to the front
        platform::TheMachine().windows->CheckNonModal();
        Form_Unload(form);
        Form_Load(form);
    } else {
        ui::Show(form);
    }
    const std::string name = shell::GetLanguageText("Lyrics", "Lyrics", "Times");
    std::string song(title);
    std::erase(song, '\0'); // many programs write NULs after the texts of a tag
    form.SetTitle(song.empty() ? name : song + " - " + name);
    form.Lyrics.SetText({}); // so that a text that equals the last one is a change too
    form.Lyrics.kind = metadata::KindInUse();
    form.Lyrics.SetText(runtime::WithCrLf(lyrics));
}

void SetTimes(LyricsForm &form, const std::string &file)
{
    const BusyWhile busy(form);
    form.Lyrics.kind = metadata::KindInUse();
    form.fileLyrics = LyricsOfFile(file, form.Lyrics.kind);
    form.FileName = file;
    form.SettingTimes = true;
    ui::Show(form);
    form.SetTitle(shell::GetLanguageText("Setting Times", "SettingTimes", "Times"));
    form.Lyrics.SetText(form.fileLyrics);
    OfferDraft(form);
    player::StopTrack();
    player::EnqueueFile(file);
    player::PlayTrack();
    form.Lyrics.SetFocus();
}

void Lyrics_Change(LyricsForm &form)
{
    try {
        ParseTimes(form);
    } catch (const runtime::RuntimeError &failure) {
        ReportLater(form, failure);
    }
    if (form.Loaded() && form.SettingTimes)
        SetTimer(form.tmrDraft, true);
}

void ParseTimes(LyricsForm &form)
{
    if (!form.cmdSetTimes.Enabled() || !form.Lyrics.Enabled())
        return;
    if (!form.Times)
        form.Times.emplace();
    form.Lyrics.SetEnabled(false); // a change that the test makes calls this handler again
    std::string text = form.Lyrics.Text();
    try {
        ParseMarks(form.Lyrics.kind, text, *form.Times);
    } catch (const runtime::RuntimeError &) {
        form.Lyrics.SetText(text);
        form.Lyrics.SetEnabled(true);
        throw;
    }
    form.Lyrics.SetText(text);
    form.Lyrics.SetEnabled(true);
    SetTimer(form.showTimes, !form.Times->empty());
}

void showTimes_Timer(LyricsForm &form)
{
    float seconds = 0;
    player::GetPlayingTimeStatus(&seconds);
    if (!form.Times)
        return;
    try {
        const auto entry = form.Times->find(TimesKey(runtime::RoundToInt32(seconds)));
        if (entry != form.Times->end())
            form.Lyrics.Select(entry->second.Start, entry->second.Length);
    } catch (const runtime::RuntimeError &) {
        return; // no entry can have this time
    }
}

void cmdSetTimes_Click(LyricsForm &form)
{
    form.newSettingWindow(player::GetCurrentSongPath());
}

void cmdSetIt_Click(LyricsForm &form)
{
    const std::string status = player::GetPlayingTimeStatus();
    std::string mark = "[";
    mark.append(runtime::Trim(std::string_view(status).substr(0, status.find(' ')))).append("]");
    const std::string &text = form.Lyrics.Text();
    const int caret = form.Lyrics.SelStart();

    // From here positions are one-based: of the carriage return before the caret (0 without one),
    // and after the caret of the next one, or of the text's last character.
    std::size_t before = form.Lyrics.OffsetOf(caret);
    while (before > 0 && text[before - 1] != '\r')
        --before;
    // After the line feed; without a line before, after the first character of the text.
    form.Lyrics.Replace(form.Lyrics.PositionAt(before) + 1, 0, mark);
    std::size_t next = form.Lyrics.OffsetOf(caret + static_cast<int>(mark.size()));
    while (next < text.size() && text[next - 1] != '\r')
        ++next;
    form.Lyrics.Select(form.Lyrics.PositionAt(next), 1);
    form.Lyrics.SetFocus();
}

void cmdTest_Click(LyricsForm &form)
{
    RunButton(form, [&form] {
        const bool start = form.cmdTest.Caption() == kTestSymbol;
        SetSymbol(form.cmdTest, kStopSymbol);
        form.cmdPause.SetEnabled(true); // always with this caption, also when a step fails
        if (start) {
            form.cmdTest.SetToolTip(shell::GetLanguageText("Stop the test", "StopTest", "Test"));
            player::StopTrack();
            StartTest(form);
        } else {
            form.cmdTest.SetToolTip(shell::GetLanguageText("Test the times", "TestTimes", "Test"));
            PutMarkedTextBack(form);
            form.Times.reset();
        }
    });
}

void cmdPause_Click(LyricsForm &form)
{
    RunButton(form, [&form] {
        if (form.cmdPause.Caption() == kPauseSymbol) {
            SetSymbol(form.cmdPause, kContinueSymbol);
            form.cmdPause.SetToolTip(
                shell::GetLanguageText("Continue with the test", "ContinueWithTheTest", "Test"));
            player::PauseTrack();
            PutMarkedTextBack(form);
        } else {
            SetSymbol(form.cmdPause, kPauseSymbol);
            form.cmdPause.SetToolTip(shell::GetLanguageText("Pause the test", "PauseTest", "Test"));
            StartTest(form);
        }
    });
}

void cmdSave_Click(LyricsForm &form)
{
    RunButton(form, [&form] { SaveMarks(form, form.MarkedText); });
}

} // namespace lyrics
