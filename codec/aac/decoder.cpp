// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "aac/decoder.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace zetac::codec {
namespace {

constexpr int kProfileMain = 0;
constexpr int kProfileLongTermPrediction = 3;

bool haveSameWindows(const ZetAACIcsInfo& a, const ZetAACIcsInfo& b) {
    return (a.window_sequence == zetAacEightShort) == (b.window_sequence == zetAacEightShort) &&
           a.num_window_groups == b.num_window_groups &&
           std::equal(a.window_group_length, a.window_group_length + a.num_window_groups,
                      b.window_group_length);
}

/** M/S stereo spares bands whose right codebook says noise; the standard spares those that are
 * noise on the left too (ISO/IEC 14496-3, 4.6.13), so these are shown to it as noise. Intensity
 * codebooks, which it may invert, come back from there. */
Fault matrixStereo(const ZetAACChanPairElt& pair, ChannelData& left, ChannelData& right) {
    if (pair.ms_mask_present == 0) return Fault::kNone;
    const bool hasNoise = left.hasCodebook(zetAacNoiseCb);
    const int bands = left.bands();
    Zet8u shown[ZETAC_AAC_GROUP_BANDS_MAX];
    for (int i = 0; hasNoise && i < bands; ++i) {
        const bool isSpared =
            left.codebook[i] == zetAacNoiseCb && right.codebook[i] < zetAacIntensityCb2;
        shown[i] = isSpared ? Zet8u{zetAacNoiseCb} : right.codebook[i];
    }
    const ZetAACIcsInfo& ics = left.ics();
    const Fault fault = faultOf(zetsDecodeMsStereo_AAC_32s_I(
        left.spectrum, right.spectrum, pair.ms_mask_present, pair.ms_used[0],
        hasNoise ? shown : right.codebook, ics.num_window_groups, ics.window_group_length,
        ics.max_sfb, left.info.sampling_frequency_index, left.info.window_length));
    for (int i = 0; hasNoise && i < bands; ++i) {
        if (right.codebook[i] >= zetAacIntensityCb2) right.codebook[i] = shown[i];
    }
    return fault;
}

Fault copyIntensity(const ChannelData& left, ChannelData& right) {
    if (!right.hasCodebook(zetAacIntensityCb) && !right.hasCodebook(zetAacIntensityCb2)) {
        return Fault::kNone;
    }
    const ZetAACIcsInfo& ics = right.ics();
    if (!haveSameWindows(left.ics(), ics)) return AacFault::kWindowsDiffer;
    return faultOf(
        zetsDecodeIsStereo_AAC_32s(left.spectrum, right.spectrum, right.scaleFactor, right.codebook,
                                   ics.num_window_groups, ics.window_group_length, ics.max_sfb,
                                   right.info.sampling_frequency_index, right.info.window_length));
}

/** How far all of a frame's values can be shifted to the left. */
int headroom(const Zet32s* values) {
    uint32_t bits = 0;
    for (int i = 0; i < ZETAC_AAC_FRAME_LEN; ++i) {
        bits |= static_cast<uint32_t>(values[i] ^ values[i] >> 31);
    }
    return std::countl_zero(bits) - 1;
}

/** Shifts to the left, or with rounding to the right. */
void shift(Zet32s* values, int bits) {
    if (bits > 0) {
        for (int i = 0; i < ZETAC_AAC_FRAME_LEN; ++i) values[i] *= 1 << bits;
    } else if (bits < 0) {
        for (int i = 0; i < ZETAC_AAC_FRAME_LEN; ++i) {
            values[i] = ((values[i] >> (-bits - 1)) + 1) >> 1;
        }
    }
}

}  // namespace

// --- The road of a frame ------------------------------------------------------------------------

DecodedFrame AacDecoder::decode(const RawBlock& block) {
    if (options_.isFollowing) follow(block);
    if (!isOpen_) refusal_ = open(block);
    if (block.fault.isRefusal) refusal_ = block.fault;
    if (failed(refusal_)) return {refusal_, 0, 0};
    Fault fault = parser_.parse(block);
    if (block.isOpen && fault == StreamFault::kTruncated)
        return {.fault = fault, .needsMore = true};
    if (!states_ && parser_.layout()) allocate();
    if (!failed(fault)) fault = decodeSpectra();
    if (states_ && failed(fault)) conceal();
    if (!failed(fault) && options_.isFollowing && parser_.hasSbr()) beginSbr();
    isKnown_ = isKnown_ || !failed(fault) || !options_.isFollowing;
    const Fault sbrFault = failed(fault) ? Fault::kNone : readSbr();
    if (fault.isRefusal) refusal_ = fault;
    DecodedFrame result = render(failed(fault));
    result.fault = fault;
    result.sbrFault = sbrFault;
    result.isIncomplete = isWaiting_;
    result.bytesUsed = std::min(parser_.bytesUsed(), block.data.size());
    return result;
}

