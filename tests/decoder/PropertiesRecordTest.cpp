#include "decoder/PropertiesRecord.h"
#include "codecs/PropertyLimits.h"
#include "support/SampleProperties.h"
#include <cstring>
#include <doctest/doctest.h>
#include <limits>

using namespace pixelhain;

namespace {

using Record = std::vector<std::byte>;

PhotoProperties everything()
{
    auto properties = sampleProperties();
    properties.pixelSize = PixelSize { 6000, 4000 };
    properties.auxLensModel = "Objektiv für Nahaufnahmen";
    return properties;
}

Record field(unsigned number, std::string_view bytes)
{
    auto const length = bytes.size();
    Record record { std::byte(number), std::byte(number >> 8), std::byte(length & 0xFF),
        std::byte(length >> 8) };
    for (auto const byte : bytes)
        record.push_back(std::byte(byte));
    return record;
}

template <typename Value> Record fieldOf(unsigned number, Value value)
{
    return field(number, { reinterpret_cast<char const*>(&value), sizeof value });
}

Record joined(Record a, Record const& b)
{
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

} // namespace

TEST_CASE("properties arrive as they were sent")
{
    CHECK(unpackProperties(packProperties(everything())) == everything());
    CHECK(unpackProperties(packProperties({})) == PhotoProperties {});
    PhotoProperties one;
    one.exposureTime = -0.0;
    CHECK(unpackProperties(packProperties(one)) == one);
}

TEST_CASE("a record that ends anywhere but between fields is refused")
{
    auto const record = packProperties(everything());
    std::size_t whole = 0;
    for (std::size_t length = 0; length < record.size(); ++length)
        whole += unpackProperties(std::span(record).first(length)) ? 1 : 0;
    CHECK(whole == 10); // as many as it has fields, for it may end before each
}

TEST_CASE("no change of a byte makes a record that breaks a promise")
{
    auto const record = packProperties(everything());
    for (std::size_t i = 0; i < record.size(); ++i) {
        for (unsigned const value : { 0x00U, 0x01U, 0x7FU, 0x80U, 0xFFU }) {
            auto changed = record;
            changed[i] = std::byte(value);
            auto const properties = unpackProperties(changed);
            // What is accepted is something that could have been sent.
            if (properties)
                CHECK(unpackProperties(packProperties(*properties)) == properties);
        }
    }
}

TEST_CASE("fields that no honest process sends are refused")
{
    auto const model = field(4, "X");
    CHECK(unpackProperties(model)->model == "X");
    CHECK_FALSE(unpackProperties(field(0, "X")));
    CHECK_FALSE(unpackProperties(field(11, "X")));
    CHECK_FALSE(unpackProperties(joined(model, model)));
    CHECK_FALSE(unpackProperties(joined(model, field(3, "X"))));
    CHECK(unpackProperties(joined(field(3, "X"), model)));
}

TEST_CASE("texts that are empty, too long or no UTF-8 are refused")
{
    CHECK_FALSE(unpackProperties(field(4, "")));
    CHECK_FALSE(unpackProperties(field(4, "a\xFF")));
    CHECK_FALSE(unpackProperties(field(4, "\xED\xA0\x80")));
    CHECK_FALSE(unpackProperties(field(4, std::string(PropertyLimits::shownText + 1, 'x'))));
    CHECK(unpackProperties(field(4, std::string(PropertyLimits::shownText, 'x'))));
    CHECK(unpackProperties(field(4, "\u00FC")));
}

TEST_CASE("numbers that are none, and sizes beyond any picture, are refused")
{
    CHECK(unpackProperties(fieldOf(7, 50.0))->focalLength == 50);
    CHECK_FALSE(unpackProperties(fieldOf(7, std::numeric_limits<double>::quiet_NaN())));
    CHECK_FALSE(unpackProperties(fieldOf(9, std::numeric_limits<double>::infinity())));
    CHECK_FALSE(unpackProperties(fieldOf(7, 50.0F)));
    CHECK(unpackProperties(fieldOf(1, PixelSize { 1, 1 })));
    CHECK_FALSE(unpackProperties(fieldOf(1, PixelSize { 0, 1 })));
    CHECK_FALSE(unpackProperties(fieldOf(1, PixelSize { 5, -1 })));
    CHECK_FALSE(unpackProperties(fieldOf(1, PixelSize { 1'000'001, 1 })));
    CHECK_FALSE(unpackProperties(field(10, "")));
    CHECK_FALSE(unpackProperties(field(10, "12345")));
    CHECK_FALSE(unpackProperties(field(10, std::string(4 * (PropertyLimits::isoValues + 1), 'x'))));
    CHECK(unpackProperties(fieldOf(10, 100U))->isoSpeedRatings == std::vector { 100U });
}

TEST_CASE("what would be refused is not sent")
{
    PhotoProperties properties;
    properties.pixelSize = PixelSize { 0, 5 };
    properties.make = "";
    properties.model = "\xFF";
    properties.lensModel = std::string(PropertyLimits::shownText + 1, 'x');
    properties.focalLength = std::numeric_limits<double>::infinity();
    properties.isoSpeedRatings.resize(1000);
    PhotoProperties left;
    left.isoSpeedRatings.resize(PropertyLimits::isoValues);
    CHECK(unpackProperties(packProperties(properties)) == left);
}

TEST_CASE("the longest properties fit")
{
    PhotoProperties properties = everything();
    for (auto* const text : { &properties.dateTimeOriginal, &properties.make, &properties.model,
             &properties.lensModel, &properties.auxLensModel })
        *text = std::string(PropertyLimits::shownText, 'x');
    properties.isoSpeedRatings.resize(PropertyLimits::isoValues);
    auto const record = packProperties(properties);
    CHECK(record.size() <= PropertyLimits::all);
    CHECK(unpackProperties(record) == properties);
    CHECK_FALSE(unpackProperties(Record(PropertyLimits::all + 1)));
}
