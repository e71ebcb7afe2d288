#include "ui/qt/widgets/splitter.h"

#include "ui/qt/bindings.h"
#include "ui/qt/qttext.h"

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

} // namespace

Splitter::Splitter(Area &area, QWidget *parent) : QWidget(parent), m_grip(new QWidget(parent))
{
    Name(this, "Separator");
    setFocusPolicy(Qt::TabFocus);
    setBackgroundRole(QPalette::Highlight);
    Name(m_grip, "SeparatorGrip");
    m_grip->setCursor(Qt::SplitHCursor);
    m_grip->installEventFilter(this);
    Bind(area, this, [this, &area] {
        ShowArea(area, this);
        m_grip->setVisible(area.Visible());
        m_grip->setGeometry(geometry().adjusted(-kGripPixels, 0, kGripPixels, 0));
    });
}

void Splitter::RaiseGrip()
{
    m_grip->raise();
}

bool Splitter::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress: {
        const double place = PlaceInBar(event);
        m_grabbedAt = place < 0 || place >= width() ? place : 0;
        pressed();
        break;
    }
    case QEvent::MouseMove:
        moved((PlaceInBar(event) - m_grabbedAt) * kTwipsPerPixel);
        break;
    case QEvent::MouseButtonRelease:
        released();
        break;
    default:
        break;
    }
    return QWidget::eventFilter(watched, event);
}

void Splitter::keyPressEvent(QKeyEvent *event)
{
    MoveByKey(event->key());
    QWidget::keyPressEvent(event);
}

void Splitter::MoveByKey(int key)
{
    if (key != Qt::Key_Left && key != Qt::Key_Right)
        return;
    pressed();
    moved(key == Qt::Key_Left ? -kKeyStepTwips : kKeyStepTwips);
    released();
}

void Splitter::focusInEvent(QFocusEvent *event)
{
    setAutoFillBackground(true);
    QWidget::focusInEvent(event);
}

void Splitter::focusOutEvent(QFocusEvent *event)
{
    setAutoFillBackground(false);
    QWidget::focusOutEvent(event);
}

} // namespace ui::qt
