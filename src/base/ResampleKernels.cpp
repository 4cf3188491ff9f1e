#include "base/ResampleKernels.h"
#include <algorithm>
#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace pixelhain {

namespace {

constexpr int downShift = 14 - 6;
constexpr int acrossShift = 14 + 6;

void downPlain(std::uint8_t const* const* rows, std::int16_t const* weights, int taps,
    std::int16_t* out, std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i) {
        int sum = 1 << (downShift - 1);
        for (int t = 0; t < taps; ++t)
            sum += rows[t][i] * weights[t];
        out[i] = static_cast<std::int16_t>(std::clamp(sum >> downShift, -32768, 32767));
    }
}

void acrossPlain(std::int16_t const* in, std::int32_t const* firsts, std::int16_t const* weights,
    int taps, std::uint8_t* out, int count)
{
    for (int i = 0; i < count; ++i, weights += taps, out += 4) {
        auto const* from = in + std::ptrdiff_t(firsts[i]) * 4;
        for (int channel = 0; channel < 4; ++channel) {
            int sum = 1 << (acrossShift - 1);
            for (int t = 0; t < taps; ++t)
                sum += from[4 * t + channel] * weights[t];
            out[channel] = static_cast<std::uint8_t>(std::clamp(sum >> acrossShift, 0, 255));
        }
    }
}

void gatherPlain(std::uint8_t const* in, int width, std::uint32_t* sums, int count)
{
    for (int i = 0; i < count; ++i, sums += 4) {
        for (auto const* end = in + std::ptrdiff_t(width) * 4; in != end; in += 4) {
            for (int c = 0; c < 4; ++c)
                sums[c] += in[c];
        }
    }
}

#if defined(__x86_64__)
int weightPair(std::int16_t const* weights)
{
    return static_cast<int>(static_cast<std::uint16_t>(weights[0])
        | (static_cast<std::uint32_t>(static_cast<std::uint16_t>(weights[1])) << 16));
}

void downSse2(std::uint8_t const* const* rows, std::int16_t const* weights, int taps,
    std::int16_t* out, std::size_t count)
{
    auto const zero = _mm_setzero_si128();
    for (std::size_t i = 0; i < count; i += 16) {
        auto const half = _mm_set1_epi32(1 << (downShift - 1));
        __m128i sums[4] = { half, half, half, half };
        for (int t = 0; t < taps; t += 2) {
            auto const weight = _mm_set1_epi32(weightPair(weights + t));
            auto const a = _mm_loadu_si128(reinterpret_cast<__m128i const*>(rows[t] + i));
            auto const b = _mm_loadu_si128(reinterpret_cast<__m128i const*>(rows[t + 1] + i));
            auto const low = _mm_unpacklo_epi8(a, b);
            auto const high = _mm_unpackhi_epi8(a, b);
            auto const add = [&](__m128i& sum, __m128i pairs) {
                sum = _mm_add_epi32(sum, _mm_madd_epi16(pairs, weight));
            };
            add(sums[0], _mm_unpacklo_epi8(low, zero));
            add(sums[1], _mm_unpackhi_epi8(low, zero));
            add(sums[2], _mm_unpacklo_epi8(high, zero));
            add(sums[3], _mm_unpackhi_epi8(high, zero));
        }
        for (auto& sum : sums)
            sum = _mm_srai_epi32(sum, downShift);
        auto* to = reinterpret_cast<__m128i*>(out + i);
        _mm_storeu_si128(to, _mm_packs_epi32(sums[0], sums[1]));
        _mm_storeu_si128(to + 1, _mm_packs_epi32(sums[2], sums[3]));
    }
}

void acrossSse2(std::int16_t const* in, std::int32_t const* firsts, std::int16_t const* weights,
    int taps, std::uint8_t* out, int count)
{
    for (int i = 0; i < count; ++i, weights += taps, out += 4) {
        auto const* from = in + std::ptrdiff_t(firsts[i]) * 4;
        auto sum = _mm_set1_epi32(1 << (acrossShift - 1));
        for (int t = 0; t < taps; t += 2) {
            auto const pixels
                = _mm_loadu_si128(reinterpret_cast<__m128i const*>(from + std::ptrdiff_t(t) * 4));
            auto const pairs = _mm_unpacklo_epi16(pixels, _mm_srli_si128(pixels, 8));
            sum = _mm_add_epi32(
                sum, _mm_madd_epi16(pairs, _mm_set1_epi32(weightPair(weights + t))));
        }
        sum = _mm_packs_epi32(_mm_srai_epi32(sum, acrossShift), sum);
        _mm_storeu_si32(out, _mm_packus_epi16(sum, sum));
    }
}

// Sums of one row stay within 16 bits: 256 pixels of 255.
void gatherSse2(std::uint8_t const* in, int width, std::uint32_t* sums, int count)
{
    auto const zero = _mm_setzero_si128();
    for (int i = 0; i < count; ++i, sums += 4) {
        auto total = zero;
        int x = 0;
        for (; x + 4 <= width; x += 4, in += 16) {
            auto const pixels = _mm_loadu_si128(reinterpret_cast<__m128i const*>(in));
            total = _mm_add_epi16(total, _mm_unpacklo_epi8(pixels, zero));
            total = _mm_add_epi16(total, _mm_unpackhi_epi8(pixels, zero));
        }
        for (; x < width; ++x, in += 4)
            total = _mm_add_epi16(total, _mm_unpacklo_epi8(_mm_loadu_si32(in), zero));
        total = _mm_add_epi16(total, _mm_srli_si128(total, 8));
        auto* to = reinterpret_cast<__m128i*>(sums);
        _mm_storeu_si128(to, _mm_add_epi32(_mm_loadu_si128(to), _mm_unpacklo_epi16(total, zero)));
    }
}

