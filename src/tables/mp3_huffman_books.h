// The Huffman books of Layer III together, and what their code table numbers stand for
// (ISO/IEC 11172-3, Table B.7).
#pragma once

#include "tables/mp3_pair_book_01.h"
#include "tables/mp3_pair_book_02.h"
#include "tables/mp3_pair_book_03.h"
#include "tables/mp3_pair_book_05.h"
#include "tables/mp3_pair_book_06.h"
#include "tables/mp3_pair_book_07.h"
#include "tables/mp3_pair_book_08.h"
#include "tables/mp3_pair_book_09.h"
#include "tables/mp3_pair_book_10.h"
#include "tables/mp3_pair_book_11.h"
#include "tables/mp3_pair_book_12.h"
#include "tables/mp3_pair_book_13.h"
#include "tables/mp3_pair_book_15.h"
#include "tables/mp3_pair_book_16.h"
#include "tables/mp3_pair_book_24.h"
#include "tables/mp3_quad_book_a.h"
#include "tables/mp3_quad_book_b.h"

namespace zetac::tables {

// The magnitude behind which linbits follow, in tables that have them.
inline constexpr int kEscapedMagnitude = 15;

// Values per dimension of a pair book: x is the index divided by it, y the rest.
template <std::size_t numCodes>
constexpr int pairRadix(const HuffmanCode (&)[numCodes]) {
    int radix = 1;
    while (radix * radix < static_cast<int>(numCodes)) ++radix;
    return radix;
}

}  // namespace zetac::tables
