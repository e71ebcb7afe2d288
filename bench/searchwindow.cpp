// search_window_bench CATALOGUE FOLDER [judge] - a search in the real search window, in a copy of
// the catalogue: until the first rows are painted, until all are in the list, and the memory above
// that of the window before. With "judge" it ends with status 1 when a limit is missed.
#include "bench/figures.h"
#include "bench/opencopy.h"
#include "bench/timing.h"
#include "search/frmSearch.h"
#include "search/searchform.h"
#include "tests/support/memorysettings.h"
#include "ui/qt/form.h"
#include "ui/qt/views/listview.h"

#include <QApplication>
#include <QElapsedTimer>
#include <cstdio>
#include <string>
#include <vector>

namespace
{

constexpr double kFirstRowsMs = 100, kFillMs = 400, kMemoryMiB = 100;
constexpr int kRounds = 5;

bool failed = false, judged = false;

struct Desktop : platform::terminal::TerminalDesktop {
    void SetPointer(platform::Pointer) override {}
    void DoEvents() override { QApplication::processEvents(); }
};

// Notes when the list was first painted with rows in it.
class PaintWatch : public QObject
{
public:
    explicit PaintWatch(ui::KeyedList &list) : m_list(list) {}

    void Start()
    {
        m_firstMs = -1;
        m_timer.start();
    }
    [[nodiscard]] double Ms() const { return static_cast<double>(m_timer.nsecsElapsed()) / 1e6; }
    [[nodiscard]] double FirstMs() const { return m_firstMs; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        const bool isPainted = QObject::eventFilter(watched, event);
        if (event->type() == QEvent::Paint && m_firstMs < 0 && m_list.Count() > 0 &&
            !m_list.Updating())
            QMetaObject::invokeMethod(
                this, [this] { m_firstMs = m_firstMs < 0 ? Ms() : m_firstMs; },
                Qt::QueuedConnection); // when the painting is done
        return isPainted;
    }

private:
    ui::KeyedList &m_list;
    QElapsedTimer m_timer;
    double m_firstMs = -1;
};

void Report(const std::string &what, double value, const char *unit, double limit)
{
    failed |= bench::PrintFigure(what, value, unit, limit, judged);
}

void Measure(search::SearchForm &form, QWidget &window)
{
    const double idleMiB = bench::MemoryMiB("VmRSS");
    QElapsedTimer ahead;
    ahead.start();
    while (form.tmrReadAhead.Enabled())
        QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    std::printf("texts read ahead in %lld ms\n", static_cast<long long>(ahead.elapsed()));
    form.options.cmdAll[1].Click();
    PaintWatch watch(form.ListView);
    static_cast<ui::qt::ListView *>(window.findChild<QWidget *>(QStringLiteral("ListView")))
        ->viewport()
        ->installEventFilter(&watch);
    for (const char *text : {"love", ""}) {
        std::vector<double> first, all;
        for (int i = 0; i < kRounds; ++i) {
            form.options.txtToFind.SetText(text);
            form.ListView.ClearRows();
            QApplication::processEvents();
            watch.Start();
            form.options.cmdSearch.Click();
            all.push_back(watch.Ms());
            while (watch.FirstMs() < 0 && watch.Ms() < 5000)
                QApplication::processEvents(QEventLoop::AllEvents, 10);
            first.push_back(watch.FirstMs());
        }
        std::printf("%s: %d rows\n", *text == '\0' ? "everything" : text, form.ListView.Count());
        Report("    first rows painted", bench::Median(first), "ms", kFirstRowsMs);
        Report("    all rows in the list", bench::Median(all), "ms", kFillMs);
    }
    Report("memory above the idle window, at most", bench::MemoryMiB("VmHWM") - idleMiB, "MiB",
           kMemoryMiB);
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    if (argc < 3)
        return 2;
    judged = argc > 3;
    Desktop desktop;
    const bench::OpenCopy copy(argv[1], argv[2]);
    platform::TheMachine().desktop = &desktop;
    const tests::MemorySettings settings;
    {
        ui::qt::FormWindows host;
        search::RegisterSearchWidgets();
        search::ShowSearch();
        QApplication::processEvents();
        Measure(search::frmSearch(), *host.WindowOf(search::frmSearch()));
        search::ForgetSearch();
    }
    return failed ? 1 : 0;
}
