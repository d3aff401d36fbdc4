// The life of every structure that an Init or an InitAlloc makes: in memory of exactly the size
// told, at any alignment, without memory, and shared between threads.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <gtest/gtest.h>
#include <zetac.h>

#include <climits>
#include <functional>
#include <string>
#include <thread>

#include "support/failing_allocator.h"
#include "support/guarded.h"
#include "support/reference_fft.h"

namespace zetac::test {
namespace {

struct Any {
    void* pointer;
    template <class T>
    operator T*() const {
        return static_cast<T*>(pointer);
    }
};

struct Structure {
    std::string name;
    int blocks;     // that InitAlloc keeps
    size_t values;  // singles that run() works on in place
    std::function<ZetStatus(Any values, Any spec, Zet8u* work)> run;
    std::function<ZetStatus(Any ppSpec)> initAlloc;
    std::function<ZetStatus(Any spec)> free;
    std::function<ZetStatus(int* spec, int* init, int* work)> getSize;
    std::function<ZetStatus(Any ppSpec, Zet8u* memory, Zet8u* init)> init;
    std::function<ZetStatus(Any spec, int* work)> getBufSize = nullptr;
    bool outlivesFree = false;       // in the caller's memory
    bool isFoundFromMemory = false;  // by the caller's own pointer as well
};

// Of a family whose functions share some parameters.
template <auto getSize, auto init, auto initAlloc, auto free, auto getBufSize, class... P>
Structure life(const char* name, int blocks, size_t values, decltype(Structure::run) run, P... p) {
    return {(name + ... + ("_" + std::to_string(p))),
            blocks,
            values,
            run,
            [=](Any ppSpec) { return initAlloc(ppSpec, p...); },
            [](Any spec) { return free(spec); },
            [=](int* a, int* b, int* c) { return getSize(p..., a, b, c); },
            [=](Any ppSpec, Zet8u* m, Zet8u* i) { return init(ppSpec, p..., m, i); },
            [](Any spec, int* size) { return getBufSize(spec, size); }};
}
#define LIFE(family, type)                                                                        \
    life<zets##family##GetSize_##type, zets##family##Init_##type, zets##family##InitAlloc_##type, \
         zets##family##Free_##type, zets##family##GetBufSize_##type>
#define RUN(...) [=](Any x, Any spec, Zet8u* work) { return __VA_ARGS__; }

void addTransforms(std::vector<Structure>& all) {
    for (const int order : {0, 4, 9, 12}) {
        const size_t n = size_t{1} << order;
        all.push_back(LIFE(FFT, C_32fc)("FFT_C_32fc", 1, 2 * n,
                                        RUN(zetsFFTFwd_CToC_32fc_I(x, spec, work)), order, 8, 0));
        const auto split = RUN(zetsFFTFwd_CToC_32f_I(x, static_cast<float*>(x) + n, spec, work));
        all.push_back(LIFE(FFT, C_32f)("FFT_C_32f", 1, 2 * n, split, order, 8, 0));
        all.push_back(LIFE(FFT, C_16sc)(
            "FFT_C_16sc", 1, n, RUN(zetsFFTInv_CToC_16sc_ISfs(x, spec, 3, work)), order, 8, 0));
        all.push_back(LIFE(FFT, R_32f)("FFT_R_32f", 1, n,
                                       RUN(zetsFFTInv_PackToR_32f_I(x, spec, work)), order, 8, 0));
    }
    for (const int len : {1, 2, 12, 64, 100, 300, 500, 1024}) {
        all.push_back(
            LIFE(DCTFwd, 32f)("DCTFwd", 1, len, RUN(zetsDCTFwd_32f_I(x, spec, work)), len, 0));
        all.push_back(
            LIFE(DCTInv, 32f)("DCTInv", 1, len, RUN(zetsDCTInv_32f_I(x, spec, work)), len, 0));
    }
    for (const int len : {12, 36, 32, 512, 4096}) {  // structure and table, and most have an FFT
        const int blocks = len < 32 || len == 36 ? 2 : 3;
        all.push_back(
            LIFE(MDCTFwd, 32f)("MDCTFwd", blocks, len, RUN(zetsMDCTFwd_32f_I(x, spec, work)), len));
        all.push_back(
            LIFE(MDCTInv, 32f)("MDCTInv", blocks, len, RUN(zetsMDCTInv_32f_I(x, spec, work)), len));
        if (blocks == 3)
            all.push_back(LIFE(MDCTFwd, 16s)("MDCTFwd_16s", 3, len,
                                             RUN(zetsMDCTFwd_16s_Sfs(x, x, spec, 6, work)), len));
    }
}

constexpr ZetVLCCode kCodes[] = {{{0, 0}, 1, 0}, {{15, 1}, 3, 4}};

void addOthers(std::vector<Structure>& all) {
#define BANK(Bank)                                                                                \
    all.push_back({#Bank, 1, 32, RUN((void)work, zets##Bank##Filter_PQMF_MP3_32f(x, x, spec, 1)), \
                   zets##Bank##FilterInitAlloc_PQMF_MP3_32f, zets##Bank##FilterFree_PQMF_MP3_32f, \
                   [](int* a, int*, int*) { return zets##Bank##FilterGetSize_PQMF_MP3_32f(a); },  \
                   [](Any pp, Zet8u* memory, Zet8u*) {                                            \
                       return zets##Bank##FilterInit_PQMF_MP3_32f(pp, memory);                    \
                   },                                                                             \
                   nullptr, true, true})
    BANK(Analysis);
    BANK(Synthesis);
    all.push_back(
        {"VLCDecode", 1, 1,
         [](Any x, Any spec, Zet8u*) {
             Zet8u stream[8] = {0x80}, *byte = stream;
             int offset = 0;
             return zetsVLCDecodeEscBlock_MP3_1u16s(&byte, &offset, 3, x, 2, spec);
         },
         [](Any pp) { return zetsVLCDecodeInitAlloc_1u16s(pp, kCodes, 2, zetVLCPairs); },
         zetsVLCDecodeFree_1u16s,
         [](int* a, int*, int*) { return zetsVLCDecodeGetSize_1u16s(kCodes, 2, zetVLCPairs, a); },
         [](Any pp, Zet8u* m, Zet8u*) {
             return zetsVLCDecodeInit_1u16s(pp, kCodes, 2, zetVLCPairs, m);
         },
         nullptr, false, true});
    all.push_back({"VLCEncode", 1, 1,
                   [](Any x, Any spec, Zet8u*) {
                       constexpr Zet16s kPair[] = {15, 1};
                       Zet8u* byte = x;
                       int offset = 0;
                       return zetsVLCEncodeEscBlock_MP3_16s1u(kPair, 2, 3, &byte, &offset, spec);
                   },
                   [](Any pp) { return zetsVLCEncodeInitAlloc_16s1u(pp, kCodes, 2, zetVLCEscMP3); },
                   zetsVLCEncodeFree_16s1u,
                   [](int* a, int*, int*) { return zetsVLCEncodeGetSize_16s1u(zetVLCEscMP3, a); },
                   [](Any pp, Zet8u* m, Zet8u*) {
                       return zetsVLCEncodeInit_16s1u(pp, kCodes, 2, zetVLCEscMP3, m);
                   },
                   nullptr, false, true});
    all.push_back({"FDP", 1, 99, RUN((void)work, zetsFDPFwd_32f(x, x, spec)),
                   [](Any pp) { return zetsFDPInitAlloc_32f(pp, 99); }, zetsFDPFree_32f,
                   [](int* a, int*, int*) { return zetsFDPGetSize_32f(99, a); },
                   [](Any pp, Zet8u* m, Zet8u*) { return zetsFDPInit_32f(pp, 99, m); }});
}

// Results: in place, with the status that tells of alignment left out.
std::vector<float> ran(const Structure& s, Any spec, Zet8u* work, uint32_t seed = 1) {
    auto values = randomSingles(s.values, seed);
    EXPECT_GE(s.run({values.data()}, spec, work), zetStsOk);
    return values;
}
bool same(const std::vector<float>& a, const float* b) {
    return std::memcmp(a.data(), b, a.size() * sizeof(float)) == 0;
}

class Structures : public testing::TestWithParam<Structure> {};

TEST_P(Structures, LiveInMemoryOfAnyAlignment) {
    const Structure& s = GetParam();
    void* spec = nullptr;
    ASSERT_EQ(s.initAlloc({&spec}), zetStsOk);
    const auto expected = ran(s, {spec}, nullptr);
    EXPECT_EQ(s.free({spec}), zetStsOk);
    int size = 0, initSize = 0, workSize = 0;
    ASSERT_EQ(s.getSize(&size, &initSize, &workSize), zetStsOk);
    for (size_t alignment = 0; alignment<64; alignment += s.values> 512 ? 7 : 1) {
        SCOPED_TRACE(alignment);
        Guarded<Zet8u> memory(size, alignment), init(initSize, 2 * alignment % 64);
        if (initSize > 0) {
            EXPECT_EQ(s.init({&spec}, memory.data(), nullptr), zetStsNullPointer);
        }
        ASSERT_EQ(s.init({&spec}, memory.data(), init.data()), zetStsOk);
        EXPECT_EQ(reinterpret_cast<uintptr_t>(spec) % 16, 0u);
        if (s.getBufSize) {
            EXPECT_EQ(s.getBufSize({spec}, &workSize), zetStsOk);
        }
        Guarded<Zet8u> work(workSize, (alignment + 3) % 64);
        Guarded<float> values(s.values, alignment & ~3);
        std::ranges::copy(randomSingles(s.values, 1), values.data());
        void* given = s.isFoundFromMemory && alignment % 2 ? memory.data() : spec;
        EXPECT_GE(s.run({values.data()}, {given}, workSize ? work.data() : nullptr), zetStsOk);
        EXPECT_TRUE(same(expected, values.data()));
        EXPECT_TRUE(memory.intact() && init.intact() && work.intact() && values.intact());
        EXPECT_EQ(s.free({spec}), zetStsOk);  // not a block of the heap
        EXPECT_EQ(s.run({values.data()}, {spec}, nullptr) >= zetStsOk, s.outlivesFree);
        EXPECT_EQ(s.free({spec}), s.outlivesFree ? zetStsOk : zetStsSpecMismatch);
        EXPECT_TRUE(memory.intact());
    }
}

// Every request of a life refused in turn, until none is.
TEST_P(Structures, SurviveFailingAllocations) {
    const Structure& s = GetParam();
    bool isDone = false;
    for (int refused = 0; !isDone; ++refused) {
        SCOPED_TRACE(refused);
        const FailingAllocator allocator(refused);
        void* const untouched = &isDone;
        void* spec = untouched;
        if (const ZetStatus made = s.initAlloc({&spec}); made != zetStsOk) {
            EXPECT_EQ(made, zetStsNoMemory);
            EXPECT_EQ(spec, untouched);
        } else {
            EXPECT_EQ(allocator.live(), s.blocks);
            const auto before = randomSingles(s.values, 2);
            auto values = before;
            const ZetStatus status = s.run({values.data()}, {spec}, nullptr);
            isDone = allocator.requests() <= refused;
            EXPECT_EQ(status >= zetStsOk, isDone) << status;
            EXPECT_TRUE(isDone || (status == zetStsNoMemory && same(before, values.data())));
            std::vector<Zet8u> work(1 << 20);
            const int requests = allocator.requests();
            ran(s, {spec}, work.data());
            EXPECT_EQ(allocator.requests(), requests);
            EXPECT_EQ(allocator.live(), s.blocks);
            EXPECT_EQ(s.free({spec}), zetStsOk);
        }
        EXPECT_EQ(allocator.live(), 0);
    }
}

// But for filters, which are states, and specs without work.
TEST_P(Structures, AreSharedBetweenThreads) {
    const Structure& s = GetParam();
    if (!s.getBufSize) return;
    void* spec = nullptr;
    ASSERT_EQ(s.initAlloc({&spec}), zetStsOk);
    std::vector<float> results[2];
    const auto run = [&](int i) {
        for (int round = 0; round < 30; ++round) results[i] = ran(s, {spec}, nullptr, 3 + i);
    };
    std::thread first(run, 0), second(run, 1);
    first.join(), second.join();
    for (int i = 0; i < 2; ++i)
        EXPECT_TRUE(same(results[i], ran(s, {spec}, nullptr, 3 + i).data()));
    EXPECT_EQ(s.free({spec}), zetStsOk);
}

std::vector<Structure> allStructures() {
    std::vector<Structure> all;
    addTransforms(all);
    addOthers(all);
    return all;
}
INSTANTIATE_TEST_SUITE_P(Of, Structures, testing::ValuesIn(allStructures()),
                         [](const auto& row) { return row.param.name; });

TEST(StructureSizes, ArePromised) {
    int spec = 0, init = 0, work = 0;
    for (int len = 1; len < 100; ++len) {
        ASSERT_EQ(zetsFDPGetSize_32f(len, &spec), zetStsOk);
        EXPECT_EQ(spec, 24 * len + 260);
    }
    EXPECT_TRUE(!zetsAnalysisFilterGetSize_PQMF_MP3_32f(&spec) && spec == 2091);
    EXPECT_TRUE(!zetsSynthesisFilterGetSize_PQMF_MP3_32f(&spec) && spec == 2091);
    for (const auto getSize : {zetsMDCTFwdGetSize_32f, zetsMDCTInvGetSize_32f}) {
        for (const int len : {12, 36}) {
            ASSERT_EQ(getSize(len, &spec, &init, &work), zetStsOk);
            EXPECT_TRUE(spec == 2 * len + 92 && init == 0 && work == 4 * len + 64 + 32) << len;
        }
        for (int order = 3; order < 20; ++order) {
            int fft = 0, fftWork = 0;
            ASSERT_EQ(zetsFFTGetSize_C_32fc(order, zetFftNoDiv, 0, &fft, &init, &fftWork),
                      zetStsOk);
            ASSERT_EQ(getSize(4 << order, &spec, &init, &work), zetStsOk);
            EXPECT_EQ(spec, fft + (8 << order) + 124);
            EXPECT_EQ(work, fftWork + (16 << order) + 96);
            ASSERT_EQ(zetsFFTGetSize_C_16sc(order, zetFftNoDiv, 0, &fft, &init, &fftWork),
                      zetStsOk);
            ASSERT_EQ(zetsMDCTFwdGetSize_16s(4 << order, &spec, &init, &work), zetStsOk);
            EXPECT_EQ(spec, fft + (4 << order) + 124);
            EXPECT_EQ(work, std::max(16 << order, fftWork) + (4 << order) + 32);
        }
    }
}

// Sizes above INT_MAX are refused, and nothing is written.
TEST(StructureSizes, BeyondIntAreRefused) {
    int size = -1;
    const auto fft = [&](auto getSize, int order) {
        return getSize(order, zetFftNoDiv, 0, &size, &size, &size);
    };
    EXPECT_EQ(fft(zetsFFTGetSize_C_32fc, 28), zetStsNoMemory);
    EXPECT_EQ(fft(zetsFFTGetSize_C_32f, 27), zetStsNoMemory);
    EXPECT_EQ(fft(zetsFFTGetSize_C_16sc, 27), zetStsNoMemory);
    EXPECT_EQ(fft(zetsFFTGetSize_R_32f, 29), zetStsNoMemory);
    EXPECT_EQ(zetsMDCTFwdGetSize_32f(1 << 30, &size, &size, &size), zetStsNoMemory);
    EXPECT_EQ(zetsMDCTFwdGetSize_16s(1 << 30, &size, &size, &size), zetStsNoMemory);
    for (const int len : {INT_MAX, 1 << 30, (1 << 27) + 1})
        EXPECT_EQ(zetsDCTFwdGetSize_32f(len, 0, &size, &size, &size), zetStsNoMemory) << len;
    ZetsFFTSpec_C_32fc* spec = nullptr;
    EXPECT_EQ(zetsFFTInitAlloc_C_32fc(&spec, 28, zetFftNoDiv, 0), zetStsNoMemory);
    ZetsDCTInvSpec_32f* dct = nullptr;
    EXPECT_EQ(zetsDCTInvInitAlloc_32f(&dct, 1 << 30, 0), zetStsNoMemory);
    const Zet32f tap = 1;
    ZetsFIRBlockSpec_32f* filter = nullptr;
    EXPECT_EQ(zetsFIRBlockInitAlloc_32f(&filter, &tap, INT_MAX), zetStsNoMemory);
    EXPECT_TRUE(size == -1 && !spec && !dct && !filter);
    EXPECT_EQ(fft(zetsFFTGetSize_C_32fc, 27), zetStsOk);
    EXPECT_EQ(fft(zetsFFTGetSize_C_32f, 26), zetStsOk);
    EXPECT_EQ(fft(zetsFFTGetSize_C_16sc, 26), zetStsOk);
    EXPECT_EQ(fft(zetsFFTGetSize_R_32f, 28), zetStsOk);
    EXPECT_EQ(zetsMDCTFwdGetSize_32f(1 << 28, &size, &size, &size), zetStsOk);
    EXPECT_EQ(zetsDCTFwdGetSize_32f(1 << 26, 0, &size, &size, &size), zetStsOk);
}

}  // namespace
}  // namespace zetac::test
