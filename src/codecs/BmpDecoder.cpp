#include "codecs/BmpDecoder.h"
#include "codecs/ByteStream.h"
#include "codecs/DecodeLimits.h"
#include "codecs/PictureBuilder.h"
#include <bit>
#include <cstdlib>
#include <cstring>

namespace pixelhain {

namespace {

constexpr std::size_t blockBytes = std::size_t { 256 } << 10;

/// One channel of a pixel that is cut into bit fields.
struct BitField {
    std::uint32_t mask = 0;
    int shift = 0;
    std::uint32_t most = 0;

    BitField() = default;
    explicit BitField(std::uint32_t bits)
        : mask(bits)
        , shift(bits == 0 ? 0 : std::countr_zero(bits))
        , most(bits >> shift)
    {
    }
    [[nodiscard]] std::uint8_t of(std::uint32_t pixel) const
    {
        auto const value = std::uint64_t { (pixel & mask) >> shift };
        return static_cast<std::uint8_t>((value * 255 + most / 2) / most);
    }
};

class RowReader {
public:
    explicit RowReader(BmpHeader const& header)
        : header_(header)
    {
        for (std::size_t i = 0; i < fields_.size(); ++i)
            fields_[i] = BitField(header.masks[i]);
    }

    void convert(std::uint8_t const* in, std::uint8_t* out) const
    {
        auto const width = header_.size.width;
        switch (header_.bits) {
        case 16:
            for (int x = 0; x < width; ++x, in += 2, out += 4)
                putFields(littleEndian16(in), out);
            break;
        case 24:
            for (int x = 0; x < width; ++x, in += 3, out += 4) {
                std::memcpy(out, in, 3);
                out[3] = 255;
            }
            break;
        case 32:
            for (int x = 0; x < width; ++x, in += 4, out += 4)
                putFields(littleEndian32(in), out);
            break;
        default:
            putIndices(in, out);
            break;
        }
    }

private:
    void putFields(std::uint32_t pixel, std::uint8_t* out) const
    {
        for (std::size_t i = 0; i < 3; ++i)
            out[2 - i] = fields_[i].most == 0 ? std::uint8_t { 0 } : fields_[i].of(pixel);
        out[3] = fields_[3].most == 0 ? std::uint8_t { 255 } : fields_[3].of(pixel);
    }

    void putIndices(std::uint8_t const* in, std::uint8_t* out) const
    {
        auto const bits = header_.bits;
        auto const mask = (1U << bits) - 1;
        for (int x = 0; x < header_.size.width; ++x, out += 4) {
            auto const bit = x * bits;
            auto const index = static_cast<unsigned>(in[bit / 8]) >> (8 - bits - bit % 8);
            std::memcpy(out, header_.colors[index & mask].data(), 4);
        }
    }

    BmpHeader const& header_;
    std::array<BitField, 4> fields_;
};

// Rows from the top. Those of a file that stands on its head are read in blocks from its end.
void readPlainRows(ByteSource const& bytes, BmpHeader const& header, PictureBuilder& builder)
{
    RowReader const reader(header);
    auto const stride = header.bytesPerRow();
    auto const height = header.size.height;
    auto const perBlock = static_cast<int>(
        std::clamp<std::size_t>(blockBytes / stride, 1, static_cast<std::size_t>(height)));
    std::vector<std::uint8_t> block(stride * static_cast<std::size_t>(perBlock));
    for (int top = 0; top < height; top += perBlock) {
        auto const count = std::min(perBlock, height - top);
        auto const first = header.isTopDown ? top : height - top - count;
        auto const length = stride * static_cast<std::size_t>(count);
        auto const got
            = bytes.readAt(header.pixelOffset + stride * static_cast<std::uint64_t>(first),
                std::span(block).first(length));
        for (int i = 0; i < count; ++i) {
            auto const line = static_cast<std::size_t>(header.isTopDown ? i : count - 1 - i);
            auto* row = builder.nextRow();
            if ((line + 1) * stride <= got)
                reader.convert(block.data() + line * stride, row);
            else
                std::memset(row, 0, static_cast<std::size_t>(header.size.width) * 4);
            builder.commitRow();
        }
    }
}

/// Indices unpacked from run lengths, in the file's own order of rows.
class Runs {
public:
    Runs(ByteSource const& bytes, BmpHeader const& header)
        : stream_(bytes, header.pixelOffset)
        , width_(static_cast<std::size_t>(header.size.width))
        , height_(static_cast<std::size_t>(header.size.height))
        , isNibbles_(header.packing == BmpHeader::Packing::runs4)
    {
        if (width_ * height_ <= DecodeLimits::memory)
            pixels_.reset(static_cast<std::uint8_t*>(std::calloc(height_, width_)));
    }

