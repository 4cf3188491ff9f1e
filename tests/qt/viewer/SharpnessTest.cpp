#include "base/Resample.h"
#include "images/DecodeRules.h"
#include "qt/viewer/ViewerDesk.h"
#include "support/FakeThumbnails.h"
#include <algorithm>
#include <array>
#include <cmath>
#include <doctest/doctest.h>
#include <numbers>
#include <vector>

using namespace pixelhain;
using Kind = FakeViewerSource::Kind;

namespace {

// Rings that become finer towards the edge, hard edges and lines of one pixel: what shows blur,
// shift and aliasing at once.
ImageRef chart(int width, int height)
{
    auto bitmap = Bitmap::allocate({ width, height }, true);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            auto const dx = x - width / 2.0;
            auto const dy = y - height / 2.0;
            auto const rings = 0.5 + 0.5 * std::cos((dx * dx + dy * dy) * 0.9 / width);
            bool const isLine = x % 37 == 0 || y % 41 == 0;
            bool const isSquare = (x / 50 + y / 50) % 4 == 0;
            auto const value = static_cast<int>(std::lround(isLine ? 255 : rings * 255));
            reinterpret_cast<QRgb*>(bitmap.row(y))[x]
                = qRgb(value, isSquare ? 255 - value : value, (x + 2 * y) & 255);
        }
    return std::make_shared<CGImageBox>(CGImageBox { bitmap, PixelOrigin::full });
}

double lanczos(double x)
{
    if (std::abs(x) >= 3)
        return 0;
    if (std::abs(x) < 1e-9)
        return 1;
    auto const angle = std::numbers::pi * x;
    return 3 * std::sin(angle) * std::sin(angle / 3) / (angle * angle);
}

double triangle(double x)
{
    return std::max(0.0, 1 - std::abs(x));
}

using Filter = double (*)(double);

// Weights for one side as the textbook has them; `shift` in pixels of the result.
struct Weights {
    int first = 0;
    std::vector<double> of;
};

std::vector<Weights> weightsFor(int from, int to, Filter filter, double lobes, double shift)
{
    auto const step = double(from) / to;
    auto const stretch = std::max(1.0, step);
    std::vector<Weights> all;
    for (int i = 0; i < to; ++i) {
        auto const centre = (i + 0.5 + shift) * step - 0.5;
        Weights weights { static_cast<int>(std::floor(centre - lobes * stretch)), {} };
        double sum = 0;
        for (int k = weights.first; k <= centre + lobes * stretch; ++k) {
            weights.of.push_back(filter((k - centre) / stretch));
            sum += weights.of.back();
        }
        for (auto& weight : weights.of)
            weight /= sum;
        all.push_back(weights);
    }
    return all;
}

// `part` of the picture at the size `whole`, in floating point.
QImage reference(Bitmap const& from, PixelSize whole, PixelRect part, Filter filter = lanczos,
    double lobes = 3, double shift = 0)
{
    auto const across = weightsFor(from.size.width, whole.width, filter, lobes, shift);
    auto const down = weightsFor(from.size.height, whole.height, filter, lobes, shift);
    auto const row = [&](int y) { return from.row(std::clamp(y, 0, from.size.height - 1)); };
    QImage result(part.width, part.height, QImage::Format_RGB32);
    std::vector<std::array<double, 3>> between(static_cast<std::size_t>(from.size.width));
    for (int y = 0; y < part.height; ++y) {
        auto const& vertical = down[static_cast<std::size_t>(part.y + y)];
        for (int x = 0; x < from.size.width; ++x) {
            auto& sum = between[static_cast<std::size_t>(x)];
            sum = {};
            for (std::size_t k = 0; k < vertical.of.size(); ++k)
                for (std::size_t c = 0; c < 3; ++c)
                    sum[c] += vertical.of[k]
                        * row(vertical.first
                            + static_cast<int>(k))[static_cast<std::size_t>(x) * 4 + c];
        }
        for (int x = 0; x < part.width; ++x) {
            auto const& horizontal = across[static_cast<std::size_t>(part.x + x)];
            std::array<double, 3> sum {};
            for (std::size_t k = 0; k < horizontal.of.size(); ++k) {
                auto const at
                    = std::clamp(horizontal.first + static_cast<int>(k), 0, from.size.width - 1);
                for (std::size_t c = 0; c < 3; ++c)
                    sum[c] += horizontal.of[k] * between[static_cast<std::size_t>(at)][c];
            }
            auto const level = [&](std::size_t c) {
                return static_cast<int>(std::lround(std::clamp(sum[c], 0.0, 255.0)));
            };
            result.setPixel(x, y, qRgb(level(2), level(1), level(0)));
        }
    }
    return result;
}

