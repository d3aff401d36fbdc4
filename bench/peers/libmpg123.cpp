// libmpg123 with the decoder that it picks for this processor, to 16-bit PCM.
#include <mpg123.h>

#include <algorithm>
#include <cstring>
#include <stdexcept>

#include "decoder.h"

namespace peers {
namespace {

struct Delete {
    void operator()(mpg123_handle* handle) const { mpg123_delete(handle); }
};

// The stream as a file in memory.
struct MemoryFile {
    std::span<const std::uint8_t> bytes;
    std::size_t at = 0;

    static mpg123_ssize_t read(void* self, void* to, std::size_t count) {
        auto& file = *static_cast<MemoryFile*>(self);
        count = std::min(count, file.bytes.size() - file.at);
        std::memcpy(to, file.bytes.data() + file.at, count);
        file.at += count;
        return static_cast<mpg123_ssize_t>(count);
    }

    static off_t seek(void* self, off_t offset, int whence) {
        auto& file = *static_cast<MemoryFile*>(self);
        const auto size = static_cast<off_t>(file.bytes.size());
        const off_t base = whence == SEEK_SET   ? 0
                           : whence == SEEK_CUR ? static_cast<off_t>(file.at)
                                                : size;
        if (base + offset < 0 || base + offset > size) return -1;
        file.at = static_cast<std::size_t>(base + offset);
        return base + offset;
    }
};

class Libmpg123Decoder final : public Decoder {
  public:
    std::string_view name() const override { return "libmpg123"; }
    std::string_view sampleFormat() const override { return "s16"; }

    void prepare(const Stream& stream) override {
        file_.bytes = stream.bytes;
        handle_.reset(mpg123_new(nullptr, nullptr));
        mpg123_handle* h = handle_.get();
        if (!h) throw std::runtime_error("libmpg123: cannot open");
        mpg123_param(h, MPG123_ADD_FLAGS, MPG123_QUIET, 0);
        mpg123_param(h, MPG123_REMOVE_FLAGS, MPG123_GAPLESS, 0);
        if (mpg123_format_none(h) != MPG123_OK ||
            mpg123_format(h, static_cast<long>(stream.sampleRate), MPG123_MONO | MPG123_STEREO,
                          MPG123_ENC_SIGNED_16) != MPG123_OK ||
            mpg123_replace_reader_handle(h, MemoryFile::read, MemoryFile::seek, nullptr) !=
                MPG123_OK)
            throw std::runtime_error("libmpg123: cannot configure");
        rewind();
    }

    void rewind() override {
        file_.at = 0;
        if (mpg123_open_handle(handle_.get(), &file_) != MPG123_OK)
            throw std::runtime_error("libmpg123: cannot start on this stream");
    }

    Delivered decodeAll(Level level) override {
        Delivered out;
        out.channels = channels_;
        for (;;) {
            off_t number = 0;
            unsigned char* pcm = nullptr;
            std::size_t bytes = 0;
            const int status = mpg123_decode_frame(handle_.get(), &number, &pcm, &bytes);
            if (status == MPG123_NEW_FORMAT) {
                takeFormat(out);
            } else if (status != MPG123_OK) {
                return out;
            }
            if (bytes > 0) take(out, pcm, bytes, level);
        }
    }

  private:
    // Announced before the first frame, but not again after a rewind.
    void takeFormat(Delivered& out) {
        long rate = 0;
        int channels = 0;
        int encoding = 0;
        mpg123_getformat(handle_.get(), &rate, &channels, &encoding);
        out.channels = channels_ = static_cast<unsigned>(channels);
    }

    static void take(Delivered& out, const unsigned char* pcm, std::size_t bytes, Level level) {
        const std::size_t values = bytes / sizeof(std::int16_t);
        ++out.frames;
        out.samples += values / out.channels;
        if (level != Level::measured) return;
        const std::span samples(reinterpret_cast<const std::int16_t*>(pcm), values);
        out.sumOfSquares += sumOfSquares(samples, 0x1p15);
    }

    MemoryFile file_;
    unsigned channels_ = 0;
    std::unique_ptr<mpg123_handle, Delete> handle_;
};

}  // namespace

void addLibmpg123(Field& field) {
    if (mpg123_init() != MPG123_OK) throw std::runtime_error("libmpg123: cannot start");
    std::unique_ptr<mpg123_handle, Delete> handle(mpg123_new(nullptr, nullptr));
    const char* decoder = handle ? mpg123_current_decoder(handle.get()) : nullptr;
    field.versions.push_back("libmpg123, API " + std::to_string(MPG123_API_VERSION) + ", decoder " +
                             (decoder ? decoder : "unknown"));
    field.decoders.push_back(std::make_unique<Libmpg123Decoder>());
}

}  // namespace peers
