// What a decoder must offer to be timed against the others.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace peers {

enum class Codec { aac, mp3 };

// A coded stream in memory, split into the frames that a demultiplexer would hand to a decoder.
// The frames point into `bytes`, so a stream can be moved but not copied.
struct Stream {
    Stream() = default;
    Stream(Stream&&) = default;
    Stream& operator=(Stream&&) = default;

    Codec codec = Codec::aac;
    std::vector<std::uint8_t> bytes;
    std::vector<std::span<const std::uint8_t>> frames;
    unsigned sampleRate = 0;       // of the core coder, in hertz
    unsigned channels = 0;         // 0 if the header leaves them to the payload
    unsigned samplesPerFrame = 0;  // per channel, of the core coder; the same for every frame

    double seconds() const { return 1.0 * frames.size() * samplesPerFrame / sampleRate; }
};

// What one decode of the whole stream produced.
struct Delivered {
    std::size_t frames = 0;   // decoded without error
    std::size_t samples = 0;  // per channel
    unsigned channels = 0;
    double sumOfSquares = 0;  // over all channels, full scale = 1; only if asked for
};

enum class Level { ignored, measured };

class Decoder {
  public:
    virtual ~Decoder() = default;

    virtual std::string_view name() const = 0;
    virtual std::string_view sampleFormat() const = 0;
    // Leading frames that are decoded but whose output the decoder keeps for itself.
    virtual std::size_t framesWithheld() const { return 0; }

    // Opens the decoder and brings the frames into the form it takes; throws on failure.
    // The stream outlives the decoder.
    virtual void prepare(const Stream& stream) = 0;
    // Back to the state before the first frame.
    virtual void rewind() = 0;
    // The only part under the clock: every frame, in order, to PCM in memory.
    virtual Delivered decodeAll(Level level) = 0;
};

template <class Sample>
double sumOfSquares(std::span<const Sample> pcm, double fullScale) {
    double sum = 0;
    for (Sample s : pcm) sum += (s / fullScale) * (s / fullScale);
    return sum;
}

// The decoders of this build and, for the report, what they are made of and which are not here.
struct Field {
    std::vector<std::unique_ptr<Decoder>> decoders;
    std::vector<std::string> versions;
    std::vector<std::string> missing;
};

// One per source file; main calls those that were compiled in and know the codec. This library's
// own decoder comes first in the field, under kReferenceName.
inline constexpr std::string_view kReferenceName = "zetac";
void addZetac(Field& field, const Stream& stream);
void addLibavcodec(Field& field, Codec codec);
void addLibfaad(Field& field);    // AAC
void addLibmad(Field& field);     // MP3
void addLibmpg123(Field& field);  // MP3

// Splits an ADTS stream (ISO/IEC 14496-3, 1.A.2.2); throws std::runtime_error if it is not one
// from the first byte to the last, or if its parameters change on the way.
Stream splitAdts(std::vector<std::uint8_t> bytes);

// The same for MPEG-1 and MPEG-2 Layer III (ISO/IEC 11172-3, 2.4.1) without free format.
Stream splitMp3(std::vector<std::uint8_t> bytes);

}  // namespace peers
