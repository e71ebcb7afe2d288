// contactsheet - draws every icon at 16, 24 and 48 pixels on a light and on a dark background, to
// inspect them.
//   contactsheet ICONS-FOLDER OUT.png     ICONS-FOLDER contains light/ and dark/
#include <QDir>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <cstdio>

namespace
{

constexpr int kCellWidth = 118;
constexpr int kCellHeight = 70;
constexpr int kColumns = 8;

void DrawCell(QPainter &painter, const QString &file, const QRect &cell, const QColor &ink)
{
    QSvgRenderer renderer(file);
    int left = cell.left() + 6;
    for (const int size : {16, 24, 48}) {
        renderer.render(&painter, QRectF(left, cell.top() + 4, size, size));
        left += size + 6;
    }
    painter.setPen(ink);
    painter.drawText(cell.adjusted(4, 0, 0, -2), Qt::AlignBottom | Qt::AlignLeft,
                     QFileInfo(file).completeBaseName());
}

int DrawAppIcons(const QDir &pictures)
{
    for (const int size : {16, 24, 32, 48, 64, 128, 256}) {
        QImage image(size, size, QImage::Format_ARGB32);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        QSvgRenderer(pictures.filePath("app.svg")).render(&painter, QRectF(0, 0, size, size));
        painter.end();
        if (!image.save(pictures.filePath(QString("app-%1.png").arg(size))))
            return 1;
    }
    return 0;
}

int DrawSheet(const QDir &icons, const QString &out)
{
    const QStringList names =
        QDir(icons.filePath("light")).entryList({"*.svg"}, QDir::Files, QDir::Name);
    const int rows = static_cast<int>((names.size() + kColumns - 1) / kColumns);
    QImage sheet(kColumns * kCellWidth, 2 * rows * kCellHeight,
                 QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&sheet);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setFont(QFont("DejaVu Sans", 7));
    int top = 0;
    for (const char *theme : {"light", "dark"}) {
        const bool dark = theme[0] == 'd';
        painter.fillRect(0, top, sheet.width(), rows * kCellHeight,
                         dark ? QColor("#232629") : QColor("#f6f6f6"));
        for (int i = 0; i < names.size(); ++i)
            DrawCell(painter, icons.filePath(QString(theme) + '/' + names[i]),
                     QRect(i % kColumns * kCellWidth, top + i / kColumns * kCellHeight, kCellWidth,
                           kCellHeight),
                     dark ? QColor("#aab2bd") : QColor("#55606e"));
        top += rows * kCellHeight;
    }
    painter.end();
    return sheet.save(out) ? 0 : 1;
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    if (argc != 3) {
        std::fputs("usage: contactsheet ICONS-FOLDER OUT.png | --app PICTURES-FOLDER\n", stderr);
        return 2;
    }
    const QString first = QString::fromLocal8Bit(argv[1]);
    const QString second = QString::fromLocal8Bit(argv[2]);
    return first == "--app" ? DrawAppIcons(QDir(second)) : DrawSheet(QDir(first), second);
}
