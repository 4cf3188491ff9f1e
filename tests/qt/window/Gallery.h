#pragma once
#include "qt/Wait.h"
#include "qt/window/GridWidget.h"
#include "support/Desk.h"
#include "support/FakeSharing.h"
#include "support/FakeThumbnails.h"
#include <QImage>
#include <cmath>
#include <string>
#include <vector>

namespace pixelhain {

/// A gallery on its own, over photos of a folder in memory, with pictures that a test answers.
struct Gallery {
    static constexpr int width = 1000;
    static constexpr int height = 600;

    Desk desk;
    FakeThumbnails thumbnails;
    FakeSharing sharing;
    ThumbnailMenu menu { { desk.model(), desk.workspace, sharing, desk.clipboard } };
    GridWidget grid { { desk.model(), thumbnails, desk.background, desk.loop, &menu } };
    Observation observation = desk.model().observe([this] { grid.modelChanged(); });

    explicit Gallery(int count)
    {
        grid.resize(width, height);
        desk.open("/Fotos", names(count));
        frame();
    }

    static std::vector<std::string> names(int count)
    {
        std::vector<std::string> all;
        for (int i = 1; i <= count; ++i)
            all.push_back("IMG_" + std::to_string(i) + ".jpg");
        return all;
    }

    double scale() const { return grid.devicePixelRatioF(); }

    /// What the next frame shows.
    QImage frame()
    {
        desk.settle();
        return grid.grab().toImage().convertToFormat(QImage::Format_RGB32);
    }

    /// Whether everything in view is there after a few frames: captions take turns.
    bool completes()
    {
        return eventually([this] {
            frame();
            return grid.isComplete();
        });
    }

    /// Answers every request for a thumbnail that is still wanted.
    void answerAll(ImageRef const& image)
    {
        for (std::size_t i = 0; i < thumbnails.requests.size(); ++i)
            if (thumbnails.requests[i].maxPixel > 0 && !*thumbnails.requests[i].dropped)
                thumbnails.answer(i, image);
    }

    /// The cell's picture area in device pixels of a frame.
    QRect area(std::size_t index) const
    {
        auto const area = grid.view().layout().thumbnailArea(index);
        auto const pixel
            = [&](double points) { return static_cast<int>(std::lround(points * scale())); };
        auto const edge = pixel(area.width);
        return { pixel(area.x), pixel(area.y) - pixel(grid.top()), edge, edge };
    }
};

/// A picture whose every pixel differs from its neighbours.
inline ImageRef speckledPicture(int width, int height)
{
    auto bitmap = Bitmap::allocate({ width, height }, true);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width * 4; x += 4) {
            auto* const pixel = bitmap.row(y) + x;
            pixel[0] = static_cast<std::uint8_t>((x * 31 + y * 57) & 255);
            pixel[1] = static_cast<std::uint8_t>((x / 4 + y) % 2 * 255);
            pixel[2] = static_cast<std::uint8_t>((x * 7 + y * 3) & 255);
            pixel[3] = 255;
        }
    return std::make_shared<CGImageBox>(CGImageBox { bitmap, PixelOrigin::full });
}

inline ImageRef plainPicture(int width, int height, QColor const& color)
{
    auto bitmap = Bitmap::allocate({ width, height }, true);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            reinterpret_cast<QRgb*>(bitmap.row(y))[x] = color.rgb();
    return std::make_shared<CGImageBox>(CGImageBox { bitmap, PixelOrigin::full });
}

} // namespace pixelhain