double decibels(QImage const& a, QImage const& b)
{
    REQUIRE(a.size() == b.size());
    double error = 0;
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x) {
            auto const p = a.pixel(x, y);
            auto const q = b.pixel(x, y);
            for (auto const difference :
                { qRed(p) - qRed(q), qGreen(p) - qGreen(q), qBlue(p) - qBlue(q) })
                error += difference * difference;
        }
    error /= 3.0 * a.width() * a.height();
    return error == 0 ? 200 : 10 * std::log10(255 * 255 / error);
}

QRect visible(ViewerDesk const& v, PixelRect const& place)
{
    return QRect(place.x, place.y, place.width, place.height)
        .intersected(QRect(0, 0, v.area().pixels.width, v.area().pixels.height));
}

PixelRect drawnPart(QRect const& shown, PixelRect const& place)
{
    return { shown.x() - place.x, shown.y() - place.y, shown.width(), shown.height() };
}

constexpr double sharp = 40; // dB against the exact filter
constexpr double sharpFromHalves = 38; // where it may begin with averaged pixels
constexpr double unsharp = 34; // what bilinear filtering, or a shift, stays below

void checkSharp(ViewerDesk& v, Bitmap const& picture, Zoom const& zoom, double enough = sharp)
{
    auto const place = picturePlace(v.area(), picture.size, zoom);
    auto const shown = visible(v, place);
    auto const part = drawnPart(shown, place);
    auto const frame = v.frame().copy(shown);
    auto const exact = reference(picture, place.size(), part);
    CHECK(decibels(frame, exact) >= enough);
    // The test itself can tell.
    CHECK(decibels(reference(picture, place.size(), part, triangle, 1), exact) < unsharp);
    CHECK(decibels(reference(picture, place.size(), part, lanczos, 3, 0.5), exact) < unsharp);
}

} // namespace

TEST_CASE("a reduced photo is drawn as the exact filter would")
{
    ViewerDesk v;
    auto const picture = chart(2400, 1500);
    v.open(0, picture);
    v.rest();
    CHECK(v.widget.isComplete());
    checkSharp(v, picture->image, {});
}

TEST_CASE("a prefetched photo stands sharp in its first frame")
{
    ViewerDesk v;
    v.open(0, pictureOf(60, 40));
    auto const picture = chart(2400, 1500);
    v.source.pictures[v.url(1)] = picture;
    v.source.metas[v.url(1)] = ImageMeta { picture->image.size, false };
    v.prepared.prepare(picture);
    v.desk.model().stepViewer(+1);
    v.desk.loop.settle(); // no work in the background has been done
    checkSharp(v, picture->image, {});
    CHECK(v.widget.isComplete());
}

TEST_CASE("a photo that is not prepared is there at once and sharp a moment later")
{
    ViewerDesk v;
    auto const picture = chart(1500, 1000);
    v.source.pictures[v.url(0)] = picture;
    v.desk.model().openViewer(0);
    v.desk.loop.settle();
    auto const place = picturePlace(v.area(), picture->image.size, {});
    auto const shown = visible(v, place);
    auto const exact = reference(picture->image, place.size(), drawnPart(shown, place));
    CHECK(decibels(v.frame().copy(shown), exact) > 15);
    CHECK_FALSE(v.widget.picture().isComplete());
    v.rest();
    CHECK(decibels(v.frame().copy(shown), exact) >= sharp);
}

TEST_CASE("a zoomed and moved part of a large photo is drawn as the exact filter would")
{
    ViewerDesk v;
    auto const picture = chart(5000, 3200);
    v.open(0, picture);
    for (auto const scale : { 1.31, 1.8 }) {
        v.image().showPixels(scale);
        v.source.answer(Kind::full, picture);
        v.image().drag({ 35, -21 });
        v.image().endDrag();
        v.rest();
        checkSharp(v, picture->image, v.image().zoom(), sharpFromHalves);
        v.image().showFitted();
    }
}

TEST_CASE("a magnified photo is drawn smoothly and in its place")
{
    ViewerDesk v;
    auto const picture = chart(300, 200);
    v.open(0, picture);
    v.rest();
    auto const place = picturePlace(v.area(), picture->image.size, {});
    auto const shown = visible(v, place);
    CHECK(decibels(v.frame().copy(shown),
              reference(picture->image, place.size(), drawnPart(shown, place)))
        >= sharp);
}

