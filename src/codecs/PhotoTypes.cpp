#include "codecs/PhotoTypes.h"
#include <algorithm>
#include <array>

namespace pixelhain {

std::span<PhotoType const> photoTypes()
{
    static constexpr auto types = std::to_array<PhotoType>({
        { "3fr", "image/tiff" },
        { "apng", "image/apng" },
        { "arw", "image/x-sony-arw" },
        { "avif", "image/avif" },
        { "avifs", "image/avif" },
        { "bmp", "image/bmp" },
        { "cr2", "image/x-canon-cr2" },
        { "cr3", "image/x-canon-cr3" },
        { "crw", "image/x-canon-crw" },
        { "dcr", "image/x-kodak-dcr" },
        { "dib", "image/bmp" },
        { "dng", "image/x-adobe-dng" },
        { "erf", "image/tiff" },
        { "exr", "image/x-exr" },
        { "gif", "image/gif" },
        { "hdr", "image/vnd.radiance" },
        { "heic", "image/heif" },
        { "heics", "image/heif" },
        { "heif", "image/heif" },
        { "heifs", "image/heif" },
        { "hif", "image/heif" },
        { "ico", "image/vnd.microsoft.icon" },
        { "iiq", "image/tiff" },
        { "j2c", "image/x-jp2-codestream" },
        { "j2k", "image/x-jp2-codestream" },
        { "jfif", "image/jpeg" },
        { "jp2", "image/jp2" },
        { "jpc", "image/x-jp2-codestream" },
        { "jpe", "image/jpeg" },
        { "jpeg", "image/jpeg" },
        { "jpf", "image/jpx" },
        { "jpg", "image/jpeg" },
        { "jpx", "image/jpx" },
        { "jxl", "image/jxl" },
        { "kdc", "image/x-kodak-kdc" },
        { "mef", "image/tiff" },
        { "mos", "image/tiff" },
        { "mpo", "image/jpeg" },
        { "mrw", "image/x-minolta-mrw" },
        { "nef", "image/x-nikon-nef" },
        { "nrw", "image/x-nikon-nrw" },
        { "orf", "image/x-olympus-orf" },
        { "pam", "image/x-portable-anymap" },
        { "pbm", "image/x-portable-bitmap" },
        { "pef", "image/x-pentax-pef" },
        { "pgm", "image/x-portable-graymap" },
        { "png", "image/png" },
        { "pnm", "image/x-portable-anymap" },
        { "ppm", "image/x-portable-pixmap" },
        { "qoi", "image/qoi" },
        { "raf", "image/x-fuji-raf" },
        { "rw2", "image/x-panasonic-rw2" },
        { "rwl", "image/tiff" },
        { "sr2", "image/x-sony-sr2" },
        { "srf", "image/x-sony-srf" },
        { "srw", "image/tiff" },
        { "tga", "image/x-tga" },
        { "tif", "image/tiff" },
        { "tiff", "image/tiff" },
        { "webp", "image/webp" },
        { "x3f", "image/x-sigma-x3f" },
    });
    static_assert(std::ranges::is_sorted(types, {}, &PhotoType::extension));
    return types;
}

} // namespace pixelhain
