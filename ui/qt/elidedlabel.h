// ui/qt/elidedlabel.h - a line of plain text that ends in "..." where its place is too narrow, and
// then shows the whole of itself in a tool tip.
#pragma once

#include <QLabel>

namespace ui::qt
{

class ElidedLabel : public QLabel
{
public:
    explicit ElidedLabel(QWidget *parent = nullptr);

    // The whole text, plain. It is also what a screen reader hears as the label's description.
    void SetFullText(const QString &text);
    const QString &FullText() const { return m_fullText; }

    // Where the text is cut: at its end, or in its middle as paths are.
    void SetElideMode(Qt::TextElideMode mode);

    // Lets the text be selected by mouse and keys, and copied by Ctrl+C: all of it when all that
    // shows is selected.
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
