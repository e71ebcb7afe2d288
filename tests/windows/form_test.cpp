// Windows that are built from a form: every kind of control by mouse and keys, Enter, Escape, Tab.
#include "tests/windows/accessibility.h"
#include "tests/windows/sampleform.h"

namespace tests
{

namespace
{

TEST_F(FormScaled, TextBoxesFollowBothWays)
{
    QWidget &window = Shown();
    KeepScreenshot(window, "form");
    auto &line = Of<QLineEdit>("txtName");
    int changes = 0;
    form.txtName.textChanged = [&] { ++changes; };
    form.txtName.SetText("\u00C1ngel & Co");
    EXPECT_EQ(line.text(), QStringLiteral("\u00C1ngel & Co"));
    line.setFocus();
    PressKey("End");
    TypeText("!");
    EXPECT_EQ(form.txtName.Text(), "\u00C1ngel & Co!");
    EXPECT_EQ(form.txtName.Selection(), (ui::TextRange{11, 0}));
    EXPECT_EQ(changes, 2);
    PressKey("Shift+Left");
    EXPECT_EQ(form.txtName.Selection(), (ui::TextRange{10, 1}));
    form.txtName.SetSelection({0, 5});
    EXPECT_EQ(line.selectedText(), QStringLiteral("\u00C1ngel"));
    TypeText("x");
    EXPECT_EQ(form.txtName.Text(), "x & Co!");
    EXPECT_EQ(line.text(), QStringLiteral("x & Co!"));
    PressKey("Backspace");
    EXPECT_EQ(form.txtName.Text(), " & Co!");
    form.txtName.SetLocked(true);
    TypeText("z");
    EXPECT_EQ(form.txtName.Text(), " & Co!");
}

TEST_F(FormScaled, SeveralLinesKeepTheBreaksThatTheyHave)
{
    Shown();
    auto &edit = Of<QPlainTextEdit>("txtWords");
    const std::string odd("one\r\ntwo\rthree\nfo\0ur", 20);
    form.txtWords.SetText(odd);
    EXPECT_EQ(edit.toPlainText(), QStringLiteral("one\ntwo\nthree\nfo ur"));
    EXPECT_EQ(form.txtWords.Text(), odd) << "showing a text changes nothing";
    edit.setFocus();
    form.txtWords.SetSelection({5, 3}); // after the CR LF
    EXPECT_EQ(edit.textCursor().selectedText(), QStringLiteral("two"));
    TypeText("2");
    EXPECT_EQ(form.txtWords.Text(), std::string("one\r\n2\rthree\nfo\0ur", 18));
    EXPECT_EQ(form.txtWords.Selection(), (ui::TextRange{6, 0}));
    PressKey("Enter");
    EXPECT_EQ(form.txtWords.Text(), std::string("one\r\n2\r\n\rthree\nfo\0ur", 20));
    EXPECT_EQ(form.txtWords.Selection(), (ui::TextRange{8, 0}));
    EXPECT_EQ(form.done, "") << "Enter breaks the line, it does not press the button";
    form.txtWords.SetText("a\u00A0b");
    form.txtWords.SetSelection({3, 0});
    TypeText("c");
    EXPECT_EQ(form.txtWords.Text(), "a\u00A0bc") << "a blank that does not break stays one";
    PressKey("Tab");
    EXPECT_FALSE(edit.hasFocus());
    // The selection is as bright without the keyboard.
    EXPECT_EQ(edit.palette().color(QPalette::Inactive, QPalette::Highlight),
              edit.palette().color(QPalette::Active, QPalette::Highlight));
}

TEST_F(FormScaled, LogicMayTakeAKeyBeforeTheBoxHasIt)
{
    Shown();
    std::u32string pressed;
    form.txtName.keyPressed = [&](char32_t c) {
        pressed += c;
        return c == U'b';
    };
    form.cmbGenre.keyPressed = [&](char32_t c) {
        pressed += c;
        return true;
    };
    Of<QLineEdit>("txtName").setFocus();
    TypeText("abc");
    PressKey("Backspace");
    EXPECT_EQ(form.txtName.Text(), "a");
    Of<QComboBox>("cmbGenre").setFocus();
    TypeText("r");
    EXPECT_EQ(form.cmbGenre.Text(), "");
    EXPECT_EQ(pressed, U"abc\br");
    int lost = 0;
    form.txtName.lostFocus = [&] { ++lost; };
    form.txtName.SetFocus();
    form.cmdOk.SetFocus();
    EXPECT_EQ(lost, 1);
    std::string keys;
    form.onKeyDown = [&](const ui::Key &key) {
        keys += std::to_string(key.code) + (key.alt ? "a" : "") + (key.ctrl ? "c " : " ");
        return key.code == 'X';
    };
    form.txtName.SetFocus();
    TypeText("x");
    PressKey("F5");
    PressKey("Ctrl+S");
    EXPECT_EQ(keys, "88 116 17c 83c ");
    EXPECT_EQ(form.txtName.Text(), "a");
}

TEST_F(FormScaled, BoxesOptionsAndListsByMouseAndKeys)
{
    QWidget &window = Shown();
    int clicks = 0;
    form.chkKeep.onClick = [&] { ++clicks; };
    Click(Of<QCheckBox>("chkKeep"), Qt::LeftButton);
    QTest::keyClick(&Of<QCheckBox>("chkKeep"), Qt::Key_Space);
    EXPECT_EQ(clicks, 2);
    EXPECT_FALSE(form.chkKeep.Checked());
    form.chkKeep.SetChecked(true);
    EXPECT_TRUE(Of<QCheckBox>("chkKeep").isChecked());
    form.optOne.SetChecked(true);
    EXPECT_TRUE(Of<QRadioButton>("optOne").isChecked());
    Of<QRadioButton>("optTwo").click();
    EXPECT_TRUE(form.optTwo.Checked());
    EXPECT_FALSE(form.optOne.Checked()) << "only one of a frame";

    auto &genre = Of<QComboBox>("cmbGenre");
    form.cmbGenre.SetItems({"", "Rock", "Pop"});
    EXPECT_EQ(genre.count(), 3);
    int chosen = 0;
    form.cmbGenre.onClick = [&] { ++chosen; };
    genre.setFocus();
    PressKey("Down"); // from the empty entry
    EXPECT_EQ(form.cmbGenre.Text(), "Rock");
    EXPECT_EQ(chosen, 1);
    PressKey("End");
    TypeText("y");
    EXPECT_EQ(form.cmbGenre.Text(), "Rocky");
    EXPECT_EQ(form.cmbGenre.ListIndex(), -1);
    form.cmbGenre.SetListIndex(2);
    EXPECT_EQ(genre.currentText(), QStringLiteral("Pop"));

    form.sldPosition.SetFocus();
    QWheelEvent wheel(genre.rect().center(), genre.mapToGlobal(genre.rect().center()), {}, {0, 120},
                      Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&genre, &wheel);
    EXPECT_EQ(form.cmbGenre.ListIndex(), 2) << "the wheel passes over a box without the keyboard";

    auto &slider = Of<QSlider>("sldPosition");
    form.sldPosition.SetMax(205);
    form.sldPosition.SetLargeChange(10);
    form.sldPosition.SetValue(42);
    EXPECT_EQ(slider.value(), 42);
    EXPECT_EQ(slider.maximum(), 205);
    int moved = 0, changed = 0;
    form.sldPosition.thumbMoved = [&] { ++moved; };
    form.sldPosition.valueChanged = [&] { ++changed; };
    slider.setFocus();
    PressKey("PgUp");
    EXPECT_EQ(form.sldPosition.Value(), 52);
    EXPECT_EQ(moved, 0);
    EXPECT_EQ(changed, 1);
    slider.setSliderDown(true);
    slider.setSliderPosition(100);
    EXPECT_EQ(moved, 1);
    EXPECT_EQ(form.sldPosition.Value(), 52) << "until it is let go";
    slider.setSliderDown(false);
    EXPECT_EQ(form.sldPosition.Value(), 100);
    EXPECT_EQ(window.windowTitle(), QStringLiteral("A sample"));
}

TEST_F(FormScaled, EnterPressesTheFirstButtonEscapeTheOther)
{
    Shown();
    Of<QLineEdit>("txtName").setFocus();
    PressKey("Return");
    EXPECT_EQ(form.done, "ok unload ");
    EXPECT_FALSE(form.Loaded());
    Shown();
    PressKey("Escape");
    EXPECT_EQ(form.done, "ok unload cancel unload ");
    form.cancelButton = nullptr;
    Shown();
    PressKey("Escape");
    EXPECT_EQ(form.done, "ok unload cancel unload unload ");
    form.escapeCloses = false;
    QWidget &window = Shown();
    PressKey("Escape");
    EXPECT_TRUE(form.Visible());
    form.mayClose = [] { return false; };
    EXPECT_FALSE(window.close());
    EXPECT_TRUE(form.Visible());
    form.mayClose = nullptr;
    window.close();
    EXPECT_FALSE(form.Loaded());
}

TEST_F(FormScaled, AccessKeysAndTabsLeadThroughTheWindow)
{
    Shown();
    PressKey("Alt+N");
    EXPECT_TRUE(Of<QLineEdit>("txtName").hasFocus());
    std::string order;
    for (int i = 0; i < 8; ++i) {
        PressKey("Tab");
        order += QApplication::focusWidget()->objectName().toStdString() + " ";
    }
    EXPECT_EQ(order, "txtWords chkKeep optOne cmbGenre sldPosition cmdPlay cmdOk cmdCancel ");
    PressKey("Alt+K");
    EXPECT_TRUE(WaitUntil([&] { return form.chkKeep.Checked(); }));
}

TEST_F(FormScaled, AScreenReaderSpeaksWords)
{
    QWidget &window = Shown();
    EXPECT_EQ(NamelessControls(window), std::vector<std::string>{});
    const std::pair<const char *, const char *> want[] = {
        {"txtName", "Name"},   {"txtWords", "Words"},       {"chkKeep", "Keep it"},
        {"cmbGenre", "Genre"}, {"sldPosition", "Position"}, {"cmdPlay", "Play the song"},
        {"cmdOk", "Apply"},    {"frmSample", "A sample"},   {"frmKind", "Kind"}};
    for (const auto &[name, words] : want)
        EXPECT_EQ(Of<QWidget>(name).accessibleName(), QLatin1String(words)) << name;
    EXPECT_EQ(Of<QWidget>("cmdPlay").toolTip(), QStringLiteral("<qt>Play the song</qt>"));
    form.lblName.SetCaption("Na&me of it:");
    EXPECT_EQ(Of<QWidget>("txtName").accessibleName(), QStringLiteral("Name of it"));
}

TEST_F(FormScaled, EnterPressesTheButtonWithTheFocus)
{
    Shown();
    Of<QPushButton>("cmdCancel").setFocus();
    PressKey("Return");
    EXPECT_TRUE(WaitUntil([&] { return form.done == "cancel unload "; })) << form.done;
    Settle();
    Shown();
    Of<QPushButton>("cmdPlay").setFocus(); // without a handler, and not the default button
    PressKey("Return");
    EXPECT_TRUE(form.Visible());
    Of<QLineEdit>("txtName").setFocus();
    PressKey("Return");
    EXPECT_TRUE(WaitUntil([&] { return form.done == "cancel unload ok unload "; })) << form.done;
}

} // namespace

} // namespace tests
