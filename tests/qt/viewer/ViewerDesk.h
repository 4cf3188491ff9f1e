#pragma once
#include "qt/Wait.h"
#include "qt/viewer/PreparedPictures.h"
#include "qt/viewer/ViewerChromeWidget.h"
#include "qt/viewer/ViewerImageWidget.h"
#include "qt/viewer/ViewerWidget.h"
#include "qt/window/DrawnPicture.h"
#include "support/Desk.h"
#include "support/FakeAnimation.h"
#include "support/FakeSharing.h"
#include "support/FakeViewerSource.h"
#include "window/ShareMenu.h"
#include <QImage>
#include <QTest>
#include <cmath>
#include <doctest/doctest.h>
#include <string>
#include <vector>

namespace pixelhain {

/// The part of this type that lies in `whole`.
template <typename Part> [[nodiscard]] Part* partOf(QWidget const& whole)
{
    for (auto* const child : whole.findChildren<QWidget*>())
        if (auto* const part = dynamic_cast<Part*>(child))
            return part;
    return nullptr;
}

/// A viewer on its own, over photos of a folder in memory, with pictures that a test answers and a
/// clock that a test moves.
struct ViewerDesk {
    static constexpr int width = 900;
    static constexpr int height = 500;

    Desk desk;
    FakeViewerSource source;
    FakeSharing sharing;
    ShareMenu share { desk.model(), sharing, desk.clipboard };
    PreparedPictures prepared;
    FakeImageDecoder animations;
    AnimationRecord played;
    QWidget window;
    Milliseconds time { 0 };
    ViewerWidget widget { { desk.model(), source, desk.background, desk.loop, prepared,
                              [](PhotoItem const& item) {
                                  return std::vector { std::string(item.name()),
                                      std::string("6000 × 4000 px (24.0 MP)") };
                              },
                              &share,
                              [this](std::function<void()> changed) {
                                  return std::make_unique<AnimatedImageView>(
                                      AnimatedImageView::House { animations, desk.background,
                                          desk.loop, [this] { return desk.loop.now(); } },
                                      1920, std::move(changed));
                              } },
        &window };
    Observation observation = desk.model().observe([this] { widget.modelChanged(); });

    explicit ViewerDesk(int count = 3)
    {
        widget.picture().now = [this] { return time; };
        window.resize(width, height);
        widget.resize(width, height);
        window.show();
        std::vector<std::string> names;
        for (int i = 1; i <= count; ++i)
            names.push_back("IMG_" + std::to_string(i) + ".jpg");
        desk.open("/Fotos", names);
    }

    FileUrl url(std::size_t index) { return (*desk.model().items)[index].url; }
    ViewerImage& image() { return *widget.container().image(); }
    double scale() const { return widget.devicePixelRatioF(); }
    PictureArea area() const
    {
        auto const pixels
            = [this](int points) { return static_cast<int>(std::ceil(points * scale())); };
        return { { pixels(width), pixels(height) }, scale() };
    }

    /// Opens the photo and waits until the viewer has faded in.
    void open(std::size_t index)
    {
        desk.model().openViewer(index);
        desk.settle();
        REQUIRE(eventually([this] { return !widget.graphicsEffect(); }));
    }

    /// Opens it with this picture in memory.
    void open(std::size_t index, ImageRef const& picture)
    {
        source.pictures[url(index)] = picture;
        source.metas[url(index)] = ImageMeta { picture->image.size, false };
        open(index);
    }

    /// Makes it a file that moves: frames of 90 x 50, each for 100 ms, whose every byte is their
    /// number.
    void putAnimation(std::size_t index, int frames, int waits = 0)
    {
        source.metas[url(index)] = ImageMeta { PixelSize { 90, 50 }, true };
        animations.animationOf = [this, frames, waits](FileUrl const&, int) {
            std::vector<std::chrono::microseconds> const delays(
                static_cast<std::size_t>(frames), std::chrono::milliseconds(100));
            Film const film { delays, 0, SIZE_MAX, { 90, 50 }, waits };
            return std::make_unique<FakeAnimation>(film, played);
        };
    }

    /// Lets everything end: movements, waiting times, work in the background.
    void rest()
    {
        for (int i = 0; i < 3; ++i) {
            time += Milliseconds(1000);
            QTest::qWait(0);
            frame();
            desk.loop.advance(std::chrono::milliseconds(400));
            desk.settle();
        }
    }

    /// What the picture alone shows now, in device pixels.
    QImage frame()
    {
        return widget.picture().grab().toImage().convertToFormat(QImage::Format_RGB32);
    }
    /// With all that lies over it.
    QImage wholeFrame() { return widget.grab().toImage().convertToFormat(QImage::Format_RGB32); }
};

} // namespace pixelhain
