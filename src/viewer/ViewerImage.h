#pragma once
#include "model/PhotoItem.h"
#include "ports/MainLoop.h"
#include "viewer/PictureGeometry.h"
#include "viewer/ViewerSource.h"
#include <chrono>
#include <functional>
#include <optional>
#include <string_view>
#include <vector>

namespace pixelhain {

/// One photo in the viewer: what of it is loaded, and how it is zoomed and moved. Made anew for
/// each photo shown; dropping it gives up its loads. Main thread only.
class ViewerImage {
public:
    static constexpr double smallestScale = 1;
    static constexpr double largestScale = 10;
    static constexpr double stillFittedScale = 1.01; ///< up to here it counts as not zoomed
    static constexpr double fullImageScale = 1.3; ///< beyond it every pixel is needed
    static constexpr double doubleClickScale = 2.5;
    static constexpr double pinchThreshold = 0.01; ///< change of scale that begins a pinch
    static constexpr double dragThreshold = 10; ///< points
    static constexpr double stepFactor = 1.25; ///< of a key press or a notch of the wheel
    static constexpr std::chrono::milliseconds snapTime { 150 };
    static constexpr std::chrono::milliseconds doubleClickTime { 200 };
    static constexpr std::chrono::milliseconds wheelPause { 250 }; ///< ends a zoom by the wheel
    /// Of a photo of which there is nothing to be seen, until a wheel turns.
    static constexpr std::chrono::milliseconds spinnerDelay { 150 };
    /// Until a preview is looked for where something stands for the photo already: two frames.
    static constexpr std::chrono::milliseconds previewDelay { 32 };
    static constexpr std::string_view failedSymbol = "exclamationmark.triangle";
    static constexpr std::string_view failedText = "Bild kann nicht gelesen werden";
    static constexpr std::string_view spinnerName = "Bild wird gelesen"; ///< said by screen readers

    enum class Content { picture, animation, failure, spinner };

    /// Called after each change with the time that it takes to be shown, slowing down at its end.
    using Changed = std::function<void(std::chrono::milliseconds)>;

    /// Shows at once what is in memory, or stands for it. The source and the loop outlive this.
    ViewerImage(
        ViewerSource& source, MainLoop& loop, PhotoItem item, bool isAnimated, Changed changed);
    ViewerImage(ViewerImage const&) = delete;
    ViewerImage& operator=(ViewerImage const&) = delete;

    /// What was shown of the photo until now, or stood for it, if there is none in memory.
    void keepStill(ImageRef picture, ImageRef standIn);

    /// To be called when the photo comes on screen: loads the screen-sized picture if need be, and
    /// until then the best that is quickly had.
    void appear();

    PhotoItem const& item() const { return item_; }
    bool isAnimated() const { return isAnimated_; }
    ImageRef const& image() const { return image_; }
    ImageRef const& full() const { return full_; }
    ImageRef const& shown() const { return full_ ? full_ : image_; }
    /// The best there is in place of the screen-sized picture until that is loaded; null: nothing.
    ImageRef const& standIn() const { return standIn_; }
    bool failed() const { return failed_; }
    /// Whether the screen-sized picture of a still photo is yet to come.
    bool isLoading() const { return !isAnimated_ && !shown() && !failed_; }
    Content content() const;
    /// Whether the wheel turns by now.
    bool showsSpinner() const { return content() == Content::spinner && hasWaited_; }

    double scale() const { return zoom_.scale; }
    Zoom const& zoom() const { return zoom_; }
    bool isZoomed() const { return zoom_.scale > stillFittedScale; }

    /// Takes the pictures, so that they can be freed elsewhere: large ones take longer than a
    /// frame.
    [[nodiscard]] std::vector<ImageRef> takePictures();

    // Gestures. Both count from their beginning and may go on at the same time.
    void pinch(double magnification);
    void endPinch();
    void drag(Point translation);
    void endDrag();
    void doubleClick();

    /// The wheel with Ctrl held: 1 for a notch away from the user, parts of it for fine wheels. A
    /// series of turns is one pinch.
    void turnWheel(double notches);

    void zoomIn() { zoomTo(zoom_.scale * stepFactor, snapTime); }
    void zoomOut() { zoomTo(zoom_.scale / stepFactor, snapTime); }
    void showFitted() { zoomTo(smallestScale, doubleClickTime); }
    /// The scale at which image and device pixels are equal, as near as the limits allow.
    void showPixels(double pixelScale) { zoomTo(pixelScale, doubleClickTime); }

private:
    void loadStandIn();
    void cancelStandIn();
    void useStandIn(ImageRef picture);
    void magnify(double magnification);
    void endWheel();
    void forgetWheel();
    void setScale(double scale);
    void rest();
    void reset(std::chrono::milliseconds time);
    void zoomTo(double scale, std::chrono::milliseconds time);
    void loadFull();

    ViewerSource& source_;
    MainLoop& loop_;
    PhotoItem item_;
    bool isAnimated_;
    Changed changed_;
    ImageRef image_;
    ImageRef full_;
    ImageRef standIn_;
    bool failed_ = false;
    bool hasWaited_ = false;
    Zoom zoom_;
    double baseScale_ = 1;
    Point baseOffset_;
    bool isPinching_ = false;
    bool isDragging_ = false;
    bool isTurning_ = false; ///< the wheel, as a pinch
    double wheelMagnification_ = 1;
    Task wheelEnd_;
    Task imageLoad_;
    Task standInWait_;
    Task standInLoad_;
    Task spinnerWait_;
    std::vector<Task> fullLoads_;
};

} // namespace pixelhain
