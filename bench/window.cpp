// Measures the main window: the models and their views, the time from a click on a value with many
// rows until they are painted, sorting, scrolling, the answer to a key during a regeneration.
// Arguments: a catalogue (copied first, then read), a folder for temporary files, a folder of songs
// or "". Only "models": the models compared with item objects. Only "empty": an empty window of the
// toolkit until it is painted; the floor for the start.
#include "bench/figures.h"
#include "bench/largestvalue.h"
#include "bench/opencopy.h"
#include "browser/fieldtree.h"
#include "browser/form/formload.h"
#include "browser/itemlist.h"
#include "browser/windows/frmMain.h"
#include "catalogue/regeneration.h"
#include "platform/machine.h"
#include "platform/posix/disk/mountdrives.h"
#include "platform/qt/qtdesktop.h"
#include "shell/globals.h"
#include "tests/support/memorysettings.h"
#include "ui/qt/views/listview.h"
#include "ui/qt/views/treeview.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>
#include <QStandardItemModel>
#include <QTreeWidget>
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <string>
#include <thread>

namespace
{

constexpr int kMany = 100000;

double Ms(const QElapsedTimer &timer)
{
    return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

// Answers every question with No.
struct Desktop : platform::qt::QtDesktop {
    platform::Answer MessageBox(std::string_view, platform::Buttons, std::string_view,
                                platform::BoxIcon) override
    {
        return platform::Answer::No;
    }
};

void TimeTreeModel()
{
    ui::KeyedTree tree;
    ui::qt::TreeView view(tree, nullptr);
    view.resize(300, 600);
    view.show();
    QApplication::processEvents();
    tree.Add(ui::kNoNode, "warm", "Warm", "closed"); // the first painting draws the icons
    tree.Add(0, "warmer", "Warmer", "open");
    tree.SetExpanded(0, true);
    view.repaint();
    tree.BeginUpdate();
    const ui::NodeId root = tree.Add(ui::kNoNode, "MP3s", "MP3", "closed", "open");
    for (int i = 0; i < kMany; ++i)
        tree.Add(root, "@" + std::to_string(i), "Title " + std::to_string(i), "closed", "open");
    tree.SetExpanded(root, true);
    QElapsedTimer timer;
    timer.start();
    tree.EndUpdate();
    const double shown = Ms(timer);
    view.repaint();
    std::printf("tree of %d nodes: %.2f ms to show, %.2f ms with its painting", kMany, shown,
                Ms(timer));

    QTreeWidget widget;
    widget.resize(300, 600);
    widget.show();
    QApplication::processEvents();
    timer.start();
    auto *top = new QTreeWidgetItem({QStringLiteral("MP3")});
    QList<QTreeWidgetItem *> items;
    for (int i = 0; i < kMany; ++i)
        items.append(new QTreeWidgetItem({QStringLiteral("Title %1").arg(i)}));
    top->addChildren(items);
    widget.addTopLevelItem(top);
    top->setExpanded(true);
    std::printf("; one item object a node: %.1f ms\n", Ms(timer));
}

void TimeListModel()
{
    ui::KeyedList list;
    ui::qt::ListView view(list, nullptr);
    view.resize(800, 600);
    view.show();
    QApplication::processEvents();
    const char *keys[] = {"Icon", "Title", "Artist", "Album", "Year"};
    for (const char *key : keys)
        list.AddColumn(key, key, 2000);
    list.BeginUpdate();
    list.SetSubItemKeys({"Title", "Artist", "Album", "Year"});
    const std::string_view cells[] = {"A title", "An artist", "An album", "1999"};
    for (int i = 0; i < kMany; ++i)
        list.AddRow("/" + std::to_string(i), "", "MP3", cells);
    QElapsedTimer timer;
    timer.start();
    view.Model().BeginReset();
    view.Model().EndReset();
    const double model = Ms(timer);
    list.EndUpdate();
    const double shown = Ms(timer);
    view.repaint();
    std::printf("list of %d rows: model %.3f ms, order and view %.2f ms, with its painting %.2f ms",
                kMany, model, shown, Ms(timer));

    QStandardItemModel items;
    timer.start();
    for (int i = 0; i < kMany; ++i) {
        QList<QStandardItem *> row;
        for (int column = 0; column < 5; ++column)
            row.append(new QStandardItem(QStringLiteral("A text")));
        items.appendRow(row);
    }
    std::printf("; item objects: %.0f ms\n", Ms(timer));
}

void TimeClickAndSort(browser::MainForm &form, QWidget &listView)
{
    const std::string key = bench::LargestValue(form, {"ByGenre", "ByYear"});
    form.TV.MoveTo(form.TV.Find("ByArtist"));
    QApplication::processEvents();
    QElapsedTimer timer;
    const std::clock_t cpu = std::clock();
    timer.start();
    form.TV.ClickText(form.TV.Find(key));
    QApplication::processEvents();
    listView.repaint();
    const double click = Ms(timer);
    // On a busy machine the processor's time is more exact than the clock.
    const double busy = 1000.0 * static_cast<double>(std::clock() - cpu) / CLOCKS_PER_SEC;
    timer.start();
    form.LV.onColumnClick(4);
    QApplication::processEvents();
    listView.repaint();
    const double sort = Ms(timer);
    auto *scroll = static_cast<QAbstractScrollArea &>(listView).verticalScrollBar();
    double worst = 0;
    for (int i = 0; i < 50; ++i) {
        timer.start();
        scroll->setValue(scroll->maximum() / 50 * i);
        listView.repaint();
        worst = std::max(worst, Ms(timer));
    }
    std::printf("click on a value of %d files: %.1f ms until painted (%.1f ms of processor time), "
                "sorted in %.1f ms, slowest "
                "step of scrolling %.1f ms\n",
                form.LV.Count(), click, busy, sort, worst);
}

// Presses a key like a user, on a thread of its own: some milliseconds after the last one was
// answered, whatever the program is doing. Measures how long the slowest answer took.
class KeyWatch : public QObject
{
public:
    explicit KeyWatch(QWidget &target) : m_target(target)
    {
        target.installEventFilter(this);
        m_clock.start();
        m_presser = std::thread([this] { Press(); });
    }
    ~KeyWatch() override
    {
        m_ending = true;
        m_presser.join();
        QApplication::removePostedEvents(&m_target, QEvent::KeyPress);
    }
    KeyWatch(const KeyWatch &) = delete;
    KeyWatch &operator=(const KeyWatch &) = delete;

    double worstMs = 0;
    int answered = 0;

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::KeyPress && m_pressedNs != 0) {
            const auto waitedNs = m_clock.nsecsElapsed() - m_pressedNs;
            worstMs = std::max(worstMs, static_cast<double>(waitedNs) / 1e6);
            ++answered;
            m_pressedNs = 0;
        }
        return false;
    }

private:
    void Press()
    {
        while (!m_ending) {
            std::this_thread::sleep_for(kBetweenKeys);
            if (m_pressedNs != 0)
                continue; // not answered yet
            m_pressedNs = std::max<qint64>(1, m_clock.nsecsElapsed());
            QApplication::postEvent(
                &m_target, new QKeyEvent(QEvent::KeyPress, Qt::Key_Shift, Qt::ShiftModifier));
        }
    }

