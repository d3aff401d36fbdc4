// Vector quantisation against values computed by hand and against models in double precision.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <gtest/gtest.h>
#include <zetac.h>

#include <algorithm>
#include <array>
#include <cfloat>
#include <cmath>
#include <cstring>
#include <random>
#include <vector>

namespace {

using Floats = std::vector<Zet32f>;
using Words = std::vector<Zet32s>;

// Two books with the same number of vectors.
struct Quantiser {
    int len, nDiv, numCodes, codeLen, signBit;
    Floats vectors[2];
    ZetVQCodebook books[2];
    Floats target, weights;

    Quantiser(int len_, int nDiv_, int numCodes_, int signBit_, unsigned seed)
        : len(len_),
          nDiv(nDiv_),
          numCodes(numCodes_),
          codeLen((len + nDiv - 1) / nDiv + 1),
          signBit(signBit_) {
        // Steps of 2^-20 from whole random numbers: the same on every machine.
        std::mt19937 random(seed);
        const auto uniform = [&] {
            return static_cast<Zet32f>(static_cast<int>(random() >> 11) - (1 << 20)) / (1 << 20);
        };
        for (int i = 0; i < 2; ++i) {
            vectors[i].resize(static_cast<size_t>(numCodes * codeLen));
            std::ranges::generate(vectors[i], uniform);
            books[i] = {vectors[i].data(), numCodes, codeLen, signBit};
        }
        target.resize(static_cast<size_t>(len));
        weights.resize(target.size());
        std::ranges::generate(target, uniform);
        std::ranges::generate(weights, [&] { return 1.0625F + uniform(); });
    }
    Quantiser(const Quantiser&) = delete;
    Quantiser& operator=(const Quantiser&) = delete;

    int candidates() const { return numCodes * (1 + signBit); }

    Words preSelect(int book, int numCand) const {
        Words words(static_cast<size_t>(nDiv * numCand));
        EXPECT_EQ(zetsVQPreSelect_32f(target.data(), weights.data(), len, nDiv, &books[book],
                                      words.data(), numCand),
                  zetStsOk);
        return words;
    }
    struct Coded {
        Words index;
        Floats distance;
    };
    Coded encode(int numCand) const {
        const Words first = preSelect(0, numCand), second = preSelect(1, numCand);
        Words selected(static_cast<size_t>(2 * nDiv));
        Coded coded = {selected, Floats(static_cast<size_t>(nDiv))};
        EXPECT_EQ(zetsVQMainSelect_32f(target.data(), weights.data(), len, nDiv, books,
                                       first.data(), numCand, second.data(), numCand,
                                       selected.data(), coded.distance.data()),
                  zetStsOk);
        EXPECT_EQ(zetsVQIndexSelect_32s(selected.data(), nDiv, books, first.data(), numCand,
                                        second.data(), numCand, coded.index.data()),
                  zetStsOk);
        return coded;
    }

    // Component i of a candidate, with its sign.
    double component(int book, Zet32s word, int i) const {
        const int number = word < 0 ? -word - 1 : word;
        const double value = vectors[book][static_cast<size_t>(number * codeLen + i)];
        return word < 0 ? -value : value;
    }
    double score(int book, Zet32s word, int d) const {
        double sum = 0;
        for (int i = 0, line = d; line < len; ++i, line += nDiv) {
            const auto n = static_cast<size_t>(line);
            const double c = component(book, word, i);
            sum += weights[n] * (target[n] * c - c * c / 4);
        }
        return sum;
    }
    double distance(Zet32s first, Zet32s second, int d) const {
        double sum = 0;
        for (int i = 0, line = d; line < len; ++i, line += nDiv) {
            const auto n = static_cast<size_t>(line);
            const double error = target[n] - (component(0, first, i) + component(1, second, i)) / 2;
            sum += weights[n] * error * error;
        }
        return sum;
    }
    Words everyCandidate() const {
        Words words;
        for (int n = 0; n < numCodes; ++n) {
            words.push_back(n);
            if (signBit) words.push_back(-n - 1);
        }
        return words;
    }
    double leastDistance(int d) const {
        double least = HUGE_VAL;
        for (const Zet32s first : everyCandidate())
            for (const Zet32s second : everyCandidate())
                least = std::min(least, distance(first, second, d));
        return least;
    }

