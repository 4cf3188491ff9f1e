#include "decoder/Protocol.h"
#include "codecs/BareJpeg.h"
#include "codecs/DecodeLimits.h"
#include "codecs/PropertyLimits.h"
#include "decoder/Lockdown.h"
#include "posix/OpenedFile.h"
#include <array>
#include <doctest/doctest.h>
#include <functional>
#include <limits>
#include <vector>

using namespace pixelhain;

namespace {

constexpr std::uint64_t mebibyte = std::uint64_t { 1 } << 20;

template <typename Record> DecoderMessage messageOf(Record const& record, std::size_t descriptors)
{
    return { std::as_bytes(std::span(&record, 1)), descriptors, false };
}

DecoderRequest metaRequest()
{
    DecoderRequest request;
    request.id = 7;
    request.fileBytes = 1000;
    return request;
}

DecoderRequest decodeRequest()
{
    auto request = metaRequest();
    request.operation = DecoderOperation::decode;
    request.space = DecoderSpace::own;
    request.spaceBytes = mebibyte;
    request.maxPixel = 512;
    request.previews = EmbeddedPreviews::prefer;
    return request;
}

DecoderRequest propertiesRequest()
{
    auto request = metaRequest();
    request.operation = DecoderOperation::readProperties;
    request.space = DecoderSpace::own;
    request.spaceBytes = mebibyte;
    return request;
}

DecoderResponse picture()
{
    DecoderResponse response;
    response.status = DecoderStatus::done;
    response.id = 7;
    response.origin = PixelOrigin::scaled;
    response.flags = DecoderResponse::isOpaque;
    response.width = 512;
    response.height = 384;
    response.bytesPerRow = 2048;
    response.bytes = 2048 * 384;
    return response;
}

DecoderResponse metaAnswer()
{
    DecoderResponse response;
    response.status = DecoderStatus::done;
    response.id = 7;
    response.flags = DecoderResponse::hasSize | DecoderResponse::isAnimated;
    response.width = 6000;
    response.height = 4000;
    return response;
}

DecoderRequest glanceRequest()
{
    auto request = metaRequest();
    request.operation = DecoderOperation::glance;
    request.space = DecoderSpace::own;
    request.spaceBytes = mebibyte;
    request.maxPixel = 256;
    return request;
}

DecoderResponse glanceAnswer()
{
    auto response = metaAnswer();
    response.flags |= DecoderResponse::isOpaque | DecoderResponse::isQuick;
    response.photoWidth = 6000;
    response.photoHeight = 4000;
    response.width = 160;
    response.height = 107;
    response.bytesPerRow = 640;
    response.bytes = 640 * 107;
    return response;
}

DecoderResponse plain(DecoderStatus status, std::uint64_t bytes = 0)
{
    DecoderResponse response;
    response.status = status;
    response.id = 7;
    response.bytes = bytes;
    return response;
}

template <typename Record> struct Change {
    char const* what;
    std::function<void(Record&)> apply;
};

template <typename Enum> Enum numbered(int number)
{
    return static_cast<Enum>(number);
}

} // namespace

TEST_CASE("a request arrives as it was sent")
{
    auto const sent = decodeRequest();
    auto const got = parseRequest(messageOf(sent, 1));
    REQUIRE(got);
    CHECK(got->operation == DecoderOperation::decode);
    CHECK(got->space == DecoderSpace::own);
    CHECK(got->id == 7);
    CHECK(got->fileBytes == 1000);
    CHECK(got->spaceBytes == mebibyte);
    CHECK(got->maxPixel == 512);
    CHECK(got->previews == EmbeddedPreviews::prefer);
    CHECK(parseRequest(messageOf(metaRequest(), 1)));
}

