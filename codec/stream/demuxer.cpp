// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "stream/demuxer.h"

#include <algorithm>
#include <utility>

namespace zetac::codec {

Demuxer::Step Demuxer::next() {
    foreign_ = {};
    for (;;) {
        if (state_ == State::kInFrame) {
            const View view = window_.view();
            block_ = frames_->next({view.bytes.first(audioBytes_), true}, window_.position());
            return Step::kUnit;
        }
        if (state_ == State::kBehindFrame) {
            if (!leaveFrame()) return Step::kNeedInput;
        } else if (const auto step = search()) {
            return *step;
        }
    }
}

Demuxer::Step Demuxer::end() {
    account(window_.position());
    foreign_ = std::exchange(pending_, {});
    return container_ == Container::kNone ? Step::kNoStream : Step::kEnd;
}

void Demuxer::reset(uint64_t position) {
    window_.reset(position);
    accountedTo_ = position;
    pending_ = {};
    state_ = State::kSearching;
    tags_.passOther();
    isLost_ = false;
    retryAt_ = 0;
}

View Demuxer::hold(std::span<const Zet8u> packet, uint64_t position) {
    reset(position);
    window_.feed(packet);
    window_.finish();
    return window_.view();
}

// --- The search ---------------------------------------------------------------------------------

/** Here stands a tag, a frame, or a byte that belongs to neither. Behind foreign bytes only frames
 *  count, and tags that can be nothing else. */
std::optional<Demuxer::Step> Demuxer::search() {
    const View view = window_.view();
    if (view.size() == 0) {
        if (!window_.isFinal()) return Step::kNeedInput;
        return end();
    }
    const TagPiece tag = isDue() ? tags_.at(view) : TagScanner::amid(view);
    if (tag.answer == Answer::kUnknown) return Step::kNeedInput;
    if (tag.answer == Answer::kYes && accountedTo_ + tag.before <= window_.position()) {
        passTag(view, tag);
        return std::nullopt;
    }
    const Answer answer = isFrame(view);
    if (answer == Answer::kUnknown) return Step::kNeedInput;
    return answer == Answer::kYes ? take(view) : moveOn(view);
}

void Demuxer::passTag(View view, const TagPiece& tag) {
    account(window_.position() - tag.before);
    tags_.pass(view, tag);
    window_.skip(tag.bytes);
    accountedTo_ = window_.position();
}

/** What has been passed over up to here belongs to nothing. */
void Demuxer::account(uint64_t to) {
    if (to <= accountedTo_) return;
    if (pending_.bytes == 0) pending_.position = accountedTo_;
    pending_.bytes += to - accountedTo_;
    accountedTo_ = to;
}

Answer Demuxer::isFrame(View view) {
    switch (container_) {
        case Container::kAdts:
        case Container::kLoas:
            return frames_->isFrame(view, isDue(), tags_);
        case Container::kAdif:
            if (isLost_) return Answer::kNo;
            return view.awaits(retryAt_) ? Answer::kUnknown : Answer::kYes;
        case Container::kMpeg:
            return mpeg_.isFrame(view, isDue(), tags_);
        default:
            return isFirstFrame(view);
    }
}

Answer Demuxer::adopt(Container container, Answer answer) {
    if (answer == Answer::kYes) container_ = container;
    return answer;
}

/** The first byte leaves little choice. */
Answer Demuxer::isFirstFrame(View view) {
    const bool mayBeAac = expected_ != Codec::kMp3;
    if (mayBeAac && view[0] == 'A' && isDue() && pending_.bytes == 0) {
        return adopt(Container::kAdif, adif_.read(view));
    }
    if (mayBeAac && view[0] == 0x56) {
        frames_ = &loas_;
        return adopt(Container::kLoas, loas_.isFrame(view, isDue(), tags_));
    }
    if (view[0] != 0xFF) return Answer::kNo;
    if (mayBeAac) {
        frames_ = &adts_;
        const Answer answer = adopt(Container::kAdts, adts_.isFrame(view, isDue(), tags_));
        if (answer != Answer::kNo || expected_ == Codec::kAac) return answer;
    }
    return adopt(Container::kMpeg, mpeg_.isFrame(view, isDue(), tags_));
}

std::optional<Demuxer::Step> Demuxer::moveOn(View view) {
    const auto next = std::find_if(view.bytes.begin() + 1, view.bytes.end(),
                                   [this](Zet8u byte) { return isCandidate(byte); });
    window_.skip(static_cast<uint64_t>(next - view.bytes.begin()));
    const bool isFound = container_ != Container::kNone;
    if (isFound || window_.position() - accountedTo_ <= kSearchBytes) return std::nullopt;
    return Step::kNoStream;
}

/** Whether a frame or a tag may begin with a byte. */
bool Demuxer::isCandidate(Zet8u byte) const {
    if (byte == 'A' || byte == 'T' || byte == '3') return true;
    if (byte == 0x56) return container_ == Container::kLoas || container_ == Container::kNone;
    return byte == 0xFF && container_ != Container::kLoas;
}

// --- Frames -------------------------------------------------------------------------------------

std::optional<Demuxer::Step> Demuxer::take(View view) {
    tags_.passOther();
    switch (container_) {
        case Container::kAdif:
            return takeOpenBlock(view);
        case Container::kMpeg:
            return takeMpegFrame(view);
        default:
            openFrame(view);
            return std::nullopt;
    }
}

std::optional<Demuxer::Step> Demuxer::takeOpenBlock(View view) {
    if (!std::exchange(hasAdifHeader_, true)) {
        window_.skip(adif_.bytes());
        accountedTo_ = window_.position();
        return std::nullopt;
    }
    block_ = adif_.blockAt(view, window_.position());
    return Step::kUnit;
}

/** A first frame that is an information tag makes no sound. */
std::optional<Demuxer::Step> Demuxer::takeMpegFrame(View view) {
    account(window_.position());
    frame_ = mpeg_.take(view, window_.position(), pending_.bytes == 0);
    accountedTo_ = window_.position() + frame_.data.size();
    if (!std::exchange(hasMpegFrame_, true) && frame_.format.layer == 3) {
        infoTag_ = readMp3InfoTag(frame_.data);
        if (infoTag_) {
            window_.skip(frame_.data.size());
            return std::nullopt;
        }
    }
    foreign_ = std::exchange(pending_, {});
    return Step::kUnit;
}

/** A frame that is cut off ends where an ID3v1 tag begins. */
void Demuxer::openFrame(View view) {
    constexpr size_t kId3v1Bytes = 128;
    account(window_.position());
    foreign_ = std::exchange(pending_, {});
    frameBytes_ = frames_->open(view);
    audioBytes_ = std::min(frameBytes_, view.size());
    state_ = State::kInFrame;
    if (frameBytes_ <= view.size() || view.size() <= kId3v1Bytes) return;
    const size_t rest = view.size() - kId3v1Bytes;
    if (TagScanner::amid(view.from(rest)).answer == Answer::kYes) audioBytes_ = rest;
}

/** Goes on where the frame ends. When nothing is there, its length is not to be trusted.
 *  @return false when that cannot be known yet */
bool Demuxer::leaveFrame() {
    const View view = window_.view();
    if (view.awaits(frameBytes_ + 1)) return false;
    Answer isBoundary = view.size() == frameBytes_ ? Answer::kYes : Answer::kNo;
    if (view.size() > frameBytes_) {
        isBoundary = tags_.at(view.from(frameBytes_)).answer;
        if (isBoundary == Answer::kNo) isBoundary = frames_->isHeader(view.from(frameBytes_));
    }
    if (isBoundary == Answer::kUnknown) return false;
    accountedTo_ = window_.position() + audioBytes_;
    window_.skip(isBoundary == Answer::kYes ? audioBytes_
                                            : std::min(frames_->behind(), audioBytes_));
    state_ = State::kSearching;
    return true;
}

void Demuxer::done(size_t bytesUsed, bool isGood) {
    switch (container_) {
        case Container::kMpeg:
            window_.skip(frame_.data.size());
            break;
        case Container::kAdif:
            window_.skip(bytesUsed);
            accountedTo_ = window_.position();
            retryAt_ = 0;
            isLost_ = !isGood;
            break;
        default:
            state_ = frames_->finish(bytesUsed, isGood) ? State::kInFrame : State::kBehindFrame;
            break;
    }
}

/** Waits for so much that all the trials together cost no more than a few of the last one. */
void Demuxer::postpone() {
    constexpr size_t kStep = 64;
    retryAt_ = block_.data.size() + std::max(block_.data.size() / 8, kStep);
}

}  // namespace zetac::codec
