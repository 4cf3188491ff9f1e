#pragma once
#include <QWidget>
#include <string>
#include <vector>

namespace pixelhain {

/// The box of lines at the bottom left of the viewer. As large as its lines, at most as large as it
/// is allowed to be; what is too long is cut in its middle.
class InfoPanelWidget final : public QWidget {
public:
    explicit InfoPanelWidget(QWidget* parent);

    void show(std::vector<std::string> const& lines);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    QFont lineFont(qsizetype index) const;

    QStringList lines_;
};

} // namespace pixelhain
