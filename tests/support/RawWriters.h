#pragma once
#include "support/ImageWriters.h"
#include <string_view>

namespace pixelhain {

/// The ways in which cameras pack their pictures, with one writer each.
enum class RawKind : std::uint8_t {
    cr2,
    cr3,
    crw,
    nef,
    arw,
    srf,
    dng,
    raf,
    orf,
    oldOrf,
    rw2,
    pef,
    oldPef,
    srw,
    hasselblad,
    phaseOne,
    mrw,
    kdc,
    erf,
    mos,
    x3f,
};
inline constexpr int rawKinds = static_cast<int>(RawKind::x3f) + 1;
[[nodiscard]] std::string_view nameOf(RawKind kind);

/// The directories of a RAW file and the finished pictures in it; of the sensor's data only the
/// room is there.
struct RawOptions {
    PixelSize sensor;
    PixelSize shown; ///< what EXIF and RAF say that the camera was set to; empty: all
    int orientation = 1; ///< kinds that state degrees: only those without mirroring
    FileBytes small; ///< a JPEG; in kinds with a plain thumbnail `plain` takes its place
    FileBytes large; ///< a JPEG
    RgbaPixels plain;
    bool isAdobeRgb = false; ///< said by EXIF, in kinds built like a TIFF
    std::size_t fileBytes = 0; ///< the file is filled up to this
};
[[nodiscard]] FileBytes writeRaw(RawKind kind, RawOptions const& options);

/// A DNG with the data of a sensor that saw `pixels` through a mosaic of red, green and blue.
struct SensorDngOptions {
    int orientation = 1;
    PixelSize crop; ///< what is to be shown of it; empty: not stated
    FileBytes preview; ///< a JPEG; empty: none
};
[[nodiscard]] FileBytes writeSensorDng(
    RgbaPixels const& pixels, SensorDngOptions const& options = {});

/// A file laid out by hand: every part goes where it is said to go.
class FileLayout {
public:
    struct Field {
        unsigned tag = 0;
        unsigned type = 0; ///< 3 SHORT, 4 LONG, 7 UNDEFINED
        std::size_t count = 1;
        std::size_t value = 0; ///< or where the values lie
    };

    explicit FileLayout(bool isBigEndian = false)
        : isBigEndian_(isBigEndian)
    {
    }
    void put(std::size_t at, FileBytes const& part);
    void text(std::size_t at, std::string_view part);
    void u16(std::size_t at, std::size_t value);
    void u32(std::size_t at, std::size_t value);
    /// A directory of a TIFF, its fields in the order given.
    void directory(std::size_t at, std::vector<Field> const& fields, std::size_t next = 0);
    /// A TIFF header that names the first directory.
    void tiffHeader(std::size_t at, std::size_t directory);

    FileBytes bytes;

private:
    void number(std::size_t at, std::size_t value, int count);

    bool isBigEndian_;
};

} // namespace pixelhain
