// ui/qt/pagelabel.h - a text on the information panel: plain, wrapped at words (and inside a word
// that is too long for a line), with the leading of a page rather than of a button. The mouse
// selects in it.
#pragma once

#include <QLabel>
#include <QTextLayout>
#include <functional>
#include <memory>
#include <vector>

namespace ui::qt
{

// Only what can be scrolled to is laid out, so that a text of any length and kind costs what can be
// seen of it.
class PageLabel : public QLabel
{
public:
    explicit PageLabel(QWidget *parent);

    // Paints the words before the first ": " of each paragraph fainter, as captions of what
    // follows; none in a text that begins with an empty line.
    void SetFaintCaptions(bool on) { m_faintCaptions = on; }

    // Paints the whole text fainter than the page's own text.
    void SetFaint(bool on) { m_faint = on; }

    // The text that the user has selected with the mouse; empty for none.
    QString SelectedText() const;
    void SelectAll();
    void Deselect();
    // Called when the user begins to select.
    std::function<void()> onSelect;

    // The height in pixels that `text` takes at this width, as it is painted; one line at the
    // least. A text that is higher than can be scrolled to has a height beyond that.
    int HeightFor(const QString &text, int widthPixels) const;

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;

private:
    // Some lines of the text. Their places are those within the label.
    struct Piece {
        std::unique_ptr<QTextLayout> layout;
        qsizetype start; // of the text
        qsizetype length;
        qreal top, bottom;
    };
    // The lines of a text at a width, kept until one of the three is another.
    struct Lines {
        QString text;
        int width = -1;
        QFont font;
        std::vector<Piece> pieces;
        qreal height = 0;
    };
    const Lines &LayOut(const QString &text, int widthPixels) const;
    qsizetype PositionAt(QPointF place) const; // in the text
    void Select(qsizetype anchor, qsizetype caret);

    QString m_selectedIn; // the text in which something is selected; any other has no selection
    qsizetype m_anchor = 0, m_caret = 0;
    bool m_faintCaptions = false;
    bool m_faint = false;
    mutable Lines m_lines;
};

} // namespace ui::qt
