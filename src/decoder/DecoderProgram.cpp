#include "decoder/DecoderProgram.h"
#include "base/ProgramPlace.h"

namespace pixelhain {

std::string decoderProgram()
{
    return programPlace("pixelhain-decoder", PIXELHAIN_DECODER_PLACE);
}

} // namespace pixelhain
