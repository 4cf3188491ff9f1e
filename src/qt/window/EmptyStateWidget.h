#pragma once
#include "window/EmptyStateView.h"
#include <QWidget>
#include <functional>

class QLabel;
class QPushButton;

namespace pixelhain {

/// What stands in the gallery's place while there is nothing to show.
class EmptyStateWidget final : public QWidget {
public:
    /// `chooseFolder` is what the button does.
    explicit EmptyStateWidget(std::function<void()> chooseFolder, QWidget* parent = nullptr);

    void show(EmptyStateView const& view);

protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void useTones();

    EmptyStateView view_;
    QWidget* symbol_;
    QLabel* text_;
    QPushButton* button_;
    QLabel* hint_;
};

} // namespace pixelhain
