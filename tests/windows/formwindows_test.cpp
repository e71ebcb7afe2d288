// Windows that are built from a form: modal and not, their end, their places.
#include "platform/qt/modalwait.h"
#include "tests/windows/awaitplace.h"
#include "tests/windows/sampleform.h"

namespace tests
{

namespace
{

TEST_F(FormScaled, AModalWindowLetsTimersRunAndReturnsWhenItIsClosed)
{
    int ticks = 0, waitsBegun = 0, error = 0;
    SampleForm other;
    platform::TheMachine().beginWait = [&] { ++waitsBegun; };
    platform::qt::SetProgramPointer(platform::Pointer::Hourglass);
    form.tmr.event = [&] {
        if (++ticks < 3)
            return;
        form.tmr.SetEnabled(false);
        EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
        try {
            ui::Show(other);
        } catch (const runtime::RuntimeError &failure) {
            error = failure.number;
        }
        form.cmdOk.Click();
    };
    form.onLoad = [&] {
        EXPECT_EQ(waitsBegun, 1) << "before anything of the window is there";
        form.tmr.SetEnabled(true);
    };
    ui::ShowModal(form);
    EXPECT_EQ(form.done, "ok unload ");
    ASSERT_NE(QGuiApplication::overrideCursor(), nullptr);
    EXPECT_EQ(QGuiApplication::overrideCursor()->shape(), Qt::WaitCursor);
    platform::qt::SetProgramPointer(platform::Pointer::Normal);
    EXPECT_EQ(ticks, 3);
    EXPECT_EQ(error, runtime::kNonModalOverModal);
    EXPECT_FALSE(other.Loaded());
    EXPECT_EQ(host.WindowOf(form), nullptr);
}

TEST_F(FormScaled, AModalWindowOverAModalWindow)
{
    SampleForm inner;
    form.onLoad = [&] { form.tmr.SetEnabled(true); };
    inner.onLoad = [&] { inner.tmr.SetEnabled(true); };
    std::string order;
    form.tmr.event = [&] {
        form.tmr.SetEnabled(false);
        ui::ShowModal(inner);
        order += "inner over, ";
        EXPECT_TRUE(form.Visible());
        form.cmdCancel.Click();
    };
    inner.tmr.event = [&] {
        inner.tmr.SetEnabled(false);
        inner.cmdOk.Click();
    };
    ui::ShowModal(form);
    EXPECT_EQ(order + form.done + inner.done, "inner over, cancel unload ok unload ");
}

TEST_F(FormScaled, AnErrorOfTheLoadLeavesNoWindow)
{
    form.onLoad = [] { throw runtime::RuntimeError(runtime::kPathNotFound); };
    EXPECT_THROW(ui::ShowModal(form), runtime::RuntimeError);
    EXPECT_THROW(ui::Show(form), runtime::RuntimeError);
    EXPECT_FALSE(form.Loaded());
    EXPECT_TRUE(host.Forms().empty());
}

TEST_F(FormScaled, AWindowMayEndInItsOwnHandler)
{
    auto heap = std::make_unique<SampleForm>();
    SampleForm *made = heap.get();
    bool ended = false;
    struct Watch {
        bool &flag;
        ~Watch() { flag = true; }
    };
    auto watch = std::make_shared<Watch>(Watch{ended}); // its one owner is the form's handler
    made->onUnload = [&heap, watch] { ui::Retire(std::move(heap)); };
    watch.reset();
    ui::Show(*made);
    ShowAndActivate(*host.WindowOf(*made));
    PressKey("Escape");
    EXPECT_TRUE(WaitUntil([&] { return ended; }));
    EXPECT_TRUE(host.Forms().empty());
}

TEST_F(FormScaled, ThePlaceIsStoredAndUsedAgain)
{
    form.resizable = form.remembersPlace = true;
    QWidget &window = Shown();
    window.resize(500, 420);
    window.move(60, 70);
    AwaitPlace(window);
    const QPoint place = window.pos();
    ui::Close(form);
    EXPECT_EQ(settings.values["Quenlin/Window Places/frmSample Width"], "7500");
    EXPECT_EQ(settings.values["Quenlin/Window Places/frmSample Height"], "6300");
    Settle();
    QWidget &again = Shown();
    EXPECT_EQ(again.size(), QSize(500, 420));
    EXPECT_NEAR(again.x(), place.x(), 2);
    EXPECT_NEAR(again.y(), place.y(), 2);
    ui::Close(form);
    Settle();
    settings.values["Quenlin/Window Places/frmSample Left"] = "900000"; // another screen, long ago
    QWidget &moved = Shown();
    EXPECT_LT(moved.x(), 2000);
    ui::Close(form);
    Settle();
    settings.values["Quenlin/Window Places/frmSample Width"] = "no number";
    EXPECT_NO_THROW(Shown());
}

TEST_F(FormScaled, AHiddenWindowIsShownAgainUnchanged)
{
    form.hidesOnClose = true;
    form.cancelButton = nullptr;
    QWidget *window = &Shown();
    form.txtName.SetText("kept");
    PressKey("Escape");
    EXPECT_FALSE(window->isVisible());
    EXPECT_TRUE(form.Loaded());
    EXPECT_EQ(form.done, "");
    EXPECT_EQ(&Shown(), window);
    EXPECT_EQ(form.txtName.Text(), "kept");
}

TEST_F(FormScaled, PlacesInTwipsAndSizesOfTheWindow)
{
    struct Plain : ui::Form {
        Plain() : Form("frmPlain", {})
        {
            size = {0, 0, 6000, 3000};
            resizable = true;
            text.multiLine = true;
            Add("Lyrics", text);
            onResize = [this] { text.SetPlace({0, 0, size.width - 320, size.height - 810}); };
        }
        ui::TextBox text;
    } plain;
    ui::Show(plain);
    QWidget &window = *host.WindowOf(plain);
    ShowAndActivate(window);
    EXPECT_EQ(window.size(), QSize(400, 200));
    EXPECT_EQ(Find(window, "Lyrics")->geometry(), QRect(0, 0, 379, 146));
    window.resize(300, 300);
    EXPECT_TRUE(WaitUntil([&] { return plain.size.width == 4500 && plain.size.height == 4500; }));
    EXPECT_EQ(Find(window, "Lyrics")->geometry(), QRect(0, 0, 279, 246));
    ui::Close(plain);
    Settle();
}

TEST_F(FormScaled, AWidgetOfAWindowsOwnKind)
{
    struct Own : ui::Form {
        Own() : Form("frmOwn", {}) { Add("pctBorders", area); }
        ui::Area area{{0, 0, 1500, 1500}};
    } own;
    ui::qt::RegisterWidget("frmOwn", "pctBorders", [](ui::Form &of, QWidget *parent) {
        auto *made = new QPushButton(QString::fromStdString(of.name), parent);
        return made;
    });
    ui::Show(own);
    EXPECT_EQ(Find<QPushButton>(*host.WindowOf(own), "pctBorders")->text(),
              QStringLiteral("frmOwn"));
    ui::Close(own);
    Settle();
}

} // namespace

} // namespace tests
