// tests/support/libraryfixture.h - a program folder with a new catalogue, a music folder beside it,
// and the ports for the catalogue's jobs; the destructor removes them.
#pragma once

#include "catalogue/recordset.h"
#include "tests/support/fakeports.h"
#include "tests/support/scripteddesktop.h"
#include "tests/support/testfolder.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tests
{

class LibraryFixture : public testing::Test
{
protected:
    LibraryFixture();
    ~LibraryFixture() override;

    // Opens the catalogue again, as a new start of the program does.
    void OpenCatalogue() const;

    // The music folder; Song gives a path in it.
    const std::string &Music() const { return m_music; }
    std::string Song(const std::string &name) const { return m_music + "/" + name; }

    // The rows of MP3s in the order of adding, each as its fields with "|" between them: Title,
    // Artist, Album, Year, Comment, Genre, Lyrics, Path, Disk_Label, Duplicated. The path of the
    // music folder is written as "~".
    std::vector<std::string> Rows() const;

    // Runs `sql` from outside the program.
    void RunOutside(const std::string &sql) const;

    TestFolder folder; // contains "app", the program's folder, and "music"
    FakeClock clock;
    FakeDrives drives;
    ScriptedDesktop desktop;

private:
    std::string m_music;
    std::string m_appPathBefore;
};

} // namespace tests
