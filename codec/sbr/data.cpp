// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "sbr/data.h"

#include <algorithm>

namespace zetac::codec {
namespace {

constexpr int kExtensionTypeBits = 4;
constexpr int kCrcBits = 10;

/** x^10 + x^9 + x^5 + x^4 + x + 1 over everything behind the check itself, fill bits included. */
bool isCrcGood(const SbrPayload& payload) {
    SbrBits bits(payload);
    bits.skip(kExtensionTypeBits);
    const unsigned expected = bits.get(kCrcBits);
    unsigned state = 0;
    while (bits.position() < payload.bytes * 8) {
        const unsigned feedback = state >> 9 ^ bits.get(1);
        state = (state << 1 & 0x3FF) ^ (feedback ? 0x233u : 0u);
    }
    return state == expected;
}

}  // namespace

Fault SbrParser::parse(const SbrPayload& payload) {
    isActive_ = isReset_ = isWaiting_ = false;
    if (payload.bytes == 0) {
        lose();
        return Fault::kNone;
    }
    constexpr unsigned kSbrDataCrc = 14;  // extension_type
    SbrBits bits(payload);
    const bool hasCrc = bits.get(kExtensionTypeBits) == kSbrDataCrc;
    if (hasCrc) bits.skip(kCrcBits);
    Fault fault = hasCrc && !isCrcGood(payload) ? SbrFault::kCrc : Fault::kNone;
    const bool bs_header_flag = bits.flag();
    const bool isFresh = !isSynchronised_;
    if (isFresh && !bs_header_flag) {
        lose();
        isWaiting_ = true;
        return fault;
    }
    if (!failed(fault) && bs_header_flag) fault = readHeader(bits);
    if (!failed(fault)) fault = isPair_ ? readPair(bits) : readSingle(bits);
    if (!failed(fault) && bits.isBeyondEnd()) fault = SbrFault::kTruncated;
    Fault stereoFault = Fault::kNone;
    if (!failed(fault)) fault = readExtendedData(bits, stereoFault);
    if (failed(fault)) ps_.lose();
    // What builds on data that were lost makes no sense, and is no new damage.
    const bool isUsable =
        !isFresh || (channels_[0].factors.startsAfresh() && channels_[1].factors.startsAfresh());
    isWaiting_ = !isUsable;
    isActive_ = isSynchronised_ = isUsable && !failed(fault);
    isReset_ = isReset_ || isFresh;
    return failed(fault) ? fault : stereoFault;
}

Fault SbrParser::readHeader(SbrBits& bits) {
    const SbrHeader header = SbrHeader::read(bits);
    const bool hasSameBands = hasTables_ && header.hasBandsOf(header_);
    if (hasSameBands && header.bs_limiter_bands == header_.bs_limiter_bands) {
        header_ = header;
        return Fault::kNone;
    }
    const auto tables = SbrFrequencyTables::make(header, sampleRate_);
    if (!tables) return SbrFault::kHeader;
    header_ = header;
    tables_ = *tables;
    hasTables_ = true;
    isReset_ = !hasSameBands;
    return Fault::kNone;
}

Fault SbrParser::readSingle(SbrBits& bits) {
    constexpr size_t kReservedBits = 4;
    SbrChannel& channel = channels_[0];
    if (bits.flag()) bits.skip(kReservedBits);  // bs_data_extra
    if (const Fault fault = readGrid(bits, channel); failed(fault)) return fault;
    channel.factors.readDirections(bits, channel.grid);
    readInverseFiltering(bits, channel);
    if (const Fault fault = readFactors(bits, channel, false); failed(fault)) return fault;
    readHarmonics(bits, channel);
    dequantise(channel.factors, channel.grid, tables_, channel.levels);
    return Fault::kNone;
}

Fault SbrParser::readPair(SbrBits& bits) {
    constexpr size_t kReservedBits = 8;
    SbrChannel& left = channels_[0];
    SbrChannel& right = channels_[1];
    if (bits.flag()) bits.skip(kReservedBits);  // bs_data_extra
    const bool bs_coupling = bits.flag();
    Fault fault = readGrid(bits, left);
    if (failed(fault)) return fault;
    if (bs_coupling) {
        adopt(left.grid, right);
    } else if (fault = readGrid(bits, right); failed(fault)) {
        return fault;
    }
    left.factors.readDirections(bits, left.grid);
    right.factors.readDirections(bits, right.grid);
    readInverseFiltering(bits, left);
    if (bs_coupling) {
        std::copy_n(left.bs_invf_mode, kSbrNoiseBandsMax, right.bs_invf_mode);
        fault = readFactors(bits, left, false);
        if (!failed(fault)) fault = readFactors(bits, right, true);
    } else {
        readInverseFiltering(bits, right);
        fault = left.factors.readEnvelopes(bits, left.grid, tables_, false);
        if (!failed(fault)) fault = right.factors.readEnvelopes(bits, right.grid, tables_, false);
        if (!failed(fault)) fault = left.factors.readNoise(bits, left.grid, tables_, false);
        if (!failed(fault)) fault = right.factors.readNoise(bits, right.grid, tables_, false);
    }
    if (failed(fault)) return fault;
    readHarmonics(bits, left);
    readHarmonics(bits, right);
    if (bs_coupling) {
        dequantisePair(left.factors, right.factors, left.grid, tables_, left.levels, right.levels);
    } else {
        dequantise(left.factors, left.grid, tables_, left.levels);
        dequantise(right.factors, right.grid, tables_, right.levels);
    }
    return Fault::kNone;
}

Fault SbrParser::readGrid(SbrBits& bits, SbrChannel& channel) {
    SbrGrid grid;
    const Fault fault = SbrGrid::read(bits, grid);
    if (!failed(fault)) adopt(grid, channel);
    return fault;
}

/** A frame of one envelope and fixed borders always has the fine resolution. */
void SbrParser::adopt(SbrGrid grid, SbrChannel& channel) const {
    if (isSynchronised_) grid.follow(channel.grid);
    channel.grid = grid;
    const bool isWhole = grid.bs_frame_class == SbrGrid::kFixFix && grid.envelopes == 1;
    channel.factors.bs_amp_res = isWhole ? 0 : header_.bs_amp_res;
}

void SbrParser::readInverseFiltering(SbrBits& bits, SbrChannel& channel) const {
    for (int i = 0; i < tables_.noise.bands; ++i) {
        channel.bs_invf_mode[i] = static_cast<uint8_t>(bits.get(2));
    }
}

Fault SbrParser::readFactors(SbrBits& bits, SbrChannel& channel, bool isBalance) {
    const Fault fault = channel.factors.readEnvelopes(bits, channel.grid, tables_, isBalance);
    if (failed(fault)) return fault;
    return channel.factors.readNoise(bits, channel.grid, tables_, isBalance);
}

void SbrParser::readHarmonics(SbrBits& bits, SbrChannel& channel) const {
    std::fill_n(channel.bs_add_harmonic, kSbrBandsMax, Zet8u{0});
    if (!bits.flag()) return;  // bs_add_harmonic_flag
    for (int i = 0; i < tables_.high.bands; ++i) {
        channel.bs_add_harmonic[i] = static_cast<uint8_t>(bits.get(1));
    }
}

/** Reads parametric stereo, if that comes first. What is wrong with it alone does no other harm. */
Fault SbrParser::readExtendedData(SbrBits& bits, Fault& stereoFault) {
    constexpr unsigned kParametricStereo = 2;  // bs_extension_id
    size_t size = 0;
    if (bits.flag()) size = bits.get(4);  // bs_extended_data, bs_extension_size
    if (size == 15) size += bits.get(8);  // bs_esc_count
    SbrBits extension = bits;
    const size_t end = bits.position() + size * 8;
    bits.skip(size * 8);
    if (bits.isBeyondEnd()) return SbrFault::kTruncated;
    if (!isPair_ && size > 0 && extension.get(2) == kParametricStereo) {
        stereoFault = ps_.parse(extension, end);
    } else {
        ps_.hold();
    }
    return Fault::kNone;
}

}  // namespace zetac::codec
