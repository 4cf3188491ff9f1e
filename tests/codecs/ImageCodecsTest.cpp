#include "codecs/ImageCodecs.h"
#include "codecs/CodecSupport.h"
#include "support/CodedWriters.h"
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

TEST_CASE("the first bytes choose the codec, whatever the file is called")
{
    struct Case {
        FileBytes bytes;
        std::string_view type;
    };
    auto const pixels = sampleColors({ 10, 10 });
    GifFrame frame;
    frame.pixels = pixels;
    for (auto const& [bytes, type] :
        { Case { writeJpeg(pixels), "public.jpeg" }, Case { writePng(pixels), "public.png" },
            Case { writeGif({ 10, 10 }, { frame }), "com.compuserve.gif" },
            Case { writeWebp(pixels), "org.webmproject.webp" },
            Case { writeTiff(pixels), "public.tiff" },
            Case { writeBmp(pixels), "com.microsoft.bmp" },
            Case { writeHeif(pixels), "public.avif" },
            Case { writeJxl(pixels), "public.jpeg-xl" } }) {
        auto const source = opened(bytes);
        REQUIRE(source);
        CHECK(source->typeIdentifier() == type);
    }
}
