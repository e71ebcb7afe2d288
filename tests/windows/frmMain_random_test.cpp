// Any keys and clicks, also while the list is being filled and yields: the window shows what the
// controls contain.
#include "browser/form/commandstate.h"
#include "tests/windows/mainwindowfixture.h"

#include <gtest/gtest.h>

#include <QHeaderView>
#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWheelEvent>
#include <random>

namespace tests
{

namespace
{

constexpr int kSongs = 400; // several yields while the list fills
constexpr int kRounds = 120;
constexpr int kActionsOfARound =
    5; // posted together, so that some are handled while others are running

class RandomUse : public MainWindowTest
{
protected:
    void AddSongs()
    {
        OpenCatalogue();
        for (int i = 0; i < kSongs; ++i) {
            const std::string number = std::to_string(i);
            const std::string statement =
                "INSERT INTO MP3s (Title, Artist, Album, [Year], Comment, Genre, Path) VALUES "
                "('Title " +
                number + "', 'Artist " + std::to_string(i % 3) + "', 'Album " +
                std::to_string(i % 7) + "', '" + std::to_string(1990 + i % 5) + "', '', 'Rock', '" +
                Song("d" + std::to_string(i % 2) + "/" + number + ".mp3") + "')";
            int kind = catalogue::kDetect;
            catalogue::DataAccess->ExecuteSQL(statement, kind);
            ASSERT_TRUE(catalogue::DataAccess->Succeeded) << statement;
        }
    }

    template <std::size_t size>
    int AnyOf(const int (&values)[size])
    {
        return values[random() % size];
    }

    // Posted, not sent: it is handled at the next yield.
    void PostKey()
    {
        static constexpr int kKeys[] = {Qt::Key_Up,    Qt::Key_Down,     Qt::Key_Left,
                                        Qt::Key_Right, Qt::Key_Home,     Qt::Key_End,
                                        Qt::Key_Enter, Qt::Key_PageDown, Qt::Key_PageUp,
                                        Qt::Key_Plus,  Qt::Key_Minus,    Qt::Key_A};
        static constexpr int kModifiers[] = {Qt::NoModifier, Qt::NoModifier, Qt::ShiftModifier,
                                             Qt::ControlModifier};
        QWidget &target = random() % 2 == 0 ? static_cast<QWidget &>(TV()) : LV();
        const auto modifiers = static_cast<Qt::KeyboardModifier>(AnyOf(kModifiers));
        const int key = AnyOf(kKeys);
        const QString text = key == Qt::Key_A ? QStringLiteral("a") : QString();
        QApplication::postEvent(&target, new QKeyEvent(QEvent::KeyPress, key, modifiers, text));
    }

    void PostMouse(QWidget &viewport, QEvent::Type type, QPoint at, Qt::MouseButton button)
    {
        const Qt::MouseButtons down =
            type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::MouseButtons(button);
        QApplication::postEvent(&viewport, new QMouseEvent(type, at, viewport.mapToGlobal(at),
                                                           button, down, Qt::NoModifier));
    }

    void PostClick()
    {
        QWidget *const targets[] = {TV().viewport(), LV().viewport(), LV().header()->viewport(),
                                    Find(*window, "Separator")};
        QWidget &viewport = *targets[random() % std::size(targets)];
        if (viewport.size().isEmpty())
            return;
        const QPoint at(static_cast<int>(random() % static_cast<unsigned>(viewport.width())),
                        static_cast<int>(random() % static_cast<unsigned>(viewport.height())));
        PostMouse(viewport, QEvent::MouseButtonPress, at, Qt::LeftButton);
        // A drag, but none of rows: that one waits for a real mouse.
        if (&viewport != LV().viewport() && random() % 4 == 0) {
            const QPoint way(static_cast<int>(random() % 101) - 50, 0);
            PostMouse(viewport, QEvent::MouseMove, at + way, Qt::LeftButton);
        }
        PostMouse(viewport, QEvent::MouseButtonRelease, at, Qt::LeftButton);
        if (random() % 4 == 0) {
            PostMouse(viewport, QEvent::MouseButtonDblClick, at, Qt::LeftButton);
            PostMouse(viewport, QEvent::MouseButtonRelease, at, Qt::LeftButton);
        }
    }

    void PostWheel()
    {
        QWidget *const targets[] = {TV().viewport(), LV().viewport(), Find(*window, "pctWeb")};
        QWidget &target = *targets[random() % std::size(targets)];
        const QPointF at = target.rect().center();
        const QPoint turn(0, random() % 2 == 0 ? 120 : -120);
        QApplication::postEvent(&target,
                                new QWheelEvent(at, target.mapToGlobal(at), {}, turn, Qt::NoButton,
                                                Qt::NoModifier, Qt::NoScrollPhase, false));
    }

    void DoAnything()
    {
        const unsigned which = random() % 22;
        if (which < 10)
            PostKey();
        else if (which < 18)
            PostClick();
        else if (which < 20)
            PostWheel();
        else if (which == 20)
            window->resize(300 + static_cast<int>(random() % 900),
                           200 + static_cast<int>(random() % 600));
        else
            browser::RunCommand(Form(), random() % 2 == 0 ? "submnuWebStyle" : "submnuRefreshTree");
    }

    // The row and the order of the nodes are the view's and the tree's alike.
    void ExpectTreeAgrees()
    {
        ui::KeyedTree &tree = Form().TV;
        const QModelIndex selected = TV().Model().IndexOf(tree.Selected());
        EXPECT_EQ(TV().currentIndex(), selected);
        EXPECT_EQ(TV().selectionModel()->selectedIndexes(),
                  selected.isValid() ? QModelIndexList{selected} : QModelIndexList{});
        for (const ui::NodeId group : tree.Children(tree.Find("MP3s"))) {
            if (!tree.Children(group).empty()) {
                EXPECT_EQ(TV().isExpanded(TV().Model().IndexOf(group)), tree.Expanded(group))
                    << tree.Key(group);
            }
        }
    }

    void ExpectListAgrees()
    {
        const ui::KeyedList &list = Form().LV;
        ASSERT_EQ(LV().Model().rowCount(), list.Count());
        for (int row = 0; row < list.Count(); ++row)
            ASSERT_EQ(LV().selectionModel()->isRowSelected(row, {}),
                      list.IsSelected(list.RowAt(row)))
                << row;
        for (int row = 1; row < list.Count(); ++row)
            ASSERT_NE(list.Key(list.RowAt(row - 1)), list.Key(list.RowAt(row)));
    }

    std::mt19937 random;
};

TEST_F(RandomUse, WhatTheWindowShowsIsWhatTheLogicHolds)
{
    AddSongs();
    Start();
    // Another seed is another walk: the variable tries more of them.
    random.seed(qEnvironmentVariableIsSet("QUENLIN_SEED")
                    ? static_cast<unsigned>(qEnvironmentVariableIntValue("QUENLIN_SEED"))
                    : 1U);
    int listed = 0;
    for (int round = 0; round < kRounds && !HasFailure(); ++round) {
        SCOPED_TRACE(round);
        for (int i = 0; i < kActionsOfARound; ++i)
            DoAnything();
        Settle();
        ExpectTreeAgrees();
        ExpectListAgrees();
        listed += Form().LV.Count() > 100 ? 1 : 0;
        if (Form().TV.Selected() != ui::kNoNode &&
            !TV().Model().IndexOf(Form().TV.Selected()).isValid())
            FAIL() << "a selected node that no view shows";
    }
    EXPECT_GT(listed, 0) << "long lists were filled on the way";
}

} // namespace

} // namespace tests
