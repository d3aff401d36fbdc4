// All QMF banks behind one interface, and a model of them: the formulas of the public header in
// double precision, which holds the values of all banks exactly.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include <complex>
#include <functional>
#include <memory>
#include <vector>

#include "support/guarded.h"

namespace zetac::test {

// Rows of a matrix, apart from each other in memory.
class Rows {
  public:
    Rows(size_t count, size_t singles, size_t alignment) {
        pointers_.reserve(count + 1);  // no null pointer, without rows either
        for (size_t i = 0; i < count; ++i) {
            rows_.push_back(std::make_unique<Guarded<Zet32f>>(singles, alignment));
            pointers_.push_back(rows_.back()->data());
        }
    }
    ~Rows() {
        for (auto& row : rows_) EXPECT_TRUE(row->intact());
    }
    Zet32f* operator[](size_t i) { return pointers_[i]; }
    Zet32f** singles() { return pointers_.data(); }
    Zet32fc** pairs() { return reinterpret_cast<Zet32fc**>(singles()); }
    const Zet32f** constSingles() { return const_cast<const Zet32f**>(singles()); }
    const Zet32fc** constPairs() { return const_cast<const Zet32fc**>(pairs()); }

  private:
    std::vector<std::unique_ptr<Guarded<Zet32f>>> rows_;
    std::vector<Zet32f*> pointers_;
};

// Floating banks with real samples, with complex ones in two matrices and in one; fixed ones.
enum class Kind { kReal, kParts, kPairs, kFixedReal, kFixedComplex };
inline constexpr Kind kKinds[] = {Kind::kReal, Kind::kParts, Kind::kPairs, Kind::kFixedReal,
                                  Kind::kFixedComplex};
inline bool isFixed(Kind kind) {
    return kind >= Kind::kFixedReal;
}
inline bool isReal(Kind kind) {
    return kind == Kind::kReal || kind == Kind::kFixedReal;
}

using Samples = std::vector<double>;
using Slot = std::vector<std::complex<double>>;  // its bands; imaginary parts 0 in the real banks
using Slots = std::vector<Slot>;

// A bank in memory between canaries that begins alignment bytes behind a boundary of 64. It keeps
// its state from call to call.
struct QmfBank {
    std::function<Slots(const Samples&, int kx)> analyze;
    std::function<Samples(const Slots&)> synthesize;
    std::function<void()> restart;  // Init
    const Zet8u* memory;            // what Init was given
    const Zet8u* state;             // where the structure begins
    int sizes[3];                   // of the structure, for Init, for work
};
QmfBank analysisBank(Kind kind, size_t alignment = 4);
QmfBank synthesisBank(Kind kind, int bands, size_t alignment = 4);

// The life of the fixed banks: of the analysis, the synthesis and the down synthesis.
struct FixedLife {
    Zet32s identifier;
    int size;
    ZetStatus (*getSize)(int*);
    ZetStatus (*init)(Zet8u*);
    ZetStatus (*initAlloc)(Zet8u**);
    ZetStatus (*free)(Zet8u*);
};
extern const FixedLife kFixedLives[3][2];  // [bank][real, that is low power?]

// A fixed synthesis on a state of the caller's.
Samples synthesizeOn(Zet8u* state, bool real, int bands, const Slots& slots);

// The window of a bank: the prototype for 64 bands, every second value of it for 32.
std::vector<Zet32f> qmfWindow(int bands);

// The formulas.
Slots modelAnalysis(const Samples& samples, bool real);
Samples modelSynthesis(const Slots& slots, int bands, bool real);

}  // namespace zetac::test
