#pragma once
#include "base/Tint.h"
#include "viewer/ViewerChrome.h"
#include "viewer/ViewerImage.h"
#include "viewer/WheelPager.h"
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

namespace pixelhain {

class Background;
class BrowserModel;

/// The viewer over the main window's content: which photo it shows, and what lies over it. Lengths
/// are points. Main thread only.
class ViewerContainer {
public:
    static constexpr std::string_view name = "Bildbetrachter"; ///< said by screen readers
    static constexpr std::string_view pauseSymbol = "pause.fill";
    static constexpr std::string_view pauseText = "Pausiert – Leertaste setzt fort, Esc beendet";
    static constexpr double pausePaddingX = 14;
    static constexpr double pausePaddingY = 8;
    static constexpr double pauseMargin = 30; ///< from the bottom edge
    static constexpr std::chrono::milliseconds fadeTime { 200 }; ///< of the whole viewer

    /// What lies over the whole area, the lowest first.
    enum class Layer : std::uint8_t { ground, picture, chrome, pauseLabel, infoPanel };

    struct Services {
        BrowserModel& model;
        ViewerSource& source;
        Background& background;
        MainLoop& loop;
    };

    /// `photoChanged` is called when another photo is shown or none any more, `pictureChanged` like
    /// ViewerImage::Changed.
    ViewerContainer(Services const& services, std::function<void()> photoChanged,
        ViewerImage::Changed pictureChanged);
    ~ViewerContainer();

    /// To be called after every change of the model.
    void modelChanged();

    /// Null while the gallery shows.
    ViewerImage* image() { return image_.get(); }
    ViewerImage const* image() const { return image_.get(); }
    ViewerChrome* chrome() { return chrome_ ? &*chrome_ : nullptr; }
    std::optional<ImageMeta> const& meta() const { return meta_; }
    /// The size of the picture that the photo's stand-in stands for, as far as that is known.
    [[nodiscard]] PixelSize standInShape() const;

    /// The photo as the list has it now; none while the gallery shows.
    std::optional<PhotoItem> const& item() const { return item_; }

    /// The time in which the photo before becomes this one; 0: at once.
    [[nodiscard]] std::chrono::milliseconds transitionTime() const;

    [[nodiscard]] std::vector<Layer> layers() const;
    [[nodiscard]] bool shows(Layer layer) const;

    /// The wheel without Ctrl.
    void turnWheel(double angle);
    /// To be called when the photo's picture, or what stands for it, is on the screen.
    void shown() { pager_.shown(); }

private:
    void show(PhotoItem const& item);
    void makeImage(bool isAnimated);
    void metaArrived(std::optional<ImageMeta> const& meta);
    void freePictures();

    Services services_;
    std::function<void()> photoChanged_;
    ViewerImage::Changed pictureChanged_;
    std::unique_ptr<ViewerImage> image_;
    std::optional<ViewerChrome> chrome_;
    std::optional<PhotoItem> item_;
    std::optional<ImageMeta> meta_;
    Task metaLoad_;
    WheelPager pager_;
};

} // namespace pixelhain
