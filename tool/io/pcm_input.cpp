// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "io/pcm_input.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <mutex>
#include <sstream>

#include "io/descriptor.h"

namespace zetac::tool {
namespace {

constexpr size_t kBlockSamples = 16384;
constexpr int kRateMin = 1000;
constexpr int kRateMax = 768000;

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

/** libsndfile remembers in one place for all threads why a file could not be opened. */
std::mutex openMutex;

template <class Open>
SNDFILE* openSound(const Open& open) {
    const std::lock_guard lock(openMutex);
    SNDFILE* file = open();
    if (file) return file;
    throw Failure(std::string("cannot be read as sound (WAV, FLAC, AIFF and others): ") +
                  sf_strerror(nullptr));
}

/** Bytes that the headers claim and the file does not have. libsndfile goes by what is there, and
 *  tells of it in its log alone: "data : 192000 (should be 95979)". Programs that write into a pipe
 *  claim 2 GiB or more. */
uint64_t missingBytes(const std::string& line) {
    constexpr uint64_t kUnknownBytes = 0x7FFFF000;
    static constexpr const char* kSizes[] = {"RIFF", "riff", "Riff size", "data",
                                             "FORM", "SSND", "Data Size"};
    char name[16] = "";
    unsigned long long claimed = 0, real = 0;
    if (std::sscanf(line.c_str(), " %15[^:]: %llu (should be %llu)", name, &claimed, &real) != 3)
        return 0;
    const std::string_view trimmed(name, std::string_view(name).find_last_not_of(' ') + 1);
    if (std::ranges::find(kSizes, trimmed) == std::end(kSizes)) return 0;
    return claimed > real && claimed < kUnknownBytes ? claimed - real : 0;
}

std::string damageInLog(SNDFILE* file) {
    std::array<char, 16384> log{};
    sf_command(file, SFC_GET_LOG_INFO, log.data(), log.size() - 1);
    std::istringstream lines(log.data());
    for (std::string line; std::getline(lines, line);) {
        // A file may lack the byte that makes its last chunk even.
        if (const uint64_t bytes = missingBytes(line); bytes > 1)
            return "is cut off: its header claims " + std::to_string(bytes) + " bytes more";
        if (line.find("ended unexpectedly") != std::string::npos ||
            line.find("truncated") != std::string::npos) {
            return "is cut off before the end of its stream";
        }
    }
    return "";
}

}  // namespace

PcmInput::PcmInput(const std::string& path, bool isMono) {
    open(path);
    if (info_.channels > 2) {
        throw Failure("has " + std::to_string(info_.channels) +
                      " channels; MP3 holds one or two, so mix it down first");
    }
    if (info_.samplerate < kRateMin || info_.samplerate > kRateMax) {
        throw Failure("has a sampling rate of " + std::to_string(info_.samplerate) +
                      " Hz; from 1 to 768 kHz it can be encoded");
    }
    channels_ = isMono ? 1 : info_.channels;
    sampleRate_ = encodedRate(info_.samplerate);
    if (sampleRate_ == info_.samplerate) return;
    resampler_.emplace(info_.samplerate, sampleRate_, channels_);
    resampled_.resize(kBlockSamples * static_cast<size_t>(channels_));
}

void PcmInput::open(const std::string& path) {
    struct stat status {};
    if (path != "-" && stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode)) {
        const Descriptor probe(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
        if (!probe.isOpen())
            throw Failure(std::string("cannot be opened: ") + std::strerror(errno));
        file_.reset(openSound([&] { return sf_open(path.c_str(), SFM_READ, &info_); }));
        return;
    }
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
    memory_ = std::make_unique<Memory>(Memory{.data = FileData(path)});
    file_.reset(openSound([&] { return sf_open_virtual(&io, SFM_READ, &info_, memory_.get()); }));
}

double PcmInput::progress() const {
    if (info_.frames <= 0 || info_.frames == SF_COUNT_MAX) return 0;
    return std::min(1.0, static_cast<double>(position_) / static_cast<double>(info_.frames));
}

std::string PcmInput::damage() const {
    const bool isShort = info_.frames != SF_COUNT_MAX && position_ < info_.frames;
    if (!isShort && error_.empty()) return damageInLog(file_.get());
    std::string text = "ends after " + std::to_string(position_);
    if (isShort) text += " of " + std::to_string(info_.frames);
    return text + " samples" + (error_.empty() ? "" : ": " + error_);
}

/** The next block of the file, in the channels of the output; empty at the end. */
void PcmInput::fill() {
    block_.resize(kBlockSamples * static_cast<size_t>(info_.channels));
    const sf_count_t count = sf_readf_float(file_.get(), block_.data(), kBlockSamples);
    if (sf_error(file_.get()) != 0) error_ = sf_strerror(file_.get());
    if (!error_.empty() && position_ + count == 0) throw Failure("cannot be read: " + error_);
    position_ += std::max<sf_count_t>(count, 0);
    isAtEnd_ = count <= 0;
    block_.resize(static_cast<size_t>(std::max<sf_count_t>(count, 0) * info_.channels));
    if (channels_ < info_.channels) mixDown(block_);
    left_ = block_;
}

bool PcmInput::read(std::vector<Zet16s>& pcm) {
    pcm.clear();
    while (pcm.empty()) {
        if (left_.empty() && !isAtEnd_) fill();
        if (resampler_) {
            const size_t samples = resampler_->process(left_, resampled_);
            convert(std::span(resampled_).first(samples * static_cast<size_t>(channels_)), pcm);
        } else {
            convert(left_, pcm);
            left_ = {};
        }
        if (pcm.empty() && left_.empty() && isAtEnd_) return false;
    }
    return true;
}

void PcmInput::mixDown(std::vector<float>& samples) const {
    for (size_t i = 0; i < samples.size() / 2; ++i)
        samples[i] = 0.5f * (samples[2 * i] + samples[2 * i + 1]);
    samples.resize(samples.size() / 2);
}

/** To the nearest step. What is no number becomes silence. */
void PcmInput::convert(std::span<const float> samples, std::vector<Zet16s>& pcm) {
    pcm.resize(samples.size());
    for (size_t i = 0; i < samples.size(); ++i) {
        const float scaled = std::isnan(samples[i]) ? 0 : samples[i] * 32768;
        const float inside = std::clamp(scaled, -32768.0f, 32767.0f);
        limited_ += std::abs(scaled - inside) > 1;
        pcm[i] = static_cast<Zet16s>(std::lrint(inside));
    }
}

}  // namespace zetac::tool
