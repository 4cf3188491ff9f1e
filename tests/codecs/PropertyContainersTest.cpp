#include "codecs/CodecSupport.h"
#include "codecs/FileProperties.h"
#include "codecs/PropertyLimits.h"
#include "support/CodedWriters.h"
#include "support/ExifFields.h"
#include "support/RawWriters.h"
#include <doctest/doctest.h>

#include <zlib.h>

using namespace pixelhain;

namespace {

using Text = std::optional<std::string>;

FileBytes block()
{
    return exifOf({ ExifField::ascii(0x0110, "Model X") }, { ExifField::numbers(0x8827, { 200 }) });
}

std::string const packet = "<a aux:Lens='EF 50mm'/>";

FileBytes bytesOf(std::string_view text)
{
    return { text.begin(), text.end() };
}

PhotoProperties gathered(FileBytes const& bytes, MemoryBytes::Reads* reads = nullptr)
{
    return gatherProperties(MemoryBytes(bytes, reads));
}

bool statesBlock(FileBytes const& file)
{
    auto const properties = gathered(file);
    return properties.model == "Model X" && properties.isoSpeedRatings == std::vector { 200U };
}

enum class Place { front, end };

// A PNG with one chunk more, in front of the pixels or behind them.
FileBytes pngWith(std::string_view type, FileBytes const& contents, Place place = Place::front)
{
    auto file = writePng(RgbaPixels::filled({ 8, 8 }, 0x8040C0FF));
    ByteWriter chunk(true);
    chunk.u32(contents.size());
    chunk.text(type);
    chunk.raw(contents);
    chunk.u32(0);
    constexpr std::ptrdiff_t behindHeader = 33;
    constexpr std::ptrdiff_t lastChunk = 12;
    auto const at = place == Place::front ? file.begin() + behindHeader : file.end() - lastChunk;
    file.insert(at, chunk.bytes.begin(), chunk.bytes.end());
    return file;
}

FileBytes deflated(FileBytes const& plain)
{
    FileBytes packed(compressBound(plain.size()));
    auto length = packed.size();
    REQUIRE(compress(packed.data(), &length, plain.data(), plain.size()) == Z_OK);
    packed.resize(length);
    return packed;
}

std::string inDigits(FileBytes const& bytes, std::string const& kind)
{
    constexpr char const* digits = "0123456789abcdef";
    auto text = "\n" + kind + "\n" + std::string(8, ' ') + std::to_string(bytes.size());
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (i % 36 == 0)
            text += '\n';
        text += { digits[bytes[i] >> 4], digits[bytes[i] & 15] };
    }
    return text + "\n";
}

FileBytes joined(std::string const& head, FileBytes const& tail)
{
    auto bytes = bytesOf(head);
    bytes.insert(bytes.end(), tail.begin(), tail.end());
    return bytes;
}

void addBox(ByteWriter& out, std::string_view type, FileBytes const& contents)
{
    out.u32(8 + contents.size());
    out.text(type);
    out.raw(contents);
}

// The boxes of a JPEG XL in front of its picture.
FileBytes jxlWith(std::string_view type, FileBytes const& contents)
{
    ByteWriter out(true);
    addBox(out, "JXL ", { 13, 10, 0x87, 10 });
    addBox(out, "ftyp", bytesOf(std::string("jxl \0\0\0\0jxl ", 12)));
    addBox(out, type, contents);
    return out.bytes;
}

} // namespace

TEST_CASE("a PNG has its block in a chunk in front of the pixels or behind them")
{
    CHECK(statesBlock(pngWith("eXIf", block())));
    CHECK(statesBlock(pngWith("eXIf", block(), Place::end)));
}

TEST_CASE("a PNG may have its block in digits, as programs wrote it first")
{
    std::string const name = std::string("Raw profile type exif") + '\0';
    auto const prefixed = joined(std::string("Exif\0", 6), block());
    for (auto const& bytes : { block(), prefixed }) {
        auto const digits = bytesOf(inDigits(bytes, "exif"));
        CHECK(statesBlock(pngWith("tEXt", joined(name, digits))));
        CHECK(statesBlock(pngWith("zTXt", joined(name + '\0', deflated(digits)))));
    }
    auto const old = std::string("Raw profile type APP1") + '\0';
    auto const digits = bytesOf(inDigits(prefixed, "generic profile"));
    CHECK(statesBlock(pngWith("zTXt", joined(old + '\0', deflated(digits)))));
}

