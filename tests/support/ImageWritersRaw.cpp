#include "support/RawWriters.h"
#include <algorithm>
#include <array>
#include <cmath>

namespace pixelhain {

namespace {

// Where the parts of a file lie. The pictures come late, as in a camera's file.
constexpr std::size_t first = 64;
constexpr std::size_t second = 0x400;
constexpr std::size_t third = 0x600;
constexpr std::size_t children = 0x7F0; // offsets of the directories below the first
constexpr std::size_t exif = 0x800;
constexpr std::size_t interop = 0xA00;
constexpr std::size_t note = 0xB00;
constexpr std::size_t smallPlace = 0x10000;
constexpr std::size_t largePlace = 0x28000;
constexpr std::size_t sensorPlace = 0x60000;

using Fields = std::vector<FileLayout::Field>;

std::size_t side(int value)
{
    return static_cast<std::size_t>(value);
}

std::size_t degreesOf(int orientation)
{
    switch (orientation) {
    case 6:
        return 90;
    case 3:
        return 180;
    case 8:
        return 270;
    default:
        return 0;
    }
}

Fields pictureFields(PixelSize size, std::size_t compression, std::size_t photometric)
{
    return { { 0x00FE, 4, 1, photometric == 32803 ? 0U : 1U }, { 0x0100, 4, 1, side(size.width) },
        { 0x0101, 4, 1, side(size.height) }, { 0x0103, 3, 1, compression },
        { 0x0106, 3, 1, photometric } };
}

Fields sensorFields(RawOptions const& options, std::size_t compression = 1)
{
    auto fields = pictureFields(options.sensor, compression, 32803);
    fields.push_back({ 0x0111, 4, 1, sensorPlace });
    fields.push_back(
        { 0x0117, 4, 1, side(options.sensor.width) * side(options.sensor.height) * 2 });
    return fields;
}

Fields jpegFields(std::size_t at, FileBytes const& jpeg)
{
    return { { 0x00FE, 4, 1, 1 }, { 0x0103, 3, 1, 6 }, { 0x0201, 4, 1, at },
        { 0x0202, 4, 1, jpeg.size() } };
}

Fields stripFields(std::size_t at, FileBytes const& jpeg, std::size_t compression)
{
    return { { 0x00FE, 4, 1, 1 }, { 0x0103, 3, 1, compression }, { 0x0106, 3, 1, 6 },
        { 0x0111, 4, 1, at }, { 0x0117, 4, 1, jpeg.size() } };
}

FileBytes plainRows(RgbaPixels const& pixels)
{
    FileBytes rows;
    for (std::size_t i = 0; i + 4 <= pixels.rgba.size(); i += 4)
        rows.insert(rows.end(), { pixels.rgba[i], pixels.rgba[i + 1], pixels.rgba[i + 2] });
    return rows;
}

Fields plainFields(RgbaPixels const& pixels)
{
    auto fields = pictureFields(pixels.size, 1, 2);
    fields.push_back({ 0x0102, 3, 1, 8 });
    fields.push_back({ 0x0111, 4, 1, smallPlace });
    fields.push_back({ 0x0115, 3, 1, 3 });
    fields.push_back({ 0x0117, 4, 1, side(pixels.size.width) * side(pixels.size.height) * 3 });
    return fields;
}

Fields operator+(Fields a, Fields const& b)
{
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

/// A file whose first directory stands at `first` and names the camera, with both pictures.
class CameraFile : public FileLayout {
public:
    CameraFile(RawOptions const& options, bool isBigEndian = false)
        : FileLayout(isBigEndian)
        , options_(options)
    {
        tiffHeader(0, first);
        text(48, "Maker");
        put(smallPlace, options.plain.rgba.empty() ? options.small : plainRows(options.plain));
        put(largePlace, options.large);
    }

    [[nodiscard]] Fields named(Fields const& more = {}) const
    {
        return more
            + Fields { { 0x010F, 2, 6, 48 }, { 0x0112, 3, 1, side(options_.orientation) },
                  { 0x8769, 4, 1, exif } };
    }

    void writeExif(std::size_t noteBytes = 0)
    {
        auto const size = options_.shown.width > 0 ? options_.shown : options_.sensor;
        Fields fields { { 0xA001, 3, 1, options_.isAdobeRgb ? 0xFFFFU : 1U },
            { 0xA002, 4, 1, side(size.width) }, { 0xA003, 4, 1, side(size.height) },
            { 0xA005, 4, 1, interop } };
        if (noteBytes > 0)
            fields.insert(fields.begin(), { 0x927C, 7, noteBytes, note });
        directory(exif, fields);
        directory(interop, { { 1, 2, 4 } });
        text(interop + 10, options_.isAdobeRgb ? "R03" : "R98");
    }

    [[nodiscard]] Fields below(std::vector<std::size_t> const& directories)
    {
        for (std::size_t i = 0; i < directories.size(); ++i)
            u32(children + 4 * i, directories[i]);
        auto const isOne = directories.size() == 1;
        return { { 0x014A, 4, directories.size(), isOne ? directories.front() : children } };
    }

private:
    RawOptions const& options_;
};

FileBytes writeCr2(RawOptions const& options)
{
    CameraFile file(options);
    file.text(8, "CR");
    file.u16(10, 2);
    file.directory(first, file.named(stripFields(largePlace, options.large, 6)), second);
    file.directory(second, jpegFields(smallPlace, options.small));
    file.writeExif();
    return file.bytes;
}

FileBytes writeNef(RawOptions const& options)
{
    CameraFile file(options, true);
    file.directory(first, file.named(file.below({ second })));
    file.directory(second, sensorFields(options, 34713));
    file.writeExif(1024);
    file.text(note, std::string_view("Nikon\0\2\x10\0\0", 10));
    file.tiffHeader(note + 10, 8);
    file.directory(note + 18, { { 0x0011, 4, 1, 64 } });
    file.directory(note + 10 + 64, jpegFields(largePlace - note - 10, options.large));
    return file.bytes;
}

FileBytes writeArw(RawOptions const& options)
{
    CameraFile file(options);
    file.directory(
        first, file.named(file.below({ third }) + jpegFields(largePlace, options.large)), second);
    file.directory(second, jpegFields(smallPlace, options.small));
    file.directory(third, sensorFields(options, 32767));
    file.writeExif();
    return file.bytes;
}

FileBytes writeSrf(RawOptions const& options)
{
    CameraFile file(options);
    file.directory(first, file.named(jpegFields(largePlace, options.large)), second);
    file.directory(second, jpegFields(smallPlace, options.small));
    file.writeExif();
    return file.bytes;
}

FileBytes writeDng(RawOptions const& options)
{
    CameraFile file(options);
    auto const dng = Fields { { 0xC612, 4, 1, 0x401 } };
    file.directory(
        first, file.named(plainFields(options.plain) + file.below({ second, third }) + dng));
    file.directory(second, sensorFields(options));
    file.directory(third, stripFields(largePlace, options.large, 7));
    file.writeExif();
    return file.bytes;
}

FileBytes writeOrf(RawOptions const& options, bool isOld)
{
    CameraFile file(options);
    file.text(0, "IIRO");
    file.directory(first, file.named(sensorFields(options)));
    file.writeExif(1024);
    // Offsets count from the note in newer files, and from the file's start in older ones.
    auto const base = isOld ? 0 : note;
    auto const directory = isOld ? note + 8 : note + 12;
    file.text(
        note, isOld ? std::string_view("OLYMP\0\1\0", 8) : std::string_view("OLYMPUS\0II\3\0", 12));
    file.directory(directory,
        { { 0x0100, 7, options.small.size(), smallPlace - base },
            { 0x2020, 4, 1, note + 128 - base } });
    file.directory(note + 128,
        { { 0x0101, 4, 1, largePlace - base }, { 0x0102, 4, 1, options.large.size() } });
    return file.bytes;
}

FileBytes writeRw2(RawOptions const& options)
{
    CameraFile file(options);
    file.text(0, std::string_view("IIU\0", 4));
    auto const right = side(options.sensor.width) + 8;
    auto const bottom = side(options.sensor.height) + 6;
    file.directory(first,
        file.named({ { 0x0002, 3, 1, right + 60 }, { 0x0003, 3, 1, bottom + 10 },
            { 0x0004, 3, 1, 6 }, { 0x0005, 3, 1, 8 }, { 0x0006, 3, 1, bottom },
            { 0x0007, 3, 1, right }, { 0x002E, 7, options.large.size(), largePlace } }));
    return file.bytes;
}

FileBytes writePef(RawOptions const& options, bool isOld)
{
    CameraFile file(options, isOld);
    file.directory(first, file.named(sensorFields(options, 65535)), second);
    file.directory(second, jpegFields(smallPlace, options.small));
    file.writeExif(1024);
    file.text(note, isOld ? std::string_view("AOC\0MM", 6) : std::string_view("PENTAX \0II", 10));
    file.directory(note + (isOld ? 6 : 10),
        { { 0x0003, 4, 1, options.large.size() },
            { 0x0004, 4, 1, isOld ? largePlace : largePlace - note } });
    return file.bytes;
}

FileBytes writeSrw(RawOptions const& options)
{
    CameraFile file(options);
    file.directory(first, file.named(file.below({ second })));
    file.directory(second, sensorFields(options, 32770));
    file.writeExif(1024);
    file.directory(note, { { 0x0001, 7, 4, 0 }, { 0x0035, 4, 1, note + 128 } });
    file.directory(note + 128, jpegFields(largePlace, options.large));
    return file.bytes;
}

FileBytes writeHasselblad(RawOptions const& options)
{
    CameraFile file(options, true);
    file.directory(first, file.named(plainFields(options.plain) + file.below({ second, third })));
    file.directory(second, sensorFields(options));
    file.directory(third, jpegFields(largePlace, options.large));
    file.writeExif();
    return file.bytes;
}

FileBytes writePhaseOne(RawOptions const& options)
{
    CameraFile file(options);
    file.text(8, "IIIITwaR");
    file.u32(16, 0x5000 - 8);
    file.u32(0x5000, 2);
    std::array<std::size_t, 8> const entries { 0x10C, 1, 4, side(options.sensor.width), 0x10D, 1, 4,
        side(options.sensor.height) };
    for (std::size_t i = 0; i < entries.size(); ++i)
        file.u32(0x5008 + 4 * i, entries[i]);
    file.directory(first, file.named(plainFields(options.plain)), second);
    file.directory(second, jpegFields(largePlace, options.large));
    return file.bytes;
}

FileBytes writeKdc(RawOptions const& options)
{
    CameraFile file(options, true);
    file.directory(first,
        file.named(plainFields(options.plain) + file.below({ second })
            + Fields { { 0xFE00, 4, 1, third } }));
    file.directory(second, sensorFields(options, 65000));
    file.directory(third, stripFields(largePlace, options.large, 6));
    file.writeExif();
    return file.bytes;
}

FileBytes writeErf(RawOptions const& options)
{
    CameraFile file(options);
    file.directory(first, file.named(plainFields(options.plain) + file.below({ second })));
    file.directory(second, sensorFields(options, 32769));
    file.writeExif(1024);
    file.text(note, std::string_view("EPSON\0\1\0", 8));
    file.directory(note + 8, { { 0x0280, 7, options.large.size(), largePlace } });
    return file.bytes;
}

FileBytes writeMos(RawOptions const& options)
{
    constexpr std::size_t packets = largePlace - 104;
    CameraFile file(options, true);
    file.directory(first,
        file.named(
            sensorFields(options) + Fields { { 0x8606, 7, 104 + options.large.size(), packets } }));
    for (auto const at : { packets, packets + 52 })
        file.text(at, "PKTS");
    file.text(packets + 8, "Something_else");
    file.text(packets + 60, "JPEG_preview_data");
    file.u32(packets + 100, options.large.size());
    return file.bytes;
}

FileBytes writeRaf(RawOptions const& options)
{
    FileLayout file(true);
    file.text(0, "FUJIFILMCCD-RAW 0201");
    file.u32(84, largePlace);
    file.u32(88, options.large.size());
    file.u32(92, second);
    file.u32(96, 64);
    file.u32(second, 3);
    file.u16(second + 4, 0x0111);
    file.u16(second + 6, 4);
    file.u16(second + 8, side(options.sensor.height));
    file.u16(second + 10, side(options.sensor.width));
    file.u16(second + 12, 0x0130);
    file.u16(second + 14, 2);
    file.u16(second + 16, 0x0108);
    file.u16(second + 18, 0x0115);
    file.u16(second + 20, 4);
    auto const shape = options.shown.width > 0 ? options.shown : options.sensor;
    file.u16(second + 22, side(shape.height));
    file.u16(second + 24, side(shape.width));
    file.put(largePlace, options.large);
    return file.bytes;
}

FileBytes writeMrw(RawOptions const& options)
{
    constexpr std::size_t tiff = 0x100;
    FileLayout file(true);
    file.text(0, std::string_view("\0MRM", 4));
    file.u32(4, sensorPlace - 8);
    file.text(8, std::string_view("\0PRD", 4));
    file.u32(12, tiff - 24);
    file.u16(16 + 12, side(options.sensor.height));
    file.u16(16 + 14, side(options.sensor.width));
    file.text(tiff - 8, std::string_view("\0TTW", 4));
    file.u32(tiff - 4, sensorPlace - tiff);
    file.tiffHeader(tiff, 8);
    file.directory(
        tiff + 8, { { 0x0112, 3, 1, side(options.orientation) }, { 0x8769, 4, 1, exif } });
    file.directory(tiff + exif, { { 0x927C, 7, 1024, note } });
    file.directory(
        tiff + note, { { 0x0088, 4, 1, largePlace }, { 0x0089, 4, 1, options.large.size() } });
    // These cameras overwrite the first byte of the preview.
    file.put(tiff + largePlace, options.large);
    file.bytes[tiff + largePlace] = 2;
    return file.bytes;
}

FileBytes writeCrw(RawOptions const& options)
{
    constexpr std::size_t start = 26;
    FileLayout file;
    file.text(0, "II");
    file.u32(2, start);
    file.text(6, "HEAPCCDR");
    auto const entry = [&](std::size_t at, unsigned tag, std::size_t length, std::size_t offset) {
        file.u16(at, tag);
        file.u32(at + 2, length);
        file.u32(at + 6, offset);
    };
    file.put(smallPlace, options.small);
    file.put(largePlace, options.large);
    // The heap of properties, with its directory and where that is at the end.
    file.u32(0x1000, side(options.sensor.width));
    file.u32(0x1004, side(options.sensor.height));
    file.u32(0x100C, degreesOf(options.orientation));
    file.u16(0x1020, 1);
    entry(0x1022, 0x1810, 28, 0);
    file.u32(0x102C, 0x20);
    auto const table = std::max(sensorPlace, options.fileBytes) - 64;
    file.u16(table, 3);
    entry(table + 2, 0x2007, options.large.size(), largePlace - start);
    entry(table + 12, 0x2008, options.small.size(), smallPlace - start);
    entry(table + 22, 0x300A, 0x30, 0x1000 - start);
    file.u32(table + 60, table - start);
    return file.bytes;
}

FileBytes writeX3f(RawOptions const& options)
{
    FileLayout file;
    file.text(0, "FOVb");
    file.u32(4, 0x20003);
    file.u32(28, side(options.sensor.width));
    file.u32(32, side(options.sensor.height));
    file.u32(36, degreesOf(options.orientation));
    auto const image = [&](std::size_t place, std::size_t format, PixelSize size) {
        file.text(place - 28, "SECi");
        file.u32(place - 28 + 12, format);
        file.u32(place - 28 + 16, side(size.width));
        file.u32(place - 28 + 20, side(size.height));
        file.u32(place - 28 + 24, side(size.width) * 3);
    };
    auto const plain = plainRows(options.plain);
    image(smallPlace, 3, options.plain.size);
    file.put(smallPlace, plain);
    image(largePlace, 18, {});
    file.put(largePlace, options.large);
    auto const table = std::max(sensorPlace, options.fileBytes) - 64;
    file.text(table, "SECd");
    file.u32(table + 8, 2);
    auto const entry = [&](std::size_t at, std::size_t offset, std::size_t length) {
        file.u32(at, offset);
        file.u32(at + 4, length);
        file.text(at + 8, "IMA2");
    };
    entry(table + 12, smallPlace - 28, plain.size() + 28);
    entry(table + 24, largePlace - 28, options.large.size() + 28);
    file.u32(table + 60, table);
    return file.bytes;
}

FileBytes writeCr3(RawOptions const& options)
{
    FileLayout file(true);
    std::size_t at = 0;
    auto const box = [&](std::string_view name, std::size_t length) {
        file.u32(at, length);
        file.text(at + 4, name);
        at += 8;
    };
    box("ftyp", 24);
    file.text(at, "crx ");
    at = 24;
    box("moov", 0x1000 - 24);
    box("uuid", 0x800);
    file.u32(at, 0x85C0B687);
    at += 16;
    box("CMT1", 0x100);
    FileLayout directory;
    directory.tiffHeader(0, 8);
    directory.directory(8,
        { { 0x0100, 4, 1, side(options.sensor.width) },
            { 0x0101, 4, 1, side(options.sensor.height) },
            { 0x0112, 3, 1, side(options.orientation) } });
    file.put(at, directory.bytes);
    at += 0xF8;
    box("CMT2", 0x100);
    FileLayout exifBlock;
    exifBlock.tiffHeader(0, 8);
    exifBlock.directory(8, { { 0xA001, 3, 1, options.isAdobeRgb ? 2U : 1U } });
    file.put(at, exifBlock.bytes);
    at = 24 + 8 + 0x800;
    for (auto const* name : { "trak", "mdia", "minf", "stbl" })
        box(name, 0x200);
    box("stsz", 20);
    file.u32(at + 4, options.large.size());
    file.u32(at + 8, 1);
    at += 12;
    box("co64", 24);
    file.u32(at + 4, 1);
    file.u32(at + 12, largePlace);
    at = 0x1000;
    box("uuid", 0x20000 - 0x1000);
    file.u32(at, 0xEAF42B5E);
    at += 24;
    box("PRVW", options.small.size() + 24);
    file.put(at + 16, options.small);
    file.put(largePlace, options.large);
    at = 0x20000;
    // The data, with a length of 64 bits.
    box("mdat", 1);
    file.u32(at + 4, 0x100000);
    return file.bytes;
}

FileBytes writeBy(RawKind kind, RawOptions const& options)
{
    switch (kind) {
    case RawKind::cr2:
        return writeCr2(options);
    case RawKind::cr3:
        return writeCr3(options);
    case RawKind::crw:
        return writeCrw(options);
    case RawKind::nef:
        return writeNef(options);
    case RawKind::arw:
        return writeArw(options);
    case RawKind::srf:
        return writeSrf(options);
    case RawKind::dng:
        return writeDng(options);
    case RawKind::raf:
        return writeRaf(options);
    case RawKind::orf:
    case RawKind::oldOrf:
        return writeOrf(options, kind == RawKind::oldOrf);
    case RawKind::rw2:
        return writeRw2(options);
    case RawKind::pef:
    case RawKind::oldPef:
        return writePef(options, kind == RawKind::oldPef);
    case RawKind::srw:
        return writeSrw(options);
    case RawKind::hasselblad:
        return writeHasselblad(options);
    case RawKind::phaseOne:
        return writePhaseOne(options);
    case RawKind::mrw:
        return writeMrw(options);
    case RawKind::kdc:
        return writeKdc(options);
    case RawKind::erf:
        return writeErf(options);
    case RawKind::mos:
        return writeMos(options);
    case RawKind::x3f:
        return writeX3f(options);
    }
    return {};
}

} // namespace

std::string_view nameOf(RawKind kind)
{
    constexpr std::array<std::string_view, rawKinds> names { "CR2", "CR3", "CRW", "NEF", "ARW",
        "SRF", "DNG", "RAF", "ORF", "old ORF", "RW2", "PEF", "old PEF", "SRW", "3FR", "IIQ", "MRW",
        "KDC", "ERF", "MOS", "X3F" };
    return names[static_cast<std::size_t>(kind)];
}

FileBytes writeRaw(RawKind kind, RawOptions const& options)
{
    auto bytes = writeBy(kind, options);
    bytes.resize(std::max({ bytes.size(), sensorPlace, options.fileBytes }));
    return bytes;
}

FileBytes writeSensorDng(RgbaPixels const& pixels, SensorDngOptions const& options)
{
    constexpr std::size_t matrix = 0x300;
    constexpr std::size_t neutral = 0x380;
    constexpr std::size_t crop = 0x3A0;
    constexpr std::size_t preview = 0x180;
    constexpr std::size_t data = 0x400;
    // XYZ to linear sRGB, in ten thousandths: the sensor has the screen's primaries.
    constexpr std::array<int, 9> toCamera { 32406, -15372, -4986, -9689, 18758, 415, 557, -2040,
        10570 };
    FileLayout file;
    file.tiffHeader(0, 8);
    file.text(0x2F0, "Maker");
    for (std::size_t i = 0; i < toCamera.size(); ++i) {
        file.u32(matrix + 8 * i, static_cast<std::uint32_t>(toCamera[i]));
        file.u32(matrix + 8 * i + 4, 10000);
    }
    for (std::size_t i = 0; i < 6; ++i)
        file.u32(neutral + 4 * i, 1);
    auto const [width, height] = pixels.size;
    Fields fields { { 0x00FE, 4, 1, 0 }, { 0x0100, 4, 1, side(width) },
        { 0x0101, 4, 1, side(height) }, { 0x0102, 3, 1, 16 }, { 0x0103, 3, 1, 1 },
        { 0x0106, 3, 1, 32803 }, { 0x010F, 2, 6, 0x2F0 }, { 0x0110, 2, 6, 0x2F0 },
        { 0x0111, 4, 1, data }, { 0x0112, 3, 1, side(options.orientation) }, { 0x0115, 3, 1, 1 },
        { 0x0116, 4, 1, side(height) }, { 0x0117, 4, 1, side(width) * side(height) * 2 },
        { 0x828D, 3, 2, 0x390 }, { 0x828E, 1, 4, 0x02010100 }, { 0xC612, 1, 4, 0x00000401 },
        { 0xC614, 2, 6, 0x2F0 }, { 0xC61D, 4, 1, 0xFFFF }, { 0xC621, 10, 9, matrix },
        { 0xC628, 5, 3, neutral }, { 0xC65A, 3, 1, 21 } };
    if (options.crop.width > 0)
        fields.push_back({ 0xC620, 4, 2, crop });
    if (!options.preview.empty())
        fields.push_back({ 0x014A, 4, 1, preview });
    file.directory(8, fields);
    file.u32(crop, side(options.crop.width));
    file.u32(crop + 4, side(options.crop.height));
    auto const end = data + side(width) * side(height) * 2;
    file.directory(preview, stripFields(end, options.preview, 7));
    file.put(end, options.preview);
    // The mosaic repeats after two columns and two rows.
    file.u32(8 + 2 + 12 * 13 + 8, 0x00020002);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            auto const channel = y % 2 + x % 2;
            auto const level = pixels.at(x, y)[channel] / 255.0;
            file.u16(data + side(y * width + x) * 2,
                static_cast<std::size_t>(60000 * std::pow(level, 2.2)));
        }
    }
    return file.bytes;
}

