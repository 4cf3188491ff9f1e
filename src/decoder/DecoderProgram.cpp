#include "decoder/DecoderProgram.h"
#include <filesystem>
#include <system_error>
#include <unistd.h>

namespace pixelhain {

std::string decoderProgram()
{
    std::error_code error;
    auto const running = std::filesystem::read_symlink("/proc/self/exe", error);
    auto const beside = running.parent_path() / "pixelhain-decoder";
    if (!error && ::access(beside.c_str(), X_OK) == 0)
        return beside.native();
    return PIXELHAIN_DECODER_FOLDER "/pixelhain-decoder";
}

} // namespace pixelhain