    bool unpack()
    {
        if (!pixels_)
            return false;
        while (y_ < height_ && step()) { }
        return hasPixels_;
    }

    [[nodiscard]] std::uint8_t const* row(std::size_t y) const
    {
        return pixels_.get() + y * width_;
    }

private:
    struct Free {
        void operator()(std::uint8_t* memory) const { std::free(memory); }
    };

    bool step()
    {
        auto const count = stream_.next();
        auto const value = stream_.next();
        if (value < 0)
            return false;
        if (count > 0) {
            for (int i = 0; i < count; ++i)
                put(nibble(value, i));
            return true;
        }
        switch (value) {
        case 0:
            x_ = 0;
            ++y_;
            return true;
        case 1:
            return false;
        case 2:
            return move();
        default:
            return copy(value);
        }
    }

    bool move()
    {
        auto const right = stream_.next();
        auto const down = stream_.next();
        if (down < 0)
            return false;
        x_ += static_cast<std::size_t>(right);
        y_ += static_cast<std::size_t>(down);
        return true;
    }

    bool copy(int count)
    {
        int byte = 0;
        auto const perByte = isNibbles_ ? 2 : 1;
        for (int i = 0; i < count; ++i) {
            if (i % perByte == 0)
                byte = stream_.next();
            if (byte < 0)
                return false;
            put(nibble(byte, i));
        }
        if ((count + perByte - 1) / perByte % 2 != 0)
            stream_.skip(1);
        return true;
    }

    [[nodiscard]] int nibble(int byte, int i) const
    {
        if (!isNibbles_)
            return byte;
        return i % 2 == 0 ? byte >> 4 : byte & 15;
    }

    void put(int index)
    {
        if (x_ < width_ && y_ < height_) {
            pixels_.get()[y_ * width_ + x_] = static_cast<std::uint8_t>(index);
            hasPixels_ = true;
        }
        ++x_;
    }

    ByteStream stream_;
    std::size_t width_;
    std::size_t height_;
    bool isNibbles_;
    std::unique_ptr<std::uint8_t, Free> pixels_;
    std::size_t x_ = 0;
    std::size_t y_ = 0;
    bool hasPixels_ = false;
};

bool readRunRows(ByteSource const& bytes, BmpHeader const& header, PictureBuilder& builder)
{
    Runs runs(bytes, header);
    if (!runs.unpack())
        return false;
    for (int y = 0; y < header.size.height; ++y) {
        auto const* in
            = runs.row(static_cast<std::size_t>(header.isTopDown ? y : header.size.height - 1 - y));
        auto* out = builder.nextRow();
        for (int x = 0; x < header.size.width; ++x, out += 4)
            std::memcpy(out, header.colors[in[x]].data(), 4);
        builder.commitRow();
    }
    return true;
}

} // namespace

std::optional<DecodedImage> decodeBmp(
    ByteSource const& bytes, BmpHeader const& header, int maxPixel, ByteSpan profile)
{
    auto const isPlain = header.packing == BmpHeader::Packing::plain;
    if (header.pixelOffset >= bytes.size())
        return {};
    auto const there = bytes.size() - header.pixelOffset;
    auto const stride = header.bytesPerRow();
    auto const isCut = isPlain && there < stride * static_cast<std::uint64_t>(header.size.height);
    if (isPlain && there < stride)
        return {};
    auto const format = header.masks[3] != 0 || isCut ? PixelFormat::straight : PixelFormat::opaque;
    PictureBuilder builder;
    if (!builder.begin(header.size, fittedSize(header.size, maxPixel), format))
        return {};
    if (isPlain)
        readPlainRows(bytes, header, builder);
    else if (!readRunRows(bytes, header, builder))
        return {};
    DecodedImage image;
    image.bitmap = builder.finish(profile, Channels::color);
    image.isIndexed = header.bits <= 8;
    if (image.bitmap.isEmpty())
        return {};
    return image;
}

} // namespace pixelhain
