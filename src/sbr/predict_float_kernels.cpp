#include "sbr/predict_float_kernels.h"

#include <utility>

#define ZETAC_FAMILY sbr::predict
#define ZETAC_KERNELS "sbr/predict_float_kernels.inc"
#include "core/every_width.inc"

namespace zetac::sbr {

constexpr core::LevelTable<PredictFloatKernels> kPredictFloatKernels = {
    predict::sse2::kKernels, predict::sse2::kKernels, predict::avx2::kKernels,
    predict::avx512::kKernels};

}  // namespace zetac::sbr
