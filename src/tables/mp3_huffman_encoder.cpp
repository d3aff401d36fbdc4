#include "tables/mp3_huffman_encoder.h"

#include "tables/mp3_huffman_books.h"

namespace zetac::tables {
namespace {

template <std::size_t numCodes>
constexpr PairEncoder encoderOf(const HuffmanCode (&book)[numCodes], int linbits = 0) {
    return {book, pairRadix(book), linbits};
}

constexpr PairEncoder kNothing = {nullptr, 0, 0};

}  // namespace

constexpr PairEncoder kPairEncoder[32] = {
    kNothing,
    encoderOf(kPairBook1),
    encoderOf(kPairBook2),
    encoderOf(kPairBook3),
    kNothing,
    encoderOf(kPairBook5),
    encoderOf(kPairBook6),
    encoderOf(kPairBook7),
    encoderOf(kPairBook8),
    encoderOf(kPairBook9),
    encoderOf(kPairBook10),
    encoderOf(kPairBook11),
    encoderOf(kPairBook12),
    encoderOf(kPairBook13),
    kNothing,
    encoderOf(kPairBook15),
    encoderOf(kPairBook16, 1),
    encoderOf(kPairBook16, 2),
    encoderOf(kPairBook16, 3),
    encoderOf(kPairBook16, 4),
    encoderOf(kPairBook16, 6),
    encoderOf(kPairBook16, 8),
    encoderOf(kPairBook16, 10),
    encoderOf(kPairBook16, 13),
    encoderOf(kPairBook24, 4),
    encoderOf(kPairBook24, 5),
    encoderOf(kPairBook24, 6),
    encoderOf(kPairBook24, 7),
    encoderOf(kPairBook24, 8),
    encoderOf(kPairBook24, 9),
    encoderOf(kPairBook24, 11),
    encoderOf(kPairBook24, 13),
};

const HuffmanCode* const kQuadEncoder[2] = {kQuadBookA, kQuadBookB};

}  // namespace zetac::tables
