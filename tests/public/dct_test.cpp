// The orthonormal DCTs: values against the definition in long double, memory and statuses.
#include <gtest/gtest.h>
#include <zetac.h>

#include <climits>
#include <cstring>
#include <memory>
#include <thread>

#include "support/failing_allocator.h"
#include "support/guarded.h"
#include "support/reference_fft.h"

namespace zetac::test {
namespace {

using ForwardSpec = std::unique_ptr<ZetsDCTFwdSpec_32f, decltype(&zetsDCTFwdFree_32f)>;
using InverseSpec = std::unique_ptr<ZetsDCTInvSpec_32f, decltype(&zetsDCTInvFree_32f)>;

ForwardSpec forwardSpec(int len) {
    ZetsDCTFwdSpec_32f* spec = nullptr;
    EXPECT_EQ(zetStsOk, zetsDCTFwdInitAlloc_32f(&spec, len, zetAlgHintAccurate)) << len;
    return {spec, zetsDCTFwdFree_32f};
}
InverseSpec inverseSpec(int len) {
    ZetsDCTInvSpec_32f* spec = nullptr;
    EXPECT_EQ(zetStsOk, zetsDCTInvInitAlloc_32f(&spec, len, zetAlgHintFast)) << len;
    return {spec, zetsDCTInvFree_32f};
}

bool isPowerOfTwo(int len) {
    return (len & (len - 1)) == 0;
}

// Every length up to 100, powers of two and their neighbours, and block lengths in use.
std::vector<int> lengths() {
    std::vector<int> result;
    for (int len = 1; len <= 100; ++len) result.push_back(len);
    for (int len = 128; len <= 2048; len *= 2) result.insert(result.end(), {len - 1, len, len + 1});
    result.insert(result.end(), {480, 576, 960, 1152, 1920, 3000});
    return result;
}

// a(k) cos(pi (2n + 1) k / 2N) by n and k.
class Basis {
  public:
    explicit Basis(int len) : len_(len) {
        for (int i = 0; i < 4 * len; ++i)
            cosines_.push_back(unitAngle(static_cast<long double>(i) / (4 * len)).real());
    }
    long double operator()(int n, int k) const {
        const auto turn = (2 * static_cast<int64_t>(n) + 1) * k % (4 * len_);
        return std::sqrt((k == 0 ? 1.0L : 2.0L) / len_) * cosines_[static_cast<size_t>(turn)];
    }

