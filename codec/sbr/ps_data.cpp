// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "sbr/ps_data.h"

#include <algorithm>

#include "sbr/grid.h"
#include "sbr/huffman_tables.h"
#include "sbr/tables/ps_huffman.h"

namespace zetac::codec {
namespace {

constexpr int kSlots = 2 * kSbrTimeSlots;
constexpr int kModes = 6;                   // of levels and of coherences
constexpr int kBands[] = {10, 20, 34};      // of levels or coherences, by mode modulo 3
constexpr int kPhaseBands[] = {5, 11, 17};  // by iid_mode modulo 3
constexpr int kFineMode = 3;                // iid_mode from which on the grid is fine
constexpr int kMixingBMode = 3;             // icc_mode from which on procedure B mixes

/** Every band of 10 is two of 20. */
PsIndices mapTo20(const PsIndices& values, int bands) {
    if (bands != kBands[0]) return values;
    PsIndices mapped{};
    for (size_t b = 0; b < 20; ++b) mapped[b] = values[b / 2];
    return mapped;
}

PsIndices mapTo34(const PsIndices& values, int bands) {
    if (bands == kBands[2]) return values;
    const PsIndices from = mapTo20(values, bands);
    PsIndices mapped{};
    for (size_t b = 0; b < kPsBandsMax; ++b) {
        const auto [first, second] = kPsSourcesOf34[b];
        mapped[b] = static_cast<int8_t>((from[first] + from[second]) / 2);
    }
    return mapped;
}

}  // namespace

Fault PsParser::parse(SbrBits& bits, size_t end) {
    const PsParser before = *this;
    if (read(bits, end)) {
        finish();
        return Fault::kNone;
    }
    *this = before;
    lose();
    return before.known_ != 0 ? SbrFault::kParametricStereo : Fault::kNone;
}

void PsParser::hold() {
    if (frame_.envelopes > 1) frame_.envelope[0] = frame_.envelope[frame_.envelopes - 1];
    frame_.envelopes = 1;
    frame_.envelope[0].end = kSlots;
}

bool PsParser::read(SbrBits& bits, size_t end) {
    if (bits.flag() && !readHeader(bits)) return false;  // enable_ps_header
    if (!hasHeader_) return true;
    if (!readBorders(bits) || !readLevels(bits) || !readExtension(bits)) return false;
    return bits.position() <= end;
}

bool PsParser::readHeader(SbrBits& bits) {
    enable_iid_ = bits.flag();
    if (enable_iid_) iid_mode_ = bits.number(3);
    enable_icc_ = bits.flag();
    if (enable_icc_) icc_mode_ = bits.number(3);
    enable_ext_ = bits.flag();
    hasHeader_ = true;
    return iid_mode_ < kModes && icc_mode_ < kModes;
}

bool PsParser::readBorders(SbrBits& bits) {
    static constexpr int kEnvelopes[2][4] = {{0, 1, 2, 4}, {1, 2, 3, 4}};
    const bool frame_class = bits.flag();
    num_env_ = kEnvelopes[frame_class][bits.get(2)];  // num_env_idx
    int before = 0;
    for (int e = 0; e < num_env_; ++e) {
        const int end = frame_class ? bits.number(5) + 1 : kSlots * (e + 1) / num_env_;
        if (end < before) return false;
        transmitted_[e].end = before = end;
    }
    return true;
}

bool PsParser::readLevels(SbrBits& bits) {
    static constexpr Books kIidBooks[] = {
        {&kSbrBook<kPsIidFrequencyBook>, &kSbrBook<kPsIidTimeBook>},
        {&kSbrBook<kPsIidFineFrequencyBook>, &kSbrBook<kPsIidFineTimeBook>}};
    static constexpr Books kIccBooks = {&kSbrBook<kPsIccFrequencyBook>, &kSbrBook<kPsIccTimeBook>};
    const bool isFine = iid_mode_ >= kFineMode;
    for (int e = 0; enable_iid_ && e < num_env_; ++e) {
        readEnvelope(bits, e, kIid, kBands[iid_mode_ % 3], kIidBooks[isFine]);
        if (!isInRange(e, kIid, -kPsIidMax[isFine], kPsIidMax[isFine])) return false;
    }
    for (int e = 0; enable_icc_ && e < num_env_; ++e) {
        readEnvelope(bits, e, kIcc, kBands[icc_mode_ % 3], kIccBooks);
        if (!isInRange(e, kIcc, 0, kPsIccMax)) return false;
    }
    if (!enable_iid_) clear(kIid);
    if (!enable_icc_) clear(kIcc);
    return true;
}

bool PsParser::readExtension(SbrBits& bits) {
    if (num_env_ > 0 || !enable_ext_) enable_ipdopd_ = false;
    if (enable_ext_) {
        size_t size = bits.get(4);            // ps_extension_size
        if (size == 15) size += bits.get(8);  // esc_count
        const size_t end = bits.position() + 8 * size;
        if (size > 0 && bits.get(2) == 0) readPhases(bits);  // ps_extension_id
        if (bits.position() > end) return false;
        bits.skip(end - bits.position());
    }
    if (!enable_ipdopd_) {
        clear(kIpd);
        clear(kOpd);
    }
    return true;
}

void PsParser::readPhases(SbrBits& bits) {
    static constexpr Books kIpdBooks = {&kSbrBook<kPsIpdFrequencyBook, 0>,
                                        &kSbrBook<kPsIpdTimeBook, 0>};
    static constexpr Books kOpdBooks = {&kSbrBook<kPsOpdFrequencyBook, 0>,
                                        &kSbrBook<kPsOpdTimeBook, 0>};
    enable_ipdopd_ = bits.flag();
    const int bands = kPhaseBands[iid_mode_ % 3];
    for (int e = 0; enable_ipdopd_ && e < num_env_; ++e) {
        readEnvelope(bits, e, kIpd, bands, kIpdBooks);
        readEnvelope(bits, e, kOpd, bands, kOpdBooks);
        for (const Kind kind : {kIpd, kOpd}) {
            for (int8_t& value : transmitted_[e].values[kind]) value &= kPsPhases - 1;
        }
    }
}

/** Values from those of the envelope before or of the band before. */
void PsParser::readEnvelope(SbrBits& bits, int envelope, Kind kind, int bands, const Books& books) {
    const bool isTime = bits.flag();
    if (!isTime && envelope == 0) known_ |= 1U << kind;
    const PsIndices& before = (envelope > 0 ? transmitted_[envelope - 1] : last_).values[kind];
    PsIndices& values = transmitted_[envelope].values[kind];
    values = {};
    const SbrHuffmanBook& book = isTime ? *books.time : *books.frequency;
    int value = 0;
    for (size_t b = 0; b < static_cast<size_t>(bands); ++b) {
        value = (isTime ? before[b] : value) + book.read(bits);
        values[b] = static_cast<int8_t>(value);
    }
}

/** What builds on values that were lost may be anything. */
bool PsParser::isInRange(int envelope, Kind kind, int min, int max) const {
    if (!(known_ >> kind & 1)) return true;
    const auto [least, most] = std::ranges::minmax(transmitted_[envelope].values[kind]);
    return least >= min && most <= max;
}

void PsParser::clear(Kind kind) {
    known_ |= 1U << kind;
    last_.values[kind] = {};
    for (PsEnvelope& envelope : transmitted_) envelope.values[kind] = {};
}

/** Brings the frame's parameters to common bands, and has them hold to its end. */
void PsParser::finish() {
    for (int kind = 0; kind < kKinds; ++kind) {
        if (known_ >> kind & 1) continue;
        for (PsEnvelope& envelope : transmitted_) envelope.values[kind] = last_.values[kind];
    }
    if (num_env_ > 0) last_ = transmitted_[num_env_ - 1];
    if (num_env_ == 0 || last_.end < kSlots) {
        last_.end = kSlots;
        transmitted_[num_env_++] = last_;
    }
    const int iid = kBands[iid_mode_ % 3];
    const int icc = kBands[icc_mode_ % 3];
    frame_.isIidFine = iid_mode_ >= kFineMode;
    frame_.isMixingB = icc_mode_ >= kMixingBMode;
    if (enable_iid_ || enable_icc_) {
        frame_.is34 = (enable_iid_ && iid == kPsBandsMax) || (enable_icc_ && icc == kPsBandsMax);
    }
    frame_.envelopes = num_env_;
    const auto map = frame_.is34 ? mapTo34 : mapTo20;
    for (int e = 0; e < num_env_; ++e) {
        const PsEnvelope& from = transmitted_[e];
        frame_.envelope[e] = {from.end,
                              {map(from.iid(), iid), map(from.icc(), icc), map(from.ipd(), iid),
                               map(from.opd(), iid)}};
    }
}

}  // namespace zetac::codec
