#include "playlists/bookmarks.h"

#include "browser/form/formlayout.h"
#include "catalogue/adoclass.h"
#include "platform/desktop.h"
#include "platform/machine.h"
#include "runtime/error.h"
#include "runtime/numbers.h"
#include "runtime/paths.h"
#include "runtime/text.h"
#include "shell/globals.h"
#include "shell/language.h"

#include <algorithm>
#include <filesystem>
#include <unordered_map>
#include <utility>
#include <vector>

namespace playlists
{

namespace
{

using catalogue::DataAccess;

constexpr std::size_t kGroups = 4; // of shell::FieldNames
constexpr char kPlugInFolder[] = "C:\\Archivos de programa\\Winamp\\Plugins";
constexpr char kPlugInFile[] = "gen_bmark.dat";
constexpr std::string_view kPanel = "Playing"; // of the status bar

struct State {
    bool isExporting = false;
};

State &TheState()
{
    static State state;
    return state;
}

// Thrown when the program was ended while a statement let events run.
struct Ended {
};

// A new file beside the target. Finish renames it to the target; otherwise the destructor deletes
// it.
class WholeFile
{
public:
    explicit WholeFile(std::string path) : m_path(std::move(path))
    {
        m_handle = Files().CreateBeside(m_path, m_temporary);
        if (m_handle < 0)
            throw runtime::FileError(-m_handle, m_path);
    }
    ~WholeFile()
    {
        if (m_handle >= 0)
            Files().Close(m_handle);
        if (!m_temporary.empty())
            Files().Delete(m_temporary);
    }
    WholeFile(const WholeFile &) = delete;
    WholeFile &operator=(const WholeFile &) = delete;

    void Add(std::string_view tag, std::string_view text)
    {
        m_buffer.append(tag).append(text).append("\n");
        if (m_buffer.size() >= kBufferBytes)
            Write();
    }

    // Flushes the file to the disk and renames it.
    void Finish()
    {
        Write();
        Check(Files().Flush(m_handle));
        Files().Close(std::exchange(m_handle, -1));
        Check(Files().Rename(m_temporary, m_path));
        m_temporary.clear();
        Check(Files().FlushFolderOf(m_path));
    }

private:
    static constexpr std::size_t kBufferBytes = 1u << 16;

    static platform::Files &Files() { return *platform::TheMachine().files; }

    void Check(int error) const
    {
        if (error != 0)
            throw runtime::FileError(error, m_path);
    }

    void Write()
    {
        Check(Files().WriteAll(m_handle, m_buffer));
        m_buffer.clear();
    }

    std::string m_path, m_temporary, m_buffer;
    int m_handle = -1;
};

// While one exists, an export is running; the destructor restores the status bar.
class Exporting
{
public:
    explicit Exporting(browser::MainForm &form) : m_form(form), m_before(form.SB.Panel(kPanel).text)
    {
        TheState().isExporting = true;
        browser::ShowProgressBar(form);
        form.PBar.SetVisible(true);
    }
    ~Exporting()
    {
        TheState().isExporting = false;
        m_form.PBar.SetVisible(false);
        m_form.SB.SetText(kPanel, m_before);
    }
    Exporting(const Exporting &) = delete;
    Exporting &operator=(const Exporting &) = delete;

    void ShowField(std::string_view field, std::int64_t count)
    {
        std::string text = shell::GetLanguageText("Saving", "SavingFile", "Progress");
        text.append(" ").append(field);
        m_form.SB.SetText(kPanel, text);
        m_form.PBar.SetValue(0); // at once, so that it is never greater than the maximum
        m_form.PBar.SetMax(count);
    }
    void Step() { m_form.PBar.SetValue(m_form.PBar.Value() + 1); }

private:
    browser::MainForm &m_form;
    std::string m_before;
};

catalogue::RecordsetPtr Query(const std::string &statement, const catalogue::Params &params = {})
{
    if (DataAccess == nullptr)
        throw Ended();
    auto records =
        catalogue::Records(DataAccess->ExecuteSQL(statement, catalogue::kSelect, params));
    if (DataAccess == nullptr)
        throw Ended();
    if (records == nullptr || !records->IsOpen())
        throw runtime::RuntimeError(runtime::kInvalidCall, DataAccess->ErrorMessage);
    return records;
}

// The paths of each value, in the order of the file. One statement for each field: one for each
// value would read the whole catalogue each time.
std::unordered_map<std::string, std::vector<std::string>> PathsByValue(const std::string &field)
{
    std::unordered_map<std::string, std::vector<std::string>> paths; // by value in upper case
    const auto records =
        Query("SELECT " + field + ", Path\rFROM MP3s\rORDER BY " + field + ", Path");
    for (; !records->AtEnd(); records->MoveNext())
        paths[runtime::UpperText(records->Text(0))].emplace_back(records->Text(1));
    return paths;
}

std::string OneLine(std::string_view text)
{
    std::string line(text);
    std::replace_if(
        line.begin(), line.end(), [](char c) { return c == '\r' || c == '\n'; }, ' ');
    return line;
}

// The name of the genre with the number `value`; "Unknown" when that is no number or not in the
// table.
std::string GenreName(std::string_view value)
{
    const auto number = runtime::ParseNumber(value);
    if (!number)
        return "Unknown";
    const auto records = Query("SELECT Name\rFROM Genre\rWHERE ID = ?", catalogue::Value(*number));
    return records->AtEnd() ? "Unknown" : std::string(records->Text("Name"));
}

void WriteField(WholeFile &file, Exporting &progress, const std::string &field)
{
    const auto values = Query("SELECT DISTINCT " + field + "\rFROM MP3s\rORDER BY " + field);
    progress.ShowField(field, values->RecordCount());
    file.Add("d1", field);
    const auto paths = PathsByValue(field);
    for (; !values->AtEnd(); values->MoveNext()) {
        progress.Step();
        const std::string value(values->Text(0));
        if (value.empty())
            continue;
        file.Add("d2", OneLine(field == "Genre" ? GenreName(value) : value));
        const auto songs = paths.find(runtime::UpperText(value));
        if (songs == paths.end())
            continue; // removed meanwhile
        for (const std::string &path : songs->second)
            if (path.find_first_of("\r\n") == std::string::npos)
                file.Add("a3", path);
    }
}

} // namespace

std::span<const char *const> BookmarkFields()
{
    return std::span(shell::FieldNames).first(kGroups);
}

void ExportBookmarks(browser::MainForm &form)
{
    if (!std::filesystem::is_directory(kPlugInFolder))
        throw runtime::RuntimeError(runtime::kPathNotFound);
    ExportBookmarksTo(form, std::string(kPlugInFolder) + runtime::PathSeparator + kPlugInFile);
}

bool ExportBookmarksTo(browser::MainForm &form, const std::string &path,
                       std::span<const char *const> fields)
{
    if (TheState().isExporting)
        return false;
    Exporting progress(form);
    try {
        WholeFile file(path);
        file.Add("VER1", "");
        for (const char *field : fields)
            WriteField(file, progress, field);
        file.Finish();
    } catch (const Ended &) {
        return false;
    }
    return true;
}

void AskAndExportBookmarks(browser::MainForm &form)
{
    const auto path = platform::TheMachine().desktop->SaveDialog(
        shell::GetLanguageText("Export the bookmarks to", "BookmarkFile", "CommonDialogs"),
        {{shell::GetLanguageText("Bookmarks", "Bookmarks", "TypesOfFile"), "*.dat"}}, kPlugInFile);
    if (path && !path->empty())
        ExportBookmarksTo(form, *path);
}

} // namespace playlists
