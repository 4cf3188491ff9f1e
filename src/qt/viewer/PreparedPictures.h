#pragma once
#include "base/MipLevels.h"
#include "images/ImageLoader.h"
#include "images/MemoryCache.h"
#include <memory>
#include <mutex>

namespace pixelhain {

/// A picture as the viewer draws it at scale 1, made where it was decoded.
struct PreparedPicture {
    std::weak_ptr<CGImageBox const> source;
    std::shared_ptr<MipLevels const> levels;
    MipLevels::Drawing drawing;
    Bitmap sharp; ///< of `drawing`; empty where the picture itself has that size
};

/// Screen-sized pictures brought to the viewer's size before anyone asks for them, so that a photo
/// that is paged to stands sharp in the next frame. Few are kept. Thread-safe.
class PreparedPictures {
public:
    static constexpr std::size_t keptCount = 5; ///< the one shown, two ahead, two behind
    static constexpr std::size_t keptBytes = 384 << 20;

    /// The viewer's size in device pixels, from the main thread; nothing is prepared before.
    void setArea(PixelSize area);

    /// Takes as long as filtering a picture does.
    void prepare(ImageRef const& image);

    /// Null if it was not prepared for the area of now.
    [[nodiscard]] std::shared_ptr<PreparedPicture const> find(ImageRef const& image) const;

private:
    PixelSize area() const;

    mutable std::mutex lock_;
    PixelSize area_;
    mutable MemoryCache<CGImageBox const*, PreparedPicture> kept_ { CacheLimits {
        keptBytes, keptCount } };
};

/// The levels of a picture that is shown in `area`, only as many as drawing it takes.
[[nodiscard]] std::shared_ptr<MipLevels const> levelsFor(Bitmap const& picture, PixelSize area);

} // namespace pixelhain
