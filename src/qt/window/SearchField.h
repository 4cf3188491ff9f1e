#pragma once
#include <QLineEdit>
#include <functional>

namespace pixelhain {

/// The field in which the photos' names are searched.
class SearchField final : public QLineEdit {
public:
    explicit SearchField(QWidget* parent);

    /// Shows a text without telling anybody; what is being typed keeps its place.
    void follow(std::string const& text);

    std::function<void()> entered; ///< it has got the keyboard
    std::function<void(std::string)> typed;
    std::function<void()> left; ///< the user has no more use for it
    std::function<void()> found; ///< the user goes on in what was found

    int idealWidth() const;
    int minimumUsefulWidth() const;

protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void textEdited();

    QAction* clear_;
};

} // namespace pixelhain
