// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "sbr/banks.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <vector>

namespace zetac::codec {
namespace {

/** Rows over which the predictors measure, and how many of them are the two slots before. */
constexpr int kPredictedSlots = kLowRows - 2;

/** Moves the last rows of a frame to where the next one looks for its history. */
template <class Row>
void keepHistory(Row* rows) {
    std::memcpy(rows, rows + kSbrSlots, kSbrHistory * sizeof(Row));
}

/** Subband samples from one band to another as integers. What the synthesis would saturate is
 *  limited before. */
void toFixed(const float* re, const float* im, int first, int end, Zet32sc* __restrict row) {
    constexpr float kScale = 1 << kSbrCoreFraction;
    const auto fixed = [](float value) {
        constexpr float kMax = 0x1p30F;
        return static_cast<Zet32s>(std::max(std::min(value * kScale, kMax), -kMax));
    };
    for (int k = first; k < end; ++k) row[k] = {fixed(re[k]), fixed(im[k])};
}

// --- Floating point -----------------------------------------------------------------------------

class FloatBanks : public SbrBanks {
  public:
    explicit FloatBanks(const SbrBankOptions& options);

    void analyse(const Zet32s* core, int bands) override;
    const LowBand& low(int, int) override { return low_; }
    void predict(uint32_t bands, LowPrediction& prediction) override;
    void synthesise(OutputBand& output, const SbrSplit& split, const PcmPlane& pcm) override;
    void addSide() override;
    void synthesise(const SubbandRows& rows, int side, const PcmPlane& pcm) override;
    void write(const PcmPlane& pcm) const override;
    size_t bytes() const override;

  private:
    using GetSize = ZetStatus(int*, int*, int*);

    struct Synthesis {
        std::vector<Zet8u> memory;
        ZetsSynthesisFilterSpec_SBR_CToR_32f* whole = nullptr;
        ZetsSynthesisDownFilterSpec_SBR_CToR_32f* down = nullptr;  // when down-sampled
    };

    /** Makes room for a bank.
     *  @return scratch for its start */
    std::vector<Zet8u> reserve(GetSize* getSize, std::vector<Zet8u>& memory);
    void start(Synthesis& synthesis);
    static void joinLow(const LowBand& low, const SbrSplit& split, OutputBand& output);

