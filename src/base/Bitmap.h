#pragma once
#include "base/Geometry.h"
#include <cstddef>
#include <cstdint>
#include <memory>

namespace pixelhain {

/// A decoded picture, upright and in sRGB: 32 bits a pixel, in memory B, G, R, A, premultiplied.
/// Opaque ones have A = 255 everywhere, so a view may paint them without blending. Copies share
/// the pixels, which never change once the bitmap is handed on.
struct Bitmap {
    PixelSize size;
    std::size_t bytesPerRow = 0;
    bool isOpaque = true;
    std::shared_ptr<std::byte> pixels;

    bool isEmpty() const { return !pixels; }
    std::size_t cost() const { return bytesPerRow * static_cast<std::size_t>(size.height); }

    std::uint8_t* row(int y)
    {
        return reinterpret_cast<std::uint8_t*>(pixels.get())
            + bytesPerRow * static_cast<std::size_t>(y);
    }
    std::uint8_t const* row(int y) const
    {
        return reinterpret_cast<std::uint8_t const*>(pixels.get())
            + bytesPerRow * static_cast<std::size_t>(y);
    }

    /// Uninitialised pixels, rows aligned to 16 bytes; empty if `size` is not positive or there is
    /// no memory for it. A PixelMemory of the calling thread is asked first.
    static Bitmap allocate(PixelSize size, bool isOpaque);
};

/// A place for pixels other than the heap. While one lives, the bitmaps that its thread allocates
/// may lie in it.
class PixelMemory {
public:
    PixelMemory();
    PixelMemory(PixelMemory const&) = delete;
    PixelMemory& operator=(PixelMemory const&) = delete;
    virtual ~PixelMemory();

    /// `bytes` for a bitmap of `size`, aligned to 64; null: the heap shall have it.
    [[nodiscard]] virtual std::shared_ptr<std::byte> take(PixelSize size, std::size_t bytes) = 0;

private:
    PixelMemory* outer_;
};

} // namespace pixelhain
