#pragma once
#include <QWidget>

namespace pixelhain {

/// One line of text that is cut in its middle where there is no room for it.
class ElidedLabel final : public QWidget {
public:
    explicit ElidedLabel(QWidget* parent = nullptr);

    QString const& text() const { return text_; }
    void setText(QString const& text);

    /// What is to be read for now.
    QString shownText() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    QString text_;
};

} // namespace pixelhain