void FileLayout::number(std::size_t at, std::size_t value, int count)
{
    FileBytes part;
    for (int i = 0; i < count; ++i) {
        auto const shift = 8 * (isBigEndian_ ? count - 1 - i : i);
        part.push_back(static_cast<std::uint8_t>(value >> shift));
    }
    put(at, part);
}

void FileLayout::put(std::size_t at, FileBytes const& part)
{
    bytes.resize(std::max(bytes.size(), at + part.size()));
    std::copy(part.begin(), part.end(), bytes.begin() + static_cast<std::ptrdiff_t>(at));
}

void FileLayout::text(std::size_t at, std::string_view part)
{
    put(at, FileBytes(part.begin(), part.end()));
}

void FileLayout::u16(std::size_t at, std::size_t value)
{
    number(at, value, 2);
}

void FileLayout::u32(std::size_t at, std::size_t value)
{
    number(at, value, 4);
}

void FileLayout::directory(std::size_t at, std::vector<Field> const& fields, std::size_t next)
{
    u16(at, fields.size());
    at += 2;
    for (auto const& field : fields) {
        constexpr unsigned isShort = 3;
        u16(at, field.tag);
        u16(at + 2, field.type);
        u32(at + 4, field.count);
        u32(at + 8, 0);
        if (field.type == isShort)
            u16(at + 8, field.value);
        else
            u32(at + 8, field.value);
        at += 12;
    }
    u32(at, next);
}

void FileLayout::tiffHeader(std::size_t at, std::size_t directory)
{
    text(at, isBigEndian_ ? "MM" : "II");
    u16(at + 2, 42);
    u32(at + 4, directory);
}

} // namespace pixelhain
