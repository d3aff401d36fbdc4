#include <stdexcept>

#include "decoder.h"

namespace peers {
namespace {

constexpr std::size_t kHeaderBytes = 4;
// ISO/IEC 11172-3 and 13818-3, 2.4.2.3: kbit/s of Layer III by ID and bitrate_index.
constexpr unsigned kBitRates[2][15] = {
    {0, 8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160},
    {0, 32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320}};
constexpr unsigned kSampleRates[2][3] = {{22050, 24000, 16000}, {44100, 48000, 32000}};

struct Mp3Header {
    unsigned id;  // 1: MPEG-1, 0: lower sampling frequencies
    unsigned sampleRate;
    unsigned channels;
    std::size_t frameBytes;
};

[[noreturn]] void fail(std::size_t offset, const char* what) {
    throw std::runtime_error("byte " + std::to_string(offset) + ": " + what);
}

Mp3Header readHeader(std::span<const std::uint8_t> b, std::size_t offset) {
    if (b.size() < kHeaderBytes) fail(offset, "stream ends within a frame header");
    if (b[0] != 0xff || (b[1] & 0xf6) != 0xf2) fail(offset, "no header of Layer III");
    const unsigned id = b[1] >> 3 & 1u;
    const unsigned bitrate_index = b[2] >> 4;
    const unsigned sampling_frequency = b[2] >> 2 & 3u;
    if (bitrate_index == 0 || bitrate_index == 15) fail(offset, "no bit rate");
    if (sampling_frequency == 3) fail(offset, "no such sampling rate");
    Mp3Header h{.id = id,
                .sampleRate = kSampleRates[id][sampling_frequency],
                .channels = b[3] >> 6 == 3 ? 1u : 2u,
                .frameBytes = 0};
    const unsigned slots = id == 1 ? 144000 : 72000;
    h.frameBytes = slots * kBitRates[id][bitrate_index] / h.sampleRate + (b[2] >> 1 & 1u);
    if (h.frameBytes > b.size()) fail(offset, "stream ends within a frame");
    return h;
}

}  // namespace

Stream splitMp3(std::vector<std::uint8_t> bytes) {
    Stream stream;
    stream.codec = Codec::mp3;
    stream.bytes = std::move(bytes);
    const std::span<const std::uint8_t> all(stream.bytes);
    const Mp3Header first = readHeader(all, 0);
    for (std::size_t at = 0; at < all.size();) {
        const Mp3Header h = readHeader(all.subspan(at), at);
        if (h.sampleRate != first.sampleRate || h.channels != first.channels)
            fail(at, "stream parameters change");
        stream.frames.push_back(all.subspan(at, h.frameBytes));
        at += h.frameBytes;
    }
    stream.sampleRate = first.sampleRate;
    stream.channels = first.channels;
    stream.samplesPerFrame = first.id == 1 ? 1152 : 576;
    return stream;
}

}  // namespace peers
