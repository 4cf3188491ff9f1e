#include "model/PhotoTest.h"
#include "codecs/CodecImageTypes.h"
#include "ports/ImageTypes.h"
#include <atomic>
#include <doctest/doctest.h>
#include <string>
#include <thread>
#include <vector>

using namespace pixelhain;

namespace {

// Knows nothing but counts what it is asked.
class CountingTypes final : public ImageTypes {
public:
    bool isImageExtension(std::string_view extension) const override
    {
        if (inside.exchange(true))
            overlapped = true;
        asked.emplace_back(extension);
        inside = false;
        return extension != "txt";
    }
    mutable std::vector<std::string> asked;
    mutable std::atomic<bool> inside = false;
    mutable std::atomic<bool> overlapped = false;
};

} // namespace

TEST_CASE("a file photo.JPG is a photo; one named photo without extension is not")
{
    CodecImageTypes types;
    PhotoTest test(types);
    CHECK(test.isImage(FileUrl("/a/photo.JPG")));
    CHECK_FALSE(test.isImage(FileUrl("/a/photo")));
    CHECK_FALSE(test.isImage(FileUrl("/a/photo.")));
    CHECK_FALSE(test.isImage(FileUrl("/a.jpg/photo")));
    CHECK_FALSE(test.isImage(FileUrl("/a/.jpg")));
    CHECK_FALSE(test.isImage(FileUrl("/a/notes.txt")));
}

TEST_CASE("drawing.svg, scan.pdf and layers.psd are never photos, whatever the codecs can do")
{
    CountingTypes types;
    PhotoTest test(types);
    for (char const* const name : { "drawing.svg", "drawing.SVGZ", "scan.pdf", "logo.ai",
             "logo.eps", "layers.psd", "LAYERS.PSD" })
        CHECK_FALSE(test.isImageName(name));
    CHECK(types.asked.empty());
}

TEST_CASE("an extension is asked for once, in lower case")
{
    CountingTypes types;
    PhotoTest test(types);
    CHECK(test.isImageName("a.JPG"));
    CHECK(test.isImageName("b.jpg"));
    CHECK_FALSE(test.isImageName("c.Txt"));
    CHECK_FALSE(test.isImageName("d.txt"));
    CHECK(types.asked == std::vector<std::string> { "jpg", "txt" });
}

TEST_CASE("two threads never ask for an extension at once")
{
    CountingTypes types;
    PhotoTest test(types);
    {
        std::vector<std::jthread> threads;
        for (int t = 0; t < 4; ++t)
            threads.emplace_back([&] {
                for (int i = 0; i < 200; ++i)
                    static_cast<void>(test.isImageName("a.x" + std::to_string(i)));
            });
    }
    CHECK(types.asked.size() == 200);
    CHECK_FALSE(types.overlapped);
}

TEST_CASE("a name that is not text can be a photo")
{
    CodecImageTypes types;
    PhotoTest test(types);
    CHECK(test.isImageName("caf\xE9.jpg"));
    CHECK_FALSE(test.isImageName("a.\xFF\xFE"));
}
