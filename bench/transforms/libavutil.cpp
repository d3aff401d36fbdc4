#define __STDC_CONSTANT_MACROS  // the headers ask for it in C++

extern "C" {
#include <libavutil/avutil.h>
#include <libavutil/tx.h>
}

#include "transform.h"

namespace transforms {
namespace {

// Its MDCTs are counted in coefficients.
class Context final : public Transform {
  public:
    Context(Kind kind, int size, float* input, float* output) : input_(input), output_(output) {
        const bool isFft = kind == Kind::fft;
        const bool isInverse = kind == Kind::imdct;
        const float scale = 1;
        stride_ = isFft ? 2 * sizeof(float) : sizeof(float);
        const int made =
            av_tx_init(&context_, &function_, isFft ? AV_TX_FLOAT_FFT : AV_TX_FLOAT_MDCT, isInverse,
                       isFft ? size : size / 2, &scale, isInverse ? AV_TX_FULL_IMDCT : 0);
        require(made >= 0, "av_tx_init fails");
    }
    ~Context() override { av_tx_uninit(&context_); }
    void run() override { function_(context_, output_, input_, stride_); }

  private:
    AVTXContext* context_ = nullptr;
    av_tx_fn function_ = nullptr;
    float* input_;
    float* output_;
    ptrdiff_t stride_;
};

std::unique_ptr<Transform> make(Kind kind, int size, float* input, float* output) {
    return std::make_unique<Context>(kind, size, input, output);
}

}  // namespace

Library libavutilLibrary() {
    return {"av_tx", "libavutil " + std::string(av_version_info()), make};
}

}  // namespace transforms
