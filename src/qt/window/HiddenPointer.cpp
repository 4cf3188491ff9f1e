#include "qt/window/HiddenPointer.h"
#include <QCursor>
#include <QEnterEvent>
#include <QGuiApplication>
#include <QMouseEvent>
#include <cstdlib>

namespace pixelhain {

HiddenPointer::~HiddenPointer()
{
    if (isHidden())
        reveal();
}

void HiddenPointer::hideUntilMoved()
{
    if (!isHidden()) {
        QGuiApplication::setOverrideCursor(Qt::BlankCursor);
        qGuiApp->installEventFilter(this);
    }
    place_ = QCursor::pos();
}

void HiddenPointer::reveal()
{
    place_.reset();
    qGuiApp->removeEventFilter(this);
    QGuiApplication::restoreOverrideCursor();
}

// A window that changes below a pointer at rest is entered, and is told of the place once more:
// neither is a movement. Widgets are left out; they are also entered when the pointer does move.
bool HiddenPointer::eventFilter(QObject* watched, QEvent* event)
{
    if (!watched->isWindowType())
        return false;
    if (event->type() == QEvent::Enter)
        place_ = static_cast<QEnterEvent*>(event)->globalPosition().toPoint();
    else if (event->type() == QEvent::MouseMove
        && isElsewhere(static_cast<QMouseEvent*>(event)->globalPosition()))
        reveal();
    return false;
}

// At fractional scales the same place is not always rounded to the same point.
bool HiddenPointer::isElsewhere(QPointF place) const
{
    constexpr int rounding = 1;
    auto const way = place.toPoint() - place_.value_or(QPoint());
    return std::abs(way.x()) > rounding || std::abs(way.y()) > rounding;
}

} // namespace pixelhain
