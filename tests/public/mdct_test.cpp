// The MDCTs against their definition in long double, and the 16-bit one against a model of its
// steps.
#include <gtest/gtest.h>
#include <zetac.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstring>
#include <random>
#include <span>
#include <string>
#include <thread>
#include <vector>

#include "support/failing_allocator.h"
#include "support/guarded.h"

namespace zetac::test {
namespace {

using Singles = std::vector<Zet32f>;
using Exact = std::vector<long double>;

const std::vector<int> kLengths = {12, 36, 32, 64, 128, 256, 512, 1024, 2048, 4096};

// The functions of a family behind one set of names.
struct Forward {
    using Spec = ZetsMDCTFwdSpec_32f;
    static constexpr auto getSize = zetsMDCTFwdGetSize_32f;
    static constexpr auto init = zetsMDCTFwdInit_32f;
    static constexpr auto initAlloc = zetsMDCTFwdInitAlloc_32f;
    static constexpr auto getBufSize = zetsMDCTFwdGetBufSize_32f;
    static constexpr auto free = zetsMDCTFwdFree_32f;
    static constexpr auto run = zetsMDCTFwd_32f;
    static constexpr auto runInPlace = zetsMDCTFwd_32f_I;
    static int inputs(int len) { return len; }
    static int outputs(int len) { return len / 2; }
};
struct Inverse {
    using Spec = ZetsMDCTInvSpec_32f;
    static constexpr auto getSize = zetsMDCTInvGetSize_32f;
    static constexpr auto init = zetsMDCTInvInit_32f;
    static constexpr auto initAlloc = zetsMDCTInvInitAlloc_32f;
    static constexpr auto getBufSize = zetsMDCTInvGetBufSize_32f;
    static constexpr auto free = zetsMDCTInvFree_32f;
    static constexpr auto run = zetsMDCTInv_32f;
    static constexpr auto runInPlace = zetsMDCTInv_32f_I;
    static int inputs(int len) { return len / 2; }
    static int outputs(int len) { return len; }
};
struct Forward16 {
    using Spec = ZetsMDCTFwdSpec_16s;
    static constexpr auto getSize = zetsMDCTFwdGetSize_16s;
    static constexpr auto init = zetsMDCTFwdInit_16s;
    static constexpr auto initAlloc = zetsMDCTFwdInitAlloc_16s;
    static constexpr auto getBufSize = zetsMDCTFwdGetBufSize_16s;
    static constexpr auto free = zetsMDCTFwdFree_16s;
};

template <class Family>
class Owned {
  public:
    explicit Owned(int len) { EXPECT_EQ(Family::initAlloc(&spec_, len), zetStsOk) << len; }
    ~Owned() { EXPECT_EQ(Family::free(spec_), zetStsOk); }
    Owned(const Owned&) = delete;
    Owned& operator=(const Owned&) = delete;
    operator typename Family::Spec *() const { return spec_; }

  private:
    typename Family::Spec* spec_ = nullptr;
};

template <class Family>
Singles transform(int len, const Singles& input) {
    const Owned<Family> spec(len);
    Singles output(Family::outputs(len));
    EXPECT_EQ(Family::run(input.data(), output.data(), spec, nullptr), zetStsOk);
    return output;
}

Singles noise(int count, uint32_t seed) {
    std::mt19937 random(seed);
    Singles values(count);
    for (Zet32f& value : values) value = static_cast<Zet32f>(random()) * 0x1p-31f - 1;
    return values;
}

// The cosine of the definition: 2 pi/N (n + N/4 + 1/2)(k + 1/2) is (4 n + N + 2)(2 k + 1) of 4 N
// steps to the turn.
class Cosines {
  public:
    explicit Cosines(int len) : table_(4 * len) {
        for (size_t i = 0; i < table_.size(); ++i)
            table_[i] = std::cos(2 * std::acos(-1.0L) * i / table_.size());
    }
    long double operator()(int n, int k) const {
        const size_t len = table_.size() / 4;
        return table_[(2 * n + len / 2 + 1) * (2 * k + 1) % table_.size()];
    }

