#include "qt/app/OutOfResources.h"
#include <cstdlib>
#include <cstring>
#include <exception>
#include <new>
#include <system_error>
#include <unistd.h>

namespace pixelhain {

namespace {

char const* reasonToEnd()
{
    auto const current = std::current_exception();
    if (!current)
        return nullptr;
    try {
        std::rethrow_exception(current);
    } catch (std::bad_alloc const&) {
        return "pixelhain: Der Arbeitsspeicher reicht nicht.\n";
    } catch (std::system_error const& error) {
        if (error.code() == std::errc::resource_unavailable_try_again)
            return "pixelhain: Das System lässt keine weiteren Threads zu.\n";
    } catch (...) {
    }
    return nullptr;
}

// Nothing here may need memory.
[[noreturn]] void ended()
{
    auto const* const reason = reasonToEnd();
    if (!reason)
        std::abort();
    [[maybe_unused]] auto const written = ::write(STDERR_FILENO, reason, std::strlen(reason));
    std::_Exit(1);
}

} // namespace

void sayWhyWhenOutOfResources()
{
    std::set_terminate(ended);
}

} // namespace pixelhain
