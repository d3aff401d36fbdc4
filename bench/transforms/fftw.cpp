#include <fftw3.h>

#include "transform.h"

namespace transforms {
namespace {

class Planned final : public Transform {
  public:
    explicit Planned(fftwf_plan plan) : plan_(plan) { require(plan != nullptr, "no plan"); }
    ~Planned() override { fftwf_destroy_plan(plan_); }
    void run() override { fftwf_execute(plan_); }

  private:
    fftwf_plan plan_;
};

std::unique_ptr<Transform> make(Kind kind, int size, float* input, float* output) {
    if (kind != Kind::fft) return nullptr;
    return std::make_unique<Planned>(
        fftwf_plan_dft_1d(size, reinterpret_cast<fftwf_complex*>(input),
                          reinterpret_cast<fftwf_complex*>(output), FFTW_FORWARD, FFTW_MEASURE));
}

}  // namespace

Library fftwLibrary() {
    return {"fftw", fftwf_version, make};
}

}  // namespace transforms
