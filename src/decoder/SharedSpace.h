#pragma once
#include "posix/Descriptor.h"
#include <cstddef>
#include <cstdint>
#include <optional>

namespace pixelhain {

/// Memory that a worker fills and the program reads. The program makes it and fixes its size, so
/// that nobody can cut it off under a reader; pages that nobody touched cost nothing.
class SharedSpace {
public:
    /// Nothing, with errno set, if there is no memory or no descriptor for it.
    [[nodiscard]] static std::optional<SharedSpace> create(std::size_t bytes);

    SharedSpace(SharedSpace&& other) noexcept;
    SharedSpace& operator=(SharedSpace&& other) noexcept;
    ~SharedSpace();

    /// For handing it to a worker.
    [[nodiscard]] int descriptor() const { return file_.get(); }
    [[nodiscard]] std::size_t size() const { return size_; }

    /// What the worker wrote. It may change until the worker has let go of it: nothing in it may
    /// be trusted because it was checked before.
    [[nodiscard]] std::byte const* data() const { return data_; }

    /// Gives the memory behind the first `bytes` back; those who read there find zeroes.
    void freeBehind(std::size_t bytes) const;

private:
    SharedSpace(Descriptor file, std::size_t size, std::byte const* data);

    Descriptor file_;
    std::size_t size_ = 0;
    std::byte const* data_ = nullptr;
};

/// The worker's view of a space: writable, as long as this lives.
class WritableSpace {
public:
    WritableSpace() = default;
    /// The first `bytes` of a space, which it must have; empty if they do not fit into the memory
    /// of the process.
    WritableSpace(int descriptor, std::size_t bytes);
    WritableSpace(WritableSpace&& other) noexcept;
    WritableSpace& operator=(WritableSpace&& other) noexcept;
    ~WritableSpace();

    explicit operator bool() const { return data_ != nullptr; }
    [[nodiscard]] std::byte* data() const { return data_; }
    [[nodiscard]] std::size_t size() const { return size_; }

private:
    std::byte* data_ = nullptr;
    std::size_t size_ = 0;
};

} // namespace pixelhain
