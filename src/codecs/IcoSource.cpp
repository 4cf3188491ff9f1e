#include "codecs/IcoSource.h"
#include "base/Resample.h"
#include "codecs/BmpDecoder.h"
#include "codecs/DecodeLimits.h"
#include "codecs/PngSource.h"
#include <algorithm>
#include <array>
#include <cstring>

namespace pixelhain {

namespace {

constexpr std::size_t directoryHeader = 6;
constexpr std::size_t entryLength = 16;
/// Entries that are looked at; icons have about ten.
constexpr std::size_t maxEntries = 256;
/// Bytes of one picture. 1024 × 1024 pixels without compression take 4 MiB.
constexpr std::uint32_t maxPicture = std::uint32_t { 64 } << 20;
constexpr std::size_t bmpFileHeader = 14;
constexpr std::size_t infoHeader = 40;

struct IcoEntry {
    ByteRange range;
    int width = 0; ///< as the directory says
    int height = 0;
    int bits = 0;
};

std::vector<IcoEntry> readEntries(ByteSource const& bytes)
{
    std::array<std::uint8_t, directoryHeader> head {};
    if (bytes.readAt(0, head) != head.size() || !startsWith(head, "\0\0\1\0"))
        return {};
    auto const count = std::min<std::size_t>(littleEndian16(head.data() + 4), maxEntries);
    auto const raw = bytesAt(bytes, directoryHeader, count * entryLength);
    auto const side = [](std::uint8_t stated) { return stated == 0 ? 256 : int { stated }; };
    std::vector<IcoEntry> entries;
    for (std::size_t at = 0; at + entryLength <= raw.size(); at += entryLength) {
        auto const* const entry = raw.data() + at;
        auto const length = littleEndian32(entry + 8);
        auto const offset = littleEndian32(entry + 12);
        if (length > infoHeader && length <= maxPicture && offset < bytes.size())
            entries.push_back(
                { { offset, length }, side(entry[0]), side(entry[1]), littleEndian16(entry + 6) });
    }
    std::ranges::stable_sort(entries, [](IcoEntry const& a, IcoEntry const& b) {
        return std::pair(a.width * a.height, a.bits) > std::pair(b.width * b.height, b.bits);
    });
    return entries;
}

void put32(std::vector<std::uint8_t>& bytes, std::size_t at, std::size_t value)
{
    for (std::size_t i = 0; i < 4; ++i)
        bytes[at + i] = static_cast<std::uint8_t>(value >> (8 * i));
}

/// A picture of an icon that is stored like a BMP: without the file's header, and with twice its
/// height because a mask of one bit a pixel follows the colours.
class IconBitmap {
public:
    static std::optional<IconBitmap> read(ByteSource const& bytes, ByteRange range)
    {
        IconBitmap icon;
        auto const dib = bytesAt(bytes, range.offset, static_cast<std::size_t>(range.length));
        if (dib.size() <= infoHeader || littleEndian32(dib.data()) != infoHeader)
            return {};
        icon.file_.resize(bmpFileHeader);
        icon.file_.insert(icon.file_.end(), dib.begin(), dib.end());
        auto const height = static_cast<std::int32_t>(littleEndian32(dib.data() + 8));
        auto const bits = littleEndian16(dib.data() + 14);
        auto const used = littleEndian32(dib.data() + 32);
        auto const all = bits <= 8 ? std::uint32_t { 1 } << bits : 0;
        auto const colors = used > 0 && used < all ? used : all;
        put32(icon.file_, 10, bmpFileHeader + infoHeader + std::size_t { colors } * 4);
        put32(icon.file_, bmpFileHeader + 8, static_cast<std::uint32_t>(height / 2));
        auto header = readBmpHeader(SpanBytes(icon.file_));
        if (!header || header->packing != BmpHeader::Packing::plain || height < 2)
            return {};
        icon.header_ = *header;
        if (icon.header_.bits == 32 && icon.hasAlpha())
            icon.header_.masks[3] = 0xFF000000;
        return icon;
    }

    [[nodiscard]] PixelSize size() const { return header_.size; }
    [[nodiscard]] int bits() const { return header_.bits; }

