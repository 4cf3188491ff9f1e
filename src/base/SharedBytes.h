#pragma once
#include <atomic>
#include <cstddef>
#include <new>
#include <utility>

namespace pixelhain {

/// Bytes that several owners hold together; they go with the last of them. Owners may live on
/// different threads, so whoever made the bytes writes them before giving them away. A pointer
/// wide, half of what a std::shared_ptr takes: a list of a million files holds millions of these.
class SharedBytes {
public:
    SharedBytes() = default;

    /// `size` bytes of no particular value.
    explicit SharedBytes(std::size_t size)
        : block_(new (::operator new(sizeof(Block) + size)) Block)
    {
    }
    SharedBytes(SharedBytes const& other) noexcept
        : block_(other.block_)
    {
        if (block_)
            block_->owners.fetch_add(1, std::memory_order_relaxed);
    }
    SharedBytes(SharedBytes&& other) noexcept
        : block_(std::exchange(other.block_, nullptr))
    {
    }
    SharedBytes& operator=(SharedBytes other) noexcept
    {
        std::swap(block_, other.block_);
        return *this;
    }
    ~SharedBytes()
    {
        if (block_ && block_->owners.fetch_sub(1, std::memory_order_acq_rel) == 1)
            ::operator delete(block_);
    }

    /// The first of them; null if there are none.
    char* data() const { return block_ ? reinterpret_cast<char*>(block_ + 1) : nullptr; }

    /// How many hold them, while no other thread does.
    std::size_t owners() const { return block_ ? block_->owners.load() : 0; }

private:
    struct Block {
        std::atomic<std::size_t> owners = 1;
    };
    Block* block_ = nullptr;
};

} // namespace pixelhain
