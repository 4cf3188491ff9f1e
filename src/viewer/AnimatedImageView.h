#pragma once
#include "base/Bitmap.h"
#include "base/FileUrl.h"
#include "ports/Background.h"
#include "ports/ImageDecoder.h"
#include <chrono>
#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <optional>

namespace pixelhain {

/// Plays one animated file: shows each frame for its time, as often as the file says, and decodes a
/// few frames ahead in the background. Dropping it stops everything at once. Main thread only.
class AnimatedImageView {
public:
    /// Frames that wait to be shown: enough to bridge a moment in which the disk or the decoder is
    /// busy with something else, and never more than a few megabytes. One may always wait.
    static constexpr std::size_t mostAhead = 8;
    static constexpr std::size_t mostBytesAhead = std::size_t { 20 } << 20;

    /// Between two questions for a frame while as many others play as there can be.
    static constexpr std::chrono::milliseconds retryTime { 200 };

    struct House {
        ImageDecoder& decoder;
        Background& background;
        MainLoop& loop;
        /// A clock that only ever runs forwards, with the loop's timers.
        std::function<std::chrono::nanoseconds()> now;
    };

    /// Frames come with a longest side of at most `maxPixel`; `changed` is called whenever another
    /// one is to be shown. What is in `house` outlives this.
    AnimatedImageView(House house, int maxPixel, std::function<void()> changed);
    AnimatedImageView(AnimatedImageView const&) = delete;
    AnimatedImageView& operator=(AnimatedImageView const&) = delete;
    ~AnimatedImageView();

    /// Plays the file from its beginning, unless it is the one that is shown.
    void show(FileUrl const& url);

    /// The file asked for last, whether it could be loaded or not.
    [[nodiscard]] std::optional<FileUrl> const& loadedUrl() const { return loadedUrl_; }

    /// What is to be seen; empty until the first frame is there, and if there is none.
    [[nodiscard]] Bitmap const& frame() const { return frame_; }

private:
    struct Reel;
    using Opened = std::shared_ptr<AnimationSource>;

    void take(Opened source);
    void decodeAhead();
    void takeStep(AnimationStep step);
    void endLoop();
    void endPlay();
    void frameIsDue();
    void showNext();
    [[nodiscard]] bool isEnoughAhead() const;

    House house_;
    int maxPixel_;
    std::function<void()> changed_;
    std::optional<FileUrl> loadedUrl_;
    Bitmap frame_;
    std::unique_ptr<Reel> reel_; ///< of the file that is being played
};

} // namespace pixelhain
