#pragma once
#include "app/HelpView.h"
#include <QWidget>
#include <functional>

class QLabel;
class QLineEdit;
class QSplitter;
class QStackedLayout;

namespace pixelhain {

class HelpTopicList;
class HelpTopicWidget;

/// The window with the manual: search field and topics at the left, the chosen topic at the right.
class HelpWindow final : public QWidget {
public:
    /// `order` must outlive this.
    explicit HelpWindow(TextOrder const& order);

    /// Opens the window, or brings it to the front if it is open.
    void bringForward();

    /// Ends the program; by default, closes its windows.
    std::function<void()> quit;

    HelpView const& view() const { return view_; }
    QLineEdit& field() { return *field_; }
    HelpTopicList& list() { return *list_; }
    HelpTopicWidget& topic() { return *topic_; }

protected:
    void resizeEvent(QResizeEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget* leftColumn();
    QWidget* rightColumn();
    void addKeys();
    void useTones();
    void setQuery(QString const& query);
    void select(std::optional<std::string> id);
    void showList();
    void showTopic();

    HelpView view_;
    QLineEdit* field_;
    QAction* clear_;
    HelpTopicList* list_;
    HelpTopicWidget* topic_;
    QLabel* noMatches_;
    QLabel* noTopic_;
    QSplitter* columns_;
    QStackedLayout* listPlace_;
    QStackedLayout* topicPlace_;
    int columnWidth_ = 250;
};

} // namespace pixelhain
