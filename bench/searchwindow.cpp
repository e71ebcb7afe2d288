// search_window_bench CATALOGUE FOLDER [judge] - a search in the real search window, in a copy of
// the catalogue: until the first rows are painted, until all are in the list, and the memory above
// that of the window before. With "judge" it ends with status 1 when a limit is missed.
#include "bench/opencopy.h"
#include "bench/timing.h"
#include "platform/settingsstore.h"
#include "search/frmSearch.h"
#include "search/searchform.h"
#include "shell/apppath.h"
#include "ui/qt/form.h"
#include "ui/qt/views/listview.h"

#include <QApplication>
#include <QElapsedTimer>
#include <cstdio>
#include <fstream>
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

// A settings store that keeps nothing.
struct NoSettings : platform::SettingsStore {
    std::string Read(std::string_view, std::string_view, std::string_view,
                     std::string_view defaultText) override
    {
        return std::string(defaultText);
    }
    void Write(std::string_view, std::string_view, std::string_view, std::string_view) override {}
    void Delete(std::string_view, std::string_view, std::string_view) override {}
    void Flush() override {}
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

double MemoryMiB(const char *which)
{
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with(which))
            return std::stod(line.substr(line.find(':') + 1)) / 1024;
    return 0;
}

void Tell(const std::string &what, double value, const char *unit, double limit)
{
    const bool missed = (judged && value > limit) || value < 0;
    failed = failed || missed;
    std::printf("%-52s %8.1f %s, limit %.0f%s\n", what.c_str(), value, unit, limit,
                missed ? "  MISSED" : "");
}

void Measure(search::SearchForm &form, QWidget &window)
{
    const double idleMiB = MemoryMiB("VmRSS");
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
        Tell("    first rows painted", bench::Median(first), "ms", kFirstRowsMs);
        Tell("    all rows in the list", bench::Median(all), "ms", kFillMs);
    }
    Tell("memory above the idle window, at most", MemoryMiB("VmHWM") - idleMiB, "MiB", kMemoryMiB);
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    if (argc < 3)
        return 2;
    judged = argc > 3;
    const bench::OpenCopy copy(argv[1], argv[2]);
    shell::SetAppPath(argv[2]);
    Desktop desktop;
    platform::TheMachine().desktop = &desktop;
    NoSettings settings;
    platform::TheMachine().settings = &settings;
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
