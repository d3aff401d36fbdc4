// Encodes WAV files with this library and with libmp3lame, decodes both with the same decoder, and
// prints how far the noise is above the masking threshold and how wide the sound has stayed.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <map>
#include <stdexcept>

#include "encoder.h"

namespace {

using namespace quality;

struct Figures {
    double nmr = 0, worst = 0, bandwidth = 0;
};

std::vector<std::unique_ptr<Encoder>> lineUp() {
    std::vector<std::unique_ptr<Encoder>> encoders;
    encoders.push_back(makeZetac());
#ifdef ENCODERS_LIBMP3LAME
    encoders.push_back(makeLibmp3lame());
#endif
    return encoders;
}

std::vector<std::string> findSources(const std::string& path) {
    if (!std::filesystem::is_directory(path)) return {path};
    std::vector<std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator(path))
        if (entry.path().extension() == ".wav") files.push_back(entry.path().string());
    std::sort(files.begin(), files.end());
    return files;
}

Figures judge(const Encoder& encoder, const Pcm& pcm, unsigned kilobits) {
    const auto bytes = encoder.encode(pcm, kilobits);
    const double seconds = static_cast<double>(pcm.frames()) / pcm.sampleRate;
    const double rate = 8e-3 * static_cast<double>(bytes.size()) / (seconds + 0.1);
    if (rate > 1.02 * kilobits) throw std::runtime_error(encoder.name() + " takes more bits");
    const Pcm decoded = decodeMp3(bytes);
    if (decoded.channels != pcm.channels || decoded.sampleRate != pcm.sampleRate)
        throw std::runtime_error(encoder.name() + " changes the format");
    const auto original = signalsOf(pcm);
    const auto result = signalsOf(decoded, findDelay(pcm, decoded));
    const Nmr nmr = measureNmr(original, result, pcm.sampleRate);
    return {nmr.segmental, nmr.worst, bandwidthOf(original, result, pcm.sampleRate)};
}

void printRow(const std::string& label, unsigned kilobits, const std::vector<Figures>& row) {
    std::printf("%-36s%6u", label.c_str(), kilobits);
    for (const Figures& f : row)
        std::printf("  %8.2f%8.2f%8.2f", f.nmr, f.worst, f.bandwidth / 1000);
    if (row.size() == 2) std::printf("%9.2f", row[0].nmr - row[1].nmr);
    std::printf("\n");
    std::fflush(stdout);
}

int run(const std::vector<std::string>& paths, const std::vector<unsigned>& rates) {
    const auto encoders = lineUp();
    if (encoders.empty()) throw std::runtime_error("this build has no encoder to judge");
    std::printf(
        "NMR: segmental noise-to-mask ratio in dB; 95 %%: what 5 %% of the frames exceed; "
        "kHz: bandwidth\n%-42s",
        "");
    for (const auto& encoder : encoders) std::printf("  %-24s", encoder->name().c_str());
    std::printf("\n%-36s%6s", "source", "kbit/s");
    for (std::size_t i = 0; i < encoders.size(); ++i)
        std::printf("  %8s%8s%8s", "NMR", "95 %", "kHz");
    std::printf("%9s\n", "NMR diff");
    std::map<unsigned, std::vector<Figures>> sums;
    std::map<unsigned, unsigned> counts;
    for (const auto& path : paths) {
        const Pcm pcm = readWav(path);
        const std::string name = std::filesystem::path(path).stem().string();
        if (pcm.sampleRate < 32000) {
            std::printf("%-36s  left out: %u Hz is not MPEG-1\n", name.c_str(), pcm.sampleRate);
            continue;
        }
        for (const unsigned kilobits : rates) {
            std::vector<Figures> row;
            for (const auto& encoder : encoders) row.push_back(judge(*encoder, pcm, kilobits));
            printRow(name, kilobits, row);
            auto& sum = sums[kilobits];
            sum.resize(row.size());
            ++counts[kilobits];
            for (std::size_t i = 0; i < row.size(); ++i) {
                sum[i].nmr += row[i].nmr;
                sum[i].worst += row[i].worst;
                sum[i].bandwidth += row[i].bandwidth;
            }
        }
    }
    for (auto& [kilobits, sum] : sums) {
        for (Figures& f : sum) {
            f.nmr /= counts[kilobits];
            f.worst /= counts[kilobits];
            f.bandwidth /= counts[kilobits];
        }
        printRow("mean", kilobits, sum);
    }
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    CLI::App app("Judges MP3 encoders by noise-to-mask ratio and bandwidth.");
    std::vector<std::string> sources = {ZETAC_STREAMS "/src"};
    std::vector<unsigned> rates = {64, 96, 128, 192, 320};
    app.add_option("source", sources, "WAV files, or a directory of them")->capture_default_str();
    app.add_option("--rates", rates, "in kbit/s")->capture_default_str()->delimiter(',');
    CLI11_PARSE(app, argc, argv);
    try {
        std::vector<std::string> paths;
        for (const auto& source : sources)
            for (auto& path : findSources(source)) paths.push_back(std::move(path));
        return run(paths, rates);
    } catch (const std::exception& e) {
        std::fprintf(stderr, "quality: %s\n", e.what());
        return 2;
    }
}