    [[nodiscard]] std::optional<DecodedImage> decode() const
    {
        auto image = decodeBmp(SpanBytes(file_), header_, 0, {});
        if (image && header_.masks[3] == 0)
            applyMask(image->bitmap);
        return image;
    }

private:
    [[nodiscard]] std::size_t colorBytes() const
    {
        return header_.bytesPerRow() * static_cast<std::size_t>(header_.size.height);
    }

    // Old icons of 32 bits leave the fourth byte empty and mean their mask.
    [[nodiscard]] bool hasAlpha() const
    {
        auto const begin = static_cast<std::size_t>(header_.pixelOffset);
        auto const end = std::min(file_.size(), begin + colorBytes());
        for (auto at = begin + 3; at < end; at += 4) {
            if (file_[at] != 0)
                return true;
        }
        return false;
    }

    void applyMask(Bitmap& bitmap) const
    {
        auto const stride = (static_cast<std::size_t>(header_.size.width) + 31) / 32 * 4;
        auto const begin = static_cast<std::size_t>(header_.pixelOffset) + colorBytes();
        for (int y = 0; y < bitmap.size.height; ++y) {
            auto const line = begin + stride * static_cast<std::size_t>(bitmap.size.height - 1 - y);
            if (line + stride > file_.size())
                continue;
            auto* out = bitmap.row(y);
            for (int x = 0; x < bitmap.size.width; ++x, out += 4) {
                auto const byte = file_[line + static_cast<std::size_t>(x) / 8];
                if ((byte >> (7 - x % 8) & 1) != 0) {
                    std::memset(out, 0, 4);
                    bitmap.isOpaque = false;
                }
            }
        }
    }

    std::vector<std::uint8_t> file_;
    BmpHeader header_;
};

class IcoSource final : public ImageSource {
public:
    explicit IcoSource(std::unique_ptr<ByteSource> bytes)
        : bytes_(std::move(bytes))
        , entries_(readEntries(*bytes_))
    {
        for (auto const& entry : entries_) {
            if (openEntry(entry.range))
                return;
        }
    }

    [[nodiscard]] bool isReadable() const { return png_ || bitmap_; }
    [[nodiscard]] std::string_view typeIdentifier() const override { return "com.microsoft.ico"; }
    [[nodiscard]] std::size_t frameCount() override { return entries_.size(); }
    [[nodiscard]] std::optional<PixelSize> pixelSize() override
    {
        return png_ ? png_->pixelSize() : bitmap_->size();
    }
    [[nodiscard]] int orientation() override { return 1; }
    [[nodiscard]] std::vector<PixelSize> previews() override { return {}; }
    [[nodiscard]] std::optional<DecodedImage> decodePreview(std::size_t, int) override
    {
        return {};
    }

    [[nodiscard]] std::optional<DecodedImage> decode(int maxPixel) override
    {
        if (png_)
            return png_->decode(maxPixel);
        auto image = bitmap_->decode();
        if (image) {
            image->bitmap = resampled(image->bitmap, fittedSize(image->bitmap.size, maxPixel));
            if (image->bitmap.isEmpty())
                return {};
        }
        return image;
    }

    [[nodiscard]] std::optional<DecodedImage> decodeWhole() override
    {
        return png_ ? png_->decodeWhole() : bitmap_->decode();
    }

private:
    bool openEntry(ByteRange range)
    {
        std::array<std::uint8_t, 8> start {};
        if (bytes_->readAt(range.offset, start) == start.size()
            && startsWith(start, "\x89PNG\r\n\x1A\n"))
            png_ = openPng(std::make_unique<SliceBytes>(*bytes_, range.offset, range.length));
        else
            bitmap_ = IconBitmap::read(*bytes_, range);
        return isReadable();
    }

    std::unique_ptr<ByteSource> bytes_;
    std::vector<IcoEntry> entries_;
    std::unique_ptr<ImageSource> png_;
    std::optional<IconBitmap> bitmap_;
};

} // namespace

std::unique_ptr<ImageSource> openIco(std::unique_ptr<ByteSource> bytes)
{
    auto source = std::make_unique<IcoSource>(std::move(bytes));
    if (!source->isReadable())
        return nullptr;
    return source;
}

} // namespace pixelhain
