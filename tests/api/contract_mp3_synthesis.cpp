// Contract rows of the Layer III synthesis and of the floating filter banks.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <gtest/gtest.h>

#include "support/contract.h"

namespace zetac::test {
namespace {

constexpr size_t kGranule = ZETAC_MP3_GRANULE_LEN * sizeof(Zet32s);

void addFixedPointRows(Table& table) {
    table
        .ZETAC_ROW(zetsMDCTInv_MP3_32s, data(kGranule), data(kGranule), data(kGranule),
                   value("bound", 100), valueAt("count", 3), value("type", 1), value("mixed", 1))
        .checks("bound 0..576 BadArg; type 0..3 BadArg; mixed 0..1 BadArg; count 0..32 BadArg");
    // No checks at all.
    table.ZETAC_ROW(zetsMDCTInvWindow_MP3_32s, optionalData(18 * sizeof(Zet32s)),
                    optionalData(36 * sizeof(Zet32s)), value("blockType", 0));
    table
        .ZETAC_ROW(zetsSynthPQMF_MP3_32s16s, data(32 * sizeof(Zet32s)), data(64 * sizeof(Zet16s)),
                   data(ZETAC_MP3_V_BUFFER_LEN * sizeof(Zet32s)), valueAt("offset", 3),
                   value("channels", 1))
        .checks("channels 1..2 BadArg; offset 0..15 BadArg");
}

// The structure and a caller's pointer to it.
#define ADD_BANK(Bank, tag)                                                                       \
    {                                                                                             \
        const Data pointer = data(sizeof(void*)), samples = data(64 * sizeof(Zet32f), 0);         \
        const auto spec = frontOf<Zets##Bank##FilterSpec_PQMF_MP3_32f>(                           \
            [](auto** ppSpec) { zets##Bank##FilterInit_PQMF_MP3_32f(ppSpec, lastingMemory()); }); \
        EXPECT_EQ(spec.value.id, tag);                                                            \
        table.ZETAC_ROW(zets##Bank##FilterGetSize_PQMF_MP3_32f, data(sizeof(int)));               \
        table.ZETAC_ROW(zets##Bank##FilterInit_PQMF_MP3_32f, pointer, data(2091));                \
        table.ZETAC_ALLOC_ROW(zets##Bank##FilterInitAlloc_PQMF_MP3_32f,                           \
                              zets##Bank##FilterFree_PQMF_MP3_32f, pointer);                      \
        table.ZETAC_ROW(zets##Bank##FilterFree_PQMF_MP3_32f, spec).checks(isOf(spec));            \
        table.ZETAC_ROW(zets##Bank##Filter_PQMF_MP3_32f, samples, samples, spec, value("n", 2))   \
            .checks("n 1..2 BadArg; " + isOf(spec));                                              \
    }

}  // namespace

void addMp3SynthesisRows(Table& table) {
    addFixedPointRows(table);
    ADD_BANK(Analysis, 0x434D4168)
    ADD_BANK(Synthesis, 0x434D4167)
}

}  // namespace zetac::test