TEST_CASE("a request that no program sends is refused")
{
    std::vector<Change<DecoderRequest>> const changes {
        { "another magic", [](auto& r) { r.magic ^= 1; } },
        { "a response's magic", [](auto& r) { r.magic = DecoderResponse::theMagic; } },
        { "operation 0", [](auto& r) { r.operation = numbered<DecoderOperation>(0); } },
        { "an unknown operation", [](auto& r) { r.operation = numbered<DecoderOperation>(5); } },
        { "no space for a picture", [](auto& r) { r.space = DecoderSpace::none; } },
        { "an unknown kind of space", [](auto& r) { r.space = numbered<DecoderSpace>(3); } },
        { "space of no bytes", [](auto& r) { r.spaceBytes = 0; } },
        { "space beyond any picture", [](auto& r) { r.spaceBytes = DecodeLimits::bitmap + 1; } },
        { "space for what needs none", [](auto& r) { r.operation = DecoderOperation::readMeta; } },
        { "a passed space that is not there", [](auto& r) { r.space = DecoderSpace::passed; } },
        { "id 0", [](auto& r) { r.id = 0; } },
        { "a file beyond the limit", [](auto& r) { r.fileBytes = OpenedFile::maxSize + 1; } },
        { "less than no pixels", [](auto& r) { r.maxPixel = -1; } },
        { "unknown previews", [](auto& r) { r.previews = numbered<EmbeddedPreviews>(3); } },
        { "unknown small JPEGs", [](auto& r) { r.smallJpegs = numbered<SmallJpegs>(2); } },
        { "something in what is not used", [](auto& r) { r.unused[1] = 1; } },
    };
    for (auto const& change : changes) {
        CAPTURE(change.what);
        auto request = decodeRequest();
        change.apply(request);
        CHECK_FALSE(parseRequest(messageOf(request, 1)));
    }
}

TEST_CASE("a request without its descriptors, or with more, is refused")
{
    auto own = decodeRequest();
    auto passed = decodeRequest();
    passed.space = DecoderSpace::passed;
    CHECK_FALSE(parseRequest(messageOf(own, 0)));
    CHECK_FALSE(parseRequest(messageOf(own, 2)));
    CHECK_FALSE(parseRequest(messageOf(passed, 1)));
    CHECK(parseRequest(messageOf(passed, 2)));
    CHECK_FALSE(parseRequest(messageOf(metaRequest(), 2)));
}

TEST_CASE("properties are asked for with the worker's own space")
{
    CHECK(parseRequest(messageOf(propertiesRequest(), 1)));
    auto request = propertiesRequest();
    request.space = DecoderSpace::passed;
    CHECK_FALSE(parseRequest(messageOf(request, 2)));
    request = propertiesRequest();
    request.space = DecoderSpace::none;
    request.spaceBytes = 0;
    CHECK_FALSE(parseRequest(messageOf(request, 1)));
}

TEST_CASE("properties are of a bounded length, and come with nothing else")
{
    auto const answered = [](DecoderResponse const& response) {
        return parseResponse(messageOf(response, 0), propertiesRequest()).has_value();
    };
    auto const good = plain(DecoderStatus::done, PropertyLimits::all);
    CHECK(answered(good));
    CHECK(answered(plain(DecoderStatus::done, 0)));
    CHECK(answered(plain(DecoderStatus::nothing)));
    CHECK_FALSE(answered(plain(DecoderStatus::done, PropertyLimits::all + 1)));
    CHECK_FALSE(answered(plain(DecoderStatus::done, std::uint64_t { 1 } << 62)));
    CHECK_FALSE(answered(plain(DecoderStatus::needsSpace, 2 * mebibyte)));
    CHECK_FALSE(answered(plain(DecoderStatus::needsMemory, 2 * mebibyte)));
    CHECK_FALSE(answered(picture()));
    CHECK_FALSE(answered(metaAnswer()));
    auto small = propertiesRequest();
    small.spaceBytes = PropertyLimits::all - 1;
    CHECK_FALSE(parseResponse(messageOf(good, 0), small));
}