    bool isDownsampled_;
    std::vector<Zet8u> memory_;  // of the analysis
    std::vector<Zet8u> work_;    // scratch of all banks
    ZetsAnalysisFilterSpec_SBR_RToC_32f* analysis_ = nullptr;
    Synthesis synthesis_[2];
    Zet32f window_[320];  // of the banks of 32 bands
    LowBand low_ = {};
    Zet32f samples_[kSbrFrameLength];  // in and out
};

std::vector<Zet8u> FloatBanks::reserve(GetSize* getSize, std::vector<Zet8u>& memory) {
    int spec = 0;
    int start = 0;
    int work = 0;
    getSize(&spec, &start, &work);
    memory.resize(static_cast<size_t>(spec));
    work_.resize(std::max(work_.size(), static_cast<size_t>(work)));
    return std::vector<Zet8u>(static_cast<size_t>(start));
}

FloatBanks::FloatBanks(const SbrBankOptions& options) : isDownsampled_(options.isDownsampled) {
    for (int i = 0; i < 320; ++i) window_[i] = SBR_TAB_QMF_WINDOW_640_FP[2 * i];
    auto scratch = reserve(zetsAnalysisFilterGetSize_SBR_RToC_32f, memory_);
    zetsAnalysisFilterInit_SBR_RToC_32f(&analysis_, memory_.data(), scratch.data());
    start(synthesis_[0]);
}

void FloatBanks::start(Synthesis& s) {
    if (isDownsampled_) {
        auto scratch = reserve(zetsSynthesisDownFilterGetSize_SBR_CToR_32f, s.memory);
        zetsSynthesisDownFilterInit_SBR_CToR_32f(&s.down, s.memory.data(), scratch.data());
    } else {
        auto scratch = reserve(zetsSynthesisFilterGetSize_SBR_CToR_32f, s.memory);
        zetsSynthesisFilterInit_SBR_CToR_32f(&s.whole, s.memory.data(), scratch.data());
    }
}

void FloatBanks::addSide() {
    start(synthesis_[1]);
}

size_t FloatBanks::bytes() const {
    return sizeof *this + memory_.size() + work_.size() + synthesis_[0].memory.size() +
           synthesis_[1].memory.size();
}

void FloatBanks::analyse(const Zet32s* core, int bands) {
    constexpr float kUnit = 1.F / (1 << kSbrCoreFraction);
    for (int i = 0; i < ZETAC_AAC_FRAME_LEN; ++i) samples_[i] = static_cast<float>(core[i]) * kUnit;
    keepHistory(low_.re);
    keepHistory(low_.im);
    Zet32f* re[kLowRows];
    Zet32f* im[kLowRows];
    for (int i = 0; i < kLowRows; ++i) {
        re[i] = low_.re[i];
        im[i] = low_.im[i];
    }
    zetsAnalysisFilter_SBR_RToC_32f_D2L(samples_, re, im, window_, kSbrSlots, kSbrHistory, bands,
                                        analysis_, work_.data());
}

/** All from the first to the last one: several at once cost little more than one. */
void FloatBanks::predict(uint32_t bands, LowPrediction& p) {
    const int first = std::countr_zero(bands);
    const Zet32f* re[kLowRows];
    const Zet32f* im[kLowRows];
    for (int i = 0; i < kLowRows; ++i) {
        re[i] = low_.re[i] + first;
        im[i] = low_.im[i] + first;
    }
    zetsPredictCoef_SBR_C_32f_D2L(re, im, p.alpha0Re + first, p.alpha0Im + first,
                                  p.alpha1Re + first, p.alpha1Im + first,
                                  std::bit_width(bands) - first, kPredictedSlots);
}

void FloatBanks::joinLow(const LowBand& low, const SbrSplit& split, OutputBand& output) {
    for (int i = 0; i < kSbrSlots; ++i) {
        const auto [kx, end] = split.at(i);
        const auto join = [kx = kx, end = end](const float* from, float* to) {
            std::copy_n(from, kx, to);
            std::fill(to + end, to + kQmfBands, 0.F);
        };
        join(low.re[i + kSbrDelay], output.re[i]);
        join(low.im[i + kSbrDelay], output.im[i]);
    }
}

void FloatBanks::synthesise(OutputBand& output, const SbrSplit& split, const PcmPlane& pcm) {
    joinLow(low_, split, output);
    synthesise(SubbandRows(output, 0, kQmfBands), 0, pcm);
}

void FloatBanks::synthesise(const SubbandRows& given, int side, const PcmPlane& pcm) {
    SubbandRows rows = given;
    const Synthesis& synthesis = synthesis_[side];
    if (isDownsampled_) {
        zetsSynthesisDownFilter_SBR_CToR_32f_D2L(rows.re, rows.im, samples_, window_, kSbrSlots,
                                                 synthesis.down, work_.data());
    } else {
        zetsSynthesisFilter_SBR_CToR_32f_D2L(rows.re, rows.im, samples_, SBR_TAB_QMF_WINDOW_640_FP,
                                             kSbrSlots, synthesis.whole, work_.data());
    }
    write(pcm);
}

void FloatBanks::write(const PcmPlane& pcm) const {
    const size_t length = isDownsampled_ ? ZETAC_AAC_FRAME_LEN : kSbrFrameLength;
    pcm.put(0, samples_, length);
}

// --- Fixed point --------------------------------------------------------------------------------

/** Banks and predictors are integers; the high band in between is made in single precision. */
class FixedBanks : public SbrBanks {
  public:
    explicit FixedBanks(const SbrBankOptions& options);

    void analyse(const Zet32s* core, int bands) override;
    const LowBand& low(int first, int end) override;
    void predict(uint32_t bands, LowPrediction& prediction) override;
    void synthesise(OutputBand& output, const SbrSplit& split, const PcmPlane& pcm) override;
    void addSide() override;
    void synthesise(const SubbandRows& rows, int side, const PcmPlane& pcm) override;
    void write(const PcmPlane& pcm) const override;
    size_t bytes() const override {
        return sizeof *this + analysis_.size() + synthesis_[0].size() + synthesis_[1].size();
    }

  private:
    void start(std::vector<Zet8u>& synthesis) const;
    void synthesise(const Zet32sc* row, int slot, int side);

