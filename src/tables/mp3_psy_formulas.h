// How the tables of psychoacoustic model two follow from what ISO/IEC 11172-3 lists: everything
// here runs at compile time only.
#pragma once

#include <array>
#include <cstdint>

#include "core/constexpr_math.h"
#include "tables/mp3_psy.h"

namespace zetac::tables::psy {

using core::kPi;

// A number of six significant decimal digits, digits * 10^exponent: all derived tables round to
// this first.
struct SixDigits {
    std::uint64_t digits;
    int exponent;
};

constexpr SixDigits sixDigits(long double x) {
    if (x == 0) return {0, 0};
    int exponent = 0;
    for (; x < 100000; x *= 10) --exponent;
    for (; x >= 999999.5L; x /= 10) ++exponent;
    return {static_cast<std::uint64_t>(core::roundToInteger(x)), exponent};
}

constexpr std::uint64_t powerOfTen(int exponent) {
    std::uint64_t power = 1;
    for (; exponent > 0; --exponent) power *= 10;
    return power;
}

// Digits below the unit of the format are dropped, and 1 becomes the largest value.
constexpr std::int32_t q31(SixDigits x) {
    if (x.exponent < -19) return 0;
    const std::uint64_t scaled =
        x.exponent > 0 ? INT32_MAX : (x.digits << 31) / powerOfTen(-x.exponent);
    return static_cast<std::int32_t>(scaled > INT32_MAX ? INT32_MAX : scaled);
}
constexpr std::int32_t q31(long double x) {
    return q31(sixDigits(x));
}
constexpr std::int32_t q31Thousandths(int thousandths) {
    return q31(SixDigits{static_cast<std::uint64_t>(thousandths), -3});
}
constexpr std::uint64_t wholePart(SixDigits x) {
    return x.exponent < 0 ? x.digits / powerOfTen(-x.exponent) : x.digits * powerOfTen(x.exponent);
}

constexpr long double fromDecibel(long double x) {
    return core::exponential(x / 10 * (core::kLn2 * core::logarithm2(10)));
}

// Critical-band rate in Bark of a frequency in kHz.
constexpr long double bark(long double f) {
    const long double ratio = f / 7.5L;
    return 13 * core::arctangent(0.76L * f) + 3.5L * core::arctangent(ratio * ratio);
}

// A threshold in quiet in dB, f in kHz.
constexpr long double quietCurve(long double f) {
    const long double a = f - 3.4L;
    const long double b = f - 8.7L;
    return 3.64L * core::power(f, -0.8L) - 6.8L * core::exponential(-0.6L * a * a) +
           6 * core::exponential(-0.15L * b * b) + 0.0006L * f * f * f * f;
}

// The spreading function of Annex D in dB, for a masked point `distance` Bark above the masker; in
// Layer III distances count three times upwards and one and a half times downwards.
constexpr long double spreadingCurve(long double distance) {
    const long double t = distance * (distance >= 0 ? 3 : 1.5L);
    const long double dip = (t - 0.5L) * (t - 0.5L) - 2 * (t - 0.5L);
    const long double s = t + 0.474L;
    return (dip < 0 ? 8 * dip : 0) + 15.811389L + 7.5L * s - 17.5L * core::squareRoot(1 + s * s);
}

// The partitions of a spectrum of fftLength / 2 + 1 lines.
template <std::size_t kCount>
struct Partitions {
    int rate;  // sampling frequency, Hz
    int fftLength;
    std::int16_t first[kCount + 1];  // first lines, and the end

