// browser/exportfolder.h - frmExportFile: the window for choosing the folder of an export.
#pragma once

#include "ui/controls/form.h"

#include <cstdint>
#include <string>

namespace browser
{

// The drives, and the sub-folders of one folder. A click on a sub-folder makes it the folder of the
// window; a double click or Enter lists its sub-folders, and Backspace those of its parent.
struct ExportFolder : ui::Form {
    ExportFolder();

    ui::Label lblDrives{"D&rive:"}, lblFolders{"Fo&lders:"}, lblPath{"&Folder:"};
    ui::ComboBox Drives;
    ui::KeyedList Dirs;  // the sub-folders, the parent folder first
    ui::TextBox txtPath; // the folder of the window; all four buttons use it
    ui::Button cmdCreate, cmdDelete, cmdOk, cmdCancel;

    // The folder of the window (a path).
    const std::string &Path() const { return m_path; }

    // Lists the sub-folders of `folder`. It becomes the folder of the window, or its sub-folder
    // `selectedName` does, if it exists. A disk that does not answer is given up after two seconds,
    // during which events run.
    // Errors: kPathNotFound, kPathFileAccess with the path; the window is unchanged then.
    void GoTo(const std::string &folder, const std::string &selectedName = {});

    std::string start;    // where to begin: at the root of its drive; empty: at the current folder
    std::string selected; // the result; empty until OK

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
    std::string m_listed;   // the folder whose sub-folders are listed
    bool m_waiting = false; // for a disk
};

// Shows the window modally. Returns: the folder (a path); empty when cancelled.
// Errors: kPathNotFound, kPathFileAccess when not even the root can be read.
[[nodiscard]] std::string SelectDir(const std::string &start);

} // namespace browser
