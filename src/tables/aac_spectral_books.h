// The eleven spectral books together, and what the index of a codeword in them stands for
// (ISO/IEC 14496-3, 4.6.3).
#pragma once

#include <cstdint>

#include "tables/aac_spectral_book_01.h"
#include "tables/aac_spectral_book_02.h"
#include "tables/aac_spectral_book_03.h"
#include "tables/aac_spectral_book_04.h"
#include "tables/aac_spectral_book_05.h"
#include "tables/aac_spectral_book_06.h"
#include "tables/aac_spectral_book_07.h"
#include "tables/aac_spectral_book_08.h"
#include "tables/aac_spectral_book_09.h"
#include "tables/aac_spectral_book_10.h"
#include "tables/aac_spectral_book_11.h"

namespace zetac::tables {

// Pairs leave the last two values 0.
struct SpectralTuple {
    int values[4];
};

// The values of a tuple are the digits of the index, most significant first, less an offset in the
// signed books.
struct SpectralTupleShape {
    int dimension;
    int radix;
    int offset;  // 0 in the books of magnitudes

    constexpr bool isUnsigned() const { return offset == 0; }

    constexpr SpectralTuple tuple(int index) const {
        SpectralTuple result{};
        for (int i = dimension - 1; i >= 0; --i, index /= radix) {
            result.values[i] = index % radix - offset;
        }
        return result;
    }
};

inline constexpr SpectralTupleShape kSpectralTupleShape[12] = {
    {},        {4, 3, 1}, {4, 3, 1}, {4, 3, 0},  {4, 3, 0},  {2, 9, 4},
    {2, 9, 4}, {2, 8, 0}, {2, 8, 0}, {2, 13, 0}, {2, 13, 0}, {2, 17, 0}};

}  // namespace zetac::tables
