#include "codecs/TiffFile.h"
#include "codecs/DecodeLimits.h"
#include <cstdio>
#include <memory>
#include <new>

namespace pixelhain {

TiffFile::TiffFile(ByteSource const& bytes, Access access)
    : place_ { &bytes, 0, {} }
{
    std::unique_ptr<TIFFOpenOptions, void (*)(TIFFOpenOptions*)> const options(
        TIFFOpenOptionsAlloc(), TIFFOpenOptionsFree);
    if (!options)
        return;
    TIFFOpenOptionsSetMaxSingleMemAlloc(
        options.get(), static_cast<tmsize_t>(DecodeLimits::memory / 2));
    TIFFOpenOptionsSetErrorHandlerExtR(options.get(), ignore, nullptr);
    TIFFOpenOptionsSetWarningHandlerExtR(options.get(), ignore, nullptr);
    tiff_ = TIFFClientOpenExt("picture", access == Access::read ? "rm" : "r", &place_, read, write,
        seek, close, size, map, unmap, options.get());
}

TiffFile::~TiffFile()
{
    if (tiff_ != nullptr)
        TIFFClose(tiff_);
}

int TiffFile::map(thandle_t handle, void** base, toff_t* size)
{
    auto& place = *static_cast<Place*>(handle);
    if (place.bytes->size() > DecodeLimits::wholeFile)
        return 0;
    try {
        place.whole = bytesAt(*place.bytes, 0, static_cast<std::size_t>(place.bytes->size()));
    } catch (std::bad_alloc const&) {
        return 0; // nothing may be thrown through the library
    }
    *base = place.whole.data();
    *size = place.whole.size();
    return 1;
}

tmsize_t TiffFile::read(thandle_t handle, void* into, tmsize_t length)
{
    auto& place = *static_cast<Place*>(handle);
    if (length <= 0)
        return 0;
    auto const got = place.bytes->readAt(
        place.offset, { static_cast<std::uint8_t*>(into), static_cast<std::size_t>(length) });
    place.offset += got;
    return static_cast<tmsize_t>(got);
}

toff_t TiffFile::seek(thandle_t handle, toff_t offset, int whence)
{
    auto& place = *static_cast<Place*>(handle);
    if (whence == SEEK_CUR)
        place.offset += offset;
    else if (whence == SEEK_END)
        place.offset = place.bytes->size() + offset;
    else
        place.offset = offset;
    return place.offset;
}

toff_t TiffFile::size(thandle_t handle)
{
    return static_cast<Place*>(handle)->bytes->size();
}

} // namespace pixelhain
