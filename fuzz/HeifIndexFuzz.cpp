#include "codecs/ByteView.h"
#include "codecs/DecodeLimits.h"
#include "codecs/HeifIndex.h"
#include "fuzz/Fuzz.h"

using namespace pixelhain;

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t length)
{
    SpanBytes const bytes(ByteSpan(data, length));
    auto const index = HeifIndex::read(bytes);
    if (!index)
        return 0;
    mustHold(index->size().width > 0 && index->size().height > 0);
    static_cast<void>(index->thumbnails());
    static_cast<void>(index->pictures());
    static_cast<void>(index->profile());
    static_cast<void>(index->exif());
    static_cast<void>(index->decodedPixels(index->primary()));
    return 0;
}
