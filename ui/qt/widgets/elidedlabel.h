// ui/qt/widgets/elidedlabel.h - a line of plain text that is shortened with "..." when there is not
// enough room; a tool tip then shows the whole text.
#pragma once

#include <QLabel>

namespace ui::qt
{

class ElidedLabel : public QLabel
{
public:
    explicit ElidedLabel(QWidget *parent = nullptr);

    // The whole text, plain. A screen reader speaks it as the label's description.
    void SetFullText(const QString &text);

    // Where the text is shortened: at its end, or in its middle (for paths).
    void SetElideMode(Qt::TextElideMode mode);

    // Allows selecting the text by mouse and keys, and copying it by Ctrl+C: the whole text when
    // everything that is shown is selected.
    void SetSelectable();

    QSize minimumSizeHint() const override;

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void Fit();

    QString m_fullText;
    Qt::TextElideMode m_elide = Qt::ElideRight;
};

} // namespace ui::qt
