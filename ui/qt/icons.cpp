#include "ui/qt/icons.h"

#include "platform/qt/theme.h"
#include "ui/qt/qttext.h"

#include <QFile>
#include <QGuiApplication>
#include <QIconEngine>
#include <QImage>
#include <QMap>
#include <QMimeDatabase>
#include <QPainter>
#include <QPalette>
#include <algorithm>
#include <cstdlib>

namespace ui::qt
{

namespace
{

// The drawing for a disabled control. The colour of each pixel is between that of the window and
// that of disabled text; the more the pixel differs from the window, the nearer it is to the
// latter.
QPixmap Faded(const QPixmap &drawn)
{
    const QPalette palette = QGuiApplication::palette();
    const QColor window = palette.color(QPalette::Window);
    const QColor faint = palette.color(QPalette::Disabled, QPalette::WindowText);
    const int from = qGray(window.rgb());
    const int reach =
        std::max(1, std::abs(qGray(palette.color(QPalette::WindowText).rgb()) - from));
    QImage image = drawn.toImage().convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < image.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const int share = std::min(reach, std::abs(qGray(line[x]) - from));
            const auto mix = [share, reach](int a, int b) { return a + (b - a) * share / reach; };
            line[x] = qRgba(mix(window.red(), faint.red()), mix(window.green(), faint.green()),
                            mix(window.blue(), faint.blue()), qAlpha(line[x]));
        }
    }
    QPixmap faded = QPixmap::fromImage(image);
    faded.setDevicePixelRatio(drawn.devicePixelRatio());
    return faded;
}

// An icon with a drawing for light and one for dark windows; one is chosen each time it is painted.
class ThemedEngine : public QIconEngine
{
public:
    ThemedEngine(QIcon light, QIcon dark) : m_light(std::move(light)), m_dark(std::move(dark)) {}

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override
    {
        if (mode == QIcon::Disabled)
            painter->drawPixmap(rect,
                                scaledPixmap(rect.size() * painter->device()->devicePixelRatio(),
                                             mode, state, painter->device()->devicePixelRatio()));
        else
            Drawing(mode).paint(painter, rect, Qt::AlignCenter, QIcon::Normal, state);
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        return scaledPixmap(size, mode, state, 1.0);
    }

    QPixmap scaledPixmap(const QSize &size, QIcon::Mode mode, QIcon::State state,
                         qreal scale) override
    {
        // `size` is in device pixels here, but the icon's function needs window pixels.
        const QPixmap drawn = Drawing(mode).pixmap(size / scale, scale, QIcon::Normal, state);
        return mode == QIcon::Disabled ? Faded(drawn) : drawn;
    }

    QSize actualSize(const QSize &size, QIcon::Mode, QIcon::State) override { return size; }
    bool isNull() override { return m_light.isNull(); }
    QIconEngine *clone() const override { return new ThemedEngine(m_light, m_dark); }
    QString key() const override { return QStringLiteral("quenlin-themed"); }

private:
    // The background of a selection is dark when its text is light, also in a light window.
    static bool SelectionIsDark()
    {
        const QPalette colours = QGuiApplication::palette();
        return colours.color(QPalette::HighlightedText).lightness() >
               colours.color(QPalette::Highlight).lightness();
    }

    const QIcon &Drawing(QIcon::Mode mode) const
    {
        const bool onDark = mode == QIcon::Selected ? SelectionIsDark() : platform::qt::IsDark();
        return onDark ? m_dark : m_light;
    }

    QIcon m_light, m_dark;
};

struct State {
    QMap<QString, QIcon> own;     // by key; null when there is no drawing
    QMap<QString, QIcon> desktop; // by key; set by AddDesktopIcon
};

State &TheState()
{
    static State state;
    return state;
}

// A picture that is the same in light and dark windows; null when there is none.
QIcon OwnPicture(const QString &key)
{
    const QString path = QStringLiteral(":/pictures/%1.svg").arg(key);
    return QFile::exists(path) ? QIcon(path) : QIcon();
}

QIcon OwnIcon(const QString &key)
{
    const QString light = QStringLiteral(":/icons/light/%1.svg").arg(key);
    const QString dark = QStringLiteral(":/icons/dark/%1.svg").arg(key);
    if (!QFile::exists(light))
        return OwnPicture(key);
    return QIcon(new ThemedEngine(QIcon(light), QIcon(QFile::exists(dark) ? dark : light)));
}

// The names under which the desktop may have an icon for files with this extension, the best one
// first. More than one type can have an extension (".m3u" has two). The general icon for files of
// applications is not used: the program's own icon is clearer.
QStringList IconNames(const QString &suffix)
{
    const auto types = QMimeDatabase().mimeTypesForFileName(QLatin1String("x") + suffix);
    QStringList names;
    for (const QMimeType &type : types)
        names << type.iconName();
    for (const QMimeType &type : types)
        if (type.genericIconName() != QLatin1String("application-x-generic"))
            names << type.genericIconName();
    return names;
}

} // namespace

QIcon Icon(std::string_view key)
{
    const QString name = ToQt(key);
    if (name.isEmpty())
        return {};
    State &state = TheState();
    if (const auto found = state.desktop.constFind(name); found != state.desktop.constEnd())
        return *found;
    auto found = state.own.find(name);
    if (found == state.own.end())
        found = state.own.insert(name, OwnIcon(name));
    return *found;
}

bool AddDesktopIcon(std::string_view extension)
{
    const QString suffix = ToQt(extension);
    for (const QString &name : IconNames(suffix)) {
        const QIcon icon = QIcon::fromTheme(name);
        if (!icon.isNull()) {
            TheState().desktop.insert(suffix.mid(1).toUpper(), icon);
            return true;
        }
    }
    return false;
}

void ForgetDesktopIcons()
{
    TheState().desktop.clear();
}

} // namespace ui::qt
