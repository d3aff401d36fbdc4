// This library, through its encoder object.
#include <zetac_codec.h>

#include <stdexcept>

#include "encoder.h"

namespace quality {
namespace {

void check(ZetacStatus status) {
    if (status < 0)
        throw std::runtime_error(std::string("zetac fails: ") + zetacStatusText(status));
}

using Handle = std::unique_ptr<ZetacEncoder, void (*)(ZetacEncoder*)>;

Handle open(const Pcm& pcm, unsigned kilobits) {
    ZetacEncoderOptions options = ZETAC_ENCODER_OPTIONS_INIT;
    options.sampleRate = static_cast<int>(pcm.sampleRate);
    options.channels = static_cast<int>(pcm.channels);
    options.bitRate = static_cast<int>(1000 * kilobits);
    options.lacksInfo = 1;
    ZetacEncoder* encoder = nullptr;
    check(zetacEncoderCreate(&encoder, &options));
    return {encoder, zetacEncoderFree};
}

void takePackets(ZetacEncoder* encoder, std::vector<std::uint8_t>& bytes) {
    ZetacPacket packet = ZETAC_PACKET_INIT;
    while (zetacEncoderTake(encoder, &packet) == ZETAC_OK)
        bytes.insert(bytes.end(), packet.data, packet.data + packet.bytes);
}

class Zetac final : public Encoder {
  public:
    std::string name() const override { return std::string("zetac ") + zetacCodecVersion(); }

    std::vector<std::uint8_t> encode(const Pcm& pcm, unsigned kilobits) const override {
        const Handle encoder = open(pcm, kilobits);
        std::vector<std::uint8_t> bytes;
        for (std::size_t at = 0; at < pcm.frames();) {
            const void* plane = &pcm.samples[at * pcm.channels];
            std::size_t taken = 0;
            check(zetacEncoderFeed(encoder.get(), &plane, pcm.frames() - at, &taken));
            at += taken;
            takePackets(encoder.get(), bytes);
        }
        check(zetacEncoderFinish(encoder.get()));
        takePackets(encoder.get(), bytes);
        return bytes;
    }
};

}  // namespace

std::unique_ptr<Encoder> makeZetac() {
    return std::make_unique<Zetac>();
}

}  // namespace quality
