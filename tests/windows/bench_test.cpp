// The procedures of bench.h themselves: they find what they are made to find.
#include "tests/support/scripteddesktop.h"
#include "tests/windows/accessibility.h"
#include "tests/windows/bench.h"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include <QFileInfo>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace
{

using platform::Answer;
using platform::Buttons;

TEST(ScriptedDesktopTest, AnUnscriptedQuestionFails)
{
    EXPECT_NONFATAL_FAILURE(
        {
            tests::ScriptedDesktop desktop;
            EXPECT_EQ(desktop.MessageBox("Really?", Buttons::YesNo, {}, platform::BoxIcon::None),
                      Answer::No);
        },
        "nobody scripted: Really?");
}

TEST(ScriptedDesktopTest, AnUnusedAnswerFails)
{
    EXPECT_NONFATAL_FAILURE(
        {
            tests::ScriptedDesktop desktop;
            desktop.ExpectBox("Really?", Answer::Yes);
        },
        "nobody asked: Really?");
}

TEST(ScriptedDesktopTest, AnswersInOrder)
{
    tests::ScriptedDesktop desktop;
    desktop.ExpectBox("Really?", Answer::Yes);
    desktop.ExpectInput("Name", "Blue");
    EXPECT_EQ(desktop.MessageBox("Really? Yes?", Buttons::YesNo, "T", platform::BoxIcon::None),
              Answer::Yes);
    EXPECT_EQ(desktop.InputBox("Name:", {}, {}), "Blue");
    ASSERT_EQ(desktop.boxes.size(), 1u);
    EXPECT_EQ(desktop.boxes[0].title, "T");
}

// A window with one control of each kind that the walk must distinguish.
class SampleWindow : public QWidget
{
public:
    SampleWindow()
    {
        setObjectName(QStringLiteral("frmSample"));
        setWindowTitle(QStringLiteral("Sample"));
        auto *layout = new QVBoxLayout(this);
        cmdDo = new QPushButton(QStringLiteral("&Do"), this);
        cmdDo->setObjectName(QStringLiteral("cmdDo"));
        txtName = new QLineEdit(this);
        txtName->setObjectName(QStringLiteral("txtName"));
        txtName->setAccessibleName(QStringLiteral("Name"));
        TV = new QTreeWidget(this);
        TV->setObjectName(QStringLiteral("TV"));
        TV->setAccessibleName(QStringLiteral("Fields"));
        TV->setHeaderLabels({QStringLiteral("Field"), QStringLiteral("Count")});
        for (const char *name : {"Artist", "Album"})
            new QTreeWidgetItem(TV, {QString::fromLatin1(name), QString()});
        layout->addWidget(cmdDo);
        layout->addWidget(txtName);
        layout->addWidget(TV);
    }

    QPushButton *cmdDo;
    QLineEdit *txtName;
    QTreeWidget *TV;
};

std::string Joined(const std::vector<std::string> &lines)
{
    std::string result;
    for (const std::string &line : lines)
        result += line + "\n";
    return result;
}

TEST(AccessibilityWalk, WindowWithNamesIsFine)
{
    SampleWindow window;
    tests::ShowAndActivate(window);
    EXPECT_EQ(Joined(tests::NamelessControls(window)), "");
}

TEST(AccessibilityWalk, NamelessControlAndNodeAreFound)
{
    SampleWindow window;
    window.cmdDo->setText({});
    window.txtName->setAccessibleName({});
    window.TV->topLevelItem(1)->setText(0, {});
    tests::ShowAndActivate(window);
    EXPECT_EQ(Joined(tests::NamelessControls(window)), "Button at frmSample/cmdDo\n"
                                                       "EditableText at frmSample/txtName\n"
                                                       "TreeItem at frmSample/TV/row 1\n");
}

TEST(BenchScaled, KeysMouseAndPicture)
{
    SampleWindow window;
    tests::ShowAndActivate(window);
    int clicks = 0;
    QObject::connect(window.cmdDo, &QPushButton::clicked, &window, [&] { ++clicks; });
    tests::Click(*window.cmdDo);
    EXPECT_EQ(clicks, 1);
    tests::PressKey("Alt+D");
    EXPECT_TRUE(tests::WaitUntil([&] { return clicks == 2; }));
    tests::Click(*tests::Find<QLineEdit>(window, "txtName"));
    tests::TypeText("abc");
    EXPECT_TRUE(tests::WaitUntil([&] { return window.txtName->text() == QLatin1String("abc"); }));

    const QImage picture = tests::Screenshot(window);
    EXPECT_EQ(picture.size(), window.size() * window.devicePixelRatio());
    EXPECT_EQ(picture.pixelColor(2, 2), window.palette().color(QPalette::Window));
}

TEST(Bench, MissingControlFails)
{
    SampleWindow window;
    EXPECT_NONFATAL_FAILURE((void)tests::Find<QLineEdit>(window, "txtOther"), "txtOther");
}

} // namespace
