#include <array>
#include <stdexcept>

#include "decoder.h"

namespace peers {
namespace {

constexpr std::size_t kHeaderBytes = 7;
constexpr unsigned kBlockSamples = 1024;
// ISO/IEC 14496-3, table 1.18; the remaining indices are reserved or not allowed in ADTS.
constexpr std::array<unsigned, 13> kSampleRates{96000, 88200, 64000, 48000, 44100, 32000, 24000,
                                                22050, 16000, 12000, 11025, 8000,  7350};

struct AdtsHeader {
    unsigned sampling_frequency_index;
    unsigned channel_configuration;
    unsigned aac_frame_length;                    // bytes, header included
    unsigned number_of_raw_data_blocks_in_frame;  // less one

    bool sameParameters(const AdtsHeader& o) const {
        return sampling_frequency_index == o.sampling_frequency_index &&
               channel_configuration == o.channel_configuration &&
               number_of_raw_data_blocks_in_frame == o.number_of_raw_data_blocks_in_frame;
    }
};

[[noreturn]] void fail(std::size_t offset, const char* what) {
    throw std::runtime_error("byte " + std::to_string(offset) + ": " + what);
}

AdtsHeader readHeader(std::span<const std::uint8_t> b, std::size_t offset) {
    if (b.size() < kHeaderBytes) fail(offset, "stream ends within an ADTS header");
    // syncword and layer; the bit between them only tells MPEG-2 from MPEG-4.
    if (b[0] != 0xff || (b[1] & 0xf6) != 0xf0) fail(offset, "no ADTS syncword");
    AdtsHeader h{
        .sampling_frequency_index = (b[2] >> 2) & 15u,
        .channel_configuration = (b[2] & 1u) << 2 | b[3] >> 6,
        .aac_frame_length = (b[3] & 3u) << 11 | b[4] << 3u | b[5] >> 5,
        .number_of_raw_data_blocks_in_frame = b[6] & 3u,
    };
    if (h.sampling_frequency_index >= kSampleRates.size()) fail(offset, "no such sampling rate");
    if (h.aac_frame_length < kHeaderBytes) fail(offset, "frame shorter than its header");
    if (h.aac_frame_length > b.size()) fail(offset, "stream ends within a frame");
    return h;
}

}  // namespace

Stream splitAdts(std::vector<std::uint8_t> bytes) {
    Stream stream;
    stream.bytes = std::move(bytes);
    const std::span<const std::uint8_t> all(stream.bytes);
    const AdtsHeader first = readHeader(all, 0);
    for (std::size_t at = 0; at < all.size();) {
        const AdtsHeader h = readHeader(all.subspan(at), at);
        if (!h.sameParameters(first)) fail(at, "stream parameters change");
        stream.frames.push_back(all.subspan(at, h.aac_frame_length));
        at += h.aac_frame_length;
    }
    stream.sampleRate = kSampleRates[first.sampling_frequency_index];
    stream.channels = first.channel_configuration == 7 ? 8 : first.channel_configuration;
    stream.samplesPerFrame = kBlockSamples * (first.number_of_raw_data_blocks_in_frame + 1);
    return stream;
}

}  // namespace peers
