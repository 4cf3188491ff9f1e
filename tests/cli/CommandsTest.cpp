#include "cli/ContactSheetCommand.h"
#include "cli/InfoCommand.h"
#include "cli/ListCommand.h"
#include "cli/MetaCommand.h"
#include "cli/ThumbnailCommand.h"
#include <algorithm>
#include <array>
#include <doctest/doctest.h>
#include <string>

using namespace pixelhain;

namespace {

std::array<Command const*, 5> allCommands()
{
    return { &listCommand(), &metaCommand(), &infoCommand(), &thumbnailCommand(),
        &contactSheetCommand() };
}

} // namespace

TEST_CASE("a command's usage tells of every option that it takes, and of no other")
{
    for (auto const* const command : allCommands()) {
        CAPTURE(command->name);
        // As words, with a blank before and after each.
        auto usage = " " + std::string(command->usage) + " ";
        std::ranges::replace(usage, '[', ' ');
        auto inUsage = std::ranges::count(usage, '-');
        for (auto const& option : command->options) {
            CAPTURE(option.name);
            auto const end = option.value == OptionValue::none ? "]" : " ";
            CHECK(usage.find(" " + std::string(option.name) + end) != std::string::npos);
            inUsage -= std::ranges::count(option.name, '-');
        }
        CHECK(inUsage == 0);
    }
}
