#pragma once
#include <QToolButton>
#include <string_view>

namespace pixelhain {

/// A button without a border that shows a symbol and, where it has one, a text beside it.
class SymbolButton final : public QToolButton {
public:
    SymbolButton(std::string_view symbol, QString const& text, QWidget* parent = nullptr);

    /// The room between the button's edges and what it shows; symmetric.
    void setPadding(int x, int y);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    std::string_view symbol_;
    int paddingX_ = 4;
    int paddingY_ = 4;
};

} // namespace pixelhain
