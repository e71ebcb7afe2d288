#include "player/playmp3.h"

#include "browser/mainform.h"
#include "browser/webpanel.h"
#include "platform/clock.h"
#include "platform/desktop.h"
#include "platform/machine.h"
#include "platform/waiting.h"
#include "player/disks.h"
#include "player/playing.h"
#include "player/winampmod.h"
#include "runtime/error.h"
#include "runtime/text.h"
#include "shell/language.h"

#include <optional>
#include <utility>

namespace player
{

using platform::TheMachine;

namespace
{

constexpr int kStartRounds = 3;                 // attempts to start the player
constexpr std::int64_t kStartMs = 10'000;       // for one attempt
constexpr std::int64_t kShowWaitAfterMs = 1000; // then the user is shown what the program waits for
constexpr int kMinimised = 2;                   // the player's window: minimised, with the focus
constexpr std::string_view kPanel = "Playing";

struct Wanted {
    std::string path;
    ui::KeyedList *list;
};

struct State {
    bool busy = false;
    std::optional<Wanted> next; // the song of a later call, which replaces this one
    bool ended = false;
} state;

// Whether a later call has replaced the current song.
bool IsReplaced()
{
    return state.next.has_value() || state.ended;
}

// After a second, shows in the status bar what the program waits for; the destructor restores the
// panel.
class WaitNotice
{
public:
    explicit WaitNotice(std::string words)
        : m_words(std::move(words)), m_start(TheMachine().clock->SteadyMs())
    {
    }
    ~WaitNotice()
    {
        if (m_before && browser::frmMain().SB.Panel(kPanel).text == m_words)
            browser::frmMain().SB.SetText(kPanel, *m_before);
    }
    WaitNotice(const WaitNotice &) = delete;
    WaitNotice &operator=(const WaitNotice &) = delete;

    void Show()
    {
        if (m_before || TheMachine().clock->SteadyMs() - m_start < kShowWaitAfterMs)
            return;
        ui::StatusBar &bar = browser::frmMain().SB;
        m_before = bar.Panel(kPanel).text;
        bar.SetText(kPanel, m_words);
    }

private:
    std::string m_words;
    std::int64_t m_start;
    std::optional<std::string> m_before;
};

std::string WaitWords()
{
    return runtime::Replace(
        shell::GetLanguageText("Waiting for $Player$...", "WaitingForPlayer", "SongControls"),
        "$Player$", TheMachine().player->Name());
}

// Starts the player. Returns: false when EndPlaying was called meanwhile.
bool StartPlayer()
{
    if (IsWinampRunning())
        return true;
    WaitNotice notice(WaitWords());
    for (int round = 0; !IsWinampRunning(); ++round) {
        if (round == kStartRounds)
            throw runtime::RuntimeError(runtime::kFileNotFound, "The player " +
                                                                    TheMachine().player->Name() +
                                                                    " does not answer.");
        TheMachine().player->StartProgram(GetWinampExePath(), kMinimised);
        const platform::WaitEnd end = platform::WaitUntil(
            [&notice] {
                notice.Show();
                return IsWinampRunning();
            },
            kStartMs);
        if (end == platform::WaitEnd::Cancelled)
            return false;
    }
    return true;
}

std::string LabelOfRow(const ui::KeyedList &list)
{
    const ui::RowId row = list.SelectedItem();
    if (row == ui::kNoRow)
        return {};
    try {
        return std::string(list.SubItem(row, "Label"));
    } catch (const runtime::RuntimeError &) {
        return {};
    }
}

void AskForDisk(const std::string &type, const std::string &label)
{
    const std::string words = shell::GetLanguageText(
        "You have to insert the $DiskType$ labeled '$Label$' to play this MP3.",
        "RemovableDiskNotReady", "Messages");
    TheMachine().desktop->MessageBox(
        runtime::Replace(runtime::Replace(words, "$Label$", label), "$DiskType$", type));
}

void PlayOne(const Wanted &wanted)
{
    if (!StartPlayer() || IsReplaced())
        return;
    const std::string type = GetDriveTypeName(wanted.path);
    if (type != "Fixed" && !FileCanBeOpened(wanted.path)) {
        AskForDisk(type, LabelOfRow(*wanted.list));
        return;
    }
    if (GetPlayingState() == 1)
        StopTrack();
    const std::int16_t index = PlaceInPlaylist(wanted.path);
    if (IsReplaced())
        return;
    SetPlaylistPosition(index);
    PlayTrack();
}

void RefreshPanel(ui::KeyedList &list)
{
    browser::MainForm &form = browser::frmMain();
    if (&list == &form.LV)
        browser::ShowSelectedItemInfo(list, form);
}

} // namespace

void PlayMP3File(const std::string &path, ui::KeyedList &list)
{
    if (TheMachine().player == nullptr || state.ended)
        return;
    state.next = Wanted{path, &list};
    if (state.busy) {
        platform::CancelWaits();
        return;
    }
    state.busy = true;
    try {
        while (state.next && !state.ended) {
            const Wanted wanted = *std::exchange(state.next, std::nullopt);
            PlayOne(wanted);
            if (!state.ended)
                RefreshPanel(*wanted.list);
        }
    } catch (const runtime::RuntimeError &) {
        state.busy = false;
        state.next.reset();
        throw;
    }
    state.busy = false;
}

void EndPlaying()
{
    state.ended = true;
    platform::CancelWaits();
}

void ResetPlayMP3()
{
    state = {};
}

} // namespace player
