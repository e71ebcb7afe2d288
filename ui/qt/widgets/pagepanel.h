// ui/qt/widgets/pagepanel.h - the background of the information panel: like a sheet of paper, with
// a coloured top and an edge beside the list; and the line under its heading.
#pragma once

#include <QSvgRenderer>
#include <QWidget>
#include <memory>

namespace ui::qt
{

class PagePanel : public QWidget
{
public:
    explicit PagePanel(QWidget *parent) : QWidget(parent) {}

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    std::unique_ptr<QSvgRenderer> m_picture; // the top of the page, for the theme in use
    bool m_pictureIsDark = false;
};

// A line along the top of its place, with margins; below it there is room for pictures.
class PageRule : public QWidget
{
public:
    explicit PageRule(QWidget *parent) : QWidget(parent) {}

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace ui::qt
