#include "decoder/SharedSpace.h"
#include <cerrno>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace pixelhain {

namespace {

// Memory that nothing can be run from, where the kernel knows how to promise that (6.3 and later).
int anonymousFile()
{
    constexpr unsigned noExecSeal = 8; // MFD_NOEXEC_SEAL; not in the headers of every system
    constexpr unsigned flags = MFD_CLOEXEC | MFD_ALLOW_SEALING;
    int const file = ::memfd_create("pixelhain", flags | noExecSeal);
    return file >= 0 || errno != EINVAL ? file : ::memfd_create("pixelhain", flags);
}

std::size_t wholePages(std::size_t bytes)
{
    auto const page = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
    return (bytes + page - 1) / page * page;
}

} // namespace

std::optional<SharedSpace> SharedSpace::create(std::size_t bytes)
{
    auto const size = wholePages(bytes);
    Descriptor file(anonymousFile());
    if (!file || ::ftruncate(file.get(), static_cast<off_t>(size)) != 0
        || ::fcntl(file.get(), F_ADD_SEALS, F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_SEAL) != 0)
        return std::nullopt;
    void* const data = ::mmap(nullptr, size, PROT_READ, MAP_SHARED, file.get(), 0);
    if (data == MAP_FAILED)
        return std::nullopt;
    return SharedSpace(std::move(file), size, static_cast<std::byte const*>(data));
}

SharedSpace::SharedSpace(Descriptor file, std::size_t size, std::byte const* data)
    : file_(std::move(file))
    , size_(size)
    , data_(data)
{
}

SharedSpace::SharedSpace(SharedSpace&& other) noexcept
    : file_(std::move(other.file_))
    , size_(std::exchange(other.size_, 0))
    , data_(std::exchange(other.data_, nullptr))
{
}

SharedSpace& SharedSpace::operator=(SharedSpace&& other) noexcept
{
    std::swap(file_, other.file_);
    std::swap(size_, other.size_);
    std::swap(data_, other.data_);
    return *this;
}

SharedSpace::~SharedSpace()
{
    if (data_ != nullptr)
        ::munmap(const_cast<std::byte*>(data_), size_);
}

void SharedSpace::freeBehind(std::size_t bytes) const
{
    auto const kept = wholePages(bytes);
    if (kept < size_)
        ::fallocate(file_.get(), FALLOC_FL_PUNCH_HOLE | FALLOC_FL_KEEP_SIZE,
            static_cast<off_t>(kept), static_cast<off_t>(size_ - kept));
}

WritableSpace::WritableSpace(int descriptor, std::size_t bytes)
{
    void* const data = ::mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, 0);
    if (data == MAP_FAILED)
        return;
    data_ = static_cast<std::byte*>(data);
    size_ = bytes;
}

WritableSpace::WritableSpace(WritableSpace&& other) noexcept
    : data_(std::exchange(other.data_, nullptr))
    , size_(std::exchange(other.size_, 0))
{
}

WritableSpace& WritableSpace::operator=(WritableSpace&& other) noexcept
{
    std::swap(data_, other.data_);
    std::swap(size_, other.size_);
    return *this;
}

WritableSpace::~WritableSpace()
{
    if (data_ != nullptr)
        ::munmap(data_, size_);
}

} // namespace pixelhain
