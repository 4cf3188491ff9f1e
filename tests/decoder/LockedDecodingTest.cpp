#include "codecs/ImageCodecs.h"
#include "codecs/PhotoCollection.h"
#include "decoder/Lockdown.h"
#include "images/DecodeRules.h"
#include "posix/OpenedFile.h"
#include "support/ForkedRun.h"
#include "support/ImageWriters.h"
#include "support/Places.h"
#include "support/Sanitizers.h"
#include "support/TemporaryFolder.h"
#include <csignal>
#include <doctest/doctest.h>
#include <exception>
#include <new>
#include <sys/mman.h>
#include <sys/resource.h>

using namespace pixelhain;

namespace {

enum class Where { free, locked };

/// Everything that was decoded of a file, as one number.
class Digest {
public:
    void add(std::uint64_t value) { sum_ = (sum_ ^ value) * 0x100000001B3; }
    void add(std::optional<PixelSize> size)
    {
        add(size ? static_cast<std::uint64_t>(size->width) : 1);
        add(size ? static_cast<std::uint64_t>(size->height) : 2);
    }
    void add(Bitmap const& bitmap)
    {
        add(bitmap.size);
        for (int y = 0; y < bitmap.size.height; ++y)
            for (int x = 0; x < bitmap.size.width * 4; ++x)
                add(std::uint64_t { bitmap.row(y)[x] });
    }
    [[nodiscard]] std::uint64_t sum() const { return sum_; }

private:
    std::uint64_t sum_ = 0xCBF29CE484222325;
};

struct Outcome {
    Ending ending;
    std::uint64_t digest = 0; ///< 0: no picture
};

std::uint64_t digestOf(std::unique_ptr<ByteSource> bytes)
{
    auto const image = openImage(std::move(bytes));
    if (!image)
        return 0;
    Digest digest;
    auto const meta = readMeta(*image);
    digest.add(meta.size);
    digest.add(std::uint64_t { meta.isAnimated });
    for (auto const previews : { EmbeddedPreviews::prefer, EmbeddedPreviews::ignore }) {
        auto const picture = decodeImage(*image, 200, previews);
        if (!picture)
            return 0;
        digest.add(picture->bitmap);
    }
    if (auto const whole = decodeFullImage(*image))
        digest.add(whole->bitmap.size);
    return digest.sum();
}

// Each file gets a process that has decoded nothing before, so that nothing is open yet that a
// library opens at its first use.
Outcome decodedIn(Where where, FileUrl const& url)
{
    auto* const page = ::mmap(
        nullptr, sizeof(std::uint64_t), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    REQUIRE(page != MAP_FAILED);
    auto* const digest = new (page) std::uint64_t(0);
    auto file = OpenedFile::open(url);
    Outcome outcome;
    outcome.ending = runForked([&] {
        // A library that never comes back is not what is tested here.
        rlimit const seconds { 60, 60 };
        ::setrlimit(RLIMIT_CPU, &seconds);
        if (where == Where::locked && !lockDown({}).has(Lockdown::systemCalls))
            return 200;
        try {
            *digest = file ? digestOf(std::move(file)) : 0;
        } catch (std::exception const&) {
            return 1;
        }
        return 0;
    });
    outcome.digest = *digest;
    ::munmap(page, sizeof(std::uint64_t));
    return outcome;
}

// What is made up for pixels that a damaged file lacks may differ from one time to the next.
enum class Pixels { allThere, someMissing };

void checkSame(FileUrl const& url, Pixels pixels = Pixels::allThere)
{
    auto const free = decodedIn(Where::free, url);
    auto const locked = decodedIn(Where::locked, url);
    CHECK(locked.ending.signal == free.ending.signal);
    CHECK(locked.ending.code == free.ending.code);
    if (pixels == Pixels::allThere)
        CHECK(locked.digest == free.digest);
    else
        CHECK((locked.digest != 0) == (free.digest != 0));
}

FileUrl photo(PhotoAnswers const& row)
{
    return FileUrl(photosFolder() + "/" + row.at("path"));
}

std::vector<PhotoAnswers> allPhotos()
{
    return photoAnswers({ "jpeg", "png", "gif", "webp", "tiff", "bmp", "heif", "avif", "jxl", "raw",
        "jp2", "exr", "hdr", "ico", "pnm", "tga", "qoi", "broken" });
}

} // namespace

// These fork hundreds of processes of one thread each, where nothing can race.
TEST_SUITE_BEGIN("decoding in locked processes" * doctest::skip(isThreadSanitized));

TEST_CASE("pictures of every simple format come out the same in a locked process")
{
    TemporaryFolder const folder;
    auto const pixels = RgbaPixels::filled({ 320, 240 }, 0xC04080FF);
    auto const check = [&](char const* name, FileBytes const& bytes) {
        CAPTURE(name);
        auto const url = folder.file(
            name, std::string_view(reinterpret_cast<char const*>(bytes.data()), bytes.size()));
        CHECK(decodedIn(Where::locked, url).digest != 0);
        checkSame(url);
    };
    check("a.jpg", writeJpeg(pixels));
    check("a.png", writePng(pixels));
    check("a.gif", writeGif({ 320, 240 }, { { pixels } }));
    check("a.webp", writeWebp(pixels));
    check("a.tiff", writeTiff(pixels));
    check("a.bmp", writeBmp(pixels));
}

TEST_CASE("every photo of the collection comes out the same in a locked process")
{
    auto const rows = allPhotos();
    if (rows.empty()) {
        MESSAGE("skipped: no collection of photos beside the checkout");
        return;
    }
    for (auto const& row : rows) {
        if (row.at("kind") == "broken")
            continue;
        CAPTURE(row.at("path"));
        checkSame(photo(row), row.at("kind") == "ok" ? Pixels::allThere : Pixels::someMissing);
    }
}

TEST_CASE("no broken file makes its decoder do what a locked process dies of")
{
    for (auto const& row : allPhotos()) {
        if (row.at("kind") != "broken")
            continue;
        CAPTURE(row.at("path"));
        CHECK(decodedIn(Where::locked, photo(row)).ending.signal != SIGSYS);
    }
}

TEST_SUITE_END();