DecodedFrame AacDecoder::lose() {
    if (states_) conceal();
    DecodedFrame result = render(true);
    result.fault = StreamFault::kLost;
    return result;
}

/** Makes the sound of a frame that has been decoded or concealed. */
DecodedFrame AacDecoder::render(bool isDamaged) {
    ++frame_;
    const bool isHeard = isKnown_ && concealment_.admits(isDamaged, samples(), sampleRate());
    if (states_ && isHeard && !options_.parsesOnly) synthesise();
    DecodedFrame result;
    result.channels = isKnown_ ? channels() : 0;
    result.samples = isHeard ? samples() : 0;
    return result;
}

/** Copies what decode() leaves. */
DecodedFrame AacDecoder::decode(const RawBlock& block, Zet16s* pcm) {
    options_.parsesOnly = pcm == nullptr;
    const DecodedFrame result = decode(block);
    if (pcm && result.channels > 0 && result.samples > 0 && states_) {
        std::memcpy(pcm, output_.data(0),
                    sizeof *pcm * static_cast<size_t>(result.channels * result.samples));
    }
    return result;
}

Fault AacDecoder::open(const RawBlock& block) {
    isOpen_ = true;
    return parser_.open(block);
}

/** A block of another format begins another stream. The version decides the syntax only. */
void AacDecoder::follow(const RawBlock& block) {
    if (!isOpen_ || failed(block.fault) || failed(refusal_)) return;
    StreamFormat expected = parser_.format();
    expected.mpegVersion = block.format.mpegVersion;
    if (block.format == expected) return;
    parser_ = BlockParser();
    states_.reset();
    stereo_.reset();
    isOpen_ = isKnown_ = decodesSbr_ = hasSound_ = false;
}

/** From here on there is SBR. */
void AacDecoder::beginSbr() {
    const bool isWanted = options_.sbr != SbrOutput::kNone && parser_.format().sbr != Signal::kNo;
    if (decodesSbr_ || !isWanted) return;
    decodesSbr_ = true;
    allocateSbr();
    makeRoom();
}

void AacDecoder::allocate() {
    const int channels = parser_.channels();
    states_ = std::make_unique<ChannelState[]>(static_cast<size_t>(channels));
    const StreamFormat& format = parser_.format();
    const bool isLongTerm = format.profile == kProfileLongTermPrediction;
    for (int c = 0; c < channels; ++c) {
        ChannelState& state = stateOf(c);
        if (format.profile == kProfileMain) {
            state.main = std::make_unique<MainPrediction>(format.samplingFrequencyIndex);
        }
        if (isLongTerm) state.longTerm = std::make_unique<LongTermPrediction>();
    }
    if (decodesSbr_) allocateSbr();
    if (options_.isFollowing && format.sbr == Signal::kYes) beginSbr();
    makeRoom();
}

void AacDecoder::makeRoom() {
    if (!options_.parsesOnly) output_.reserve(channels(), samples());
}

int AacDecoder::outputPosition(int channel) const {
    return options_.order == ChannelOrder::kWav ? layout().wavPosition(channel) : channel;
}

size_t AacDecoder::stateBytes() const {
    const auto channels = static_cast<size_t>(parser_.channels());
    size_t bytes = sizeof *this + parser_.allocatedBytes() + output_.allocatedBytes();
    for (size_t c = 0; states_ && c < channels; ++c) {
        bytes += sizeof(ChannelState);
        if (states_[c].main) bytes += states_[c].main->allocatedBytes();
        if (states_[c].longTerm) bytes += sizeof(LongTermPrediction);
        if (states_[c].sbr) bytes += states_[c].sbr->stateBytes();
    }
    return bytes;
}

/** Everything up to the filter bank, so that a frame with a fault leaves its overlaps and histories
 *  alone; predictors are reset then. */
