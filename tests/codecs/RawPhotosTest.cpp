#include "base/Orientation.h"
#include "codecs/PhotoCollection.h"
#include "codecs/PreviewShape.h"
#include "support/Places.h"
#include <cstdio>
#include <doctest/doctest.h>

using namespace pixelhain;

namespace {

std::vector<PixelSize> sizesIn(std::string const& text)
{
    std::vector<PixelSize> sizes;
    std::istringstream stream(text);
    for (std::string word; stream >> word;) {
        PixelSize size;
        if (std::sscanf(word.c_str(), "%dx%d", &size.width, &size.height) == 2)
            sizes.push_back(size);
    }
    return sizes;
}

// Programs differ by the sensor's borders.
bool isNear(PixelSize a, PixelSize b)
{
    return std::abs(a.width - b.width) <= 0.02 * b.width
        && std::abs(a.height - b.height) <= 0.02 * b.height;
}

std::vector<PixelSize> allowedSizes(PhotoAnswers const& row)
{
    if (row.at("path") == "raw/fuji_s5pro_mini.raf")
        return { { 3030, 2036 }, { 4256, 1424 } };
    return sizesIn(row.at("width") + "x" + row.at("height"));
}

bool hasPictureInside(PhotoAnswers const& row)
{
    return row.at("path") != "raw/gopro_hero7.gpr";
}

Bitmap referenceOf(PhotoAnswers const& row)
{
    auto const source = opened(fileBytes(photosFolder() + "/reference/" + row.at("path") + ".png"));
    auto const image = source ? source->decode(256) : std::nullopt;
    return image ? image->bitmap : Bitmap {};
}

} // namespace

TEST_CASE("every RAW photo of the collection says what its table says")
{
    for (auto const& row : photoAnswers({ "raw" })) {
        CAPTURE(row.at("path"));
        auto const source = opened(photoBytes(row));
        REQUIRE(source);
        auto const stored = source->pixelSize();
        REQUIRE(stored);
        auto const upright = uprightSize(*stored, source->orientation());
        auto const allowed = allowedSizes(row);
        CAPTURE(sizeText(upright));
        CHECK(std::any_of(
            allowed.begin(), allowed.end(), [&](PixelSize size) { return isNear(upright, size); }));
        CHECK(source->frameCount() == 1);
        auto const& orientation = row.at("orientation");
        CHECK(std::to_string(source->orientation()) == (orientation == "-" ? "1" : orientation));
        auto const isDng = row.at("path").ends_with("dng") || row.at("path").ends_with("gpr");
        CHECK(source->typeIdentifier()
            == (isDng ? "com.adobe.raw-image" : "public.camera-raw-image"));
    }
}

TEST_CASE("the previews of every RAW photo of the collection are found, black bars left out")
{
    for (auto const& row : photoAnswers({ "raw" })) {
        CAPTURE(row.at("path"));
        auto const source = opened(photoBytes(row));
        REQUIRE(source);
        auto wanted = sizesIn(row.at("thumbnail"));
        for (auto const size : sizesIn(row.at("previews"))) {
            // Two skeletons hold one of 8 × 8, which shows no whole picture.
            if (size.width > 8)
                wanted.push_back(size);
        }
        auto const have = source->previews();
        REQUIRE(have.size() == wanted.size());
        auto const picture = uprightSize(*source->pixelSize(), source->orientation());
        for (std::size_t i = 0; i < have.size(); ++i) {
            CHECK(have[i].width == wanted[i].width);
            CHECK(have[i].height <= wanted[i].height);
            CHECK(hasSameShape(have[i], picture));
            auto const image = source->decodePreview(i, 0);
            REQUIRE(image);
            CHECK(image->bitmap.size == have[i]);
        }
        CHECK_FALSE(source->decodePreview(have.size(), 0));
    }
}

TEST_CASE("every RAW photo of the collection looks like its reference")
{
    for (auto const& row : photoAnswers({ "raw" })) {
        CAPTURE(row.at("path"));
        auto const source = opened(photoBytes(row));
        REQUIRE(source);
        auto const image = source->decode(256);
        CHECK(image.has_value() == hasPictureInside(row));
        if (!image)
            continue;
        auto wanted = referenceOf(row);
        REQUIRE_FALSE(wanted.isEmpty());
        if (wanted.size.height > image->bitmap.size.height)
            wanted
                = croppedBars(wanted, { 0, (wanted.size.height - image->bitmap.size.height) / 2 });
        REQUIRE(image->bitmap.size == wanted.size);
        // A picture of one colour has no structure.
        if (wanted.size.width > 8)
            CHECK(likeness(image->bitmap, wanted) > 0.98);
    }
}

TEST_CASE("a RAW photo is developed where its previews are too small")
{
    for (auto const& row : photoAnswers({ "raw" })) {
        if (row.at("path") != "raw/canon_s40.crw" && row.at("path") != "raw/kodak_dc50.kdc"
            && row.at("path") != "raw/linear_d90_orient6.dng")
            continue;
        CAPTURE(row.at("path"));
        auto const source = opened(photoBytes(row));
        REQUIRE(source);
        auto const longest = source->pixelSize()->longestSide();
        auto const whole = source->decode(longest);
        REQUIRE(whole);
        CHECK(whole->bitmap.size.longestSide() == longest);
        auto const half = source->decode(longest / 2 - 40);
        REQUIRE(half);
        CHECK(half->bitmap.size.longestSide() == longest / 2 - 40);
        // The reference may be the camera's own rendering, without the sensor's borders.
        auto const reference = referenceOf(row);
        CHECK(likeness(whole->bitmap, resampled(reference, whole->bitmap.size)) > 0.95);
        CHECK(likeness(half->bitmap, resampled(reference, half->bitmap.size)) > 0.95);
        auto const stored = source->decodeWhole();
        REQUIRE(stored);
        CHECK(isNear(stored->bitmap.size, *source->pixelSize()));
    }
}
