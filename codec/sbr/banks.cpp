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

// --- Floating point -----------------------------------------------------------------------------

class FloatBanks : public SbrBanks {
  public:
    explicit FloatBanks(bool isDownsampled);

    void analyse(const Zet32s* core, int bands) override;
    const LowBand& low(int, int) override { return low_; }
    void predict(uint32_t bands, LowPrediction& prediction) override;
    void synthesise(OutputBand& output, const SbrSplit& split, const PcmPlane& pcm) override;
    size_t bytes() const override { return sizeof *this + memory_.size() + work_.size(); }

  private:
    using GetSize = ZetStatus(int*, int*, int*);

    /** Takes room for a bank at the end of the memory. */
    size_t reserve(GetSize* getSize);
    static void joinLow(const LowBand& low, const SbrSplit& split, OutputBand& output);

    bool isDownsampled_;
    std::vector<Zet8u> memory_;  // the states of both banks
    std::vector<Zet8u> work_;    // scratch of both
    std::vector<Zet8u> start_;   // scratch of their start
    ZetsAnalysisFilterSpec_SBR_RToC_32f* analysis_ = nullptr;
    ZetsSynthesisFilterSpec_SBR_CToR_32f* synthesis_ = nullptr;
    ZetsSynthesisDownFilterSpec_SBR_CToR_32f* downSynthesis_ = nullptr;
    Zet32f window_[320];  // of the banks of 32 bands
    LowBand low_ = {};
    Zet32f samples_[kSbrFrameLength];  // in and out
};

size_t FloatBanks::reserve(GetSize* getSize) {
    int spec = 0;
    int start = 0;
    int work = 0;
    getSize(&spec, &start, &work);
    const size_t at = memory_.size();
    memory_.resize(at + static_cast<size_t>(spec));
    start_.resize(std::max(start_.size(), static_cast<size_t>(start)));
    work_.resize(std::max(work_.size(), static_cast<size_t>(work)));
    return at;
}

FloatBanks::FloatBanks(bool isDownsampled) : isDownsampled_(isDownsampled) {
    for (int i = 0; i < 320; ++i) window_[i] = SBR_TAB_QMF_WINDOW_640_FP[2 * i];
    const size_t analysis = reserve(zetsAnalysisFilterGetSize_SBR_RToC_32f);
    const size_t synthesis = reserve(isDownsampled ? zetsSynthesisDownFilterGetSize_SBR_CToR_32f
                                                   : zetsSynthesisFilterGetSize_SBR_CToR_32f);
    zetsAnalysisFilterInit_SBR_RToC_32f(&analysis_, &memory_[analysis], start_.data());
    if (isDownsampled) {
        zetsSynthesisDownFilterInit_SBR_CToR_32f(&downSynthesis_, &memory_[synthesis],
                                                 start_.data());
    } else {
        zetsSynthesisFilterInit_SBR_CToR_32f(&synthesis_, &memory_[synthesis], start_.data());
    }
    start_ = {};
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
    const Zet32f* re[kSbrSlots];
    const Zet32f* im[kSbrSlots];
    for (int i = 0; i < kSbrSlots; ++i) {
        re[i] = output.re[i];
        im[i] = output.im[i];
    }
    if (isDownsampled_) {
        zetsSynthesisDownFilter_SBR_CToR_32f_D2L(re, im, samples_, window_, kSbrSlots,
                                                 downSynthesis_, work_.data());
    } else {
        zetsSynthesisFilter_SBR_CToR_32f_D2L(re, im, samples_, SBR_TAB_QMF_WINDOW_640_FP, kSbrSlots,
                                             synthesis_, work_.data());
    }
    const int length = isDownsampled_ ? ZETAC_AAC_FRAME_LEN : kSbrFrameLength;
    pcm.put(0, samples_, static_cast<size_t>(length));
}

// --- Fixed point --------------------------------------------------------------------------------

/** Banks and predictors are integers; the high band in between is made in single precision. */
class FixedBanks : public SbrBanks {
  public:
    explicit FixedBanks(bool isDownsampled);

    void analyse(const Zet32s* core, int bands) override;
    const LowBand& low(int first, int end) override;
    void predict(uint32_t bands, LowPrediction& prediction) override;
    void synthesise(OutputBand& output, const SbrSplit& split, const PcmPlane& pcm) override;
    size_t bytes() const override { return sizeof *this + analysis_.size() + synthesis_.size(); }

  private:
    void join(const OutputBand& output, const SbrSplit::Range& range, int slot, Zet32sc* row) const;

    bool isDownsampled_;
    std::vector<Zet8u> analysis_;
    std::vector<Zet8u> synthesis_;
    alignas(32) Zet32sc rows_[kLowRows][kLowBands] = {};
    LowBand low_ = {};  // the same as floating numbers, where they were asked for
};

FixedBanks::FixedBanks(bool isDownsampled) : isDownsampled_(isDownsampled) {
    int size = 0;
    zetsAnalysisFilterGetSize_SBRHQ_32s32sc(&size);
    analysis_.resize(static_cast<size_t>(size));
    zetsAnalysisFilterInit_SBRHQ_32s32sc(analysis_.data());
    if (isDownsampled) {
        zetsSynthesisDownFilterGetSize_SBRHQ_32sc32s(&size);
        synthesis_.resize(static_cast<size_t>(size));
        zetsSynthesisDownFilterInit_SBRHQ_32sc32s(synthesis_.data());
    } else {
        zetsSynthesisFilterGetSize_SBRHQ_32sc32s(&size);
        synthesis_.resize(static_cast<size_t>(size));
        zetsSynthesisFilterInit_SBRHQ_32sc32s(synthesis_.data());
    }
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

/** Values that the synthesis would saturate are limited before they become integers. */
void FixedBanks::join(const OutputBand& output, const SbrSplit::Range& range, int slot,
                      Zet32sc* row) const {
    constexpr float kScale = 1 << kSbrCoreFraction;
    const auto fixed = [](float value) {
        constexpr float kMax = 0x1p30F;
        return static_cast<Zet32s>(std::clamp(value * kScale, -kMax, kMax));
    };
    std::copy_n(rows_[slot + kSbrDelay], range.kx, row);
    for (int k = range.kx; k < range.end; ++k) {
        row[k] = {fixed(output.re[slot][k]), fixed(output.im[slot][k])};
    }
    std::fill(row + range.end, row + kQmfBands, Zet32sc{});
}

void FixedBanks::synthesise(OutputBand& output, const SbrSplit& split, const PcmPlane& pcm) {
    const size_t length = isDownsampled_ ? kLowBands : kQmfBands;
    alignas(32) Zet32sc row[kQmfBands];
    alignas(32) Zet32s samples[kQmfBands];
    for (int i = 0; i < kSbrSlots; ++i) {
        join(output, split.at(i), i, row);
        if (isDownsampled_) {
            zetsSynthesisDownFilter_SBRHQ_32sc32s(row, samples, synthesis_.data());
        } else {
            zetsSynthesisFilter_SBRHQ_32sc32s(row, samples, synthesis_.data());
        }
        pcm.put(static_cast<size_t>(i) * length, samples, kSbrCoreFraction, length);
    }
}

}  // namespace

std::unique_ptr<SbrBanks> SbrBanks::make(const SbrBankOptions& options) {
    if (options.isFloat) return std::make_unique<FloatBanks>(options.isDownsampled);
    return std::make_unique<FixedBanks>(options.isDownsampled);
}

}  // namespace zetac::codec
