// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "reader/reader.h"

#include <algorithm>
#include <cstring>

#include "reader/outer_tags.h"

namespace zetac::codec {
namespace {

constexpr int kObjectTypeMain = 1;
constexpr int kObjectTypeLtp = 4;

size_t sampleBytes(const ZetacFrame& frame) {
    return frame.sampleFormat == ZETAC_S16 ? 2 : 4;
}

bool isPlanar(const ZetacFrame& frame) {
    return frame.channels > 1 && frame.planes[1] != nullptr;
}

/** Bytes from one sample to the next in a plane. */
size_t stride(const ZetacFrame& frame) {
    return sampleBytes(frame) * static_cast<size_t>(isPlanar(frame) ? 1 : frame.channels);
}

int planeCount(const ZetacFrame& frame) {
    return isPlanar(frame) ? frame.channels : 1;
}

bool isWorthTelling(const ZetacFrame& frame) {
    return frame.samples > 0 || frame.damage.code != 0 || frame.damage.foreignBytes > 0;
}

}  // namespace

Reader::Reader(std::unique_ptr<ByteSource> source, const ZetacReaderOptions& options)
    : source_{std::move(source), nullptr}, options_(options), feed_(source_) {
    if (options_.decoder.size == 0) options_.decoder = ZETAC_DECODER_OPTIONS_INIT;
}

// --- Opening ------------------------------------------------------------------------------------

ZetacStatus Reader::open() {
    icyInterval_ = options_.icyInterval;
    if (const ZetacStatus status = readResponse(); status != ZETAC_OK) return status;
    if (icyInterval_ == 0 && !takeFrontTags(feed_, tags_)) return ZETAC_ERROR_READ;
    start_ = feed_.position();
    isSeekable_ = icyInterval_ == 0 && source_.bytes->length() && source_.bytes->seek(start_);
    if (isSeekable_) {
        backTagBytes_ = readBackTags(*source_.bytes, start_, tags_);
        source_.lastReader = &source_;  // nobody's place
    }
    if (const ZetacStatus status = feed_.start(options_.decoder, icyInterval_);
        status != ZETAC_OK) {
        return noteFailure(feed_, status);
    }
    return learnStream();
}

/** The header that a server of internet radio sends in front. */
ZetacStatus Reader::readResponse() {
    if (!feed_.require(8)) return ZETAC_ERROR_READ;
    if (!mayBeIcyResponse(feed_.atHand())) return ZETAC_OK;
    for (size_t had = 0; feed_.atHand().size() > had && had < Feed::kBufferBytes;) {
        if (const auto response = readIcyResponse(feed_.atHand())) {
            feed_.consume(response->bytes);
            if (icyInterval_ == 0) icyInterval_ = response->interval;
            tags_.add("station", response->name);
            tags_.add("genre", response->genre);
            return ZETAC_OK;
        }
        had = feed_.atHand().size();
        if (!feed_.require(had + 1)) return ZETAC_ERROR_READ;
    }
    return ZETAC_OK;
}

/** Takes frames until one tells what the stream is. They wait for the first reads. */
ZetacStatus Reader::learnStream() {
    std::deque<ZetacFrame> first;
    ZetacStatus known = ZETAC_NEED_INPUT;
    while (known == ZETAC_NEED_INPUT) {
        ZetacFrame frame = ZETAC_FRAME_INIT;
        const ZetacStatus status = next(frame);
        if (status == ZETAC_END) return ZETAC_ERROR_NO_STREAM;
        if (status != ZETAC_OK) return status;
        first.push_back(frame);
        known = zetacDecoderGetInfo(feed_.decoder(), &info_);
    }
    if (known != ZETAC_OK) return noteFailure(feed_, known);
    pending_.swap(first);
    if (!options_.keepsGaps) {
        delay_ = info_.encoderDelay;
        padding_ = info_.encoderPadding;
    }
    rawStart_ = delay_;
    if (info_.hasLength) {
        toldLength_ = info_.length;
        setLength(toldLength_);
        held_.reserve(static_cast<size_t>(padding_) * ZETAC_CHANNELS_MAX * sizeof(float));
    } else {
        estimateLength();
    }
    return ZETAC_OK;
}

void Reader::setLength(uint64_t raw) {
    info_.hasLength = info_.isLengthExact = 1;
    const uint64_t left_out = delay_ + padding_;
    info_.length = raw > left_out ? raw - left_out : 0;
}

void Reader::estimateLength() {
    const auto bytes = source_.bytes->length();
    if (!bytes || info_.bitRate <= 0) return;
    const auto stream = static_cast<double>(*bytes - std::min(*bytes, start_ + backTagBytes_));
    info_.hasLength = 1;
    info_.length = static_cast<uint64_t>(stream * 8 / info_.bitRate * info_.sampleRate);
}

ZetacStatus Reader::noteFailure(const Feed& feed, ZetacStatus status) {
    failed_ = status < 0 ? feed.decoder() : nullptr;
    return status;
}

// --- Reading ------------------------------------------------------------------------------------

ZetacStatus Reader::next(ZetacFrame& frame) {
    if (!pending_.empty()) {
        frame = pending_.front();
        pending_.pop_front();
        return ZETAC_OK;
    }
    const ZetacStatus status = noteFailure(feed_, feed_.pull(frame));
    if (status != ZETAC_OK) return status;
    rawPosition_ = frame.position + static_cast<uint64_t>(frame.samples);
    if (frame.isSeekPoint) index_.note({frame.bytePosition, frame.position});
    return status;
}

ZetacStatus Reader::read(ZetacFrame& frame) {
    if (isOver_) return ZETAC_END;
    while (true) {
        const ZetacStatus status = next(frame);
        if (!feed_.icy().title().empty()) tags_.set("title", feed_.icy().title());
        if (status != ZETAC_OK) return status;
        if (isBeyondTag(frame) && !held_.empty()) {
            pending_.push_front(frame);
            padding_ = 0;
            releaseHeld(frame);
            return ZETAC_OK;
        }
        if (!trimFront(frame)) continue;
        holdBack(frame);
        if (!isWorthTelling(frame)) continue;
        frame.position -= delay_;
        return ZETAC_OK;
    }
}

/** Leaves out samples at the front of a frame. */
void Reader::dropSamples(ZetacFrame& frame, int32_t count) const {
    for (int p = 0; p < planeCount(frame); ++p) {
        if (frame.planes[p] == nullptr) continue;
        frame.planes[p] = static_cast<const uint8_t*>(frame.planes[p]) +
                          stride(frame) * static_cast<size_t>(count);
    }
    frame.samples -= count;
    frame.position += static_cast<uint64_t>(count);
}

/** @return false for a frame of which nothing is left to tell */
bool Reader::trimFront(ZetacFrame& frame) const {
    if (frame.position >= rawStart_) return true;
    const uint64_t early = rawStart_ - frame.position;
    dropSamples(frame, static_cast<int32_t>(
                           std::min<uint64_t>(early, static_cast<uint64_t>(frame.samples))));
    if (frame.samples == 0) frame.position = rawStart_;
    return isWorthTelling(frame);
}

/** The stream goes on where its own information says that it has ended. */
bool Reader::isBeyondTag(const ZetacFrame& frame) const {
    return toldLength_ > 0 && frame.samples > 0 && frame.position >= toldLength_;
}

/** Keeps samples that are padding if the stream ends where it says. */
void Reader::holdBack(ZetacFrame& frame) {
    if (padding_ == 0 || toldLength_ <= padding_ || isBeyondTag(frame)) return;
    const uint64_t end = toldLength_ - padding_;
    const uint64_t frameEnd = frame.position + static_cast<uint64_t>(frame.samples);
    if (frameEnd <= end) return;
    const uint64_t given = end > frame.position ? end - frame.position : 0;
    ZetacFrame rest = frame;
    dropSamples(rest, static_cast<int32_t>(given));
    frame.samples = static_cast<int32_t>(given);
    if (rest.planes[0] == nullptr) return;
    if (held_.empty()) {
        heldFrame_ = rest;
        heldFrame_.samples = 0;
    }
    if (rest.channels != heldFrame_.channels) return;
    // Each frame's planes stand behind one another; releaseHeld() gives them as they were held.
    for (int p = 0; p < planeCount(rest); ++p) {
        const auto* data = static_cast<const uint8_t*>(rest.planes[p]);
        held_.insert(held_.end(), data, data + stride(rest) * static_cast<size_t>(rest.samples));
    }
    heldFrame_.samples += rest.samples;
}

bool Reader::releaseHeld(ZetacFrame& frame) {
    frame = heldFrame_;
    const size_t planeBytes = held_.size() / static_cast<size_t>(planeCount(frame));
    for (int p = 0; p < planeCount(frame); ++p) {
        frame.planes[p] = held_.data() + planeBytes * static_cast<size_t>(p);
    }
    frame.position -= delay_;
    held_.clear();
    return true;
}

// --- Seeking ------------------------------------------------------------------------------------

/** Prediction over frames never ends in these profiles. */
bool Reader::hasEndlessHistory() const {
    return info_.objectType == kObjectTypeMain || info_.objectType == kObjectTypeLtp;
}

/** Samples before a target that must be decoded without a fault for the target to be exact: overlap
 *  and synthesis window, which reach back two granules; with SBR the smoothing, the history of its
 *  filter banks, and the decorrelators of parametric stereo, which fade below the last bit. */
uint64_t Reader::historySamples() const {
    const int frames = info_.hasParametricStereo ? 48 : info_.hasSbr ? 8 : 3;
    return static_cast<uint64_t>(frames) * static_cast<uint64_t>(info_.frameSamples);
}

/** Where to begin: the history, and what commonly fills a bit reservoir or brings an SBR header. */
uint64_t Reader::preroll() const {
    const int frames = info_.hasSbr ? 24 : info_.codec == ZETAC_CODEC_MP3 ? 9 : 1;
    return historySamples() +
           static_cast<uint64_t>(frames) * static_cast<uint64_t>(info_.frameSamples);
}

ZetacStatus Reader::scan() {
    if (isScanned_) return ZETAC_OK;
    if (!isSeekable_) return ZETAC_ERROR_NOT_SEEKABLE;
    return walkTo(UINT64_MAX);
}

/** Makes the index cover a raw sample, or the whole stream. */
ZetacStatus Reader::walkTo(uint64_t raw) {
    if (isScanned_ || scannedTo_ > raw) return ZETAC_OK;
    if (!scanner_) {
        auto scanner = std::make_unique<Feed>(source_, start_);
        ZetacDecoderOptions options = options_.decoder;
        options.parsesOnly = 1;
        if (const ZetacStatus status = scanner->start(options, 0); status != ZETAC_OK)
            return status;
        scanner_ = std::move(scanner);
    }
    ZetacFrame frame = ZETAC_FRAME_INIT;
    while (scannedTo_ <= raw) {
        const ZetacStatus status = noteFailure(*scanner_, scanner_->pull(frame));
        if (status == ZETAC_END) {
            isScanned_ = true;
            if (toldLength_ == 0) setLength(scannedTo_);
            scanner_.reset();
            return ZETAC_OK;
        }
        if (status != ZETAC_OK) return status;
        if (frame.isSeekPoint) index_.note({frame.bytePosition, frame.position});
        scannedTo_ = frame.position + static_cast<uint64_t>(frame.samples);
    }
    return ZETAC_OK;
}

/** Decodes from a frame on up to the one that holds a raw sample, which is then pending. */
ZetacStatus Reader::decodeTo(uint64_t raw, const SeekIndex::Point& from, bool& isExact) {
    if (!feed_.moveTo(from.byte, from.sample)) return ZETAC_ERROR_READ;
    isExact = true;
    ZetacFrame frame = ZETAC_FRAME_INIT;
    do {
        const ZetacStatus status = noteFailure(feed_, feed_.pull(frame));
        if (status != ZETAC_OK) return status;
        const bool counts = frame.position + historySamples() > raw;
        isExact = isExact && !(counts && (frame.damage.code != 0 || frame.isIncomplete));
        rawPosition_ = frame.position + static_cast<uint64_t>(frame.samples);
    } while (rawPosition_ <= raw);
    pending_.push_back(frame);
    return ZETAC_OK;
}

ZetacStatus Reader::seek(uint64_t sample) {
    const uint64_t raw = sample > UINT64_MAX - delay_ ? UINT64_MAX : sample + delay_;
    if (!isSeekable_) {
        if (raw < rawPosition_) return ZETAC_ERROR_NOT_SEEKABLE;
        rawStart_ = raw;
        return ZETAC_OK;
    }
    if (const ZetacStatus status = walkTo(raw); status != ZETAC_OK) return status;
    pending_.clear();
    held_.clear();
    isOver_ = isScanned_ && raw >= scannedTo_;
    rawStart_ = raw;
    if (isOver_ || index_.isEmpty()) return ZETAC_OK;
    bool isExact = false;
    for (uint64_t back = preroll(); !isExact; back *= 4) {
        const bool isWhole = back >= raw || hasEndlessHistory();
        const SeekIndex::Point from = isWhole ? index_.first() : index_.before(raw - back);
        const ZetacStatus status = decodeTo(raw, from, isExact);
        if (status == ZETAC_END) break;
        if (status != ZETAC_OK) return status;
        isExact = isExact || from.sample == index_.first().sample;
    }
    return ZETAC_OK;
}

}  // namespace zetac::codec
