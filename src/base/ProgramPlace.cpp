#include "base/ProgramPlace.h"
#include <filesystem>
#include <system_error>

namespace pixelhain {

std::string programPlace(std::string_view name, std::string_view installed)
{
    std::error_code error;
    auto const running = std::filesystem::read_symlink("/proc/self/exe", error);
    auto const folder = error ? std::filesystem::path("/") : running.parent_path();
    auto const beside = folder / name;
    if (std::filesystem::is_regular_file(beside, error))
        return beside.native();
    return (folder / installed).lexically_normal().native();
}

} // namespace pixelhain
