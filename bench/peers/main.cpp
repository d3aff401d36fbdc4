// Decodes one AAC (ADTS) or MP3 file with this library and with the peers that were found when the
// program was built, and prints how many times faster than real time each of them is.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include "measure.h"

namespace {

using namespace peers;

std::string defaultFile() {
    const std::string preferred = ZETAC_STREAMS "/bench/bench_128k_lc_44k.aac";
    if (std::filesystem::exists(preferred)) return preferred;
    return ZETAC_TEST_DATA "/aac/ff_lc_128_stereo_44k_music.aac";
}

std::vector<std::uint8_t> readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::vector<std::uint8_t> bytes(std::istreambuf_iterator<char>(in), {});
    if (bytes.empty()) throw std::runtime_error("cannot read it, or it is empty");
    return bytes;
}

Stream split(std::vector<std::uint8_t> bytes) {
    const bool isAdts = bytes.size() > 1 && bytes[0] == 0xff && (bytes[1] & 0xf6) == 0xf0;
    return isAdts ? splitAdts(std::move(bytes)) : splitMp3(std::move(bytes));
}

void addAacPeers(Field& field) {
#ifdef PEERS_LIBFAAD
    addLibfaad(field);
#else
    field.missing.emplace_back("libfaad");
#endif
}

void addMp3Peers(Field& field) {
#ifdef PEERS_LIBMPG123
    addLibmpg123(field);
#else
    field.missing.emplace_back("libmpg123");
#endif
#ifdef PEERS_LIBMAD
    addLibmad(field);
#else
    field.missing.emplace_back("libmad");
#endif
}

Field lineUp(const Stream& stream) {
    const Codec codec = stream.codec;
    Field field;
#ifdef PEERS_ZETAC
    addZetac(field, stream);
#else
    field.missing.emplace_back(kReferenceName);
#endif
#ifdef PEERS_LIBAVCODEC
    addLibavcodec(field, codec);
#else
    field.missing.emplace_back("libavcodec");
#endif
    if (codec == Codec::aac) {
        addAacPeers(field);
    } else {
        addMp3Peers(field);
    }
    return field;
}

std::string cpuModel() {
    std::ifstream in("/proc/cpuinfo");
    for (std::string line; std::getline(in, line);)
        if (line.starts_with("model name")) return line.substr(line.find(':') + 2);
    return "unknown";
}

const char* compiler() {
#ifdef __clang__
    return __VERSION__;
#else
    return "gcc " __VERSION__;
#endif
}

void printSetting(const Field& field, const Stream& stream, const std::string& path) {
    std::printf("cpu       %s\ncompiler  %s, %zu-bit\n", cpuModel().c_str(), compiler(),
                8 * sizeof(void*));
    for (const auto& version : field.versions) std::printf("with      %s\n", version.c_str());
    for (const auto& name : field.missing) std::printf("without   %s\n", name.c_str());
    std::printf("file      %s\n", std::filesystem::path(path).filename().c_str());
    std::printf("          %zu frames, %.2f s, %u Hz, %u channels, %.0f kbit/s\n\n",
                stream.frames.size(), stream.seconds(), stream.sampleRate, stream.channels,
                8e-3 * static_cast<double>(stream.bytes.size()) / stream.seconds());
}

void printRow(const Result& r, const Result* reference) {
    std::printf("%-22s", std::string(r.decoder->name()).c_str());
    if (!r.fault.empty()) {
        std::printf("  not timed: %s\n", r.fault.c_str());
        return;
    }
    std::printf("%10.1f%10.1f", r.median(), r.best());
    if (reference)
        std::printf("%14.2f", reference->median() / r.median());
    else
        std::printf("%14s", "-");
    std::printf("  %-5s%2u x%6u Hz%9.2f dB\n", std::string(r.decoder->sampleFormat()).c_str(),
                r.channels, r.sampleRate, r.levelDb);
}

void printTable(const std::vector<Result>& results) {
    const auto found = std::find_if(results.begin(), results.end(), [](const Result& r) {
        return r.decoder->name() == kReferenceName && r.fault.empty();
    });
    const Result* reference = found == results.end() ? nullptr : &*found;
    std::printf("%-22s%10s%10s%14s  %-17s%12s\n", "times real time", "median", "best", "zetac / it",
                "output", "level");
    for (const Result& r : results) printRow(r, reference);
}

// 0 if every decoder of the build delivered the whole stream.
int run(const std::string& path, const Options& options) {
    const Stream stream = split(readFile(path));
    const Field field = lineUp(stream);
    if (field.decoders.empty()) throw std::runtime_error("this build has no decoder to time");
    printSetting(field, stream, path);
    std::fflush(stdout);
    const std::vector<Result> results = measure(field, stream, options);
    printTable(results);
    const bool allWell =
        std::all_of(results.begin(), results.end(), [](auto& r) { return r.fault.empty(); });
    return allWell ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    CLI::App app(
        "Times decoders of AAC and MP3 against each other: one thread, frames in memory, no "
        "output.");
    std::string path = defaultFile();
    Options options;
    app.add_option("file", path, "AAC stream in ADTS framing, or MP3")->capture_default_str();
    app.add_option("--reps", options.reps, "repetitions, interleaved between the decoders")
        ->check(CLI::Range(1, 100000))
        ->capture_default_str();
    app.add_option("--min-time", options.minTime, "seconds that each repetition takes at least")
        ->check(CLI::NonNegativeNumber)
        ->capture_default_str();
    CLI11_PARSE(app, argc, argv);
    try {
        return run(path, options);
    } catch (const std::exception& e) {
        std::fprintf(stderr, "peers: %s: %s\n", path.c_str(), e.what());
        return 2;
    }
}
