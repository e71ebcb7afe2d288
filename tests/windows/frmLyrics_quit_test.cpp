// Quitting while times of lyrics are set.
#include "lyrics/frmLyricsView.h"
#include "lyrics/install.h"
#include "metadata/tagwriter.h"
#include "platform/qt/qtdesktop.h"
#include "tests/lyrics/lyricsfixture.h"
#include "tests/windows/mainwindowfixture.h"
#include "ui/qt/form.h"

#include <gtest/gtest.h>

#include <QWindow>

namespace tests
{

namespace
{

class QuitWithLyrics : public MainWindowTest
{
protected:
    QuitWithLyrics() { lyrics::RegisterLyricsView(); }
    ~QuitWithLyrics() override
    {
        lyrics::ForgetForms();
        Settle(); // closed windows are deleted by the next event
        metadata::TheTagWriterHooks() = {};
        platform::TheMachine().desktop = &desktop;
    }

    ConfigFolder config;
    RecordingPlayer player;
    ui::qt::FormWindows host;
    platform::qt::QtDesktop boxes;
};

TEST_F(QuitWithLyrics, AsksBeforeTheFirstStepOfTheEnd)
{
    WriteFile(Song("song.mp3"), Id3v2(TextFrame("TIT2", "Title") +
                                      Frame("USLT", std::string("\0eng\0One\r\nTwo\r\n", 15))) +
                                    Audio());
    Start();
    lyrics::OpenTimeSetting(Song("song.mp3"));
    auto &form = dynamic_cast<lyrics::LyricsForm &>(*host.Forms().at(0));
    QWidget &setting = *host.WindowOf(form);
    EXPECT_TRUE(WaitUntil([&] { return setting.isActiveWindow(); }));
    EXPECT_EQ(setting.windowHandle()->transientParent(), window->windowHandle())
        << "it stays above the main window";
    PressKey("Ctrl+End");
    TypeText("Three");

    platform::TheMachine().desktop = &boxes;
    settings.Write("Quenlin", "Preferences", "Width", "1");
    WhenModal([](QWidget &) { PressKey("Escape"); });
    window->close();
    Settle();
    EXPECT_FALSE(ended);
    EXPECT_NE(catalogue::DataAccess, nullptr);
    EXPECT_TRUE(window->isVisible());
    EXPECT_TRUE(setting.isVisible());
    EXPECT_EQ(settings.Read("Quenlin", "Preferences", "Width", ""), "1")
        << "no step of the end was made";

    bool catalogueWasOpen = false;
    shell::TheGlobals().UpdateDBAfterEditing = true;
    metadata::TheTagWriterHooks().updateCatalogue = [&](const auto &...) {
        catalogueWasOpen = catalogue::DataAccess != nullptr;
    };
    WhenModal([](QWidget &) { PressKey("Alt+S"); });
    window->close();
    EXPECT_TRUE(WaitUntil([this] { return ended; }));
    EXPECT_TRUE(catalogueWasOpen);
    EXPECT_EQ(LyricsIn(Song("song.mp3")), "One\r\nTwo\r\nThree");
}

} // namespace

} // namespace tests
