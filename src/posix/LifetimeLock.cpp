#include "posix/LifetimeLock.h"
#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>

namespace pixelhain {

LifetimeLock::LifetimeLock(std::string const& file)
    : file_(::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0600))
{
    if (file_.get() < 0)
        return;
    if (::flock(file_.get(), LOCK_EX | LOCK_NB) == 0)
        state_ = State::mine;
    else if (errno == EWOULDBLOCK)
        state_ = State::others;
}

} // namespace pixelhain
