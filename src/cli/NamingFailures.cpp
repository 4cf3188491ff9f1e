#include "cli/NamingFailures.h"
#include "posix/FolderHandle.h"
#include <cerrno>
#include <fcntl.h>
#include <system_error>

namespace pixelhain {

bool NamingFailures::list(FileUrl const& folder, EntryVisitor const& visit) const
{
    if (files_.list(folder, visit))
        return true;
    // The folder may have become readable in the meantime, but it was not listed.
    auto const handle = openFolder(folder.path(), O_RDONLY);
    context_.complain(folder.path(), std::generic_category().message(handle ? EAGAIN : errno));
    hasFailed_ = true;
    return false;
}

} // namespace pixelhain
