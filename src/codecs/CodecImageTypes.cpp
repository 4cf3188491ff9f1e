#include "codecs/CodecImageTypes.h"
#include <algorithm>
#include <array>

namespace pixelhain {

bool CodecImageTypes::isImageExtension(std::string_view extension) const
{
    static constexpr auto known = std::to_array<std::string_view>({ "3fr", "apng", "arw", "avif",
        "avifs", "bmp", "cr2", "cr3", "crw", "dcr", "dib", "dng", "erf", "exr", "gif", "hdr",
        "heic", "heics", "heif", "heifs", "hif", "ico", "iiq", "j2c", "j2k", "jfif", "jp2", "jpc",
        "jpe", "jpeg", "jpf", "jpg", "jpx", "jxl", "kdc", "mef", "mos", "mpo", "mrw", "nef", "nrw",
        "orf", "pam", "pbm", "pef", "pgm", "png", "pnm", "ppm", "qoi", "raf", "rw2", "rwl", "sr2",
        "srf", "srw", "tga", "tif", "tiff", "webp", "x3f" });
    static_assert(std::ranges::is_sorted(known));
    return std::ranges::binary_search(known, extension);
}

} // namespace pixelhain
