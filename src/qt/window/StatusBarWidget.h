#pragma once
#include "window/StatusBar.h"
#include <QWidget>
#include <string>

class QLabel;
class QToolButton;

namespace pixelhain {

class ActivityIndicator;

/// The bar below the gallery.
class StatusBarWidget final : public QWidget {
public:
    explicit StatusBarWidget(BrowserModel& model, QWidget* parent = nullptr);

    /// To be called after every change of the model.
    void modelChanged();

protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void tellMarks();
    void showMessage(QString const& text);
    void fit();
    [[nodiscard]] int missingWidth() const; ///< for all that is to be said; negative: to spare
    void useTones();

    StatusBar bar_;
    ActivityIndicator* activity_;
    QLabel* count_;
    QLabel* dot_;
    QLabel* message_;
    QLabel* progress_;
    QLabel* cancelHint_;
    QToolButton* selectNone_;
    QWidget* marks_; ///< says how many are marked, and shows nothing
    std::string toldMarks_;
};

} // namespace pixelhain
