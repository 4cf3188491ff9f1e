#pragma once
#include "window/MenuEntry.h"
#include "window/ShareMenu.h"
#include <cstddef>
#include <vector>

namespace pixelhain {

class Workspace;

/// The menu of a gallery cell. What it does to files it does to all marked photos if the cell's is
/// one of them, else to that one alone; photos that the filter hides count as marked, too.
class ThumbnailMenu {
public:
    struct Services {
        BrowserModel& model;
        Workspace& workspace;
        Sharing& sharing;
        Clipboard& clipboard;
    };

    explicit ThumbnailMenu(Services const& services)
        : services_(services)
        , share_(services.model, services.sharing, services.clipboard)
    {
    }

    ShareMenu& share() { return share_; }

    /// The photos that the menu of the cell at `index` acts on: those that are visible in their
    /// order, then the hidden ones.
    [[nodiscard]] std::vector<FileUrl> targets(std::size_t index) const;

    /// The menu of the cell at `index`; empty if there is no such cell. The entries go on to mean
    /// the same photos whatever becomes of the gallery while the menu is open.
    [[nodiscard]] std::vector<MenuEntry> open(std::size_t index);

private:
    Services services_;
    ShareMenu share_;
};

} // namespace pixelhain
