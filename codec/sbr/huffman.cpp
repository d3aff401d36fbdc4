// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "sbr/huffman.h"

#include "sbr/huffman_tables.h"
#include "sbr/tables/huffman_f_env_1_5db.h"
#include "sbr/tables/huffman_f_env_3_0db.h"
#include "sbr/tables/huffman_f_env_bal_1_5db.h"
#include "sbr/tables/huffman_f_env_bal_3_0db.h"
#include "sbr/tables/huffman_t_env_1_5db.h"
#include "sbr/tables/huffman_t_env_3_0db.h"
#include "sbr/tables/huffman_t_env_bal_1_5db.h"
#include "sbr/tables/huffman_t_env_bal_3_0db.h"
#include "sbr/tables/huffman_t_noise_3_0db.h"
#include "sbr/tables/huffman_t_noise_bal_3_0db.h"

namespace zetac::codec {

const SbrHuffmanBook& envelopeBook(int bs_amp_res, bool isBalance, SbrDelta direction) {
    static constexpr const SbrHuffmanBook* kBooks[2][2][2] = {
        {{&kSbrBook<kFrequencyEnvelope15Book>, &kSbrBook<kTimeEnvelope15Book>},
         {&kSbrBook<kFrequencyBalance15Book>, &kSbrBook<kTimeBalance15Book>}},
        {{&kSbrBook<kFrequencyEnvelope30Book>, &kSbrBook<kTimeEnvelope30Book>},
         {&kSbrBook<kFrequencyBalance30Book>, &kSbrBook<kTimeBalance30Book>}}};
    return *kBooks[bs_amp_res][isBalance][static_cast<int>(direction)];
}

const SbrHuffmanBook& noiseBook(bool isBalance, SbrDelta direction) {
    if (direction == SbrDelta::kFrequency) return envelopeBook(1, isBalance, direction);
    return isBalance ? kSbrBook<kTimeNoiseBalance30Book> : kSbrBook<kTimeNoise30Book>;
}

}  // namespace zetac::codec