  private:
    int len_;
    std::vector<long double> cosines_;
};

// Measured over these lengths: at most 1.5e-7 for powers of two and 2.5e-7 for others, where two
// FFTs take part. Twice that is allowed.
double errorLimit(int len) {
    return isPowerOfTwo(len) ? 3e-7 : 5e-7;
}

TEST(Dct, agreesWithTheDefinition) {
    for (const int len : lengths()) {
        const Basis basis(len);
        const auto src = randomSingles(static_cast<size_t>(len), 1);
        Values forward, inverse;
        for (int i = 0; i < len; ++i) {
            long double forwardSum = 0;
            long double inverseSum = 0;
            for (int j = 0; j < len; ++j) {
                forwardSum += src[static_cast<size_t>(j)] * basis(j, i);
                inverseSum += src[static_cast<size_t>(j)] * basis(i, j);
            }
            forward.emplace_back(forwardSum);
            inverse.emplace_back(inverseSum);
        }
        std::vector<float> dst(src.size());
        ASSERT_EQ(zetStsOk,
                  zetsDCTFwd_32f(src.data(), dst.data(), forwardSpec(len).get(), nullptr));
        EXPECT_LT(relativeError(dst, forward), errorLimit(len)) << len;
        ASSERT_EQ(zetStsOk,
                  zetsDCTInv_32f(src.data(), dst.data(), inverseSpec(len).get(), nullptr));
        EXPECT_LT(relativeError(dst, inverse), errorLimit(len)) << len;
    }
}

// In place, at any alignment, with a work buffer of exactly the size asked for, and back.
TEST(Dct, givesTheSameBitsHoweverItIsCalled) {
    for (const int len : {1, 2, 3, 4, 8, 12, 32, 36, 64, 500, 512, 1024, 4096, 8192}) {
        const auto count = static_cast<size_t>(len);
        const auto src = randomSingles(count, 2);
        const ForwardSpec forward = forwardSpec(len);
        const InverseSpec inverse = inverseSpec(len);
        std::vector<float> spectrum(count), back(count);
        ASSERT_EQ(zetStsOk, zetsDCTFwd_32f(src.data(), spectrum.data(), forward.get(), nullptr));
        ASSERT_EQ(zetStsOk, zetsDCTInv_32f(spectrum.data(), back.data(), inverse.get(), nullptr));
        EXPECT_LT(relativeError(back, Values(src.begin(), src.end())), 2 * errorLimit(len)) << len;
        int forwardWork, inverseWork;
        ASSERT_EQ(zetStsOk, zetsDCTFwdGetBufSize_32f(forward.get(), &forwardWork));
        ASSERT_EQ(zetStsOk, zetsDCTInvGetBufSize_32f(inverse.get(), &inverseWork));
        EXPECT_EQ(forwardWork, inverseWork);
        for (const size_t alignment : {0, 4, 20, 36}) {
            Guarded<float> in(count, alignment);
            Guarded<float> out(count, 60 - alignment);
            Guarded<Zet8u> work(static_cast<size_t>(forwardWork), alignment + 3);
            std::memcpy(in.bytes(), src.data(), in.size());
            zetsDCTFwd_32f(in.data(), out.data(), forward.get(), work.data());
            EXPECT_EQ(0, std::memcmp(out.bytes(), spectrum.data(), out.size())) << len;
            zetsDCTFwd_32f_I(in.data(), forward.get(), work.data());
            EXPECT_EQ(0, std::memcmp(in.bytes(), spectrum.data(), in.size())) << len;
            zetsDCTInv_32f(in.data(), out.data(), inverse.get(), work.data());
            EXPECT_EQ(0, std::memcmp(out.bytes(), back.data(), out.size())) << len;
            zetsDCTInv_32f_I(in.data(), inverse.get(), work.data());
            EXPECT_EQ(0, std::memcmp(in.bytes(), back.data(), in.size())) << len;
            EXPECT_TRUE(in.intact() && out.intact() && work.intact()) << len;
        }
    }
}

TEST(Dct, structuresFitTheirSizes) {
    for (const int len : {1, 2, 12, 64, 100, 500, 1024}) {
        int specSize, initSize, workSize;
        ASSERT_EQ(zetStsOk, zetsDCTFwdGetSize_32f(len, 0, &specSize, &initSize, &workSize));
        EXPECT_TRUE(initSize == 0 || !isPowerOfTwo(len));
        const auto src = randomSingles(static_cast<size_t>(len), 3);
        std::vector<float> expected(src.size()), dst(src.size());
        zetsDCTFwd_32f(src.data(), expected.data(), forwardSpec(len).get(), nullptr);
        for (const size_t alignment : {0, 1, 33}) {
            Guarded<Zet8u> memory(static_cast<size_t>(specSize), alignment);
            Guarded<Zet8u> init(static_cast<size_t>(initSize), 2 * alignment);
            ZetsDCTFwdSpec_32f* spec = nullptr;
            if (initSize > 0) {
                EXPECT_EQ(zetStsNullPointer,
                          zetsDCTFwdInit_32f(&spec, len, 0, memory.data(), nullptr));
            }
            ASSERT_EQ(zetStsOk, zetsDCTFwdInit_32f(&spec, len, 0, memory.data(),
                                                   initSize > 0 ? init.data() : nullptr));
            zetsDCTFwd_32f(src.data(), dst.data(), spec, nullptr);
            EXPECT_EQ(dst, expected) << len;
            EXPECT_EQ(zetStsOk, zetsDCTFwdFree_32f(spec));  // would crash if it released anything
            EXPECT_EQ(zetStsSpecMismatch, zetsDCTFwd_32f(src.data(), dst.data(), spec, nullptr));
            EXPECT_TRUE(memory.intact() && init.intact()) << len;
        }
    }
}

TEST(Dct, refusesSizesBeyondInt) {
    int size = -1;
    for (const int len : {INT_MAX, 1 << 30, (1 << 27) + 1}) {
        EXPECT_EQ(zetStsNoMemory, zetsDCTFwdGetSize_32f(len, 0, &size, &size, &size)) << len;
        ZetsDCTInvSpec_32f* spec = nullptr;
        EXPECT_EQ(zetStsNoMemory, zetsDCTInvInitAlloc_32f(&spec, len, 0)) << len;
        EXPECT_EQ(nullptr, spec);
    }
    EXPECT_EQ(-1, size);
    EXPECT_EQ(zetStsOk, zetsDCTFwdGetSize_32f(1 << 26, 0, &size, &size, &size));
}

// Every request of a life refused in turn, until none is.
TEST(Dct, survivesFailingAllocations) {
    for (const int len : {64, 300}) {
        const std::vector<float> src(static_cast<size_t>(len), 1);
        int refused = 0;
        for (bool done = false; !done; ++refused) {
            const FailingAllocator allocator(refused);
            auto* const untouched = reinterpret_cast<ZetsDCTInvSpec_32f*>(&refused);
            ZetsDCTInvSpec_32f* spec = untouched;
            const ZetStatus made = zetsDCTInvInitAlloc_32f(&spec, len, zetAlgHintNone);
            if (made != zetStsOk) {
                EXPECT_EQ(zetStsNoMemory, made);
                EXPECT_EQ(untouched, spec);
            } else {
                std::vector<float> data = src;
                const ZetStatus status = zetsDCTInv_32f_I(data.data(), spec, nullptr);
                done = allocator.requests() <= refused;
                EXPECT_EQ(done ? zetStsOk : zetStsNoMemory, status);
                EXPECT_EQ(!done, data == src);
                EXPECT_EQ(1, allocator.live());
                EXPECT_EQ(zetStsOk, zetsDCTInvFree_32f(spec));
            }
            EXPECT_EQ(0, allocator.live());
        }
        EXPECT_EQ(isPowerOfTwo(len) ? 3 : 4, refused);  // structure, (initialisation,) work, none
    }
}

TEST(Dct, sharesAStructureBetweenThreads) {
    const ForwardSpec spec = forwardSpec(1000);
    int workSize;
    zetsDCTFwdGetBufSize_32f(spec.get(), &workSize);
    const auto run = [&](uint32_t seed, std::vector<float>& dst) {
        const auto src = randomSingles(1000, seed);
        std::vector<Zet8u> work(static_cast<size_t>(workSize));
        dst.resize(src.size());
        for (int i = 0; i < 200; ++i)
            zetsDCTFwd_32f(src.data(), dst.data(), spec.get(), work.data());
    };
    std::vector<float> first, second, expected;
    std::thread other(run, 4, std::ref(first));
    run(5, second);
    other.join();
    run(4, expected);
    EXPECT_EQ(first, expected);
    run(5, expected);
    EXPECT_EQ(second, expected);
}

}  // namespace
}  // namespace zetac::test
