// The block FIR filter against the sum that defines it.
#include <gtest/gtest.h>
#include <zetac.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <random>
#include <vector>

#include "support/failing_allocator.h"
#include "support/guarded.h"

namespace zetac::test {
namespace {

using Singles = std::vector<Zet32f>;

Singles noise(size_t count, uint32_t seed) {
    std::mt19937 random(seed);
    Singles values(count);
    for (Zet32f& value : values) value = static_cast<Zet32f>(random()) * 0x1p-31f - 1;
    return values;
}

class Filter {
  public:
    explicit Filter(const Singles& taps, int index = 0) : index_(index), line_(taps.size()) {
        EXPECT_EQ(zetsFIRBlockInitAlloc_32f(&spec_, taps.data(), static_cast<int>(taps.size())),
                  zetStsOk);
    }
    ~Filter() { EXPECT_EQ(zetsFIRBlockFree_32f(spec_), zetStsOk); }
    Filter(const Filter&) = delete;
    Filter& operator=(const Filter&) = delete;

    ZetStatus run(const Zet32f* src, Zet32f* dst, int len) {
        return zetsFIRBlockOne_32f(src, dst, len, spec_, line_.data(), &index_);
    }
    int index() const { return index_; }
    const Singles& line() const { return line_; }

  private:
    ZetsFIRBlockSpec_32f* spec_ = nullptr;
    int index_;
    Singles line_;
};

// One product and one sum at a time, in the order of the taps; what lies before x is silence.
Singles convolution(const Singles& taps, const Singles& x) {
    Singles y(x.size());
    for (size_t n = 0; n < x.size(); ++n)
        for (size_t k = 0; k < taps.size(); ++k) y[n] += taps[k] * (k <= n ? x[n - k] : 0.0f);
    return y;
}

TEST(FirBlock, givesTheBitsOfTheSumHoweverTheSignalIsCut) {
    for (const size_t numTaps : {1, 2, 7, 16, 31, 255, 256, 257, 700}) {
        const Singles taps = noise(numTaps, 1);
        const Singles x = noise(3000, 2);
        const Singles expected = convolution(taps, x);
        for (const int longest : {1, 9, 256, 1000, 3000}) {
            SCOPED_TRACE(testing::Message() << numTaps << " taps, blocks to " << longest);
            std::mt19937 random(3);
            Filter filter(taps, static_cast<int>(numTaps / 2));
            Singles y = x;  // in place
            for (size_t done = 0; done < x.size();) {
                const size_t wanted = longest == 3000 ? 3000 : 1 + random() % longest;
                const size_t len = std::min(wanted, x.size() - done);
                ASSERT_GE(filter.run(&y[done], &y[done], static_cast<int>(len)), zetStsOk);
                done += len;
                ASSERT_EQ(filter.index(), static_cast<int>((numTaps / 2 + done) % numTaps));
            }
            EXPECT_EQ(std::memcmp(y.data(), expected.data(), y.size() * sizeof y[0]), 0);
            for (size_t age = 1; age <= numTaps; ++age)
                EXPECT_EQ(filter.line()[(filter.index() + numTaps - age) % numTaps],
                          x[x.size() - age]);
        }
    }
}

TEST(FirBlock, warnsOfMisalignedBuffersAndGivesTheSameBits) {
    const Singles taps = noise(33, 4);
    const Singles x = noise(500, 5);
    const Singles expected = convolution(taps, x);
    for (size_t from = 0; from < 20; from += 4) {
        for (size_t to = 0; to < 20; to += 4) {
            Guarded<Zet32f> src(x.size(), from), dst(x.size(), to);
            std::copy(x.begin(), x.end(), src.data());
            Filter filter(taps);
            const bool aligned = from % 16 == 0 && to % 16 == 0;
            EXPECT_EQ(filter.run(src.data(), dst.data(), 500),
                      aligned ? zetStsOk : zetStsMisaligned);
            EXPECT_EQ(std::memcmp(dst.data(), expected.data(), 500 * sizeof(Zet32f)), 0);
            EXPECT_EQ(std::memcmp(src.data(), x.data(), 500 * sizeof(Zet32f)), 0);
            EXPECT_TRUE(src.intact() && dst.intact());
        }
    }
}

// A sum of products rounded L times is within L 2^-24 of the sum of magnitudes.
TEST(FirBlock, staysWithinItsRoundings) {
    const Singles taps = noise(400, 6);
    const Singles x = noise(1000, 7);
    Singles y(x.size());
    Filter filter(taps);
    filter.run(x.data(), y.data(), 1000);
    for (size_t n = 0; n < x.size(); ++n) {
        double exact = 0;
        double magnitude = 0;
        for (size_t k = 0; k < taps.size() && k <= n; ++k) {
            exact += double{taps[k]} * x[n - k];
            magnitude += std::abs(double{taps[k]} * x[n - k]);
        }
        ASSERT_NEAR(y[n], exact, 401 * 0x1p-24 * magnitude) << n;
    }
}

TEST(FirBlock, failsSafelyWithoutMemory) {
    const Singles taps = noise(10, 8);
    Zet32f other;
    auto* untouched = reinterpret_cast<ZetsFIRBlockSpec_32f*>(&other);
    ZetsFIRBlockSpec_32f* spec = untouched;
    {
        const FailingAllocator allocator(0);
        EXPECT_EQ(zetsFIRBlockInitAlloc_32f(&spec, taps.data(), 10), zetStsNoMemory);
        EXPECT_EQ(allocator.live(), 0);
    }
    EXPECT_EQ(zetsFIRBlockInitAlloc_32f(&spec, taps.data(), INT32_MAX), zetStsNoMemory);
    EXPECT_EQ(spec, untouched);
    const FailingAllocator allocator(-1);
    ASSERT_EQ(zetsFIRBlockInitAlloc_32f(&spec, taps.data(), 10), zetStsOk);
    EXPECT_EQ(zetsFIRBlockFree_32f(spec), zetStsOk);
    EXPECT_EQ(allocator.live(), 0);
}

}  // namespace
}  // namespace zetac::test
