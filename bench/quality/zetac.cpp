// This library, through the encoder of the command-line tool.
#include <mp3/encoder.h>

#include <algorithm>
#include <stdexcept>

#include "encoder.h"

namespace quality {
namespace {

void check(ZetStatus status) {
    if (status != zetStsOk)
        throw std::runtime_error("zetac fails with status " + std::to_string(status));
}

class Zetac final : public Encoder {
  public:
    std::string name() const override {
        return std::string("zetac ") + zetacGetLibVersion()->Version;
    }

    std::vector<std::uint8_t> encode(const Pcm& pcm, unsigned kilobits) const override {
        const zetac::codec::Mp3EncoderSettings settings = {
            .sampleRate = static_cast<int>(pcm.sampleRate),
            .channels = static_cast<int>(pcm.channels),
            .bitRate = static_cast<int>(kilobits)};
        const auto encoder = std::make_unique<zetac::codec::Mp3Encoder>(settings);
        std::vector<std::uint8_t> bytes;
        check(encoder->encode(pcm.samples.data(), pcm.frames(), bytes));
        check(encoder->finish(bytes));
        return bytes;
    }
};

}  // namespace

std::unique_ptr<Encoder> makeZetac() {
    return std::make_unique<Zetac>();
}

}  // namespace quality
