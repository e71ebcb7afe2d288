// tests/windows/lyricsboxfixture.h - a window with the text box of lyrics, which has the keyboard.
#pragma once

#include "lyrics/frmLyricsView.h"
#include "tests/windows/bench.h"

#include <gtest/gtest.h>

#include <string>

namespace tests
{

class LyricsBoxTest : public testing::Test
{
protected:
    explicit LyricsBoxTest(metadata::TextKind kind = metadata::TextKind::FileBytes)
    {
        window.setObjectName(QStringLiteral("bench"));
        window.resize(400, 200);
        box.kind = kind;
        view = new lyrics::LyricsView(box, &window);
        box.SetPlace({0, 0, 6000, 3000});
        ShowAndActivate(window);
        box.SetFocus();
        EXPECT_TRUE(WaitUntil([this] { return view->hasFocus(); }));
    }

    std::string Shown() const { return view->toPlainText().toStdString(); }
    // What the widget shows as selected; "|" for the end of a line.
    std::string Selected() const
    {
        return view->textCursor()
            .selectedText()
            .replace(QChar::ParagraphSeparator, u'|')
            .toStdString();
    }

    lyrics::LyricsBox box;
    QWidget window;
    lyrics::LyricsView *view; // owned by the window
};

} // namespace tests