    constexpr int lines(std::size_t b) const { return first[b + 1] - first[b]; }
    constexpr long double kiloHertz(int line) const {
        return static_cast<long double>(line) * rate / fftLength / 1000;
    }
    constexpr long double barkOf(std::size_t b) const {
        return (bark(kiloHertz(first[b])) + bark(kiloHertz(first[b + 1] - 1))) / 2;
    }
};

template <std::size_t kCount>
constexpr Partitions<kCount> makePartitions(int rate, int fftLength, const int (&lines)[kCount]) {
    Partitions<kCount> result{rate, fftLength, {}};
    for (std::size_t b = 0; b < kCount; ++b) {
        result.first[b + 1] = static_cast<std::int16_t>(result.first[b] + lines[b]);
    }
    return result;
}

// From each masker 70 dB or less below it. Above 5 Bark there is nothing.
constexpr bool spreads(long double distance) {
    return distance > -5 && distance < 5 && spreadingCurve(distance) >= -70;
}

template <std::size_t kCount>
constexpr std::array<long double, kCount> barkValues(const Partitions<kCount>& partitions) {
    std::array<long double, kCount> values{};
    for (std::size_t b = 0; b < kCount; ++b) values[b] = partitions.barkOf(b);
    return values;
}

// First (low half) and last (high half) of the partitions that spread into each one.
template <std::size_t kCount>
constexpr std::array<std::uint32_t, kCount> spreadingBounds(const Partitions<kCount>& partitions) {
    const auto z = barkValues(partitions);
    std::array<std::uint32_t, kCount> bounds{};
    for (std::size_t b = 0; b < kCount; ++b) {
        std::size_t first = b;
        std::size_t last = b;
        while (first > 0 && spreads(z[b] - z[first - 1])) --first;
        while (last + 1 < kCount && spreads(z[b] - z[last + 1])) ++last;
        bounds[b] = static_cast<std::uint32_t>(first | last << 16);
    }
    return bounds;
}

template <std::size_t kCount>
constexpr std::size_t packedSize(const std::array<std::uint32_t, kCount>& bounds) {
    std::size_t size = 0;
    for (const std::uint32_t bound : bounds) size += (bound >> 16) - (bound & 0xffff) + 1;
    return size;
}

// A vector of eight masked partitions takes partition first + lane + r with its row r of weights.
template <std::size_t kCount>
constexpr auto spreadingBlocks(const std::array<std::uint32_t, kCount>& bounds) {
    std::array<SpreadingBlock, (kCount + 7) / 8> blocks{};
    for (std::size_t i = 0; i < blocks.size(); ++i) {
        int low = INT32_MAX;
        int high = INT32_MIN;
        for (std::size_t lane = 0; lane < 8 && 8 * i + lane < kCount; ++lane) {
            const std::uint32_t bound = bounds[8 * i + lane];
            const int first = static_cast<int>(bound & 0xffff) - static_cast<int>(lane);
            const int last = static_cast<int>(bound >> 16) - static_cast<int>(lane);
            low = first < low ? first : low;
            high = last > high ? last : high;
        }
        blocks[i] = {static_cast<std::int16_t>(low), static_cast<std::int16_t>(high - low + 1)};
    }
    return blocks;
}

// The weights of each range one after another, Q31; those of a range sum to 1.
template <std::size_t kSize, std::size_t kCount>
constexpr std::array<std::int32_t, kSize> packedSpreading(
    const Partitions<kCount>& partitions, const std::array<std::uint32_t, kCount>& bounds) {
    const auto z = barkValues(partitions);
    std::array<std::int32_t, kSize> packed{};
    std::size_t position = 0;
    for (std::size_t b = 0; b < kCount; ++b) {
        std::array<long double, kCount> spread{};
        long double sum = 0;
        for (std::size_t k = bounds[b] & 0xffff; k <= bounds[b] >> 16; ++k) {
            spread[k] = fromDecibel(spreadingCurve(z[b] - z[k]));
            sum += spread[k];
        }
        for (std::size_t k = bounds[b] & 0xffff; k <= bounds[b] >> 16; ++k) {
            packed[position++] = q31(spread[k] / sum);
        }
    }
    return packed;
}

// The same weights for vectors of eight masked partitions.
template <std::size_t kCount>
constexpr std::size_t blockRows(const std::array<std::uint32_t, kCount>& bounds) {
    std::size_t rows = 0;
    for (const SpreadingBlock& block : spreadingBlocks(bounds)) rows += block.rows;
    return rows;
}

template <std::size_t kRows, std::size_t kCount, std::size_t kSize>
constexpr SpreadingRows<kRows> blockSpreading(const std::array<std::uint32_t, kCount>& bounds,
                                              const std::array<std::int32_t, kSize>& packed) {
    SpreadingRows<kRows> result{};
    std::size_t row = 0;
    std::size_t position = 0;
    std::size_t masked = 0;
    for (const SpreadingBlock& block : spreadingBlocks(bounds)) {
        for (std::size_t lane = 0; lane < 8 && masked < kCount; ++lane, ++masked) {
            const int first = static_cast<int>(bounds[masked] & 0xffff);
            const int last = static_cast<int>(bounds[masked] >> 16);
            for (int k = first; k <= last; ++k) {
                const std::size_t step = k - block.first - static_cast<int>(lane);
                result.weights[row + step][lane] = packed[position++];
            }
        }
        row += block.rows;
    }
    return result;
}

// Binaural masking level differences as ISO/IEC 13818-7, Annex B has them: 30 dB at 0 Bark, none
// from 15.5 Bark on.
template <std::size_t kCount>
constexpr std::array<std::int32_t, kCount> bmldRatios(const Partitions<kCount>& partitions) {
    std::array<std::int32_t, kCount> ratios{};
    for (std::size_t b = 0; b < kCount; ++b) {
        const long double z = partitions.barkOf(b);
        const long double x = 1 - core::cosine(kPi * (z < 15.5L ? z : 15.5L) / 15.5L);
        ratios[b] = q31(fromDecibel(15 * x - 30));
    }
    return ratios;
}

// The number of lines times the lowest threshold among them, on the energy scale of the spectra: a
// sine of full scale is 118.94 dB above the zero of the curve. A sine has 1/16 of the energy in a
// short spectrum.
template <std::size_t kCount>
constexpr std::array<std::uint64_t, kCount> quietThresholds(const Partitions<kCount>& partitions) {
    std::array<std::uint64_t, kCount> thresholds{};
    for (std::size_t b = 0; b < kCount; ++b) {
        long double lowest = 1e9L;
        for (int line = partitions.first[b]; line < partitions.first[b + 1]; ++line) {
            const long double f = partitions.kiloHertz(line);
            const long double level = quietCurve(f < 0.05L ? 0.05L : f);
            if (level < lowest) lowest = level;
        }
        const long double energy = partitions.lines(b) * 89.75L * fromDecibel(lowest);
        thresholds[b] = wholePart(sixDigits(partitions.fftLength == 256 ? energy / 16 : energy));
    }
    return thresholds;
}

// Weights given in thousandths, Q31.
template <std::size_t kCount>
constexpr std::array<std::int32_t, kCount> weights(const int (&thousandths)[kCount]) {
    std::array<std::int32_t, kCount> result{};
    for (std::size_t i = 0; i < kCount; ++i) result[i] = q31Thousandths(thousandths[i]);
    return result;
}

// Threshold over spread energy of the short partitions, Q31: 0.15 (-8.24 dB), 0.18 (-7.447 dB) and
// 0.2 (-6.99 dB) for ten partitions, ten more, and the rest.
template <std::size_t kCount>
constexpr std::array<std::int32_t, kCount> shortRatios() {
    constexpr std::int32_t kRatios[] = {322053827, 386570678, 429466664};
    std::array<std::int32_t, kCount> result{};
    for (std::size_t b = 0; b < kCount; ++b) result[b] = kRatios[b < 20 ? b / 10 : 2];
    return result;
}

}  // namespace zetac::tables::psy
