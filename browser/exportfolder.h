// browser/exportfolder.h - frmExportFile: the window that asks for the folder of an export.
#pragma once

#include "ui/controls/form.h"

#include <cstdint>
#include <string>

namespace browser
{

// The drives, and the sub-folders of one folder. A click on a sub-folder makes that the folder of
// the window; a double click or Enter lists what is in it, and Backspace what is above.
struct ExportFolder : ui::Form {
    ExportFolder();

    ui::Label lblDrives{"D&rive:"}, lblFolders{"Fo&lders:"}, lblPath{"&Folder:"};
    ui::ComboBox Drives;
    ui::KeyedList Dirs;  // the sub-folders, the folder above them first
    ui::TextBox txtPath; // the folder of the window, which all four buttons work on
    ui::Button cmdCreate, cmdDelete, cmdOk, cmdCancel;

    // The folder of the window, a path.
    const std::string &Path() const { return m_path; }

    // Lists the sub-folders of `folder`, which becomes the folder of the window, or its sub-folder
    // `selectedName` where it has that one. A disk that does not answer is given up after two
    // seconds, in which the window stays alive.
    // Errors: kPathNotFound, kPathFileAccess with the path; the window is then as it was.
    void GoTo(const std::string &folder, const std::string &selectedName = {});

    std::string start;    // where the window begins: at the root of its drive; empty: where the
                          // process is
    std::string selected; // the answer; empty until OK

private:
    void AddMembers();
    void Load();
    void StartAt(const std::string &drive);
    void DriveChosen();
    void RowChosen();
    void EnterRow();
    void GoUp();
    void CreateFolder();
    void DeleteFolder();
    void Accept();
    void SetPath(const std::string &path);
    void EnableChoices(bool enabled);

    std::string m_path;
    std::string m_listed;   // the folder whose sub-folders show
    bool m_waiting = false; // for a disk
};

// Shows the window modally. Returns: the folder, a path; empty when cancelled.
// Errors: kPathNotFound, kPathFileAccess when not even the root can be read.
[[nodiscard]] std::string SelectDir(const std::string &start);

} // namespace browser
