#include "sound.h"

#include <mp3/decoder.h>
#include <sndfile.h>

#include <memory>
#include <stdexcept>

namespace quality {

Pcm readWav(const std::string& path) {
    SF_INFO info{};
    const std::unique_ptr<SNDFILE, int (*)(SNDFILE*)> file(sf_open(path.c_str(), SFM_READ, &info),
                                                           sf_close);
    if (!file) throw std::runtime_error(path + ": " + sf_strerror(nullptr));
    Pcm pcm;
    pcm.channels = static_cast<unsigned>(info.channels);
    pcm.sampleRate = static_cast<unsigned>(info.samplerate);
    pcm.samples.resize(static_cast<std::size_t>(info.frames) * pcm.channels);
    if (sf_readf_short(file.get(), pcm.samples.data(), info.frames) != info.frames)
        throw std::runtime_error(path + ": ends early");
    return pcm;
}

Pcm decodeMp3(const std::vector<std::uint8_t>& bytes) {
    const auto stream = zetac::codec::Mp3Stream::open(bytes);
    if (!stream) throw std::runtime_error("the encoder's output is no MP3 stream");
    const auto decoder = std::make_unique<zetac::codec::Mp3Decoder>();
    std::vector<Zet16s> block(zetac::codec::kMp3PcmValuesMax);
    Pcm pcm;
    zetac::codec::Mp3Frame frame;
    while (stream->next(frame)) {
        const auto decoded = decoder->decode(frame, block.data());
        if (decoded.fault != zetac::codec::Fault::kNone)
            throw std::runtime_error("a frame of the encoder's output cannot be decoded");
        pcm.channels = static_cast<unsigned>(decoded.channels);
        pcm.samples.insert(pcm.samples.end(), block.begin(),
                           block.begin() + decoded.samples * decoded.channels);
    }
    pcm.sampleRate = static_cast<unsigned>(decoder->sampleRate());
    return pcm;
}

std::vector<Signal> signalsOf(const Pcm& pcm, std::size_t delay) {
    std::vector<Signal> signals(pcm.channels);
    for (std::size_t i = delay * pcm.channels; i < pcm.samples.size(); ++i)
        signals[i % pcm.channels].push_back(pcm.samples[i] / 32768.0);
    return signals;
}

std::size_t findDelay(const Pcm& original, const Pcm& decoded) {
    constexpr std::size_t kMostDelay = 4096;
    const std::size_t length = std::min(original.frames(), decoded.frames());
    const std::size_t window =
        std::min<std::size_t>(length - std::min(length, kMostDelay), 1 << 16);
    double best = -1;
    std::size_t delay = 0;
    for (std::size_t d = 0; d <= kMostDelay; ++d) {
        double product = 0;
        for (std::size_t i = 0; i < window; ++i)
            product += 1.0 * original.samples[i * original.channels] *
                       decoded.samples[(i + d) * decoded.channels];
        if (product > best) {
            best = product;
            delay = d;
        }
    }
    return delay;
}

}  // namespace quality
