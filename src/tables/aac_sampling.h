// What the sampling frequency index and the channel configuration stand for.
#pragma once

#include <cstdint>

namespace zetac::tables {

// Sampling frequency in Hz by samplingFrequencyIndex (ISO/IEC 14496-3, subpart 1); 13 and 14 are
// reserved, 15 announces an explicit frequency. All three are 0 here.
inline constexpr std::int32_t kSamplingFrequency[16] = {96000, 88200, 64000, 48000, 44100, 32000,
                                                        24000, 22050, 16000, 12000, 11025, 8000,
                                                        7350,  0,     0,     0};

// The lowest explicit frequency that uses the tables of each index (ISO/IEC 14496-3, subpart 4).
inline constexpr std::int32_t kLowestExplicitFrequency[12] = {
    92017, 75132, 55426, 46009, 37566, 27713, 23004, 18783, 13856, 11502, 9391, 0};

// PRED_SFB_MAX of the Main profile predictor by sampling_frequency_index (ISO/IEC 14496-3, 4.6.6).
inline constexpr std::int32_t kPredSfbMax[13] = {33, 33, 38, 40, 40, 40, 41,
                                                 41, 37, 37, 37, 34, 34};

// id_syn_ele of the elements that carry audio channels.
enum class AudioElement : std::uint8_t { kSingleChannel = 0, kChannelPair = 1, kLfe = 3 };

// The elements of a raw data block by channelConfiguration (ISO/IEC 14496-3, subpart 1), in order.
struct ChannelConfiguration {
    std::int32_t channels;
    std::int32_t numElements;
    AudioElement elements[5];
};

inline constexpr auto kSce = AudioElement::kSingleChannel;
inline constexpr auto kCpe = AudioElement::kChannelPair;
inline constexpr auto kLfe = AudioElement::kLfe;

// Configuration 0 is spelt out by a program configuration element.
inline constexpr ChannelConfiguration kChannelConfiguration[8] = {
    {0, 0, {}},
    {1, 1, {kSce}},                          // centre
    {2, 1, {kCpe}},                          // left and right
    {3, 2, {kSce, kCpe}},                    // centre; left and right
    {4, 3, {kSce, kCpe, kSce}},              // the same; rear centre
    {5, 3, {kSce, kCpe, kCpe}},              // centre; front pair; rear pair
    {6, 4, {kSce, kCpe, kCpe, kLfe}},        // the same; low frequencies
    {8, 5, {kSce, kCpe, kCpe, kCpe, kLfe}},  // centre; inner and outer front pair; rear pair; low
};

}  // namespace zetac::tables
