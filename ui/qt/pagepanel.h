// ui/qt/pagepanel.h - the background of the information panel: a sheet of paper with a tinted top
// and an edge towards the list; and the rule under its heading.
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
    std::unique_ptr<QSvgRenderer> m_picture; // of the page's top, for the theme in use
    bool m_pictureIsDark = false;
};

// The rule runs along the top of its place, between margins; below it is room for pictures.
class PageRule : public QWidget
{
public:
    explicit PageRule(QWidget *parent) : QWidget(parent) {}

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace ui::qt
