// platform/qt/ownstyle.h - the program's own style, used when the desktop has none: Fusion, with
// outlines, separator lines and borders that are visible on a dark background too, flat selections,
// and a thin flat progress bar that keeps its colour in a window without the keyboard.
#pragma once

#include <QColor>
#include <QPalette>
#include <QProxyStyle>

namespace platform::qt
{

class OwnStyle : public QProxyStyle
{
public:
    OwnStyle();

    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                       const QWidget *widget = nullptr) const override;
    void drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                     const QWidget *widget = nullptr) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption *option, const QSize &contents,
                           const QWidget *widget) const override;
};

// The colour of the line around a menu, a view or a group, and between two parts of a window.
[[nodiscard]] QColor RuleColour(const QPalette &palette);

// The colour of the line around a box to tick. Its contrast to the background is at least 3 to 1,
// so that an empty box is visible.
[[nodiscard]] QColor BoxOutline(const QPalette &palette);

} // namespace platform::qt
