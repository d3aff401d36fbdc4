// This library.
#include <zetac.h>

#include <array>
#include <cstring>
#include <stdexcept>

#include "encoder.h"

namespace quality {
namespace {

constexpr unsigned kKilobits[15] = {0,   32,  40,  48,  56,  64,  80, 96,
                                    112, 128, 160, 192, 224, 256, 320};
constexpr int kGranule = ZETAC_MP3_GRANULE_LEN;
constexpr int kHistory = 480;
constexpr int kPsyLead = 176;  // the filter bank is that much ahead of the model
constexpr int kWindow = kHistory + 1152 + 1024;

void check(ZetStatus s, const char* what) {
    if (s != zetStsOk) throw std::runtime_error(std::string(what) + " " + std::to_string(s));
}

class Coder {
  public:
    Coder(unsigned channels, unsigned sampleRate, unsigned kilobits) : channels_(static_cast<int>(channels)) {
        header_.ID = 1;
        header_.layer = 1;
        header_.protection_bit = 1;
        header_.sampling_frequency = sampleRate == 44100 ? 0 : sampleRate == 48000 ? 1 : 2;
        header_.mode = channels == 1 ? 3 : 1;
        while (kKilobits[header_.bitrate_index] != kilobits) ++header_.bitrate_index;
        slots_ = 144000.0 * kilobits / sampleRate;
        check(zetsBitReservoirInit_MP3(&reservoir_, &header_), "reservoir");
    }
    // pcm: interleaved, at psychoacoustic frame start; needs 480-176.. before and 1600 after.
    void frame(const Zet16s* pcm, std::vector<std::uint8_t>& out) {
        std::memset(info_, 0, sizeof info_);
        check(zetsPsychoacousticModelTwo_MP3_16s(pcm, psy_, bounds_[0], info_, &header_, &state_, nullptr, psyBuffer_), "psy");
        for (int g = 0; g < 2; ++g) {
            for (int c = 0; c < channels_; ++c) {
                const int r = g * channels_ + c;
                Zet32s sub[576];
                check(zetsAnalysisPQMF_MP3_16s32s(pcm + (576 * g + kPsyLead - kHistory) * channels_ + c, sub, channels_), "pqmf");
                check(zetsMDCTFwd_MP3_32s(sub, lines_[r], overlap_[c], &header_, &info_[r]), "mdct");
            }
            if (channels_ == 2) check(zetsJointStereoEncode_MP3_32s_I(lines_[2 * g], lines_[2 * g + 1], scf_[2 * g + 1], &header_, info_ + 2 * g, bounds_[g]), "stereo");
        }
        total_ += slots_;
        const int bytes = static_cast<int>(total_ + 1e-9) - written_;
        written_ += bytes;
        header_.padding_bit = bytes > static_cast<int>(slots_ + 1e-9);
        const int side = channels_ == 1 ? 17 : 32;
        const int begin = reservoir_.held / 8;
        const int mean = 8 * (bytes - 4 - side);
        const int heldBefore = reservoir_.held;
        check(zetsQuantize_MP3_32s_I(lines_[0], scf_[0], scfsi_, count1_, huf_, &header_, info_, psy_, bounds_[0], &reservoir_, mean, buffer_), "quantize");
        Zet8u main[8192] = {};
        Zet8u* p = main;
        int offset = 0;
        for (int r = 0; r < 2 * channels_; ++r) {
            const int g = r / channels_, c = r % channels_;
            check(zetsPackScaleFactors_MP3_8s1u(scf_[r], &p, &offset, &header_, &info_[r], scfsi_ + 4 * c, g, c), "scf");
            check(zetsHuffmanEncode_MP3_32s1u(lines_[r], &p, &offset, &header_, &info_[r], count1_[r], huf_[r]), "huff");
        }
        const int bits = static_cast<int>(p - main) * 8 + offset;
        if (bits % 8 || bits != heldBefore + mean - reservoir_.held) {
            if (bits > heldBefore + mean - reservoir_.held) throw std::runtime_error("bits " + std::to_string(bits));
        }
        const int mainBytes = (heldBefore + mean - reservoir_.held) / 8;
        // header and side
        Zet8u head[64];
        Zet8u* h = head;
        check(zetsPackFrameHeader_MP3(&header_, &h), "head");
        check(zetsPackSideInfo_MP3(info_, &h, begin, 0, scfsi_, &header_), "side");
        // layout: heads at their frame positions; main data fill in between
        frames_.push_back({static_cast<std::size_t>(bytes), {head, h}});
        mains_.insert(mains_.end(), main, main + mainBytes);
        (void)out;
    }
    std::vector<std::uint8_t> finish() {
        std::vector<std::uint8_t> out;
        std::size_t at = 0;
        for (auto& f : frames_) {
            out.insert(out.end(), f.head.begin(), f.head.end());
            for (std::size_t i = f.head.size(); i < f.bytes; ++i) out.push_back(at < mains_.size() ? mains_[at++] : 0);
        }
        return out;
    }

  private:
    struct Slot {
        std::size_t bytes;
        std::vector<std::uint8_t> head;
    };
    int channels_;
    ZetMP3Header header_{};
    double slots_, total_ = 0;
    int written_ = 0;
    ZetMP3BitReservoir reservoir_{};
    ZetMP3PsyState state_{};
    ZetMP3PsyOutput psy_[4]{};
    ZetMP3GranuleSideInfo info_[4]{};
    Zet32s bounds_[2][3]{};
    Zet32s lines_[4][576], overlap_[2][576]{};
    Zet8s scf_[4][ZETAC_MP3_SCF_MAX]{};
    int scfsi_[8], count1_[4], huf_[4];
    alignas(64) Zet8u psyBuffer_[ZETAC_MP3_PSY_BUFFER_LEN];
    alignas(64) Zet8u buffer_[ZETAC_MP3_QUANTIZE_BUFFER_LEN];
    std::vector<Slot> frames_;
    std::vector<std::uint8_t> mains_;
};

class Zetac final : public Encoder {
  public:
    std::string name() const override { return std::string("zetac ") + zetacGetLibVersion()->Version; }
    std::vector<std::uint8_t> encode(const Pcm& pcm, unsigned kilobits) const override {
        auto coder = std::make_unique<Coder>(pcm.channels, pcm.sampleRate, kilobits);
        std::vector<Zet16s> padded(1152 * pcm.channels);
        padded.insert(padded.end(), pcm.samples.begin(), pcm.samples.end());
        padded.resize(padded.size() + 4 * 1152 * pcm.channels);
        std::vector<std::uint8_t> out;
        for (std::size_t at = 1152; at + 1700 < padded.size() / pcm.channels; at += 1152)
            coder->frame(padded.data() + at * pcm.channels, out);
        return coder->finish();
    }
};

}  // namespace

std::unique_ptr<Encoder> makeZetac() {
    return std::make_unique<Zetac>();
}

}  // namespace quality
