// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "io/wav_output.h"

#include <cstdint>
#include <vector>

#include "io/failure.h"

namespace zetac::tool {
namespace {

/** Sizes in a WAV file have 32 bits; the headers stay below a page. */
constexpr uint64_t kDataBytesMax = UINT32_MAX - 4096;

}  // namespace

WavOutput::WavOutput(const std::string& path, bool mayReplace, int sampleRate,
                     const codec::ChannelLayout& layout)
    : output_(path, mayReplace), channels_(layout.channels()) {
    SF_INFO info{};
    info.samplerate = sampleRate;
    info.channels = channels_;
    info.format = SF_FORMAT_PCM_16 | (channels_ > 2 ? SF_FORMAT_WAVEX : SF_FORMAT_WAV);
    file_ = sf_open_fd(output_.descriptor(), SFM_WRITE, &info, SF_FALSE);
    if (!file_) fail(sf_strerror(nullptr));
    if (channels_ > 2 && layout.hasSpeakers()) setChannelMask(layout);
}

WavOutput::~WavOutput() {
    if (file_) sf_close(file_);
}

void WavOutput::fail(const char* reason) const {
    throw Failure(output_.name(), std::string("cannot be written: ") + reason);
}

void WavOutput::setChannelMask(const codec::ChannelLayout& layout) {
    static constexpr int kMap[] = {SF_CHANNEL_MAP_LEFT,
                                   SF_CHANNEL_MAP_RIGHT,
                                   SF_CHANNEL_MAP_CENTER,
                                   SF_CHANNEL_MAP_LFE,
                                   SF_CHANNEL_MAP_REAR_LEFT,
                                   SF_CHANNEL_MAP_REAR_RIGHT,
                                   SF_CHANNEL_MAP_FRONT_LEFT_OF_CENTER,
                                   SF_CHANNEL_MAP_FRONT_RIGHT_OF_CENTER,
                                   SF_CHANNEL_MAP_REAR_CENTER,
                                   SF_CHANNEL_MAP_SIDE_LEFT,
                                   SF_CHANNEL_MAP_SIDE_RIGHT};
    std::vector<int> map(static_cast<size_t>(channels_));
    for (int c = 0; c < channels_; ++c) {
        map[static_cast<size_t>(layout.wavPosition(c))] = kMap[static_cast<int>(layout.speaker(c))];
    }
    sf_command(file_, SFC_SET_CHANNEL_MAP_INFO, map.data(),
               static_cast<int>(map.size() * sizeof(int)));
}

void WavOutput::write(const Zet16s* interleaved, size_t samplesPerChannel) {
    bytes_ += samplesPerChannel * static_cast<size_t>(channels_) * sizeof(Zet16s);
    if (bytes_ > kDataBytesMax) fail("a WAV file ends at 4 GiB");
    const auto count = static_cast<sf_count_t>(samplesPerChannel);
    if (sf_writef_short(file_, interleaved, count) != count) {
        fail(sf_strerror(file_));
    }
}

void WavOutput::commit() {
    const int status = sf_close(file_);
    file_ = nullptr;
    if (status != 0) fail(sf_error_number(status));
    output_.commit();
}

}  // namespace zetac::tool