TEST_CASE("one image pixel on one device pixel is the photo itself")
{
    ViewerDesk v;
    auto const picture = chart(3000, 2000);
    v.open(0, picture);
    QKeyEvent one(QEvent::KeyPress, Qt::Key_1, Qt::ControlModifier);
    QApplication::sendEvent(&v.widget, &one);
    v.source.answer(Kind::full, picture);
    v.rest();
    auto const place = picturePlace(v.area(), picture->image.size, v.image().zoom());
    REQUIRE(place.size() == picture->image.size);
    auto const shown = visible(v, place);
    auto const part = drawnPart(shown, place);
    CHECK(v.frame().copy(shown)
        == imageOf(picture->image).copy(part.x, part.y, part.width, part.height));
    // While it is moved, too.
    v.image().drag({ -40, 16 });
    auto const moved = picturePlace(v.area(), picture->image.size, v.image().zoom());
    auto const seen = visible(v, moved);
    auto const now = drawnPart(seen, moved);
    CHECK(
        v.frame().copy(seen) == imageOf(picture->image).copy(now.x, now.y, now.width, now.height));
}

TEST_CASE("what stands for a photo gives way to it in the same place, without a gap")
{
    ViewerDesk v;
    PixelSize const photo { 4001, 2667 };
    auto const picture = chart(1920, redrawnSize(photo, 1920).height);
    auto const reduced = [&](int width, int height) {
        return std::make_shared<CGImageBox>(
            CGImageBox { resampled(picture->image, { width, height }), PixelOrigin::embedded });
    };
    v.source.metas[v.url(0)] = ImageMeta { photo, false };
    v.source.thumbnails[v.url(0)] = reduced(256, 170);
    v.open(0);
    auto const place = picturePlace(v.area(), picture->image.size, {});
    auto const shown = visible(v, place);
    auto const exact = reference(picture->image, place.size(), drawnPart(shown, place));
    auto const isBlackBeside = [&](QImage const& frame) {
        return qGray(frame.pixel(shown.left() - 1, frame.height() / 2)) == 0
            && qGray(frame.pixel(shown.right() + 1, frame.height() / 2)) == 0;
    };
    auto const first = v.frame();
    auto const coarse = decibels(first.copy(shown), exact);
    CHECK(coarse > 10);
    CHECK(isBlackBeside(first));
    CHECK_FALSE(v.widget.isComplete());
    v.desk.loop.advance(ViewerImage::previewDelay);
    v.source.answer(Kind::preview, reduced(810, 540));
    auto const better = v.frame();
    CHECK(decibels(better.copy(shown), exact) > coarse);
    CHECK(isBlackBeside(better));
    v.rest();
    CHECK_FALSE(v.widget.isComplete());
    SUBCASE("prepared where it was decoded: in the next frame")
    {
        v.prepared.prepare(picture);
        v.source.answer(Kind::display, picture);
        checkSharp(v, picture->image, {});
    }
    SUBCASE("made sharp later: until then the stand-in stays")
    {
        auto const before = v.frame();
        v.source.answer(Kind::display, picture);
        CHECK(v.frame() == before);
        v.rest();
        checkSharp(v, picture->image, {});
    }
    CHECK(isBlackBeside(v.frame()));
    CHECK(v.widget.isComplete());
}

TEST_CASE("nothing of what stood for a photo is left when that cannot be read")
{
    ViewerDesk v;
    v.source.thumbnails[v.url(0)] = chart(256, 170);
    v.open(0);
    CHECK(qGray(v.frame().pixel(v.frame().width() / 2, v.frame().height() / 2)) != 0);
    v.source.answer(Kind::display, nullptr);
    auto const frame = v.frame();
    for (int x = 0; x < frame.width(); ++x)
        REQUIRE(qGray(frame.pixel(x, frame.height() / 2)) == 0);
}

TEST_CASE("the full picture takes the place of the screen-sized one without a jump")
{
    ViewerDesk v;
    auto const full = chart(4001, 2667);
    auto const small = std::make_shared<CGImageBox>(CGImageBox {
        resampled(full->image, fittedSize(full->image.size, 1001)), PixelOrigin::scaled });
    v.source.metas[v.url(0)] = ImageMeta { full->image.size, false };
    v.source.pictures[v.url(0)] = small;
    v.open(0);
    v.image().doubleClick();
    v.rest();
    auto const before = v.frame();
    v.source.answer(Kind::full, full);
    CHECK(v.frame() == before); // until it can be drawn sharp
    v.rest();
    auto const after = v.frame();
    auto const place = picturePlace(v.area(), full->image.size, { 2.5, {} });
    auto const shown = visible(v, place);
    auto const exact = reference(full->image, place.size(), drawnPart(shown, place));
    CHECK(decibels(after.copy(shown), exact) >= sharp);
    // The small picture brought to the same place agrees best where nothing is shifted.
    auto const agreement = [&](int dx) {
        return decibels(before.copy(shown.adjusted(8, 8, -8, -8)),
            after.copy(shown.adjusted(8, 8, -8, -8).translated(dx, 0)));
    };
    CHECK(agreement(0) > agreement(1));
    CHECK(agreement(0) > agreement(-1));
}
