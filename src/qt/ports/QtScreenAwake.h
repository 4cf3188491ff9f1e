#pragma once
#include "ports/ScreenAwake.h"
#include <QObject>
#include <memory>

namespace pixelhain {

/// Asks the desktop's screen saver service, else the desktop portal. Either forgets the request by
/// itself when the program ends.
class QtScreenAwake final : public QObject, public ScreenAwake {
public:
    [[nodiscard]] Task keepAwake(std::string_view reason) override;

private:
    struct Request;

    void askScreenSaver(std::shared_ptr<Request> const& request);
    void askPortal(std::shared_ptr<Request> const& request);
    void withdraw(Request& request);
};

} // namespace pixelhain