  private:
    Exact table_;
};

template <class Sample>
Exact exactForward(int len, const std::vector<Sample>& x) {
    const Cosines cosine(len);
    Exact result(len / 2);
    for (int k = 0; k < len / 2; ++k)
        for (int n = 0; n < len; ++n) result[k] += 2 * x[n] * cosine(n, k);
    return result;
}
Exact exactInverse(int len, const Singles& x) {
    const Cosines cosine(len);
    Exact result(len);
    for (int n = 0; n < len; ++n)
        for (int k = 0; k < len / 2; ++k) result[n] += x[k] * cosine(n, k) * 2 / len;
    return result;
}

double rms(const Exact& values) {
    long double sum = 0;
    for (const long double value : values) sum += value * value;
    return static_cast<double>(std::sqrt(sum / values.size()));
}
template <class Value>
double relativeError(const std::vector<Value>& values, const Exact& exact) {
    Exact difference = exact;
    for (size_t i = 0; i < exact.size(); ++i) difference[i] -= values[i];
    return rms(difference) / rms(exact);
}

// Relative RMS errors were measured from 0.5e-7 (12, 36) to 1.6e-7 (131072), growing with the root
// of the number of passes, as roundings of 2^-25.5 RMS each do.
constexpr double kTolerance = 2e-7;

TEST(Mdct, followsTheDefinition) {
    for (const int len : kLengths) {
        SCOPED_TRACE(len);
        const Singles samples = noise(len, 1);
        EXPECT_LT(relativeError(transform<Forward>(len, samples), exactForward(len, samples)),
                  kTolerance);
        const Singles coefficients = noise(len / 2, 2);
        EXPECT_LT(
            relativeError(transform<Inverse>(len, coefficients), exactInverse(len, coefficients)),
            kTolerance);
    }
}

// One sample or coefficient at a time, so that a small error in one path does not hide in a sum.
TEST(Mdct, followsTheDefinitionForImpulses) {
    for (const int len : {12, 36, 32, 64}) {
        for (int at = 0; at < len; ++at) {
            SCOPED_TRACE(testing::Message() << len << " at " << at);
            Singles x(len);
            x[at] = 1;
            EXPECT_LT(relativeError(transform<Forward>(len, x), exactForward(len, x)), kTolerance);
            if (at >= len / 2) continue;
            x.resize(len / 2);
            EXPECT_LT(relativeError(transform<Inverse>(len, x), exactInverse(len, x)), kTolerance);
        }
    }
}

// Large transforms against the parts of the definition that are cheap: single coefficients.
TEST(Mdct, followsTheDefinitionForLargeLengths) {
    for (int len = 8192; len <= 1 << 17; len *= 4) {
        SCOPED_TRACE(len);
        const Cosines cosine(len);
        const Singles samples = noise(len, 3);
        const Singles coefficients = transform<Forward>(len, samples);
        const Singles aliased = transform<Inverse>(len, coefficients);
        Exact exact;
        Singles got;
        for (int k = 5; k < len / 2; k += len / 512) {
            long double sum = 0;
            for (int n = 0; n < len; ++n) sum += 2 * samples[n] * cosine(n, k);
            exact.push_back(sum);
            got.push_back(coefficients[k]);
        }
        EXPECT_LT(relativeError(got, exact), kTolerance);
        // Back to x folded on itself; 1.2e-6 is six standard deviations.
        for (int n = 0; n < len / 2; ++n) {
            const int mirror = len / 2 - 1 - n;
            EXPECT_NEAR(aliased[n], samples[n] - samples[mirror], 1.2e-6f);
            EXPECT_NEAR(aliased[len / 2 + n], samples[len / 2 + n] + samples[len - 1 - n], 1.2e-6f);
        }
    }
}

// Windows of the Princen-Bradley condition and an overlap-add by half give the input back.
TEST(Mdct, overlapAddReconstructs) {
    for (const int len : kLengths) {
        SCOPED_TRACE(len);
        const int half = len / 2;
        const Singles signal = noise(4 * half, 4);
        Singles output(4 * half);
        for (int start = 0; start + len <= 4 * half; start += half) {
            const auto window = [&](int n) {
                return static_cast<Zet32f>(std::sin(std::acos(-1.0) / len * (n + 0.5)));
            };
            Singles block(signal.begin() + start, signal.begin() + start + len);
            for (int n = 0; n < len; ++n) block[n] *= window(n);
            block = transform<Inverse>(len, transform<Forward>(len, block));
            for (int n = 0; n < len; ++n) output[start + n] += block[n] * window(n);
        }
        for (int n = half; n < 3 * half; ++n) EXPECT_NEAR(output[n], signal[n], 1e-6f) << n;
    }
}

template <class Family>
class MdctMemory : public testing::Test {};
using Families = testing::Types<Forward, Inverse>;
TYPED_TEST_SUITE(MdctMemory, Families);

// In caller memory of exactly the sizes asked for, at every alignment, a transform gives the bits
// of an allocated structure with an allocated buffer, and touches nothing else.
TYPED_TEST(MdctMemory, isEnoughAtEveryAlignment) {
    for (const int len : {12, 36, 32, 64, 512, 1024, 4096}) {
        const Singles input = noise(TypeParam::inputs(len), 5);
        const Singles expected = transform<TypeParam>(len, input);
        int specSize, initSize, bufSize;
        ASSERT_EQ(TypeParam::getSize(len, &specSize, &initSize, &bufSize), zetStsOk);
        for (size_t alignment = 0; alignment<64; alignment += len> 512 ? 21 : 1) {
            SCOPED_TRACE(testing::Message() << len << " at " << alignment);
            Guarded<Zet8u> memory(specSize, alignment);
            Guarded<Zet8u> initMemory(initSize);
            Guarded<Zet8u> buffer(bufSize - 64, alignment);
            Guarded<Zet32f> data(len, alignment & ~size_t{3});
            typename TypeParam::Spec* spec;
            ASSERT_EQ(TypeParam::init(&spec, len, memory.data(), initMemory.data()), zetStsOk);
            int reported;
            ASSERT_EQ(TypeParam::getBufSize(spec, &reported), zetStsOk);
            EXPECT_EQ(reported, bufSize - 64);
            std::copy(input.begin(), input.end(), data.data());
            EXPECT_EQ(TypeParam::runInPlace(data.data(), spec, buffer.data()), zetStsOk);
            EXPECT_EQ(std::memcmp(data.data(), expected.data(), expected.size() * sizeof(Zet32f)),
                      0);
            EXPECT_TRUE(memory.intact() && initMemory.intact() && buffer.intact() && data.intact());
            EXPECT_EQ(TypeParam::free(spec), zetStsOk);  // not a block of the heap
            EXPECT_EQ(TypeParam::free(spec), zetStsSpecMismatch);
        }
    }
}

TYPED_TEST(MdctMemory, leavesTheSourceAlone) {
    for (const int len : kLengths) {
        const Singles input = noise(TypeParam::inputs(len), 6);
        const Singles before = input;
        const Singles out = transform<TypeParam>(len, input);
        EXPECT_EQ(input, before);
    }
}

template <class Family>
void expectSizes(int len, int spec, int init, int work) {
    int specSize, initSize, bufSize;
    ASSERT_EQ(Family::getSize(len, &specSize, &initSize, &bufSize), zetStsOk);
    EXPECT_EQ(specSize, spec) << len;
    EXPECT_EQ(initSize, init) << len;
    EXPECT_EQ(bufSize, work) << len;
}

TEST(MdctSizes, followFromThoseOfTheFft) {
    for (const int len : {12, 36}) {
        expectSizes<Forward>(len, 2 * len + 92, 0, 4 * len + 64 + 32);
        expectSizes<Inverse>(len, 2 * len + 92, 0, 4 * len + 64 + 32);
    }
    for (int order = 3; order < 20; ++order) {
        const int len = 4 << order;
        int spec, init, work;
        ASSERT_EQ(zetsFFTGetSize_C_32fc(order, zetFftNoDiv, zetAlgHintNone, &spec, &init, &work),
                  zetStsOk);
        expectSizes<Forward>(len, spec + 2 * len + 124, init, work + 4 * len + 96);
        expectSizes<Inverse>(len, spec + 2 * len + 124, init, work + 4 * len + 96);
        ASSERT_EQ(zetsFFTGetSize_C_16sc(order, zetFftNoDiv, zetAlgHintNone, &spec, &init, &work),
                  zetStsOk);
        const int work16 = std::max(4 * len, work) + len + 32;
        expectSizes<Forward16>(len, spec + len + 124, init, work16);
        int stored;
        ASSERT_EQ(zetsMDCTFwdGetBufSize_16s(Owned<Forward16>(len), &stored), zetStsOk);
        EXPECT_EQ(stored, work16);
    }
}

// Sizes above INT_MAX are told, and nothing is written.
TEST(MdctSizes, ofHugeTransformsAreRefused) {
    int spec = 1, init = 2, work = 3;
    EXPECT_EQ(zetsMDCTFwdGetSize_32f(1 << 28, &spec, &init, &work), zetStsOk);
    spec = 1, init = 2, work = 3;
    EXPECT_EQ(zetsMDCTFwdGetSize_32f(1 << 30, &spec, &init, &work), zetStsNoMemory);
    EXPECT_EQ(zetsMDCTFwdGetSize_16s(1 << 30, &spec, &init, &work), zetStsNoMemory);
    EXPECT_TRUE(spec == 1 && init == 2 && work == 3);
}

// ---- 16 bits

using Shorts = std::vector<Zet16s>;

Shorts loudNoise(int len, int peak, uint32_t seed) {
    std::mt19937 random(seed);
    Shorts x(len);
    for (Zet16s& value : x)
        value = static_cast<Zet16s>(static_cast<int>(random() % (2 * peak + 1)) - peak);
    x[len / 3] = static_cast<Zet16s>(-peak);  // -32768 fits, 32768 does not
    return x;
}

Shorts transform16(const Shorts& x, int scaleFactor) {
    const int len = static_cast<int>(x.size());
    const Owned<Forward16> spec(len);
    Shorts output(len / 2);
    EXPECT_EQ(zetsMDCTFwd_16s_Sfs(x.data(), output.data(), spec, scaleFactor, nullptr), zetStsOk);
    return output;
}

long double roundTiesToEven(long double x) {
    return std::nearbyint(x);
}
int64_t floorShift(int64_t x, int shift) {
    return static_cast<int64_t>(std::floor(std::ldexp(static_cast<long double>(x), -shift)));
}

// The steps of the 16-bit transform, with a DFT by definition for the FFT.
class Model {
  public:
    explicit Model(const Shorts& x) : x_(x), len_(static_cast<int>(x.size())) {
        for (int k = 0; k < len_ / 4; ++k) {
            const long double angle = 2 * std::acos(-1.0L) * (k + 0.125L) / len_;
            sines_.push_back(std::floor(16384 * std::sin(angle) + 0.5L));
            cosines_.push_back(std::floor(16384 * std::cos(angle) + 0.5L));
        }
        order_ = static_cast<int>(std::log2(len_ / 4));
        findShift();
        fold();
        dft();
    }

