#include "ui/qt/widgets/linkbutton.h"

#include <QEvent>
#include <QGuiApplication>
#include <QPalette>

namespace ui::qt
{

LinkButton::LinkButton(QWidget *parent) : QPushButton(parent)
{
    setFlat(true);
    setFocusPolicy(Qt::TabFocus); // a click opens the link and leaves the focus where it is
    setCursor(Qt::PointingHandCursor);
    TakeColour();
}

void LinkButton::changeEvent(QEvent *event)
{
    QPushButton::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        TakeColour();
}

// Setting the colour is a change of the palette as well, which calls this once more.
void LinkButton::TakeColour()
{
    QPalette colours = palette();
    const QColor link = QGuiApplication::palette().color(QPalette::Link);
    if (colours.color(QPalette::Active, QPalette::ButtonText) == link)
        return;
    for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive})
        colours.setColor(group, QPalette::ButtonText, link);
    setPalette(colours);
}

} // namespace ui::qt
