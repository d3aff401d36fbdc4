// The types of PCM samples, and the conversion to them.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>

namespace zetac::codec {

enum class SampleFormat {
    kS16,  // 16-bit integers
    kS32,  // 32-bit integers: 65536 times as large
    kF32   // full scale is 1, and values beyond it are not limited
};

/** Where the samples of one channel go, one after another. */
class PcmPlane {
  public:
    PcmPlane() = default;
    explicit PcmPlane(Zet16s* samples) : data_(samples) {}
    explicit PcmPlane(Zet32s* samples) : data_(samples), format_(SampleFormat::kS32) {}
    explicit PcmPlane(Zet32f* samples) : data_(samples), format_(SampleFormat::kF32) {}

    SampleFormat format() const { return format_; }
    Zet16s* samples16() const { return static_cast<Zet16s*>(data_); }

    /** Takes integers with up to 16 fractional bits, at least one for 16-bit samples, in units of
     * 16-bit samples.
     *  @param first  place of the first one */
    void put(size_t first, const Zet32s* values, int fraction, size_t count) const {
        switch (format_) {
            case SampleFormat::kS16:
                // Not std::clamp, which does not become vector instructions.
                return convert<Zet16s>(
                    first, values, count, [half = 1 << (fraction - 1), fraction](Zet32s v) {
                        return std::max(std::min((v + half) >> fraction, 32767), -32768);
                    });
            case SampleFormat::kS32:
                return convert<Zet32s>(
                    first, values, count, [factor = 1 << (16 - fraction)](Zet32s v) {
                        return std::clamp<int64_t>(int64_t{v} * factor, INT32_MIN, INT32_MAX);
                    });
            case SampleFormat::kF32:
                return convert<Zet32f>(first, values, count,
                                       [unit = std::ldexp(1.F, -15 - fraction)](Zet32s v) {
                                           return static_cast<Zet32f>(v) * unit;
                                       });
        }
    }

    /** Takes floating numbers in units of 16-bit samples. */
    void put(size_t first, const Zet32f* values, size_t count) const {
        switch (format_) {
            case SampleFormat::kS16:
                zetsConvert_32f16s_Sfs(values, static_cast<Zet16s*>(data_) + first,
                                       static_cast<int>(count), zetRndFinancial, 0);
                return;
            case SampleFormat::kS32:
                // The largest single below 2^31.
                return convert<Zet32s>(first, values, count, [](Zet32f v) {
                    return static_cast<Zet32s>(std::clamp(v * 0x1p16F, -0x1p31F, 0x1.fffffep30F));
                });
            case SampleFormat::kF32:
                return convert<Zet32f>(first, values, count, [](Zet32f v) { return v * 0x1p-15F; });
        }
    }

  private:
    template <class To, class From, class Operation>
    void convert(size_t first, const From* values, size_t count, Operation operation) const {
        To* to = static_cast<To*>(data_) + first;
        for (size_t i = 0; i < count; ++i) to[i] = static_cast<To>(operation(values[i]));
    }

    void* data_ = nullptr;
    SampleFormat format_ = SampleFormat::kS16;
};

}  // namespace zetac::codec
