#include "codecs/CodecImageTypes.h"
#include <doctest/doctest.h>

using namespace pixelhain;

TEST_CASE("the extensions of photos are known, in lower case and without a dot")
{
    CodecImageTypes const types;
    for (auto const* known : { "jpg", "jpeg", "jpe", "jfif", "mpo", "png", "apng", "gif", "webp",
             "tif", "tiff", "bmp", "dib", "heic", "heics", "heif", "heifs", "hif", "avif", "avifs",
             "jxl", "cr2", "cr3", "crw", "nef", "nrw", "arw", "sr2", "srf", "dng", "raf", "orf",
             "rw2", "rwl", "pef", "srw", "3fr", "iiq", "mrw", "kdc", "dcr", "erf", "mef", "mos",
             "x3f", "jp2", "j2k", "j2c", "jpc", "jpf", "jpx", "ico", "pnm", "pam", "pbm", "pgm",
             "ppm", "tga", "qoi", "hdr", "exr" }) {
        CAPTURE(known);
        CHECK(types.isImageExtension(known));
    }
    for (auto const* other :
        { "", "txt", "JPG", ".jpg", "jpgx", "pdf", "xcf", "djvu", "mov", "mp4", "svg", "psd" }) {
        CAPTURE(other);
        CHECK_FALSE(types.isImageExtension(other));
    }
}
