#include "codecs/ColorConversion.h"
#include "codecs/DecodeLimits.h"
#include <algorithm>
#include <array>
#include <cmath>
#include <lcms2.h>
#include <optional>

namespace pixelhain {

namespace {

using Profile = std::shared_ptr<void>;

Profile openProfile(ByteSpan icc)
{
    if (icc.size() < 128 || icc.size() > DecodeLimits::colorProfile)
        return {};
    auto* profile = cmsOpenProfileFromMem(icc.data(), static_cast<cmsUInt32Number>(icc.size()));
    if (profile == nullptr)
        return {};
    return { profile, cmsCloseProfile };
}

bool isCloseTo(cmsHPROFILE profile, cmsTagSignature tag, std::array<double, 3> const& wanted)
{
    auto const* found = static_cast<cmsCIEXYZ const*>(cmsReadTag(profile, tag));
    constexpr double tolerance = 0.003;
    return found != nullptr && std::abs(found->X - wanted[0]) < tolerance
        && std::abs(found->Y - wanted[1]) < tolerance && std::abs(found->Z - wanted[2]) < tolerance;
}

bool hasSrgbCurve(cmsHPROFILE profile, cmsTagSignature tag)
{
    auto const* curve = static_cast<cmsToneCurve const*>(cmsReadTag(profile, tag));
    if (curve == nullptr)
        return false;
    return std::ranges::all_of(std::array { 0.02F, 0.1F, 0.3F, 0.5F, 0.8F }, [&](float x) {
        auto const linear = x <= 0.04045F ? x / 12.92F : std::pow((x + 0.055F) / 1.055F, 2.4F);
        return std::abs(cmsEvalToneCurveFloat(curve, x) - linear) < 0.002F;
    });
}

// The name says nothing reliable: there are linear profiles called sRGB.
bool isSrgb(cmsHPROFILE profile)
{
    return cmsGetColorSpace(profile) == cmsSigRgbData && !cmsIsTag(profile, cmsSigAToB0Tag)
        && isCloseTo(profile, cmsSigRedColorantTag, { 0.4361, 0.2225, 0.0139 })
        && isCloseTo(profile, cmsSigGreenColorantTag, { 0.3851, 0.7169, 0.0971 })
        && isCloseTo(profile, cmsSigBlueColorantTag, { 0.1431, 0.0606, 0.7141 })
        && hasSrgbCurve(profile, cmsSigRedTRCTag) && hasSrgbCurve(profile, cmsSigGreenTRCTag)
        && hasSrgbCurve(profile, cmsSigBlueTRCTag);
}

constexpr cmsUInt32Number greyFirst
    = COLORSPACE_SH(PT_GRAY) | CHANNELS_SH(1) | EXTRA_SH(3) | BYTES_SH(1);

// The layout to read pixels with, or 0 if the profile is about other colours than these.
cmsUInt32Number inputLayout(cmsHPROFILE profile, PixelFormat format, Channels channels)
{
    auto const space = cmsGetColorSpace(profile);
    if (format == PixelFormat::cmyk || format == PixelFormat::cmykInverted) {
        if (space != cmsSigCmykData)
            return 0;
        return format == PixelFormat::cmyk ? TYPE_CMYK_8 : TYPE_CMYK_8_REV;
    }
    if (space == cmsSigGrayData)
        return channels == Channels::grey ? greyFirst : 0;
    return space == cmsSigRgbData ? TYPE_BGRA_8 : 0;
}

Profile makeTransform(
    cmsHPROFILE from, cmsUInt32Number layout, cmsUInt32Number outLayout, cmsUInt32Number flags)
{
    Profile const srgb(cmsCreate_sRGBProfile(), cmsCloseProfile);
    if (!srgb)
        return {};
    auto* transform = cmsCreateTransform(
        from, layout, srgb.get(), outLayout, INTENT_RELATIVE_COLORIMETRIC, flags);
    if (transform == nullptr)
        return {};
    return { transform, cmsDeleteTransform };
}

struct Cached {
    std::uint64_t hash = 0;
    std::size_t length = 0;
    PixelFormat format = PixelFormat::opaque;
    Channels channels = Channels::color;
    Profile transform; ///< null: nothing to do
};

std::uint64_t hashOf(ByteSpan bytes)
{
    std::uint64_t hash = 0xCBF29CE484222325;
    for (auto const byte : bytes)
        hash = (hash ^ byte) * 0x100000001B3;
    return hash;
}

Profile transformFor(ByteSpan icc, PixelFormat format, Channels channels)
{
    auto const profile = openProfile(icc);
    if (!profile)
        return {};
    auto const layout = inputLayout(profile.get(), format, channels);
    if (layout == 0 || isSrgb(profile.get()))
        return {};
    return makeTransform(profile.get(), layout, TYPE_BGRA_8, 0);
}

// Neighbouring photos share their profile, and making a transform costs as much as using it on
// a thumbnail. One cache a thread: nothing to lock.
Profile cachedTransform(ByteSpan icc, PixelFormat format, Channels channels)
{
    constexpr std::size_t most = 4;
    thread_local std::vector<Cached> cache;
    if (icc.empty() || icc.size() > DecodeLimits::colorProfile)
        return {};
    auto const hash = hashOf(icc);
    auto const found = std::ranges::find_if(cache, [&](Cached const& entry) {
        return entry.hash == hash && entry.length == icc.size() && entry.format == format
            && entry.channels == channels;
    });
    if (found != cache.end()) {
        std::rotate(cache.begin(), found, found + 1);
        return cache.front().transform;
    }
    if (cache.size() == most)
        cache.pop_back();
    cache.insert(
        cache.begin(), { hash, icc.size(), format, channels, transformFor(icc, format, channels) });
    return cache.front().transform;
}

void unpremultiply(std::uint8_t* row, int width)
{
    for (auto* const end = row + std::ptrdiff_t(width) * 4; row != end; row += 4) {
        auto const alpha = row[3];
        if (alpha == 0 || alpha == 255)
            continue;
        for (int c = 0; c < 3; ++c)
            row[c] = static_cast<std::uint8_t>(std::min(255, (row[c] * 255 + alpha / 2) / alpha));
    }
}

void multiplyInk(std::uint8_t* row, int width, bool isInverted)
{
    auto const flip = static_cast<std::uint8_t>(isInverted ? 0 : 255);
    for (auto* const end = row + std::ptrdiff_t(width) * 4; row != end; row += 4) {
        auto const light = [&](int i) { return static_cast<std::uint8_t>(row[i] ^ flip); };
        auto const k = light(3);
        auto const mixed
            = [&](std::uint8_t ink) { return static_cast<std::uint8_t>((ink * k + 127) / 255); };
        auto const red = mixed(light(0));
        auto const green = mixed(light(1));
        auto const blue = mixed(light(2));
        row[0] = blue;
        row[1] = green;
        row[2] = red;
        row[3] = 255;
    }
}

void setOpaque(std::uint8_t* row, int width)
{
    for (auto* const end = row + std::ptrdiff_t(width) * 4; row != end; row += 4)
        row[3] = 255;
}

} // namespace

void premultiply(std::uint8_t* row, int width)
{
    for (auto* const end = row + std::ptrdiff_t(width) * 4; row != end; row += 4) {
        unsigned const alpha = row[3];
        for (int c = 0; c < 3; ++c) {
            // The same as dividing by 255 and rounding, without a division.
            auto const product = row[c] * alpha + 128;
            row[c] = static_cast<std::uint8_t>((product + (product >> 8)) >> 8);
        }
    }
}

void convertToSrgb(Bitmap& bitmap, PixelFormat format, Channels channels, ByteSpan profile)
{
    auto const transform = cachedTransform(profile, format, channels);
    auto const isInk = format == PixelFormat::cmyk || format == PixelFormat::cmykInverted;
    auto const width = bitmap.size.width;
    if (!transform && !isInk)
        return;
    for (int y = 0; y < bitmap.size.height; ++y) {
        auto* row = bitmap.row(y);
        if (!transform) {
            multiplyInk(row, width, format == PixelFormat::cmykInverted);
            continue;
        }
        if (!bitmap.isOpaque)
            unpremultiply(row, width);
        cmsDoTransform(transform.get(), row, row, static_cast<cmsUInt32Number>(width));
        if (isInk)
            setOpaque(row, width);
        else if (!bitmap.isOpaque)
            premultiply(row, width);
    }
}

bool changesColors(ByteSpan icc)
{
    auto const profile = openProfile(icc);
    return profile && cmsGetColorSpace(profile.get()) == cmsSigRgbData && !isSrgb(profile.get());
}

DeepRowConverter::DeepRowConverter(ByteSpan icc)
{
    auto const profile = openProfile(icc);
    if (profile && cmsGetColorSpace(profile.get()) == cmsSigRgbData)
        transform_ = makeTransform(profile.get(), TYPE_RGBA_16, TYPE_BGRA_8, cmsFLAGS_COPY_ALPHA);
}

void DeepRowConverter::convert(std::uint16_t const* in, std::uint8_t* out, int pixels) const
{
    cmsDoTransform(transform_.get(), in, out, static_cast<cmsUInt32Number>(pixels));
}

std::vector<std::uint8_t> makeProfile(Chromaticities const& colors, double gamma)
{
    cmsCIExyY const white { colors.white[0], colors.white[1], 1 };
    cmsCIExyYTRIPLE const primaries { { colors.red[0], colors.red[1], 1 },
        { colors.green[0], colors.green[1], 1 }, { colors.blue[0], colors.blue[1], 1 } };
    std::shared_ptr<cmsToneCurve> const curve(cmsBuildGamma(nullptr, gamma), cmsFreeToneCurve);
    if (!curve)
        return {};
    std::array<cmsToneCurve*, 3> const curves { curve.get(), curve.get(), curve.get() };
    auto* made = cmsCreateRGBProfile(&white, &primaries, curves.data());
    if (made == nullptr)
        return {};
    Profile const profile(made, cmsCloseProfile);
    cmsUInt32Number length = 0;
    if (!cmsSaveProfileToMem(made, nullptr, &length))
        return {};
    std::vector<std::uint8_t> bytes(length);
    if (!cmsSaveProfileToMem(made, bytes.data(), &length))
        return {};
    return bytes;
}

} // namespace pixelhain