    static constexpr std::chrono::milliseconds kBetweenKeys{3};
    QWidget &m_target;
    QElapsedTimer m_clock;
    std::atomic<qint64> m_pressedNs = 0; // 0: no key waits for its answer
    std::atomic<bool> m_ending = false;
    std::thread m_presser;
};

// Regenerates until enough keys were pressed during it for a result. Returns: false when there were
// too few.
bool TimeRegeneration(browser::MainForm &form, QWidget &window, const std::string &songs)
{
    constexpr int kEnoughKeys = 5;
    constexpr double kPatienceMs = 30'000;
    shell::TheGlobals().MP3Directory = songs;
    KeyWatch watch(window);
    int runs = 0;
    QElapsedTimer timer;
    timer.start();
    while (runs == 0 || (watch.answered < kEnoughKeys && Ms(timer) < kPatienceMs)) {
        catalogue::ListRefresh(true);
        ++runs;
    }
    std::printf("regeneration: %.0f ms, %d keys answered, the slowest after %.4f ms\n",
                Ms(timer) / runs, watch.answered, watch.worstMs);
    browser::LoadTreeView(form, "");
    return watch.answered >= kEnoughKeys;
}

int TimeModels()
{
    TimeTreeModel();
    TimeListModel();
    return 0;
}

int EmptyWindow()
{
    QWidget window;
    window.resize(800, 500);
    window.show();
    QApplication::processEvents();
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    if (argc == 2 && std::string(argv[1]) == "empty")
        return EmptyWindow();
    if (argc == 2 && std::string(argv[1]) == "models")
        return TimeModels();
    if (argc != 4)
        return 2;
    Desktop desktop;
    const bench::OpenCopy copy(argv[1], argv[2]);
    platform::TheMachine().desktop = &desktop;
    tests::MemorySettings settings;
    settings.values["Quenlin/Extras/UnicodeOffer"] = "0"; // no user can answer the question
    platform::posix::MountDrives drives;
    platform::TheMachine().drives = &drives;
    {
        browser::MainForm &form = browser::frmMain();
        browser::frmMainWindow window(form);
        form.calls.unloadForms = [] {};
        form.calls.endProgram = [] {};
        browser::LoadMainForm(form);
        QElapsedTimer timer;
        timer.start();
        browser::LoadTreeView(form, "");
        const double tree = Ms(timer);
        browser::ShowMainForm(form);
        QApplication::processEvents();
        std::printf("LoadTreeView %.0f ms for %d nodes, filled window %.0f ms, memory %.0f MiB\n",
                    tree, form.TV.Count(), Ms(timer), bench::MemoryMiB("VmHWM"));
        form.TreeJustExpanded = false;
        TimeClickAndSort(form, *window.findChild<QWidget *>(QStringLiteral("LV")));
        if (argv[3][0] != '\0' && !TimeRegeneration(form, window, argv[3])) {
            std::fputs("too few keys were answered: their time could not be measured\n", stderr);
            return 1;
        }
        std::printf("memory at the end: %.0f MiB\n", bench::MemoryMiB("VmHWM"));
    }
    browser::ResetMainForm();
    return 0;
}
