// This library, through its C interface, to 16-bit PCM.
#include <zetac_codec.h>

#include <stdexcept>
#include <string>

#include "decoder.h"

namespace peers {
namespace {

class Zetac final : public Decoder {
  public:
    Zetac(std::string_view name, const ZetacDecoderOptions& options)
        : name_(name), options_(options) {}
    Zetac(const Zetac&) = delete;
    Zetac& operator=(const Zetac&) = delete;
    ~Zetac() override { zetacDecoderFree(decoder_); }

    std::string_view name() const override { return name_; }
    std::string_view sampleFormat() const override { return "s16"; }

    void prepare(const Stream& stream) override {
        bytes_ = stream.bytes;
        rewind();
    }

    void rewind() override {
        zetacDecoderFree(decoder_);
        if (zetacDecoderCreate(&decoder_, &options_) != ZETAC_OK) {
            throw std::runtime_error("zetac: cannot start on this stream");
        }
    }

    // All that an application does: bytes in, frames out.
    Delivered decodeAll(Level level) override {
        Delivered out;
        ZetacFrame frame = ZETAC_FRAME_INIT;
        std::size_t fed = 0;
        for (int status = ZETAC_OK; status != ZETAC_END;) {
            status = zetacDecoderTake(decoder_, &frame);
            if (status < 0) throw std::runtime_error("zetac: cannot decode this stream");
            if (status == ZETAC_OK && frame.damage.code == 0) count(frame, level, out);
            if (status != ZETAC_NEED_INPUT) continue;
            std::size_t taken = 0;
            zetacDecoderFeed(decoder_, bytes_.data() + fed, bytes_.size() - fed, &taken);
            fed += taken;
            if (fed == bytes_.size()) zetacDecoderFinish(decoder_);
        }
        return out;
    }

    /** Of what has been decoded. */
    bool hasSbr() const {
        ZetacStreamInfo info = ZETAC_STREAM_INFO_INIT;
        return zetacDecoderGetInfo(decoder_, &info) == ZETAC_OK && info.hasSbr != 0;
    }

  private:
    static void count(const ZetacFrame& frame, Level level, Delivered& out) {
        ++out.frames;
        out.samples += static_cast<std::size_t>(frame.samples);
        out.channels = static_cast<unsigned>(frame.channels);
        if (level != Level::measured) return;
        const std::span pcm(static_cast<const std::int16_t*>(frame.planes[0]),
                            static_cast<std::size_t>(frame.samples) * out.channels);
        out.sumOfSquares += sumOfSquares(pcm, 0x1p15);
    }

    std::string_view name_;
    ZetacDecoderOptions options_;
    std::span<const std::uint8_t> bytes_;
    ZetacDecoder* decoder_ = nullptr;
};

}  // namespace

/** Of HE-AAC both the fixed and the floating decoder take part. */
void addZetac(Field& field, const Stream& stream) {
    field.versions.push_back(std::string("zetac ") + zetacCodecVersion());
    ZetacDecoderOptions options = ZETAC_DECODER_OPTIONS_INIT;
    auto first = std::make_unique<Zetac>(kReferenceName, options);
    first->prepare(stream);
    first->decodeAll(Level::ignored);
    const bool hasSbr = first->hasSbr();
    field.decoders.push_back(std::move(first));
    if (!hasSbr) return;
    options.sbrArithmetic = ZETAC_SBR_FLOAT;
    field.decoders.push_back(std::make_unique<Zetac>("zetac float", options));
}

}  // namespace peers
