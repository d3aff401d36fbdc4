// Envelope and noise balances in steps of 3 dB, delta
// coded in frequency (ISO/IEC 14496-3, Table 4.A.84): {length, codeword} of the
// differences -12..12.
#pragma once

#include "sbr/tables/huffman_code.h"

namespace zetac::codec {

// clang-format off
inline constexpr SbrHuffmanCode kFrequencyBalance30Book[25] = {
    /* -12 */ {13, 0x1ff7}, {13, 0x1ff8}, {13, 0x1ff9}, {13, 0x1ffa}, {13, 0x1ffb},
    /*  -7 */ {14, 0x3ff8}, {14, 0x3ff9}, {11, 0x07fc}, { 8, 0x00fe}, { 7, 0x007e},
    /*  -2 */ { 4, 0x000e}, { 2, 0x0002}, { 1, 0x0000}, { 3, 0x0006}, { 5, 0x001e},
    /*   3 */ { 6, 0x003e}, { 9, 0x01fe}, {12, 0x0ffa}, {13, 0x1ff6}, {14, 0x3ffa},
    /*   8 */ {14, 0x3ffb}, {14, 0x3ffc}, {14, 0x3ffd}, {14, 0x3ffe}, {14, 0x3fff}
};
// clang-format on

}  // namespace zetac::codec
