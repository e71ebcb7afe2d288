// ui/qt/widgets/linkbutton.h - a button that looks like a link. Its colour follows the desktop's,
// also when that changes between light and dark.
#pragma once

#include <QPushButton>

namespace ui::qt
{

class LinkButton : public QPushButton
{
public:
    explicit LinkButton(QWidget *parent);

protected:
    void changeEvent(QEvent *event) override;

private:
    void TakeColour();
};

} // namespace ui::qt
