#pragma once
#include "base/FileUrl.h"
#include "qt/app/ServiceAction.h"
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace pixelhain {

/// What the program was asked for when it was started.
struct CommandLine {
    /// Folders and images to open; only the first one is.
    std::vector<FileUrl> files;
    /// Whether there is a file among them that is not, perhaps, the value of an unknown option.
    bool hasSureFile = false;
    /// Where to save a picture of the window; the program ends then.
    std::optional<std::string> screenshot;
    /// What to do besides coming up. Files count more.
    std::optional<ServiceAction> action;
    /// Not to hand anything over to a program that runs already.
    bool startsApart = false;
    bool wantsHelp = false;
    bool wantsVersion = false;
    /// Why the arguments make no sense.
    std::optional<std::string> error;

    /// `arguments` without the program's name, as bytes; the toolkit's own options taken out.
    static CommandLine parse(std::span<char const* const> arguments, FileUrl const& currentFolder);

    static std::string_view helpText();
};

} // namespace pixelhain
