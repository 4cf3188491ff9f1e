#pragma once
#include <QBasicTimer>
#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <optional>

namespace pixelhain {

class BrowserModel;
class MainWindowWidget;

/// Saves a picture of the window as soon as it shows all there is to show, and ends the program:
/// with 0, or with 1 and the reason on stderr.
class Screenshot final : public QObject {
public:
    static constexpr int patienceSeconds = 60;

    /// `mustOpen`: something was handed over that has to be shown.
    Screenshot(QString file, BrowserModel& model, MainWindowWidget& window, bool mustOpen);

protected:
    void timerEvent(QTimerEvent* event) override;

private:
    void save();
    std::optional<QString> obstacle() const;

    QString file_;
    BrowserModel& model_;
    MainWindowWidget& window_;
    bool mustOpen_;
    QBasicTimer timer_;
    QElapsedTimer waited_;
    QElapsedTimer complete_;
};

} // namespace pixelhain
