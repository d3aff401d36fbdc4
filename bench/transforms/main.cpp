// Times the transforms of this library and of those found when the program was built, on the same
// data in one run, and prints nanoseconds per transform and the ratios to this library.
#include <time.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <random>

#include "transform.h"

namespace {

using namespace transforms;

struct Options {
    int smallest = 64;
    int largest = 65536;
    unsigned reps = 15;
    double minTime = 0.005;  // seconds under the clock in each repetition
};

std::vector<Library> lineUp() {
    std::vector<Library> libraries = {zetacLibrary()};
#ifdef TRANSFORMS_FFTW
    libraries.push_back(fftwLibrary());
#endif
#ifdef TRANSFORMS_LIBAVUTIL
    libraries.push_back(libavutilLibrary());
#endif
    return libraries;
}

class Floats {
  public:
    explicit Floats(int count)
        : count_(count),
          data_(static_cast<float*>(std::aligned_alloc(64, (4 * count + 63) / 64 * 64))) {
        if (!data_) throw std::bad_alloc();
    }
    ~Floats() { std::free(data_); }
    Floats(const Floats&) = delete;
    Floats& operator=(const Floats&) = delete;
    float* begin() { return data_; }
    float* end() { return data_ + count_; }

  private:
    int count_;
    float* data_;
};

// One library at one kind and size.
struct Entry {
    const Library* library;
    std::unique_ptr<Floats> input, output;
    std::unique_ptr<Transform> transform;
    std::string fault;
    std::vector<double> nanoseconds;

    double median() {
        std::sort(nanoseconds.begin(), nanoseconds.end());
        return nanoseconds[nanoseconds.size() / 2];
    }
};

Entry enter(const Library& library, Kind kind, int size) {
    Entry entry;
    entry.library = &library;
    entry.input = std::make_unique<Floats>(inputCount(kind, size));
    entry.output = std::make_unique<Floats>(outputCount(kind, size));
    entry.transform = library.make(kind, size, entry.input->begin(), entry.output->begin());
    std::mt19937 random(1);
    for (float& x : *entry.input) x = static_cast<float>(random()) * 0x1p-31f - 1;
    if (entry.transform) entry.transform->run();
    return entry;
}

// Definitions differ by a constant factor. Of two results that are right to single precision, what
// one has beside the other is below 1e-6 of it; this is compared squared.
bool proportional(Floats& a, Floats& b) {
    double aa = 0, bb = 0, ab = 0;
    for (float *x = a.begin(), *y = b.begin(); x != a.end(); ++x, ++y) {
        aa += double{*x} * *x;
        bb += double{*y} * *y;
        ab += double{*x} * *y;
    }
    return std::abs(1 - ab * ab / (aa * bb)) < 1e-10;
}

double processorSeconds() {
    timespec t;
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
    return static_cast<double>(t.tv_sec) + 1e-9 * static_cast<double>(t.tv_nsec);
}

double timeOnce(Transform& transform, int calls) {
    const double start = processorSeconds();
    for (int i = 0; i < calls; ++i) transform.run();
    return 1e9 * (processorSeconds() - start) / calls;
}

void measure(std::vector<Entry>& entries, const Options& options) {
    std::vector<int> calls;
    for (Entry& entry : entries) {
        int count = 8;
        while (timeOnce(*entry.transform, count) * count < 1e9 * options.minTime) count *= 2;
        calls.push_back(count);
    }
    // Round-robin, so that a noisy moment of the machine hits all alike.
    for (unsigned rep = 0; rep < options.reps; ++rep)
        for (size_t i = 0; i < entries.size(); ++i)
            if (entries[i].fault.empty())
                entries[i].nanoseconds.push_back(timeOnce(*entries[i].transform, calls[i]));
}

void printHeader(const std::vector<Library>& libraries) {
    std::printf("%-6s%8s", "", "size");
    for (const Library& library : libraries) std::printf("%12s", (library.name + " ns").c_str());
    for (size_t i = 1; i < libraries.size(); ++i)
        std::printf("%16s", (libraries[i].name + " / zetac").c_str());
    std::printf("\n");
}

// 0 if all agree.
int compare(const std::vector<Library>& libraries, Kind kind, int size, const Options& options) {
    std::vector<Entry> entries;
    for (const Library& library : libraries) {
        Entry entry = enter(library, kind, size);
        if (entry.transform) entries.push_back(std::move(entry));
    }
    for (Entry& entry : entries)
        if (!proportional(*entry.output, *entries[0].output)) entry.fault = "differs";
    measure(entries, options);
    const auto find = [&](const Library& library) -> Entry* {
        for (Entry& entry : entries)
            if (entry.library == &library) return &entry;
        return nullptr;
    };
    std::printf("%-6s%8d", nameOf(kind), size);
    bool allWell = true;
    for (const Library& library : libraries) {
        Entry* entry = find(library);
        if (entry && entry->fault.empty())
            std::printf("%12.1f", entry->median());
        else
            std::printf("%12s", entry ? entry->fault.c_str() : "-");
        allWell &= !entry || entry->fault.empty();
    }
    for (size_t i = 1; i < libraries.size(); ++i) {
        Entry* entry = find(libraries[i]);
        if (entry && entry->fault.empty())
            std::printf("%16.2f", entry->median() / entries[0].median());
        else
            std::printf("%16s", "-");
    }
    std::printf("\n");
    std::fflush(stdout);
    return allWell ? 0 : 1;
}

std::string cpuModel() {
    std::ifstream in("/proc/cpuinfo");
    for (std::string line; std::getline(in, line);)
        if (line.starts_with("model name")) return line.substr(line.find(':') + 2);
    return "unknown";
}

int run(const Options& options) {
    const std::vector<Library> libraries = lineUp();
    std::printf("cpu   %s, %zu-bit\n", cpuModel().c_str(), 8 * sizeof(void*));
    for (const Library& library : libraries) std::printf("with  %s\n", library.version.c_str());
    std::printf("\n");
    printHeader(libraries);
    int result = 0;
    for (const Kind kind : kKinds)
        for (int size = options.smallest; size <= options.largest; size *= 2)
            result |= compare(libraries, kind, size, options);
    return result;
}

}  // namespace

int main(int argc, char** argv) {
    CLI::App app("Times float transforms against each other: one thread, out of place.");
    Options options;
    app.add_option("--smallest", options.smallest, "first size, a power of two")
        ->check(CLI::Range(32, 1 << 20))
        ->capture_default_str();
    app.add_option("--largest", options.largest, "last size")
        ->check(CLI::Range(32, 1 << 20))
        ->capture_default_str();
    app.add_option("--reps", options.reps, "repetitions, interleaved between the libraries")
        ->check(CLI::Range(1, 100000))
        ->capture_default_str();
    app.add_option("--min-time", options.minTime, "seconds that each repetition takes at least")
        ->check(CLI::NonNegativeNumber)
        ->capture_default_str();
    CLI11_PARSE(app, argc, argv);
    try {
        return run(options);
    } catch (const std::exception& e) {
        std::fprintf(stderr, "transforms: %s\n", e.what());
        return 2;
    }
}
