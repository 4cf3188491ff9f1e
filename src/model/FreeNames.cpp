#include "model/FreeNames.h"
#include "ports/FileSystem.h"

namespace pixelhain {

std::string numberedName(std::string_view name, std::size_t number)
{
    if (number <= 1)
        return std::string(name);
    auto const extension = extensionOf(name);
    auto const base = extension.empty() ? name : name.substr(0, name.size() - extension.size() - 1);
    auto numbered = std::string(base) + " " + std::to_string(number);
    if (!extension.empty())
        numbered.append(".").append(extension);
    return numbered;
}

FreeNames::FreeNames(FileSystem const& files, FileUrl const& folder, std::string_view name)
    : files_(files)
    , folder_(folder)
    , name_(name)
{
}

FileUrl FreeNames::next()
{
    for (;;) {
        auto candidate = folder_.child(numberedName(name_, ++number_));
        if (!files_.exists(candidate))
            return candidate;
    }
}

FileUrl uniqueDestination(FileSystem const& files, FileUrl const& folder, std::string_view name)
{
    return FreeNames(files, folder, name).next();
}

} // namespace pixelhain
