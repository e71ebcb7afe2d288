// lyrics/frmLyricsView.h - the widget of the lyrics' text box. In the widget a line break is one
// character. The box keeps the bytes, and each edit is passed to it as a change of one part of
// them, so that line breaks of any kind and characters that the user did not change keep their
// bytes.
#pragma once

#include "lyrics/breakplaces.h"
#include "lyrics/lyricsbox.h"

#include <QPlainTextEdit>

namespace lyrics
{

class LyricsView : public QPlainTextEdit
{
public:
    // `box` outlives the widget. The destructor empties its hooks.
    LyricsView(LyricsBox &box, QWidget *parent);
    ~LyricsView() override;

private:
    void ShowText();          // the box has another text
    void ShowPlace();         // the box was moved, shown, hidden, enabled or disabled
    void ShowSelection();     // the box has another selection
    void ScrollToSelection(); // some lines above and below it are visible too
    void TakeEdit(int position, int removed, int added); // the document has changed
    void TakeSelection();                                // the user has selected something

    LyricsBox &m_box;
    BreakPlaces m_places;    // for the text of the box
    QString m_shown;         // the text of the document
    bool m_applying = false; // the widget is being changed from the box
    bool m_taking = false;   // the box is being changed from the widget
};

// Makes this the widget of `Lyrics` in the lyrics windows. To be called once, before the first of
// them is shown.
void RegisterLyricsView();

} // namespace lyrics
