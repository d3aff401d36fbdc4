// The floating QMF banks behind one interface, and a model of them: the formulas of the public
// header in double precision.
#pragma once

#include <zetac.h>

#include <complex>
#include <functional>
#include <memory>
#include <vector>

#include "support/guarded.h"

namespace zetac::test {

enum class Kind { kReal, kParts, kPairs };
inline constexpr Kind kKinds[] = {Kind::kReal, Kind::kParts, Kind::kPairs};

using Slot = std::vector<std::complex<float>>;  // its bands; imaginary parts 0 in the real banks
using Slots = std::vector<Slot>;

// A bank in memory that begins alignment bytes behind a boundary of 64.
template <class Spec>
class Bank {
  public:
    template <class GetSize, class Init>
    Bank(GetSize getSize, Init init, size_t alignment) {
        int size = 0, initSize = 0, workSize = 0;
        EXPECT_EQ(zetStsOk, getSize(&size, &initSize, &workSize));
        memory_ = std::make_unique<Guarded<Zet8u>>(size, alignment);
        init_ = std::make_unique<Guarded<Zet8u>>(initSize, alignment);
        work_ = std::make_unique<Guarded<Zet8u>>(workSize, alignment);
        EXPECT_EQ(zetStsOk, init(&spec_, memory_->data(), init_->data()));
    }
    ~Bank() { EXPECT_TRUE(memory_->intact() && init_->intact() && work_->intact()); }
    Spec* spec() { return spec_; }
    Zet8u* work() { return work_->data(); }

  private:
    std::unique_ptr<Guarded<Zet8u>> memory_, init_, work_;
    Spec* spec_ = nullptr;
};

// Rows of a matrix, singles or pairs, apart from each other in memory.
class Rows {
  public:
    Rows(size_t count, size_t singles, size_t alignment) {
        for (size_t i = 0; i < count; ++i) {
            rows_.push_back(std::make_unique<Guarded<Zet32f>>(singles, alignment));
            pointers_.push_back(rows_.back()->data());
            constPointers_.push_back(rows_.back()->data());
            pairs_.push_back(reinterpret_cast<Zet32fc*>(rows_.back()->data()));
            constPairs_.push_back(pairs_.back());
        }
    }
    ~Rows() {
        for (auto& row : rows_) EXPECT_TRUE(row->intact());
    }
    Zet32f* operator[](size_t i) { return pointers_[i]; }
    Zet32f** singles() { return pointers_.data(); }
    const Zet32f** constSingles() { return constPointers_.data(); }
    Zet32fc** pairs() { return pairs_.data(); }
    const Zet32fc** constPairs() { return constPairs_.data(); }

  private:
    std::vector<std::unique_ptr<Guarded<Zet32f>>> rows_;
    std::vector<Zet32f*> pointers_;
    std::vector<const Zet32f*> constPointers_;
    std::vector<Zet32fc*> pairs_;
    std::vector<const Zet32fc*> constPairs_;
};

// The window of a bank: the prototype for 64 bands, every second value of it for 32.
std::vector<Zet32f> qmfWindow(int bands);

// Analyses samples into slots, call by call.
using Analysis = std::function<Slots(const std::vector<float>& samples, int kx)>;
Analysis analysisBank(Kind kind, size_t alignment = 4);

// Synthesises samples of 64 or 32 bands.
using Synthesis = std::function<std::vector<float>(const Slots& slots)>;
Synthesis synthesisBank(Kind kind, int bands, size_t alignment = 4);

// The formulas.
std::vector<std::vector<std::complex<double>>> modelAnalysis(const std::vector<float>& samples,
                                                             bool real);
std::vector<double> modelSynthesis(const Slots& slots, int bands, bool real);

}  // namespace zetac::test
