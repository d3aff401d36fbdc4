// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "base/layout.h"

#include <algorithm>

namespace zetac::codec {
namespace {

struct SpeakerPair {
    Speaker left, right;
};

constexpr SpeakerPair kFront{Speaker::kFrontLeft, Speaker::kFrontRight};
constexpr SpeakerPair kFrontInner{Speaker::kFrontLeftOfCentre, Speaker::kFrontRightOfCentre};
constexpr SpeakerPair kSide{Speaker::kSideLeft, Speaker::kSideRight};
constexpr SpeakerPair kBack{Speaker::kBackLeft, Speaker::kBackRight};
constexpr SpeakerPair kUnknown{Speaker::kUnknown, Speaker::kUnknown};

/** Elements of one of the lists of a program config element, with the speakers for its pairs in
 *  stream order and the speaker for its single channel. */
struct SpeakerList {
    const Zet32s* isPair;
    const Zet32s* tags;
    int count;
    SpeakerPair firstPair, secondPair;
    Speaker single;
};

int pairsOf(const SpeakerList& list) {
    return static_cast<int>(std::count_if(list.isPair, list.isPair + list.count,
                                          [](Zet32s isPair) { return isPair != 0; }));
}

/** Lists run from the centre outwards and from front to back, so of two front pairs the first is
 *  the inner one, and of two back pairs the first stands at the side. */
std::array<SpeakerList, 3> listsOf(const ZetAACPrgCfgElt& e) {
    SpeakerList front{e.front_element_is_cpe,
                      e.front_element_tag_select,
                      e.num_front_channel_elements,
                      kFront,
                      kUnknown,
                      Speaker::kFrontCentre};
    SpeakerList side{e.side_element_is_cpe,
                     e.side_element_tag_select,
                     e.num_side_channel_elements,
                     kSide,
                     kUnknown,
                     Speaker::kUnknown};
    SpeakerList back{e.back_element_is_cpe,
                     e.back_element_tag_select,
                     e.num_back_channel_elements,
                     kBack,
                     kUnknown,
                     Speaker::kBackCentre};
    if (pairsOf(front) == 2) {
        front.firstPair = kFrontInner;
        front.secondPair = kFront;
    }
    if (pairsOf(back) == 2 && side.count == 0) {
        back.firstPair = kSide;
        back.secondPair = kBack;
    }
    return {front, side, back};
}

}  // namespace

const char* nameOf(Speaker speaker) {
    static constexpr const char* kNames[] = {
        "front left", "front right",          "front centre",          "low frequency", "back left",
        "back right", "front left of centre", "front right of centre", "back centre",   "side left",
        "side right"};
    const auto index = static_cast<size_t>(speaker);
    return index < std::size(kNames) ? kNames[index] : "unknown";
}

bool ChannelLayout::add(ElementId id, int tag, Speaker first, Speaker second) {
    const int count = id == ElementId::kPair ? 2 : 1;
    if (channels_ + count > kChannelsMax) return false;
    slots_[elements_++] = {id, tag, channels_};
    speakers_[channels_] = first;
    if (count == 2) speakers_[channels_ + 1] = second;
    channels_ += count;
    return true;
}

std::optional<ChannelLayout> ChannelLayout::fromConfiguration(int channelConfiguration) {
    const int c = channelConfiguration;
    if (c < 1 || c > 7) return std::nullopt;
    ChannelLayout layout;
    const auto single = [&](Speaker s) { layout.add(ElementId::kSingle, 0, s, s); };
    const auto pair = [&](SpeakerPair s) { layout.add(ElementId::kPair, 0, s.left, s.right); };
    if (c != 2) single(Speaker::kFrontCentre);
    if (c == 7) pair(kFrontInner);
    if (c >= 2) pair(kFront);
    if (c == 4) single(Speaker::kBackCentre);
    if (c >= 5) pair(kBack);
    if (c >= 6) layout.add(ElementId::kLfe, 0, Speaker::kLowFrequency, Speaker::kUnknown);
    layout.assignWavPositions();
    return layout;
}

bool ChannelLayout::addProgramElements(const ZetAACPrgCfgElt& element) {
    for (const SpeakerList& list : listsOf(element)) {
        int pairs = 0;
        for (int i = 0; i < list.count; ++i) {
            if (list.isPair[i]) {
                const SpeakerPair s = pairs == 0 ? list.firstPair : list.secondPair;
                if (!add(ElementId::kPair, list.tags[i], s.left, s.right)) return false;
                ++pairs;
            } else if (!add(ElementId::kSingle, list.tags[i], list.single, Speaker::kUnknown)) {
                return false;
            }
        }
    }
    for (int i = 0; i < element.num_lfe_channel_elements; ++i) {
        const Zet32s tag = element.lfe_element_tag_select[i];
        if (!add(ElementId::kLfe, tag, Speaker::kLowFrequency, Speaker::kUnknown)) return false;
    }
    return channels_ > 0;
}

std::optional<ChannelLayout> ChannelLayout::fromProgramConfig(const ZetAACPrgCfgElt& element) {
    ChannelLayout layout;
    layout.byTag_ = true;
    if (!layout.addProgramElements(element)) return std::nullopt;
    layout.assignWavPositions();
    return layout;
}

/** The place of a channel is the number of channels whose speakers come before its own. */
void ChannelLayout::assignWavPositions() {
    for (int c = 0; c < channels_; ++c) {
        int before = 0;
        for (int other = 0; other < channels_; ++other) {
            if (other == c) continue;
            before += speakers_[other] < speakers_[c];
            if (speakers_[other] == speakers_[c]) hasSpeakers_ = false;
        }
        wavPositions_[c] = before;
        if (speakers_[c] == Speaker::kUnknown) hasSpeakers_ = false;
    }
    if (hasSpeakers_) return;
    for (int c = 0; c < channels_; ++c) {
        speakers_[c] = Speaker::kUnknown;
        wavPositions_[c] = c;
    }
}

int ChannelLayout::find(ElementId id, int tag, int order) const {
    if (!byTag_) return order < elements_ && slots_[order].id == id ? order : -1;
    for (int i = 0; i < elements_; ++i) {
        if (slots_[i].id == id && slots_[i].tag == tag) return i;
    }
    return -1;
}

std::string ChannelLayout::describe() const {
    if (channels_ == 1) return "mono";
    if (channels_ == 2) return "stereo";
    if (!hasSpeakers_) return std::to_string(channels_) + " channels of unknown place";
    int lfe = 0;
    std::string names;
    for (int c = 0; c < channels_; ++c) {
        lfe += speakers_[c] == Speaker::kLowFrequency;
        names += (c == 0 ? "" : ", ") + std::string(nameOf(speakers_[c]));
    }
    return std::to_string(channels_ - lfe) + "." + std::to_string(lfe) + " (" + names + ")";
}

}  // namespace zetac::codec
