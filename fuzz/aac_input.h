// A fuzz input of the AAC readers: some bytes of arguments, then a bit stream. What the readers
// promise for any stream is asserted here and in the targets.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace zetac::fuzz {

inline void require(bool holds) {
    if (!holds) std::abort();
}

class AacInput {
  public:
    // The heap block ends where the longest element may end.
    AacInput(const uint8_t* data, size_t size, size_t longest = ZETAC_AAC_CHANNEL_BYTES_MAX)
        : argument_(data), end_(data + size), longest_(longest) {}

    // An argument in low..high; low when the input is used up.
    int argument(int low, int high) {
        return argument_ == end_ ? low : low + *argument_++ % (high - low + 1);
    }

    // Everything behind the arguments; call once.
    Zet8u** ppStream() {
        stream_.assign(argument_, end_);
        stream_.resize(stream_.size() + longest_ + ZETAC_BIT_STREAM_SLACK);
        position_ = stream_.data();
        return &position_;
    }
    int* pOffset() { return &offset_; }

    void requirePosition() const {
        require(consumedBytes() <= longest_);
        require(0 <= offset_ && offset_ <= 7);
    }

  private:
    size_t consumedBytes() const {
        require(position_ >= stream_.data());
        return static_cast<size_t>(position_ - stream_.data()) + (offset_ != 0);
    }

    const uint8_t* argument_;
    const uint8_t* end_;
    size_t longest_;
    std::vector<Zet8u> stream_;
    Zet8u* position_ = nullptr;
    int offset_ = 0;
};

inline void requireGroups(Zet32s windowSequence, Zet32s numGroups, const Zet32s* lengths) {
    int windows = 0;
    require(1 <= numGroups && numGroups <= ZETAC_AAC_GROUPS_MAX);
    for (int g = 0; g < numGroups; ++g) windows += lengths[g];
    require(windows == (windowSequence == zetAacEightShort ? 8 : 1));
}

inline void requireIcs(const ZetAACIcsInfo& ics) {
    require(0 <= ics.window_sequence && ics.window_sequence <= 3);
    const bool isShort = ics.window_sequence == zetAacEightShort;
    require(0 <= ics.max_sfb && ics.max_sfb <= (isShort ? 15 : ZETAC_AAC_SFB_MAX));
    require(!isShort || !ics.predictor_data_present);
    requireGroups(ics.window_sequence, ics.num_window_groups, ics.window_group_length);
}

inline void requireLtp(const ZetAACLtpInfo& ltp) {
    if (!ltp.ltp_data_present) return;
    require(0 <= ltp.ltp_lag && ltp.ltp_lag < 2048);
    require(9352 <= ltp.ltp_coef && ltp.ltp_coef <= 22438);
}

// Filters and coefficients of TNS data that were read to their end.
inline void requireTns(const ZetAACTnsInfo& tns, const Zet8s* coefs, bool isShort) {
    int filter = 0;
    for (int w = 0; w < (isShort ? 8 : 1); ++w) {
        require(0 <= tns.n_filt[w] && tns.n_filt[w] <= (isShort ? 1 : 3));
        for (int i = 0; i < tns.n_filt[w]; ++i, ++filter) {
            require(0 <= tns.order[filter] && tns.order[filter] <= (isShort ? 7 : 12));
            require(tns.direction[filter] == 0 || tns.order[filter] > 0);
            const int half = 1 << (tns.coef_res[w] - 1);
            for (int k = 0; k < tns.order[filter]; ++k, ++coefs)
                require(-half <= *coefs && *coefs < half);
        }
    }
}

}  // namespace zetac::fuzz
