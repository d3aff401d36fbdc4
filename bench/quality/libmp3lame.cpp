// libmp3lame with its defaults, but at the sampling rate of the sound and without an information
// frame, which would be one frame of nothing.
#include <lame/lame.h>

#include <stdexcept>

#include "encoder.h"

namespace quality {
namespace {

class Libmp3lame final : public Encoder {
  public:
    std::string name() const override { return std::string("libmp3lame ") + get_lame_version(); }

    std::vector<std::uint8_t> encode(const Pcm& pcm, unsigned kilobits) const override {
        const std::unique_ptr<lame_global_flags, int (*)(lame_global_flags*)> lame(lame_init(),
                                                                                   lame_close);
        lame_set_num_channels(lame.get(), static_cast<int>(pcm.channels));
        lame_set_in_samplerate(lame.get(), static_cast<int>(pcm.sampleRate));
        lame_set_out_samplerate(lame.get(), static_cast<int>(pcm.sampleRate));
        lame_set_brate(lame.get(), static_cast<int>(kilobits));
        lame_set_bWriteVbrTag(lame.get(), 0);
        if (lame_init_params(lame.get()) < 0) throw std::runtime_error("libmp3lame refuses");
        const auto frames = static_cast<int>(pcm.frames());
        std::vector<std::uint8_t> bytes(pcm.frames() * 5 / 4 * 2 + 16384);
        auto* samples = const_cast<short*>(pcm.samples.data());
        const auto room = static_cast<int>(bytes.size());
        int count =
            pcm.channels == 2
                ? lame_encode_buffer_interleaved(lame.get(), samples, frames, bytes.data(), room)
                : lame_encode_buffer(lame.get(), samples, samples, frames, bytes.data(), room);
        if (count < 0) throw std::runtime_error("libmp3lame fails");
        count += lame_encode_flush(lame.get(), bytes.data() + count, room - count);
        bytes.resize(static_cast<std::size_t>(count));
        return bytes;
    }
};

}  // namespace

std::unique_ptr<Encoder> makeLibmp3lame() {
    return std::make_unique<Libmp3lame>();
}

}  // namespace quality