    int shift() const { return shift_; }

    Shorts coefficients(int scaleFactor) const {
        Shorts result(len_ / 2);
        const auto rounded = [&](long double wide) {
            const long double value =
                roundTiesToEven(std::ldexp(wide, -(scaleFactor - order_ + shift_ + 10)));
            return static_cast<Zet16s>(std::clamp(value, -32768.0L, 32767.0L));
        };
        for (int k = 0; k < len_ / 4; ++k) {
            result[2 * k] = rounded(cosines_[k] * re_[k] + sines_[k] * im_[k]);
            result[len_ / 2 - 1 - 2 * k] = rounded(sines_[k] * re_[k] - cosines_[k] * im_[k]);
        }
        return result;
    }

  private:
    void findShift() {
        int peak = 0;
        for (const int value : x_) peak = std::max(peak, std::abs(value));
        shift_ = static_cast<int>(std::floor(std::log2(32768.0 / peak)));
        if (peak * std::exp2(shift_) <= 23168) ++shift_;
    }
    void fold() {
        const int n4 = len_ / 4;
        for (int k = 0; k < n4; ++k) {
            const bool first = k < len_ / 8;
            const int64_t a =
                (first ? -x_[3 * n4 + 2 * k] : x_[2 * k - n4]) - x_[3 * n4 - 1 - 2 * k];
            const int64_t b =
                (first ? x_[n4 - 1 - 2 * k] : -x_[5 * n4 - 1 - 2 * k]) - x_[n4 + 2 * k];
            const auto s = static_cast<int64_t>(sines_[k]);
            const auto c = static_cast<int64_t>(cosines_[k]);
            const int64_t half = 1 << (15 - shift_);
            re_.push_back(floorShift(c * a + s * b + half, 16 - shift_));
            im_.push_back(floorShift(c * b - s * a + half, 16 - shift_));
            EXPECT_TRUE(std::abs(re_[k]) <= 32767 && std::abs(im_[k]) <= 32767);
        }
    }
    void dft() {
        const int points = len_ / 4;
        Exact turns(points);
        for (int i = 0; i < points; ++i) turns[i] = 2 * std::acos(-1.0L) * i / points;
        Exact re(points), im(points);
        for (int k = 0; k < points; ++k) {
            for (int n = 0; n < points; ++n) {
                const long double angle = turns[static_cast<int64_t>(n) * k % points];
                re[k] += re_[n] * std::cos(angle) + im_[n] * std::sin(angle);
                im[k] += im_[n] * std::cos(angle) - re_[n] * std::sin(angle);
            }
            re[k] = snapped(std::ldexp(re[k], -order_ - 1));
            im[k] = snapped(std::ldexp(im[k], -order_ - 1));
        }
        re_ = re;
        im_ = im;
    }
    // Where the exact sum is a tie, the rounding errors of the sum above must not break it.
    static long double snapped(long double x) {
        return roundTiesToEven(std::ldexp(roundTiesToEven(std::ldexp(x, 30)), -30));
    }

