#include "cli/ProgressBar.h"
#include "cli/Output.h"
#include <algorithm>
#include <utility>

namespace pixelhain {

ProgressBar::ProgressBar(Output& output)
    : output_(output)
    , isWatched_(output.isTerminal())
{
}

void ProgressBar::show(std::size_t done, std::size_t total)
{
    if (!isWatched_)
        return;
    auto line = progressLine(done, total);
    if (line == shown_)
        return;
    output_.write("\r" + line);
    static_cast<void>(output_.flush());
    shown_ = std::move(line);
}

void ProgressBar::clear()
{
    if (std::exchange(shown_, {}).empty())
        return;
    output_.write("\r\x1B[K");
    static_cast<void>(output_.flush());
}

std::string progressLine(std::size_t done, std::size_t total)
{
    constexpr std::size_t width = 40;
    auto const full = total == 0 ? width : std::min(width, done * width / total);
    auto const number = std::to_string(done);
    auto const all = std::to_string(total);
    auto const blanks = all.size() - std::min(all.size(), number.size());
    return "[" + std::string(full, '#') + std::string(width - full, '-') + "] "
        + std::string(blanks, ' ') + number + " of " + all + (total == 1 ? " page" : " pages");
}

} // namespace pixelhain
