// catalogue/rowgroups.h - when rows reach the disk together. A statement commits at once; only
// regeneration and batch may group the rows they add, up to 100 ms of work. A kill loses at most
// the open group, and other processes wait no longer than for the row under way.
#pragma once

#include "platform/desktop.h"

#include <string>

namespace catalogue
{

// While one stands, the writes inside a RowStep are committed in groups. Regeneration and batch
// hold one for their whole run; one inside another changes nothing.
class RowGroups
{
public:
    RowGroups();
    ~RowGroups(); // closes the open group
    RowGroups(const RowGroups &) = delete;
    RowGroups &operator=(const RowGroups &) = delete;

    // Closes the open group and gives the words of each group that could not be committed since
    // the last call, empty when there was none: the rows of such a group are lost, and the caller
    // tells the user so. To be called at the end of the run, before its summary.
    [[nodiscard]] std::string Close();
};

// Stands around the look-up of a path and the writes of its row: for other processes the two are
// one step. Without RowGroups each write inside commits at once, and the next begins a new step.
// Keep it short: nothing that asks, waits or reads an MP3 file belongs inside.
class RowStep
{
public:
    RowStep();
    ~RowStep();
    RowStep(const RowStep &) = delete;
    RowStep &operator=(const RowStep &) = delete;

private:
    int m_outerYield; // what the step around this one, if any, had noted
};

// Commits the group of rows that stands open, if any. Before anything that may take long: a box, a
// dialog, a nested event loop, a read from a slow disk. Errors: none; told by RowGroups::Close.
void CloseOpenGroup();

// Closes every connection to the catalogue that is kept warm; results that read late copy
// themselves first, and the log goes into the file, so that the file alone is whole. At each
// orderly end of the process; a statement afterwards opens anew.
void CloseCatalogue();

// A desktop that closes the open group before each box and dialog, and passes everything on.
// app/ puts it around the real one; a statement which an event handler runs inside DoEvents closes
// the group by itself.
class GroupClosingDesktop : public platform::Desktop
{
public:
    explicit GroupClosingDesktop(platform::Desktop &inner) : m_inner(inner) {}

    platform::Answer MessageBox(std::string_view text, platform::Buttons buttons,
                                std::string_view title, platform::BoxIcon icon) override;
    std::optional<std::string> InputBox(std::string_view prompt, std::string_view title,
                                        std::string_view initialText) override;
    std::optional<std::string> OpenDialog(std::string_view title,
                                          const std::vector<platform::FileFilter> &filters,
                                          const std::string &folder) override;
    void EmptyClipboard() override { m_inner.EmptyClipboard(); }
    void SetClipboardText(std::string_view text) override { m_inner.SetClipboardText(text); }
    bool OpenAddress(const std::string &address, const std::string &workingFolder) override;
    bool ShowHelp(const std::string &file) override { return m_inner.ShowHelp(file); }
    void SetPointer(platform::Pointer pointer) override { m_inner.SetPointer(pointer); }
    void DoEvents() override;

private:
    platform::Desktop &m_inner; // outlives this object
};

} // namespace catalogue
