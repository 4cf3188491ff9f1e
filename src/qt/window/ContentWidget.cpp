#include "qt/window/ContentWidget.h"
#include "model/BrowserModel.h"
#include "qt/ports/FileUrlText.h"
#include "qt/sidebar/SidebarWidget.h"
#include "qt/window/EmptyStateWidget.h"
#include "qt/window/StatusBarWidget.h"
#include "qt/window/Tones.h"
#include "qt/window/ToolbarWidget.h"
#include <QDropEvent>
#include <QMimeData>
#include <QPainter>
#include <QSplitter>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace pixelhain {

namespace {

class DropHighlight final : public QWidget {
public:
    explicit DropHighlight(QWidget* parent)
        : QWidget(parent)
    {
        setAttribute(Qt::WA_TransparentForMouseEvents);
        hide();
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        constexpr auto line = ContentView::dropLineWidth;
        constexpr auto inset = ContentView::dropInset;
        constexpr auto radius = ContentView::dropCornerRadius;
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        QPen pen(Tones(palette()).of(ColorRole::accent), line);
        pen.setDashPattern({ 3, 2 }); // in line widths
        pen.setCapStyle(Qt::FlatCap);
        painter.setPen(pen);
        painter.drawRoundedRect(
            QRectF(rect()).adjusted(inset, inset, -inset, -inset), radius, radius);
    }
};

// A thin line; the toolkit lets it be grasped a little beside it too.
class ColumnHandle final : public QSplitterHandle {
public:
    using QSplitterHandle::QSplitterHandle;

protected:
    void paintEvent(QPaintEvent* event) override
    {
        QPainter(this).fillRect(event->rect(), Tones(palette()).separator());
    }
};

class Columns final : public QSplitter {
public:
    explicit Columns(QWidget* parent)
        : QSplitter(Qt::Horizontal, parent)
    {
        setHandleWidth(1);
        setChildrenCollapsible(false);
    }

protected:
    QSplitterHandle* createHandle() override { return new ColumnHandle(orientation(), this); }
};

std::vector<FileUrl> filesIn(QMimeData const& data)
{
    auto const list = data.data(QStringLiteral("text/uri-list"));
    return fileUrlsFromUriList({ list.constData(), static_cast<std::size_t>(list.size()) });
}

} // namespace

ContentWidget::ContentWidget(
    GridWidget::Services const& services, SidebarPorts const& sidebar, QWidget* parent)
    : QWidget(parent)
    , model_(services.model)
    , view_(services.model, services.loop)
    , sidebar_(new SidebarWidget(services.model, sidebar))
    , grid_(new GridWidget(services))
    , toolbar_(new ToolbarWidget(
          services.model, services.menu ? &services.menu->share() : nullptr, this))
    , columns_(new Columns(this))
    , detail_(new QStackedWidget)
    , empty_(new EmptyStateWidget([this] { model_.chooseFolder(); }))
    , statusBar_(new StatusBarWidget(services.model))
    , dropHighlight_(new DropHighlight(this))
{
    setAcceptDrops(true);
    detail_->addWidget(empty_);
    detail_->addWidget(grid_);
    auto* detailColumn = new QWidget;
    auto* stack = new QVBoxLayout(detailColumn);
    stack->setContentsMargins(0, 0, 0, 0);
    stack->setSpacing(0);
    stack->addWidget(detail_, 1);
    stack->addWidget(statusBar_);
    columns_->addWidget(sidebar_);
    columns_->addWidget(detailColumn);
    sidebar_->lower(); // the splitter has turned the order round in which screen readers find them
    columns_->setStretchFactor(1, 1);
    setSidebarWidth(sidebarWidth_);
    connect(columns_, &QSplitter::splitterMoved, this, [this](int at) {
        sidebarWidth_ = at;
        if (sidebarResized)
            sidebarResized();
    });
    auto* whole = new QVBoxLayout(this);
    whole->setContentsMargins(0, 0, 0, 0);
    whole->setSpacing(0);
    whole->addWidget(toolbar_);
    whole->addWidget(columns_, 1);
    toolbar_->toggleSidebar = [this] { toggleSidebar(); };
    toolbar_->leave = [this] { focusDetail(); };
    toolbar_->goOn = [this] { goOnInGallery(); };
    empty_->setFocusPolicy(Qt::ClickFocus);
    modelChanged();
    // Keys go to the gallery until the user turns to something else.
    focusDetail();
}

