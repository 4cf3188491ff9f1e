#include "codecs/ByteView.h"
#include "codecs/ExifReader.h"
#include "fuzz/Fuzz.h"
#include <algorithm>

using namespace pixelhain;

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t length)
{
    SpanBytes const bytes(ByteSpan(data, length));
    auto const isWithin = [&](ByteRange const& range) {
        return range.offset <= length && range.length <= length - range.offset;
    };
    for (std::uint64_t const base : { std::uint64_t { 0 }, std::uint64_t { 6 } }) {
        auto const summary = readExif(bytes, base, length - std::min<std::uint64_t>(base, length));
        mustHold(summary.orientation >= 1 && summary.orientation <= 8);
        mustHold(!summary.thumbnail || isWithin(*summary.thumbnail));
        static_cast<void>(readMultiPictureIndex(bytes, base));
    }
    return 0;
}
