#include "codecs/ImageCodecs.h"
#include "codecs/CodecSupport.h"
#include "support/CodedWriters.h"
#include <doctest/doctest.h>

using namespace pixelhain;

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
