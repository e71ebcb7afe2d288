// ui/qt/pagelabel.h - a text on the information panel: plain, wrapped at words (and inside a word
// that is too long for a line), with the leading of a page rather than of a button.
#pragma once

#include <QLabel>

namespace ui::qt
{

class PageLabel : public QLabel
{
public:
    explicit PageLabel(QWidget *parent);

    // Paints the words before the first ": " of each paragraph fainter, as captions of what
    // follows; none in a text that begins with an empty line.
    void SetFaintCaptions(bool on) { m_faintCaptions = on; }

    // Paints the whole text fainter than the page's own text.
    void SetFaint(bool on) { m_faint = on; }

    // The height in pixels that `text` takes at this width, as it is painted; one line at the
    // least.
    int HeightFor(const QString &text, int widthPixels) const;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    bool m_faintCaptions = false;
    bool m_faint = false;
};

} // namespace ui::qt