    // How far a sum in single may be off: each of at most 4 L(0) terms below 2.1 * 4 has at most
    // 5 roundings of its own, and passes codeLen / 8 + 4 additions of the sum.
    double tolerance() const {
        const double terms = codeLen * 2.1 * 4;
        return terms * (5 + codeLen / 8 + 4) * FLT_EPSILON / 2;
    }
};

// Lengths that are multiples of 8 and others, subvectors of equal and of different length.
constexpr std::array<int, 3> kShapes[] = {
    {64, 4, 16}, {50, 7, 9}, {23, 1, 5}, {9, 9, 3}, {128, 1, 4}};

TEST(Vq, PreselectionKeepsTheBestScoresInOrder) {
    for (const auto& [len, nDiv, numCodes] : kShapes) {
        for (const int signBit : {0, 1}) {
            const Quantiser q(len, nDiv, numCodes, signBit, 1);
            const int numCand = std::max(1, q.candidates() / 3);
            const Words words = q.preSelect(1, numCand);
            const Words all = q.preSelect(1, q.candidates());
            for (int d = 0; d < nDiv; ++d) {
                const auto* list = &all[static_cast<size_t>(d * q.candidates())];
                EXPECT_TRUE(
                    std::equal(list, list + numCand, &words[static_cast<size_t>(d * numCand)]));
                for (int i = 1; i < q.candidates(); ++i)
                    EXPECT_LE(q.score(1, list[i], d),
                              q.score(1, list[i - 1], d) + 2 * q.tolerance());
                Words sorted(list, list + q.candidates()), every = q.everyCandidate();
                std::ranges::sort(sorted);
                std::ranges::sort(every);
                EXPECT_EQ(sorted, every);
            }
        }
    }
}

TEST(Vq, AllCandidatesMakeTheSearchExhaustive) {
    for (const auto& [len, nDiv, numCodes] : kShapes) {
        for (const int signBit : {0, 1}) {
            const Quantiser q(len, nDiv, numCodes, signBit, 2);
            const auto coded = q.encode(q.candidates());
            for (int d = 0; d < nDiv; ++d)
                EXPECT_NEAR(coded.distance[static_cast<size_t>(d)], q.leastDistance(d),
                            q.tolerance());
        }
    }
}

TEST(Vq, ReconstructionHasTheDistanceOfTheSelection) {
    for (const auto& [len, nDiv, numCodes] : kShapes) {
        const Quantiser q(len, nDiv, numCodes, 1, 4);
        const auto coded = q.encode(std::min(4, numCodes));
        Floats lines(static_cast<size_t>(len));
        ASSERT_EQ(
            zetsVQReconstruction_32s32f(coded.index.data(), q.books, 1, lines.data(), len, nDiv),
            zetStsOk);
        for (int d = 0; d < nDiv; ++d) {
            double sum = 0;
            for (auto n = static_cast<size_t>(d); n < lines.size();
                 n += static_cast<size_t>(nDiv)) {
                const double error = static_cast<double>(q.target[n]) - lines[n];
                sum += q.weights[n] * error * error;
            }
            EXPECT_NEAR(coded.distance[static_cast<size_t>(d)], sum, q.tolerance());
        }
    }
}

TEST(Vq, SelectionHasTheSameBitsInBothWordSizes) {
    const Quantiser q(120, 7, 32, 1, 5);
    const auto coded = q.encode(8);
    uint32_t hash = 2166136261U;
    const auto add = [&](uint32_t word) { hash = (hash ^ word) * 16777619U; };
    for (const Zet32s index : coded.index) add(static_cast<uint32_t>(index));
    for (const Zet32f distance : coded.distance) {
        uint32_t word;
        std::memcpy(&word, &distance, sizeof word);
        add(word);
    }
    EXPECT_EQ(hash, 1342779084U);
}

// 5 lines in 2 subvectors; books of 3 and 2 vectors, the second without signs. All sums are exact.
constexpr Zet32f kFirst[] = {4, 0, 0, 0, 8, 0, 2, 2, 2};
constexpr Zet32f kSecond[] = {0, 0, 4, -4, 4, 0};
constexpr ZetVQCodebook kBooks[] = {{kFirst, 3, 3, 1}, {kSecond, 2, 3, 0}};

TEST(Vq, LinesAreInterleavedAndIndexesPacked) {
    // Subvector 0: (-2, 0, 2), subvector 1: (-2, -2).
    const Zet32f target[] = {-2, -2, 0, -2, 2}, weights[] = {1, 1, 1, 1, 1};
    Zet32s first[4], second[4], selected[4], index[4];
    Zet32f distance[2], lines[5];
    ASSERT_EQ(zetsVQPreSelect_32f(target, weights, 5, 2, &kBooks[0], first, 2), zetStsOk);
    ASSERT_EQ(zetsVQPreSelect_32f(target, weights, 5, 2, &kBooks[1], second, 2), zetStsOk);
    // Scores of subvector 0: +-8 - 4, +-0 - 16, +-0 - 3; of 1: +-8 - 4, +-16 - 16, +-8 - 2.
    const Zet32s bestFirst[] = {-1, 2, -3, -1};
    EXPECT_EQ(std::memcmp(first, bestFirst, sizeof first), 0);
    // Of the second book: 8 - 4 and 8 - 8 for subvector 0; 0 and 0 - 8 for subvector 1.
    const Zet32s bestSecond[] = {0, 1, 0, 1};
    EXPECT_EQ(std::memcmp(second, bestSecond, sizeof second), 0);
    ASSERT_EQ(zetsVQMainSelect_32f(target, weights, 5, 2, kBooks, first, 2, second, 2, selected,
                                   distance),
              zetStsOk);
    ASSERT_EQ(zetsVQIndexSelect_32s(selected, 2, kBooks, first, 2, second, 2, index), zetStsOk);
    // (-4, 0, 0) and (0, 0, 4) meet subvector 0; (-2, -2) and (0, 0) leave an error of 1 twice.
    const Zet32s packed[] = {4 | 0, 0, 4 | 2, 0};
    EXPECT_EQ(std::memcmp(index, packed, sizeof index), 0);
    EXPECT_EQ(distance[0], 0);
    EXPECT_EQ(distance[1], 2);
    ASSERT_EQ(zetsVQReconstruction_32s32f(index, kBooks, 0.5F, lines, 5, 2), zetStsOk);
    const Zet32f expected[] = {-1, -0.5F, 0, -0.5F, 1};
    EXPECT_TRUE(std::equal(lines, lines + 5, expected));
}

TEST(Vq, WeightsDecide) {
    const Zet32f target[] = {2, 0, 3}, heavyFirst[] = {8, 1, 1}, heavyLast[] = {1, 1, 8};
    Zet32s best = -9;
    ASSERT_EQ(zetsVQPreSelect_32f(target, heavyFirst, 3, 1, &kBooks[0], &best, 1), zetStsOk);
    EXPECT_EQ(best, 0);
    ASSERT_EQ(zetsVQPreSelect_32f(target, heavyLast, 3, 1, &kBooks[0], &best, 1), zetStsOk);
    EXPECT_EQ(best, 2);
}

TEST(Vq, IndexesThatStandForNoVectorAreRefused) {
    Zet32f lines[5] = {7, 7, 7, 7, 7};
    for (const Zet32s bad : {3, 7, 8, -1, 1 << 30}) {
        const Zet32s index[] = {0, 0, bad, 0};
        EXPECT_EQ(zetsVQReconstruction_32s32f(index, kBooks, 1, lines, 5, 2), zetStsOutOfRange);
    }
    const Zet32s signOfSecond[] = {0, 2, 0, 0};
    EXPECT_EQ(zetsVQReconstruction_32s32f(signOfSecond, kBooks, 1, lines, 5, 2), zetStsOutOfRange);
    EXPECT_EQ(lines[0], 7);
    // The candidate list of a book without signs has no negated vectors.
    const Zet32s candidates[] = {0, 0}, negated[] = {0, -1}, selected[] = {0, 0, 0, 0};
    Zet32s packed[4];
    EXPECT_EQ(zetsVQIndexSelect_32s(selected, 2, kBooks, negated, 1, candidates, 1, packed),
              zetStsOk);
    EXPECT_EQ(zetsVQIndexSelect_32s(selected, 2, kBooks, candidates, 1, negated, 1, packed),
              zetStsBadArg);
}

TEST(Vq, BooksWithoutVectorsAreNullPointers) {
    const Zet32f lines[] = {0, 0};
    const Zet32s words[4] = {};
    Zet32s out[4];
    Zet32f floats[2];
    for (int missing = 0; missing < 2; ++missing) {
        ZetVQCodebook books[] = {kBooks[0], kBooks[1]};
        books[missing].pVectors = nullptr;
        EXPECT_EQ(zetsVQPreSelect_32f(lines, lines, -1, 1, &books[missing], out, 1),
                  zetStsNullPointer);
        EXPECT_EQ(zetsVQMainSelect_32f(lines, lines, -1, 1, books, words, 1, words, 1, out, floats),
                  zetStsNullPointer);
        EXPECT_EQ(zetsVQIndexSelect_32s(words, -1, books, words, 1, words, 1, out),
                  zetStsNullPointer);
        EXPECT_EQ(zetsVQReconstruction_32s32f(words, books, 1, floats, -1, 1), zetStsNullPointer);
    }
}

TEST(Vq, VectorsHaveALimit) {
    Quantiser q(ZETAC_VQ_VECTOR_MAX + 1, 1, 2, 0, 6);
    Zet32s word;
    EXPECT_EQ(zetsVQPreSelect_32f(q.target.data(), q.weights.data(), q.len, 1, q.books, &word, 1),
              zetStsBadSize);
    EXPECT_EQ(
        zetsVQPreSelect_32f(q.target.data(), q.weights.data(), q.len - 1, 1, q.books, &word, 1),
        zetStsOk);
}

}  // namespace
