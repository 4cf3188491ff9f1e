// A window of the toolkit with nothing in it, or with a menu bar and one line of text: what
// starting a program with one costs at least, in the same words and by the same clock as the start
// of ours.
//
// pixelhain-bench-empty [--text]
#include "qt/app/Trace.h"
#include <QApplication>
#include <QLabel>
#include <QMainWindow>
#include <QMenuBar>
#include <QTimer>

namespace pixelhain {

namespace {

class EmptyWindow : public QMainWindow {
protected:
    // The first frame is on its way to the screen when the event loop comes round again.
    void paintEvent(QPaintEvent* event) override
    {
        QMainWindow::paintEvent(event);
        if (wasPainted_)
            return;
        wasPainted_ = true;
        QTimer::singleShot(0, this, [this] {
            trace_.milestone("window-shown");
            QTimer::singleShot(0, this, [this] { trace_.milestone("idle"); });
        });
    }

private:
    Trace trace_;
    bool wasPainted_ = false;
};

} // namespace

} // namespace pixelhain

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    pixelhain::EmptyWindow window;
    if (QApplication::arguments().contains(QStringLiteral("--text"))) {
        window.menuBar()->addMenu(QStringLiteral("Datei"));
        window.setCentralWidget(new QLabel(QStringLiteral("Kein Ordner ausgewählt")));
    }
    window.show();
    return QApplication::exec();
}
