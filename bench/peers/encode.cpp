// Encodes a minute of sound to MP3 with this library and with libmp3lame, one thread each and
// nothing but the encoding under the clock, and prints how many times faster than real time each
// of them is.
#include <encoder.h>
#include <time.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <limits>

namespace {

using namespace quality;

// Process CPU time, so that other programs do not count.
double cpuSeconds() {
    timespec t;
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
    return static_cast<double>(t.tv_sec) + 1e-9 * static_cast<double>(t.tv_nsec);
}

struct Contestant {
    std::unique_ptr<Encoder> encoder;
    double best = std::numeric_limits<double>::infinity();  // seconds
    std::size_t bytes = 0;
};

std::vector<Contestant> lineUp() {
    std::vector<Contestant> contestants;
    contestants.push_back({makeZetac()});
#ifdef ENCODERS_LIBMP3LAME
    contestants.push_back({makeLibmp3lame()});
#endif
    return contestants;
}

Pcm repeated(const Pcm& pcm, double seconds) {
    Pcm result = pcm;
    const auto enough = static_cast<std::size_t>(seconds * pcm.sampleRate) * pcm.channels;
    result.samples.clear();
    while (result.samples.size() < enough)
        result.samples.insert(result.samples.end(), pcm.samples.begin(), pcm.samples.end());
    result.samples.resize(enough);
    return result;
}

void run(const Pcm& pcm, unsigned kilobits, unsigned reps) {
    auto contestants = lineUp();
    for (unsigned rep = 0; rep < reps; ++rep) {
        for (Contestant& c : contestants) {
            const double start = cpuSeconds();
            c.bytes = c.encoder->encode(pcm, kilobits).size();
            c.best = std::min(c.best, cpuSeconds() - start);
        }
    }
    const double seconds = static_cast<double>(pcm.frames()) / pcm.sampleRate;
    std::printf("%-20s%12s%12s%14s\n", "", "kbit/s", "x real time", "zetac / it");
    for (const Contestant& c : contestants)
        std::printf("%-20s%12.1f%12.1f%14.2f\n", c.encoder->name().c_str(),
                    8e-3 * static_cast<double>(c.bytes) / seconds, seconds / c.best,
                    c.best / contestants[0].best);
}

}  // namespace

int main(int argc, char** argv) {
    CLI::App app("Times MP3 encoders against each other.");
    std::string path = ZETAC_STREAMS "/src/music_44100_stereo.wav";
    unsigned kilobits = 128, reps = 5;
    double seconds = 60;
    app.add_option("source", path, "WAV file, repeated to its length")->capture_default_str();
    app.add_option("--rate", kilobits, "in kbit/s")->capture_default_str();
    app.add_option("--seconds", seconds, "to be encoded")->capture_default_str();
    app.add_option("--reps", reps, "repetitions, interleaved; the best counts")
        ->capture_default_str();
    CLI11_PARSE(app, argc, argv);
    try {
        run(repeated(readWav(path), seconds), kilobits, reps);
        return 0;
    } catch (const std::exception& e) {
        std::fprintf(stderr, "encode: %s\n", e.what());
        return 2;
    }
}
