// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "io/pcm_input.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <filesystem>

namespace zetac::tool {
namespace {

constexpr size_t kBlockSamples = 16384;

/** A whole multiple, else the next higher rate; of what is beyond all of them, the highest one
 * unless 44.1 kHz divides it. */
int encodedRate(int sampleRate) {
    constexpr int kRates[] = {32000, 44100, 48000};
    for (const int rate : kRates)
        if (rate % sampleRate == 0) return rate;
    for (const int rate : kRates)
        if (rate > sampleRate) return rate;
    return sampleRate % 44100 == 0 ? 44100 : 48000;
}

}  // namespace

PcmInput::PcmInput(const std::string& path, bool isMono) {
    open(path);
    if (info_.channels > 2) {
        throw Failure("has " + std::to_string(info_.channels) +
                      " channels; MP3 holds one or two, so mix it down first");
    }
    if (info_.samplerate < 1) throw Failure("has no sampling rate");
    channels_ = isMono ? 1 : info_.channels;
    sampleRate_ = encodedRate(info_.samplerate);
    if (sampleRate_ != info_.samplerate)
        resampler_.emplace(info_.samplerate, sampleRate_, channels_);
}

void PcmInput::open(const std::string& path) {
    if (path == "-") {
        static SF_VIRTUAL_IO io = {
            .get_filelen =
                [](void* user) {
                    return static_cast<sf_count_t>(static_cast<Memory*>(user)->data.bytes().size());
                },
            .seek =
                [](sf_count_t offset, int whence, void* user) {
                    auto* memory = static_cast<Memory*>(user);
                    const auto size = static_cast<sf_count_t>(memory->data.bytes().size());
                    const sf_count_t from = whence == SEEK_SET   ? 0
                                            : whence == SEEK_CUR ? memory->position
                                                                 : size;
                    return memory->position = std::clamp<sf_count_t>(from + offset, 0, size);
                },
            .read =
                [](void* target, sf_count_t count, void* user) {
                    auto* memory = static_cast<Memory*>(user);
                    const auto bytes =
                        memory->data.bytes().subspan(static_cast<size_t>(memory->position));
                    const auto part = std::min(static_cast<size_t>(count), bytes.size());
                    std::memcpy(target, bytes.data(), part);
                    memory->position += static_cast<sf_count_t>(part);
                    return static_cast<sf_count_t>(part);
                },
            .write = nullptr,
            .tell = [](void* user) { return static_cast<Memory*>(user)->position; }};
        memory_ = std::make_unique<Memory>(Memory{.data = FileData("-")});
        file_.reset(sf_open_virtual(&io, SFM_READ, &info_, memory_.get()));
    } else {
        std::error_code error;
        if (std::filesystem::is_directory(path, error)) throw Failure("is a folder");
        if (!std::filesystem::exists(path, error)) throw Failure("cannot be opened: no such file");
        file_.reset(sf_open(path.c_str(), SFM_READ, &info_));
    }
    if (!file_) {
        throw Failure(std::string("cannot be read as sound (WAV, FLAC, AIFF and others): ") +
                      sf_strerror(nullptr));
    }
}

double PcmInput::progress() const {
    if (info_.frames <= 0 || info_.frames == SF_COUNT_MAX) return 0;
    return std::min(1.0, static_cast<double>(position_) / static_cast<double>(info_.frames));
}

bool PcmInput::read(std::vector<Zet16s>& pcm) {
    pcm.clear();
    while (pcm.empty() && !isAtEnd_) {
        std::vector<float> samples(kBlockSamples * static_cast<size_t>(info_.channels));
        const sf_count_t count = sf_readf_float(file_.get(), samples.data(), kBlockSamples);
        if (sf_error(file_.get()) != 0)
            throw Failure(std::string("cannot be read: ") + sf_strerror(file_.get()));
        position_ += count;
        isAtEnd_ = count <= 0;
        samples.resize(static_cast<size_t>(std::max<sf_count_t>(count, 0) * info_.channels));
        if (channels_ < info_.channels) mixDown(samples);
        if (resampler_) samples = resampler_->process(samples, isAtEnd_);
        convert(samples, pcm);
    }
    return !pcm.empty();
}

void PcmInput::mixDown(std::vector<float>& samples) const {
    for (size_t i = 0; i < samples.size() / 2; ++i)
        samples[i] = 0.5f * (samples[2 * i] + samples[2 * i + 1]);
    samples.resize(samples.size() / 2);
}

/** To the nearest step. What is no number becomes silence. */
void PcmInput::convert(const std::vector<float>& samples, std::vector<Zet16s>& pcm) {
    pcm.resize(samples.size());
    for (size_t i = 0; i < samples.size(); ++i) {
        const float scaled = std::isnan(samples[i]) ? 0 : samples[i] * 32768;
        const float inside = std::clamp(scaled, -32768.0f, 32767.0f);
        limited_ += std::abs(scaled - inside) > 1;
        pcm[i] = static_cast<Zet16s>(std::lrint(inside));
    }
}

}  // namespace zetac::tool
