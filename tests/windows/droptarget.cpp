// A window of another program on which files can be dropped, for the tests. It is at the given
// place (in pixels); prints "ready" when it is shown, "over" for each place of a drag above it, and
// for each drop the sum of the offered actions (1 copy, 2 move, 4 link) and the bytes of the list
// of addresses, up to a line "end".
#include <QApplication>
#include <QDropEvent>
#include <QMimeData>
#include <QTimer>
#include <QWidget>
#include <cstdio>

namespace
{

class Target : public QWidget
{
public:
    Target() { setAcceptDrops(true); }

protected:
    void dragEnterEvent(QDragEnterEvent *event) override { event->acceptProposedAction(); }
    void dragMoveEvent(QDragMoveEvent *event) override
    {
        std::puts("over");
        std::fflush(stdout);
        event->acceptProposedAction();
    }
    void dropEvent(QDropEvent *event) override
    {
        const QByteArray list = event->mimeData()->data(QStringLiteral("text/uri-list"));
        std::printf("%d\n%send\n", static_cast<int>(event->possibleActions()), list.constData());
        std::fflush(stdout);
        event->acceptProposedAction();
    }
};

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    if (argc != 3)
        return 2;
    Target target;
    target.setWindowTitle(QStringLiteral("drop target"));
    target.setWindowFlag(Qt::FramelessWindowHint);
    target.setGeometry(QString::fromLocal8Bit(argv[1]).toInt(),
                       QString::fromLocal8Bit(argv[2]).toInt(), 200, 200);
    target.show();
    QTimer::singleShot(0, &target, [] {
        std::puts("ready");
        std::fflush(stdout);
    });
    return QApplication::exec();
}
