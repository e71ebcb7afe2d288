// Windows that are built from a form: parts that scroll or have their own widgets, a status bar, a
// splitter, and the events of the window itself.
#include "tests/windows/awaitplace.h"
#include "tests/windows/sampleform.h"
#include "ui/qt/widgetmakers.h"

#include <QLabel>
#include <QMainWindow>
#include <QPointer>
#include <QScrollArea>
#include <QScrollBar>
#include <QToolButton>
#include <QWindow>

namespace tests
{

namespace
{

constexpr ui::Caption kPartsCaptions[] = {
    {"", "Parts", "Title", "Parts"},
    {"lblTitle", "Parts", "Title", "Parts"},
    {"cmdClose", "Parts", "ClosePane", "Close the pane", ui::Caption::Of::ToolTip},
    {"cmdClose", "Parts", "ClosePane", "Close the pane", ui::Caption::Of::SpokenName},
    {"splSide", "Parts", "Splitter", "Width of the pane", ui::Caption::Of::SpokenName},
    {"cmdFind", "Parts", "Find", "&Find"},
};

// A pane that scrolls, a splitter and a box beside it, and a status bar below, at their places.
struct PartsForm : ui::Form {
    PartsForm() : Form("frmParts", kPartsCaptions)
    {
        lblTitle.bold = true;
        Add("lblTitle", lblTitle);
        cmdClose.isFlat = true;
        Add("cmdClose", cmdClose);
        pctPane.scrolls = true;
        Add("pctPane", pctPane);
        inner.bordered = false;
        Add("frmInner", inner, {.in = &pctPane});
        ui::Layout column = ui::Column({});
        for (std::size_t i = 0; i < boxes.size(); ++i) {
            boxes[i].SetCaption("Box " + std::to_string(i));
            Add("chk(" + std::to_string(i) + ")", boxes[i], {.in = &inner});
            column.parts.emplace_back(boxes[i]);
        }
        cmbKind.canNarrow = true;
        cmbKind.SetSpokenName("Kind");
        cmbKind.SetItems({std::string(200, 'w')});
        Add("cmbKind", cmbKind, {.in = &inner});
        column.parts.emplace_back(cmbKind);
        Add("cmdFind", cmdFind, {.in = &inner});
        column.parts.emplace_back(cmdFind);
        insides.push_back(ui::Inside(inner, column, kMargin));
        Add("splSide", splSide);
        txtBeside.SetSpokenName("Beside");
        Add("txtBeside", txtBeside);
        Add("SBar", SBar);
        size = {0, 0, 9000, 4500};
        leastSize = {0, 0, 4500, 3000};
        resizable = isIndependent = true;
        acceptButton = &cmdFind;
        acceptsIn = &pctPane;
        firstFocus = &txtBeside;
        cmdFind.onClick = [this] { done += "find "; };
        cmdClose.onClick = [this] { done += "close "; };
        onMeasure = [this] {
            cmdClose.SetPlace({2000, 0, cmdClose.NeededSize().width, 450});
            SBar.SetHeight(SBar.NeededSize().height);
            done += "measure ";
        };
        onResize = [this] {
            done += Visible() ? "resize " : "first ";
            SBar.SetPlace({0, size.height - SBar.Height(), size.width, SBar.Height()});
        };
        onVisibility = [this] { done += Visible() ? "shown " : "hidden "; };
    }

    // What has happened since the last call.
    std::string Done() { return std::exchange(done, {}); }

    static constexpr int kMargin = 150;
    ui::Label lblTitle{"", {0, 0, 1800, 450}};
    ui::Button cmdClose{"\u00D7", {2000, 0, 0, 450}};
    ui::Frame pctPane{"", {0, 450, 3000, 2250}};
    ui::Frame inner;
    std::array<ui::CheckBox, 12> boxes;
    ui::ComboBox cmbKind;
    ui::Button cmdFind;
    ui::Splitter splSide{{3000, 0, 45, 3000}};
    ui::TextBox txtBeside{{3300, 450, 3000, 450}};
    ui::StatusBar SBar{{{"Items", "none", 4500}}};
    std::string done;
};

class FormPartsScaled : public FormScaled
{
protected:
    QWidget &ShownParts()
    {
        ui::Show(parts);
        QWidget *window = host.WindowOf(parts);
        ShowAndActivate(*window);
        return *window;
    }
    ~FormPartsScaled() override
    {
        ui::CloseAll();
        Settle();
    }

    template <class Control>
    Control &Part(const char *name)
    {
        return *Find<Control>(*host.WindowOf(parts), name);
    }

