#pragma once
#include "base/FileUrl.h"
#include "images/ImageLoader.h"
#include "images/MemoryCache.h"
#include "window/ThumbnailCell.h"
#include <QImage>
#include <functional>
#include <memory>
#include <optional>
#include <unordered_map>

namespace pixelhain {

class Background;
class MainLoop;

/// A caption line drawn once, and what else than the photo it was drawn for.
struct DrawnLine {
    QImage image;
    QRgb color = 0;
    std::optional<PixelSize> size;
};

/// What is ready to be painted for one cell.
struct DrawnCell {
    std::size_t index = 0;
    ImageRef source; ///< what `picture` is, or is about to be, made of
    PixelSize size; ///< that it is made for
    bool isEmbedded = false; ///< shown softly until the photo's own picture is there
    QImage picture; ///< may still be one of an earlier size
    DrawnLine name;
    DrawnLine resolution;
    Task scaling;

    bool isPending() const { return static_cast<bool>(scaling); }
    /// Nor what stands for it, nor what still does until the picture is brought to its size.
    bool showsOwnPicture() const { return !isPending() && !isEmbedded && !picture.isNull(); }
};

/// The cells' pictures at the very size at which they are drawn, made off the main thread. Pictures
/// that went out of view are kept within a fixed amount of memory, so that scrolling back shows
/// them at once; those that only stood in for others are not. Main thread only.
class CellPictures {
public:
    static constexpr std::size_t keptBytes = 96 << 20;

    /// `arrived` is called when a picture was made.
    CellPictures(
        Background& background, MainLoop& loop, std::function<void(DrawnCell const&)> arrived);

    /// Drops all cells that are not shown again until `endUpdate`.
    void beginUpdate();
    /// The cell's picture for a square of `edge` pixels.
    DrawnCell& show(std::size_t index, ThumbnailCell const& cell, int edge);
    void endUpdate();

    /// Null for a cell that is not shown.
    DrawnCell* find(FileUrl const& url);
    DrawnCell const* find(FileUrl const& url) const;

    /// Makes every text be drawn again.
    void forgetLines();

private:
    struct Kept {
        std::weak_ptr<CGImageBox const> source;
        PixelSize size;
        QImage picture;
    };
    using Cells = std::unordered_map<FileUrl, std::unique_ptr<DrawnCell>>;

    void bring(FileUrl const& url, DrawnCell& cell);
    void make(DrawnCell& cell);
    void keep(FileUrl const& url, DrawnCell const& cell);

    Background& background_;
    MainLoop& loop_;
    std::function<void(DrawnCell const&)> arrived_;
    Cells cells_;
    Cells before_;
    MemoryCache<FileUrl, Kept> kept_ { CacheLimits { keptBytes, std::nullopt } };
};

} // namespace pixelhain