TEST_CASE("an answer arrives as it was sent")
{
    auto const pixels = parseResponse(messageOf(picture(), 0), decodeRequest());
    REQUIRE(pixels);
    CHECK(pixels->width == 512);
    CHECK(pixels->height == 384);
    CHECK(pixels->bytesPerRow == 2048);
    CHECK(pixels->origin == PixelOrigin::scaled);
    auto const meta = parseResponse(messageOf(metaAnswer(), 0), metaRequest());
    REQUIRE(meta);
    CHECK(meta->width == 6000);
    auto const nothing = plain(DecoderStatus::nothing);
    CHECK(parseResponse(messageOf(nothing, 0), decodeRequest()));
    CHECK(parseResponse(messageOf(nothing, 0), metaRequest()));
    auto const more = plain(DecoderStatus::needsSpace, 2 * mebibyte);
    auto large = decodeRequest();
    large.maxPixel = 1024;
    CHECK(parseResponse(messageOf(more, 0), large));
    auto const memory = plain(DecoderStatus::needsMemory, std::uint64_t { 3 } << 30);
    CHECK(parseResponse(messageOf(memory, 0), decodeRequest()));
}

TEST_CASE("a picture that is not what was asked for is refused")
{
    constexpr auto most = std::numeric_limits<std::int32_t>::max();
    constexpr auto huge = std::numeric_limits<std::uint64_t>::max();
    std::vector<Change<DecoderResponse>> const changes {
        { "another magic", [](auto& r) { r.magic = 0; } },
        { "a request's magic", [](auto& r) { r.magic = DecoderRequest::theMagic; } },
        { "the answer to something else", [](auto& r) { r.id = 6; } },
        { "status 0", [](auto& r) { r.status = numbered<DecoderStatus>(0); } },
        { "an unknown status", [](auto& r) { r.status = numbered<DecoderStatus>(6); } },
        { "a sign of being ready", [](auto& r) { r.status = DecoderStatus::ready; } },
        { "an unknown origin", [](auto& r) { r.origin = numbered<PixelOrigin>(3); } },
        { "flags of metadata", [](auto& r) { r.flags |= DecoderResponse::hasSize; } },
        { "unknown flags", [](auto& r) { r.flags |= 128; } },
        { "no width", [](auto& r) { r.width = 0; } },
        { "no height", [](auto& r) { r.height = 0; } },
        { "less than no width", [](auto& r) { r.width = -512; } },
        { "less than no height", [](auto& r) { r.height = -384; } },
        { "the least height there is",
            [](auto& r) { r.height = std::numeric_limits<std::int32_t>::min(); } },
        { "wider than asked for", [](auto& r) { r.width = 513, r.bytesPerRow = r.bytes = 2064; } },
        { "higher than asked for", [](auto& r) { r.height = 513, r.bytes = 513 * 2048; } },
        { "as high as a number can be", [](auto& r) { r.height = most; } },
        { "rows that overlap", [](auto& r) { r.bytesPerRow = 2044, r.bytes = 2044 * 384; } },
        { "rows of no bytes", [](auto& r) { r.bytesPerRow = r.bytes = 0; } },
        { "rows that split a pixel", [](auto& r) { r.bytesPerRow = 2049, r.bytes = 2049 * 384; } },
        { "rows with room for others between them",
            [](auto& r) { r.width = 400, r.bytesPerRow = 1664, r.bytes = 1664 * 384; } },
        { "rows beyond the space", [](auto& r) { r.bytesPerRow = 2732, r.bytes = 2732 * 384; } },
        { "rows whose sum overflows",
            [](auto& r) { r.bytesPerRow = (huge / 384 + 1) & ~std::uint64_t { 3 }; } },
        { "the longest rows there are", [](auto& r) { r.bytesPerRow = huge - 3, r.bytes = 0; } },
        { "another sum than its rows'", [](auto& r) { r.bytes -= 1; } },
        { "the width of a photo beside it", [](auto& r) { r.photoWidth = 1; } },
        { "the height of a photo beside it", [](auto& r) { r.photoHeight = 1; } },
        { "flags of a glance", [](auto& r) { r.flags |= DecoderResponse::isQuick; } },
    };
    for (auto const& change : changes) {
        CAPTURE(change.what);
        auto response = picture();
        change.apply(response);
        CHECK_FALSE(parseResponse(messageOf(response, 0), decodeRequest()));
    }
    CHECK_FALSE(parseResponse(messageOf(picture(), 0), metaRequest()));
}

