// libmad, to the fixed-point samples of 28 fractional bits that it delivers.
#include <mad.h>

#include "decoder.h"

namespace peers {
namespace {

class LibmadDecoder final : public Decoder {
  public:
    LibmadDecoder() = default;
    LibmadDecoder(const LibmadDecoder&) = delete;
    LibmadDecoder& operator=(const LibmadDecoder&) = delete;
    ~LibmadDecoder() override {
        if (isOpen_) close();
    }

    std::string_view name() const override { return "libmad"; }
    std::string_view sampleFormat() const override { return "q28"; }

    void prepare(const Stream& stream) override {
        bytes_ = stream.bytes;
        bytes_.resize(bytes_.size() + MAD_BUFFER_GUARD);
        rewind();
    }

    void rewind() override {
        if (isOpen_) close();
        mad_stream_init(&stream_);
        mad_frame_init(&frame_);
        mad_synth_init(&synth_);
        mad_stream_buffer(&stream_, bytes_.data(), bytes_.size());
        isOpen_ = true;
    }

    Delivered decodeAll(Level level) override {
        Delivered out;
        for (;;) {
            if (mad_frame_decode(&frame_, &stream_) != 0) {
                if (MAD_RECOVERABLE(stream_.error)) continue;
                return out;
            }
            mad_synth_frame(&synth_, &frame_);
            ++out.frames;
            out.samples += synth_.pcm.length;
            out.channels = synth_.pcm.channels;
            if (level == Level::measured) measure(out);
        }
    }

  private:
    void close() {
        mad_frame_finish(&frame_);
        mad_stream_finish(&stream_);
        isOpen_ = false;
    }

    void measure(Delivered& out) const {
        for (unsigned c = 0; c < synth_.pcm.channels; ++c) {
            const std::span<const mad_fixed_t> plane(synth_.pcm.samples[c], synth_.pcm.length);
            out.sumOfSquares += sumOfSquares(plane, MAD_F_ONE);
        }
    }

    std::vector<std::uint8_t> bytes_;
    mad_stream stream_;
    mad_frame frame_;
    mad_synth synth_;
    bool isOpen_ = false;
};

}  // namespace

void addLibmad(Field& field) {
    field.versions.push_back(std::string("libmad ") + mad_version + " (" + mad_build + ')');
    field.decoders.push_back(std::make_unique<LibmadDecoder>());
}

}  // namespace peers
