// Measures the main window without its widgets: the field tree of a whole catalogue compared with
// only reading its rows, the files of a value with many rows, and sorting them.
// Arguments: a catalogue file (copied first, then read), and a folder for temporary files.
#include "bench/opencopy.h"
#include "bench/timing.h"
#include "browser/fieldtree.h"
#include "browser/itemlist.h"
#include "shell/globals.h"

#include <sqlite3.h>

#include <cstdio>
#include <string>

namespace
{

// Seven reads of all rows and columns, each in SQLite's order by another field.
double BareWalks(const std::string &file, std::size_t &bytes)
{
    sqlite3 *db = nullptr;
    sqlite3_open(file.c_str(), &db);
    bytes = 0;
    const bench::Stopwatch watch;
    for (const std::string field : shell::FieldNames) {
        if (field == "List")
            continue;
        sqlite3_stmt *statement = nullptr;
        sqlite3_prepare_v2(db, ("SELECT * FROM MP3s ORDER BY " + field).c_str(), -1, &statement,
                           nullptr);
        while (sqlite3_step(statement) == SQLITE_ROW)
            for (int i = 0; i < sqlite3_column_count(statement); ++i)
                if (sqlite3_column_text(statement, i) != nullptr)
                    bytes += static_cast<std::size_t>(sqlite3_column_bytes(statement, i));
        sqlite3_finalize(statement);
    }
    const double took = watch.Ms();
    sqlite3_close(db);
    return took;
}

// The value of the tree's genre group with the most files.
std::string LargestGenre(browser::MainForm &form)
{
    std::string largest;
    int files = -1;
    for (const ui::NodeId node : form.TV.Children(form.TV.Find("ByGenre"))) {
        form.TV.MoveTo(node);
        if (form.LV.Count() > files) {
            files = form.LV.Count();
            largest = form.TV.Key(node);
        }
    }
    return largest;
}

void TimeList(browser::MainForm &form, const std::string &key)
{
    const bench::Stopwatch filling;
    form.TV.ClickText(form.TV.Find(key));
    const double fill = filling.Ms();
    const bench::Stopwatch sorting;
    form.LV.SetSort(1, true);
    const double sort = sorting.Ms();
    form.LV.SetSort(0, false);
    std::printf("a click on a value: %d rows in %.1f ms, sorted by title in %.1f ms\n",
                form.LV.Count(), fill, sort);
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 3)
        return 2;
    const bench::OpenCopy copy(argv[1], argv[2]);
    browser::MainForm &form = browser::frmMain();
    browser::BindTreeEvents(form);
    for (int round = 0; round < 3; ++round) {
        std::size_t bytes = 0;
        const double bare = BareWalks(copy.File(), bytes);
        const bench::Stopwatch watch;
        browser::LoadTreeView(form, "");
        const double ours = watch.Ms();
        std::printf("LoadTreeView: %.0f ms for %d nodes, bare walks %.0f ms (%zu bytes), ratio "
                    "%.3f\n",
                    ours, form.TV.Count(), bare, bytes, ours / bare);
    }
    form.TreeJustExpanded = false;
    TimeList(form, LargestGenre(form));
    browser::ResetMainForm();
    return 0;
}
