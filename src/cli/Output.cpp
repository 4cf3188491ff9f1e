#include "cli/Output.h"
#include <cerrno>
#include <system_error>
#include <unistd.h>

namespace pixelhain {

namespace {

constexpr std::size_t pendingLimit = 256 * 1024;

} // namespace

Output::Output(int descriptor)
    : descriptor_(descriptor)
{
}

void Output::write(std::string_view bytes)
{
    pending_ += bytes;
    if (pending_.size() >= pendingLimit)
        static_cast<void>(flush());
}

bool Output::flush()
{
    send(pending_);
    pending_.clear();
    return error_ == 0;
}

bool Output::isTerminal() const
{
    return ::isatty(descriptor_) == 1;
}

std::string Output::reason() const
{
    return std::generic_category().message(error_);
}

void Output::send(std::string_view bytes)
{
    while (!bytes.empty() && error_ == 0) {
        auto const sent = ::write(descriptor_, bytes.data(), bytes.size());
        if (sent >= 0)
            bytes.remove_prefix(static_cast<std::size_t>(sent));
        else if (errno != EINTR)
            error_ = errno;
    }
}

} // namespace pixelhain