    PartsForm parts;
};

TEST_F(FormPartsScaled, AFrameScrollsUpAndDownAndFollowsTheFocus)
{
    ShownParts();
    auto &pane = Part<QScrollArea>("pctPane");
    EXPECT_EQ(pane.geometry(), QRect(0, 30, 200, 150));
    const QWidget &inner = Part<QWidget>("frmInner");
    EXPECT_EQ(inner.width(), pane.viewport()->width());
    EXPECT_GT(inner.height(), pane.viewport()->height());
    EXPECT_FALSE(pane.horizontalScrollBar()->isVisible());
    EXPECT_TRUE(pane.verticalScrollBar()->isVisible());
    EXPECT_EQ(Part<QWidget>("chk(0)").pos(), QPoint(10, 10)) << "the margin";
    EXPECT_EQ(Part<QWidget>("cmbKind").width(), inner.width() - 20) << "narrower than its entry";
    EXPECT_EQ(pane.verticalScrollBar()->value(), 0);
    Part<QWidget>("chk(11)").setFocus();
    PressKey("Tab");
    EXPECT_TRUE(Part<QWidget>("cmbKind").hasFocus());
    EXPECT_TRUE(WaitUntil([&] { return pane.verticalScrollBar()->value() > 0; }));
    parts.pctPane.SetPlace({0, 450, 4500, 2250});
    EXPECT_TRUE(WaitUntil([&] { return inner.width() == pane.viewport()->width(); }));
    parts.pctPane.SetVisible(false);
    EXPECT_FALSE(inner.isVisible());
}

TEST_F(FormPartsScaled, EnterPressesTheButtonOnlyInItsFrame)
{
    ShownParts();
    parts.Done();
    Part<QWidget>("txtBeside").setFocus();
    PressKey("Return");
    EXPECT_EQ(parts.Done(), "");
    Part<QWidget>("chk(3)").setFocus();
    PressKey("Return");
    EXPECT_EQ(parts.Done(), "find ");
    parts.cmdFind.SetEnabled(false);
    PressKey("Return");
    EXPECT_EQ(parts.Done(), "");
}

TEST_F(FormPartsScaled, TheLayoutRunsAfterTheEventAndMayEndTheWindow)
{
    QWidget &window = ShownParts();
    EXPECT_EQ(parts.Done(), "measure first shown ");
    EXPECT_EQ(window.size(), QSize(600, 300));
    EXPECT_EQ(window.minimumSize(), QSize(300, 200));
    EXPECT_EQ(Part<QWidget>("SBar").geometry().bottomLeft(), QPoint(0, 299));
    EXPECT_EQ(Part<QWidget>("SBar").width(), 600);
    window.resize(500, 250);
    EXPECT_TRUE(WaitUntil([&] { return parts.size.height == 3750; }));
    EXPECT_EQ(parts.Done(), "resize ");
    EXPECT_EQ(Part<QWidget>("SBar").geometry().bottomLeft(), QPoint(0, 249));
    const QPointer<QWidget> watched(&window);
    parts.onResize = [&] {
        ui::Close(parts);
        Settle();
        EXPECT_NE(watched, nullptr) << "not in its own event";
    };
    window.resize(450, 250);
    EXPECT_TRUE(WaitUntil([&] { return watched == nullptr; }));
    EXPECT_EQ(parts.Done(), "hidden ");
}

TEST_F(FormPartsScaled, AnotherFontIsMeasuredAndLaidOut)
{
    QWidget &window = ShownParts();
    const ui::Rect close = parts.cmdClose.NeededSize(), bar = parts.SBar.NeededSize();
    EXPECT_EQ(close.width, ui::TwipsOfPixels(Part<QToolButton>("cmdClose").sizeHint().width()));
    EXPECT_EQ(parts.SBar.Height(), bar.height);
    parts.Done();
    QFont font = window.font();
    font.setPointSizeF(font.pointSizeF() * 2);
    window.setFont(font);
    EXPECT_EQ(parts.Done(), "measure resize ");
    EXPECT_GT(parts.cmdClose.NeededSize().width, close.width);
    EXPECT_GT(parts.SBar.Height(), bar.height);
    EXPECT_EQ(Part<QWidget>("SBar").height(), ui::PixelsOfTwips(parts.SBar.Height()));
    ui::Close(parts);
    Settle();
    EXPECT_EQ(parts.SBar.NeededSize(), parts.SBar.Place()) << "no window";
}

TEST_F(FormPartsScaled, TheFormFollowsTheWindowsVisibilityAndActivation)
{
    QWidget &window = ShownParts();
    parts.Done();
    window.hide(); // as the end of the program does
    EXPECT_EQ(parts.Done(), "hidden ");
    EXPECT_FALSE(parts.Visible());
    ShownParts();
    EXPECT_EQ(parts.Done(), "shown ");
    QWidget &other = Shown();
    int activated = 0;
    parts.onActivate = [&] { ++activated; };
    ShowAndActivate(window);
    EXPECT_TRUE(WaitUntil([&] { return activated > 0; }));
    ShowAndActivate(other);
    EXPECT_TRUE(WaitUntil([&] { return !window.isActiveWindow(); }));
    activated = 0; // the window system may have reported the earlier activation once more
    QEvent change(QEvent::ActivationChange);
    QApplication::sendEvent(&window, &change);
    EXPECT_EQ(activated, 0) << "the user has left the window";
}

TEST_F(FormPartsScaled, AnIndependentWindowBelongsToNoOther)
{
    QMainWindow main;
    main.show();
    AwaitPlace(main);
    QWidget &window = ShownParts();
    EXPECT_EQ(window.windowType(), Qt::Window);
    EXPECT_EQ(window.windowHandle()->transientParent(), nullptr);
    QWidget &other = Shown();
    EXPECT_EQ(other.windowHandle()->transientParent(), main.windowHandle());
}

TEST_F(FormPartsScaled, ASplitterRaisesItsEventsByMouseAndKeys)
{
    ShownParts();
    std::string events;
    parts.splSide.pressed = [&] { events += "pressed "; };
    parts.splSide.moved = [&](double x) { events += std::to_string(static_cast<int>(x)) + " "; };
    parts.splSide.released = [&] { events += "released "; };
    QWidget &bar = Part<QWidget>("splSide");
    EXPECT_EQ(bar.geometry(), QRect(200, 0, 3, 200));
    EXPECT_EQ(bar.accessibleName(), QStringLiteral("Width of the pane"));
    bar.setFocus();
    PressKey("Right");
    PressKey("Left");
    EXPECT_EQ(events, "pressed 150 released pressed -150 released ");
    events.clear();
    Drag(bar, {1, 50}, {41, 50});
    EXPECT_TRUE(events.starts_with("pressed ") && events.ends_with(" 615 released ")) << events;
}

TEST_F(FormPartsScaled, ABoldLabelAndAFlatButton)
{
    ShownParts();
    EXPECT_TRUE(Part<QLabel>("lblTitle").font().bold());
    auto &flat = Part<QToolButton>("cmdClose");
    EXPECT_TRUE(flat.autoRaise());
    EXPECT_EQ(flat.text(), QStringLiteral("\u00D7"));
    EXPECT_EQ(flat.accessibleName(), QStringLiteral("Close the pane"));
    EXPECT_EQ(flat.toolTip(), QStringLiteral("<qt>Close the pane</qt>"));
    parts.Done();
    Click(flat);
    EXPECT_TRUE(WaitUntil([&] { return parts.Done() == "close "; }));
}

// The status bar of a window whose controls a layout arranges.
TEST_F(FormPartsScaled, AStatusBarInALayout)
{
    struct Below : ui::Form {
        Below() : Form("frmBelow", {})
        {
            text.SetSpokenName("Text");
            Add("text", text);
            Add("SBar", SBar);
            layout = ui::Column({ui::Filled(text), SBar});
        }
        ui::KeyedList text;
        ui::StatusBar SBar{{{"Items", "7 items", 3000}}};
    } below;
    ui::Show(below);
    QWidget &window = *host.WindowOf(below);
    ShowAndActivate(window);
    EXPECT_GT(Find(window, "SBar")->y(), Find(window, "text")->geometry().bottom());
    below.SBar.SetVisible(false);
    EXPECT_FALSE(Find(window, "SBar")->isVisible());
    ui::Close(below);
    Settle();
}

// A widget with two controls in it: each has its own name and its own place in the order of the Tab
// key.
TEST_F(FormPartsScaled, PartsOfAWidgetOfItsOwnKindAreControlsToo)
{
    struct Own : ui::Form {
        Own() : Form("frmOwnParts", {})
        {
            Add("pair", pair);
            right.SetSpokenName("The right one");
            Add("right", right);
            Add("last", last);
            left.SetSpokenName("The left one");
            Add("left", left);
        }
        ui::Area pair{{0, 0, 3000, 900}};
        ui::KeyedList right;
        ui::CheckBox last{"Last", {0, 1500, 3000, 450}};
        ui::Area left;
    } own;
    ui::qt::RegisterWidget("frmOwnParts", "pair", [](ui::Form &, QWidget *parent) {
        auto *both = new QWidget(parent);
        for (const char *name : {"first", "second"}) {
            auto *line = new QLineEdit(both);
            line->setObjectName(QLatin1String(name));
        }
        return both;
    });
    const auto part = [](const char *name) {
        return [name](ui::Form &, QWidget *window) { return Find(*window, name); };
    };
    ui::qt::RegisterWidget("frmOwnParts", "left", part("first"));
    ui::qt::RegisterWidget("frmOwnParts", "right", part("second"));
    ui::Show(own);
    QWidget &window = *host.WindowOf(own);
    ShowAndActivate(window);
    EXPECT_EQ(Find(window, "right")->accessibleName(), QStringLiteral("The right one"));
    Find(window, "right")->setFocus();
    std::string order;
    for (int i = 0; i < 3; ++i) {
        PressKey("Tab");
        order += QApplication::focusWidget()->objectName().toStdString() + " ";
    }
    EXPECT_EQ(order, "last left right ");
    ui::Close(own);
    Settle();
}

} // namespace

} // namespace tests
