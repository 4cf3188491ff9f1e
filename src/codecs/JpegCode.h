#pragma once
#include <cstdint>

namespace pixelhain {

/// The second byte of a JPEG marker, after 0xFF; names and values are those of ITU-T T.81, table
/// B.1.
struct JpegCode {
    enum : std::uint8_t {
        temporary = 0x01,
        baselineFrame = 0xC0,
        extendedFrame = 0xC1,
        progressiveFrame = 0xC2,
        huffmanTables = 0xC4,
        extension = 0xC8,
        arithmeticConditioning = 0xCC,
        lastFrame = 0xCF,
        firstRestart = 0xD0,
        lastRestart = 0xD7,
        startOfImage = 0xD8,
        endOfImage = 0xD9,
        startOfScan = 0xDA,
        quantizationTables = 0xDB,
        restartInterval = 0xDD,
        application0 = 0xE0, ///< JFIF
        application1 = 0xE1, ///< Exif, XMP
        application2 = 0xE2, ///< colour profiles, the index of several pictures
        application14 = 0xEE, ///< Adobe
        application15 = 0xEF,
        comment = 0xFE,
    };

    /// Whether it is followed by neither length nor contents.
    static constexpr bool standsAlone(std::uint8_t code)
    {
        return code == temporary || (code >= firstRestart && code <= startOfImage);
    }

    /// Whether a frame of any kind begins with it.
    static constexpr bool isFrame(std::uint8_t code)
    {
        return code >= baselineFrame && code <= lastFrame && code != huffmanTables
            && code != extension && code != arithmeticConditioning;
    }

    /// Whether a decoder may pass over it: what programs or people noted.
    static constexpr bool isNote(std::uint8_t code)
    {
        return code == comment || (code >= application0 && code <= application15);
    }
};

} // namespace pixelhain
