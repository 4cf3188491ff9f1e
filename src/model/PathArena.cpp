#include "model/PathArena.h"
#include <algorithm>
#include <cstring>

namespace pixelhain {

namespace {

constexpr std::size_t largestBlock = 1U << 20U;

} // namespace

FileUrl PathArena::add(std::string_view folder, std::string_view name)
{
    std::size_t const slash = folder.ends_with('/') ? 0 : 1;
    auto const length = folder.size() + slash + name.size();
    if (left_ <= length) {
        // Blocks grow with the folder, so that a small one holds on to little memory.
        auto const size = std::max(nextBlock_, length + 1);
        block_ = SharedBytes(size);
        free_ = block_.data();
        left_ = size;
        nextBlock_ = std::min(nextBlock_ * 2, largestBlock);
    }
    char* const begin = free_;
    std::memcpy(begin, folder.data(), folder.size());
    begin[folder.size()] = '/';
    std::memcpy(begin + folder.size() + slash, name.data(), name.size());
    begin[length] = '\0';
    free_ += length + 1;
    left_ -= length + 1;
    return FileUrl(block_, { begin, length });
}

} // namespace pixelhain
