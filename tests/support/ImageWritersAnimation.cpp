#include "support/AnimationWriters.h"
#include "support/ByteWriter.h"
#include <algorithm>
#include <string_view>

namespace pixelhain {

namespace {

struct Part {
    std::string type;
    FileBytes data;
};

std::vector<Part> partsOf(FileBytes const& png)
{
    std::vector<Part> parts;
    for (std::size_t at = 8; at + 12 <= png.size();) {
        auto const length = std::size_t { png[at] } << 24 | std::size_t { png[at + 1] } << 16
            | std::size_t { png[at + 2] } << 8 | png[at + 3];
        auto const data = png.begin() + static_cast<std::ptrdiff_t>(at) + 8;
        parts.push_back({ std::string(data - 4, data),
            FileBytes(data, data + static_cast<std::ptrdiff_t>(length)) });
        at += length + 12;
    }
    return parts;
}

std::uint32_t sumOf(FileBytes const& bytes, std::size_t from)
{
    std::uint32_t sum = 0xFFFFFFFF;
    for (auto i = from; i < bytes.size(); ++i) {
        sum ^= bytes[i];
        for (int bit = 0; bit < 8; ++bit)
            sum = sum >> 1 ^ ((sum & 1) != 0 ? 0xEDB88320 : 0);
    }
    return ~sum;
}

void append(ByteWriter& out, std::string_view type, FileBytes const& data)
{
    out.u32(data.size());
    auto const from = out.size();
    out.text(type);
    out.raw(data);
    out.u32(sumOf(out.bytes, from));
}

FileBytes packedPixels(RgbaPixels const& pixels, PngOptions const& options)
{
    FileBytes packed;
    for (auto const& part : partsOf(writePng(pixels, options)))
        if (part.type == "IDAT")
            packed.insert(packed.end(), part.data.begin(), part.data.end());
    return packed;
}

FileBytes controlOf(ApngFrame const& frame, unsigned number)
{
    ByteWriter out(true);
    out.u32(number);
    out.u32(static_cast<std::size_t>(frame.pixels.size.width));
    out.u32(static_cast<std::size_t>(frame.pixels.size.height));
    out.u32(static_cast<std::size_t>(frame.x));
    out.u32(static_cast<std::size_t>(frame.y));
    out.u16(static_cast<unsigned>(frame.delay));
    out.u16(static_cast<unsigned>(frame.parts));
    out.u8(static_cast<unsigned>(frame.disposal));
    out.u8(static_cast<unsigned>(frame.blend));
    return out.bytes;
}

void appendPixels(ByteWriter& out, ApngFrame const& frame, FileBytes const& packed, bool isLater,
    unsigned& number)
{
    auto const pieces = static_cast<std::size_t>(frame.pieces);
    for (std::size_t i = 0; i < pieces; ++i) {
        auto const begin = packed.size() * i / pieces;
        auto const end = packed.size() * (i + 1) / pieces;
        ByteWriter data(true);
        if (isLater)
            data.u32(number++);
        data.raw(FileBytes(packed.begin() + static_cast<std::ptrdiff_t>(begin),
            packed.begin() + static_cast<std::ptrdiff_t>(end)));
        append(out, isLater ? "fdAT" : "IDAT", data.bytes);
    }
}

void appendHead(
    ByteWriter& out, RgbaPixels const& first, unsigned frames, ApngOptions const& options)
{
    auto const still = writePng(first, options.png);
    out.bytes.assign(still.begin(), still.begin() + 8);
    for (auto const& part : partsOf(still)) {
        if (part.type == "IDAT")
            break;
        append(out, part.type, part.data);
        if (part.type != "IHDR")
            continue;
        ByteWriter control(true);
        control.u32(frames);
        control.u32(options.plays);
        append(out, "acTL", control.bytes);
    }
}

void appendRiff(ByteWriter& out, std::string_view type, FileBytes const& data)
{
    out.text(type);
    out.u32(data.size());
    out.raw(data);
    out.pad(2);
}

// The chunks of one picture, without the container around them.
FileBytes pictureChunks(WebpFrame const& frame, bool isLossless)
{
    WebpOptions options;
    options.isLossless = isLossless;
    auto const file = writeWebp(frame.pixels, options);
    constexpr std::ptrdiff_t container = 12;
    constexpr std::ptrdiff_t extended = 18;
    auto const first = file.begin() + container;
    auto const isExtended = std::equal(first, first + 4, "VP8X");
    return FileBytes(first + (isExtended ? extended : 0), file.end());
}

FileBytes frameChunk(WebpFrame const& frame, bool isLossless)
{
    ByteWriter out;
    out.u24(static_cast<unsigned>(frame.x / 2));
    out.u24(static_cast<unsigned>(frame.y / 2));
    out.u24(static_cast<unsigned>(frame.pixels.size.width - 1));
    out.u24(static_cast<unsigned>(frame.pixels.size.height - 1));
    out.u24(static_cast<unsigned>(frame.delay));
    out.u8((frame.isCleared ? 1U : 0U) | (frame.isBlended ? 0U : 2U));
    out.raw(pictureChunks(frame, isLossless));
    return out.bytes;
}

} // namespace

FileBytes writeApng(
    PixelSize canvas, std::vector<ApngFrame> const& frames, ApngOptions const& options)
{
    ByteWriter out(true);
    auto const hasStill = options.still.size.width > 0;
    auto const first = hasStill ? options.still : RgbaPixels::filled(canvas, 0);
    auto const count
        = options.frames < 0 ? frames.size() : static_cast<std::size_t>(options.frames);
    appendHead(out, first, static_cast<unsigned>(count), options);
    if (hasStill)
        append(out, "IDAT", packedPixels(first, options.png));
    auto number = options.firstNumber;
    for (std::size_t i = 0; i < frames.size(); ++i) {
        number += options.skippedAt == static_cast<int>(i) ? 1U : 0U;
        append(out, "fcTL", controlOf(frames[i], number++));
        appendPixels(
            out, frames[i], packedPixels(frames[i].pixels, options.png), i > 0 || hasStill, number);
    }
    append(out, "IEND", {});
    return out.bytes;
}

FileBytes writeWebpAnimation(
    PixelSize canvas, std::vector<WebpFrame> const& frames, WebpAnimationOptions const& options)
{
    ByteWriter out;
    out.text("RIFF");
    out.u32(0);
    out.text("WEBP");
    ByteWriter header;
    header.u8(0x12U | (options.profile.empty() ? 0U : 0x20U));
    header.u24(0);
    header.u24(static_cast<unsigned>(canvas.width - 1));
    header.u24(static_cast<unsigned>(canvas.height - 1));
    appendRiff(out, "VP8X", header.bytes);
    if (!options.profile.empty())
        appendRiff(out, "ICCP", options.profile);
    ByteWriter control;
    control.u32(0xFF00FF00); // a background that nobody is to see
    control.u16(static_cast<unsigned>(options.plays));
    appendRiff(out, "ANIM", control.bytes);
    for (auto const& frame : frames)
        appendRiff(out, "ANMF", frameChunk(frame, options.isLossless));
    out.put32(4, out.size() - 8);
    return out.bytes;
}

} // namespace pixelhain
