#include "ui/qt/widgets/splitterview.h"

#include "ui/qt/bindings.h"

#include <QKeyEvent>
#include <QMouseEvent>

namespace ui::qt
{

namespace
{

constexpr int kGripPixels = 3; // the pixels beside the bar in which it can be grabbed
constexpr double kKeyStepTwips = 10 * kTwipsPerPixel;

// The pixels from the left edge of the bar to the mouse, which is over the grip.
double PlaceInBar(const QEvent *event)
{
    return static_cast<const QMouseEvent *>(event)->position().x() - kGripPixels;
}

template <class Event, class... Values>
void Raise(const Event &event, Values... values)
{
    if (event)
        event(values...);
}

} // namespace

SplitterView::SplitterView(ui::Splitter &splitter, QWidget *parent)
    : QWidget(parent), m_splitter(splitter), m_grip(new QWidget(parent))
{
    setFocusPolicy(Qt::TabFocus);
    setBackgroundRole(QPalette::Highlight);
    Name(m_grip, "SeparatorGrip");
    m_grip->setCursor(Qt::SplitHCursor);
    m_grip->installEventFilter(this);
    Bind(splitter, this, [this] {
        ShowArea(m_splitter, this);
        m_grip->setVisible(m_splitter.Visible());
        m_grip->setGeometry(geometry().adjusted(-kGripPixels, 0, kGripPixels, 0));
    });
}

void SplitterView::RaiseGrip()
{
    m_grip->raise();
}

bool SplitterView::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress: {
        const double place = PlaceInBar(event);
        m_grabbedAt = place < 0 || place >= width() ? place : 0;
        Raise(m_splitter.pressed);
        break;
    }
    case QEvent::MouseMove:
        Raise(m_splitter.moved, (PlaceInBar(event) - m_grabbedAt) * kTwipsPerPixel);
        break;
    case QEvent::MouseButtonRelease:
        Raise(m_splitter.released);
        break;
    default:
        break;
    }
    return QWidget::eventFilter(watched, event);
}

void SplitterView::keyPressEvent(QKeyEvent *event)
{
    MoveByKey(event->key());
    QWidget::keyPressEvent(event);
}

void SplitterView::MoveByKey(int key)
{
    if (key != Qt::Key_Left && key != Qt::Key_Right)
        return;
    Raise(m_splitter.pressed);
    Raise(m_splitter.moved, key == Qt::Key_Left ? -kKeyStepTwips : kKeyStepTwips);
    Raise(m_splitter.released);
}

void SplitterView::focusInEvent(QFocusEvent *event)
{
    setAutoFillBackground(true);
    QWidget::focusInEvent(event);
}

void SplitterView::focusOutEvent(QFocusEvent *event)
{
    setAutoFillBackground(false);
    QWidget::focusOutEvent(event);
}

} // namespace ui::qt
