#include "lyrics/install.h"

#include "browser/commands.h"
#include "lyrics/lyricsform.h"
#include "platform/desktop.h"
#include "platform/machine.h"
#include "player/nowplaying.h"

#include <memory>
#include <utility>
#include <vector>

namespace lyrics
{

namespace
{

struct State {
    std::unique_ptr<LyricsForm> following; // created for the first lyrics
    bool wanted = false;                   // the user is asking for it just now
    std::vector<std::unique_ptr<LyricsForm>> setting;
};

State &TheState()
{
    static State state;
    return state;
}

// While one exists, the window is shown because the user asked for it.
class UserRequest
{
public:
    UserRequest() { TheState().wanted = true; }
    ~UserRequest() { TheState().wanted = false; }
    UserRequest(const UserRequest &) = delete;
    UserRequest &operator=(const UserRequest &) = delete;
};

std::unique_ptr<LyricsForm> MakeForm()
{
    auto form = std::make_unique<LyricsForm>();
    form->newSettingWindow = OpenTimeSetting;
    return form;
}

} // namespace

void Install()
{
    browser::RegisterCommand("submnuShowLyricsCurrentSong", [] {
        const UserRequest asks;
        player::submnuShowLyricsCurrentSong_Click();
    });
    player::LyricsWindowCalls &calls = player::TheLyricsWindowCalls();
    calls.show = [](const std::string &, const std::string &title, const std::string &lyrics) {
        ShowLyrics(title, lyrics);
    };
    calls.unload = CloseLyrics;
}

void ShowLyrics(std::string_view title, std::string_view lyrics)
{
    auto &form = TheState().following;
    if (form == nullptr) {
        form = MakeForm();
        form->remembersPlace = true;
    }
    // A window that opens by itself must not take the keyboard from the window in use.
    form->takesKeyboard = TheState().wanted;
    try {
        FollowLyrics(*form, title, lyrics);
    } catch (const runtime::RuntimeError &) {
        CloseLyrics(); // it shows the lyrics of the previous song
        throw;
    }
}

void CloseLyrics()
{
    if (TheState().following != nullptr)
        ui::Close(*TheState().following);
}

void OpenTimeSetting(const std::string &file)
{
    if (file.empty()) {
        platform::TheMachine().desktop->MessageBox("No song is playing");
        return;
    }
    auto &forms = TheState().setting;
    for (auto &form : forms)
        if (!form->Loaded() && !form->busy)
            ui::Retire(std::move(form));
    std::erase(forms, nullptr);
    forms.push_back(MakeForm());
    SetTimes(*forms.back(), file);
}

void FlushDrafts()
{
    for (const auto &form : TheState().setting)
        FlushDraft(*form);
}

void ForgetForms()
{
    State ended = std::exchange(TheState(), State());
    ended.setting.push_back(std::move(ended.following));
    for (auto &form : ended.setting) {
        if (form == nullptr)
            continue;
        ui::Close(*form);
        ui::Retire(
            std::move(form)); // the form must outlive its window, which is destroyed a little later
    }
}

} // namespace lyrics