Fault AacDecoder::decodeSpectra() {
    seedNoise();
    for (AudioElement& element : parser_.elements()) {
        if (const Fault fault = decodeElement(element); failed(fault)) return fault;
    }
    return Fault::kNone;
}

Fault AacDecoder::decodeElement(AudioElement& element) {
    ChannelData& first = parser_.channel(element.firstChannel);
    ChannelState& state = stateOf(element.firstChannel);
    if (const Fault fault = dequantise(first, state); failed(fault)) return fault;
    if (element.id == ElementId::kPair) return decodePair(element);
    if (const Fault fault = predict(first, state); failed(fault)) return fault;
    substituteNoise(first, state.random);
    return finishSpectrum(first);
}

Fault AacDecoder::decodePair(AudioElement& element) {
    ChannelData& left = parser_.channel(element.firstChannel);
    ChannelData& right = parser_.channel(element.firstChannel + 1);
    ChannelState& leftState = stateOf(element.firstChannel);
    ChannelState& rightState = stateOf(element.firstChannel + 1);
    Zet32s& random = leftState.random;
    Fault fault = dequantise(right, rightState);
    if (!failed(fault) && element.pair.common_window) {
        fault = matrixStereo(element.pair, left, right);
        if (leftState.main) {
            MainPrediction::matrixStereo(element.pair, left, right, *leftState.main,
                                         *rightState.main);
        }
    }
    if (!failed(fault)) fault = predict(left, leftState);
    if (!failed(fault)) fault = predict(right, rightState);
    if (failed(fault)) return fault;
    if (element.pair.common_window) {
        substituteNoise(element.pair, left, right, random);
    } else {
        substituteNoise(left, random);
        substituteNoise(right, random);
    }
    fault = copyIntensity(left, right);
    if (!failed(fault)) fault = finishSpectrum(left);
    return failed(fault) ? fault : finishSpectrum(right);
}

Fault AacDecoder::predict(ChannelData& c, ChannelState& state) {
    if (state.main) state.main->apply(c);
    return state.longTerm ? state.longTerm->apply(c, state.previousShape) : Fault::kNone;
}

Fault AacDecoder::dequantise(ChannelData& c, ChannelState& state) {
    if (state.main) state.main->dequantise(c);
    const ZetAACIcsInfo& ics = c.ics();
    return faultOf(zetsQuantInv_AAC_32s_I(c.spectrum, c.scaleFactor, ics.num_window_groups,
                                          ics.window_group_length, ics.max_sfb, c.codebook,
                                          c.info.sampling_frequency_index, c.info.window_length));
}

void AacDecoder::substituteNoise(ChannelData& c, Zet32s& random) const {
    if (!options_.substituteNoise || !c.hasCodebook(zetAacNoiseCb)) return;
    const ZetAACIcsInfo& ics = c.ics();
    zetsDecodePNS_AAC_32s(c.spectrum, &random, c.scaleFactor, ics.num_window_groups,
                          ics.window_group_length, ics.max_sfb, c.codebook,
                          c.info.sampling_frequency_index, c.info.window_length);
}

/** With a common window noise may be the same in both channels. */
void AacDecoder::substituteNoise(const ZetAACChanPairElt& pair, ChannelData& left,
                                 ChannelData& right, Zet32s& random) const {
    if (!options_.substituteNoise) return;
    if (!left.hasCodebook(zetAacNoiseCb) && !right.hasCodebook(zetAacNoiseCb)) return;
    const ZetAACIcsInfo& ics = left.ics();
    zetsDecodeMsPNS_AAC_32s(left.spectrum, right.spectrum, &random, left.scaleFactor,
                            right.scaleFactor, pair.ms_mask_present, pair.ms_used[0],
                            ics.num_window_groups, ics.window_group_length, ics.max_sfb,
                            left.codebook, right.codebook, left.info.sampling_frequency_index,
                            left.info.window_length);
}

/** Brings short windows into order and shapes the noise in time. Windows that are all groups of
 *  their own lie in order already. */
