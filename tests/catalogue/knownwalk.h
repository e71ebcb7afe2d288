// tests/catalogue/knownwalk.h - repeated walks over songs whose last change is an hour old, as the
// files port says, with a list of those that are opened.
#pragma once

#include "catalogue/regeneration/knownsongs.h"
#include "metadata/mp3info.h"
#include "platform/disk/userfolders.h"
#include "platform/posix/disk/readahead.h"
#include "shell/globals.h"
#include "tests/catalogue/regenerationfixture.h"
#include "tests/support/wait.h"

#include <filesystem>
#include <functional>
#include <mutex>
#include <set>

namespace tests
{

// The real files, later than they are.
struct LaterFiles : platform::posix::SystemFilesPort {
    int OpenToRead(const std::string &path, platform::FileIdentity &identity) override
    {
        const std::lock_guard lock(mutex);
        opened.insert(std::filesystem::path(path).filename().string());
        return SystemFilesPort::OpenToRead(path, identity);
    }
    bool IsInState(const platform::FileIdentity &state) override
    {
        const bool is = SystemFilesPort::IsInState(state);
        if (const auto call = examined) // which may replace it
            call(std::filesystem::path(state.path).filename().string());
        return is;
    }
    bool HasChangeTimes(const platform::FileIdentity & /*file*/) override { return isTrusted; }
    std::int64_t StampClockNs() override { return SystemFilesPort::StampClockNs() + laterNs; }

    std::int64_t laterNs = 3'600'000'000'000;
    bool isTrusted = true;                             // the file system
    std::function<void(const std::string &)> examined; // by IsInState
    std::mutex mutex;
    std::set<std::string> opened; // names
};

// The same with a helper that reads ahead.
struct LaterReadAhead : platform::posix::ReadAheadFiles {
    explicit LaterReadAhead(std::shared_ptr<LaterFiles> source)
        : ReadAheadFiles(source, 2), later(std::move(source))
    {
    }
    std::int64_t StampClockNs() override { return later->StampClockNs(); }

    std::shared_ptr<LaterFiles> later;
};

struct KnownWalk : Regeneration {
    // What a user can see of a walk.
    struct Seen {
        RowList rows, playing, blank;
        std::string report;
        int yields = 0;
        std::int64_t files = 0, reported = 0, unicodeFiles = 0, failed = 0;

        bool operator==(const Seen &) const = default;
    };

    KnownWalk()
    {
        Use(*files);
        WriteFile(folder / "program", "1");
        catalogue::TheProgramFile() = folder / "program";
    }
    ~KnownWalk() override
    {
        catalogue::TheProgramFile() = platform::ProgramFile();
        Use(platform::SystemFiles());
    }

    static void Use(platform::Files &port)
    {
        metadata::ResetMP3Info();
        platform::TheMachine().files = &port;
    }

    // A walk, as after a new start of the program.
    Seen Walk()
    {
        metadata::ResetMP3Info();
        catalogue::AllowRegeneration();
        {
            const std::lock_guard lock(files->mutex);
            files->opened.clear();
        }
        playing.clear();
        blank.clear();
        Seen seen;
        desktop.doEvents = [&] { ++seen.yields; };
        if (hasMistakes)
            desktop.ExpectBox("There were some 'mistakes'", platform::Answer::No);
        catalogue::ListRefresh(false);
        desktop.doEvents = {};
        const catalogue::RegenerationSummary &summary = catalogue::LastRegeneration();
        seen.rows = Rows();
        seen.playing = playing;
        seen.blank = blank;
        seen.report = Report();
        seen.files = summary.files;
        seen.reported = summary.reported;
        seen.unicodeFiles = summary.unicodeFiles;
        seen.failed = summary.failed;
        return seen;
    }

    // The same without what earlier walks have read.
    Seen WalkAnew()
    {
        std::filesystem::remove(Store());
        return Walk();
    }

    std::string Store() const { return folder / "app/KnownSongs.dat"; }

    // The names of the songs that the last walk opened, with a blank after each.
    std::string Opened() const
    {
        const std::lock_guard lock(files->mutex);
        std::string names;
        for (const std::string &name : files->opened)
            names += name + " ";
        return names;
    }

    platform::FileIdentity Identity(const std::string &name) const
    {
        platform::FileIdentity identity;
        EXPECT_EQ(platform::SystemFiles().Identify(Song(name), identity), 0);
        return identity;
    }

    // Calls `change` until the song has another time of change.
    void Change(const std::string &name, const std::function<void()> &change) const
    {
        const std::int64_t before = Identity(name).changedNs;
        EXPECT_TRUE(WaitUntil([&] {
            change();
            return Identity(name).changedNs != before;
        }));
    }

    // Writes other bytes of the same length into the song, and puts its time of modification back.
    void WriteSecretly(const std::string &name, const std::string &bytes) const
    {
        const auto time = std::filesystem::last_write_time(Song(name));
        EXPECT_EQ(std::filesystem::file_size(Song(name)), bytes.size());
        Change(name, [&] {
            WriteFile(Song(name), bytes);
            std::filesystem::last_write_time(Song(name), time);
        });
    }

    bool hasMistakes = false; // the walks report some
    std::shared_ptr<LaterFiles> files = std::make_shared<LaterFiles>();
};

} // namespace tests