__attribute__((target("avx2"))) void downAvx2(std::uint8_t const* const* rows,
    std::int16_t const* weights, int taps, std::int16_t* out, std::size_t count)
{
    auto const zero = _mm256_setzero_si256();
    for (std::size_t i = 0; i < count; i += 32) {
        auto const half = _mm256_set1_epi32(1 << (downShift - 1));
        __m256i sum0 = half;
        __m256i sum1 = half;
        __m256i sum2 = half;
        __m256i sum3 = half;
        for (int t = 0; t < taps; t += 2) {
            auto const weight = _mm256_set1_epi32(weightPair(weights + t));
            auto const a = _mm256_loadu_si256(reinterpret_cast<__m256i const*>(rows[t] + i));
            auto const b = _mm256_loadu_si256(reinterpret_cast<__m256i const*>(rows[t + 1] + i));
            auto const low = _mm256_unpacklo_epi8(a, b);
            auto const high = _mm256_unpackhi_epi8(a, b);
            sum0 = _mm256_add_epi32(
                sum0, _mm256_madd_epi16(_mm256_unpacklo_epi8(low, zero), weight));
            sum1 = _mm256_add_epi32(
                sum1, _mm256_madd_epi16(_mm256_unpackhi_epi8(low, zero), weight));
            sum2 = _mm256_add_epi32(
                sum2, _mm256_madd_epi16(_mm256_unpacklo_epi8(high, zero), weight));
            sum3 = _mm256_add_epi32(
                sum3, _mm256_madd_epi16(_mm256_unpackhi_epi8(high, zero), weight));
        }
        auto const first = _mm256_packs_epi32(
            _mm256_srai_epi32(sum0, downShift), _mm256_srai_epi32(sum1, downShift));
        auto const second = _mm256_packs_epi32(
            _mm256_srai_epi32(sum2, downShift), _mm256_srai_epi32(sum3, downShift));
        auto* to = reinterpret_cast<__m256i*>(out + i);
        _mm256_storeu_si256(to, _mm256_permute2x128_si256(first, second, 0x20));
        _mm256_storeu_si256(to + 1, _mm256_permute2x128_si256(first, second, 0x31));
    }
}

__attribute__((target("avx2"))) void acrossAvx2(std::int16_t const* in, std::int32_t const* firsts,
    std::int16_t const* weights, int taps, std::uint8_t* out, int count)
{
    auto const pairUp = _mm256_setr_epi8(0, 1, 8, 9, 2, 3, 10, 11, 4, 5, 12, 13, 6, 7, 14, 15, 0, 1,
        8, 9, 2, 3, 10, 11, 4, 5, 12, 13, 6, 7, 14, 15);
    auto const spread = _mm256_setr_epi32(0, 0, 0, 0, 1, 1, 1, 1);
    for (int i = 0; i < count; ++i, weights += taps, out += 4) {
        auto const* from = in + std::ptrdiff_t(firsts[i]) * 4;
        auto sums = _mm256_setzero_si256();
        for (int t = 0; t < taps; t += 4) {
            auto const pixels = _mm256_loadu_si256(
                reinterpret_cast<__m256i const*>(from + std::ptrdiff_t(t) * 4));
            auto const four = _mm_loadl_epi64(reinterpret_cast<__m128i const*>(weights + t));
            auto const weight = _mm256_permutevar8x32_epi32(_mm256_castsi128_si256(four), spread);
            sums = _mm256_add_epi32(
                sums, _mm256_madd_epi16(_mm256_shuffle_epi8(pixels, pairUp), weight));
        }
        auto sum = _mm_add_epi32(_mm256_castsi256_si128(sums), _mm256_extracti128_si256(sums, 1));
        sum = _mm_add_epi32(sum, _mm_set1_epi32(1 << (acrossShift - 1)));
        sum = _mm_packs_epi32(_mm_srai_epi32(sum, acrossShift), sum);
        _mm_storeu_si32(out, _mm_packus_epi16(sum, sum));
    }
}
#endif

} // namespace

ResampleKernels const& plainResampleKernels()
{
    static constexpr ResampleKernels kernels { downPlain, acrossPlain, gatherPlain };
    return kernels;
}

ResampleKernels const& resampleKernels()
{
#if defined(__x86_64__)
    static constexpr ResampleKernels sse2 { downSse2, acrossSse2, gatherSse2 };
    static constexpr ResampleKernels avx2 { downAvx2, acrossAvx2, gatherSse2 };
    static bool const hasAvx2 = __builtin_cpu_supports("avx2") != 0;
    return hasAvx2 ? avx2 : sse2;
#else
    return plainResampleKernels();
#endif
}

} // namespace pixelhain
