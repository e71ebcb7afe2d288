// ui/qt/widgets/textpane.h - a plain text that is as large as its words: it wraps after a number of
// characters, and scrolls where it is larger than two thirds of the screen.
#pragma once

#include <QScrollArea>

class QLabel;

namespace ui::qt
{

class TextPane : public QScrollArea
{
public:
    // `columns`: the characters of average width after which a line wraps.
    TextPane(int columns, QWidget *parent);

    void SetText(const QString &text);

    // The label with the text. It can be selected by mouse; the pane takes the keyboard only when
    // there is something to scroll.
    QLabel *Text() const { return m_text; }

protected:
    void changeEvent(QEvent *event) override;

private:
    void Fit();

    int m_columns;
    QLabel *m_text; // owned by its parent widget
};

} // namespace ui::qt
