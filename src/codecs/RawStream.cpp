#include "codecs/RawStream.h"
#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>

namespace pixelhain {

namespace {

constexpr std::size_t windowBytes = std::size_t { 64 } << 10;
constexpr std::uint32_t callsBetweenLooks = 4096;
// Directories of real files are never read behind the end more than some hundred times.
constexpr std::uint32_t mostEnds = 100'000;

} // namespace

double ThreadTimeLimit::now()
{
    timespec time {};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

RawStream::RawStream(ByteSource const& bytes, ThreadTimeLimit const& limit)
    : bytes_(bytes)
    , limit_(limit)
    , window_(windowBytes)
{
}

// Nothing may be thrown out of a loop that is made for several threads, even if one runs it.
void RawStream::count()
{
    if (++calls_ % callsBetweenLooks == 0 && omp_get_level() == 0 && limit_.isOver())
        throw LIBRAW_EXCEPTION_CANCELLED_BY_CALLBACK;
}

void RawStream::noteEnd(std::uint64_t missing)
{
    if (expectsPixels_)
        missing_ += missing;
    else if (++ends_ > mostEnds && omp_get_level() == 0)
        throw LIBRAW_EXCEPTION_IO_EOF;
}

bool RawStream::fill()
{
    if (position_ >= windowStart_ && position_ - windowStart_ < windowLength_)
        return true;
    windowStart_ = position_;
    windowLength_ = bytes_.readAt(position_, window_);
    return windowLength_ > 0;
}

int RawStream::read(void* into, size_t size, size_t count)
{
    this->count();
    if (size == 0 || count == 0)
        return 0;
    auto const left = bytes_.size() - std::min(position_, bytes_.size());
    auto const wanted = count > left / size ? left : std::uint64_t { size } * count;
    std::uint64_t got = 0;
    auto* to = static_cast<std::uint8_t*>(into);
    while (got < wanted) {
        if (wanted - got >= window_.size()) {
            auto const more
                = bytes_.readAt(position_, { to + got, static_cast<std::size_t>(wanted - got) });
            if (more == 0)
                break;
            got += more;
            position_ += more;
            continue;
        }
        if (!fill())
            break;
        auto const at = static_cast<std::size_t>(position_ - windowStart_);
        auto const there = std::min<std::uint64_t>(windowLength_ - at, wanted - got);
        std::memcpy(to + got, window_.data() + at, static_cast<std::size_t>(there));
        got += there;
        position_ += there;
    }
    if (expectsPixels_)
        got_ += got;
    if (got / size < count)
        noteEnd(std::min<std::uint64_t>(count, bytes_.size()) * size - got);
    return static_cast<int>(got / size);
}

int RawStream::seek(INT64 offset, int whence)
{
    count();
    auto const size = static_cast<INT64>(bytes_.size());
    INT64 base = 0;
    if (whence == SEEK_CUR)
        base = static_cast<INT64>(position_);
    else if (whence == SEEK_END)
        base = size;
    INT64 target = 0;
    if (__builtin_add_overflow(base, offset, &target))
        target = size;
    position_ = static_cast<std::uint64_t>(std::clamp<INT64>(target, 0, size));
    return 0;
}

int RawStream::get_char()
{
    count();
    if (!fill()) {
        noteEnd(1);
        return -1;
    }
    if (expectsPixels_)
        ++got_;
    return window_[static_cast<std::size_t>(position_++ - windowStart_)];
}

char* RawStream::gets(char* into, int size)
{
    if (size < 1)
        return nullptr;
    int length = 0;
    while (length < size - 1) {
        auto const next = get_char();
        if (next < 0)
            break;
        into[length++] = static_cast<char>(next);
        if (next == '\n')
            break;
    }
    into[length] = 0;
    return length > 0 ? into : nullptr;
}

int RawStream::scanf_one(char const* format, void* value)
{
    std::array<char, 32> word {};
    std::size_t length = 0;
    for (;;) {
        auto const next = get_char();
        auto const isSpace = next == ' ' || (next >= '\t' && next <= '\r');
        if (isSpace && length == 0)
            continue;
        if (next <= 0 || isSpace || length + 1 >= word.size())
            break;
        word[length++] = static_cast<char>(next);
    }
    if (length == 0)
        return EOF;
    // The library asks for numbers only, one at a time.
    if (std::strcmp(format, "%d") == 0)
        return std::sscanf(word.data(), "%d", static_cast<int*>(value));
    if (std::strcmp(format, "%f") == 0)
        return std::sscanf(word.data(), "%f", static_cast<float*>(value));
    return EOF;
}

} // namespace pixelhain
