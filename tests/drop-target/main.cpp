// Another program, for the tests of dragging: a window that tells what is dropped on it, and lets
// the files that it was given be dragged away.
#include <QApplication>
#include <QDrag>
#include <QDropEvent>
#include <QMimeData>
#include <QTimer>
#include <QUrl>
#include <QWidget>
#include <cstdio>

namespace {

class DropTarget final : public QWidget {
public:
    explicit DropTarget(QStringList const& files)
    {
        for (auto const& file : files)
            urls_ += QUrl::fromLocalFile(file);
        setAcceptDrops(true);
        setWindowTitle(QStringLiteral("drop target"));
        setGeometry(1300, 100, 400, 400);
    }

protected:
    void showEvent(QShowEvent*) override
    {
        QTimer::singleShot(0, this, [] {
            std::puts("shown");
            std::fflush(stdout);
        });
    }

    void mousePressEvent(QMouseEvent*) override
    {
        if (urls_.isEmpty())
            return;
        auto* const files = new QMimeData;
        files->setUrls(urls_);
        auto* const drag = new QDrag(this);
        drag->setMimeData(files);
        drag->exec(Qt::CopyAction | Qt::MoveAction);
    }

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

private:
    QList<QUrl> urls_;
};

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    DropTarget target(QApplication::arguments().mid(1));
    target.show();
    return QApplication::exec();
}
