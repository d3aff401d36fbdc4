// libfaad, with 16-bit output.
#include <neaacdec.h>

#include <stdexcept>

#include "decoder.h"

namespace peers {
namespace {

struct Close {
    void operator()(void* decoder) const { NeAACDecClose(decoder); }
};

class LibfaadDecoder final : public Decoder {
  public:
    std::string_view name() const override { return "libfaad"; }
    std::string_view sampleFormat() const override { return "s16"; }
    std::size_t framesWithheld() const override { return 1; }

    void prepare(const Stream& stream) override {
        stream_ = &stream;
        decoder_.reset(NeAACDecOpen());
        if (!decoder_) throw std::runtime_error("libfaad: cannot open");
        configure();
        unsigned long sampleRate;
        unsigned char channels;
        const auto first = stream.frames.front();
        if (NeAACDecInit(decoder_.get(), const_cast<unsigned char*>(first.data()), first.size(),
                         &sampleRate, &channels) < 0)
            throw std::runtime_error("libfaad: cannot start on this stream");
    }

    void rewind() override { NeAACDecPostSeekReset(decoder_.get(), 0); }

    Delivered decodeAll(Level level) override {
        Delivered out;
        for (auto frame : stream_->frames) {
            NeAACDecFrameInfo info;
            const void* pcm = NeAACDecDecode(
                decoder_.get(), &info, const_cast<unsigned char*>(frame.data()), frame.size());
            if (info.error != 0 || info.bytesconsumed != frame.size()) continue;
            ++out.frames;
            if (info.samples == 0) continue;
            out.samples += info.samples / info.channels;
            out.channels = info.channels;
            if (level == Level::measured)
                out.sumOfSquares += sumOfSquares(
                    std::span(static_cast<const std::int16_t*>(pcm), info.samples), 0x1p15);
        }
        return out;
    }

  private:
    // Without dontUpSampleImplicitSBR low sampling rates are doubled whether or not there is SBR.
    void configure() {
        NeAACDecConfiguration* configuration = NeAACDecGetCurrentConfiguration(decoder_.get());
        configuration->outputFormat = FAAD_FMT_16BIT;
        configuration->dontUpSampleImplicitSBR = 1;
        if (!NeAACDecSetConfiguration(decoder_.get(), configuration))
            throw std::runtime_error("libfaad: cannot configure");
    }

    const Stream* stream_ = nullptr;
    std::unique_ptr<void, Close> decoder_;
};

}  // namespace

void addLibfaad(Field& field) {
    char* id = nullptr;
    char* copyright = nullptr;
    NeAACDecGetVersion(&id, &copyright);
    field.versions.push_back(std::string("libfaad ") + (id ? id : "of unknown version"));
    field.decoders.push_back(std::make_unique<LibfaadDecoder>());
}

}  // namespace peers