TEST_CASE("a coded picture comes only where it was asked for, within its bounds")
{
    auto asked = decodeRequest();
    asked.smallJpegs = SmallJpegs::pass;
    auto good = plain(DecoderStatus::done, mostBareBytes(512));
    good.flags = DecoderResponse::isCoded;
    good.width = 512;
    good.height = 384;
    REQUIRE(parseResponse(messageOf(good, 0), asked));
    CHECK(parseResponse(messageOf(picture(), 0), asked));
    CHECK_FALSE(parseResponse(messageOf(good, 0), decodeRequest()));
    CHECK_FALSE(parseResponse(messageOf(good, 0), metaRequest()));
    CHECK_FALSE(parseResponse(messageOf(good, 0), propertiesRequest()));
    std::vector<Change<DecoderResponse>> const changes {
        { "no bytes", [](auto& r) { r.bytes = 0; } },
        { "more bytes than there can be", [](auto& r) { r.bytes += 1; } },
        { "rows", [](auto& r) { r.bytesPerRow = 2048; } },
        { "no width", [](auto& r) { r.width = 0; } },
        { "less than no height", [](auto& r) { r.height = -384; } },
        { "wider than asked for", [](auto& r) { r.width = 513; } },
        { "higher than asked for", [](auto& r) { r.height = 513; } },
        { "flags of pixels", [](auto& r) { r.flags |= DecoderResponse::isOpaque; } },
        { "an unknown origin", [](auto& r) { r.origin = numbered<PixelOrigin>(3); } },
    };
    for (auto const& change : changes) {
        CAPTURE(change.what);
        auto response = good;
        change.apply(response);
        CHECK_FALSE(parseResponse(messageOf(response, 0), asked));
    }
    auto small = asked;
    small.spaceBytes = good.bytes - 1;
    CHECK_FALSE(parseResponse(messageOf(good, 0), small));
    auto whole = asked;
    whole.maxPixel = 0;
    CHECK_FALSE(parseResponse(messageOf(good, 0), whole));
}

TEST_CASE("a picture of every pixel is bounded by the space and the limits of any picture")
{
    auto asked = decodeRequest();
    asked.maxPixel = 0;
    asked.spaceBytes = DecodeLimits::bitmap;
    auto response = picture();
    response.width = DecodeLimits::side;
    response.height = 1;
    response.bytesPerRow = response.bytes = std::uint64_t { DecodeLimits::side } * 4;
    CHECK(parseResponse(messageOf(response, 0), asked));
    response.width += 1;
    response.bytesPerRow = response.bytes += 4;
    CHECK_FALSE(parseResponse(messageOf(response, 0), asked));
}

TEST_CASE("metadata beyond any picture, or with pixels, is refused")
{
    std::vector<Change<DecoderResponse>> const changes {
        { "no width", [](auto& r) { r.width = 0; } },
        { "less than no height", [](auto& r) { r.height = -1; } },
        { "a side beyond the limit", [](auto& r) { r.width = largestStatedSide + 1; } },
        { "a size that is not stated", [](auto& r) { r.flags = DecoderResponse::isAnimated; } },
        { "flags of a picture", [](auto& r) { r.flags |= DecoderResponse::isOpaque; } },
        { "an origin", [](auto& r) { r.origin = PixelOrigin::full; } },
        { "rows", [](auto& r) { r.bytesPerRow = 4; } },
        { "bytes", [](auto& r) { r.bytes = 4; } },
        { "a count of bytes", [](auto& r) { r.bytesRead = 4; } },
        { "the size of a photo beside it", [](auto& r) { r.photoWidth = r.photoHeight = 1; } },
        { "flags of a glance", [](auto& r) { r.flags |= DecoderResponse::isQuick; } },
    };
    for (auto const& change : changes) {
        CAPTURE(change.what);
        auto response = metaAnswer();
        change.apply(response);
        CHECK_FALSE(parseResponse(messageOf(response, 0), metaRequest()));
    }
    CHECK_FALSE(parseResponse(messageOf(metaAnswer(), 0), decodeRequest()));
    auto unknown = metaAnswer();
    unknown.flags = 0;
    unknown.width = unknown.height = 0;
    CHECK(parseResponse(messageOf(unknown, 0), metaRequest()));
}

