// The measure of unpredictability (ISO/IEC 11172-3, D.2.4.1, steps 3 and 4; C.1.5.3).
#include "mp3enc/psycho.h"
#include "mp3enc/psycho_arithmetic.h"

namespace zetac::mp3enc {
namespace {

constexpr int kMagnitudeBits = 6;  // fractional bits of magnitudes
constexpr int kPhaseBits = 30;

// For magnitudes below 2^32; their squares leave the range of int64_t.
uint64_t sumOfSquares(int64_t re, int64_t im) {
    const auto x = static_cast<uint64_t>(re), y = static_cast<uint64_t>(im);
    return x * x + y * y;
}

struct Polar {
    Zet32s magnitude;  // Q6
    Zet32sc phase;     // unit vector, Q30; 0 where the magnitude is
};

// sqrt(energy) = root * 2^-halfShift, and one over it is inverse * 2^(halfShift - 62).
struct Roots {
    uint64_t root;     // 32 bits
    uint64_t inverse;  // 1..2 in Q30
    int halfShift;
};

Roots rootsOf(uint64_t energy) {
    const int halfShift = std::countl_zero(energy) / 2;
    const uint64_t mantissa = energy << (2 * halfShift) >> 32;
    const uint64_t inverse = core::inverseSquareRoot(static_cast<uint32_t>(mantissa));
    return {mantissa * inverse >> 30, inverse, halfShift};
}

// Lines are at most 2^24, so that magnitudes are at most 2^30.
Polar toPolar(Zet32sc x) {
    const uint64_t energy = sumOfSquares(x.re, x.im);
    if (energy == 0) return {0, {0, 0}};
    const Roots roots = rootsOf(energy);
    const auto part = [&](Zet32s value) {
        return static_cast<Zet32s>((value * static_cast<int64_t>(roots.inverse)) >>
                                   (32 - roots.halfShift));
    };
    return {static_cast<Zet32s>((roots.root << kMagnitudeBits) >> roots.halfShift),
            {part(x.re), part(x.im)}};
}

Zet32sc productQ30(Zet32sc a, Zet32sc b, int sign) {
    const int64_t re = int64_t{a.re} * b.re - sign * (int64_t{a.im} * b.im);
    const int64_t im = int64_t{a.im} * b.re + sign * (int64_t{a.re} * b.im);
    return {static_cast<Zet32s>(re >> kPhaseBits), static_cast<Zet32s>(im >> kPhaseBits)};
}

// Nothing after nothing is as unpredictable as any first sound. The prediction is at most 2 * 2^30
// (that of a line with 2^30 behind one with 0), a product with its phase 2^61, and the deviation 3
// * 2^30, whose square 9 * 2^60 only unsigned arithmetic holds.
Zet32s unpredictabilityOf(Zet32sc x, const Polar& now, const Polar& last, const Polar& lastButOne) {
    const int64_t predicted = 2 * int64_t{last.magnitude} - lastButOne.magnitude;
    const Zet32sc phase = productQ30(productQ30(last.phase, last.phase, 1), lastButOne.phase, -1);
    const int64_t re = x.re * (int64_t{1} << kMagnitudeBits) - (predicted * phase.re >> kPhaseBits);
    const int64_t im = x.im * (int64_t{1} << kMagnitudeBits) - (predicted * phase.im >> kPhaseBits);
    const uint64_t sum = static_cast<uint64_t>(now.magnitude) +
                         static_cast<uint64_t>(predicted < 0 ? -predicted : predicted);
    if (sum == 0) return kMax32s;
    return ratioQ31(squareRoot64(sumOfSquares(re, im)), sum);
}

}  // namespace

void ownsCalUnpredictMeasureCw06_Psy_MP3(const Zet32sc* spectrum, ZetMP3PsyChannelState& state,
                                         Zet32s* unpredictability) {
    for (int j = 0; j < ZETAC_MP3_PSY_LONG_LINES; ++j) {
        const Polar last = {state.longMagnitude[0][j], state.longPhase[0][j]};
        const Polar lastButOne = {state.longMagnitude[1][j], state.longPhase[1][j]};
        const Polar now = toPolar(spectrum[j]);
        unpredictability[j] = unpredictabilityOf(spectrum[j], now, last, lastButOne);
        state.longMagnitude[1][j] = last.magnitude;
        state.longPhase[1][j] = last.phase;
        state.longMagnitude[0][j] = now.magnitude;
        state.longPhase[0][j] = now.phase;
    }
}

}  // namespace zetac::mp3enc
