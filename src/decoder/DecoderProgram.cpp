#include "decoder/DecoderProgram.h"
#include <filesystem>
#include <system_error>
#include <unistd.h>

namespace pixelhain {

std::string decoderProgram()
{
    std::error_code error;
    auto const running = std::filesystem::read_symlink("/proc/self/exe", error);
    auto const folder = error ? std::filesystem::path("/") : running.parent_path();
    auto const beside = folder / "pixelhain-decoder";
    if (::access(beside.c_str(), X_OK) == 0)
        return beside.native();
    return (folder / PIXELHAIN_DECODER_PLACE).lexically_normal().native();
}

} // namespace pixelhain
