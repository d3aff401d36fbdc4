// This library, through the codec assemblies of the tool, to 16-bit PCM.
#include <aac/decoder.h>
#include <mp3/decoder.h>

#include <stdexcept>

#include "decoder.h"

namespace peers {
namespace {

/** What its readers need behind a stream. */
std::vector<Zet8u> padded(std::span<const std::uint8_t> bytes) {
    std::vector<Zet8u> result(bytes.begin(), bytes.end());
    result.resize(result.size() + zetac::codec::kReadAhead);
    return result;
}

bool carriesPs(const Stream& stream) {
    const std::vector<Zet8u> bytes = padded(stream.bytes);
    return zetac::codec::carriesPs({bytes.data(), stream.bytes.size()});
}

bool carriesSbr(const Stream& stream) {
    const std::vector<Zet8u> bytes = padded(stream.bytes);
    return zetac::codec::carriesSbr({bytes.data(), stream.bytes.size()});
}

class ZetacAac final : public Decoder {
  public:
    ZetacAac(std::string_view name, zetac::codec::DecoderOptions options)
        : name_(name), options_(options) {}

    std::string_view name() const override { return name_; }
    std::string_view sampleFormat() const override { return "s16"; }

    // The blocks are found by decoding once, since only that tells where a block ends.
    void prepare(const Stream& stream) override {
        bytes_ = padded(stream.bytes);
        const auto blocks = zetac::codec::openStream({bytes_.data(), stream.bytes.size()});
        if (!blocks) throw std::runtime_error("zetac: cannot start on this stream");
        zetac::codec::RawBlock block;
        rewind();
        while (blocks->next(block)) {
            const auto frame = decoder_->decode(block, pcm_.data());
            blocks->finish(frame.bytesUsed, !failed(frame.fault));
            blocks_.push_back(block);
        }
        rewind();
    }

    void rewind() override { decoder_ = std::make_unique<zetac::codec::AacDecoder>(options_); }

    Delivered decodeAll(Level level) override {
        Delivered out;
        for (const auto& block : blocks_) {
            const auto frame = decoder_->decode(block, pcm_.data());
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
    std::string_view name_;
    zetac::codec::DecoderOptions options_;
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

/** Of HE-AAC both the fixed and the floating decoder take part. */
void addZetac(Field& field, const Stream& stream) {
    field.versions.push_back(std::string("zetac ") + zetacGetLibVersion()->Version);
    if (stream.codec == Codec::mp3) {
        field.decoders.push_back(std::make_unique<ZetacMp3>());
        return;
    }
    zetac::codec::DecoderOptions options;
    const bool hasSbr = carriesSbr(stream);
    if (hasSbr) options.sbr = zetac::codec::SbrOutput::kDouble;
    options.expectPs = hasSbr && carriesPs(stream);
    field.decoders.push_back(std::make_unique<ZetacAac>(kReferenceName, options));
    if (!hasSbr) return;
    options.isFloat = true;
    field.decoders.push_back(std::make_unique<ZetacAac>("zetac float", options));
}

}  // namespace peers
