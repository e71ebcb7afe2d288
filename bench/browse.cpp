// Measures the main window without its widgets: the field tree of a whole catalogue compared with
// only reading its rows, the files of a value with many rows, and sorting them.
// Arguments: a catalogue file (copied first, then read), and a folder for temporary files.
#include "bench/barewalks.h"
#include "bench/largestvalue.h"
#include "bench/opencopy.h"
#include "bench/timing.h"
#include "browser/fieldtree.h"
#include "browser/itemlist.h"

#include <cstdio>
#include <string>

namespace
{

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
        const auto [bare, bytes] = bench::BareWalks(copy.File());
        const bench::Stopwatch watch;
        browser::LoadTreeView(form, "");
        const double ours = watch.Ms();
        std::printf("LoadTreeView: %.0f ms for %d nodes, bare walks %.0f ms (%zu bytes), ratio "
                    "%.3f\n",
                    ours, form.TV.Count(), bare, bytes, ours / bare);
    }
    form.TreeJustExpanded = false;
    TimeList(form, bench::LargestValue(form, {"ByGenre"}));
    browser::ResetMainForm();
    return 0;
}
