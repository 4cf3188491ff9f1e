#pragma once
#include "base/FileUrl.h"
#include "window/MenuEntry.h"
#include <string_view>
#include <vector>

namespace pixelhain {

class BrowserModel;
class Clipboard;
class Sharing;

/// The ways to hand photos to somebody: what is installed, and the clipboard.
class ShareMenu {
public:
    static constexpr std::string_view mailTitle = "E-Mail …";
    static constexpr std::string_view bluetoothTitle = "Bluetooth …";
    static constexpr std::string_view copyTitle = "Dateien kopieren";

    ShareMenu(BrowserModel& model, Sharing& sharing, Clipboard& clipboard)
        : model_(model)
        , sharing_(sharing)
        , clipboard_(clipboard)
    {
    }

    /// To be called when a menu that leads here opens: looks for what is there by now.
    void prepare();

    /// Without photos the entries do nothing.
    [[nodiscard]] std::vector<MenuEntry> entries(std::vector<FileUrl> const& photos) const;

private:
    BrowserModel& model_;
    Sharing& sharing_;
    Clipboard& clipboard_;
};

} // namespace pixelhain
