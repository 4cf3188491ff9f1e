#include "codecs/JpegCode.h"
#include <doctest/doctest.h>
#include <vector>

using namespace pixelhain;

namespace {

std::vector<int> codesThat(bool (*holds)(std::uint8_t))
{
    std::vector<int> codes;
    for (int code = 0; code < 256; ++code)
        if (holds(static_cast<std::uint8_t>(code)))
            codes.push_back(code);
    return codes;
}

} // namespace

TEST_CASE("thirteen kinds of frames are told from the tables among them")
{
    CHECK(codesThat(JpegCode::isFrame)
        == std::vector {
            0xC0, 0xC1, 0xC2, 0xC3, 0xC5, 0xC6, 0xC7, 0xC9, 0xCA, 0xCB, 0xCD, 0xCE, 0xCF });
}

TEST_CASE("restarts, the start of an image and what programs keep to themselves stand alone")
{
    CHECK(codesThat(JpegCode::standsAlone)
        == std::vector { 0x01, 0xD0, 0xD1, 0xD2, 0xD3, 0xD4, 0xD5, 0xD6, 0xD7, 0xD8 });
}

TEST_CASE("sixteen kinds of application data and comments are notes")
{
    auto const notes = codesThat(JpegCode::isNote);
    CHECK(notes.size() == 17);
    CHECK(notes.front() == 0xE0);
    CHECK(notes.back() == 0xFE);
}
