#pragma once
#include <unistd.h>
#include <utility>

namespace pixelhain {

/// Owns a file descriptor and closes it.
class Descriptor {
public:
    Descriptor() = default;
    explicit Descriptor(int number)
        : number_(number)
    {
    }
    Descriptor(Descriptor&& other) noexcept
        : number_(std::exchange(other.number_, -1))
    {
    }
    Descriptor& operator=(Descriptor&& other) noexcept
    {
        std::swap(number_, other.number_);
        return *this;
    }
    ~Descriptor()
    {
        if (number_ >= 0)
            ::close(number_);
    }

    /// Whether there is an open file behind it.
    explicit operator bool() const { return number_ >= 0; }
    int get() const { return number_; }

private:
    int number_ = -1;
};

} // namespace pixelhain
