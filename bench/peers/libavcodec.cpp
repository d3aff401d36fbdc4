// libavcodec's native decoders: for each codec one in floating, one in fixed point.
extern "C" {
#include <libavcodec/avcodec.h>
}

#include <cstring>
#include <new>
#include <stdexcept>

#include "decoder.h"

namespace peers {
namespace {

template <auto release>
struct Release {
    template <class T>
    void operator()(T* object) const {
        release(&object);
    }
};
using Context = std::unique_ptr<AVCodecContext, Release<avcodec_free_context>>;
using Packet = std::unique_ptr<AVPacket, Release<av_packet_free>>;
using Frame = std::unique_ptr<AVFrame, Release<av_frame_free>>;

// av_new_packet allocates the padding that the bit reader may run into, and counts references:
// sending the packet copies no data.
Packet makePacket(std::span<const std::uint8_t> frame) {
    Packet packet(av_packet_alloc());
    if (!packet || av_new_packet(packet.get(), static_cast<int>(frame.size())) < 0)
        throw std::bad_alloc();
    std::memcpy(packet->data, frame.data(), frame.size());
    return packet;
}

template <class Sample>
double planarSumOfSquares(const AVFrame& frame, double fullScale) {
    double sum = 0;
    for (int c = 0; c < frame.ch_layout.nb_channels; ++c) {
        const auto* plane = reinterpret_cast<const Sample*>(frame.extended_data[c]);
        sum +=
            sumOfSquares(std::span(plane, static_cast<std::size_t>(frame.nb_samples)), fullScale);
    }
    return sum;
}

double frameSumOfSquares(const AVFrame& frame) {
    switch (frame.format) {
        case AV_SAMPLE_FMT_FLTP:
            return planarSumOfSquares<float>(frame, 1.0);
        case AV_SAMPLE_FMT_S16P:
            return planarSumOfSquares<std::int16_t>(frame, 0x1p15);
        case AV_SAMPLE_FMT_S32P:
            return planarSumOfSquares<std::int32_t>(frame, 0x1p31);
        default:
            throw std::runtime_error("libavcodec: unexpected sample format");
    }
}

class LibavcodecDecoder final : public Decoder {
  public:
    explicit LibavcodecDecoder(const AVCodec* codec)
        : codec_(codec), name_(std::string("libavcodec ") + codec->name) {}

    std::string_view name() const override { return name_; }
    std::string_view sampleFormat() const override {
        const char* format = av_get_sample_fmt_name(context_->sample_fmt);
        return format ? format : "unknown";
    }

    void prepare(const Stream& stream) override {
        context_.reset(avcodec_alloc_context3(codec_));
        frame_.reset(av_frame_alloc());
        if (!context_ || !frame_) throw std::bad_alloc();
        context_->thread_count = 1;
        if (avcodec_open2(context_.get(), codec_, nullptr) < 0)
            throw std::runtime_error(name_ + ": cannot open");
        packets_.clear();
        for (auto frame : stream.frames) packets_.push_back(makePacket(frame));
    }

    void rewind() override { avcodec_flush_buffers(context_.get()); }

    Delivered decodeAll(Level level) override {
        Delivered out;
        for (const Packet& packet : packets_) {
            const std::size_t before = out.samples;
            if (avcodec_send_packet(context_.get(), packet.get()) < 0) continue;
            // One AVFrame for each raw data block of the ADTS frame.
            while (avcodec_receive_frame(context_.get(), frame_.get()) == 0) take(out, level);
            if (out.samples != before) ++out.frames;
        }
        return out;
    }

  private:
    void take(Delivered& out, Level level) const {
        out.samples += static_cast<std::size_t>(frame_->nb_samples);
        out.channels = static_cast<unsigned>(frame_->ch_layout.nb_channels);
        if (level == Level::measured) out.sumOfSquares += frameSumOfSquares(*frame_);
    }

    const AVCodec* codec_;
    std::string name_;
    Context context_;
    Frame frame_;
    std::vector<Packet> packets_;
};

std::string versionText() {
    const unsigned v = avcodec_version();
    return "libavcodec " + std::to_string(AV_VERSION_MAJOR(v)) + '.' +
           std::to_string(AV_VERSION_MINOR(v)) + '.' + std::to_string(AV_VERSION_MICRO(v)) + " (" +
           av_version_info() + ')';
}

}  // namespace

void addLibavcodec(Field& field, Codec codec) {
    static constexpr const char* kAac[] = {"aac", "aac_fixed"};
    static constexpr const char* kMp3[] = {"mp3float", "mp3"};
    av_log_set_level(AV_LOG_ERROR);
    field.versions.push_back(versionText());
    for (const char* codecName : codec == Codec::aac ? kAac : kMp3) {
        if (const AVCodec* found = avcodec_find_decoder_by_name(codecName))
            field.decoders.push_back(std::make_unique<LibavcodecDecoder>(found));
        else
            field.missing.push_back(std::string("libavcodec ") + codecName);
    }
}

}  // namespace peers
