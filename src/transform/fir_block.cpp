// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <algorithm>
#include <cstdint>
#include <cstring>

#include "core/checks.h"
#include "core/spec.h"
#include "transform/fir_block_kernels.h"

struct ZetsFIRBlockSpec_32f {
    zetac::core::SpecHeader header;
    int tapsLen;
    Zet32f* taps;
};

namespace zetac::transform {
namespace {

using core::SpecId;
using Spec = ZetsFIRBlockSpec_32f;

// Outputs and taps worked on at a time. Their samples are copied side by side, which costs
// little beside the products, and makes a delay line of any length and a block of any length one
// case.
constexpr int kChunk = 256;
static_assert(kChunk % kFirBlockGroup == 0);

struct DelayLine {
    Zet32f* samples;
    int length;
    int index;  // of the oldest sample

    int wrapped(int position) const { return position % length; }

    // count samples, the first of which lies age samples back (1 is the newest); count <= age <=
    // length.
    void read(int age, Zet32f* target, int count) const {
        const int first = wrapped(index + length - age);
        const int run = std::min(count, length - first);
        std::memcpy(target, samples + first, run * sizeof *target);
        std::memcpy(target + run, samples, (count - run) * sizeof *target);
    }

    void push(const Zet32f* source, int count) {
        const int skipped = std::max(0, count - length);
        const int first = wrapped(index + skipped);
        const int kept = count - skipped;
        const int run = std::min(kept, length - first);
        std::memcpy(samples + first, source + skipped, run * sizeof *source);
        std::memcpy(samples, source + skipped + run, (kept - run) * sizeof *source);
        index = wrapped(index + count);
    }
};

// The samples that count outputs see through taps firstTap .. firstTap + numTaps - 1, oldest first.
void fillWindow(const DelayLine& line, const Zet32f* src, int count, int firstTap, int numTaps,
                Zet32f* window) {
    const int age = firstTap + numTaps - 1;  // of the oldest sample, relative to the first output
    const int total = numTaps - 1 + count;
    const int past = std::min(age, total);
    line.read(age, window, past);
    if (past < total) std::memcpy(window + past, src, (total - past) * sizeof *window);
    std::fill_n(window + total, kFirBlockGroup, 0.0f);
}

void filterChunk(const FirBlockKernels& kernels, const Spec& spec, const DelayLine& line,
                 const Zet32f* src, int count, Zet32f* sums) {
    std::fill_n(sums, core::roundUp(count, kFirBlockGroup), 0.0f);
    alignas(64) Zet32f window[2 * kChunk + kFirBlockGroup];
    for (int tap = 0; tap < spec.tapsLen;) {
        const int numTaps = std::min(kChunk, spec.tapsLen - tap);
        fillWindow(line, src, count, tap, numTaps, window);
        kernels.accumulate(window, spec.taps + tap, numTaps, sums, count);
        tap += numTaps;
    }
}

void filterBlock(const Spec& spec, const Zet32f* src, Zet32f* dst, int len, Zet32f* delayLine,
                 int* delayIndex) {
    const FirBlockKernels kernels = core::select(kFirBlockKernels);
    DelayLine line = {delayLine, spec.tapsLen, *delayIndex};
    for (int done = 0; done < len;) {
        const int count = std::min(kChunk, len - done);
        alignas(64) Zet32f sums[kChunk];
        filterChunk(kernels, spec, line, src + done, count, sums);
        line.push(src + done, count);  // before the outputs, which may replace the samples
        std::memcpy(dst + done, sums, count * sizeof *dst);
        done += count;
    }
    *delayIndex = line.index;
}

Spec* layOutFirBlock(core::Layout& layout, const Zet32f* taps, int tapsLen) {
    Spec* spec = layout.take<Spec>();
    Zet32f* copy = layout.take<Zet32f>(tapsLen);
    if (!spec) return nullptr;
    *spec = {{SpecId::kFirBlock32f, 0}, tapsLen, copy};
    std::memcpy(copy, taps, tapsLen * sizeof *taps);
    return spec;
}

ZetStatus allocateFirBlock(Spec** result, const Zet32f* taps, int tapsLen) {
    core::Layout sizes;
    layOutFirBlock(sizes, taps, tapsLen);
    if (!core::fitsInt(sizes.size())) return zetStsNoMemory;
    return core::allocateSpec(result, static_cast<int>(sizes.size()), [&](Zet8u* memory) {
        core::Layout layout(memory);
        return layOutFirBlock(layout, taps, tapsLen);
    });
}

}  // namespace
}  // namespace zetac::transform

using zetac::core::allSet;
using zetac::core::inRange;
using zetac::core::SpecId;

ZetStatus zetsFIRBlockInitAlloc_32f(ZetsFIRBlockSpec_32f** ppSpec, const Zet32f* pTaps,
                                    int tapsLen) {
    ZETAC_REQUIRE(allSet(ppSpec, pTaps), zetStsNullPointer);
    ZETAC_REQUIRE(tapsLen >= 1, zetStsFirLengthErr);
    return zetac::transform::allocateFirBlock(ppSpec, pTaps, tapsLen);
}

ZetStatus zetsFIRBlockFree_32f(ZetsFIRBlockSpec_32f* pSpec) {
    ZETAC_REQUIRE(allSet(pSpec), zetStsNullPointer);
    ZETAC_REQUIRE(zetac::core::hasId(pSpec, SpecId::kFirBlock32f), zetStsSpecMismatch);
    zetac::core::freeSpec(pSpec);
    return zetStsOk;
}

ZetStatus zetsFIRBlockOne_32f(const Zet32f* pSrc, Zet32f* pDst, int len,
                              const ZetsFIRBlockSpec_32f* pSpec, Zet32f* pDelayLine,
                              int* pDelayIndex) {
    ZETAC_REQUIRE(allSet(pSrc, pDst, pSpec, pDelayLine, pDelayIndex), zetStsNullPointer);
    ZETAC_REQUIRE(zetac::core::hasId(pSpec, SpecId::kFirBlock32f), zetStsSpecMismatch);
    ZETAC_REQUIRE(len >= 1, zetStsFirLengthErr);
    ZETAC_REQUIRE(inRange(*pDelayIndex, 0, pSpec->tapsLen - 1), zetStsFirLengthErr);
    zetac::transform::filterBlock(*pSpec, pSrc, pDst, len, pDelayLine, pDelayIndex);
    return zetac::core::alignmentStatus(pSrc, pDst);
}
