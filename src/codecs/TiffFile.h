#pragma once
#include "codecs/ByteView.h"
#include <cstdarg>
#include <vector>

#include <tiffio.h>

namespace pixelhain {

/// A TIFF opened by the library over a byte source: silent, with bounded allocations.
class TiffFile {
public:
    /// How the library gets at the bytes: by reading pieces, or in memory as a whole. It refuses
    /// tiles that are not packed and no multiple of 1 KiB long when it must read them.
    enum class Access : std::uint8_t { read, whole };

    explicit TiffFile(ByteSource const& bytes, Access access = Access::read);
    ~TiffFile();
    TiffFile(TiffFile const&) = delete;
    TiffFile& operator=(TiffFile const&) = delete;

    [[nodiscard]] bool isOpen() const { return tiff_ != nullptr; }
    [[nodiscard]] ByteSource const& bytes() const { return *place_.bytes; }
    [[nodiscard]] TIFF* get() const { return tiff_; }

    /// A field of one number, its default if the format states one, else `otherwise`.
    template <typename Value> [[nodiscard]] Value number(std::uint32_t tag, Value otherwise) const
    {
        Value value = otherwise;
        return TIFFGetFieldDefaulted(tiff_, tag, &value) == 1 ? value : otherwise;
    }

private:
    struct Place {
        ByteSource const* bytes = nullptr;
        std::uint64_t offset = 0;
        std::vector<std::uint8_t> whole;
    };
    static int map(thandle_t handle, void** base, toff_t* size);
    static void unmap(thandle_t, void*, toff_t) { }
    static tmsize_t read(thandle_t handle, void* into, tmsize_t length);
    static tmsize_t write(thandle_t, void*, tmsize_t) { return 0; }
    static toff_t seek(thandle_t handle, toff_t offset, int whence);
    static int close(thandle_t) { return 0; }
    static toff_t size(thandle_t handle);
    static int ignore(TIFF*, void*, char const*, char const*, va_list) { return 1; }

    Place place_;
    TIFF* tiff_ = nullptr;
};

} // namespace pixelhain
