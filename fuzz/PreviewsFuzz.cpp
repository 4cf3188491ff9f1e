#include "codecs/ByteView.h"
#include "codecs/RawPreviews.h"
#include "fuzz/Fuzz.h"

using namespace pixelhain;

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t length)
{
    SpanBytes const bytes(ByteSpan(data, length));
    static_cast<void>(isTiffRaw(bytes));
    auto const contents = readRawContents(bytes);
    if (!contents)
        return 0;
    mustHold(contents->orientation >= 1 && contents->orientation <= 8);
    int longest = 0;
    for (auto const& preview : findRawPreviews(bytes, *contents, contents->size)) {
        mustHold(preview.range.offset < length);
        mustHold(preview.stored.width > 0 && preview.stored.height > 0);
        mustHold(preview.upright().longestSide() >= longest);
        longest = preview.upright().longestSide();
    }
    return 0;
}
