// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "mp3/encoder.h"

#include <algorithm>

#include "base/portable_math.h"

namespace zetac::codec {
namespace {

constexpr int kGranules = 2;
constexpr size_t kHeaderBytes = 4;
constexpr size_t kCrcBytes = 2;
constexpr size_t kFrontBytesMax = kHeaderBytes + kCrcBytes + 32;
constexpr size_t kMainDataBytesMax = 4 * 4096 / 8;
constexpr int kVariable = 15;  // bitrate_index, for the library's eyes only
constexpr int kHighestBitRate = 14;
constexpr int kModeStereo = 0;
constexpr int kModeJoint = 1;
constexpr int kModeMono = 3;

int bitRateIndex(const Mp3Format& format, int bitRate) {
    for (int i = 1; i <= kHighestBitRate; ++i)
        if (mp3BitRate(format, i) == bitRate) return i;
    return -1;
}

Mp3Format formatFor(int sampleRate) {
    Mp3Format format;
    for (format.samplingFrequency = 0; format.samplingFrequency < 2; ++format.samplingFrequency)
        if (format.sampleRate() == sampleRate) break;
    return format;
}

int modeOf(const Mp3EncoderSettings& settings) {
    return settings.channels == 1 ? kModeMono : settings.isJoint ? kModeJoint : kModeStereo;
}

/** What the masking thresholds are multiplied by. */
double thresholdScale(float quality) {
    constexpr double kDecibelsAtBest = -10.5;
    constexpr double kDecibelsPerStep = 2;
    return powerOfDecibels(kDecibelsAtBest + kDecibelsPerStep * static_cast<double>(quality));
}

ZetMP3Header headerFor(const Mp3EncoderSettings& settings, const Mp3Format& format) {
    ZetMP3Header header{};
    header.ID = 1;
    header.layer = 1;
    header.protection_bit = !settings.hasCrc;
    header.bitrate_index =
        settings.quality >= 0 ? kVariable : bitRateIndex(format, settings.bitRate);
    header.sampling_frequency = format.samplingFrequency;
    header.mode = modeOf(settings);
    header.original_copy = 1;
    return header;
}

}  // namespace

bool Mp3Encoder::isValid(const Mp3EncoderSettings& settings) {
    const Mp3Format format = formatFor(settings.sampleRate);
    return format.sampleRate() == settings.sampleRate && settings.channels >= 1 &&
           settings.channels <= 2 && settings.quality <= 9 &&
           (settings.quality >= 0 || bitRateIndex(format, settings.bitRate) > 0);
}

Mp3Encoder::Mp3Encoder(const Mp3EncoderSettings& settings)
    : settings_(settings),
      format_(formatFor(settings.sampleRate)),
      header_(headerFor(settings, format_)),
      info_(format_, header_) {
    if (isVariable()) {
        thresholdScale_ = thresholdScale(settings.quality);
    } else {
        zetsBitReservoirInit_MP3(&reservoir_, &header_);
    }
}

// --- Samples in, frames out ---------------------------------------------------------------------

std::span<Zet16s> Mp3Encoder::room() {
    if (isFinished_) return {};
    return std::span(window_)
        .first(kWindowSamples * channels())
        .subspan(windowFilled_ * channels());
}

void Mp3Encoder::filled(size_t samples) {
    samples_ += samples;
    windowFilled_ += samples;
}

Mp3Encoder::Next Mp3Encoder::next(std::span<const Zet8u>& frame) {
    for (;;) {
        frame = writer_.take();
        if (!frame.empty()) {
            info_.add(frame);
            return Next::kFrame;
        }
        if (isFinished_) {
            if (hasSoundLeft()) {
                padWithSilence();
            } else if (frames() < coded_) {
                writer_.finish();
                continue;
            } else {
                return Next::kEnd;
            }
        }
        if (windowFilled_ < kWindowSamples) return Next::kNeedsInput;
        if (encodeFrame() < 0) return Next::kFailed;
    }
}

/** Whether the frames so far do not give back the last sample. */
bool Mp3Encoder::hasSoundLeft() const {
    return coded_ * kFrameSamples < samples_ + kDelay;
}

void Mp3Encoder::padWithSilence() {
    std::fill(&window_[windowFilled_ * channels()], &window_[kWindowSamples * channels()],
              Zet16s{0});
    windowFilled_ = kWindowSamples;
}

int Mp3Encoder::bitRate() const {
    if (!isVariable() || frames() == 0) return isVariable() ? 0 : settings_.bitRate;
    const uint64_t samples = frames() * kFrameSamples;
    return static_cast<int>(8 * bytes() * static_cast<uint64_t>(settings_.sampleRate) / samples);
}

uint64_t Mp3Encoder::padding() const {
    const uint64_t decoded = frames() * kFrameSamples;
    return decoded > samples_ + kDelay ? decoded - samples_ - kDelay : 0;
}

void Mp3Encoder::writeInfoFrame(std::span<Zet8u> frame) const {
    info_.write(frame,
                {.quality = settings_.quality,
                 .kilobits = (isVariable() ? mp3BitRate(format_, 1) : settings_.bitRate) / 1000,
                 .samples = samples_,
                 .decoded = frames() * kFrameSamples});
}

// --- One frame ----------------------------------------------------------------------------------

ZetStatus Mp3Encoder::encodeFrame() {
    if (isVariable()) header_.bitrate_index = kVariable;  // for the model as well
    size_t frameBytes = 0;
    int mainDataBegin = 0;
    ZetStatus status = coded_ == 0 ? primeModel() : zetStsOk;
    if (status >= 0) status = runModel(&window_[kModelStart * channels()]);
    if (status >= 0) status = transform();
    if (status >= 0) status = quantise(frameBytes, mainDataBegin);
    if (status >= 0) status = pack(frameBytes, mainDataBegin);
    ++coded_;
    std::copy(&window_[kFrameSamples * channels()], &window_[kWindowSamples * channels()],
              window_.begin());
    windowFilled_ -= kFrameSamples;
    return status;
}

/** Block types, thresholds and the stereo mode. Outside of joint stereo there is no such mode. */
ZetStatus Mp3Encoder::runModel(const Zet16s* pcm) {
    const ZetStatus status =
        zetsPsychoacousticModelTwo_MP3_16s(pcm, frame_.psy, frame_.intensityBound, frame_.sideInfo,
                                           &header_, &psyState_, nullptr, psyBuffer_);
    if (header_.mode != kModeJoint) header_.mode_extension = 0;
    if (isVariable()) scaleThresholds();
    return status;
}

/** The model delivers a granule one call late, so it sees the frame before the first one. */
ZetStatus Mp3Encoder::primeModel() {
    constexpr size_t kKnown = kModelStart + kModelSamples - kFrameSamples;
    std::array<Zet16s, 2 * kModelSamples> pcm{};
    std::copy_n(window_.begin(), kKnown * channels(), &pcm[(kModelSamples - kKnown) * channels()]);
    return runModel(pcm.data());
}

/** A ratio of 0x7FFFFFFF says that the band has no energy. */
void Mp3Encoder::scaleThresholds() {
    constexpr Zet32s kNoEnergy = 0x7FFFFFFF;
    for (ZetMP3PsyOutput& output : frame_.psy)
        for (Zet32s& ratio : output.ratio)
            if (ratio != kNoEnergy)
                ratio =
                    static_cast<Zet32s>(std::min<double>(kNoEnergy - 1, ratio * thresholdScale_));
}

/** PCM to lines, and joint stereo. */
ZetStatus Mp3Encoder::transform() {
    for (int granule = 0; granule < kGranules; ++granule) {
        const Zet16s* pcm =
            &window_[static_cast<size_t>(granule) * ZETAC_MP3_GRANULE_LEN * channels()];
        for (int channel = 0; channel < settings_.channels; ++channel) {
            const int i = index(granule, channel);
            ZetStatus status =
                zetsAnalysisPQMF_MP3_16s32s(pcm + channel, subbands_, settings_.channels);
            if (status >= 0)
                status = zetsMDCTFwd_MP3_32s(subbands_, frame_.lines[i], overlap_[channel],
                                             &header_, &frame_.sideInfo[i]);
            if (status < 0) return status;
        }
        if (header_.mode != kModeJoint) continue;
        const int left = index(granule, 0), right = index(granule, 1);
        const ZetStatus status = zetsJointStereoEncode_MP3_32s_I(
            frame_.lines[left], frame_.lines[right], frame_.scaleFactor[right], &header_,
            &frame_.sideInfo[left], &frame_.intensityBound[3 * granule]);
        if (status < 0) return status;
    }
    return zetStsOk;
}

/** Two bytes of a protected frame stay empty: libmpg123 1.31 goes wrong where one is filled to the
 *  last bits. */
int Mp3Encoder::mainDataBits(size_t frameBytes) const {
    return 8 * static_cast<int>(frameBytes - frontBytes() - (settings_.hasCrc ? kCrcBytes : 0));
}

size_t Mp3Encoder::frontBytes() const {
    return kHeaderBytes + (settings_.hasCrc ? kCrcBytes : 0) +
           mp3SideInfoBytes(true, settings_.channels == 1);
}

/** Frames have a whole number of bytes; padding makes up for the fractions (2.4.3.1). */
size_t Mp3Encoder::paddedFrameBytes() {
    const int bitRate = mp3BitRate(format_, header_.bitrate_index);
    const auto sampleRate = static_cast<size_t>(settings_.sampleRate);
    paddingRest_ += kFrameSamples / 8 * static_cast<size_t>(bitRate) % sampleRate;
    header_.padding_bit = paddingRest_ >= sampleRate;
    paddingRest_ %= sampleRate;
    return mp3FrameBytes(format_, bitRate) + static_cast<size_t>(header_.padding_bit);
}

ZetStatus Mp3Encoder::quantise(size_t& frameBytes, int& mainDataBegin) {
    mainDataBegin = reservoir_.held / 8;
    frameBytes = isVariable() ? mp3FrameBytes(format_, mp3BitRate(format_, kHighestBitRate))
                              : paddedFrameBytes();
    const int mainBits = mainDataBits(frameBytes);
    const ZetStatus status = zetsQuantize_MP3_32s_I(
        frame_.lines[0], frame_.scaleFactor[0], frame_.scfsi, frame_.count1Len, frame_.hufSize,
        &header_, frame_.sideInfo, frame_.psy, frame_.intensityBound, &reservoir_, mainBits,
        quantiseBuffer_);
    if (status >= 0 && isVariable()) {
        int bits = 0;
        for (int i = 0; i < kGranules * settings_.channels; ++i)
            bits += frame_.sideInfo[i].part2_3_length;
        frameBytes = chooseBitRate(bits);
    }
    return status;
}

/** The smallest frame that holds these bits with those of the reservoir, which it changes. */
size_t Mp3Encoder::chooseBitRate(int bits) {
    size_t bytes = 0;
    int mainBits = 0;
    for (header_.bitrate_index = 1;; ++header_.bitrate_index) {
        bytes = mp3FrameBytes(format_, mp3BitRate(format_, header_.bitrate_index));
        mainBits = mainDataBits(bytes);
        if (mainBits + reservoir_.held >= bits || header_.bitrate_index == kHighestBitRate) break;
    }
    ZetMP3BitReservoir limits;
    zetsBitReservoirInit_MP3(&limits, &header_);
    reservoir_.held = std::min(reservoir_.held + mainBits - bits, limits.capacity);
    return bytes;
}

ZetStatus Mp3Encoder::pack(size_t frameBytes, int mainDataBegin) {
    Zet8u mainData[kMainDataBytesMax];
    size_t mainDataBytes = 0;
    ZetStatus status = packMainData(mainData, mainDataBytes);
    if (status < 0) return status;
    Zet8u front[kFrontBytesMax];
    status = packFront(mainDataBegin, front);
    if (status < 0) return status;
    writer_.add({front, frontBytes()}, frameBytes, static_cast<size_t>(mainDataBegin),
                {mainData, mainDataBytes});
    return zetStsOk;
}

/** The error check covers the side information, so the header is packed once more with it. */
ZetStatus Mp3Encoder::packFront(int mainDataBegin, Zet8u* front) {
    Zet8u* cursor = packMp3Header(format_, header_, front);
    const ZetStatus status =
        zetsPackSideInfo_MP3(frame_.sideInfo, &cursor, mainDataBegin, 0, frame_.scfsi, &header_);
    if (status < 0 || !settings_.hasCrc) return status;
    header_.crc_check = mp3Crc(front, mp3SideInfoBytes(true, settings_.channels == 1));
    packMp3Header(format_, header_, front);
    return zetStsOk;
}

/** Bits that the quantiser would stuff are left behind the main data instead, as ancillary data:
 *  some decoders take a stuffing that ends within a quadruple of table B for an error. */
ZetStatus Mp3Encoder::packMainData(Zet8u* mainData, size_t& bytes) {
    Zet8u* cursor = mainData;
    int offset = 0;
    for (int granule = 0; granule < kGranules; ++granule) {
        for (int channel = 0; channel < settings_.channels; ++channel) {
            const int i = index(granule, channel);
            const ptrdiff_t start = 8 * (cursor - mainData) + offset;
            ZetStatus status = zetsPackScaleFactors_MP3_8s1u(
                frame_.scaleFactor[i], &cursor, &offset, &header_, &frame_.sideInfo[i],
                &frame_.scfsi[4 * channel], granule, channel);
            if (status >= 0)
                status = zetsHuffmanEncode_MP3_32s1u(frame_.lines[i], &cursor, &offset, &header_,
                                                     &frame_.sideInfo[i], frame_.count1Len[i], 0);
            if (status < 0) return status;
            frame_.sideInfo[i].part2_3_length =
                static_cast<Zet32s>(8 * (cursor - mainData) + offset - start);
        }
    }
    bytes = static_cast<size_t>(cursor - mainData) + (offset > 0);
    return zetStsOk;
}

}  // namespace zetac::codec
