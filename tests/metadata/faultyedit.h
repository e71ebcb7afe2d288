// tests/metadata/faultyedit.h - one edit, as often as wanted, over files of which a call may fail.
#pragma once

#include "metadata/mp3info.h"
#include "metadata/tagwriter.h"
#include "platform/machine.h"
#include "tests/metadata/faultyfiles.h"
#include "tests/support/mp3bytes.h"
#include "tests/support/songdesk.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

namespace tests
{

// A song with both tags whose title is edited; its bytes before and after.
class FaultyEdit : public testing::Test
{
protected:
    void SetUp() override { platform::TheMachine().files = &m_files; }

    // Edits the title of a fresh song in a fresh folder. The result of SaveTag.
    bool Edit()
    {
        std::filesystem::remove_all(m_path);
        std::filesystem::remove_all(m_path + ".bck");
        std::filesystem::remove_all(m_desk.program / "Backup");
        WriteFile(m_path, kOld);
        return EditAsItIs();
    }

    bool EditAsItIs()
    {
        m_files.calls = 0;
        m_files.isDead = false;
        m_files.named.clear();
        m_desk.boxes.clear();
        metadata::SongInfo old = metadata::ReadSongInfo(m_path);
        metadata::SongInfo now = old;
        now.id3v2.Title = "New";
        return metadata::SaveTag(now.id3v1, now.id3v2, old.id3v1, old.id3v2, m_path, true, true,
                                 nullptr);
    }

    // Whether the last edit has given a file this path.
    bool HasNamed(const std::string &path) const
    {
        return std::ranges::find(m_files.named, path) != m_files.named.end();
    }

    static std::vector<std::string> Names(const std::string &folder)
    {
        std::vector<std::string> names;
        for (const auto &entry : std::filesystem::directory_iterator(folder))
            names.push_back(entry.path().filename().string());
        return names;
    }

    const std::string kAudio = Header128() + std::string(10'000, 'a');
    const std::string kImage = Tag1("One", "", "", "", "", 3, 17);
    const std::string kKept = Frame3("PRIV", std::string(2000, 'k'));
    const std::string kOld = Tag(3, Frame3("TIT2", "Old") + kKept) + kAudio + kImage;
    const std::string kNew =
        Tag(3, Frame3("TIT2", "New") + Frame3("TCON", "(255)") + Frame3("TRCK", "0") + kKept) +
        kAudio + kImage;
    SongDesk m_desk;
    FaultyFiles m_files;
    std::string m_path = m_desk.music / "song.mp3";
};

} // namespace tests
