// A player that fails at the n-th call, for every n until the job needs no n-th call: nothing that
// the program does to a player depends on an answer.
#include "browser/commands.h"
#include "browser/form/formpopup.h"
#include "player/controlsform.h"
#include "player/install.h"
#include "player/nowplaying.h"
#include "player/playing.h"
#include "player/playmp3.h"
#include "tests/browser/formfixture.h"
#include "tests/support/fakeforms.h"
#include "tests/support/recordingplayer.h"

using tests::kPlay;

namespace
{

using Lines = std::vector<std::string>;

constexpr int kMostCalls = 4000; // three waits of 10 s for a player, a look every 10 ms
constexpr std::string_view kTwoSongs = "#EXTM3U\r\n/0.mp3\r\n/1.mp3\r\n";

class FailingPlayer : public tests::FormTest
{
protected:
    FailingPlayer()
    {
        player::Install();
        Loaded().LV.SetSubItemKeys({"Title", "Label", "Path"});
        const std::string_view cells[] = {"title", "label", "/1.mp3"};
        Form().LV.SelectOnly(Form().LV.AddRow("/1", "", "", cells));
        results.SetSubItemKeys({"Title", "Label", "Path"});
        results.SelectOnly(results.AddRow("/1", "", "", cells));
    }
    ~FailingPlayer() override
    {
        player::ResetPlayMP3();
        player::ResetNowPlaying();
    }

    // Two songs in its list, the first one plays.
    void MakeWell()
    {
        port.onCall = nullptr;
        port.window = 9;
        port.answers.clear();
        port.Answer(104, 1);
        port.Answer(105, 12'000);
        port.Answer(105, 100, 1);
        port.Answer(124, 2);
        port.command = command;
        if (!std::filesystem::exists(port.Playlist()) ||
            tests::ReadFile(port.Playlist()) != kTwoSongs)
            port.SetPlaylist(kTwoSongs);
        port.readError = 0;
        port.refusesFiles = false;
        port.foreground = 3;
        port.frontAfter = 0;
        port.noteReads = port.noteRegistry = true;
        player::IsWinampRunning();
        port.Received();
    }

    void ExpectThatItPlays()
    {
        MakeWell();
        player::PlayMP3File("/1.mp3", results);
        const Lines received = port.Received();
        EXPECT_EQ(std::count(received.begin(), received.end(), kPlay), 1);
        EXPECT_EQ(std::count(received.begin(), received.end(), "1024 1 121"), 1);
    }

    tests::FakeForms host;
    ui::KeyedList results; // of another window, so the panel is not updated
    tests::RecordingPlayer port;
    const std::string command = port.command;
};

TEST_F(FailingPlayer, EveryJobAtEveryCall)
{
    struct Failure {
        const char *name;
        std::function<void()> happens;
    };
    const Failure failures[] = {
        {"ends", [this] { port.window = 0; }},
        {"is another one", [this] { port.window = 12; }},
        {"stops", [this] { port.Answer(104, 0); }},
        {"forgets its list", [this] { port.Answer(124, 0), port.Answer(125, -1); }},
        {"has fewer than no songs", [this] { port.Answer(124, -2147483647 - 1); }},
        {"does not write its list", [this] { port.Answer(120, -1); }},
        {"writes nothing", [this] { port.SetPlaylist(""); }},
        {"writes half a list", [this] { port.SetPlaylist("#EXTM3U\r\n/0.m"); }},
        {"keeps its list to itself", [this] { port.readError = runtime::kPathFileAccess; }},
        {"has a list that breaks", [this] { port.readError = runtime::kDeviceIoError; }},
        {"is not installed", [this] { port.command.clear(); }},
        {"takes no song", [this] { port.refusesFiles = true; }},
        {"does not come forward", [this] { port.frontAfter = 1000; }},
        {"says what cannot be",
         [this] {
             for (const int request : {104, 120, 121, 124, 125})
                 port.Answer(request, 2147483647);
             port.Answer(105, -2147483647 - 1);
             port.Answer(105, -5, 1);
         }},
    };
    std::int32_t state = 0, position = 0;
    player::ControlsForm controls;
    struct Job {
        const char *name;
        std::function<void()> run;
    };
    const Job jobs[] = {
        {"a listed song", [this] { player::PlayMP3File("/1.mp3", results); }},
        {"a new song", [this] { player::PlayMP3File("/new.mp3", results); }},
        {"a tick", [] { player::tmr_Playing_Timer(); }},
        {"a fresh list", [] { player::tmrRefreshList_Timer(); }},
        {"release", [&] { player::ReleasePlayingFile("/0.mp3", state, position); }},
        {"restore", [] { player::RestorePlayingFile("/0.mp3", "/0.mp3", 3, 5000); }},
        {"lyrics of the song", [] { player::submnuShowLyricsCurrentSong_Click(); }},
        {"shuffle", [] { player::ToggleShuffle(); }},
        {"popup",
         [this] {
             for (const char *entry : {"Play", "Pause", "Stop"})
                 browser::ClickPopup(Form(), entry);
         }},
        {"the controls",
         [&] {
             ui::Show(controls);
             controls.HScroll.thumbMoved();
             controls.HScroll.thumbReleased();
             controls.tmrStopDragging.Fire();
             controls.tmrUpdate.Fire();
             controls.onKeyDown(ui::Key{39});
             ui::Close(controls);
         }},
    };
    for (const Job &job : jobs) {
        for (const Failure &failure : failures) {
            int calls = 0, failing = 0;
            do {
                SCOPED_TRACE(std::string(job.name) + ", the player " + failure.name + " at call " +
                             std::to_string(failing));
                MakeWell();
                calls = 0;
                port.onCall = [&](const std::string &) {
                    if (calls++ == failing)
                        failure.happens();
                };
                try {
                    job.run();
                } catch (const runtime::RuntimeError &error) {
                    EXPECT_NE(error.description, "");
                }
                EXPECT_LT(calls, kMostCalls);
                ui::Close(controls);
                ExpectThatItPlays();
                ASSERT_FALSE(HasFailure());
            } while (calls > failing++);
            EXPECT_GT(failing, 1) << job.name << " asks the player nothing";
        }
    }
}

// What a failure of the player may cost: the song is not played, and its name is in the words.
TEST_F(FailingPlayer, NothingIsPlayedWhenTheSongIsNotAdded)
{
    MakeWell();
    port.refusesFiles = true;
    EXPECT_THROW(player::PlayMP3File("/new.mp3", Form().LV), runtime::RuntimeError);
    const Lines received = port.Received();
    EXPECT_EQ(std::count(received.begin(), received.end(), kPlay), 0);
}

} // namespace
