// A window that tells what is dropped on it: another program, for the tests of dragging.
#include <QApplication>
#include <QDropEvent>
#include <QMimeData>
#include <QWidget>
#include <cstdio>

namespace {

class DropTarget final : public QWidget {
public:
    DropTarget()
    {
        setAcceptDrops(true);
        setWindowTitle(QStringLiteral("drop target"));
        setGeometry(1300, 100, 400, 400);
    }

protected:
    void dragEnterEvent(QDragEnterEvent* event) override
    {
        // As a file manager on the same drive would.
        event->setDropAction(Qt::MoveAction);
        event->acceptProposedAction();
    }

    void dropEvent(QDropEvent* event) override
    {
        auto const print = [&](char const* form) {
            std::printf("%s: %s\n", form,
                event->mimeData()->data(QString::fromLatin1(form)).toPercentEncoding().constData());
        };
        print("x-special/gnome-copied-files");
        print("text/uri-list");
        std::printf("offers to move: %s\n",
            event->possibleActions().testFlag(Qt::MoveAction) ? "yes" : "no");
        std::fflush(stdout);
        event->acceptProposedAction();
    }
};

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    DropTarget target;
    target.show();
    return QApplication::exec();
}
