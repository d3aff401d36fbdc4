// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "aac/tns_data.h"

#include "aac/window_lengths.h"

namespace zetac::aac {
namespace {

// What differs between one long and eight short windows.
struct TnsSyntax {
    int numWindows;
    int filterBits;
    int lengthBits;
    int orderBits;
    int maxOrder;
};
constexpr TnsSyntax kLongTns = {1, 2, 6, 5, 12};
constexpr TnsSyntax kShortTns = {kShortWindows, 1, 4, 3, 7};

void readCoefficients(BitReader& stream, int order, int bits, Zet8s* coefs) {
    const int halfRange = 1 << (bits - 1);
    for (int i = 0; i < order; ++i) {
        const int value = ownsGetBits_AAC(stream, bits);
        coefs[i] = static_cast<Zet8s>((value ^ halfRange) - halfRange);
    }
}

ZetStatus readFilter(BitReader& stream, const TnsSyntax& syntax, Zet32s coefRes, ZetAACTnsInfo& tns,
                     int filter, Zet8s* coefs) {
    tns.length[filter] = ownsGetBits_AAC(stream, syntax.lengthBits);
    tns.order[filter] = ownsGetBits_AAC(stream, syntax.orderBits);
    tns.direction[filter] = 0;
    tns.coef_compress[filter] = 0;
    if (tns.order[filter] > syntax.maxOrder) return zetStsAacTnsOrderErr;
    if (tns.order[filter] == 0) return zetStsOk;
    tns.direction[filter] = ownsGetBits_AAC(stream, 1);
    const int coefCompress = ownsGetBits_AAC(stream, 1);
    readCoefficients(stream, tns.order[filter], coefRes - coefCompress, coefs);
    return zetStsOk;
}

}  // namespace

// Three long filters of order 12 or eight short ones of order 7 stay below the room in tns and
// coefs.
ZetStatus readTnsData(BitReader& stream, bool isShort, ZetAACTnsInfo& tns, Zet8s* coefs) {
    const TnsSyntax& syntax = isShort ? kShortTns : kLongTns;
    int filter = 0;
    for (int w = 0; w < syntax.numWindows; ++w) {
        tns.n_filt[w] = ownsGetBits_AAC(stream, syntax.filterBits);
        if (tns.n_filt[w] == 0) continue;
        tns.coef_res[w] = 3 + ownsGetBits_AAC(stream, 1);
        for (int i = 0; i < tns.n_filt[w]; ++i, ++filter) {
            const ZetStatus status =
                readFilter(stream, syntax, tns.coef_res[w], tns, filter, coefs);
            if (status != zetStsOk) return status;
            coefs += tns.order[filter];
        }
    }
    return zetStsOk;
}

}  // namespace zetac::aac