TEST_CASE("a first look is asked for with the worker's own space")
{
    CHECK(parseRequest(messageOf(glanceRequest(), 1)));
    auto request = glanceRequest();
    request.space = DecoderSpace::passed;
    CHECK_FALSE(parseRequest(messageOf(request, 2)));
    request = glanceRequest();
    request.space = DecoderSpace::none;
    request.spaceBytes = 0;
    CHECK_FALSE(parseRequest(messageOf(request, 1)));
}

TEST_CASE("a first look arrives with its picture, or without one")
{
    auto const whole = parseResponse(messageOf(glanceAnswer(), 0), glanceRequest());
    REQUIRE(whole);
    CHECK(whole->photoWidth == 6000);
    CHECK(whole->photoHeight == 4000);
    CHECK(whole->width == 160);
    auto bare = metaAnswer();
    bare.width = bare.height = 0;
    bare.photoWidth = 6000;
    bare.photoHeight = 4000;
    CHECK(parseResponse(messageOf(bare, 0), glanceRequest()));
    CHECK(parseResponse(messageOf(plain(DecoderStatus::done), 0), glanceRequest()));
    CHECK(parseResponse(messageOf(plain(DecoderStatus::nothing), 0), glanceRequest()));
    CHECK_FALSE(parseResponse(
        messageOf(plain(DecoderStatus::needsSpace, 2 * mebibyte), 0), glanceRequest()));
    CHECK_FALSE(parseResponse(messageOf(glanceAnswer(), 0), decodeRequest()));
    CHECK_FALSE(parseResponse(messageOf(glanceAnswer(), 0), metaRequest()));
    CHECK_FALSE(parseResponse(messageOf(glanceAnswer(), 0), propertiesRequest()));
}

TEST_CASE("a first look at what cannot be is refused")
{
    std::vector<Change<DecoderResponse>> const changes {
        { "no width of the photo", [](auto& r) { r.photoWidth = 0; } },
        { "less than no height of it", [](auto& r) { r.photoHeight = -1; } },
        { "a side beyond the limit", [](auto& r) { r.photoWidth = largestStatedSide + 1; } },
        { "a size that is not stated",
            [](auto& r) { r.flags = DecoderResponse::isAnimated | DecoderResponse::isOpaque; } },
        { "an origin", [](auto& r) { r.origin = PixelOrigin::full; } },
        { "a coded picture", [](auto& r) { r.flags |= DecoderResponse::isCoded; } },
        { "unknown flags", [](auto& r) { r.flags |= 32; } },
        { "no width", [](auto& r) { r.width = 0; } },
        { "less than no height", [](auto& r) { r.height = -107; } },
        { "wider than is wanted",
            [](auto& r) { r.width = 257, r.bytesPerRow = 1040, r.bytes = 1040 * 107; } },
        { "rows that overlap", [](auto& r) { r.bytesPerRow = 636, r.bytes = 636 * 107; } },
        { "rows of no bytes", [](auto& r) { r.bytesPerRow = r.bytes = 0; } },
        { "another sum than its rows'", [](auto& r) { r.bytes += 4; } },
        { "an opaque nothing",
            [](auto& r) { r.width = r.height = 0, r.bytesPerRow = r.bytes = 0; } },
    };
    for (auto const& change : changes) {
        CAPTURE(change.what);
        auto response = glanceAnswer();
        change.apply(response);
        CHECK_FALSE(parseResponse(messageOf(response, 0), glanceRequest()));
    }
    auto small = glanceRequest();
    small.spaceBytes = 640 * 107 - 1;
    CHECK_FALSE(parseResponse(messageOf(glanceAnswer(), 0), small));
}

