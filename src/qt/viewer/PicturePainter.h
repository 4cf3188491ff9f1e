#pragma once
#include "base/MipLevels.h"
#include "images/ImageLoader.h"
#include <QImage>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>

class QPainter;
class QRect;

namespace pixelhain {

class Background;
class MainLoop;
class PreparedPictures;

/// Draws one photo at any size. What is to be seen stands there in every frame, first as fast as
/// it goes, then filtered well: that is done in the background, for one place at a time, and what
/// is moved without a change of size stays sharp. Main thread only.
class PicturePainter {
public:
    /// Without a change of the size for so long, the picture is made sharp.
    static constexpr std::chrono::milliseconds restTime { 50 };

    /// So many pixels can be scaled within a frame. More are drawn in blocks of two by two or three
    /// by three until the sharp ones are there: on the largest screens nothing else is done in
    /// time.
    static constexpr long long mostSoftPixels = 3'000'000;
    static constexpr long long mostInPairs = 2 * mostSoftPixels;

    struct Services {
        Background& background;
        MainLoop& loop;
        PreparedPictures& prepared;
    };

    /// `changed` is called when the picture is to be painted again.
    PicturePainter(Services const& services, std::function<void()> changed);
    ~PicturePainter();

    /// Another photo: nothing until its picture comes.
    void clear();

    /// The picture of the photo as good as it is there by now. A better one takes the place of the
    /// worse once it can be drawn sharp. The same again does nothing.
    void show(ImageRef const& picture);

    /// What stands for a picture of `shape` until that is there: drawn softly in its place. Does
    /// nothing once there is better.
    void showStandIn(ImageRef const& picture, PixelSize shape);

    /// A picture that is drawn as it is, because the next one follows soon.
    void showFrame(Bitmap const& frame);

    bool isEmpty() const { return !levels_; }

    /// Attempts at a sharp picture before it stays as it is until its size changes.
    static constexpr int mostFailures = 3;

    /// The pixels that the picture has which is drawn, or for which that stands; empty if there is
    /// none.
    PixelSize size() const;

    /// Where the whole picture lies in an area of `area` device pixels.
    void place(PixelSize area, PixelRect const& place);

    /// Paints `dirty`, in device pixels of the area, black where the picture is not.
    void paint(QPainter& painter, QRect const& dirty);

    /// Whether everything in view is there as sharp as it gets.
    bool isSharp() const;

private:
    struct Sharp {
        std::shared_ptr<MipLevels const> from;
        MipLevels::Drawing drawing;
        QImage image;
    };

    struct Made {
        std::shared_ptr<MipLevels const> levels;
        MipLevels::Drawing drawing;
        Bitmap sharp;
    };

    PixelRect visible() const;
    bool isExact() const;
    void use(std::shared_ptr<MipLevels const> levels);
    bool usePrepared(ImageRef const& picture);
    void sharpen();
    void startWork();
    void made(Made made);
    void paintSoft(QPainter& painter, PixelRect const& part);
    void paintCoarse(QPainter& painter, PixelRect const& part, int block);
    void drawLevel(QPainter& painter, PixelRect const& part, int reduction) const;

    Services services_;
    std::function<void()> changed_;
    ImageRef picture_; ///< what `levels_` are, or are about to be, made of
    std::shared_ptr<MipLevels const> levels_;
    bool isFrame_ = false;
    std::optional<PixelSize> standsFor_; ///< `levels_` are of a stand-in
    bool hasNews_ = false; ///< `picture_` is better than `levels_`
    PixelSize area_;
    PixelRect place_;
    std::optional<Sharp> sharp_;
    QImage coarse_; ///< a pixel for each block; kept for the next frame
    QImage blocks_;
    Task rest_;
    Task work_;
    bool isWorking_ = false;
    int failures_ = 0; ///< in a row, for want of memory
};

} // namespace pixelhain
