#include "base/Text.h"
#include "codecs/ByteView.h"
#include "codecs/FileProperties.h"
#include "codecs/PropertyLimits.h"
#include "decoder/PropertiesRecord.h"
#include "fuzz/Fuzz.h"
#include <cmath>

using namespace pixelhain;

// What a file states, and what a worker that was taken over says that one states.
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t length)
{
    auto const isText = [](std::optional<std::string> const& text) {
        return !text
            || (!text->empty() && text->size() <= PropertyLimits::shownText
                && displayText(*text) == *text);
    };
    auto const isNumber
        = [](std::optional<double> const& number) { return !number || std::isfinite(*number); };
    auto const keepsPromises = [&](PhotoProperties const& properties) {
        return isText(properties.dateTimeOriginal) && isText(properties.make)
            && isText(properties.model) && isText(properties.lensModel)
            && isText(properties.auxLensModel) && isNumber(properties.focalLength)
            && isNumber(properties.fNumber) && isNumber(properties.exposureTime)
            && properties.isoSpeedRatings.size() <= PropertyLimits::isoValues;
    };
    SpanBytes const bytes(ByteSpan(data, length));
    auto const properties = gatherProperties(bytes);
    mustHold(keepsPromises(properties));
    auto const record = packProperties(properties);
    mustHold(record.size() <= PropertyLimits::all);
    mustHold(unpackProperties(record) == properties);
    auto const claimed = unpackProperties(std::as_bytes(std::span(data, length)));
    mustHold(!claimed || keepsPromises(*claimed));
    return 0;
}