// The stack hands the focus on when another page comes up.
void ContentWidget::focusDetail()
{
    if (viewer_ && view_.showsViewer())
        viewer_->setFocus();
    else
        detail_->currentWidget()->setFocus();
}

// Whoever comes by the keyboard sees where it is.
void ContentWidget::goOnInGallery()
{
    focusDetail();
    model_.placeCursor();
    grid_->showCursor();
}

int ContentWidget::sidebarWidth() const
{
    return sidebarWidth_;
}

void ContentWidget::setSidebarWidth(int width)
{
    sidebarWidth_ = width;
    columns_->setSizes({ width, static_cast<int>(ContentView::defaultWidth) - width });
}

bool ContentWidget::showsSidebar() const
{
    return !sidebar_->isHidden();
}

void ContentWidget::toggleSidebar()
{
    if (showsSidebar() && sidebar_->isAncestorOf(focusWidget()))
        focusDetail();
    sidebar_->setHidden(showsSidebar());
    toolbar_->sidebarToggled(showsSidebar());
    if (sidebarToggled)
        sidebarToggled();
}

void ContentWidget::modelChanged()
{
    switch (view_.detail()) {
    case ContentView::Detail::noFolder:
        empty_->show(EmptyStateView::noFolder());
        detail_->setCurrentWidget(empty_);
        break;
    case ContentView::Detail::noPhotos:
        // While a folder is being read nobody knows yet that it holds no photos.
        if (model_.isLoading)
            detail_->setCurrentWidget(grid_);
        else {
            empty_->show(EmptyStateView::noPhotos(model_));
            detail_->setCurrentWidget(empty_);
        }
        break;
    case ContentView::Detail::gallery:
        detail_->setCurrentWidget(grid_);
        break;
    }
    toolbar_->modelChanged();
    sidebar_->modelChanged();
    grid_->modelChanged();
    statusBar_->modelChanged();
    if (viewer_)
        viewer_->modelChanged();
    // While the viewer fades in, the bar is still to be seen beneath it.
    if (view_.showsToolbar() || !viewer_)
        toolbar_->setVisible(view_.showsToolbar());
}

void ContentWidget::addViewer(ViewerWidget::Services const& services)
{
    viewer_ = new ViewerWidget(services, this);
    viewer_->opened = [this] { toolbar_->hide(); };
    viewer_->closing = [this] { detail_->currentWidget()->setFocus(); };
    viewer_->setPlace(rect());
}

void ContentWidget::setDropTargeted(bool targeted)
{
    view_.dropTargeted = targeted;
    dropHighlight_->setGeometry(columns_->geometry());
    dropHighlight_->setVisible(targeted);
    if (targeted)
        dropHighlight_->raise();
}

void ContentWidget::dragEnterEvent(QDragEnterEvent* event)
{
    auto const* const source = qobject_cast<QWidget*>(event->source());
    bool const isOwn = source && source->window() == window();
    if (isOwn || filesIn(*event->mimeData()).empty())
        return;
    // Never a move: the sender would take the file away once it is accepted.
    event->setDropAction(Qt::CopyAction);
    event->accept();
    setDropTargeted(true);
}

void ContentWidget::dragLeaveEvent(QDragLeaveEvent*)
{
    setDropTargeted(false);
}

void ContentWidget::dropEvent(QDropEvent* event)
{
    auto const files = filesIn(*event->mimeData());
    setDropTargeted(false);
    if (!view_.drop(files))
        return;
    event->setDropAction(Qt::CopyAction);
    event->accept();
}

void ContentWidget::resizeEvent(QResizeEvent*)
{
    dropHighlight_->setGeometry(columns_->geometry());
    if (viewer_)
        viewer_->setPlace(rect());
}

} // namespace pixelhain
