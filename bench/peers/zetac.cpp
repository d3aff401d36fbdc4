// This library, through the codec assemblies of the tool, to 16-bit PCM.
#include <aac_decoder.h>
#include <mp3_decoder.h>

#include <stdexcept>

#include "decoder.h"

namespace peers {
namespace {

class ZetacAac final : public Decoder {
  public:
    std::string_view name() const override { return kReferenceName; }
    std::string_view sampleFormat() const override { return "s16"; }

    // The blocks are found by decoding once, since only that tells where a block ends.
    void prepare(const Stream& stream) override {
        bytes_ = stream.bytes;
        bytes_.resize(bytes_.size() + zetac::codec::kReadAhead);
        const auto blocks = zetac::codec::openStream({bytes_.data(), stream.bytes.size()});
        if (!blocks) throw std::runtime_error("zetac: cannot start on this stream");
        zetac::codec::RawBlock block;
        rewind();
        while (blocks->next(block)) {
            const auto frame = decoder_->decode(block, pcm_.data());
            blocks->finish(frame.bytesUsed, !failed(frame.fault));
            blocks_.push_back(block);
        }
    }

    void rewind() override { decoder_ = std::make_unique<zetac::codec::AacDecoder>(); }

    Delivered decodeAll(Level level) override {
        Delivered out;
        for (const auto& block : blocks_) {
            const auto frame = decoder_->decode(block, pcm_.data());
            if (failed(frame.fault)) continue;
            ++out.frames;
            out.samples += ZETAC_AAC_FRAME_LEN;
            out.channels = static_cast<unsigned>(frame.channels);
            if (level == Level::measured) {
                const std::span pcm(pcm_.data(), size_t{ZETAC_AAC_FRAME_LEN} * out.channels);
                out.sumOfSquares += sumOfSquares(std::span<const Zet16s>(pcm), 0x1p15);
            }
        }
        return out;
    }

  private:
    std::vector<Zet8u> bytes_;
    std::vector<zetac::codec::RawBlock> blocks_;
    std::vector<Zet16s> pcm_ = std::vector<Zet16s>(zetac::codec::kPcmValuesMax);
    std::unique_ptr<zetac::codec::AacDecoder> decoder_;
};

class ZetacMp3 final : public Decoder {
  public:
    std::string_view name() const override { return kReferenceName; }
    std::string_view sampleFormat() const override { return "s16"; }

    void prepare(const Stream& stream) override {
        const auto frames = zetac::codec::Mp3Stream::open(stream.bytes);
        if (!frames) throw std::runtime_error("zetac: cannot start on this stream");
        zetac::codec::Mp3Frame frame;
        while (frames->next(frame)) frames_.push_back(frame);
        rewind();
    }

    void rewind() override { decoder_ = std::make_unique<zetac::codec::Mp3Decoder>(); }

    Delivered decodeAll(Level level) override {
        Delivered out;
        for (const auto& coded : frames_) {
            const auto frame = decoder_->decode(coded, pcm_.data());
            if (failed(frame.fault)) continue;
            ++out.frames;
            out.samples += static_cast<size_t>(frame.samples);
            out.channels = static_cast<unsigned>(frame.channels);
            if (level == Level::measured) {
                const std::span pcm(pcm_.data(), static_cast<size_t>(frame.samples) * out.channels);
                out.sumOfSquares += sumOfSquares(std::span<const Zet16s>(pcm), 0x1p15);
            }
        }
        return out;
    }

  private:
    std::vector<zetac::codec::Mp3Frame> frames_;
    std::vector<Zet16s> pcm_ = std::vector<Zet16s>(zetac::codec::kMp3PcmValuesMax);
    std::unique_ptr<zetac::codec::Mp3Decoder> decoder_;
};

}  // namespace

void addZetac(Field& field, Codec codec) {
    field.versions.push_back(std::string("zetac ") + zetacGetLibVersion()->Version);
    if (codec == Codec::aac) {
        field.decoders.push_back(std::make_unique<ZetacAac>());
    } else {
        field.decoders.push_back(std::make_unique<ZetacMp3>());
    }
}

}  // namespace peers
