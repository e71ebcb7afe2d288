// lyrics/frmLyricsView.h - the text box of lyrics as a widget. What it shows is one place a line
// break; the box keeps the bytes, and hears of each edit as a change of a stretch of them, so that
// breaks of any kind and characters that nobody touched stay as they are.
#pragma once

#include "lyrics/breakplaces.h"
#include "lyrics/lyricsbox.h"

#include <QPlainTextEdit>

namespace lyrics
{

class LyricsView : public QPlainTextEdit
{
public:
    // `box` outlives the widget; its hooks are empty again once the widget is gone.
    LyricsView(LyricsBox &box, QWidget *parent);
    ~LyricsView() override;

protected:
    void changeEvent(QEvent *event) override;

private:
    void ShowText();                                     // the box has another text
    void ShowPlace();                                    // the box was moved, shown, enabled
    void ShowSelection();                                // the box has another selection
    void ScrollToSelection();                            // with some lines of its surroundings
    void TakeEdit(int position, int removed, int added); // the document has changed
    void TakeSelection();                                // the user has selected something
    void KeepHighlight();                                // bright in a window in the background

    LyricsBox &m_box;
    BreakPlaces m_places;    // of the box's text
    QString m_shown;         // what the document holds
    bool m_applying = false; // the widget follows the box
    bool m_taking = false;   // the box follows the widget
};

// Makes it the widget of `Lyrics` in the windows of lyrics. Once, before the first of them shows.
void RegisterLyricsView();

} // namespace lyrics
