// ui/qt/widgets/pagelabel.h - a text on the information panel: plain, wrapped at words (and inside
// a word that is longer than a line), with more space between the lines than on a button. The user
// can select text with the mouse.
#pragma once

#include <QLabel>
#include <QTextLayout>
#include <functional>
#include <memory>
#include <vector>

namespace ui::qt
{

// Only the lines that can be seen by scrolling are laid out, so that the time does not grow with a
// very long text.
class PageLabel : public QLabel
{
public:
    explicit PageLabel(QWidget *parent);

    // Paints the words before the first ": " of each paragraph in a paler colour, as captions of
    // the text after them; not in a text that begins with an empty line. All lines then begin where
    // the window's language does; else one has the direction of its paragraph's first letter.
    void SetFaintCaptions(bool on) { m_faintCaptions = on; }

    // Paints the whole text in the paler colour.
    void SetFaint(bool on) { m_faint = on; }

    // The text that the user has selected; empty for none.
    QString SelectedText() const;
    void SelectAll();
    void Deselect();
    // Called when the user begins to select.
    std::function<void()> onSelect;

    // The height in pixels of `text` at this width, as it is painted; at least one line. For a text
    // that is higher than can be reached by scrolling, any height greater than that.
    int HeightFor(const QString &text, int widthPixels) const;

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;

private:
    // Some lines of the text. Their places are relative to the label.
    struct Piece {
        std::unique_ptr<QTextLayout> layout;
        qsizetype start; // offset in the text
        qsizetype length;
        qreal top, bottom;
    };
    // The lines of a text at a width; made again only when the text, the width or the font changes.
    struct Lines {
        QString text;
        int width = -1;
        QFont font;
        std::vector<Piece> pieces;
        qreal height = 0;
    };
    Qt::LayoutDirection DirectionOf(QStringView paragraph) const;
    const Lines &LayOut(const QString &text, int widthPixels) const;
    qsizetype PositionAt(QPointF place) const; // offset in the text
    void Select(qsizetype anchor, qsizetype caret);

    QString m_selectedIn; // the text with the selection; another text has no selection
    qsizetype m_anchor = 0, m_caret = 0;
    bool m_faintCaptions = false;
    bool m_faint = false;
    mutable Lines m_lines;
};

} // namespace ui::qt
