#include "base/Bitmap.h"
#include <cstdlib>

namespace pixelhain {

namespace {

thread_local PixelMemory* pixelMemory = nullptr;

} // namespace

PixelMemory::PixelMemory()
    : outer_(pixelMemory)
{
    pixelMemory = this;
}

PixelMemory::~PixelMemory()
{
    pixelMemory = outer_;
}

Bitmap Bitmap::allocate(PixelSize size, bool isOpaque)
{
    constexpr std::size_t alignment = 64;
    if (size.width <= 0 || size.height <= 0)
        return {};
    Bitmap bitmap;
    bitmap.size = size;
    bitmap.isOpaque = isOpaque;
    bitmap.bytesPerRow = (static_cast<std::size_t>(size.width) * 4 + 15) & ~std::size_t { 15 };
    auto const bytes = (bitmap.cost() + alignment - 1) & ~(alignment - 1);
    if (pixelMemory != nullptr && (bitmap.pixels = pixelMemory->take(size, bytes)))
        return bitmap;
    auto* memory = static_cast<std::byte*>(std::aligned_alloc(alignment, bytes));
    if (memory == nullptr)
        return {};
    bitmap.pixels = std::shared_ptr<std::byte>(memory, [](std::byte* held) { std::free(held); });
    return bitmap;
}

} // namespace pixelhain