TEST_CASE("a PNG has its packet in a text, compressed or not")
{
    std::string const name = std::string("XML:com.adobe.xmp") + '\0';
    auto const plain = joined(name + std::string("\0\0\0\0", 4), bytesOf(packet));
    CHECK(gathered(pngWith("iTXt", plain)).auxLensModel == Text("EF 50mm"));
    auto const packed
        = joined(name + std::string("\1\0de\0Paket\0", 11), deflated(bytesOf(packet)));
    CHECK(gathered(pngWith("iTXt", packed)).auxLensModel == Text("EF 50mm"));
    auto const other = joined(std::string("Comment") + std::string(5, '\0'), bytesOf(packet));
    CHECK(gathered(pngWith("iTXt", other)).auxLensModel == Text());
}

TEST_CASE("texts of a PNG that are cut, odd or unpack without end state nothing")
{
    std::string const name = std::string("Raw profile type exif") + '\0';
    for (std::string const text :
        { "", "\n", "\n\n\n", "\nexif\n", "\nexif\n9\nzz", "\nexif\n1\n4" })
        CHECK_FALSE(statesBlock(pngWith("tEXt", bytesOf(name + text))));
    CHECK_FALSE(statesBlock(pngWith("zTXt", bytesOf(name))));
    CHECK_FALSE(statesBlock(pngWith("zTXt", bytesOf(name + std::string("\0xyz", 4)))));
    CHECK_FALSE(statesBlock(pngWith("iTXt", bytesOf(name + '\1'))));
    CHECK_FALSE(statesBlock(pngWith("tEXt", bytesOf("Raw profile type exif"))));
    FileBytes const zeros(std::size_t { 64 } << 20, '0');
    auto const bomb = pngWith("zTXt", joined(name + '\0', deflated(zeros)));
    CHECK_FALSE(statesBlock(bomb));
}

TEST_CASE("a PNG of chunks without end is given up")
{
    auto file = writePng(RgbaPixels::filled({ 8, 8 }, 0x8040C0FF));
    file.resize(file.size() + (1 << 20)); // zeroes are chunks of no length
    MemoryBytes::Reads reads;
    static_cast<void>(gathered(file, &reads));
    CHECK(reads.calls <= PropertyLimits::chunks + 10);
}

TEST_CASE("a WebP has block and packet in chunks")
{
    WebpOptions options;
    options.exif = block();
    auto file = writeWebp(RgbaPixels::filled({ 8, 8 }, 0x8040C0FF), options);
    CHECK(statesBlock(file));
    ByteWriter chunk;
    chunk.text("XMP ");
    chunk.u32(packet.size());
    chunk.text(packet);
    file.insert(file.end(), chunk.bytes.begin(), chunk.bytes.end());
    CHECK(gathered(file).auxLensModel == Text("EF 50mm"));
    file.resize(file.size() + (1 << 20));
    MemoryBytes::Reads reads;
    static_cast<void>(gathered(file, &reads));
    CHECK(reads.calls <= PropertyLimits::chunks + 10);
}

TEST_CASE("a JPEG XL has block and packet in boxes")
{
    auto const exif = joined(std::string(4, '\0'), block());
    CHECK(statesBlock(jxlWith("Exif", exif)));
    auto const behind = joined(std::string("\0\0\0\6Exif\0\0", 10), block());
    CHECK(statesBlock(jxlWith("Exif", behind)));
    CHECK(gathered(jxlWith("xml ", bytesOf(packet))).auxLensModel == Text("EF 50mm"));
    CHECK_FALSE(statesBlock(jxlWith("Exif", { 0xFF, 0xFF, 0xFF, 0xFF, 1 })));
    CHECK_FALSE(statesBlock(jxlWith("Exif", {})));
    CHECK_FALSE(statesBlock(jxlWith("brob", bytesOf("Exif nonsense"))));
    CHECK_FALSE(statesBlock({ 0xFF, 0x0A, 0xFF, 0xFF }));
}

