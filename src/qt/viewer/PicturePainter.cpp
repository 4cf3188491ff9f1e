#include "qt/viewer/PicturePainter.h"
#include "ports/Background.h"
#include "qt/viewer/PreparedPictures.h"
#include "qt/window/DrawnPicture.h"
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <cstring>
#include <iterator>
#include <utility>

namespace pixelhain {

namespace {

constexpr int noHalving = 1 << 30;

QRect rectOf(PixelRect const& rect)
{
    return { rect.x, rect.y, rect.width, rect.height };
}

PixelRect pixelsOf(QRect const& rect)
{
    return { rect.x(), rect.y(), rect.width(), rect.height() };
}

// A moved picture finds some of what comes into view sharp already.
PixelRect withMargin(PixelRect const& visible, PixelSize whole)
{
    auto const x = visible.width / 8;
    auto const y = visible.height / 8;
    return PixelRect { visible.x - x, visible.y - y, visible.width + 2 * x, visible.height + 2 * y }
        .intersected({ 0, 0, whole.width, whole.height });
}

// Room for a picture of this size; what a zoom needs grows from frame to frame.
bool makeRoom(QImage& image, QSize size)
{
    if (image.width() < size.width() || image.height() < size.height())
        image = QImage(size.expandedTo(image.size()), QImage::Format_RGB32);
    return !image.isNull();
}

// Each pixel of `from` as a block of `block` by `block`, in the first pixels of `to`; what is left
// at the edges is as the block beside it. Faster than the toolkit, which looks every pixel up.
void drawInBlocks(QImage const& from, QImage& to, QSize size, int block)
{
    auto const lineBytes = static_cast<std::size_t>(size.width()) * sizeof(QRgb);
    for (int y = 0; y < size.height(); ++y) {
        auto* const line = reinterpret_cast<QRgb*>(to.scanLine(y));
        if (y % block != 0 || y / block >= size.height() / block) {
            std::memcpy(line, to.constScanLine(y - 1), lineBytes);
            continue;
        }
        auto const* pixel = reinterpret_cast<QRgb const*>(from.constScanLine(y / block));
        auto* at = line;
        for (auto* const end = line + size.width() / block * block; at != end; ++pixel)
            for (int i = 0; i < block; ++i)
                *at++ = *pixel;
        std::fill(at, line + size.width(), *std::prev(pixel));
    }
}

} // namespace

PicturePainter::PicturePainter(Services const& services, std::function<void()> changed)
    : services_(services)
    , changed_(std::move(changed))
{
}

PicturePainter::~PicturePainter()
{
    clear();
}

// Giving back the memory of a large picture takes longer than a frame.
void PicturePainter::clear()
{
    if (levels_)
        services_.background.run(Priority::utility,
            [levels = std::exchange(levels_, nullptr), picture = std::exchange(picture_, nullptr)] {
            });
    picture_.reset();
    sharp_.reset();
    coarse_ = QImage();
    blocks_ = QImage();
    place_ = {};
    hasNews_ = false;
    isFrame_ = false;
    standsFor_.reset();
    failures_ = 0;
    rest_.cancel();
    work_.cancel();
    isWorking_ = false;
}

void PicturePainter::use(std::shared_ptr<MipLevels const> levels)
{
    if (levels_)
        services_.background.run(Priority::utility, [old = std::exchange(levels_, nullptr)] {});
    levels_ = std::move(levels);
}

PixelSize PicturePainter::size() const
{
    if (standsFor_)
        return *standsFor_;
    return levels_ ? levels_->size() : PixelSize {};
}

void PicturePainter::show(ImageRef const& picture)
{
    if (!picture || picture == picture_ || picture->image.isEmpty())
        return;
    picture_ = picture;
    isFrame_ = false;
    if ((!levels_ || standsFor_) && usePrepared(picture))
        return;
    hasNews_ = true;
    if (levels_) {
        startWork();
        return;
    }
    // One level is made at once; the others, if it takes more, with the first sharp part.
    levels_ = std::make_shared<MipLevels const>(picture->image, noHalving);
}

bool PicturePainter::usePrepared(ImageRef const& picture)
{
    auto const prepared = services_.prepared.find(picture);
    if (!prepared)
        return false;
    use(prepared->levels);
    standsFor_.reset();
    hasNews_ = false;
    if (!prepared->sharp.isEmpty())
        sharp_ = Sharp { levels_, prepared->drawing, imageOf(prepared->sharp) };
    return true;
}

// It is not made sharp: that would take the time of what it waits for.
void PicturePainter::showStandIn(ImageRef const& picture, PixelSize shape)
{
    if (!picture || picture->image.isEmpty() || (levels_ && !standsFor_) || hasNews_)
        return;
    standsFor_ = shape;
    if (picture == picture_)
        return;
    picture_ = picture;
    use(std::make_shared<MipLevels const>(picture->image, noHalving));
}

void PicturePainter::showFrame(Bitmap const& frame)
{
    clear();
    isFrame_ = true;
    levels_ = std::make_shared<MipLevels const>(frame, noHalving);
}

PixelRect PicturePainter::visible() const
{
    return place_.intersected({ 0, 0, area_.width, area_.height }).moved(-place_.x, -place_.y);
}

bool PicturePainter::isExact() const
{
    return levels_ && place_.size() == levels_->size();
}

void PicturePainter::place(PixelSize area, PixelRect const& place)
{
    bool const isFirst = place_.isEmpty();
    bool const isSameSize = isFirst || place.size() == place_.size();
    if (!isSameSize)
        failures_ = 0;
    area_ = area;
    place_ = place;
    if (!levels_ || isFrame_)
        return;
    // While the size changes nothing could be made in time.
    if (isSameSize && !rest_)
        sharpen();
    else if (!isSameSize)
        rest_ = services_.loop.after(restTime, [this] {
            rest_ = Task();
            sharpen();
        });
}

bool PicturePainter::isSharp() const
{
    if (!levels_ || hasNews_ || standsFor_)
        return false;
    auto const part = visible();
    return isExact() || isFrame_ || part.isEmpty()
        || (sharp_ && sharp_->from == levels_ && sharp_->drawing.whole == place_.size()
            && sharp_->drawing.part.contains(part));
}

void PicturePainter::sharpen()
{
    if (!isSharp() && failures_ < mostFailures)
        startWork();
}

void PicturePainter::startWork()
{
    if (isWorking_ || !levels_ || isFrame_ || (standsFor_ && !hasNews_))
        return;
    auto const whole = place_.size();
    MipLevels::Drawing const drawing { whole, withMargin(visible(), whole) };
    isWorking_ = true;
    work_ = runThen(
        services_.background, services_.loop, Priority::userInteractive,
        [levels = levels_, news = hasNews_ ? picture_ : nullptr, drawing, area = area_] {
            auto const used = news ? levelsFor(news->image, area) : levels;
            return Made { used, drawing,
                drawing.whole == used->size() ? Bitmap {} : used->sharp(drawing) };
        },
        [this](Made made) { this->made(std::move(made)); });
}

void PicturePainter::made(Made made)
{
    isWorking_ = false;
    bool const isOfNews = hasNews_ && made.levels->size() == picture_->image.size
        && made.levels->all().front().bitmap.pixels == picture_->image.pixels;
    if (isOfNews) {
        hasNews_ = false;
        standsFor_.reset();
    }
    if (made.levels != levels_)
        use(made.levels);
    bool const isMissing = made.sharp.isEmpty() && made.drawing.whole != made.levels->size();
    failures_ = isMissing ? failures_ + 1 : 0;
    if (!made.sharp.isEmpty())
        sharp_ = Sharp { made.levels, made.drawing, imageOf(made.sharp) };
    if (isSharp())
        coarse_ = blocks_ = QImage();
    // It may have been moved on in the meantime.
    if (hasNews_
        || (!rest_ && !isSharp()
            && (made.drawing.whole != place_.size() || !made.drawing.part.contains(visible()))))
        startWork();
    changed_();
}

void PicturePainter::paint(QPainter& painter, QRect const& dirty)
{
    auto const shown = place_.intersected({ 0, 0, area_.width, area_.height });
    auto const inside = levels_ ? rectOf(shown).intersected(dirty) : QRect();
    for (auto const& rest : QRegion(dirty).subtracted(inside))
        painter.fillRect(rest, Qt::black);
    if (inside.isEmpty())
        return;
    if (!levels_->all().front().bitmap.isOpaque)
        painter.fillRect(inside, Qt::black);
    QRegion soft(inside);
    if (sharp_ && sharp_->drawing.whole == place_.size() && sharp_->from == levels_) {
        auto const at = sharp_->drawing.part.moved(place_.x, place_.y);
        auto const covered = rectOf(at).intersected(inside);
        painter.drawImage(covered.topLeft(), sharp_->image, covered.translated(-at.x, -at.y));
        soft -= covered;
    }
    for (auto const& part : soft)
        paintSoft(painter, pixelsOf(part));
}

void PicturePainter::paintSoft(QPainter& painter, PixelRect const& part)
{
    auto const pixels = static_cast<long long>(part.width) * part.height;
    if (!isExact() && !isFrame_ && pixels > mostSoftPixels) {
        paintCoarse(painter, part, pixels > mostInPairs ? 3 : 2);
        return;
    }
    painter.save();
    painter.setClipRect(rectOf(part));
    drawLevel(painter, part, 1);
    painter.restore();
}

void PicturePainter::paintCoarse(QPainter& painter, PixelRect const& part, int block)
{
    QSize const whole(part.width, part.height);
    QSize const small(part.width / block, part.height / block);
    if (!makeRoom(coarse_, small) || !makeRoom(blocks_, whole))
        return;
    {
        QPainter onSmall(&coarse_);
        if (!levels_->all().front().bitmap.isOpaque)
            onSmall.fillRect(QRect(QPoint(), small), Qt::black);
        onSmall.setClipRect(QRect(QPoint(), small));
        onSmall.scale(1.0 / block, 1.0 / block);
        onSmall.translate(-part.x, -part.y);
        drawLevel(onSmall, part, block);
    }
    drawInBlocks(coarse_, blocks_, whole, block);
    painter.drawImage(QPoint(part.x, part.y), blocks_, QRect(QPoint(), whole));
}

// Of the level only what lies under the part is handed over: the toolkit counts source pixels in
// few bits.
void PicturePainter::drawLevel(QPainter& painter, PixelRect const& part, int reduction) const
{
    auto const whole = place_.size();
    auto const& level = levels_->levelFor({ whole.width / reduction, whole.height / reduction }, 1);
    auto const size = level.bitmap.size;
    auto const perX = level.width / whole.width;
    auto const perY = level.height / whole.height;
    constexpr int reach = 2;
    auto const first = [&](int at, double per) {
        return std::max(0, static_cast<int>(std::floor(at * per)) - reach);
    };
    auto const end = [&](int at, double per, int pixels) {
        return std::min(pixels, static_cast<int>(std::ceil(at * per)) + reach);
    };
    auto const x = first(part.x - place_.x, perX);
    auto const y = first(part.y - place_.y, perY);
    auto const right = end(part.right() - place_.x, perX, size.width);
    auto const bottom = end(part.bottom() - place_.y, perY, size.height);
    if (right <= x || bottom <= y)
        return;
    QImage const used(level.bitmap.row(y) + std::ptrdiff_t(x) * 4, right - x, bottom - y,
        static_cast<qsizetype>(level.bitmap.bytesPerRow),
        level.bitmap.isOpaque ? QImage::Format_RGB32 : QImage::Format_ARGB32_Premultiplied);
    painter.translate(place_.x + x / perX, place_.y + y / perY);
    if (!isExact()) {
        painter.scale(1 / perX, 1 / perY);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
    }
    painter.drawImage(0, 0, used);
}

} // namespace pixelhain