Fault AacDecoder::finishSpectrum(ChannelData& c) {
    const ZetAACIcsInfo& ics = c.ics();
    const int rate = c.info.sampling_frequency_index;
    if (ics.window_sequence == zetAacEightShort && ics.num_window_groups < 8) {
        ChannelData& spare = parser_.spare();
        zetsDeinterleaveSpectrum_AAC_32s(c.spectrum, spare.spectrum, ics.num_window_groups,
                                         ics.window_group_length, ics.max_sfb, rate,
                                         c.info.window_length);
        std::swap(c.spectrum, spare.spectrum);
    }
    if (!c.info.tns_data_present) return Fault::kNone;
    return faultOf(zetsDecodeTNS_AAC_32s_I(c.spectrum, &c.info.tns, c.tnsCoef, ics.max_sfb, rate,
                                           c.info.window_length));
}

/** Makes a silent frame of this one: what the last frame left in the overlap still fades out. */
void AacDecoder::conceal() {
    for (int index = 0; index < parser_.channels(); ++index) {
        ChannelData& c = parser_.channel(index);
        c.info.pIcsInfo = &c.ownIcs;
        c.ownIcs.window_sequence = zetAacOnlyLong;
        c.ownIcs.window_shape = stateOf(index).previousShape;
        zetsZero_32s(c.spectrum, ZETAC_AAC_FRAME_LEN);
        if (stateOf(index).main) stateOf(index).main->reset();
        if (stateOf(index).sbr) stateOf(index).sbr->lose();
    }
}

/** What the standard leaves to chance is the same wherever decoding began: the finalizer of a hash
 *  spreads the number of the frame over all bits. */
void AacDecoder::seedNoise() {
    for (int c = 0; c < parser_.channels(); ++c) {
        auto x = static_cast<uint32_t>(frame_ * kChannelsMax + static_cast<uint64_t>(c) + 1);
        x = (x ^ x >> 16) * 0x7FEB352Du;
        x = (x ^ x >> 15) * 0x846CA68Bu;
        stateOf(c).random = static_cast<Zet32s>(x ^ x >> 16);
    }
}

void AacDecoder::reset(uint64_t frame) {
    frame_ = frame;
    concealment_ = {};
    for (int c = 0; states_ && c < parser_.channels(); ++c) {
        ChannelState& state = stateOf(c);
        std::fill_n(state.overlap, ZETAC_AAC_FRAME_LEN, 0);
        state.previousShape = zetAacSine;
        state.fraction = 0;
        if (state.main) state.main->reset();
        if (state.longTerm) *state.longTerm = LongTermPrediction();
    }
    if (states_ && decodesSbr_) allocateSbr();
}

/** Sound of 16 bits goes straight to its place where that is a plane, or beside one other channel;
 *  everything else takes the way over planes. */
void AacDecoder::synthesise() {
    const int channels = parser_.channels();
    output_.begin(this->channels(), samples());
    if (decodesSbr()) {
        synthesiseSbr();
        output_.interleave();
        return;
    }
    const bool isDirect = options_.pcm.samples == SampleFormat::kS16 &&
                          (options_.pcm.isPlanar || channels <= 2) && !states_[0].longTerm;
    for (int index = 0; index < channels; ++index) synthesiseChannel(index, isDirect);
    if (!isDirect) output_.interleave();
}

void AacDecoder::synthesiseChannel(int index, bool isDirect) {
    ChannelData& c = parser_.channel(index);
    ChannelState& state = stateOf(index);
    const int position = outputPosition(index);
    if (state.longTerm) {
        state.longTerm->synthesise(c, state.previousShape, output_.plane(position));
    } else if (options_.pcm.samples == SampleFormat::kS16) {
        Zet16s* out =
            isDirect ? output_.place<Zet16s>(position) : output_.planeAs<Zet16s>(position);
        zetsMDCTInv_AAC_32s16s(c.spectrum, out, state.overlap, c.ics().window_sequence,
                               c.ics().window_shape, state.previousShape,
                               isDirect ? output_.stride() : 1);
    } else {
        const int fraction = synthesiseCore(index);
        output_.plane(position).put(0, c.spectrum, fraction, ZETAC_AAC_FRAME_LEN);
    }
    state.previousShape = c.ics().window_shape;
}

// --- SBR ----------------------------------------------------------------------------------------

/** A decoder for each element of the layout, held by its first channel. */
void AacDecoder::allocateSbr() {
    const ChannelLayout& layout = *parser_.layout();
    const SbrBankOptions options{options_.isFloat, !isDoubled()};
    const int sampleRate = 2 * parser_.format().sampleRate();
    for (int e = 0; e < layout.elements(); ++e) {
        const int first = layout.firstChannel(e);
        const int next = e + 1 < layout.elements() ? layout.firstChannel(e + 1) : layout.channels();
        stateOf(first).sbr = std::make_unique<SbrDecoder>(next - first == 2, sampleRate, options);
    }
    hasSound_ = false;
    const bool isExpected =
        options_.expectPs || parser_.format().parametricStereo == Signal::kYes || stereo_;
    if (isExpected && parser_.channels() == 1) beginStereo();
}

