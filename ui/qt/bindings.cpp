#include "ui/qt/bindings.h"

#include "ui/controls/command.h"
#include "ui/qt/icons.h"
#include "ui/qt/qttext.h"

#include <QEvent>
#include <QTimer>
#include <algorithm>
#include <memory>
#include <utility>

namespace ui::qt
{

namespace
{

// Makes a new pixmap for a picture's widget when the theme or the scale of the screen changes.
class PictureKeeper : public QObject
{
public:
    PictureKeeper(ui::Picture &picture, QLabel *widget, bool placed)
        : QObject(widget), m_picture(picture), m_widget(widget), m_placed(placed)
    {
        widget->installEventFilter(this);
    }

    void Show()
    {
        if (m_placed)
            ShowArea(m_picture, m_widget);
        else
            ShowState(m_picture, m_widget);
        m_widget->setToolTip(TipText(ToQt(m_picture.ToolTip())));
        const QSize size = PixelRect(m_picture.Place()).size();
        const QIcon icon = Icon(m_picture.Image());
        m_widget->setPixmap(icon.isNull() ? QPixmap()
                                          : icon.pixmap(size, m_widget->devicePixelRatioF()));
    }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::PaletteChange || event->type() == QEvent::Show)
            Show();
        return QObject::eventFilter(watched, event);
    }

private:
    ui::Picture &m_picture;
    QLabel *m_widget;
    bool m_placed;
};

} // namespace

std::function<void()> Throttled(QObject *owner, std::function<void()> show)
{
    constexpr int kFrameMs = 40;
    auto *frame = new QTimer(owner);
    frame->setInterval(kFrameMs);
    auto pending = std::make_shared<bool>(false); // shared by the result and the timer's slot
    QObject::connect(frame, &QTimer::timeout, frame, [frame, pending, show] {
        if (std::exchange(*pending, false))
            show();
        else
            frame->stop();
    });
    return [frame, pending, show = std::move(show)] {
        if (frame->isActive()) {
            *pending = true;
            return;
        }
        show();
        frame->start();
    };
}

QRect PixelRect(const ui::Rect &place)
{
    const int left = ui::PixelsOfTwips(place.left);
    const int top = ui::PixelsOfTwips(place.top);
    return {left, top, std::max(0, ui::PixelsOfTwips(place.Right()) - left),
            std::max(0, ui::PixelsOfTwips(place.Bottom()) - top)};
}

void Name(QWidget *widget, const char *name)
{
    widget->setObjectName(QLatin1String(name));
}

void ShowArea(const ui::Area &area, QWidget *widget)
{
    const QRect place = PixelRect(area.Place());
    if (widget->geometry() != place)
        widget->setGeometry(place);
    ShowState(area, widget);
}

void ShowState(const ui::Area &area, QWidget *widget)
{
    constexpr const char *kHadFocus = "hadFocus";
    if (widget->isHidden() == area.Visible())
        widget->setVisible(area.Visible());
    if (widget->isEnabled() == area.Enabled())
        return;
    if (!area.Enabled() && widget->hasFocus()) {
        widget->clearFocus(); // otherwise the toolkit gives the focus to the next widget, which
                              // keeps it
        widget->setProperty(kHadFocus, true);
    }
    widget->setEnabled(area.Enabled());
    if (area.Enabled() && widget->property(kHadFocus).toBool()) {
        widget->setProperty(kHadFocus, false);
        widget->setFocus();
    }
}

void BindLabel(ui::Label &label, QLabel *widget)
{
    widget->setTextFormat(Qt::PlainText);
    widget->setWordWrap(true);
    widget->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    Bind(label, widget, [&label, widget] {
        ShowArea(label, widget);
        const QString text = LabelText(label.Caption());
        if (text == widget->text())
            return;
        widget->setText(text);
        widget->setAccessibleDescription(text);
    });
}

void BindPicture(ui::Picture &picture, QLabel *widget, bool placed)
{
    auto *keeper = new PictureKeeper(picture, widget, placed);
    Bind(picture, widget, [keeper] { keeper->Show(); });
}

void BindScrollBar(ui::ScrollBar &bar, QScrollBar *widget)
{
    Bind(bar, widget, [&bar, widget] {
        ShowArea(bar, widget);
        const QSignalBlocker quiet(widget);
        widget->setRange(0, bar.Max());
        widget->setPageStep(std::max(1, bar.LargeChange()));
        widget->setSingleStep(std::max(1, bar.SmallChange()));
        widget->setValue(bar.Value());
    });
    QObject::connect(widget, &QScrollBar::valueChanged, widget,
                     [&bar](int value) { bar.SetValue(value); });
}

// The toolkit's bar has 32-bit values, so it gets the value in thousandths of the maximum.
void BindProgress(ui::ProgressBar &bar, QProgressBar *widget)
{
    widget->setRange(0, 1000);
    widget->setTextVisible(false);
    BindThrottled(bar, widget, [&bar, widget] {
        const double max = static_cast<double>(std::max<std::int64_t>(1, bar.Max()));
        const double share = static_cast<double>(bar.Value()) / max;
        widget->setValue(std::clamp(static_cast<int>(share * 1000), 0, 1000));
    });
    bar.changed = [&bar, widget, calm = bar.changed] {
        widget->setVisible(bar.Visible()); // also without a new value
        calm();
    };
    bar.changed();
}

void BindTimer(ui::Timer &timer, QObject *owner)
{
    auto *driver = new QTimer(owner);
    driver->setTimerType(
        Qt::PreciseTimer); // the default type may be late by a twentieth of the interval
    driver->setInterval(timer.IntervalMs());
    QObject::connect(driver, &QTimer::timeout, driver, [&timer] { timer.Fire(); });
    Bind(timer, driver, [&timer, driver] {
        if (timer.Enabled())
            driver->start();
        else
            driver->stop();
    });
}

void BindAction(ui::Command &command, QAction *action, bool checkable)
{
    action->setObjectName(ToQt(command.name));
    action->setCheckable(checkable);
    Bind(command, action, [&command, action, checkable] {
        action->setText(MenuText(command.Caption()));
        action->setEnabled(command.Enabled());
        action->setVisible(command.Visible());
        if (checkable)
            action->setChecked(command.Checked());
    });
}

} // namespace ui::qt
