#include "codecs/PhotoCollection.h"
#include "base/Orientation.h"
#include "support/Places.h"
#include <doctest/doctest.h>

using namespace pixelhain;

namespace {

std::vector<std::string> const ours { "jpeg", "png", "gif", "webp", "tiff", "bmp", "heif", "avif",
    "jxl" };

// Formats with turns of their own: what EXIF says beside them is no more than a note.
bool turnsItself(PhotoAnswers const& row)
{
    auto const& path = row.at("path");
    return path.starts_with("heif/") || path.starts_with("avif/") || path.starts_with("jxl/");
}

void checkPicture(PhotoAnswers const& row, Bitmap const& bitmap)
{
    auto const reference
        = opened(fileBytes(photosFolder() + "/reference/" + row.at("path") + ".png"));
    REQUIRE(reference);
    auto const wanted = reference->decode(256);
    REQUIRE(wanted);
    CHECK(bitmap.size == wanted->bitmap.size);
    if (isLoose(row))
        CHECK(likeness(bitmap, wanted->bitmap) > 0.9);
    else
        CHECK(difference(bitmap, wanted->bitmap) <= 3);
}

} // namespace

TEST_CASE("every photo of the collection says what its table says")
{
    auto const rows = photoAnswers(ours);
    if (rows.empty()) {
        MESSAGE("skipped: no collection of photos beside the checkout");
        return;
    }
    for (auto const& row : rows) {
        if (row.at("kind") != "ok")
            continue;
        CAPTURE(row.at("path"));
        auto const source = opened(photoBytes(row));
        CHECK(source);
        if (!source)
            continue;
        auto const stored = source->pixelSize();
        REQUIRE(stored);
        CHECK(sizeText(uprightSize(*stored, source->orientation()))
            == row.at("width") + "x" + row.at("height"));
        CHECK(std::to_string(source->frameCount()) == row.at("frames"));
        auto const type = source->typeIdentifier();
        auto const canMove = type == "com.compuserve.gif" || type == "public.png"
            || type == "org.webmproject.webp";
        CHECK((canMove && source->frameCount() > 1) == (row.at("animation") == "animated"));
        auto const& orientation = row.at("orientation");
        if (turnsItself(row))
            continue;
        CHECK(std::to_string(source->orientation()) == (orientation == "-" ? "1" : orientation));
    }
}

TEST_CASE("every photo of the collection looks like its reference")
{
    for (auto const& row : photoAnswers(ours)) {
        if (row.at("kind") != "ok")
            continue;
        CAPTURE(row.at("path"));
        auto const source = opened(photoBytes(row));
        if (!source)
            continue;
        auto const image = source->decode(256);
        CHECK(image);
        if (image)
            checkPicture(row, image->bitmap);
    }
}

TEST_CASE("the previews of the collection's photos are found and look like their picture")
{
    for (auto const& row : photoAnswers(ours)) {
        CAPTURE(row.at("path"));
        if (row.at("kind") != "ok")
            continue;
        auto const source = opened(photoBytes(row));
        if (!source)
            continue;
        auto const sizes = source->previews();
        for (std::size_t i = 0; i < sizes.size(); ++i) {
            CAPTURE(sizeText(sizes[i]));
            auto const preview = source->decodePreview(i, 256);
            CHECK(preview);
            if (!preview)
                continue;
            CHECK(preview->bitmap.size == fittedSize(sizes[i], 256));
            auto const image = source->decode(preview->bitmap.size.longestSide());
            REQUIRE(image);
            CHECK(likeness(resampled(preview->bitmap, image->bitmap.size), image->bitmap) > 0.85);
        }
    }
}

TEST_CASE("the larger previews of the collection's photos are found")
{
    // Whole previews of other kinds, or those that show something else, are left out.
    for (auto const& row : photoAnswers({ "jpeg" })) {
        auto const& previews = row.at("previews");
        if (previews == "-" || row.at("path").find("kodak") != std::string::npos)
            continue;
        CAPTURE(row.at("path"));
        auto const source = opened(photoBytes(row));
        REQUIRE(source);
        REQUIRE(source->previews().size() == 2);
        auto const width = source->previews().back().width;
        CHECK(std::to_string(width) == previews.substr(0, previews.find('x')));
    }
}

TEST_CASE("odd and broken files of the collection do no harm")
{
    for (auto const& row : photoAnswers({ "jpeg", "png", "gif", "webp", "tiff", "bmp", "broken",
             "heif", "avif", "jxl", "raw" })) {
        auto const& kind = row.at("kind");
        CAPTURE(row.at("path"));
        if (kind == "ok")
            continue;
        auto const source = opened(photoBytes(row));
        auto const image = source ? source->decode(256) : std::nullopt;
        if (!mayBeShown(row))
            CHECK_FALSE(image);
        if (source) {
            for (std::size_t i = 0; i < source->previews().size(); ++i)
                (void)source->decodePreview(i, 256);
            (void)source->frameCount();
            (void)source->decodeWhole();
        }
    }
}