TEST_CASE("a JPEG XL may compress its block")
{
    for (auto const isPacked : { false, true }) {
        JxlOptions options;
        options.exif = block();
        options.isPacked = isPacked;
        auto const file = writeJxl(RgbaPixels::filled({ 8, 8 }, 0x8040C0FF), options);
        REQUIRE_FALSE(file.empty());
        CHECK(statesBlock(file));
    }
}

TEST_CASE("a HEIF has block and packet as items, and a size that is not turned")
{
    HeifOptions options;
    options.exif = block();
    options.packet = packet;
    for (auto const orientation : { 1, 6 }) {
        options.orientation = orientation;
        auto const file = writeHeif(RgbaPixels::filled({ 64, 48 }, 0x8040C0FF), options);
        REQUIRE_FALSE(file.empty());
        CHECK(statesBlock(file));
        auto const properties = gathered(file);
        CHECK(properties.auxLensModel == Text("EF 50mm"));
        CHECK(properties.pixelSize == PixelSize { 64, 48 });
    }
}

TEST_CASE("a CR3 has its directories in boxes of their own")
{
    FileBytes const key { 0x85, 0xC0, 0xB6, 0x87, 0x82, 0x0F, 0x11, 0xE0, 0x81, 0x11, 0xF4, 0xCE,
        0x46, 0x2B, 0x6A, 0x48 };
    ByteWriter inner(true);
    inner.raw(key);
    addBox(inner, "CMT1", exifOf({ ExifField::ascii(0x010F, "Canon") }, {}));
    addBox(inner, "CMT2", exifOf({ ExifField::fraction(0x829D, { 4, 1 }) }, {}));
    addBox(inner, "CMT3", exifOf({ ExifField::ascii(0x0095, "RF50mm F1.8 STM") }, {}));
    ByteWriter movie(true);
    addBox(movie, "uuid", inner.bytes);
    ByteWriter file(true);
    addBox(file, "ftyp", bytesOf("crx \0\0\0\1crx isom"));
    addBox(file, "moov", movie.bytes);
    auto const properties = gathered(file.bytes);
    CHECK(properties.make == Text("Canon"));
    CHECK(properties.fNumber == 4);
    CHECK(properties.auxLensModel == Text("RF50mm F1.8 STM"));
}

TEST_CASE("a RAF states what its finished picture does")
{
    JpegOptions jpeg;
    jpeg.exif = block();
    RawOptions raw;
    raw.sensor = { 600, 400 };
    raw.large = writeJpeg(RgbaPixels::filled({ 300, 200 }, 0x8040C0FF), jpeg);
    CHECK(statesBlock(writeRaw(RawKind::raf, raw)));
    CHECK(statesBlock(writeRaw(RawKind::rw2, raw)));
    CHECK(statesBlock(writeRaw(RawKind::x3f, raw)));
}

TEST_CASE("an MRW has its block between others")
{
    ByteWriter file(true);
    file.text(std::string("\0MRM", 4));
    file.u32(16 + 8 + block().size());
    file.text(std::string("\0PRD", 4));
    file.u32(8);
    file.text("12345678");
    file.text(std::string("\0TTW", 4));
    file.u32(block().size());
    file.raw(block());
    CHECK(statesBlock(file.bytes));
}

TEST_CASE("a CRW names its camera")
{
    FileLayout file;
    file.text(0, "II");
    file.u32(2, 26);
    file.text(6, "HEAPCCDR");
    std::string const names = std::string("Canon") + '\0' + "Canon PowerShot S40" + '\0';
    file.text(40, names);
    file.u16(100, 1);
    file.u16(102, 0x080A);
    file.u32(104, names.size());
    file.u32(108, 40 - 26);
    file.u32(112, 100 - 26);
    auto const properties = gathered(file.bytes);
    CHECK(properties.make == Text("Canon"));
    CHECK(properties.model == Text("Canon PowerShot S40"));
}