bool AacDecoder::hasParametricStereo() const {
    for (int c = 0; states_ && c < parser_.channels(); ++c) {
        if (states_[c].sbr && states_[c].sbr->parser().hasParametricStereo()) return true;
    }
    return false;
}

/** From here on a single channel comes out as two. */
void AacDecoder::beginStereo() {
    stereo_ = ChannelLayout::fromConfiguration(2);
    stateOf(0).sbr->beginStereo(!hasSound_);
    makeRoom();
}

/** Reads the SBR data of all elements.
 *  @return the first fault */
Fault AacDecoder::readSbr() {
    isWaiting_ = false;
    if (!decodesSbr()) return Fault::kNone;
    Fault first = Fault::kNone;
    for (const AudioElement& element : parser_.elements()) {
        const Fault fault = stateOf(element.firstChannel).sbr->read(element.sbr);
        if (!failed(first)) first = fault;
        isWaiting_ = isWaiting_ || stateOf(element.firstChannel).sbr->parser().isWaiting();
    }
    const bool mayBeStereo =
        parser_.channels() == 1 && parser_.format().parametricStereo != Signal::kNo;
    if (mayBeStereo && !stereo_ && hasParametricStereo()) beginStereo();
    return first;
}

/** The filter bank gives whole numbers, but where the output has more bits, or in the high band,
 *  nothing lies above the core's sound that could hide their rounding. So the spectrum goes in with
 *  as many fractional bits as it has room for, and the overlap follows.
 *  @return the fractional bits of the samples, which take the place of the spectrum */
int AacDecoder::synthesiseCore(int channel) {
    constexpr int kFractionMax = 6;
    ChannelData& c = parser_.channel(channel);
    ChannelState& state = stateOf(channel);
    const int fraction =
        std::min({kFractionMax, headroom(c.spectrum), state.fraction + headroom(state.overlap)});
    shift(c.spectrum, fraction);
    shift(state.overlap, fraction - state.fraction);
    zetsMDCTInv_AAC_32s_I(c.spectrum, state.overlap, c.ics().window_sequence, c.ics().window_shape,
                          state.previousShape, ZETAC_AAC_FRAME_LEN);
    state.fraction = fraction;
    return fraction;
}

/** The core as the banks of SBR take it. */
void AacDecoder::widenCore(int channel, Zet32s* core) {
    const int rest = kSbrCoreFraction - synthesiseCore(channel);
    const Zet32s* samples = parser_.channel(channel).spectrum;
    const Zet32s max = ZETAC_SBR_ANALYSIS_MAX >> rest;
    for (int i = 0; i < ZETAC_AAC_FRAME_LEN; ++i) {
        core[i] = std::max(std::min(samples[i], max), -max) * (1 << rest);
    }
}

void AacDecoder::synthesiseSbr() {
    Zet32s core[ZETAC_AAC_FRAME_LEN];
    SbrDecoder* sbr = nullptr;
    int first = 0;
    for (int index = 0; index < parser_.channels(); ++index) {
        ChannelState& state = stateOf(index);
        if (state.sbr) {
            sbr = state.sbr.get();
            sbr->beginFrame(frame_ - 1);
            first = index;
        }
        if (state.longTerm) {
            Zet16s pcm[ZETAC_AAC_FRAME_LEN];
            ChannelData& c = parser_.channel(index);
            state.longTerm->synthesise(c, state.previousShape, PcmPlane(pcm));
            for (int i = 0; i < ZETAC_AAC_FRAME_LEN; ++i)
                core[i] = pcm[i] * (1 << kSbrCoreFraction);
        } else {
            widenCore(index, core);
        }
        state.previousShape = parser_.channel(index).ics().window_shape;
        if (stereo_) {
            sbr->decodeStereo(core, output_.plane(0), output_.plane(1));
        } else {
            sbr->decode(index - first, core, output_.plane(outputPosition(index)));
        }
    }
    hasSound_ = true;
}

}  // namespace zetac::codec
