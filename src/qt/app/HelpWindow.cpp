#include "qt/app/HelpWindow.h"
#include "qt/app/HelpTopicList.h"
#include "qt/app/HelpTopicWidget.h"
#include "qt/ports/FileUrlText.h"
#include "qt/window/Accessibility.h"
#include "qt/window/SymbolIcon.h"
#include "qt/window/Tones.h"
#include <QAccessible>
#include <QAction>
#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QScreen>
#include <QShortcut>
#include <QSplitter>
#include <QStackedLayout>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

namespace pixelhain {

namespace {

constexpr int leastWidth = 480;
constexpr int leastHeight = 320;
constexpr int columnMinimum = 170;
constexpr int columnMaximum = 360;
constexpr int topicMinimum = leastWidth - columnMinimum - 1;

QLabel* message(std::string_view text, QWidget* parent)
{
    auto* const label = new QLabel(shownText(text), parent);
    label->setTextFormat(Qt::PlainText);
    label->setAlignment(Qt::AlignCenter);
    label->setWordWrap(true);
    label->setMargin(12);
    return label;
}

} // namespace

HelpWindow::HelpWindow(TextOrder const& order)
    : view_(order)
    , field_(new QLineEdit(this))
    , clear_(new QAction(symbolIcon("xmark.circle.fill"), shownText(HelpView::clearTitle), this))
    , list_(new HelpTopicList(this))
    , topic_(new HelpTopicWidget(this))
    , noMatches_(message(HelpView::noMatches, this))
    , noTopic_(message(HelpView::noTopic, this))
    , columns_(new QSplitter(this))
    , listPlace_(new QStackedLayout)
    , topicPlace_(new QStackedLayout)
{
    setWindowTitle(shownText(HelpView::windowTitle));
    setMinimumSize(leastWidth, leastHeight);
    QSize const ideal(
        static_cast<int>(HelpView::defaultWidth), static_cast<int>(HelpView::defaultHeight));
    resize(ideal.boundedTo(screen()->availableSize()));

    setAccessibleRole(*this, QAccessible::Window);
    columns_->setChildrenCollapsible(false);
    columns_->setHandleWidth(1);
    columns_->addWidget(leftColumn());
    columns_->addWidget(rightColumn());
    columns_->widget(0)->lower(); // found first by screen readers; the splitter turned them round
    columns_->setStretchFactor(0, 0);
    columns_->setStretchFactor(1, 1);
    connect(columns_, &QSplitter::splitterMoved, this, [this](int at) { columnWidth_ = at; });
    auto* const whole = new QVBoxLayout(this);
    whole->setContentsMargins(0, 0, 0, 0);
    whole->addWidget(columns_);

    addKeys();
    useTones();
    showList();
    showTopic();
    field_->setFocus();
}

QWidget* HelpWindow::leftColumn()
{
    auto* const column = new QWidget(this);
    column->setMinimumWidth(columnMinimum);
    column->setMaximumWidth(columnMaximum);
    field_->setAcceptDrops(false); // a file would be taken from where it is, for its path
    field_->setPlaceholderText(shownText(HelpView::searchPrompt));
    field_->setAccessibleName(shownText(HelpView::searchPrompt));
    auto* const look
        = new QAction(symbolIcon("magnifyingglass"), shownText(HelpView::searchPrompt), field_);
    connect(look, &QAction::triggered, field_, [this] { field_->setFocus(); });
    field_->addAction(look, QLineEdit::LeadingPosition);
    field_->addAction(clear_, QLineEdit::TrailingPosition);
    clear_->setVisible(false);
    connect(clear_, &QAction::triggered, this, [this] {
        field_->clear();
        field_->setFocus();
    });
    connect(field_, &QLineEdit::textChanged, this, [this](QString const& text) { setQuery(text); });
    list_->selected = [this](std::optional<std::string> id) { select(std::move(id)); };
    field_->installEventFilter(this);
    list_->installEventFilter(this);

    auto* const lines = new QVBoxLayout(column);
    lines->setContentsMargins(0, 0, 0, 0);
    lines->setSpacing(0);
    auto* const head = new QVBoxLayout;
    head->setContentsMargins(10, 10, 10, 8);
    head->addWidget(field_);
    lines->addLayout(head);
    listPlace_->addWidget(list_);
    listPlace_->addWidget(noMatches_);
    lines->addLayout(listPlace_, 1);
    return column;
}

QWidget* HelpWindow::rightColumn()
{
    auto* const column = new QWidget(this);
    column->setBackgroundRole(QPalette::Base);
    column->setAutoFillBackground(true);
    column->setMinimumWidth(topicMinimum);
    column->setLayout(topicPlace_);
    topicPlace_->addWidget(topic_);
    topicPlace_->addWidget(noTopic_);
    return column;
}

void HelpWindow::addKeys()
{
    auto const add = [this](QKeySequence const& key, auto operation) {
        auto* const shortcut = new QShortcut(key, this);
        connect(shortcut, &QShortcut::activated, this, operation);
    };
    add(QKeySequence(Qt::Key_Escape), [this] {
        if (field_->hasFocus() && !field_->text().isEmpty())
            field_->clear();
        else
            close();
    });
    add(QKeySequence(Qt::CTRL | Qt::Key_W), [this] { close(); });
    add(QKeySequence(Qt::CTRL | Qt::Key_Q),
        [this] { quit ? quit() : QApplication::closeAllWindows(); });
    add(QKeySequence(Qt::CTRL | Qt::Key_F), [this] {
        field_->setFocus(Qt::ShortcutFocusReason);
        field_->selectAll();
    });
}

void HelpWindow::bringForward()
{
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    raise();
    activateWindow();
}

void HelpWindow::setQuery(QString const& query)
{
    clear_->setVisible(!query.isEmpty());
    view_.setQuery(query.toStdString());
    showList();
    showTopic();
}

void HelpWindow::select(std::optional<std::string> id)
{
    view_.select(std::move(id));
    showTopic();
}

void HelpWindow::showList()
{
    auto const& topics = view_.filtered();
    bool const wasEmpty = listPlace_->currentWidget() == noMatches_;
    if (!topics.empty())
        list_->showTopics(topics, view_.selection());
    listPlace_->setCurrentWidget(topics.empty() ? static_cast<QWidget*>(noMatches_) : list_);
    if (topics.empty() && !wasEmpty) {
        QAccessibleEvent event(noMatches_, QAccessible::Alert);
        QAccessible::updateAccessibility(&event);
    }
}

void HelpWindow::showTopic()
{
    auto const* const topic = view_.topic();
    topicPlace_->setCurrentWidget(topic ? static_cast<QWidget*>(topic_) : noTopic_);
    if (!topic)
        return;
    topic_->showTopic(*topic);
    topic_->highlight(view_.highlight());
}

void HelpWindow::useTones()
{
    auto const color = [](QLabel& label, Tones const& tones) {
        auto palette = label.palette();
        for (auto const role : { QPalette::WindowText, QPalette::Text })
            palette.setColor(role, tones.of(ColorRole::secondary));
        label.setPalette(palette);
    };
    color(*noMatches_, Tones(palette()));
    color(*noTopic_, Tones(palette(), Tones::Ground::gallery));
}

// The left column is as wide as it was made, except where that would leave the topic too little.
void HelpWindow::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    auto const left = std::min(columnWidth_, width() - topicMinimum - columns_->handleWidth());
    columns_->setSizes({ left, width() - left - columns_->handleWidth() });
}

void HelpWindow::closeEvent(QCloseEvent* event)
{
    QWidget::closeEvent(event);
    view_.reset();
    field_->clear();
    showList();
    showTopic();
    field_->setFocus();
}

void HelpWindow::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        useTones();
}

// From the field the arrows go into the list and back; both leave the page keys to the topic.
bool HelpWindow::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::KeyPress)
        return QWidget::eventFilter(watched, event);
    auto const key = static_cast<QKeyEvent*>(event)->key();
    bool const hasRows = listPlace_->currentWidget() == list_;
    if (key == Qt::Key_PageUp || key == Qt::Key_PageDown) {
        topic_->turnPage(key == Qt::Key_PageUp ? -1 : 1);
        return true;
    }
    if (watched == field_ && key == Qt::Key_Down) {
        if (hasRows)
            list_->setFocus(Qt::TabFocusReason);
        return true;
    }
    if (watched == list_ && key == Qt::Key_Up && list_->currentRow() <= 0) {
        field_->setFocus(Qt::BacktabFocusReason);
        return true;
    }
    if (key == Qt::Key_Return || key == Qt::Key_Enter) {
        topic_->setFocus(Qt::ShortcutFocusReason);
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

} // namespace pixelhain
