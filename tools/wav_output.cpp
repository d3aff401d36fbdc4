// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "wav_output.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <vector>

#include "file_data.h"

namespace zetac::tool {
namespace {

/** Sizes in a WAV file have 32 bits; the headers stay below a page. */
constexpr uint64_t kDataBytesMax = UINT32_MAX - 4096;

[[noreturn]] void failBecause(const std::string& what) {
    throw Failure(what + ": " + std::strerror(errno));
}

/** A file whose name is gone from the start, in the folder for temporary files. */
int openNameless() {
    std::error_code ignored;
    std::string name = std::filesystem::temp_directory_path(ignored) / "zetac-XXXXXX";
    const int descriptor = mkstemp(name.data());
    if (descriptor >= 0) unlink(name.c_str());
    return descriptor;
}

mode_t fileMode() {
    const mode_t mask = umask(0);
    umask(mask);
    return 0666 & ~mask;
}

}  // namespace

WavOutput::WavOutput(std::string path, int sampleRate, const codec::ChannelLayout& layout)
    : path_(std::move(path)), channels_(layout.channels()) {
    createTemporary();
    SF_INFO info{};
    info.samplerate = sampleRate;
    info.channels = channels_;
    info.format = SF_FORMAT_PCM_16 | (channels_ > 2 ? SF_FORMAT_WAVEX : SF_FORMAT_WAV);
    file_ = sf_open_fd(descriptor_, SFM_WRITE, &info, SF_FALSE);
    if (!file_) throw Failure(std::string("cannot be written: ") + sf_strerror(nullptr));
    if (channels_ > 2 && layout.hasSpeakers()) setChannelMask(layout);
}

WavOutput::~WavOutput() {
    if (file_) sf_close(file_);
    if (descriptor_ >= 0) close(descriptor_);
    if (!temporary_.empty()) unlink(temporary_.c_str());
}

void WavOutput::createTemporary() {
    if (path_ == "-") {
        descriptor_ = openNameless();
    } else {
        const auto folder = std::filesystem::path(path_).parent_path();
        std::error_code ignored;  // what matters shows when the file is made
        if (!folder.empty()) std::filesystem::create_directories(folder, ignored);
        temporary_ = path_ + ".XXXXXX";
        descriptor_ = mkstemp(temporary_.data());
        if (descriptor_ < 0) temporary_.clear();
    }
    if (descriptor_ < 0) failBecause("cannot be written");
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
    if (bytes_ > kDataBytesMax) throw Failure("is too long for a WAV file, which ends at 4 GiB");
    const auto count = static_cast<sf_count_t>(samplesPerChannel);
    if (sf_writef_short(file_, interleaved, count) != count) {
        throw Failure(std::string("cannot be written: ") + sf_strerror(file_));
    }
}

void WavOutput::commit() {
    const int status = sf_close(file_);
    file_ = nullptr;
    if (status != 0) throw Failure(std::string("cannot be written: ") + sf_error_number(status));
    if (path_ == "-") {
        sendToStandardOutput();
        return;
    }
    if (fchmod(descriptor_, fileMode()) != 0 ||
        std::rename(temporary_.c_str(), path_.c_str()) != 0) {
        failBecause("cannot be written");
    }
    temporary_.clear();
}

/** A WAV file holds its length in front, so that it can be sent only when it is complete. */
void WavOutput::sendToStandardOutput() {
    std::vector<char> chunk(1 << 16);
    if (lseek(descriptor_, 0, SEEK_SET) != 0) failBecause("cannot be read back");
    for (;;) {
        const ssize_t count = read(descriptor_, chunk.data(), chunk.size());
        if (count < 0) failBecause("cannot be read back");
        if (count == 0) break;
        const auto size = static_cast<size_t>(count);
        if (std::fwrite(chunk.data(), 1, size, stdout) != size) {
            failBecause("standard output cannot be written");
        }
    }
    if (std::fflush(stdout) != 0) failBecause("standard output cannot be written");
}

}  // namespace zetac::tool