    bool isDownsampled_;
    std::vector<Zet8u> analysis_;
    std::vector<Zet8u> synthesis_[2];
    alignas(32) Zet32sc rows_[kLowRows][kLowBands] = {};
    LowBand low_ = {};  // the same as floating numbers, where they were asked for
    alignas(32) Zet32s samples_[kSbrFrameLength];  // out
};

FixedBanks::FixedBanks(const SbrBankOptions& options) : isDownsampled_(options.isDownsampled) {
    int size = 0;
    zetsAnalysisFilterGetSize_SBRHQ_32s32sc(&size);
    analysis_.resize(static_cast<size_t>(size));
    zetsAnalysisFilterInit_SBRHQ_32s32sc(analysis_.data());
    start(synthesis_[0]);
}

void FixedBanks::start(std::vector<Zet8u>& synthesis) const {
    int size = 0;
    if (isDownsampled_) {
        zetsSynthesisDownFilterGetSize_SBRHQ_32sc32s(&size);
        synthesis.resize(static_cast<size_t>(size));
        zetsSynthesisDownFilterInit_SBRHQ_32sc32s(synthesis.data());
    } else {
        zetsSynthesisFilterGetSize_SBRHQ_32sc32s(&size);
        synthesis.resize(static_cast<size_t>(size));
        zetsSynthesisFilterInit_SBRHQ_32sc32s(synthesis.data());
    }
}

void FixedBanks::addSide() {
    start(synthesis_[1]);
}

void FixedBanks::analyse(const Zet32s* core, int bands) {
    keepHistory(rows_);
    for (int i = 0; i < kSbrSlots; ++i) {
        zetsAnalysisFilter_SBRHQ_32s32sc(core + i * kLowBands, rows_[kSbrHistory + i], bands,
                                         analysis_.data());
    }
}

const LowBand& FixedBanks::low(int first, int end) {
    constexpr float kUnit = 1.F / (1 << kSbrCoreFraction);
    for (int i = 0; i < kLowRows; ++i) {
        for (int k = first; k < end; ++k) {
            low_.re[i][k] = static_cast<float>(rows_[i][k].re) * kUnit;
            low_.im[i][k] = static_cast<float>(rows_[i][k].im) * kUnit;
        }
    }
    return low_;
}

void FixedBanks::predict(uint32_t bands, LowPrediction& p) {
    constexpr float kAlphaUnit = 1.F / (1 << 29);
    const Zet32sc* rows[kLowRows];
    for (int i = 0; i < kLowRows; ++i) rows[i] = rows_[i];
    for (; bands != 0; bands &= bands - 1) {
        const int k = std::countr_zero(bands);
        Zet32sc alpha0;
        Zet32sc alpha1;
        zetsPredictOneCoef_SBRHQ_32sc_D2L(rows, &alpha0, &alpha1, k, kPredictedSlots);
        p.alpha0Re[k] = static_cast<float>(alpha0.re) * kAlphaUnit;
        p.alpha0Im[k] = static_cast<float>(alpha0.im) * kAlphaUnit;
        p.alpha1Re[k] = static_cast<float>(alpha1.re) * kAlphaUnit;
        p.alpha1Im[k] = static_cast<float>(alpha1.im) * kAlphaUnit;
    }
}

void FixedBanks::synthesise(OutputBand& output, const SbrSplit& split, const PcmPlane& pcm) {
    alignas(32) Zet32sc row[kQmfBands];
    for (int i = 0; i < kSbrSlots; ++i) {
        const auto [kx, end] = split.at(i);
        std::copy_n(rows_[i + kSbrDelay], kx, row);
        toFixed(output.re[i], output.im[i], kx, end, row);
        std::fill(row + end, row + kQmfBands, Zet32sc{});
        synthesise(row, i, 0);
    }
    write(pcm);
}

void FixedBanks::synthesise(const SubbandRows& rows, int side, const PcmPlane& pcm) {
    alignas(32) Zet32sc row[kQmfBands];
    std::fill(row + rows.end, row + kQmfBands, Zet32sc{});
    for (int i = 0; i < kSbrSlots; ++i) {
        toFixed(rows.re[i], rows.im[i], 0, rows.end, row);
        synthesise(row, i, side);
    }
    write(pcm);
}

void FixedBanks::synthesise(const Zet32sc* row, int slot, int side) {
    Zet8u* const state = synthesis_[side].data();
    if (isDownsampled_) {
        zetsSynthesisDownFilter_SBRHQ_32sc32s(row, samples_ + slot * kLowBands, state);
    } else {
        zetsSynthesisFilter_SBRHQ_32sc32s(row, samples_ + slot * kQmfBands, state);
    }
}

void FixedBanks::write(const PcmPlane& pcm) const {
    const size_t length = isDownsampled_ ? ZETAC_AAC_FRAME_LEN : kSbrFrameLength;
    pcm.put(0, samples_, kSbrCoreFraction, length);
}

}  // namespace

std::unique_ptr<SbrBanks> SbrBanks::make(const SbrBankOptions& options) {
    if (options.isFloat) return std::make_unique<FloatBanks>(options);
    return std::make_unique<FixedBanks>(options);
}

}  // namespace zetac::codec
