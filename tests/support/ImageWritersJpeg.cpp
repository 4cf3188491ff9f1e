#include "support/ByteWriter.h"
#include "support/ImageWriters.h"
#include <cstddef>
#include <cstdio>
#include <cstdlib>

#include <jpeglib.h>

namespace pixelhain {

RgbaPixels RgbaPixels::filled(PixelSize size, std::uint32_t rgba)
{
    RgbaPixels pixels { size, {} };
    auto const count = std::size_t(size.width) * std::size_t(size.height);
    for (std::size_t i = 0; i < count; ++i) {
        for (auto const shift : { 24, 16, 8, 0 })
            pixels.rgba.push_back(static_cast<std::uint8_t>(rgba >> shift));
    }
    return pixels;
}

namespace {

struct Field {
    unsigned tag;
    std::string text; ///< an ASCII field if not empty
    std::size_t number = 0; ///< else a SHORT or LONG
    bool isLong = false;
};

// Writes one directory with the texts behind it; returns where its "next" stands.
std::size_t writeDirectory(ByteWriter& out, std::vector<Field> const& fields)
{
    out.u16(static_cast<unsigned>(fields.size()));
    auto tail = out.size() + fields.size() * 12 + 4;
    for (auto const& field : fields) {
        auto const length = field.text.size() + 1;
        out.u16(field.tag);
        out.u16(!field.text.empty() ? 2 : field.isLong ? 4 : 3);
        out.u32(field.text.empty() ? 1 : length);
        if (field.text.empty() && !field.isLong) {
            out.u16(static_cast<unsigned>(field.number));
            out.u16(0);
        } else if (field.text.empty() || length > 4) {
            out.u32(field.text.empty() ? field.number : tail);
            tail += field.text.empty() ? 0 : length;
        } else {
            auto const end = out.size() + 4;
            out.text(field.text);
            while (out.size() < end)
                out.u8(0);
        }
    }
    auto const next = out.size();
    out.u32(0);
    for (auto const& field : fields) {
        if (field.text.size() + 1 > 4) {
            out.text(field.text);
            out.u8(0);
        }
    }
    return next;
}

std::size_t directoryBytes(std::vector<Field> const& fields)
{
    auto bytes = 2 + fields.size() * 12 + 4;
    for (auto const& field : fields)
        bytes += field.text.size() + 1 > 4 ? field.text.size() + 1 : 0;
    return bytes;
}

} // namespace

FileBytes exifBlock(ExifOptions const& options)
{
    ByteWriter out(options.isBigEndian);
    out.text(options.isBigEndian ? "MM" : "II");
    out.u16(42);
    out.u32(8);
    std::vector<Field> first;
    if (!options.make.empty())
        first.push_back({ 0x010F, options.make });
    if (!options.model.empty())
        first.push_back({ 0x0110, options.model });
    if (options.orientation != 0)
        first.push_back({ 0x0112, {}, static_cast<std::size_t>(options.orientation) });
    auto const hasExif = !options.dateTimeOriginal.empty();
    if (hasExif) {
        first.push_back({ 0x8769, {}, 0, true });
        first.back().number = 8 + directoryBytes(first);
    }
    auto const next = writeDirectory(out, first);
    if (hasExif)
        writeDirectory(out, { { 0x9003, options.dateTimeOriginal } });
    if (!options.thumbnail.empty()) {
        out.put32(next, out.size());
        std::vector<Field> second { { 0x0103, {}, 6 }, { 0x0201, {}, 0, true },
            { 0x0202, {}, options.thumbnail.size(), true } };
        second[1].number = out.size() + directoryBytes(second);
        writeDirectory(out, second);
        out.raw(options.thumbnail);
    }
    return out.bytes;
}

namespace {

struct Part {
    FileBytes const* bytes;
    std::size_t attribute;
};

std::vector<Part> extraPictures(JpegOptions const& options)
{
    std::vector<Part> parts;
    if (!options.preview.empty())
        parts.push_back({ &options.preview, 0x010002 });
    if (!options.secondView.empty())
        parts.push_back({ &options.secondView, 0x020002 });
    if (!options.gainMap.empty())
        parts.push_back({ &options.gainMap, 0 });
    return parts;
}

// The index of the pictures behind the first one; sizes and offsets come later.
FileBytes multiPictureIndex(std::size_t pictures)
{
    ByteWriter out(true);
    out.text(std::string_view("MPF\0MM", 6));
    out.u16(42);
    out.u32(8);
    out.u16(3);
    out.u16(0xB000);
    out.u16(7);
    out.u32(4);
    out.text("0100");
    out.u16(0xB001);
    out.u16(4);
    out.u32(1);
    out.u32(pictures);
    out.u16(0xB002);
    out.u16(7);
    out.u32(pictures * 16);
    out.u32(50);
    out.u32(0);
    out.bytes.resize(out.size() + pictures * 16);
    return out.bytes;
}

void appendPictures(FileBytes& file, std::size_t index, std::vector<Part> const& parts)
{
    ByteWriter out(true);
    out.bytes = std::move(file);
    auto const header = index + 4;
    auto entry = header + 50;
    out.put32(entry, 0x030000);
    out.put32(entry + 4, out.size());
    for (auto const& part : parts) {
        entry += 16;
        out.put32(entry, part.attribute);
        out.put32(entry + 4, part.bytes->size());
        out.put32(entry + 8, out.size() - header);
        out.raw(*part.bytes);
    }
    file = std::move(out.bytes);
}

void chooseColor(jpeg_compress_struct& library, JpegOptions const& options)
{
    using Color = JpegOptions::Color;
    auto const isInk = options.color == Color::cmyk || options.color == Color::ycck;
    library.input_components = isInk ? 4 : 3;
    library.in_color_space = isInk ? JCS_CMYK : JCS_RGB;
    jpeg_set_defaults(&library);
    switch (options.color) {
    case Color::ycbcr:
        jpeg_set_colorspace(&library, JCS_YCbCr);
        break;
    case Color::rgb:
        jpeg_set_colorspace(&library, JCS_RGB);
        break;
    case Color::grey:
        jpeg_set_colorspace(&library, JCS_GRAYSCALE);
        break;
    case Color::cmyk:
        jpeg_set_colorspace(&library, JCS_CMYK);
        break;
    case Color::ycck:
        jpeg_set_colorspace(&library, JCS_YCCK);
        break;
    }
    if (options.color == Color::ycbcr) {
        using Subsampling = JpegOptions::Subsampling;
        library.comp_info[0].h_samp_factor = options.subsampling == Subsampling::s444 ? 1 : 2;
        library.comp_info[0].v_samp_factor = options.subsampling == Subsampling::s420 ? 2 : 1;
    }
    for (std::size_t i = 0; i < options.sampling.size(); ++i) {
        library.comp_info[i].h_samp_factor = options.sampling[i].width;
        library.comp_info[i].v_samp_factor = options.sampling[i].height;
    }
}

void writeProfile(jpeg_compress_struct& library, FileBytes const& profile)
{
    constexpr std::size_t most = 65519;
    auto const parts = (profile.size() + most - 1) / most;
    for (std::size_t i = 0; i < parts; ++i) {
        ByteWriter out;
        out.text(std::string_view("ICC_PROFILE\0", 12));
        out.u8(static_cast<unsigned>(i + 1));
        out.u8(static_cast<unsigned>(parts));
        auto const first = profile.begin() + static_cast<std::ptrdiff_t>(i * most);
        auto const count = std::min(most, profile.size() - i * most);
        out.bytes.insert(out.bytes.end(), first, first + static_cast<std::ptrdiff_t>(count));
        jpeg_write_marker(
            &library, JPEG_APP0 + 2, out.bytes.data(), static_cast<unsigned>(out.size()));
    }
}

// Ink as Adobe's programs store it: inverted, black separated.
void inkRow(RgbaPixels const& pixels, int y, FileBytes& row)
{
    row.clear();
    for (int x = 0; x < pixels.size.width; ++x) {
        auto const* at = pixels.at(x, y);
        auto const white = std::max({ at[0], at[1], at[2], std::uint8_t { 1 } });
        for (int c = 0; c < 3; ++c)
            row.push_back(static_cast<std::uint8_t>(at[c] * 255 / white));
        row.push_back(white);
    }
}

void rgbRow(RgbaPixels const& pixels, int y, FileBytes& row)
{
    row.clear();
    for (int x = 0; x < pixels.size.width; ++x)
        row.insert(row.end(), pixels.at(x, y), pixels.at(x, y) + 3);
}

void setScans(
    jpeg_compress_struct& library, JpegOptions const& options, std::vector<jpeg_scan_info>& scans)
{
    if (options.isProgressive)
        jpeg_simple_progression(&library);
    if (options.isInterleaved)
        return;
    for (int i = 0; i < library.num_components; ++i)
        scans.push_back({ 1, { i }, 0, 63, 0, 0 });
    library.scan_info = scans.data();
    library.num_scans = static_cast<int>(scans.size());
}

void writeExif(jpeg_compress_struct& library, FileBytes const& block)
{
    if (block.empty())
        return;
    ByteWriter exif;
    exif.text(std::string_view("Exif\0\0", 6));
    exif.raw(block);
    jpeg_write_marker(
        &library, JPEG_APP0 + 1, exif.bytes.data(), static_cast<unsigned>(exif.size()));
}

void writeRows(jpeg_compress_struct& library, RgbaPixels const& pixels)
{
    FileBytes row;
    for (int y = 0; y < pixels.size.height; ++y) {
        if (library.input_components == 4)
            inkRow(pixels, y, row);
        else
            rgbRow(pixels, y, row);
        JSAMPROW rows[] { row.data() };
        jpeg_write_scanlines(&library, rows, 1);
    }
}

} // namespace

FileBytes writeJpeg(RgbaPixels const& pixels, JpegOptions const& options)
{
    jpeg_compress_struct library {};
    jpeg_error_mgr errors {};
    library.err = jpeg_std_error(&errors);
    jpeg_create_compress(&library);
    unsigned char* memory = nullptr;
    unsigned long length = 0;
    jpeg_mem_dest(&library, &memory, &length);
    library.image_width = static_cast<unsigned>(pixels.size.width);
    library.image_height = static_cast<unsigned>(pixels.size.height);
    chooseColor(library, options);
    jpeg_set_quality(&library, options.quality, options.hasWideSteps ? FALSE : TRUE);
    library.optimize_coding = options.isOptimized ? TRUE : FALSE;
    std::vector<jpeg_scan_info> scans;
    setScans(library, options, scans);
    library.arith_code = options.isArithmetic ? TRUE : FALSE;
    library.restart_in_rows = options.restartRows;
    library.restart_interval = static_cast<unsigned>(options.restartUnits);
    jpeg_start_compress(&library, TRUE);
    writeExif(library, options.exif);
    auto const parts = extraPictures(options);
    if (!parts.empty()) {
        auto const index = multiPictureIndex(parts.size() + 1);
        jpeg_write_marker(
            &library, JPEG_APP0 + 2, index.data(), static_cast<unsigned>(index.size()));
    }
    writeProfile(library, options.profile);
    writeRows(library, pixels);
    jpeg_finish_compress(&library);
    FileBytes file(memory, memory + length);
    jpeg_destroy_compress(&library);
    std::free(memory);
    if (!parts.empty()) {
        constexpr std::string_view name("MPF\0", 4);
        auto const found = std::search(file.begin(), file.end(), name.begin(), name.end());
        appendPictures(file, static_cast<std::size_t>(found - file.begin()), parts);
    }
    return file;
}

} // namespace pixelhain
