#include "decoder/PooledDecoder.h"
#include "support/Attacks.h"
#include "support/FaultCodec.h"
#include "support/ImageWriters.h"
#include "support/Places.h"
#include "support/TemporaryFolder.h"
#include <chrono>
#include <doctest/doctest.h>

using namespace pixelhain;
using namespace std::chrono_literals;

namespace {

WorkerPool::Options faulty()
{
    WorkerPool::Options options;
    options.program = buildFolder() + "/pixelhain-faulty-decoder";
    // Every fault costs a process or two: the test is not to wait between them.
    options.rate = RestartRate(0ms, 0ms);
    return options;
}

// A decoder whose processes have the codec that goes wrong on demand, and a good picture.
struct Faults {
    explicit Faults(std::chrono::nanoseconds deadline = 20s)
        : decoder(faulty(), [deadline](auto const&) { return deadline; })
    {
        auto const bytes = writeJpeg(RgbaPixels::filled({ 64, 48 }, 0x4080C0FF));
        good = folder.file("good.jpg",
            std::string_view(reinterpret_cast<char const*>(bytes.data()), bytes.size()));
    }

    std::optional<DecodedPicture> decode(std::string_view command)
    {
        auto const name = "fault " + std::to_string(++count) + ".jpg";
        return decoder.decode(
            { folder.file(name, faultFile(command)), 256, EmbeddedPreviews::prefer });
    }

    bool decodesGood()
    {
        auto const picture = decoder.decode({ good, 32, EmbeddedPreviews::prefer });
        return picture && picture->bitmap.size == PixelSize { 32, 24 };
    }

    TemporaryFolder folder;
    PooledDecoder decoder;
    FileUrl good;
    int count = 0;
};

} // namespace

TEST_CASE("an answer that is wrong in one thing costs one picture")
{
    Faults faults;
    REQUIRE(faults.decodesGood());
    for (std::string const what :
        { "id", "status", "size", "side", "stride", "bytes", "flags", "space", "memory" }) {
        CAPTURE(what);
        CHECK_FALSE(faults.decode("lie:" + what));
        CHECK(faults.decodesGood());
    }
}

TEST_CASE("what a worker calls a JPEG and is none costs one picture")
{
    Faults faults;
    auto const file = faults.folder.file("coded.jpg", faultFile("lie:coded"));
    CHECK_FALSE(faults.decoder.decode({ file, 32, EmbeddedPreviews::prefer, SmallJpegs::pass }));
    CHECK(faults.decodesGood());
}

TEST_CASE("answers that are cut, doubled or the last of a worker cost one picture")
{
    Faults faults;
    REQUIRE(faults.decodesGood());
    for (std::string const command : { "short", "twice", "leave" }) {
        CAPTURE(command);
        static_cast<void>(faults.decode(command));
        CHECK(faults.decodesGood());
    }
}

TEST_CASE("wrong properties cost one picture")
{
    Faults faults;
    REQUIRE(faults.decodesGood());
    for (std::string const command :
        { "lie:record", "lie:bytes", "lie:size", "lie:memory", "short", "leave" }) {
        CAPTURE(command);
        CHECK_FALSE(faults.decoder.readProperties(
            faults.folder.file("fault " + command + ".jpg", faultFile(command))));
        auto const properties = faults.decoder.readProperties(faults.good);
        REQUIRE(properties);
        CHECK(properties->pixelSize == PixelSize { 64, 48 });
    }
}

TEST_CASE("no attack from inside a worker succeeds")
{
    Faults faults;
    for (auto const& attack : attacks()) {
        CAPTURE(attack.name);
        auto const picture = faults.decode("attack:" + std::string(attack.name));
        if (attack.expected == Attack::deadly) {
            CHECK_FALSE(picture);
        } else {
            REQUIRE(picture);
            constexpr std::ptrdiff_t red = 2;
            CHECK(picture->bitmap.row(0)[red] == attack.expected);
        }
        REQUIRE(faults.decodesGood());
    }
}
