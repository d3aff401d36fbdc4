// The block FIR filter against the sum that defines it.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <gtest/gtest.h>
#include <zetac.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <vector>

#include "support/failing_allocator.h"
#include "support/guarded.h"
#include "support/reference_fft.h"

namespace zetac::test {
namespace {

using Singles = std::vector<Zet32f>;

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
        const Singles taps = randomSingles(numTaps, 1);
        const Singles x = randomSingles(3000, 2);
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
    const Singles taps = randomSingles(33, 4);
    const Singles x = randomSingles(500, 5);
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

TEST(FirBlock, failsSafelyWithoutMemory) {
    ZetsFIRBlockSpec_32f* spec = nullptr;
    const Zet32f taps[10] = {};
    for (const int refused : {0, 1}) {
        const FailingAllocator allocator(refused);
        EXPECT_EQ(zetsFIRBlockInitAlloc_32f(&spec, taps, 10), refused ? zetStsOk : zetStsNoMemory);
        EXPECT_EQ(spec != nullptr, refused);
        if (refused) {
            EXPECT_EQ(zetsFIRBlockFree_32f(spec), zetStsOk);
        }
        EXPECT_EQ(allocator.live(), 0);
    }
}

}  // namespace
}  // namespace zetac::test