TEST_CASE("a refusal for want of space or memory makes sense or is refused itself")
{
    auto const isTaken = [](DecoderResponse const& response, DecoderRequest const& asked) {
        return parseResponse(messageOf(response, 0), asked).has_value();
    };
    auto const space = DecoderStatus::needsSpace;
    CHECK_FALSE(isTaken(plain(space, mebibyte), decodeRequest())); // it has that
    CHECK_FALSE(isTaken(plain(space, DecodeLimits::bitmap + 1), decodeRequest()));
    CHECK_FALSE(isTaken(plain(space, 2 * mebibyte), metaRequest()));
    auto small = decodeRequest();
    small.spaceBytes = 1000;
    CHECK(isTaken(plain(space, mebibyte), small)); // 512 pixels either way
    CHECK_FALSE(isTaken(plain(space, mebibyte + 1), small));
    small.maxPixel = 0;
    CHECK(isTaken(plain(space, DecodeLimits::bitmap), small));
    CHECK_FALSE(isTaken(plain(DecoderStatus::needsMemory, 0), decodeRequest()));
    CHECK_FALSE(isTaken(plain(DecoderStatus::needsMemory, mebibyte), metaRequest()));
    CHECK_FALSE(isTaken(plain(DecoderStatus::nothing, 1), decodeRequest()));
    auto withPicture = picture();
    withPicture.status = DecoderStatus::nothing;
    CHECK_FALSE(isTaken(withPicture, decodeRequest()));
}

TEST_CASE("a message of another length, cut off, or with descriptors is no answer")
{
    auto const asked = decodeRequest();
    std::array<std::byte, sizeof(DecoderResponse) + 1> bytes {};
    auto const response = picture();
    std::ranges::copy(std::as_bytes(std::span(&response, 1)), bytes.begin());
    auto const isTaken
        = [&](DecoderMessage const& m) { return parseResponse(m, asked).has_value(); };
    auto const whole = std::span(bytes).first(sizeof response);
    CHECK(isTaken({ whole, 0, false }));
    CHECK_FALSE(isTaken({ whole, 0, true }));
    CHECK_FALSE(isTaken({ whole, 1, false }));
    CHECK_FALSE(isTaken({ bytes, 0, false }));
    CHECK_FALSE(isTaken({ whole.first(sizeof response - 1), 0, false }));
    CHECK_FALSE(isTaken({ {}, 0, false }));
}

TEST_CASE("the sign of a ready worker says what holds it and nothing else")
{
    auto sign = plain(DecoderStatus::ready, Lockdown::everything);
    sign.id = 0;
    CHECK(parseReadySign(messageOf(sign, 0)) == Lockdown::everything);
    CHECK_FALSE(parseReadySign(messageOf(sign, 1)));
    auto const refused = [&](auto change) {
        auto changed = sign;
        change(changed);
        return !parseReadySign(messageOf(changed, 0));
    };
    CHECK(refused([](auto& r) { r.magic = 0; }));
    CHECK(refused([](auto& r) { r.id = 1; }));
    CHECK(refused([](auto& r) { r.status = DecoderStatus::done; }));
    CHECK(refused([](auto& r) { r.bytes = std::uint64_t { Lockdown::everything } + 1; }));
    CHECK(refused([](auto& r) { r.width = 1; }));
}

TEST_CASE("the space for a picture holds it whichever way round it is")
{
    CHECK(spaceForPicture({ 512, 384 }) == 2048 * 384);
    CHECK(spaceForPicture({ 1, 1000 }) == 16 * 1000);
    CHECK(spaceForPicture({ 1000, 1 }) == 16 * 1000);
    CHECK(spaceForPicture({ 0, 5 }) == 0);
    CHECK(spaceForPicture({ 65535, 65535 }) == std::uint64_t { 262144 } * 65535);
}
