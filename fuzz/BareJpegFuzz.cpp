#include "codecs/BareJpeg.h"
#include "codecs/ByteView.h"
#include "fuzz/Fuzz.h"

using namespace pixelhain;

// What a decoder process hands over as a JPEG is looked at by the program itself. The first two
// bytes choose what was asked for.
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t length)
{
    constexpr std::size_t asking = 2;
    if (length < asking)
        return 0;
    int const maxPixel = littleEndian16(data);
    auto const bare = bareJpeg(SpanBytes({ data + asking, length - asking }), maxPixel);
    if (!bare)
        return 0;
    mustHold(bare->size.width > 0 && bare->size.height > 0);
    mustHold(bare->size.longestSide() <= maxPixel);
    mustHold(bare->bytes.size() <= mostBareBytes(maxPixel));
    auto const again = bareJpeg(SpanBytes(bare->bytes), maxPixel);
    mustHold(again && again->bytes == bare->bytes && again->size == bare->size);
    return 0;
}
