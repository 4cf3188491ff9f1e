#pragma once
#include <QObject>
#include <string>
#include <vector>

namespace pixelhain {

/// Remembers when the user last did something, which other programs need to know to be let in front
/// of this one.
class UserTime final : public QObject {
public:
    UserTime();

    /// Names a start of another program by the user; empty where the display has no such names.
    [[nodiscard]] std::string newStartupId();

    /// The environment variables that tell the program its name.
    [[nodiscard]] std::vector<std::string> newStartVariables();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    quint64 time_ = 0; ///< of the display server, milliseconds
    int count_ = 0;
};

} // namespace pixelhain