    const Shorts& x_;
    int len_, order_ = 0, shift_ = 0;
    Exact sines_, cosines_, re_, im_;
};

TEST(Mdct16, followsItsStepsExactly) {
    for (const int len : {32, 64, 256, 1024}) {
        for (const int peak : {1, 2, 3, 100, 2896, 2897, 23168, 23169, 32767, 32768}) {
            const Shorts x = loudNoise(len, peak, static_cast<uint32_t>(peak));
            const Model model(x);
            for (const int scaleFactor : {-6, 0, 5, 9}) {
                SCOPED_TRACE(testing::Message() << len << ", peak " << peak << ", " << scaleFactor);
                EXPECT_EQ(transform16(x, scaleFactor), model.coefficients(scaleFactor));
            }
        }
    }
}

TEST(Mdct16, normalisesByThePeak) {
    EXPECT_EQ(Model(loudNoise(32, 32768, 1)).shift(), 0);
    EXPECT_EQ(Model(loudNoise(32, 23168, 1)).shift(), 1);
    EXPECT_EQ(Model(loudNoise(32, 1, 1)).shift(), 15);
}

// A unit of the points of the FFT is 2^(order + 4 - shift) units of the result; their rounding has
// a standard deviation of sqrt(1/12) units, and the two results of a point share it by a rotation.
// Twiddles in Q14 are off by 2^-15 / sqrt(3) of their size, twice, and the final rounding adds
// sqrt(1/12). Measured errors are up to 1.19 times that.
TEST(Mdct16, staysWithinItsRoundings) {
    for (const int len : {32, 128, 1024, 4096}) {
        for (const int peak : {1, 300, 23168, 32768}) {
            const Shorts x = loudNoise(len, peak, 9);
            const int order = static_cast<int>(std::log2(len / 4));
            const int scaleFactor = std::max(0, static_cast<int>(std::log2(peak)) + order - 9);
            Exact exact = exactForward(len, x);
            for (long double& value : exact) value = std::ldexp(value, -scaleFactor);
            const double unit = std::exp2(order + 4 - Model(x).shift() - scaleFactor);
            const double twiddles = rms(exact) * std::sqrt(2 / 3.0) * 0x1p-15;
            const double expected = std::sqrt((unit * unit + 1) / 12 + twiddles * twiddles);
            const double error = relativeError(transform16(x, scaleFactor), exact) * rms(exact);
            EXPECT_LT(error, 1.3 * expected) << len << ", peak " << peak;
        }
    }
}

TEST(Mdct16, acceptsEveryScaleFactor) {
    const Shorts x = loudNoise(64, 20000, 11);
    const Shorts reference = transform16(x, 2);
    const Shorts loudest = transform16(x, INT_MIN);
    for (size_t k = 0; k < reference.size(); ++k)
        EXPECT_EQ(loudest[k], reference[k] < 0 ? -32768 : 32767) << k;
    EXPECT_EQ(transform16(x, INT_MAX), Shorts(32));
    for (const int scaleFactor : {INT_MIN, 0, INT_MAX})
        EXPECT_EQ(transform16(Shorts(64), scaleFactor), Shorts(32));
}

TEST(Mdct16, worksInCallerMemoryAndInPlace) {
    for (const int len : {32, 1024, 2048}) {
        const Shorts x = loudNoise(len, 5000, 12);
        const Shorts expected = transform16(x, 6);
        int specSize, initSize, bufSize;
        ASSERT_EQ(zetsMDCTFwdGetSize_16s(len, &specSize, &initSize, &bufSize), zetStsOk);
        for (size_t alignment = 0; alignment < 64; ++alignment) {
            Guarded<Zet8u> memory(specSize, alignment), initMemory(initSize);
            Guarded<Zet8u> buffer(bufSize, alignment);
            Guarded<Zet16s> data(len, alignment & ~size_t{1});
            ZetsMDCTFwdSpec_16s* spec;
            ASSERT_EQ(zetsMDCTFwdInit_16s(&spec, len, memory.data(), initMemory.data()), zetStsOk);
            std::copy(x.begin(), x.end(), data.data());
            ASSERT_EQ(zetsMDCTFwd_16s_Sfs(data.data(), data.data(), spec, 6, buffer.data()),
                      zetStsOk);
            EXPECT_TRUE(std::ranges::equal(std::span(data.data(), expected.size()), expected));
            EXPECT_TRUE(memory.intact() && buffer.intact() && data.intact());
        }
    }
}

// ---- allocation and threads

template <class Family>
void expectSafeFailures(int len, int requests) {
    SCOPED_TRACE(len);
    auto* untouched = reinterpret_cast<typename Family::Spec*>(&len);
    for (int failing = 0; failing < requests; ++failing) {
        FailingAllocator allocator(failing);
        auto* spec = untouched;
        EXPECT_EQ(Family::initAlloc(&spec, len), zetStsNoMemory);
        EXPECT_EQ(spec, untouched);
        EXPECT_EQ(allocator.live(), 0);
    }
    FailingAllocator allocator(requests);
    typename Family::Spec* spec = nullptr;
    ASSERT_EQ(Family::initAlloc(&spec, len), zetStsOk);
    EXPECT_EQ(allocator.live(), requests);
    std::vector<Zet8u> data(4 * len, 1);
    void* raw = data.data();
    if constexpr (std::is_same_v<Family, Forward16>) {
        auto* x = static_cast<Zet16s*>(raw);
        EXPECT_EQ(zetsMDCTFwd_16s_Sfs(x, x, spec, 0, nullptr), zetStsNoMemory);
        EXPECT_EQ(zetsMDCTFwd_16s_Sfs(x, x, spec, 0, nullptr), zetStsOk);
    } else {
        auto* x = static_cast<Zet32f*>(raw);
        EXPECT_EQ(Family::runInPlace(x, spec, nullptr), zetStsNoMemory);
        EXPECT_EQ(data, std::vector<Zet8u>(4 * len, 1));
        EXPECT_EQ(Family::runInPlace(x, spec, nullptr), zetStsOk);
        std::vector<Zet8u> buffer(100 * len);
        const int before = allocator.requests();
        EXPECT_EQ(Family::runInPlace(x, spec, buffer.data()), zetStsOk);
        EXPECT_EQ(allocator.requests(), before);
    }
    EXPECT_EQ(allocator.live(), requests);
    EXPECT_EQ(Family::free(spec), zetStsOk);
    EXPECT_EQ(allocator.live(), 0);
}

TEST(MdctAllocation, failsSafelyAtEveryPoint) {
    for (const int len : {12, 36}) {  // structure and table
        expectSafeFailures<Forward>(len, 2);
        expectSafeFailures<Inverse>(len, 2);
    }
    for (const int len : {32, 2048}) {  // and the FFT
        expectSafeFailures<Forward>(len, 3);
        expectSafeFailures<Inverse>(len, 3);
        expectSafeFailures<Forward16>(len, 3);
    }
}

TEST(Mdct, threadsShareAStructure) {
    const int len = 2048;
    const Owned<Forward> forward(len);
    const Owned<Inverse> inverse(len);
    const Owned<Forward16> forward16(len);
    const Singles x = noise(len, 20);
    const Shorts x16 = loudNoise(len, 9000, 20);
    const Singles expected = transform<Inverse>(len, transform<Forward>(len, x));
    const Shorts expected16 = transform16(x16, 8);
    const auto work = [&] {
        for (int i = 0; i < 50; ++i) {
            Singles y = x;
            zetsMDCTFwd_32f_I(y.data(), forward, nullptr);
            zetsMDCTInv_32f_I(y.data(), inverse, nullptr);
            Shorts y16(len / 2);
            zetsMDCTFwd_16s_Sfs(x16.data(), y16.data(), forward16, 8, nullptr);
            EXPECT_TRUE(y == expected && y16 == expected16);
        }
    };
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) threads.emplace_back(work);
    for (std::thread& thread : threads) thread.join();
}

}  // namespace
}  // namespace zetac::test
