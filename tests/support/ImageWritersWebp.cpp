#include "support/ByteWriter.h"
#include "support/ImageWriters.h"

#include <webp/encode.h>

namespace pixelhain {

namespace {

// The chunks of one picture, without the container around them.
FileBytes encoded(RgbaPixels const& pixels, WebpOptions const& options)
{
    std::uint8_t* memory = nullptr;
    auto const width = pixels.size.width;
    auto const height = pixels.size.height;
    auto const length = options.isLossless
        ? WebPEncodeLosslessRGBA(pixels.rgba.data(), width, height, width * 4, &memory)
        : WebPEncodeRGBA(pixels.rgba.data(), width, height, width * 4, options.quality, &memory);
    FileBytes chunks(memory, memory + length);
    WebPFree(memory);
    constexpr std::ptrdiff_t container = 12;
    constexpr std::ptrdiff_t extended = 18;
    auto first = chunks.begin() + container;
    if (std::equal(first, first + 4, "VP8X"))
        first += extended;
    chunks.erase(chunks.begin(), first);
    return chunks;
}

void appendChunk(ByteWriter& out, std::string_view type, FileBytes const& data)
{
    out.text(type);
    out.u32(data.size());
    out.raw(data);
    out.pad(2);
}

FileBytes animationFrame(RgbaPixels const& pixels, int x, int y, WebpOptions const& options)
{
    ByteWriter out;
    out.u24(static_cast<unsigned>(x / 2));
    out.u24(static_cast<unsigned>(y / 2));
    out.u24(static_cast<unsigned>(pixels.size.width - 1));
    out.u24(static_cast<unsigned>(pixels.size.height - 1));
    out.u24(100);
    out.u8(0);
    out.raw(encoded(pixels, options));
    return out.bytes;
}

FileBytes extendedHeader(PixelSize canvas, WebpOptions const& options)
{
    ByteWriter out;
    out.u8((options.profile.empty() ? 0U : 0x20U) | 0x10U | (options.exif.empty() ? 0U : 0x08U)
        | (options.frames.empty() ? 0U : 0x02U));
    out.u24(0);
    out.u24(static_cast<unsigned>(canvas.width - 1));
    out.u24(static_cast<unsigned>(canvas.height - 1));
    return out.bytes;
}

} // namespace

FileBytes writeWebp(RgbaPixels const& pixels, WebpOptions const& options)
{
    ByteWriter out;
    out.text("RIFF");
    out.u32(0);
    out.text("WEBP");
    auto const canvas = options.canvas.width > 0 ? options.canvas : pixels.size;
    auto const picture = encoded(pixels, options);
    auto const hasAlphaChunk = std::equal(picture.begin(), picture.begin() + 4, "ALPH");
    if (hasAlphaChunk || !options.frames.empty() || !options.exif.empty()
        || !options.profile.empty())
        appendChunk(out, "VP8X", extendedHeader(canvas, options));
    if (!options.profile.empty())
        appendChunk(out, "ICCP", options.profile);
    if (options.frames.empty()) {
        out.raw(picture);
    } else {
        appendChunk(out, "ANIM", FileBytes(6));
        appendChunk(out, "ANMF", animationFrame(pixels, options.frameX, options.frameY, options));
        for (auto const& frame : options.frames)
            appendChunk(out, "ANMF", animationFrame(frame, 0, 0, options));
    }
    if (!options.exif.empty())
        appendChunk(out, "EXIF", options.exif);
    out.put32(4, out.size() - 8);
    return out.bytes;
}

} // namespace pixelhain
