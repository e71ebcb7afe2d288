// Errors that reach the event loop.
#include "platform/qt/application.h"
#include "tests/windows/bench.h"

#include <gtest/gtest.h>

#include <QTimer>
#include <new>

namespace
{

using platform::qt::Application;
using runtime::RuntimeError;

class ApplicationTest : public testing::Test
{
protected:
    void SetUp() override
    {
        m_before = App().showError;
        App().showError = [this](const RuntimeError &error) { Note(error); };
    }
    void TearDown() override { App().showError = m_before; }

    static Application &App() { return static_cast<Application &>(*qApp); }
    void Note(const RuntimeError &error)
    {
        reported.push_back(std::to_string(error.number) + " " + error.description);
    }

    std::vector<std::string> reported;

private:
    std::function<void(const RuntimeError &)> m_before;
};

using Lines = std::vector<std::string>;

TEST_F(ApplicationTest, EachKindIsReportedAndTheProgramContinues)
{
    int after = 0;
    QTimer::singleShot(0, [] { throw RuntimeError(runtime::kNonModalOverModal); });
    QTimer::singleShot(1, [] { throw std::bad_alloc(); });
    QTimer::singleShot(2, [] { throw std::logic_error("odd"); });
    QTimer::singleShot(3, [&] { ++after; });
    EXPECT_TRUE(tests::WaitUntil([&] { return after == 1; }));
    EXPECT_EQ(reported, (Lines{"401 Can't show non-modal form when modal form is displayed",
                               "7 Out of memory", "51 odd"}));
}

TEST_F(ApplicationTest, AnErrorThatRepeatsIsReportedOnceAtATime)
{
    // One timer waits in its own handler; the other one keeps failing meanwhile.
    QTimer failing, alsoFailing;
    for (QTimer *timer : {&failing, &alsoFailing})
        QObject::connect(timer, &QTimer::timeout, [] { throw RuntimeError(runtime::kOverflow); });
    App().showError = [&](const RuntimeError &error) {
        Note(error);
        if (reported.size() ==
            1) { // the user is slow to answer, and another error occurs meanwhile
            bool isThrown = false;
            QTimer::singleShot(20, [&] {
                isThrown = true;
                throw RuntimeError(runtime::kFileNotFound);
            });
            EXPECT_TRUE(tests::WaitUntil([&] { return isThrown; }));
            EXPECT_EQ(reported.size(), 1u);
        }
        failing.stop();
        alsoFailing.stop();
    };
    failing.start(5);
    alsoFailing.start(5);
    EXPECT_TRUE(tests::WaitUntil([&] { return reported.size() == 2; }));
    tests::Settle(); // nothing more has been thrown
    EXPECT_EQ(reported, (Lines{"6 Overflow", "53 File not found"}));

    // An error that was reported before is reported again.
    QTimer::singleShot(0, [] { throw RuntimeError(runtime::kOverflow); });
    EXPECT_TRUE(tests::WaitUntil([&] { return reported.size() == 3; }));
}

} // namespace
