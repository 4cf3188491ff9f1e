#include "qt/app/Screenshot.h"
#include "model/BrowserModel.h"
#include "qt/sidebar/SidebarWidget.h"
#include "qt/window/MainWindowWidget.h"
#include <QApplication>
#include <QPixmap>
#include <cstdio>

namespace pixelhain {

namespace {

constexpr int lookEveryMilliseconds = 20;

// Sizes of pictures come by a way of their own; a file may have none, so they are not waited for
// any longer than this.
constexpr int captionMilliseconds = 1500;

} // namespace

Screenshot::Screenshot(QString file, BrowserModel& model, MainWindowWidget& window, bool mustOpen)
    : file_(std::move(file))
    , model_(model)
    , window_(window)
    , mustOpen_(mustOpen)
{
    waited_.start();
    timer_.start(lookEveryMilliseconds, this);
}

std::optional<QString> Screenshot::obstacle() const
{
    if (mustOpen_ && !*model_.folder)
        return QStringLiteral("der Ordner wurde nicht geöffnet");
    if (!window_.isOnScreen())
        return QStringLiteral("das Fenster steht nicht auf dem Bildschirm");
    if (!window_.isComplete())
        return QStringLiteral("es haben nicht alle sichtbaren Zellen ein Bild");
    if (!window_.content().sidebar().view().isComplete())
        return QStringLiteral("es sind nicht alle sichtbaren Ordner gelesen");
    return std::nullopt;
}

void Screenshot::timerEvent(QTimerEvent*)
{
    auto const reason = obstacle();
    if (reason && waited_.hasExpired(patienceSeconds * 1000)) {
        timer_.stop();
        std::fprintf(stderr, "pixelhain: nach %d s kein Bildschirmfoto: %s\n", patienceSeconds,
            qPrintable(*reason));
        QApplication::exit(1);
    }
    if (reason) {
        complete_.invalidate();
        return;
    }
    if (!complete_.isValid())
        complete_.start();
    if (window_.content().grid().showsAllSizes() || complete_.hasExpired(captionMilliseconds))
        save();
}

void Screenshot::save()
{
    timer_.stop();
    bool const saved = window_.grab().save(file_, "PNG");
    if (!saved)
        std::fprintf(stderr, "pixelhain: %s lässt sich nicht schreiben\n", qPrintable(file_));
    QApplication::exit(saved ? 0 : 1);
}

} // namespace pixelhain
