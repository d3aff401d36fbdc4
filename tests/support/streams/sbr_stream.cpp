// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "support/streams/sbr_stream.h"

#include <gtest/gtest.h>

#include <bit>
#include <span>

#include "sbr/tables/huffman_f_env_1_5db.h"
#include "sbr/tables/huffman_f_env_3_0db.h"
#include "sbr/tables/huffman_f_env_bal_1_5db.h"
#include "sbr/tables/huffman_f_env_bal_3_0db.h"
#include "sbr/tables/huffman_t_env_1_5db.h"
#include "sbr/tables/huffman_t_env_3_0db.h"
#include "sbr/tables/huffman_t_env_bal_1_5db.h"
#include "sbr/tables/huffman_t_env_bal_3_0db.h"
#include "sbr/tables/huffman_t_noise_3_0db.h"
#include "sbr/tables/huffman_t_noise_bal_3_0db.h"

namespace zetac::test {
namespace {

using codec::SbrGrid;
using Book = std::span<const codec::SbrHuffmanCode>;

Book envelopeCodes(int bs_amp_res, bool isBalance, bool isTime) {
    const Book books[] = {codec::kFrequencyEnvelope15Book, codec::kTimeEnvelope15Book,
                          codec::kFrequencyBalance15Book,  codec::kTimeBalance15Book,
                          codec::kFrequencyEnvelope30Book, codec::kTimeEnvelope30Book,
                          codec::kFrequencyBalance30Book,  codec::kTimeBalance30Book};
    return books[4 * bs_amp_res + 2 * isBalance + isTime];
}

Book noiseCodes(bool isBalance, bool isTime) {
    if (!isTime) return envelopeCodes(1, isBalance, false);
    return isBalance ? Book(codec::kTimeNoiseBalance30Book) : Book(codec::kTimeNoise30Book);
}

void writeDelta(BitWriter& bits, Book book, int delta) {
    const auto& code = book[static_cast<size_t>(delta + static_cast<int>(book.size() / 2))];
    bits.append(code.codeword, code.length);
}

/** The remainder of a division by the polynomial, bit by bit. */
uint32_t crcOf(const Bytes& payload, size_t firstBit) {
    uint32_t remainder = 0;
    for (size_t i = firstBit; i < payload.size() * 8 + 10; ++i) {
        const uint32_t bit = i < payload.size() * 8 ? payload[i / 8] >> (7 - i % 8) & 1u : 0u;
        remainder = remainder << 1 | bit;
        if (remainder & 0x400) remainder ^= 0x633;
    }
    return remainder;
}

}  // namespace

SbrWriter::SbrWriter(const SbrStyle& style, uint32_t seed) : style_(style), random_(seed) {
    const auto tables = codec::SbrFrequencyTables::make(style.header, style.sampleRate);
    EXPECT_TRUE(tables);
    if (tables) tables_ = *tables;
}

Bytes SbrWriter::next() {
    constexpr size_t kCrcEnd = 14;
    const bool hasHeader = frame_ % style_.headerEvery == 0;
    bits_ = BitWriter();
    bits_.append(style_.hasCrc ? 14 : 13, 4);
    if (style_.hasCrc) bits_.append(0, 10);
    bits_.append(hasHeader, 1);
    if (hasHeader) writeHeader();
    if (style_.isPair) {
        writePair(hasHeader);
    } else {
        writeSingle(hasHeader);
    }
    const bool hasExtension = chance(10);
    bits_.append(hasExtension, 1);
    if (hasExtension) bits_.append(2, 4).append(1, 2).append(0, 14);  // id 1: nothing known
    ++frame_;
    Bytes payload = bits_.bytes(between(0, 2));
    if (style_.hasCrc) {
        const uint32_t crc = crcOf(payload, kCrcEnd);
        payload[0] |= static_cast<Zet8u>(crc >> 6);
        payload[1] = static_cast<Zet8u>((payload[1] & 3) | crc << 2);
    }
    return payload;
}

void SbrWriter::writeHeader() {
    const codec::SbrHeader& h = style_.header;
    bits_.append(BitWriter{{h.bs_amp_res, 1}, {h.bs_start_freq, 4}, {h.bs_stop_freq, 4}});
    bits_.append(BitWriter{{h.bs_xover_band, 3}, {0, 2}, {1, 1}, {1, 1}, {h.bs_freq_scale, 2}});
    bits_.append(BitWriter{{h.bs_alter_scale, 1}, {h.bs_noise_bands, 2}, {h.bs_limiter_bands, 2}});
    bits_.append(BitWriter{{h.bs_limiter_gains, 2}, {h.bs_interpol_freq, 1}});
    bits_.append(static_cast<uint32_t>(h.bs_smoothing_mode), 1);
}

// --- Time ---------------------------------------------------------------------------------------

void SbrWriter::setGrid(Channel& c, const SbrGrid& grid) {
    c.truth.grid = grid;
    c.bs_amp_res = grid.bs_frame_class == SbrGrid::kFixFix && grid.envelopes == 1
                       ? 0
                       : style_.header.bs_amp_res;
    c.end = grid.end();
}

void SbrWriter::writeGrid(Channel& c) {
    const int lead = c.end - codec::kSbrTimeSlots;
    SbrGrid grid;
    int frameClass = between(0, 3);
    if (lead > 0) frameClass |= SbrGrid::kVarFix;  // only these begin late
    grid.bs_frame_class = frameClass;
    bits_.append(static_cast<uint32_t>(frameClass), 2);
    if (frameClass == SbrGrid::kFixFix) {
        const int log = between(0, 2);
        const int isHigh = between(0, 1);
        bits_.append(BitWriter{{log, 2}, {isHigh, 1}});
        grid.envelopes = 1 << log;
        for (int i = 0; i < grid.envelopes; ++i) {
            grid.border[i + 1] = static_cast<uint8_t>((i + 1) * 16 / grid.envelopes);
            grid.bs_freq_res[i] = static_cast<uint8_t>(isHigh);
        }
        grid.noiseFloors = grid.envelopes > 1 ? 2 : 1;
        grid.noiseBorder = grid.border[grid.envelopes / 2];
    } else {
        writeVariableGrid(grid, frameClass, lead);
    }
    setGrid(c, grid);
}

/** Borders are drawn until they fit. */
void SbrWriter::writeVariableGrid(SbrGrid& grid, int frameClass, int lead) {
    const bool hasLead = frameClass != SbrGrid::kFixVar;
    const bool hasTrail = frameClass != SbrGrid::kVarFix;
    const int trail = 16 + (hasTrail ? between(0, 3) : 0);
    int first[3];
    int second[3];
    int firsts = 0;
    int seconds = 0;
    int length = 0;
    do {
        firsts = hasLead ? between(0, 3) : 0;
        seconds = hasTrail ? between(0, 3) : 0;
        length = 0;
        for (int i = 0; i < firsts; ++i) length += 2 * (first[i] = between(0, 3)) + 2;
        for (int i = 0; i < seconds; ++i) length += 2 * (second[i] = between(0, 3)) + 2;
        grid.envelopes = firsts + seconds + 1;
    } while (grid.envelopes > codec::kSbrEnvelopesMax || lead + length >= trail);

    if (hasLead) bits_.append(static_cast<uint32_t>(lead), 2);
    if (hasTrail) bits_.append(static_cast<uint32_t>(trail - 16), 2);
    if (hasLead) bits_.append(static_cast<uint32_t>(firsts), 2);
    if (hasTrail) bits_.append(static_cast<uint32_t>(seconds), 2);
    const int n = grid.envelopes;
    grid.border[0] = static_cast<uint8_t>(lead);
    grid.border[n] = static_cast<uint8_t>(trail);
    for (int i = 0; i < firsts; ++i) {
        bits_.append(static_cast<uint32_t>(first[i]), 2);
        grid.border[i + 1] = static_cast<uint8_t>(grid.border[i] + 2 * first[i] + 2);
    }
    for (int i = 0; i < seconds; ++i) {
        bits_.append(static_cast<uint32_t>(second[i]), 2);
        grid.border[n - 1 - i] = static_cast<uint8_t>(grid.border[n - i] - 2 * second[i] - 2);
    }
    const int width = std::bit_width(static_cast<unsigned>(n));
    const int most = n + (frameClass == SbrGrid::kVarFix ? 0 : 1);
    const int pointer = between(0, std::min(most, (1 << width) - 1));
    bits_.append(static_cast<uint32_t>(pointer), width);
    for (int i = 0; i < n; ++i) {
        const int isHigh = between(0, 1);
        bits_.append(static_cast<uint32_t>(isHigh), 1);
        const int envelope = frameClass == SbrGrid::kFixVar ? n - 1 - i : i;
        grid.bs_freq_res[envelope] = static_cast<uint8_t>(isHigh);
    }
    // As the table of the standard has them, for a pointer of 0, of 1 and above.
    grid.noiseFloors = n > 1 ? 2 : 1;
    if (frameClass == SbrGrid::kVarFix) {
        grid.transient = pointer > 1 ? pointer - 1 : -1;
        grid.noiseBorder = grid.border[pointer == 0 ? 1 : pointer == 1 ? n - 1 : pointer - 1];
    } else {
        grid.transient = pointer > 0 ? n + 1 - pointer : -1;
        grid.noiseBorder = grid.border[pointer > 1 ? n + 1 - pointer : n - 1];
    }
}

// --- Scale factors ------------------------------------------------------------------------------

void SbrWriter::writeDirections(Channel& c, bool isFresh) {
    for (int l = 0; l < c.truth.grid.envelopes; ++l) {
        c.isTimeCoded[l] = !(isFresh && l == 0) && chance(60);
        bits_.append(c.isTimeCoded[l], 1);
    }
    for (int l = 0; l < c.truth.grid.noiseFloors; ++l) {
        c.isNoiseTimeCoded[l] = !(isFresh && l == 0) && chance(60);
        bits_.append(c.isNoiseTimeCoded[l], 1);
    }
}

void SbrWriter::writeInverseFiltering(Channel& c) {
    for (int i = 0; i < tables_.noise.bands; ++i) {
        bits_.append(static_cast<uint32_t>(c.truth.bs_invf_mode[i] = between(0, 3)), 2);
    }
}

/** Values wander in a range that both resolutions and all books have. Each is kept for all the
 *  subbands of its band: a later one refers to the value that its own first subband had. */
void SbrWriter::writeEnvelopes(Channel& c, bool isBalance) {
    const int step = isBalance ? 2 : 1;
    const int low = isBalance ? 0 : c.bs_amp_res ? 6 : 12;
    const int high = isBalance ? 24 : c.bs_amp_res ? 16 : 32;
    const int reach = isBalance || c.bs_amp_res ? 3 : 6;
    for (int l = 0; l < c.truth.grid.envelopes; ++l) {
        const bool isTime = c.isTimeCoded[l];
        const Book book = envelopeCodes(c.bs_amp_res, isBalance, isTime);
        const auto& table = tables_.envelope(c.truth.grid.bs_freq_res[l] != 0);
        int now[codec::kQmfBands] = {};
        int before = 0;
        for (int i = 0; i < table.bands; ++i) {
            const int from = isTime ? c.lastEnvelope[table.edge[i]] : before;
            int value = 0;
            if (i == 0 && !isTime) {
                value = between(low / step, high / step) * step;
                bits_.append(static_cast<uint32_t>(value / step),
                             7 - c.bs_amp_res - (isBalance ? 1 : 0));
            } else {
                const int drift = from < low ? reach : from > high ? -reach : 0;
                const int most = static_cast<int>(book.size() / 2);
                const int delta = std::clamp(drift + between(-reach, reach), -most, most);
                value = from + step * delta < 0 ? from : from + step * delta;
                writeDelta(bits_, book, (value - from) / step);
            }
            before = c.truth.envelope[l][i] = value;
            std::fill(now + table.edge[i], now + table.edge[i + 1], value);
        }
        std::copy(now, now + codec::kQmfBands, c.lastEnvelope);
    }
}

void SbrWriter::writeNoise(Channel& c, bool isBalance) {
    const int step = isBalance ? 2 : 1;
    for (int l = 0; l < c.truth.grid.noiseFloors; ++l) {
        const bool isTime = c.isNoiseTimeCoded[l];
        const Book book = noiseCodes(isBalance, isTime);
        int before = 0;
        for (int i = 0; i < tables_.noise.bands; ++i) {
            const int from = isTime ? c.lastNoise[i] : before;
            const int value = between(2, 11) * step;
            if (i == 0 && !isTime) {
                bits_.append(static_cast<uint32_t>(value / step), 5);
            } else {
                writeDelta(bits_, book, (value - from / step * step) / step);
            }
            before = c.lastNoise[i] = c.truth.noise[l][i] = value;
        }
    }
}

void SbrWriter::writeHarmonics(Channel& c) {
    const bool hasAny = chance(40);
    bits_.append(hasAny, 1);
    for (int i = 0; i < tables_.high.bands; ++i) {
        c.truth.bs_add_harmonic[i] = hasAny && chance(25);
        if (hasAny) bits_.append(c.truth.bs_add_harmonic[i], 1);
    }
}

// --- Elements -----------------------------------------------------------------------------------

void SbrWriter::writeSingle(bool isFresh) {
    Channel& c = channels_[0];
    const bool hasExtra = chance(10);
    bits_.append(hasExtra, 1).append(0, hasExtra ? 4 : 0);
    writeGrid(c);
    writeDirections(c, isFresh);
    writeInverseFiltering(c);
    writeEnvelopes(c, false);
    writeNoise(c, false);
    writeHarmonics(c);
}

void SbrWriter::writePair(bool isFresh) {
    Channel& left = channels_[0];
    Channel& right = channels_[1];
    const bool hasExtra = chance(10);
    bits_.append(hasExtra, 1).append(0, hasExtra ? 8 : 0);
    const bool wasCoupled = isCoupled_;
    // A common grid must begin where both channels' last frames end.
    isCoupled_ = left.end == right.end && chance(style_.couplingPercent);
    const bool startsAnew = isFresh || isCoupled_ != wasCoupled;
    bits_.append(isCoupled_, 1);
    writeGrid(left);
    if (isCoupled_) {
        setGrid(right, left.truth.grid);
    } else {
        writeGrid(right);
    }
    writeDirections(left, startsAnew);
    writeDirections(right, startsAnew);
    writeInverseFiltering(left);
    if (isCoupled_) {
        std::copy_n(left.truth.bs_invf_mode, codec::kSbrNoiseBandsMax, right.truth.bs_invf_mode);
        writeEnvelopes(left, false);
        writeNoise(left, false);
        writeEnvelopes(right, true);
        writeNoise(right, true);
    } else {
        writeInverseFiltering(right);
        writeEnvelopes(left, false);
        writeEnvelopes(right, false);
        writeNoise(left, false);
        writeNoise(right, false);
    }
    writeHarmonics(left);
    writeHarmonics(right);
}

// --- The stream around it -----------------------------------------------------------------------

Bytes withPayload(const Bytes& adtsFrame, const Bytes& payload) {
    constexpr size_t kHeaderBytes = 7;
    // The last bit that is set ends ID_END; behind it there is alignment.
    size_t end = adtsFrame.size() * 8;
    while ((adtsFrame[(end - 1) / 8] >> (7 - (end - 1) % 8) & 1) == 0) --end;
    BitWriter bits;
    for (size_t i = 0; i + 3 < end; ++i) bits.append(adtsFrame[i / 8] >> (7 - i % 8) & 1u, 1);
    constexpr uint32_t kFill = 6;
    bits.append(kFill, 3);
    const auto count = static_cast<uint32_t>(payload.size());
    bits.append(std::min(count, 15u), 4);
    if (count >= 15) bits.append(count - 14, 8);
    for (const Zet8u byte : payload) bits.append(byte, 8);
    bits.append(7, 3);
    Bytes frame = bits.bytes(0);
    const size_t length = frame.size();
    EXPECT_GT(length, kHeaderBytes);
    frame[3] = static_cast<Zet8u>((frame[3] & 0xFC) | length >> 11);
    frame[4] = static_cast<Zet8u>(length >> 3);
    frame[5] = static_cast<Zet8u>((frame[5] & 0x1F) | length << 5);
    return frame;
}

}  // namespace zetac::test
