// The transforms that are timed against each other, and the libraries that have them.
#pragma once

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace transforms {

// With n the size: a forward complex FFT of n points; a forward MDCT of n samples to n/2
// coefficients; an inverse one of n/2 coefficients to n samples.
enum class Kind { fft, mdct, imdct };
constexpr Kind kKinds[] = {Kind::fft, Kind::mdct, Kind::imdct};

inline const char* nameOf(Kind kind) {
    return kind == Kind::fft ? "fft" : kind == Kind::mdct ? "mdct" : "imdct";
}
inline int inputCount(Kind kind, int size) {
    return kind == Kind::fft ? 2 * size : kind == Kind::mdct ? size : size / 2;
}
inline int outputCount(Kind kind, int size) {
    return kind == Kind::fft ? 2 * size : kind == Kind::mdct ? size / 2 : size;
}

class Transform {
  public:
    Transform() = default;
    Transform(const Transform&) = delete;
    Transform& operator=(const Transform&) = delete;
    virtual ~Transform() = default;
    virtual void run() = 0;  // once, from the input to the output
};

// Makes a transform between two arrays, 64-byte aligned, whose content it may destroy; null if the
// library has none of that kind. Throws std::runtime_error if it should have one.
using Make = std::unique_ptr<Transform> (*)(Kind kind, int size, float* input, float* output);

struct Library {
    std::string name;
    std::string version;
    Make make;
};

inline void require(bool condition, const char* what) {
    if (!condition) throw std::runtime_error(what);
}

Library zetacLibrary();
Library fftwLibrary();
Library libavutilLibrary();

}  // namespace transforms
