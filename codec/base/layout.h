// Which element of a raw data block carries which channel, and where that channel belongs.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include <array>
#include <optional>
#include <string>

namespace zetac::codec {

inline constexpr int kChannelsMax = 8;

/** id_syn_ele (ISO/IEC 13818-7, 8.2). */
enum class ElementId { kSingle, kPair, kCoupling, kLfe, kData, kProgram, kFill, kEnd };

/** Loudspeakers in the order in which WAV files hold their channels; the value is the number of the
 *  bit in the channel mask of such a file. */
enum class Speaker : int {
    kFrontLeft = 0,
    kFrontRight = 1,
    kFrontCentre = 2,
    kLowFrequency = 3,
    kBackLeft = 4,
    kBackRight = 5,
    kFrontLeftOfCentre = 6,
    kFrontRightOfCentre = 7,
    kBackCentre = 8,
    kSideLeft = 9,
    kSideRight = 10,
    kUnknown = 31
};

/** Such as "front left". */
const char* nameOf(Speaker speaker);

/** The channels of a stream. Channels are numbered in the order of the stream's elements. */
class ChannelLayout {
  public:
    /** channel_configuration 1..7. */
    static std::optional<ChannelLayout> fromConfiguration(int channelConfiguration);
    /** Nothing when the element has no channel or more than eight. */
    static std::optional<ChannelLayout> fromProgramConfig(const ZetAACPrgCfgElt& element);

    int channels() const { return channels_; }
    int elements() const { return elements_; }
    Speaker speaker(int channel) const { return speakers_[channel]; }
    /** Place of a channel in a WAV file, 0..channels()-1. */
    int wavPosition(int channel) const { return wavPositions_[channel]; }
    /** False when some channel has no known place; they stay in stream order then. */
    bool hasSpeakers() const { return hasSpeakers_; }

    /** The element's number in the layout, or -1. With a channel configuration the order of the
     *  elements counts, with a program config element their tags.
     *  @param order  audio elements that came before in the block */
    int find(ElementId id, int tag, int order) const;
    int firstChannel(int element) const { return slots_[element].firstChannel; }

    /** In words and stream order: "5.1 (front centre, ...)". */
    std::string describe() const;

    bool operator==(const ChannelLayout&) const = default;

  private:
    struct Slot {
        ElementId id = ElementId::kSingle;
        int tag = 0;
        int firstChannel = 0;
        bool operator==(const Slot&) const = default;
    };

    bool add(ElementId id, int tag, Speaker first, Speaker second);
    bool addProgramElements(const ZetAACPrgCfgElt& element);
    void assignWavPositions();

    std::array<Slot, kChannelsMax> slots_{};
    std::array<Speaker, kChannelsMax> speakers_{};
    std::array<int, kChannelsMax> wavPositions_{};
    int channels_ = 0;
    int elements_ = 0;
    bool byTag_ = false;
    bool hasSpeakers_ = true;
};

}  // namespace zetac::codec
