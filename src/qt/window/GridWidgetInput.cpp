#include "model/BrowserModel.h"
#include "model/KeyEvent.h"
#include "ports/MainLoop.h"
#include "qt/ports/FileMimeData.h"
#include "qt/ports/FileUrlText.h"
#include "qt/window/DragPixmap.h"
#include "qt/window/GalleryAccessible.h"
#include "qt/window/GridWidget.h"
#include "qt/window/Menus.h"
#include <QApplication>
#include <QContextMenuEvent>
#include <QDrag>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QPointer>
#include <QScreen>
#include <QToolTip>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

namespace pixelhain {

namespace {

constexpr double wheelNotch = 120; ///< what Qt reports for one notch

ClickModifiers clickModifiers(QMouseEvent const& event)
{
    return { event.modifiers().testFlag(Qt::ControlModifier),
        event.modifiers().testFlag(Qt::ShiftModifier) };
}

} // namespace

void GridWidget::wheelEvent(QWheelEvent* event)
{
    auto const now = scrollGoal();
    auto const limited
        = [&](double goal) { return view_.layout().clampedScroll(goal, viewportHeight()); };
    auto const turned = event->angleDelta().y();
    event->accept();
    if (!event->pixelDelta().isNull()) {
        scrollTo(top_ - event->pixelDelta().y());
        return;
    }
    auto const way = turned / wheelNotch * QApplication::wheelScrollLines() * pointsPerLine;
    if (turned % static_cast<int>(wheelNotch) != 0)
        scrollTo(top_ - way);
    else if (turned != 0)
        glideTo(limited(now - way));
}

void GridWidget::glideTo(double goal)
{
    auto const refresh = screen() ? screen()->refreshRate() : 60.0;
    auto const frame = std::clamp(static_cast<int>(1000 / std::max(refresh, 1.0)), 4, 17);
    motion_.start(top_, std::round(goal), frame);
}

void GridWidget::keyPressEvent(QKeyEvent* event)
{
    switch (event->key()) {
    case Qt::Key_PageUp:
        return turnPage(GridView::PageTurn::back, event->modifiers());
    case Qt::Key_PageDown:
        return turnPage(GridView::PageTurn::forward, event->modifiers());
    case Qt::Key_Home:
        return goTo(0);
    case Qt::Key_End:
        return goTo(view_.layout().contentHeight());
    default:
        event->ignore();
    }
}

void GridWidget::turnPage(GridView::PageTurn turn, Qt::KeyboardModifiers held)
{
    catchUp();
    auto const page = view_.page(turn, scrollGoal(), viewportHeight());
    if (page.cursorStep != 0)
        services_.model.moveCursor(
            page.cursorStep, held.testFlag(Qt::ShiftModifier) ? Extend::yes : Extend::no);
    goTo(page.top);
}

// A long way is not worth watching, and every cell along it would be asked for.
void GridWidget::goTo(double goal)
{
    constexpr double longWay = 3;
    auto const height = viewportHeight();
    auto const limited = view_.layout().clampedScroll(goal, height);
    if (std::abs(limited - top_) > longWay * height)
        scrollTo(limited);
    else
        glideTo(limited);
}

Point GridWidget::contentPoint(QPointF viewportPoint) const
{
    return { viewportPoint.x(), viewportPoint.y() + top_ };
}

// The cell under the pointer shows its circle, also when cells move under a pointer at rest.
void GridWidget::updateHover()
{
    auto const before = hovered_;
    view_.movePointer(pointer_ ? std::optional(contentPoint(*pointer_)) : std::nullopt);
    hovered_ = view_.hovered();
    if (before == hovered_)
        return;
    for (auto const& index : { before, hovered_ })
        if (index && *index < view_.layout().measures().count)
            updateCell(*index);
}

void GridWidget::mousePressEvent(QMouseEvent* event)
{
    catchUp();
    pressed_.reset();
    if (event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    pointer_ = event->position();
    updateHover();
    if (auto const hit = view_.hit(contentPoint(event->position())))
        pressed_ = Press { *hit, services_.model.items->at(hit->index).url, event->pos() };
}

// The second press of a double click is a press like any other.
void GridWidget::mouseDoubleClickEvent(QMouseEvent* event)
{
    mousePressEvent(event);
}

void GridWidget::mouseMoveEvent(QMouseEvent* event)
{
    catchUp();
    pointer_ = event->position();
    updateHover();
    if (!pressed_ || pressed_->hit.isOnCircle || !event->buttons().testFlag(Qt::LeftButton))
        return;
    auto const way = (event->pos() - pressed_->position).manhattanLength();
    if (way >= QApplication::startDragDistance())
        startDrag(*std::exchange(pressed_, std::nullopt));
}

// A click is a press and a release on the same thing: who presses the wrong photo may still let go
// elsewhere.
void GridWidget::mouseReleaseEvent(QMouseEvent* event)
{
    catchUp();
    if (event->button() != Qt::LeftButton)
        return;
    auto const pressed = std::exchange(pressed_, std::nullopt);
    auto const hit = view_.hit(contentPoint(event->position()));
    if (!pressed || hit != pressed->hit
        || services_.model.items->at(hit->index).url != pressed->photo)
        return;
    if (hit->isOnCircle)
        view_.cell(hit->index).onToggle();
    else
        services_.model.click(hit->index, clickModifiers(*event));
}

void GridWidget::startDrag(Press const& press)
{
    auto const photos = view_.dragged(press.hit.index);
    if (photos.empty())
        return;
    DragPicture picture;
    if (auto const* drawn = pictures_.find(press.photo))
        picture.picture = drawn->picture;
    picture.count = photos.size();
    picture.scale = view_.displayScale;
    picture.palette = palette();
    picture.font = font();
    auto const pixmap = picture.pixmap();
    auto* const drag = new QDrag(this);
    drag->setMimeData(new FileMimeData(photos));
    drag->setHotSpot({ pixmap.deviceIndependentSize().toSize().width() / 2,
        pixmap.deviceIndependentSize().toSize().height() / 2 });
    drag->setPixmap(pixmap);
    pointer_.reset();
    updateHover();
    runDrag(drag);
}

void GridWidget::contextMenuEvent(QContextMenuEvent* event)
{
    catchUp();
    pressed_.reset();
    if (!services_.menu)
        return;
    auto const& model = services_.model;
    if (event->reason() != QContextMenuEvent::Keyboard) {
        if (auto const hit = view_.hit(contentPoint(event->pos())))
            showMenu(hit->index, event->globalPos());
        return;
    }
    if (auto const cursor = model.cursor.get())
        openMenu(*cursor);
}

void GridWidget::openMenu(std::size_t index)
{
    if (!services_.menu || index >= services_.model.items->size())
        return;
    scrollTo(view_.layout().scrollToShow(index, top_, viewportHeight()));
    auto const area = view_.layout().thumbnailArea(index);
    QPointF const middle(area.x + area.width / 2, area.y + area.height / 2 - top_);
    showMenu(index, viewport()->mapToGlobal(middle.toPoint()));
}

void GridWidget::moveCursorTo(std::size_t index)
{
    auto& model = services_.model;
    // Without a cursor the first step comes to the first photo.
    auto const from = *model.cursor ? static_cast<std::ptrdiff_t>(**model.cursor) : -1;
    model.moveCursor(static_cast<std::ptrdiff_t>(index) - from, Extend::no);
}

void GridWidget::showCursor()
{
    catchUp();
    auto const cursor = services_.model.cursor.get();
    if (cursor && *cursor < services_.model.items->size())
        scrollTo(view_.layout().scrollToShow(*cursor, top_, viewportHeight()));
}

// The toolkit says that the list has the keyboard once this is through; which photo has it comes
// after that.
void GridWidget::focusInEvent(QFocusEvent* event)
{
    QAbstractScrollArea::focusInEvent(event);
    services_.loop.post([grid = QPointer<GridWidget>(this)] {
        if (auto* const list = grid ? grid->accessible() : nullptr)
            list->announceFocus();
    });
}

void GridWidget::showMenu(std::size_t index, QPoint globalPosition)
{
    auto* const menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    fillMenu(*menu, services_.menu->open(index));
    menu->popup(globalPosition);
}

bool GridWidget::viewportEvent(QEvent* event)
{
    switch (event->type()) {
    case QEvent::ToolTip: {
        auto const* help = static_cast<QHelpEvent*>(event);
        if (!showTip(help->pos(), help->globalPos()))
            QToolTip::hideText();
        return true;
    }
    case QEvent::Leave:
        pointer_.reset();
        updateHover();
        break;
    default:
        break;
    }
    return QAbstractScrollArea::viewportEvent(event);
}

bool GridWidget::showTip(QPoint position, QPoint globalPosition)
{
    auto const point = contentPoint(position);
    auto const hit = view_.hit(point);
    if (!hit)
        return false;
    auto const cell = view_.cell(hit->index);
    if (!hit->isOnCircle && !(cell.showsBadge() && isAboutBadge(hit->index, point)))
        return false;
    auto const tip = hit->isOnCircle ? cell.circleTip() : ThumbnailCell::badgeTip;
    QToolTip::showText(globalPosition, shownText(tip), viewport());
    return true;
}

bool GridWidget::isAboutBadge(std::size_t index, Point point) const
{
    // About the size of the badge, whatever its letters.
    constexpr double width = 50;
    constexpr double height = 28;
    auto const area = view_.layout().thumbnailArea(index);
    return point.x >= area.right() - width && point.y >= area.bottom() - height
        && point.y < area.bottom();
}

} // namespace pixelhain
